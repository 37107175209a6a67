// Text helpers, byte by byte and without a locale.
#include "host_text.h"

#include <array>
#include <charconv>
#include <climits>
#include <cstring>
#include <system_error>

namespace {

constexpr char WHITE_SPACE[] = " \t\r\n\f\v";

constexpr char to_lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}
constexpr char to_upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

bool is_white_space(char c) {
    return c != '\0' && std::strchr(WHITE_SPACE, c) != nullptr;
}

// What a character means to the tokenizer.
enum class ROLE : unsigned char { WORD, WHITE, HARD };

// The role of every byte under one set of separators.
class ROLE_TABLE {
public:
    explicit ROLE_TABLE(const char* separators) {
        for (; *separators != '\0'; ++separators)
            m_roles[static_cast<unsigned char>(*separators)] = is_white_space(*separators) ? ROLE::WHITE : ROLE::HARD;
    }

    // The first place at or after `place` whose byte has another role.
    const char* skip(const char* place, const char* end, ROLE role) const {
        while (place != end && m_roles[static_cast<unsigned char>(*place)] == role)
            ++place;
        return place;
    }

private:
    std::array<ROLE, 256> m_roles = {}; // WORD
};

// Collects tokens into a vector that keeps its strings' storage.
class TOKEN_LIST {
public:
    explicit TOKEN_LIST(std::vector<std::string>& tokens) : m_tokens(tokens) {}
    ~TOKEN_LIST() { m_tokens.resize(m_count); }
    TOKEN_LIST(const TOKEN_LIST&) = delete;
    TOKEN_LIST& operator=(const TOKEN_LIST&) = delete;

    void add(const char* begin, const char* end) {
        if (m_count == m_tokens.size())
            m_tokens.emplace_back();
        m_tokens[m_count++].assign(begin, end);
    }

private:
    std::vector<std::string>& m_tokens;
    size_t m_count = 0;
};

} // namespace

int gen_stricmp(const char* left, const char* right) {
    while (*left != '\0' && to_lower(*left) == to_lower(*right)) {
        ++left;
        ++right;
    }
    return static_cast<unsigned char>(to_lower(*left)) - static_cast<unsigned char>(to_lower(*right));
}

void gen_remove_leading_and_trailing_white_spaces(std::string& text) {
    const size_t last = text.find_last_not_of(WHITE_SPACE);
    text.erase(last == std::string::npos ? 0 : last + 1);
    text.erase(0, text.find_first_not_of(WHITE_SPACE));
}

void stl_toupper(std::string& text) {
    for (char& c : text)
        c = to_upper(c);
}

void stl_tolower(std::string& text) {
    for (char& c : text)
        c = to_lower(c);
}

void gen_tokenize(const std::string& text, const char* separators, std::vector<std::string>& tokens) {
    const ROLE_TABLE roles(separators);
    TOKEN_LIST list(tokens);
    const char* place = text.data();
    const char* const end = place + text.size();
    bool is_owed = false; // a hard separator came last, so a token follows, be it empty

    while (true) {
        const char* const begin = roles.skip(place, end, ROLE::WHITE);
        const char* const word_end = roles.skip(begin, end, ROLE::WORD);
        place = roles.skip(word_end, end, ROLE::WHITE);
        const bool is_hard = place != end && roles.skip(place, place + 1, ROLE::HARD) != place;
        if (word_end != begin || is_hard || is_owed)
            list.add(begin, word_end);
        if (place == end)
            return;
        is_owed = is_hard;
        place += is_hard ? 1 : 0;
    }
}

unsigned long long gen_local_strtoQWORD(const char* text, const char** end, int radix) {
    unsigned long long value = 0;
    const auto [rest, error] = std::from_chars(text, text + std::strlen(text), value, radix);
    if (end)
        *end = rest;
    return error == std::errc::result_out_of_range ? ULLONG_MAX : value;
}

void gen_ascii_toupper(std::string& text) {
    for (char& c : text)
        c = to_upper(c);
}
