// Faults of a flash description: of its cells, and between its rows.
#include "tool_csv_flash.h"

#include "host_pgm_common.h"
#include "tool_text.h"
#include "tovren_flash_manager.h"

#include <algorithm>
#include <map>

namespace {

using SEVERITY = TOOL_CSV_FAULT::SEVERITY;

// Rows 2, 3 and 7 may have any number of cells.
bool is_free_row(unsigned int row) {
    return row == 2 || row == 3 || row == 7;
}

const std::vector<TOVREN_NAME_VALUE>* no_names(const std::string&) {
    return nullptr;
}

const TOOL_CSV_LAYOUT& layout() {
    static const TOOL_CSV_LAYOUT LAYOUT = {TOVREN_FLASH_MANAGER::m_name_list,
                                           TOVREN_FLASH_MANAGER::m_type_list,
                                           8,
                                           is_free_row,
                                           false,
                                           no_names,
                                           SEVERITY::HARMFUL,
                                           0};
    return LAYOUT;
}

size_t column_of(const char* member) {
    const auto& names = TOVREN_FLASH_MANAGER::m_name_list;
    return static_cast<size_t>(std::find(names.begin(), names.end(), member) - names.begin());
}

} // namespace

const std::string& tool_flash_cell(const TOOL_CSV_ROW& row, const char* member) {
    return row.cells[column_of(member)];
}

std::optional<unsigned int> tool_flash_number(const TOOL_CSV_ROW& row, const char* member) {
    const unsigned int largest =
        TOVREN_FLASH_MANAGER::m_type_list[column_of(member)] == TOVREN_MANAGER_BYTE ? 0xFF : INVALID_DWORD;
    bool is_number = false;
    bool is_too_large = false;
    const std::string& cell = tool_flash_cell(row, member);
    const unsigned int value = PGM_COMMON::convert_string_to_dword(cell, false, &is_number, &is_too_large, true);
    return !cell.empty() && is_number && !is_too_large && value <= largest ? std::optional(value) : std::nullopt;
}

std::optional<bool> tool_flash_flag(const TOOL_CSV_ROW& row, const char* member) {
    const std::string& cell = tool_flash_cell(row, member);
    return cell == "TRUE" || cell == "FALSE" ? std::optional(cell == "TRUE") : std::nullopt;
}

TOOL_CSV_FAULT tool_flash_fault_at(const TOOL_CSV_ROW& row, const char* member, const std::string& fault,
                                   SEVERITY severity) {
    const size_t column = column_of(member);
    return {row.line, static_cast<unsigned int>(column + 1), member, row.cells[column], fault, severity};
}

namespace {

std::string folded(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; });
    return text;
}

bool is_default(const TOOL_CSV_ROW& row) {
    return tool_flash_cell(row, "default_dev") == "TRUE";
}

bool is_always_shown(const TOOL_CSV_ROW& row) {
    return folded(tool_flash_cell(row, "ini")) == "NONE";
}

// Of the rows of one name: those that are always shown must have one default among them; where none is always shown,
// those of one key must.
void check_defaults(const std::vector<const TOOL_CSV_ROW*>& rows, const TOOL_CSV_PLACES& places,
                    std::vector<TOOL_CSV_FAULT>& faults) {
    const TOOL_CSV_ROW* first = nullptr;
    for (const TOOL_CSV_ROW* row : rows) {
        if (!is_default(*row))
            continue;
        const bool may_meet = first && (is_always_shown(*row) || is_always_shown(*first) ||
                                        tool_flash_cell(*row, "ini") == tool_flash_cell(*first, "ini"));
        if (may_meet)
            faults.push_back(tool_flash_fault_at(*row, "default_dev",
                                                 tool_quoted(tool_flash_cell(*row, "device_name")) +
                                                     " has its default in " + places.text(first->line) + " already",
                                                 SEVERITY::HARMFUL));
        else if (!first || is_always_shown(*row))
            first = row;
    }
    const auto shown = std::find_if(rows.begin(), rows.end(), [](const auto* row) { return is_always_shown(*row); });
    const TOOL_CSV_ROW& row = shown == rows.end() ? *rows.front() : **shown;
    const std::string name = tool_quoted(tool_flash_cell(row, "device_name"));
    if (!first)
        faults.push_back(tool_flash_fault_at(row, "default_dev", name + " has no default record", SEVERITY::HARMFUL));
    else if (shown != rows.end() && !is_always_shown(*first))
        faults.push_back(tool_flash_fault_at(row, "default_dev",
                                             name + " has its default in " + places.text(first->line) +
                                                 ", which is hidden unless PGM_ALLOW_" +
                                                 tool_printable(tool_flash_cell(*first, "ini")) + " is on",
                                             SEVERITY::HARMFUL));
}

