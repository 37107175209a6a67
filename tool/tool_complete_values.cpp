// What may stand for a value, by the verb and the name of what is asked for. A verb without a line here is served by
// the rules for its group or for names that all verbs use alike ("FILE", "DIR").
#include "tool_complete_values.h"

#include "host_cfg.h"
#include "tool_device_record.h"
#include "tool_enum.h"
#include "tool_flash_database.h"
#include "tool_hps_section.h"
#include "tool_text.h"
#include "tovren_device_grammar_mgr.h"
#include "tovren_flash_manager.h"
#include "tovren_hps_mgr.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <vector>

namespace {

using PLACE = TOOL_COMPLETION_PLACE;
using VALUES = TOOL_COMPLETION_VALUES;
using CANDIDATES = std::vector<TOOL_CANDIDATE>;
using CATALOGUE = TOOL_CATALOGUE_VALUE::KIND;

// ---- names of the tables ----

std::string folded(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char byte) { return byte >= 'a' && byte <= 'z' ? char(byte - 'a' + 'A') : byte; });
    return text;
}

// Each name once: that of its default.
VALUES flashes(const PLACE&) {
    CANDIDATES names;
    const auto manager = tool_load_flashes(1);
    std::set<std::string> known;
    for (const TOVREN_SFL_FLASH_INFO* flash : tool_loaded_flashes(*manager)) {
        if (flash->default_dev && known.insert(folded(flash->device_name)).second)
            names.push_back(
                {flash->device_name, flash->manufacturer_name + ", " + tool_bits_text(flash->device_bit_size)});
    }
    return {VALUES::KIND::WORDS, std::move(names), ""};
}

VALUES flash_indexes(const PLACE&) {
    CANDIDATES indexes;
    const auto manager = tool_load_flashes(1);
    for (unsigned int i = 0; i < manager->get_flash_count(); ++i)
        indexes.push_back({std::to_string(i), manager->get_flash(i)->device_name});
    return {VALUES::KIND::WORDS, std::move(indexes), ""};
}

std::string owner_of(TOOL_CATALOGUE_VALUE value) {
    const DEV_PART_MANAGER catalogue;
    if (value.kind == CATALOGUE::PART)
        return dstr_get_user_string(catalogue.get_device_of(DEV_PART_ENUM(value.number)));
    if (value.kind == CATALOGUE::DEVICE)
        return dstr_get_user_string(catalogue.get_family_of(DEV_DEVICE_ENUM(value.number)));
    return "";
}

VALUES catalogue_names(CATALOGUE kind) {
    CANDIDATES names;
    for (unsigned int number = 1; number < tool_catalogue_bound(kind); ++number)
        names.push_back({tool_user_name({kind, number}), owner_of({kind, number})});
    return {VALUES::KIND::WORDS, std::move(names), ""};
}

VALUES families(const PLACE&) {
    return catalogue_names(CATALOGUE::FAMILY);
}

VALUES devices(const PLACE&) {
    return catalogue_names(CATALOGUE::DEVICE);
}

VALUES parts(const PLACE&) {
    return catalogue_names(CATALOGUE::PART);
}

VALUES part_files(const PLACE&) {
    constexpr unsigned int PGM_PCF = 2;
    CANDIDATES names;
    TOVREN_DEVICE_GRAMMAR_MGR::visit_map(PGM_PCF, [&names](const std::string& key, const auto&) {
        names.push_back({key, ""});
    });
    return {VALUES::KIND::WORDS, std::move(names), ""};
}

VALUES maps(const PLACE&) {
    CANDIDATES names;
    for (unsigned int map = 0; map < TOVREN_DEVICE_GRAMMAR_MGR::MAP_COUNT; ++map)
        names.push_back({TOVREN_DEVICE_GRAMMAR_MGR::get_map_name(map), ""});
    return {VALUES::KIND::WORDS, std::move(names), ""};
}

VALUES enum_types(const PLACE&) {
    CANDIDATES names;
    for (const char* name : TOOL_ENUM_TYPE_NAMES)
        names.push_back({name, ""});
    return {VALUES::KIND::WORDS, std::move(names), ""};
}

