// Flash definitions from JSON, all faults in one run.
#include "tool_flash_definition_file.h"

#include "tool_error.h"
#include "tool_file.h"
#include "tool_text.h"
#include "tovren_flash_ini.h"
#include "tovren_flash_manager.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>

namespace {

using nlohmann::ordered_json;
using FIELDS = std::array<std::string, TOTAL_DATABASE_MEMBER>;

constexpr size_t MOST_FLASHES = 3;
constexpr double LARGEST_WHOLE = 9007199254740992.0; // up to here a double holds each whole number

// ---- one answer ----

std::string quoted_question(const TOVREN_FLASH_PROMPT& prompt) {
    return " (" + tool_flash_question(prompt) + ')';
}

const char* reason_of(TOVREN_FLASH_ANSWER_ENUM outcome) {
    switch (outcome) {
    case TOVREN_FLASH_ANSWER_BAD_LENGTH:
        return "is empty or too long; 1 to 19 characters are accepted";
    case TOVREN_FLASH_ANSWER_NOT_YES_OR_NO:
        return "is neither Y nor N";
    case TOVREN_FLASH_ANSWER_NOT_A_NUMBER:
        return "is no number";
    case TOVREN_FLASH_ANSWER_OUT_OF_RANGE:
        return "is out of range";
    case TOVREN_FLASH_ANSWER_NO_POWER_OF_TWO:
        return "is no power of two";
    default:
        return "is refused";
    }
}

bool is_hexadecimal(const TOVREN_FLASH_PROMPT& prompt) {
    return prompt.type == TOVREN_FLASH_PROMPT_HEX || prompt.type == TOVREN_FLASH_PROMPT_BIT;
}

bool is_number(const TOVREN_FLASH_PROMPT& prompt) {
    return is_hexadecimal(prompt) || prompt.type == TOVREN_FLASH_PROMPT_DEC;
}

// The answer that types a number, and an empty reason; or why there is none.
std::string answer_with(const TOVREN_FLASH_PROMPT& prompt, long long number, std::string& answer) {
    if (!is_number(prompt))
        return prompt.type == TOVREN_FLASH_PROMPT_YES_NO ? "is a number; true or false is wanted"
                                                         : "is a number; a text is wanted";
    const bool is_none = prompt.has_none && number == -1;
    if (!is_none && (number < 0 || number > INVALID_DWORD))
        return reason_of(TOVREN_FLASH_ANSWER_OUT_OF_RANGE);
    if (is_hexadecimal(prompt) && !is_none)
        answer = TOVREN_FLASH_INI::convert_dword_to_hex_string(static_cast<DWORD>(number), 8, false);
    else
        answer = std::to_string(number);
    return "";
}

std::string answer_with(const TOVREN_FLASH_PROMPT& prompt, const std::string& text, std::string& answer) {
    constexpr std::string_view NOT_TYPED(" \t\r\n\f\v\0", 7);
    if (text.find_first_of(NOT_TYPED) != std::string::npos)
        return "has white space in it; an answer is one word";
    answer = text;
    return prompt.question ? "" : reason_of(TOVREN_FLASH_ANSWER_NOT_ASKED);
}

std::string answer_of(const TOVREN_FLASH_PROMPT& prompt, const ordered_json& value, std::string& answer) {
    if (value.is_string())
        return answer_with(prompt, value.get_ref<const std::string&>(), answer);
    if (value.is_boolean()) {
        answer = value.get<bool>() ? "Y" : "N";
        return prompt.type == TOVREN_FLASH_PROMPT_YES_NO ? "" : "is a flag; a text or a number is wanted";
    }
    if (value.is_number_unsigned() && value.get<unsigned long long>() > INVALID_DWORD)
        return answer_with(prompt, 1LL + INVALID_DWORD, answer);
    if (value.is_number_integer())
        return answer_with(prompt, value.get<long long>(), answer);
    if (!value.is_number_float())
        return "is neither a text, a number nor a flag";
    const double number = value.get<double>();
    if (is_number(prompt) && number != std::floor(number))
        return "is no whole number";
    if (std::abs(number) > LARGEST_WHOLE)
        return answer_with(prompt, 1LL + INVALID_DWORD, answer);
    return answer_with(prompt, static_cast<long long>(number), answer);
}

std::string fault_of(const TOVREN_FLASH_PROMPT& prompt, const std::string& answer, std::string& field) {
    const auto outcome = TOVREN_FLASH_MANAGER::check_flash_answer(prompt, answer, field);
    return outcome == TOVREN_FLASH_ANSWER_GOOD ? "" : reason_of(outcome);
}

std::string shown(const ordered_json& value) {
    if (value.is_structured())
        return value.is_object() ? "an object" : "an array";
    return tool_printable(value.dump(-1, ' ', false, ordered_json::error_handler_t::replace));
}

// ---- one flash ----

class FLASH_READER {
public:
    FLASH_READER(unsigned int number, TOOL_DEFINITION_FILE& result) : m_number(number), m_result(result) {}

