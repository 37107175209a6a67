// Refusals of files.
#include "tool_file.h"

#include "tool_text.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

TOOL_ERROR tool_refusal(const std::string& condition, const TOOL_ADVICE& advice) {
    std::vector<std::string> lines = advice.details;
    lines.push_back("condition: " + condition);
    for (const std::string& step : advice.next)
        lines.push_back((&step == &advice.next.front() ? "next: " : "      ") + step);
    return {TOOL_EXIT_REFUSED, advice.fault, std::move(lines)};
}

std::string tool_reading_fault(const std::string& file) {
    struct stat status = {};
    if (stat(file.c_str(), &status) != 0)
        return errno == ENOENT ? "there is no such file" : std::string("it cannot be found: ") + strerror(errno);
    if (S_ISDIR(status.st_mode))
        return "it is a folder";
    if (access(file.c_str(), R_OK) != 0)
        return std::string("it cannot be read: ") + strerror(errno);
    return "";
}

std::string tool_read_all(std::istream& input, const std::string& name, size_t most) {
    constexpr size_t STEP = 1 << 16;
    std::string text;
    while (input && text.size() <= most) {
        const size_t begin = text.size();
        text.resize(std::min(begin + STEP, most + 1));
        input.read(text.data() + begin, static_cast<std::streamsize>(text.size() - begin));
        text.resize(begin + static_cast<size_t>(input.gcount()));
    }
    if (input.bad())
        throw TOOL_ERROR(TOOL_EXIT_REFUSED, name + ": it cannot be read");
    if (text.size() > most)
        throw TOOL_ERROR(TOOL_EXIT_REFUSED,
                         name + ": it has more than " + std::to_string(most >> 20) + " MiB, the most that is read");
    return text;
}

bool tool_is_same_file(const std::string& left, const std::string& right) {
    struct stat left_status = {};
    struct stat right_status = {};
    return stat(left.c_str(), &left_status) == 0 && stat(right.c_str(), &right_status) == 0 &&
           S_ISREG(left_status.st_mode) && left_status.st_dev == right_status.st_dev &&
           left_status.st_ino == right_status.st_ino;
}

void tool_need_regular_file(const std::string& file) {
    struct stat status = {};
    if (stat(file.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode))
        throw TOOL_ERROR(TOOL_EXIT_REFUSED,
                         tool_printable(file) + ": it is no regular file, and it is read more than once",
                         {"next: write the description to a file and name that"});
}
