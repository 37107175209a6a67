// Basic table, dwords 15 to 20: quad mode, resets, ways into and out of 4-byte addressing, octal mode.
#include "sfdp_parts.h"

namespace {

struct NAMED_BIT {
    unsigned bit;
    const char* name;
};

constexpr NAMED_BIT ENTER_BITS[] = {{24, "B7"},          {25, "06_B7"},        {26, "ext_addr_reg_C5"},
                                    {27, "bank_reg_17"}, {28, "nv_config_B1"}, {29, "dedicated_opcodes"},
                                    {30, "always_4byte"}};
constexpr NAMED_BIT EXIT_BITS[] = {{14, "E9"},          {15, "06_E9"},        {16, "ext_addr_reg_C5"},
                                   {17, "bank_reg_17"}, {18, "nv_config_B1"}, {19, "hw_reset"},
                                   {20, "sw_reset"},    {21, "power_cycle"}};
constexpr NAMED_BIT RESET_BITS[] = {{8, "drive_F_8clk"}, {9, "drive_F_10clk"}, {10, "drive_F_16clk"},
                                    {11, "F0"},          {12, "66_99"},        {13, "exit_044_first"}};

std::vector<std::string> names_of(std::uint32_t word, std::span<const NAMED_BIT> bits) {
    std::vector<std::string> names;
    for (const NAMED_BIT& bit : bits)
        if (sfdp_bit(word, bit.bit))
            names.emplace_back(bit.name);
    return names;
}

void read_quad(std::uint32_t word, SFDP_TABLE& table) {
    table.quad_enable_code = sfdp_bits(word, 22, 20);
    table.read_044 = sfdp_bit(word, 9);
    table.hold_reset_disable = sfdp_bit(word, 23);
    table.qpi_enable_bits = sfdp_bits(word, 8, 4);
    table.qpi_disable_bits = sfdp_bits(word, 3, 0);
}

// A field of all ones is one that nobody filled: it declares nothing.
void read_resets(std::uint32_t word, SFDP_TABLE& table) {
    table.enter_4byte = names_of(sfdp_bits(word, 31, 24) == 0xFF ? 0 : word, ENTER_BITS);
    table.exit_4byte = names_of(sfdp_bits(word, 23, 14) == 0x3FF ? 0 : word, EXIT_BITS);
    table.soft_reset = names_of(word, RESET_BITS);
    table.sr1_write_enable_bits = sfdp_bits(word, 6, 0);
}

void read_octal_commands(std::uint32_t word, SFDP_OCTAL& octal) {
    constexpr std::array<const char*, 4> EXTENSIONS = {"repeat", "inverse", "reserved", "16bit"};
    octal.command_extension = EXTENSIONS[sfdp_bits(word, 30, 29)];
    octal.dtr_byte_swap = sfdp_bit(word, 31);
    octal.reset_protocol = sfdp_bit(word, 23);
}

void read_speeds(std::uint32_t word, SFDP_OCTAL& octal) {
    constexpr std::array<const char*, 8> MODES = {"4s4s4s", "4s4s4s_strobe", "4s4d4d", "4s4d4d_strobe",
                                                  "8s8s8s", "8s8s8s_strobe", "8d8d8d", "8d8d8d_strobe"};
    constexpr std::array<unsigned, 13> SPEEDS_MHZ = {0, 33, 50, 66, 80, 100, 133, 166, 200, 250, 266, 333, 400};
    for (unsigned mode = 0; mode < MODES.size(); ++mode) {
        const std::uint32_t code = sfdp_bits(word, 4 * mode + 3, 4 * mode);
        const bool is_stated = code != 0 && code < SPEEDS_MHZ.size();
        octal.max_speed_mhz.emplace_back(MODES[mode], is_stated ? std::optional(SPEEDS_MHZ[code]) : std::nullopt);
    }
}

} // namespace

void sfdp_read_modes(const SFDP_DWORDS& basic, SFDP_TABLE& table) {
    if (basic.has(15))
        read_quad(basic[15], table);
    if (basic.has(16))
        read_resets(basic[16], table);
    if (basic.has(18))
        read_octal_commands(basic[18], table.octal);
    if (basic.has(19))
        table.octal.enable_code = sfdp_bits(basic[19], 22, 20);
    if (basic.has(20))
        read_speeds(basic[20], table.octal);
}

const char* sfdp_quad_enable_name(unsigned code) {
    constexpr std::array<const char*, 8> NAMES = {
        "none",
        "sr2_bit1_write2_clears",
        "sr1_bit6",
        "sr2_bit7_read3F_write3E",
        "sr2_bit1_write2_keeps",
        "sr2_bit1_read35_write01",
        "sr2_bit1_read35_write31",
        "reserved",
    };
    return NAMES[code & 7];
}
