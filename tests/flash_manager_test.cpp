// The flash manager: loading, enabling, slot order, the one-default rule, the debug report and the small utilities.
#include "fixtures.h"
#include "flash_model.h"
#include "report.h"
#include "tovren_flash_manager.h"
#include "tovren_standalone_host.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

class FlashManager : public FLASH_TEST {
protected:
    // The names of the live records, in slot order: "QX1 QX2".
    static std::string names(const TOVREN_FLASH_MANAGER& manager) {
        std::string list;
        for (unsigned int index = 0; index < manager.m_flash_count; ++index)
            list += (index == 0 ? "" : " ") + manager.m_flash_database[index].device_name;
        return list;
    }

    static void switch_on(const std::string& key) { TOVREN_STANDALONE_HOST::set_setting("PGM_ALLOW_" + key, "on"); }
};

// ---- life ----

TEST_F(FlashManager, WithoutLoadingHasNothing) {
    const TOVREN_FLASH_MANAGER manager(true, 5, true, true);
    EXPECT_EQ(1U, manager.m_debug);
    EXPECT_EQ(0U, manager.m_version);
    EXPECT_EQ(5U, manager.m_device_count);
    EXPECT_EQ(0U, manager.m_flash_count);
    EXPECT_EQ(0U, manager.m_ini_count);
    EXPECT_EQ(0U, manager.m_type_count);
    EXPECT_EQ(nullptr, manager.m_device_to_flash_map);
    EXPECT_EQ(nullptr, manager.m_flash_database);
    EXPECT_EQ(described({}), described(manager.m_ext_flash_info));
}

TEST_F(FlashManager, WithoutLoadingReadsNoFile) {
    EXPECT_NO_REPORT(TOVREN_FLASH_MANAGER(true, 0, true, false));
}

TEST_F(FlashManager, IgnoresItsFirstArgument) {
    put_database(FLASH_FILE({make_flash("QX1")}).bytes());
    EXPECT_EQ("QX1", names(TOVREN_FLASH_MANAGER(false, 1, false, false)));
    EXPECT_EQ("QX1", names(TOVREN_FLASH_MANAGER(true, 1, false, false)));
}

TEST_F(FlashManager, HasTheFieldsOfTheFileAfterLoading) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1"), make_flash("QX2")}), 3);
    EXPECT_EQ(0U, manager->m_debug);
    EXPECT_EQ(1U, manager->m_version);
    EXPECT_EQ(3U, manager->m_device_count);
    EXPECT_EQ(2U, manager->m_flash_count);
    EXPECT_EQ(0U, manager->m_ini_count);
    EXPECT_EQ(33U, manager->m_type_count);
    EXPECT_EQ("", manager->m_ext_flash_info.device_name);
}

TEST_F(FlashManager, MapsNoDeviceAfterLoading) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1")}), 3);
    for (unsigned int device = 0; device < 3; ++device)
        EXPECT_EQ(INVALID_DWORD, manager->m_device_to_flash_map[device]);
}

TEST_F(FlashManager, NeedsADeviceInItsChain) {
    EXPECT_REPORT(load(FLASH_FILE({make_flash("QX1")}), 0), "count > 0", IN_FLASH_MANAGER);
}

TEST_F(FlashManager, LoadsTheFileBeforeItLooksAtTheChain) {
    FLASH_FILE file({make_flash("QX1")});
    file.version = 2;
    EXPECT_REPORT(load(file, 0), "Mismatch version between flash file and reader", IN_FLASH_MANAGER);
}

TEST_F(FlashManager, ManagersDoNotShareState) {
    const MANAGER one = load(FLASH_FILE({make_flash("QX1")}));
    const MANAGER two = load(FLASH_FILE({make_flash("QX2"), make_flash("QX3")}));
    EXPECT_EQ("QX1", names(*one));
    EXPECT_EQ("QX2 QX3", names(*two));
}

