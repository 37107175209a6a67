// The part list: which lines make which entries, and what a short or a long one ends in.
#include "device_fixtures.h"
#include "tovren_dev_info_manager.h"
#include "tovren_standalone_host.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <stdexcept>

namespace {

class PartList : public DEVICE_TEST {
protected:
    MANAGER manager = make_generator();

    // "PART DEVICE PCF" of each entry.
    std::vector<std::string> read(const std::string& text) {
        put_part_list(text);
        manager = make_generator();
        manager->parse_pgm_parts();
        std::vector<std::string> entries;
        for (const auto& entry : manager->m_pcf_map)
            entries.push_back(std::to_string(entry->part) + " " + std::to_string(entry->device) + " " + entry->pcf);
        return entries;
    }

    std::string what_a_short_line_throws(const std::string& line) {
        try {
            read("QA02AE144,QA02A,c,d,e,f,LONG_ENOUGH_FOR_STORAGE_OF_ITS_OWN\n" + line + "\n");
        } catch (const std::out_of_range& error) {
            return error.what();
        }
        return "nothing";
    }
};

using ENTRIES = std::vector<std::string>;

TEST_F(PartList, HoldsItsLinesInOrder) {
    EXPECT_EQ((ENTRIES{"2 1 A", "1 2 B", "2 1 C"}),
              read("QA02AE144C6,QA02A,E144,144,C,6,A\nQA02AE144,QA02B,x,x,x,x,B\nQA02AE144C6,QA02A,x,x,x,x,C\n"));
}

TEST_F(PartList, KnowsNamesInAnyLetterCase) {
    EXPECT_EQ((ENTRIES{"1 1 a"}), read("qa02ae144,Qa02a,c,d,e,f,a"));
}

TEST_F(PartList, KeepsUnknownNamesAsInvalid) {
    EXPECT_EQ((ENTRIES{"0 0 A", "0 0 B"}), read("NO_PART,NO_DEVICE,c,d,e,f,A\n,,c,d,e,f,B\n"));
}

TEST_F(PartList, KnowsTheGenericNames) {
    EXPECT_EQ((ENTRIES{std::to_string(DEV_PART_GENERIC) + " 1047 A"}), read("GENERIC,GENERIC,c,d,e,f,A\n"));
}

TEST_F(PartList, HasNoEntryForBlankLinesAndComments) {
    EXPECT_EQ(ENTRIES{}, read("\n \t \r\n// a,b,c,d,e,f,g\n//\n \t//a,b,c,d,e,f,g\n"));
}

TEST_F(PartList, HasCommentsAtTheBeginningOfALineOnly) {
    EXPECT_EQ((ENTRIES{"1 1 //x", "0 1 A//"}), read("QA02AE144,QA02A,c,d,e,f,//x\n/QA02AE144,QA02A,//,d,e,f,A//\n"));
}

TEST_F(PartList, TakesTheSeventhCellBetweenCommasAndBlanks) {
    EXPECT_EQ((ENTRIES{"1 1 G", "1 1 G", "1 1 G"}),
              read("QA02AE144 QA02A c\td e  f G\n  QA02AE144 , QA02A,c d,\te f , G \nQA02AE144,QA02A c,d e,f G,h,i\n"));
}

TEST_F(PartList, MayLeaveTheSeventhCellEmpty) {
    EXPECT_EQ((ENTRIES{"1 1 ", "1 1 "}), read("QA02AE144,QA02A,c,d,e,f,\nQA02AE144,QA02A,,,,,,h\n"));
}

TEST_F(PartList, MayBeMissing) {
    manager->parse_pgm_parts();
    EXPECT_TRUE(manager->m_pcf_map.empty());
}

TEST_F(PartList, IsNotTakenForEmptyWhereItCannotBeRead) {
    std::filesystem::create_directory(part_list);
    EXPECT_REPORT(manager->parse_pgm_parts(), "!input.has_failed()", IN_DEVICE_GENERATE);
}

TEST_F(PartList, IsReadFromTheProductRoot) {
    std::filesystem::create_directories(folder.path("other/h"));
    write_text(folder.path("other/h/pgm_parts.txt"), "QA02AE144,QA02A,c,d,e,f,OTHER\n");
    TOVREN_STANDALONE_HOST::set_product_root(folder.path("other"));
    manager->parse_pgm_parts();
    ASSERT_EQ(1U, manager->m_pcf_map.size());
    EXPECT_EQ("OTHER", manager->m_pcf_map[0]->pcf);
}

TEST_F(PartList, IsAppended) {
    put_part_list("QA02AE144,QA02A,c,d,e,f,A\n");
    manager->parse_pgm_parts();
    manager->parse_pgm_parts();
    EXPECT_EQ(2U, manager->m_pcf_map.size());
}

TEST_F(PartList, EndsInTheStandardLibrarysErrorAtAShortLine) {
    EXPECT_EQ("vector::_M_range_check: __n (which is 1) >= this->size() (which is 1)", what_a_short_line_throws("a"));
    EXPECT_EQ("vector::_M_range_check: __n (which is 6) >= this->size() (which is 2)", what_a_short_line_throws("a,b"));
    EXPECT_EQ("vector::_M_range_check: __n (which is 6) >= this->size() (which is 6)",
              what_a_short_line_throws("a,b,c,d,e,f"));
    EXPECT_EQ("vector::_M_range_check: __n (which is 6) >= this->size() (which is 6)",
              what_a_short_line_throws("a,b c,d,e f"));
    EXPECT_EQ("nothing", what_a_short_line_throws("a,b,c,d,e,f,g"));
}

TEST_F(PartList, TakesLinesOfUpTo10239Characters) {
    const std::string line = "QA02AE144,QA02A,c,d,e,f,G";
    const std::string blanks(10239 - line.size(), ' ');
    EXPECT_EQ((ENTRIES{"1 1 G", "1 1 A"}),
              read("QA02AE144" + blanks + ",QA02A,c,d,e,f,G\nQA02AE144,QA02A,c,d,e,f,A\n"));
}

TEST_F(PartList, TakesNoLongerLineInSilence) {
    for (const size_t size : {10240U, 10241U, 20480U, 100000U}) {
        put_part_list("QA02AE144" + std::string(size - 25, ' ') + ",QA02A,c,d,e,f,G\n");
        EXPECT_REPORT(make_generator()->parse_pgm_parts(), "line.size() < 10240", IN_DEVICE_GENERATE) << size;
    }
}

} // namespace
