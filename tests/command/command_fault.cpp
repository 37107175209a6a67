// A command like tovren, whose verbs fail in ways that no input of the real one leads to.
#include "host_msg.h"
#include "tool_command_line.h"
#include "tool_run.h"

#include <stdexcept>

namespace {

void add_groups(TOOL_COMMAND_LINE& line) {
    TOOL_GROUP group = line.add_group("fault", "Ways to fail");
    group.add_verb("report", "By an internal error that is no file's", [](const TOOL_OUTPUT&) -> int {
        MSG_INTERNAL_ERROR::report("index < count", "TOVREN", "pgm/tovren/somewhere.cpp", 7);
    });
    group.add_verb("throw", "By an exception of the standard library",
                   [](const TOOL_OUTPUT&) -> int { throw std::length_error("far too long"); });
}

} // namespace

int main(int argc, char** argv) {
    return tool_run(argc, argv, add_groups);
}
