// A decoded table of serial flash discoverable parameters as JSON. What the table is too short for is null; the members
// of octal mode are there only where the table reaches them.
#ifndef TOOL_SFDP_JSON_H
#define TOOL_SFDP_JSON_H

#include "sfdp.h"

#include <nlohmann/json_fwd.hpp>

nlohmann::ordered_json tool_sfdp_json(const SFDP_TABLE& table);

#endif
