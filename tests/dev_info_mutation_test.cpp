// Hostile device databases: a small but complete one, changed in every way that fits one change, each loaded. Every one
// of them must load or end in a report of the library; the sanitizers watch what happens on the way.
#include "device_fixtures.h"
#include "tovren_dev_info_manager.h"

#include <gtest/gtest.h>

namespace {

class DevInfoMutation : public DEVICE_TEST {
protected:
    DevInfoMutation() {
        file.family_table[1] = 0;
        file.device_table[1] = 1;
        file.part_table[1] = 1;
        record_part = file.record_part();
        tables = file.tables();
    }

    // What a caller does with a manager that has loaded; it may end in a report.
    static void use(TOVREN_DEV_INFO_MANAGER& manager) {
        for (unsigned int index = 0; index < manager.get_record_count(); ++index)
            EXPECT_FALSE(DEVICE_ROW::described(*manager.get_record(index)).empty());
        const auto drop = [](TOVREN_DEVICE_INFO* copy) { delete copy; };
        drop(manager.get_db_by_family(DEV_FAMILY_ENUM(1)));
        drop(manager.get_db_by_device(DEV_DEVICE_ENUM(1)));
        drop(manager.get_db_by_part(DEV_PART_ENUM(1)));
        manager.search_family(DEV_FAMILY_ENUM(72), false);
        manager.search_device(DEV_DEVICE_GENERIC, false);
        manager.search_part(DEV_PART_GENERIC, false);
        manager.search_pcf_for_device(DEV_DEVICE_ENUM(1));
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

    // Loads these bytes and uses what they hold; counts which way each went.
    void expect_load_or_report(const BYTES& bytes) {
        MANAGER manager;
        expect_done_or_report([&] {
            manager = load(bytes);
            ++loaded;
        });
        if (manager)
            expect_done_or_report([&] { use(*manager); });
    }

    void expect_load_or_report(const BYTES& records, const BYTES& index_tables) {
        expect_load_or_report(file.bytes_around(join({records, index_tables})));
    }

    static void flip(BYTES& bytes, size_t bit) {
        bytes[bit / 8] = static_cast<unsigned char>(bytes[bit / 8] ^ (1U << bit % 8));
    }

    // A record with texts and one almost without.
    DEVICE_DATABASE file{{make_device_row().with("pcf", "QX"), plain_device_row().with("family", "QUARN-1")}};
    BYTES record_part;
    BYTES tables;
    unsigned int loaded = 0;
    unsigned int reported = 0;
};

TEST_F(DevInfoMutation, LoadsOrReportsEveryFlippedBitOfTheRecords) {
    for (size_t bit = 0; bit < record_part.size() * 8; ++bit) {
        flip(record_part, bit);
        expect_load_or_report(record_part, tables);
        flip(record_part, bit);
    }
    EXPECT_GT(loaded, 0U);
    EXPECT_GT(reported, 0U);
}

TEST_F(DevInfoMutation, LoadsOrReportsEveryByteAtItsEdges) {
    for (size_t position = 0; position < record_part.size(); ++position)
        for (const unsigned char value : BYTES{0x00, 0x7F, 0xFF})
            expect_load_or_report(with_byte(record_part, position, value), tables);
    EXPECT_GT(loaded, 0U);
    EXPECT_GT(reported, 0U);
}

TEST_F(DevInfoMutation, ReportsRecordsThatAreCutInFrontOfWholeTables) {
    for (size_t size = 0; size < record_part.size(); ++size)
        expect_load_or_report(first(record_part, size), tables);
    EXPECT_EQ(0U, loaded);
}

TEST_F(DevInfoMutation, ReportsEveryPayloadThatEndsInTheRecords) {
    for (size_t size = 1; size <= record_part.size(); ++size)
        expect_load_or_report(first(record_part, size), {});
    EXPECT_EQ(0U, loaded);
}

TEST_F(DevInfoMutation, ReportsEveryByteTakenOutOrDoubledButAnEmptyTextsTag) {
    // The second record's PCF name, 01 00, becomes 01 01 00: a text of one character. Behind the other empty texts
    // stand too few bytes.
    for (size_t position = 0; position < record_part.size(); ++position) {
        BYTES changed = record_part;
        changed.erase(changed.begin() + static_cast<std::ptrdiff_t>(position));
        expect_load_or_report(changed, tables);
        changed = record_part;
        changed.insert(changed.begin() + static_cast<std::ptrdiff_t>(position), record_part[position]);
        expect_load_or_report(changed, tables);
    }
    EXPECT_EQ(1U, loaded);
}

TEST_F(DevInfoMutation, ReportsTablesThatAreCut) {
    for (size_t size = 0; size < tables.size(); size += size < 20 || size + 20 > tables.size() ? 1 : 499)
        expect_load_or_report(record_part, first(tables, size));
    EXPECT_EQ(0U, loaded);
}

TEST_F(DevInfoMutation, ReportsEveryFlippedBitOfATablesTagAndCount) {
    const size_t starts[] = {0, 5 + 74 * 4, 5 + 74 * 4 + 5 + 1048 * 4};
    for (const size_t start : starts)
        for (size_t bit = start * 8; bit < (start + 5) * 8; ++bit) {
            flip(tables, bit);
            expect_load_or_report(record_part, tables);
            flip(tables, bit);
        }
    EXPECT_EQ(0U, loaded);
    EXPECT_EQ(120U, reported);
}

TEST_F(DevInfoMutation, LoadsWithAnyEntryAndReportsALookupThroughOneThatIsNoPosition) {
    // Entry 1 of each table is used.
    const size_t starts[] = {5 + 4, 5 + 74 * 4 + 5 + 4, 5 + 74 * 4 + 5 + 1048 * 4 + 5 + 4};
    for (const size_t start : starts)
        for (size_t bit = start * 8; bit < (start + 4) * 8; ++bit) {
            flip(tables, bit);
            expect_load_or_report(record_part, tables);
            flip(tables, bit);
        }
    EXPECT_EQ(96U, loaded);
    EXPECT_EQ(3U * 25U, reported); // bits 7 to 31 lead past position 78; the records from 2 to 78 are empty ones
}

TEST_F(DevInfoMutation, LoadsWithAnySampledEntry) {
    for (size_t entry = 0; entry < tables.size() / 4 - 4; entry += 211) {
        BYTES changed = tables;
        changed[entry * 4 + 9] = static_cast<unsigned char>(changed[entry * 4 + 9] ^ 0x55);
        expect_load_or_report(record_part, changed);
    }
    EXPECT_GT(loaded, 0U);
}

TEST_F(DevInfoMutation, ReportsEveryHeaderFieldAtItsEdges) {
    for (const unsigned char value : BYTES{0x00, 0x01, 0xFF}) {
        DEVICE_DATABASE changed = file;
        changed.magic = std::string(8, static_cast<char>(value));
        expect_load_or_report(changed.bytes());
        changed = file;
        changed.md5 = std::string(32, static_cast<char>(value));
        expect_load_or_report(changed.bytes());
    }
    for (const unsigned int value : {0U, 1U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        DEVICE_DATABASE changed = file;
        changed.payload_size = value;
        expect_load_or_report(changed.bytes());
        changed = file;
        changed.device_count = value;
        expect_load_or_report(changed.bytes());
    }
    for (const unsigned int value : {0U, 2U, 0xFFFFFFFFU}) {
        DEVICE_DATABASE changed = file;
        changed.version = value;
        expect_load_or_report(changed.bytes());
    }
    EXPECT_EQ(0U, loaded);
}

TEST_F(DevInfoMutation, LoadsWithEveryMemberCountAndCheckFieldButZeroMembers) {
    for (const unsigned int value : {1U, 87U, 0xFFFFFFFFU}) {
        DEVICE_DATABASE changed = file;
        changed.member_count = value;
        expect_load_or_report(changed.bytes());
    }
    for (const unsigned char value : BYTES{0x00, 0x01, 0xFF}) {
        DEVICE_DATABASE changed = file;
        changed.check = {value, value};
        expect_load_or_report(changed.bytes());
    }
    EXPECT_EQ(6U, loaded);
    file.member_count = 0;
    expect_load_or_report(file.bytes());
    EXPECT_EQ(6U, loaded);
}

TEST_F(DevInfoMutation, ReportsEveryFileThatIsCut) {
    const BYTES bytes = file.bytes();
    for (size_t size = 0; size < bytes.size(); ++size)
        expect_load_or_report(first(bytes, size));
    EXPECT_EQ(0U, loaded);
}

TEST_F(DevInfoMutation, LoadsOrReportsEveryFlippedBitOfTheFile) {
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
