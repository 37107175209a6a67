// Settings: a file of `name = value` lines (docs/formats/settings.md) and overrides.
#include "host_cfg.h"
#include "host_text.h"
#include "tovren_standalone_host.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_map>
#include <vector>

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

// What a line says. The value's place is in the line as it stands; a comment goes up to the line's end.
struct SETTING_LINE {
    std::string text; // without white space around and without the comment; empty where there is no more
    std::string name; // empty for a line that sets nothing
    std::string value;
    size_t value_place = 0;
};

SETTING_LINE take_apart(const std::string& line) {
    SETTING_LINE parts;
    parts.text = line.substr(0, line.find('#'));
    const size_t sign = parts.text.find('=');
    if (sign != std::string::npos) {
        parts.name = parts.text.substr(0, sign);
        gen_remove_leading_and_trailing_white_spaces(parts.name);
        parts.value = parts.text.substr(sign + 1);
        gen_remove_leading_and_trailing_white_spaces(parts.value);
        parts.value_place = parts.text.find(parts.value, sign + 1);
    }
    gen_remove_leading_and_trailing_white_spaces(parts.text);
    return parts;
}

// Of the control character at this place, 0 where there is none.
size_t control_size(const std::string& text, size_t index) {
    const auto byte = static_cast<unsigned char>(text[index]);
    if (byte == 0xC2 && index + 1 < text.size()) // U+0080 to U+009F in UTF-8
        return static_cast<unsigned char>(text[index + 1]) < 0xA0 ? 2 : 0;
    return byte < 0x20 || byte == 0x7F ? 1 : 0;
}

// What a file holds must not steer the terminal on which it is named.
std::string printable(const std::string& text) {
    std::string result;
    size_t control_end = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        control_end = std::max(control_end, i + control_size(text, i));
        char shown[5] = {text[i]};
        if (i < control_end)
            std::snprintf(shown, sizeof shown, "\\x%02X", static_cast<unsigned int>(text[i]) & 0xFFU);
        result += shown;
    }
    return result;
}

void read_line(const std::string& line, const std::string& path, unsigned int number, SETTINGS& settings) {
    const SETTING_LINE parts = take_apart(line);
    if (!parts.name.empty())
        settings[parts.name] = parts.value;
    else if (!parts.text.empty())
        std::fprintf(stderr, "%s:%u: \"%s\" is not of the form name = value; the line is skipped\n",
                     printable(path).c_str(), number, printable(parts.text).c_str());
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
            std::fprintf(stderr, "%s: the settings file that $TOVREN_SETTINGS names cannot be read\n",
                         printable(named).c_str());
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

// ---- changing the file ----

// The file's lines, each with its line end where it has one.
bool read_lines(const std::string& path, std::vector<std::string>& lines) {
    std::ifstream input(path, std::ios::in | std::ios::binary);
    std::string line;
    while (std::getline(input, line))
        lines.push_back(input.eof() ? line : line + '\n');
    return input.eof();
}

std::string writing_fault() {
    return std::string("it cannot be written: ") + std::strerror(errno);
}

bool write_whole(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
            return false;
        bytes.remove_prefix(written < 0 ? 0 : static_cast<size_t>(written));
    }
    return fsync(descriptor) == 0;
}

// The rights and the owner of a former file are kept, where that may be.
void keep_rights(int descriptor, const std::string& path) {
    struct stat former = {};
    if (stat(path.c_str(), &former) != 0)
        return;
    (void)fchmod(descriptor, former.st_mode & 07777U);
    (void)!fchown(descriptor, former.st_uid, former.st_gid);
}

// Beside the file, then in its place. Returns what failed.
std::string replace_file(const std::string& path, const std::string& contents) {
    const std::string beside = path + '.' + std::to_string(getpid()) + ".new";
    const int descriptor = open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (descriptor < 0)
        return writing_fault();
    keep_rights(descriptor, path);
    const bool is_written = write_whole(descriptor, contents);
    std::string fault = is_written ? "" : writing_fault();
    close(descriptor);
    if (fault.empty() && std::rename(beside.c_str(), path.c_str()) != 0)
        fault = writing_fault();
    if (!fault.empty())
        unlink(beside.c_str());
    return fault;
}

// Gives the lines to `change` and writes them where it says that it changed any. Returns why that cannot be done.
template <typename CHANGE>
std::string change_file(const std::string& path, CHANGE&& change) {
    namespace fs = std::filesystem;
    if (path.empty())
        return "there is no place for a settings file: neither TOVREN_SETTINGS nor HOME is set";
    std::error_code error;
    fs::path target = fs::weakly_canonical(fs::current_path(error) / path, error);
    if (error)
        return error.message();
    std::vector<std::string> lines;
    if (fs::exists(target, error)) {
        if (!fs::is_regular_file(target, error))
            return "it is no file";
        if (!read_lines(target, lines))
            return "it cannot be read";
    }
    if (!change(lines))
        return "";
    fs::create_directories(target.parent_path(), error);
    if (error)
        return "its folder cannot be made: " + error.message();
    std::string contents;
    for (const std::string& line : lines)
        contents += line;
    return replace_file(target, contents);
}

// How the file ends its lines.
const char* line_end(const std::vector<std::string>& lines) {
    return !lines.empty() && lines.front().ends_with("\r\n") ? "\r\n" : "\n";
}

bool put_setting(const std::string& name, const std::string& value, std::vector<std::string>& lines) {
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        const SETTING_LINE parts = take_apart(*line);
        if (parts.name != name)
            continue;
        line->replace(parts.value_place, parts.value.size(), value);
        return parts.value != value;
    }
    const std::string end = line_end(lines);
    if (!lines.empty() && !lines.back().ends_with('\n'))
        lines.back() += end;
    lines.push_back(name + " = " + value + end);
    return true;
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

std::string TOVREN_STANDALONE_HOST::store_setting(const std::string& name, const std::string& value) {
    const SETTING_LINE parts = take_apart(name + '=' + value);
    if (name.empty() || parts.name != name || parts.value != value || value.find('\n') != std::string::npos ||
        name.find('\n') != std::string::npos)
        return "a settings file cannot hold that name or value";
    state().file.reset();
    return change_file(get_settings_file(),
                       [&](std::vector<std::string>& lines) { return put_setting(name, value, lines); });
}

std::string TOVREN_STANDALONE_HOST::remove_setting(const std::string& name, unsigned int& count) {
    state().file.reset();
    count = 0;
    return change_file(get_settings_file(), [&](std::vector<std::string>& lines) {
        count = static_cast<unsigned int>(
            std::erase_if(lines, [&name](const std::string& line) { return take_apart(line).name == name; }));
        return count != 0;
    });
}

void TOVREN_STANDALONE_HOST::set_setting(const std::string& name, const std::string& value) {
    state().overrides[name] = value;
}

void TOVREN_STANDALONE_HOST::reset_settings() {
    state() = STATE();
}
