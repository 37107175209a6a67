// One run of a command: sets up the host as the global options say, runs the verb, turns what goes wrong into a message
// and an exit code.
#ifndef TOOL_RUN_H
#define TOOL_RUN_H

class TOOL_COMMAND_LINE;

using TOOL_ADD_GROUPS = void (*)(TOOL_COMMAND_LINE& line);

// Returns the exit code. Nothing is thrown.
int tool_run(int argc, char** argv, TOOL_ADD_GROUPS add_groups);

#endif
