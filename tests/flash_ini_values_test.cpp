// Values of the flash parameter file: their bytes, their texts, and what is taken from a user.
#include "ini_fixture.h"
#include "report.h"

#include <climits>
#include <random>

namespace {

constexpr auto STRING = TOVREN_PARAM_STRING;
constexpr auto BOOL = TOVREN_PARAM_BOOL;
constexpr auto BYTE_TYPE = TOVREN_PARAM_BYTE;
constexpr auto WORD_TYPE = TOVREN_PARAM_WORD;
constexpr auto DWORD_TYPE = TOVREN_PARAM_DWORD;
constexpr auto QWORD_TYPE = TOVREN_PARAM_QWORD;
constexpr unsigned long long MOST = ULLONG_MAX;

// One object of each type, and pointers to them in the order of the types.
struct VALUES {
    std::string text = "former";
    bool flag = false;
    unsigned char byte = 0;
    unsigned short word = 0;
    unsigned int dword = 0;
    unsigned long long qword = 0;

    std::vector<TOVREN_PARAM_TYPE> types = {STRING, BOOL, BYTE_TYPE, WORD_TYPE, DWORD_TYPE, QWORD_TYPE};
    void* pointers[6] = {&text, &flag, &byte, &word, &dword, &qword};

    VALUES() = default;
    VALUES(const VALUES&) = delete;
    VALUES& operator=(const VALUES&) = delete;

