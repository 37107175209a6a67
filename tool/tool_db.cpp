// `tovren db`: database files, whichever build wrote them.
#include "tool_command_line.h"
#include "tool_db_file.h"
#include "tool_db_record.h"
#include "tool_db_verbs.h"
#include "tool_error.h"
#include "tool_groups.h"
#include "tool_output.h"
#include "tool_table.h"
#include "tool_text.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

namespace {

constexpr size_t LINE_WIDTH = 78;

struct TABLE_SUMMARY {
    size_t served;  // entries that name a record
    size_t records; // different records that they name
};

TABLE_SUMMARY summary_of(const TOOL_DB_TABLE& table) {
    std::set<unsigned int> positions(table.positions.begin(), table.positions.end());
    const auto unserved = std::count(table.positions.begin(), table.positions.end(), INVALID_DWORD);
    positions.erase(INVALID_DWORD);
    return {table.positions.size() - static_cast<size_t>(unserved), positions.size()};
}

// ---- JSON ----

template <typename VALUE>
nlohmann::ordered_json or_null(const std::optional<VALUE>& value) {
    return value ? nlohmann::ordered_json(*value) : nlohmann::ordered_json();
}

nlohmann::ordered_json as_json(const TOOL_DB_FILE& file) {
    nlohmann::ordered_json object = {{"size", file.file_size},
                                     {"kind", nullptr},
                                     {"magic", file.magic},
                                     {"md5", file.md5},
                                     {"md5_matches", file.is_of_this_build},
                                     {"payload_size", or_null(file.payload_size)},
                                     {"compressed_size", file.compressed_size},
                                     {"check", file.check_field},
                                     {"version", or_null(file.version)},
                                     {"record_count", or_null(file.record_count)},
                                     {"member_count", or_null(file.member_count)},
                                     {"records", nlohmann::ordered_json::array()},
                                     {"tables", nlohmann::ordered_json::object()},
                                     {"fault", nullptr}};
    if (!file.kind.empty())
        object["kind"] = file.kind;
    for (size_t i = 0; i < file.records.size(); ++i)
        object["records"].push_back(tool_db_json(file.records[i], i));
    for (const TOOL_DB_TABLE& table : file.tables) {
        const TABLE_SUMMARY summary = summary_of(table);
        object["tables"][table.name] = {{"entries", table.positions.size()},
                                        {"served", summary.served},
                                        {"records", summary.records}};
    }
    for (const TOOL_DB_FAULT& fault : file.faults)
        object["fault"] = {{"area", fault.area}, {"offset", fault.offset}, {"reason", fault.reason}};
    return object;
}

// ---- for people ----

std::string value_text(const TOOL_DB_VALUE& value) {
    if (const auto* text = std::get_if<std::string>(&value))
        return tool_quoted(*text);
    if (const auto* flag = std::get_if<bool>(&value))
        return *flag ? "yes" : "no";
    return std::to_string(std::get<unsigned int>(value));
}

// "name value, name value", broken into lines.
std::string record_text(const TOOL_DB_RECORD& record, size_t position) {
    std::string text = "record " + std::to_string(position) + ":\n";
    std::string line;
    for (const TOOL_DB_MEMBER& member : record) {
        const std::string item = (member.name.empty() ? "" : std::string(member.name) + ' ') +
                                 value_text(member.value) + (&member == &record.back() ? "" : ",");
        if (!line.empty() && line.size() + 1 + item.size() > LINE_WIDTH) {
            text += line + '\n';
            line.clear();
        }
        line += (line.empty() ? "  " : " ") + item;
    }
    return text + line + '\n';
}

std::string or_dash(const std::optional<unsigned int>& value) {
    return value ? std::to_string(*value) : "-";
}

void write_envelope(const TOOL_DB_FILE& file, const TOOL_OUTPUT& output) {
    TOOL_TABLE table({{"Field"}, {"Value"}});
    table.add_row({"file size", std::to_string(file.file_size)});
    table.add_row({"magic", file.magic});
    table.add_row({"MD5 text", file.md5 + (file.is_of_this_build ? " (this build's)" : " (not this build's)")});
    table.add_row({"payload size", or_dash(file.payload_size)});
    table.add_row({"compressed size", std::to_string(file.compressed_size)});
    table.add_row({"check field", file.check_field});
    table.add_row({"version", or_dash(file.version)});
    table.add_row({"record count", or_dash(file.record_count)});
    table.add_row({"member count", or_dash(file.member_count)});
    for (const TOOL_DB_TABLE& index : file.tables) {
        const TABLE_SUMMARY summary = summary_of(index);
        table.add_row({std::string(index.name) + " table", std::to_string(index.positions.size()) + " entries, " +
                                                               std::to_string(summary.served) + " served by " +
                                                               tool_count_text(summary.records, "record")});
    }
    table.write(output);
}

int inspect(const std::string& path, const TOOL_OUTPUT& output) {
    const TOOL_DB_FILE file = tool_read_db_file(path);
    if (output.is_json()) {
        output.write_json(as_json(file));
    } else {
        write_envelope(file, output);
        for (size_t i = 0; i < file.records.size(); ++i)
            output.write(record_text(file.records[i], i));
    }
    if (file.trailing_size != 0)
        tool_note("note: " + tool_printable(path) + ": " + tool_count_text(file.trailing_size, "byte") +
                  " behind the last record; a load does not read them");
    if (!file.faults.empty())
        throw TOOL_ERROR(TOOL_EXIT_REFUSED, tool_db_fault_text(path, file.faults.front()));
    return TOOL_EXIT_DONE;
}

} // namespace

void tool_add_db_group(TOOL_COMMAND_LINE& line) {
    TOOL_GROUP group = line.add_group("db", "Database files, whichever build wrote them");
    const auto file = std::make_shared<std::string>();
    group
        .add_verb("inspect", "Take a database file apart, up to its first fault",
                  [file](const TOOL_OUTPUT& output) { return inspect(*file, output); })
        .argument("FILE", *file, "The database");
    tool_add_db_dump(group);
    tool_add_db_diff(group);
    tool_add_db_verify(group);
}
