// The CSV description of a database's records.
//
// Numbers are decimal, or hexadecimal where the shipped descriptions have them so; flags are TRUE and FALSE; the number
// of an enumeration is the name that the generator reads it from. What the generators take from a cell they take as it
// stands, so only texts have limits: nothing that separates cells, no empty one in a flash row, no white space at
// either end of a row, which the generators drop.
#include "tool_db_csv.h"

#include "host_text.h"
#include "tool_device_record.h"
#include "tool_text.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace {

using CELLS = std::vector<std::string>;

constexpr char SEPARATORS[] = " \t\n,";

// The unit row of a flash description. It tells which columns are hexadecimal, too.
constexpr std::array<std::string_view, 33> FLASH_UNITS = {
    "characters", "characters", "flag", "hex",  "index", "hex",  "index", "hex",     "index", "code", "flag",
    "characters", "flag",       "flag", "flag", "flag",  "flag", "flag",  "count",   "bit",   "byte", "flag",
    "flag",       "s",          "s",    "us",   "hex",   "hex",  "hex",   "divisor", "hex",   "flag", "characters"};

constexpr std::string_view DEVICE_HEX_MEMBERS[] = {"aes_fuse_bit_location", "as_second_offset_addr"};

enum class STYLE : unsigned char { TEXT, FLAG, DECIMAL, HEX_BYTE, HEX, NAME };

struct COLUMN {
    std::string_view name;
    STYLE style;
};

STYLE number_style(bool is_flash, size_t i, std::string_view name) {
    if (is_flash)
        return FLASH_UNITS[i] == "hex" ? STYLE::HEX_BYTE : STYLE::DECIMAL;
    const bool is_hex =
        std::find(std::begin(DEVICE_HEX_MEMBERS), std::end(DEVICE_HEX_MEMBERS), name) != std::end(DEVICE_HEX_MEMBERS);
    return is_hex ? STYLE::HEX : STYLE::DECIMAL;
}

STYLE style_of(bool is_flash, size_t i, std::string_view name, TOVREN_MANAGER_TYPE type) {
    switch (type) {
    case TOVREN_MANAGER_DEVID_ENUM:
    case TOVREN_MANAGER_ENUM:
        return STYLE::NAME;
    case TOVREN_MANAGER_DEVID_STR:
    case TOVREN_MANAGER_STRING:
        return STYLE::TEXT;
    case TOVREN_MANAGER_BOOL:
        return STYLE::FLAG;
    default:
        return number_style(is_flash, i, name);
    }
}

std::vector<COLUMN> columns_of(const std::string& kind) {
    const auto& names = tool_db_member_names(kind);
    const auto& types = tool_db_member_types(kind);
    std::vector<COLUMN> columns;
    for (size_t i = 0; i < names.size(); ++i)
        columns.push_back({names[i], style_of(kind == "flash", i, names[i], types[i])});
    return columns;
}

void append_number(std::string& text, unsigned int value, int base) {
    char digits[16];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value, base).ptr;
    for (char* digit = digits; digit != end; ++digit)
        text += *digit >= 'a' ? static_cast<char>(*digit - ('a' - 'A')) : *digit;
}

// The number where it has no name.
void append_name(std::string& text, std::string_view member, unsigned int value) {
    if (const auto name = tool_enum_cell(std::string(member), value))
        text += *name;
    else
        append_number(text, value, 10);
}

void append_cell(std::string& text, const COLUMN& column, const TOOL_DB_VALUE& value) {
    if (const auto* characters = std::get_if<std::string>(&value)) {
        text += *characters;
        return;
    }
    if (const auto* flag = std::get_if<bool>(&value)) {
        text += *flag ? "TRUE" : "FALSE";
        return;
    }
    const unsigned int number = std::get<unsigned int>(value);
    if (column.style == STYLE::NAME)
        return append_name(text, column.name, number);
    const bool is_hex = column.style == STYLE::HEX_BYTE || (column.style == STYLE::HEX && number != 0);
    if (is_hex)
        text += column.style == STYLE::HEX_BYTE && number < 0x10 ? "0x0" : "0x";
    append_number(text, number, is_hex ? 16 : 10);
}

// ---- what no cell can hold ----

const char* separator_name(char c) {
    return c == ' ' ? "a blank" : c == '\t' ? "a tab" : c == '\n' ? "a line break" : "a comma";
}

// Nothing of the text would be dropped at the ends of a row.
bool is_kept_whole(std::string text) {
    const size_t size = text.size();
    gen_remove_leading_and_trailing_white_spaces(text);
    return text.size() == size;
}

// Of a number or a flag its value, of a text its length.
unsigned int rank_of(const TOOL_DB_VALUE& value) {
    if (const auto* text = std::get_if<std::string>(&value))
        return static_cast<unsigned int>(text->size());
    const auto* flag = std::get_if<bool>(&value);
    return flag ? *flag : std::get<unsigned int>(value);
}