VALUES enum_names(const PLACE& place) {
    CANDIDATES names;
    for (unsigned int i = 0; i < PGM_ENUM_TYPE_MAX; ++i) {
        const PGM_SUPPORTED_ENUM_TYPE& type = PGM_SUPPORTED_ENUM_TYPE_MAP[i];
        const std::string& asked = place.arguments.front();
        if (!tool_equal_ignoring_case(asked, TOOL_ENUM_TYPE_NAMES[i]) && asked != std::to_string(i))
            continue;
        for (unsigned int value = 1; value < type.count; ++value)
            names.push_back({type.names[value], std::to_string(value)});
    }
    return {VALUES::KIND::WORDS, std::move(names), ""};
}

VALUES sections(const PLACE&) {
    CANDIDATES names;
    for (unsigned int i = 0; i < TOVREN_FLASH_INI_MAX; ++i)
        names.push_back({TOVREN_FLASH_INI_STRING[i], "section " + std::to_string(i)});
    return {VALUES::KIND::WORDS, std::move(names), ""};
}

// Those of a definition that a person answers.
VALUES flash_members(const PLACE&) {
    CANDIDATES names;
    for (const TOVREN_FLASH_PROMPT& prompt : TOVREN_FLASH_MANAGER::get_flash_prompts())
        if (prompt.question)
            names.push_back({std::string(prompt.member) + '=', prompt.question});
    return {VALUES::KIND::WORDS, std::move(names), ""};
}

// ---- hard processor systems ----

const TOOL_HPS_KIND& hps_kind(const PLACE& place) {
    return place.command.starts_with(TOOL_HPS_SPI.command) ? TOOL_HPS_SPI : TOOL_HPS_NAND;
}

VALUES hps_ids(const PLACE&) {
    CANDIDATES ids;
    for (const TOVREN_HPS_INFO& hps : TOVREN_HPS_DATABASE)
        ids.push_back({TOVREN_FLASH_INI::convert_dword_to_hex_string(hps.id, 8, true), hps.name});
    return {VALUES::KIND::WORDS, std::move(ids), ""};
}

VALUES hps_user_flashes(const PLACE& place) {
    const TOOL_HPS_KIND& kind = hps_kind(place);
    const TOOL_HPS_LIST list = kind.load();
    CANDIDATES indexes;
    for (size_t i = 0; i < list.user_count; ++i) {
        const std::string* const name = list.records[i].find_text(kind.params, "name");
        indexes.push_back({std::to_string(i), name ? *name : ""});
    }
    return {VALUES::KIND::WORDS, std::move(indexes), ""};
}

// Those that no argument gives yet.
VALUES hps_parameters(const PLACE& place) {
    const TOOL_HPS_PARAMS& params = hps_kind(place).params;
    CANDIDATES names;
    for (size_t i = 0; i < params.names.size(); ++i) {
        const std::string word = params.names[i] + '=';
        if (std::none_of(place.arguments.begin(), place.arguments.end(),
                         [&word](const std::string& given) { return given.starts_with(word); }))
            names.push_back({word, params.prompts[i]});
    }
    return {VALUES::KIND::WORDS, std::move(names), ""};
}

// ---- settings ----

struct SETTING {
    std::string name;
    VALUES::KIND value;
    bool is_switch;
};

// The library makes the name of the setting of flash definitions as it runs; it is in no program.
const std::vector<SETTING>& known_settings() {
    static const std::string flashes = TOVREN_FLASH_MANAGER::get_ext_flash_setting_name();
    static const std::vector<SETTING> known = {
        {"TOVREN_ENABLE_GRAMMAR_DEBUG", VALUES::KIND::WORDS, true},
        {"TOVREN_MAIL_OUTBOX", VALUES::KIND::FOLDERS, false},
        {"TOVREN_MODULE_PATH", VALUES::KIND::FOLDERS, false},
        {flashes, VALUES::KIND::WORDS, false},
        {flashes + "_DEBUG", VALUES::KIND::WORDS, true},
        {"TOVREN_VERSION_TEXT", VALUES::KIND::WORDS, false},
    };
    return known;
}

VALUES setting_value(const std::string& name) {
    const std::vector<SETTING>& settings = known_settings();
    const auto known = std::find_if(settings.begin(), settings.end(),
                                    [&name](const SETTING& setting) { return setting.name == name; });
    if (known != settings.end() && known->value != VALUES::KIND::WORDS)
        return {known->value, {}, name + '='};
    if (name.starts_with("PGM_ALLOW_") || (known != settings.end() && known->is_switch))
        return {VALUES::KIND::WORDS, {{name + "=on", ""}, {name + "=off", ""}}, ""};
    return {};
}