    bool assign(const BYTES& data, unsigned int& index) {
        return TOVREN_FLASH_INI::assign_flash_ini_data(data.data(), index, static_cast<unsigned int>(data.size()), 6,
                                                       types.data(), pointers);
    }
    unsigned int size() {
        unsigned int size = 0;
        for (size_t i = 0; i < 6; ++i)
            TOVREN_FLASH_INI::calculate_flash_ini_data_size(size, types[i], pointers[i]);
        return size;
    }
    BYTES fill() {
        BYTES data(size());
        unsigned int index = 0;
        for (size_t i = 0; i < 6; ++i)
            TOVREN_FLASH_INI::fillup_flash_ini_data(data.data(), index, types[i], pointers[i]);
        EXPECT_EQ(data.size(), index);
        return data;
    }
};

// By hand from the format page.
const BYTES GOLDEN = {
    'Q',  'X',  '2',  0x00,                         // text
    0x01,                                           // boolean
    0xAB,                                           // 8 bit
    0x34, 0x12,                                     // 16 bit
    0x78, 0x56, 0x34, 0x12,                         // 32 bit
    0xF0, 0xDE, 0xBC, 0x9A, 0x78, 0x56, 0x34, 0x12, // 64 bit
};

void fill_golden(VALUES& values) {
    values.text = "QX2";
    values.flag = true;
    values.byte = 0xAB;
    values.word = 0x1234;
    values.dword = 0x12345678;
    values.qword = 0x123456789ABCDEF0;
}

TEST(FlashIniValues, HaveTheNumbersOfTheFormat) {
    EXPECT_EQ((std::vector<unsigned int>{1, 2, 3, 4, 5, 6}),
              (std::vector<unsigned int>{STRING, BOOL, BYTE_TYPE, WORD_TYPE, DWORD_TYPE, QWORD_TYPE}));
}

// ---- reading ----

TEST(FlashIniValues, AreReadFromBytesWrittenByHand) {
    VALUES values;
    unsigned int index = 0;
    EXPECT_TRUE(values.assign(GOLDEN, index));
    EXPECT_EQ(GOLDEN.size(), index);
    EXPECT_EQ("QX2", values.text);
    EXPECT_TRUE(values.flag);
    EXPECT_EQ(0xAB, values.byte);
    EXPECT_EQ(0x1234, values.word);
    EXPECT_EQ(0x12345678U, values.dword);
    EXPECT_EQ(0x123456789ABCDEF0U, values.qword);
}

TEST(FlashIniValues, AreReadFromTheIndexOn) {
    const BYTES data = join({{9, 9, 9}, GOLDEN, {9}});
    VALUES values;
    unsigned int index = 3;
    EXPECT_TRUE(values.assign(data, index));
    EXPECT_EQ(3 + GOLDEN.size(), index);
    EXPECT_EQ("QX2", values.text);
}

TEST(FlashIniValues, AreReadAtTheirLimits) {
    VALUES values;
    unsigned int index = 0;
    EXPECT_TRUE(values.assign(join({{0}, BYTES(16, 0xFF)}), index));
    EXPECT_EQ("", values.text);
    EXPECT_TRUE(values.flag);
    EXPECT_EQ(0xFF, values.byte);
    EXPECT_EQ(0xFFFF, values.word);
    EXPECT_EQ(0xFFFFFFFFU, values.dword);
    EXPECT_EQ(MOST, values.qword);
    index = 0;
    EXPECT_TRUE(values.assign(BYTES(17, 0), index));
    EXPECT_FALSE(values.flag);
    EXPECT_EQ(0U, values.byte + values.word + values.dword + values.qword);
}

TEST(FlashIniValues, AreTrueUnlessTheByteIsZero) {
    for (unsigned int byte = 0; byte < 256; ++byte) {
        const auto data = static_cast<unsigned char>(byte);
        bool flag = byte == 0;
        void* value = &flag;
        unsigned int index = 0;
        EXPECT_TRUE(TOVREN_FLASH_INI::assign_flash_ini_data(&data, index, 1, 1, &BOOL, &value));
        EXPECT_EQ(byte != 0, flag) << byte;
    }
}

TEST(FlashIniValues, EndWhereTheDataAreCut) {
    // How far the index gets: to the start of the value that is cut.
    const std::vector<unsigned int> starts = {0, 0, 0, 0, 4, 5, 6, 6, 8, 8, 8, 8, 12, 12, 12, 12, 12, 12, 12, 12};
    ASSERT_EQ(GOLDEN.size(), starts.size());
    for (size_t kept = 0; kept < GOLDEN.size(); ++kept) {
        VALUES values;
        unsigned int index = 0;
        EXPECT_FALSE(values.assign(first(GOLDEN, kept), index)) << kept;
        EXPECT_EQ(starts[kept], index) << kept;
        EXPECT_EQ(kept < 4 ? "former" : "QX2", values.text) << kept;
        EXPECT_EQ(kept < 8 ? 0 : 0x1234, values.word) << kept;
        EXPECT_EQ(0U, values.qword) << kept;
    }
}

TEST(FlashIniValues, AreNotReadAtOrBehindTheEnd) {
    for (const unsigned int start : {1U, 2U, 0xFFFFFFFFU}) {
        const unsigned char data = 0;
        unsigned char byte = 7;
        void* value = &byte;
        unsigned int index = start;
        EXPECT_FALSE(TOVREN_FLASH_INI::assign_flash_ini_data(&data, index, 1, 1, &BYTE_TYPE, &value));
        EXPECT_EQ(start, index);
        EXPECT_EQ(7, byte);
    }
}

TEST(FlashIniValues, AreAllReadWhenThereAreNone) {
    unsigned int index = 5;
    EXPECT_TRUE(TOVREN_FLASH_INI::assign_flash_ini_data(nullptr, index, 0, 0, nullptr, nullptr));
    EXPECT_EQ(5U, index);
}

TEST(FlashIniValues, AreReadAsRandomBytesSay) {
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        VALUES expected;
        expected.text = std::string(random() % 5, static_cast<char>('a' + random() % 26));
        expected.flag = random() % 2 != 0;
        expected.byte = static_cast<unsigned char>(random());
        expected.word = static_cast<unsigned short>(random());
        expected.dword = static_cast<unsigned int>(random());
        expected.qword = static_cast<unsigned long long>(random()) << 32 | random();
        const auto word = static_cast<unsigned int>(expected.word);
        const BYTES data = join({zero_ended(expected.text),
                                 {static_cast<unsigned char>(expected.flag), expected.byte},
                                 first(le32_bytes(word), 2),
                                 le32_bytes(expected.dword),
                                 le64_bytes(expected.qword)});
        ASSERT_EQ(data, expected.fill());
        VALUES values;
        unsigned int index = 0;
        ASSERT_TRUE(values.assign(data, index));
        ASSERT_EQ(data, values.fill());
    }
}

