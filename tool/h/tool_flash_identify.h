// `tovren flash identify`.
#ifndef TOOL_FLASH_IDENTIFY_H
#define TOOL_FLASH_IDENTIFY_H

#include <optional>
#include <string>
#include <vector>

class TOOL_OUTPUT;

struct TOOL_IDENTIFY_OPTIONS {
    std::vector<std::string> ids; // one a device of the chain
    bool is_silicon_id = false;
    bool is_why = false;
    std::optional<std::string> csv;  // the description whose lines are named; else the one beside the database
    std::optional<std::string> sfdp; // the parameter table of the only device
};

// Maps each device of a chain to the flash that its identification names. Not found: a device is unmatched.
int tool_flash_identify(const TOOL_IDENTIFY_OPTIONS& options, const TOOL_OUTPUT& output);

#endif
