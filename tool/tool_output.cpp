// Standard output and standard error of the command.
#include "tool_output.h"

#include "tool_error.h"
#include "tool_text.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

constexpr unsigned int DEFAULT_WIDTH = 80;
constexpr int BROKEN_PIPE_EXIT_CODE = 141; // what a shell shows for a program that the signal ended

bool is_set(const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value != '\0';
}

bool has_colour(int descriptor) {
    const char* terminal = std::getenv("TERM");
    return isatty(descriptor) != 0 && !is_set("NO_COLOR") && terminal && std::strcmp(terminal, "dumb") != 0;
}

unsigned int terminal_width(int descriptor) {
    if (isatty(descriptor) == 0)
        return 0;
    struct winsize size = {};
    if (ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    return DEFAULT_WIDTH;
}

// Leaves the library standard error to print on and returns where standard output was.
int set_standard_output_aside() {
    const int aside = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (aside >= 0)
        dup2(STDERR_FILENO, STDOUT_FILENO);
    return aside >= 0 ? aside : STDOUT_FILENO;
}

[[noreturn]] void end_without_a_word() {
    std::_Exit(BROKEN_PIPE_EXIT_CODE);
}

[[noreturn]] void refuse_output() {
    if (errno == EPIPE)
        end_without_a_word();
    throw TOOL_ERROR(TOOL_EXIT_REFUSED, std::string("standard output: cannot be written") +
                                            (errno == 0 ? "" : std::string(": ") + strerror(errno)));
}

std::string json_text(const nlohmann::ordered_json& document, int indent) {
    return document.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

} // namespace

TOOL_OUTPUT::TOOL_OUTPUT(bool is_json)
    : m_is_json(is_json), m_descriptor(is_json ? set_standard_output_aside() : STDOUT_FILENO),
      m_width(terminal_width(m_descriptor)), m_has_colour(has_colour(m_descriptor)) {}

std::string TOOL_OUTPUT::bold(std::string_view text) const {
    return m_has_colour ? "\033[1m" + std::string(text) + "\033[0m" : std::string(text);
}

void TOOL_OUTPUT::write(std::string_view text) const {
    tool_confirm_output();
    while (!text.empty()) {
        const ssize_t written = ::write(m_descriptor, text.data(), text.size());
        if (written >= 0)
            text.remove_prefix(static_cast<size_t>(written));
        else if (errno != EINTR)
            refuse_output();
    }
}

void tool_confirm_output() {
    errno = 0; // it stays so where an earlier write has failed
    std::cout.flush();
    if (!std::cout)
        refuse_output();
}

void TOOL_OUTPUT::write_json(const nlohmann::ordered_json& document, int indent) const {
    write(json_text(document, indent) + '\n');
}

void TOOL_JSON_LINES::add(const nlohmann::ordered_json& element) {
    constexpr size_t MOST_HELD_BACK = 65536;
    m_text += m_separator + json_text(element, -1);
    m_separator = ",\n";
    if (m_text.size() >= MOST_HELD_BACK) {
        m_output.write(m_text);
        m_text.clear();
    }
}

void TOOL_JSON_LINES::end() {
    m_output.write(m_text + "\n]\n");
    m_text.clear();
}

void tool_note(std::string_view text) {
    std::cout.flush();
    std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
}

unsigned int tool_note_width() {
    return terminal_width(STDERR_FILENO);
}

void tool_complain(std::string_view message) {
    std::cout.flush();
    const bool is_coloured = has_colour(STDERR_FILENO);
    std::fprintf(stderr, "%stovren:%s %.*s\n", is_coloured ? "\033[1;31m" : "", is_coloured ? "\033[0m" : "",
                 static_cast<int>(message.size()), message.data());
}

// To change a stream's buffer is to forget its state.
TOOL_CAPTURE::TOOL_CAPTURE() : m_former(std::cout.rdbuf()) {
    tool_confirm_output();
    std::cout.rdbuf(m_text.rdbuf());
}

TOOL_CAPTURE::~TOOL_CAPTURE() {
    std::cout.rdbuf(m_former);
}

void tool_open_standard_files() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor)
        if (fcntl(descriptor, F_GETFD) < 0)
            (void)open("/dev/null", descriptor == STDIN_FILENO ? O_RDONLY : O_WRONLY);
}
