// What may have happened to an answer that no flash gives: a fault of the connection or of the reading, undone, makes
// it the answer of a known flash.
#ifndef TOOL_FLASH_CAUSE_H
#define TOOL_FLASH_CAUSE_H

#include "tool_flash_database.h"
#include "tovren_types.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

// An answer of nothing but one byte.
struct TOOL_STUCK_LINE {
    const char* kind;
    const char* look; // "all ones"
    const char* cause;
};
std::optional<TOOL_STUCK_LINE> tool_stuck_line(std::span<const BYTE> answer);

// Flashes with one identification that an answer may have been.
struct TOOL_MEANT_FLASHES {
    std::string answer;             // "20BA18", as tool_flash_id_text
    std::string note;               // where the fault would be: "bit 3 of byte 2"; often empty
    std::vector<std::string> names; // in scan order, each once; a hidden one with "(hidden)" behind
};

struct TOOL_FLASH_CAUSE {
    std::string kind;                      // one word for programs: "bit_late"
    std::string text;                      // for people, without a full stop
    std::vector<TOOL_MEANT_FLASHES> meant; // a handful at most; empty for a cause that leads to no flash
    size_t left_out = 0;                   // identifications past the handful
    bool is_silicon_id = false;            // they are silicon IDs
};

// The causes that fit, the most plausible first: first those that need no flash to be seen, then those that make the
// whole identification of a known one, then those that are weaker. `answer` is one that no record of `known` gives.
//
//     all_ones, all_zeros, repeated_byte    nothing answers, or the line is stuck; nothing else is looked for
//     other_kind        a silicon ID taken for a device ID or the other way round
//     command_echo      byte 0 is the command 9Fh, and the identification stands behind it
//     continuation      bytes 7Fh stand before the identification
//     dummy_byte        byte 0 was read before the flash drove the line: 00 or FF
//     breaks_off        from byte 1 or 2 on the line is stuck
//     extra_byte, lost_byte    shifted by a byte
//     bit_late, bit_early      shifted by a bit
//     byte_order, bit_order, inverted, swapped_bytes, swapped_digits
//     unknown_flash     the maker is known, the flash is not
//     flipped_bit, other_byte  one bit, or one byte, is another
std::vector<TOOL_FLASH_CAUSE> tool_flash_causes(std::span<const BYTE> answer, bool by_silicon_id,
                                                const std::vector<TOOL_LISTED_FLASH>& known);

// "20BA18 (bit 3 of byte 2): N25Q128A, N25Q128A13 and 1 more": a handful of names.
std::string tool_meant_text(const TOOL_MEANT_FLASHES& meant);

#endif
