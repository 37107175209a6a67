// Messages of the host: internal errors and debug output.
#ifndef HOST_MSG_H
#define HOST_MSG_H

#include <cstdarg>

// How detailed a debug message is: 0 is always of interest, higher levels are for closer looks.
enum MSG_D_LEVEL : int {
    MSG_D_LEVEL_0 = 0,
    MSG_D_LEVEL_1 = 1,
    MSG_D_LEVEL_2 = 2,
    MSG_D_LEVEL_3 = 3,
};

class MSG_INTERNAL_ERROR {
public:
    // Called when a condition that must hold does not. `expression` is the condition's text, `prefix` the name of the
    // library that checked it, `file` and `line` the place of the check. The texts are valid during the call only.
    // The implementer ends the process or leaves by an exception; it must not return.
    [[noreturn]] static void report(const char* expression, const char* prefix, const char* file, int line);
};

// Takes one debug message of the library `prefix`: `format` and `args` as for vprintf. Decides itself whether a message
// of this level is shown. `args` is consumed. Returns the number of characters shown, 0 for a message not shown.
int msg_local_vdebug(const char* prefix, MSG_D_LEVEL level, const char* format, va_list args);

#endif
