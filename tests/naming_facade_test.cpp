// The naming facade over a catalogue and naming tables of its own.
#include "tovren_mgr.h"

#include "fake_catalogue.h"
#include "naming_fixture.h"
#include "report.h"
#include "tovren_standalone_host.h"

#include <openssl/evp.h>

namespace {

constexpr unsigned int NO_INDEX = 0xFFFFFFFF;
constexpr unsigned long long NO_HASH = 0xFFFFFFFFFFFFFFFF;

// Spelled as no table spells its names.
class NamingFacade : public NAMING_TEST {
protected:
    NamingFacade() {
        fake_catalogue() = {};
        fake_catalogue().families = {"", "Quarn", "Qolta"};
        fake_catalogue().devices = {{"", 0}, {"Qx20a", 1}, {"Qx20b", 1}, {"Qc40a", 2}, {"Stray", 0}};
        put(0, {"Below0", 1});
        put(FAKE_PART_INVALID, {"Invalid", 1});
        put(FAKE_PART_GENERIC, {"Generic", 1});
        put(FAKE_PART_GENERIC + 1, {"Beyond1", 1});
        use_grammar({{{"QX20AF256", {"QX20AF256C6", "QX20AF256I7"}}, {"QX20AF484", {"QX20AF484C6"}}},
                     {{"QX20APGM", {"QX20AF256", "QX20AF484"}}},
                     {{"QX20X", {"QX20AF256C6", "QX20AF256I7", "QX20AF484C6"}}, {"QC40X", {"QC40AM100C6"}}},
                     {{"F3", {"N"}}},
                     {{"F4", {"N"}}},
                     {{"F5", {"N"}}},
                     {{"F6", {"N"}}},
                     {{"F7", {"N"}}}});
    }
    ~NamingFacade() override { EXPECT_EQ(0U, fake_catalogue().wrong_questions); }

