// A stored definition on its way into the flash table: which one is taken, what is printed and logged, what the flash
// in slot 0 does, and the check of an entry. Fields and rules: flash_external_rules_test.cpp.
#include "external_flash.h"
#include "tovren_standalone_host.h"

namespace {

using M = TOVREN_FLASH_MANAGER;
using FlashExternal = EXTERNAL_FLASH_TEST;

std::string status_lines(size_t count) {
    std::string lines;
    for (size_t i = 0; i < count; ++i)
        lines += "Status " + std::to_string(i) + " : 1\n";
    return lines;
}

// One more than the fields that could be read.
std::string status_lines_and_failure(size_t count) {
    return status_lines(count) + "Status " + std::to_string(count) + " : 0\n";
}

// ---- one good definition ----

TEST_F(FlashExternal, IsFilledFromTheStoredDefinition) {
    EXPECT_EQ("", apply(entry_of(DEFINITION())));
    EXPECT_EQ(described(record_of_definition()), described(manager.m_ext_flash_info));
}

TEST_F(FlashExternal, HasEachFlagAndNumberInItsOwnMember) {
    // Values that are all different, so far as their members and the rules allow it.
    DEFINITION definition;
    definition.fields = {"MAKER", "NAME", "1",  "2",    "1",  "4",  "255", "6",  "0",           "25",    "0",
                         "KEY",   "1",    "0",  "1",    "0",  "1",  "0",   "19", "-2147483648", "21504", "1",
                         "0",     "24",   "25", "2600", "27", "28", "29",  "30", "31",          "1",     "V"};
    EXPECT_TRUE(is_applied(definition));
    EXPECT_EQ("manufacturer_name=MAKER\ndevice_name=NAME\nsilicon_id=1\nmemory_id=2\nmemory_id_index=1\nmemory_type=4\n"
              "memory_type_index=255\nmfc_id=6\nmfc_id_index=0\nvelkor_id=25\ndefault_dev=0\nini=KEY\nextended_mode=1\n"
              "micron_flow=0\nspansion_flow=1\nstartup_protected=0\naai_mode=1\nflag_status=0\ndie_count=19\n"
              "device_bit_size=2147483648\ndevice_sector_byte=21504\nhalf_size=1\nbyte4_addressing=0\n"
              "bulk_erase_time=24\nsec_erase_time=25\nprogram_utime=2600\nprotection_mask=27\nprotection_value=28\n"
              "unprotect_value=29\nprotection_division=30\nbottom_value=31\nsdm_support=1\nasc_voltage=V\n",
              described(manager.m_ext_flash_info));
}

TEST_F(FlashExternal, RaisesTheFieldsAndComparesTheTagAsItStands) {
    const DEFINITION lower = DEFINITION().with(2, "qx25").with(33, "1.8v");
    apply(entry_of(lower));
    EXPECT_EQ(described(record_of_definition()), described(manager.m_ext_flash_info));
    apply(lower.text() + "#" + model_tag(DEFINITION().text(), EXTERNAL_VERSION_TEXT) + ";");
    EXPECT_EQ(described({}), described(manager.m_ext_flash_info));
}

TEST_F(FlashExternal, IgnoresWhatStandsAroundTheFields) {
    apply(entry_of("xx" + DEFINITION().text() + "more@and@more@"));
    EXPECT_EQ(described(record_of_definition()), described(manager.m_ext_flash_info));
}

TEST_F(FlashExternal, IsTheFirstOfTheList) {
    apply(entry_of(DEFINITION()) + entry_of(DEFINITION().with(2, "QX26")) + entry_of(DEFINITION().with(2, "QX27")));
    EXPECT_EQ("QX25", manager.m_ext_flash_info.device_name);
    apply(entry_of(DEFINITION().with(10, "17")) + entry_of(DEFINITION().with(2, "QX26")));
    EXPECT_EQ(described({}), described(manager.m_ext_flash_info));
}

TEST_F(FlashExternal, IsKeptWithoutANameAndHasNoEffect) {
    apply(entry_of(DEFINITION().with(2, "")));
    TOVREN_SFL_FLASH_INFO record = record_of_definition();
    record.device_name = "";
    EXPECT_EQ(described(record), described(manager.m_ext_flash_info));
    EXPECT_EQ(1U, load(FLASH_FILE({make_flash("QX1")}))->m_flash_count);
}

// ---- no definition ----

TEST_F(FlashExternal, IsEmptyWithoutASetting) {
    EXPECT_EQ("", apply());
    EXPECT_EQ(described({}), described(manager.m_ext_flash_info));
    store_text("");
    EXPECT_EQ("", apply());
    EXPECT_EQ(described({}), described(manager.m_ext_flash_info));
}

TEST_F(FlashExternal, IsEmptyWhereTheTextDoesNotDecode) {
    store_text("not/a/text");
    EXPECT_EQ("Invalid INI decoding\n", apply());
    EXPECT_EQ(described({}), described(manager.m_ext_flash_info));
    store_text("NoStream");
    EXPECT_EQ("Fail to generate INI because of decompression failure\n", apply());
    EXPECT_EQ(described({}), described(manager.m_ext_flash_info));
}

TEST_F(FlashExternal, IsEmptyWhereTheDecodedTextIsEmpty) {
    switch_debug_on();
    EXPECT_EQ("", apply(std::string("\0@ABCDEFGHIJKL@", 15)));
    EXPECT_EQ(described({}), described(manager.m_ext_flash_info));
}

TEST_F(FlashExternal, IsEmptyWhereAnEntryIsMalformed) {
    const std::string definition = DEFINITION().text();
    const std::string tag = model_tag(definition, EXTERNAL_VERSION_TEXT);
    for (const std::string& list :
         {definition, definition + "#" + tag, definition + ";" + tag + "#;", definition + tag + ";", "#" + tag + ";",
          definition + "#;", definition + "##;", ";" + entry_of(DEFINITION()), definition + "#;" + tag + ";"}) {
        EXPECT_EQ("", apply(list)) << list;
        EXPECT_EQ(described({}), described(manager.m_ext_flash_info)) << list;
    }
}

TEST_F(FlashExternal, IsEmptyWhereAFieldIsMissing) {
    const std::string definition = DEFINITION().text();
    for (size_t end = definition.rfind('@'); end != std::string::npos; end = definition.rfind('@', end - 1)) {
        if (end == 0)
            break;
        EXPECT_EQ("", apply(entry_of(definition.substr(0, end)))) << end;
        EXPECT_EQ(described({}), described(manager.m_ext_flash_info)) << end;
    }
}

TEST_F(FlashExternal, IsEmptyUnderAnotherVersion) {
    store(entry_of(DEFINITION()));
    TOVREN_STANDALONE_HOST::set_version("7.1.1", 2, 345);
    apply();
    EXPECT_EQ(described({}), described(manager.m_ext_flash_info));
    TOVREN_STANDALONE_HOST::set_version("7.1.0", 3, 345);
    apply();
    EXPECT_EQ(described({}), described(manager.m_ext_flash_info));
    TOVREN_STANDALONE_HOST::set_version("7.1.0", 2, 346);
    apply();
    EXPECT_EQ(described({}), described(manager.m_ext_flash_info));
}

TEST_F(FlashExternal, IsEmptyWithAWrongTag) {
    const std::string definition = DEFINITION().text();
    const std::string tag = model_tag(definition, EXTERNAL_VERSION_TEXT);
    for (const std::string& wrong : {tag.substr(1), tag + "A", std::string(16, 'A'), "#" + tag.substr(1)}) {
        apply(definition + "#" + wrong + ";");
        EXPECT_EQ(described({}), described(manager.m_ext_flash_info)) << wrong;
    }
}

// ---- the debug switch ----

TEST_F(FlashExternal, PrintsWhatItReadsWithTheDebugSwitchOn) {
    switch_debug_on();
    const std::string list = entry_of(DEFINITION()) + entry_of(DEFINITION().with(2, "QX26"));
    EXPECT_EQ(list + "\n" + DEFINITION().text() + "\n" + model_tag(DEFINITION().text(), EXTERNAL_VERSION_TEXT) + "\n" +
                  status_lines(33),
              apply(list));
}

TEST_F(FlashExternal, PrintsTwoEmptyLinesOfAMalformedEntry) {
    switch_debug_on();
    EXPECT_EQ("@NO@ENTRY@AT@ALL@\n\n\n", apply("@NO@ENTRY@AT@ALL@"));
    EXPECT_EQ("@NO@ENTRY;AT#ALL@\n\n\n", apply("@NO@ENTRY;AT#ALL@"));
}

TEST_F(FlashExternal, PrintsTheHalfOfAnEntryThatIsThere) {
    switch_debug_on();
    EXPECT_EQ("@NO@TAG@AT@ALL@#;\n@NO@TAG@AT@ALL@\n\n", apply("@NO@TAG@AT@ALL@#;"));
    EXPECT_EQ("#ABCDEFGHIJKLMNOP;\n\nABCDEFGHIJKLMNOP\n", apply("#ABCDEFGHIJKLMNOP;"));
}

TEST_F(FlashExternal, PrintsTheFirstFieldThatIsMissing) {
    switch_debug_on();
    EXPECT_EQ("@A@B@C@#ABCDEFGH;\n@A@B@C@\nABCDEFGH\n" + status_lines_and_failure(3), apply("@A@B@C@#ABCDEFGH;"));
    EXPECT_EQ("NOFIELDS#ABCDEFGH;\nNOFIELDS\nABCDEFGH\n" + status_lines_and_failure(0), apply("NOFIELDS#ABCDEFGH;"));
}

TEST_F(FlashExternal, PrintsNoReasonOfABadField) {
    switch_debug_on();
    const std::string definition = DEFINITION().with(3, "2").text();
    const std::string list = entry_of(definition);
    EXPECT_EQ(list + "\n" + definition + "\n" + model_tag(definition, EXTERNAL_VERSION_TEXT) + "\n" + status_lines(33),
              apply(list));
}

TEST_F(FlashExternal, PrintsThatARuleIsBrokenAlsoWhereTheTagIsWrong) {
    switch_debug_on();
    const std::string definition = DEFINITION().with(10, "17").text();
    for (const std::string& tag : {model_tag(definition, EXTERNAL_VERSION_TEXT), std::string("WRONG")}) {
        const std::string list = definition + "#" + tag + ";";
        EXPECT_EQ(list + "\n" + definition + "\n" + tag + "\n" + status_lines(33) +
                      "Fail to check the validity of the INI\n",
                  apply(list));
    }
}

TEST_F(FlashExternal, PrintsThatTheTagIsWrong) {
    switch_debug_on();
    const std::string definition = DEFINITION().text();
    EXPECT_EQ(definition + "#WRONG;\n" + definition + "\nWRONG\n" + status_lines(33) + "Fail to compare INI password\n",
              apply(definition + "#WRONG;"));
}

// ---- the log ----

TEST_F(FlashExternal, LogsEachMemberAtLevelTwo) {
    store(entry_of(DEFINITION()));
    TOVREN_STANDALONE_HOST::set_debug_level(2);
    std::string expected;
    for (const char* line : {"manufacturer_name : QXMAKER",
                             "device_name : QX25",
                             "silicon_id : 0",
                             "memory_id : 18",
                             "memory_id_index : 2",
                             "memory_type : 20",
                             "memory_type_index : 1",
                             "mfc_id : A1",
                             "mfc_id_index : 0",
                             "velkor_id : 20",
                             "default_dev : 1",
                             "ini : NONE",
                             "extended_mode : 0",
                             "micron_flow : 1",
                             "spansion_flow : 0",
                             "startup_protected : 1",
                             "aai_mode : 0",
                             "flag_status : 1",
                             "die_count : 2",
                             "device_bit_size : 10000000",
                             "device_sector_byte : 10000",
                             "half_size : 0",
                             "byte4_addressing : 1",
                             "bulk_erase_time : FA",
                             "sec_erase_time : 3",
                             "program_utime : 1388",
                             "protection_mask : 7C",
                             "protection_value : 5C",
                             "unprotect_value : 4",
                             "protection_division : FF",
                             "bottom_value : 20",
                             "sdm_support : 0",
                             "asc_voltage : 1.8V"})
        expected += std::string("TOVREN: 3rd party SPI support - ") + line + "\n";
    EXPECT_EQ(expected, standard_error_of([&] { apply(); }));
}

TEST_F(FlashExternal, LogsNothingAtLevelOne) {
    TOVREN_STANDALONE_HOST::set_debug_level(1);
    EXPECT_EQ("", standard_error_of([&] { apply(entry_of(DEFINITION())); }));
}

TEST_F(FlashExternal, LogsNothingOfARefusedDefinition) {
    TOVREN_STANDALONE_HOST::set_debug_level(3);
    EXPECT_EQ("", standard_error_of([&] { apply(entry_of(DEFINITION().with(10, "17"))); }));
    EXPECT_EQ("", standard_error_of([&] { apply(DEFINITION().text() + "#WRONG;"); }));
}

// ---- slot 0 ----

TEST_F(FlashExternal, StandsAheadOfTheBuiltInRecords) {
    store(entry_of(DEFINITION()));
    const MANAGER loaded = load(FLASH_FILE({make_flash("QX1"), make_flash("QX2")}));
    ASSERT_EQ(3U, loaded->m_flash_count);
    EXPECT_EQ(0U, loaded->m_ini_count);
    EXPECT_EQ(described(record_of_definition()), described(loaded->m_flash_database[0]));
    EXPECT_EQ(described(make_flash("QX1")), described(loaded->m_flash_database[1]));
    EXPECT_EQ(described(make_flash("QX2")), described(loaded->m_flash_database[2]));
}

TEST_F(FlashExternal, StandsAheadWhereRecordsAreDropped) {
    store(entry_of(DEFINITION()));
    TOVREN_SFL_FLASH_INFO hidden = make_flash("QX1");
    hidden.ini = "QSPI_X";
    const MANAGER loaded = load(FLASH_FILE({hidden, make_flash("QX2"), hidden}));
    ASSERT_EQ(2U, loaded->m_flash_count);
    EXPECT_EQ("QX25", loaded->m_flash_database[0].device_name);
    EXPECT_EQ("QX2", loaded->m_flash_database[1].device_name);
}

TEST_F(FlashExternal, WinsAMatchOverABuiltInFlash) {
    TOVREN_SFL_FLASH_INFO same = record_of_definition();
    same.device_name = "QX1";
    unsigned char answer[] = {0xA1, 0x20, 0x18};
    const FLASH_FILE file({same});
    EXPECT_EQ("QX1", load(file)->get_flash(0)->device_name);
    store(entry_of(DEFINITION()));
    const MANAGER loaded = load(file);
    ASSERT_TRUE(loaded->flash_id_database_mapping(false, 0, answer));
    EXPECT_EQ(0U, loaded->get_flash_mapping_index(0, false));
    EXPECT_EQ("QX25", loaded->get_flash(0)->device_name);
}

TEST_F(FlashExternal, MatchesBySiliconIdWhereItIsDefinedSo) {
    store(entry_of(DEFINITION().with(3, "1")));
    const MANAGER loaded = load(FLASH_FILE({make_flash("QX1")}));
    unsigned char answer[] = {0, 0, 0x18};
    EXPECT_TRUE(loaded->flash_id_database_mapping(true, 0, answer));
    EXPECT_EQ(0U, loaded->get_flash_mapping_index(0, false));
}

TEST_F(FlashExternal, MatchesNoAnswerOfThreeBytesWithoutAMakersByte) {
    store(entry_of(DEFINITION().with(9, "255")));
    const MANAGER loaded = load(FLASH_FILE({make_flash("QX1")}));
    EXPECT_EQ("QX25", loaded->get_flash(0)->device_name);
    unsigned char answer[256] = {0xA1, 0x20, 0x18};
    EXPECT_FALSE(loaded->flash_id_database_mapping(false, 0, answer));
    EXPECT_TRUE(loaded->get_matching_flashes(false, answer, 3).empty());
    answer[255] = 0xA1; // it is compared there
    EXPECT_TRUE(loaded->flash_id_database_mapping(false, 0, answer));
}

TEST_F(FlashExternal, WinsTheDefaultOverABuiltInFlashOfItsName) {
    store(entry_of(DEFINITION().with(2, "QX1")));
    const MANAGER loaded = load(FLASH_FILE({make_flash("QX1")}));
    EXPECT_EQ(loaded->get_flash(0), loaded->get_default_flash("qx1"));
}

TEST_F(FlashExternal, LeavesTheDefaultToABuiltInFlashWhereItIsNone) {
    store(entry_of(DEFINITION().with(2, "QX1").with(11, "0")));
    const MANAGER loaded = load(FLASH_FILE({make_flash("QX1")}));
    EXPECT_EQ(loaded->get_flash(1), loaded->get_default_flash("QX1"));
}

TEST_F(FlashExternal, NeedsNoDefaultOfItsOwnName) {
    store(entry_of(DEFINITION().with(11, "0")));
    const MANAGER loaded = load(FLASH_FILE({make_flash("QX1")}));
    EXPECT_EQ(2U, loaded->m_flash_count);
    EXPECT_EQ(nullptr, loaded->get_default_flash("QX25"));
}

TEST_F(FlashExternal, NeedsNoSwitch) {
    store(entry_of(DEFINITION().with(12, "QSPI_X")));
    EXPECT_EQ("QSPI_X", load(FLASH_FILE({make_flash("QX1")}))->get_flash(0)->ini);
}

TEST_F(FlashExternal, CountsForTheLongestProgramTime) {
    store(entry_of(DEFINITION().with(26, "1000000")));
    const MANAGER loaded = load(FLASH_FILE({make_flash("QX1")}));
    loaded->set_flash_mapping_index(0, 0);
    EXPECT_EQ(1000000U, loaded->sfl_get_chain_longest_program_utime());
}

TEST_F(FlashExternal, IsLeftOutWhereItIsRefused) {
    for (const std::string& list : {entry_of(DEFINITION().with(10, "17")), DEFINITION().text() + "#WRONG;",
                                    DEFINITION().text(), std::string("@@@@@@@@@")}) {
        store(list);
        const MANAGER loaded = load(FLASH_FILE({make_flash("QX1")}));
        EXPECT_EQ(1U, loaded->m_flash_count) << list;
        EXPECT_EQ("QX1", loaded->get_flash(0)->device_name) << list;
    }
}

TEST_F(FlashExternal, IsPrintedFirstByADebuggingManager) {
    store(entry_of(DEFINITION()));
    put_database(FLASH_FILE({make_flash("QX1")}).bytes());
    EXPECT_EQ(printed(0, record_of_definition()) + printed(1, make_flash("QX1")),
              standard_output_of([&] { TOVREN_FLASH_MANAGER(true, 1, false, true); }));
}

// ---- the check of an entry ----

TOVREN_FLASH_INI_CHECK check_of(const std::string& list) {
    TOVREN_FLASH_INI_CHECK check;
    EXPECT_EQ("", standard_output_of([&] { check = M::check_ini_entry(M::get_ini_entries(list).at(0)); }));
    return check;
}

TEST_F(FlashExternal, IsCheckedWithoutBeingApplied) {
    const TOVREN_FLASH_INI_CHECK check = check_of(entry_of(DEFINITION()));
    EXPECT_EQ(TOVREN_FLASH_INI_ACCEPTED, check.refusal);
    const DEFINITION definition;
    EXPECT_EQ(std::vector<std::string>(definition.fields.begin(), definition.fields.end()), check.fields);
    EXPECT_EQ(33U, check.converted_count);
    EXPECT_TRUE(check.is_tag_right);
    EXPECT_EQ(described(record_of_definition()), described(check.record));
    EXPECT_EQ("", manager.m_ext_flash_info.device_name);
}

TEST_F(FlashExternal, IsCheckedFieldByField) {
    const TOVREN_FLASH_INI_CHECK check = check_of(entry_of(DEFINITION().with(5, "256")));
    EXPECT_EQ(TOVREN_FLASH_INI_BAD_FIELD, check.refusal);
    EXPECT_EQ(33U, check.fields.size());
    EXPECT_EQ(4U, check.converted_count);
    EXPECT_TRUE(check.is_tag_right);
    EXPECT_EQ(described({}), described(check.record));
}

TEST_F(FlashExternal, IsCheckedAsFarAsItGoes) {
    const TOVREN_FLASH_INI_CHECK check = check_of(entry_of("@a@b@0@"));
    EXPECT_EQ(TOVREN_FLASH_INI_MISSING_FIELD, check.refusal);
    EXPECT_EQ((std::vector<std::string>{"A", "B", "0"}), check.fields);
    EXPECT_EQ(3U, check.converted_count);
    EXPECT_TRUE(check.is_tag_right);
}

TEST_F(FlashExternal, IsCheckedForAllReasons) {
    const std::string definition = DEFINITION().text();
    EXPECT_EQ(TOVREN_FLASH_INI_MALFORMED, check_of(definition).refusal);
    EXPECT_EQ(TOVREN_FLASH_INI_MALFORMED, check_of(definition + "#;").refusal);
    EXPECT_EQ(TOVREN_FLASH_INI_MALFORMED, check_of("#ABCDEFGHIJKLMNOP;").refusal);
    EXPECT_EQ(TOVREN_FLASH_INI_INVALID_RECORD, check_of(DEFINITION().with(10, "17").text() + "#WRONG;").refusal);
    EXPECT_EQ(TOVREN_FLASH_INI_WRONG_TAG, check_of(definition + "#WRONG;").refusal);
    EXPECT_EQ(TOVREN_FLASH_INI_NO_DEVICE_NAME, check_of(entry_of(DEFINITION().with(2, ""))).refusal);
}

} // namespace
