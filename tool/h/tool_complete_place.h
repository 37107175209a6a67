// Where a word that is being typed stands on the command line, found by walking the parser's tree of verbs and options:
// a verb or an option that is added there is known here.
#ifndef TOOL_COMPLETE_PLACE_H
#define TOOL_COMPLETE_PLACE_H

#include <optional>
#include <string>
#include <vector>

class TOOL_COMMAND_LINE;

// What may be typed, and what it is.
struct TOOL_CANDIDATE {
    std::string word;
    std::string description;
};

// The options for all verbs that have to do with what is known.
struct TOOL_COMPLETION_SETUP {
    std::optional<std::string> db_root;
    std::optional<std::string> settings;
    std::vector<std::string> set;
};

struct TOOL_COMPLETION_PLACE {
    std::string before; // the part of the word that is decided: "--by="
    std::string typed;  // the beginning of what is to be completed

    std::vector<TOOL_CANDIDATE> words; // the verbs or options that there are, whatever was typed; empty at a value

    std::string value;       // what is asked for at a value: "NAME", or the option, "--family"
    std::string placeholder; // of an option's value: "FILE"; of an argument the same as `value`

    std::string command;                // "flash show", as far as it came
    std::vector<std::string> arguments; // the verb's, ahead of this word
    TOOL_COMPLETION_SETUP setup;
};

// `words` are plain, the last is the one to complete.
TOOL_COMPLETION_PLACE tool_completion_place(const TOOL_COMMAND_LINE& line, const std::vector<std::string>& words);

// A word as it is typed in a shell: quotes and backslashes are taken away, as is an open quote; "~/" and names of
// variables are replaced by what the environment holds. Nothing is run.
std::string tool_unquoted(const std::string& typed);

#endif
