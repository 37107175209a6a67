// Reading a CSV description for its faults.
#include "tool_csv_table.h"

#include "host_pgm_common.h"
#include "host_text.h"
#include "tool_file.h"
#include "tool_text.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string_view>

namespace {

constexpr unsigned int TYPE_ROW = 0;
constexpr unsigned int NAME_ROW = 1;
constexpr size_t LONGEST_TEXT = 255;
constexpr size_t MOST_NAMED = 14;                // names that a fault lists
constexpr size_t LARGEST_DESCRIPTION = 64 << 20; // bytes
constexpr size_t MOST_FAULTS_SHOWN = 10;

using SEVERITY = TOOL_CSV_FAULT::SEVERITY;

const char* type_word(TOVREN_MANAGER_TYPE type) {
    static constexpr const char* WORDS[] = {"DEVID_ENUM", "DEVID_STR", "STL_STRING", "bool",
                                            "BYTE",       "WORD",      "DWORD",      "ENUM"};
    return WORDS[type];
}

unsigned int largest_value(TOVREN_MANAGER_TYPE type) {
    return type == TOVREN_MANAGER_BYTE ? 0xFF : type == TOVREN_MANAGER_WORD ? 0xFFFF : INVALID_DWORD;
}

class READER {
public:
    READER(const std::string& file, const TOOL_CSV_LAYOUT& layout) : m_file(file), m_layout(layout) {}

    TOOL_CSV_TABLE read() {
        if (const std::string fault = tool_reading_fault(m_file); !fault.empty()) {
            m_table.faults.push_back({.fault = fault});
            return std::move(m_table);
        }
        std::ifstream file(m_file);
        std::istringstream input(tool_read_all(file, tool_printable(m_file), LARGEST_DESCRIPTION));
        std::string line;
        for (m_line = 1; std::getline(input, line); ++m_line) {
            if (m_line == 1)
                take_mark_off(line);
            gen_remove_leading_and_trailing_white_spaces(line);
            if (!line.empty())
                check_row(m_table.row_count++, line);
        }
        return std::move(m_table);
    }

private:
    // What some editors put in front of UTF-8. The generators take it for a part of the first cell.
    void take_mark_off(std::string& line) {
        constexpr std::string_view MARK = "\xEF\xBB\xBF";
        if (!line.starts_with(MARK))
            return;
        line.erase(0, MARK.size());
        add_row_fault("the file begins with a byte-order mark; save it as UTF-8 without one");
    }

    void add_row_fault(const std::string& fault) { m_table.faults.push_back({.line = m_line, .fault = fault}); }

    void add(size_t i, const std::string& cell, const std::string& fault, SEVERITY severity = SEVERITY::REFUSED) {
        m_table.faults.push_back({m_line, static_cast<unsigned int>(i + 1), m_layout.names[i], cell, fault, severity});
    }

    void check_row(unsigned int row, const std::string& line) {
        if (m_layout.longest_line != 0 && line.size() > m_layout.longest_line)
            add_row_fault("a line of " + std::to_string(line.size()) + " characters; at most " +
                          std::to_string(m_layout.longest_line) + " are read");
        std::vector<std::string> cells;
        gen_tokenize(line, " \t\n,", cells);
        const bool is_free = m_layout.is_free_row(row);
        if (!is_free && cells.size() != m_layout.names.size())
            return add_row_fault(tool_count_text(cells.size(), "cell") + ", expected " +
                                 std::to_string(m_layout.names.size()));
        if (row <= NAME_ROW)
            for (size_t i = 0; i < cells.size(); ++i)
                check_header(row, i, cells[i]);
        if (row < m_layout.first_data_row)
            return;
        for (size_t i = 0; i < cells.size(); ++i)
            check_value(i, cells[i]);
        m_table.rows.push_back({m_line, std::move(cells)});
    }

    void check_header(unsigned int row, size_t i, const std::string& cell) {
        const std::string expected = row == TYPE_ROW ? type_word(m_layout.types[i]) : m_layout.names[i];
        std::string found = cell;
        if (row == NAME_ROW)
            stl_tolower(found);
        if (found != expected)
            add(i, cell,
                "column " + std::to_string(i + 1) + " of the " + (row == TYPE_ROW ? "type" : "name") + " row is " +
                    tool_quoted(cell) + ", expected " + tool_quoted(expected));
    }

