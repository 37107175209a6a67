// The flash manager: identification, the map of a chain, the flashes of a name, the longest program time.
#include "fixtures.h"
#include "flash_model.h"
#include "report.h"
#include "tovren_flash_manager.h"
#include "tovren_standalone_host.h"

#include <gtest/gtest.h>

namespace {

constexpr char MAP_TEXT[] = "m_device_to_flash_map != NULL && device < m_device_count && m_flash_database != NULL && "
                            "m_flash_count > 0";

// ---- identification by device ID ----

class FlashMapping : public FLASH_TEST {
protected:
    // The record that a device answering these bytes is mapped to.
    static unsigned int mapped(TOVREN_FLASH_MANAGER& manager, bool by_silicon_id, BYTES id) {
        id.resize(256);
        const bool found = manager.flash_id_database_mapping(by_silicon_id, 0, id.data());
        const unsigned int index = manager.get_flash_mapping_index(0, true);
        EXPECT_EQ(found, index != INVALID_DWORD);
        return index;
    }
};

TOVREN_SFL_FLASH_INFO silicon(const std::string& name, BYTE id, BYTE position) {
    TOVREN_SFL_FLASH_INFO flash = make_flash(name);
    flash.silicon_id = true;
    flash.memory_id = id;
    flash.memory_id_index = position;
    return flash;
}

TEST_F(FlashMapping, FindsAFlashByItsThreeBytes) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1")}));
    EXPECT_EQ(0U, mapped(*manager, false, {0xA1, 0x40, 0x18}));
}

TEST_F(FlashMapping, ComparesEachOfTheThreeBytes) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1")}));
    EXPECT_EQ(INVALID_DWORD, mapped(*manager, false, {0xA2, 0x40, 0x18}));
    EXPECT_EQ(INVALID_DWORD, mapped(*manager, false, {0xA1, 0x41, 0x18}));
    EXPECT_EQ(INVALID_DWORD, mapped(*manager, false, {0xA1, 0x40, 0x19}));
}

TEST_F(FlashMapping, TakesEachByteFromItsOwnPosition) {
    TOVREN_SFL_FLASH_INFO flash = make_flash("QX1");
    flash.memory_id_index = 7;
    flash.memory_type_index = 254;
    flash.mfc_id_index = 3;
    const MANAGER manager = load(FLASH_FILE({flash}));
    BYTES id(256);
    id[7] = 0x18;
    id[254] = 0x40;
    id[3] = 0xA1;
    EXPECT_EQ(0U, mapped(*manager, false, id));
    EXPECT_EQ(INVALID_DWORD, mapped(*manager, false, {0xA1, 0x40, 0x18}));
}

TEST_F(FlashMapping, ComparesNoMemoryTypeAtIndex255) {
    TOVREN_SFL_FLASH_INFO flash = make_flash("QX1");
    flash.memory_type_index = 0xFF;
    const MANAGER manager = load(FLASH_FILE({flash}));
    EXPECT_EQ(0U, mapped(*manager, false, {0xA1, 0x99, 0x18}));
    EXPECT_EQ(INVALID_DWORD, mapped(*manager, false, {0xA2, 0x99, 0x18}));
}

TEST_F(FlashMapping, ReadsNoByteForAMemoryTypeAtIndex255) {
    TOVREN_SFL_FLASH_INFO flash = make_flash("QX1");
    flash.memory_type_index = 0xFF;
    const MANAGER manager = load(FLASH_FILE({flash}));
    BYTES id = {0xA1, 0x99, 0x18}; // no longer than the highest index that is compared
    EXPECT_TRUE(manager->flash_id_database_mapping(false, 0, id.data()));
}

TEST_F(FlashMapping, ComparesTheManufacturerAlsoAtIndex255) {
    TOVREN_SFL_FLASH_INFO flash = make_flash("QX1");
    flash.mfc_id_index = 0xFF;
    const MANAGER manager = load(FLASH_FILE({flash}));
    BYTES id(256);
    id[1] = 0x40;
    id[2] = 0x18;
    EXPECT_EQ(INVALID_DWORD, mapped(*manager, false, id));
    id[255] = 0xA1;
    EXPECT_EQ(0U, mapped(*manager, false, id));
}

TEST_F(FlashMapping, TakesTheFirstOfEqualFlashes) {
    TOVREN_SFL_FLASH_INFO other = make_flash("QX1");
    other.memory_id = 0x19;
    const MANAGER manager = load(FLASH_FILE({other, make_flash("QX2"), make_flash("QX3")}));
    EXPECT_EQ(1U, mapped(*manager, false, {0xA1, 0x40, 0x18}));
}

