// Reading the table of the naming maps: what is accepted, and the report of each fault.
#include "naming_fixture.h"
#include "report.h"

namespace {

constexpr char UNCOMPRESS[] =
    "zlib_uncompress(data, &data_size, PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH) == ZLIB_OK";
constexpr char LENGTH[] = "data_size == PGMDDB_GRAMMAR_LENGTH";
constexpr char TOO_FEW_MAPS[] = "pointer_index == DWORD(TOVREN_DDB_GRAMMAR_ENUM::MAX)";
constexpr char TOO_MANY_MAPS[] = "pointer_index < DWORD(TOVREN_DDB_GRAMMAR_ENUM::MAX)";
constexpr char STRING_EMPTY[] = "data[index] != 0";
constexpr char STRING_OPEN[] = "index < data_size && data[index] == 0";
constexpr char STRING_LAST[] = "index < data_size";
constexpr char REPEATED_CONTENT[] = "std::find(contents.begin(), contents.end(), content) == contents.end()";
constexpr char REPEATED_KEY[] = "map->find(key) == map->end()";

void load_body(const BYTES& body) {
    GRAMMAR_IMAGE image;
    image.body = body;
    load_grammar(image.bytes());
}

// Eight maps, the first of which is `map`.
BYTES with_first_map(const NAMING_MAP& map) {
    GRAMMAR_IMAGE image;
    image.maps[0] = map;
    return image.bytes();
}

BYTES with_first_map(const BYTES& map) {
    GRAMMAR_IMAGE image;
    image.maps.erase(image.maps.begin());
    image.body = join({map, image.body_bytes()});
    return image.bytes();
}

NAMING_MAP read_map(const BYTES& image, TOVREN_DDB_GRAMMAR_ENUM type) {
    const TOVREN_DDB_GRAMMAR_MGR manager(NAMING_TABLE(image).blob());
    const TOVREN_DDB_MAP& map = *manager.get_map(type);
    return {map.begin(), map.end()};
}

NAMING_MAP read_first_map(const BYTES& image) {
    return read_map(image, TOVREN_DDB_GRAMMAR_ENUM::PACKAGE_GRAMMAR);
}

// "NAME0", "NAME1", ...
std::vector<std::string> names(size_t count) {
    std::vector<std::string> all;
    for (size_t number = 0; number < count; ++number)
        all.push_back("NAME" + std::to_string(number));
    return all;
}

// ---- envelope ----

TEST(GrammarTable, ReportsAStreamCutAnywhere) {
    const BYTES image = GRAMMAR_IMAGE().bytes();
    const BYTES stream = zlib_stream(image);
    for (size_t kept = 0; kept < stream.size(); ++kept) {
        const NAMING_TABLE table(first(stream, kept), image.size());
        EXPECT_REPORT(TOVREN_DDB_GRAMMAR_MGR(table.blob()), UNCOMPRESS, IN_DDB_MGR) << kept;
    }
}

TEST(GrammarTable, ReportsAStreamWithAnyByteWrong) {
    const BYTES image = GRAMMAR_IMAGE().bytes();
    const BYTES stream = zlib_stream(image);
    for (size_t place = 0; place < stream.size(); ++place) {
        const NAMING_TABLE table(with_byte(stream, place, static_cast<unsigned char>(~stream[place])), image.size());
        EXPECT_REPORT(TOVREN_DDB_GRAMMAR_MGR(table.blob()), UNCOMPRESS, IN_DDB_MGR) << place;
    }
}

TEST(GrammarTable, ReportsAnImageOfAnotherLength) {
    const BYTES image = GRAMMAR_IMAGE().bytes();
    for (const size_t said : {image.size() - 100, image.size() - 1, image.size() + 1, image.size() + 1000}) {
        const NAMING_TABLE table(zlib_stream(image), said);
        EXPECT_REPORT(TOVREN_DDB_GRAMMAR_MGR(table.blob()), LENGTH, IN_DDB_MGR) << said;
    }
}

TEST(GrammarTable, ReportsAnImageThatDoesNotFitTheRoom) {
    const BYTES image = GRAMMAR_IMAGE().bytes();
    const NAMING_TABLE table(zlib_stream(image), image.size() - 101);
    EXPECT_REPORT(TOVREN_DDB_GRAMMAR_MGR(table.blob()), UNCOMPRESS, IN_DDB_MGR);
}

TEST(GrammarTable, ReportsAMagicWithAnyByteWrong) {
    for (size_t place = 0; place < 10; ++place) {
        GRAMMAR_IMAGE image;
        image.magic[place] ^= 0x20;
        EXPECT_REPORT(load_grammar(image.bytes()), "memcmp(data, \"TOVREN_DDB\", 10) == 0", IN_DDB_MGR) << place;
    }
}

TEST(GrammarTable, ReportsAnImageTooShortForTheMagic) {
    for (size_t size = 0; size < 10; ++size)
        EXPECT_REPORT(load_grammar(first(text_bytes("TOVREN_DDB"), size)), "memcmp(data, \"TOVREN_DDB\", 10) == 0",
                      IN_DDB_MGR);
}

TEST(GrammarTable, ReportsEachByteOfTheTrailer) {
    const std::array<const char*, 4> conditions = {"BYTE(crc32) == data[data_size-4]",
                                                   "BYTE(crc32 >> 8) == data[data_size-3]",
                                                   "BYTE(crc32 >> 16) == data[data_size-2]",
                                                   "BYTE(crc32 >> 24) == data[data_size-1]"};
    const BYTES image = GRAMMAR_IMAGE().bytes();
    for (size_t byte = 0; byte < 4; ++byte) {
        const size_t place = image.size() - 4 + byte;
        const BYTES wrong = with_byte(image, place, static_cast<unsigned char>(image[place] ^ 1));
        EXPECT_REPORT(load_grammar(wrong), conditions[byte], IN_DDB_MGR);
    }
}

TEST(GrammarTable, ReportsATrailerWithItsMostSignificantByteFirst) {
    GRAMMAR_IMAGE image;
    const BYTES front = join({text_bytes(image.magic), image.body_bytes()});
    const BYTES trailer = le32_bytes(crc_of(front));
    ASSERT_NE(trailer[0], trailer[3]);
    image.trailer = BYTES(trailer.rbegin(), trailer.rend());
    EXPECT_REPORT(load_grammar(image.bytes()), "BYTE(crc32) == data[data_size-4]", IN_DDB_MGR);
}

TEST(GrammarTable, ReportsABodyWithAnyByteWrongByItsCrc) {
    const BYTES image = GRAMMAR_IMAGE().bytes();
    const BYTES front = first(image, image.size() - 4);
    for (size_t place = 10; place < front.size(); ++place) {
        const BYTES wrong = with_byte(front, place, static_cast<unsigned char>(front[place] ^ 0x55));
        const BYTES trailer(image.end() - 4, image.end());
        EXPECT_REPORT(load_grammar(join({wrong, trailer})), crc_condition(crc_of(wrong), crc_of(front)), IN_DDB_MGR)
            << place;
    }
}

// ---- maps ----

TEST(GrammarTable, HoldsEachMapOfTheImageInItsOrder) {
    const BYTES image = GRAMMAR_IMAGE().bytes();
    for (unsigned int map = 0; map < 8; ++map) {
        const std::string number = std::to_string(map);
        EXPECT_EQ((NAMING_MAP{{"KEY" + number, {"CONTENT" + number}}}), read_map(image, TOVREN_DDB_GRAMMAR_ENUM(map)));
    }
}

TEST(GrammarTable, ReadsTheBytesOfAMapWithOneEntry) {
    const BYTES map = {'Q', 'X', '2', '0', 'A', 'F', '2', '5', '6', 0,   'Q', 'X', '2', '0', 'A', 'F', '2', '5',
                       '6', 'C', '6', 0,   'Q', 'X', '2', '0', 'A', 'F', '2', '5', '6', 'I', '7', 0,   0,   0};
    EXPECT_EQ((NAMING_MAP{{"QX20AF256", {"QX20AF256C6", "QX20AF256I7"}}}), read_first_map(with_first_map(map)));
}

TEST(GrammarTable, SortsKeysByTheirBytesAndKeepsTheOrderOfContents) {
    const NAMING_MAP stored = {{"b", {"Z", "A"}}, {"\x80", {"X"}}, {"B", {"M", "L", "N"}}, {"AB", {"P"}}, {"A", {"Q"}}};
    const NAMING_MAP sorted = {{"A", {"Q"}}, {"AB", {"P"}}, {"B", {"M", "L", "N"}}, {"b", {"Z", "A"}}, {"\x80", {"X"}}};
    EXPECT_EQ(sorted, read_first_map(with_first_map(stored)));
}

TEST(GrammarTable, AcceptsAKeyAmongItsOwnContents) {
    const NAMING_MAP map = {{"QX20AF256", {"QX20AF256C6", "QX20AF256"}}};
    EXPECT_EQ(map, read_first_map(with_first_map(map)));
}

TEST(GrammarTable, AcceptsAContentUnderTwoKeys) {
    const NAMING_MAP map = {{"QX20A", {"SAME"}}, {"QX20B", {"OTHER", "SAME"}}};
    EXPECT_EQ(map, read_first_map(with_first_map(map)));
}

TEST(GrammarTable, AcceptsAKeyInTwoMaps) {
    GRAMMAR_IMAGE image;
    image.maps[3] = image.maps[4] = {{"QX_FAM", {"QX20A"}}};
    EXPECT_NO_REPORT(load_grammar(image.bytes()));
}

TEST(GrammarTable, HoldsNamesOfEveryLengthAndLongLists) {
    NAMING_MAP map;
    for (size_t length = 1; length <= 70; ++length)
        map.push_back({std::string(length, 'K'), names(length)});
    map.push_back({std::string(1000, 'L'), {std::string(2000, 'C')}});
    EXPECT_EQ(map, read_first_map(with_first_map(map)));
}

TEST(GrammarTable, ReportsANinthMap) {
    GRAMMAR_IMAGE image;
    image.maps.push_back({{"KEY8", {"CONTENT8"}}});
    EXPECT_REPORT(load_grammar(image.bytes()), TOO_MANY_MAPS, IN_DDB_MGR);
}

TEST(GrammarTable, ReportsAnyByteBehindTheEighthMap) {
    for (const unsigned char byte : BYTES{0, 1, 'A', 255})
        EXPECT_REPORT(load_body(join({GRAMMAR_IMAGE().body_bytes(), {byte}})), TOO_MANY_MAPS, IN_DDB_MGR);
}

TEST(GrammarTable, ReportsTooFewMaps) {
    GRAMMAR_IMAGE image;
    while (!image.maps.empty()) {
        image.maps.pop_back();
        EXPECT_REPORT(load_grammar(image.bytes()), TOO_FEW_MAPS, IN_DDB_MGR) << image.maps.size();
    }
}

TEST(GrammarTable, ReportsATrailerThatOverlapsTheMagic) {
    for (size_t size = 10; size < 14; ++size) {
        const BYTES image = first(text_bytes("TOVREN_DDBxyz"), size);
        const BYTES front = first(image, size - 4);
        const BYTES trailer(image.end() - 4, image.end());
        const unsigned int stored =
            unsigned{trailer[0]} | unsigned{trailer[1]} << 8 | unsigned{trailer[2]} << 16 | unsigned{trailer[3]} << 24;
        EXPECT_REPORT(load_grammar(image), crc_condition(crc_of(front), stored), IN_DDB_MGR) << size;
    }
}

TEST(GrammarTable, ReportsAMissingEndMarkOfTheEighthMap) {
    BYTES body = GRAMMAR_IMAGE().body_bytes();
    body.pop_back();
    EXPECT_REPORT(load_body(body), TOO_FEW_MAPS, IN_DDB_MGR);
}

TEST(GrammarTable, DoesNotTakeAZeroOfTheTrailerForAnEndMark) {
    GRAMMAR_IMAGE image;
    BYTES trailer = {1};
    for (int number = 0; trailer[0] != 0; ++number) {
        image.maps[7] = {{"KEY7", {"CONTENT" + std::to_string(number)}}};
        image.body.reset();
        image.body = image.body_bytes();
        image.body->pop_back();
        trailer = le32_bytes(crc_of(join({text_bytes(image.magic), *image.body})));
    }
    EXPECT_REPORT(load_grammar(image.bytes()), TOO_FEW_MAPS, IN_DDB_MGR);
}

TEST(GrammarTable, TakesMapsWithoutAnEndMarkBetweenThemForOne) {
    GRAMMAR_IMAGE image;
    image.maps[0].insert(image.maps[0].end(), image.maps[1].begin(), image.maps[1].end());
    image.maps.erase(image.maps.begin() + 1);
    EXPECT_REPORT(load_grammar(image.bytes()), TOO_FEW_MAPS, IN_DDB_MGR);
}

// ---- entries and strings ----

TEST(GrammarTable, ReportsAnEmptyMap) {
    EXPECT_REPORT(load_grammar(with_first_map(NAMING_MAP())), STRING_EMPTY, IN_DDB_MGR);
}

TEST(GrammarTable, ReportsAnEmptyContentsList) {
    EXPECT_REPORT(load_grammar(with_first_map({{"QX20AF256", {}}})), "contents.size()", IN_DDB_MGR);
    EXPECT_REPORT(load_grammar(with_first_map({{"QX20AF256", {"QX20AF256C6"}}, {"QX20AF484", {}}})), "contents.size()",
                  IN_DDB_MGR);
}

TEST(GrammarTable, ReportsARepeatedContentAtAnyPlaceOfAListOfAnyLength) {
    for (size_t count = 1; count <= 60; ++count) {
        for (size_t repeated = 0; repeated < count; repeated += 1 + count / 8) {
            std::vector<std::string> contents = names(count);
            contents.push_back(contents[repeated]);
            EXPECT_REPORT(load_grammar(with_first_map({{"KEY", contents}})), REPEATED_CONTENT, IN_DDB_MGR)
                << repeated << " of " << count;
        }
    }
}

TEST(GrammarTable, ReportsARepeatedKeyAnywhereInAMap) {
    EXPECT_REPORT(load_grammar(with_first_map({{"B", {"X"}}, {"B", {"Y"}}})), REPEATED_KEY, IN_DDB_MGR);
    EXPECT_REPORT(load_grammar(with_first_map({{"B", {"X"}}, {"C", {"Y"}}, {"A", {"Z"}}, {"B", {"W"}}})), REPEATED_KEY,
                  IN_DDB_MGR);
}

TEST(GrammarTable, ReportsAnEntryBeforeTheRepetitionOfItsKey) {
    EXPECT_REPORT(load_grammar(with_first_map({{"B", {"X"}}, {"B", {"Y", "Y"}}})), REPEATED_CONTENT, IN_DDB_MGR);
}

// The last byte that is left tells the fault: a character is a string without its end; the end of a string needs
// something behind it; an end mark leaves maps missing.
std::string condition_of_cut(const BYTES& body) {
    if (body.empty())
        return TOO_FEW_MAPS;
    if (body.back() != 0)
        return STRING_OPEN;
    return body.size() > 1 && body[body.size() - 2] != 0 ? STRING_LAST : TOO_FEW_MAPS;
}

TEST(GrammarTable, ReportsABodyCutAnywhere) {
    GRAMMAR_IMAGE image;
    image.maps[0] = {{"QX20AF256", {"QX20AF256C6", "QX20AF256I7"}}, {"QX20AF484", {"QX20AF484"}}};
    const BYTES body = image.body_bytes();
    for (size_t kept = 0; kept < body.size(); ++kept)
        EXPECT_REPORT(load_body(first(body, kept)), condition_of_cut(first(body, kept)), IN_DDB_MGR) << kept;
}

TEST(GrammarTable, LoadsOrReportsABodyWithAnyByteReplaced) {
    const BYTES body = GRAMMAR_IMAGE().body_bytes();
    for (size_t place = 0; place < body.size(); ++place) {
        for (const unsigned char byte : BYTES{0, 1, 'K', 255}) {
            const auto report = report_of([&] { load_body(with_byte(body, place, byte)); });
            if (report) {
                EXPECT_EQ(IN_DDB_MGR, report->file) << report->expression;
            }
        }
    }
}

// ---- the readers for themselves: over an exact array, so that a byte too far is noticed under the sanitizers ----

class GrammarReader : public testing::Test {
protected:
    std::string get_string(const BYTES& data, unsigned int& index) const {
        const std::unique_ptr<unsigned char[]> exact = std::make_unique<unsigned char[]>(data.size());
        std::copy(data.begin(), data.end(), exact.get());
        return m_manager.get_string(index, exact.get(), static_cast<unsigned int>(data.size()));
    }

