// A decoded table of serial flash discoverable parameters as JSON.
#include "tool_sfdp_json.h"

#include "tool_sfdp_words.h"

#include <nlohmann/json.hpp>

namespace {

using JSON = nlohmann::ordered_json;

template <typename VALUE>
JSON optional_json(const std::optional<VALUE>& value) {
    return value ? JSON(*value) : JSON(nullptr);
}

JSON header_json(const SFDP_TABLE_HEADER& header) {
    return {{"major", header.major}, {"minor", header.minor}, {"dwords", header.dwords}, {"offset", header.offset}};
}

JSON tables_json(const SFDP_TABLE& table) {
    JSON list = JSON::array();
    for (const SFDP_TABLE_HEADER& header : table.tables) {
        JSON object = {{"id", tool_sfdp_id_text(header.id)}};
        object.update(header_json(header));
        list.push_back(std::move(object));
    }
    return list;
}

const char* address_mode_text(SFDP_ADDRESS_MODE mode) {
    switch (mode) {
    case SFDP_ADDRESS_MODE::THREE:
        return "3";
    case SFDP_ADDRESS_MODE::THREE_OR_FOUR:
        return "3or4";
    default:
        return "4";
    }
}

JSON fast_reads_json(const SFDP_TABLE& table) {
    JSON object = JSON::object();
    for (const SFDP_FAST_READ& read : table.fast_reads)
        object[read.mode] = {{"opcode", read.opcode},
                             {"mode_clocks", read.mode_clocks},
                             {"dummy_clocks", read.dummy_clocks}};
    return object;
}

JSON erase_types_json(const SFDP_TABLE& table) {
    JSON list = JSON::array();
    for (const SFDP_ERASE_TYPE& type : table.erase_types)
        list.push_back({{"index", type.index},
                        {"size", type.size},
                        {"opcode", type.opcode},
                        {"typ_ms", optional_json(type.typ_ms)},
                        {"max_ms", optional_json(type.max_ms)}});
    return list;
}

JSON suspend_json(const std::optional<SFDP_SUSPEND>& suspend) {
    if (!suspend)
        return nullptr;
    if (!suspend->supported)
        return {{"supported", false}};
    return {{"supported", true},
            {"suspend_opcode", suspend->suspend_opcode},
            {"resume_opcode", suspend->resume_opcode},
            {"program_suspend_opcode", suspend->program_suspend_opcode},
            {"program_resume_opcode", suspend->program_resume_opcode},
            {"erase_suspend_latency_ns", suspend->erase_suspend_latency_ns},
            {"erase_resume_to_suspend_us", suspend->erase_resume_to_suspend_us},
            {"program_suspend_latency_ns", suspend->program_suspend_latency_ns},
            {"program_resume_to_suspend_us", suspend->program_resume_to_suspend_us}};
}

JSON deep_power_down_json(const std::optional<SFDP_DEEP_POWER_DOWN>& power_down) {
    if (!power_down)
        return nullptr;
    return {{"enter_opcode", power_down->enter_opcode},
            {"exit_opcode", power_down->exit_opcode},
            {"exit_delay_ns", power_down->exit_delay_ns}};
}

JSON four_byte_json(const std::optional<SFDP_FOUR_BYTE_TABLE>& table) {
    if (!table)
        return nullptr;
    JSON supported = JSON::object();
    for (const auto& [name, opcode] : table->supported)
        supported[name] = opcode;
    JSON erase = JSON::array();
    for (const SFDP_FOUR_BYTE_ERASE& type : table->erase)
        erase.push_back({{"index", type.index}, {"size", type.size}, {"opcode", type.opcode}});
    return {{"supported", supported}, {"erase", erase}};
}

void put_geometry(JSON& object, const SFDP_TABLE& table) {
    object["density_bits"] = table.density_bits;
    object["density_encoding"] = table.density_is_power ? "power" : "linear";
    object["density_bytes"] = table.density_bits / 8;
    object["address_mode"] = address_mode_text(table.address_mode);
    object["uniform_4k"] = table.uniform_4k;
    object["opcode_4k"] = table.opcode_4k;
    object["write_granularity_64plus"] = table.write_granularity_64plus;
    object["dtr"] = table.dtr;
    object["fast_reads"] = fast_reads_json(table);
    object["page_bytes"] = table.page_bytes;
    object["page_from"] = table.page_is_default ? "default" : "dword11";
}

void put_times(JSON& object, const SFDP_TABLE& table) {
    object["erase_max_factor"] = optional_json(table.erase_max_factor);
    object["erase_types"] = erase_types_json(table);
    object["page_program_typ_us"] = optional_json(table.page_program_typ_us);
    object["page_program_max_us"] = optional_json(table.page_program_max_us);
    object["byte_program_first_typ_us"] = optional_json(table.byte_program_first_typ_us);
    object["byte_program_first_max_us"] = optional_json(table.byte_program_first_max_us);
    object["byte_program_next_typ_us"] = optional_json(table.byte_program_next_typ_us);
    object["byte_program_next_max_us"] = optional_json(table.byte_program_next_max_us);
    object["chip_erase_typ_ms"] = optional_json(table.chip_erase_typ_ms);
    object["chip_erase_max_ms"] = optional_json(table.chip_erase_max_ms);
    object["chip_erase_max_ms_if_program_factor"] = optional_json(table.chip_erase_max_ms_if_program_factor);
    object["program_max_factor"] = optional_json(table.program_max_factor);
}

const char* poll_text(const SFDP_TABLE& table) {
    if (table.poll_flag_status)
        return "70_bit7_ready";
    return table.legacy_status_polling == false ? "undeclared" : "05_bit0_busy";
}

void put_modes(JSON& object, const SFDP_TABLE& table) {
    object["suspend"] = suspend_json(table.suspend);
    object["legacy_status_polling"] = optional_json(table.legacy_status_polling);
    object["flag_status_register"] = optional_json(table.flag_status_register);
    object["poll"] = poll_text(table);
    object["deep_power_down"] = deep_power_down_json(table.deep_power_down);
    object["quad_enable"] = nullptr;
    if (table.quad_enable_code)
        object["quad_enable"] = sfdp_quad_enable_name(*table.quad_enable_code);
    object["quad_enable_code"] = optional_json(table.quad_enable_code);
    object["read_044"] = optional_json(table.read_044);
    object["hold_reset_disable"] = optional_json(table.hold_reset_disable);
    object["qpi_enable_bits"] = optional_json(table.qpi_enable_bits);
    object["qpi_disable_bits"] = optional_json(table.qpi_disable_bits);
    object["enter_4byte"] = optional_json(table.enter_4byte);
    object["exit_4byte"] = optional_json(table.exit_4byte);
    object["soft_reset"] = optional_json(table.soft_reset);
    object["sr1_write_enable_bits"] = optional_json(table.sr1_write_enable_bits);
}

void put_octal(JSON& object, const SFDP_OCTAL& octal) {
    if (octal.command_extension)
        object["octal_command_extension"] = *octal.command_extension;
    if (octal.dtr_byte_swap)
        object["octal_dtr_byte_swap"] = *octal.dtr_byte_swap;
    if (octal.reset_protocol)
        object["jedec_reset_protocol"] = *octal.reset_protocol;
    if (octal.enable_code)
        object["octal_enable_code"] = *octal.enable_code;
    for (const auto& [mode, speed] : octal.max_speed_mhz)
        object["max_speed_mhz"][mode] = optional_json(speed);
}

} // namespace

nlohmann::ordered_json tool_sfdp_json(const SFDP_TABLE& table) {
    JSON object = {{"sfdp_major", table.sfdp_major},
                   {"sfdp_minor", table.sfdp_minor},
                   {"access_protocol", table.access_protocol},
                   {"tables", tables_json(table)},
                   {"bfpt", header_json(table.bfpt)}};
    put_geometry(object, table);
    put_times(object, table);
    put_modes(object, table);
    put_octal(object, table.octal);
    object["four_byte_table"] = four_byte_json(table.four_byte_table);
    object["warnings"] = table.warnings;
    return object;
}