TEST_F(FlashManager, LoadsAFileOfAnyName) {
    const MANAGER manager = make_generator();
    write_file(folder.path("own.pcf"), FLASH_FILE({make_flash("QX1")}).bytes());
    manager->initialize_flash_database(folder.path("own.pcf"));
    EXPECT_EQ("QX1", names(*manager));
    EXPECT_EQ(nullptr, manager->m_device_to_flash_map);
}

TEST_F(FlashManager, ParsesAPayloadFromMemory) {
    const MANAGER manager = make_generator();
    BYTES payload = FLASH_FILE({make_flash("QX1"), make_flash("QX2")}).payload();
    EXPECT_EQ(0U, manager->parse_database(payload.data()));
    EXPECT_EQ("QX1 QX2", names(*manager));
    EXPECT_EQ(1U, manager->m_version);
}

// ---- records ----

TEST_F(FlashManager, ReadsAllMembersOfARecord) {
    TOVREN_SFL_FLASH_INFO other = make_flash("QX2");
    // All the other way round than in the first, and numbers at their edges.
    for (bool TOVREN_SFL_FLASH_INFO::*flag :
         {&TOVREN_SFL_FLASH_INFO::silicon_id, &TOVREN_SFL_FLASH_INFO::extended_mode,
          &TOVREN_SFL_FLASH_INFO::micron_flow, &TOVREN_SFL_FLASH_INFO::spansion_flow,
          &TOVREN_SFL_FLASH_INFO::startup_protected, &TOVREN_SFL_FLASH_INFO::aai_mode,
          &TOVREN_SFL_FLASH_INFO::flag_status, &TOVREN_SFL_FLASH_INFO::half_size,
          &TOVREN_SFL_FLASH_INFO::byte4_addressing, &TOVREN_SFL_FLASH_INFO::sdm_support})
        other.*flag = !(other.*flag);
    other.device_bit_size = std::numeric_limits<DWORD>::max();
    other.program_utime = 0;
    other.die_count = 255;
    other.asc_voltage = "";
    other.manufacturer_name = std::string(255, 'm');
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1"), other}));
    EXPECT_EQ(described(make_flash("QX1")), described(*manager->get_flash(0)));
    EXPECT_EQ(described(other), described(*manager->get_flash(1)));
}

TEST_F(FlashManager, ReadsEachMemberFromItsOwnPlace) {
    // One file per member, in which only that member is not empty or 0 (the two that a load needs aside).
    const size_t member_count = members_of({}).size();
    for (size_t position = 0; position < member_count; ++position) {
        TOVREN_SFL_FLASH_INFO flash;
        flash.ini = "NONE";
        flash.default_dev = true;
        std::vector<MEMBER> members = members_of(flash);
        if (members[position].name == "ini" || members[position].name == "default_dev")
            continue;
        members[position].text = "t";
        members[position].number = 1;
        BYTES payload = join({le32_bytes(1), le32_bytes(1), le32_bytes(33)});
        std::string expected;
        for (const MEMBER& member : members) {
            payload = join({payload, member_bytes(member)});
            expected +=
                member.name + "=" + (member.tag == TAG_TEXT ? member.text : std::to_string(member.number)) + "\n";
        }
        const MANAGER manager = load(FLASH_FILE().bytes_around(join({payload, text_bytes("END1END2")})));
        EXPECT_EQ(expected, described(*manager->get_flash(0)));
    }
}

TEST_F(FlashManager, KeepsTheFilesOrder) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX2"), make_flash("QX1"), make_flash("QX3")}));
    EXPECT_EQ("QX2 QX1 QX3", names(*manager));
}

TEST_F(FlashManager, NamesTheWrongTagOfEachMember) {
    const FLASH_FILE file({make_flash("QX1")});
    size_t position = 12;
    for (const MEMBER& member : members_of(make_flash("QX1"))) {
        const char* text = member.tag == TAG_TEXT   ? "type == TOVREN_MANAGER_STRING"
                           : member.tag == TAG_BOOL ? "type == TOVREN_MANAGER_BOOL"
                           : member.tag == TAG_BYTE ? "type == TOVREN_MANAGER_BYTE"
                                                    : "type == TOVREN_MANAGER_DWORD";
        EXPECT_REPORT(load(file.bytes_around(with_byte(file.payload(), position, 9))), text, IN_DB_STREAM)
            << member.name;
        position += member_bytes(member).size();
    }
}

