// Faults of a device description: of its cells, and between its rows.
#include "host_text.h"
#include "tool_csv_table.h"
#include "tool_device_record.h"
#include "tool_text.h"
#include "tovren_dev_info_manager.h"

#include <algorithm>
#include <map>

namespace {

using SEVERITY = TOOL_CSV_FAULT::SEVERITY;

constexpr size_t KEY_COUNT = 4; // family, pcf, device, part: the first members
constexpr size_t PCF = 1;       // position of that member
constexpr size_t GENERIC_POSITION = 1;
constexpr size_t LONGEST_LINE = 10239; // characters

bool no_free_row(unsigned int) {
    return false;
}

const std::vector<TOVREN_NAME_VALUE>* names_of(const std::string& member) {
    if (member == "family")
        return &TOVREN_DEV_INFO_MANAGER::m_supported_family_list;
    if (member == "device")
        return &TOVREN_DEV_INFO_MANAGER::m_supported_device_list;
    if (member == "part")
        return &TOVREN_DEV_INFO_MANAGER::m_supported_part_list;
    return &TOVREN_DEV_INFO_MANAGER::m_supported_enum_list;
}

const TOOL_CSV_LAYOUT& layout() {
    static const TOOL_CSV_LAYOUT LAYOUT = {TOVREN_DEV_INFO_MANAGER::m_db_name_list,
                                           TOVREN_DEV_INFO_MANAGER::m_db_type_list,
                                           2,
                                           no_free_row,
                                           true,
                                           names_of,
                                           SEVERITY::REFUSED,
                                           LONGEST_LINE};
    return LAYOUT;
}

// A record bears exactly one key, and each key once.
void check_keys(const std::vector<TOOL_CSV_ROW>& rows, const TOOL_CSV_PLACES& places,
                std::vector<TOOL_CSV_FAULT>& faults) {
    std::map<std::string, unsigned int> first_lines;
    for (const TOOL_CSV_ROW& row : rows) {
        size_t keys = 0;
        for (size_t i = 0; i < KEY_COUNT; ++i) {
            if (row.cells[i].empty())
                continue;
            ++keys;
            std::string key = layout().names[i] + ' ' + row.cells[i];
            if (i == PCF)
                stl_tolower(key); // PCF names are compared letter case aside
            if (const auto [first, is_new] = first_lines.try_emplace(key, row.line); !is_new)
                faults.push_back({row.line, static_cast<unsigned int>(i + 1), layout().names[i], row.cells[i],
                                  tool_quoted(row.cells[i]) + " has its record in " + places.text(first->second) +
                                      " already; this one serves nothing",
                                  SEVERITY::HARMFUL});
        }
        if (keys != 1)
            faults.push_back({.line = row.line,
                              .fault = keys == 0 ? "the record has no key: one of family, pcf, device and part"
                                                 : "the record has " + std::to_string(keys) +
                                                       " keys; one of family, pcf, device and part is expected",
                              .severity = SEVERITY::HARMFUL});
    }
}

// The record of the Generic family must be there, and at the position that families without a record are given.
void check_generic(const std::vector<TOOL_CSV_ROW>& rows, std::vector<TOOL_CSV_FAULT>& faults) {
    for (size_t position = 0; position < rows.size(); ++position) {
        const TOOL_CSV_ROW& row = rows[position];
        if (row.cells[0] != "GENERIC")
            continue;
        if (position != GENERIC_POSITION)
            faults.push_back({row.line, 1, "family", row.cells[0],
                              "the GENERIC family stands at position " + std::to_string(position) +
                                  ", counted from 0; families without a record are served by position 1",
                              SEVERITY::HARMFUL});
        return;
    }
    faults.push_back({.fault = "the GENERIC family has no record"});
}

// One list of names serves all ENUM columns: the number of a name of another enumeration means something else there.
void check_enumerations(const std::vector<TOOL_CSV_ROW>& rows, std::vector<TOOL_CSV_FAULT>& faults) {
    const auto& known = TOVREN_DEV_INFO_MANAGER::m_supported_enum_list;
    for (size_t i = 0; i < layout().names.size(); ++i) {
        const std::string prefix = tool_enum_prefix(layout().names[i]);
        if (prefix.empty())
            continue;
        for (const TOOL_CSV_ROW& row : rows) {
            const std::string& cell = row.cells[i];
            const auto is_named = [&](const TOVREN_NAME_VALUE& entry) { return entry.name == cell; };
            if (!cell.starts_with(prefix) && std::any_of(known.begin(), known.end(), is_named))
                faults.push_back({row.line, static_cast<unsigned int>(i + 1), layout().names[i], cell,
                                  tool_quoted(cell) + " is of another enumeration; names here begin with " + prefix,
                                  SEVERITY::REMARK});
        }
    }
}

} // namespace

std::vector<TOOL_CSV_FAULT> tool_device_row_faults(const std::vector<TOOL_CSV_ROW>& rows,
                                                   const TOOL_CSV_PLACES& places) {
    std::vector<TOOL_CSV_FAULT> faults;
    check_keys(rows, places, faults);
    check_generic(rows, faults);
    return faults;
}

std::vector<TOOL_CSV_FAULT> tool_device_csv_faults(const std::string& file) {
    TOOL_CSV_TABLE table = tool_read_csv(file, layout());
    if (table.faults.empty() || table.faults.front().line != 0) {
        const unsigned int records = table.row_count < 2 ? 0 : table.row_count - 2;
        if (records != TOTAL_DATABASE_DEVICE)
            table.faults.push_back({.fault = "there are " + tool_count_text(records, "record") + ", expected " +
                                             std::to_string(TOTAL_DATABASE_DEVICE)});
        for (TOOL_CSV_FAULT& fault : tool_device_row_faults(table.rows, TOOL_CSV_LINES))
            table.faults.push_back(std::move(fault));
        check_enumerations(table.rows, table.faults);
    }
    return tool_sorted_faults(std::move(table.faults));
}