VALUES settings(const PLACE& place) {
    if (const size_t sign = place.typed.find('='); sign != std::string::npos)
        return setting_value(place.typed.substr(0, sign));
    CANDIDATES names;
    for (const SETTING& setting : known_settings())
        names.push_back({setting.name + '=', setting.is_switch ? "switch" : "text"});
    std::set<std::string> keys;
    for (const TOVREN_SFL_FLASH_INFO& record : tool_all_flashes())
        if (!tool_equal_ignoring_case(record.ini, "NONE") && keys.insert(record.ini).second)
            names.push_back({"PGM_ALLOW_" + record.ini + '=', "switch: shows flashes of this kind"});
    return {VALUES::KIND::WORDS, std::move(names), ""};
}

// ---- words of a verb's own, files ----

VALUES files(const PLACE&) {
    return {VALUES::KIND::FILES, {}, ""};
}

VALUES folders(const PLACE&) {
    return {VALUES::KIND::FOLDERS, {}, ""};
}

VALUES nothing(const PLACE&) {
    return {};
}

VALUES debug_levels(const PLACE&) {
    return {VALUES::KIND::WORDS, {{"0", ""}, {"1", ""}, {"2", ""}, {"3", "and every record as it loads"}}, ""};
}

VALUES catalogue_kinds(const PLACE&) {
    return {VALUES::KIND::WORDS, {{"families", ""}, {"devices", ""}, {"parts", ""}}, ""};
}

VALUES record_kinds(const PLACE&) {
    return {VALUES::KIND::WORDS, {{"record", ""}, {"family", ""}, {"device", ""}, {"part", ""}}, ""};
}

VALUES report_modes(const PLACE&) {
    return {VALUES::KIND::WORDS, {{"1", "records"}, {"2", "families"}, {"3", "devices"}, {"4", "parts"}}, ""};
}

// ---- which of them ----

// The first rule that fits counts. An empty name stands for any.
struct RULE {
    const char* command; // or the group before it
    const char* name;    // the value, or its placeholder
    VALUES (*values)(const PLACE& place);
};

constexpr RULE RULES[] = {
    {"flash show", "--index", flash_indexes},
    {"flash", "NAME", flashes},
    {"device list", "--by", record_kinds},
    {"device catalogue", "WHICH", catalogue_kinds},
    {"device report", "MODE", report_modes},
    {"name of-pcf", "PCF", part_files},
    {"name maps", "MAP", maps},
    {"name", "NAME", parts},
    {"opn", "NAME", parts},
    {"enum", "TYPE", enum_types},
    {"enum check", "NAME_OR_VALUE", enum_names},
    {"params", "SECTION", sections},
    {"hps current", "ID", hps_ids},
    {"hps", "WHICH", hps_user_flashes},
    {"hps", "NAME=VALUE", hps_parameters},
    {"", "--family", families},
    {"", "--device", devices},
    {"", "--part", parts},
    {"", "FAMILY", families},
    {"", "DEVICE", devices},
    {"", "PART", parts},
    {"", "FLASH", flashes},
    {"", "--member", flash_members},
    {"", "--set", settings},
    {"", "--debug", debug_levels},
    {"", "DIR", folders},
    {"", "ROOT", folders},
    {"", "FILE", files},
    {"", "CSV", files},
    {"", "OUT", files},
    {"", "BEFORE", files},
    {"", "AFTER", files},
    {"", "", nothing},
};

bool is_within(const std::string& command, const std::string& group) {
    return group.empty() || command == group || command.starts_with(group + ' ');
}

bool fits(const RULE& rule, const PLACE& place) {
    const std::string_view name = rule.name;
    return is_within(place.command, rule.command) && (name.empty() || name == place.value || name == place.placeholder);
}

} // namespace

VALUES tool_completion_values(const PLACE& place) {
    const auto* const rule =
        std::find_if(std::begin(RULES), std::end(RULES), [&place](const RULE& known) { return fits(known, place); });
    return rule->values(place);
}
