// `tovren flash definition`: the stored text of flash definitions, taken apart.
#include "tool_flash_definition.h"

#include "host_cfg.h"
#include "host_text.h"
#include "tool_command_line.h"
#include "tool_error.h"
#include "tool_file.h"
#include "tool_flash_record.h"
#include "tool_output.h"
#include "tool_table.h"
#include "tool_text.h"
#include "tovren_flash_manager.h"

#include <algorithm>
#include <cctype>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

const char TOOL_BEYOND_ANSWER_TEXT[] =
    "mfc_id_index is 255: matching compares the manufacturer byte at index 255, which no answer of three bytes has";

namespace {

using nlohmann::ordered_json;

// The one that is called tells on standard output why it failed. `advise` says what to do about it.
template <typename CONVERSION, typename ADVISE>
std::string converted(CONVERSION&& conversion, const std::string& text, const char* otherwise, ADVISE&& advise) {
    const TOOL_CAPTURE capture;
    std::string result = conversion(text);
    if (!result.empty())
        return result;
    std::string reason = capture.text();
    gen_remove_leading_and_trailing_white_spaces(reason);
    throw TOOL_ERROR(TOOL_EXIT_REFUSED, reason.empty() ? otherwise : reason, {advise(text)});
}

std::string advice_to_encode(const std::string& list) {
    if (list.empty())
        return "The list is empty; `tovren flash define` makes one.";
    return "It is too short: a list is DEFINITION#TAG; for each flash.";
}

std::string advice_to_decode(const std::string& encoded) {
    if (encoded.empty())
        return "The text is empty; `tovren flash define` makes one.";
    const auto is_strange = [](unsigned char character) {
        return std::isalnum(character) == 0 && character != '@' && character != '-';
    };
    const auto place = std::find_if(encoded.begin(), encoded.end(), is_strange);
    if (place == encoded.end())
        return "Give the whole text as `tovren flash define` prints it, behind \"INI : \" in the dialogue.";
    return "Character " + std::to_string(place - encoded.begin() + 1) + ", " + tool_quoted({&*place, 1}) +
           ", is none of 0-9 A-Z a-z @ -";
}

// ---- encode and decode ----

std::string standard_input() {
    constexpr size_t LARGEST_LIST = 1 << 20; // bytes
    return tool_read_all(std::cin, "standard input", LARGEST_LIST);
}

// A line end behind the list belongs to the line, not to the list.
std::string list_text(const std::optional<std::string>& argument) {
    std::string text = argument ? *argument : standard_input();
    if (!argument && text.ends_with('\n'))
        text.pop_back();
    if (!argument && text.ends_with('\r'))
        text.pop_back();
    return text;
}

std::string encoded_text(const std::optional<std::string>& argument) {
    std::string text = argument ? *argument : standard_input();
    if (!argument)
        gen_remove_leading_and_trailing_white_spaces(text);
    return text;
}

template <typename CONVERSION>
int convert(const char* key, const TOOL_OUTPUT& output, CONVERSION&& conversion) {
    std::string result;
    try {
        result = conversion();
    } catch (const TOOL_ERROR&) {
        if (output.is_json())
            output.write_json(ordered_json());
        throw;
    }
    if (output.is_json())
        output.write_json({{key, result}});
    else
        output.write(result + '\n');
    return TOOL_EXIT_DONE;
}

int tag(const std::string& definition, const TOOL_OUTPUT& output) {
    if (definition.empty())
        throw tool_usage_error("flash definition tag", "DEFINITION is empty");
    if (definition.find('#') != std::string::npos)
        tool_note("note: a # belongs to a list: DEFINITION ends in front of it");
    output.write_json({{"tag", TOVREN_FLASH_MANAGER::gen_ini_password(definition)},
                       {"version_text", TOVREN_FLASH_MANAGER::get_ini_version_text()}});
    return TOOL_EXIT_DONE;
}

// ---- check ----

struct CHECKED {
    TOVREN_FLASH_INI_ENTRY entry;
    TOVREN_FLASH_INI_CHECK check;
    size_t number; // from 1