// ---- writing ----

TEST(FlashIniValues, TakeTheBytesOfTheirTypes) {
    VALUES values;
    const std::vector<unsigned int> expected = {7, 1, 1, 2, 4, 8};
    for (size_t i = 0; i < 6; ++i) {
        unsigned int size = 100;
        TOVREN_FLASH_INI::calculate_flash_ini_data_size(size, values.types[i], values.pointers[i]);
        EXPECT_EQ(100 + expected[i], size) << i;
    }
}

TEST(FlashIniValues, AreWrittenAsBytesWrittenByHand) {
    VALUES values;
    fill_golden(values);
    EXPECT_EQ(GOLDEN.size(), values.size());
    EXPECT_EQ(GOLDEN, values.fill());
}

TEST(FlashIniValues, AreWrittenFromTheIndexOnAndNowhereElse) {
    BYTES data(6, 0xEE);
    unsigned int value = 0x12345678;
    unsigned int index = 1;
    TOVREN_FLASH_INI::fillup_flash_ini_data(data.data(), index, DWORD_TYPE, &value);
    EXPECT_EQ((BYTES{0xEE, 0x78, 0x56, 0x34, 0x12, 0xEE}), data);
    EXPECT_EQ(5U, index);
}

TEST(FlashIniValues, TakeTheRoomOfATextWithAZeroByteInIt) {
    std::string text("a\0b", 3);
    unsigned int size = 0;
    TOVREN_FLASH_INI::calculate_flash_ini_data_size(size, STRING, &text);
    EXPECT_EQ(4U, size);
    BYTES data(4, 0xEE);
    unsigned int index = 0;
    TOVREN_FLASH_INI::fillup_flash_ini_data(data.data(), index, STRING, &text);
    EXPECT_EQ((BYTES{'a', 0, 'b', 0}), data);
    EXPECT_EQ(4U, index);
}

// ---- display ----

TEST(FlashIniValues, ArePrintedForPeople) {
    VALUES values;
    fill_golden(values);
    const std::vector<std::string> decimal = {"QX2", "True", "171", "4660", "305419896", "1311768467463790320"};
    const std::vector<std::string> hex = {"QX2", "True", "0xAB", "0x1234", "0x12345678", "0x123456789ABCDEF0"};
    for (size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(decimal[i], TOVREN_FLASH_INI::print_flash_ini_data(values.types[i], false, values.pointers[i]));
        EXPECT_EQ(hex[i], TOVREN_FLASH_INI::print_flash_ini_data(values.types[i], true, values.pointers[i]));
    }
}

TEST(FlashIniValues, ArePrintedAtTheirLimits) {
    VALUES values;
    values.text.clear();
    const std::vector<std::string> least = {"", "False", "0x00", "0x0000", "0x00000000", "0x0000000000000000"};
    const std::vector<std::string> most = {"", "True", "255", "65535", "4294967295", "18446744073709551615"};
    for (size_t i = 0; i < 6; ++i)
        EXPECT_EQ(least[i], TOVREN_FLASH_INI::print_flash_ini_data(values.types[i], true, values.pointers[i]));
    unsigned int index = 0;
    ASSERT_TRUE(values.assign(join({{0}, BYTES(16, 0xFF)}), index));
    for (size_t i = 0; i < 6; ++i)
        EXPECT_EQ(most[i], TOVREN_FLASH_INI::print_flash_ini_data(values.types[i], false, values.pointers[i]));
}

