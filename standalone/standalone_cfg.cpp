// Settings: a file of `name = value` lines (docs/formats/settings.md) and overrides.
#include "host_cfg.h"
#include "host_text.h"
#include "tovren_standalone_host.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <unordered_map>

namespace {

using SETTINGS = std::unordered_map<std::string, std::string>;

struct STATE {
    std::optional<std::string> path; // of a file other than the default one
    std::optional<SETTINGS> file;    // empty until it was read
    SETTINGS overrides;
};

STATE& state() {
    static STATE settings;
    return settings;
}

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// Empty where the environment names no place at all.
std::string default_path() {
    if (const std::string named = environment("TOVREN_SETTINGS"); !named.empty())
        return named;
    std::string folder = environment("XDG_CONFIG_HOME");
    if (folder.empty() && !environment("HOME").empty())
        folder = environment("HOME") + "/.config";
    return folder.empty() ? "" : folder + "/tovren/settings.ini";
}

void read_line(std::string line, const std::string& path, unsigned int number, SETTINGS& settings) {
    if (const size_t comment = line.find('#'); comment != std::string::npos)
        line.erase(comment);
    gen_remove_leading_and_trailing_white_spaces(line);
    if (line.empty())
        return;

    const size_t sign = line.find('=');
    std::string name = line.substr(0, sign);
    gen_remove_leading_and_trailing_white_spaces(name);
    if (sign == std::string::npos || name.empty()) {
        std::fprintf(stderr, "%s:%u: \"%s\" is not of the form name = value; the line is skipped\n", path.c_str(),
                     number, line.c_str());
        return;
    }
    std::string value = line.substr(sign + 1);
    gen_remove_leading_and_trailing_white_spaces(value);
    settings[name] = value;
}

std::optional<SETTINGS> read_file(const std::string& path) {
    std::ifstream input(path);
    SETTINGS settings;
    std::string line;
    for (unsigned int number = 1; std::getline(input, line); ++number)
        read_line(line, path, number, settings);
    if (!input.eof())
        return std::nullopt;
    return settings;
}

const SETTINGS& file_settings() {
    STATE& settings = state();
    if (!settings.file) {
        settings.file = read_file(TOVREN_STANDALONE_HOST::get_settings_file());
        if (const std::string named = environment("TOVREN_SETTINGS"); !settings.file && !named.empty())
            std::fprintf(stderr, "%s: the settings file that $TOVREN_SETTINGS names cannot be read\n", named.c_str());
        if (!settings.file)
            settings.file.emplace();
    }
    return *settings.file;
}

const std::string* find_setting(const std::string& name) {
    const SETTINGS& overrides = state().overrides;
    if (const auto place = overrides.find(name); place != overrides.end())
        return &place->second;
    const SETTINGS& file = file_settings();
    const auto place = file.find(name);
    return place == file.end() ? nullptr : &place->second;
}

} // namespace

bool cfg_is_on(const std::string& name, bool default_value) {
    const std::string* value = find_setting(name);
    if (!value)
        return default_value;
    static constexpr std::array<const char*, 4> ON_WORDS = {"on", "true", "yes", "1"};
    for (const char* word : ON_WORDS)
        if (gen_stricmp(value->c_str(), word) == 0)
            return true;
    return false;
}

std::string cfg_get_value(const std::string& name) {
    const std::string* value = find_setting(name);
    return value ? *value : "";
}

bool TOVREN_STANDALONE_HOST::set_settings_file(const std::string& path) {
    state().path = path;
    state().file = read_file(path);
    const bool is_read = state().file.has_value();
    if (!is_read)
        state().file.emplace();
    return is_read;
}

std::string TOVREN_STANDALONE_HOST::get_settings_file() {
    return state().path ? *state().path : default_path();
}

void TOVREN_STANDALONE_HOST::set_setting(const std::string& name, const std::string& value) {
    state().overrides[name] = value;
}

void TOVREN_STANDALONE_HOST::reset_settings() {
    state() = STATE();
}