TEST_F(FlashManager, NeedsTheMarkerBehindEachRecord) {
    const FLASH_FILE file({make_flash("QX1"), make_flash("QX2")});
    const BYTES record = record_bytes(make_flash("QX1"));
    const char* const texts[] = {"data[index++] == 'E'", "data[index++] == 'N'", "data[index++] == 'D'",
                                 "data[index++] == '1'"};
    for (size_t which = 1; which <= 2; ++which) {
        const size_t marker = 12 + which * record.size() - 4;
        for (size_t position = 0; position < 4; ++position)
            EXPECT_REPORT(load(file.bytes_around(with_byte(file.payload(), marker + position, 'x'))), texts[position],
                          IN_DB_STREAM);
    }
}

TEST_F(FlashManager, RefusesAFlagOfTwo) {
    const FLASH_FILE file({make_flash("QX1")});
    const size_t silicon_id = 12 + (2 + 7) + (2 + 3) + 1; // behind "QXMAKER", "QX1" and the tag
    EXPECT_REPORT(load(file.bytes_around(with_byte(file.payload(), silicon_id, 2))), "value == 0 || value == 1",
                  IN_DB_STREAM);
}

TEST_F(FlashManager, ReadsARecordAgainIntoASlot) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1"), make_flash("QX2")}));
    BYTES record = record_bytes(keyed("QX3", "SOME_KEY"));
    unsigned int index = 0;
    EXPECT_FALSE(manager->get_database(record.data(), index, 1));
    EXPECT_EQ(record.size() - 4, index);
    EXPECT_EQ("QX1 QX3", names(*manager));
    switch_on("SOME_KEY");
    EXPECT_TRUE(manager->get_database(record.data(), index = 0, 1));
}

TEST_F(FlashManager, ReadsNoRecordIntoASlotThatIsNotLive) {
    BYTES record = record_bytes(make_flash("QX3"));
    unsigned int index = 0;
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1")}));
    EXPECT_REPORT(manager->get_database(record.data(), index, 1), "index < (m_flash_count + m_ini_count)",
                  IN_FLASH_MANAGER);
    EXPECT_REPORT(make_generator()->get_database(record.data(), index, 0), "m_flash_database != NULL",
                  IN_FLASH_MANAGER);
}

TEST_F(FlashManager, ReadsTextsOfEveryLength) {
    std::vector<TOVREN_SFL_FLASH_INFO> flashes;
    for (size_t length = 1; length <= 255; ++length) {
        flashes.push_back(make_flash("QX" + std::to_string(length)));
        flashes.back().manufacturer_name = std::string(length, 'm');
        flashes.back().asc_voltage = std::string(255 - length, 'v');
    }
    const MANAGER manager = load(FLASH_FILE(flashes));
    for (unsigned int index = 0; index < flashes.size(); ++index)
        EXPECT_EQ(described(flashes[index]), described(*manager->get_flash(index)));
}

// ---- enabling ----

TEST_F(FlashManager, KeepsTheKeyNoneInAnyCase) {
    TOVREN_STANDALONE_HOST::set_setting("PGM_ALLOW_NONE", "off");
    EXPECT_EQ("QX1 QX2 QX3 QX4", names(*load(FLASH_FILE({keyed("QX1", "NONE"), keyed("QX2", "none"),
                                                         keyed("QX3", "None"), keyed("QX4", "nOnE")}))));
}

TEST_F(FlashManager, DropsARecordWhoseSwitchIsOff) {
    const FLASH_FILE file({keyed("QX1", "NONE"), keyed("QX2", "QSPI_X"), keyed("QX3", "NONE")});
    const MANAGER manager = load(file);
    EXPECT_EQ("QX1 QX3", names(*manager));
    EXPECT_EQ(2U, manager->m_flash_count);
}

