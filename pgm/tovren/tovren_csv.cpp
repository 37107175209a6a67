// Lines and cells of the CSV descriptions.
#include "tovren_csv.h"

#include "host_text.h"

#include <cstring>

namespace {

constexpr size_t BUFFER_SIZE = 16384;

} // namespace

CSV_READER::CSV_READER(const FIO_PATH& csv)
    : m_input(csv.fullpath()), m_is_open(m_input.good()), m_buffer(new char[BUFFER_SIZE]) {}

// Whether there is more to take from m_place.
bool CSV_READER::fill() {
    if (m_place != m_end)
        return true;
    m_input.read(m_buffer.get(), BUFFER_SIZE);
    m_place = m_buffer.get();
    m_end = m_place + m_input.gcount();
    return m_place != m_end;
}

// As std::getline.
bool CSV_READER::next_raw_line(std::string& line) {
    line.clear();
    if (!fill())
        return false;
    while (fill()) {
        const auto left = static_cast<size_t>(m_end - m_place);
        const auto* line_end = static_cast<const char*>(std::memchr(m_place, '\n', left));
        line.append(m_place, line_end ? line_end : m_end);
        m_place = line_end ? line_end + 1 : m_end;
        if (line_end)
            break;
    }
    return true;
}

bool CSV_READER::next_line(std::string& line) {
    while (next_raw_line(line)) {
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
