// What the device information manager prints of a record, in each debug mode, and the constant tables that the names in
// it come from.
#include "device_fixtures.h"
#include "tovren_dev_info_manager.h"

#include <algorithm>
#include <cctype>
#include <gtest/gtest.h>

namespace {

// ---- constant tables ----

TEST(DevInfoTables, MembersHaveTheirNamesAndTypes) {
    const std::vector<std::string> words = {"DEVID_ENUM", "DEVID_STR", "STL_STRING", "bool",
                                            "BYTE",       "WORD",      "DWORD",      "ENUM"};
    ASSERT_EQ(86U, TOVREN_DEV_INFO_MANAGER::m_db_name_list.size());
    ASSERT_EQ(86U, TOVREN_DEV_INFO_MANAGER::m_db_type_list.size());
    for (size_t member = 0; member < 86; ++member) {
        EXPECT_EQ(device_members()[member].name, TOVREN_DEV_INFO_MANAGER::m_db_name_list[member]);
        EXPECT_EQ(device_members()[member].type, words.at(TOVREN_DEV_INFO_MANAGER::m_db_type_list[member])) << member;
    }
}

TEST(DevInfoTables, FamiliesEndWithTheGenericAndTheEmptyName) {
    const auto& list = TOVREN_DEV_INFO_MANAGER::m_supported_family_list;
    ASSERT_EQ(74U, list.size());
    for (unsigned int family = 1; family <= 72; ++family) {
        std::string name = dstr_get_user_string(DEV_FAMILY_ENUM(family));
        std::transform(name.begin(), name.end(), name.begin(), [](char c) { return static_cast<char>(toupper(c)); });
        EXPECT_EQ(name, list[family - 1].name);
        EXPECT_EQ(family, list[family - 1].value);
    }
    EXPECT_EQ("GENERIC", list[72].name);
    EXPECT_EQ(73U, list[72].value);
    EXPECT_EQ("", list[73].name);
    EXPECT_EQ(0U, list[73].value);
}

TEST(DevInfoTables, OnlyTheGenericDeviceAndPartHaveNames) {
    const auto& devices = TOVREN_DEV_INFO_MANAGER::m_supported_device_list;
    const auto& parts = TOVREN_DEV_INFO_MANAGER::m_supported_part_list;
    ASSERT_EQ(2U, devices.size());
    ASSERT_EQ(2U, parts.size());
    EXPECT_EQ("GENERIC", devices[0].name);
    EXPECT_EQ(1047U, devices[0].value);
    EXPECT_EQ("", devices[1].name);
    EXPECT_EQ(0U, devices[1].value);
    EXPECT_EQ("GENERIC", parts[0].name);
    EXPECT_EQ(DEV_PART_GENERIC, parts[0].value);
    EXPECT_EQ("", parts[1].name);
    EXPECT_EQ(DEV_PART_INVALID, parts[1].value);
}

TEST(DevInfoTables, EnumerationsHaveTheirFourteenNames) {
    std::vector<std::string> names;
    names.reserve(TOVREN_DEV_INFO_MANAGER::m_supported_enum_list.size());
    for (const TOVREN_NAME_VALUE& entry : TOVREN_DEV_INFO_MANAGER::m_supported_enum_list)
        names.push_back(entry.name + "=" + std::to_string(entry.value));
    std::sort(names.begin(), names.end());
    const auto family = [](const char* name) { return std::to_string(dstr_get_dev_family_enum_by_string(name)); };
    std::vector<std::string> expected = {"CFG_BLOCK_NONE=0",
                                         "CFG_BLOCK_IOCSR=1",
                                         "CFG_BLOCK_CORE=2",
                                         "CFG_BLOCK_HPS=3",
                                         "CFG_BLOCK_TRAILER=4",
                                         "DEV_FAMILY_INVALID=0",
                                         "DEV_FAMILY_QUARN_1=" + family("QUARN-1"),
                                         "DEV_FAMILY_QUARN_2=" + family("QUARN-2"),
                                         "DEV_FAMILY_QUARN_4=" + family("QUARN-4"),
                                         "DEV_FAMILY_VELDRA_3=" + family("VELDRA-3"),
                                         "PROG_MODE_NONE=0",
                                         "PROG_MODE_JTAG=1",
                                         "PROG_MODE_PASSIVE_SERIAL=2",
                                         "PROG_MODE_ACTIVE_SERIAL=3"};
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(expected, names);
}

TEST(DevInfoTables, PcfNamesAreEight) {
    EXPECT_EQ(8U, TOVREN_DEV_INFO_MANAGER::m_supported_pcf_list.size());
}

TEST(DevInfoTables, Md5TextsAreLowerCaseHexadecimal) {
    EXPECT_EQ(32U, TOVREN_DEV_INFO_CSV_MD5.size());
    EXPECT_EQ(std::string::npos, TOVREN_DEV_INFO_CSV_MD5.find_first_not_of("0123456789abcdef"));
}

// ---- names of values ----

class DevInfoNames : public DEVICE_TEST {
protected:
    MANAGER manager = make_generator();
};

TEST_F(DevInfoNames, AreThoseOfTheLists) {
    EXPECT_EQ("QUARN-1", manager->convert_id_enum_to_string("family", 1));
    EXPECT_EQ("GENERIC", manager->convert_id_enum_to_string("family", 73));
    EXPECT_EQ("", manager->convert_id_enum_to_string("family", 0));
    EXPECT_EQ("GENERIC", manager->convert_id_enum_to_string("device", 1047));
    EXPECT_EQ("", manager->convert_id_enum_to_string("device", 0));
    EXPECT_EQ("GENERIC", manager->convert_id_enum_to_string("part", DEV_PART_GENERIC));
    EXPECT_EQ("", manager->convert_id_enum_to_string("part", DEV_PART_INVALID));
}

TEST_F(DevInfoNames, NeedAValueInBounds) {
    for (const unsigned int past : {0U, 1U, 0x80000000U}) {
        EXPECT_REPORT(manager->convert_id_enum_to_string("family", 74 + past), "id < DWORD(DEV_FAMILY_MAX)",
                      IN_DEVICE_GENERATE);
        EXPECT_REPORT(manager->convert_id_enum_to_string("device", 1048 + past), "id < DWORD(DEV_DEVICE_MAX)",
                      IN_DEVICE_GENERATE);
        EXPECT_REPORT(manager->convert_id_enum_to_string("part", DEV_PART_MAX + past), "id < DWORD(DEV_PART_MAX)",
                      IN_DEVICE_GENERATE);
    }
}

TEST_F(DevInfoNames, NeedAnEntry) {
    EXPECT_REPORT(manager->convert_id_enum_to_string("device", 1), "found", IN_DEVICE_GENERATE);
    EXPECT_REPORT(manager->convert_id_enum_to_string("part", 1), "found", IN_DEVICE_GENERATE);
}

TEST_F(DevInfoNames, NeedAKnownType) {
    for (const char* type : {"", "pcf", "FAMILY", "families"})
        EXPECT_REPORT(manager->convert_id_enum_to_string(type, 0), "Unsupported type name", IN_DEVICE_GENERATE);
}

// ---- reports ----

class DevInfoReport : public DEVICE_TEST {
protected:
    DEVICE_DATABASE file{make_device_rows()};