TEST_F(FlashMapping, FindsTheLastFlash) {
    TOVREN_SFL_FLASH_INFO last = make_flash("QX3");
    last.mfc_id = 0xB2;
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1"), make_flash("QX2"), last}));
    EXPECT_EQ(2U, mapped(*manager, false, {0xB2, 0x40, 0x18}));
}

TEST_F(FlashMapping, LooksAtLiveRecordsOnly) {
    // The empty record behind the live ones has the identification 00 00 00, all at position 0.
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1"), keyed("QX2", "A")}));
    EXPECT_EQ(INVALID_DWORD, mapped(*manager, false, {0, 0, 0}));
}

TEST_F(FlashMapping, ForgetsTheFormerFlashOfADevice) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1")}));
    EXPECT_EQ(0U, mapped(*manager, false, {0xA1, 0x40, 0x18}));
    EXPECT_EQ(INVALID_DWORD, mapped(*manager, false, {0, 0, 0}));
}

TEST_F(FlashMapping, MapsTheDeviceAskedAboutAndNoOther) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1")}), 3);
    unsigned char id[] = {0xA1, 0x40, 0x18};
    EXPECT_TRUE(manager->flash_id_database_mapping(false, 1, id));
    EXPECT_EQ(INVALID_DWORD, manager->get_flash_mapping_index(0, true));
    EXPECT_EQ(0U, manager->get_flash_mapping_index(1, true));
    EXPECT_EQ(INVALID_DWORD, manager->get_flash_mapping_index(2, true));
}

TEST_F(FlashMapping, SeesARecordThatWasReadAgain) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1")}));
    EXPECT_EQ(0U, mapped(*manager, false, {0xA1, 0x40, 0x18}));
    TOVREN_SFL_FLASH_INFO other = make_flash("QX2");
    other.memory_id = 0x19;
    BYTES payload = FLASH_FILE({other}).payload();
    unsigned int place = 12;
    EXPECT_TRUE(manager->get_database(payload.data(), place, 0));
    EXPECT_EQ(INVALID_DWORD, mapped(*manager, false, {0xA1, 0x40, 0x18}));
    EXPECT_EQ(0U, mapped(*manager, false, {0xA1, 0x40, 0x19}));
}

TEST_F(FlashMapping, SeesARecordThatTheCallerChanged) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1")}));
    EXPECT_EQ(0U, mapped(*manager, false, {0xA1, 0x40, 0x18}));
    manager->get_default_flash("QX1")->mfc_id = 0xA2;
    EXPECT_EQ(0U, mapped(*manager, false, {0xA2, 0x40, 0x18}));
}

TEST_F(FlashMapping, FindsTheFirstOfRecordsWithOtherPlacesToo) {
    TOVREN_SFL_FLASH_INFO no_type = make_flash("QX2");
    no_type.memory_type_index = 0xFF;
    EXPECT_EQ(0U, mapped(*load(FLASH_FILE({no_type, make_flash("QX1")})), false, {0xA1, 0x40, 0x18}));
    EXPECT_EQ(0U, mapped(*load(FLASH_FILE({make_flash("QX1"), no_type})), false, {0xA1, 0x40, 0x18}));
    EXPECT_EQ(1U, mapped(*load(FLASH_FILE({make_flash("QX1"), no_type})), false, {0xA1, 0x41, 0x18}));
}

// ---- identification by silicon ID ----

TEST_F(FlashMapping, FindsAFlashByItsSiliconId) {
    const MANAGER manager = load(FLASH_FILE({silicon("QXS1", 0x15, 0), silicon("QXS2", 0x16, 4)}));
    EXPECT_EQ(0U, mapped(*manager, true, {0x15}));
    EXPECT_EQ(1U, mapped(*manager, true, {0, 0, 0, 0, 0x16}));
    EXPECT_EQ(INVALID_DWORD, mapped(*manager, true, {0x16}));
}

TEST_F(FlashMapping, ReadsNothingButTheSiliconIdByte) {
    const MANAGER manager = load(FLASH_FILE({silicon("QXS1", 0x15, 0)}));
    BYTES id = {0x15};
    EXPECT_TRUE(manager->flash_id_database_mapping(true, 0, id.data()));
}