void check_all_defaults(const std::vector<TOOL_CSV_ROW>& rows, const TOOL_CSV_PLACES& places,
                        std::vector<TOOL_CSV_FAULT>& faults) {
    std::map<std::string, std::vector<const TOOL_CSV_ROW*>> by_name;
    for (const TOOL_CSV_ROW& row : rows)
        by_name[folded(tool_flash_cell(row, "device_name"))].push_back(&row);
    for (const auto& [name, same] : by_name)
        check_defaults(same, places, faults);
}

using KEY = std::vector<unsigned int>;

// What a row compares.
struct IDENTIFICATION {
    KEY key;                 // all but the memory type
    std::optional<KEY> type; // the byte and its place; nothing where any byte will do
    const TOOL_CSV_ROW* row = nullptr;
};

// The bytes that these members hold in the database; nothing where a cell is no number.
std::optional<KEY> bytes_of(const TOOL_CSV_ROW& row, std::initializer_list<const char*> members) {
    KEY bytes;
    for (const char* member : members) {
        bool is_number = false;
        bool is_too_large = false;
        const unsigned int value =
            PGM_COMMON::convert_string_to_dword(tool_flash_cell(row, member), true, &is_number, &is_too_large, true);
        if (!is_number)
            return std::nullopt;
        bytes.push_back(value & 0xFF);
    }
    return bytes;
}

std::optional<IDENTIFICATION> identification_of(const TOOL_CSV_ROW& row) {
    constexpr unsigned int NO_PLACE = 255;
    const bool has_silicon_id = tool_flash_cell(row, "silicon_id") == "TRUE";
    auto key = has_silicon_id ? bytes_of(row, {"memory_id", "memory_id_index"})
                              : bytes_of(row, {"memory_id", "memory_id_index", "mfc_id", "mfc_id_index"});
    auto type = has_silicon_id ? KEY{0, NO_PLACE} : bytes_of(row, {"memory_type", "memory_type_index"});
    if (!key || !type)
        return std::nullopt;
    if (type->back() == NO_PLACE)
        type.reset();
    return IDENTIFICATION{std::move(*key), std::move(type), &row};
}

// Whenever `later` is loaded and matches, so does `earlier`.
bool is_shadowing(const IDENTIFICATION& earlier, const IDENTIFICATION& later) {
    return (!earlier.type || earlier.type == later.type) &&
           (is_always_shown(*earlier.row) ||
            tool_flash_cell(*earlier.row, "ini") == tool_flash_cell(*later.row, "ini"));
}

// A row that an earlier one answers for can be selected by name only.
void check_shadows(const std::vector<TOOL_CSV_ROW>& rows, const TOOL_CSV_PLACES& places,
                   std::vector<TOOL_CSV_FAULT>& faults) {
    std::map<KEY, std::vector<IDENTIFICATION>> identified;
    for (const TOOL_CSV_ROW& row : rows) {
        const auto later = identification_of(row);
        if (!later)
            continue;
        auto& alike = identified[later->key];
        const auto first = std::find_if(alike.begin(), alike.end(),
                                        [&](const IDENTIFICATION& earlier) { return is_shadowing(earlier, *later); });
        if (first == alike.end())
            alike.push_back(*later);
        else
            faults.push_back(tool_flash_fault_at(row, "memory_id",
                                                 tool_quoted(tool_flash_cell(row, "device_name")) +
                                                     " is never identified: " + places.text(first->row->line) + ", " +
                                                     tool_quoted(tool_flash_cell(*first->row, "device_name")) +
                                                     ", answers alike",
                                                 SEVERITY::REMARK));
    }
}

} // namespace

std::vector<TOOL_CSV_FAULT> tool_flash_row_faults(const std::vector<TOOL_CSV_ROW>& rows,
                                                  const TOOL_CSV_PLACES& places) {
    std::vector<TOOL_CSV_FAULT> faults;
    check_all_defaults(rows, places, faults);
    check_shadows(rows, places, faults);
    return faults;
}

TOOL_CSV_TABLE tool_read_flash_csv(const std::string& file) {
    TOOL_CSV_TABLE table = tool_read_csv(file, layout());
    if (table.faults.empty() || table.faults.front().line != 0) {
        if (table.row_count <= layout().first_data_row)
            table.faults.push_back({.fault = "there is no flash: " + tool_count_text(table.row_count, "row") +
                                             ", of which the first 8 are headers"});
        for (TOOL_CSV_FAULT& fault : tool_flash_row_faults(table.rows, TOOL_CSV_LINES))
            table.faults.push_back(std::move(fault));
    }
    table.faults = tool_sorted_faults(std::move(table.faults));
    return table;
}

std::vector<TOOL_CSV_FAULT> tool_flash_csv_faults(const std::string& file) {
    return tool_read_flash_csv(file).faults;
}