TEST_F(FlashManager, KeepsARecordWhoseSwitchIsOn) {
    switch_on("QSPI_X");
    const FLASH_FILE file({keyed("QX1", "NONE"), keyed("QX2", "QSPI_X"), keyed("QX3", "NONE")});
    EXPECT_EQ("QX1 QX2 QX3", names(*load(file)));
}

TEST_F(FlashManager, TakesAKeyExactlyAsItIsStored) {
    switch_on("QSPI_X");
    EXPECT_EQ("QX1", names(*load(FLASH_FILE({keyed("QX1", "NONE"), keyed("QX2", "qspi_x")}))));
    EXPECT_EQ("QX1", names(*load(FLASH_FILE({keyed("QX1", "NONE"), keyed("QX2", "QSPI_X2")}))));
    EXPECT_EQ("QX1", names(*load(FLASH_FILE({keyed("QX1", "NONE"), keyed("QX2", "NONE2")}))));
}

TEST_F(FlashManager, DropsTheFirstAndTheLastRecord) {
    const FLASH_FILE file({keyed("QX1", "A"), keyed("QX2", "B"), keyed("QX3", "NONE"), keyed("QX4", "A")});
    EXPECT_EQ("QX3", names(*load(file)));
    switch_on("A");
    EXPECT_EQ("QX1 QX3 QX4", names(*load(file)));
}

TEST_F(FlashManager, LeavesTheSlotsBehindTheLiveRecordsEmpty) {
    const MANAGER manager = load(FLASH_FILE({keyed("QX1", "A"), keyed("QX2", "NONE"), keyed("QX3", "B")}));
    ASSERT_EQ(1U, manager->m_flash_count);
    EXPECT_EQ(described({}), described(manager->m_flash_database[1]));
    EXPECT_EQ(described({}), described(manager->m_flash_database[2]));
}

TEST_F(FlashManager, LoadsAFileWhoseRecordsAreAllDisabled) {
    const MANAGER manager = load(FLASH_FILE({keyed("QX1", "A"), keyed("QX2", "B")}));
    EXPECT_EQ(0U, manager->m_flash_count);
    EXPECT_EQ(nullptr, manager->get_default_flash("QX1"));
}

TEST_F(FlashManager, RefusesAnEmptyKey) {
    EXPECT_REPORT(load(FLASH_FILE({keyed("QX1", "")})), "!ini.empty()", IN_FLASH_MANAGER);
}

TEST_F(FlashManager, TellsOfALoadedRecordWhetherItIsEnabled) {
    switch_on("A");
    const MANAGER manager = load(FLASH_FILE({keyed("QX1", "A"), keyed("QX2", "NONE")}));
    EXPECT_TRUE(manager->enable_device(0));
    EXPECT_TRUE(manager->enable_device(1));
    TOVREN_STANDALONE_HOST::set_setting("PGM_ALLOW_A", "off");
    EXPECT_FALSE(manager->enable_device(0));
}

TEST_F(FlashManager, TellsOfNoOtherRecordWhetherItIsEnabled) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1")}));
    EXPECT_REPORT(manager->enable_device(1), "index < (m_flash_count + m_ini_count)", IN_FLASH_MANAGER);
    EXPECT_REPORT(manager->enable_device(INVALID_DWORD), "index < (m_flash_count + m_ini_count)", IN_FLASH_MANAGER);
    EXPECT_REPORT(make_generator()->enable_device(0), "m_flash_database != NULL", IN_FLASH_MANAGER);
}

// ---- one default for each name ----

TEST_F(FlashManager, AllowsOneDefaultAmongTheRecordsOfAName) {
    EXPECT_EQ("QX1 QX1 QX1", names(*load(FLASH_FILE({no_default("QX1"), make_flash("QX1"), no_default("QX1")}))));
}

TEST_F(FlashManager, NeedsADefaultForEachName) {
    EXPECT_REPORT(load(FLASH_FILE({make_flash("QX1"), no_default("QX2")})), "one_default", IN_FLASH_MANAGER);
}

