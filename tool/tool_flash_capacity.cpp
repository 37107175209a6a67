// Which series tell their density by a byte of the identification.
//
// Most makers answer log2 of the size in bytes as the third byte; some go on counting behind 0x19, 32 MiB, as if it
// were decimal: 0x20 is 64 MiB. A series is named by the two bytes before. One that is not listed tells nothing: its
// byte is a number of its own, or nobody has compared it with enough chips.
#include "tool_flash_capacity.h"

#include <algorithm>
#include <iterator>

namespace {

using BYTE = unsigned char;

// Of these series every byte tells the density.
struct POWER_SERIES {
    BYTE mfc_id;
    BYTE memory_type;
    BYTE ignored_bits = 0; // of the byte: they tell the supply voltage
};

constexpr POWER_SERIES POWER_SERIES_LIST[] = {
    {0x01, 0x20},       {0x01, 0x40},       {0x01, 0x60}, // S25FL-P, -K, -L
    {0x1C, 0x20},       {0x1C, 0x30},       {0x1C, 0x31},       {0x1C, 0x38}, {0x1C, 0x60},
    {0x1C, 0x70}, // EN25
    {0x1C, 0x71}, // EN25SX
    {0x20, 0x20},       {0x20, 0x40},       {0x20, 0x41},       {0x20, 0x44}, {0x20, 0x50},
    {0x20, 0x70},                                                                           // M25P, M45PE, XM25
    {0x20, 0x71},       {0x20, 0x80},       {0x20, 0xBA},       {0x20, 0xBB}, {0x2C, 0x5B}, // M25PX, N25Q, MT25Q, MT35X
    {0x62, 0x16},       {0x68, 0x40},       {0x68, 0x41},       {0x68, 0x49},               // SST25WF-A, BY25
    {0x85, 0x20},       {0x85, 0x40},       {0x85, 0x60},       {0x8C, 0x20}, {0x8C, 0x21},
    {0x8C, 0x41},                                                                           // P25Q, PY25, F25L
    {0x9D, 0x60},       {0x9D, 0x70},                                                       // IS25LP, IS25WP
    {0xBA, 0x20},       {0xBA, 0x32},       {0xBA, 0x42},       {0xBA, 0x43}, {0xBA, 0x60}, // ZD25
    {0xC2, 0x20},       {0xC2, 0x22},       {0xC2, 0x23},       {0xC2, 0x24}, {0xC2, 0x26},
    {0xC2, 0x28},                                               // MX25L, MX25V, MX25R
    {0xC2, 0x9E},                                               // MX25L-55
    {0xC2, 0x25, 0x20}, {0xC2, 0x75, 0x20}, {0xC2, 0x85, 0x20}, // MX25U, MX77U, MX25LM
    {0xC8, 0x31},       {0xC8, 0x40},       {0xC8, 0x42},       {0xC8, 0x43}, {0xC8, 0x47},
    {0xC8, 0x60},                     // GD25, GD55
    {0xC8, 0x63},       {0xC8, 0x67}, // GD25, GD55
    {0xEF, 0x20},       {0xEF, 0x30},       {0xEF, 0x40},       {0xEF, 0x50}, {0xEF, 0x60},
    {0xEF, 0x61},                     // W25P, W25X, W25Q, W25M
    {0xEF, 0x70},       {0xEF, 0x80}, // W25Q
};

// Of these, bytes that stand in a row for densities in a row; the bytes between are taken by other chips.
struct NUMBERED_SERIES {
    BYTE mfc_id;
    BYTE first_type;
    BYTE last_type;
    BYTE first_id;
    BYTE last_id;
    BYTE log2_bytes; // of the first
    bool is_by_type; // the type byte counts
};

constexpr NUMBERED_SERIES NUMBERED_SERIES_LIST[] = {
    {0x01, 0x02, 0x02, 0x12, 0x16, 19, false}, // S25FL-A
    {0x01, 0x02, 0x02, 0x19, 0x19, 25, false}, // S25FL-S
    {0x01, 0x02, 0x02, 0x20, 0x21, 26, false}, // S25FL-S
    {0x1F, 0x42, 0x42, 0x16, 0x18, 22, false}, // AT25SL
    {0x1F, 0x43, 0x48, 0x00, 0x0F, 18, true},  // AT25DF, AT26DF
    {0x1F, 0x84, 0x89, 0x00, 0x0F, 19, true},  // AT25SF, AT25DQ
    {0xBF, 0x25, 0x25, 0x01, 0x05, 16, false}, // SST25WF
    {0xBF, 0x25, 0x25, 0x4A, 0x4B, 22, false}, // SST25VF
    {0xBF, 0x25, 0x25, 0x8C, 0x8E, 18, false}, // SST25VF
    {0xBF, 0x26, 0x26, 0x41, 0x43, 21, false}, // SST26VF
};

// A density in bits has 32: 2^28 bytes are the most.
constexpr unsigned int LEAST_POWER = 10;
constexpr unsigned int MOST_POWER = 28;

std::optional<unsigned int> bytes_of_power(unsigned int code) {
    constexpr unsigned int FIRST_DECIMAL = 0x20;
    const unsigned int power = code < FIRST_DECIMAL ? code : code - FIRST_DECIMAL + 26;
    if (power < LEAST_POWER || power > MOST_POWER)
        return std::nullopt;
    return 1U << power;
}

} // namespace

std::optional<TOOL_CAPACITY> tool_flash_capacity(unsigned int mfc_id, unsigned int memory_type,
                                                 unsigned int memory_id) {
    const auto* const power =
        std::find_if(std::begin(POWER_SERIES_LIST), std::end(POWER_SERIES_LIST), [=](const POWER_SERIES& series) {
            return series.mfc_id == mfc_id && series.memory_type == memory_type;
        });
    if (power != std::end(POWER_SERIES_LIST))
        return TOOL_CAPACITY{"memory_id", bytes_of_power(memory_id & ~unsigned{power->ignored_bits})};
    const auto* const numbered = std::find_if(std::begin(NUMBERED_SERIES_LIST), std::end(NUMBERED_SERIES_LIST),
                                              [=](const NUMBERED_SERIES& series) {
                                                  return series.mfc_id == mfc_id && series.first_type <= memory_type &&
                                                         memory_type <= series.last_type &&
                                                         series.first_id <= memory_id && memory_id <= series.last_id;
                                              });
    if (numbered == std::end(NUMBERED_SERIES_LIST))
        return std::nullopt;
    const unsigned int step =
        numbered->is_by_type ? memory_type - numbered->first_type : memory_id - numbered->first_id;
    return TOOL_CAPACITY{numbered->is_by_type ? "memory_type" : "memory_id", 1U << (numbered->log2_bytes + step)};
}
