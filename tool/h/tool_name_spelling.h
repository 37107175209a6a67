// Names in a spelling that a table does not use: another maker's dashes and blanks, a letter for a digit, package and
// grade behind the name.
#ifndef TOOL_NAME_SPELLING_H
#define TOOL_NAME_SPELLING_H

#include <string>
#include <vector>

struct TOOL_SPELLING {
    enum class KIND : unsigned char {
        SEPARATORS,  // "MX 25L-25645G" for MX25L25645G
        LOOK_ALIKES, // the same, and "W25QI28JV" for W25Q128JV
        SUFFIX,      // "W25Q128JVSIQ" for W25Q128JV
    };

    KIND kind;
    std::string meant;  // as the table spells it
    std::string suffix; // of SUFFIX: what stands behind the name, as it was typed
    bool is_open;       // of SUFFIX: other names go on from this one, so the suffix may be that of an unknown name

    // What `name` does otherwise: "it differs only by blanks and \"-\"".
    std::string mistake(const std::string& name) const;
};

// Every different name of the table that `name` means, in table order; empty where there is none, and for a name that
// the table has. Letter case does not count. The first kind that fits is taken. A suffix stands behind the longest name
// that the text begins with, has two characters or more, and does not go on a number.
std::vector<TOOL_SPELLING> tool_spellings(const std::string& name, const std::vector<std::string>& names);

#endif
