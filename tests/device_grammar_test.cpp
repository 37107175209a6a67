// The device-name grammar over maps of its own, every rule and its trace; walking the maps; near names.
#include "tovren_device_grammar_mgr.h"

#include "naming_fixture.h"
#include "report.h"
#include "tovren_standalone_host.h"

namespace {

using GRAMMAR = TOVREN_DEVICE_GRAMMAR_MGR;

// QX20A: two packages that are one to the programmer, under the name of the first.
// QC40A: a programmer name that is no package-level name; a full name that is mapped directly, and is listed under
// a package all the same. BA50A: device names only. LONE: a package-level name without a programmer name.
const std::vector<NAMING_MAP> MAPS = {
    {{"QX20AF256", {"QX20AF256", "QX20AF256C6", "QX20AF256C6N"}},
     {"QX20AF484", {"QX20AF484C6"}},
     {"QC40AM100", {"QC40AM100", "QC40AM100I7"}},
     {"QC40AF256", {"QC40ADIRECT"}},
     {"LONE", {"LONE", "LONEC6"}}},
    {{"QX20AF256", {"QX20AF256", "QX20AF484"}},
     {"QC40A", {"QC40AM100"}},
     {"QC40D", {"QC40ADIRECT"}},
     {"QC40F", {"QC40AF256"}}},
    {{"QX20X", {"QX20AF256"}}, {"QC40X", {"QC40A", "BOTH"}}},
    {{"QUARN_FAM", {"QX20AF256"}}, {"QOLTA_FAM", {"QC40A"}}},
    {{"QX20X", {"QX20B", "QX20A"}}, {"BA50X", {"BA50A", "BOTH"}}},
    {{"QUARN_FAM", {"QX20A", "QX20B"}}, {"BRONTA_FAM", {"BA50A"}}},
    {{"QUARN_FAM", {"QX20X"}}},
    {{"QUARN-3S", {"QX20X", "NAMED"}}, {"QOLTA-2", {"QC40X"}}, {"BRONTA-4", {"BA50X"}}},
};

class DeviceGrammar : public NAMING_TEST {
protected:
    DeviceGrammar() { use_grammar(MAPS); }