    void get_mapping(TOVREN_DDB_MAP& map, const BYTES& data, unsigned int& index) const {
        const std::unique_ptr<unsigned char[]> exact = std::make_unique<unsigned char[]>(data.size());
        std::copy(data.begin(), data.end(), exact.get());
        TOVREN_DDB_MAP* pointer = &map;
        m_manager.get_mapping(pointer, index, exact.get(), static_cast<unsigned int>(data.size()));
    }

private:
    TOVREN_DDB_GRAMMAR_MGR m_manager{NAMING_TABLE(GRAMMAR_IMAGE().bytes()).blob()};
};

TEST_F(GrammarReader, ReadsAStringAndStepsOverItsTerminator) {
    unsigned int index = 2;
    EXPECT_EQ("AB", get_string({'X', 0, 'A', 'B', 0, 'C', 0, 0}, index));
    EXPECT_EQ(5U, index);
}

TEST_F(GrammarReader, ReportsAStringThatBeginsAtOrPastTheEnd) {
    for (unsigned int index : {3U, 4U, 0xFFFFFFFFU})
        EXPECT_REPORT(get_string({'A', 0, 0}, index), STRING_LAST, IN_DDB_MGR);
}

TEST_F(GrammarReader, ReportsAnEmptyString) {
    unsigned int index = 1;
    EXPECT_REPORT(get_string({'A', 0, 0}, index), STRING_EMPTY, IN_DDB_MGR);
}

TEST_F(GrammarReader, ReportsAStringWithoutATerminator) {
    unsigned int index = 0;
    EXPECT_REPORT(get_string({'A', 'B'}, index), STRING_OPEN, IN_DDB_MGR);
}

TEST_F(GrammarReader, ReportsAStringThatNothingFollows) {
    unsigned int index = 0;
    EXPECT_REPORT(get_string({'A', 'B', 0}, index), STRING_LAST, IN_DDB_MGR);
}

TEST_F(GrammarReader, AddsAnEntryToTheMapAndStepsOverItsEndMark) {
    TOVREN_DDB_MAP map = {{"A", {"B"}}};
    unsigned int index = 0;
    get_mapping(map, {'K', 0, 'Y', 0, 'X', 0, 0}, index);
    EXPECT_EQ(7U, index);
    EXPECT_EQ((TOVREN_DDB_MAP{{"A", {"B"}}, {"K", {"Y", "X"}}}), map);
}

TEST_F(GrammarReader, LeavesTheMapWithoutAnEntryThatItReports) {
    TOVREN_DDB_MAP map = {{"K", {"B"}}};
    unsigned int index = 0;
    EXPECT_REPORT(get_mapping(map, {'K', 0, 'Y', 0, 0}, index), REPEATED_KEY, IN_DDB_MGR);
    EXPECT_EQ((TOVREN_DDB_MAP{{"K", {"B"}}}), map);
}

} // namespace
