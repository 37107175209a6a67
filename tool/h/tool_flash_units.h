// What a person may have meant by an answer that is refused: a figure in another unit, or a number with one behind it.
#ifndef TOOL_FLASH_UNITS_H
#define TOOL_FLASH_UNITS_H

#include "tovren_flash_definition.h"

#include <string>

// "300000 ms would be 300" for an answer that the question refuses; empty where nothing fits.
std::string tool_flash_unit_hint(const TOVREN_FLASH_PROMPT& prompt, const std::string& text);

#endif
