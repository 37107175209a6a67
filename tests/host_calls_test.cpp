// How the library calls its host: with which arguments, how often, and what it allocates for a file that lies. The host
// is one that writes its calls down.
#include "allocation_log.h"
#include "flash_model.h"
#include "recording_host.h"
#include "temporary_folder.h"
#include "tovren_check.h"
#include "tovren_flash_manager.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

namespace {

using CALLS = std::vector<std::string>;

class HostCalls : public testing::Test {
protected:
    HostCalls() : database(folder.path("programmer/pgm_flash.pcf")) {
        std::filesystem::create_directory(folder.path("programmer"));
        recording_host() = {};
        recording_host().device_db_root = folder.path();
    }

    std::unique_ptr<TOVREN_FLASH_MANAGER> load(const BYTES& file) const {
        write_file(database, file);
        return std::make_unique<TOVREN_FLASH_MANAGER>(true, 2, false, false);
    }

    // The calls of one service, taken out of the record.
    static CALLS calls_of(const std::string& service) {
        CALLS& calls = recording_host().calls;
        const auto rest = std::stable_partition(calls.begin(), calls.end(), [&](const std::string& call) {
            return !call.starts_with(service + "(");
        });
        CALLS found(rest, calls.end());
        calls.erase(rest, calls.end());
        return found;
    }

