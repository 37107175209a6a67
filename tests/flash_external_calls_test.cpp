// What a stored definition asks of the host, in which order, and with which formats it logs. The host is one that
// writes its calls down.
#include "definition_model.h"
#include "recording_host.h"
#include "tovren_flash_manager.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

using CALLS = std::vector<std::string>;
using M = TOVREN_FLASH_MANAGER;

constexpr char ASK_SETTING[] = "cfg_get_value(TOVREN_USER_SPI_FLASHES)";
constexpr char ASK_DEBUG_SWITCH[] = "cfg_is_on(TOVREN_USER_SPI_FLASHES_DEBUG, false)";
constexpr char ASK_VERSION[] = "ver_get_version()";
constexpr char ASK_VERSION_NUMBER[] = "ver_get_current_version_index_number()";

class FlashExternalCalls : public testing::Test {
protected:
    FlashExternalCalls() { recording_host() = {}; }

    static void store(const std::string& text) { recording_host().settings["TOVREN_USER_SPI_FLASHES"] = text; }

    static std::string good_list() {
        const std::string definition = DEFINITION().text();
        return definition + "#" + model_tag(definition, "Morvath Version: 1.0 Build 0") + ";";
    }

    // The calls of one load.
    CALLS apply() {
        recording_host().calls.clear();
        testing::internal::CaptureStdout();
        manager.parse_ext_flash_info();
        testing::internal::GetCapturedStdout();
        return recording_host().calls;
    }

    TOVREN_FLASH_MANAGER manager{false, 0, true, false};
};

TEST_F(FlashExternalCalls, AskForTheSettingAlone) {
    EXPECT_EQ(CALLS{ASK_SETTING}, apply());
}

TEST_F(FlashExternalCalls, AskForNoSwitchWhereTheTextDoesNotDecode) {
    store("!");
    EXPECT_EQ(CALLS{ASK_SETTING}, apply());
}

TEST_F(FlashExternalCalls, AskForNoVersionOfAMalformedEntry) {
    store(model_encoded("@NO@ENTRY@AT@ALL@"));
    EXPECT_EQ((CALLS{ASK_SETTING, ASK_DEBUG_SWITCH}), apply());
}

TEST_F(FlashExternalCalls, AskForNoVersionWhereATagHasAnotherLength) {
    store(model_encoded(DEFINITION().text() + "#ABCDEFGHIJKLMNO;"));
    EXPECT_EQ((CALLS{ASK_SETTING, ASK_DEBUG_SWITCH}), apply());
}

TEST_F(FlashExternalCalls, LogEachMemberWithAFormatOfItsOwn) {
    store(model_encoded(good_list()));
    CALLS calls = apply();
    std::sort(calls.begin(), calls.begin() + 4); // the questions
    CALLS expected = {ASK_SETTING, ASK_DEBUG_SWITCH, ASK_VERSION_NUMBER, ASK_VERSION};
    const auto log = [&](const std::string& member, const std::string& value, const char* conversion = "%X") {
        const std::string text = "3rd party SPI support - " + member + " : ";
        expected.push_back("msg_local_vdebug(TOVREN, 2, " + text + conversion + "): " + text + value);
    };
    log("manufacturer_name", "QXMAKER", "%s");
    log("device_name", "QX25", "%s");
    log("silicon_id", "0");
    log("memory_id", "18");
    log("memory_id_index", "2");
    log("memory_type", "20");
    log("memory_type_index", "1");
    log("mfc_id", "A1");
    log("mfc_id_index", "0");
    log("velkor_id", "20");
    log("default_dev", "1");
    log("ini", "NONE", "%s");
    log("extended_mode", "0");
    log("micron_flow", "1");
    log("spansion_flow", "0");
    log("startup_protected", "1");
    log("aai_mode", "0");
    log("flag_status", "1");
    log("die_count", "2");
    log("device_bit_size", "10000000");
    log("device_sector_byte", "10000");
    log("half_size", "0");
    log("byte4_addressing", "1");
    log("bulk_erase_time", "FA");
    log("sec_erase_time", "3");
    log("program_utime", "1388");
    log("protection_mask", "7C");
    log("protection_value", "5C");
    log("unprotect_value", "4");
    log("protection_division", "FF");
    log("bottom_value", "20");
    log("sdm_support", "0");
    log("asc_voltage", "1.8V", "%s");
    EXPECT_EQ(expected, calls);
}

TEST_F(FlashExternalCalls, LogNothingOfARefusedDefinition) {
    store(model_encoded(DEFINITION().text() + "#ABCDEFGHIJKLMNOP;"));
    for (const std::string& call : apply())
        EXPECT_FALSE(call.starts_with("msg_local_vdebug")) << call;
}

TEST_F(FlashExternalCalls, TakeServicePackAndBuildOutOfThePackedNumber) {
    recording_host().version_index_number = 0x12345678; // 0x78 and 0x3456
    EXPECT_EQ("Morvath Version: 1.0 SP120 Build 13398", M::get_ini_version_text());
    recording_host().version_index_number = 0xFF000000;
    EXPECT_EQ("Morvath Version: 1.0 Build 0", M::get_ini_version_text());
    recording_host().version_index_number = 0xFFFFFFFF;
    EXPECT_EQ("Morvath Version: 1.0 SP255 Build 65535", M::get_ini_version_text());
}

} // namespace
