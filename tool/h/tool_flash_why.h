// Why an answer identifies the flash that it does, or none: every record that the answer matches or misses by a byte.
#ifndef TOOL_FLASH_WHY_H
#define TOOL_FLASH_WHY_H

#include "tool_flash_cause.h"
#include "tool_flash_csv.h"
#include "tool_flash_match.h"
#include "tool_flash_tell.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <utility>
#include <vector>

class TOOL_OUTPUT;

// What the answers of a chain are held against.
struct TOOL_WHY_TABLES {
    std::vector<TOVREN_SFL_FLASH_INFO> records; // of the database file
    std::vector<TOOL_LISTED_FLASH> listed;      // loaded and hidden ones, in scan order
    std::optional<TOOL_FLASH_CSV> csv;
    std::vector<TOOL_EXTENDED_ID> extended_ids;
};

struct TOOL_WHY_RECORD {
    const TOOL_LISTED_FLASH* flash;
    std::vector<TOOL_COMPARED_BYTE> compared;
    size_t miss_count;         // 0 or 1
    unsigned int csv_line = 0; // 0: not in the description
    bool is_taken = false;

    bool is_hidden() const { return flash->index == INVALID_DWORD; }
};

struct TOOL_FLASH_WHY {
    std::vector<BYTE> answer;
    std::vector<TOOL_WHY_RECORD> records; // those that match or miss by one byte, in scan order
    std::vector<TOOL_FLASH_CAUSE> causes; // of an answer that nothing matches
    std::vector<size_t> candidates;       // positions among the records of those that may be taken
    TOOL_TELLING telling;                 // of the candidates

    const TOOL_WHY_RECORD& candidate(size_t i) const { return records[candidates[i]]; } // 0 is taken

    // The settings that hide records of the list, each with these records' names, in scan order.
    std::vector<std::pair<std::string, std::vector<std::string>>> hidden() const;
};

TOOL_FLASH_WHY tool_flash_why(std::span<const BYTE> answer, bool by_silicon_id, const TOOL_WHY_TABLES& tables);

void tool_write_why(const TOOL_FLASH_WHY& why, size_t device, const TOOL_WHY_TABLES& tables, const TOOL_OUTPUT& output);
nlohmann::ordered_json tool_why_json(const TOOL_FLASH_WHY& why, const TOOL_WHY_TABLES& tables);

// "  words behind each other", broken before the last column of a terminal of `width` columns (0: not broken), further
// lines indented.
std::string tool_wrapped(const std::vector<std::string>& words, unsigned int width);

#endif
