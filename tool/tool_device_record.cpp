// Device records and the catalogue's values, for the command.
#include "tool_device_record.h"

#include "tool_text.h"

#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>
#include <type_traits>

namespace {

using KIND = TOOL_CATALOGUE_VALUE::KIND;

// Which enumeration the numbers of an ENUM column are of, by what its names begin with.
struct ENUM_COLUMN {
    const char* member;
    const char* prefix;
};

constexpr ENUM_COLUMN ENUM_COLUMNS[] = {
    {"ekp_alg_family", "DEV_FAMILY_"},
    {"cmp_fbgen_start_block", "CFG_BLOCK_"},
    {"cmp_fbgen_end_block", "CFG_BLOCK_"},
    {"fbgen_cvp_core_start_block", "CFG_BLOCK_"},
    {"fbgen_hps_core_start_block", "CFG_BLOCK_"},
    {"default_prog_mode", "PROG_MODE_"},
};

// The name of an ENUM column's number; empty for another column or an unknown number.
std::string enum_name(const char* member, unsigned int number) {
    for (const ENUM_COLUMN& column : ENUM_COLUMNS)
        if (std::strcmp(column.member, member) == 0)
            for (const TOVREN_NAME_VALUE& entry : TOVREN_DEV_INFO_MANAGER::m_supported_enum_list)
                if (entry.value == number && entry.name.starts_with(column.prefix))
                    return entry.name;
    return "";
}

bool is_enum_column(const char* member) {
    return std::any_of(std::begin(ENUM_COLUMNS), std::end(ENUM_COLUMNS),
                       [member](const ENUM_COLUMN& column) { return std::strcmp(column.member, member) == 0; });
}

// An enumeration's number and name where `value` is one.
template <typename VALUE>
std::optional<TOVREN_NAME_VALUE> as_enumeration(const char* member, const VALUE& value) {
    if constexpr (std::is_enum_v<VALUE>)
        return TOVREN_NAME_VALUE{dstr_get_user_string(value), value};
    else if constexpr (std::is_same_v<VALUE, DWORD>)
        return is_enum_column(member) ? std::optional(TOVREN_NAME_VALUE{enum_name(member, value), value})
                                      : std::nullopt;
    else
        return std::nullopt;
}

template <typename VALUE>
std::string value_text(const VALUE& value) {
    if constexpr (std::is_same_v<VALUE, std::string>)
        return value;
    else if constexpr (std::is_same_v<VALUE, bool>)
        return value ? "yes" : "no";
    else
        return std::to_string(static_cast<unsigned int>(value));
}

const char* rule_of_family(const TOVREN_DEVICE_INFO& record, DEV_FAMILY_ENUM family) {
    return record.family == family ? "family" : "generic";
}

const char* rule_of_device(const TOVREN_DEV_INFO_MANAGER& manager, const TOVREN_DEVICE_INFO& record,
                           unsigned int position, DEV_DEVICE_ENUM device) {
    if (record.device == device)
        return "device";
    const DEV_FAMILY_ENUM family = DEV_PART_MANAGER().get_family_of(device);
    const bool is_of_family = manager.get_position_of(family) == position;
    return is_of_family || record.pcf.empty() ? rule_of_family(record, family) : "part list";
}

} // namespace

const char* tool_kind_text(KIND kind) {
    return kind == KIND::FAMILY ? "family" : kind == KIND::DEVICE ? "device" : "part";
}

unsigned int tool_catalogue_bound(KIND kind) {
    return kind == KIND::FAMILY ? DEV_FAMILY_MAX : kind == KIND::DEVICE ? DWORD(DEV_DEVICE_MAX) : DWORD(DEV_PART_MAX);
}

std::string tool_user_name(TOOL_CATALOGUE_VALUE value) {
    if (value.kind == KIND::FAMILY)
        return dstr_get_user_string(DEV_FAMILY_ENUM(value.number));
    if (value.kind == KIND::DEVICE)
        return dstr_get_user_string(DEV_DEVICE_ENUM(value.number));
    return dstr_get_user_string(DEV_PART_ENUM(value.number));
}

std::vector<std::string> tool_user_names(KIND kind) {
    std::vector<std::string> names;
    for (unsigned int number = 1; number < tool_catalogue_bound(kind); ++number)
        names.push_back(tool_user_name({kind, number}));
    return names;
}