    DevInfoReport() {
        file.rows[3] = plain_device_row().with("device", "GENERIC");
        file.rows[4] = plain_device_row().with("part", "GENERIC");
    }

    // What loading prints under a debug mode.
    std::string printed(unsigned int debug_mode) {
        return standard_output_of([&] { load(file, debug_mode); });
    }
};

TEST_F(DevInfoReport, SpellsARecordMemberByMember) {
    // Written out once by hand; the model writes all the others.
    const MANAGER manager = load(file);
    EXPECT_EQ("Dev Info Manager Debug 0\n\tFAMILY : QUARN-1 0 1 0 0 1 0 0 1 0 0 T15 0 0 1 0 0 1 0 0 "
              "402659329 419436801 436214273 452991745 469769217 486546689 503324161 520101633 536879105 "
              "2 134 135 136 137 2 4 671098881 0 1 0 0 754986241 0 0 1 0 "
              "838873601 855651073 872428545 153 154 155 156 157 973093377 989870849 1 T61 "
              "1040203265 1056980737 1073758209 1090535681 1107313153 1 3 1 0 0 1 0 1241532929 3 1275087873 T77 "
              "1 0 0 1 T82 183 21589 1426085121 0\n",
              standard_output_of([&] { manager->print_database(0, ""); }));
}

TEST_F(DevInfoReport, HeadsARecordWithItsKey) {
    const MANAGER manager = load(file);
    for (const unsigned int index : {0U, 1U, 3U, 4U, 7U, 78U})
        EXPECT_EQ(file.rows[index].printed(index, ""), standard_output_of([&] { manager->print_database(index, ""); }));
}

TEST_F(DevInfoReport, HeadsARecordWithItsLabelAlone) {
    const MANAGER manager = load(file);
    EXPECT_EQ(file.rows[4].printed(4, "My label"), standard_output_of([&] { manager->print_database(4, "My label"); }));
}

TEST_F(DevInfoReport, LeavesNothingForAnEmptyText) {
    const MANAGER manager = load(file);
    const std::string line = standard_output_of([&] { manager->print_database(1, ""); });
    EXPECT_NE(std::string::npos, line.find(" 0 0 0 0 0  0 0 ")) << line; // members 10 to 17; 15 is a text
}

TEST_F(DevInfoReport, NeedsARecordOfThe79) {
    const MANAGER manager = load(file);
    for (const unsigned int index : {79U, 80U, 0xFFFFFFFFU}) {
        EXPECT_REPORT(manager->print_database(index, ""), "index < TOTAL_DATABASE_DEVICE", IN_DEVICE_EXPORT);
        EXPECT_REPORT(manager->print_database(index, "L"), "index < TOTAL_DATABASE_DEVICE", IN_DEVICE_EXPORT);
    }
}

TEST_F(DevInfoReport, ShowsARecordOfTwoKeysBeforeItReportsIt) {
    file.rows[2] = plain_device_row().with("pcf", "QX").with("device", "GENERIC");
    const MANAGER manager = load(file);
    const std::string line =
        standard_output_of([&] { EXPECT_REPORT(manager->print_database(2, ""), "id_count == 1", IN_DEVICE_EXPORT); });
    EXPECT_TRUE(line.starts_with("Dev Info Manager Debug 2\n\tPCF : QXDEVICE : GENERIC 0 ")) << line;
    EXPECT_EQ(file.rows[2].printed(2, ""), line);
}

TEST_F(DevInfoReport, ShowsARecordOfAllFourKeysBeforeItReportsIt) {
    file.rows[2] =
        plain_device_row().with("family", "QUARN-1").with("pcf", "Q").with("device", "GENERIC").with("part", "GENERIC");
    const MANAGER manager = load(file);
    const std::string line =
        standard_output_of([&] { EXPECT_REPORT(manager->print_database(2, ""), "id_count == 1", IN_DEVICE_EXPORT); });
    EXPECT_TRUE(line.starts_with("Dev Info Manager Debug 2\n\tFAMILY : QUARN-1PCF : QDEVICE : GENERICPART : GENERIC 0"))
        << line;
}

TEST_F(DevInfoReport, ShowsARecordWithoutAKeyBeforeItReportsIt) {
    file.rows[2] = plain_device_row();
    const MANAGER manager = load(file);
    EXPECT_EQ(file.rows[2].printed(2, ""), standard_output_of([&] {
                  EXPECT_REPORT(manager->print_database(2, ""), "id_count == 1", IN_DEVICE_EXPORT);
              }));
}

TEST_F(DevInfoReport, MindsNoKeysUnderALabel) {
    file.rows[2] = plain_device_row().with("pcf", "QX").with("device", "GENERIC");
    const MANAGER manager = load(file);
    EXPECT_EQ(file.rows[2].printed(2, "L"), standard_output_of([&] { manager->print_database(2, "L"); }));
}

TEST_F(DevInfoReport, IsEmptyInModesWithoutAMeaning) {
    for (const unsigned int mode : {0U, 5U, 0x80000001U, 0xFFFFFFFFU})
        EXPECT_EQ("", printed(mode)) << mode;
}

TEST_F(DevInfoReport, IsOfEveryRecordInModeOne) {
    std::string expected;
    for (unsigned int index = 0; index < 79; ++index)
        expected += file.rows[index].printed(index, "");
    EXPECT_EQ(expected, printed(1));
}

TEST_F(DevInfoReport, StopsAtARecordOfTwoKeysInModeOne) {
    file.rows[2] = file.rows[2].with("device", "GENERIC");
    const std::string lines =
        standard_output_of([&] { EXPECT_REPORT(load(file, 1), "id_count == 1", IN_DEVICE_EXPORT); });
    EXPECT_EQ(file.rows[0].printed(0, "") + file.rows[1].printed(1, "") + file.rows[2].printed(2, ""), lines);
}

TEST_F(DevInfoReport, IsOfEveryFamilyInModeTwo) {
    file.family_table.assign(74, 2);
    file.family_table[0] = INVALID_DWORD; // not asked for
    file.family_table[5] = 7;
    std::string expected;
    for (unsigned int family = 1; family < 73; ++family) {
        const unsigned int position = family == 5 ? 7 : 2;
        expected += file.rows[position].printed(position, dstr_get_user_string(DEV_FAMILY_ENUM(family)));
    }
    EXPECT_EQ(expected + file.rows[2].printed(2, "Generic"), printed(2));
}

TEST_F(DevInfoReport, IsOfEveryDeviceInModeThree) {
    file.device_table.assign(1048, 2);
    file.device_table[0] = INVALID_DWORD;
    file.device_table[1046] = 7;
    std::string expected;
    for (unsigned int device = 1; device < 1047; ++device) {
        const unsigned int position = device == 1046 ? 7 : 2;
        expected += file.rows[position].printed(position, dstr_get_user_string(DEV_DEVICE_ENUM(device)));
    }
    EXPECT_EQ(expected + file.rows[2].printed(2, "Generic"), printed(3));
}

TEST_F(DevInfoReport, IsOfEveryPartInModeFour) {
    file.part_table.assign(DEV_PART_MAX, 2);
    file.part_table[DEV_PART_INVALID] = INVALID_DWORD;
    file.part_table[1] = 7;
    std::string expected;
    for (unsigned int part = 0; part < DEV_PART_MAX; ++part) {
        const unsigned int position = part == 1 ? 7 : 2;
        const std::string label = part == DEV_PART_GENERIC ? "Generic" : dstr_get_user_string(DEV_PART_ENUM(part));
        expected += part == DEV_PART_INVALID ? "" : file.rows[position].printed(position, label);
    }
    EXPECT_EQ(expected, printed(4));
}

TEST_F(DevInfoReport, EndsAtAValueThatNoRecordServes) {
    for (const unsigned int mode : {2U, 3U, 4U})
        EXPECT_EQ("", standard_output_of(
                          [&] { EXPECT_REPORT(load(file, mode), "index < TOTAL_DATABASE_DEVICE", IN_DEVICE_EXPORT); }));
}

} // namespace
