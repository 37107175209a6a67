// The standalone host's text helpers: tokenizer, trimming, letter case, numbers from texts.
#include "fixtures.h"
#include "host_pgm_common.h"
#include "host_text.h"
#include "report.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

constexpr char CSV_SEPARATORS[] = " \t\n,";

std::vector<std::string> tokens_of(const std::string& text, const char* separators = CSV_SEPARATORS) {
    std::vector<std::string> tokens = {"former", "contents"};
    gen_tokenize(text, separators, tokens);
    return tokens;
}

// "a|b||c", and "-" for no token at all, which "" (one empty token) is not.
std::string joined(const std::vector<std::string>& tokens) {
    if (tokens.empty())
        return "-";
    std::string text;
    for (const std::string& token : tokens)
        text += token + "|";
    text.pop_back();
    return text;
}

// ---- tokenizer ----

struct TOKENIZER_CASE {
    const char* text;
    const char* expected;
};

TEST(StandaloneTokenizer, SplitsAtCommasAndWhiteSpace) {
    const TOKENIZER_CASE cases[] = {
        // plain
        {"a", "a"},
        {"a,b,c", "a|b|c"},
        {"one two", "one|two"},
        {"a\tb", "a|b"},
        {"a\nb", "a|b"},
        // nothing
        {"", "-"},
        {"   ", "-"},
        {" \t\n", "-"},
        // an empty cell stands between two commas, before a leading and behind a trailing one
        {"a,,b", "a||b"},
        {"a,,,b", "a|||b"},
        {",a", "|a"},
        {"a,", "a|"},
        {",", "|"},
        {",,", "||"},
        // blanks and tabs around a comma belong to it
        {"a , b", "a|b"},
        {"a \t,\t b", "a|b"},
        {"a , , b", "a||b"},
        {" , a", "|a"},
        {"a , ", "a|"},
        {" , ", "|"},
        // a run of white space is one separator between two words and none at the ends
        {"a   b", "a|b"},
        {"a \t b c", "a|b|c"},
        {"  a", "a"},
        {"a  ", "a"},
        // what is no separator stays
        {"a;b", "a;b"},
        {"\"a,b\"", "\"a|b\""},
        {"a\rb", "a\rb"},
    };
    for (const TOKENIZER_CASE& row : cases)
        EXPECT_EQ(row.expected, joined(tokens_of(row.text))) << '"' << row.text << '"';
}

TEST(StandaloneTokenizer, SplitsAtTheSeparatorsGivenOnly) {
    EXPECT_EQ("a b|c,d", joined(tokens_of("a b;c,d", ";")));
    EXPECT_EQ("a||b", joined(tokens_of("a;:b", ":;")));
    EXPECT_EQ("a,b|c", joined(tokens_of("a,b c", " ")));
    EXPECT_EQ("a b", joined(tokens_of("a b", ",")));
}

// The rule by rewriting: blanks beside a comma and at the ends go, other runs of blanks become one comma each, and
// every comma then splits.
std::vector<std::string> naive_tokens(const std::string& text) {
    std::string commas;
    for (size_t position = 0; position < text.size(); ++position) {
        if (text[position] != ' ') {
            commas += text[position];
            continue;
        }
        size_t end = position;
        while (end < text.size() && text[end] == ' ')
            ++end;
        const bool is_inside = position > 0 && end < text.size() && text[position - 1] != ',' && text[end] != ',';
        commas += is_inside ? "," : "";
        position = end - 1;
    }
    std::vector<std::string> tokens;
    if (commas.empty())
        return tokens;
    tokens.emplace_back();
    for (const char character : commas) {
        if (character == ',')
            tokens.emplace_back();
        else
            tokens.back() += character;
    }
    return tokens;
}

TEST(StandaloneTokenizer, AgreesWithTheRuleOnEveryShortText) {
    const std::string alphabet = "a ,";
    std::vector<std::string> texts = {""};
    for (size_t next = 0; next < texts.size(); ++next) {
        const std::string text = texts[next];
        ASSERT_EQ(joined(naive_tokens(text)), joined(tokens_of(text))) << '"' << text << '"';
        for (const char character : alphabet)
            if (text.size() < 8)
                texts.push_back(text + character);
    }
    EXPECT_EQ(9841U, texts.size()); // 3^0 + ... + 3^8
}

TEST(StandaloneTokenizer, ForgetsFormerTokens) {
    std::vector<std::string> tokens(50, "a long former token that had storage of its own");
    gen_tokenize("x,y", ",", tokens);
    EXPECT_EQ("x|y", joined(tokens));
    gen_tokenize("", ",", tokens);
    EXPECT_TRUE(tokens.empty());
}

// ---- numbers ----

struct NUMBER {
    unsigned int value;
    bool ok;
    bool operator==(const NUMBER&) const = default;
};

void PrintTo(const NUMBER& number, std::ostream* out) {
    *out << number.value << (number.ok ? " ok" : " bad");
}

NUMBER number_of(const char* text, bool no_empty = true, bool allow_hex = true) {
    bool ok = false;
    const unsigned int value = PGM_COMMON::convert_string_to_dword(text, no_empty, &ok, nullptr, allow_hex);
    return {value, ok};
}

const NUMBER BAD = {0, false};

