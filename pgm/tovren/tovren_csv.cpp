// Lines and cells of the CSV descriptions.
#include "tovren_csv.h"

#include "host_text.h"

CSV_READER::CSV_READER(const FIO_PATH& csv) : m_input(csv.fullpath()), m_is_good(m_input.good()) {}

bool CSV_READER::next_line(std::string& line) {
    while (std::getline(m_input, line)) {
        gen_remove_leading_and_trailing_white_spaces(line);
        if (!line.empty())
            return true;
    }
    return false;
}

bool CSV_READER::next(std::vector<std::string>& cells) {
    if (!next_line(m_line))
        return false;
    gen_tokenize(m_line, CSV_SEPARATORS, cells);
    return true;
}
