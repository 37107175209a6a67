// Waivers: findings of the physics rules that stand for a reason, `docs/formats/flash_waivers.md`.
#ifndef TOOL_FLASH_WAIVERS_H
#define TOOL_FLASH_WAIVERS_H

#include "tool_flash_physics.h"

// "data/flash.csv" -> "data/flash_waivers.csv"
std::string tool_waivers_beside(const std::string& csv);

struct TOOL_WAIVED {
    std::vector<TOOL_PHYSICS_FINDING> standing; // that no waiver names
    std::vector<TOOL_CSV_FAULT> faults = {};    // of the waiver file, in the order of its lines
    size_t count = 0;                           // findings that are waived
};

// An unused waiver is a remark, a broken one a fault that waives nothing.
TOOL_WAIVED tool_waive(std::vector<TOOL_PHYSICS_FINDING> findings, const std::vector<TOOL_CSV_ROW>& rows,
                       const std::string& waiver_file);

#endif
