// The flashes of the report page: a row each, and what unfolds below it.
#include "tool_flash_record.h"
#include "tool_report.h"
#include "tool_report_templates.h"
#include "tool_text.h"

#include "host_text.h"
#include "tovren_dev_info_manager_auto_export.h"

#include <algorithm>
#include <type_traits>

namespace {

constexpr BYTE NO_INDEX = 0xFF;

struct ROW {
    const TOOL_LISTED_FLASH& listed;
    std::string anchor;
    std::string id; // what the flash answers
    bool is_external;
    std::vector<const ROW*> alike; // those that answer the same, itself among them
};

std::vector<ROW> rows_of(const std::vector<TOOL_LISTED_FLASH>& listed, size_t external_count) {
    std::vector<ROW> rows;
    for (const TOOL_LISTED_FLASH& entry : listed) {
        const bool is_hidden = entry.index == INVALID_DWORD;
        const std::string anchor = is_hidden ? 'h' + std::to_string(rows.size()) : 'f' + std::to_string(entry.index);
        rows.push_back({entry, anchor, tool_flash_id_text(*entry.flash), rows.size() < external_count, {}});
    }
    std::map<std::string, std::vector<const ROW*>> by_id;
    for (const ROW& row : rows)
        by_id[row.id].push_back(&row);
    for (ROW& row : rows)
        row.alike = by_id[row.id];
    return rows;
}

std::string index_text(const ROW& row) {
    return row.listed.index == INVALID_DWORD ? "–" : std::to_string(row.listed.index);
}

// ---- in the row ----

// How many answer alike, and the way to the next of them.
TOOL_HTML alike_count(const ROW& row) {
    if (row.alike.size() == 1)
        return {};
    auto next = std::find(row.alike.begin(), row.alike.end(), &row) + 1;
    if (next == row.alike.end())
        next = row.alike.begin();
    return tool_fill(TOOL_PAGE_ALIKE_COUNT, {{"count", TOOL_HTML(std::to_string(row.alike.size()))},
                                             {"anchor", TOOL_HTML((*next)->anchor)},
                                             {"next", TOOL_HTML((*next)->listed.flash->device_name)}});
}

TOOL_HTML tag(const ROW& row) {
    if (row.is_external)
        return tool_fill(TOOL_PAGE_TAG, {{"text", TOOL_HTML("defined by the user")}});
    if (row.listed.shown_by.empty())
        return {};
    return tool_fill(TOOL_PAGE_TAG, {{"text", TOOL_HTML("hidden: " + row.listed.shown_by)}});
}

std::string classes(const ROW& row) {
    return std::string(row.listed.flash->silicon_id ? "silicon" : "answer") +
           (row.listed.index == INVALID_DWORD ? " hid" : "");
}

// ---- below the row ----

TOOL_HTML alike_links(const ROW& row) {
    if (row.alike.size() == 1)
        return tool_fill(TOOL_PAGE_ALIKE_NONE);
    TOOL_HTML links;
    for (const ROW* other : row.alike)
        links += tool_fill(other == &row ? TOOL_PAGE_ALIKE_SELF : TOOL_PAGE_ALIKE_LINK,
                           {{"anchor", TOOL_HTML(other->anchor)},
                            {"name", TOOL_HTML(other->listed.flash->device_name)},
                            {"index", TOOL_HTML(index_text(*other))}});
    return tool_fill(TOOL_PAGE_ALIKE, {{"links", links}});
}

// "byte 0 is 20 (mfc_id), byte 1 is BA (memory_type), byte 2 is 18 (memory_id)"
std::string bytes_text(const TOVREN_SFL_FLASH_INFO& flash) {
    const auto byte = [](BYTE index, BYTE value, const char* member) {
        return "byte " + std::to_string(index) + " is " + tool_hex_text(&value, 1) + " (" + member + ")";
    };
    if (flash.silicon_id)
        return "silicon ID, " + byte(flash.memory_id_index, flash.memory_id, "memory_id");
    std::vector<std::string> texts = {byte(flash.mfc_id_index, flash.mfc_id, "mfc_id")};
    if (flash.memory_type_index != NO_INDEX)
        texts.push_back(byte(flash.memory_type_index, flash.memory_type, "memory_type"));
    texts.push_back(byte(flash.memory_id_index, flash.memory_id, "memory_id"));
    return tool_join(texts, ", ");
}

TOOL_HTML enabling(const ROW& row) {
    const TOVREN_SFL_FLASH_INFO& flash = *row.listed.flash;
    if (row.is_external)
        return tool_fill(TOOL_PAGE_KEY_EXTERNAL);
    if (tool_equal_ignoring_case(flash.ini, "NONE"))
        return tool_fill(TOOL_PAGE_KEY_NONE);
    return tool_fill(row.listed.shown_by.empty() ? TOOL_PAGE_KEY_ON : TOOL_PAGE_KEY_OFF,
                     {{"key", TOOL_HTML("PGM_ALLOW_" + flash.ini)}});
}

// The flags that are set, or that are not; those that have a place of their own in the page aside.
std::string flags_text(const TOVREN_SFL_FLASH_INFO& flash, bool are_set) {
    static const std::set<std::string> PLACED = {"silicon_id", "default_dev", "startup_protected", "byte4_addressing"};
    std::vector<std::string> names;
    tovren_visit_members(flash, [&](const char* name, const auto& value) {
        if constexpr (std::is_same_v<std::decay_t<decltype(value)>, bool>)
            if (value == are_set && !PLACED.contains(name))
                names.emplace_back(name);
    });
    return names.empty() ? "none" : tool_join(names, ", ");
}

TOOL_HTML row_markup(const ROW& row, TOOL_RULINGS& rulings) {
    const TOVREN_SFL_FLASH_INFO& flash = *row.listed.flash;
    return tool_fill(TOOL_PAGE_FLASH, {{"anchor", TOOL_HTML(row.anchor)},
                                       {"classes", TOOL_HTML(classes(row))},
                                       {"index", TOOL_HTML(index_text(row))},
                                       {"name", TOOL_HTML(flash.device_name)},
                                       {"tag", tag(row)},
                                       {"maker", TOOL_HTML(flash.manufacturer_name)},
                                       {"id", TOOL_HTML(row.id)},
                                       {"alike_count", alike_count(row)},
                                       {"default", TOOL_HTML(flash.default_dev ? "yes" : "no")},
                                       {"density", TOOL_HTML(tool_bits_text(flash.device_bit_size))},
                                       {"sectors", TOOL_HTML(tool_flash_sectors_text(flash))},
                                       {"sector_erase", TOOL_HTML(tool_seconds_text(flash.sec_erase_time))},
                                       {"chip_erase", TOOL_HTML(tool_seconds_text(flash.bulk_erase_time))},
                                       {"program", TOOL_HTML(tool_microseconds_text(flash.program_utime))},
                                       {"voltage", TOOL_HTML(flash.asc_voltage)},
                                       {"geometry", tool_report_geometry(flash, rulings)},
                                       {"bytes", TOOL_HTML(bytes_text(flash))},
                                       {"alike", alike_links(row)},
                                       {"enabling", enabling(row)},
                                       {"set", TOOL_HTML(flags_text(flash, true))},
                                       {"not_set", TOOL_HTML(flags_text(flash, false))},
                                       {"dies", TOOL_HTML(std::to_string(flash.die_count))},
                                       {"code", TOOL_HTML(std::to_string(flash.velkor_id))}});
}

template <typename TEXTS>
TOOL_HTML choices(const TEXTS& texts) {
    TOOL_HTML options;
    for (const auto& text : texts)
        options += tool_fill(TOOL_PAGE_CHOICE, {{"text", TOOL_HTML(text)}});
    return options;
}

} // namespace

TOOL_FLASH_SECTION tool_report_flashes(const std::vector<TOOL_LISTED_FLASH>& listed, size_t external_count) {
    TOOL_FLASH_SECTION section;
    TOOL_RULINGS rulings;
    std::set<std::string> makers;
    std::set<unsigned int> densities;
    for (const ROW& row : rows_of(listed, external_count)) {
        section.rows += row_markup(row, rulings);
        makers.insert(row.listed.flash->manufacturer_name);
        densities.insert(row.listed.flash->device_bit_size);
        std::string name = row.listed.flash->device_name;
        stl_tolower(name);
        if (row.listed.flash->default_dev)
            section.anchors.emplace(name, row.anchor);
    }
    std::vector<std::string> density_texts;
    std::transform(densities.begin(), densities.end(), std::back_inserter(density_texts), tool_bits_text);
    section.makers = choices(makers);
    section.densities = choices(density_texts);
    section.rulings = tool_report_rulings(rulings);
    return section;
}