TEST(FlashIniValues, OfAnyOtherTypeAreReported) {
    static constexpr char TEXT[] = "Unsupport param type";
    BYTES data(16);
    unsigned long long value = 0;
    void* pointer = &value;
    std::string error;
    for (const unsigned int number : {0U, 7U, 0xFFFFFFFFU}) {
        const auto type = static_cast<TOVREN_PARAM_TYPE>(number);
        unsigned int index = 0;
        EXPECT_REPORT(TOVREN_FLASH_INI::assign_flash_ini_data(data.data(), index, 16, 1, &type, &pointer), TEXT,
                      IN_FLASH_INI);
        EXPECT_REPORT(TOVREN_FLASH_INI::calculate_flash_ini_data_size(index, type, &value), TEXT, IN_FLASH_INI);
        EXPECT_REPORT(TOVREN_FLASH_INI::fillup_flash_ini_data(data.data(), index, type, &value), TEXT, IN_FLASH_INI);
        EXPECT_REPORT(TOVREN_FLASH_INI::print_flash_ini_data(type, true, &value), TEXT, IN_FLASH_INI);
        EXPECT_REPORT(TOVREN_FLASH_INI::convert_string_to_qword(type, value, false, "1", false, nullptr, nullptr, false,
                                                                1, error),
                      TEXT, IN_FLASH_INI);
    }
}

TEST(FlashIniValues, BecomeTheLastDigitsInHexadecimal) {
    EXPECT_EQ("0x123456789ABCDEF0", TOVREN_FLASH_INI::convert_qword_to_hex_string(0x123456789ABCDEF0, 16, true));
    EXPECT_EQ("EF0", TOVREN_FLASH_INI::convert_qword_to_hex_string(0x123456789ABCDEF0, 3, false));
    EXPECT_EQ("0x0", TOVREN_FLASH_INI::convert_qword_to_hex_string(0x123456789ABCDEF0, 1, true));
    EXPECT_EQ("0000000000000001", TOVREN_FLASH_INI::convert_qword_to_hex_string(1, 16, false));
    EXPECT_EQ("0x9ABCDEF0", TOVREN_FLASH_INI::convert_dword_to_hex_string(0x9ABCDEF0, 8, true));
    EXPECT_EQ("F0", TOVREN_FLASH_INI::convert_dword_to_hex_string(0x9ABCDEF0, 2, false));
    EXPECT_EQ("0x00A", TOVREN_FLASH_INI::convert_dword_to_hex_string(10, 3, true));
}

TEST(FlashIniValues, HaveAtLeastOneAndAtMostAllTheirDigits) {
    static constexpr char QWORD_TEXT[] = "count != 0 && count <= 16";
    static constexpr char DWORD_TEXT[] = "count != 0 && count <= 8";
    EXPECT_REPORT(TOVREN_FLASH_INI::convert_qword_to_hex_string(1, 0, false), QWORD_TEXT, IN_FLASH_INI);
    EXPECT_REPORT(TOVREN_FLASH_INI::convert_qword_to_hex_string(1, 17, false), QWORD_TEXT, IN_FLASH_INI);
    EXPECT_REPORT(TOVREN_FLASH_INI::convert_dword_to_hex_string(1, 0, false), DWORD_TEXT, IN_FLASH_INI);
    EXPECT_REPORT(TOVREN_FLASH_INI::convert_dword_to_hex_string(1, 9, false), DWORD_TEXT, IN_FLASH_INI);
}

TEST(FlashIniValues, BecomeDecimalTexts) {
    EXPECT_EQ("0", TOVREN_FLASH_INI::convert_qword_to_string(0));
    EXPECT_EQ("18446744073709551615", TOVREN_FLASH_INI::convert_qword_to_string(MOST));
}

// ---- plain conversion ----

TEST(FlashIniConversion, TakesDecimalAndPrefixedHexadecimalDigits) {
    const std::vector<std::pair<std::string, unsigned long long>> texts = {
        {"0", 0},
        {"10", 10},
        {"0010", 10},
        {"18446744073709551615", MOST},
        {"0x10", 16},
        {"0xaBcDeF", 0xABCDEF},
        {"0xFFFFFFFFFFFFFFFF", MOST},
        {"0x00000000000000001", 1},
        // Nothing to read is nothing.
        {"", 0},
        {"0x", 0},
        // Past 64 bits.
        {"18446744073709551616", MOST},
        {"99999999999999999999999999", MOST},
        {"0x10000000000000000", MOST},
    };
    for (const auto& [text, value] : texts) {
        bool ok = false;
        EXPECT_EQ(value, TOVREN_FLASH_INI::convert_string_to_qword(text, false, &ok)) << text;
        EXPECT_TRUE(ok) << text;
        EXPECT_EQ(value, TOVREN_FLASH_INI::convert_string_to_qword(text, false, nullptr)) << text;
    }
}

