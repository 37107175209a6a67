// A decoded parameter table as text for people: a table for what is alike, a line for what stands alone.
#include "tool_sfdp_text.h"

#include "tool_output.h"
#include "tool_sfdp_record.h"
#include "tool_sfdp_words.h"
#include "tool_table.h"
#include "tool_text.h"

namespace {

constexpr char NOT_STATED[] = "not stated";

template <typename VALUE, typename TEXT>
std::string or_not_stated(const std::optional<VALUE>& value, const TEXT& text) {
    return value ? text(*value) : std::string(NOT_STATED);
}

std::string microseconds_text(std::uint64_t microseconds) {
    return tool_microseconds_text(static_cast<unsigned int>(microseconds)); // 65 ms at most
}

std::string yes_or_no(bool value) {
    return value ? "yes" : "no";
}

std::string ways_text(const std::vector<std::string>& ways) {
    std::vector<std::string> texts;
    texts.reserve(ways.size());
    for (const std::string& way : ways)
        texts.push_back(tool_sfdp_way_text(way));
    return texts.empty() ? "none" : tool_join(texts, "; ");
}

// ---- header and tables ----

void write_tables(const SFDP_TABLE& table, const TOOL_OUTPUT& output) {
    output.write(output.bold("SFDP " + std::to_string(table.sfdp_major) + '.' + std::to_string(table.sfdp_minor)) +
                 ", access protocol " + tool_sfdp_opcode_text(table.access_protocol) + ", " +
                 tool_count_text(table.tables.size(), "table") + "\n\n");
    TOOL_TABLE rows({{"Table"}, {"Holds"}, {"Revision"}, {"Offset", true}, {"Dwords", true}});
    for (const SFDP_TABLE_HEADER& header : table.tables)
        rows.add_row({tool_sfdp_id_text(header.id), tool_sfdp_table_text(header.id),
                      std::to_string(header.major) + '.' + std::to_string(header.minor), std::to_string(header.offset),
                      std::to_string(header.dwords)});
    rows.write(output);
}

// ---- geometry ----

std::string address_bytes_text(SFDP_ADDRESS_MODE mode) {
    switch (mode) {
    case SFDP_ADDRESS_MODE::THREE:
        return "3";
    case SFDP_ADDRESS_MODE::THREE_OR_FOUR:
        return "3 or 4, at power-on 3";
    default:
        return "4";
    }
}

std::string poll_text(const SFDP_TABLE& table) {
    if (table.poll_flag_status)
        return "70, flag status register: bit 7 is 1 when ready";
    const std::string status = "05, status register: bit 0 is 1 while busy";
    if (!table.legacy_status_polling)
        return status + " (not stated; what is usual)";
    return *table.legacy_status_polling ? status : status + " (no way is declared; what is usual)";
}

std::string power_down_text(const SFDP_TABLE& table) {
    if (!table.legacy_status_polling) // the dword of both
        return NOT_STATED;
    if (!table.deep_power_down)
        return "not supported";
    return tool_sfdp_opcode_text(table.deep_power_down->enter_opcode) + " enters, " +
           tool_sfdp_opcode_text(table.deep_power_down->exit_opcode) + " leaves it in " +
           tool_sfdp_nanoseconds_text(table.deep_power_down->exit_delay_ns);
}

std::string suspend_text(const SFDP_SUSPEND& suspend) {
    if (!suspend.supported)
        return "not supported";
    return "erase " + tool_sfdp_opcode_text(suspend.suspend_opcode) + " in " +
           tool_sfdp_nanoseconds_text(suspend.erase_suspend_latency_ns) + ", resume " +
           tool_sfdp_opcode_text(suspend.resume_opcode) + "; program " +
           tool_sfdp_opcode_text(suspend.program_suspend_opcode) + " in " +
           tool_sfdp_nanoseconds_text(suspend.program_suspend_latency_ns) + ", resume " +
           tool_sfdp_opcode_text(suspend.program_resume_opcode);
}

std::string octal_text(const SFDP_OCTAL& octal) {
    std::vector<std::string> texts = {"command extension " + octal.command_extension.value_or("")};
    if (octal.dtr_byte_swap.value_or(false))
        texts.emplace_back("bytes swapped in 8D-8D-8D");
    for (const auto& [mode, speed] : octal.max_speed_mhz)
        if (speed)
            texts.push_back(std::string(mode) + ' ' + std::to_string(*speed) + " MHz");
    return tool_join(texts, "; ");
}

void add_modes(const SFDP_TABLE& table, TOOL_TABLE& rows) {
    rows.add_row({"polling", poll_text(table)});
    rows.add_row({"suspend", or_not_stated(table.suspend, suspend_text)});
    rows.add_row({"deep power-down", power_down_text(table)});
    rows.add_row({"quad enable", or_not_stated(table.quad_enable_code, tool_sfdp_quad_enable_text)});
    rows.add_row({"reset", or_not_stated(table.soft_reset, ways_text)});
    if (table.octal.command_extension)
        rows.add_row({"octal mode", octal_text(table.octal)});
}

void write_geometry(const SFDP_TABLE& table, const TOOL_OUTPUT& output) {
    TOOL_TABLE rows({{"Field"}, {"Value"}});
    rows.add_row({"density", tool_bits_text(table.density_bits) + ", " + tool_bytes_text(table.density_bits / 8)});
    rows.add_row(
        {"page", tool_bytes_text(table.page_bytes) + (table.page_is_default ? " (not stated; what is usual)" : "")});
    rows.add_row({"write buffer", table.write_granularity_64plus ? "64 B or more" : "1 B"});
    rows.add_row({"4 KiB erase everywhere", yes_or_no(table.uniform_4k)});
    rows.add_row({"address bytes", address_bytes_text(table.address_mode)});
    rows.add_row({"all of it is reached", tool_sfdp_addressing_text(table)});
    rows.add_row({"into 4-byte mode", or_not_stated(table.enter_4byte, ways_text)});
    rows.add_row({"out of 4-byte mode", or_not_stated(table.exit_4byte, ways_text)});
    add_modes(table, rows);
    output.write("\n");
    rows.write(output);
}

// ---- erases and times ----

std::string four_byte_erase_text(const SFDP_TABLE& table, unsigned int index) {
    if (table.four_byte_table)
        for (const SFDP_FOUR_BYTE_ERASE& erase : table.four_byte_table->erase)
            if (erase.index == index)
                return tool_sfdp_opcode_text(erase.opcode);
    return "-";
}

void write_erases(const SFDP_TABLE& table, const TOOL_OUTPUT& output) {
    TOOL_TABLE rows({{"Erase", true}, {"Opcode"}, {"With 4 bytes"}, {"Typical", true}, {"Longest", true}});
    for (const SFDP_ERASE_TYPE& type : table.erase_types)
        rows.add_row({tool_bytes_text(type.size), tool_sfdp_opcode_text(type.opcode),
                      four_byte_erase_text(table, type.index), or_not_stated(type.typ_ms, tool_sfdp_milliseconds_text),
                      or_not_stated(type.max_ms, tool_sfdp_milliseconds_text)});
    output.write("\n");
    rows.write(output);
}

std::string factor_text(const char* reading, const std::optional<unsigned int>& factor) {
    return std::string("chip erase, ") + reading + (factor ? " x" + std::to_string(*factor) : "");
}

// The longest chip erase has two readings, of which a time-out takes the larger.
void write_times(const SFDP_TABLE& table, const TOOL_OUTPUT& output) {
    TOOL_TABLE rows({{"Operation"}, {"Typical", true}, {"Longest", true}});
    const auto add = [&rows](const std::string& name, const auto& typical, const auto& longest, const auto& text) {
        rows.add_row({name, or_not_stated(typical, text), or_not_stated(longest, text)});
    };
    add("page program", table.page_program_typ_us, table.page_program_max_us, microseconds_text);
    add("first byte", table.byte_program_first_typ_us, table.byte_program_first_max_us, microseconds_text);
    add("each further byte", table.byte_program_next_typ_us, table.byte_program_next_max_us, microseconds_text);
    add(factor_text("erase factor", table.erase_max_factor), table.chip_erase_typ_ms, table.chip_erase_max_ms,
        tool_sfdp_milliseconds_text);
    add(factor_text("program factor", table.program_max_factor), table.chip_erase_typ_ms,
        table.chip_erase_max_ms_if_program_factor, tool_sfdp_milliseconds_text);
    output.write("\n");
    rows.write(output);
    if (const auto longest = tool_sfdp_longest_chip_erase_ms(table))
        output.write("The longest chip erase can be read in these two ways: allow " +
                     tool_sfdp_milliseconds_text(*longest) + ", a die.\n");
}

// ---- instructions ----

void write_reads(const SFDP_TABLE& table, const TOOL_OUTPUT& output) {
    if (table.fast_reads.empty())
        return;
    TOOL_TABLE rows({{"Fast read"}, {"Opcode"}, {"Mode clocks", true}, {"Dummy clocks", true}});
    for (const SFDP_FAST_READ& read : table.fast_reads)
        rows.add_row({read.mode, tool_sfdp_opcode_text(read.opcode), std::to_string(read.mode_clocks),
                      std::to_string(read.dummy_clocks)});
    output.write("\n");
    rows.write(output);
}

// "fast_read_1_1_4" as "fast read 1-1-4".
std::string instruction_text(std::string name) {
    const auto is_digit = [&name](size_t i) { return name[i] >= '0' && name[i] <= '9'; };
    for (size_t i = 1; i + 1 < name.size(); ++i)
        if (name[i] == '_')
            name[i] = is_digit(i - 1) && is_digit(i + 1) ? '-' : ' ';
    return name;
}

void write_four_byte(const SFDP_TABLE& table, const TOOL_OUTPUT& output) {
    if (!table.four_byte_table || table.four_byte_table->supported.empty())
        return;
    TOOL_TABLE rows({{"With 4 address bytes"}, {"Opcode"}});
    for (const auto& [name, opcode] : table.four_byte_table->supported)
        rows.add_row({instruction_text(name), tool_sfdp_opcode_text(opcode)});
    output.write("\n");
    rows.write(output);
}

void write_warnings(const SFDP_TABLE& table, const TOOL_OUTPUT& output) {
    if (table.warnings.empty())
        return;
    output.write('\n' + output.bold("Warnings") + '\n');
    for (const std::string& warning : table.warnings)
        output.write("  " + tool_sfdp_warning_text(warning) + '\n');
}

} // namespace

void tool_sfdp_write(const SFDP_TABLE& table, const TOOL_OUTPUT& output) {
    write_tables(table, output);
    write_geometry(table, output);
    write_erases(table, output);
    write_times(table, output);
    write_reads(table, output);
    write_four_byte(table, output);
    write_warnings(table, output);
}