    static void put(unsigned int number, const FAKE_PART& part) { fake_catalogue().parts.at(number) = part; }
};

// ---- ordering part numbers ----

TEST_F(NamingFacade, GivesTheOrderingIndexOfAPart) {
    put(4, {"Qx20af256C6", 1});
    use_opn({0, 9, 4, 4});
    EXPECT_EQ(2U, TOVREN_MGR::get_opn_enum("qx20AF256c6"));
}

TEST_F(NamingFacade, GivesNoIndexForAPartThatHasNone) {
    put(4, {"Qx20af256C6", 1});
    use_opn({0, 9});
    EXPECT_EQ(NO_INDEX, TOVREN_MGR::get_opn_enum("Qx20af256C6"));
}

TEST_F(NamingFacade, GivesNoIndexForWhatIsNoNamedPart) {
    use_opn({FAKE_PART_INVALID, FAKE_PART_GENERIC, FAKE_PART_MAX, 0x80000001});
    for (const char* name : {"unknown", "", "Invalid", "Generic", "OUT_OF_RANGE", "NEGATIVE"})
        EXPECT_EQ(NO_INDEX, TOVREN_MGR::get_opn_enum(name)) << name;
}

TEST_F(NamingFacade, DoesNotTrimTheNameOfAPart) {
    put(4, {"Qx20af256C6", 1});
    use_opn({4});
    EXPECT_EQ(NO_INDEX, TOVREN_MGR::get_opn_enum(" Qx20af256C6"));
    EXPECT_EQ(NO_HASH, TOVREN_MGR::get_opn_hash("Qx20af256C6 "));
}

TEST_F(NamingFacade, GivesTheUpperCaseNameOfAnIndex) {
    put(4, {"Qx20af256C6", 1});
    use_opn({4, 0, FAKE_PART_GENERIC + 1});
    EXPECT_EQ("QX20AF256C6", TOVREN_MGR::get_opn(0));
    EXPECT_EQ("BELOW0", TOVREN_MGR::get_opn(1)) << "0 is not this catalogue's invalid value";
    EXPECT_EQ("BEYOND1", TOVREN_MGR::get_opn(2));
}

TEST_F(NamingFacade, GivesNoNameForAnIndexThatStandsForNoNamedPart) {
    use_opn({FAKE_PART_INVALID, FAKE_PART_GENERIC, FAKE_PART_MAX, 0x80000001, 0xFFFFFFFF});
    for (const unsigned int index : {0U, 1U, 2U, 3U, 4U, 5U, 0x80000000U, 0xFFFFFFFFU})
        EXPECT_EQ("", TOVREN_MGR::get_opn(index)) << index;
}

// ---- hash ----

// The first six bytes of the digest, the first one lowest.
unsigned long long hash_of(const std::string& upper_name) {
    unsigned char digest[32];
    EXPECT_EQ(1, EVP_Digest(upper_name.data(), upper_name.size(), digest, nullptr, EVP_sha256(), nullptr));
    return digest[0] + 0x100ULL * digest[1] + 0x10000ULL * digest[2] + 0x1000000ULL * digest[3] +
           0x100000000ULL * digest[4] + 0x10000000000ULL * digest[5];
}

TEST_F(NamingFacade, HashesTheUpperCaseName) {
    put(4, {"Abc", 1});
    // SHA-256("ABC") begins B5 D4 04 5C 3F 46.
    EXPECT_EQ(0x463F5C04D4B5ULL, TOVREN_MGR::get_opn_hash("abc"));
    EXPECT_EQ(0x463F5C04D4B5ULL, TOVREN_MGR::get_opn_hash("ABC"));
    EXPECT_EQ(hash_of("ABC"), TOVREN_MGR::get_opn_hash("aBc"));
}

TEST_F(NamingFacade, HashesPartsWithoutAnOrderingIndex) {
    put(4, {"Qx20af256C6", 1});
    use_opn({0});
    EXPECT_EQ(hash_of("QX20AF256C6"), TOVREN_MGR::get_opn_hash("Qx20af256C6"));
}

TEST_F(NamingFacade, HashesNothingThatIsNoNamedPart) {
    for (const char* name : {"unknown", "", "Invalid", "Generic", "OUT_OF_RANGE", "NEGATIVE"})
        EXPECT_EQ(NO_HASH, TOVREN_MGR::get_opn_hash(name)) << name;
}

TEST_F(NamingFacade, FindsThePartOfAHash) {
    put(4, {"Qx20af256C6", 1});
    put(FAKE_PART_GENERIC - 1, {"Last", 1});
    EXPECT_EQ("QX20AF256C6", TOVREN_MGR::get_opn_from_hash(TOVREN_MGR::get_opn_hash("Qx20af256C6")));
    EXPECT_EQ("LAST", TOVREN_MGR::get_opn_from_hash(hash_of("LAST")));
}

TEST_F(NamingFacade, IgnoresTheTopSixteenBitsOfAHash) {
    put(4, {"Qx20af256C6", 1});
    for (unsigned int bit = 48; bit < 64; ++bit)
        EXPECT_EQ("QX20AF256C6", TOVREN_MGR::get_opn_from_hash(hash_of("QX20AF256C6") | 1ULL << bit));
}

TEST_F(NamingFacade, ComparesAllOtherBitsOfAHash) {
    put(4, {"Qx20af256C6", 1});
    for (unsigned int bit = 0; bit < 48; ++bit)
        EXPECT_EQ("", TOVREN_MGR::get_opn_from_hash(hash_of("QX20AF256C6") ^ 1ULL << bit)) << bit;
}

TEST_F(NamingFacade, SearchesAHashOnlyBetweenInvalidAndGeneric) {
    for (const char* name : {"BELOW0", "INVALID", "GENERIC", "BEYOND1"})
        EXPECT_EQ("", TOVREN_MGR::get_opn_from_hash(hash_of(name))) << name;
}

// ---- part of a programmer part file ----

TEST_F(NamingFacade, GivesThePartOfAPartFileAsTheCatalogueSpellsIt) {
    put(5, {"Qc40am100c6", 3});
    put(6, {"Qx20af256c6", 1});
    put(7, {"Qx20af484c6", 1});
    EXPECT_EQ("Qx20af256c6", TOVREN_MGR::get_part_name_from_pcf("qx20x"));
}

TEST_F(NamingFacade, AsksForPartsInFourPasses) {
    put(5, {"Qc40am100c6", 3});
    TOVREN_MGR::get_part_name_from_pcf("QC40X");
    EXPECT_EQ((std::vector<std::string>{"ANY ANY ANY ANY ANY 1 1 0 any", "ANY ANY ANY ANY ANY 1 0 0 any",
                                        "ANY ANY ANY ANY ANY 0 1 0 any", "ANY ANY ANY ANY ANY 0 0 0 any"}),
              fake_catalogue().filter_calls);
}

TEST_F(NamingFacade, StopsAfterAFirstPassWithoutAMatch) {
    put(5, {"Qc40am100c6", 3, true, false});
    put(6, {"Qx20af256c6", 1, false, true});
    EXPECT_EQ("", TOVREN_MGR::get_part_name_from_pcf("QC40X"));
    EXPECT_EQ("", TOVREN_MGR::get_part_name_from_pcf("QX20X"));
    EXPECT_EQ(2U, fake_catalogue().filter_calls.size());
}

TEST_F(NamingFacade, TheLastPassThatMatchesCounts) {
    put(4, {"Qx20af484c6", 1, false, false}); // pass 3
    put(5, {"Qx20af256i7", 1, false, true});  // passes 2 and 3
    put(6, {"Qx20af256c6", 1, true, true});   // all
    EXPECT_EQ("Qx20af484c6", TOVREN_MGR::get_part_name_from_pcf("QX20X"));
    put(4, {});
    EXPECT_EQ("Qx20af256i7", TOVREN_MGR::get_part_name_from_pcf("QX20X"));
}

TEST_F(NamingFacade, AFailingPassLeavesAnEarlierMatch) {
    put(4, {"Qx20af484c6", 1, false, false});
    put(6, {"Qx20af256c6", 1, true, true});
    fake_catalogue().failing_filters = {3};
    EXPECT_EQ("Qx20af256c6", TOVREN_MGR::get_part_name_from_pcf("QX20X"));
    EXPECT_EQ(4U, fake_catalogue().filter_calls.size());
}

TEST_F(NamingFacade, AFailingFirstPassIsAMiss) {
    put(6, {"Qx20af256c6", 1, true, true});
    fake_catalogue().failing_filters = {0};
    EXPECT_EQ("", TOVREN_MGR::get_part_name_from_pcf("QX20X"));
    EXPECT_EQ(1U, fake_catalogue().filter_calls.size());
}

TEST_F(NamingFacade, DoesNotTrimThePartFile) {
    put(6, {"Qx20af256c6", 1});
    EXPECT_EQ("", TOVREN_MGR::get_part_name_from_pcf(" QX20X"));
}

TEST_F(NamingFacade, TheEmptyPartFileIsThatOfPartsWithoutOne) {
    put(5, {"Qx20af256c6", 1});
    put(6, {"Nofile", 1});
    EXPECT_EQ("Nofile", TOVREN_MGR::get_part_name_from_pcf(""));
}

TEST_F(NamingFacade, AnUnknownPartFileHasNoPart) {
    put(6, {"Qx20af256c6", 1});
    EXPECT_EQ("", TOVREN_MGR::get_part_name_from_pcf("QX99X"));
}

// ---- first part of a device ----

TEST_F(NamingFacade, GivesTheFirstPartOfADeviceAsTheCatalogueSpellsIt) {
    put(4, {"Qx20bf256c6", 2});
    put(5, {"Qx20af256c6", 1});
    put(6, {"Qx20af484c6", 1});
    EXPECT_EQ("Qx20af256c6", TOVREN_MGR::get_part_name_from_dev("QX20A"));
    EXPECT_EQ((std::vector<std::string>{"Quarn ANY ANY ANY ANY 1 1 0 any"}), fake_catalogue().filter_calls);
}

TEST_F(NamingFacade, WidensTheSearchForADevicePassByPass) {
    put(4, {"Unnumbered", 1, true, false});
    put(5, {"Retired", 1, false, true});
    put(6, {"Both", 1, false, false});
    EXPECT_EQ("Unnumbered", TOVREN_MGR::get_part_name_from_dev("Qx20a"));
    put(4, {});
    EXPECT_EQ("Retired", TOVREN_MGR::get_part_name_from_dev("Qx20a"));
    put(5, {});
    EXPECT_EQ("Both", TOVREN_MGR::get_part_name_from_dev("Qx20a"));
}

TEST_F(NamingFacade, AnEarlierPassGoesBeforeAnEarlierPart) {
    put(4, {"Retired", 1, false, false});
    put(5, {"Current", 1, true, true});
    EXPECT_EQ("Current", TOVREN_MGR::get_part_name_from_dev("Qx20a"));
}

TEST_F(NamingFacade, SkipsAFailingPassForADevice) {
    put(5, {"Qx20af256c6", 1});
    fake_catalogue().failing_filters = {0, 1};
    EXPECT_EQ("Qx20af256c6", TOVREN_MGR::get_part_name_from_dev("Qx20a"));
    EXPECT_EQ(3U, fake_catalogue().filter_calls.size());
}

TEST_F(NamingFacade, ADeviceWithoutPartsGivesNone) {
    put(5, {"Qx20af256c6", 1});
    EXPECT_EQ("", TOVREN_MGR::get_part_name_from_dev("Qx20b"));
    EXPECT_EQ(4U, fake_catalogue().filter_calls.size());
}

TEST_F(NamingFacade, ReportsADeviceThatIsNotValid) {
    for (const char* name : {"QX99A", "", " Qx20a"})
        EXPECT_REPORT(TOVREN_MGR::get_part_name_from_dev(name), "Device is not valid in DEV database", IN_MGR) << name;
}

TEST_F(NamingFacade, ReportsADeviceWhoseFamilyIsNotValid) {
    EXPECT_REPORT(TOVREN_MGR::get_part_name_from_dev("Stray"), "Device is not valid in DEV database", IN_MGR);
}

// ---- full name ----

TEST_F(NamingFacade, AFullNameStandsForItself) {
    put(4, {"Qx20af256c6", 1});
    put(5, {"Qx20af256i7", 1});
    EXPECT_EQ("QX20AF256I7", TOVREN_MGR::get_possible_full_name("qx20AF256i7"));
}

TEST_F(NamingFacade, APackageNameStandsForItsFirstPart) {
    put(4, {"Qx20af484c6", 1});
    put(5, {"Qx20af256i7", 1});
    put(6, {"Qx20af256c6", 1});
    EXPECT_EQ("QX20AF256I7", TOVREN_MGR::get_possible_full_name("Qx20af256"));
}

TEST_F(NamingFacade, AProgrammerNameStandsForItsFirstPart) {
    put(4, {"Qx20af484c6", 1});
    put(5, {"Qx20af256i7", 1});
    EXPECT_EQ("QX20AF484C6", TOVREN_MGR::get_possible_full_name("qx20apgm"));
}

TEST_F(NamingFacade, AnEarlierPartThatMatchesByItsGrammarGoesBeforeALaterEqualOne) {
    put(4, {"Qx20af256c6", 1});
    put(5, {"Qx20af256", 1});
    EXPECT_EQ("QX20AF256C6", TOVREN_MGR::get_possible_full_name("QX20AF256"));
}

TEST_F(NamingFacade, AGrammarMatchNeedsTheSameFirstFiveCharacters) {
    use_grammar({{{"OTHER_NAME", {"QX20AF256C6"}}},
                 {{"QX2", {"OTHER_NAME"}}},
                 {{"F2", {"N"}}},
                 {{"F3", {"N"}}},
                 {{"F4", {"N"}}},
                 {{"F5", {"N"}}},
                 {{"F6", {"N"}}},
                 {{"F7", {"N"}}}});
    put(4, {"QX20AF256C6", 1});
    EXPECT_EQ("", TOVREN_MGR::find_possible_full_name("OTHER_NAME"));
    EXPECT_EQ("", TOVREN_MGR::find_possible_full_name("QX2"));
}

TEST_F(NamingFacade, NamesOfLessThanFiveCharactersMatchOnlyAsTheyAre) {
    use_grammar({{{"QXAB", {"QXABC6"}}, {"LONGNAME", {"QXAC"}}},
                 {{"P", {"N"}}},
                 {{"F2", {"N"}}},
                 {{"F3", {"N"}}},
                 {{"F4", {"N"}}},
                 {{"F5", {"N"}}},
                 {{"F6", {"N"}}},
                 {{"F7", {"N"}}}});
    put(4, {"QXABC6", 1});
    put(5, {"Qxac", 1});
    EXPECT_EQ("", TOVREN_MGR::find_possible_full_name("QXAB"));
    EXPECT_EQ("QXAC", TOVREN_MGR::get_possible_full_name("qxac"));
    EXPECT_REPORT(TOVREN_MGR::get_possible_full_name("qxab"),
                  "Unable to retrieve full device name from database for QXAB", IN_MGR);
}

TEST_F(NamingFacade, ReportsANameThatStandsForNoPart) {
    put(4, {"Qx20af256c6", 1});
    EXPECT_REPORT(TOVREN_MGR::get_possible_full_name("qx20af999"),
                  "Unable to retrieve full device name from database for QX20AF999", IN_MGR);
    EXPECT_REPORT(TOVREN_MGR::get_possible_full_name(""), "Unable to retrieve full device name from database for ",
                  IN_MGR);
    EXPECT_REPORT(TOVREN_MGR::get_possible_full_name("100%s"),
                  "Unable to retrieve full device name from database for 100%S", IN_MGR);
}

TEST_F(NamingFacade, DoesNotTrimAFullName) {
    put(4, {"Qx20af256c6", 1});
    EXPECT_EQ("", TOVREN_MGR::find_possible_full_name(" QX20AF256C6"));
}

TEST_F(NamingFacade, SearchesAFullNameOnlyBetweenInvalidAndGeneric) {
    for (const char* name : {"BELOW0", "INVALID", "GENERIC", "BEYOND1"})
        EXPECT_EQ("", TOVREN_MGR::find_possible_full_name(name)) << name;
}

TEST_F(NamingFacade, FindingGivesWhatTheOtherGives) {
    put(4, {"Qx20af256c6", 1});
    for (const char* name : {"qx20af256c6", "Qx20af256", "qx20apgm"})
        EXPECT_EQ(TOVREN_MGR::get_possible_full_name(name), TOVREN_MGR::find_possible_full_name(name));
}

TEST_F(NamingFacade, LooksAtTheMapsOnlyForPartsThatBeginAlike) {
    put(4, {"Qc40am100c6", 3});
    put(5, {"Qx20af484c6", 1});
    put(6, {"Qx20af256c6", 1});
    TOVREN_STANDALONE_HOST::set_setting("TOVREN_ENABLE_GRAMMAR_DEBUG", "on");
    EXPECT_EQ("Map Flow   : Strip Speedgrade\n"
              "    Input  : QX20AF484C6\n"
              "    Output : QX20AF484\n"
              "Map Flow   : Strip Package (skip package conversion: 0)\n"
              "    Input0 : QX20AF484C6\n"
              "    Input1 : QX20AF484\n"
              "    Output : QX20APGM\n"
              "Map Flow   : Strip Speedgrade\n"
              "    Input  : QX20AF256C6\n"
              "    Output : QX20AF256\n",
              standard_output_of([] { TOVREN_MGR::get_possible_full_name("qx20af256"); }));
}

// ---- programming enumerations ----

std::vector<std::string> list_of(PGM_ENUM_TYPE type) {
    const auto& [count, names] = PGM_SUPPORTED_ENUM_TYPE_MAP[type];
    return {names, names + count};
}

TEST(PgmEnumNames, HaveTheirLists) {
    EXPECT_EQ(PGM_RBA_TYPE_NAMES, PGM_SUPPORTED_ENUM_TYPE_MAP[PGM_RBA_TYPE].names);
    EXPECT_EQ(PGM_FLASH_BLOCK_TYPE_NAMES, PGM_SUPPORTED_ENUM_TYPE_MAP[PGM_FLASH_BLOCK_TYPE].names);
    EXPECT_EQ(PGM_ICB_TYPE_NAMES, PGM_SUPPORTED_ENUM_TYPE_MAP[PGM_ICB_TYPE].names);
    EXPECT_EQ(PGM_BITASM_GENERIC_ENUM_TYPE_NAMES, PGM_SUPPORTED_ENUM_TYPE_MAP[PGM_BITASM_GENERIC_ENUM_TYPE].names);
    EXPECT_EQ(4U, unsigned{PGM_ENUM_TYPE_MAX});
}

TEST(PgmEnumNames, OfFlashBlocks) {
    EXPECT_EQ((std::vector<std::string>{"", "UFM1", "UFM0", "CFM2", "CFM1", "CFM0", "DSM", "MFM", "DONE_BITS"}),
              list_of(PGM_FLASH_BLOCK_TYPE));
}

TEST(PgmEnumNames, OfConfigurationBits) {
    std::vector<std::string> expected = {""};
    for (int number = 1; number <= 20; ++number)
        expected.push_back("RESERVED" + std::to_string(number));
    for (const char* name : {"AES_KEYS",
                             "FALLBACK_ADDR",
                             "EPOF_ONLY",
                             "TEST_DISABLE",
                             "JTAG_SECURITY",
                             "SPI_NSDM",
                             "PROGRAM_DONE",
                             "KEY_PROGRAM_SUCCESS",
                             "ICB_PROGRAM_SUCCESS",
                             "VERIFY_PROTECT",
                             "TEST_ENABLE",
                             "WD_TIMEOUT_VALUE",
                             "UWEN",
                             "FORCE_SSMCLK_TO_ISMCLK",
                             "FALLBACK",
                             "CFM_ADD",
                             "CFM_X2",
                             "DELAY_ON",
                             "POR_DLY",
                             "WP_EN",
                             "WP_EN_SPI",
                             "CISCO_RU"})
        expected.emplace_back(name);
    EXPECT_EQ(43U, expected.size());
    EXPECT_EQ(expected, list_of(PGM_ICB_TYPE));
}

TEST(PgmEnumNames, OfBitstreamAssembly) {
    std::vector<std::string> expected = {"",
                                         "HPS_CONFIG_ORDER_HPS_FIRST",
                                         "HPS_CONFIG_ORDER_HPS_AFTER_INIT_DONE",
                                         "HPS_CONFIG_ORDER_HPS_BY_FPGA",
                                         "SOF_FILE_ERROR_POF_ERROR",
                                         "SOF_FILE_ERROR_INCOMPLETE_POWER_MANAGEMENT",
                                         "SOF_FILE_ERROR_INCOMPLETE_HPS_HANDOFF",
                                         "SOF_FILE_ERROR_INCOMPLETE_HPS_BOOTLOADER",
                                         "SOF_FILE_ERROR_NOT_SUPPORTED",
                                         "SOF_FILE_ERROR_NOT_ENABLED",
                                         "SOF_FILE_ERROR_PRSEC_ERROR"};
    for (int revision = 4; revision <= 10; ++revision)
        expected.push_back("SOF_FILE_ERROR_REV" + std::to_string(revision));
    for (const char* mode : {"DISABLED", "USE_SDM_PINS", "USE_HPS_PINS"})
        expected.push_back(std::string("HPS_DAP_SPLIT_MODE_") + mode);
    EXPECT_EQ(21U, expected.size());
    EXPECT_EQ(expected, list_of(PGM_BITASM_GENERIC_ENUM_TYPE));
}

TEST(PgmEnumNames, OfRegionsAndBlocks) {
    const std::vector<std::string> names = list_of(PGM_RBA_TYPE);
    EXPECT_EQ(76U, names.size());
    EXPECT_EQ("", names.front());
    EXPECT_EQ(76U, (std::set<std::string>(names.begin(), names.end()).size()));
    for (const char* name :
         {"CC_CS_0",         "CC_CS_1",         "CC_CS_2",         "CC_CS_3",         "CC_CS_4",
          "CC_CS_5",         "CC_CS_6",         "CC_CS_VIO",       "DS_DSP",          "RT_DSPL",
          "RT_DSPR",         "RT_BUFL",         "RT_HIOL",         "RT_HIOR",         "CC_TS_SCLKMUX_0",
          "CC_TS_SCLKMUX_1", "CC_TS_SCLKMUX_2", "CC_TS_SCLKMUX_3", "CC_TS_SCLKMUX_4", "CC_TS_SCLKMUX_5",
          "CC_TS_SCLKMUX_6", "CC_TS_SCLKMUX_7"})
        EXPECT_EQ(1, std::count(names.begin(), names.end(), name)) << name;
}

TEST(PgmEnumCheck, FindsEveryNameAtItsPositionInAnyCase) {
    for (unsigned int type = 0; type < PGM_ENUM_TYPE_MAX; ++type) {
        const std::vector<std::string> names = list_of(PGM_ENUM_TYPE(type));
        for (unsigned int place = 0; place < names.size(); ++place) {
            std::string lower = names[place];
            std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return tolower(c); });
            unsigned int value = NO_INDEX;
            EXPECT_TRUE(TOVREN_MGR::pgm_check_type_name_supported(PGM_ENUM_TYPE(type), lower, &value));
            EXPECT_EQ(place, value);
        }
    }
}

