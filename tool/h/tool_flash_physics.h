// Figures of a flash description that no chip can have together.
#ifndef TOOL_FLASH_PHYSICS_H
#define TOOL_FLASH_PHYSICS_H

#include "tool_csv_flash.h"

#include <span>

struct TOOL_PHYSICS_RULE {
    const char* name; // that findings show and waivers name
    const char* help;
};
std::span<const TOOL_PHYSICS_RULE> tool_physics_rules();

// In the order of the rows. A cell that is none of its type is left to the checks of cells.
struct TOOL_PHYSICS_FINDING {
    const TOOL_CSV_ROW* row;
    TOOL_CSV_FAULT fault;
};
std::vector<TOOL_PHYSICS_FINDING> tool_physics_findings(const std::vector<TOOL_CSV_ROW>& rows);

#endif
