// Identifications as a person types them.
#include "tool_flash_id.h"

#include "host_text.h"
#include "tool_error.h"
#include "tool_text.h"

#include <algorithm>
#include <iostream>

namespace {

constexpr size_t MOST_BYTES = 256; // reaches every index that a record can hold
constexpr size_t LEAST_BYTES = 3;
constexpr char COMMAND[] = "flash identify";
constexpr char STANDARD_INPUT[] = "-";

// What is wrong with an identification, and what to do about it.
struct ID_FAULT {
    std::string fault = {};
    std::vector<std::string> details = {};
};

int digit_value(char digit) {
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    const char letter = static_cast<char>(digit | 0x20);
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

// Appends the bytes of one group of digits. Returns what is wrong with it, empty for nothing.
std::string add_group(std::string_view group, std::vector<unsigned char>& bytes) {
    if (group.substr(0, 2) == "0x" || group.substr(0, 2) == "0X")
        group.remove_prefix(2);
    if (group.empty())
        return "a byte is missing";
    const auto* const bad = std::find_if(group.begin(), group.end(), [](char c) { return digit_value(c) < 0; });
    if (bad != group.end())
        return tool_quoted(std::string_view(bad, 1)) + " is not a hexadecimal digit";
    if (group.size() % 2 != 0)
        return tool_quoted(group) + " is an odd number of digits; a byte has two";
    for (size_t i = 0; i < group.size(); i += 2)
        bytes.push_back(static_cast<unsigned char>(digit_value(group[i]) * 16 + digit_value(group[i + 1])));
    return "";
}

// An empty fault where the bytes are good.
ID_FAULT read_bytes(const std::string& text, bool is_silicon_id, std::vector<unsigned char>& bytes) {
    std::vector<std::string> groups;
    gen_tokenize(text, " \t\r\n,:", groups);
    if (groups.empty())
        return {"there are no digits"};
    for (const std::string& group : groups)
        if (const std::string fault = add_group(group, bytes); !fault.empty())
            return {fault};
    const std::string count = tool_count_text(bytes.size(), "byte");
    if (!is_silicon_id && bytes.size() < LEAST_BYTES)
        return {"a device ID has at least three bytes, this is " + count,
                {"Bytes with blanks between go in quotes (\"20 BA 18\")"}};
    if (bytes.size() > MOST_BYTES)
        return {"at most 256 bytes are taken, this is " + count};
    return {};
}

TOOL_FLASH_ID read_id(const std::string& text, const std::string& place, bool is_silicon_id) {
    TOOL_FLASH_ID id;
    ID_FAULT fault = read_bytes(text, is_silicon_id, id.bytes);
    if (!fault.details.empty())
        fault.details.back() += "; for a silicon ID add --silicon-id.";
    if (!fault.fault.empty())
        throw tool_usage_error(COMMAND, place + ", " + tool_quoted(text) + ": " + fault.fault,
                               std::move(fault.details));
    return id;
}

void read_standard_input(std::vector<TOOL_FLASH_ID>& ids, bool is_silicon_id) {
    std::string line;
    for (unsigned int number = 1; std::getline(std::cin, line); ++number) {
        line.erase(std::min(line.find('#'), line.size()));
        gen_remove_leading_and_trailing_white_spaces(line);
        if (!line.empty())
            ids.push_back(read_id(line, "standard input, line " + std::to_string(number), is_silicon_id));
    }
}

} // namespace

std::string TOOL_FLASH_ID::text() const {
    return tool_hex_text(bytes.data(), bytes.size());
}

TOOL_FLASH_ID tool_read_flash_id(const std::string& text, const std::string& command, const std::string& option) {
    TOOL_FLASH_ID id;
    ID_FAULT fault = read_bytes(text, false, id.bytes);
    if (!fault.details.empty())
        fault.details.back() += '.';
    if (!fault.fault.empty())
        throw tool_usage_error(command, option + ", " + tool_quoted(text) + ": " + fault.fault,
                               std::move(fault.details));
    return id;
}

std::vector<TOOL_FLASH_ID> tool_read_flash_ids(const std::vector<std::string>& arguments, bool is_silicon_id) {
    if (std::count(arguments.begin(), arguments.end(), STANDARD_INPUT) > 1)
        throw tool_usage_error(COMMAND, "standard input (-) can be read once only");
    std::vector<TOOL_FLASH_ID> ids;
    for (size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == STANDARD_INPUT)
            read_standard_input(ids, is_silicon_id);
        else
            ids.push_back(read_id(arguments[i], "argument " + std::to_string(i + 1), is_silicon_id));
    }
    if (ids.empty())
        throw tool_usage_error(COMMAND, "no identification on standard input");
    return ids;
}
