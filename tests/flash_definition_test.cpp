// The stored text of user-defined flashes: six bits a character, the tag, the field readers, the list. Expected values
// are literals worked out from the format, or those of the plain model in support/definition_model.h.
#include "definition_model.h"
#include "fixtures.h"
#include "report.h"
#include "tovren_flash_manager.h"
#include "tovren_standalone_host.h"

#include <array>
#include <gtest/gtest.h>
#include <random>
#include <sstream>

namespace {

using M = TOVREN_FLASH_MANAGER;

constexpr char IN_DEFINITION[] = "pgm/tovren/tovren_flash_manager_definition.cpp";
constexpr char VERSION_TEXT[] = "Morvath Version: 7.1.0 SP2 Build 345";
constexpr char ALPHABET[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz@-";

constexpr char COMPRESSION_MESSAGE[] = "Fail to generate INI because of compression failure\n";
constexpr char ALPHABET_MESSAGE[] = "Invalid INI decoding\n";
constexpr char DECOMPRESSION_MESSAGE[] = "Fail to generate INI because of decompression failure\n";

class FlashDefinition : public HOST_TEST {
protected:
    FlashDefinition() { TOVREN_STANDALONE_HOST::set_version("7.1.0", 2, 345); }
    ~FlashDefinition() override { TOVREN_STANDALONE_HOST::reset_version(); }
};

// A result and what was printed on the way.
struct OUTCOME {
    std::string result;
    std::string printed;
    bool operator==(const OUTCOME&) const = default;
};

void PrintTo(const OUTCOME& outcome, std::ostream* stream) {
    *stream << testing::PrintToString(outcome.result) << ", printed " << testing::PrintToString(outcome.printed);
}

OUTCOME encoded(const std::string& list) {
    OUTCOME outcome;
    outcome.printed = standard_output_of([&] { outcome.result = M::encode_ini(list); });
    return outcome;
}

OUTCOME decoded(const std::string& text) {
    OUTCOME outcome;
    outcome.printed = standard_output_of([&] { outcome.result = M::decode_ini(text); });
    return outcome;
}

// Lists of the characters that definitions are made of, some of them dense, some repetitive.
std::vector<std::string> random_lists(unsigned int count, size_t longest) {
    static constexpr char CHARACTERS[] = "@#;0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ .-";
    std::mt19937 random(20240917);
    std::vector<std::string> lists;
    for (unsigned int i = 0; i < count; ++i) {
        std::string list(8 + random() % (longest - 8), '@');
        const size_t variety =
            2 + random() % (sizeof CHARACTERS - 2); // of one character they would be too long to decode
        for (char& c : list)
            c = CHARACTERS[random() % variety];
        lists.push_back(list);
    }
    return lists;
}

// ---- encoding ----

TEST_F(FlashDefinition, EncodesTheHeaderOfAStreamLeastSignificantBitFirst) {
    // 78 9C: bits 000111 100011 1001.. from the least significant one, that is 56 and 49.
    EXPECT_EQ("un", encoded(DEFINITION().text()).result.substr(0, 2));
}

TEST_F(FlashDefinition, EncodesAsTheModelDoes) {
    for (const std::string& list : random_lists(400, 700))
        EXPECT_EQ(model_encoded(list), M::encode_ini(list)) << list;
}

TEST_F(FlashDefinition, EncodesEveryRemainderOfBitsIntoTheRoundedUpNumberOfCharacters) {
    std::array<bool, 3> seen = {};
    for (size_t size = 8; size < 24; ++size) {
        const std::string list = std::string("ABCDEFGHIJKLMNOPQRSTUVWX").substr(0, size);
        const size_t stream_size = model_stream(list).size();
        EXPECT_EQ((8 * stream_size + 5) / 6, M::encode_ini(list).size());
        EXPECT_EQ(list, M::decode_ini(M::encode_ini(list)));
        seen.at(stream_size % 3) = true;
    }
    EXPECT_EQ((std::array{true, true, true}), seen);
}

TEST_F(FlashDefinition, EncodesIntoAtMostTwiceTheSizeOfTheText) {
    // Seven letters take 15 bytes: a header of 2, a block of 9 (3 + 7 * 8 + 7 bits), a check value of 4.
    ASSERT_EQ(16U, model_stream("ABCDEFGH").size());
    ASSERT_EQ("", model_stream("ABCDEFG"));
    EXPECT_EQ((OUTCOME{model_encoded("ABCDEFGH"), ""}), encoded("ABCDEFGH"));
    EXPECT_EQ((OUTCOME{"", COMPRESSION_MESSAGE}), encoded("ABCDEFG"));
}

TEST_F(FlashDefinition, DoesNotEncodeAnEmptyOrAVeryShortText) {
    EXPECT_EQ((OUTCOME{"", COMPRESSION_MESSAGE}), encoded(""));
    EXPECT_EQ((OUTCOME{"", COMPRESSION_MESSAGE}), encoded("A"));
}

TEST_F(FlashDefinition, EncodesWithTheCharactersOfTheAlphabetOnly) {
    std::string all;
    for (const std::string& list : random_lists(50, 700))
        all += M::encode_ini(list);
    EXPECT_EQ(std::string::npos, all.find_first_not_of(ALPHABET));
    for (const char character : std::string(ALPHABET))
        EXPECT_NE(std::string::npos, all.find(character)) << character;
}

// ---- decoding ----

TEST_F(FlashDefinition, DecodesAStreamThatWasMadeByHand) {
    // 78 01, one stored block of 3 bytes (01 03 00 FC FF), "@A@", Adler-32 0x018500C2: 14 bytes, 19 characters.
    EXPECT_EQ((OUTCOME{"@A@", ""}), decoded("u5G0300--3KG05GX08C"));
}

TEST_F(FlashDefinition, DecodesWhatWasEncoded) {
    for (const std::string& list : random_lists(400, 700)) {
        const std::string text = M::encode_ini(list);
        EXPECT_EQ(model_decoded(text), M::decode_ini(text)) << list;
        EXPECT_EQ(list, M::decode_ini(text));
    }
}

TEST_F(FlashDefinition, DecodesAStreamWithAZeroByteOfRoundingBehindIt) {
    unsigned int rounded_count = 0;
    for (const std::string& list : random_lists(60, 300)) {
        const std::string text = model_encoded(list);
        const size_t stream_size = model_stream(list).size();
        if (text.empty() || model_bytes(text).size() == stream_size)
            continue;
        ++rounded_count;
        EXPECT_EQ(stream_size + 1, model_bytes(text).size());
        EXPECT_EQ('\0', model_bytes(text).back());
        EXPECT_EQ((OUTCOME{list, ""}), decoded(text));
    }
    EXPECT_LT(20U, rounded_count);
}

TEST_F(FlashDefinition, DecodesNoTextWithACharacterOutsideTheAlphabet) {
    const std::string good = model_encoded(DEFINITION().text());
    for (int byte = 0; byte < 256; ++byte) {
        const char character = static_cast<char>(byte);
        if (byte != 0 && std::string(ALPHABET).find(character) != std::string::npos)
            continue;
        for (const size_t place : {size_t{0}, good.size() / 2, good.size()})
            EXPECT_EQ((OUTCOME{"", ALPHABET_MESSAGE}), decoded(std::string(good).insert(place, 1, character))) << byte;
    }
}

TEST_F(FlashDefinition, NamesTheFirstBadCharacterOnlyOnce) {
    EXPECT_EQ((OUTCOME{"", ALPHABET_MESSAGE}), decoded("!?=+/"));
}

TEST_F(FlashDefinition, DecodesNoEmptyText) {
    EXPECT_EQ((OUTCOME{"", DECOMPRESSION_MESSAGE}), decoded(""));
}

TEST_F(FlashDefinition, DecodesNoTextThatIsNoStream) {
    for (const char* text : {"0", "un", "0000000000000000", "HelloWorld"})
        EXPECT_EQ((OUTCOME{"", DECOMPRESSION_MESSAGE}), decoded(text)) << text;
}

TEST_F(FlashDefinition, DecodesNoStreamThatIsCut) {
    const std::string good = model_encoded(DEFINITION().text());
    // The last two characters may hold nothing but the end of the check value's last byte.
    for (size_t kept = 0; kept + 2 < good.size(); ++kept)
        EXPECT_EQ((OUTCOME{"", DECOMPRESSION_MESSAGE}), decoded(good.substr(0, kept))) << kept;
}

TEST_F(FlashDefinition, DecodesUpToTwentyTimesTheCompressedSize) {
    bool has_full = false;
    bool has_refused = false;
    for (size_t size = 200; size < 600; ++size) {
        const std::string list(size, 'A');
        const std::string text = model_encoded(list);
        const size_t room = 20 * ((6 * text.size() + 7) / 8);
        EXPECT_EQ(size <= room ? (OUTCOME{list, ""}) : (OUTCOME{"", DECOMPRESSION_MESSAGE}), decoded(text)) << size;
        has_full = has_full || size == room;
        has_refused = has_refused || size == room + 1;
    }
    EXPECT_TRUE(has_full);
    EXPECT_TRUE(has_refused);
}

TEST_F(FlashDefinition, DecodesUpToTheFirstZeroByte) {
    const std::string list("@ABCDEFGHIJ@\0@KLMNOPQRST@", 25);
    EXPECT_EQ((OUTCOME{"@ABCDEFGHIJ@", ""}), decoded(model_encoded(list)));
    EXPECT_EQ((OUTCOME{"", ""}), decoded(model_encoded(std::string("\0@ABCDEFGHIJKL@", 15))));
}

// ---- the tag ----

TEST_F(FlashDefinition, ModelCrcHasTheKnownCheckValue) {
    EXPECT_EQ(0x31C3U, crc16_bit_by_bit("123456789"));
    EXPECT_EQ(0xFBA2U, crc16_bit_by_bit(VERSION_TEXT));
    EXPECT_EQ(0xFFE4U, crc16_bit_by_bit("Morvath Version: 7.1.0 Build 345"));
}

// The key is 0xFBA2: bytes at even places are XORed with 0xA2, those at odd ones with 0xFB. 'A' ^ 0xA2 = 0xE3, and the
// CRC of this one byte is 0xCD4D: 0x4D is the letter M itself; 0xCD = 205 = 7 * 26 + 23 gives 'A' + 23, X. A lane of
// zeros has the CRC 0, letters A and A.
struct TAG_ROW {
    const char* definition;
    const char* tag;
};

// A definition of nine characters has two of them in lane 0; the other lanes have one and a zero.
constexpr TAG_ROW TAGS[] = {
    {"A", "MXAAAAAAAAAAAAAA"},        {"@", "ENAAAAAAAAAAAAAA"},         {"AB", "MXICAAAAAAAAAAAA"},
    {"ABCDEFGH", "MXICPDAVTLOOJRCV"}, {"ABCDEFGHI", "IJTIBJZOLHQAGFQK"}, {"@ACME@QX1@", "KPOXBJPYLHNMQFTH"},
};

TEST_F(FlashDefinition, HasTheTagsOfTheTable) {
    for (const TAG_ROW& row : TAGS) {
        EXPECT_EQ(row.tag, M::gen_ini_password(row.definition)) << row.definition;
        EXPECT_EQ(row.tag, model_tag(row.definition, VERSION_TEXT)) << row.definition;
    }
}

TEST_F(FlashDefinition, HasTheModelsTagForDefinitionsOfEveryLength) {
    for (size_t size = 1; size <= 200; ++size) {
        std::string definition;
        for (size_t i = 0; i < size; ++i)
            definition += static_cast<char>(i * i * 31 + size);
        EXPECT_EQ(model_tag(definition, VERSION_TEXT), M::gen_ini_password(definition)) << size;
    }
}

TEST_F(FlashDefinition, HasATagOfSixteenCapitalLetters) {
    for (const std::string& definition : random_lists(200, 200)) {
        const std::string tag = M::gen_ini_password(definition);
        EXPECT_EQ(16U, tag.size());
        EXPECT_EQ(std::string::npos, tag.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ"));
    }
}

TEST_F(FlashDefinition, HasAnotherTagUnderAnotherVersion) {
    TOVREN_STANDALONE_HOST::set_version("7.1.0", 0, 345);
    EXPECT_EQ("OVAAAAAAAAAAAAAA", M::gen_ini_password("A"));
    EXPECT_EQ("OVOONPUWVJICHDIH", M::gen_ini_password("ABCDEFGH"));
}

TEST_F(FlashDefinition, ReportsAnEmptyDefinition) {
    EXPECT_REPORT(M::gen_ini_password(""), "total_size > 0", IN_DEFINITION);
    EXPECT_REPORT(M::cmp_ini_password("", "ABCDEFGHIJKLMNOP"), "total_size > 0", IN_DEFINITION);
}

TEST_F(FlashDefinition, ComparesATagByteForByte) {
    EXPECT_TRUE(M::cmp_ini_password("ABCDEFGH", "MXICPDAVTLOOJRCV"));
    EXPECT_FALSE(M::cmp_ini_password("ABCDEFGH", "mxicpdavtloojrcv"));
    EXPECT_FALSE(M::cmp_ini_password("ABCDEFGI", "MXICPDAVTLOOJRCV"));
    for (size_t place = 0; place < 16; ++place) {
        std::string tag = "MXICPDAVTLOOJRCV";
        tag[place] = 'Z';
        EXPECT_FALSE(M::cmp_ini_password("ABCDEFGH", tag)) << place;
    }
}

TEST_F(FlashDefinition, ComparesNoTagOfAnotherLength) {
    EXPECT_FALSE(M::cmp_ini_password("ABCDEFGH", "MXICPDAVTLOOJRC"));
    EXPECT_FALSE(M::cmp_ini_password("ABCDEFGH", "MXICPDAVTLOOJRCVA"));
    EXPECT_FALSE(M::cmp_ini_password("ABCDEFGH", ""));
}

TEST_F(FlashDefinition, ComputesNothingForATagOfAnotherLength) {
    // An empty definition would be reported.
    EXPECT_NO_REPORT(EXPECT_FALSE(M::cmp_ini_password("", "ABCDEFGHIJKLMNO")));
    EXPECT_NO_REPORT(EXPECT_FALSE(M::cmp_ini_password("", "ABCDEFGHIJKLMNOPQ")));
}

// ---- the version text ----

TEST_F(FlashDefinition, NamesServicePackAndBuild) {
    EXPECT_EQ(VERSION_TEXT, M::get_ini_version_text());
    TOVREN_STANDALONE_HOST::set_version("7.1.0", 1, 345);
    EXPECT_EQ("Morvath Version: 7.1.0 SP1 Build 345", M::get_ini_version_text());
    TOVREN_STANDALONE_HOST::set_version("12.0", 255, 65535);
    EXPECT_EQ("Morvath Version: 12.0 SP255 Build 65535", M::get_ini_version_text());
}

TEST_F(FlashDefinition, NamesNoServicePackZero) {
    TOVREN_STANDALONE_HOST::set_version("7.1.0", 0, 0);
    EXPECT_EQ("Morvath Version: 7.1.0 Build 0", M::get_ini_version_text());
}

TEST_F(FlashDefinition, NamesTheVersionUpToItsFirstZeroByte) {
    TOVREN_STANDALONE_HOST::set_version(std::string("7.1\0.0", 6), 0, 1);
    EXPECT_EQ("Morvath Version: 7.1 Build 1", M::get_ini_version_text());
}

// "1.2.3" has the build 10203.
std::string project_build() {
    std::istringstream version(PROJECT_VERSION);
    unsigned int major = 0;
    unsigned int minor = 0;
    unsigned int patch = 0;
    char dot = ' ';
    version >> major >> dot >> minor >> dot >> patch;
    return " Build " + std::to_string(major * 10000 + minor * 100 + patch);
}

TEST_F(FlashDefinition, NamesTheProjectsVersionOrWhatReplacesIt) {
    TOVREN_STANDALONE_HOST::reset_version();
    EXPECT_EQ("Morvath Version: " PROJECT_VERSION + project_build(), M::get_ini_version_text());
    TOVREN_STANDALONE_HOST::set_setting("TOVREN_VERSION_TEXT", "8.8");
    EXPECT_EQ("Morvath Version: 8.8" + project_build(), M::get_ini_version_text());
    const SCOPED_ENVIRONMENT other("TOVREN_VERSION_TEXT", "9.9");
    EXPECT_EQ("Morvath Version: 9.9" + project_build(), M::get_ini_version_text());
}

// ---- fields ----

// All fields of a text from a position on, and where it ends: "ABC 4".
std::string fields_of(const std::string& definition, size_t position) {
    std::string all;
    std::string field;
    while (M::get_string_from_ini(definition, field, position))
        all += field + " ";
    EXPECT_EQ("", field);
    return all + std::to_string(position);
}

TEST_F(FlashDefinition, ReadsAFieldInUpperCaseAndStopsAtItsEnd) {
    std::string field = "former";
    size_t position = 0;
    EXPECT_TRUE(M::get_string_from_ini("@abc@", field, position));
    EXPECT_EQ("ABC", field);
    EXPECT_EQ(4U, position);
    EXPECT_FALSE(M::get_string_from_ini("@abc@", field, position));
    EXPECT_EQ("", field);
    EXPECT_EQ(4U, position);
}

TEST_F(FlashDefinition, ReadsAFieldAtAPositionOfTheOther64BitType) {
    std::string field;
    QWORD position = 2;
    EXPECT_TRUE(M::get_string_from_ini("a @bc@ @d@", field, position));
    EXPECT_EQ("BC", field);
    EXPECT_EQ(5U, position);
}

TEST_F(FlashDefinition, ReadsFieldAfterField) {
    EXPECT_EQ("A BC D 7", fields_of("@A@BC@D@", 0));
    EXPECT_EQ("  2", fields_of("@@@", 0)); // two empty ones
    EXPECT_EQ("BC 5", fields_of("@A@BC@", 1));
    EXPECT_EQ("A 4", fields_of("xy@A@zz", 0));
}

TEST_F(FlashDefinition, ReadsNoFieldWithoutBothSigns) {
    EXPECT_EQ("0", fields_of("", 0));
    EXPECT_EQ("0", fields_of("ABC", 0));
    EXPECT_EQ("0", fields_of("@", 0));
    EXPECT_EQ("0", fields_of("@ABC", 0));
    EXPECT_EQ("0", fields_of("ABC@", 0));
    EXPECT_EQ("5", fields_of("@ABC@", 5));
    EXPECT_EQ("99", fields_of("@ABC@", 99));
    EXPECT_EQ(std::to_string(std::string::npos), fields_of("@ABC@", std::string::npos));
}

TEST_F(FlashDefinition, RaisesLettersOfAsciiOnly) {
    EXPECT_EQ("AZ[`{\xE4 7", fields_of("@az[`{\xE4@", 0));
}

TEST_F(FlashDefinition, Reads33FieldsOfAWholeDefinition) {
    const DEFINITION definition;
    std::string expected;
    for (const std::string& field : definition.fields)
        expected += field + " ";
    EXPECT_EQ(expected + std::to_string(definition.text().size() - 1), fields_of(definition.text(), 0));
}

TEST_F(FlashDefinition, ReadsFlagsOfOneAndZeroOnly) {
    bool valid = false;
    EXPECT_TRUE(M::get_boolean_from_string("1", valid));
    EXPECT_TRUE(valid);
    EXPECT_FALSE(M::get_boolean_from_string("0", valid));
    EXPECT_TRUE(valid);
    for (const char* field : {"Y", "N", "", "2", "01", "1 ", "-1", "TRUE"}) {
        valid = true;
        EXPECT_FALSE(M::get_boolean_from_string(field, valid)) << field;
        EXPECT_FALSE(valid) << field;
    }
}

struct NUMBER_ROW {
    const char* field;
    long long number;
    bool fits_byte;
    bool fits_dword;
};

constexpr NUMBER_ROW NUMBERS[] = {
    {"0", 0, true, true},
    {"255", 255, true, true},
    {"256", 256, false, true},
    {"-1", -1, false, true},
    {"007", 7, true, true},
    {"+5", 5, true, true},
    {"-0", 0, true, true},
    // a sign alone, two signs, no digits at the beginning
    {"", 0, true, true},
    {"-", 0, true, true},
    {"+", 0, true, true},
    {"+-5", 0, true, true},
    {"--5", 0, true, true},
    {"ABC", 0, true, true},
    {"X5", 0, true, true},
    {" 5", 0, true, true},
    // what stands behind the digits
    {"12AB", 12, true, true},
    {"1.8", 1, true, true},
    {"0x10", 0, true, true},
    {"5-5", 5, true, true},
    // 32 bits
    {"2147483648", 2147483648, false, true},
    {"-2147483648", -2147483648, false, true}, // 0x80000000
    {"4294967295", 4294967295, false, true},
    {"4294967296", 4294967296, true, true},   // low 32 bits: 0
    {"4294967551", 4294967551, true, true},   // 255
    {"4294967552", 4294967552, false, true},  // 256
    {"-4294967295", -4294967295, true, true}, // 1
    // 64 bits
    {"9223372036854775807", 9223372036854775807, false, true},
    {"9223372036854775808", 9223372036854775807, false, true},
    {"+99999999999999999999", 9223372036854775807, false, true},
    {"-9223372036854775808", -9223372036854775807 - 1, true, true},
    {"-99999999999999999999", -9223372036854775807 - 1, true, true},
};

TEST_F(FlashDefinition, ReadsTheNumberThatAFieldBeginsWith) {
    for (const NUMBER_ROW& row : NUMBERS) {
        bool valid = !row.fits_byte;
        EXPECT_EQ(row.number, M::get_number_from_string(row.field, 255, valid)) << row.field;
        EXPECT_EQ(row.fits_byte, valid) << row.field;
        valid = !row.fits_dword;
        EXPECT_EQ(row.number, M::get_number_from_string(row.field, 0xFFFFFFFF, valid)) << row.field;
        EXPECT_EQ(row.fits_dword, valid) << row.field;
    }
}

TEST_F(FlashDefinition, AcceptsANumberUpToTheMaximum) {
    bool valid = false;
    M::get_number_from_string("100", 100, valid);
    EXPECT_TRUE(valid);
    M::get_number_from_string("101", 100, valid);
    EXPECT_FALSE(valid);
    M::get_number_from_string("-1", 0xFFFFFFFE, valid);
    EXPECT_FALSE(valid);
    M::get_number_from_string("0", 0, valid);
    EXPECT_TRUE(valid);
}

// ---- the list ----

TEST_F(FlashDefinition, AppendsAnEntryWithItsTag) {
    std::string list;
    M::add_ini_entry(list, "@ACME@QX1@");
    EXPECT_EQ("@ACME@QX1@#KPOXBJPYLHNMQFTH;", list);
    M::add_ini_entry(list, "A");
    EXPECT_EQ("@ACME@QX1@#KPOXBJPYLHNMQFTH;A#MXAAAAAAAAAAAAAA;", list);
}

// "definition/tag/text" of each entry, a line each.
std::string entries_of(const std::string& list) {
    std::string all;
    for (const TOVREN_FLASH_INI_ENTRY& entry : M::get_ini_entries(list))
        all += entry.definition + "/" + entry.tag + "/" + entry.text + "\n";
    return all;
}

TEST_F(FlashDefinition, SplitsAListIntoItsEntries) {
    EXPECT_EQ("", entries_of(""));
    EXPECT_EQ("D/T/D#T;\n", entries_of("D#T;"));
    EXPECT_EQ("D/T/D#T;\nE/U/E#U;\nF/V/F#V;\n", entries_of("D#T;E#U;F#V;"));
}

TEST_F(FlashDefinition, SplitsAnEntryAtItsFirstSigns) {
    EXPECT_EQ("A/B#C/A#B#C;\n", entries_of("A#B#C;"));
    EXPECT_EQ("/T/#T;\n", entries_of("#T;"));
    EXPECT_EQ("D//D#;\n", entries_of("D#;"));
    EXPECT_EQ("//#;\n", entries_of("#;"));
}

TEST_F(FlashDefinition, KeepsTheTextOfAnEntryThatIsNone) {
    EXPECT_EQ("//D\n", entries_of("D"));
    EXPECT_EQ("//D#T\n", entries_of("D#T"));
    EXPECT_EQ("//A;\nB/T/B#T;\n", entries_of("A;B#T;"));
    EXPECT_EQ("D/T/D#T;\n//;\n//E\n", entries_of("D#T;;E"));
}

// ---- the setting's name ----

TEST_F(FlashDefinition, IsStoredUnderANameOf23Characters) {
    const std::string name = M::get_ext_flash_setting_name();
    EXPECT_EQ(23U, name.size());
    EXPECT_EQ(std::string::npos, name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ_"));
    EXPECT_EQ("TOVREN_USER_SPI_FLASHES", name);
}

TEST_F(FlashDefinition, DoesNotShowTheNameInTheLibrary) {
    const std::string library = read_text(TOVREN_LIBRARY);
    ASSERT_NE(std::string::npos, library.find("3rd party SPI support - "));
    EXPECT_EQ(std::string::npos, library.find(M::get_ext_flash_setting_name()));
}

// ---- instances ----

TEST_F(FlashDefinition, NeedsNoLoadedManager) {
    TOVREN_FLASH_MANAGER manager(false, 0, true, false);
    const std::string list = DEFINITION().text() + "#" + manager.gen_ini_password(DEFINITION().text()) + ";";
    EXPECT_EQ(list, manager.decode_ini(manager.encode_ini(list)));
}

} // namespace
