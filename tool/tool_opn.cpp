// `tovren opn`: ordering part numbers and their hashes. `tovren enum`: names of programming enumerations.
#include "host_dev.h"
#include "host_text.h"
#include "tool_command_line.h"
#include "tool_enum.h"
#include "tool_error.h"
#include "tool_groups.h"
#include "tool_name_explain.h"
#include "tool_output.h"
#include "tool_table.h"
#include "tool_text.h"
#include "tovren_device_grammar_mgr.h"
#include "tovren_mgr.h"

#include <charconv>
#include <nlohmann/json.hpp>

namespace {

constexpr unsigned int NO_OPN = 0xFFFFFFFF;

// ---- opn ----

// A part by its name; what does not apply is none. For people, no part is nothing: a complaint follows.
int write_part(const std::string& name, std::optional<unsigned int> opn_enum, const TOOL_OUTPUT& output) {
    const std::string hash = tool_opn_hash_text(TOVREN_MGR::get_opn_hash(name));
    if (output.is_json()) {
        nlohmann::ordered_json object = {{"name", nullptr}, {"opn_enum", nullptr}, {"opn_hash", nullptr}};
        if (!name.empty())
            object["name"] = name;
        if (opn_enum)
            object["opn_enum"] = *opn_enum;
        if (!hash.empty())
            object["opn_hash"] = hash;
        output.write_json(object);
        return TOOL_EXIT_DONE;
    }
    if (name.empty())
        return TOOL_EXIT_DONE;
    TOOL_TABLE table({{"Part"}, {"Ordering index", true}, {"Hash"}});
    table.add_row({name, opn_enum ? std::to_string(*opn_enum) : "-", hash.empty() ? "-" : hash});
    table.write(output);
    return TOOL_EXIT_DONE;
}

std::optional<unsigned int> opn_of(const std::string& name) {
    const unsigned int opn = TOVREN_MGR::get_opn_enum(name);
    return opn == NO_OPN ? std::nullopt : std::optional(opn);
}

[[noreturn]] void unknown_part(const std::string& name) {
    const std::string guess = tool_did_you_mean(tool_nearest_names(name, tool_part_names()));
    throw TOOL_ERROR(TOOL_EXIT_NOT_FOUND, "the catalogue has no part " + tool_quoted(name),
                     guess.empty() ? std::vector<std::string>() : std::vector<std::string>{guess});
}

int of_name(std::string name, const TOOL_OUTPUT& output) {
    standardize_name(name);
    const bool is_known = !tool_opn_hash_text(TOVREN_MGR::get_opn_hash(name)).empty();
    write_part(is_known ? name : "", opn_of(name), output);
    if (!is_known)
        unknown_part(name);
    return TOOL_EXIT_DONE;
}

// The same answers; asked for its ordering index, a part without one is not found.
int opn_of_name(const std::string& name, const TOOL_OUTPUT& output) {
    of_name(name, output);
    if (std::string standardised = name; standardize_name(standardised), !opn_of(standardised))
        throw TOOL_ERROR(TOOL_EXIT_NOT_FOUND, tool_quoted(standardised) + " has no place in the ordering list");
    return TOOL_EXIT_DONE;
}

int name_of_index(const std::string& text, const TOOL_OUTPUT& output) {
    const auto index = tool_number(text, NO_OPN - 1);
    if (!index)
        throw tool_usage_error("opn name",
                               tool_quoted(text) + " is no index: a number up to " + std::to_string(NO_OPN - 1));
    const std::string name = TOVREN_MGR::get_opn(*index);
    write_part(name, index, output);
    if (name.empty())
        throw TOOL_ERROR(TOOL_EXIT_NOT_FOUND, "the ordering index " + text + " stands for no part");
    return TOOL_EXIT_DONE;
}

int find_hash(const std::string& text, const TOOL_OUTPUT& output) {
    const bool has_prefix = text.starts_with("0x") || text.starts_with("0X");
    const char* const begin = text.data() + (has_prefix ? 2 : 0);
    const char* const end = text.data() + text.size();
    unsigned long long hash = 0;
    const auto [rest, error] = std::from_chars(begin, end, hash, 16);
    if (rest != end || error != std::errc())
        throw tool_usage_error("opn find", tool_quoted(text) + " is not a hash: up to 16 hexadecimal digits");
    const std::string name = TOVREN_MGR::get_opn_from_hash(hash);
    write_part(name, name.empty() ? std::nullopt : opn_of(name), output);
    if (name.empty())
        throw TOOL_ERROR(TOOL_EXIT_NOT_FOUND, "no part of the catalogue has the hash " + text);
    return TOOL_EXIT_DONE;
}

// ---- enum ----

constexpr auto& TYPE_NAMES = TOOL_ENUM_TYPE_NAMES;

PGM_ENUM_TYPE type_of(const std::string& verb, const std::string& text) {
    for (unsigned int type = 0; type < PGM_ENUM_TYPE_MAX; ++type)
        if (tool_equal_ignoring_case(text, TYPE_NAMES[type]) || text == std::to_string(type))
            return PGM_ENUM_TYPE(type);
    throw tool_usage_error("enum " + verb, tool_quoted(text) + " is no type (there are: " +
                                               tool_join({std::begin(TYPE_NAMES), std::end(TYPE_NAMES)}, ", ") + ')');
}

int list_type(const std::string& type_text, const TOOL_OUTPUT& output) {
    const PGM_SUPPORTED_ENUM_TYPE& type = PGM_SUPPORTED_ENUM_TYPE_MAP[type_of("list", type_text)];
    TOOL_JSON_LINES lines(output);
    TOOL_TABLE table({{"Value", true}, {"Name"}});
    for (unsigned int value = 0; value < type.count; ++value) {
        if (output.is_json())
            lines.add({{"value", value}, {"name", type.names[value]}});
        table.add_row({std::to_string(value), value == 0 ? "(none)" : type.names[value]});
    }
    if (output.is_json())
        lines.end();
    else
        table.write(output);
    return TOOL_EXIT_DONE;
}

void write_check(PGM_ENUM_TYPE type, const std::string* name, std::optional<unsigned int> value, bool is_supported,
                 const TOOL_OUTPUT& output) {
    if (!output.is_json()) {
        if (is_supported)
            output.write(std::to_string(*value) + ' ' + (name->empty() ? "(none)" : *name) + '\n');
        return;
    }
    nlohmann::ordered_json object = {{"type", TYPE_NAMES[type]},
                                     {"name", nullptr},
                                     {"value", nullptr},
                                     {"supported", is_supported}};
    if (name)
        object["name"] = *name;
    if (value)
        object["value"] = *value;
    output.write_json(object);
}

int check_value(PGM_ENUM_TYPE type, unsigned int value, const TOOL_OUTPUT& output) {
    std::string name;
    const bool is_supported = TOVREN_MGR::pgm_check_type_enum_supported(type, value, &name);
    write_check(type, is_supported ? &name : nullptr, value, is_supported, output);
    if (!is_supported)
        throw TOOL_ERROR(TOOL_EXIT_NOT_FOUND, std::string(TYPE_NAMES[type]) + " has no entry " + std::to_string(value),
                         {"Its values go from 1 to " + std::to_string(PGM_SUPPORTED_ENUM_TYPE_MAP[type].count - 1) +
                          '.'});
    return TOOL_EXIT_DONE;
}

int check_name(PGM_ENUM_TYPE type, std::string name, const TOOL_OUTPUT& output) {
    gen_remove_leading_and_trailing_white_spaces(name);
    unsigned int value = 0;
    const bool is_supported = TOVREN_MGR::pgm_check_type_name_supported(type, name, &value);
    stl_toupper(name);
    write_check(type, &name, is_supported ? std::optional(value) : std::nullopt, is_supported, output);
    if (is_supported)
        return TOOL_EXIT_DONE;
    const PGM_SUPPORTED_ENUM_TYPE& list = PGM_SUPPORTED_ENUM_TYPE_MAP[type];
    const std::string guess = tool_did_you_mean(tool_nearest_names(name, {list.names + 1, list.names + list.count}));
    throw TOOL_ERROR(TOOL_EXIT_NOT_FOUND, std::string(TYPE_NAMES[type]) + " has no name " + tool_quoted(name),
                     guess.empty() ? std::vector<std::string>() : std::vector<std::string>{guess});
}

int check(const std::string& type_text, const std::string& text, const TOOL_OUTPUT& output) {
    const PGM_ENUM_TYPE type = type_of("check", type_text);
    const auto value = tool_number(text, NO_OPN);
    return value ? check_value(type, *value, output) : check_name(type, text, output);
}

} // namespace

