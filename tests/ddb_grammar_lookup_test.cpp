// Looking names up in the naming maps, and the life of their owner.
#include "naming_fixture.h"
#include "report.h"

namespace {

using TYPE = TOVREN_DDB_GRAMMAR_ENUM;
using MGR = TOVREN_DDB_GRAMMAR_MGR;

// One part in every map; each map also holds the name "SHARED", under a key that tells the map.
const std::vector<NAMING_MAP> MAPS = {
    {{"QX20AF256", {"QX20AF256", "QX20AF256C6", "QX20AF256C6N"}}, {"IN0", {"SHARED"}}},
    {{"QX20A", {"QX20AF256", "QX20AF484"}}, {"IN1", {"SHARED"}}},
    {{"QX20X", {"QX20A"}}, {"IN2", {"SHARED"}}},
    {{"QUARN_FAM", {"QX20A"}}, {"IN3", {"SHARED"}}},
    {{"QX20X", {"QX20B", "QX20A"}}, {"IN4", {"SHARED"}}},
    {{"QUARN_FAM", {"QX20A", "QX20B"}}, {"IN5", {"SHARED"}}},
    {{"QUARN_FAM", {"QX20X"}}, {"IN6", {"SHARED"}}},
    {{"QUARN-3S", {"QX20X"}}, {"IN7", {"SHARED"}}},
};

class GrammarLookup : public NAMING_TEST {
protected:
    GrammarLookup() { use_grammar(MAPS); }
};

// ---- reverse ----

TEST_F(GrammarLookup, FindsTheKeyThatOwnsAName) {
    EXPECT_EQ("QX20AF256", MGR::get_mapping_key("QX20AF256C6", TYPE::PACKAGE_GRAMMAR));
    EXPECT_EQ("QX20AF256", MGR::get_mapping_key("QX20AF256", TYPE::PACKAGE_GRAMMAR));
}

TEST_F(GrammarLookup, FindsNothingForANameThatIsOnlyAKey) {
    EXPECT_EQ("", MGR::get_mapping_key("QX20A", TYPE::PGM_GRAMMAR));
}

TEST_F(GrammarLookup, FindsNothingForAPartOrAnExtensionOfAName) {
    for (const char* name : {"QX20AF256C", "X20AF256C6", "QX20AF256C6N1", "QX20AF256C7", "QY20AF256C6", "", " "})
        EXPECT_EQ("", MGR::get_mapping_key(name, TYPE::PACKAGE_GRAMMAR)) << name;
}

TEST_F(GrammarLookup, GivesTheFirstKeyInByteOrderForANameUnderTwo) {
    use_grammar(
        {{{"B", {"SAME"}}, {"A", {"OTHER", "SAME"}}}, MAPS[1], MAPS[2], MAPS[3], MAPS[4], MAPS[5], MAPS[6], MAPS[7]});
    EXPECT_EQ("A", MGR::get_mapping_key("SAME", TYPE::PACKAGE_GRAMMAR));
}

TEST_F(GrammarLookup, TellsNamesOfEveryLengthApartByAnyOfTheirCharacters) {
    TOVREN_DDB_MAP map;
    for (size_t length = 1; length <= 40; ++length)
        map[std::to_string(length)] = {std::string(length, 'A')};
    for (size_t length = 1; length <= 40; ++length) {
        std::string name(length, 'A');
        EXPECT_EQ(std::to_string(length), MGR::get_mgr()->get_mapping_key(name, &map));
        for (size_t place = 0; place < length; ++place) {
            std::string other = name;
            other[place] = 'B';
            EXPECT_EQ("", MGR::get_mgr()->get_mapping_key(other, &map)) << other;
        }
    }
}

TEST_F(GrammarLookup, StandardizesTheNameInPlace) {
    std::string name = " \t\r\n\v\fqx20af256c6n \t\r\n\v\f";
    EXPECT_EQ("QX20AF256", MGR::get_mapping_key(name, TYPE::PACKAGE_GRAMMAR));
    EXPECT_EQ("QX20AF256C6N", name);
}

TEST_F(GrammarLookup, StandardizesANameThatItDoesNotFind) {
    std::string name = " no such name_- ";
    EXPECT_EQ("", MGR::get_mapping_key(name, TYPE::FAMILY));
    EXPECT_EQ("NO SUCH NAME_-", name);
}

TEST_F(GrammarLookup, ComparesMapsOfOthersAsTheyAre) {
    TOVREN_DDB_MAP map = {{"key", {"lower", "UPPER"}}};
    EXPECT_EQ("", MGR::get_mgr()->get_mapping_key("lower", &map));
    EXPECT_EQ("key", MGR::get_mgr()->get_mapping_key("upper", &map));
}

TEST_F(GrammarLookup, ReportsANullMap) {
    EXPECT_REPORT(MGR::get_mgr()->get_mapping_key("QX20A", nullptr), "mapping != NULL", IN_DDB_MGR);
    EXPECT_REPORT(MGR::get_mgr()->get_key_mapping("QX20A", nullptr), "mapping != NULL", IN_DDB_MGR);
}

TEST_F(GrammarLookup, ReportsANullMapBeforeItTouchesTheName) {
    std::string name = " qx ";
    EXPECT_REPORT(MGR::get_mgr()->get_mapping_key(name, nullptr), "mapping != NULL", IN_DDB_MGR);
    EXPECT_EQ(" qx ", name);
}

TEST_F(GrammarLookup, ReportsAMapThatThereIsNot) {
    for (const unsigned int type : {8U, 9U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_REPORT(MGR::get_mgr()->get_map(TYPE(type)), "type < TOVREN_DDB_GRAMMAR_ENUM::MAX", IN_DDB_MGR);
        EXPECT_REPORT(MGR::get_mapping_key("QX20A", TYPE(type)), "type < TOVREN_DDB_GRAMMAR_ENUM::MAX", IN_DDB_MGR);
    }
}

// ---- forward ----

TEST_F(GrammarLookup, GivesTheContentsOfAKeyInTheirOrder) {
    std::string pcf = " qx20x\n";
    EXPECT_EQ((std::vector<std::string>{"QX20B", "QX20A"}), MGR::get_dev_pcf_list(pcf));
    EXPECT_EQ("QX20X", pcf);
}

TEST_F(GrammarLookup, GivesNoContentsForAnUnknownKey) {
    EXPECT_EQ(std::vector<std::string>(), MGR::get_dev_pcf_list("QX20A"));
    EXPECT_EQ(std::vector<std::string>(), MGR::get_dev_pcf_list(""));
}

TEST_F(GrammarLookup, GivesACopyOfTheContents) {
    MGR* const mgr = MGR::get_mgr();
    std::vector<std::string> contents = mgr->get_key_mapping("QX20A", mgr->get_map(TYPE::PGM_GRAMMAR));
    contents.clear();
    EXPECT_EQ((std::vector<std::string>{"QX20AF256", "QX20AF484"}),
              mgr->get_key_mapping("QX20A", mgr->get_map(TYPE::PGM_GRAMMAR)));
}

// ---- named accessors ----

TEST_F(GrammarLookup, EachAccessorReadsItsOwnMap) {
    EXPECT_EQ("IN0", MGR::get_package_grammar("shared", false));
    EXPECT_EQ("IN1", MGR::get_pgm_grammar("shared", false));
    EXPECT_EQ("IN2", MGR::get_pgm_pcf("shared"));
    EXPECT_EQ("IN3", MGR::get_pgm_family_pcf("shared"));
    EXPECT_EQ("IN4", MGR::get_dev_pcf("shared"));
    EXPECT_EQ("IN5", MGR::get_dev_family_pcf("shared"));
    EXPECT_EQ("IN6", MGR::get_device_pcf_family_pcf("shared"));
    EXPECT_EQ("IN7", MGR::get_family("shared"));
}

TEST_F(GrammarLookup, TwoAccessorsFallBackToTheStandardizedNameUnlessEmptyIsKept) {
    for (auto* const get : {&MGR::get_package_grammar, &MGR::get_pgm_grammar}) {
        std::string name = " unknown ";
        EXPECT_EQ("UNKNOWN", get(name, false));
        EXPECT_EQ("UNKNOWN", name);
        EXPECT_EQ("", get(" unknown ", true));
    }
}

TEST_F(GrammarLookup, TheOtherAccessorsGiveNothingForAnUnknownName) {
    for (auto* const get : {&MGR::get_pgm_pcf, &MGR::get_pgm_family_pcf, &MGR::get_dev_pcf, &MGR::get_dev_family_pcf,
                            &MGR::get_device_pcf_family_pcf, &MGR::get_family}) {
        std::string name = " unknown ";
        EXPECT_EQ("", get(name));
        EXPECT_EQ("UNKNOWN", name);
    }
}

TEST(StandardizeName, TrimsThenUpperCases) {
    std::string name = "\tqx20a f256-c6_n\r\n";
    MGR::standardize_name(name);
    EXPECT_EQ("QX20A F256-C6_N", name);
}

TEST(StandardizeName, LeavesNothingOfWhiteSpace) {
    std::string name = " \t\r\n";
    MGR::standardize_name(name);
    EXPECT_EQ("", name);
}

// ---- life ----

class GrammarLife : public NAMING_TEST {};

TEST_F(GrammarLife, IsMadeByTheFirstUseAndKept) {
    EXPECT_EQ(nullptr, MGR::m_mgr);
    MGR::get_family("X");
    const MGR* const made = MGR::m_mgr;
    EXPECT_NE(nullptr, made);
    EXPECT_EQ(made, MGR::get_mgr());
    EXPECT_EQ(made, MGR::m_mgr);
}

TEST_F(GrammarLife, ReadsTheTableAgainAfterItsRelease) {
    const std::string key = MGR::get_mgr()->get_map(TYPE::PACKAGE_GRAMMAR)->begin()->first;
    const std::string name = MGR::get_mgr()->get_map(TYPE::PACKAGE_GRAMMAR)->begin()->second.back();
    ASSERT_EQ(key, MGR::get_package_grammar(name, true));
    MGR::delete_mgr();
    EXPECT_EQ(nullptr, MGR::m_mgr);
    EXPECT_EQ(key, MGR::get_package_grammar(name, true));
}

TEST_F(GrammarLife, IsReleasedWhateverItsMapsHold) {
    use_grammar(MAPS);
    MGR::delete_mgr();
    MGR::delete_mgr();
    EXPECT_EQ(nullptr, MGR::m_mgr);
}

} // namespace
