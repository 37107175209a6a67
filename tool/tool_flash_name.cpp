// Why a flash is not known by the name that a person typed.
#include "tool_flash_name.h"

#include "tool_flash_database.h"
#include "tool_name_spelling.h"
#include "tool_text.h"

#include <algorithm>
#include <cctype>

namespace {

using LISTED = std::vector<TOOL_LISTED_FLASH>;
using DETAILS = std::vector<std::string>;

// A name that has records but no default that is loaded.
DETAILS without_default(const std::string& name, const LISTED& listed) {
    DETAILS details;
    for (const TOOL_LISTED_FLASH& entry : listed)
        if (entry.index != INVALID_DWORD && tool_equal_ignoring_case(entry.flash->device_name, name))
            details.push_back("It has no default; --index " + std::to_string(entry.index) + " shows a record of it.");
    if (!details.empty())
        return details;
    for (const TOOL_LISTED_FLASH& entry : listed)
        if (!entry.shown_by.empty() && tool_equal_ignoring_case(entry.flash->device_name, name))
            return {"It is hidden: show it with --set " + tool_printable(entry.shown_by) + "=on."};
    return details;
}

// The record that a name stands for: its default, else its first.
const TOOL_LISTED_FLASH& record_of(const std::string& name, const LISTED& listed) {
    const TOOL_LISTED_FLASH* found = nullptr;
    for (const TOOL_LISTED_FLASH& entry : listed) {
        const bool is_better = !found || (entry.index != INVALID_DWORD && entry.flash->default_dev);
        if (is_better && tool_equal_ignoring_case(entry.flash->device_name, name))
            found = &entry;
    }
    return *found;
}

std::string place_of(const TOOL_LISTED_FLASH& record) {
    return record.index == INVALID_DWORD ? " (hidden: --set " + tool_printable(record.shown_by) + "=on)"
                                         : " [" + std::to_string(record.index) + ']';
}

DETAILS spelled_otherwise(const std::string& name, const LISTED& listed) {
    DETAILS names;
    for (const TOOL_LISTED_FLASH& entry : listed)
        names.push_back(entry.flash->device_name);
    DETAILS details;
    for (const TOOL_SPELLING& spelling : tool_spellings(name, names)) {
        const TOOL_LISTED_FLASH& record = record_of(spelling.meant, listed);
        const std::string meant = tool_printable(spelling.meant);
        details.push_back((spelling.is_open ? "It may mean " : "It means ") + meant + place_of(record) + ": " +
                          spelling.mistake(name) + '.');
    }
    return details;
}

// What stands behind the maker's name; empty where no maker's stands in front.
std::string behind_maker(const std::string& name, const std::string& maker) {
    if (name.size() <= maker.size() || !tool_equal_ignoring_case(name.substr(0, maker.size()), maker))
        return "";
    const size_t rest = name.find_first_not_of(" \t-_:/", maker.size());
    return rest == std::string::npos ? "" : name.substr(rest);
}

DETAILS with_maker(const std::string& name, const LISTED& listed) {
    for (const TOOL_LISTED_FLASH& entry : listed) {
        const std::string rest = behind_maker(name, entry.flash->manufacturer_name);
        if (rest.empty())
            continue;
        for (const TOOL_LISTED_FLASH& known : listed)
            if (tool_equal_ignoring_case(known.flash->device_name, rest))
                return {"It means " + tool_printable(known.flash->device_name) + place_of(record_of(rest, listed)) +
                        ": the maker in front is no part of the name."};
        if (DETAILS details = spelled_otherwise(rest, listed); !details.empty())
            return details;
    }
    return {};
}

bool is_index(const std::string& name, const TOVREN_FLASH_MANAGER& manager) {
    const auto index = tool_number(name, INVALID_DWORD - 1);
    return index && *index < manager.get_flash_count();
}

bool looks_like_identification(const std::string& name) {
    constexpr size_t SHORTEST = 6;
    const auto is_hex = [](unsigned char c) { return std::isxdigit(c) != 0; };
    return name.size() >= SHORTEST && name.size() % 2 == 0 && std::all_of(name.begin(), name.end(), is_hex);
}

} // namespace

std::vector<std::string> tool_unknown_flash_details(const std::string& name, const TOVREN_FLASH_MANAGER& manager) {
    const auto records = tool_all_flashes();
    const LISTED listed = tool_listed_flashes(manager, records);
    if (DETAILS details = without_default(name, listed); !details.empty())
        return details;
    if (DETAILS details = spelled_otherwise(name, listed); !details.empty())
        return details;
    if (DETAILS details = with_maker(name, listed); !details.empty())
        return details;
    if (is_index(name, manager))
        return {"A record is shown by its index with --index " + name + '.'};
    std::vector<std::string> names;
    for (const TOVREN_SFL_FLASH_INFO* flash : tool_loaded_flashes(manager))
        names.push_back(flash->device_name);
    const std::string guess = tool_did_you_mean(tool_nearest_names(name, names));
    if (!guess.empty())
        return {guess};
    return {looks_like_identification(name)
                ? "An identification is looked up with `tovren flash identify " + name + "`."
                : "`tovren flash list` lists the known ones."};
}
