// The device records of the report page: a row each, and below it whom the record serves and its 86 members.
#include "tool_device_record.h"
#include "tool_report.h"
#include "tool_report_templates.h"
#include "tool_text.h"

#include "host_text.h"

namespace {

using KIND = TOOL_CATALOGUE_VALUE::KIND;

struct SERVED {
    std::vector<std::string> families;
    std::map<std::string, std::vector<std::string>> devices; // by rule
    size_t device_count = 0;
    size_t part_count = 0;
};

// Calls `take(value, position)` for each named value that a record serves.
template <typename TAKE>
void for_each_served(const TOVREN_DEV_INFO_MANAGER& manager, KIND kind, TAKE&& take) {
    for (unsigned int number = 1; number < tool_catalogue_bound(kind); ++number) {
        const TOOL_CATALOGUE_VALUE value = {kind, number};
        if (const unsigned int position = tool_position_of(manager, value); position < manager.get_record_count())
            take(value, position);
    }
}

std::vector<SERVED> served_by_record(const TOVREN_DEV_INFO_MANAGER& manager) {
    std::vector<SERVED> served(manager.get_record_count());
    for_each_served(manager, KIND::FAMILY, [&](TOOL_CATALOGUE_VALUE value, unsigned int position) {
        served[position].families.push_back(tool_user_name(value));
    });
    for_each_served(manager, KIND::DEVICE, [&](TOOL_CATALOGUE_VALUE value, unsigned int position) {
        served[position].devices[tool_served_by(manager, value)].push_back(tool_user_name(value));
        ++served[position].device_count;
    });
    for_each_served(manager, KIND::PART,
                    [&](TOOL_CATALOGUE_VALUE, unsigned int position) { ++served[position].part_count; });
    return served;
}

TOOL_HTML list_of(const char* title, const std::vector<std::string>& names) {
    if (names.empty())
        return {};
    return tool_fill(TOOL_PAGE_SERVED, {{"title", TOOL_HTML(title)},
                                        {"count", TOOL_HTML(std::to_string(names.size()))},
                                        {"names", TOOL_HTML(tool_join(names, " "))}});
}

TOOL_HTML served_markup(const SERVED& served) {
    static const std::map<std::string, const char*> TITLES = {
        {"family", "Devices, by their family"},
        {"generic", "Devices of families without a record"},
        {"part list", "Devices, by the part list"},
        {"device", "Devices, by their own key"},
    };
    TOOL_HTML lists = list_of("Families", served.families);
    for (const auto& [rule, names] : served.devices) {
        const auto title = TITLES.find(rule);
        lists += list_of(title == TITLES.end() ? rule.c_str() : title->second, names);
    }
    return lists.empty() ? tool_fill(TOOL_PAGE_SERVED_NONE) : lists;
}

TOOL_HTML members_markup(const TOVREN_DEVICE_INFO& record) {
    TOOL_HTML members;
    for (const TOOL_DEVICE_MEMBER_TEXT& member : tool_device_member_texts(record))
        members += tool_fill(TOOL_PAGE_MEMBER, {{"name", TOOL_HTML(member.name)},
                                                {"value", TOOL_HTML(member.text.empty() ? "–" : member.text)}});
    return members;
}

// The flash that the record proposes, with a link where it is loaded.
TOOL_HTML proposed_flash(const TOVREN_DEVICE_INFO& record, const std::map<std::string, std::string>& anchors) {
    std::string name = record.cfg_dev;
    stl_tolower(name);
    const auto anchor = anchors.find(name);
    if (anchor == anchors.end())
        return TOOL_HTML(record.cfg_dev.empty() ? "–" : record.cfg_dev);
    return tool_fill(TOOL_PAGE_LINK, {{"anchor", TOOL_HTML(anchor->second)}, {"text", TOOL_HTML(record.cfg_dev)}});
}

} // namespace

TOOL_HTML tool_report_devices(const TOVREN_DEV_INFO_MANAGER& manager,
                              const std::map<std::string, std::string>& flash_anchors) {
    const std::vector<SERVED> served = served_by_record(manager);
    TOOL_HTML rows;
    for (unsigned int position = 0; position < manager.get_record_count(); ++position) {
        const TOVREN_DEVICE_INFO& record = *manager.get_record(position);
        const TOOL_RECORD_KEY key = tool_record_key(record);
        rows +=
            tool_fill(TOOL_PAGE_DEVICE, {{"position", TOOL_HTML(std::to_string(position))},
                                         {"name", TOOL_HTML(key.name)},
                                         {"kind", TOOL_HTML(key.kind)},
                                         {"families", TOOL_HTML(std::to_string(served[position].families.size()))},
                                         {"devices", TOOL_HTML(std::to_string(served[position].device_count))},
                                         {"parts", TOOL_HTML(std::to_string(served[position].part_count))},
                                         {"flash", proposed_flash(record, flash_anchors)},
                                         {"voltage", TOOL_HTML(record.asc_voltage.empty() ? "–" : record.asc_voltage)},
                                         {"served", served_markup(served[position])},
                                         {"members", members_markup(record)}});
    }
    return rows;
}