TEST(StandaloneNumber, ReadsDecimalDigits) {
    EXPECT_EQ((NUMBER{0, true}), number_of("0"));
    EXPECT_EQ((NUMBER{7, true}), number_of("007"));
    EXPECT_EQ((NUMBER{1234567890, true}), number_of("1234567890"));
    EXPECT_EQ((NUMBER{4294967295, true}), number_of("4294967295"));
    EXPECT_EQ((NUMBER{1, true}), number_of("00000000000000000000000001"));
}

TEST(StandaloneNumber, ReadsHexadecimalDigitsBehindTheirSign) {
    EXPECT_EQ((NUMBER{0, true}), number_of("0x0"));
    EXPECT_EQ((NUMBER{0xABCDEF09, true}), number_of("0xabcDEF09"));
    EXPECT_EQ((NUMBER{0xFFFFFFFF, true}), number_of("0XFFFFFFFF"));
    EXPECT_EQ((NUMBER{0x1F, true}), number_of("0x000000000000000000001F"));
}

TEST(StandaloneNumber, ReadsHexadecimalDigitsOnlyWhereAllowed) {
    EXPECT_EQ(BAD, number_of("0x10", true, false));
    EXPECT_EQ((NUMBER{10, true}), number_of("10", true, false));
}

TEST(StandaloneNumber, RefusesWhatIsPast32Bits) {
    for (const char* text : {"4294967296", "9999999999", "18446744073709551616", "99999999999999999999999999",
                             "0x100000000", "0xFFFFFFFFFFFFFFFFF"})
        EXPECT_EQ(BAD, number_of(text)) << text;
}

TEST(StandaloneNumber, RefusesWhatIsNoNumber) {
    for (const char* text : {"x", "-1", "+1", " 1", "1 ", "1.0", "1e3", "0x", "0X", "0xG", "x10", "AB", "1,2", "0x-1",
                             "0x 1", "\t", "00x1"})
        EXPECT_EQ(BAD, number_of(text)) << text;
}

TEST(StandaloneNumber, TakesTheEmptyTextAsZeroUnlessForbidden) {
    EXPECT_EQ((NUMBER{0, true}), number_of("", false));
    EXPECT_EQ(BAD, number_of("", true));
}

TEST(StandaloneNumber, TellsANumberPast32BitsFromABadText) {
    bool ok = true;
    bool overflow = false;
    PGM_COMMON::convert_string_to_dword("4294967296", true, &ok, &overflow, true);
    EXPECT_FALSE(ok);
    EXPECT_TRUE(overflow);
    PGM_COMMON::convert_string_to_dword("12x", true, &ok, &overflow, true);
    EXPECT_FALSE(ok);
    EXPECT_FALSE(overflow);
    PGM_COMMON::convert_string_to_dword("12", true, &ok, &overflow, true);
    EXPECT_TRUE(ok);
    EXPECT_FALSE(overflow);
}

TEST(StandaloneNumber, ReportsABadTextThatNobodyAsksAbout) {
    for (const char* text : {"", "12x", "4294967296"})
        EXPECT_TRUE(
            report_of([&] { PGM_COMMON::convert_string_to_dword(text, true, nullptr, nullptr, true); }).has_value())
            << text;
    EXPECT_EQ(12U, PGM_COMMON::convert_string_to_dword("12", true, nullptr, nullptr, true));
}

// ---- letter case and white space ----

TEST(StandaloneText, ComparesLetterCaseAside) {
    EXPECT_EQ(0, gen_stricmp("", ""));
    EXPECT_EQ(0, gen_stricmp("none", "NoNe"));
    EXPECT_LT(gen_stricmp("a", "B"), 0);
    EXPECT_GT(gen_stricmp("B", "a"), 0);
    EXPECT_LT(gen_stricmp("QX", "qx1"), 0);
    EXPECT_GT(gen_stricmp("qx1", "QX"), 0);
    EXPECT_NE(0, gen_stricmp("", "a"));
}

TEST(StandaloneText, TakesOnlyAsciiLettersForLetters) {
    EXPECT_NE(0, gen_stricmp("[", "{"));
    EXPECT_NE(0, gen_stricmp("@", "`"));
    EXPECT_NE(0, gen_stricmp("\xC4", "\xE4"));
    std::string text = "az@[`{\xE4\xC4"
                       "09";
    stl_toupper(text);
    EXPECT_EQ("AZ@[`{\xE4\xC4"
              "09",
              text);
    stl_tolower(text);
    EXPECT_EQ("az@[`{\xE4\xC4"
              "09",
              text);
}

TEST(StandaloneText, ComparesBytesAbove127AsPositive) {
    EXPECT_GT(gen_stricmp("\xE4", "z"), 0);
}

TEST(StandaloneText, TrimsBothEndsAndNothingInside) {
    const TOKENIZER_CASE cases[] = {
        {"", ""},
        {"a", "a"},
        {" a", "a"},
        {"a ", "a"},
        {" \t\r\n\v\fa b\f\v\n\r\t ", "a b"},
        {" \t\r\n\v\f", ""},
        {"\xA0", "\xA0"},
    };
    for (const TOKENIZER_CASE& row : cases) {
        std::string text = row.text;
        gen_remove_leading_and_trailing_white_spaces(text);
        EXPECT_EQ(row.expected, text);
    }
}

} // namespace
