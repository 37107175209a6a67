// `tovren device`: the group's verbs.
#include "tool_command_line.h"
#include "tool_csv.h"
#include "tool_database.h"
#include "tool_device_catalogue.h"
#include "tool_device_database.h"
#include "tool_device_record.h"
#include "tool_error.h"
#include "tool_file.h"
#include "tool_groups.h"
#include "tool_output.h"
#include "tool_part_list.h"
#include "tool_table.h"
#include "tool_text.h"
#include "tovren_standalone_host.h"

#include <memory>
#include <nlohmann/json.hpp>

namespace {

using KIND = TOOL_CATALOGUE_VALUE::KIND;

// ---- generate ----

struct GENERATE_OPTIONS {
    std::string csv;
    std::string output;
    std::optional<std::string> product_root;
};

TOOL_ADVICE part_list_advice() {
    return {tool_printable(tool_part_list_path()) + ": the part list is refused",
            tool_part_list_fault_lines(),
            {"correct the part list, or name another product root with --product-root DIR"}};
}

TOOL_ADVICE generation_advice(const GENERATE_OPTIONS& options, const TOOL_REPORT& report) {
    const std::string output = tool_printable(options.output);
    if (report.condition() == "output_is_written")
        return {output + ": the database cannot be written there; what stood there is as it was",
                {},
                {"check that the folder exists, may be written and has room"}};
    if (const std::string fault = tool_reading_fault(options.csv); !fault.empty())
        return {tool_printable(options.csv) + ": " + fault, {}, {"name the description to read"}};
    const std::vector<std::string> faults =
        tool_csv_fault_lines(tool_device_csv_faults(options.csv), options.csv, true);
    // A line that is too long is reported alike in both files.
    if (report.condition() == "!input.has_failed()" || (report.condition() == "line.size() < 10240" && faults.empty()))
        return part_list_advice();
    return {tool_printable(options.csv) + ": the description is refused",
            faults,
            {"correct the description and run the command again; " + output + " is as it was"}};
}

int generate(const GENERATE_OPTIONS& options, const TOOL_OUTPUT& output) {
    if (tool_is_same_file(options.csv, options.output))
        throw tool_usage_error("device generate", "CSV and OUT are the same file");
    tool_need_regular_file(options.csv);
    if (options.product_root)
        TOVREN_STANDALONE_HOST::set_product_root(*options.product_root);
    TOVREN_DEV_INFO_MANAGER manager(true, 0);
    const auto advise = [&](const TOOL_REPORT& report) { return generation_advice(options, report); };
    try {
        tool_over_file(options.csv, advise, [&] { manager.generate_device_database(options.csv, options.output); });
    } catch (const std::out_of_range& error) {
        throw tool_refusal(error.what(), part_list_advice());
    }

    const size_t count = manager.get_record_count();
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

// ---- show ----

struct SHOW_OPTIONS {
    std::optional<std::string> family;
    std::optional<std::string> device;
    std::optional<std::string> part;
};

struct ASKED {
    KIND kind;
    std::string text;
};

ASKED asked(const SHOW_OPTIONS& options) {
    std::vector<ASKED> given;
    if (options.family)
        given.push_back({KIND::FAMILY, *options.family});
    if (options.device)
        given.push_back({KIND::DEVICE, *options.device});
    if (options.part)
        given.push_back({KIND::PART, *options.part});
    if (given.size() != 1)
        throw tool_usage_error("device show", "give one of --family, --device and --part");
    return given.front();
}

// Where nothing was found the JSON document is null.
int not_found(const TOOL_OUTPUT& output, const std::string& message, const std::vector<std::string>& details) {
    if (output.is_json())
        output.write_json(nlohmann::ordered_json());
    throw TOOL_ERROR(TOOL_EXIT_NOT_FOUND, message, details);
}

int unknown_value(const ASKED& question, const TOOL_OUTPUT& output) {
    const std::string kind = tool_kind_text(question.kind);
    const std::string message = "there is no " + kind + ' ' + tool_quoted(question.text);
    if (tool_number(question.text, INVALID_DWORD))
        return not_found(output, message,
                         {"Numbers go from 0 to " + std::to_string(tool_catalogue_bound(question.kind) - 1) + '.'});
    const std::string guess = tool_did_you_mean(tool_nearest_names(question.text, tool_user_names(question.kind)));
    const std::string plural = question.kind == KIND::FAMILY ? "families" : kind + 's';
    return not_found(output, message,
                     {guess.empty() ? "`tovren device catalogue " + plural + "` lists the known ones." : guess});
}

// Whether a record serves the value. A position at which none stands is the file's fault, which only a fetch finds.
bool is_served(const TOVREN_DEV_INFO_MANAGER& manager, TOOL_CATALOGUE_VALUE value) {
    const unsigned int position = tool_position_of(manager, value);
    if (position != INVALID_DWORD && (position >= TOTAL_DATABASE_DEVICE || !manager.get_record(position)))
        throw tool_refusal("m_index < TOTAL_DATABASE_DEVICE",
                           tool_advice_to_generate(TOOL_DEVICE_DATABASE,
                                                   std::string("it is damaged: the ") + tool_kind_text(value.kind) +
                                                       " table names record " + std::to_string(position) +
                                                       ", there are " + std::to_string(manager.get_record_count())));
    return position != INVALID_DWORD;
}

void write_record(const TOVREN_DEV_INFO_MANAGER& manager, TOOL_CATALOGUE_VALUE value, const TOOL_OUTPUT& output) {
    const unsigned int position = tool_position_of(manager, value);
    const TOVREN_DEVICE_INFO& record = *manager.get_record(position);
    const char* const served_by = tool_served_by(manager, value);
    if (output.is_json()) {
        nlohmann::ordered_json object;
        object["position"] = position;
        object["served_by"] = served_by;
        tool_put_device_members(object, record);
        output.write_json(object);
        return;
    }
    TOOL_TABLE table({{"Member"}, {"Value"}});
    table.add_row({"position", std::to_string(position)});
    table.add_row({"served_by", served_by});
    for (const TOOL_DEVICE_MEMBER_TEXT& member : tool_device_member_texts(record))
        table.add_row({member.name, member.text});
    table.write(output);
}

int show(const SHOW_OPTIONS& options, const TOOL_OUTPUT& output) {
    const ASKED question = asked(options);
    const auto value = tool_find_value(question.kind, question.text);
    if (!value)
        return unknown_value(question, output);
    const auto manager = tool_load_devices();
    if (!is_served(*manager, *value))
        return not_found(output,
                         "no record serves " + std::string(tool_kind_text(question.kind)) + ' ' +
                             tool_quoted(question.text),
                         {});
    write_record(*manager, *value, output);
    return TOOL_EXIT_DONE;
}

// ---- list ----

void list_records(const TOVREN_DEV_INFO_MANAGER& manager, const TOOL_OUTPUT& output) {
    TOOL_JSON_LINES lines(output);
    TOOL_TABLE table({{"Position", true}, {"Key"}, {"Name"}});
    for (unsigned int position = 0; position < manager.get_record_count(); ++position) {
        const TOVREN_DEVICE_INFO& record = *manager.get_record(position);
        if (output.is_json()) {
            nlohmann::ordered_json object;
            object["position"] = position;
            tool_put_device_members(object, record);
            lines.add(object);
        }
        const TOOL_RECORD_KEY key = tool_record_key(record);
        table.add_row({std::to_string(position), key.kind, key.name});
    }
    if (output.is_json())
        lines.end();
    else
        table.write(output);
}

void list_values(const TOVREN_DEV_INFO_MANAGER& manager, KIND kind, const TOOL_OUTPUT& output) {
    for (unsigned int number = 0; number < tool_catalogue_bound(kind); ++number)
        is_served(manager, {kind, number}); // ahead of the first line
    TOOL_JSON_LINES lines(output);
    TOOL_TABLE table({{"Number", true}, {"Name"}, {"Position", true}, {"Served by"}});
    for (unsigned int number = 0; number < tool_catalogue_bound(kind); ++number) {
        const unsigned int position = tool_position_of(manager, {kind, number});
        const bool has_record = is_served(manager, {kind, number});
        const char* const served_by = has_record ? tool_served_by(manager, {kind, number}) : "";
        const std::string name = tool_user_name({kind, number});
        if (output.is_json()) {
            nlohmann::ordered_json object = {{"number", number},
                                             {"name", nullptr},
                                             {"position", nullptr},
                                             {"served_by", nullptr}};
            if (!name.empty())
                object["name"] = name;
            if (has_record) {
                object["position"] = position;
                object["served_by"] = served_by;
            }
            lines.add(object);
        } else {
            table.add_row({std::to_string(number), name.empty() ? "(invalid)" : name,
                           has_record ? std::to_string(position) : "-", served_by});
        }
    }
    if (output.is_json())
        lines.end();
    else
        table.write(output);
}

int list(const std::optional<std::string>& by, const TOOL_OUTPUT& output) {
    const std::string what = by.value_or("record");
    const bool is_value = what == "family" || what == "device" || what == "part";
    if (!is_value && what != "record")
        throw tool_usage_error("device list",
                               "--by: " + tool_quoted(what) + " is none of record, family, device, part");
    const auto manager = tool_load_devices();
    if (is_value)
        list_values(*manager, what == "family" ? KIND::FAMILY : what == "device" ? KIND::DEVICE : KIND::PART, output);
    else
        list_records(*manager, output);
    return TOOL_EXIT_DONE;
}

// ---- report ----

int report(const std::string& mode_text, const TOOL_OUTPUT& output) {
    const auto mode = tool_number(mode_text, 4);
    if (!mode || *mode == 0)
        throw tool_usage_error("device report", tool_quoted(mode_text) + " is no mode from 1 to 4");
    const auto manager = tool_load_devices(*mode); // which prints
    if (output.is_json())
        output.write_json({{"mode", *mode}, {"records", manager->get_record_count()}});
    return TOOL_EXIT_DONE;
}

} // namespace

void tool_add_device_group(TOOL_COMMAND_LINE& line) {
    TOOL_GROUP group = line.add_group("device", "Devices and their programming records");

    const auto generated = std::make_shared<GENERATE_OPTIONS>();
    group
        .add_verb("generate", "Write the device database from its CSV description",
                  [generated](const TOOL_OUTPUT& output) { return generate(*generated, output); })
        .argument("CSV", generated->csv, "The description to read")
        .argument("OUT", generated->output, "The database to write")
        .option("--product-root", "DIR", generated->product_root, "The product's root, with h/pgm_parts.txt");

    const auto shown = std::make_shared<SHOW_OPTIONS>();
    group
        .add_verb("show", "Show the record that serves a family, a device or a part",
                  [shown](const TOOL_OUTPUT& output) { return show(*shown, output); })
        .option("--family", "NAME", shown->family, "A family, by name or number")
        .option("--device", "NAME", shown->device, "A device, by name or number")
        .option("--part", "NAME", shown->part, "A part, by name or number");

    const auto which = std::make_shared<std::string>();
    group
        .add_verb("catalogue", "List the catalogue: families, devices or parts",
                  [which](const TOOL_OUTPUT& output) { return tool_device_catalogue(*which, output); })
        .argument("WHICH", *which, "families, devices or parts");

    const auto by = std::make_shared<std::optional<std::string>>();
    group
        .add_verb("list", "List the records, or which record serves each value",
                  [by](const TOOL_OUTPUT& output) { return list(*by, output); })
        .option("--by", "KIND", *by, "record (the default), family, device or part");

    const auto mode = std::make_shared<std::string>();
    group
        .add_verb("report", "Print the library's own report",
                  [mode](const TOOL_OUTPUT& output) { return report(*mode, output); })
        .argument("MODE", *mode, "1 records, 2 families, 3 devices, 4 parts");
}
