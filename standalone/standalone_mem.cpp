// The memory tracker: a registry of the libraries that are loaded.
#include "host_mem.h"
#include "tovren_standalone_host.h"

#include <list>

namespace {

// In order of registration; a list, because each registration points to its text. Never destroyed: libraries leave it
// after the program's own objects are gone.
std::list<std::string>& registry() {
    static auto* const prefixes = new std::list<std::string>;
    return *prefixes;
}

} // namespace

MEM_INITIALIZER::MEM_INITIALIZER(const char* prefix) : m_prefix(registry().emplace_back(prefix).c_str()) {}

MEM_INITIALIZER::~MEM_INITIALIZER() {
    registry().remove_if([this](const std::string& prefix) { return prefix.c_str() == m_prefix; });
}

std::vector<std::string> TOVREN_STANDALONE_HOST::get_registered_prefixes() {
    return {registry().begin(), registry().end()};
}
