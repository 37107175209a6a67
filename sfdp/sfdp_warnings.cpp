// What is odd about an image that is accepted, a word each, always in this order.
#include "sfdp_parts.h"

#include <algorithm>
#include <bit>

namespace {

constexpr std::uint64_t THREE_BYTE_MOST = std::uint64_t{1} << 24;  // bytes that three address bytes reach
constexpr std::uint64_t POWER_FORM_LEAST = std::uint64_t{1} << 32; // bits

using WARNINGS = std::vector<std::string>;

bool is_same(const SFDP_TABLE_HEADER& left, const SFDP_TABLE_HEADER& right) {
    return left.id == right.id && left.major == right.major && left.minor == right.minor &&
           left.dwords == right.dwords && left.offset == right.offset;
}

// The tables that are read lie inside: only others can be meant.
void warn_of_tables(SFDP_IMAGE image, const SFDP_TABLE& table, WARNINGS& warnings) {
    if (table.tables.front().id != SFDP_ID_BASIC)
        warnings.emplace_back("first_header_not_bfpt");
    for (const SFDP_TABLE_HEADER& header : table.tables)
        if (!is_same(header, table.bfpt) && header.offset + std::size_t{4} * header.dwords > image.size())
            warnings.push_back("other_table_past_end:" + sfdp_hex(header.id, 4));
}

void warn_of_density(const SFDP_TABLE& table, WARNINGS& warnings) {
    if (table.density_is_power && table.density_bits < POWER_FORM_LEAST)
        warnings.emplace_back("power_density_below_4Gbit");
    if (!std::has_single_bit(table.density_bits))
        warnings.emplace_back("density_not_power_of_two");
}

void warn_of_addressing(const SFDP_TABLE& table, WARNINGS& warnings) {
    if (table.address_mode != SFDP_ADDRESS_MODE::THREE)
        return;
    if (table.density_bits / 8 > THREE_BYTE_MOST)
        warnings.emplace_back("over_16MiB_but_3byte_only");
    if (table.enter_4byte && !table.enter_4byte->empty())
        warnings.emplace_back("4byte_methods_on_3byte_part");
}

void warn_of_erases(const SFDP_TABLE& table, WARNINGS& warnings) {
    if (sfdp_has_sector_map(table))
        warnings.emplace_back("sector_map_present");
    if (sfdp_ambiguous_erase(table))
        warnings.emplace_back("one_opcode_two_sizes");
    const auto is_4k = [&table](const SFDP_ERASE_TYPE& type) {
        return type.size == 4096 && type.opcode == table.opcode_4k;
    };
    if (table.uniform_4k && std::none_of(table.erase_types.begin(), table.erase_types.end(), is_4k))
        warnings.emplace_back("4k_opcode_disagrees_with_erase_types");
}

void warn_of_modes(const SFDP_TABLE& table, WARNINGS& warnings) {
    if (table.legacy_status_polling == false && table.flag_status_register == false)
        warnings.emplace_back("no_polling_method_declared");
    if (table.quad_enable_code == 7U)
        warnings.emplace_back("quad_enable_reserved_code");
}

void warn_of_four_byte(const SFDP_DWORDS& words, const SFDP_TABLE& table, WARNINGS& warnings) {
    if (table.four_byte_table->supported.empty() && table.four_byte_table->erase.empty())
        warnings.emplace_back("ff84_empty");
    for (const SFDP_ERASE_TYPE& type : table.erase_types)
        if (sfdp_declares_four_byte_erase(words, type.index) &&
            !sfdp_is_opcode(sfdp_four_byte_erase_opcode(words, type.index)))
            warnings.push_back("ff84_erase_without_opcode:" + std::to_string(type.index));
}

} // namespace

std::vector<std::string> sfdp_warnings(SFDP_IMAGE image, const SFDP_TABLE& table,
                                       const std::optional<SFDP_DWORDS>& four_byte) {
    WARNINGS warnings;
    warn_of_tables(image, table, warnings);
    warn_of_density(table, warnings);
    warn_of_addressing(table, warnings);
    warn_of_erases(table, warnings);
    warn_of_modes(table, warnings);
    if (four_byte)
        warn_of_four_byte(*four_byte, table, warnings);
    return warnings;
}
