// The flash parameter file as commands see it: whole sections, and why the file is refused.
#ifndef TOOL_PARAMS_FILE_H
#define TOOL_PARAMS_FILE_H

#include "tovren_flash_ini.h"

#include <functional>
#include <string>
#include <vector>

using TOOL_BYTES = std::vector<unsigned char>;

// "1 (HPS SPI)".
std::string tool_section_text(TOVREN_FLASH_INI_ENUM section);

// "missing", "unreadable", "damaged" or "sound".
const char* tool_params_state_text(TOVREN_FLASH_INI_FILE_ENUM state);

// Empty where the file has no such section. A file that is there and yields nothing is refused.
TOOL_BYTES tool_read_section(TOVREN_FLASH_INI_ENUM section);

// The same for a change: a damaged file counts as an empty one, for the library keeps a copy of it.
TOOL_BYTES tool_read_section_to_change(TOVREN_FLASH_INI_ENUM section);

// Replaces the section; without bytes it is removed. A file that cannot be written is refused. Says on standard error
// where a damaged file went.
void tool_write_section(TOVREN_FLASH_INI_ENUM section, TOOL_BYTES bytes);

// The same for who makes the new bytes of the former ones, which no other writer changes in between. A damaged file
// counts as an empty one. `change` may throw: the file stays as it is.
void tool_change_section(TOVREN_FLASH_INI_ENUM section, const std::function<void(TOOL_BYTES& bytes)>& change);

#endif
