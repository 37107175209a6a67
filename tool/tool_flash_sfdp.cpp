// A flash definition from a parameter table (SFDP), an identification and given members, and the report of it.
#include "tool_flash_sfdp.h"

#include "tool_flash_database.h"
#include "tool_flash_definition_file.h"
#include "tool_flash_id.h"
#include "tool_flash_record.h"
#include "tool_output.h"
#include "tool_sfdp_check.h"
#include "tool_sfdp_definition.h"
#include "tool_sfdp_file.h"
#include "tool_sfdp_words.h"
#include "tool_table.h"
#include "tool_text.h"
#include "tovren_flash_manager.h"

#include <algorithm>
#include <array>
#include <map>
#include <memory>

namespace {

using nlohmann::ordered_json;
using GIVEN = std::map<std::string, std::string>;
using MEMBERS = std::vector<TOOL_SFDP_MEMBER>;

constexpr char COMMAND[] = "flash define";
constexpr size_t ID_BYTES = 3;

// ---- the command line ----

GIVEN given_members(const std::vector<std::string>& options) {
    GIVEN given;
    for (const std::string& option : options) {
        const size_t sign = option.find('=');
        const std::string member = option.substr(0, sign);
        if (sign == std::string::npos)
            throw tool_usage_error(COMMAND, "--member " + tool_quoted(option) + ": = is missing; it is NAME=VALUE");
        if (const std::string fault = tool_flash_member_fault(member); !fault.empty())
            throw tool_usage_error(COMMAND, "--member " + tool_quoted(member) + ": " + fault);
        if (!given.emplace(member, option.substr(sign + 1)).second)
            throw tool_usage_error(COMMAND, "--member " + member + " is given twice");
    }
    return given;
}

std::optional<std::string> value_of(const GIVEN& given, const std::string& member) {
    const auto place = given.find(member);
    return place == given.end() ? std::nullopt : std::optional(place->second);
}

// ---- the database ----

// Records are a help, not a need: without a database all that they would tell is asked for.
struct DATABASE {
    std::unique_ptr<TOVREN_FLASH_MANAGER> manager;
    TOOL_FLASH_RECORDS records; // without the user's own
    std::string absence;

