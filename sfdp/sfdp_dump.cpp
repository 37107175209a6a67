// The bytes of a dump for people, as xxd, xxd -p, hexdump, hexdump -C, od and od -t print it.
//
// The first line decides: one column is plain digits (xxd -p), an address with a colon is xxd, any other address is
// hexdump or od, no address is od -A n or bytes set by hand. The width of the columns is that of the words: 2, 4, 8 and
// 16 digits are hexadecimal, 3 and 6 octal. Words of several bytes are little-endian (hexdump, od) but for xxd, which
// prints bytes in their order; where the dump does not tell, the order in which the image begins with SFDP counts.
//
// An address is the number of bytes before it, counted from the first one. Its base is not written down: it is the one
// in which all of them fit.
#include "sfdp.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace {

using BYTES = std::vector<std::uint8_t>;
using TOKENS = std::vector<std::string_view>;

constexpr std::size_t BYTES_MOST = std::size_t{1} << 24; // an image has 24 address bits
constexpr std::size_t ADDRESS_DIGITS_LEAST = 6;
constexpr std::string_view BLANKS = " \t\r\f\v";

enum class LAYOUT {
    PLAIN,    // digits in the order of the bytes, no address
    WORDS,    // words, no address
    COLON,    // xxd: address, colon, bytes in their order, two blanks, text
    ADDRESSED // address, words, and a text behind '|' or '>'
};

struct FORM {
    LAYOUT layout = LAYOUT::PLAIN;
    std::size_t width = 2; // digits of a word
};

struct DUMP_LINE {
    std::size_t number = 0;
    bool is_repeat = false; // "*": the line before, up to the next address
    TOKENS tokens;
};

TOKENS tokens_of(std::string_view line) {
    TOKENS tokens;
    for (std::size_t begin = line.find_first_not_of(BLANKS); begin != std::string_view::npos;) {
        const std::size_t end = std::min(line.find_first_of(BLANKS, begin), line.size());
        tokens.push_back(line.substr(begin, end - begin));
        begin = line.find_first_not_of(BLANKS, end);
    }
    return tokens;
}

// The line without its column of text.
std::string_view without_text(std::string_view line) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || line.find_first_of("|>") < colon)
        return line.substr(0, line.find_first_of("|>"));
    const std::size_t words = line.find_first_not_of(BLANKS, colon + 1);
    return words == std::string_view::npos ? line : line.substr(0, line.find("  ", words));
}

std::vector<DUMP_LINE> lines_of(std::string_view text) {
    std::vector<DUMP_LINE> lines;
    for (std::size_t begin = 0, number = 1; begin < text.size(); ++number) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        DUMP_LINE line{number, false, tokens_of(without_text(text.substr(begin, end - begin)))};
        line.is_repeat = line.tokens.size() == 1 && line.tokens[0] == "*";
        if (!line.tokens.empty())
            lines.push_back(std::move(line));
        begin = end + 1;
    }
    return lines;
}

// `od -A x` prints addresses and octal words in six digits alike: its first address is 0.
bool is_address(std::string_view first, std::string_view second) {
    const bool is_zero = first.find_first_not_of('0') == std::string_view::npos;
    return first.size() >= ADDRESS_DIGITS_LEAST &&
           (first.size() != second.size() || (first.size() == ADDRESS_DIGITS_LEAST && is_zero));
}

FORM form_of(const TOKENS& tokens) {
    if (tokens[0].back() == ':')
        return {LAYOUT::COLON, 2};
    if (tokens.size() == 1)
        return {LAYOUT::PLAIN, 2};
    if (is_address(tokens[0], tokens[1]))
        return {LAYOUT::ADDRESSED, tokens[1].size()};
    return {tokens[0].size() == 2 ? LAYOUT::PLAIN : LAYOUT::WORDS, tokens[0].size()};
}

bool has_words(const FORM& form) {
    return form.layout == LAYOUT::WORDS || form.layout == LAYOUT::ADDRESSED;
}

bool has_address(const FORM& form) {
    return form.layout == LAYOUT::COLON || form.layout == LAYOUT::ADDRESSED;
}

bool is_octal(std::size_t width) {
    return width == 3 || width == 6;
}