TEST(FlashIniConversion, RefusesEverythingElse) {
    const std::vector<std::string> texts = {"A",
                                            "1A",
                                            " 1",
                                            "1 ",
                                            "-1",
                                            "+1",
                                            "1.0",
                                            "0X10",
                                            "x10",
                                            "0x0x1",
                                            "0xG",
                                            "0x-1",
                                            "0x 1",
                                            "00x1",
                                            "1,0",
                                            "0x1\n",
                                            "\xC3\xA9",
                                            std::string("1\0", 2),
                                            std::string("0x1\0002", 5)};
    for (const std::string& text : texts) {
        bool ok = true;
        EXPECT_EQ(0U, TOVREN_FLASH_INI::convert_string_to_qword(text, false, &ok)) << text;
        EXPECT_FALSE(ok) << text;
        EXPECT_REPORT(TOVREN_FLASH_INI::convert_string_to_qword(text, false, nullptr),
                      "Invalid string to integer conversion", IN_FLASH_INI);
    }
}

TEST(FlashIniConversion, ReportsAnEmptyTextThatIsForbidden) {
    bool ok = false;
    EXPECT_REPORT(TOVREN_FLASH_INI::convert_string_to_qword("", true, &ok), "!no_empty || !string.empty()",
                  IN_FLASH_INI);
    EXPECT_REPORT(TOVREN_FLASH_INI::convert_string_to_qword("", true, nullptr), "!no_empty || !string.empty()",
                  IN_FLASH_INI);
    EXPECT_EQ(7U, TOVREN_FLASH_INI::convert_string_to_qword("7", true, &ok));
}

// ---- checked conversion ----

// A user's text and what is asked of it; asked for nothing unless a test says so.
struct INPUT {
    TOVREN_PARAM_TYPE type = DWORD_TYPE;
    std::string text;
    bool hex = false;
    bool power_of_two = false;
    std::vector<unsigned int> ranges = {};
    std::vector<unsigned int> forbidden = {};
    bool bit_position = false;
    unsigned int multiple = 1;
};

// The value in decimal, or the reason.
std::string converted(const INPUT& input) {
    unsigned long long value = 12345;
    std::string error = "former";
    const bool accepted =
        TOVREN_FLASH_INI::convert_string_to_qword(input.type, value, input.hex, input.text, input.power_of_two,
                                                  input.ranges.empty() ? nullptr : &input.ranges[0],
                                                  input.forbidden.empty() ? nullptr : &input.forbidden[0],
                                                  input.bit_position, input.multiple, error);
    EXPECT_EQ(accepted, error.empty());
    EXPECT_TRUE(accepted || value == 0);
    return accepted ? std::to_string(value) : error;
}

const std::string INVALID = "Invalid QWORD conversion";
const std::string TOO_LARGE = "Conversion overflow compare to type";
const std::string NO_POWER = "Input must be power of 2";
const std::string OUT_OF_RANGE = "Input is out of range";
const std::string HIT = "Input is invalid (hit)";
const std::string OVERFLOW_REASON = "Calculation overflow compare to type";

TEST(FlashIniInput, IsANumberWithinTheType) {
    EXPECT_EQ("255", converted({.type = BYTE_TYPE, .text = "255"}));
    EXPECT_EQ(TOO_LARGE, converted({.type = BYTE_TYPE, .text = "256"}));
    EXPECT_EQ("65535", converted({.type = WORD_TYPE, .text = "65535"}));
    EXPECT_EQ(TOO_LARGE, converted({.type = WORD_TYPE, .text = "65536"}));
    EXPECT_EQ("4294967295", converted({.type = DWORD_TYPE, .text = "0xFFFFFFFF"}));
    EXPECT_EQ(TOO_LARGE, converted({.type = DWORD_TYPE, .text = "0x100000000"}));
    EXPECT_EQ("18446744073709551615", converted({.type = QWORD_TYPE, .text = "18446744073709551615"}));
    EXPECT_EQ("18446744073709551615", converted({.type = QWORD_TYPE, .text = "18446744073709551616"}));
    EXPECT_EQ(TOO_LARGE, converted({.type = DWORD_TYPE, .text = "99999999999999999999"}));
    EXPECT_EQ("0", converted({.text = "0"}));
    EXPECT_EQ("0", converted({.text = ""}));
    EXPECT_EQ("0", converted({.text = "", .hex = true}));
}