    bool is_converted() const { return check.converted_count == TOTAL_DATABASE_MEMBER; }
    bool is_applied() const { return number == 1 && check.refusal == TOVREN_FLASH_INI_ACCEPTED; }

    // Empty where it is applied.
    std::string reason() const {
        const std::string own = tool_definition_refusal(check);
        if (number == 1)
            return own;
        return "a load takes the first entry only" + (own.empty() ? "" : "; also, " + own);
    }
};

std::vector<CHECKED> checked_entries(const std::string& list) {
    std::vector<CHECKED> checked;
    for (const TOVREN_FLASH_INI_ENTRY& entry : TOVREN_FLASH_MANAGER::get_ini_entries(list))
        checked.push_back({entry, TOVREN_FLASH_MANAGER::check_ini_entry(entry), checked.size() + 1});
    return checked;
}

std::string expected_tag(const CHECKED& entry) {
    return entry.entry.definition.empty() ? "" : TOVREN_FLASH_MANAGER::gen_ini_password(entry.entry.definition);
}

// Null for what could not be read.
ordered_json fields_json(const CHECKED& entry) {
    ordered_json fields = ordered_json::object();
    const std::vector<std::string>& texts = entry.check.fields;
    for (size_t i = 0; i < TOTAL_DATABASE_MEMBER; ++i) {
        ordered_json& field = fields[TOVREN_FLASH_MANAGER::m_name_list[i]];
        if (i < texts.size())
            field = texts[i];
    }
    return fields;
}

ordered_json rules_json(const CHECKED& entry) {
    auto rules = ordered_json::array();
    for (const TOVREN_FLASH_RULE& rule : TOVREN_FLASH_MANAGER::get_flash_rules()) {
        ordered_json object = {{"rule", rule.text}, {"holds", nullptr}};
        if (entry.is_converted())
            object["holds"] = rule.holds(entry.check.record);
        rules.push_back(object);
    }
    return rules;
}

ordered_json entry_json(const CHECKED& entry) {
    ordered_json object = {{"entry", entry.number},
                           {"definition", entry.entry.definition},
                           {"tag", entry.entry.tag},
                           {"expected_tag", expected_tag(entry)},
                           {"is_tag_right", entry.check.is_tag_right},
                           {"fields", fields_json(entry)},
                           {"record", nullptr},
                           {"rules", rules_json(entry)},
                           {"is_applied", entry.is_applied()},
                           {"reason", nullptr},
                           {"note", nullptr}};
    if (entry.is_converted()) {
        object["record"] = ordered_json::object();
        tool_put_flash_members(object["record"], entry.check.record);
    }
    if (!entry.is_applied())
        object["reason"] = entry.reason();
    if (tool_compares_beyond_answer(entry.check))
        object["note"] = TOOL_BEYOND_ANSWER_TEXT;
    return object;
}

// What stands in a field, and what a load makes of it.
void write_fields(const CHECKED& entry, const TOOL_OUTPUT& output) {
    TOOL_TABLE table({{"Member"}, {"Field"}, {"Value"}});
    const std::vector<std::string>& fields = entry.check.fields;
    const std::vector<TOOL_MEMBER_TEXT> values = tool_flash_member_texts(entry.check.record);
    for (size_t i = 0; i < TOTAL_DATABASE_MEMBER; ++i) {
        const bool is_bad = i == entry.check.converted_count;
        const std::string& value = entry.is_converted() ? values[i].text : "";
        if (i < fields.size())
            table.add_row({values[i].name, fields[i], is_bad ? "does not fit" : value});
        else
            table.add_row({values[i].name, "-", "missing"});
    }
    table.write(output);
}

std::string tag_line(const CHECKED& entry) {
    if (entry.entry.definition.empty())
        return "Tag: there is none\n";
    const std::string tag = tool_printable(entry.entry.tag);
    if (entry.check.is_tag_right)
        return "Tag: " + tag + " is right\n";
    return "Tag: " + tag + " is wrong; under this version it is " + expected_tag(entry) + '\n';
}

std::string rule_lines(const CHECKED& entry) {
    std::string text = "Rules:\n";
    for (const TOVREN_FLASH_RULE& rule : TOVREN_FLASH_MANAGER::get_flash_rules()) {
        const char* verdict = "unknown";
        if (entry.is_converted())
            verdict = rule.holds(entry.check.record) ? "holds  " : "broken ";
        text += std::string("  ") + verdict + "  " + rule.text + '\n';
    }
    return text;
}

void write_entry(const CHECKED& entry, const TOOL_OUTPUT& output) {
    output.write('\n' + output.bold("Entry " + std::to_string(entry.number)) + '\n');
    if (entry.check.fields.empty())
        output.write("It has no field: " + tool_quoted(entry.entry.text) + '\n');
    else
        write_fields(entry, output);
    std::string text = tag_line(entry) + rule_lines(entry);
    if (entry.is_applied())
        text += "A load applies it.\n";
    else
        text +=
            (entry.number == 1 ? "A load does not apply it: " : "A load never applies it: ") + entry.reason() + '\n';
    if (tool_compares_beyond_answer(entry.check))
        text += std::string("Note: ") + TOOL_BEYOND_ANSWER_TEXT + ".\n";
    output.write(text);
}

int write_check(const std::string& place, const std::vector<CHECKED>& entries, const TOOL_OUTPUT& output) {
    const std::string version_text = TOVREN_FLASH_MANAGER::get_ini_version_text();
    if (output.is_json()) {
        ordered_json document = {{"version_text", version_text}, {"entries", ordered_json::array()}};
        for (const CHECKED& entry : entries)
            document["entries"].push_back(entry_json(entry));
        output.write_json(document);
    } else {
        output.write(place + ": " + std::to_string(entries.size()) + (entries.size() == 1 ? " entry" : " entries") +
                     "; this version is " + tool_quoted(version_text) + '\n');
        for (const CHECKED& entry : entries)
            write_entry(entry, output);
    }
    if (entries.front().is_applied())
        return TOOL_EXIT_DONE;
    throw TOOL_ERROR(TOOL_EXIT_REFUSED, place + ": a load does not apply the first entry", {entries.front().reason()});
}

int check(const std::optional<std::string>& argument, const TOOL_OUTPUT& output) {
    const std::string setting = TOVREN_FLASH_MANAGER::get_ext_flash_setting_name();
    const std::string text = argument ? *argument : cfg_get_value(setting);
    const auto write_nothing = [&output] {
        if (output.is_json())
            output.write_json(ordered_json());
    };
    if (!argument && text.empty()) {
        write_nothing();
        throw TOOL_ERROR(TOOL_EXIT_NOT_FOUND, "the setting " + setting + " is not set",
                         {"`tovren flash define --from FILE --store` stores a definition in it."});
    }
    const std::string place = argument ? "TEXT" : setting;
    std::string list;
    try {
        list = tool_decode_definitions(text);
    } catch (const TOOL_ERROR& error) {
        write_nothing();
        std::vector<std::string> details = {error.what()};
        details.insert(details.end(), error.details().begin(), error.details().end());
        throw TOOL_ERROR(TOOL_EXIT_REFUSED, place + ": it cannot be decoded, and a load applies nothing of it",
                         std::move(details));
    }
    return write_check(place, checked_entries(list), output);
}

std::string field_fault(const TOVREN_FLASH_INI_CHECK& check) {
    const std::string& member = TOVREN_FLASH_MANAGER::m_name_list[check.converted_count];
    const std::string& field = check.fields[check.converted_count];
    const bool is_flag = TOVREN_FLASH_MANAGER::m_type_list[check.converted_count] == TOVREN_MANAGER_BOOL;
    return member + ": " + tool_quoted(field) + (is_flag ? " is neither 0 nor 1" : " is no number of its width");
}

std::string rule_faults(const TOVREN_SFL_FLASH_INFO& record) {
    std::vector<std::string> broken;
    for (const TOVREN_FLASH_RULE& rule : TOVREN_FLASH_MANAGER::get_flash_rules())
        if (!rule.holds(record))
            broken.emplace_back(rule.text);
    return "it breaks the " + std::string(broken.size() == 1 ? "rule" : "rules") + " that " +
           tool_join(broken, "; that ");
}

} // namespace

