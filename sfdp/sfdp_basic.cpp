// Basic table, dwords 1 to 9 and the page size of dword 11: capabilities, density, fast reads, geometry.
#include "sfdp_parts.h"

namespace {

constexpr unsigned DENSITY_EXPONENT_MOST = 32; // 4 Gbit
constexpr std::uint64_t DENSITY_BITS_LEAST = 65536;
constexpr unsigned ERASE_TYPES = 4;

std::string type_text(const SFDP_ERASE_TYPE& type) {
    return "erase type " + std::to_string(type.index);
}

SFDP_FAULT read_density(const SFDP_DWORDS& basic, SFDP_TABLE& table) {
    const std::uint32_t value = basic[2];
    const std::uint32_t field = sfdp_bits(value, 30, 0);
    table.density_is_power = sfdp_bit(value, 31);
    if (table.density_is_power && field > DENSITY_EXPONENT_MOST)
        return SFDP_REFUSAL{"density_too_large",
                            "the density is 2^" + std::to_string(field) +
                                " bits, more than 4 Gbit, the most that is read",
                            basic.offset(2)};
    table.density_bits = table.density_is_power ? std::uint64_t{1} << field : std::uint64_t{field} + 1;
    const std::string density = "the density is " + std::to_string(table.density_bits) + " bits, ";
    if (table.density_bits < DENSITY_BITS_LEAST)
        return SFDP_REFUSAL{"density_too_small", density + "less than 64 Kbit", basic.offset(2)};
    if (table.density_bits % 8 != 0)
        return SFDP_REFUSAL{"density_not_whole_bytes", density + "which is no whole number of bytes", basic.offset(2)};
    return std::nullopt;
}

struct FAST_READ_PLACE {
    const char* mode;
    unsigned dword;
    bool is_high_half;
    unsigned flag_dword; // 0: the opcode says alone whether the mode exists
    unsigned flag_bit;
};

constexpr FAST_READ_PLACE FAST_READS[] = {
    {"1-1-2", 4, false, 1, 16}, {"1-2-2", 4, true, 1, 20}, {"1-1-4", 3, true, 1, 22}, {"1-4-4", 3, false, 1, 21},
    {"2-2-2", 6, true, 5, 0},   {"4-4-4", 7, true, 5, 4},  {"1-1-8", 17, true, 0, 0}, {"1-8-8", 17, false, 0, 0},
};

bool has_mode(const SFDP_DWORDS& basic, const FAST_READ_PLACE& place) {
    return basic.has(place.dword) && (place.flag_dword == 0 || sfdp_bit(basic[place.flag_dword], place.flag_bit));
}

SFDP_ERASE_TYPE erase_type(const SFDP_DWORDS& basic, unsigned index, unsigned& exponent) {
    const std::uint32_t word = basic[index <= 2 ? 8 : 9] >> (index % 2 == 0 ? 16 : 0);
    SFDP_ERASE_TYPE type;
    type.index = index;
    exponent = sfdp_bits(word, 7, 0);
    type.opcode = sfdp_bits(word, 15, 8);
    return type;
}

std::size_t erase_offset(const SFDP_DWORDS& basic, unsigned index) {
    return basic.offset(8) + std::size_t{2} * (index - 1);
}

SFDP_FAULT read_erase_type(const SFDP_DWORDS& basic, unsigned index, SFDP_TABLE& table) {
    unsigned exponent = 0;
    SFDP_ERASE_TYPE type = erase_type(basic, index, exponent);
    if (exponent == 0)
        return std::nullopt; // there is no such type
    const std::size_t offset = erase_offset(basic, index);
    if (exponent > 31 || std::uint64_t{1} << exponent > table.density_bits / 8)
        return SFDP_REFUSAL{"erase_larger_than_device",
                            type_text(type) + " erases 2^" + std::to_string(exponent) + " bytes, the flash has " +
                                std::to_string(table.density_bits / 8),
                            offset};
    if (!sfdp_is_opcode(type.opcode))
        return SFDP_REFUSAL{"erase_opcode_missing",
                            type_text(type) + " has a size, and " + sfdp_hex(type.opcode, 2) + " for its opcode",
                            offset + 1};
    type.size = std::uint32_t{1} << exponent;
    table.erase_types.push_back(type);
    return std::nullopt;
}

SFDP_FAULT read_erase_types(const SFDP_DWORDS& basic, SFDP_TABLE& table) {
    for (unsigned index = 1; index <= ERASE_TYPES; ++index)
        if (SFDP_FAULT fault = read_erase_type(basic, index, table))
            return fault;
    if (table.erase_types.empty())
        return SFDP_REFUSAL{"no_erase_type", "none of the four erase types exists", basic.offset(8)};
    if (const SFDP_ERASE_TYPE* type = sfdp_ambiguous_erase(table); type && !sfdp_has_sector_map(table))
        return SFDP_REFUSAL{"one_opcode_two_sizes",
                            type_text(*type) + " has the opcode " + sfdp_hex(type->opcode, 2) +
                                " of another size, and no sector map tells where each holds",
                            erase_offset(basic, type->index) + 1};
    return std::nullopt;
}

SFDP_FAULT read_page(const SFDP_DWORDS& basic, SFDP_TABLE& table) {
    if (!basic.has(11))
        return std::nullopt;
    table.page_is_default = false;
    table.page_bytes = std::uint32_t{1} << sfdp_bits(basic[11], 7, 4);
    if (table.page_bytes == 1)
        return SFDP_REFUSAL{"page_of_one_byte", "the page has 2^0 bytes", basic.offset(11)};
    return std::nullopt;
}

// Pages make up blocks, and blocks the flash.
SFDP_FAULT check_blocks(const SFDP_DWORDS& basic, const SFDP_TABLE& table) {
    for (const SFDP_ERASE_TYPE& type : table.erase_types) {
        const std::string size = type_text(type) + " erases " + std::to_string(type.size) + " bytes, ";
        if (type.size < table.page_bytes)
            return SFDP_REFUSAL{"page_larger_than_erase",
                                size + "less than a page of " + std::to_string(table.page_bytes),
                                table.page_is_default ? erase_offset(basic, type.index) : basic.offset(11)};
        if (table.density_bits / 8 % type.size != 0)
            return SFDP_REFUSAL{"density_not_whole_blocks",
                                size + "and the flash's " + std::to_string(table.density_bits / 8) +
                                    " bytes are no whole number of such blocks",
                                basic.offset(2)};
    }
    return std::nullopt;
}

} // namespace