struct EXTREMES {
    unsigned int lowest = INVALID_DWORD;
    unsigned int highest = 0;

    void take(unsigned int rank) {
        lowest = std::min(lowest, rank);
        highest = std::max(highest, rank);
    }
};

class CSV_WRITER {
public:
    explicit CSV_WRITER(const TOOL_DB_FILE& file)
        : m_file(file), m_columns(columns_of(file.kind)), m_extremes(m_columns.size()) {}

    TOOL_DB_CSV write() {
        m_rows.reserve(256 * m_file.records.size());
        for (size_t i = 0; i < m_file.records.size(); ++i)
            put_record(i);
        return {header() + m_rows, std::move(m_faults)};
    }

private:
    bool is_flash() const { return m_file.kind == "flash"; }

    static std::string row(const CELLS& cells) { return tool_join(cells, ",") + '\n'; }

    std::string header() const {
        CELLS types;
        for (const TOVREN_MANAGER_TYPE type : tool_db_member_types(m_file.kind))
            types.emplace_back(tool_db_type_word(type));
        return row(types) + row(tool_db_member_names(m_file.kind)) + (is_flash() ? free_rows() : "");
    }

    // The six header rows that a generator does not read. Three of them need a cell a column.
    std::string free_rows() const {
        return "# Serial configuration flash memories, in the order of the database that they were read from.\n"
               "# Of rows that answer alike the first is identified.\n" +
               row({FLASH_UNITS.begin(), FLASH_UNITS.end()}) + row(extremes(&EXTREMES::lowest)) +
               row(extremes(&EXTREMES::highest)) +
               "# Rows above: unit and lowest and highest value of each column. One flash a row from here on.\n";
    }

    CELLS extremes(unsigned int EXTREMES::*which) const {
        CELLS cells(m_columns.size());
        for (size_t i = 0; i < cells.size(); ++i) {
            const unsigned int rank = m_extremes[i].*which;
            append_cell(cells[i], m_columns[i],
                        m_columns[i].style == STYLE::FLAG ? TOOL_DB_VALUE(rank != 0) : TOOL_DB_VALUE(rank));
        }
        return cells;
    }

    void put_record(size_t position) {
        const TOOL_DB_RECORD& record = m_file.records[position];
        for (size_t i = 0; i < record.size(); ++i) {
            if (i > 0)
                m_rows += ',';
            append_cell(m_rows, m_columns[i], record[i].value);
            m_extremes[i].take(rank_of(record[i].value));
            if (std::string fault = cell_fault(i, record[i].value); !fault.empty())
                m_faults.push_back({position, std::string(m_columns[i].name), std::move(fault)});
        }
        m_rows += '\n';
    }

    std::string cell_fault(size_t i, const TOOL_DB_VALUE& value) const {
        if (const auto* text = std::get_if<std::string>(&value))
            return text_fault(i, *text);
        if (m_columns[i].style != STYLE::NAME)
            return "";
        const unsigned int number = std::get<unsigned int>(value);
        return tool_enum_cell(std::string(m_columns[i].name), number)
                   ? ""
                   : std::to_string(number) + " is no number that a name of a description stands for";
    }

    std::string text_fault(size_t i, const std::string& text) const {
        if (text.empty())
            return is_flash() ? "the text is empty; a flash description has no empty cell" : "";
        if (const size_t place = text.find_first_of(SEPARATORS); place != std::string::npos)
            return tool_quoted(text) + " holds " + separator_name(text[place]) + ", which would end the cell";
        if (i == 0 && !is_kept_whole(text + 'x'))
            return tool_quoted(text) + " begins the row with white space, which is dropped";
        if (i + 1 == m_columns.size() && !is_kept_whole('x' + text))
            return tool_quoted(text) + " ends the row with white space, which is dropped";
        return "";
    }

    const TOOL_DB_FILE& m_file;
    const std::vector<COLUMN> m_columns;
    std::vector<EXTREMES> m_extremes; // of each column
    std::string m_rows;
    std::vector<TOOL_DB_CSV_FAULT> m_faults;
};

} // namespace

TOOL_DB_CSV tool_db_csv(const TOOL_DB_FILE& file) {
    return CSV_WRITER(file).write();
}

std::vector<std::string> tool_db_cells(const std::string& kind, const TOOL_DB_RECORD& record) {
    static const std::vector<COLUMN> FLASH_COLUMNS = columns_of("flash");
    static const std::vector<COLUMN> DEVICE_COLUMNS = columns_of("device");
    const auto& columns = kind == "flash" ? FLASH_COLUMNS : DEVICE_COLUMNS;
    CELLS cells(record.size());
    for (size_t i = 0; i < record.size(); ++i)
        append_cell(cells[i], columns[i], record[i].value);
    return cells;
}
