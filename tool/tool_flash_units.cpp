// Units of the questions, and others that figures are given in.
#include "tool_flash_units.h"

#include "host_text.h"
#include "tool_flash_definition_file.h"
#include "tool_text.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

// One of the unit is `numerator` / `denominator` of the question's.
struct UNIT {
    const char* member;
    const char* name;
    unsigned long long numerator;
    unsigned long long denominator;
    bool is_exact; // a size; a time is rounded up
};

// Beside the question's own unit, which is the first of each member.
constexpr UNIT UNIT_LIST[] = {
    {"device_bit_size", "Mbit", 1, 1, true},
    {"device_bit_size", "bit", 1, 1 << 20, true},
    {"device_bit_size", "byte", 1, 1 << 17, true},
    {"device_bit_size", "Kbit", 1, 1 << 10, true},
    {"device_bit_size", "Gbit", 1 << 10, 1, true},
    {"device_bit_size", "MiB", 8, 1, true},
    {"device_sector_byte", "KiB", 1, 1, true},
    {"device_sector_byte", "byte", 1, 1 << 10, true},
    {"device_sector_byte", "MiB", 1 << 10, 1, true},
    {"bulk_erase_time", "s", 1, 1, false},
    {"bulk_erase_time", "ms", 1, 1000, false},
    {"bulk_erase_time", "us", 1, 1000000, false},
    {"sec_erase_time", "s", 1, 1, false},
    {"sec_erase_time", "ms", 1, 1000, false},
    {"sec_erase_time", "us", 1, 1000000, false},
    {"program_utime", "us", 1, 1, false},
    {"program_utime", "ms", 1000, 1, false},
    {"program_utime", "s", 1000000, 1, false},
};

struct SPELLING {
    const char* spelling; // in lower case
    const char* name;
};

constexpr SPELLING SPELLING_LIST[] = {
    {"mb", "MiB"}, {"mbyte", "MiB"}, {"m", "Mbit"},  {"g", "Gbit"},     {"k", "KiB"},
    {"kb", "KiB"}, {"kbyte", "KiB"}, {"b", "byte"},  {"bytes", "byte"}, {"bits", "bit"},
    {"sec", "s"},  {"seconds", "s"}, {"msec", "ms"}, {"usec", "us"},
};

constexpr size_t MOST_DIGITS = 12;

bool is_good(const TOVREN_FLASH_PROMPT& prompt, const std::string& answer) {
    std::string field;
    return tool_flash_answer_fault(prompt, answer, field).empty();
}

// The answer that a figure in a unit is; empty for none.
std::string answer_in(const TOVREN_FLASH_PROMPT& prompt, const UNIT& unit, unsigned long long figure) {
    const unsigned long long scaled = figure * unit.numerator;
    if (std::strcmp(unit.member, prompt.member) != 0)
        return "";
    // A size is whole; a time that is nowhere near one of the question's unit was not meant.
    if (unit.is_exact ? scaled % unit.denominator != 0 : scaled * 10 < unit.denominator)
        return "";
    std::string answer = std::to_string((scaled + unit.denominator - 1) / unit.denominator);
    return is_good(prompt, answer) ? answer : "";
}

std::string unit_name(std::string word) {
    stl_tolower(word);
    for (const SPELLING& spelling : SPELLING_LIST)
        if (word == spelling.spelling)
            return spelling.name;
    return word;
}

// "would be 300": the unit is named in the text.
std::string in_named_unit(const TOVREN_FLASH_PROMPT& prompt, unsigned long long figure, const std::string& word) {
    for (const UNIT& unit : UNIT_LIST)
        if (tool_equal_ignoring_case(unit.name, unit_name(word)))
            if (const std::string answer = answer_in(prompt, unit, figure); !answer.empty())
                return std::to_string(figure) + ' ' + unit.name + " is typed " + answer;
    return "";
}

std::string in_other_units(const TOVREN_FLASH_PROMPT& prompt, unsigned long long figure) {
    std::vector<std::string> meanings;
    for (const UNIT& unit : UNIT_LIST)
        if (const std::string answer = answer_in(prompt, unit, figure); !answer.empty())
            meanings.push_back(std::to_string(figure) + ' ' + unit.name + " would be " + answer);
    return tool_join(meanings, ", ");
}

} // namespace

std::string tool_flash_unit_hint(const TOVREN_FLASH_PROMPT& prompt, const std::string& text) {
    const bool is_hexadecimal = prompt.type == TOVREN_FLASH_PROMPT_HEX || prompt.type == TOVREN_FLASH_PROMPT_BIT;
    if (is_hexadecimal && (text.starts_with("0x") || text.starts_with("0X")) && is_good(prompt, text.substr(2)))
        return "it is typed without 0x: " + text.substr(2);
    const size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
    if (prompt.type != TOVREN_FLASH_PROMPT_DEC || end == 0 || end > MOST_DIGITS)
        return "";
    const unsigned long long figure = gen_local_strtoQWORD(text.c_str(), nullptr, 10);
    const size_t word = text.find_first_not_of(' ', end);
    return word == std::string::npos ? in_other_units(prompt, figure)
                                     : in_named_unit(prompt, figure, text.substr(word));
}