SFDP_FAULT sfdp_read_capabilities(const SFDP_DWORDS& basic, SFDP_TABLE& table) {
    if (SFDP_FAULT fault = read_density(basic, table))
        return fault;
    const std::uint32_t word = basic[1];
    const std::uint32_t mode = sfdp_bits(word, 18, 17);
    if (mode == 3)
        return SFDP_REFUSAL{"reserved_address_mode", "the address mode is 3, which is reserved", basic.offset(1) + 2};
    table.address_mode = static_cast<SFDP_ADDRESS_MODE>(mode);
    table.uniform_4k = sfdp_bits(word, 1, 0) == 1;
    table.write_granularity_64plus = sfdp_bit(word, 2);
    table.opcode_4k = sfdp_bits(word, 15, 8);
    table.dtr = sfdp_bit(word, 19);
    return std::nullopt;
}

// A group of 16 bits: 4:0 dummy clocks, 7:5 mode clocks, 15:8 opcode. What an absent mode's group holds means nothing.
void sfdp_read_fast_reads(const SFDP_DWORDS& basic, SFDP_TABLE& table) {
    for (const FAST_READ_PLACE& place : FAST_READS) {
        if (!has_mode(basic, place))
            continue;
        const std::uint32_t group = basic[place.dword] >> (place.is_high_half ? 16 : 0);
        const SFDP_FAST_READ read = {place.mode, sfdp_bits(group, 15, 8), sfdp_bits(group, 7, 5),
                                     sfdp_bits(group, 4, 0)};
        if (sfdp_is_opcode(read.opcode))
            table.fast_reads.push_back(read);
    }
}

SFDP_FAULT sfdp_read_geometry(const SFDP_DWORDS& basic, SFDP_TABLE& table) {
    if (SFDP_FAULT fault = read_erase_types(basic, table))
        return fault;
    if (SFDP_FAULT fault = read_page(basic, table))
        return fault;
    return check_blocks(basic, table);
}

const SFDP_ERASE_TYPE* sfdp_ambiguous_erase(const SFDP_TABLE& table) {
    for (const SFDP_ERASE_TYPE& type : table.erase_types)
        for (const SFDP_ERASE_TYPE& former : table.erase_types)
            if (former.index < type.index && former.opcode == type.opcode && former.size != type.size)
                return &type;
    return nullptr;
}