TEST(FlashIniInput, IsHexadecimalWithoutAPrefixWhereThatIsAsked) {
    EXPECT_EQ("256", converted({.type = WORD_TYPE, .text = "100", .hex = true}));
    EXPECT_EQ(TOO_LARGE, converted({.type = BYTE_TYPE, .text = "100", .hex = true}));
    EXPECT_EQ("256", converted({.text = "0x100", .hex = true}));
    EXPECT_EQ("256", converted({.text = "0x100"}));
    EXPECT_EQ("100", converted({.text = "100"}));
    EXPECT_EQ("171", converted({.text = "aB", .hex = true}));
}

TEST(FlashIniInput, IsRefusedWhenItIsNoNumber) {
    EXPECT_EQ(INVALID, converted({.text = "A"}));
    EXPECT_EQ(INVALID, converted({.text = "G", .hex = true}));
    EXPECT_EQ(INVALID, converted({.text = "0X1", .hex = true}));
    EXPECT_EQ(INVALID, converted({.text = "-2"}));
    EXPECT_EQ(INVALID, converted({.text = " -1"}));
    EXPECT_EQ(INVALID, converted({.text = "-1 ", .hex = true}));
    EXPECT_EQ(INVALID, converted({.text = "1 "}));
}

TEST(FlashIniInput, OfMinusOneIsTheLargestValueOfTheType) {
    for (const bool hex : {false, true}) {
        EXPECT_EQ("255", converted({.type = BYTE_TYPE, .text = "-1", .hex = hex}));
        EXPECT_EQ("65535", converted({.type = WORD_TYPE, .text = "-1", .hex = hex}));
        EXPECT_EQ("4294967295", converted({.type = DWORD_TYPE, .text = "-1", .hex = hex}));
        EXPECT_EQ("18446744073709551615", converted({.type = QWORD_TYPE, .text = "-1", .hex = hex}));
    }
}

TEST(FlashIniInput, OfATextOrABooleanIsTakenAsItIs) {
    for (const auto type : {STRING, BOOL}) {
        const INPUT all = {type, "no number", true, true, {0}, {1, 0, 0}, true, 0};
        EXPECT_EQ("0", converted(all));
    }
}

TEST(FlashIniInput, IsAPowerOfTwoWhereThatIsAsked) {
    for (unsigned int bit = 0; bit < 64; ++bit) {
        const std::string text = std::to_string(1ULL << bit);
        EXPECT_EQ(text, converted({.type = QWORD_TYPE, .text = text, .power_of_two = true}));
    }
    for (const char* text : {"0", "3", "0x8000000000000001", "-1", ""})
        EXPECT_EQ(NO_POWER, converted({.type = QWORD_TYPE, .text = text, .power_of_two = true})) << text;
}

TEST(FlashIniInput, LiesWithinOneOfTheRanges) {
    const std::vector<unsigned int> ranges = {2, 3, 5, 9, 9};
    for (const char* text : {"3", "4", "5", "9"})
        EXPECT_EQ(text, converted({.text = text, .ranges = ranges}));
    for (const char* text : {"0", "2", "6", "8", "10", "-1"})
        EXPECT_EQ(OUT_OF_RANGE, converted({.text = text, .ranges = ranges})) << text;
}

TEST(FlashIniInput, LiesWithinNoRangeOfAnEmptyListOrOfLimitsTheWrongWayRound) {
    EXPECT_EQ(OUT_OF_RANGE, converted({.text = "0", .ranges = {0}}));
    EXPECT_EQ(OUT_OF_RANGE, converted({.text = "4", .ranges = {1, 5, 3}}));
}

