// Images of a flash's parameter table (SFDP) from files: raw bytes, or a dump as xxd, hexdump -C or od prints it.
#ifndef TOOL_SFDP_FILE_H
#define TOOL_SFDP_FILE_H

#include "sfdp.h"
#include "tool_error.h"

#include <string>

// `file` may be "-" for standard input. One that cannot be read, and a dump with a bad line, end the command.
SFDP_RESULT tool_read_sfdp(const std::string& file);

// What is shown of a file: "standard input", or its printable name.
std::string tool_sfdp_file_text(const std::string& file);

// For an image that the decoder refuses.
TOOL_ERROR tool_sfdp_error(const std::string& file, const SFDP_REFUSAL& refusal);

#endif
