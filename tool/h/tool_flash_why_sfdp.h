// A flash's own parameter table (SFDP) beside the records that its identification leads to.
#ifndef TOOL_FLASH_WHY_SFDP_H
#define TOOL_FLASH_WHY_SFDP_H

#include "tool_flash_why.h"
#include "tool_sfdp_record.h"

struct TOOL_SFDP_FIT {
    size_t candidate; // position among the candidates
    std::vector<SFDP_DIFFERENCE> differences;

    // Whether they differ in nothing that a flash cannot have two ways: times are limits, and an extended mode is one
    // of several that a flash may have.
    bool fits() const;
};

std::vector<TOOL_SFDP_FIT> tool_sfdp_fits(const TOOL_FLASH_WHY& why, const SFDP_TABLE& table);

void tool_write_why_sfdp(const TOOL_FLASH_WHY& why, const std::string& file, const SFDP_TABLE& table,
                         const TOOL_OUTPUT& output);
nlohmann::ordered_json tool_why_sfdp_json(const TOOL_FLASH_WHY& why, const std::string& file, const SFDP_TABLE& table);

#endif