TEST_F(FlashMapping, FindsNoDeviceIdFlashByASiliconId) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1")}));
    EXPECT_EQ(INVALID_DWORD, mapped(*manager, true, {0xA1, 0x40, 0x18}));
}

TEST_F(FlashMapping, FindsNoSiliconIdFlashByADeviceId) {
    const MANAGER manager = load(FLASH_FILE({silicon("QXS1", 0x18, 2)}));
    EXPECT_EQ(INVALID_DWORD, mapped(*manager, false, {0xA1, 0x40, 0x18}));
}

TEST_F(FlashMapping, PassesOverTheOtherKind) {
    const FLASH_FILE file({silicon("QXS1", 0x18, 2), make_flash("QX1"), silicon("QXS2", 0x15, 0)});
    const MANAGER manager = load(file);
    EXPECT_EQ(1U, mapped(*manager, false, {0xA1, 0x40, 0x18}));
    EXPECT_EQ(2U, mapped(*manager, true, {0x15}));
}

// ---- the map's conditions ----

TEST_F(FlashMapping, NeedsAMapADeviceAndARecord) {
    unsigned char id[256] = {};
    EXPECT_REPORT(make_generator()->flash_id_database_mapping(false, 9, id), "m_device_to_flash_map != NULL",
                  IN_FLASH_MANAGER);
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1")}), 2);
    EXPECT_REPORT(manager->flash_id_database_mapping(false, 2, id), "device_index < m_device_count", IN_FLASH_MANAGER);
    EXPECT_REPORT(manager->flash_id_database_mapping(false, INVALID_DWORD, id), "device_index < m_device_count",
                  IN_FLASH_MANAGER);
    const MANAGER empty = load(FLASH_FILE({keyed("QX1", "A")}), 2);
    EXPECT_REPORT(empty->flash_id_database_mapping(false, 2, id), "device_index < m_device_count", IN_FLASH_MANAGER);
    EXPECT_REPORT(empty->flash_id_database_mapping(false, 1, id), "m_flash_database != NULL && m_flash_count > 0",
                  IN_FLASH_MANAGER);
}

TEST_F(FlashMapping, GivesAnUnmappedDeviceOnRequestOnly) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1")}));
    EXPECT_EQ(INVALID_DWORD, manager->get_flash_mapping_index(0, true));
    EXPECT_REPORT(manager->get_flash_mapping_index(0, false), "index != INVALID_DWORD", IN_FLASH_MANAGER);
    manager->set_flash_mapping_index(0, 0);
    EXPECT_EQ(0U, manager->get_flash_mapping_index(0, false));
    EXPECT_EQ(0U, manager->get_flash_mapping_index(0, true));
}

TEST_F(FlashMapping, GivesNothingForNoDevice) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1")}), 2);
    EXPECT_REPORT(manager->get_flash_mapping_index(2, true), MAP_TEXT, IN_FLASH_MANAGER);
    EXPECT_REPORT(make_generator()->get_flash_mapping_index(0, true), MAP_TEXT, IN_FLASH_MANAGER);
    EXPECT_REPORT(load(FLASH_FILE({keyed("QX1", "A")}))->get_flash_mapping_index(0, true), MAP_TEXT, IN_FLASH_MANAGER);
}

TEST_F(FlashMapping, StoresARecordForADevice) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1"), make_flash("QX2")}), 2);
    manager->set_flash_mapping_index(1, 1);
    EXPECT_EQ(INVALID_DWORD, manager->get_flash_mapping_index(0, true));
    EXPECT_EQ(1U, manager->get_flash_mapping_index(1, false));
}

TEST_F(FlashMapping, StoresNoOtherRecordAndForNoOtherDevice) {
    const std::string text = std::string(MAP_TEXT) + " && index < m_flash_count";
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1"), make_flash("QX2")}), 2);
    EXPECT_REPORT(manager->set_flash_mapping_index(2, 0), text, IN_FLASH_MANAGER);
    EXPECT_REPORT(manager->set_flash_mapping_index(0, 2), text, IN_FLASH_MANAGER);
    EXPECT_REPORT(manager->set_flash_mapping_index(0, INVALID_DWORD), text, IN_FLASH_MANAGER);
    EXPECT_REPORT(make_generator()->set_flash_mapping_index(0, 0), text, IN_FLASH_MANAGER);
    EXPECT_EQ(INVALID_DWORD, manager->get_flash_mapping_index(0, true));
}

// ---- every match, every record ----