    void read(const ordered_json& flash);

private:
    void complain(const std::string& member, const std::string& reason) {
        m_result.faults.push_back({m_number, member, reason});
        m_is_good = false;
    }
    void find_strangers(const ordered_json& flash);
    void read_member(const TOVREN_FLASH_PROMPT& prompt, const ordered_json& flash, std::string& field);
    void make_definition();

    unsigned int m_number;
    TOOL_DEFINITION_FILE& m_result;
    FIELDS m_fields;
    bool m_is_good = true;
};

// Keys that name no member that is asked for.
void FLASH_READER::find_strangers(const ordered_json& flash) {
    for (const auto& [key, value] : flash.items())
        if (const std::string fault = tool_flash_member_fault(key); !fault.empty())
            complain(key, fault);
}

void FLASH_READER::read_member(const TOVREN_FLASH_PROMPT& prompt, const ordered_json& flash, std::string& field) {
    const auto place = flash.find(prompt.member);
    if (place == flash.end())
        return complain(prompt.member, "it is missing" + quoted_question(prompt));
    std::string answer;
    std::string reason = answer_of(prompt, *place, answer);
    if (reason.empty())
        reason = fault_of(prompt, answer, field);
    if (!reason.empty())
        complain(prompt.member, shown(*place) + ' ' + reason + quoted_question(prompt));
}

// The places of the three bytes are compared where all three are known, whatever else is wrong.
void FLASH_READER::make_definition() {
    const auto prompts = TOVREN_FLASH_MANAGER::get_flash_prompts();
    bool has_all_indexes = true;
    for (size_t i = 0; i < m_fields.size(); ++i)
        has_all_indexes =
            has_all_indexes && !(std::string_view(prompts[i].member).ends_with("_index") && m_fields[i].empty());
    std::string definition;
    if (has_all_indexes && !TOVREN_FLASH_MANAGER::gen_flash_definition(m_fields, definition))
        complain("memory_id_index, memory_type_index, mfc_id_index",
                 "Memory ID, Memory Type and Manufacturer ID index cannot be at the same location");
    if (m_is_good)
        m_result.definitions.push_back(definition);
}

void FLASH_READER::read(const ordered_json& flash) {
    if (!flash.is_object())
        return complain("", "it is no object");
    find_strangers(flash);
    const auto prompts = TOVREN_FLASH_MANAGER::get_flash_prompts();
    for (size_t i = 0; i < m_fields.size(); ++i)
        if (prompts[i].question)
            read_member(prompts[i], flash, m_fields[i]);
    make_definition();
}

// ---- the file ----

constexpr size_t LARGEST_DEFINITION_FILE = 1 << 20; // bytes

std::string file_text(const std::string& file) {
    if (file == "-")
        return tool_read_all(std::cin, "standard input", LARGEST_DEFINITION_FILE);
    if (const std::string fault = tool_reading_fault(file); !fault.empty())
        throw TOOL_ERROR(TOOL_EXIT_REFUSED, tool_printable(file) + ": " + fault,
                         {"next: name the file that holds the definition, or - for standard input"});
    std::ifstream input(file, std::ios::in | std::ios::binary);
    return tool_read_all(input, tool_printable(file), LARGEST_DEFINITION_FILE);
}

// Finds a key that an object has twice, of which the reader would take the last without a word, and keeps out what is
// nested more deeply than any definition: copies of a document are made by recursion.
class KEY_WATCH {
public:
    explicit KEY_WATCH(TOOL_DEFINITION_FILE& result) : m_result(result) {}

