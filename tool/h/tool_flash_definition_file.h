// Flash definitions from JSON: one object or an array of up to three, keyed by the members that the dialogue asks for.
//
// A value is what a person would type at the member's prompt, as a text; or a flag as a boolean; or a number in the
// prompt's unit (24 is twenty-four, where the text "24" at a hexadecimal prompt is 0x24). The checks are those of the
// dialogue.
#ifndef TOOL_FLASH_DEFINITION_FILE_H
#define TOOL_FLASH_DEFINITION_FILE_H

#include "tovren_flash_definition.h"

#include <string>
#include <vector>

// The question of a member that is asked for: "Memory ID (hex) [1 - FE]".
std::string tool_flash_question(const TOVREN_FLASH_PROMPT& prompt);

// Checks what a person types at a member's question. Empty where it is good, and then `field` is what the definition
// holds for it; otherwise why it is refused: "is out of range".
std::string tool_flash_answer_fault(const TOVREN_FLASH_PROMPT& prompt, const std::string& text, std::string& field);

// Why no value can be given for a member of that name; empty where one can.
std::string tool_flash_member_fault(const std::string& member);

struct TOOL_DEFINITION_FAULT {
    unsigned int flash = 0;  // from 1; 0 for the file as a whole
    std::string member = {}; // empty for the flash as a whole
    std::string reason = {};

    std::string text() const; // "flash 1: memory_id: 300 is out of range (Memory ID (hex) [1 - FE])"
};

struct TOOL_DEFINITION_FILE {
    std::vector<std::string> definitions; // none where there are faults
    std::vector<TOOL_DEFINITION_FAULT> faults;
};

// `file` may be "-" for standard input. One that cannot be read is refused.
TOOL_DEFINITION_FILE tool_read_definitions(const std::string& file);

#endif
