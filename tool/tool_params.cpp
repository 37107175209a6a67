// `tovren params`: the sections of the flash parameter file (pgm_flash.ini).
#include "tool_command_line.h"
#include "tool_error.h"
#include "tool_file.h"
#include "tool_groups.h"
#include "tool_hps_section.h"
#include "tool_output.h"
#include "tool_params_file.h"
#include "tool_table.h"
#include "tool_text.h"

#include <algorithm>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>

namespace {

std::string shown_path() {
    return tool_printable(TOVREN_FLASH_INI::get_flash_ini_path());
}

[[noreturn]] void not_found(const TOOL_OUTPUT& output, const std::string& message,
                            const std::vector<std::string>& details) {
    if (output.is_json())
        output.write_json(nlohmann::ordered_json());
    throw TOOL_ERROR(TOOL_EXIT_NOT_FOUND, message, details);
}

TOVREN_FLASH_INI_ENUM section_of(const std::string& text, const TOOL_OUTPUT& output) {
    const auto number = tool_number(text, TOVREN_FLASH_INI_MAX - 1);
    std::vector<std::string> known;
    for (unsigned int i = 0; i < TOVREN_FLASH_INI_MAX; ++i) {
        const auto section = static_cast<TOVREN_FLASH_INI_ENUM>(i);
        if (number == i || tool_equal_ignoring_case(text, TOVREN_FLASH_INI_STRING[i]))
            return section;
        known.push_back(tool_section_text(section));
    }
    not_found(output, "there is no section " + tool_quoted(text), {"The sections are " + tool_join(known, ", ") + '.'});
}

// ---- show ----

nlohmann::ordered_json records_json(const TOOL_HPS_KIND& kind, const TOOL_HPS_SECTION& section) {
    auto records = nlohmann::ordered_json::array();
    for (const TOOL_HPS_RECORD& record : section.records) {
        nlohmann::ordered_json object;
        record.put(object, kind.params);
        records.push_back(object);
    }
    return records;
}

// Members that a section does not have are null.
nlohmann::ordered_json section_json(TOVREN_FLASH_INI_ENUM number, const TOOL_BYTES& bytes) {
    nlohmann::ordered_json object = {{"section", static_cast<unsigned int>(number)},
                                     {"name", TOVREN_FLASH_INI_STRING[number]},
                                     {"size", bytes.size()},
                                     {"bytes", nullptr},
                                     {"is_fingerprint_right", nullptr},
                                     {"records", nullptr},
                                     {"rest", nullptr}};
    if (!bytes.empty())
        object["bytes"] = tool_hex_text(bytes.data(), bytes.size());
    const TOOL_HPS_KIND* const kind = tool_hps_kind_of(number);
    if (!kind || bytes.empty())
        return object;
    const TOOL_HPS_SECTION section = tool_hps_section(*kind, bytes);
    object["is_fingerprint_right"] = !section.is_foreign;
    if (!section.is_foreign) {
        object["records"] = records_json(*kind, section);
        object["rest"] = section.rest;
    }
    return object;
}

// "  00000010  53 46 ...  SF..": sixteen bytes a line.
std::string hex_dump(const TOOL_BYTES& bytes) {
    constexpr size_t LINE = 16;
    std::string text;
    for (size_t offset = 0; offset < bytes.size(); offset += LINE) {
        std::string digits;
        std::string characters;
        for (size_t i = offset; i < std::min(offset + LINE, bytes.size()); ++i) {
            digits += ' ' + tool_hex_text(&bytes[i], 1);
            characters += bytes[i] >= 0x20 && bytes[i] < 0x7F ? static_cast<char>(bytes[i]) : '.';
        }
        digits.resize(3 * LINE, ' ');
        text += "  " + TOVREN_FLASH_INI::convert_dword_to_hex_string(static_cast<unsigned int>(offset), 8, false) +
                ' ' + digits + "  " + characters + '\n';
    }
    return text;
}

void write_records(const TOOL_HPS_KIND& kind, const TOOL_BYTES& bytes, const TOOL_OUTPUT& output) {
    TOOL_HPS_SECTION section = tool_hps_section(kind, bytes);
    if (section.is_foreign) {
        output.write("  The fingerprint is not " + kind.md5 + ": the section is not used.\n");
        return;
    }
    output.write("  " + tool_count_text(section.records.size(), "record") + '\n');
    for (size_t i = 0; i < section.records.size(); ++i) {
        TOOL_TABLE table({{"Record " + std::to_string(i)}, {"Value"}});
        const std::vector<std::string> texts = section.records[i].texts(kind.params);
        for (size_t j = 0; j < texts.size(); ++j)
            table.add_row({kind.params.names[j], texts[j]});
        output.write("\n");
        table.write(output);
    }
    if (section.rest != 0)
        output.write("\n  " + tool_count_text(section.rest, "byte") +
                     " behind the last record: a record that is cut short, which is not used.\n");
}

void write_section(TOVREN_FLASH_INI_ENUM number, const TOOL_BYTES& bytes, const TOOL_OUTPUT& output) {
    const std::string size = bytes.empty() ? "none" : tool_count_text(bytes.size(), "byte");
    output.write(output.bold("Section " + tool_section_text(number)) + ": " + size + '\n' + hex_dump(bytes));
    const TOOL_HPS_KIND* const kind = tool_hps_kind_of(number);
    if (kind && !bytes.empty())
        write_records(*kind, bytes, output);
}

int show_all(const TOOL_OUTPUT& output) {
    const std::string state = tool_params_state_text(TOVREN_FLASH_INI::get_flash_ini_file_state());
    nlohmann::ordered_json document = {{"file", TOVREN_FLASH_INI::get_flash_ini_path()},
                                       {"state", state},
                                       {"sections", nlohmann::ordered_json::array()}};
    std::vector<TOOL_BYTES> sections;
    for (unsigned int i = 0; i < TOVREN_FLASH_INI_MAX; ++i) {
        const auto section = static_cast<TOVREN_FLASH_INI_ENUM>(i);
        sections.push_back(tool_read_section(section));
        document["sections"].push_back(section_json(section, sections.back()));
    }
    if (output.is_json()) {
        output.write_json(document);
        return TOOL_EXIT_DONE;
    }
    output.write(shown_path() + ": " + state + '\n');
    for (unsigned int i = 0; i < TOVREN_FLASH_INI_MAX; ++i)
        write_section(static_cast<TOVREN_FLASH_INI_ENUM>(i), sections[i], output);
    return TOOL_EXIT_DONE;
}

[[noreturn]] void no_section(TOVREN_FLASH_INI_ENUM section, const TOOL_OUTPUT& output) {
    not_found(output, shown_path() + ": it has no section " + tool_section_text(section), {});
}

int show(const std::optional<std::string>& text, const TOOL_OUTPUT& output) {
    if (!text)
        return show_all(output);
    const TOVREN_FLASH_INI_ENUM section = section_of(*text, output);
    const TOOL_BYTES bytes = tool_read_section(section);
    if (bytes.empty())
        no_section(section, output);
    if (output.is_json())
        output.write_json(section_json(section, bytes));
    else
        write_section(section, bytes, output);
    return TOOL_EXIT_DONE;
}

// ---- set and remove ----

struct SET_OPTIONS {
    std::string section;
    std::string file;
};

constexpr size_t LARGEST_SECTION = 16 << 20; // bytes

TOOL_BYTES file_bytes(const std::string& file) {
    const std::string shown = tool_printable(file);
    if (const std::string fault = tool_reading_fault(file); !fault.empty())
        throw TOOL_ERROR(TOOL_EXIT_REFUSED, shown + ": " + fault, {"next: name the file that holds the section"});
    std::ifstream input(file, std::ios::in | std::ios::binary);
    const std::string text = tool_read_all(input, shown, LARGEST_SECTION);
    if (text.empty())
        throw TOOL_ERROR(TOOL_EXIT_REFUSED, shown + ": it is empty; a section has at least one byte",
                         {"next: `tovren params remove SECTION` takes a section out"});
    return {text.begin(), text.end()};
}

void write_change(const char* what, TOVREN_FLASH_INI_ENUM section, size_t size, const TOOL_OUTPUT& output) {
    if (output.is_json()) {
        output.write_json({{"file", TOVREN_FLASH_INI::get_flash_ini_path()},
                           {"section", static_cast<unsigned int>(section)},
                           {"name", TOVREN_FLASH_INI_STRING[section]},
                           {what, size}});
        return;
    }
    output.write(std::string(what) + " section " + tool_section_text(section) + " of " + shown_path() + ": " +
                 tool_count_text(size, "byte") + '\n');
}

int set(const SET_OPTIONS& options, const TOOL_OUTPUT& output) {
    const TOVREN_FLASH_INI_ENUM section = section_of(options.section, output);
    TOOL_BYTES bytes = file_bytes(options.file);
    const size_t size = bytes.size();
    const TOOL_HPS_KIND* const kind = tool_hps_kind_of(section);
    if (kind && tool_hps_section(*kind, bytes).is_foreign)
        tool_note("warning: " + tool_printable(options.file) + ": it does not begin with the fingerprint " + kind->md5 +
                  "; the section is stored, and not used");
    tool_write_section(section, std::move(bytes));
    write_change("stored", section, size, output);
    return TOOL_EXIT_DONE;
}

int remove(const std::string& text, const TOOL_OUTPUT& output) {
    const TOVREN_FLASH_INI_ENUM section = section_of(text, output);
    const size_t size = tool_read_section(section).size();
    if (size == 0)
        no_section(section, output);
    tool_write_section(section, {});
    write_change("removed", section, size, output);
    return TOOL_EXIT_DONE;
}

} // namespace

