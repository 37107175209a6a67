// What does not fit together: a chip's parameter table (SFDP), its identification, what a person gives, and what the
// database knows of the maker.
#ifndef TOOL_SFDP_CHECK_H
#define TOOL_SFDP_CHECK_H

#include "tool_sfdp_definition.h"

#include <optional>
#include <string>
#include <vector>

struct TOOL_SFDP_CONTRADICTION {
    const char* kind; // one word
    std::string text;
    bool is_stopping = false; // no definition is made
    std::string next = {};    // what decides it
};

// Neither table nor identification is proof of a density: where they differ, only a given density makes a definition.
// All else is told, and does not stop: what it leaves in doubt is asked for as a member, or the person's to judge.
// `records` are all that the database shows.
std::vector<TOOL_SFDP_CONTRADICTION> tool_sfdp_contradictions(const TOOL_SFDP_SOURCES& sources,
                                                              const std::vector<TOOL_SFDP_MEMBER>& members,
                                                              const TOOL_FLASH_RECORDS& records);

// The density that a capacity byte stands for, in bits; none for a byte that follows no common code. 10h to 1Fh are two
// to the power of the byte, in bytes; 20h to 22h go on behind 19h; one maker counts 30h to 3Fh like 10h to 1Fh.
std::optional<std::uint64_t> tool_capacity_bits(unsigned char manufacturer, unsigned char capacity);

#endif