std::string tool_definition_refusal(const TOVREN_FLASH_INI_CHECK& check) {
    switch (check.refusal) {
    case TOVREN_FLASH_INI_ACCEPTED:
        return "";
    case TOVREN_FLASH_INI_MISSING_FIELD:
        return "it has " + tool_count_text(check.fields.size(), "field") + " of " +
               std::to_string(TOTAL_DATABASE_MEMBER) + "; the first that is missing is " +
               TOVREN_FLASH_MANAGER::m_name_list[check.fields.size()];
    case TOVREN_FLASH_INI_BAD_FIELD:
        return field_fault(check);
    case TOVREN_FLASH_INI_INVALID_RECORD:
        return rule_faults(check.record) + (check.is_tag_right ? "" : "; its tag is wrong, too");
    case TOVREN_FLASH_INI_WRONG_TAG:
        return "its tag is not that of " + tool_quoted(TOVREN_FLASH_MANAGER::get_ini_version_text()) +
               ": the list was made under another version text, or changed since";
    case TOVREN_FLASH_INI_NO_DEVICE_NAME:
        return "its device_name is empty, and a flash without one has no effect";
    default:
        return "it is not of the form DEFINITION#TAG;";
    }
}

bool tool_compares_beyond_answer(const TOVREN_FLASH_INI_CHECK& check) {
    constexpr BYTE LAST_INDEX = 0xFF;
    return check.converted_count == TOTAL_DATABASE_MEMBER && check.record.mfc_id_index == LAST_INDEX &&
           !check.record.silicon_id;
}

