// Table FF84: instructions that always take four address bytes. Dword 1 has a bit for each, dword 2 the opcodes of the
// four erase types.
#include "sfdp_parts.h"

namespace {

struct INSTRUCTION {
    unsigned bit;
    const char* name;
    unsigned opcode;
};

constexpr INSTRUCTION INSTRUCTIONS[] = {
    {0, "read_1_1_1", 0x13},
    {1, "fast_read_1_1_1", 0x0C},
    {2, "fast_read_1_1_2", 0x3C},
    {3, "fast_read_1_2_2", 0xBC},
    {4, "fast_read_1_1_4", 0x6C},
    {5, "fast_read_1_4_4", 0xEC},
    {6, "program_1_1_1", 0x12},
    {7, "program_1_1_4", 0x34},
    {8, "program_1_4_4", 0x3E},
    {13, "dtr_read_1_1_1", 0x0E},
    {14, "dtr_read_1_2_2", 0xBE},
    {15, "dtr_read_1_4_4", 0xEE},
    {16, "volatile_lock_read", 0xE0},
    {17, "volatile_lock_write", 0xE1},
    {18, "nonvolatile_lock_read", 0xE2},
    {19, "nonvolatile_lock_write", 0xE3},
    {20, "fast_read_1_1_8", 0x7C},
    {21, "fast_read_1_8_8", 0xCC},
    {22, "dtr_read_1_8_8", 0xFD},
    {23, "program_1_1_8", 0x84},
    {24, "program_1_8_8", 0x8E},
};

// Earlier revisions reserved the upper bits and filled them with ones: such a run of ones declares nothing.
std::uint32_t declared(std::uint32_t word) {
    if (sfdp_bits(word, 31, 20) != 0xFFF)
        return word;
    return word & (sfdp_bits(word, 31, 16) == 0xFFFF ? 0x0000FFFFU : 0x000FFFFFU);
}

} // namespace

bool sfdp_declares_four_byte_erase(const SFDP_DWORDS& words, unsigned index) {
    return sfdp_bit(words[1], 8 + index);
}

unsigned sfdp_four_byte_erase_opcode(const SFDP_DWORDS& words, unsigned index) {
    return sfdp_bits(words[2], 8 * index - 1, 8 * index - 8);
}

SFDP_FOUR_BYTE_TABLE sfdp_read_four_byte(const SFDP_DWORDS& words, const SFDP_TABLE& table) {
    SFDP_FOUR_BYTE_TABLE four_byte;
    const std::uint32_t bits = declared(words[1]);
    for (const INSTRUCTION& instruction : INSTRUCTIONS)
        if (sfdp_bit(bits, instruction.bit))
            four_byte.supported.emplace_back(instruction.name, instruction.opcode);
    for (const SFDP_ERASE_TYPE& type : table.erase_types) {
        const unsigned opcode = sfdp_four_byte_erase_opcode(words, type.index);
        if (sfdp_declares_four_byte_erase(words, type.index) && sfdp_is_opcode(opcode))
            four_byte.erase.push_back({type.index, type.size, opcode});
    }
    return four_byte;
}
