// Hostile files: a small but complete database, changed in every way that fits one change, each loaded. Every one of
// them must load or end in a report of the library; the sanitizers watch what happens on the way.
#include "fixtures.h"
#include "flash_model.h"
#include "report.h"
#include "tovren_flash_manager.h"
#include "tovren_standalone_host.h"

#include <gtest/gtest.h>

namespace {

class FlashMutation : public FLASH_TEST {
protected:
    FlashMutation() {
        // Two records of one name, one of them hidden; a silicon ID; an empty text and one of two characters.
        TOVREN_SFL_FLASH_INFO hidden = make_flash("QX1");
        hidden.default_dev = false;
        hidden.ini = "K";
        TOVREN_SFL_FLASH_INFO silicon = make_flash("QXS");
        silicon.silicon_id = true;
        silicon.manufacturer_name = "";
        silicon.asc_voltage = "--";
        file = FLASH_FILE({make_flash("QX1"), hidden, silicon});
    }

    // What a caller does with a manager that has loaded; whatever was changed, all of it must be possible.
    static void use(TOVREN_FLASH_MANAGER& manager) {
        BYTES id(256, 0x18);
        for (unsigned int index = 0; index < manager.get_flash_count(); ++index) {
            const TOVREN_SFL_FLASH_INFO& flash = *manager.get_flash(index);
            EXPECT_NE(nullptr, manager.get_default_flash(flash.device_name));
            EXPECT_FALSE(flash.ini.empty());
            EXPECT_FALSE(described(flash).empty());
        }
        if (manager.get_flash_count() > 0) {
            manager.flash_id_database_mapping(false, 0, id.data());
            manager.flash_id_database_mapping(true, 0, id.data());
        }
        manager.get_matching_flashes(false, id.data(), 3);
    }

    // Loads these bytes and lists all their records; counts which way it went.
    void expect_load_or_report(const BYTES& bytes) {
        put_database(bytes);
        expect_done_or_report([&] {
            TOVREN_FLASH_MANAGER manager(true, 1, false, false);
            EXPECT_LE(manager.get_flash_count(), 3U);
            use(manager);
            ++loaded;
        });
        expect_done_or_report([&] { EXPECT_LE(TOVREN_FLASH_MANAGER::get_all_flashes(database).size(), 3U); });
    }

    void expect_done_or_report(const std::function<void()>& action) {
        const std::optional<REPORT> report = report_of(action);
        if (!report)
            return;
        ++reported;
        EXPECT_FALSE(report->expression.empty());
        EXPECT_EQ("TOVREN", report->prefix);
        EXPECT_TRUE(report->file.starts_with("pgm/tovren/tovren_")) << report->file;
        EXPECT_GT(report->line, 0);
    }

