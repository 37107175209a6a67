// Names in another maker's spelling. What is expected is by hand; the look-alike rule also holds against a plain model
// over all short texts of a small alphabet.
#include "tool_name_spelling.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

using KIND = TOOL_SPELLING::KIND;

const std::vector<std::string> NAMES = {"MX25L25645G", "M25P10-A", "MT25QU256", "MT25QU256A", "W25Q128JV", "M25P10-A"};

TOOL_SPELLING only_spelling(const std::string& name) {
    const auto spellings = tool_spellings(name, NAMES);
    EXPECT_EQ(spellings.size(), 1U) << name;
    return spellings.empty() ? TOOL_SPELLING{} : spellings.front();
}

} // namespace

TEST(NameSpelling, KnownNameMeansNothingElse) {
    EXPECT_TRUE(tool_spellings("W25Q128JV", NAMES).empty());
    EXPECT_TRUE(tool_spellings("mt25qu256", NAMES).empty());
}

TEST(NameSpelling, EmptyAndStrangeNamesMeanNothing) {
    for (const char* name : {"", "-", " _ ", "ZZZ", "W25Q"})
        EXPECT_TRUE(tool_spellings(name, NAMES).empty()) << name;
}

TEST(NameSpelling, SeparatorsDoNotCount) {
    const TOOL_SPELLING spelling = only_spelling("mx 25L-25645_G");
    EXPECT_EQ(spelling.kind, KIND::SEPARATORS);
    EXPECT_EQ(spelling.meant, "MX25L25645G");
    EXPECT_EQ(spelling.mistake("mx 25L-25645_G"), "it differs only by blanks and \"-\" and \"_\"");
}

TEST(NameSpelling, SeparatorThatTheTableHasIsNamedWhereItIsMissing) {
    EXPECT_EQ(only_spelling("m25p10a").mistake("m25p10a"), "it differs only by \"-\"");
}

TEST(NameSpelling, SeparatorInAnotherPlaceIsNamed) {
    EXPECT_EQ(only_spelling("M25P-10A").mistake("M25P-10A"), "it differs only by \"-\"");
}

TEST(NameSpelling, LettersAreTakenForDigits) {
    const TOOL_SPELLING spelling = only_spelling("W25QI28JV");
    EXPECT_EQ(spelling.kind, KIND::LOOK_ALIKES);
    EXPECT_EQ(spelling.meant, "W25Q128JV");
    EXPECT_EQ(only_spelling("M25PIO-A").meant, "M25P10-A");
}

TEST(NameSpelling, SuffixIsKeptAsItWasTyped) {
    const TOOL_SPELLING spelling = only_spelling("MX25L-25645Gm2i-08G");
    EXPECT_EQ(spelling.kind, KIND::SUFFIX);
    EXPECT_EQ(spelling.meant, "MX25L25645G");
    EXPECT_EQ(spelling.suffix, "m2i-08G");
}

TEST(NameSpelling, SuffixStandsBehindTheLongestName) {
    EXPECT_EQ(only_spelling("mt25qu256aba1ew9").meant, "MT25QU256A");
    EXPECT_EQ(only_spelling("mt25qu256-ew9").meant, "MT25QU256");
}

TEST(NameSpelling, OneCharacterIsNoSuffix) {
    EXPECT_TRUE(tool_spellings("MT25QU256AX", NAMES).empty());
    EXPECT_FALSE(tool_spellings("MT25QU256AXY", NAMES).empty());
}

TEST(NameSpelling, SuffixDoesNotGoOnANumber) {
    EXPECT_TRUE(tool_spellings("MT25QU25612", NAMES).empty());
}

TEST(NameSpelling, NamesThatFoldAlikeAreAllGiven) {
    const auto spellings = tool_spellings("AB 1CD", {"AB-1CD", "AB1-CD", "AB-1CD"});
    ASSERT_EQ(spellings.size(), 2U);
    EXPECT_EQ(spellings[0].meant, "AB-1CD");
    EXPECT_EQ(spellings[1].meant, "AB1-CD");
}

namespace {

// Upper case without dashes; with the second argument the letter O counts as the digit.
std::string plain(const std::string& text, bool is_digit_only) {
    std::string result;
    for (const char c : text)
        if (c != '-')
            result += c == 'a' ? 'A' : c == 'O' && is_digit_only ? '0' : c;
    return result;
}

std::vector<std::string> alike(const std::string& text, const std::vector<std::string>& names, bool is_digit_only) {
    std::vector<std::string> found;
    for (const std::string& name : names)
        if (plain(text, is_digit_only) == plain(name, is_digit_only))
            found.push_back(name);
    return found;
}

bool is_known(const std::string& text, const std::vector<std::string>& names) {
    return std::any_of(names.begin(), names.end(), [&text](const std::string& name) {
        return std::equal(name.begin(), name.end(), text.begin(), text.end(),
                          [](char left, char right) { return left == (right == 'a' ? 'A' : right); });
    });
}

} // namespace

// Over all texts of up to five characters of an alphabet.
TEST(NameSpelling, ShortTextsMeanWhatAPlainModelSays) {
    const std::vector<std::string> names = {"A0", "A-O", "00A"};
    std::vector<std::string> texts = {""};
    for (size_t i = 0; texts[i].size() < 5; ++i)
        for (const char c : {'a', '0', 'O', '-'})
            texts.push_back(texts[i] + c);
    for (const std::string& text : texts) {
        auto expected = alike(text, names, false);
        if (expected.empty() && !plain(text, false).empty())
            expected = alike(text, names, true);
        if (is_known(text, names))
            expected.clear();
        std::vector<std::string> found;
        for (const TOOL_SPELLING& spelling : tool_spellings(text, names))
            found.push_back(spelling.meant);
        EXPECT_EQ(found, expected) << text;
    }
}
