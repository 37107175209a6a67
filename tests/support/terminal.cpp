#include "terminal.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <iostream>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr int PATIENCE_MS = 10000;

} // namespace

TERMINAL::TERMINAL(const std::function<void()>& action) {
    std::cout.flush();
    m_process = forkpty(&m_descriptor, nullptr, nullptr, nullptr);
    if (m_process != 0)
        return;
    action();
    std::cout.flush();
    std::_Exit(0);
}

TERMINAL::~TERMINAL() {
    close(m_descriptor);
    if (m_process > 0)
        waitpid(m_process, nullptr, 0);
}

std::string TERMINAL::expect(std::string_view last) {
    while (!m_screen.ends_with(last) && read_more()) {
    }
    EXPECT_TRUE(m_screen.ends_with(last)) << "expected \"" << last << "\" at the end of \"" << m_screen << '"';
    return std::exchange(m_screen, "");
}

std::string TERMINAL::rest() {
    while (read_more()) {
    }
    return std::exchange(m_screen, "");
}

void TERMINAL::type(std::string_view text) {
    EXPECT_EQ(static_cast<ssize_t>(text.size()), write(m_descriptor, text.data(), text.size()));
}

bool TERMINAL::read_more() {
    pollfd waiting = {m_descriptor, POLLIN, 0};
    if (poll(&waiting, 1, PATIENCE_MS) <= 0) {
        ADD_FAILURE() << "nothing appears behind \"" << m_screen << '"';
        return false;
    }
    char bytes[4096];
    const ssize_t count = read(m_descriptor, bytes, sizeof bytes); // an error once the other end is closed
    for (ssize_t i = 0; i < count; ++i)
        if (bytes[i] != '\r')
            m_screen += bytes[i];
    return count > 0;
}
