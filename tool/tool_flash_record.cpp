// A flash record as JSON and as text for people.
#include "tool_flash_record.h"

#include "tool_text.h"
#include "tovren_dev_info_manager_auto_export.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <nlohmann/json.hpp>
#include <type_traits>

namespace {

constexpr BYTE NO_INDEX = 0xFF; // of an index or a divisor

enum class UNIT : unsigned char { PLAIN, HEX, OR_NONE, BITS, BYTES, SECONDS, MICROSECONDS };

struct MEMBER_UNIT {
    const char* name;
    UNIT unit;
};

// Members whose number is not simply printed.
constexpr MEMBER_UNIT MEMBER_UNITS_LIST[] = {
    {"memory_id", UNIT::HEX},
    {"memory_type", UNIT::HEX},
    {"memory_type_index", UNIT::OR_NONE},
    {"mfc_id", UNIT::HEX},
    {"device_bit_size", UNIT::BITS},
    {"device_sector_byte", UNIT::BYTES},
    {"bulk_erase_time", UNIT::SECONDS},
    {"sec_erase_time", UNIT::SECONDS},
    {"program_utime", UNIT::MICROSECONDS},
    {"protection_mask", UNIT::HEX},
    {"protection_value", UNIT::HEX},
    {"unprotect_value", UNIT::HEX},
    {"protection_division", UNIT::OR_NONE},
    {"bottom_value", UNIT::HEX},
};

UNIT unit_of(const char* name) {
    const auto* const place =
        std::find_if(std::begin(MEMBER_UNITS_LIST), std::end(MEMBER_UNITS_LIST),
                     [name](const MEMBER_UNIT& member) { return !std::strcmp(member.name, name); });
    return place == std::end(MEMBER_UNITS_LIST) ? UNIT::PLAIN : place->unit;
}

std::string number_text(UNIT unit, unsigned int value) {
    const auto byte = static_cast<unsigned char>(value);
    switch (unit) {
    case UNIT::HEX:
        return "0x" + tool_hex_text(&byte, 1);
    case UNIT::OR_NONE:
        return value == NO_INDEX ? "none" : std::to_string(value);
    case UNIT::BITS:
        return tool_bits_text(value);
    case UNIT::BYTES:
        return tool_bytes_text(value);
    case UNIT::SECONDS:
        return tool_seconds_text(value);
    case UNIT::MICROSECONDS:
        return tool_microseconds_text(value);
    default:
        return std::to_string(value);
    }
}

} // namespace

void tool_put_flash_members(nlohmann::ordered_json& object, const TOVREN_SFL_FLASH_INFO& record) {
    tovren_visit_members(record, [&object](const char* name, const auto& value) { object[name] = value; });
}

std::vector<TOOL_MEMBER_TEXT> tool_flash_member_texts(const TOVREN_SFL_FLASH_INFO& record) {
    std::vector<TOOL_MEMBER_TEXT> texts;
    tovren_visit_members(record, [&texts](const char* name, const auto& value) {
        using VALUE = std::decay_t<decltype(value)>;
        if constexpr (std::is_same_v<VALUE, std::string>)
            texts.push_back({name, value});
        else if constexpr (std::is_same_v<VALUE, bool>)
            texts.push_back({name, value ? "yes" : "no"});
        else
            texts.push_back({name, number_text(unit_of(name), value)});
    });
    return texts;
}

std::string tool_flash_id_text(const TOVREN_SFL_FLASH_INFO& record) {
    if (record.silicon_id)
        return tool_hex_text(&record.memory_id, 1) + " (silicon)";
    std::map<BYTE, BYTE> bytes{{record.mfc_id_index, record.mfc_id}, {record.memory_id_index, record.memory_id}};
    if (record.memory_type_index != NO_INDEX)
        bytes[record.memory_type_index] = record.memory_type;
    std::string text;
    unsigned int place = 0;
    for (const auto& [index, byte] : bytes) {
        const unsigned int skipped = index - place;
        text += skipped > 4 ? "[" + std::to_string(index) + "]" : std::string(size_t{2} * skipped, '.');
        text += tool_hex_text(&byte, 1);
        place = index + 1U;
    }
    return text;
}

std::string tool_flash_sectors_text(const TOVREN_SFL_FLASH_INFO& record) {
    const unsigned long long sector_bits = 8ULL * record.device_sector_byte;
    std::string sector = tool_bytes_text(record.device_sector_byte);
    if (sector_bits == 0 || record.device_bit_size % sector_bits != 0)
        return sector;
    return std::to_string(record.device_bit_size / sector_bits) + " x " + sector;
}
