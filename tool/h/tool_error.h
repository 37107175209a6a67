// How a command ends when it cannot do what it was asked: what is thrown, and the exit codes.
#ifndef TOOL_ERROR_H
#define TOOL_ERROR_H

#include <exception>
#include <string>
#include <utility>
#include <vector>

enum TOOL_EXIT : int {
    TOOL_EXIT_DONE = 0,
    TOOL_EXIT_NOT_FOUND = 1, // asked and not found: an unknown name, an unmatched flash
    TOOL_EXIT_USAGE = 2,     // wrong usage
    TOOL_EXIT_REFUSED = 3,   // a file that is missing, foreign, broken or cannot be written
    TOOL_EXIT_INTERNAL = 70, // any other internal error
};

// Ends the command: the message and the details, a line each, go to standard error.
class TOOL_ERROR : public std::exception {
public:
    TOOL_ERROR(TOOL_EXIT exit_code, std::string message, std::vector<std::string> details = {})
        : m_exit_code(exit_code), m_message(std::move(message)), m_details(std::move(details)) {}

    const char* what() const noexcept override { return m_message.c_str(); }
    TOOL_EXIT exit_code() const { return m_exit_code; }
    const std::vector<std::string>& details() const { return m_details; }

private:
    TOOL_EXIT m_exit_code;
    std::string m_message;
    std::vector<std::string> m_details;
};

// Wrong usage of a command, "flash show" or one without a group.
inline TOOL_ERROR tool_usage_error(const std::string& command, const std::string& message,
                                   std::vector<std::string> details = {}) {
    const std::string blank = command.empty() ? "" : " ";
    details.push_back("Try `tovren " + command + blank + "--help`.");
    return {TOOL_EXIT_USAGE, command + (command.empty() ? "" : ": ") + message, std::move(details)};
}

// An internal error that the library or the host reported. Uncaught by the command it ends the program with 70.
class TOOL_REPORT : public std::exception {
public:
    TOOL_REPORT(const char* condition, const char* prefix, const char* file, int line)
        : m_condition(condition), m_prefix(prefix), m_file(file), m_line(line) {}

    const char* what() const noexcept override { return m_condition.c_str(); }
    const std::string& condition() const { return m_condition; }
    const std::string& prefix() const { return m_prefix; }
    const std::string& file() const { return m_file; }
    int line() const { return m_line; }

private:
    std::string m_condition;
    std::string m_prefix; // the library that checked
    std::string m_file;   // the source that holds the check
    int m_line;
};

#endif
