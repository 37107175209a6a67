// Internal errors and debug messages: standard error.
#include "host_msg.h"
#include "tovren_standalone_host.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace {

TOVREN_STANDALONE_HOST::REPORT_HANDLER& report_handler() {
    static TOVREN_STANDALONE_HOST::REPORT_HANDLER handler;
    return handler;
}

int debug_level = -1;

} // namespace

void TOVREN_STANDALONE_HOST::set_report_handler(REPORT_HANDLER handler) {
    report_handler() = std::move(handler);
}

void TOVREN_STANDALONE_HOST::set_debug_level(int level) {
    debug_level = level;
}

void MSG_INTERNAL_ERROR::report(const char* expression, const char* prefix, const char* file, int line) {
    if (report_handler())
        report_handler()(expression, prefix, file, line);
    std::fflush(stdout);
    std::fprintf(stderr, "internal error: %s (%s:%d)\n", expression, file, line);
    std::_Exit(TOVREN_STANDALONE_HOST::INTERNAL_ERROR_EXIT_CODE);
}

int msg_local_vdebug(const char* prefix, MSG_D_LEVEL level, const char* format, va_list args) {
    if (level > debug_level)
        return 0;
    int count = std::fprintf(stderr, "%s: ", prefix);
    count += std::vfprintf(stderr, format, args);
    return count + std::fprintf(stderr, "\n");
}