TEST(FlashIniInput, IsComparedWithLimitsCutToTheType) {
    EXPECT_EQ("255", converted({.type = BYTE_TYPE, .text = "-1", .ranges = {1, 0xFFFFFFFF, 0xFFFFFFFF}}));
    EXPECT_EQ("3", converted({.type = WORD_TYPE, .text = "3", .ranges = {1, 0x10002, 0x20003}}));
    EXPECT_EQ("4294967295", converted({.type = QWORD_TYPE, .text = "0xFFFFFFFF", .ranges = {1, 0, 0xFFFFFFFF}}));
    EXPECT_EQ(OUT_OF_RANGE, converted({.type = QWORD_TYPE, .text = "0x100000000", .ranges = {1, 0, 0xFFFFFFFF}}));
}

TEST(FlashIniInput, HitsNoForbiddenPattern) {
    const std::vector<unsigned int> forbidden = {2, 0x0F, 0x03, 0xF0, 0x50};
    for (const char* text : {"0x00", "0x34", "0x65", "0xFF"})
        EXPECT_EQ(std::to_string(std::stoul(text, nullptr, 16)), converted({.text = text, .forbidden = forbidden}));
    for (const char* text : {"0x03", "0x13", "0x50", "0x5F", "0x53", "0xFFFFFF53"})
        EXPECT_EQ(HIT, converted({.text = text, .forbidden = forbidden})) << text;
}

TEST(FlashIniInput, HitsNothingOfAnEmptyListAndEverythingUnderAnEmptyMask) {
    EXPECT_EQ("1", converted({.text = "1", .forbidden = {0}}));
    EXPECT_EQ(HIT, converted({.text = "1", .forbidden = {1, 0, 0}}));
}

TEST(FlashIniInput, IsComparedWithPatternsCutToTheType) {
    EXPECT_EQ(HIT, converted({.type = BYTE_TYPE, .text = "-1", .forbidden = {1, 0xFFFFFFFF, 0xFFFFFFFF}}));
    EXPECT_EQ(HIT, converted({.type = BYTE_TYPE, .text = "1", .forbidden = {1, 0x0FF, 0x101}}));
    EXPECT_EQ("4294967296", converted({.type = QWORD_TYPE, .text = "0x100000000", .forbidden = {1, 1, 1}}));
    EXPECT_EQ(HIT, converted({.type = QWORD_TYPE, .text = "0x100000001", .forbidden = {1, 1, 1}}));
}

TEST(FlashIniInput, BecomesTheBitAtItsPosition) {
    EXPECT_EQ("1", converted({.type = BYTE_TYPE, .text = "0", .bit_position = true}));
    EXPECT_EQ("128", converted({.type = BYTE_TYPE, .text = "7", .bit_position = true}));
    EXPECT_EQ("32768", converted({.type = WORD_TYPE, .text = "15", .bit_position = true}));
    EXPECT_EQ("2147483648", converted({.type = DWORD_TYPE, .text = "31", .bit_position = true}));
    EXPECT_EQ("9223372036854775808", converted({.type = QWORD_TYPE, .text = "63", .bit_position = true}));
}

TEST(FlashIniInput, HasNoBitPastItsType) {
    EXPECT_EQ(OVERFLOW_REASON, converted({.type = BYTE_TYPE, .text = "8", .bit_position = true}));
    EXPECT_EQ(OVERFLOW_REASON, converted({.type = BYTE_TYPE, .text = "64", .bit_position = true}));
    EXPECT_EQ(OVERFLOW_REASON, converted({.type = WORD_TYPE, .text = "16", .bit_position = true}));
    EXPECT_EQ(OVERFLOW_REASON, converted({.type = DWORD_TYPE, .text = "32", .bit_position = true}));
    EXPECT_EQ(OVERFLOW_REASON, converted({.type = QWORD_TYPE, .text = "64", .bit_position = true}));
    EXPECT_EQ(OVERFLOW_REASON, converted({.type = QWORD_TYPE, .text = "0x100000000", .bit_position = true}));
}

TEST(FlashIniInput, OfABitPositionIsNotMultiplied) {
    EXPECT_EQ("8", converted({.text = "3", .bit_position = true, .multiple = 1000}));
    EXPECT_EQ("8", converted({.text = "3", .bit_position = true, .multiple = 0}));
}

