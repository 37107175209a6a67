// Loading the flash database, and what to tell the person whose database is refused.
#include "tool_flash_database.h"

#include "host_cfg.h"
#include "tool_database.h"
#include "tool_file.h"
#include "tool_output.h"
#include "tool_text.h"

#include <algorithm>

namespace {

bool is_printing_records = false;

std::string with_path(const std::string& fault) {
    return tool_printable(tool_database_path(TOOL_FLASH_DATABASE)) + ": " + fault;
}

// How many of the shown records have the name of `record`, and how many of those are its default.
struct NAME_USE {
    unsigned int defaults = 0;
    std::vector<std::string> hiding; // switches that hide a default of that name
};

NAME_USE use_of_name(const std::vector<TOVREN_SFL_FLASH_INFO>& records, const std::string& name) {
    NAME_USE use;
    for (const TOVREN_SFL_FLASH_INFO& record : records) {
        if (!record.default_dev || !tool_equal_ignoring_case(record.device_name, name))
            continue;
        if (const std::string hidden_by = tool_switch_that_shows(record); hidden_by.empty())
            ++use.defaults;
        else
            use.hiding.push_back(hidden_by);
    }
    return use;
}

TOOL_ADVICE for_name(const std::string& name, const NAME_USE& use) {
    constexpr char CORRECT[] = "correct default_dev in the description and run `tovren flash generate` again";
    if (use.defaults > 1) {
        return {with_path(tool_quoted(name) + " has " + std::to_string(use.defaults) +
                          " default records; each name has one"),
                {},
                {"turn off the PGM_ALLOW_ setting that shows one of them,", std::string("or ") + CORRECT}};
    }
    if (use.hiding.empty())
        return {with_path(tool_quoted(name) + " has no default record; each name has one"), {}, {CORRECT}};
    return {with_path("the default record of " + tool_quoted(name) + " is hidden; each name has one"),
            {},
            {"show it with --set " + tool_printable(use.hiding.front()) + "=on,",
             "or turn off the settings that show others of that name"}};
}

// Names the first flash that breaks the rule of one default for each name, and the switches that have to do with it.
TOOL_ADVICE for_default() {
    const auto records = tool_all_flashes();
    for (const TOVREN_SFL_FLASH_INFO& record : records) {
        if (!tool_switch_that_shows(record).empty())
            continue;
        if (const NAME_USE use = use_of_name(records, record.device_name); use.defaults != 1)
            return for_name(record.device_name, use);
    }
    return tool_advice_to_generate(TOOL_FLASH_DATABASE,
                                   "a flash name has no default record, or two; each name has one");
}

TOOL_ADVICE advice(const TOOL_REPORT& report) {
    const std::string& condition = report.condition();
    const bool is_default_rule = condition == "one_default" || condition == "!one_default";
    return is_default_rule ? for_default() : tool_database_advice(TOOL_FLASH_DATABASE, condition);
}

// What a load says of the user's own flash is no result. The load itself is silent about one that it leaves out.
void note_definition(const TOVREN_FLASH_MANAGER& manager, std::string printed) {
    if (printed.ends_with('\n'))
        printed.pop_back();
    if (!printed.empty())
        tool_note(printed);
    const std::string setting = TOVREN_FLASH_MANAGER::get_ext_flash_setting_name();
    if (manager.m_ext_flash_info.device_name.empty() && !cfg_get_value(setting).empty())
        tool_note("warning: the flash that " + setting +
                  " defines is not applied; `tovren flash definition check` says why");
}

} // namespace

void tool_set_printing_records(bool is_printing) {
    is_printing_records = is_printing;
}

std::unique_ptr<TOVREN_FLASH_MANAGER> tool_load_flashes(unsigned int device_count) {
    const auto load = [device_count] {
        return std::make_unique<TOVREN_FLASH_MANAGER>(false, device_count, false, is_printing_records);
    };
    const std::string path = tool_database_path(TOOL_FLASH_DATABASE);
    if (is_printing_records)
        return tool_over_file(path, advice, load);
    std::string printed;
    auto manager = tool_over_file(path, advice, [&] {
        const TOOL_CAPTURE capture;
        auto loaded = load();
        printed = capture.text();
        return loaded;
    });
    note_definition(*manager, printed);
    return manager;
}

std::vector<TOVREN_SFL_FLASH_INFO> tool_all_flashes() {
    const std::string path = tool_database_path(TOOL_FLASH_DATABASE);
    return tool_over_file(path, advice, [&path] { return TOVREN_FLASH_MANAGER::get_all_flashes(path); });
}

std::string tool_switch_that_shows(const TOVREN_SFL_FLASH_INFO& record) {
    const std::string name = "PGM_ALLOW_" + record.ini;
    return tool_equal_ignoring_case(record.ini, "NONE") || cfg_is_on(name, false) ? "" : name;
}

std::vector<const TOVREN_SFL_FLASH_INFO*> tool_loaded_flashes(const TOVREN_FLASH_MANAGER& manager) {
    std::vector<const TOVREN_SFL_FLASH_INFO*> records;
    for (unsigned int i = 0; i < manager.get_flash_count(); ++i)
        records.push_back(manager.get_flash(i));
    return records;
}

std::vector<TOOL_LISTED_FLASH> tool_listed_flashes(const TOVREN_FLASH_MANAGER& manager) {
    std::vector<TOOL_LISTED_FLASH> listed;
    for (const TOVREN_SFL_FLASH_INFO* flash : tool_loaded_flashes(manager))
        listed.push_back({flash, static_cast<unsigned int>(listed.size()), "", INVALID_DWORD});
    return listed;
}

// Loaded records stand in file order, behind the external ones.
std::vector<TOOL_LISTED_FLASH> tool_listed_flashes(const TOVREN_FLASH_MANAGER& manager,
                                                   const std::vector<TOVREN_SFL_FLASH_INFO>& records) {
    const auto hidden = std::count_if(records.begin(), records.end(), [](const TOVREN_SFL_FLASH_INFO& record) {
        return !tool_switch_that_shows(record).empty();
    });
    const size_t shown = records.size() - static_cast<size_t>(hidden);
    std::vector<TOOL_LISTED_FLASH> listed = tool_listed_flashes(manager);
    listed.resize(listed.size() - std::min(shown, listed.size()));
    auto index = static_cast<unsigned int>(listed.size());
    unsigned int place = 0;
    for (const TOVREN_SFL_FLASH_INFO& record : records) {
        const std::string shown_by = tool_switch_that_shows(record);
        listed.push_back({&record, shown_by.empty() ? index++ : INVALID_DWORD, shown_by, place++});
    }
    return listed;
}
