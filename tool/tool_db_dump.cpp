// `tovren db dump`: the CSV description of a database.
#include "tool_command_line.h"
#include "tool_db_csv.h"
#include "tool_db_verbs.h"
#include "tool_error.h"
#include "tool_file.h"
#include "tool_output.h"
#include "tool_text.h"
#include "tovren_dev_info_manager_auto_export.h"

#include <nlohmann/json.hpp>

namespace {

constexpr size_t MOST_FAULTS_SHOWN = 10;

struct DUMP_OPTIONS {
    std::string file;
    std::optional<std::string> output;
};

TOOL_ERROR refusal(const std::string& name, const std::vector<TOOL_DB_CSV_FAULT>& faults) {
    std::vector<std::string> lines;
    for (const TOOL_DB_CSV_FAULT& fault : faults) {
        if (lines.size() == MOST_FAULTS_SHOWN) {
            lines.push_back("and " + tool_count_text(faults.size() - lines.size(), "more value"));
            break;
        }
        lines.push_back("record " + std::to_string(fault.record) + ": " + fault.member + ": " + fault.fault);
    }
    lines.emplace_back("next: `tovren db inspect` shows the records all the same");
    return {TOOL_EXIT_REFUSED, name + ": it holds what a CSV description cannot; nothing is written", std::move(lines)};
}

// What a database generated from the description will have otherwise.
void note_differences(const std::string& name, const TOOL_DB_FILE& file) {
    const auto note = [&name](const std::string& text) { tool_note("note: " + name + ": " + text); };
    if (!file.is_of_this_build)
        note("it is of another build; what this one generates bears its own MD5 text");
    if (file.check_field != "0000")
        note("its check field is " + file.check_field + "; a generated one is 0000");
    if (file.has_other_tags)
        note("it has value tags that no generator writes; the values are the same");
    if (file.trailing_size != 0)
        note(tool_count_text(file.trailing_size, "byte") + " behind the last record are left out");
    if (file.kind == "device" && file.records.size() != TOTAL_DATABASE_DEVICE)
        note("it has " + tool_count_text(file.records.size(), "record") + "; a generator takes " +
             std::to_string(TOTAL_DATABASE_DEVICE));
}

TOOL_DB_FILE read(const std::string& path) {
    TOOL_DB_FILE file = tool_read_db_file(path);
    if (const auto refusals = tool_db_refusals(path, file); !refusals.empty())
        throw TOOL_ERROR(TOOL_EXIT_REFUSED, refusals.front());
    return file;
}

int dump(const DUMP_OPTIONS& options, const TOOL_OUTPUT& output) {
    if (output.is_json() && !options.output)
        throw tool_usage_error("db dump", "--json needs --output FILE: the description itself is CSV",
                               {"`tovren db inspect --json` gives the records as JSON."});
    if (options.output && tool_is_same_file(options.file, *options.output))
        throw tool_usage_error("db dump", "FILE and --output are the same file");
    const TOOL_DB_FILE file = read(options.file);
    const TOOL_DB_CSV csv = tool_db_csv(file);
    const std::string name = tool_printable(options.file);
    if (!csv.faults.empty())
        throw refusal(name, csv.faults);
    if (!options.output)
        output.write(csv.text);
    else
        tool_write_file(*options.output, csv.text);
    note_differences(name, file);
    if (output.is_json())
        output.write_json({{"kind", file.kind}, {"output", *options.output}, {"records", file.records.size()}});
    else if (options.output)
        output.write("wrote " + tool_count_text(file.records.size(), "record") + " to " +
                     tool_printable(*options.output) + '\n');
    return TOOL_EXIT_DONE;
}

} // namespace

void tool_add_db_dump(TOOL_GROUP& group) {
    const auto options = std::make_shared<DUMP_OPTIONS>();
    group
        .add_verb("dump", "The CSV description of a database",
                  [options](const TOOL_OUTPUT& output) { return dump(*options, output); })
        .argument("FILE", options->file, "The database")
        .option("--output", "FILE", options->output, "Write the description there instead of standard output")
        .footer("\n`flash generate` or `device generate` makes the same database of it again, of a device database\n"
                "with the same part list.\n");
}
