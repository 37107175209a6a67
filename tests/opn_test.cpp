// The ordering list: reading its table, looking up, and the report of each fault.
#include "naming_fixture.h"
#include "report.h"

namespace {

using MGR = TOVREN_DDB_OPN_MGR;

constexpr char UNCOMPRESS[] = "zlib_uncompress(data, &data_size, PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH) == ZLIB_OK";
constexpr char LENGTH[] = "data_size == PGMDDB_OPN_LENGTH";
constexpr char CUT[] = "index < (data_size - 4)";
constexpr char SLACK[] = "index == (data_size - 4)";
constexpr char TOO_LONG[] = "shift <= 35";
constexpr char TOO_LARGE[] = "dev_enum <= QWORD(0xFFFFFFFF)";

// A list whose only entry is packed like this.
OPN_IMAGE with_packed(const BYTES& packed, unsigned int count = 1) {
    OPN_IMAGE image;
    image.count = count;
    image.packed = packed;
    return image;
}

std::vector<unsigned int> read_values(const BYTES& image, unsigned int count) {
    const MGR manager(NAMING_TABLE(image).blob());
    std::vector<unsigned int> values;
    for (unsigned int index = 0; index < count; ++index)
        values.push_back(manager.dev_opn_enum(index));
    EXPECT_EQ(0xFFFFFFFF, manager.dev_opn_enum(count));
    return values;
}

// ---- envelope ----

TEST(OpnTable, ReportsAStreamCutAnywhere) {
    const BYTES image = OPN_IMAGE({1, 2, 3}).bytes();
    const BYTES stream = zlib_stream(image);
    for (size_t kept = 0; kept < stream.size(); ++kept)
        EXPECT_REPORT(MGR(NAMING_TABLE(first(stream, kept), image.size()).blob()), UNCOMPRESS, IN_DDB_MGR) << kept;
}

TEST(OpnTable, ReportsAnImageOfAnotherLength) {
    const BYTES image = OPN_IMAGE(std::vector<unsigned int>(200, 7)).bytes();
    for (const size_t said : {image.size() - 100, image.size() - 1, image.size() + 1})
        EXPECT_REPORT(MGR(NAMING_TABLE(zlib_stream(image), said).blob()), LENGTH, IN_DDB_MGR) << said;
    EXPECT_REPORT(MGR(NAMING_TABLE(zlib_stream(image), image.size() - 101).blob()), UNCOMPRESS, IN_DDB_MGR);
}

TEST(OpnTable, ReportsAMagicWithAnyByteWrong) {
    for (size_t place = 0; place < 10; ++place) {
        OPN_IMAGE image;
        image.magic[place] ^= 0x20;
        EXPECT_REPORT(load_opn(image.bytes()), "memcmp(data, \"TOVREN_DDB\", 10) == 0", IN_DDB_MGR) << place;
    }
}

TEST(OpnTable, ReportsEachByteOfTheTrailer) {
    const std::array<const char*, 4> conditions = {"BYTE(crc32) == data[data_size-4]",
                                                   "BYTE(crc32 >> 8) == data[data_size-3]",
                                                   "BYTE(crc32 >> 16) == data[data_size-2]",
                                                   "BYTE(crc32 >> 24) == data[data_size-1]"};
    const BYTES image = OPN_IMAGE().bytes();
    for (size_t byte = 0; byte < 4; ++byte) {
        const size_t place = image.size() - 4 + byte;
        const BYTES wrong = with_byte(image, place, static_cast<unsigned char>(image[place] ^ 0x80));
        EXPECT_REPORT(load_opn(wrong), conditions[byte], IN_DDB_MGR);
    }
}

// ---- count ----

TEST(OpnTable, ReportsACountOfZero) {
    EXPECT_REPORT(load_opn(OPN_IMAGE(std::vector<unsigned int>()).bytes()), "enum_count > 0", IN_DDB_MGR);
}

TEST(OpnTable, ReadsTheCountLeastSignificantByteFirst) {
    const std::vector<unsigned int> values(0x0102, 5);
    EXPECT_EQ(values, read_values(OPN_IMAGE(values).bytes(), 0x0102));
}

TEST(OpnTable, ReportsAHugeCountWithoutMakingRoomForIt) {
    for (const unsigned int count : {2U, 0x80000000U, 0xFFFFFFFFU})
        EXPECT_REPORT(load_opn(with_packed({0}, count).bytes()), CUT, IN_DDB_MGR) << count;
}

TEST(OpnTable, ReportsEntriesBeyondTheCount) {
    OPN_IMAGE image({1, 2, 3});
    image.count = 2;
    EXPECT_REPORT(load_opn(image.bytes()), SLACK, IN_DDB_MGR);
}

TEST(OpnTable, ReportsAnImageThatEndsWithinTheCount) {
    for (size_t size = 0; size < 4; ++size) {
        const BYTES image = image_bytes("TOVREN_DDB", first({1, 0, 0, 0}, size), std::nullopt);
        EXPECT_REPORT(load_opn(image), CUT, IN_DDB_MGR) << size;
    }
}

// ---- packed integers ----

struct PACKED_CASE {
    BYTES bytes;
    unsigned int value;
};

TEST(OpnTable, ReadsPackedIntegers) {
    const std::vector<PACKED_CASE> cases = {
        {{0x00}, 0},
        {{0x01}, 1},
        {{0x7F}, 127},
        {{0x80, 0x01}, 128},
        {{0xB8, 0x48}, 9272},
        {{0xFF, 0x7F}, 16383},
        {{0x80, 0x80, 0x01}, 16384},
        {{0xFF, 0xFF, 0xFF, 0x7F}, 0x0FFFFFFF},
        {{0x80, 0x80, 0x80, 0x80, 0x01}, 0x10000000},
        {{0xFF, 0xFF, 0xFF, 0xFF, 0x0F}, 0xFFFFFFFF},
        {{0x80, 0x00}, 0}, // longer than it need be
        {{0x85, 0x80, 0x80, 0x80, 0x00}, 5},
    };
    for (const PACKED_CASE& packed : cases)
        EXPECT_EQ(std::vector<unsigned int>{packed.value}, read_values(with_packed(packed.bytes).bytes(), 1))
            << hex_text(packed.bytes);
}

TEST(OpnTable, ReportsAPackedIntegerOfSixBytesOrMore) {
    for (size_t more = 5; more <= 40; ++more) {
        BYTES packed(more, 0x80);
        packed.push_back(0x01);
        EXPECT_REPORT(load_opn(with_packed(packed).bytes()), TOO_LONG, IN_DDB_MGR) << more;
    }
}

TEST(OpnTable, ReportsALongPackedIntegerByItsLengthWhateverItsValue) {
    for (const unsigned char last : BYTES{0x00, 0x7F}) {
        BYTES packed(9, 0xFF);
        packed.push_back(last);
        EXPECT_REPORT(load_opn(with_packed(packed).bytes()), TOO_LONG, IN_DDB_MGR);
    }
}

TEST(OpnTable, ReportsFiveBytesThatHoldMoreThan32Bits) {
    for (const unsigned char last : BYTES{0x10, 0x20, 0x7F}) {
        const BYTES packed = {0x80, 0x80, 0x80, 0x80, last};
        EXPECT_REPORT(load_opn(with_packed(packed).bytes()), TOO_LARGE, IN_DDB_MGR);
    }
}

TEST(OpnTable, ReportsAPackedIntegerWithoutItsLastByte) {
    for (size_t size = 0; size <= 12; ++size)
        EXPECT_REPORT(load_opn(with_packed(BYTES(size, 0x80)).bytes()), CUT, IN_DDB_MGR) << size;
}

TEST(OpnTable, ReportsTheFirstOfTwoFaults) {
    EXPECT_REPORT(load_opn(with_packed({0x80, 0x80, 0x80, 0x80, 0x10, 0x80}, 2).bytes()), TOO_LARGE, IN_DDB_MGR);
    EXPECT_REPORT(load_opn(with_packed({0x01, 0x80}, 2).bytes()), CUT, IN_DDB_MGR);
}

// ---- look-ups ----

class OpnLookup : public NAMING_TEST {
protected:
    OpnLookup() { use_opn({0, 7, 0, 8, 0xFFFFFFFE, 9272}); }
};

TEST_F(OpnLookup, GivesTheValueOfAnIndex) {
    EXPECT_EQ(0U, MGR::get_dev_opn_enum(0));
    EXPECT_EQ(7U, MGR::get_dev_opn_enum(1));
    EXPECT_EQ(0xFFFFFFFEU, MGR::get_dev_opn_enum(4));
    EXPECT_EQ(9272U, MGR::get_dev_opn_enum(5));
}

TEST_F(OpnLookup, GivesNothingAtOrPastTheCount) {
    for (const unsigned int index : {6U, 7U, 0x80000000U, 0xFFFFFFFFU})
        EXPECT_EQ(0xFFFFFFFFU, MGR::get_dev_opn_enum(index));
}

TEST_F(OpnLookup, GivesTheIndexOfAValue) {
    EXPECT_EQ(1U, MGR::get_opn_enum(7));
    EXPECT_EQ(4U, MGR::get_opn_enum(0xFFFFFFFE));
    EXPECT_EQ(5U, MGR::get_opn_enum(9272));
}

TEST_F(OpnLookup, GivesTheLowestIndexOfAValueHeldByMany) {
    EXPECT_EQ(0U, MGR::get_opn_enum(0));
    use_opn({3, 4, 4, 3, 4});
    EXPECT_EQ(1U, MGR::get_opn_enum(4));
}

TEST_F(OpnLookup, GivesNoIndexForAnAbsentValue) {
    for (const unsigned int value : {1U, 6U, 0xFFFFFFFFU})
        EXPECT_EQ(0xFFFFFFFFU, MGR::get_opn_enum(value));
}

class OpnLife : public NAMING_TEST {};

TEST_F(OpnLife, IsMadeByTheFirstUseAndKept) {
    EXPECT_EQ(nullptr, MGR::m_mgr);
    MGR::get_opn_enum(0);
    const MGR* const made = MGR::m_mgr;
    EXPECT_NE(nullptr, made);
    EXPECT_EQ(made, MGR::get_mgr());
}

TEST_F(OpnLife, ReadsTheTableAgainAfterItsRelease) {
    unsigned int index = 0;
    while (MGR::get_dev_opn_enum(index) == 0)
        ++index;
    const unsigned int part = MGR::get_dev_opn_enum(index);
    ASSERT_NE(0xFFFFFFFFU, part);
    use_opn({part + 1});
    ASSERT_EQ(0xFFFFFFFFU, MGR::get_opn_enum(part));
    MGR::delete_mgr();
    EXPECT_EQ(nullptr, MGR::m_mgr);
    EXPECT_EQ(index, MGR::get_opn_enum(part));
}

} // namespace
