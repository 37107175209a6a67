// What the parameter table of a flash (SFDP) says about the members of a flash record.
#ifndef TOOL_SFDP_RECORD_H
#define TOOL_SFDP_RECORD_H

#include "sfdp.h"
#include "tovren_flash_info.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// A member in which a record and a table differ; both values for people, with units.
struct SFDP_DIFFERENCE {
    std::string member;
    std::string record_value;
    std::string table_value;
};

// In record order. Only what the table tells is compared; times are its longest ones, rounded up to the member's unit,
// of the erase type that has the record's sector size. A page size other than 256 bytes, which no member holds, stands
// last, as "page".
std::vector<SFDP_DIFFERENCE> sfdp_differences(const TOVREN_SFL_FLASH_INFO& record, const SFDP_TABLE& table);

// The slowest erase type of that many bytes; null where there is none.
const SFDP_ERASE_TYPE* tool_sfdp_erase_type_of(const SFDP_TABLE& table, std::uint64_t size);

// The larger of its two readings; none where the table is too short.
std::optional<std::uint64_t> tool_sfdp_longest_chip_erase_ms(const SFDP_TABLE& table);

// A sector map: erase sizes depend on the address.
bool tool_sfdp_has_sector_map(const SFDP_TABLE& table);

// Instructions of four address bytes for reading, programming and erasing.
bool tool_sfdp_has_four_byte_instructions(const SFDP_TABLE& table);

// More than three address bytes reach all of it, or it takes no fewer than four.
bool tool_sfdp_needs_four_bytes(const SFDP_TABLE& table);

// The table says how: such instructions, or a way to change the mode. One that says "three address bytes only" does
// not, whatever else it names.
bool tool_sfdp_tells_four_bytes(const SFDP_TABLE& table);

std::string tool_sfdp_milliseconds_text(std::uint64_t milliseconds); // "420 ms", "5.376 s"

#endif
