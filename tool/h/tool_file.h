// Calls of the library over a file, whose reports become a refusal of that file.
#ifndef TOOL_FILE_H
#define TOOL_FILE_H

#include "tool_error.h"

#include <istream>
#include <new>
#include <string>
#include <string_view>
#include <vector>

// Why a file is refused, for people.
struct TOOL_ADVICE {
    std::string fault;                // with the file's name in front, "flash.csv: there is no such file"
    std::vector<std::string> details; // further faults, a line each
    std::vector<std::string> next;    // what to do, a line each
};

TOOL_ERROR tool_refusal(const std::string& condition, const TOOL_ADVICE& advice);

// What the operating system says against reading `file`; empty where it says nothing.
std::string tool_reading_fault(const std::string& file);

// All bytes up to the end. Ends the command where there are more than `most`, a multiple of 1 MiB: a device may have no
// end. `name` is shown.
std::string tool_read_all(std::istream& input, const std::string& name, size_t most);

// Both are the same regular file.
bool tool_is_same_file(const std::string& left, const std::string& right);

// Writes a result. A regular file is whole at every moment, the old one or the new one; what is none (a pipe, a
// terminal) is written to directly. Ends the command where it cannot be written.
void tool_write_file(const std::string& file, std::string_view text);

// Ends the command for a pipe and the like: the generators read their description more than once.
void tool_need_regular_file(const std::string& file);

// Runs `call`. A report of the library becomes a refusal, with what `advise(report)` returns.
template <typename ADVISE, typename CALL>
auto tool_over_file(const std::string& file, ADVISE&& advise, CALL&& call) {
    try {
        return call();
    } catch (const TOOL_REPORT& report) {
        throw tool_refusal(report.condition(), advise(report));
    } catch (const std::bad_alloc&) {
        throw tool_refusal("std::bad_alloc", {file + ": it needs more memory than there is", {}, {}});
    }
}

#endif
