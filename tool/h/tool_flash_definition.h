// `tovren flash define` and `tovren flash definition`: flashes of the user's own, and the setting that holds them.
#ifndef TOOL_FLASH_DEFINITION_H
#define TOOL_FLASH_DEFINITION_H

#include "tovren_flash_definition.h"

#include <string>

class TOOL_GROUP;

void tool_add_define_verb(TOOL_GROUP& flash);
void tool_add_definition_group(TOOL_GROUP& flash);

// Why a load would not apply an entry, were it the first of its list; empty where it would.
std::string tool_definition_refusal(const TOVREN_FLASH_INI_CHECK& check);

// The entry that `check` belongs to is applied, and still no answer of three bytes is identified by it.
bool tool_compares_beyond_answer(const TOVREN_FLASH_INI_CHECK& check);
extern const char TOOL_BEYOND_ANSWER_TEXT[];

// The library's conversions. What they print becomes the message of a refusal.
std::string tool_encode_definitions(const std::string& list);
std::string tool_decode_definitions(const std::string& encoded);

#endif
