// Words for the codes of a parameter table.
#include "tool_sfdp_words.h"

#include "tool_sfdp_record.h"
#include "tool_text.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::uint64_t THREE_BYTES_REACH = std::uint64_t{1} << 24; // bytes

struct WORD {
    std::string_view code;
    const char* text;
};

constexpr WORD WAYS[] = {
    {"06_B7", "06, then B7"},
    {"ext_addr_reg_C5", "extended address register (C5 writes it, C8 reads it)"},
    {"bank_reg_17", "bank register (17 writes it, 16 reads it)"},
    {"nv_config_B1", "nonvolatile configuration register (B1 writes it, B5 reads it)"},
    {"dedicated_opcodes", "opcodes of their own"},
    {"always_4byte", "always on"},
    {"06_E9", "06, then E9"},
    {"hw_reset", "hardware reset"},
    {"sw_reset", "software reset"},
    {"power_cycle", "power cycle"},
    {"drive_F_8clk", "F on four lines for 8 clocks"},
    {"drive_F_10clk", "F on four lines for 10 clocks"},
    {"drive_F_16clk", "F on four lines for 16 clocks"},
    {"66_99", "66, then 99"},
    {"exit_044_first", "leave 0-4-4 mode first"},
};

// What follows ':' in a warning is put behind the text.
constexpr WORD WARNINGS[] = {
    {"first_header_not_bfpt", "The header of the basic table is not the first one."},
    {"other_table_past_end", "A table that is not read lies past the end of the image, which is cut: "},
    {"power_density_below_4Gbit", "The density is written as a power of two, as is meant for 4 Gbit and more."},
    {"density_not_power_of_two", "The density is no power of two."},
    {"over_16MiB_but_3byte_only",
     "The flash has more than 16 MiB and states 3 address bytes only: leave alone what is above, where an address "
     "that wraps would destroy what is below."},
    {"4byte_methods_on_3byte_part", "It states 3 address bytes only, and names ways into 4-byte mode all the same."},
    {"sector_map_present",
     "It has a sector map: erase sizes depend on the address, which the erase types do not show."},
    {"one_opcode_two_sizes", "One opcode stands for two erase sizes; which of them holds depends on the address."},
    {"4k_opcode_disagrees_with_erase_types",
     "The opcode of the 4 KiB erase in dword 1 is none of the erase types', which count."},
    {"no_polling_method_declared", "No way to poll is declared; 05 bit 0 is taken."},
    {"quad_enable_reserved_code", "How quad mode is enabled is a reserved code: stay on one line."},
    {"ff84_empty", "The table of 4-byte instructions declares none: it counts as absent."},
    {"ff84_erase_without_opcode",
     "An erase with 4 address bytes is declared and has no opcode, so that it cannot be used: type "},
};

constexpr WORD TABLES[] = {
    {"FF00", "basic parameters"},
    {"FF03", "replay protection"},
    {"FF05", "xSPI profile 1"},
    {"FF0A", "commands and registers"},
    {"FF81", "sector map"},
    {"FF84", "4-byte instructions"},
    {"FF87", "commands and registers"},
    {"FF88", "commands and registers"},
};

constexpr std::array<const char*, 8> QUAD_ENABLE = {
    "no bit needed",
    "status register 2 bit 1; 01 writes both registers, with one byte it clears the second",
    "status register 1 bit 6",
    "status register 2 bit 7; 3F reads, 3E writes it",
    "status register 2 bit 1; 01 writes both registers, with one byte it leaves the second",
    "status register 2 bit 1; 35 reads it, 01 writes both registers",
    "status register 2 bit 1; 35 reads, 31 writes it",
    "a reserved code",
};

template <size_t N>
const char* text_of(const WORD (&words)[N], std::string_view code) {
    const WORD* place = std::find_if(words, words + N, [code](const WORD& word) { return word.code == code; });
    return place == words + N ? nullptr : place->text;
}

bool names(const std::optional<std::vector<std::string>>& ways, const char* way) {
    return ways && std::find(ways->begin(), ways->end(), way) != ways->end();
}

} // namespace

std::string tool_sfdp_id_text(unsigned int id) {
    const std::array<unsigned char, 2> bytes = {static_cast<unsigned char>(id >> 8 & 0xFF),
                                                static_cast<unsigned char>(id & 0xFF)};
    return tool_hex_text(bytes.data(), bytes.size());
}

std::string tool_sfdp_opcode_text(unsigned int opcode) {
    const auto byte = static_cast<unsigned char>(opcode);
    return tool_hex_text(&byte, 1);
}

std::string tool_sfdp_nanoseconds_text(std::uint64_t nanoseconds) {
    if (nanoseconds % 1000 != 0)
        return std::to_string(nanoseconds) + " ns";
    return tool_microseconds_text(static_cast<unsigned int>(nanoseconds / 1000));
}

std::string tool_sfdp_table_text(unsigned int id) {
    const char* const text = text_of(TABLES, tool_sfdp_id_text(id));
    return text ? text : "a maker's own";
}

std::string tool_sfdp_way_text(const std::string& way) {
    const char* const text = text_of(WAYS, way);
    return text ? text : way;
}

std::string tool_sfdp_warning_text(const std::string& warning) {
    const size_t colon = warning.find(':');
    const char* const text = text_of(WARNINGS, std::string_view(warning).substr(0, colon));
    if (!text)
        return warning;
    return colon == std::string::npos ? text : text + warning.substr(colon + 1) + '.';
}

std::string tool_sfdp_quad_enable_text(unsigned int code) {
    return QUAD_ENABLE[code & 7U];
}

std::string tool_sfdp_addressing_text(const SFDP_TABLE& table) {
    if (table.address_mode == SFDP_ADDRESS_MODE::FOUR || names(table.enter_4byte, "always_4byte"))
        return "4 address bytes always";
    if (table.density_bits / 8 <= THREE_BYTES_REACH)
        return "3 address bytes reach all of it";
    if (table.address_mode == SFDP_ADDRESS_MODE::THREE)
        return "only the first 16 MiB: 3 address bytes, and no way beyond that could be trusted";
    if (tool_sfdp_has_four_byte_instructions(table))
        return "by the instructions of 4 address bytes; there is no mode to enter";
    if (names(table.enter_4byte, "B7") || names(table.enter_4byte, "06_B7"))
        return "in 4-byte mode, to be entered before and left afterwards";
    if (names(table.enter_4byte, "dedicated_opcodes"))
        return "not stated in full: the opcodes 13, 12, 21 and DC are usual; see its data sheet";
    return "not stated: see its data sheet, or stay below 16 MiB";
}
