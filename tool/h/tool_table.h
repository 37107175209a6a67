// Tables for people: aligned columns, two blanks between two.
//
// Where results go to a terminal that a table does not fit, its least important columns are left out; one that still
// does not fit is written row by row, a line for each cell. Elsewhere a table is always whole.
#ifndef TOOL_TABLE_H
#define TOOL_TABLE_H

#include "tool_output.h"

#include <string>
#include <vector>

struct TOOL_COLUMN {
    std::string title;
    bool is_number = false; // aligned at the right
    unsigned int rank = 0;  // 0: never left out; otherwise the highest rank goes first
};

class TOOL_TABLE {
public:
    explicit TOOL_TABLE(std::vector<TOOL_COLUMN> columns) : m_columns(std::move(columns)) {}

    // One cell a column. They are made printable.
    void add_row(std::vector<std::string> cells);

    void write(const TOOL_OUTPUT& output) const;

    // The same on standard error, for what is no result.
    void note() const;

private:
    using COLUMNS = std::vector<size_t>; // the columns that are shown

    size_t column_width(size_t column) const;
    size_t table_width(const COLUMNS& shown) const;
    COLUMNS fitting_columns(size_t width) const;
    std::string line(const COLUMNS& shown, const std::vector<std::string>& cells) const;
    std::string titles_text(const COLUMNS& shown) const;
    std::string rows_text(const COLUMNS& shown) const;
    void note_left_out(const COLUMNS& shown) const;
    std::string cells_text() const;

    std::vector<TOOL_COLUMN> m_columns;
    std::vector<std::vector<std::string>> m_rows;
    std::vector<size_t> m_widths; // of each column's widest cell
};

#endif
