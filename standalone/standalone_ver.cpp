// The version: that of the project, or one that a program, the environment or a setting puts in its place.
#include "host_cfg.h"
#include "host_ver.h"
#include "tovren_standalone_host.h"

#include <cstdlib>
#include <optional>

namespace {

struct VERSION {
    std::string text;
    unsigned int index_number;
};

std::optional<VERSION>& other_version() {
    static std::optional<VERSION> version;
    return version;
}

constexpr unsigned int pack_version(unsigned int service_pack, unsigned int build) {
    return (service_pack & 0xFF) | (build & 0xFFFF) << 8;
}

} // namespace

std::string ver_get_version() {
    if (other_version())
        return other_version()->text;
    if (const char* text = std::getenv("TOVREN_VERSION_TEXT"); text && *text != '\0')
        return text;
    const std::string setting = cfg_get_value("TOVREN_VERSION_TEXT");
    return setting.empty() ? TOVREN_PROJECT_VERSION : setting;
}

unsigned int ver_get_current_version_index_number() {
    if (other_version())
        return other_version()->index_number;
    return pack_version(TOVREN_PROJECT_SERVICE_PACK, TOVREN_PROJECT_BUILD);
}

void TOVREN_STANDALONE_HOST::set_version(const std::string& text, unsigned int service_pack, unsigned int build) {
    other_version() = VERSION{text, pack_version(service_pack, build)};
}

void TOVREN_STANDALONE_HOST::reset_version() {
    other_version().reset();
}
