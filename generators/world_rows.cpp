// Reads rows of the description files; world_rows.h tells the format.
#include "world_rows.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>

void WORLD_FAULTS::add(const WORLD_PLACE& place, const std::string& reason) {
    std::string line = place.file;
    if (place.line > 0)
        line += ":" + std::to_string(place.line);
    m_lines.push_back(line + ": " + reason);
}

void WORLD_FAULTS::print() const {
    for (const std::string& line : m_lines)
        std::fprintf(stderr, "%s\n", line.c_str());
}

namespace {

bool contains(const std::vector<std::string>& list, const std::string& item) {
    return std::find(list.begin(), list.end(), item) != list.end();
}

void add_cell(WORLD_ROW& row, const std::string& cell, bool free_text, WORLD_FAULTS& faults) {
    const std::size_t equals = cell.find('=');
    if (free_text || equals == std::string::npos) {
        row.values.push_back(cell);
        return;
    }
    if (!row.attributes.emplace(cell.substr(0, equals), cell.substr(equals + 1)).second)
        faults.add(row.place, "\"" + cell.substr(0, equals) + "\" is given twice");
}

} // namespace

std::vector<WORLD_ROW> read_world_rows(const std::string& file, const std::vector<std::string>& free_text,
                                       WORLD_FAULTS& faults) {
    std::vector<WORLD_ROW> rows;
    std::ifstream stream(file);
    if (!stream)
        faults.add({file, 0}, "cannot be read");
    std::string line;
    for (unsigned int number = 1; std::getline(stream, line); ++number) {
        std::istringstream cells(line);
        WORLD_ROW row;
        row.place = {file, number};
        if (!(cells >> row.word) || row.word.front() == '#')
            continue;
        std::string cell;
        while (cells >> cell)
            add_cell(row, cell, contains(free_text, row.word), faults);
        rows.push_back(std::move(row));
    }
    return rows;
}

bool check_world_row(const WORLD_ROW& row, std::size_t count, const std::vector<std::string>& allowed,
                     WORLD_FAULTS& faults) {
    bool right = true;
    if (row.values.size() != count) {
        faults.add(row.place, "\"" + row.word + "\" takes " + std::to_string(count) + " values, found " +
                                  std::to_string(row.values.size()));
        right = false;
    }
    for (const auto& [name, value] : row.attributes) {
        if (!contains(allowed, name)) {
            faults.add(row.place, "\"" + row.word + "\" has no attribute \"" + name + "\"");
            right = false;
        }
    }
    return right;
}

std::string world_attribute(const WORLD_ROW& row, const std::string& name, const std::string& otherwise) {
    const auto found = row.attributes.find(name);
    return found == row.attributes.end() ? otherwise : found->second;
}

std::vector<std::string> split_world_list(std::string_view list, char separator) {
    std::vector<std::string> items;
    if (list == "-")
        return items;
    std::size_t start = 0;
    for (std::size_t end = list.find(separator); end != std::string_view::npos; end = list.find(separator, start)) {
        items.emplace_back(list.substr(start, end - start));
        start = end + 1;
    }
    items.emplace_back(list.substr(start));
    return items;
}

bool is_world_digits(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool is_world_capitals(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
}

bool is_world_name(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
    });
}