TEST(FlashIniInput, OfMinusOneIsNoBitPosition) {
    EXPECT_EQ("65535", converted({.type = WORD_TYPE, .text = "-1", .bit_position = true}));
    EXPECT_EQ("255", converted({.type = BYTE_TYPE, .text = "255", .bit_position = true}));
    EXPECT_EQ(OVERFLOW_REASON, converted({.type = WORD_TYPE, .text = "-1", .bit_position = true, .multiple = 2}));
    EXPECT_REPORT(converted({.text = "-1", .bit_position = true, .multiple = 0}), "multiple != 0", IN_FLASH_INI);
}

TEST(FlashIniInput, IsMultiplied) {
    EXPECT_EQ("1048576", converted({.text = "1024", .multiple = 1024}));
    EXPECT_EQ("0", converted({.text = "0", .multiple = 0xFFFFFFFF}));
    EXPECT_EQ("254", converted({.type = BYTE_TYPE, .text = "127", .multiple = 2}));
    EXPECT_EQ(OVERFLOW_REASON, converted({.type = BYTE_TYPE, .text = "128", .multiple = 2}));
    EXPECT_EQ(OVERFLOW_REASON, converted({.type = DWORD_TYPE, .text = "4", .multiple = 0x40000000}));
    EXPECT_EQ("4294967296", converted({.type = QWORD_TYPE, .text = "4", .multiple = 0x40000000}));
}

TEST(FlashIniInput, OverflowsPastSixtyFourBits) {
    for (const auto type : {BYTE_TYPE, WORD_TYPE, DWORD_TYPE, QWORD_TYPE})
        for (const unsigned int multiple : {2U, 3U, 0x80000000U, 0xFFFFFFFFU})
            EXPECT_EQ(OVERFLOW_REASON, converted({.type = type, .text = "-1", .multiple = multiple}));
    EXPECT_EQ("18446744073709551614", converted({.type = QWORD_TYPE, .text = "0x7FFFFFFFFFFFFFFF", .multiple = 2}));
    EXPECT_EQ(OVERFLOW_REASON, converted({.type = QWORD_TYPE, .text = "0x8000000000000000", .multiple = 2}));
    // 0x100000001 * 0xFFFFFFFF is 2^64 - 1.
    EXPECT_EQ("18446744073709551615", converted({.type = QWORD_TYPE, .text = "0x100000001", .multiple = 0xFFFFFFFF}));
    EXPECT_EQ(OVERFLOW_REASON, converted({.type = QWORD_TYPE, .text = "0x100000002", .multiple = 0xFFFFFFFF}));
}

TEST(FlashIniInput, IsNeverMultipliedByZero) {
    EXPECT_REPORT(converted({.text = "5", .multiple = 0}), "multiple != 0", IN_FLASH_INI);
}

TEST(FlashIniInput, IsRefusedForTheFirstReasonThatApplies) {
    // Wrong in every way; then one reason less at a time.
    INPUT input = {BYTE_TYPE, "x", true, true, {0}, {1, 0, 0}, true, 0};
    EXPECT_EQ(INVALID, converted(input));
    input.text = "1FF";
    EXPECT_EQ(TOO_LARGE, converted(input));
    input.text = "FC";
    EXPECT_EQ(NO_POWER, converted(input));
    input.power_of_two = false;
    EXPECT_EQ(OUT_OF_RANGE, converted(input));
    input.ranges = {1, 0, 0xFF};
    EXPECT_EQ(HIT, converted(input));
    input.forbidden = {};
    EXPECT_EQ(OVERFLOW_REASON, converted(input));
    input.text = "3";
    EXPECT_EQ("8", converted(input));
}

TEST(FlashIniInput, IsCheckedBeforeItIsScaled) {
    EXPECT_EQ("3000", converted({.text = "3", .ranges = {1, 3, 3}, .multiple = 1000}));
    EXPECT_EQ("8", converted({.text = "3", .forbidden = {1, 0xFF, 8}, .bit_position = true}));
    EXPECT_EQ("48", converted({.text = "4", .power_of_two = true, .multiple = 12}));
}

} // namespace
