// Faults of the part list.
#include "tool_part_list.h"

#include "host_fio.h"
#include "host_text.h"
#include "tool_csv.h"
#include "tool_file.h"
#include "tool_text.h"

#include <fstream>

namespace {

constexpr size_t LEAST_CELLS = 7;
constexpr size_t LONGEST_LINE = 10239; // characters

// What is wrong with a line without the white space at its ends; empty for nothing.
std::string line_fault(const std::string& line) {
    if (line.size() > LONGEST_LINE)
        return "a line of " + std::to_string(line.size()) + " characters; at most " + std::to_string(LONGEST_LINE) +
               " are read";
    if (line.empty() || line.starts_with("//"))
        return "";
    std::vector<std::string> cells;
    gen_tokenize(line, " \t\n,", cells);
    return cells.size() >= LEAST_CELLS
               ? ""
               : tool_count_text(cells.size(), "cell") + ", at least " + std::to_string(LEAST_CELLS) + " expected";
}

} // namespace

std::string tool_part_list_path() {
    return gen_get_morvath_path() + "/h/pgm_parts.txt";
}

std::vector<std::string> tool_part_list_fault_lines() {
    const std::string path = tool_part_list_path();
    if (!FIO_FILE_SYSTEM::exists(path.c_str()))
        return {};
    if (const std::string fault = tool_reading_fault(path); !fault.empty())
        return {tool_printable(path) + ": " + fault};
    std::vector<TOOL_CSV_FAULT> faults;
    std::ifstream input(path);
    std::string line;
    for (unsigned int number = 1; std::getline(input, line); ++number) {
        gen_remove_leading_and_trailing_white_spaces(line);
        if (const std::string fault = line_fault(line); !fault.empty())
            faults.push_back({.line = number, .fault = fault});
    }
    return tool_csv_fault_lines(faults, path, true);
}
