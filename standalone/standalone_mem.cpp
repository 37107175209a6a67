// The memory tracker: a registry of the libraries that are loaded.
#include "host_mem.h"
#include "tovren_standalone_host.h"

#include <algorithm>

namespace {

// Never destroyed: libraries leave it after the program's own objects are gone.
std::vector<std::string>& registry() {
    static auto* const prefixes = new std::vector<std::string>;
    return *prefixes;
}

} // namespace

MEM_INITIALIZER::MEM_INITIALIZER(const char* prefix) : m_prefix(prefix) {
    registry().emplace_back(prefix);
}

MEM_INITIALIZER::~MEM_INITIALIZER() {
    auto& prefixes = registry();
    const auto place = std::find(prefixes.rbegin(), prefixes.rend(), m_prefix);
    if (place != prefixes.rend())
        prefixes.erase(std::next(place).base());
}

std::vector<std::string> TOVREN_STANDALONE_HOST::get_registered_prefixes() {
    return registry();
}
