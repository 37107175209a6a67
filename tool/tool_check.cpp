// `tovren check`: faults of the CSV descriptions.
#include "tool_command_line.h"
#include "tool_csv.h"
#include "tool_error.h"
#include "tool_flash_waivers.h"
#include "tool_groups.h"
#include "tool_output.h"
#include "tool_text.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

namespace {

using SEVERITY = TOOL_CSV_FAULT::SEVERITY;

// A file that was checked.
struct CHECKED_FILE {
    std::string name;
    std::vector<TOOL_CSV_FAULT> faults;
    std::string remark = {}; // for people, behind the counts
};

bool is_fault(const TOOL_CSV_FAULT& fault) {
    return fault.severity != SEVERITY::REMARK;
}

size_t count_of_faults(const CHECKED_FILE& file) {
    return static_cast<size_t>(std::count_if(file.faults.begin(), file.faults.end(), is_fault));
}

nlohmann::ordered_json as_json(const TOOL_CSV_FAULT& fault, const std::string& file) {
    nlohmann::ordered_json object = {{"file", file},      {"line", nullptr},
                                     {"column", nullptr}, {"member", nullptr},
                                     {"text", nullptr},   {"fault", fault.fault},
                                     {"rule", nullptr},   {"severity", is_fault(fault) ? "fault" : "warning"}};
    if (fault.line != 0)
        object["line"] = fault.line;
    if (fault.column != 0) {
        object["column"] = fault.column;
        object["member"] = fault.member;
        object["text"] = fault.found;
    }
    if (!fault.rule.empty())
        object["rule"] = fault.rule;
    return object;
}

std::string as_text(const CHECKED_FILE& file) {
    std::string text;
    for (const TOOL_CSV_FAULT& fault : file.faults)
        text += fault.text(file.name) + (is_fault(fault) ? "\n" : " (warning)\n");
    const size_t count = count_of_faults(file);
    return text + tool_printable(file.name) + ": " + tool_count_text(count, "fault") + ", " +
           tool_count_text(file.faults.size() - count, "warning") + file.remark + '\n';
}

int write_faults(const std::vector<CHECKED_FILE>& files, const TOOL_OUTPUT& output) {
    if (output.is_json()) {
        TOOL_JSON_LINES lines(output);
        for (const CHECKED_FILE& file : files)
            for (const TOOL_CSV_FAULT& fault : file.faults)
                lines.add(as_json(fault, file.name));
        lines.end();
    } else {
        for (const CHECKED_FILE& file : files)
            output.write(as_text(file));
    }
    const bool is_good =
        std::all_of(files.begin(), files.end(), [](const CHECKED_FILE& file) { return count_of_faults(file) == 0; });
    return is_good ? TOOL_EXIT_DONE : TOOL_EXIT_REFUSED;
}

// ---- flash ----

struct FLASH_OPTIONS {
    std::string csv;
    std::optional<std::string> waivers;
};

// The waiver file to read; none where it is not named and does not stand beside the description.
std::optional<std::string> waiver_file(const FLASH_OPTIONS& options) {
    if (options.waivers)
        return options.waivers;
    std::error_code no_error;
    const std::string beside = tool_waivers_beside(options.csv);
    return std::filesystem::exists(beside, no_error) ? std::optional(beside) : std::nullopt;
}

int check_flash(const FLASH_OPTIONS& options, const TOOL_OUTPUT& output) {
    TOOL_CSV_TABLE table = tool_read_flash_csv(options.csv);
    TOOL_WAIVED waived{tool_physics_findings(table.rows)};
    std::vector<CHECKED_FILE> files;
    if (const auto name = waiver_file(options); name && !table.rows.empty()) {
        waived = tool_waive(std::move(waived.standing), table.rows, *name);
        files.push_back({*name, waived.faults, ", " + tool_count_text(waived.count, "finding") + " waived"});
    }
    for (const TOOL_PHYSICS_FINDING& finding : waived.standing)
        table.faults.push_back(finding.fault);
    files.insert(files.begin(), {options.csv, tool_sorted_faults(std::move(table.faults))});
    return write_faults(files, output);
}

std::string flash_help() {
    std::string help = "\nRules that a waiver may name, as a finding shows them in brackets:\n";
    for (const TOOL_PHYSICS_RULE& rule : tool_physics_rules())
        help += "  " + std::string(rule.name).append(17 - std::string(rule.name).size(), ' ') + rule.help + '\n';
    return help + "\nExit code 0: no fault; 3: a fault. Warnings do not count.\n";
}

} // namespace

void tool_add_check_group(TOOL_COMMAND_LINE& line) {
    TOOL_GROUP group = line.add_group("check", "Faults of the CSV descriptions, all in one run");
    const auto flash = std::make_shared<FLASH_OPTIONS>();
    group
        .add_verb("flash", "Check a flash description, cell by cell and by what is possible",
                  [flash](const TOOL_OUTPUT& output) { return check_flash(*flash, output); })
        .argument("CSV", flash->csv, "The description to check")
        .option("--waivers", "FILE", flash->waivers, "Findings that stand for a reason (default: STEM_waivers.csv)")
        .footer(flash_help().c_str());
    const auto device_csv = std::make_shared<std::string>();
    group
        .add_verb("devices", "Check a device description",
                  [device_csv](const TOOL_OUTPUT& output) {
                      return write_faults({{*device_csv, tool_device_csv_faults(*device_csv)}}, output);
                  })
        .argument("CSV", *device_csv, "The description to check");
}