    bool operator()(int depth, ordered_json::parse_event_t event, const ordered_json& parsed) {
        using EVENT = ordered_json::parse_event_t;
        if (depth > DEEPEST)
            return false;
        if (event == EVENT::object_start)
            m_keys.emplace_back();
        if (event == EVENT::key)
            take(parsed.get<std::string>());
        if (event == EVENT::object_end)
            m_keys.pop_back();
        const bool is_end = event == EVENT::value || event == EVENT::array_end || event == EVENT::object_end;
        m_flash += is_end && depth == 1 && m_keys.empty() ? 1 : 0;
        return true;
    }

private:
    static constexpr int DEEPEST = 2; // a member of a flash in an array

    void take(const std::string& key) {
        if (!m_keys.back().insert(key).second && m_keys.size() == 1)
            m_result.faults.push_back({m_flash, key, "it is given twice"});
    }

    TOOL_DEFINITION_FILE& m_result;
    std::vector<std::set<std::string>> m_keys; // of the objects around
    unsigned int m_flash = 1;
};

// "[json.exception.parse_error.101] parse error at line 3, column 5: ..." without what is in brackets.
std::string syntax_fault(const nlohmann::json::exception& error) {
    const std::string text = error.what();
    return "it is no JSON: " + tool_printable(text.substr(std::min(text.size(), text.find("] ") + 2)));
}

void read_flashes(const ordered_json& document, TOOL_DEFINITION_FILE& result) {
    const ordered_json flashes = document.is_array() ? document : ordered_json::array({document});
    if (flashes.empty() || flashes.size() > MOST_FLASHES)
        result.faults.push_back({0, "", "it defines " + std::to_string(flashes.size()) + " flashes; 1 to 3 can be"});
    unsigned int number = 0;
    for (const ordered_json& flash : flashes)
        FLASH_READER(++number, result).read(flash);
}

} // namespace

std::string tool_flash_question(const TOVREN_FLASH_PROMPT& prompt) {
    const std::string question = prompt.question;
    return question.substr(0, question.rfind(" :"));
}

std::string tool_flash_answer_fault(const TOVREN_FLASH_PROMPT& prompt, const std::string& text, std::string& field) {
    std::string answer;
    const std::string fault = answer_with(prompt, text, answer);
    return fault.empty() ? fault_of(prompt, answer, field) : fault;
}

std::string tool_flash_member_fault(const std::string& member) {
    const auto prompts = TOVREN_FLASH_MANAGER::get_flash_prompts();
    const auto known = std::find_if(prompts.begin(), prompts.end(),
                                    [&member](const TOVREN_FLASH_PROMPT& prompt) { return member == prompt.member; });
    if (known != prompts.end() && known->question)
        return "";
    if (known != prompts.end())
        return known->fixed ? "it is not asked for; it is always " + std::string(known->fixed)
                            : "it is not asked for; it follows from device_bit_size";
    std::vector<std::string> asked;
    for (const TOVREN_FLASH_PROMPT& prompt : prompts)
        if (prompt.question)
            asked.emplace_back(prompt.member);
    const std::string guess = tool_did_you_mean(tool_nearest_names(member, asked));
    return "there is no such member" + (guess.empty() ? "" : ". " + guess);
}

std::string TOOL_DEFINITION_FAULT::text() const {
    std::string text = flash == 0 ? "" : "flash " + std::to_string(flash) + ": ";
    if (!member.empty())
        text += tool_printable(member) + ": ";
    return text + reason;
}

TOOL_DEFINITION_FILE tool_read_definitions(const std::string& file) {
    TOOL_DEFINITION_FILE result;
    const std::string text = file_text(file);
    try {
        auto watch = std::make_shared<KEY_WATCH>(result);
        const auto document =
            ordered_json::parse(text, [watch](int depth, ordered_json::parse_event_t event, ordered_json& parsed) {
                return (*watch)(depth, event, parsed);
            });
        read_flashes(document, result);
    } catch (const nlohmann::json::exception& error) {
        result.faults = {{0, "", syntax_fault(error)}};
    }
    if (!result.faults.empty())
        result.definitions.clear();
    return result;
}
