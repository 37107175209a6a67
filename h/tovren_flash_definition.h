// What a flash of the user's own is made of: the question behind each field of a definition, the rules that a stored
// definition must obey, and the outcome of checking one (docs/formats/flash_definition.md).
#ifndef TOVREN_FLASH_DEFINITION_H
#define TOVREN_FLASH_DEFINITION_H

#include "tovren_flash_info.h"
#include "tovren_types.h"

#include <string>
#include <vector>

// How an answer is read and what the definition holds for it.
enum TOVREN_FLASH_PROMPT_TYPE : BYTE {
    TOVREN_FLASH_PROMPT_FIXED,   // not asked: always the same text
    TOVREN_FLASH_PROMPT_DERIVED, // not asked: follows from other fields
    TOVREN_FLASH_PROMPT_NAME,    // a text, its length within the limits; held in upper case
    TOVREN_FLASH_PROMPT_YES_NO,  // Y or N; held as 1 or 0
    TOVREN_FLASH_PROMPT_HEX,     // a hexadecimal number without 0x; held in decimal, low byte only
    TOVREN_FLASH_PROMPT_BIT,     // a hexadecimal bit position; held as the one-bit mask, 0 for none
    TOVREN_FLASH_PROMPT_DEC,     // a decimal number (hexadecimal behind 0x); held multiplied by `unit`
    TOVREN_FLASH_PROMPT_TYPE_MAX,
};

// The question behind one field. An answer is one word; its letter case does not count.
struct TOVREN_FLASH_PROMPT {
    const char* member;   // of TOVREN_SFL_FLASH_INFO
    const char* question; // as the dialogue prints it; null where nothing is asked
    TOVREN_FLASH_PROMPT_TYPE type;
    DWORD least;       // smallest number, or shortest name in characters
    DWORD most;        // largest number, or longest name
    bool has_none;     // "-1" is accepted besides and stands for none
    bool power_of_two; // only powers of two are accepted
    DWORD unit;        // of TOVREN_FLASH_PROMPT_DEC: what an answer of 1 means in the member's unit
    const char* fixed; // of TOVREN_FLASH_PROMPT_FIXED: the text
};

// Whether an answer is accepted, and why not.
enum TOVREN_FLASH_ANSWER_ENUM : BYTE {
    TOVREN_FLASH_ANSWER_GOOD,
    TOVREN_FLASH_ANSWER_NOT_ASKED,       // the member has no question
    TOVREN_FLASH_ANSWER_BAD_LENGTH,      // a name shorter or longer than the limits
    TOVREN_FLASH_ANSWER_NOT_YES_OR_NO,   // neither Y nor N
    TOVREN_FLASH_ANSWER_NOT_A_NUMBER,    // empty, a sign, a character that is no digit
    TOVREN_FLASH_ANSWER_OUT_OF_RANGE,    // a number outside the limits
    TOVREN_FLASH_ANSWER_NO_POWER_OF_TWO, // a number within them
    TOVREN_FLASH_ANSWER_MAX,
};

// One rule that the record of a stored definition must obey.
struct TOVREN_FLASH_RULE {
    const char* text; // for people
    bool (*holds)(const TOVREN_SFL_FLASH_INFO& record);
};

// One entry of a definition list. An entry that is not of the form "definition#tag;" has neither of the two.
struct TOVREN_FLASH_INI_ENTRY {
    std::string text; // all of it, the closing ";" included where there is one
    std::string definition;
    std::string tag;
};

// Why a load leaves an entry out: the first reason in this order.
enum TOVREN_FLASH_INI_REFUSAL_ENUM : BYTE {
    TOVREN_FLASH_INI_ACCEPTED,
    TOVREN_FLASH_INI_MALFORMED,      // no definition or no tag
    TOVREN_FLASH_INI_MISSING_FIELD,  // fewer than 33 fields
    TOVREN_FLASH_INI_BAD_FIELD,      // a field is no flag or no number of its width
    TOVREN_FLASH_INI_INVALID_RECORD, // a rule does not hold
    TOVREN_FLASH_INI_WRONG_TAG,      // made under another version, or changed since
    TOVREN_FLASH_INI_NO_DEVICE_NAME, // all is well, but a record without a name has no effect
    TOVREN_FLASH_INI_REFUSAL_MAX,
};

// Everything that a load finds out about an entry.
struct TOVREN_FLASH_INI_CHECK {
    TOVREN_FLASH_INI_REFUSAL_ENUM refusal = TOVREN_FLASH_INI_MALFORMED;
    std::vector<std::string> fields;  // those that could be read, 33 at most, in record order
    unsigned int converted_count = 0; // how many of them, from the first on, fit their member
    bool is_tag_right = false;        // for this definition under the running version
    TOVREN_SFL_FLASH_INFO record;     // of 33 converted fields; empty otherwise
};

#endif