std::string tool_encode_definitions(const std::string& list) {
    return converted(TOVREN_FLASH_MANAGER::encode_ini, list, "the list cannot be encoded", advice_to_encode);
}

std::string tool_decode_definitions(const std::string& encoded) {
    return converted(TOVREN_FLASH_MANAGER::decode_ini, encoded, "the text stands for an empty list", advice_to_decode);
}

void tool_add_definition_group(TOOL_GROUP& flash) {
    TOOL_GROUP group = flash.add_group("definition", "The stored text of flash definitions");

    const auto list = std::make_shared<std::optional<std::string>>();
    group
        .add_verb("encode", "Encode a definition list",
                  [list](const TOOL_OUTPUT& output) {
                      return convert("encoded", output, [&] { return tool_encode_definitions(list_text(*list)); });
                  })
        .argument("LIST", *list, "The list; standard input without it")
        .footer("\nA list is DEFINITION#TAG; once for each flash.\n");

    const auto encoded = std::make_shared<std::optional<std::string>>();
    group
        .add_verb("decode", "Decode the text of the setting",
                  [encoded](const TOOL_OUTPUT& output) {
                      return convert("list", output, [&] { return tool_decode_definitions(encoded_text(*encoded)); });
                  })
        .argument("TEXT", *encoded, "The text; standard input without it");

    const auto definition = std::make_shared<std::string>();
    group
        .add_verb("tag", "Print a definition's tag and the version text behind it, as JSON",
                  [definition](const TOOL_OUTPUT& output) { return tag(*definition, output); })
        .argument("DEFINITION", *definition, "The definition, @FIELD@FIELD ... @FIELD@");

    const auto checked = std::make_shared<std::optional<std::string>>();
    group
        .add_verb("check", "Say field by field whether a load applies a stored text",
                  [checked](const TOOL_OUTPUT& output) { return check(*checked, output); })
        .argument("TEXT", *checked, "The text; the configured setting without it")
        .footer("\nExit code 0: a load applies the first entry; 3: it does not, and why is said;\n"
                "1: the setting is not set.\n");
}