TEST_F(FlashManager, AllowsNoSecondDefault) {
    EXPECT_REPORT(load(FLASH_FILE({make_flash("QX1"), make_flash("QX2"), make_flash("QX1")})), "!one_default",
                  IN_FLASH_MANAGER);
}

TEST_F(FlashManager, ComparesNamesUpToTheirFirstZeroForTheirDefault) {
    const std::string zero(1, '\0');
    EXPECT_REPORT(load(FLASH_FILE({make_flash("QX1" + zero + "a"), make_flash("qx1" + zero + "bcdef")})),
                  "!one_default", IN_FLASH_MANAGER);
}

TEST_F(FlashManager, ComparesNamesInAnyCaseForTheirDefault) {
    EXPECT_EQ("QX1 qx1", names(*load(FLASH_FILE({make_flash("QX1"), no_default("qx1")}))));
    EXPECT_REPORT(load(FLASH_FILE({make_flash("QX1"), make_flash("qx1")})), "!one_default", IN_FLASH_MANAGER);
}

TEST_F(FlashManager, ReportsTheFirstNameThatBreaksTheRule) {
    EXPECT_REPORT(load(FLASH_FILE({no_default("QX1"), make_flash("QX2"), make_flash("QX2")})), "one_default",
                  IN_FLASH_MANAGER);
    EXPECT_REPORT(load(FLASH_FILE({make_flash("QX2"), no_default("QX1"), make_flash("QX2")})), "!one_default",
                  IN_FLASH_MANAGER);
}

TEST_F(FlashManager, LosesTheRuleWithADisabledDefault) {
    const FLASH_FILE file({keyed("QX1", "A"), no_default("QX1")});
    EXPECT_REPORT(load(file), "one_default", IN_FLASH_MANAGER);
    switch_on("A");
    EXPECT_EQ("QX1 QX1", names(*load(file)));
}

TEST_F(FlashManager, LooksAtEnabledRecordsOnlyForTheRule) {
    const FLASH_FILE file({keyed("QX1", "A"), make_flash("QX1")});
    EXPECT_EQ("QX1", names(*load(file)));
    switch_on("A");
    EXPECT_REPORT(load(file), "!one_default", IN_FLASH_MANAGER);
}

TEST_F(FlashManager, LooksAtTheEndMarkerBeforeTheRule) {
    FLASH_FILE file({no_default("QX1")});
    file.end = "END3";
    EXPECT_REPORT(load(file), "data[index++] == '2'", IN_DB_STREAM);
}

// ---- the external flash ----

class FlashManagerWithExternal : public FlashManager {
protected:
    // A manager for two devices that has loaded `file` while the setting holds this flash as the user's own.
    MANAGER load_external(const FLASH_FILE& file, const TOVREN_SFL_FLASH_INFO& external) const {
        std::string definition = "@";
        for (const MEMBER& member : members_of(external))
            definition += (member.tag == TAG_TEXT ? member.text : std::to_string(member.number)) + "@";
        const std::string list = definition + "#" + TOVREN_FLASH_MANAGER::gen_ini_password(definition) + ";";
        TOVREN_STANDALONE_HOST::set_setting(TOVREN_FLASH_MANAGER::get_ext_flash_setting_name(),
                                            TOVREN_FLASH_MANAGER::encode_ini(list));
        return load(file, 2);
    }
};

TEST_F(FlashManagerWithExternal, PutsItFirst) {
    const MANAGER manager = load_external(FLASH_FILE({make_flash("QX1"), make_flash("QX2")}), make_flash("QXEXT"));
    EXPECT_EQ("QXEXT QX1 QX2", names(*manager));
    EXPECT_EQ(3U, manager->m_flash_count);
    EXPECT_EQ(0U, manager->m_ini_count);
    EXPECT_EQ(described(make_flash("QXEXT")), described(*manager->get_flash(0)));
}

TEST_F(FlashManagerWithExternal, AsksNoSwitchForIt) {
    const FLASH_FILE file({keyed("QX1", "A"), keyed("QX2", "NONE")});
    EXPECT_EQ("QXEXT QX2", names(*load_external(file, keyed("QXEXT", "A"))));
}