    FLASH_FILE file;
    unsigned int loaded = 0;
    unsigned int reported = 0;
};

void flip(BYTES& bytes, size_t bit) {
    bytes[bit / 8] = static_cast<unsigned char>(bytes[bit / 8] ^ (1U << bit % 8));
}

TEST_F(FlashMutation, LoadsOrReportsEveryFlippedBitOfThePayload) {
    BYTES payload = file.payload();
    for (size_t bit = 0; bit < payload.size() * 8; ++bit) {
        flip(payload, bit);
        expect_load_or_report(file.bytes_around(payload));
        flip(payload, bit);
    }
    EXPECT_GT(loaded, 0U);
    EXPECT_GT(reported, 0U);
}

TEST_F(FlashMutation, LoadsOrReportsEveryFlippedBitWithTheHiddenRecordShown) {
    TOVREN_STANDALONE_HOST::set_setting("PGM_ALLOW_K", "on");
    BYTES payload = file.payload();
    for (size_t bit = 0; bit < payload.size() * 8; ++bit) {
        flip(payload, bit);
        expect_load_or_report(file.bytes_around(payload));
        flip(payload, bit);
    }
    EXPECT_GT(loaded, 0U);
    EXPECT_GT(reported, 0U);
}

TEST_F(FlashMutation, ReportsEveryPayloadThatIsCut) {
    const BYTES payload = file.payload();
    for (size_t size = 1; size < payload.size(); ++size)
        expect_load_or_report(file.bytes_around(first(payload, size)));
    EXPECT_EQ(0U, loaded);
}

TEST_F(FlashMutation, LoadsOrReportsEveryByteAtItsEdges) {
    const BYTES payload = file.payload();
    for (size_t position = 0; position < payload.size(); ++position)
        for (const unsigned char value : BYTES{0x00, 0x01, 0x7F, 0x80, 0xFF})
            expect_load_or_report(file.bytes_around(with_byte(payload, position, value)));
    EXPECT_GT(loaded, 0U);
    EXPECT_GT(reported, 0U);
}

TEST_F(FlashMutation, LoadsOrReportsEveryByteTakenOutOrDoubled) {
    const BYTES payload = file.payload();
    for (size_t position = 0; position < payload.size(); ++position) {
        BYTES changed = payload;
        changed.erase(changed.begin() + static_cast<std::ptrdiff_t>(position));
        expect_load_or_report(file.bytes_around(changed));
        changed = payload;
        changed.insert(changed.begin() + static_cast<std::ptrdiff_t>(position), payload[position]);
        expect_load_or_report(file.bytes_around(changed));
    }
    EXPECT_GT(reported, 0U);
}

TEST_F(FlashMutation, ReportsEveryHeaderFieldAtItsEdges) {
    for (const unsigned char value : BYTES{0x00, 0x01, 0xFF}) {
        FLASH_FILE changed = file;
        changed.magic = std::string(8, static_cast<char>(value));
        expect_load_or_report(changed.bytes());
        changed = file;
        changed.md5 = std::string(32, static_cast<char>(value));
        expect_load_or_report(changed.bytes());
    }
    for (const unsigned int value : {0U, 1U, 0xFFFFFFFFU}) {
        FLASH_FILE changed = file;
        changed.payload_size = value;
        expect_load_or_report(changed.bytes());
        changed = file;
        changed.flash_count = value;
        expect_load_or_report(changed.bytes());
    }
    for (const unsigned int value : {0U, 0xFFFFFFFFU}) {
        FLASH_FILE changed = file;
        changed.version = value;
        expect_load_or_report(changed.bytes());
    }
    EXPECT_EQ(0U, loaded);
}

TEST_F(FlashMutation, LoadsWithEveryMemberCountAndCheckFieldButZeroMembers) {
    for (const unsigned int value : {1U, 0xFFFFFFFFU}) {
        FLASH_FILE changed = file;
        changed.member_count = value;
        expect_load_or_report(changed.bytes());
    }
    for (const unsigned char value : BYTES{0x00, 0x01, 0xFF}) {
        FLASH_FILE changed = file;
        changed.check = {value, value};
        expect_load_or_report(changed.bytes());
    }
    EXPECT_EQ(5U, loaded);
    EXPECT_EQ(0U, reported);
    file.member_count = 0;
    expect_load_or_report(file.bytes());
    EXPECT_EQ(5U, loaded);
}

TEST_F(FlashMutation, ReportsEveryFileThatIsCut) {
    // The last two bytes are the check field, and the file's end is where that is expected: whatever is cut off
    // shortens the zlib stream.
    const BYTES bytes = file.bytes();
    for (size_t size = 0; size < bytes.size(); ++size)
        expect_load_or_report(first(bytes, size));
    EXPECT_EQ(0U, loaded);
}

TEST_F(FlashMutation, LoadsOrReportsEveryFlippedBitOfTheFile) {
    BYTES bytes = file.bytes();
    for (size_t bit = 0; bit < bytes.size() * 8; ++bit) {
        flip(bytes, bit);
        expect_load_or_report(bytes);
        flip(bytes, bit);
    }
    EXPECT_GE(loaded, 16U); // those of the check field
    EXPECT_GT(reported, 44U * 8);
}

} // namespace
