// Faults of a flash description: the generator's rules, applied to every row rather than up to the first fault.
#include "tool_flash_csv.h"

#include "host_pgm_common.h"
#include "host_text.h"
#include "tool_file.h"
#include "tool_text.h"
#include "tovren_flash_manager.h"

#include <fstream>

namespace {

constexpr unsigned int TYPE_ROW = 0;
constexpr unsigned int NAME_ROW = 1;
constexpr unsigned int FIRST_DATA_ROW = 8;
constexpr size_t LONGEST_TEXT = 255;

// Rows 2, 3 and 7 may have any number of cells.
constexpr bool is_free_row(unsigned int row) {
    return row == 2 || row == 3 || row == 7;
}

const char* type_word(TOVREN_MANAGER_TYPE type) {
    switch (type) {
    case TOVREN_MANAGER_STRING:
        return "STL_STRING";
    case TOVREN_MANAGER_BOOL:
        return "bool";
    case TOVREN_MANAGER_BYTE:
        return "BYTE";
    case TOVREN_MANAGER_WORD:
        return "WORD";
    default:
        return "DWORD";
    }
}

unsigned int largest_value(TOVREN_MANAGER_TYPE type) {
    return type == TOVREN_MANAGER_BYTE ? 0xFF : type == TOVREN_MANAGER_WORD ? 0xFFFF : INVALID_DWORD;
}

class FAULT_FINDER {
public:
    std::vector<TOOL_CSV_FAULT> find(const std::string& file) {
        if (const std::string fault = tool_reading_fault(file); !fault.empty()) {
            add("", fault);
            return std::move(m_faults);
        }
        std::ifstream input(file);
        std::string line;
        unsigned int row = 0;
        for (m_line = 1; std::getline(input, line); ++m_line) {
            gen_remove_leading_and_trailing_white_spaces(line);
            if (!line.empty())
                check_row(row++, line);
        }
        m_line = 0;
        if (row <= FIRST_DATA_ROW)
            add("", "there is no flash: " + tool_count_text(row, "row") + ", of which the first 8 are headers");
        return std::move(m_faults);
    }

private:
    void add(const std::string& member, const std::string& fault, bool is_refused = true) {
        m_faults.push_back({m_line, member, fault, is_refused});
    }

    void check_row(unsigned int row, const std::string& line) {
        std::vector<std::string> cells;
        gen_tokenize(line, " \t\n,", cells);
        if (!is_free_row(row) && cells.size() != TOTAL_DATABASE_MEMBER) {
            add("", tool_count_text(cells.size(), "cell") + ", expected 33");
            return;
        }
        if (is_free_row(row) || (row > NAME_ROW && row < FIRST_DATA_ROW))
            return;
        for (size_t i = 0; i < cells.size(); ++i) {
            if (row >= FIRST_DATA_ROW)
                check_value(i, cells[i]);
            else
                check_header(row, i, cells[i]);
        }
    }

    void check_header(unsigned int row, size_t i, const std::string& cell) {
        const std::string& member = TOVREN_FLASH_MANAGER::m_name_list[i];
        const std::string expected = row == TYPE_ROW ? type_word(TOVREN_FLASH_MANAGER::m_type_list[i]) : member;
        std::string found = cell;
        if (row == NAME_ROW)
            stl_tolower(found);
        if (found != expected)
            add(member, "column " + std::to_string(i + 1) + " of the " + (row == TYPE_ROW ? "type" : "name") +
                            " row is " + tool_quoted(cell) + ", expected " + tool_quoted(expected));
    }

    void check_value(size_t i, const std::string& cell) {
        const std::string& member = TOVREN_FLASH_MANAGER::m_name_list[i];
        const TOVREN_MANAGER_TYPE type = TOVREN_FLASH_MANAGER::m_type_list[i];
        if (cell.empty())
            add(member, "the cell is empty");
        else if (type == TOVREN_MANAGER_STRING)
            check_text(member, cell);
        else if (type == TOVREN_MANAGER_BOOL)
            check_flag(member, cell);
        else
            check_number(member, type, cell);
    }

    void check_text(const std::string& member, const std::string& cell) {
        if (cell.size() > LONGEST_TEXT)
            add(member, "a text of " + std::to_string(cell.size()) + " bytes; past 255 the database cannot be read",
                false);
    }

    void check_flag(const std::string& member, const std::string& cell) {
        if (cell != "TRUE" && cell != "FALSE")
            add(member, tool_quoted(cell) + " is not TRUE or FALSE");
    }

    void check_number(const std::string& member, TOVREN_MANAGER_TYPE type, const std::string& cell) {
        bool is_number = false;
        bool is_too_large = false;
        const unsigned int value = PGM_COMMON::convert_string_to_dword(cell, true, &is_number, &is_too_large, true);
        if (is_too_large)
            add(member, tool_quoted(cell) + " is past 32 bits");
        else if (!is_number)
            add(member, tool_quoted(cell) + " is not a number");
        else if (value > largest_value(type))
            add(member,
                tool_quoted(cell) + " is past " + std::to_string(largest_value(type)) + " and is cut to " +
                    std::to_string(value & largest_value(type)),
                false);
    }

    std::vector<TOOL_CSV_FAULT> m_faults;
    unsigned int m_line = 0;
};

} // namespace

std::string TOOL_CSV_FAULT::text(const std::string& file) const {
    return tool_printable(file) + ':' + (line == 0 ? "" : std::to_string(line) + ':') + ' ' +
           (member.empty() ? "" : member + ": ") + fault;
}

std::vector<TOOL_CSV_FAULT> tool_flash_csv_faults(const std::string& file) {
    return FAULT_FINDER().find(file);
}
