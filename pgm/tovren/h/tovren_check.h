// The one form of assertion.
//
//     TOVREN_CHECK(m_flash_database != NULL);                  // reports "m_flash_database != NULL" when it is false
//     TOVREN_CHECK_TEXT(info.size() > 46, "file_size > 46");   // the same with a text of its own
//     TOVREN_FAIL("Unsupported type");                         // always reports
//
// Checks stay in every build: some conditions consume input. A report does not return, but a host may leave it by an
// exception, so owners in scope are RAII and nothing that contains a check is noexcept. The texts are behaviour that
// callers rely on: a condition is written on one line, exactly as it is to be reported.
#ifndef TOVREN_CHECK_H
#define TOVREN_CHECK_H

#include "host_msg.h"

// The name under which this library registers, reports and prints.
inline constexpr char TOVREN_PREFIX[] = "TOVREN";

#define TOVREN_FAIL(text) MSG_INTERNAL_ERROR::report(text, TOVREN_PREFIX, __FILE__, __LINE__)
#define TOVREN_CHECK_TEXT(condition, text) ((condition) ? (void)0 : TOVREN_FAIL(text))
#define TOVREN_CHECK(condition)                                                                                        \
    ((condition) ? (void)0 : MSG_INTERNAL_ERROR::report(#condition, TOVREN_PREFIX, __FILE__, __LINE__))

// The one debug print: hands a message on to the host under the library's name.
int msg_vdebug_impl(MSG_D_LEVEL level, const char* format, ...) __attribute__((format(printf, 2, 3)));

#endif
