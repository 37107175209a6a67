// Where the records of a flash database stand in the CSV description that it was generated from.
#include "tool_flash_csv.h"

#include "host_pgm_common.h"
#include "tool_csv_flash.h"
#include "tool_database.h"
#include "tool_file.h"
#include "tool_output.h"
#include "tool_text.h"
#include "tovren_dev_info_manager_auto_export.h"
#include "tovren_flash_manager.h"

#include <algorithm>
#include <filesystem>
#include <type_traits>

namespace {

constexpr char FILE_NAME[] = "flash.csv";

bool is_cell_of(const std::string& cell, const std::string& value) {
    return cell == value;
}

bool is_cell_of(const std::string& cell, bool value) {
    return cell == (value ? "TRUE" : "FALSE");
}

// As the generator cuts a number to its member's width.
template <typename NUMBER>
bool is_cell_of(const std::string& cell, NUMBER value) {
    bool is_number = false;
    return static_cast<NUMBER>(PGM_COMMON::convert_string_to_dword(cell, true, &is_number, nullptr, true)) == value &&
           is_number;
}

bool is_row_of(const TOOL_CSV_ROW& row, const TOVREN_SFL_FLASH_INFO& record) {
    bool is_equal = true;
    size_t column = 0;
    tovren_visit_members(record, [&](const char*, const auto& value) {
        is_equal = is_equal && is_cell_of(row.cells[column], value);
        ++column;
    });
    return is_equal;
}

} // namespace

unsigned int TOOL_FLASH_CSV::line_of(const TOVREN_SFL_FLASH_INFO& record, unsigned int place) const {
    if (place < table.rows.size() && is_row_of(table.rows[place], record))
        return table.rows[place].line;
    const auto row = std::find_if(table.rows.begin(), table.rows.end(),
                                  [&record](const TOOL_CSV_ROW& other) { return is_row_of(other, record); });
    return row == table.rows.end() ? 0 : row->line;
}

unsigned int TOOL_FLASH_CSV::column_of(const std::string& member) {
    const auto& names = TOVREN_FLASH_MANAGER::m_name_list;
    return static_cast<unsigned int>(std::find(names.begin(), names.end(), member) - names.begin()) + 1;
}

std::string tool_beside(const std::string& file, const std::string& name) {
    return (std::filesystem::path(file).parent_path() / name).string();
}

std::optional<TOOL_FLASH_CSV> tool_find_flash_csv(const std::optional<std::string>& given) {
    const std::string file = given ? *given : tool_beside(tool_database_path(TOOL_FLASH_DATABASE), FILE_NAME);
    if (!given && !tool_reading_fault(file).empty())
        return std::nullopt;
    TOOL_FLASH_CSV csv{file, tool_read_flash_csv(file)};
    std::vector<std::string> faults = tool_csv_fault_lines(csv.table.faults, file, true);
    if (faults.empty())
        return csv;
    if (given && csv.table.faults.front().line == 0)
        throw TOOL_ERROR(TOOL_EXIT_REFUSED, faults.front(),
                         {"next: name the CSV that the database was generated from"});
    if (given)
        throw TOOL_ERROR(TOOL_EXIT_REFUSED, tool_printable(file) + ": it is no flash description", faults);
    tool_note("warning: " + faults.front());
    return std::nullopt;
}