    static void trace() { TOVREN_STANDALONE_HOST::set_setting("TOVREN_ENABLE_GRAMMAR_DEBUG", "on"); }
};

// ---- package-level name ----

TEST_F(DeviceGrammar, StripsTheSpeedGrade) {
    EXPECT_EQ("QX20AF256", GRAMMAR::get_package_name("QX20AF256C6N", false));
    EXPECT_EQ("QX20AF256", GRAMMAR::get_package_name("QX20AF256", true));
}

TEST_F(DeviceGrammar, AnUnknownNameIsItsOwnPackageNameUnlessEmptyIsKept) {
    std::string name = " qx99 ";
    EXPECT_EQ("QX99", GRAMMAR::get_package_name(name, false));
    EXPECT_EQ("QX99", name);
    EXPECT_EQ("", GRAMMAR::get_package_name(name, true));
}

// ---- programmer name ----

TEST_F(DeviceGrammar, MapsAPackageNameToItsProgrammerName) {
    EXPECT_EQ("QX20AF256", GRAMMAR::get_pgm_name("QX20AF484", false, false));
    EXPECT_EQ("QC40A", GRAMMAR::get_pgm_name("qc40am100", true, true));
}

TEST_F(DeviceGrammar, ReachesTheProgrammerNameOfAFullNameThroughItsPackageName) {
    EXPECT_EQ("QC40A", GRAMMAR::get_pgm_name("QC40AM100I7", false, false));
    EXPECT_EQ("QC40A", GRAMMAR::get_pgm_name("QC40AM100I7", false, true));
}

TEST_F(DeviceGrammar, DoesNotGoThroughThePackageNameWhenToldTo) {
    EXPECT_EQ("QC40AM100I7", GRAMMAR::get_pgm_name(" qc40am100i7", true, false));
    EXPECT_EQ("", GRAMMAR::get_pgm_name("QC40AM100I7", true, true));
}

TEST_F(DeviceGrammar, TheDirectMappingWins) {
    EXPECT_EQ("QC40D", GRAMMAR::get_pgm_name("QC40ADIRECT", false, false));
}

TEST_F(DeviceGrammar, ANameWithoutAProgrammerNameIsItsOwnUnlessEmptyIsKept) {
    EXPECT_EQ("LONEC6", GRAMMAR::get_pgm_name("lonec6", false, false));
    EXPECT_EQ("", GRAMMAR::get_pgm_name("lonec6", false, true));
    EXPECT_EQ("QX99", GRAMMAR::get_pgm_name("qx99", false, false));
    EXPECT_EQ("", GRAMMAR::get_pgm_name("qx99", false, true));
}

// ---- files ----

TEST_F(DeviceGrammar, GivesTheProgrammerFilesOfAProgrammerName) {
    EXPECT_EQ("QC40X", GRAMMAR::get_pgm_part_pcf(" qc40a"));
    EXPECT_EQ("QOLTA_FAM", GRAMMAR::get_pgm_family_pcf("qc40a "));
    EXPECT_EQ("", GRAMMAR::get_pgm_part_pcf("QC40AM100"));
    EXPECT_EQ("", GRAMMAR::get_pgm_family_pcf("QC40AM100"));
}

TEST_F(DeviceGrammar, GivesBothProgrammerFilesOfAnyName) {
    for (const char* name : {"QC40AM100I7", "QC40AM100", " qc40am100i7 ", "QC40A"}) {
        std::string part_pcf = "before";
        std::string family_pcf = "before";
        GRAMMAR::get_pgm_pcfs(name, part_pcf, family_pcf);
        EXPECT_EQ("QC40X", part_pcf) << name;
        EXPECT_EQ("QOLTA_FAM", family_pcf) << name;
    }
}

TEST_F(DeviceGrammar, EmptiesBothProgrammerFilesOfAnUnknownName) {
    std::string part_pcf = "before";
    std::string family_pcf = "before";
    GRAMMAR::get_pgm_pcfs("QX99", part_pcf, family_pcf);
    EXPECT_EQ("", part_pcf);
    EXPECT_EQ("", family_pcf);
}

TEST_F(DeviceGrammar, GivesTheDeviceFilesOfADevice) {
    EXPECT_EQ("BA50X", GRAMMAR::get_dev_part_pcf(" ba50a"));
    EXPECT_EQ("BRONTA_FAM", GRAMMAR::get_dev_family_pcf("ba50a "));
    std::string part_pcf = "before";
    std::string family_pcf = "before";
    GRAMMAR::get_dev_pcfs("ba50a", part_pcf, family_pcf);
    EXPECT_EQ("BA50X", part_pcf);
    EXPECT_EQ("BRONTA_FAM", family_pcf);
}

TEST_F(DeviceGrammar, ConvertsNoNameForTheDeviceFiles) {
    std::string part_pcf = "before";
    std::string family_pcf = "before";
    GRAMMAR::get_dev_pcfs("QX20AF256", part_pcf, family_pcf);
    EXPECT_EQ("", part_pcf);
    EXPECT_EQ("", family_pcf);
}

TEST_F(DeviceGrammar, GivesTheFamilyFileThatListsAPartFile) {
    EXPECT_EQ("QUARN_FAM", GRAMMAR::get_pcf_family_pcf(" qx20x "));
    EXPECT_EQ("", GRAMMAR::get_pcf_family_pcf("BA50X"));
}

TEST_F(DeviceGrammar, GivesTheFirstDeviceOfAPartFile) {
    EXPECT_EQ("QX20B", GRAMMAR::get_pcf_device(" qx20x "));
    EXPECT_EQ("", GRAMMAR::get_pcf_device("QX99X"));
}

// ---- family ----

TEST_F(DeviceGrammar, GivesTheFamilyOfAPartFile) {
    EXPECT_EQ("QUARN-3S", GRAMMAR::get_family(" qx20x "));
}

TEST_F(DeviceGrammar, GivesTheFamilyThatNamesTheNameItself) {
    EXPECT_EQ("QUARN-3S", GRAMMAR::get_family("NAMED"));
}

TEST_F(DeviceGrammar, GivesTheFamilyOfAProgrammerNameByItsPartFile) {
    EXPECT_EQ("QOLTA-2", GRAMMAR::get_family("QC40A"));
}

TEST_F(DeviceGrammar, GivesTheFamilyOfADeviceByItsPartFile) {
    EXPECT_EQ("BRONTA-4", GRAMMAR::get_family("BA50A"));
}

TEST_F(DeviceGrammar, PrefersTheProgrammersPartFileForTheFamily) {
    EXPECT_EQ("QOLTA-2", GRAMMAR::get_family("BOTH"));
}

TEST_F(DeviceGrammar, ConvertsNoNameForTheFamily) {
    EXPECT_EQ("", GRAMMAR::get_family("QC40AM100I7"));
    EXPECT_EQ("", GRAMMAR::get_family("QC40AM100"));
    EXPECT_EQ("", GRAMMAR::get_family("QX99"));
    EXPECT_EQ("", GRAMMAR::get_family(""));
}

// ---- which name to use ----

TEST_F(DeviceGrammar, UsesThePackageNameThatTheProgrammerKnows) {
    for (const char* name : {"QX20AF256", "QX20AF256C6", " qx20af256c6n "})
        EXPECT_TRUE(GRAMMAR::use_package_name(name)) << name;
}

TEST_F(DeviceGrammar, DoesNotUseAPackageNameThatTheProgrammerKnowsByAnother) {
    for (const char* name : {"QX20AF484C6", "QC40AM100", "QC40AM100I7", "LONE", "LONEC6", "QX99"})
        EXPECT_FALSE(GRAMMAR::use_package_name(name)) << name;
}

TEST_F(DeviceGrammar, UsesThePackageNameOfTheEmptyName) {
    EXPECT_TRUE(GRAMMAR::use_package_name(""));
    EXPECT_TRUE(GRAMMAR::use_package_name(" \t"));
}

TEST_F(DeviceGrammar, UsesAFullNameThatIsPackageAndProgrammerNameAtOnce) {
    std::string name = " qx20af256 ";
    EXPECT_TRUE(GRAMMAR::use_full_name(name));
    EXPECT_EQ("QX20AF256", name);
}

TEST_F(DeviceGrammar, DoesNotUseAFullNameThatIsNot) {
    for (const char* name : {"QX20AF256C6", "QX20AF484", "QC40AM100", "LONE", "QC40A", "QX99", "", "  "})
        EXPECT_FALSE(GRAMMAR::use_full_name(name)) << name;
}

// ---- trace ----

TEST_F(DeviceGrammar, TracesThePackageNameInThreeLines) {
    trace();
    EXPECT_EQ("Map Flow   : Strip Speedgrade\n"
              "    Input  : QX20AF256C6\n"
              "    Output : QX20AF256\n",
              standard_output_of([] { GRAMMAR::get_package_name(" qx20af256c6 ", false); }));
}

TEST_F(DeviceGrammar, TracesAnEmptyPackageName) {
    trace();
    EXPECT_EQ("Map Flow   : Strip Speedgrade\n"
              "    Input  : QX99\n"
              "    Output : \n",
              standard_output_of([] { GRAMMAR::get_package_name("QX99", true); }));
}

TEST_F(DeviceGrammar, TracesTheProgrammerNameInFourLines) {
    trace();
    EXPECT_EQ("Map Flow   : Strip Package (skip package conversion: 0)\n"
              "    Input0 : QC40AM100I7\n"
              "    Input1 : QC40AM100\n"
              "    Output : QC40A\n",
              standard_output_of([] { GRAMMAR::get_pgm_name("qc40am100i7", false, false); }));
}

TEST_F(DeviceGrammar, TracesNoPackageNameThatWasNotLookedFor) {
    trace();
    EXPECT_EQ("Map Flow   : Strip Package (skip package conversion: 1)\n"
              "    Input0 : QC40AM100I7\n"
              "    Input1 : \n"
              "    Output : QC40AM100I7\n",
              standard_output_of([] { GRAMMAR::get_pgm_name("QC40AM100I7", true, false); }));
}

TEST_F(DeviceGrammar, TracesNoPackageNameWhenTheMappingIsDirect) {
    trace();
    EXPECT_EQ("Map Flow   : Strip Package (skip package conversion: 0)\n"
              "    Input0 : QC40ADIRECT\n"
              "    Input1 : \n"
              "    Output : QC40D\n",
              standard_output_of([] { GRAMMAR::get_pgm_name("QC40ADIRECT", false, true); }));
}

TEST_F(DeviceGrammar, TracesTheStepsOfCompoundOperations) {
    trace();
    EXPECT_EQ("Map Flow   : Strip Speedgrade\n"
              "    Input  : QX20AF256C6\n"
              "    Output : QX20AF256\n"
              "Map Flow   : Strip Package (skip package conversion: 1)\n"
              "    Input0 : QX20AF256\n"
              "    Input1 : \n"
              "    Output : QX20AF256\n",
              standard_output_of([] { GRAMMAR::use_package_name("QX20AF256C6"); }));
}

TEST_F(DeviceGrammar, DoesNotTraceLookUpsOfFilesAndFamilies) {
    trace();
    EXPECT_EQ("", standard_output_of([] {
                  GRAMMAR::get_pgm_part_pcf("QC40A");
                  GRAMMAR::get_dev_family_pcf("QX20A");
                  GRAMMAR::get_pcf_family_pcf("QX20X");
                  GRAMMAR::get_pcf_device("QX20X");
                  GRAMMAR::get_family("QX20X");
              }));
}

TEST_F(DeviceGrammar, AsksForTheSwitchAnewForEveryCall) {
    EXPECT_EQ("", standard_output_of([] { GRAMMAR::get_package_name("LONE", false); }));
    trace();
    EXPECT_NE("", standard_output_of([] { GRAMMAR::get_package_name("LONE", false); }));
    TOVREN_STANDALONE_HOST::set_setting("TOVREN_ENABLE_GRAMMAR_DEBUG", "off");
    EXPECT_EQ("", standard_output_of([] { GRAMMAR::get_package_name("LONE", false); }));
}

// ---- free functions ----

TEST(GrammarCharacterType, ClassifiesEveryCharacter) {
    const std::string capitals = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    const std::string digits = "0123456789";
    for (int code = 0; code < 256; ++code) {
        const char c = static_cast<char>(code);
        char expected = '?';
        if (capitals.find(c) != std::string::npos)
            expected = 'c';
        else if (digits.find(c) != std::string::npos)
            expected = 'd';
        else if (c == '_' || c == '-')
            expected = c;
        EXPECT_EQ(expected, get_grammar_character_type(c)) << code;
    }
}

TEST(StandardizeNameFunction, TrimsThenUpperCases) {
    std::string name = "\v\fqx20a f256-c6_n\r\n ";
    standardize_name(name);
    EXPECT_EQ("QX20A F256-C6_N", name);
}

// ---- walking ----

TEST_F(DeviceGrammar, NamesItsMaps) {
    const std::vector<std::string> expected = {"PACKAGE_GRAMMAR",       "PGM_GRAMMAR", "PGM_PCF",
                                               "PGM_FAMILY_PCF",        "DEV_PCF",     "DEV_FAMILY_PCF",
                                               "DEVICE_PCF_FAMILY_PCF", "FAMILY"};
    for (unsigned int map = 0; map < GRAMMAR::MAP_COUNT; ++map)
        EXPECT_EQ(expected.at(map), GRAMMAR::get_map_name(map));
    EXPECT_EQ("", GRAMMAR::get_map_name(8));
    EXPECT_EQ("", GRAMMAR::get_map_name(0xFFFFFFFF));
}

TEST_F(DeviceGrammar, WalksAMapInTheOrderOfItsKeys) {
    NAMING_MAP seen;
    GRAMMAR::visit_map(1, [&](const std::string& key, const std::vector<std::string>& contents) {
        seen.emplace_back(key, contents);
    });
    EXPECT_EQ((NAMING_MAP{{"QC40A", {"QC40AM100"}},
                          {"QC40D", {"QC40ADIRECT"}},
                          {"QC40F", {"QC40AF256"}},
                          {"QX20AF256", {"QX20AF256", "QX20AF484"}}}),
              seen);
}

TEST_F(DeviceGrammar, ReportsAWalkThroughNoMap) {
    EXPECT_REPORT(GRAMMAR::visit_map(8, [](const auto&, const auto&) {}), "type < TOVREN_DDB_GRAMMAR_ENUM::MAX",
                  IN_DDB_MGR);
}

// ---- near names ----

using NAMES = std::vector<std::string>;

TEST_F(DeviceGrammar, OffersNamesWithinTwoEditsTheNearestFirst) {
    EXPECT_EQ((NAMES{"QC40A", "QC40D", "QC40F", "QC40X"}), GRAMMAR::get_near_names("QC40"));
    EXPECT_EQ((NAMES{"BA50A", "BA50X", "QC40A"}), GRAMMAR::get_near_names("BA40A"));
    EXPECT_EQ((NAMES{"LONEC6"}), GRAMMAR::get_near_names("LOONEC66"));
}

TEST_F(DeviceGrammar, OffersAKnownNameFirst) {
    EXPECT_EQ("QC40F", GRAMMAR::get_near_names(" qc40f ").front());
}

TEST_F(DeviceGrammar, OffersFiveNamesAtMostAndEachOnce) {
    std::vector<NAMING_MAP> maps(8, {{"QX20F", {"QX20E", "QX20D", "QX20C", "QX20B", "QX20A"}}});
    use_grammar(maps);
    EXPECT_EQ((NAMES{"QX20A", "QX20B", "QX20C", "QX20D", "QX20E"}), GRAMMAR::get_near_names("QX20"));
}

TEST_F(DeviceGrammar, OffersNamesThatBeginAlikeWhereNoneIsNear) {
    EXPECT_EQ((NAMES{"BRONTA-4", "BRONTA_FAM"}), GRAMMAR::get_near_names("brontasaurus"));
    EXPECT_EQ((NAMES{"QUARN-3S", "QUARN_FAM"}), GRAMMAR::get_near_names("QUAXXXXXXXXXXXX"));
}

TEST_F(DeviceGrammar, OffersNothingForANameLikeNoOther) {
    EXPECT_EQ(NAMES(), GRAMMAR::get_near_names("ZZZZZZZZ"));
    EXPECT_EQ(NAMES(), GRAMMAR::get_near_names(""));
    EXPECT_EQ(NAMES(), GRAMMAR::get_near_names("QUxxxxxxxxxxxx"));
}

// Levenshtein's table, whole.
size_t edits_of(const std::string& left, const std::string& right) {
    std::vector<std::vector<size_t>> table(left.size() + 1, std::vector<size_t>(right.size() + 1));
    for (size_t i = 0; i <= left.size(); ++i) {
        for (size_t j = 0; j <= right.size(); ++j) {
            if (i == 0 || j == 0)
                table[i][j] = i + j;
            else
                table[i][j] = std::min({table[i - 1][j] + 1, table[i][j - 1] + 1,
                                        table[i - 1][j - 1] + (left[i - 1] == right[j - 1] ? 0 : 1)});
        }
    }
    return table[left.size()][right.size()];
}

// Every text of up to five of the letters A and B.
std::vector<std::string> short_texts() {
    std::vector<std::string> texts = {""};
    for (size_t place = 0; texts[place].size() < 5; ++place) {
        texts.push_back(texts[place] + "A");
        texts.push_back(texts[place] + "B");
    }
    return texts;
}

TEST_F(DeviceGrammar, CountsEditsAsTheWholeTableDoes) {
    for (const std::string& known : short_texts()) {
        if (known.empty())
            continue;
        std::vector<NAMING_MAP> maps(8, {{"______________", {"______________"}}});
        maps[2].push_back({known, {known}});
        use_grammar(maps);
        for (const std::string& wanted : short_texts()) {
            const bool is_near = edits_of(wanted, known) <= 2;
            const bool begins_alike = wanted.substr(0, 3) == known.substr(0, 3) && wanted.size() > 2;
            EXPECT_EQ(is_near || begins_alike ? NAMES{known} : NAMES(), GRAMMAR::get_near_names(wanted))
                << wanted << " and " << known;
        }
    }
}

} // namespace
