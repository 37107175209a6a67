// Texts for people.
#include "tool_text.h"

#include "host_text.h"

#include <algorithm>
#include <charconv>
#include <numeric>
#include <set>
#include <tuple>
#include <utility>

namespace {

constexpr unsigned long long KIBI = 1024;
constexpr unsigned long long MEBI = KIBI * KIBI;

constexpr size_t MOST_EDITS = 2;
constexpr size_t SHORTEST_BEGINNING = 3;
constexpr size_t MOST_NAMES = 5;

// In the largest unit that divides the value.
std::string scaled(unsigned long long value, const char* mebi, const char* kibi, const char* one) {
    if (value != 0 && value % MEBI == 0)
        return std::to_string(value / MEBI) + mebi;
    if (value != 0 && value % KIBI == 0)
        return std::to_string(value / KIBI) + kibi;
    return std::to_string(value) + one;
}

char hex_digit(unsigned int value) {
    return "0123456789ABCDEF"[value & 15];
}

} // namespace

std::string tool_bits_text(unsigned long long bits) {
    return scaled(bits, " Mbit", " Kbit", " bit");
}

std::string tool_bytes_text(unsigned long long bytes) {
    return scaled(bytes, " MiB", " KiB", " B");
}

std::string tool_seconds_text(unsigned int seconds) {
    return std::to_string(seconds) + " s";
}

std::string tool_microseconds_text(unsigned int microseconds) {
    if (microseconds < 1000)
        return std::to_string(microseconds) + " us";
    std::string text = std::to_string(microseconds / 1000);
    if (const unsigned int rest = microseconds % 1000; rest != 0) {
        text += '.' + std::to_string(1000 + rest).substr(1);
        text.erase(text.find_last_not_of('0') + 1);
    }
    return text + " ms";
}

std::string tool_hex_text(const unsigned char* bytes, size_t n) {
    std::string text;
    for (size_t i = 0; i < n; ++i) {
        text += hex_digit(bytes[i] >> 4U);
        text += hex_digit(bytes[i]);
    }
    return text;
}

std::string tool_count_text(size_t count, std::string_view noun) {
    return std::to_string(count) + ' ' + std::string(noun) + (count == 1 ? "" : "s");
}

std::string tool_join(const std::vector<std::string>& texts, std::string_view separator) {
    std::string joined;
    for (const std::string& text : texts) {
        if (&text != &texts.front())
            joined += separator;
        joined += text;
    }
    return joined;
}

namespace {

bool is_continuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

// The smallest character that needs a sequence of this length; anything below it is an overlong form.
unsigned int smallest_character(size_t length) {
    return length == 2 ? 0x80U : length == 3 ? 0x800U : 0x10000U;
}

// Bytes of the UTF-8 character that `text` begins with; 0 where it begins with none.
size_t utf8_length(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < 0x80U)
        return 1;
    const size_t length = first >= 0xF0U ? 4 : first >= 0xE0U ? 3 : 2;
    if (first < 0xC2U || first > 0xF4U || text.size() < length)
        return 0;
    unsigned int character = first & (0x7FU >> length);
    for (size_t i = 1; i < length; ++i) {
        if (!is_continuation(text[i]))
            return 0;
        character = character << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    const bool is_surrogate = character >= 0xD800U && character <= 0xDFFFU;
    return character < smallest_character(length) || character > 0x10FFFFU || is_surrogate ? 0 : length;
}

// C0, DEL, and C1, which UTF-8 writes as C2 80 to C2 9F.
bool is_control(std::string_view character) {
    const auto first = static_cast<unsigned char>(character[0]);
    return first < 0x20U || first == 0x7FU ||
           (first == 0xC2U && character.size() == 2 && static_cast<unsigned char>(character[1]) < 0xA0U);
}

} // namespace

std::string tool_printable(std::string_view text) {
    std::string printable;
    while (!text.empty()) {
        const size_t length = utf8_length(text);
        const std::string_view character = text.substr(0, std::max<size_t>(length, 1));
        if (length != 0 && !is_control(character)) {
            printable += character;
        } else {
            for (const char byte : character) {
                const auto value = static_cast<unsigned char>(byte);
                printable += "\\x" + tool_hex_text(&value, 1);
            }
        }
        text.remove_prefix(character.size());
    }
    return printable;
}

std::string tool_quoted(std::string_view text) {
    return '"' + tool_printable(text) + '"';
}

size_t tool_text_width(std::string_view text) {
    return text.size() - static_cast<size_t>(std::count_if(text.begin(), text.end(), is_continuation));
}

std::optional<unsigned int> tool_number(std::string_view text, unsigned int most) {
    unsigned int value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || rest != text.data() + text.size() || error != std::errc() || value > most)
        return std::nullopt;
    return value;
}

bool tool_equal_ignoring_case(const std::string& left, const std::string& right) {
    return gen_stricmp(left.c_str(), right.c_str()) == 0;
}

namespace {

// Levenshtein's distance, row by row of its table.
size_t edit_distance(const std::string& left, const std::string& right) {
    std::vector<size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 1; i <= left.size(); ++i) {
        size_t diagonal = std::exchange(row[0], i);
        for (size_t j = 1; j <= right.size(); ++j) {
            const size_t replaced = diagonal + (left[i - 1] == right[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row.back();
}

size_t shared_beginning(const std::string& left, const std::string& right) {
    const size_t shorter = std::min(left.size(), right.size());
    return static_cast<size_t>(
        std::mismatch(left.begin(), left.begin() + static_cast<std::ptrdiff_t>(shorter), right.begin()).first -
        left.begin());
}

std::string lower(std::string text) {
    stl_tolower(text);
    return text;
}

// How near a name is, nearest first; equal ones by name.
using RANKED = std::set<std::tuple<size_t, std::string, std::string>>; // rank, lower-case name, name

std::vector<std::string> first_names(const RANKED& ranked, size_t highest_rank) {
    std::vector<std::string> names;
    std::string previous;
    for (const auto& [rank, key, name] : ranked) {
        if (rank > highest_rank || names.size() == MOST_NAMES)
            break;
        if (names.empty() || key != previous)
            names.push_back(name);
        previous = key;
    }
    return names;
}

} // namespace

std::vector<std::string> tool_nearest_names(const std::string& name, const std::vector<std::string>& names) {
    const std::string wanted = lower(name);
    RANKED by_edits;
    RANKED by_beginning;
    for (const std::string& known : names) {
        const std::string key = lower(known);
        const bool is_near = std::max(key.size(), wanted.size()) - std::min(key.size(), wanted.size()) <= MOST_EDITS;
        if (const size_t edits = is_near ? edit_distance(wanted, key) : MOST_EDITS + 1; edits <= MOST_EDITS)
            by_edits.emplace(edits, key, known);
        if (const size_t shared = shared_beginning(wanted, key); shared >= SHORTEST_BEGINNING)
            by_beginning.emplace(wanted.size() - shared, key, known);
    }
    if (!by_edits.empty())
        return first_names(by_edits, MOST_EDITS);
    return by_beginning.empty() ? std::vector<std::string>()
                                : first_names(by_beginning, std::get<0>(*by_beginning.begin()));
}

std::string tool_did_you_mean(const std::vector<std::string>& names) {
    if (names.empty())
        return "";
    std::string text = "Did you mean ";
    for (size_t i = 0; i < names.size(); ++i)
        text += (i == 0 ? "" : i + 1 == names.size() ? " or " : ", ") + tool_printable(names[i]);
    return text + '?';
}