void tool_add_opn_group(TOOL_COMMAND_LINE& line) {
    TOOL_GROUP group = line.add_group("opn", "Ordering part numbers");
    const auto part = std::make_shared<std::string>();
    group
        .add_verb("of", "The ordering index of a part",
                  [part](const TOOL_OUTPUT& output) { return opn_of_name(*part, output); })
        .argument("NAME", *part, "The part's name");
    const auto index = std::make_shared<std::string>();
    group
        .add_verb("name", "The part of an ordering index",
                  [index](const TOOL_OUTPUT& output) { return name_of_index(*index, output); })
        .argument("INDEX", *index, "The index");
    const auto hashed = std::make_shared<std::string>();
    group
        .add_verb("hash", "The hash of a part's name",
                  [hashed](const TOOL_OUTPUT& output) { return of_name(*hashed, output); })
        .argument("NAME", *hashed, "The part's name");
    const auto hash = std::make_shared<std::string>();
    group
        .add_verb("find", "The part with a hash",
                  [hash](const TOOL_OUTPUT& output) { return find_hash(*hash, output); })
        .argument("HASH", *hash, "The hash, hexadecimal");
}

void tool_add_enum_group(TOOL_COMMAND_LINE& line) {
    TOOL_GROUP group = line.add_group("enum", "Names of programming enumerations");
    const auto listed = std::make_shared<std::string>();
    group
        .add_verb("list", "The names of a type",
                  [listed](const TOOL_OUTPUT& output) { return list_type(*listed, output); })
        .argument("TYPE", *listed, "The type, by name or number");
    const auto type = std::make_shared<std::string>();
    const auto entry = std::make_shared<std::string>();
    group
        .add_verb("check", "Whether a type has a name or a value",
                  [type, entry](const TOOL_OUTPUT& output) { return check(*type, *entry, output); })
        .argument("TYPE", *type, "The type, by name or number")
        .argument("NAME_OR_VALUE", *entry, "A name in any letter case, or a number");
}
