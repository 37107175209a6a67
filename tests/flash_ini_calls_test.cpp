// What the parameter file and the dialogue ask of the host, and what is allocated for a file that lies. The host is one
// that writes its calls down.
#include "allocation_log.h"
#include "ini_model.h"
#include "recording_host.h"
#include "temporary_folder.h"
#include "tovren_flash_manager.h"
#include "tovren_hps_mgr.h"

#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <sstream>

namespace {

using CALLS = std::vector<std::string>;
using INI = TOVREN_FLASH_INI;

class FlashIniCalls : public testing::Test {
protected:
    FlashIniCalls() : file(folder.path("pgm_flash.ini")) {
        recording_host() = {};
        recording_host().module_path = folder.path();
        recording_host().calls.reserve(100);
    }

    // The size of a section as it is read.
    static unsigned int size_of(TOVREN_FLASH_INI_ENUM section) {
        unsigned int size = 0;
        const std::unique_ptr<unsigned char[]> data(INI::read_flash_ini_data(section, size));
        return size;
    }

    TEMPORARY_FOLDER folder;
    std::string file;
};

TEST_F(FlashIniCalls, AskForTheFolderAndTheFilesStatus) {
    write_file(file, INI_FILE({{0xAA}, {0xBB, 0xCC}, {}}).bytes());
    EXPECT_EQ(2U, size_of(TOVREN_FLASH_INI_HPS_SPI));
    EXPECT_EQ((CALLS{"gen_get_module_path()", "exists(" + file + ")", "status(" + file + ")"}), recording_host().calls);
}

TEST_F(FlashIniCalls, AskNoMoreWhereThereIsNoFile) {
    EXPECT_EQ(0U, size_of(TOVREN_FLASH_INI_HPS_SPI));
    EXPECT_EQ((CALLS{"gen_get_module_path()", "exists(" + file + ")"}), recording_host().calls);
}

TEST_F(FlashIniCalls, AskForNothingWhereTheSectionIsNone) {
    EXPECT_FALSE(INI::write_flash_ini_data(TOVREN_FLASH_INI_MAX, nullptr, 0));
    EXPECT_EQ(CALLS{}, recording_host().calls);
}

TEST_F(FlashIniCalls, HaveTheCountConvertedWithBothOptions) {
    std::istringstream typed("2");
    std::streambuf* const former = std::cin.rdbuf(typed.rdbuf());
    testing::internal::CaptureStdout();
    TOVREN_FLASH_MANAGER(false, 0, true, false).gen_flash_ini(); // this host's number is too large a count
    testing::internal::GetCapturedStdout();
    std::cin.rdbuf(former);
    std::cin.clear();
    EXPECT_EQ(CALLS{"convert_string_to_dword(2, true, ok, none, true)"}, recording_host().calls);
}

// ---- what is allocated ----

TEST_F(FlashIniCalls, AllocateInProportionForAnyTable) {
    for (const unsigned int number : {100U, 1000000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFF0U}) {
        INI_FILE lying({{0xAA}, {0xBB}, {0xCC}});
        lying.entries = {{44, number}, {44 + number, 1}, {45 + number, 1}};
        INI_FILE crowded({{0xAA}, {0xBB}, {0xCC}});
        crowded.count = number;
        for (const INI_FILE& ini : {lying, crowded}) {
            write_file(file, ini.bytes());
            const ALLOCATION_LOG log;
            EXPECT_EQ(0U, size_of(TOVREN_FLASH_INI_SFL));
            EXPECT_GE(16384U, log.largest_allocation()) << number; // the stream's own buffer
        }
    }
}

TEST_F(FlashIniCalls, KeepNothingOfASectionThatIsReadOrWritten) {
    INI_FILE ini({{0xAA}, {0xBB}, {0xCC}});
    for (const BYTES& bytes : {ini.bytes(), first(ini.bytes(), 46)}) {
        write_file(file, bytes);
        size_t live = 0;
        {
            const ALLOCATION_LOG log;
            size_of(TOVREN_FLASH_INI_HPS_SPI);
            EXPECT_TRUE(INI::write_flash_ini_data(TOVREN_FLASH_INI_HPS_SPI, nullptr, 0));
            recording_host().calls.clear();
            live = log.live_allocations();
        }
        EXPECT_EQ(0U, live);
    }
}

TEST_F(FlashIniCalls, KeepNothingOfAManagerThatIsDeleted) {
    const BYTES record = join({BYTES(16, 1), zero_ended("a maker whose name is too long to stand inside of an object"),
                               zero_ended("QX_8"), BYTES(45, 2)});
    write_file(file, INI_FILE({{}, join({text_bytes(TOVREN_HPS_SPI_MD5), record, first(record, 70)}), {}}).bytes());
    TOVREN_HPS_SPI_MGR::delete_mgr();
    const ALLOCATION_LOG log;
    EXPECT_EQ(1U, TOVREN_HPS_SPI_MGR::get_mgr()->m_user_flash_list.size());
    TOVREN_HPS_SPI_MGR::delete_mgr();
    recording_host().calls.clear();
    EXPECT_EQ(0U, log.live_allocations());
}

} // namespace