    void check_value(size_t i, const std::string& cell) {
        const TOVREN_MANAGER_TYPE type = m_layout.types[i];
        if (type == TOVREN_MANAGER_DEVID_ENUM || type == TOVREN_MANAGER_ENUM)
            check_name(i, cell);
        else if (cell.empty() && !m_layout.is_empty_allowed)
            add(i, cell, "the cell is empty");
        else if (type == TOVREN_MANAGER_STRING || type == TOVREN_MANAGER_DEVID_STR)
            check_text(i, cell);
        else if (type == TOVREN_MANAGER_BOOL)
            check_flag(i, cell);
        else
            check_number(i, cell);
    }

    void check_name(size_t i, const std::string& cell) {
        const std::vector<TOVREN_NAME_VALUE>& known = *m_layout.names_of(m_layout.names[i]);
        const auto is_named = [&](const TOVREN_NAME_VALUE& entry) { return entry.name == cell; };
        if (std::any_of(known.begin(), known.end(), is_named))
            return;
        std::vector<std::string> names;
        names.reserve(known.size());
        for (const TOVREN_NAME_VALUE& entry : known)
            names.push_back(entry.name);
        const std::string guess = tool_did_you_mean(tool_nearest_names(cell, names));
        const std::string advice = !guess.empty()              ? ". " + guess
                                   : names.size() > MOST_NAMED ? ""
                                                               : expected_one_of(names);
        add(i, cell,
            cell.empty() ? "the cell is empty; a name is expected"
                         : tool_quoted(cell) + " is not a known name" + advice);
    }

    static std::string expected_one_of(const std::vector<std::string>& names) {
        std::string text = ", expected ";
        for (size_t i = 0; i < names.size(); ++i)
            text += (i == 0 ? "" : i + 1 == names.size() ? " or " : ", ") + (names[i].empty() ? "nothing" : names[i]);
        return text;
    }

    void check_text(size_t i, const std::string& cell) {
        if (cell.size() > LONGEST_TEXT)
            add(i, cell, "a text of " + std::to_string(cell.size()) + " bytes; past 255 the database cannot be read",
                m_layout.long_text);
    }

    void check_flag(size_t i, const std::string& cell) {
        if (!cell.empty() && cell != "TRUE" && cell != "FALSE")
            add(i, cell, tool_quoted(cell) + " is not TRUE or FALSE");
    }

    void check_number(size_t i, const std::string& cell) {
        const unsigned int largest = largest_value(m_layout.types[i]);
        bool is_number = false;
        bool is_too_large = false;
        const unsigned int value = PGM_COMMON::convert_string_to_dword(cell, false, &is_number, &is_too_large, true);
        if (is_too_large)
            add(i, cell, tool_quoted(cell) + " is past 32 bits");
        else if (!is_number)
            add(i, cell, tool_quoted(cell) + " is not a number");
        else if (value > largest)
            add(i, cell,
                tool_quoted(cell) + " is past " + std::to_string(largest) + " and is cut to " +
                    std::to_string(value & largest),
                SEVERITY::HARMFUL);
    }

    const std::string& m_file;
    const TOOL_CSV_LAYOUT& m_layout;
    TOOL_CSV_TABLE m_table;
    unsigned int m_line = 0;
};

} // namespace

TOOL_CSV_TABLE tool_read_csv(const std::string& file, const TOOL_CSV_LAYOUT& layout) {
    return READER(file, layout).read();
}

std::vector<TOOL_CSV_FAULT> tool_sorted_faults(std::vector<TOOL_CSV_FAULT> faults) {
    std::stable_sort(faults.begin(), faults.end(), [](const TOOL_CSV_FAULT& left, const TOOL_CSV_FAULT& right) {
        return left.line < right.line || (left.line == right.line && left.column < right.column);
    });
    return faults;
}

std::string TOOL_CSV_FAULT::text(const std::string& file) const {
    return tool_printable(file) + ':' + (line == 0 ? "" : std::to_string(line) + ':') + ' ' +
           (member.empty() ? "" : member + ": ") + fault + (rule.empty() ? "" : " [" + rule + ']');
}

std::vector<std::string> tool_csv_fault_lines(const std::vector<TOOL_CSV_FAULT>& faults, const std::string& file,
                                              bool is_refused) {
    std::vector<std::string> lines;
    for (const TOOL_CSV_FAULT& fault : faults)
        if ((fault.severity == SEVERITY::REFUSED) == is_refused && fault.severity != SEVERITY::REMARK)
            lines.push_back(fault.text(file));
    if (lines.size() > MOST_FAULTS_SHOWN) {
        const size_t more = lines.size() - MOST_FAULTS_SHOWN;
        lines.resize(MOST_FAULTS_SHOWN);
        lines.push_back("and " + tool_count_text(more, "more fault").append(" of this kind"));
    }
    return lines;
}
