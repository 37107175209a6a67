// The 33 members of a flash definition, filled from what a chip tells of itself (docs/howto/define_a_flash.md).
//
// A member that is asked for comes, the first of these that has it: from what a person gives, from the parameter table
// (SFDP), from the identification, from a record of the same series, from a convention. A value outside the limits of
// its question is a fault, never bent and never replaced by the next source.
#ifndef TOOL_SFDP_DEFINITION_H
#define TOOL_SFDP_DEFINITION_H

#include "sfdp.h"
#include "tool_flash_series.h"
#include "tovren_flash_definition.h"

#include <map>
#include <span>
#include <string>
#include <vector>

enum class TOOL_MEMBER_SOURCE : unsigned char {
    MISSING,
    GIVEN,          // by --member
    TABLE,          // the chip's parameter table
    IDENTIFICATION, // a byte of it
    RECORD,         // of the same series
    CONSTANT,       // a definition holds nothing else, or the place that the standard gives a byte
    DENSITY,        // follows from device_bit_size
};

// How sure a value is.
enum class TOOL_SURENESS : unsigned char {
    NONE,     // there is no value
    GIVEN,    // by the person
    COMPARED, // read from a field whose reading was compared with other decoders
    KNOWN,    // read from a field, or reckoned with one, whose reading is known from the standard only
    GUESS,    // true of another chip of the series
    FIXED,
};

struct TOOL_SFDP_MEMBER {
    const TOVREN_FLASH_PROMPT* prompt = nullptr;
    TOOL_MEMBER_SOURCE source = TOOL_MEMBER_SOURCE::MISSING;
    TOOL_SURENESS sureness = TOOL_SURENESS::NONE;
    std::string field;                             // as the definition holds it; empty without a value
    const TOVREN_SFL_FLASH_INFO* record = nullptr; // of TOOL_MEMBER_SOURCE::RECORD
    std::string note;                              // for people
    std::string fault;                             // why there is no value
};

struct TOOL_SFDP_SOURCES {
    const SFDP_TABLE& table;
    std::span<const unsigned char> id;               // three bytes at least
    const std::map<std::string, std::string>& given; // by member, as typed
    const TOOL_FLASH_SIBLINGS& siblings;
    unsigned long long bits; // density: as given, else of the table
};

// 33 members in record order.
std::vector<TOOL_SFDP_MEMBER> tool_fill_definition(const TOOL_SFDP_SOURCES& sources);

// The one of that name.
const TOOL_SFDP_MEMBER& tool_sfdp_member(const std::vector<TOOL_SFDP_MEMBER>& members, const char* name);

// The number that a member's field holds; none without a value.
std::optional<DWORD> tool_sfdp_number(const TOOL_SFDP_MEMBER& member);

const char* tool_source_text(TOOL_MEMBER_SOURCE source); // "table"; empty for MISSING
const char* tool_sureness_text(TOOL_SURENESS sureness);  // "compared"; empty for NONE

#endif
