// Tables for people.
#include "tool_table.h"

#include "tool_text.h"

#include <algorithm>
#include <numeric>

namespace {

constexpr size_t GAP = 2;

std::string padded(const std::string& text, size_t width, bool is_number) {
    const std::string blanks(width - std::min(width, tool_text_width(text)), ' ');
    return is_number ? blanks + text : text + blanks;
}

void trim_end(std::string& text) {
    text.erase(text.find_last_not_of(' ') + 1);
}

} // namespace

void TOOL_TABLE::add_row(std::vector<std::string> cells) {
    m_widths.resize(m_columns.size());
    for (size_t i = 0; i < cells.size(); ++i) {
        cells[i] = tool_printable(cells[i]);
        m_widths[i] = std::max(m_widths[i], tool_text_width(cells[i]));
    }
    m_rows.push_back(std::move(cells));
}

void TOOL_TABLE::write(const TOOL_OUTPUT& output) const {
    const COLUMNS shown = fitting_columns(output.width() == 0 ? std::string::npos : output.width());
    if (shown.empty()) {
        output.write(cells_text());
        return;
    }
    output.write(output.bold(titles_text(shown)) + '\n' + rows_text(shown));
    note_left_out(shown);
}

void TOOL_TABLE::note() const {
    const unsigned int width = tool_note_width();
    const COLUMNS shown = fitting_columns(width == 0 ? std::string::npos : width);
    std::string text = shown.empty() ? cells_text() : titles_text(shown) + '\n' + rows_text(shown);
    if (text.ends_with('\n'))
        text.pop_back();
    tool_note(text);
    if (!shown.empty())
        note_left_out(shown);
}

void TOOL_TABLE::note_left_out(const COLUMNS& shown) const {
    if (shown.size() < m_columns.size())
        tool_note("(" + tool_count_text(m_columns.size() - shown.size(), "column") +
                  " left out: the terminal is too narrow)");
}

size_t TOOL_TABLE::column_width(size_t column) const {
    return std::max(m_columns[column].title.size(), m_widths.empty() ? 0 : m_widths[column]);
}

size_t TOOL_TABLE::table_width(const COLUMNS& shown) const {
    return std::accumulate(shown.begin(), shown.end(), GAP * (shown.size() - 1),
                           [this](size_t sum, size_t column) { return sum + column_width(column); });
}

// None where even the columns that must be there do not fit; a table of two has no better form than itself.
TOOL_TABLE::COLUMNS TOOL_TABLE::fitting_columns(size_t width) const {
    COLUMNS shown(m_columns.size());
    std::iota(shown.begin(), shown.end(), size_t{0});
    while (table_width(shown) > width) {
        const auto last = std::max_element(shown.begin(), shown.end(), [this](size_t left, size_t right) {
            return m_columns[left].rank < m_columns[right].rank;
        });
        if (m_columns[*last].rank == 0)
            return m_columns.size() <= 2 ? shown : COLUMNS();
        shown.erase(last);
    }
    return shown;
}

std::string TOOL_TABLE::line(const COLUMNS& shown, const std::vector<std::string>& cells) const {
    std::string text;
    for (const size_t column : shown) {
        text += std::string(text.empty() ? 0 : GAP, ' ');
        text += padded(cells[column], column_width(column), m_columns[column].is_number);
    }
    trim_end(text);
    return text;
}

std::string TOOL_TABLE::titles_text(const COLUMNS& shown) const {
    std::vector<std::string> titles;
    for (const TOOL_COLUMN& column : m_columns)
        titles.push_back(column.title);
    return line(shown, titles);
}

std::string TOOL_TABLE::rows_text(const COLUMNS& shown) const {
    std::string text;
    for (const auto& row : m_rows)
        text += line(shown, row) + '\n';
    return text;
}

std::string TOOL_TABLE::cells_text() const {
    size_t width = 0;
    for (const TOOL_COLUMN& column : m_columns)
        width = std::max(width, column.title.size());
    std::string text;
    for (const auto& row : m_rows) {
        text += text.empty() ? "" : "\n";
        for (size_t i = 0; i < row.size(); ++i)
            if (!row[i].empty())
                text += padded(m_columns[i].title, width + GAP, false) + row[i] + '\n';
    }
    return text;
}
