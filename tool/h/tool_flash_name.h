// Why a flash is not known by the name that a person typed.
#ifndef TOOL_FLASH_NAME_H
#define TOOL_FLASH_NAME_H

#include <string>
#include <vector>

class TOVREN_FLASH_MANAGER;

// A line each: that the name has no default or is hidden, what it is in the spelling of the table, that it is an index
// or an identification, or the nearest names.
std::vector<std::string> tool_unknown_flash_details(const std::string& name, const TOVREN_FLASH_MANAGER& manager);

#endif
