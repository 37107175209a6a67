// Why an answer identifies the flash that it does, or none.
#include "tool_flash_why.h"

#include "tool_text.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace {

using JSON = nlohmann::ordered_json;

// Settings with what they hide, in the order in which they come up.
void add_hidden(std::vector<std::pair<std::string, std::vector<std::string>>>& hidden, const TOOL_LISTED_FLASH& flash) {
    auto place = std::find_if(hidden.begin(), hidden.end(),
                              [&flash](const auto& entry) { return entry.first == flash.shown_by; });
    if (place == hidden.end())
        place = hidden.insert(place, {flash.shown_by, {}});
    place->second.push_back(flash.flash->device_name);
}

unsigned int csv_line_of(const TOOL_LISTED_FLASH& flash, const std::optional<TOOL_FLASH_CSV>& csv) {
    return csv && flash.place != INVALID_DWORD ? csv->line_of(*flash.flash, flash.place) : 0;
}

JSON hex_json(std::optional<BYTE> byte) {
    return byte ? JSON(tool_hex_text(&*byte, 1)) : JSON();
}

JSON byte_json(const TOOL_COMPARED_BYTE& byte) {
    return {{"member", byte.member},
            {"byte", byte.place},
            {"answer", hex_json(byte.found)},
            {"record", hex_json(byte.expected)}};
}

JSON record_json(const TOOL_WHY_RECORD& record) {
    const TOOL_LISTED_FLASH& flash = *record.flash;
    JSON object;
    object["index"] = record.is_hidden() ? JSON() : JSON(flash.index);
    object["device_name"] = flash.flash->device_name;
    object["manufacturer_name"] = flash.flash->manufacturer_name;
    object["switch"] = flash.shown_by.empty() ? JSON() : JSON(flash.shown_by);
    object["result"] = record.is_taken ? "taken" : record.miss_count == 0 ? "matches" : "misses";
    object["misses"] = JSON::array();
    for (const TOOL_COMPARED_BYTE& byte : record.compared)
        if (!byte.is_equal())
            object["misses"].push_back(byte_json(byte));
    object["line"] = record.csv_line == 0 ? JSON() : JSON(record.csv_line);
    return object;
}

JSON csv_json(const TOOL_FLASH_CSV& csv) {
    JSON columns;
    for (const char* member :
         {"memory_id", "memory_id_index", "memory_type", "memory_type_index", "mfc_id", "mfc_id_index"})
        columns[member] = TOOL_FLASH_CSV::column_of(member);
    return {{"file", csv.file}, {"columns", columns}};
}

JSON cause_json(const TOOL_FLASH_CAUSE& cause) {
    JSON flashes = JSON::array();
    for (const TOOL_MEANT_FLASHES& meant : cause.meant)
        flashes.push_back({{"answer", meant.answer},
                           {"place", meant.note.empty() ? JSON() : JSON(meant.note)},
                           {"names", meant.names}});
    return {{"cause", cause.kind}, {"text", cause.text}, {"flashes", flashes}, {"left_out", cause.left_out}};
}

JSON further_read_json(const TOOL_FLASH_WHY& why) {
    const TOOL_TELLING& telling = why.telling;
    if (telling.stated.empty())
        return {};
    JSON known = JSON::array();
    JSON unknown = JSON::array();
    for (size_t i = 0; i < why.candidates.size(); ++i) {
        const TOOL_LISTED_FLASH& flash = *why.candidate(i).flash;
        const auto stated = std::find_if(telling.stated.begin(), telling.stated.end(),
                                         [i](const auto& entry) { return entry.candidate == i; });
        JSON object = {{"index", flash.index}, {"device_name", flash.flash->device_name}};
        if (stated == telling.stated.end()) {
            unknown.push_back(object);
            continue;
        }
        object["bytes"] = tool_hex_text(stated->bytes.data(), stated->bytes.size());
        object["fits"] = stated->fits;
        known.push_back(object);
    }
    return {{"command", "9F"}, {"bytes", telling.read_size}, {"known", known}, {"unknown", unknown}};
}

} // namespace

std::vector<std::pair<std::string, std::vector<std::string>>> TOOL_FLASH_WHY::hidden() const {
    std::vector<std::pair<std::string, std::vector<std::string>>> by_setting;
    for (const TOOL_WHY_RECORD& record : records)
        if (record.is_hidden())
            add_hidden(by_setting, *record.flash);
    return by_setting;
}

TOOL_FLASH_WHY tool_flash_why(std::span<const BYTE> answer, bool by_silicon_id, const TOOL_WHY_TABLES& tables) {
    TOOL_FLASH_WHY why;
    why.answer.assign(answer.begin(), answer.end());
    std::vector<const TOVREN_SFL_FLASH_INFO*> candidates;
    bool is_matched = false;
    for (const TOOL_LISTED_FLASH& flash : tables.listed) {
        auto compared = tool_compared_bytes(*flash.flash, answer);
        const size_t misses = tool_miss_count(compared);
        if (flash.flash->silicon_id != by_silicon_id || misses > 1)
            continue;
        is_matched = is_matched || misses == 0;
        if (misses == 0 && flash.index != INVALID_DWORD) {
            why.candidates.push_back(why.records.size());
            candidates.push_back(flash.flash);
        }
        why.records.push_back({&flash, std::move(compared), misses, csv_line_of(flash, tables.csv)});
    }
    if (!why.candidates.empty())
        why.records[why.candidates.front()].is_taken = true;
    if (!is_matched)
        why.causes = tool_flash_causes(answer, by_silicon_id, tables.listed);
    why.telling = tool_tell_apart(answer, candidates, tables.extended_ids);
    return why;
}

nlohmann::ordered_json tool_why_json(const TOOL_FLASH_WHY& why, const TOOL_WHY_TABLES& tables) {
    JSON object;
    object["compared"] = JSON::array();
    if (!why.candidates.empty())
        for (const TOOL_COMPARED_BYTE& byte : why.candidate(0).compared)
            object["compared"].push_back(byte_json(byte));
    object["records"] = JSON::array();
    for (const TOOL_WHY_RECORD& record : why.records)
        object["records"].push_back(record_json(record));
    object["hidden"] = JSON::object();
    for (const auto& [setting, names] : why.hidden())
        object["hidden"][setting] = names;
    object["csv"] = tables.csv ? csv_json(*tables.csv) : JSON();
    object["causes"] = JSON::array();
    for (const TOOL_FLASH_CAUSE& cause : why.causes)
        object["causes"].push_back(cause_json(cause));
    object["agreed"] = JSON::array();
    for (const TOOL_MEMBER_TEXT& member : why.telling.agreed)
        object["agreed"].push_back(member.name);
    object["differing"] = why.telling.differing;
    object["further_read"] = further_read_json(why);
    object["told_by_sfdp"] = why.telling.told_by_sfdp;
    object["sfdp"] = nullptr;
    return object;
}