    TEMPORARY_FOLDER folder;
    std::string database;
};

// ---- settings ----

TEST_F(HostCalls, AskForTheSwitchOfAKeyOnceForEachRecordWithTheDefaultOff) {
    load(FLASH_FILE({keyed("QX1", "QSPI_X"), make_flash("QX2"), keyed("QX3", "qspi_y"), keyed("QX4", "QSPI_X")})
             .bytes());
    EXPECT_EQ((CALLS{"cfg_is_on(PGM_ALLOW_QSPI_X, false)", "cfg_is_on(PGM_ALLOW_qspi_y, false)",
                     "cfg_is_on(PGM_ALLOW_QSPI_X, false)"}),
              calls_of("cfg_is_on"));
}

TEST_F(HostCalls, AskForNoSwitchOfTheKeyNone) {
    load(FLASH_FILE({keyed("QX1", "NONE"), keyed("QX2", "none"), keyed("QX3", "NonE")}).bytes());
    EXPECT_EQ(CALLS{}, calls_of("cfg_is_on"));
}

TEST_F(HostCalls, FollowTheAnswer) {
    const FLASH_FILE file({keyed("QX1", "QSPI_X"), make_flash("QX2")});
    EXPECT_EQ(1U, load(file.bytes())->get_flash_count());
    recording_host().switches_on = {"PGM_ALLOW_QSPI_X"};
    EXPECT_EQ(2U, load(file.bytes())->get_flash_count());
}

// ---- files ----

TEST_F(HostCalls, LookForTheDatabaseUnderTheRoot) {
    load(FLASH_FILE({make_flash("QX1")}).bytes());
    EXPECT_EQ(CALLS{"gen_get_device_db_fullpath()"}, calls_of("gen_get_device_db_fullpath"));
    EXPECT_EQ(CALLS{"exists(" + database + ")"}, calls_of("exists"));
    EXPECT_EQ(CALLS{"status(" + database + ")"}, calls_of("status"));
}

TEST_F(HostCalls, AskForNoStatusOfAFileThatDoesNotExist) {
    EXPECT_THROW(TOVREN_FLASH_MANAGER(true, 1, false, false), RECORDED_REPORT);
    EXPECT_EQ(1U, calls_of("exists").size());
    EXPECT_EQ(CALLS{}, calls_of("status"));
}

TEST_F(HostCalls, AskForNothingWithoutLoading) {
    const TOVREN_FLASH_MANAGER manager(true, 1, true, false);
    EXPECT_EQ(CALLS{}, recording_host().calls);
}

// ---- messages ----

TEST_F(HostCalls, CarryThePrefixAndTheLevelOfADebugMessageAndItsArgumentsUnchanged) {
    EXPECT_EQ(0, msg_vdebug_impl(MSG_D_LEVEL_3, "%s is %d%%", "text", 100));
    EXPECT_EQ(CALLS{"msg_local_vdebug(TOVREN, 3, %s is %d%%): text is 100%"}, calls_of("msg_local_vdebug"));
}

TEST_F(HostCalls, GiveBackWhatTheSinkOfDebugMessagesReturns) {
    recording_host().on_debug_message = [] { return -4711; };
    EXPECT_EQ(-4711, msg_vdebug_impl(MSG_D_LEVEL_0, "text"));
}

TEST_F(HostCalls, TellOfAFlashFoundByItsDeviceId) {
    const auto manager = load(FLASH_FILE({make_flash("QX1")}).bytes());
    unsigned char id[] = {0xA1, 0x40, 0x18};
    manager->flash_id_database_mapping(false, 1, id);
    EXPECT_EQ(CALLS{"msg_local_vdebug(TOVREN, 2, Found Device %d device id at index %d): "
                    "Found Device 2 device id at index 0"},
              calls_of("msg_local_vdebug"));
}

TEST_F(HostCalls, TellOfAFlashFoundByItsSiliconId) {
    TOVREN_SFL_FLASH_INFO silicon = make_flash("QXS1");
    silicon.silicon_id = true;
    silicon.memory_id_index = 0;
    const auto manager = load(FLASH_FILE({make_flash("QX1"), silicon}).bytes());
    unsigned char id[] = {0x18};
    manager->flash_id_database_mapping(true, 0, id);
    EXPECT_EQ(CALLS{"msg_local_vdebug(TOVREN, 2, Found Device %d silicon id at index %d): "
                    "Found Device 1 silicon id at index 1"},
              calls_of("msg_local_vdebug"));
}

TEST_F(HostCalls, TellOfAFlashBeforeItIsMapped) {
    const auto manager = load(FLASH_FILE({make_flash("QX1")}).bytes());
    unsigned char id[] = {0xA1, 0x40, 0x18};
    manager->set_flash_mapping_index(0, 0);
    unsigned int seen = 0;
    recording_host().on_debug_message = [&] {
        seen = manager->m_device_to_flash_map[0];
        return 0;
    };
    manager->flash_id_database_mapping(false, 0, id);
    EXPECT_EQ(INVALID_DWORD, seen);
    EXPECT_EQ(0U, manager->m_device_to_flash_map[0]);
}

// ---- numbers ----

TEST_F(HostCalls, ConvertANumberWithoutStatusWhenWriting) {
    TOVREN_FLASH_MANAGER manager(true, 1, true, false);
    BYTES bytes(5);
    unsigned char* buffer = bytes.data();
    unsigned int index = 0;
    manager.dump_value_to_database(&buffer, index, "0x99", 4);
    EXPECT_EQ(CALLS{"convert_string_to_dword(0x99, true, none, none, true)"}, calls_of("convert_string_to_dword"));
    EXPECT_EQ("06 78 56 34 12", hex_text(bytes));
}

TEST_F(HostCalls, ConvertEveryNumberOfADescriptionWithoutStatus) {
    const std::string csv = folder.path("flash.csv");
    write_text(csv, FLASH_CSV({make_flash("QX1"), make_flash("QX2")}).text());
    TOVREN_FLASH_MANAGER manager(true, 1, true, false);
    manager.generate_flash_database(csv, database);
    const CALLS calls = calls_of("convert_string_to_dword");
    EXPECT_FALSE(calls.empty());
    for (const std::string& call : calls)
        EXPECT_TRUE(call.ends_with(", true, none, none, true)")) << call;
}

TEST_F(HostCalls, ConvertANumberWithTheCallersFlag) {
    TOVREN_FLASH_MANAGER manager(true, 1, true, false);
    bool ok = false;
    EXPECT_EQ(0x12345678U, manager.get_dword_from_string("text", &ok));
    EXPECT_TRUE(ok);
    EXPECT_EQ(CALLS{"convert_string_to_dword(text, true, ok, none, true)"}, calls_of("convert_string_to_dword"));
}

// ---- storage ----

// Loads a file that is refused and gives the largest piece of storage that was asked for on the way.
size_t largest_allocation_of_refused(const std::string& path) {
    const ALLOCATION_LOG log;
    bool is_refused = false;
    try {
        const TOVREN_FLASH_MANAGER manager(true, 1, false, false);
    } catch (const RECORDED_REPORT&) {
        is_refused = true;
    }
    EXPECT_TRUE(is_refused) << path;
    return log.largest_allocation();
}

// Deflate codes at most 258 bytes in two bits, so this is what a file of a size may honestly stand for, and some.
size_t proportionate(const BYTES& file) {
    return file.size() * 1032 + 65536;
}

TEST_F(HostCalls, AllocateInProportionForAnyRecordCount) {
    FLASH_FILE file({make_flash("QX1"), make_flash("QX2")});
    for (const unsigned int count : {3U, 1000U, 0x01000000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        file.flash_count = count;
        write_file(database, file.bytes());
        EXPECT_LE(largest_allocation_of_refused(database), proportionate(file.bytes())) << count;
    }
}

TEST_F(HostCalls, AllocateInProportionForAnyPayloadSize) {
    FLASH_FILE file({make_flash("QX1"), make_flash("QX2")});
    for (const unsigned int size : {100U, 1000000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        file.payload_size = size;
        write_file(database, file.bytes());
        EXPECT_LE(largest_allocation_of_refused(database), proportionate(file.bytes())) << size;
    }
}

TEST_F(HostCalls, AllocateNoRecordsForZerosThatAreNone) {
    const BYTES zeros(10000000);
    FLASH_FILE file;
    file.flash_count = 100000;
    const BYTES bytes = file.bytes_around(join({le32_bytes(1), le32_bytes(100000), le32_bytes(33), zeros}));
    write_file(database, bytes);
    EXPECT_LE(largest_allocation_of_refused(database), zeros.size() + 65536);
}

TEST_F(HostCalls, LoadAVeryLargeTable) {
    constexpr unsigned int COUNT = 70000;
    TOVREN_SFL_FLASH_INFO flash = make_flash("QX1");
    BYTES payload = join({le32_bytes(1), le32_bytes(COUNT), le32_bytes(33), record_bytes(flash)});
    flash.default_dev = false;
    const BYTES record = record_bytes(flash);
    for (unsigned int i = 1; i < COUNT; ++i)
        payload.insert(payload.end(), record.begin(), record.end());
    write_file(database, FLASH_FILE().bytes_around(join({payload, text_bytes("END2")})));
    EXPECT_EQ(COUNT, TOVREN_FLASH_MANAGER(true, 1, false, false).get_flash_count());
}

TEST_F(HostCalls, KeepNothingOfAFileThatIsRefused) {
    FLASH_FILE file({make_flash("a name that is too long to stand inside of a text object"), make_flash("QX2")});
    const BYTES payload = file.payload();
    for (size_t size = 1; size < payload.size(); ++size) {
        write_file(database, file.bytes_around(first(payload, size)));
        recording_host().calls.clear();
        recording_host().calls.reserve(20);
        const std::string root = recording_host().device_db_root;
        size_t live = 0;
        {
            const ALLOCATION_LOG log;
            EXPECT_THROW(TOVREN_FLASH_MANAGER(true, 1, false, false), RECORDED_REPORT);
            recording_host().calls.clear();
            live = log.live_allocations();
        }
        ASSERT_EQ(0U, live) << size;
    }
}

TEST_F(HostCalls, KeepNothingOfAManagerThatIsGone) {
    write_file(database, FLASH_FILE({make_flash("a name that is too long to stand inside of a text object")}).bytes());
    recording_host().calls.reserve(20);
    const ALLOCATION_LOG log;
    {
        const TOVREN_FLASH_MANAGER manager(true, 1, false, false);
        EXPECT_GT(log.live_allocations(), 0U);
    }
    recording_host().calls.clear();
    EXPECT_EQ(0U, log.live_allocations());
}

} // namespace