std::size_t word_bytes(const FORM& form) {
    return is_octal(form.width) ? form.width / 3 : form.width / 2;
}

bool is_known_width(std::size_t width) {
    constexpr std::array<std::size_t, 6> WIDTHS = {2, 3, 4, 6, 8, 16};
    return std::count(WIDTHS.begin(), WIDTHS.end(), width) == 1;
}

std::optional<std::uint64_t> number_of(std::string_view digits, int base) {
    std::uint64_t value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, base);
    return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

std::string quoted(std::string_view token) {
    return '"' + std::string(token) + '"';
}

// One reading of a dump: the base of its addresses and the order of the bytes in its words are given.
class DUMP_READING {
public:
    DUMP_READING(const FORM& form, int base, bool is_little_endian)
        : m_form(form), m_base(base), m_is_little_endian(is_little_endian) {}

    SFDP_INPUT read(const std::vector<DUMP_LINE>& lines);

private:
    using FAULT = std::optional<std::string>;

    FAULT read_line(const DUMP_LINE& line);
    FAULT read_address(std::string_view digits, bool is_last);
    FAULT check_count(std::string_view digits, std::uint64_t count, bool is_last);
    FAULT read_token(std::string_view token);
    FAULT read_plain(std::string_view token);
    FAULT read_word(std::string_view token);
    void fill(std::size_t size);

    FORM m_form;
    int m_base;
    bool m_is_little_endian;
    BYTES m_bytes;
    std::optional<std::uint64_t> m_origin; // the first address
    std::size_t m_line_begin = 0;          // of the last line, in m_bytes
    bool m_is_repeated = false;            // the last line was "*"
};

// What is there of the last line is doubled until it is enough.
void DUMP_READING::fill(std::size_t size) {
    while (m_bytes.size() < size) {
        const std::size_t end = m_bytes.size();
        const std::size_t count = std::min(end - m_line_begin, size - end);
        m_bytes.resize(end + count);
        std::copy_n(m_bytes.begin() + static_cast<std::ptrdiff_t>(m_line_begin), count,
                    m_bytes.begin() + static_cast<std::ptrdiff_t>(end));
    }
}

// The last word of a dump may be filled up: the address behind it says where the bytes end.
DUMP_READING::FAULT DUMP_READING::check_count(std::string_view digits, std::uint64_t count, bool is_last) {
    if (m_is_repeated && count <= BYTES_MOST)
        fill(static_cast<std::size_t>(count));
    m_is_repeated = false;
    const std::size_t filler = is_last && has_words(m_form) ? word_bytes(m_form) - 1 : 0;
    if (count > m_bytes.size() || count + filler < m_bytes.size())
        return "the address " + std::string(digits) + " does not follow the " + std::to_string(m_bytes.size()) +
               " bytes before it: a line is missing, or is there twice";
    m_bytes.resize(static_cast<std::size_t>(count));
    return std::nullopt;
}

DUMP_READING::FAULT DUMP_READING::read_address(std::string_view digits, bool is_last) {
    const std::optional<std::uint64_t> address = number_of(digits, m_base);
    if (!address)
        return quoted(digits) + " is no address";
    if (!m_origin)
        m_origin = address;
    if (*address < *m_origin)
        return "the address " + std::string(digits) + " is below the first one";
    return check_count(digits, *address - *m_origin, is_last);
}

DUMP_READING::FAULT DUMP_READING::read_plain(std::string_view token) {
    if (token.size() % 2 != 0)
        return quoted(token) + " has an odd number of digits";
    for (std::size_t at = 0; at < token.size(); at += 2) {
        const std::optional<std::uint64_t> byte = number_of(token.substr(at, 2), 16);
        if (!byte)
            return quoted(token.substr(at, 2)) + " is no byte in hexadecimal digits";
        m_bytes.push_back(static_cast<std::uint8_t>(*byte));
    }
    return std::nullopt;
}

DUMP_READING::FAULT DUMP_READING::read_word(std::string_view token) {
    const std::size_t size = word_bytes(m_form);
    const int base = is_octal(m_form.width) ? 8 : 16;
    const std::optional<std::uint64_t> word = number_of(token, base);
    if (!word || token.size() != m_form.width || (size < 8 && *word >> 8 * size != 0))
        return quoted(token) + " is no word of " + std::to_string(m_form.width) +
               (base == 8 ? " octal" : " hexadecimal") + " digits, as those before it";
    for (std::size_t i = 0; i < size; ++i)
        m_bytes.push_back(static_cast<std::uint8_t>(*word >> 8 * (m_is_little_endian ? i : size - 1 - i)));
    return std::nullopt;
}

