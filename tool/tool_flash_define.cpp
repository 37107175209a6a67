// `tovren flash define`: the dialogue, definitions from a file, and the setting that keeps them.
#include "tool_command_line.h"
#include "tool_error.h"
#include "tool_flash_definition.h"
#include "tool_flash_definition_file.h"
#include "tool_flash_record.h"
#include "tool_flash_sfdp.h"
#include "tool_output.h"
#include "tool_text.h"
#include "tovren_flash_manager.h"
#include "tovren_standalone_host.h"

#include <memory>
#include <nlohmann/json.hpp>

namespace {

using nlohmann::ordered_json;

struct DEFINE_OPTIONS {
    std::optional<std::string> from;
    TOOL_SFDP_OPTIONS sfdp;
    bool is_stored = false;
    bool is_removed = false;
};

std::string settings_file() {
    return TOVREN_STANDALONE_HOST::get_settings_file();
}

// Why the settings file stays as it is.
TOOL_ERROR settings_refusal(const std::string& fault) {
    const std::string file = settings_file().empty() ? "settings" : tool_printable(settings_file());
    return {TOOL_EXIT_REFUSED,
            file + ": " + fault,
            {"What stood there is as it was.", "next: name a settings file that may be written with --settings"}};
}

// ---- what was defined ----

ordered_json outcome_json(const std::string& encoded, const std::string& list, bool is_stored) {
    ordered_json document = {{"setting", TOVREN_FLASH_MANAGER::get_ext_flash_setting_name()},
                             {"encoded", encoded},
                             {"stored", nullptr},
                             {"flashes", ordered_json::array()}};
    if (is_stored)
        document["stored"] = settings_file();
    for (const TOVREN_FLASH_INI_ENTRY& entry : TOVREN_FLASH_MANAGER::get_ini_entries(list)) {
        ordered_json flash = ordered_json::object();
        tool_put_flash_members(flash, TOVREN_FLASH_MANAGER::check_ini_entry(entry).record);
        document["flashes"].push_back(flash);
    }
    return document;
}

// A definition that passes the questions may still be one that a load leaves out.
void note_first_entry(const std::string& list) {
    const auto entries = TOVREN_FLASH_MANAGER::get_ini_entries(list);
    const std::string reason = tool_definition_refusal(TOVREN_FLASH_MANAGER::check_ini_entry(entries.front()));
    if (!reason.empty())
        tool_note("warning: a load will not apply the first flash: " + reason);
    else if (entries.size() > 1)
        tool_note("note: a load applies the first flash only");
}

void store(const std::string& encoded) {
    const std::string fault =
        TOVREN_STANDALONE_HOST::store_setting(TOVREN_FLASH_MANAGER::get_ext_flash_setting_name(), encoded);
    if (!fault.empty())
        throw settings_refusal(fault);
}

// `more` belongs to the JSON document.
int finish(const std::string& encoded, const std::string& list, const DEFINE_OPTIONS& options,
           const TOOL_OUTPUT& output, const ordered_json& more = ordered_json::object()) {
    if (options.is_stored)
        store(encoded);
    note_first_entry(list);
    ordered_json document = outcome_json(encoded, list, options.is_stored);
    document.update(more);
    if (output.is_json())
        output.write_json(document);
    else if (options.is_stored)
        output.write("stored " + TOVREN_FLASH_MANAGER::get_ext_flash_setting_name() + " in " +
                     tool_printable(settings_file()) + '\n');
    else if (options.from || options.sfdp.file)
        output.write(encoded + '\n'); // the dialogue has printed it
    return TOOL_EXIT_DONE;
}

// ---- from a file ----

[[noreturn]] void refuse_definitions(const std::string& file, const std::vector<TOOL_DEFINITION_FAULT>& faults,
                                     const TOOL_OUTPUT& output) {
    ordered_json document = {{"setting", TOVREN_FLASH_MANAGER::get_ext_flash_setting_name()},
                             {"encoded", nullptr},
                             {"stored", nullptr},
                             {"faults", ordered_json::array()}};
    std::vector<std::string> lines;
    for (const TOOL_DEFINITION_FAULT& fault : faults) {
        ordered_json object = {{"flash", nullptr}, {"member", nullptr}, {"reason", fault.reason}};
        if (fault.flash != 0)
            object["flash"] = fault.flash;
        if (!fault.member.empty())
            object["member"] = fault.member;
        document["faults"].push_back(object);
        lines.push_back(fault.text());
    }
    if (output.is_json())
        output.write_json(document);
    lines.emplace_back("next: correct the definition and run the command again; nothing was stored");
    throw TOOL_ERROR(TOOL_EXIT_REFUSED, (file == "-" ? "standard input" : tool_printable(file)) + ": no definition",
                     std::move(lines));
}

std::string encoded_list(const std::string& file, const std::string& list) {
    std::string encoded = tool_encode_definitions(list);
    if (tool_decode_definitions(encoded) != list)
        throw TOOL_ERROR(TOOL_EXIT_REFUSED, tool_printable(file) + ": the list does not come back when it is decoded");
    return encoded;
}

int define_from(const std::string& file, const DEFINE_OPTIONS& options, const TOOL_OUTPUT& output) {
    const TOOL_DEFINITION_FILE read = tool_read_definitions(file);
    if (!read.faults.empty())
        refuse_definitions(file, read.faults, output);
    std::string list;
    for (const std::string& definition : read.definitions)
        TOVREN_FLASH_MANAGER::add_ini_entry(list, definition);
    return finish(encoded_list(file, list), list, options, output);
}

// ---- from what the chip says of itself ----

int define_by_sfdp(const DEFINE_OPTIONS& options, const TOOL_OUTPUT& output) {
    const TOOL_SFDP_OUTCOME outcome = tool_define_by_sfdp(options.sfdp, !output.is_json());
    if (outcome.refusal) {
        ordered_json document = {{"setting", TOVREN_FLASH_MANAGER::get_ext_flash_setting_name()},
                                 {"encoded", nullptr},
                                 {"stored", nullptr}};
        document.update(outcome.document);
        if (output.is_json())
            output.write_json(document);
        throw TOOL_ERROR(*outcome.refusal);
    }
    std::string list;
    TOVREN_FLASH_MANAGER::add_ini_entry(list, outcome.definition);
    return finish(encoded_list(*options.sfdp.file, list), list, options, output, outcome.document);
}

// ---- the dialogue ----

int define_by_dialogue(const DEFINE_OPTIONS& options, const TOOL_OUTPUT& output) {
    TOVREN_FLASH_MANAGER manager(false, 0, true, false);
    const std::string encoded = manager.prompt_flash_ini();
    if (!encoded.empty())
        return finish(encoded, tool_decode_definitions(encoded), options, output);
    if (output.is_json())
        output.write_json(ordered_json());
    throw TOOL_ERROR(TOOL_EXIT_REFUSED, "no flash was defined",
                     {"One to three flashes can be; the first answer that is refused ends the dialogue."});
}

int remove_setting(const TOOL_OUTPUT& output) {
    const std::string setting = TOVREN_FLASH_MANAGER::get_ext_flash_setting_name();
    unsigned int count = 0;
    const std::string fault = TOVREN_STANDALONE_HOST::remove_setting(setting, count);
    if (!fault.empty())
        throw settings_refusal(fault);
    if (output.is_json())
        output.write_json({{"setting", setting}, {"file", settings_file()}, {"removed", count}});
    if (count == 0)
        throw TOOL_ERROR(TOOL_EXIT_NOT_FOUND, tool_printable(settings_file()) + ": it does not set " + setting);
    if (!output.is_json())
        output.write("removed " + setting + " from " + tool_printable(settings_file()) + '\n');
    return TOOL_EXIT_DONE;
}

void confirm_options(const DEFINE_OPTIONS& options) {
    const bool has_sfdp_options = options.sfdp.file || options.sfdp.id || !options.sfdp.members.empty();
    std::string fault;
    if (options.is_removed && (options.from || options.is_stored || has_sfdp_options))
        fault = "--remove stands alone";
    else if (options.from && options.sfdp.file)
        fault = "give either --from or --sfdp";
    else if (has_sfdp_options && !options.sfdp.file)
        fault = "--id and --member go with --sfdp FILE";
    else if (options.sfdp.file && !options.sfdp.id)
        fault = "--sfdp needs --id BYTES: the table does not hold the identification";
    if (!fault.empty())
        throw tool_usage_error("flash define", fault);
}

int define(const DEFINE_OPTIONS& options, const TOOL_OUTPUT& output) {
    confirm_options(options);
    if (options.is_removed)
        return remove_setting(output);
    if (options.sfdp.file)
        return define_by_sfdp(options, output);
    return options.from ? define_from(*options.from, options, output) : define_by_dialogue(options, output);
}

std::string define_help() {
    std::string help = "\nWithout options the dialogue asks for them. FILE holds a JSON object, or an array\n"
                       "of up to three, with the members below. A value is a number in the question's\n"
                       "unit, true or false, or a text as it would be typed: 18 is eighteen, \"18\" is\n"
                       "hexadecimal where the question says so. A load of the flash database applies\n"
                       "the first flash.\n\n"
                       "With --sfdp one flash is defined from the chip's own parameter table, raw bytes or\n"
                       "a hex dump, and its identification. What these do not tell comes from a record of\n"
                       "the same maker and series, or from --member, which goes before the table; VALUE\n"
                       "is typed as at the question. Standard error says where each member comes from.\n\n";
    constexpr size_t MEMBER_WIDTH = 22;
    for (const TOVREN_FLASH_PROMPT& prompt : TOVREN_FLASH_MANAGER::get_flash_prompts()) {
        const std::string member = prompt.member;
        const std::string question = prompt.question ? prompt.question : "";
        if (!question.empty())
            help += "  " + member + std::string(MEMBER_WIDTH - member.size(), ' ') +
                    question.substr(0, question.rfind(" :")) + '\n';
    }
    return help;
}

} // namespace

void tool_add_define_verb(TOOL_GROUP& flash) {
    const auto defined = std::make_shared<DEFINE_OPTIONS>();
    flash
        .add_verb(
            "define", "Define flashes of your own: by a dialogue, from a file, or from a chip's own table",
            [defined](const TOOL_OUTPUT& output) { return define(*defined, output); }, TOOL_SETTINGS_USE::MAKES)
        .option("--from", "FILE", defined->from, "Read the definitions from a JSON file; - is standard input")
        .option("--sfdp", "FILE", defined->sfdp.file, "Define one from a parameter table (SFDP); - is standard input")
        .option("--id", "BYTES", defined->sfdp.id, "With --sfdp: its identification, 20BA18 or \"20 BA 18\"")
        .options("--member", "NAME=VALUE", defined->sfdp.members, "With --sfdp: a member's value; may be repeated")
        .flag("--store", defined->is_stored, "Put the encoded text into the settings file")
        .flag("--remove", defined->is_removed, "Take it out of the settings file again")
        .footer(define_help().c_str());
}
