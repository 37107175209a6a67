// Basic table, dwords 10 to 14: times, suspend, polling, deep power-down.
//
// A time is stored as a count and a unit, (count + 1) * unit; the longest one is the typical one times a factor
// 2 * (M + 1).
#include "sfdp_parts.h"

namespace {

using UNITS = std::array<std::uint64_t, 4>;

constexpr UNITS ERASE_UNITS_MS = {1, 16, 128, 1000};
constexpr UNITS CHIP_ERASE_UNITS_MS = {16, 256, 4000, 64000};
constexpr UNITS LATENCY_UNITS_NS = {128, 1000, 8000, 64000};
constexpr std::uint64_t RESUME_UNIT_US = 64;

// The count stands in five bits from `low`, its unit in the two bits above.
std::uint64_t long_time(std::uint32_t word, unsigned low, const UNITS& units) {
    return (sfdp_bits(word, low + 4, low) + std::uint64_t{1}) * units[sfdp_bits(word, low + 6, low + 5)];
}

// The count stands in the bits from `low` to below `unit_bit`, which chooses between two units.
std::uint64_t short_time(std::uint32_t word, unsigned low, unsigned unit_bit, unsigned unit, unsigned long_unit) {
    return (sfdp_bits(word, unit_bit - 1, low) + std::uint64_t{1}) * (sfdp_bit(word, unit_bit) ? long_unit : unit);
}

unsigned factor(std::uint32_t word) {
    return 2 * (sfdp_bits(word, 3, 0) + 1);
}

void read_erase_times(std::uint32_t word, SFDP_TABLE& table) {
    const unsigned most = factor(word);
    table.erase_max_factor = most;
    for (SFDP_ERASE_TYPE& type : table.erase_types) {
        type.typ_ms = long_time(word, 4 + 7 * (type.index - 1), ERASE_UNITS_MS);
        type.max_ms = *type.typ_ms * most;
    }
}

void read_program_times(std::uint32_t word, SFDP_TABLE& table) {
    const unsigned most = factor(word);
    table.program_max_factor = most;
    table.page_program_typ_us = short_time(word, 8, 13, 8, 64);
    table.byte_program_first_typ_us = short_time(word, 14, 18, 1, 8);
    table.byte_program_next_typ_us = short_time(word, 19, 23, 1, 8);
    table.page_program_max_us = *table.page_program_typ_us * most;
    table.byte_program_first_max_us = *table.byte_program_first_typ_us * most;
    table.byte_program_next_max_us = *table.byte_program_next_typ_us * most;
    table.chip_erase_typ_ms = long_time(word, 24, CHIP_ERASE_UNITS_MS);
    table.chip_erase_max_ms = *table.chip_erase_typ_ms * table.erase_max_factor.value_or(0);
    table.chip_erase_max_ms_if_program_factor = *table.chip_erase_typ_ms * most;
}

SFDP_SUSPEND suspend(std::uint32_t times, std::uint32_t opcodes) {
    SFDP_SUSPEND suspend;
    suspend.supported = !sfdp_bit(times, 31);
    if (!suspend.supported)
        return suspend;
    suspend.program_resume_to_suspend_us = (sfdp_bits(times, 12, 9) + 1) * RESUME_UNIT_US;
    suspend.program_suspend_latency_ns = long_time(times, 13, LATENCY_UNITS_NS);
    suspend.erase_resume_to_suspend_us = (sfdp_bits(times, 23, 20) + 1) * RESUME_UNIT_US;
    suspend.erase_suspend_latency_ns = long_time(times, 24, LATENCY_UNITS_NS);
    suspend.suspend_opcode = sfdp_bits(opcodes, 31, 24);
    suspend.resume_opcode = sfdp_bits(opcodes, 23, 16);
    suspend.program_suspend_opcode = sfdp_bits(opcodes, 15, 8);
    suspend.program_resume_opcode = sfdp_bits(opcodes, 7, 0);
    return suspend;
}

} // namespace

void sfdp_read_times(const SFDP_DWORDS& basic, SFDP_TABLE& table) {
    if (basic.has(10))
        read_erase_times(basic[10], table);
    if (basic.has(11))
        read_program_times(basic[11], table);
    if (basic.has(13))
        table.suspend = suspend(basic[12], basic[13]);
}

// Where both ways to poll are declared the status register counts, and so it does where neither is.
void sfdp_read_polling(const SFDP_DWORDS& basic, SFDP_TABLE& table) {
    if (!basic.has(14))
        return;
    const std::uint32_t word = basic[14];
    table.legacy_status_polling = sfdp_bit(word, 2);
    table.flag_status_register = sfdp_bit(word, 3);
    table.poll_flag_status = sfdp_bit(word, 3) && !sfdp_bit(word, 2);
    if (!sfdp_bit(word, 31))
        table.deep_power_down = SFDP_DEEP_POWER_DOWN{sfdp_bits(word, 30, 23), sfdp_bits(word, 22, 15),
                                                     long_time(word, 8, LATENCY_UNITS_NS)};
}