    bool has_external() const { return manager && !manager->m_ext_flash_info.device_name.empty(); }
};

DATABASE load_database() {
    DATABASE database;
    try {
        database.manager = tool_load_flashes(1);
    } catch (const TOOL_ERROR& error) {
        database.absence = error.what();
        return database;
    }
    database.records = tool_loaded_flashes(*database.manager);
    if (database.has_external())
        database.records.erase(database.records.begin());
    return database;
}

// ---- one run ----

struct RUN {
    SFDP_TABLE table;
    TOOL_FLASH_ID id;
    GIVEN given;
    DATABASE database;
    TOOL_FLASH_SIBLINGS siblings;
    MEMBERS members;
    std::vector<TOOL_SFDP_CONTRADICTION> contradictions;
    std::vector<unsigned int> known; // indexes of records that answer so now
};

// A density that is given counts for the search of records; else that of the table.
unsigned long long density_of(const RUN& run) {
    const auto prompts = TOVREN_FLASH_MANAGER::get_flash_prompts();
    const auto prompt = std::find_if(prompts.begin(), prompts.end(), [](const TOVREN_FLASH_PROMPT& candidate) {
        return std::string_view(candidate.member) == "device_bit_size";
    });
    std::string field;
    const auto given = value_of(run.given, prompt->member);
    if (given && tool_flash_answer_fault(*prompt, *given, field).empty())
        return static_cast<DWORD>(std::strtoll(field.c_str(), nullptr, 10));
    return run.table.density_bits;
}

void fill(RUN& run) {
    run.database = load_database();
    const unsigned long long bits = density_of(run);
    run.siblings = tool_flash_siblings(run.database.records, {run.id.bytes, value_of(run.given, "device_name"),
                                                              value_of(run.given, "manufacturer_name"), bits});
    const TOOL_SFDP_SOURCES sources{run.table, run.id.bytes, run.given, run.siblings, bits};
    run.members = tool_fill_definition(sources);
    run.contradictions = tool_sfdp_contradictions(sources, run.members, run.database.records);
    if (run.database.manager)
        run.known = run.database.manager->get_matching_flashes(false, run.id.bytes.data(),
                                                               static_cast<unsigned int>(run.id.bytes.size()));
}

std::array<std::string, TOTAL_DATABASE_MEMBER> fields_of(const RUN& run) {
    std::array<std::string, TOTAL_DATABASE_MEMBER> fields;
    for (size_t i = 0; i < fields.size(); ++i)
        fields[i] = run.members[i].field;
    return fields;
}

// What the fields are as members; those without a value are not to be looked at.
TOVREN_SFL_FLASH_INFO record_of(const RUN& run) {
    auto fields = fields_of(run);
    for (std::string& field : fields)
        if (field.empty())
            field = "0";
    TOVREN_FLASH_MANAGER manager(false, 0, true, false);
    manager.assign_ini(fields);
    return manager.m_ext_flash_info;
}

// ---- what is missing ----

std::string placeholder(const TOVREN_FLASH_PROMPT& prompt) {
    switch (prompt.type) {
    case TOVREN_FLASH_PROMPT_NAME:
        return "TEXT";
    case TOVREN_FLASH_PROMPT_YES_NO:
        return "Y|N";
    case TOVREN_FLASH_PROMPT_HEX:
        return "HEX";
    case TOVREN_FLASH_PROMPT_BIT:
        return "BIT";
    default:
        return "NUMBER";
    }
}

std::string option_for(const TOVREN_FLASH_PROMPT& prompt) {
    return std::string("--member ") + prompt.member + '=' + placeholder(prompt);
}

bool is_missing(const TOOL_SFDP_MEMBER& member) {
    return member.prompt->question && member.field.empty();
}

std::string reason_of(const TOOL_SFDP_MEMBER& member) {
    return member.fault.empty() ? "it is missing" : member.fault;
}

// Empty where no two of them stand at one place.
std::string place_fault(const RUN& run) {
    std::string definition;
    auto fields = fields_of(run);
    const bool has_all = std::none_of(run.members.begin(), run.members.end(), [](const TOOL_SFDP_MEMBER& member) {
        return is_missing(member) && std::string_view(member.prompt->member).ends_with("_index");
    });
    return has_all && !TOVREN_FLASH_MANAGER::gen_flash_definition(fields, definition)
               ? "memory_id_index, memory_type_index and mfc_id_index cannot be at the same location"
               : "";
}

std::string definition_of(const RUN& run) {
    std::string definition;
    auto fields = fields_of(run);
    TOVREN_FLASH_MANAGER::gen_flash_definition(fields, definition);
    return definition;
}

std::vector<std::string> refusal_lines(const RUN& run) {
    std::vector<std::string> lines;
    for (const TOOL_SFDP_CONTRADICTION& contradiction : run.contradictions)
        if (contradiction.is_stopping)
            lines.push_back(contradiction.text + "; " + contradiction.next);
    for (const TOOL_SFDP_MEMBER& member : run.members)
        if (is_missing(member))
            lines.push_back(std::string(member.prompt->member) + ": " + reason_of(member) + " (" +
                            tool_flash_question(*member.prompt) + "); " + option_for(*member.prompt));
    if (const std::string fault = place_fault(run); !fault.empty())
        lines.push_back(fault);
    return lines;
}

// Empty where a definition can be made.
std::optional<TOOL_ERROR> refusal(const std::string& file, const RUN& run) {
    std::vector<std::string> lines = refusal_lines(run);
    if (lines.empty())
        return std::nullopt;
    const auto missing = std::count_if(run.members.begin(), run.members.end(), is_missing);
    const std::string count =
        missing == 0 ? "" : "; " + tool_count_text(static_cast<size_t>(missing), "member") + " to be given";
    const bool is_untold = std::any_of(run.members.begin(), run.members.end(), [](const TOOL_SFDP_MEMBER& member) {
        return is_missing(member) && member.fault.empty();
    });
    if (!run.siblings.absence.empty() && is_untold)
        lines.push_back("no record tells them: " +
                        (run.database.absence.empty() ? run.siblings.absence : run.database.absence));
    lines.emplace_back("next: give them and run the command again; nothing was stored");
    return TOOL_ERROR(TOOL_EXIT_REFUSED, tool_sfdp_file_text(file) + ": no definition" + count, std::move(lines));
}

// ---- JSON ----

ordered_json member_json(const TOOL_SFDP_MEMBER& member, const ordered_json& values) {
    ordered_json object = {{"member", member.prompt->member},
                           {"value", nullptr},
                           {"source", nullptr},
                           {"record", nullptr},
                           {"sureness", nullptr},
                           {"note", nullptr}};
    if (!member.field.empty()) {
        object["value"] = values[member.prompt->member];
        object["source"] = tool_source_text(member.source);
        object["sureness"] = tool_sureness_text(member.sureness);
    }
    if (member.record)
        object["record"] = member.record->device_name;
    if (!member.note.empty())
        object["note"] = member.note;
    return object;
}

ordered_json missing_json(const MEMBERS& members) {
    ordered_json missing = ordered_json::array();
    for (const TOOL_SFDP_MEMBER& member : members)
        if (is_missing(member))
            missing.push_back({{"member", member.prompt->member},
                               {"reason", reason_of(member)},
                               {"question", tool_flash_question(*member.prompt)},
                               {"option", option_for(*member.prompt)}});
    return missing;
}

ordered_json contradictions_json(const RUN& run) {
    ordered_json contradictions = ordered_json::array();
    for (const TOOL_SFDP_CONTRADICTION& contradiction : run.contradictions)
        contradictions.push_back(
            {{"kind", contradiction.kind}, {"text", contradiction.text}, {"stops", contradiction.is_stopping}});
    return contradictions;
}

ordered_json known_json(const RUN& run) {
    ordered_json known = ordered_json::array();
    for (const unsigned int index : run.known)
        known.push_back({{"index", index}, {"device_name", run.database.manager->get_flash(index)->device_name}});
    return known;
}

ordered_json run_json(const RUN& run) {
    ordered_json values;
    tool_put_flash_members(values, record_of(run));
    ordered_json document = {{"id", run.id.text()}, {"series", nullptr}, {"members", ordered_json::array()}};
    if (!run.siblings.records.empty())
        document["series"] = run.siblings.series;
    for (const TOOL_SFDP_MEMBER& member : run.members)
        document["members"].push_back(member_json(member, values));
    document["missing"] = missing_json(run.members);
    document["contradictions"] = contradictions_json(run);
    document["table_warnings"] = run.table.warnings;
    document["answered_by"] = known_json(run);
    return document;
}

// ---- for people ----

std::string source_cell(const TOOL_SFDP_MEMBER& member) {
    if (member.field.empty())
        return is_missing(member) ? "missing" : "";
    if (member.record)
        return "record " + member.record->device_name;
    return tool_source_text(member.source);
}

void note_members(const RUN& run) {
    TOOL_TABLE table({{"Member"}, {"Value"}, {"From"}, {"Sure"}});
    const auto values = tool_flash_member_texts(record_of(run));
    for (size_t i = 0; i < run.members.size(); ++i) {
        const TOOL_SFDP_MEMBER& member = run.members[i];
        table.add_row({values[i].name, member.field.empty() ? "" : values[i].text, source_cell(member),
                       member.field.empty() ? "" : tool_sureness_text(member.sureness)});
    }
    table.note();
    for (const TOOL_SFDP_MEMBER& member : run.members)
        if (!member.note.empty() && !member.field.empty())
            tool_note("  " + std::string(member.prompt->member) + ": " + tool_printable(member.note));
}

void note_known(const RUN& run) {
    if (run.known.empty())
        return;
    std::vector<std::string> names;
    for (const unsigned int index : run.known)
        names.push_back(tool_printable(run.database.manager->get_flash(index)->device_name) + " [" +
                        std::to_string(index) + ']');
    tool_note("note: " + run.id.text() + " is known; now the first of these answers: " + tool_join(names, ", ") +
              "; a stored definition answers before them, as index 0" +
              (run.database.has_external() ? ", in the place of the one that is stored now" : ""));
}

void note_run(const RUN& run) {
    note_members(run);
    if (!run.siblings.records.empty())
        tool_note("note: records of the series " + run.siblings.series + " count, known from " +
                  tool_printable(run.siblings.pointed_to_by));
    if (run.id.bytes.size() > ID_BYTES)
        tool_note("note: a definition compares the first three bytes of " + run.id.text());
    note_known(run);
    for (const std::string& warning : run.table.warnings)
        tool_note("note: " + tool_sfdp_warning_text(warning));
    for (const TOOL_SFDP_CONTRADICTION& contradiction : run.contradictions)
        if (!contradiction.is_stopping)
            tool_note("warning: " + contradiction.text);
}

TOOL_SFDP_OUTCOME refused_image(const std::string& file, const SFDP_REFUSAL& reason) {
    TOOL_SFDP_OUTCOME outcome;
    outcome.document = {{"refusal", {{"kind", reason.kind}, {"reason", reason.reason}, {"offset", reason.offset}}}};
    outcome.refusal = tool_sfdp_error(file, reason);
    return outcome;
}

} // namespace

TOOL_SFDP_OUTCOME tool_define_by_sfdp(const TOOL_SFDP_OPTIONS& options, bool is_reported) {
    RUN run;
    run.given = given_members(options.members);
    run.id = tool_read_flash_id(*options.id, COMMAND, "--id");
    SFDP_RESULT result = tool_read_sfdp(*options.file);
    if (const auto* reason = std::get_if<SFDP_REFUSAL>(&result))
        return refused_image(*options.file, *reason);
    run.table = std::get<SFDP_TABLE>(std::move(result));
    fill(run);
    if (is_reported)
        note_run(run);
    TOOL_SFDP_OUTCOME outcome;
    outcome.document = run_json(run);
    outcome.refusal = refusal(*options.file, run);
    if (!outcome.refusal)
        outcome.definition = definition_of(run);
    return outcome;
}
