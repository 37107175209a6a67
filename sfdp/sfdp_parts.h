// The parts that a decoder of serial flash discoverable parameters is made of. Each fills its fields of an SFDP_TABLE
// and says why it refuses.
//
// All numbers of an image are little-endian. A table's 32-bit words ("dwords") are counted from 1, bits from the least
// significant, 0.
#ifndef SFDP_PARTS_H
#define SFDP_PARTS_H

#include "sfdp.h"

using SFDP_IMAGE = std::span<const std::uint8_t>;
using SFDP_FAULT = std::optional<SFDP_REFUSAL>; // none: not refused

constexpr std::uint16_t SFDP_ID_BASIC = 0xFF00;
constexpr std::uint16_t SFDP_ID_SECTOR_MAP = 0xFF81;
constexpr std::uint16_t SFDP_ID_FOUR_BYTE = 0xFF84;

// Bits high to low of a dword.
constexpr std::uint32_t sfdp_bits(std::uint32_t word, unsigned high, unsigned low) {
    return static_cast<std::uint32_t>((std::uint64_t{word} >> low) & ((std::uint64_t{1} << (high - low + 1)) - 1));
}

constexpr bool sfdp_bit(std::uint32_t word, unsigned bit) {
    return (word >> bit & 1U) != 0;
}

// FF is what an erased table holds, 00 no instruction of any flash.
constexpr bool sfdp_is_opcode(unsigned opcode) {
    return opcode != 0x00 && opcode != 0xFF;
}

// The dwords of one table whose whole length lies inside the image.
class SFDP_DWORDS {
public:
    SFDP_DWORDS(SFDP_IMAGE image, const SFDP_TABLE_HEADER& header) : m_image(image), m_header(header) {}

    bool has(unsigned dword) const { return dword <= m_header.dwords; }
    std::size_t offset(unsigned dword) const { return m_header.offset + std::size_t{4} * (dword - 1); }

    // Only where has(dword).
    std::uint32_t operator[](unsigned dword) const {
        const SFDP_IMAGE bytes = m_image.subspan(offset(dword), 4);
        return bytes[0] | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16 | std::uint32_t{bytes[3]} << 24;
    }

private:
    SFDP_IMAGE m_image;
    SFDP_TABLE_HEADER m_header;
};

// "2C", "0102FF00": at least `digits` digits.
std::string sfdp_hex(std::uint64_t value, unsigned digits);

// What stands in place of the signature, for people; `image` has eight bytes or more and does not begin with SFDP.
std::string sfdp_foreign_text(SFDP_IMAGE image);

// The dwords 1 and 2 of the basic table: capabilities and density.
SFDP_FAULT sfdp_read_capabilities(const SFDP_DWORDS& basic, SFDP_TABLE& table);
void sfdp_read_fast_reads(const SFDP_DWORDS& basic, SFDP_TABLE& table);
// The dwords 8 and 9, and the page size; wants the density.
SFDP_FAULT sfdp_read_geometry(const SFDP_DWORDS& basic, SFDP_TABLE& table);
// The dwords 10 to 14; wants the erase types.
void sfdp_read_times(const SFDP_DWORDS& basic, SFDP_TABLE& table);
void sfdp_read_polling(const SFDP_DWORDS& basic, SFDP_TABLE& table);
// The dwords 15 to 20.
void sfdp_read_modes(const SFDP_DWORDS& basic, SFDP_TABLE& table);
// Table FF84; wants the erase types.
bool sfdp_declares_four_byte_erase(const SFDP_DWORDS& words, unsigned index);
unsigned sfdp_four_byte_erase_opcode(const SFDP_DWORDS& words, unsigned index);
SFDP_FOUR_BYTE_TABLE sfdp_read_four_byte(const SFDP_DWORDS& words, const SFDP_TABLE& table);

// Wants all else. `four_byte` is the dwords of FF84 where there is one.
std::vector<std::string> sfdp_warnings(SFDP_IMAGE image, const SFDP_TABLE& table,
                                       const std::optional<SFDP_DWORDS>& four_byte);

// One instruction erases blocks of two sizes.
const SFDP_ERASE_TYPE* sfdp_ambiguous_erase(const SFDP_TABLE& table);
bool sfdp_has_sector_map(const SFDP_TABLE& table);

#endif
