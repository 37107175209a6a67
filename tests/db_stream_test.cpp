// The typed value stream: each value's bytes by hand, the edges of each width, the tags that each reader accepts, and
// what a reader makes of a value that is cut. The flash database's variant is tested through the manager's members,
// the device database's through the shared functions.
#include "bytes.h"
#include "fixtures.h"
#include "report.h"
#include "tovren_db_stream.h"
#include "tovren_flash_manager.h"

#include <gtest/gtest.h>

namespace {

class DbStream : public FLASH_TEST {
protected:
    MANAGER manager = make_generator();

    // What a writer of the manager puts into a buffer of exactly `size` bytes.
    template <typename WRITER>
    BYTES written(size_t size, WRITER&& writer) {
        BYTES bytes(size, 0xEE);
        unsigned char* buffer = bytes.data();
        unsigned int index = 0;
        writer(&buffer, index);
        EXPECT_EQ(size, index);
        EXPECT_EQ(bytes.data(), buffer);
        return bytes;
    }

    BYTES written_value(const std::string& text, unsigned int count) {
        return written(count + 1, [&](unsigned char** buffer, unsigned int& index) {
            manager->dump_value_to_database(buffer, index, text, count);
        });
    }

    BYTES written_text(const std::string& text) {
        return written(text.size() + 2, [&](unsigned char** buffer, unsigned int& index) {
            manager->dump_string_to_database(buffer, index, text);
        });
    }
};

// The bytes with as many zeros behind them as a payload has.
BYTES with_slack(BYTES bytes) {
    bytes.resize(bytes.size() + DB_STREAM_SLACK);
    return bytes;
}

constexpr char BYTE_TAG[] = "type == TOVREN_MANAGER_BYTE";
constexpr char WORD_TAG[] = "type == TOVREN_MANAGER_WORD";
constexpr char BOOL_TAG[] = "type == TOVREN_MANAGER_BOOL";
constexpr char FLASH_DWORD_TAG[] = "type == TOVREN_MANAGER_DWORD";
constexpr char FLASH_STRING_TAG[] = "type == TOVREN_MANAGER_STRING";
constexpr char DEVICE_DWORD_TAG[] =
    "type == TOVREN_MANAGER_DEVID_ENUM || type == TOVREN_MANAGER_DWORD || type == TOVREN_MANAGER_ENUM";
constexpr char DEVICE_STRING_TAG[] = "type == TOVREN_MANAGER_DEVID_STR || type == TOVREN_MANAGER_STRING";

// ---- tags ----

TEST(DbStreamTags, HaveTheNumbersThatAreOnDisk) {
    EXPECT_EQ(0, TOVREN_MANAGER_DEVID_ENUM);
    EXPECT_EQ(1, TOVREN_MANAGER_DEVID_STR);
    EXPECT_EQ(2, TOVREN_MANAGER_STRING);
    EXPECT_EQ(3, TOVREN_MANAGER_BOOL);
    EXPECT_EQ(4, TOVREN_MANAGER_BYTE);
    EXPECT_EQ(5, TOVREN_MANAGER_WORD);
    EXPECT_EQ(6, TOVREN_MANAGER_DWORD);
    EXPECT_EQ(7, TOVREN_MANAGER_ENUM);
    EXPECT_EQ(8, TOVREN_MANAGER_FAMILY_TBL);
    EXPECT_EQ(10, TOVREN_MANAGER_DEVICE_TBL);
    EXPECT_EQ(11, TOVREN_MANAGER_PART_TBL);
    EXPECT_EQ(12, TOVREN_MANAGER_TYPE_MAX);
}

// ---- a bare 32-bit number ----

TEST_F(DbStream, ReadsABareNumberLeastSignificantByteFirst) {
    const BYTES data = {0xEE, 0x78, 0x56, 0x34, 0x12};
    unsigned int index = 1;
    EXPECT_EQ(0x12345678U, manager->get_dword(data.data(), index));
    EXPECT_EQ(5U, index);
}

TEST_F(DbStream, ReadsTheHighestBareNumber) {
    const BYTES data = {0xFF, 0xFF, 0xFF, 0xFF};
    unsigned int index = 0;
    EXPECT_EQ(0xFFFFFFFFU, manager->get_dword(data.data(), index));
}

TEST_F(DbStream, WritesABareNumberLeastSignificantByteFirst) {
    const BYTES bytes = written(4, [&](unsigned char** buffer, unsigned int& index) {
        manager->dump_dword_database(buffer, index, 0x12345678);
    });
    EXPECT_EQ("78 56 34 12", hex_text(bytes));
}

TEST_F(DbStream, WritersWriteAtThePositionGivenAndNowhereElse) {
    BYTES bytes(8, 0xEE);
    unsigned char* buffer = bytes.data();
    unsigned int index = 3;
    manager->dump_value_to_database(&buffer, index, "258", 2);
    EXPECT_EQ(6U, index);
    EXPECT_EQ("EE EE EE 05 02 01 EE EE", hex_text(bytes));
}

// ---- flags ----

TEST_F(DbStream, ReadsZeroAndOneAsFlags) {
    const BYTES data = {3, 1, 3, 0};
    unsigned int index = 0;
    bool value = false;
    manager->get_bool_data(data.data(), index, &value);
    EXPECT_TRUE(value);
    manager->get_bool_data(data.data(), index, &value);
    EXPECT_FALSE(value);
    EXPECT_EQ(4U, index);
}

TEST_F(DbStream, RefusesAnyOtherByteAsAFlag) {
    for (unsigned int byte = 2; byte < 256; ++byte) {
        const BYTES data = {3, static_cast<unsigned char>(byte)};
        unsigned int index = 0;
        bool value = false;
        EXPECT_REPORT(manager->get_bool_data(data.data(), index, &value), "value == 0 || value == 1", IN_DB_STREAM);
    }
}

TEST_F(DbStream, WritesTrueAndFalse) {
    EXPECT_EQ("03 01", hex_text(written(2, [&](unsigned char** buffer, unsigned int& index) {
                  manager->dump_bool_to_database(buffer, index, "TRUE");
              })));
    EXPECT_EQ("03 00", hex_text(written(2, [&](unsigned char** buffer, unsigned int& index) {
                  manager->dump_bool_to_database(buffer, index, "FALSE");
              })));
}

TEST_F(DbStream, WritesNoOtherTextAsAFlag) {
    for (const char* text : {"", "true", "false", "True", "1", "0", "TRUE ", " FALSE", "T"}) {
        BYTES bytes(2);
        unsigned char* buffer = bytes.data();
        unsigned int index = 0;
        EXPECT_REPORT(manager->dump_bool_to_database(&buffer, index, text), R"(string == "FALSE" || string == "TRUE")",
                      IN_FLASH_GENERATE)
            << text;
    }
}

// ---- numbers ----

TEST_F(DbStream, ReadsTheEdgesOfAByte) {
    const BYTES data = {4, 0x00, 4, 0xFF};
    unsigned int index = 0;
    unsigned char value = 7;
    manager->get_byte_data(data.data(), index, &value);
    EXPECT_EQ(0, value);
    manager->get_byte_data(data.data(), index, &value);
    EXPECT_EQ(255, value);
    EXPECT_EQ(4U, index);
}

TEST_F(DbStream, ReadsTheEdgesOfAWord) {
    const BYTES data = {5, 0x34, 0x12, 5, 0x00, 0x00, 5, 0xFF, 0xFF};
    unsigned int index = 0;
    unsigned short value = 7;
    manager->get_word_data(data.data(), index, &value);
    EXPECT_EQ(0x1234, value);
    manager->get_word_data(data.data(), index, &value);
    EXPECT_EQ(0, value);
    manager->get_word_data(data.data(), index, &value);
    EXPECT_EQ(0xFFFF, value);
    EXPECT_EQ(9U, index);
}

TEST_F(DbStream, ReadsTheEdgesOfADword) {
    const BYTES data = {6, 0x78, 0x56, 0x34, 0x12, 6, 0, 0, 0, 0, 6, 0xFF, 0xFF, 0xFF, 0xFF};
    unsigned int index = 0;
    unsigned int value = 7;
    manager->get_dword_data(data.data(), index, &value);
    EXPECT_EQ(0x12345678U, value);
    manager->get_dword_data(data.data(), index, &value);
    EXPECT_EQ(0U, value);
    manager->get_dword_data(data.data(), index, &value);
    EXPECT_EQ(0xFFFFFFFFU, value);
    EXPECT_EQ(15U, index);
}

TEST_F(DbStream, WritesNumbersOfEachWidth) {
    EXPECT_EQ("04 00", hex_text(written_value("0", 1)));
    EXPECT_EQ("04 FF", hex_text(written_value("255", 1)));
    EXPECT_EQ("05 00 00", hex_text(written_value("0", 2)));
    EXPECT_EQ("05 FF FF", hex_text(written_value("65535", 2)));
    EXPECT_EQ("05 34 12", hex_text(written_value("0x1234", 2)));
    EXPECT_EQ("06 00 00 00 00", hex_text(written_value("0", 4)));
    EXPECT_EQ("06 FF FF FF FF", hex_text(written_value("4294967295", 4)));
    EXPECT_EQ("06 78 56 34 12", hex_text(written_value("0X12345678", 4)));
}

TEST_F(DbStream, CutsANumberToItsWidth) {
    EXPECT_EQ("04 2C", hex_text(written_value("300", 1)));
    EXPECT_EQ("05 01 00", hex_text(written_value("65537", 2)));
    EXPECT_EQ("05 78 56", hex_text(written_value("0x12345678", 2)));
}

TEST_F(DbStream, WritesNoOtherWidthThanOneTwoAndFour) {
    for (const unsigned int count : {0U, 3U, 5U, 8U, 0xFFFFFFFFU}) {
        BYTES bytes(16);
        unsigned char* buffer = bytes.data();
        unsigned int index = 0;
        EXPECT_REPORT(manager->dump_value_to_database(&buffer, index, "1", count),
                      "count == 1 || count == 2 || count == 4", IN_FLASH_GENERATE);
    }
}

TEST_F(DbStream, WritesNoNumberFromAnEmptyText) {
    BYTES bytes(16);
    unsigned char* buffer = bytes.data();
    unsigned int index = 0;
    EXPECT_REPORT(manager->dump_value_to_database(&buffer, index, "", 1), "string.size() > 0", IN_FLASH_GENERATE);
    EXPECT_REPORT(manager->dump_value_to_database(&buffer, index, "", 3), "string.size() > 0", IN_FLASH_GENERATE);
}

// ---- texts ----

TEST_F(DbStream, ReadsAText) {
    const BYTES data = {2, 3, 'Q', 'X', '1', 2, 1, 0x00};
    unsigned int index = 0;
    std::string text = "former";
    manager->get_string_data(data.data(), index, false, &text);
    EXPECT_EQ("QX1", text);
    manager->get_string_data(data.data(), index, false, &text);
    EXPECT_EQ(std::string(1, '\0'), text);
    EXPECT_EQ(8U, index);
}

TEST_F(DbStream, ReadsTheLongestText) {
    const BYTES data = join({{2, 255}, BYTES(255, 'x')});
    unsigned int index = 0;
    std::string text;
    manager->get_string_data(data.data(), index, false, &text);
    EXPECT_EQ(std::string(255, 'x'), text);
    EXPECT_EQ(257U, index);
}

TEST_F(DbStream, ReadsAnEmptyTextWhereItIsAllowed) {
    const BYTES data = {2, 0};
    unsigned int index = 0;
    std::string text = "former";
    manager->get_string_data(data.data(), index, true, &text);
    EXPECT_EQ("", text);
    EXPECT_EQ(2U, index);
}

TEST_F(DbStream, RefusesAnEmptyTextWhereItIsNotAllowed) {
    const BYTES data = {2, 0};
    unsigned int index = 0;
    std::string text;
    EXPECT_REPORT(manager->get_string_data(data.data(), index, false, &text), "allow_empty", IN_DB_STREAM);
}

TEST_F(DbStream, LooksAtTheTagBeforeTheLengthOfAText) {
    const BYTES data = {4, 0};
    unsigned int index = 0;
    std::string text;
    EXPECT_REPORT(manager->get_string_data(data.data(), index, false, &text), FLASH_STRING_TAG, IN_DB_STREAM);
}

TEST_F(DbStream, WritesAText) {
    EXPECT_EQ("02 03 51 58 31", hex_text(written_text("QX1")));
    EXPECT_EQ("02 01 FF", hex_text(written_text("\xFF")));
    EXPECT_EQ(join({{2, 255}, BYTES(255, 'x')}), written_text(std::string(255, 'x')));
}

TEST_F(DbStream, WritesTheLowEightBitsOfALongTextsLength) {
    EXPECT_EQ(join({{2, 0}, BYTES(256, 'x')}), written_text(std::string(256, 'x')));
    EXPECT_EQ(join({{2, 44}, BYTES(300, 'x')}), written_text(std::string(300, 'x')));
}

TEST_F(DbStream, WritesNoEmptyText) {
    BYTES bytes(2);
    unsigned char* buffer = bytes.data();
    unsigned int index = 0;
    EXPECT_REPORT(manager->dump_string_to_database(&buffer, index, ""), "string.size() > 0", IN_FLASH_GENERATE);
}

// ---- which tags are accepted ----

TEST_F(DbStream, EachFlashReaderAcceptsItsOwnTagOnly) {
    for (unsigned int tag = 0; tag < 256; ++tag) {
        const BYTES data = {static_cast<unsigned char>(tag), 1, 'x', 0, 0};
        unsigned int index = 0;
        bool flag = false;
        unsigned char byte = 0;
        unsigned short word = 0;
        unsigned int dword = 0;
        std::string text;
        if (tag != 2) {
            EXPECT_REPORT(manager->get_string_data(data.data(), index = 0, true, &text), FLASH_STRING_TAG,
                          IN_DB_STREAM);
        }
        if (tag != 3) {
            EXPECT_REPORT(manager->get_bool_data(data.data(), index = 0, &flag), BOOL_TAG, IN_DB_STREAM);
        }
        if (tag != 4) {
            EXPECT_REPORT(manager->get_byte_data(data.data(), index = 0, &byte), BYTE_TAG, IN_DB_STREAM);
        }
        if (tag != 5) {
            EXPECT_REPORT(manager->get_word_data(data.data(), index = 0, &word), WORD_TAG, IN_DB_STREAM);
        }
        if (tag != 6) {
            EXPECT_REPORT(manager->get_dword_data(data.data(), index = 0, &dword), FLASH_DWORD_TAG, IN_DB_STREAM);
        }
    }
}

TEST(DeviceDbStream, ReadsA32BitNumberBehindThreeTags) {
    for (unsigned int tag = 0; tag < 256; ++tag) {
        const BYTES data = {static_cast<unsigned char>(tag), 0x78, 0x56, 0x34, 0x12};
        unsigned int index = 0;
        if (tag == 0 || tag == 6 || tag == 7) {
            EXPECT_EQ(0x12345678U, db_get_dword_value(TOVREN_DEVICE_DB_FORMAT, data.data(), index));
            EXPECT_EQ(5U, index);
        } else {
            EXPECT_REPORT(db_get_dword_value(TOVREN_DEVICE_DB_FORMAT, data.data(), index), DEVICE_DWORD_TAG,
                          IN_DB_STREAM);
        }
    }
}

TEST(DeviceDbStream, ReadsATextBehindTwoTags) {
    for (unsigned int tag = 0; tag < 256; ++tag) {
        const BYTES data = {static_cast<unsigned char>(tag), 2, 'Q', 'X'};
        unsigned int index = 0;
        std::string text;
        if (tag == 1 || tag == 2) {
            db_get_string(TOVREN_DEVICE_DB_FORMAT, data.data(), index, false, text);
            EXPECT_EQ("QX", text);
            EXPECT_EQ(4U, index);
        } else {
            EXPECT_REPORT(db_get_string(TOVREN_DEVICE_DB_FORMAT, data.data(), index, false, text), DEVICE_STRING_TAG,
                          IN_DB_STREAM);
        }
    }
}

TEST(DeviceDbStream, RefusesAnEmptyTextWhereItIsNotAllowed) {
    const BYTES data = {1, 0};
    unsigned int index = 0;
    std::string text;
    EXPECT_REPORT(db_get_string(TOVREN_DEVICE_DB_FORMAT, data.data(), index, false, text), "allow_empty", IN_DB_STREAM);
    db_get_string(TOVREN_DEVICE_DB_FORMAT, data.data(), index = 0, true, text);
    EXPECT_EQ("", text);
}

TEST(DeviceDbStream, WritesTextsAndNumbersBehindTheTagsGiven) {
    BYTES bytes(17, 0xEE);
    unsigned char* buffer = bytes.data();
    unsigned int index = 0;
    db_put_string(&buffer, index, TOVREN_MANAGER_DEVID_STR, "QX");
    db_put_string(&buffer, index, TOVREN_MANAGER_STRING, "");
    db_put_tagged_dword(&buffer, index, TOVREN_MANAGER_DEVID_ENUM, 73);
    db_put_tagged_dword(&buffer, index, TOVREN_MANAGER_ENUM, 0xFFFFFFFF);
    EXPECT_EQ("01 02 51 58 02 00 00 49 00 00 00 07 FF FF FF FF EE", hex_text(bytes));
    EXPECT_EQ(16U, index);
}

// ---- markers ----

TEST_F(DbStream, ConfirmsTheMarkers) {
    const BYTES data = {'E', 'N', 'D', '1', 'E', 'N', 'D', '2'};
    unsigned int index = 0;
    manager->confirm_data_type_end(data.data(), index);
    EXPECT_EQ(4U, index);
    manager->confirm_database_end(data.data(), index);
    EXPECT_EQ(8U, index);
}

TEST_F(DbStream, NamesTheFirstWrongByteOfTheRecordMarker) {
    const char* const texts[] = {"data[index++] == 'E'", "data[index++] == 'N'", "data[index++] == 'D'",
                                 "data[index++] == '1'"};
    for (size_t wrong = 0; wrong < 4; ++wrong) {
        BYTES data = {'E', 'N', 'D', '1'};
        for (size_t position = wrong; position < 4; ++position)
            data[position] = 'x';
        unsigned int index = 0;
        EXPECT_REPORT(manager->confirm_data_type_end(data.data(), index), texts[wrong], IN_DB_STREAM);
    }
}

TEST_F(DbStream, NamesTheFirstWrongByteOfTheDatabaseMarker) {
    const char* const texts[] = {"data[index++] == 'E'", "data[index++] == 'N'", "data[index++] == 'D'",
                                 "data[index++] == '2'"};
    for (size_t wrong = 0; wrong < 4; ++wrong) {
        const BYTES data = with_byte({'E', 'N', 'D', '2'}, wrong, 0);
        unsigned int index = 0;
        EXPECT_REPORT(manager->confirm_database_end(data.data(), index), texts[wrong], IN_DB_STREAM);
    }
}

TEST_F(DbStream, TakesNeitherMarkerForTheOther) {
    const BYTES end1 = text_bytes("END1");
    const BYTES end2 = text_bytes("END2");
    unsigned int index = 0;
    EXPECT_REPORT(manager->confirm_data_type_end(end2.data(), index), "data[index++] == '1'", IN_DB_STREAM);
    EXPECT_REPORT(manager->confirm_database_end(end1.data(), index = 0), "data[index++] == '2'", IN_DB_STREAM);
}

TEST(DbStreamMarkers, AreWrittenAsTheirCharacters) {
    BYTES bytes(8);
    unsigned char* buffer = bytes.data();
    unsigned int index = 0;
    db_put_record_end(&buffer, index);
    db_put_database_end(&buffer, index);
    EXPECT_EQ(text_bytes("END1END2"), bytes);
}

// ---- values that are cut: zeros stand behind a payload, so a cut value is refused or filled up with them ----

TEST_F(DbStream, FillsUpAWordThatIsCut) {
    const BYTES word = {5, 0x34, 0x12};
    const unsigned int expected[] = {0, 0x0000, 0x0034};
    unsigned short value = 0;
    unsigned int index = 0;
    EXPECT_REPORT(manager->get_word_data(with_slack({}).data(), index, &value), WORD_TAG, IN_DB_STREAM);
    for (size_t kept = 1; kept < word.size(); ++kept) {
        manager->get_word_data(with_slack(first(word, kept)).data(), index = 0, &value);
        EXPECT_EQ(expected[kept], value);
        EXPECT_EQ(3U, index);
    }
}

TEST_F(DbStream, FillsUpADwordThatIsCut) {
    const BYTES dword = {6, 0x78, 0x56, 0x34, 0x12};
    const unsigned int expected[] = {0, 0x00000000, 0x00000078, 0x00005678, 0x00345678};
    unsigned int value = 0;
    unsigned int index = 0;
    EXPECT_REPORT(manager->get_dword_data(with_slack({}).data(), index, &value), FLASH_DWORD_TAG, IN_DB_STREAM);
    for (size_t kept = 1; kept < dword.size(); ++kept) {
        manager->get_dword_data(with_slack(first(dword, kept)).data(), index = 0, &value);
        EXPECT_EQ(expected[kept], value);
        EXPECT_EQ(5U, index);
    }
}

TEST_F(DbStream, FillsUpAByteAndAFlagThatAreCut) {
    unsigned char byte = 7;
    bool flag = true;
    unsigned int index = 0;
    EXPECT_REPORT(manager->get_byte_data(with_slack({}).data(), index, &byte), BYTE_TAG, IN_DB_STREAM);
    EXPECT_REPORT(manager->get_bool_data(with_slack({}).data(), index = 0, &flag), BOOL_TAG, IN_DB_STREAM);
    manager->get_byte_data(with_slack({4}).data(), index = 0, &byte);
    manager->get_bool_data(with_slack({3}).data(), index = 0, &flag);
    EXPECT_EQ(0, byte);
    EXPECT_FALSE(flag);
}

TEST_F(DbStream, FillsUpATextThatIsCut) {
    const BYTES longest = join({{2, 255}, BYTES(255, 'x')});
    std::string text;
    unsigned int index = 0;
    EXPECT_REPORT(manager->get_string_data(with_slack({}).data(), index, true, &text), FLASH_STRING_TAG, IN_DB_STREAM);
    manager->get_string_data(with_slack({2}).data(), index = 0, true, &text);
    EXPECT_EQ("", text);
    for (size_t kept = 2; kept < longest.size(); ++kept) {
        manager->get_string_data(with_slack(first(longest, kept)).data(), index = 0, false, &text);
        EXPECT_EQ(std::string(kept - 2, 'x') + std::string(257 - kept, '\0'), text);
        EXPECT_EQ(257U, index);
    }
}

TEST_F(DbStream, RefusesAMarkerThatIsCut) {
    const char* const texts[] = {"data[index++] == 'E'", "data[index++] == 'N'", "data[index++] == 'D'",
                                 "data[index++] == '1'"};
    for (size_t kept = 0; kept < 4; ++kept) {
        unsigned int index = 0;
        EXPECT_REPORT(manager->confirm_data_type_end(with_slack(first(text_bytes("END1"), kept)).data(), index),
                      texts[kept], IN_DB_STREAM);
    }
}

TEST(DeviceDbStream, WalksNoFurtherThanTheZerosBehindAPayload) {
    // The most that zeros satisfy: a text of 255 characters whose length is the last byte there is, then all further
    // members of a record as numbers with the tag 0, then the marker, which they do not.
    const BYTES data = with_slack({1, 255});
    unsigned int index = 0;
    std::string text;
    db_get_string(TOVREN_DEVICE_DB_FORMAT, data.data(), index, true, text);
    for (int member = 0; member < 86; ++member)
        EXPECT_EQ(0U, db_get_dword_value(TOVREN_DEVICE_DB_FORMAT, data.data(), index));
    EXPECT_LT(index, data.size());
    EXPECT_REPORT(db_confirm_record_end(data.data(), index), "data[index++] == 'E'", IN_DB_STREAM);
}

// ---- numbers from texts ----

TEST_F(DbStream, ReadsDecimalAndHexadecimalTexts) {
    bool ok = false;
    EXPECT_EQ(4294967295U, manager->get_dword_from_string("4294967295", &ok));
    EXPECT_TRUE(ok);
    EXPECT_EQ(0x7FFFFFFFU, manager->get_dword_from_string("0x7fffFFFF", nullptr));
    EXPECT_EQ(10U, manager->get_dword_from_string("0010", nullptr));
}

TEST_F(DbStream, ClearsTheFlagForABadNumber) {
    for (const char* text : {"", "12x", "0x", "-1", "4294967296", "0x100000000", " 1", "1 "}) {
        bool ok = true;
        manager->get_dword_from_string(text, &ok);
        EXPECT_FALSE(ok) << text;
    }
}

TEST_F(DbStream, ReportsABadNumberThatNobodyAsksAbout) {
    EXPECT_TRUE(report_of([&] { manager->get_dword_from_string("12x", nullptr); }).has_value());
    EXPECT_TRUE(report_of([&] { manager->get_dword_from_string("", nullptr); }).has_value());
}

// ---- compression and the check field ----

TEST_F(DbStream, KeepsTheBytesBeforeTheOffsetAndCompressesTheRest) {
    const BYTES data = join({text_bytes("HEAD"), BYTES(1000, 'x'), text_bytes("tail")});
    unsigned int size = 0;
    const std::unique_ptr<unsigned char[]> result(
        manager->compress_data(data.data(), 4, static_cast<unsigned int>(data.size()), size));
    const BYTES bytes(result.get(), result.get() + size);
    EXPECT_EQ(text_bytes("HEAD"), first(bytes, 4));
    EXPECT_EQ(BYTES(data.begin() + 4, data.end()), inflated({bytes.begin() + 4, bytes.end()}));
    EXPECT_LT(size, 60U);
}

TEST_F(DbStream, CompressesASingleByte) {
    const BYTES data = {1, 2, 3};
    unsigned int size = 0;
    const std::unique_ptr<unsigned char[]> result(manager->compress_data(data.data(), 2, 3, size));
    EXPECT_EQ(BYTES{3}, inflated({result.get() + 2, result.get() + size}));
}

TEST_F(DbStream, CompressesNothingAtOrBehindTheEnd) {
    const BYTES data(50);
    unsigned int size = 0;
    EXPECT_REPORT(manager->compress_data(data.data(), 50, 50, size), "offset < count", IN_DB_STREAM);
    EXPECT_REPORT(manager->compress_data(data.data(), 51, 50, size), "offset < count", IN_DB_STREAM);
}

TEST_F(DbStream, DecompressesToExactlyTheSizeGiven) {
    const BYTES data = text_bytes("one flash memory");
    const BYTES stream = zlib_stream(data);
    const std::unique_ptr<unsigned char[]> result(
        manager->decompress_data(stream.data(), static_cast<unsigned int>(stream.size()), 16));
    EXPECT_EQ(data, BYTES(result.get(), result.get() + 16));
}

TEST_F(DbStream, DecompressesNothingFromNothingAndNothingToNothing) {
    const BYTES stream = zlib_stream({1});
    const char* text = "decompressed_count > 0 && original_count > 0";
    EXPECT_REPORT(manager->decompress_data(stream.data(), 0, 1), text, IN_DB_STREAM);
    EXPECT_REPORT(manager->decompress_data(stream.data(), static_cast<unsigned int>(stream.size()), 0), text,
                  IN_DB_STREAM);
}

TEST_F(DbStream, RefusesAStreamThatIsLongerShorterOrBroken) {
    const BYTES stream = zlib_stream(text_bytes("one flash memory"));
    const unsigned int size = static_cast<unsigned int>(stream.size());
    const char* zlib_text = "zlib_uncompress(decompressed_data, &new_dcmp_size, data, decompressed_count) == ZLIB_OK";
    EXPECT_REPORT(manager->decompress_data(stream.data(), size, 15), zlib_text, IN_DB_STREAM);
    EXPECT_REPORT(manager->decompress_data(stream.data(), size, 17), "new_dcmp_size == original_count", IN_DB_STREAM);
    EXPECT_REPORT(manager->decompress_data(stream.data(), size - 1, 16), zlib_text, IN_DB_STREAM);
    EXPECT_REPORT(manager->decompress_data(with_byte(stream, 0, 0).data(), size, 16), zlib_text, IN_DB_STREAM);
}

TEST_F(DbStream, GivesNoDataAChecksumOtherThanZero) {
    const BYTES data = text_bytes("123456789");
    EXPECT_EQ(0U, manager->calculate_crc16(data.data(), 72));
    EXPECT_EQ(0U, manager->calculate_crc16(data.data(), 0));
    EXPECT_EQ(0U, manager->calculate_crc16(nullptr, 0xFFFFFFFF));
}

} // namespace