std::optional<TOOL_CATALOGUE_VALUE> tool_find_value(KIND kind, const std::string& text) {
    const unsigned int named = kind == KIND::FAMILY   ? dstr_get_dev_family_enum_by_string(text)
                               : kind == KIND::DEVICE ? DWORD(dstr_get_dev_device_enum_by_string(text))
                                                      : DWORD(dstr_get_dev_part_enum_by_string(text));
    if (named != 0)
        return TOOL_CATALOGUE_VALUE{kind, named};
    if (const auto number = tool_number(text, tool_catalogue_bound(kind) - 1))
        return TOOL_CATALOGUE_VALUE{kind, *number};
    return std::nullopt;
}

unsigned int tool_position_of(const TOVREN_DEV_INFO_MANAGER& manager, TOOL_CATALOGUE_VALUE value) {
    if (value.kind == KIND::FAMILY)
        return manager.get_position_of(DEV_FAMILY_ENUM(value.number));
    if (value.kind == KIND::DEVICE)
        return manager.get_position_of(DEV_DEVICE_ENUM(value.number));
    return manager.get_position_of(DEV_PART_ENUM(value.number));
}

const char* tool_served_by(const TOVREN_DEV_INFO_MANAGER& manager, TOOL_CATALOGUE_VALUE value) {
    const unsigned int position = tool_position_of(manager, value);
    const TOVREN_DEVICE_INFO& record = *manager.get_record(position);
    if (value.kind == KIND::FAMILY)
        return rule_of_family(record, DEV_FAMILY_ENUM(value.number));
    if (value.kind == KIND::DEVICE)
        return rule_of_device(manager, record, position, DEV_DEVICE_ENUM(value.number));
    if (record.part == value.number)
        return "part";
    return rule_of_device(manager, record, position, DEV_PART_MANAGER().get_device_of(DEV_PART_ENUM(value.number)));
}

TOOL_RECORD_KEY tool_record_key(const TOVREN_DEVICE_INFO& record) {
    if (record.family != DEV_FAMILY_INVALID)
        return {"family", dstr_get_user_string(record.family)};
    if (!record.pcf.empty())
        return {"pcf", record.pcf};
    if (record.device != DEV_DEVICE_INVALID)
        return {"device", dstr_get_user_string(record.device)};
    return {"part", dstr_get_user_string(record.part)};
}

std::string tool_enum_prefix(const std::string& member) {
    for (const ENUM_COLUMN& column : ENUM_COLUMNS)
        if (member == column.member)
            return column.prefix;
    return "";
}

// In an ENUM column the generator takes the names of other enumerations too.
std::optional<std::string> tool_enum_cell(const std::string& member, unsigned int number) {
    const auto* names = member == "family"   ? &TOVREN_DEV_INFO_MANAGER::m_supported_family_list
                        : member == "device" ? &TOVREN_DEV_INFO_MANAGER::m_supported_device_list
                        : member == "part"   ? &TOVREN_DEV_INFO_MANAGER::m_supported_part_list
                                             : &TOVREN_DEV_INFO_MANAGER::m_supported_enum_list;
    if (const std::string own = enum_name(member.c_str(), number); !own.empty())
        return own;
    const auto place = std::find_if(names->begin(), names->end(),
                                    [number](const TOVREN_NAME_VALUE& entry) { return entry.value == number; });
    return place == names->end() ? std::nullopt : std::optional(place->name);
}

void tool_put_device_members(nlohmann::ordered_json& object, const TOVREN_DEVICE_INFO& record) {
    tovren_visit_members(record, [&object](const char* name, const auto& value) {
        const auto enumeration = as_enumeration(name, value);
        if (!enumeration) {
            object[name] = value;
            return;
        }
        object[name] = {{"number", enumeration->value}, {"name", nullptr}};
        if (!enumeration->name.empty())
            object[name]["name"] = enumeration->name;
    });
}

std::vector<TOOL_DEVICE_MEMBER_TEXT> tool_device_member_texts(const TOVREN_DEVICE_INFO& record) {
    std::vector<TOOL_DEVICE_MEMBER_TEXT> texts;
    tovren_visit_members(record, [&texts](const char* name, const auto& value) {
        const auto enumeration = as_enumeration(name, value);
        if (!enumeration)
            texts.push_back({name, value_text(value)});
        else if (enumeration->name.empty())
            texts.push_back({name, enumeration->value == 0 ? "" : std::to_string(enumeration->value)});
        else
            texts.push_back({name, enumeration->name + " (" + std::to_string(enumeration->value) + ')'});
    });
    return texts;
}
