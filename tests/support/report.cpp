#include "report.h"

#include "tovren_standalone_host.h"

namespace {

// Not a standard exception: nothing under test can catch it by accident.
struct REPORT_THROWN {
    REPORT report;
};

void throw_report(const char* expression, const char* prefix, const char* file, int line) {
    throw REPORT_THROWN{{expression, prefix, file, line}};
}

struct THROWING_HANDLER {
    THROWING_HANDLER() { TOVREN_STANDALONE_HOST::set_report_handler(throw_report); }
    ~THROWING_HANDLER() { TOVREN_STANDALONE_HOST::set_report_handler({}); }
    THROWING_HANDLER(const THROWING_HANDLER&) = delete;
    THROWING_HANDLER& operator=(const THROWING_HANDLER&) = delete;
};

} // namespace

std::optional<REPORT> report_of(const std::function<void()>& action) {
    const THROWING_HANDLER handler;
    try {
        action();
    } catch (const REPORT_THROWN& thrown) {
        return thrown.report;
    }
    return std::nullopt;
}

testing::AssertionResult is_report(const std::optional<REPORT>& report, const std::string& expression,
                                   const std::string& file) {
    if (!report)
        return testing::AssertionFailure() << "no report, expected \"" << expression << '"';
    if (report->expression == expression && report->prefix == "TOVREN" && report->file == file && report->line > 0)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "report(\"" << report->expression << "\", \"" << report->prefix << "\", \""
                                       << report->file << "\", " << report->line << "), expected \"" << expression
                                       << "\" in " << file;
}

testing::AssertionResult is_no_report(const std::optional<REPORT>& report) {
    if (!report)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "report(\"" << report->expression << "\", ..., \"" << report->file << "\", "
                                       << report->line << ')';
}
