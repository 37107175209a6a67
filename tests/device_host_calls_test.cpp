// How the library calls its host while it generates a device database, and what it makes of a catalogue that is wrong.
#include "allocation_log.h"
#include "device_model.h"
#include "recording_host.h"
#include "temporary_folder.h"
#include "tovren_dev_info_manager.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <stdexcept>

namespace {

class DeviceHostCalls : public testing::Test {
protected:
    DeviceHostCalls() {
        recording_host() = {};
        recording_host().product_root = folder.path();
        recording_host().family_of = [](DEV_DEVICE_ENUM) { return DEV_FAMILY_ENUM(1); };
        std::filesystem::create_directory(folder.path("h"));
    }

    // The condition that generating ends in, empty for none.
    std::string generate() {
        write_text(folder.path("devices.csv"), csv.text());
        try {
            TOVREN_DEV_INFO_MANAGER(true, 0).generate_device_database(folder.path("devices.csv"), output);
        } catch (const RECORDED_REPORT& report) {
            EXPECT_EQ("TOVREN", report.prefix);
            EXPECT_EQ("pgm/tovren/tovren_dev_info_manager_generate.cpp", report.file);
            EXPECT_GT(report.line, 0);
            return report.expression;
        }
        return "";
    }

    static auto calls_that_begin(const std::string& start) {
        const auto& calls = recording_host().calls;
        return std::count_if(calls.begin(), calls.end(),
                             [&](const std::string& call) { return call.starts_with(start); });
    }

    TEMPORARY_FOLDER folder;
    std::string output = folder.path("out.pcf");
    DEVICE_CSV csv{make_device_rows()};
};

TEST_F(DeviceHostCalls, GenerateWithTheCatalogueOfTheHost) {
    EXPECT_EQ("", generate());
    EXPECT_TRUE(std::filesystem::exists(output));
}

TEST_F(DeviceHostCalls, RefuseADeviceWithoutAFamily) {
    for (const unsigned int family : {0U, 74U, 0xFFFFFFFFU}) {
        recording_host().family_of = [&](DEV_DEVICE_ENUM device) {
            return DEV_FAMILY_ENUM(device == 900 ? family : 1);
        };
        EXPECT_EQ("family != DEV_FAMILY_INVALID && family < DEV_FAMILY_MAX", generate());
    }
    EXPECT_FALSE(std::filesystem::exists(output));
}

TEST_F(DeviceHostCalls, RefuseAPartWithoutADevice) {
    for (const unsigned int device : {0U, 1048U, 0xFFFFFFFFU}) {
        recording_host().device_of = [&](DEV_PART_ENUM) { return DEV_DEVICE_ENUM(device); };
        EXPECT_EQ("device != DEV_DEVICE_INVALID && device < DEV_DEVICE_MAX", generate());
    }
    EXPECT_FALSE(std::filesystem::exists(output));
}

TEST_F(DeviceHostCalls, TakeAnyDeviceOfThePart) {
    csv.rows[5] = plain_device_row().with("device", "GENERIC");
    recording_host().device_of = [](DEV_PART_ENUM) { return DEV_DEVICE_GENERIC; };
    EXPECT_EQ("", generate());
}

TEST_F(DeviceHostCalls, SendOneNoticeForEachFamilyWithoutARecord) {
    generate();
    EXPECT_EQ(71, calls_that_begin("send_auto_email_file("));
}

TEST_F(DeviceHostCalls, KeepNothingOfAPartListThatAShortLineEnds) {
    write_text(folder.path("h/pgm_parts.txt"),
               "generic,generic,c,d,e,f,A_NAME_THAT_IS_LONG_ENOUGH_FOR_STORAGE_OF_ITS_OWN\na,b,c,d,e,f\n");
    recording_host().calls.reserve(20);
    const ALLOCATION_LOG log;
    EXPECT_THROW(TOVREN_DEV_INFO_MANAGER(true, 0).parse_pgm_parts(), std::out_of_range);
    recording_host().calls.clear();
    EXPECT_EQ(0U, log.live_allocations());
}

} // namespace