TEST(PgmEnumCheck, FindsALowerCaseName) {
    unsigned int value = 0;
    EXPECT_TRUE(TOVREN_MGR::pgm_check_type_name_supported(PGM_FLASH_BLOCK_TYPE, "cfm0", &value));
    EXPECT_EQ(5U, value);
}

TEST(PgmEnumCheck, TheEmptyNameIsInEveryListButItsValueIsNotProper) {
    for (unsigned int type = 0; type < PGM_ENUM_TYPE_MAX; ++type) {
        unsigned int value = 9;
        EXPECT_TRUE(TOVREN_MGR::pgm_check_type_name_supported(PGM_ENUM_TYPE(type), "", &value));
        EXPECT_EQ(0U, value);
        EXPECT_FALSE(TOVREN_MGR::pgm_check_type_enum_supported(PGM_ENUM_TYPE(type), 0, nullptr));
    }
}

TEST(PgmEnumCheck, LeavesTheValueOfANameThatIsNotThere) {
    for (const char* name : {"CFM3", " CFM0", "CFM0 ", "CFM", "AES_KEYS"}) {
        unsigned int value = 77;
        EXPECT_FALSE(TOVREN_MGR::pgm_check_type_name_supported(PGM_FLASH_BLOCK_TYPE, name, &value)) << name;
        EXPECT_EQ(77U, value);
    }
    EXPECT_FALSE(TOVREN_MGR::pgm_check_type_name_supported(PGM_FLASH_BLOCK_TYPE, std::string("CFM0\0", 5), nullptr));
}

