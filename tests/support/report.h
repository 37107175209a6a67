// Internal errors as test results: a handler that throws takes the place of the host's own.
//
//     EXPECT_REPORT(manager.get_byte_data(data, index, &value), "type == TOVREN_MANAGER_BYTE", IN_DB_STREAM);
//
// checks all four arguments of the report: the condition's text, the library's name, the file and a line in it.
#ifndef TESTS_SUPPORT_REPORT_H
#define TESTS_SUPPORT_REPORT_H

#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <string>

inline constexpr char IN_DB_STREAM[] = "pgm/tovren/tovren_db_stream.cpp";
inline constexpr char IN_FLASH_MANAGER[] = "pgm/tovren/tovren_flash_manager.cpp";
inline constexpr char IN_FLASH_GENERATE[] = "pgm/tovren/tovren_flash_manager_generate.cpp";

struct REPORT {
    std::string expression;
    std::string prefix;
    std::string file;
    int line = 0;
};

// The first report that `action` ends in; none when it ends by itself.
std::optional<REPORT> report_of(const std::function<void()>& action);

// Whether this is the library's report of that text from that file.
testing::AssertionResult is_report(const std::optional<REPORT>& report, const std::string& expression,
                                   const std::string& file);

#define EXPECT_REPORT(statement, expression, file)                                                                     \
    EXPECT_TRUE(is_report(report_of([&] { statement; }), expression, file))

#define EXPECT_NO_REPORT(statement) EXPECT_TRUE(is_no_report(report_of([&] { statement; })))
testing::AssertionResult is_no_report(const std::optional<REPORT>& report);

#endif
