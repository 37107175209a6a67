// `tovren flash`: the group's verbs, and those that are short: generate, list, show.
#include "host_fio.h"
#include "tool_command_line.h"
#include "tool_csv.h"
#include "tool_error.h"
#include "tool_file.h"
#include "tool_flash_database.h"
#include "tool_flash_definition.h"
#include "tool_flash_identify.h"
#include "tool_flash_mtd.h"
#include "tool_flash_name.h"
#include "tool_flash_record.h"
#include "tool_groups.h"
#include "tool_output.h"
#include "tool_table.h"
#include "tool_text.h"

#include <memory>
#include <nlohmann/json.hpp>

namespace {

// ---- generate ----

struct GENERATE_OPTIONS {
    std::string csv;
    std::string output;
};

TOOL_ADVICE generation_advice(const GENERATE_OPTIONS& options, const TOOL_REPORT& report) {
    const std::string output = tool_printable(options.output);
    if (report.condition() == "output_is_written") {
        return {output + ": the database cannot be written there; what stood there is as it was",
                {},
                {"check that the folder exists, may be written and has room"}};
    }
    if (const std::string fault = tool_reading_fault(options.csv); !fault.empty())
        return {tool_printable(options.csv) + ": " + fault, {}, {"name the description to read"}};
    std::vector<std::string> faults = tool_csv_fault_lines(tool_flash_csv_faults(options.csv), options.csv, true);
    const std::string next = "correct the description and run the command again; " + output + " is as it was";
    if (faults.size() == 1)
        return {faults.front(), {}, {next}};
    return {tool_printable(options.csv) + ": the description is refused", std::move(faults), {next}};
}

unsigned int generate_database(const GENERATE_OPTIONS& options) {
    const auto advise = [&options](const TOOL_REPORT& report) { return generation_advice(options, report); };
    return tool_over_file(tool_printable(options.csv), advise, [&options] {
        TOVREN_FLASH_MANAGER manager(false, 0, true, false);
        unsigned int count = 0;
        manager.generate_flash_database(options.csv, options.output);
        manager.check_flash_file(options.csv, count);
        return count;
    });
}

int generate(const GENERATE_OPTIONS& options, const TOOL_OUTPUT& output) {
    if (tool_is_same_file(options.csv, options.output))
        throw tool_usage_error("flash generate", "CSV and OUT are the same file");
    tool_need_regular_file(options.csv);
    const unsigned int count = generate_database(options);
    for (const std::string& line : tool_csv_fault_lines(tool_flash_csv_faults(options.csv), options.csv, false))
        tool_note("warning: " + line);
    if (output.is_json()) {
        nlohmann::ordered_json document;
        document["output"] = options.output;
        document["records"] = count;
        output.write_json(document);
    } else {
        output.write("wrote " + tool_count_text(count, "record") + " to " + tool_printable(options.output) + '\n');
    }
    return TOOL_EXIT_DONE;
}

// ---- list ----

struct LIST_OPTIONS {
    bool is_all = false;
};

using LISTED = TOOL_LISTED_FLASH;

void write_list_json(const std::vector<LISTED>& listed, bool is_all, const TOOL_OUTPUT& output) {
    TOOL_JSON_LINES lines(output);
    nlohmann::ordered_json object; // one for all: its members are made once
    for (const LISTED& entry : listed) {
        object["index"] = nullptr;
        if (entry.index != INVALID_DWORD)
            object["index"] = entry.index;
        if (is_all)
            object["switch"] = nullptr;
        if (!entry.shown_by.empty())
            object["switch"] = entry.shown_by;
        tool_put_flash_members(object, *entry.flash);
        lines.add(object);
    }
    lines.end();
}

void write_list_table(const std::vector<LISTED>& listed, bool is_all, const TOOL_OUTPUT& output) {
    std::vector<TOOL_COLUMN> columns = {{"Index", true},        {"Flash"},
                                        {"Maker", false, 3},    {"ID"},
                                        {"Default", false, 5},  {"Density", true},
                                        {"Sectors", true, 1},   {"Erase", true, 2},
                                        {"Erase all", true, 3}, {"Program", true, 2},
                                        {"Voltage", false, 4}};
    if (is_all)
        columns.push_back({"Shown by"});
    TOOL_TABLE table(std::move(columns));
    for (const LISTED& entry : listed) {
        const TOVREN_SFL_FLASH_INFO& flash = *entry.flash;
        std::vector<std::string> cells = {entry.index == INVALID_DWORD ? "-" : std::to_string(entry.index),
                                          flash.device_name,
                                          flash.manufacturer_name,
                                          tool_flash_id_text(flash),
                                          flash.default_dev ? "yes" : "",
                                          tool_bits_text(flash.device_bit_size),
                                          tool_flash_sectors_text(flash),
                                          tool_seconds_text(flash.sec_erase_time),
                                          tool_seconds_text(flash.bulk_erase_time),
                                          tool_microseconds_text(flash.program_utime),
                                          flash.asc_voltage};
        if (is_all)
            cells.push_back(entry.shown_by);
        table.add_row(std::move(cells));
    }
    table.write(output);
}

int list(const LIST_OPTIONS& options, const TOOL_OUTPUT& output) {
    const auto manager = tool_load_flashes(1);
    const auto records = options.is_all ? tool_all_flashes() : std::vector<TOVREN_SFL_FLASH_INFO>();
    const std::vector<LISTED> listed =
        options.is_all ? tool_listed_flashes(*manager, records) : tool_listed_flashes(*manager);
    if (output.is_json())
        write_list_json(listed, options.is_all, output);
    else
        write_list_table(listed, options.is_all, output);
    return TOOL_EXIT_DONE;
}

// ---- show ----

struct SHOW_OPTIONS {
    std::optional<std::string> name;
    std::optional<std::string> index;
};

// Where nothing was found the JSON document is null.
int not_found(const TOOL_OUTPUT& output, const std::string& message, const std::vector<std::string>& details) {
    if (output.is_json())
        output.write_json(nlohmann::ordered_json());
    throw TOOL_ERROR(TOOL_EXIT_NOT_FOUND, message, details);
}

int show_record(const TOVREN_SFL_FLASH_INFO& flash, unsigned int index, const TOOL_OUTPUT& output) {
    if (output.is_json()) {
        nlohmann::ordered_json object;
        object["index"] = index;
        tool_put_flash_members(object, flash);
        output.write_json(object);
        return TOOL_EXIT_DONE;
    }
    TOOL_TABLE table({{"Member"}, {"Value"}});
    table.add_row({"index", std::to_string(index)});
    for (const TOOL_MEMBER_TEXT& member : tool_flash_member_texts(flash))
        table.add_row({member.name, member.text});
    table.write(output);
    return TOOL_EXIT_DONE;
}

int show_index(const std::string& text, const TOVREN_FLASH_MANAGER& manager, const TOOL_OUTPUT& output) {
    const auto index = tool_number(text, INVALID_DWORD);
    if (!index)
        throw tool_usage_error("flash show", "--index: " + tool_quoted(text) + " is not a number");
    if (const TOVREN_SFL_FLASH_INFO* flash = manager.get_flash(*index))
        return show_record(*flash, *index, output);
    const unsigned int count = manager.get_flash_count();
    return not_found(output, "there is no flash " + text,
                     {count > 0 ? "The indexes are 0 to " + std::to_string(count - 1) + "."
                                : "All flashes are hidden; `tovren flash list --all` tells what shows them."});
}

int unknown_name(const std::string& name, const TOVREN_FLASH_MANAGER& manager, const TOOL_OUTPUT& output) {
    return not_found(output, "there is no flash " + tool_quoted(name), tool_unknown_flash_details(name, manager));
}

int show_name(const std::string& name, TOVREN_FLASH_MANAGER& manager, const TOOL_OUTPUT& output) {
    const TOVREN_SFL_FLASH_INFO* flash = manager.get_default_flash(name);
    if (!flash)
        return unknown_name(name, manager, output);
    unsigned int index = 0;
    while (manager.get_flash(index) != flash)
        ++index;
    return show_record(*flash, index, output);
}

int show(const SHOW_OPTIONS& options, const TOOL_OUTPUT& output) {
    if (options.name.has_value() == options.index.has_value())
        throw tool_usage_error("flash show", "give either a NAME or --index N");
    const auto manager = tool_load_flashes(1);
    return options.name ? show_name(*options.name, *manager, output) : show_index(*options.index, *manager, output);
}

} // namespace

