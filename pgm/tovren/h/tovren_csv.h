// The lines of a CSV description or of the part list, split into cells.
#ifndef TOVREN_CSV_H
#define TOVREN_CSV_H

#include "host_fio.h"

#include <fstream>
#include <memory>
#include <string>
#include <vector>

inline constexpr char CSV_SEPARATORS[] = " \t\n,";

// A line of the device description or of the part list is shorter than this.
inline constexpr size_t CSV_LINE_LIMIT = 10240;

class CSV_READER {
public:
    explicit CSV_READER(const FIO_PATH& csv);

    // Whether the file could be opened and, so far, read. False behind the last line means that lines may be missing.
    bool is_good() const { return m_is_open && !m_input.bad(); }

    // Whether reading stopped before the end. A file that cannot be opened has no lines, which is no failure.
    bool has_failed() const { return m_input.bad(); }

    // The next line that is not blank, without the white space at its ends. False at the end of the file.
    bool next_line(std::string& line);

    // The cells of the next line that is not blank.
    bool next(std::vector<std::string>& cells);

private:
    bool next_raw_line(std::string& line);
    bool fill();

    std::ifstream m_input;
    bool m_is_open;
    std::string m_line;

    // What is read ahead.
    std::unique_ptr<char[]> m_buffer;
    const char* m_place = nullptr;
    const char* m_end = nullptr;
};

#endif