TEST(PgmEnumCheck, TakesNoPointers) {
    EXPECT_TRUE(TOVREN_MGR::pgm_check_type_name_supported(PGM_ICB_TYPE, "UWEN", nullptr));
    EXPECT_TRUE(TOVREN_MGR::pgm_check_type_enum_supported(PGM_ICB_TYPE, 33, nullptr));
}

TEST(PgmEnumCheck, GivesTheNameOfAProperValue) {
    std::string name = "before";
    EXPECT_TRUE(TOVREN_MGR::pgm_check_type_enum_supported(PGM_FLASH_BLOCK_TYPE, 8, &name));
    EXPECT_EQ("DONE_BITS", name);
}

TEST(PgmEnumCheck, LeavesTheNameOfAValueThatIsNotProper) {
    for (unsigned int type = 0; type < PGM_ENUM_TYPE_MAX; ++type) {
        const auto count = static_cast<unsigned int>(list_of(PGM_ENUM_TYPE(type)).size());
        std::string name = "before";
        for (const unsigned int value : {0U, count, count + 1, 0xFFFFFFFFU})
            EXPECT_FALSE(TOVREN_MGR::pgm_check_type_enum_supported(PGM_ENUM_TYPE(type), value, &name));
        EXPECT_EQ("before", name);
        EXPECT_TRUE(TOVREN_MGR::pgm_check_type_enum_supported(PGM_ENUM_TYPE(type), count - 1, &name));
    }
}

TEST(PgmEnumCheck, ReportsATypeThatThereIsNot) {
    for (const unsigned int type : {4U, 5U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_REPORT(TOVREN_MGR::pgm_check_type_name_supported(PGM_ENUM_TYPE(type), "", nullptr),
                      "pgm_enum_type < PGM_ENUM_TYPE_MAX", IN_MGR);
        EXPECT_REPORT(TOVREN_MGR::pgm_check_type_enum_supported(PGM_ENUM_TYPE(type), 1, nullptr),
                      "pgm_enum_type < PGM_ENUM_TYPE_MAX", IN_MGR);
    }
}

} // namespace