DUMP_READING::FAULT DUMP_READING::read_token(std::string_view token) {
    if (m_bytes.size() >= BYTES_MOST)
        return "there are more than 16 MiB, the most that three address bytes reach";
    return has_words(m_form) ? read_word(token) : read_plain(token);
}

DUMP_READING::FAULT DUMP_READING::read_line(const DUMP_LINE& line) {
    if (line.is_repeat) {
        if (m_bytes.size() == m_line_begin || !has_address(m_form))
            return "there is nothing that \"*\" could repeat, or no address tells how often";
        m_is_repeated = true;
        return std::nullopt;
    }
    TOKENS words = line.tokens;
    if (has_address(m_form)) {
        std::string_view digits = words.front();
        words.erase(words.begin());
        if (m_form.layout == LAYOUT::COLON && digits.ends_with(':'))
            digits.remove_suffix(1);
        if (FAULT fault = read_address(digits, words.empty()))
            return fault;
    }
    m_line_begin = m_bytes.size();
    for (const std::string_view word : words)
        if (FAULT fault = read_token(word))
            return fault;
    return std::nullopt;
}

SFDP_INPUT DUMP_READING::read(const std::vector<DUMP_LINE>& lines) {
    for (const DUMP_LINE& line : lines)
        if (const FAULT fault = read_line(line))
            return SFDP_INPUT_ERROR{*fault, line.number};
    if (m_is_repeated)
        return SFDP_INPUT_ERROR{"the address behind \"*\" is missing, which tells how often", lines.back().number};
    return std::move(m_bytes);
}

// Seven digits are od's octal or decimal addresses or hexdump's hexadecimal ones; others are hexadecimal.
std::vector<int> bases_of(const FORM& form, const DUMP_LINE& first) {
    if (form.layout == LAYOUT::ADDRESSED && first.tokens[0].size() == 7)
        return {8, 16, 10};
    return {16};
}

// In the base that fits, or else the error that comes latest.
SFDP_INPUT read_in_bases(const std::vector<DUMP_LINE>& lines, const FORM& form, bool is_little_endian) {
    std::optional<SFDP_INPUT_ERROR> latest;
    for (const int base : bases_of(form, lines.front())) {
        SFDP_INPUT input = DUMP_READING(form, base, is_little_endian).read(lines);
        const auto* error = std::get_if<SFDP_INPUT_ERROR>(&input);
        if (!error)
            return input;
        if (!latest || error->line > latest->line)
            latest = *error;
    }
    return *latest;
}

bool has_signature(const SFDP_INPUT& input) {
    constexpr std::string_view SIGNATURE = "SFDP";
    const auto* bytes = std::get_if<BYTES>(&input);
    return bytes && bytes->size() >= SIGNATURE.size() && std::equal(SIGNATURE.begin(), SIGNATURE.end(), bytes->begin());
}

// Dumps hold printable characters, and an image never only these.
bool is_text(std::span<const char> bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) {
        return (byte >= ' ' && byte <= '~') || byte == '\n' || BLANKS.find(byte) != std::string_view::npos;
    });
}

} // namespace

SFDP_INPUT sfdp_read_dump(std::span<const char> text) {
    if (!is_text(text))
        return BYTES(text.begin(), text.end());
    const std::vector<DUMP_LINE> lines = lines_of(std::string_view(text.data(), text.size()));
    if (lines.empty())
        return BYTES();
    const FORM form = form_of(lines.front().tokens);
    if (has_words(form) && !is_known_width(form.width))
        return SFDP_INPUT_ERROR{quoted(lines.front().tokens[1]) + " is no word of a dump that is known",
                                lines.front().number};
    if (has_words(form) && word_bytes(form) > 1) {
        SFDP_INPUT input = read_in_bases(lines, form, false);
        if (has_signature(input))
            return input;
    }
    return read_in_bases(lines, form, true);
}
