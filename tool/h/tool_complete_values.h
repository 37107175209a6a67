// What may stand for a value: names of the loaded tables, words of a verb's own, files.
#ifndef TOOL_COMPLETE_VALUES_H
#define TOOL_COMPLETE_VALUES_H

#include "tool_complete_place.h"

struct TOOL_COMPLETION_VALUES {
    enum class KIND : unsigned char { WORDS, FILES, FOLDERS };

    KIND kind = KIND::WORDS;
    std::vector<TOOL_CANDIDATE> words; // whatever was typed
    std::string before;                // with files and folders: the part of `typed` that is decided, "NAME="
};

// Throws where the tables cannot be loaded.
TOOL_COMPLETION_VALUES tool_completion_values(const TOOL_COMPLETION_PLACE& place);

#endif
