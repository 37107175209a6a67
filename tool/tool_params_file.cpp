// Sections of the flash parameter file, and its faults for people.
#include "tool_params_file.h"

#include "tool_error.h"
#include "tool_file.h"
#include "tool_output.h"
#include "tool_text.h"

#include <cerrno>
#include <cstring>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

std::string shown_path() {
    return tool_printable(TOVREN_FLASH_INI::get_flash_ini_path());
}

TOOL_ERROR unreadable() {
    const std::string fault = tool_reading_fault(TOVREN_FLASH_INI::get_flash_ini_path());
    return {TOOL_EXIT_REFUSED, shown_path() + ": " + (fault.empty() ? "it is no file" : fault)};
}

TOOL_ERROR damaged() {
    return {TOOL_EXIT_REFUSED,
            shown_path() + ": it does not verify, so that it has no section for any reader",
            {"next: bring back a copy of it, or store a section: the file is then written anew,",
             "      and the damaged one is kept beside it as pgm_flash.ini.damaged"}};
}

TOOL_BYTES section_bytes(TOVREN_FLASH_INI_ENUM section) {
    unsigned int size = 0;
    const std::unique_ptr<unsigned char[]> data(TOVREN_FLASH_INI::read_flash_ini_data(section, size));
    return TOOL_BYTES(data.get(), data.get() + size);
}

// The library says no more than that it failed.
std::string writing_fault() {
    const std::string path = TOVREN_FLASH_INI::get_flash_ini_path();
    const std::string folder = path.substr(0, path.rfind('/'));
    struct stat status = {};
    if (stat(folder.c_str(), &status) != 0)
        return "the folder cannot be found: " + std::string(strerror(errno));
    if (access(folder.c_str(), W_OK | X_OK) != 0)
        return "the folder may not be written: " + std::string(strerror(errno));
    if (stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
        return "it is no file";
    return "it cannot be written: there is no room, or a file beside it (.lock, .new, .damaged) is in the way";
}

} // namespace

std::string tool_section_text(TOVREN_FLASH_INI_ENUM section) {
    return std::to_string(section) + " (" + TOVREN_FLASH_INI_STRING[section] + ')';
}

const char* tool_params_state_text(TOVREN_FLASH_INI_FILE_ENUM state) {
    static constexpr const char* TEXTS[] = {"missing", "unreadable", "damaged", "sound"};
    static_assert(std::size(TEXTS) == TOVREN_FLASH_INI_FILE_MAX);
    return TEXTS[state];
}

TOOL_BYTES tool_read_section(TOVREN_FLASH_INI_ENUM section) {
    if (TOVREN_FLASH_INI::get_flash_ini_file_state() == TOVREN_FLASH_INI_FILE_DAMAGED)
        throw damaged();
    return tool_read_section_to_change(section);
}

TOOL_BYTES tool_read_section_to_change(TOVREN_FLASH_INI_ENUM section) {
    if (TOVREN_FLASH_INI::get_flash_ini_file_state() == TOVREN_FLASH_INI_FILE_UNREADABLE)
        throw unreadable();
    return section_bytes(section);
}

void tool_write_section(TOVREN_FLASH_INI_ENUM section, TOOL_BYTES bytes) {
    tool_change_section(section, [&bytes](TOOL_BYTES& former) { former = std::move(bytes); });
}

void tool_change_section(TOVREN_FLASH_INI_ENUM section, const std::function<void(TOOL_BYTES& bytes)>& change) {
    const TOVREN_FLASH_INI_FILE_ENUM state = TOVREN_FLASH_INI::get_flash_ini_file_state();
    if (!TOVREN_FLASH_INI::change_flash_ini_data(section, change))
        throw TOOL_ERROR(TOOL_EXIT_REFUSED, shown_path() + ": " + writing_fault(),
                         {"What stood there is as it was.",
                          "next: set TOVREN_MODULE_PATH to a folder that may be written"});
    if (state == TOVREN_FLASH_INI_FILE_DAMAGED)
        tool_note("warning: " + shown_path() + ": it did not verify; what stood there is kept as " + shown_path() +
                  ".damaged");
}
