// The series of a flash: what stands in its name before the density, "MX25L" of MX25L25645G.
//
// Members of a series share what no parameter table tells: voltage, protection bits, programming flows. A record of the
// same series is a guess for a chip that the database does not hold.
#ifndef TOOL_FLASH_SERIES_H
#define TOOL_FLASH_SERIES_H

#include "tovren_flash_info.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

// Letters, digits, letters up to the next digit: "W25Q" of W25Q64JV, "S25FL" of S25FL128S. Where the first digits are
// the density itself, or the only ones, the letters before them: "QXS" of QXS128. In upper case; empty for a name that
// begins with no letter or has no digit.
std::string tool_flash_series(const std::string& name, unsigned long long bits);

using TOOL_FLASH_RECORDS = std::vector<const TOVREN_SFL_FLASH_INFO*>;

// The chip that records are looked for.
struct TOOL_FLASH_WANTED {
    std::span<const unsigned char> id; // its answer: maker, type and capacity first
    std::optional<std::string> name;
    std::optional<std::string> maker;
    unsigned long long bits = 0; // density
};

struct TOOL_FLASH_SIBLINGS {
    std::string series;         // empty where none is known
    std::string pointed_to_by;  // what the series is known from
    TOOL_FLASH_RECORDS records; // of the same manufacturer byte and series, the closest first
    std::string absence;        // why there are none
};

// The records of the wanted chip's series. Without a name the series is that of the records that answer the same three
// bytes, else that of those with the same manufacturer and type byte, where they agree. Closest is the same name, then
// the same answer, the same type byte, the smallest step in density, the larger chip, the earlier record.
TOOL_FLASH_SIBLINGS tool_flash_siblings(const TOOL_FLASH_RECORDS& records, const TOOL_FLASH_WANTED& wanted);

// Recognised by a manufacturer, a type and a capacity byte at places 0, 1 and 2.
bool tool_has_usual_id(const TOVREN_SFL_FLASH_INFO& record);

// The different texts of a member, in the order of the records.
std::vector<std::string> tool_different_texts(const TOOL_FLASH_RECORDS& records,
                                              std::string TOVREN_SFL_FLASH_INFO::*member);

#endif