TEST_F(FlashManagerWithExternal, AppliesTheOneDefaultRuleToTheOthersOnly) {
    EXPECT_EQ("QX1 QX1", names(*load_external(FLASH_FILE({make_flash("QX1")}), make_flash("QX1"))));
    EXPECT_EQ("QXEXT QX1", names(*load_external(FLASH_FILE({make_flash("QX1")}), no_default("QXEXT"))));
    EXPECT_REPORT(load_external(FLASH_FILE({no_default("QX1")}), make_flash("QX1")), "one_default", IN_FLASH_MANAGER);
}

TEST_F(FlashManagerWithExternal, FindsItBeforeABuiltInFlash) {
    const MANAGER manager = load_external(FLASH_FILE({make_flash("QX1")}), make_flash("QXEXT"));
    unsigned char id[] = {0xA1, 0x40, 0x18};
    EXPECT_TRUE(manager->flash_id_database_mapping(false, 1, id));
    EXPECT_EQ(0U, manager->get_flash_mapping_index(1, false));
}

TEST_F(FlashManagerWithExternal, PrefersItAsTheDefaultOfItsName) {
    const FLASH_FILE file({make_flash("qx1")});
    MANAGER manager = load_external(file, make_flash("QX1"));
    EXPECT_EQ(manager->get_flash(0), manager->get_default_flash("qX1"));
    manager = load_external(file, no_default("QX1"));
    EXPECT_EQ(manager->get_flash(1), manager->get_default_flash("qX1"));
}

TEST_F(FlashManagerWithExternal, PrintsItFirst) {
    load_external(FLASH_FILE({make_flash("QX1")}), make_flash("QXEXT"));
    EXPECT_EQ(printed(0, make_flash("QXEXT")) + printed(1, make_flash("QX1")),
              standard_output_of([] { TOVREN_FLASH_MANAGER(true, 1, false, true); }));
}

TEST_F(FlashManagerWithExternal, IsIdentifiedAndTimedLikeAnyOther) {
    TOVREN_SFL_FLASH_INFO external = make_flash("QXEXT");
    external.program_utime = 9000;
    external.mfc_id = 0xB2;
    const MANAGER manager = load_external(FLASH_FILE({make_flash("QX1")}), external);
    unsigned char own[] = {0xB2, 0x40, 0x18};
    unsigned char built_in[] = {0xA1, 0x40, 0x18};
    EXPECT_TRUE(manager->flash_id_database_mapping(false, 0, own));
    EXPECT_TRUE(manager->flash_id_database_mapping(false, 1, built_in));
    EXPECT_EQ(0U, manager->get_flash_mapping_index(0, false));
    EXPECT_EQ(1U, manager->get_flash_mapping_index(1, false));
    EXPECT_EQ(9000U, manager->sfl_get_chain_longest_program_utime());
}

TEST_F(FlashManagerWithExternal, HasItAloneWhenAllOthersAreDisabled) {
    EXPECT_EQ("QXEXT", names(*load_external(FLASH_FILE({keyed("QX1", "A")}), make_flash("QXEXT"))));
}

// ---- reports and messages ----

TEST_F(FlashManager, PrintsARecord) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1")}));
    EXPECT_EQ(
        "Flash Manager Debug 0\n\tQXMAKER QX1 0 24 2 64 1 161 0 24 1 NONE 1 0 1 0 1 0 3 134217728 65536 0 1 200 2 "
        "3000 124 92 4 255 32 0 1.8V\n",
        standard_output_of([&] { manager->print_database(0); }));
}

TEST_F(FlashManager, PrintsNumbersUnsignedAndEmptyTextsAsNothing) {
    TOVREN_SFL_FLASH_INFO flash = make_flash("QX2");
    flash.device_bit_size = 0xFFFFFFFF;
    flash.asc_voltage = "";
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1"), flash}));
    const std::string output = standard_output_of([&] { manager->print_database(1); });
    EXPECT_EQ(
        "Flash Manager Debug 1\n\tQXMAKER QX2 0 24 2 64 1 161 0 24 1 NONE 1 0 1 0 1 0 3 4294967295 65536 0 1 200 2 "
        "3000 124 92 4 255 32 0 \n",
        output);
    EXPECT_EQ(printed(1, flash), output);
}