TEST_F(FlashMapping, ListsEveryMatchInOrder) {
    TOVREN_SFL_FLASH_INFO other = make_flash("QX2");
    other.memory_id = 0x19;
    const MANAGER manager = load(FLASH_FILE({silicon("QXS1", 0x18, 2), make_flash("QX1"), other, make_flash("QX3")}));
    const BYTES id = {0xA1, 0x40, 0x18};
    EXPECT_EQ((std::vector<unsigned int>{1, 3}), manager->get_matching_flashes(false, id.data(), 3));
    EXPECT_EQ((std::vector<unsigned int>{0}), manager->get_matching_flashes(true, id.data(), 3));
}

TEST_F(FlashMapping, ListsNoFlashThatComparesAByteBeyondTheAnswer) {
    TOVREN_SFL_FLASH_INFO no_type = make_flash("QX2");
    no_type.memory_type_index = 0xFF;
    no_type.memory_id_index = 1;
    no_type.memory_id = 0x40;
    TOVREN_SFL_FLASH_INFO far_maker = no_type;
    far_maker.device_name = "QX3";
    far_maker.mfc_id_index = 0xFF;
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1"), no_type, far_maker, silicon("QXS1", 0x40, 1)}));
    const BYTES id = {0xA1, 0x40};
    EXPECT_EQ((std::vector<unsigned int>{1}), manager->get_matching_flashes(false, id.data(), 2));
    EXPECT_EQ((std::vector<unsigned int>{3}), manager->get_matching_flashes(true, id.data(), 2));
    EXPECT_TRUE(manager->get_matching_flashes(false, id.data(), 1).empty());
    EXPECT_TRUE(manager->get_matching_flashes(true, id.data(), 1).empty());
    EXPECT_TRUE(manager->get_matching_flashes(false, nullptr, 0).empty());
}

TEST_F(FlashMapping, GivesARecordByItsIndex) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1"), keyed("QX2", "A"), make_flash("QX3")}));
    EXPECT_EQ(2U, manager->get_flash_count());
    EXPECT_EQ("QX3", manager->get_flash(1)->device_name);
    EXPECT_EQ(nullptr, manager->get_flash(2));
    EXPECT_EQ(nullptr, manager->get_flash(INVALID_DWORD));
    EXPECT_EQ(nullptr, make_generator()->get_flash(0));
}

TEST_F(FlashMapping, GivesAllRecordsOfAFileWhateverTheSwitchesSay) {
    put_database(FLASH_FILE({keyed("QX1", "A"), no_default("QX2"), keyed("QX3", "B")}).bytes());
    const std::vector<TOVREN_SFL_FLASH_INFO> all = TOVREN_FLASH_MANAGER::get_all_flashes(database);
    ASSERT_EQ(3U, all.size());
    EXPECT_EQ(described(keyed("QX1", "A")), described(all[0]));
    EXPECT_EQ(described(no_default("QX2")), described(all[1]));
    EXPECT_EQ(described(keyed("QX3", "B")), described(all[2]));
}

TEST_F(FlashMapping, GivesNoRecordsOfABrokenFile) {
    FLASH_FILE file({make_flash("QX1")});
    file.end = "END3";
    put_database(file.bytes());
    EXPECT_REPORT(TOVREN_FLASH_MANAGER::get_all_flashes(database), "data[index++] == '2'", IN_DB_STREAM);
    file.magic = "PGMIO_DM";
    put_database(file.bytes());
    EXPECT_TRUE(report_of([&] { TOVREN_FLASH_MANAGER::get_all_flashes(database); }).has_value());
}

// ---- defaults ----

TEST_F(FlashMapping, GivesTheDefaultOfAName) {
    const MANAGER manager = load(FLASH_FILE({no_default("QX1"), make_flash("QX2"), make_flash("QX1")}));
    EXPECT_EQ(manager->get_flash(2), manager->get_default_flash("QX1"));
    EXPECT_EQ(manager->get_flash(1), manager->get_default_flash("QX2"));
}

TEST_F(FlashMapping, GivesTheDefaultOfANameInAnyCase) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QXa1")}));
    EXPECT_EQ(manager->get_flash(0), manager->get_default_flash("QXA1"));
    EXPECT_EQ(manager->get_flash(0), manager->get_default_flash("qxa1"));
}

