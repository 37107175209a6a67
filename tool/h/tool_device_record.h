// A device record as JSON and as text for people, and which rule chose it for a value of the catalogue.
#ifndef TOOL_DEVICE_RECORD_H
#define TOOL_DEVICE_RECORD_H

#include "tovren_dev_info_manager.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <vector>

// A value of one of the catalogue's three enumerations.
struct TOOL_CATALOGUE_VALUE {
    enum class KIND : unsigned char { FAMILY, DEVICE, PART };

    KIND kind;
    unsigned int number;
};

const char* tool_kind_text(TOOL_CATALOGUE_VALUE::KIND kind);               // "family", "device", "part"
unsigned int tool_catalogue_bound(TOOL_CATALOGUE_VALUE::KIND kind);        // one past the largest number
std::string tool_user_name(TOOL_CATALOGUE_VALUE value);                    // empty for INVALID
std::vector<std::string> tool_user_names(TOOL_CATALOGUE_VALUE::KIND kind); // all of them, in order

// The value that a user names, by its name in any letter case or by its number.
std::optional<TOOL_CATALOGUE_VALUE> tool_find_value(TOOL_CATALOGUE_VALUE::KIND kind, const std::string& text);

// The position of the record that serves a value, INVALID_DWORD for none.
unsigned int tool_position_of(const TOVREN_DEV_INFO_MANAGER& manager, TOOL_CATALOGUE_VALUE value);

// The rule that finally chose the record at the value's position: "part", "part list", "device", "family" or "generic".
const char* tool_served_by(const TOVREN_DEV_INFO_MANAGER& manager, TOOL_CATALOGUE_VALUE value);

// The record's own key: its kind ("family", "pcf", "device", "part") and its name.
struct TOOL_RECORD_KEY {
    std::string kind;
    std::string name;
};
TOOL_RECORD_KEY tool_record_key(const TOVREN_DEVICE_INFO& record);

// What the names of an ENUM column begin with; empty for another column.
std::string tool_enum_prefix(const std::string& member);

// The cell of a description that stands for the number of an enumeration: an empty one for no family, device or part.
// None where no name has that number.
std::optional<std::string> tool_enum_cell(const std::string& member, unsigned int number);

// Adds the 86 members, by name and in record order; an enumeration is {"number", "name"}, its name null where it has
// none.
void tool_put_device_members(nlohmann::ordered_json& object, const TOVREN_DEVICE_INFO& record);

struct TOOL_DEVICE_MEMBER_TEXT {
    const char* name;
    std::string text;
};
std::vector<TOOL_DEVICE_MEMBER_TEXT> tool_device_member_texts(const TOVREN_DEVICE_INFO& record);

#endif
