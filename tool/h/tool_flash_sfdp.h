// `tovren flash define --sfdp`: a definition from what a chip says of itself.
#ifndef TOOL_FLASH_SFDP_H
#define TOOL_FLASH_SFDP_H

#include "tool_error.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

struct TOOL_SFDP_OPTIONS {
    std::optional<std::string> file; // of the parameter table; "-" for standard input
    std::optional<std::string> id;
    std::vector<std::string> members; // NAME=VALUE
};

// NOLINTNEXTLINE(bugprone-exception-escape): a JSON value moves by a function that may throw and says it does not
struct TOOL_SFDP_OUTCOME {
    std::string definition; // empty where there is a refusal
    std::optional<TOOL_ERROR> refusal;
    nlohmann::ordered_json document; // where every member comes from, and what does not fit together
};

// Reads the table and fills a definition. `is_reported`: where the members come from goes to standard error.
TOOL_SFDP_OUTCOME tool_define_by_sfdp(const TOOL_SFDP_OPTIONS& options, bool is_reported);

#endif