TEST_F(FlashManager, PrintsAllLiveRecordsAfterLoadingWhenAsked) {
    put_database(FLASH_FILE({make_flash("QX1"), keyed("QX2", "A"), make_flash("QX3")}).bytes());
    EXPECT_EQ(printed(0, make_flash("QX1")) + printed(1, make_flash("QX3")),
              standard_output_of([&] { TOVREN_FLASH_MANAGER(true, 1, false, true); }));
}

TEST_F(FlashManager, PrintsNoRecordThatIsNotLive) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1"), keyed("QX2", "A")}));
    EXPECT_REPORT(manager->print_database(1), "m_flash_database != NULL && index < m_flash_count", IN_FLASH_MANAGER);
    EXPECT_REPORT(make_generator()->print_database(0), "m_flash_database != NULL && index < m_flash_count",
                  IN_FLASH_MANAGER);
}

TEST_F(FlashManager, PrintsNothingOtherwise) {
    EXPECT_EQ("", standard_output_of([&] { load(FLASH_FILE({make_flash("QX1")})); }));
}

// ---- utilities and lists ----

TEST_F(FlashManager, KnowsThePowersOfTwo) {
    const MANAGER manager = make_generator();
    EXPECT_FALSE(manager->is_power_of_two(0));
    for (unsigned int bit = 0; bit < 32; ++bit) {
        EXPECT_TRUE(manager->is_power_of_two(1U << bit)) << bit;
        for (unsigned int other = 0; other < bit; ++other)
            EXPECT_FALSE(manager->is_power_of_two(1U << bit | 1U << other)) << bit << ' ' << other;
    }
    EXPECT_FALSE(manager->is_power_of_two(0xFFFFFFFF));
    EXPECT_FALSE(manager->is_power_of_two(0x7FFFFFFF));
}

TEST_F(FlashManager, WritesNumbersAsSignedAndNoneAsMinusOne) {
    const MANAGER manager = make_generator();
    EXPECT_EQ("255", manager->to_string(0xFF, false));
    EXPECT_EQ("-1", manager->to_string(0xFF, true));
    EXPECT_EQ("-1", manager->to_string(0xFFFFFFFF, false));
    EXPECT_EQ("-1", manager->to_string(0xFFFFFFFF, true));
    EXPECT_EQ("-2147483648", manager->to_string(0x80000000, false));
    EXPECT_EQ("2147483647", manager->to_string(0x7FFFFFFF, true));
    EXPECT_EQ("-2", manager->to_string(0xFFFFFFFE, true));
    EXPECT_EQ("254", manager->to_string(0xFE, true));
    EXPECT_EQ("256", manager->to_string(0x100, true));
    EXPECT_EQ("0", manager->to_string(0, true));
}

TEST_F(FlashManager, ListsTheMembersAndTheirTags) {
    const std::vector<MEMBER> members = members_of({});
    ASSERT_EQ(33U, members.size());
    ASSERT_EQ(33U, TOTAL_DATABASE_MEMBER);
    ASSERT_EQ(33U, TOVREN_FLASH_MANAGER::m_name_list.size());
    ASSERT_EQ(33U, TOVREN_FLASH_MANAGER::m_type_list.size());
    for (size_t position = 0; position < 33; ++position) {
        EXPECT_EQ(members[position].name, TOVREN_FLASH_MANAGER::m_name_list[position]);
        EXPECT_EQ(members[position].tag, TOVREN_FLASH_MANAGER::m_type_list[position]) << position;
    }
}

TEST_F(FlashManager, VisitsTheMembersInTheirOrder) {
    std::vector<std::string> names;
    tovren_visit_members(make_flash("QX1"), [&](const char* name, const auto&) { names.emplace_back(name); });
    EXPECT_EQ(TOVREN_FLASH_MANAGER::m_name_list, names);
}

} // namespace
