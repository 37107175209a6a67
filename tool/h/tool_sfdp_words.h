// Words for the codes of a parameter table (SFDP).
#ifndef TOOL_SFDP_WORDS_H
#define TOOL_SFDP_WORDS_H

#include "sfdp.h"

#include <cstdint>
#include <string>

std::string tool_sfdp_id_text(unsigned int id);         // "FF00"
std::string tool_sfdp_opcode_text(unsigned int opcode); // "D8"
std::string tool_sfdp_nanoseconds_text(std::uint64_t nanoseconds);
std::string tool_sfdp_table_text(unsigned int id); // what the table holds
std::string tool_sfdp_quad_enable_text(unsigned int code);

// A way into or out of 4-byte mode, or to reset: "06, then B7".
std::string tool_sfdp_way_text(const std::string& way);

// A warning of the decoder as a sentence.
std::string tool_sfdp_warning_text(const std::string& warning);

// How all of the flash is addressed, as far as the table tells.
std::string tool_sfdp_addressing_text(const SFDP_TABLE& table);

#endif
