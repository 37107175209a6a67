// Completion of a command line that is being typed: `tovren __complete [--quoted] -- WORD...`, which the scripts under
// completions/ call. Help does not show it.
//
// The words are those behind `tovren`; the last is the one to complete, and may be empty. With --quoted they are as
// typed in a shell like bash, quotes and all; without it they are plain.
//
// The answer's first line says what may stand there:
//     words           one of the lines that follow: the whole word, a tab, and a description, which may be empty
//     files BEFORE    a file, behind the text BEFORE of the word ("--settings="), which may be empty
//     folders BEFORE  a folder, likewise
// A word that ends in "=" is to be gone on with.
//
// Whatever is wrong with the line, the settings or the databases makes fewer words, never a message: nothing goes to
// standard error, and the exit code is 0.
#ifndef TOOL_COMPLETE_H
#define TOOL_COMPLETE_H

class TOOL_COMMAND_LINE;

// Whether the arguments ask for a completion.
bool tool_is_completion(int argc, const char* const* argv);

// Answers it. Returns the exit code.
int tool_complete(const TOOL_COMMAND_LINE& line, int argc, const char* const* argv);

#endif