void tool_add_params_group(TOOL_COMMAND_LINE& line) {
    TOOL_GROUP group = line.add_group("params", "The flash parameter file, pgm_flash.ini");
    constexpr char PLACE[] = "\nThe file stands in $TOVREN_MODULE_PATH, else in the folder that the setting\n"
                             "TOVREN_MODULE_PATH names, else beside the program.\n";

    const auto shown = std::make_shared<std::optional<std::string>>();
    group
        .add_verb("show", "Show the sections: sizes, bytes, HPS records",
                  [shown](const TOOL_OUTPUT& output) { return show(*shown, output); })
        .argument("SECTION", *shown, "One section, by number or name")
        .footer(PLACE);

    const auto stored = std::make_shared<SET_OPTIONS>();
    group
        .add_verb("set", "Store a file's bytes as a section",
                  [stored](const TOOL_OUTPUT& output) { return set(*stored, output); })
        .argument("SECTION", stored->section, "The section, by number or name")
        .argument("FILE", stored->file, "The file to read")
        .footer(PLACE);

    const auto removed = std::make_shared<std::string>();
    group
        .add_verb("remove", "Remove a section",
                  [removed](const TOOL_OUTPUT& output) { return remove(*removed, output); })
        .argument("SECTION", *removed, "The section, by number or name")
        .footer(PLACE);
}