TEST_F(FlashMapping, GivesNoDefaultOfAnUnknownName) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1"), keyed("QX2", "A")}));
    for (const char* name : {"", "QX", "QX11", "QX1 ", "QX2"})
        EXPECT_EQ(nullptr, manager->get_default_flash(name)) << name;
    EXPECT_EQ(nullptr, make_generator()->get_default_flash("QX1"));
}

// ---- the longest program time ----

TOVREN_SFL_FLASH_INFO timed(const std::string& name, DWORD program_utime) {
    TOVREN_SFL_FLASH_INFO flash = make_flash(name);
    flash.program_utime = program_utime;
    return flash;
}

TEST_F(FlashMapping, GivesTheLongestProgramTimeOfTheChain) {
    const MANAGER manager = load(FLASH_FILE({timed("QX1", 700), timed("QX2", 5000), timed("QX3", 3000)}), 3);
    manager->set_flash_mapping_index(0, 2);
    EXPECT_EQ(3000U, manager->sfl_get_chain_longest_program_utime());
    manager->set_flash_mapping_index(2, 0);
    EXPECT_EQ(3000U, manager->sfl_get_chain_longest_program_utime());
    manager->set_flash_mapping_index(1, 1);
    EXPECT_EQ(5000U, manager->sfl_get_chain_longest_program_utime());
}

TEST_F(FlashMapping, ComparesProgramTimesUnsigned) {
    const MANAGER manager = load(FLASH_FILE({timed("QX1", 0x7FFFFFFF), timed("QX2", 0x80000000)}), 2);
    manager->set_flash_mapping_index(0, 0);
    manager->set_flash_mapping_index(1, 1);
    EXPECT_EQ(0x80000000U, manager->sfl_get_chain_longest_program_utime());
}

TEST_F(FlashMapping, CountsAMappedFlashWithoutAProgramTime) {
    const MANAGER manager = load(FLASH_FILE({timed("QX1", 0)}));
    manager->set_flash_mapping_index(0, 0);
    EXPECT_EQ(0U, manager->sfl_get_chain_longest_program_utime());
}

TEST_F(FlashMapping, HasNoLongestProgramTimeWithoutAMappedDevice) {
    EXPECT_REPORT(load(FLASH_FILE({make_flash("QX1")}), 4)->sfl_get_chain_longest_program_utime(), "found",
                  IN_FLASH_MANAGER);
}

TEST_F(FlashMapping, HasNoLongestProgramTimeWithoutADevice) {
    TOVREN_FLASH_MANAGER manager(true, 0, true, false);
    EXPECT_REPORT(manager.sfl_get_chain_longest_program_utime(), "m_device_count > 0", IN_FLASH_MANAGER);
}

TEST_F(FlashMapping, HasNoLongestProgramTimeWithoutRecords) {
    EXPECT_REPORT(make_generator()->sfl_get_chain_longest_program_utime(), MAP_TEXT, IN_FLASH_MANAGER);
}

// ---- messages ----

TEST_F(FlashMapping, TellsTheDeviceAndTheRecordThatItFound) {
    const FLASH_FILE file({silicon("QXS1", 0x15, 0), make_flash("QX1"), make_flash("QX2")});
    const MANAGER manager = load(file, 3);
    TOVREN_STANDALONE_HOST::set_debug_level(2);
    unsigned char id[] = {0xA1, 0x40, 0x18};
    unsigned char silicon_id[] = {0x15};
    const std::string by_device = standard_error_of([&] { manager->flash_id_database_mapping(false, 2, id); });
    const std::string by_silicon = standard_error_of([&] { manager->flash_id_database_mapping(true, 0, silicon_id); });
    EXPECT_NE(std::string::npos, by_device.find("Found Device 3 device id at index 1\n")) << by_device;
    EXPECT_NE(std::string::npos, by_silicon.find("Found Device 1 silicon id at index 0\n")) << by_silicon;
}

TEST_F(FlashMapping, TellsNothingBelowItsLevelOrWithoutAMatch) {
    const MANAGER manager = load(FLASH_FILE({make_flash("QX1")}));
    unsigned char id[] = {0xA1, 0x40, 0x18};
    TOVREN_STANDALONE_HOST::set_debug_level(1);
    EXPECT_EQ("", standard_error_of([&] { manager->flash_id_database_mapping(false, 0, id); }));
    TOVREN_STANDALONE_HOST::set_debug_level(3);
    id[0] = 0;
    EXPECT_EQ("", standard_error_of([&] { manager->flash_id_database_mapping(false, 0, id); }));
}

} // namespace
