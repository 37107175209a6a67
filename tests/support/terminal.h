// An action that runs at a terminal of its own: a child process behind a pty, with a person at the other end.
//
//     TERMINAL terminal([&] { manager.gen_flash_ini(); });
//     terminal.expect("Name : ");                   // waits until this is the last thing on the screen
//     terminal.type("ACME\n");                      // which echoes it
//     EXPECT_EQ("...", terminal.rest());            // what else appears until the action ends
#ifndef TESTS_SUPPORT_TERMINAL_H
#define TESTS_SUPPORT_TERMINAL_H

#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>

class TERMINAL {
public:
    explicit TERMINAL(const std::function<void()>& action);
    ~TERMINAL();
    TERMINAL(const TERMINAL&) = delete;
    TERMINAL& operator=(const TERMINAL&) = delete;

    // What has appeared since the last call, up to and with `last`. Anything that is not there within ten seconds, or
    // when the action ends, fails the test.
    std::string expect(std::string_view last);
    std::string rest();

    void type(std::string_view text);

    // "\r\n" as terminals have it is "\n" in all results.
    static constexpr char END_OF_INPUT = '\x04';

private:
    bool read_more(); // false when the action has ended

    int m_descriptor = -1;
    pid_t m_process = -1;
    std::string m_screen;
};

#endif
