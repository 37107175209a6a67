// What a flash record compares with an answer, byte by byte.
#ifndef TOOL_FLASH_MATCH_H
#define TOOL_FLASH_MATCH_H

#include "tovren_flash_info.h"

#include <optional>
#include <span>
#include <vector>

struct TOOL_COMPARED_BYTE {
    const char* member;        // "memory_id"
    unsigned int place;        // in the answer, from 0
    BYTE expected;             // by the record
    std::optional<BYTE> found; // none: the answer ends before it

    bool is_equal() const { return found == expected; }
};

// In the order in which a device is mapped: memory ID, memory type (unless its index is 0xFF), maker; of a record with
// a silicon ID that alone.
std::vector<TOOL_COMPARED_BYTE> tool_compared_bytes(const TOVREN_SFL_FLASH_INFO& record, std::span<const BYTE> answer);

// How many of them are not equal.
size_t tool_miss_count(const std::vector<TOOL_COMPARED_BYTE>& compared);

// Whether the record is of the kind that is looked for, and no byte misses.
bool tool_is_match(const TOVREN_SFL_FLASH_INFO& record, std::span<const BYTE> answer, bool by_silicon_id);

#endif