void tool_add_flash_group(TOOL_COMMAND_LINE& line) {
    TOOL_GROUP group = line.add_group("flash", "Flash memories");

    const auto generated = std::make_shared<GENERATE_OPTIONS>();
    group
        .add_verb("generate", "Write the flash database from its CSV description",
                  [generated](const TOOL_OUTPUT& output) { return generate(*generated, output); })
        .argument("CSV", generated->csv, "The description to read")
        .argument("OUT", generated->output, "The database to write");

    const auto listed = std::make_shared<LIST_OPTIONS>();
    group
        .add_verb("list", "List the known flashes",
                  [listed](const TOOL_OUTPUT& output) { return list(*listed, output); })
        .flag("--all", listed->is_all, "Also those that a setting would show");

    const auto shown = std::make_shared<SHOW_OPTIONS>();
    group
        .add_verb("show", "Show one flash: the default of a name, or by index",
                  [shown](const TOOL_OUTPUT& output) { return show(*shown, output); })
        .argument("NAME", shown->name, "The flash's name, in any letter case")
        .option("--index", "N", shown->index, "The flash's index in the list");

    const auto identified = std::make_shared<TOOL_IDENTIFY_OPTIONS>();
    group
        .add_verb("identify", "Find the flash behind each device of a chain",
                  [identified](const TOOL_OUTPUT& output) { return tool_flash_identify(*identified, output); })
        .arguments("ID", identified->ids, "What each device's flash answered, one ID a device")
        .flag("--silicon-id", identified->is_silicon_id, "The IDs are silicon IDs")
        .flag("--why", identified->is_why, "Also what was compared, and what else it may be")
        .option("--csv", "FILE", identified->csv, "With --why: the CSV whose lines are named")
        .option("--sfdp", "FILE", identified->sfdp, "With --why: the only flash's own table, to compare")
        .footer("\nAn ID is written 20BA18, \"20 BA 18\", 20:ba:18 or 0x20,0xba,0x18; it has at\n"
                "least three bytes, a silicon ID one. - reads IDs from standard input, one a\n"
                "line; # begins a comment there.\n");

    tool_add_define_verb(group);
    tool_add_definition_group(group);
    tool_add_mtd_verb(group);
}
