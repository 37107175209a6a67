// The row format of the world's description files, and the list of faults found in them.
//
// A description file is text, one row a line. Empty lines and lines that begin with '#' are skipped. A row is cells
// separated by blanks: a word that says what the row is, then values; a cell of the form name=value is an attribute.
// Lists are separated by commas, and "-" is the empty list. Every fault is kept with its file and line, so that one
// run tells them all.
#ifndef WORLD_ROWS_H
#define WORLD_ROWS_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

struct WORLD_PLACE {
    std::string file;
    unsigned int line = 0; // counted from 1; 0 for the file as a whole
};

class WORLD_FAULTS {
public:
    void add(const WORLD_PLACE& place, const std::string& reason);
    bool any() const { return !m_lines.empty(); }
    // Writes every fault, one a line: "file:line: reason".
    void print() const;

private:
    std::vector<std::string> m_lines;
};

struct WORLD_ROW {
    WORLD_PLACE place;
    std::string word;
    std::vector<std::string> values;
    std::map<std::string, std::string> attributes;
};

// Attributes are told from values only in rows whose word is not among `free_text` (rows that end in prose).
std::vector<WORLD_ROW> read_world_rows(const std::string& file, const std::vector<std::string>& free_text,
                                       WORLD_FAULTS& faults);

// True when the row has exactly `count` values and no attribute beside `allowed`; says what is wrong otherwise.
bool check_world_row(const WORLD_ROW& row, std::size_t count, const std::vector<std::string>& allowed,
                     WORLD_FAULTS& faults);

// The attribute's value, or `otherwise` when the row has none of that name.
std::string world_attribute(const WORLD_ROW& row, const std::string& name, const std::string& otherwise);

// The comma-separated items of `list`; none for "-". An empty item stays, so that the caller can refuse it.
std::vector<std::string> split_world_list(std::string_view list, char separator);

bool is_world_digits(std::string_view text);
bool is_world_capitals(std::string_view text);
// The characters that the naming maps may hold: capital letters, digits, '-' and '_'; at least one.
bool is_world_name(std::string_view text);

#endif
