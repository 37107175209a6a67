// The device information manager on a loaded database: what a record holds, lookups, searches, copies, constant tables.
#include "device_fixtures.h"
#include "tovren_dev_info_manager.h"
#include "tovren_standalone_host.h"

#include <gtest/gtest.h>

namespace {

constexpr char FAMILY_SEARCH[] =
    "m_device_database != NULL && family < DEV_FAMILY_MAX && (allow_invalid || family != DEV_FAMILY_INVALID)";
constexpr char DEVICE_SEARCH[] =
    "m_device_database != NULL && device < DEV_DEVICE_MAX && (allow_invalid || device != DEV_DEVICE_INVALID)";
constexpr char PART_SEARCH[] =
    "m_device_database != NULL && part < DEV_PART_MAX && (allow_invalid || part != DEV_PART_INVALID)";

constexpr auto BAD_FAMILY = DEV_FAMILY_ENUM(74);
constexpr auto BAD_DEVICE = DEV_DEVICE_ENUM(1048);

using RECORD = std::unique_ptr<TOVREN_DEVICE_INFO>;

// QUARN-1 at 0, GENERIC at 1, QUARN-1 again at 2, the generic device at 3 and 5, the generic part at 4 and 6.
class DevInfo : public DEVICE_TEST {
protected:
    DEVICE_DATABASE file{make_device_rows()};

    DevInfo() {
        file.rows[2] = plain_device_row().with("family", "QUARN-1");
        file.rows[3] = file.rows[5] = plain_device_row().with("device", "GENERIC");
        file.rows[4] = file.rows[6] = plain_device_row().with("part", "GENERIC");
    }

    // A manager whose record `position` has this value of a member, whatever a CSV allows.
    MANAGER load_with(size_t position, const std::string& member, unsigned int value) {
        file.rows[position] = plain_device_row().with(member, std::to_string(value));
        return load(file);
    }
};

// ---- what is loaded ----

TEST_F(DevInfo, HoldsEveryMemberOfEveryRecord) {
    const MANAGER manager = load(file);
    ASSERT_EQ(79U, manager->get_record_count());
    for (unsigned int position = 0; position < 79; ++position)
        EXPECT_EQ(file.rows[position].described(), DEVICE_ROW::described(*manager->get_record(position)));
}

TEST_F(DevInfo, HasNoRecordPastTheCount) {
    const MANAGER manager = load(file);
    EXPECT_NE(nullptr, manager->get_record(78));
    EXPECT_EQ(nullptr, manager->get_record(79));
    EXPECT_EQ(nullptr, manager->get_record(INVALID_DWORD));
    EXPECT_EQ(nullptr, make_generator()->get_record(0));
}

TEST_F(DevInfo, HoldsThePayloadsFigures) {
    const MANAGER manager = load(file);
    EXPECT_EQ(1U, manager->m_version);
    EXPECT_EQ(79U, manager->m_device_count);
    EXPECT_EQ(86U, manager->m_type_count);
    EXPECT_EQ(file.record_part().size(), manager->m_csv_memory_size);
}

TEST_F(DevInfo, HoldsTheThreeTables) {
    for (unsigned int value = 0; value < 74; ++value)
        file.family_table[value] = 1000 + value;
    for (unsigned int value = 0; value < 1048; ++value)
        file.device_table[value] = 2000 + value;
    for (unsigned int value = 0; value < DEV_PART_MAX; ++value)
        file.part_table[value] = 4000 + value;
    const MANAGER manager = load(file);
    EXPECT_EQ(file.family_table, std::vector(&manager->m_family_table[0], &manager->m_family_table[74]));
    EXPECT_EQ(file.device_table, std::vector(&manager->m_device_table[0], &manager->m_device_table[1048]));
    EXPECT_EQ(file.part_table, std::vector(&manager->m_part_table[0], &manager->m_part_table[DEV_PART_MAX]));
}

TEST_F(DevInfo, KeepsItsDebugMode) {
    EXPECT_EQ(7U, load(file, 7)->m_debug);
    EXPECT_EQ(3U, TOVREN_DEV_INFO_MANAGER(true, 3).m_debug);
}

TEST_F(DevInfo, HasNothingWhenLoadingIsSkipped) {
    const MANAGER manager = make_generator();
    EXPECT_EQ(0U, manager->m_version);
    EXPECT_EQ(0U, manager->m_device_count);
    EXPECT_EQ(0U, manager->m_type_count);
    EXPECT_EQ(0U, manager->m_csv_memory_size);
    EXPECT_EQ(nullptr, manager->m_device_database);
    EXPECT_TRUE(manager->m_pcf_map.empty());
}

TEST_F(DevInfo, HasTablesOfNothingWhenLoadingIsSkipped) {
    const MANAGER manager = make_generator();
    for (unsigned int value = 0; value < 74; ++value)
        EXPECT_EQ(INVALID_DWORD, manager->m_family_table[value]);
    for (unsigned int value = 0; value < 1048; ++value)
        EXPECT_EQ(INVALID_DWORD, manager->m_device_table[value]);
    for (unsigned int value = 0; value < DEV_PART_MAX; ++value)
        EXPECT_EQ(INVALID_DWORD, manager->m_part_table[value]);
}

TEST_F(DevInfo, NeedsItsFileWhenLoadingIsNotSkipped) {
    EXPECT_REPORT(TOVREN_DEV_INFO_MANAGER(false, 0),
                  "FIO_FILE_SYSTEM::exists(device_file.fullpath().c_str()) && "
                  "FIO_FILE_SYSTEM::status(device_file.fullpath().c_str(), &stat_info)",
                  IN_DB_STREAM);
}

TEST_F(DevInfo, ReportsACountOfRecordsForWhichTheFileIsTooSmallBeforeItAllocatesThem) {
    for (const unsigned int count : {10000U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        file.device_count = count;
        EXPECT_REPORT(
            load(file),
            "type == TOVREN_MANAGER_DEVID_ENUM || type == TOVREN_MANAGER_DWORD || type == TOVREN_MANAGER_ENUM",
            IN_DB_STREAM)
            << count;
    }
}

TEST_F(DevInfo, ReadsNumbersBehindEachOfTheirThreeTags) {
    const size_t family = 12;                                            // the first member of the first record
    const size_t microsec = 12 + 5 + 2 + 5 + 5 + 10 * 2 + 2 + 3 + 8 * 2; // 24th, behind texts "" and "T15"
    const BYTES payload = file.payload();
    ASSERT_EQ(7, payload[family]);
    ASSERT_EQ(6, payload[microsec]);
    for (const unsigned char tag : BYTES{0, 6, 7}) {
        const MANAGER manager = load(file.bytes_around(with_byte(with_byte(payload, family, tag), microsec, tag)));
        EXPECT_EQ(file.rows[0].described(), DEVICE_ROW::described(*manager->get_record(0)));
    }
}

TEST_F(DevInfo, ReadsTextsBehindEitherTag) {
    const size_t pcf = 12 + 5;
    const BYTES payload = file.payload();
    ASSERT_EQ(1, payload[pcf]);
    const MANAGER manager = load(file.bytes_around(with_byte(payload, pcf, 2)));
    EXPECT_EQ(file.rows[0].described(), DEVICE_ROW::described(*manager->get_record(0)));
}

TEST_F(DevInfo, ReadsTextsOfUpTo255Characters) {
    const std::string longest(255, 'x');
    file.rows[3] = plain_device_row().with("pcf", longest).with("cfg_dev", longest);
    const MANAGER manager = load(file);
    EXPECT_EQ(longest, manager->get_record(3)->pcf);
    EXPECT_EQ(longest, manager->get_record(3)->cfg_dev);
}

// ---- lookups ----

TEST_F(DevInfo, GivesTheRecordThatTheTableNames) {
    file.family_table[5] = 2;
    file.device_table[1047] = 78;
    file.part_table[DEV_PART_MAX - 1] = 0;
    const MANAGER manager = load(file);
    EXPECT_EQ(file.rows[2].described(), DEVICE_ROW::described(*RECORD(manager->get_db_by_family(DEV_FAMILY_ENUM(5)))));
    EXPECT_EQ(2U, manager->m_index);
    EXPECT_EQ(file.rows[78].described(), DEVICE_ROW::described(*RECORD(manager->get_db_by_device(DEV_DEVICE_GENERIC))));
    EXPECT_EQ(78U, manager->m_index);
    EXPECT_EQ(file.rows[0].described(), DEVICE_ROW::described(*RECORD(manager->get_db_by_part(DEV_PART_GENERIC))));
    EXPECT_EQ(0U, manager->m_index);
}

TEST_F(DevInfo, GivesNothingWhereTheTableNamesNothing) {
    // Although each of these values has a record of its own: lookups never search.
    const MANAGER manager = load(file);
    manager->m_index = 4;
    EXPECT_EQ(nullptr, manager->get_db_by_family(DEV_FAMILY_ENUM(1)));
    EXPECT_EQ(INVALID_DWORD, manager->m_index);
    manager->m_index = 4;
    EXPECT_EQ(nullptr, manager->get_db_by_device(DEV_DEVICE_GENERIC));
    EXPECT_EQ(INVALID_DWORD, manager->m_index);
    manager->m_index = 4;
    EXPECT_EQ(nullptr, manager->get_db_by_part(DEV_PART_GENERIC));
    EXPECT_EQ(INVALID_DWORD, manager->m_index);
}

TEST_F(DevInfo, GivesNothingForTheInvalidValuesUnlessATableServesThem) {
    MANAGER manager = load(file);
    EXPECT_EQ(nullptr, manager->get_db_by_family(DEV_FAMILY_INVALID));
    EXPECT_EQ(nullptr, manager->get_db_by_device(DEV_DEVICE_INVALID));
    EXPECT_EQ(nullptr, manager->get_db_by_part(DEV_PART_INVALID));
    file.family_table[0] = 3;
    file.device_table[0] = 4;
    file.part_table[DEV_PART_INVALID] = 5;
    manager = load(file);
    EXPECT_EQ(file.rows[3].described(), DEVICE_ROW::described(*RECORD(manager->get_db_by_family(DEV_FAMILY_INVALID))));
    EXPECT_EQ(file.rows[4].described(), DEVICE_ROW::described(*RECORD(manager->get_db_by_device(DEV_DEVICE_INVALID))));
    EXPECT_EQ(file.rows[5].described(), DEVICE_ROW::described(*RECORD(manager->get_db_by_part(DEV_PART_INVALID))));
}

TEST_F(DevInfo, GivesNothingWhenLoadingIsSkipped) {
    const MANAGER manager = make_generator();
    EXPECT_EQ(nullptr, manager->get_db_by_family(DEV_FAMILY_GENERIC));
    EXPECT_EQ(nullptr, manager->get_db_by_device(DEV_DEVICE_GENERIC));
    EXPECT_EQ(nullptr, manager->get_db_by_part(DEV_PART_GENERIC));
}

TEST_F(DevInfo, ReportsALookupOutOfBounds) {
    const MANAGER manager = load(file);
    for (const unsigned int past : {0U, 1U, 1000000U}) {
        EXPECT_REPORT(manager->get_db_by_family(DEV_FAMILY_ENUM(74 + past)), "family < DEV_FAMILY_MAX",
                      IN_DEVICE_MANAGER);
        EXPECT_REPORT(manager->get_db_by_device(DEV_DEVICE_ENUM(1048 + past)), "device < DEV_DEVICE_MAX",
                      IN_DEVICE_MANAGER);
        EXPECT_REPORT(manager->get_db_by_part(DEV_PART_ENUM(DEV_PART_MAX + past)), "part < DEV_PART_MAX",
                      IN_DEVICE_MANAGER);
    }
}

TEST_F(DevInfo, ComparesWithTheBoundsUnsigned) {
    const MANAGER manager = load(file);
    EXPECT_REPORT(manager->get_db_by_family(DEV_FAMILY_ENUM(0xFFFFFFFF)), "family < DEV_FAMILY_MAX", IN_DEVICE_MANAGER);
    EXPECT_REPORT(manager->get_db_by_device(DEV_DEVICE_ENUM(0x80000000)), "device < DEV_DEVICE_MAX", IN_DEVICE_MANAGER);
    EXPECT_REPORT(manager->get_db_by_part(DEV_PART_ENUM(0xFFFFFFFF)), "part < DEV_PART_MAX", IN_DEVICE_MANAGER);
}

TEST_F(DevInfo, ReportsATableEntryThatIsNoPosition) {
    file.family_table[1] = 79;
    file.device_table[1] = 0xFFFFFFFE;
    file.part_table[1] = 0x80000000;
    const MANAGER manager = load(file);
    EXPECT_REPORT(manager->get_db_by_family(DEV_FAMILY_ENUM(1)), "m_index < TOTAL_DATABASE_DEVICE", IN_DEVICE_EXPORT);
    EXPECT_REPORT(manager->get_db_by_device(DEV_DEVICE_ENUM(1)), "m_index < TOTAL_DATABASE_DEVICE", IN_DEVICE_EXPORT);
    EXPECT_REPORT(manager->get_db_by_part(DEV_PART_ENUM(1)), "m_index < TOTAL_DATABASE_DEVICE", IN_DEVICE_EXPORT);
}

TEST_F(DevInfo, TellsThePositionsOfItsTables) {
    file.family_table[73] = 2;
    file.device_table[9] = 3;
    file.part_table[0] = 4;
    const MANAGER manager = load(file);
    EXPECT_EQ(2U, manager->get_position_of(DEV_FAMILY_GENERIC));
    EXPECT_EQ(3U, manager->get_position_of(DEV_DEVICE_ENUM(9)));
    EXPECT_EQ(4U, manager->get_position_of(DEV_PART_ENUM(0)));
    EXPECT_EQ(INVALID_DWORD, manager->get_position_of(DEV_FAMILY_ENUM(1)));
    EXPECT_EQ(INVALID_DWORD, manager->get_position_of(BAD_FAMILY));
    EXPECT_EQ(INVALID_DWORD, manager->get_position_of(BAD_DEVICE));
    EXPECT_EQ(INVALID_DWORD, manager->get_position_of(DEV_PART_MAX));
}

// ---- copies ----

TEST_F(DevInfo, CopiesTheRecordAtItsIndex) {
    const MANAGER manager = load(file);
    manager->m_index = 2;
    EXPECT_EQ(file.rows[2].described(), DEVICE_ROW::described(*RECORD(manager->copy_database())));
}

TEST_F(DevInfo, CopiesNoRecordPastThe79) {
    const MANAGER manager = load(file);
    for (const unsigned int index : {79U, 80U, 0xFFFFFFFFU}) {
        manager->m_index = index;
        EXPECT_REPORT(manager->copy_database(), "m_index < TOTAL_DATABASE_DEVICE", IN_DEVICE_EXPORT);
    }
}

TEST_F(DevInfo, CopiesNothingWithoutADatabase) {
    const MANAGER manager = make_generator();
    manager->m_index = 0;
    EXPECT_REPORT(manager->copy_database(), "m_device_database != NULL", IN_DEVICE_EXPORT);
}

TEST_F(DevInfo, CopiesAreIndependent) {
    file.family_table[1] = 0;
    const MANAGER manager = load(file);
    RECORD changed(manager->get_db_by_family(DEV_FAMILY_ENUM(1)));
    const RECORD kept(manager->get_db_by_family(DEV_FAMILY_ENUM(1)));
    changed->family = DEV_FAMILY_GENERIC;
    changed->support_asc_ini = "something else that is long enough for storage of its own";
    changed->dummy_bool = !changed->dummy_bool;
    changed.reset();
    EXPECT_EQ(file.rows[0].described(), DEVICE_ROW::described(*kept));
    EXPECT_EQ(file.rows[0].described(), DEVICE_ROW::described(*manager->get_record(0)));
    EXPECT_EQ(file.rows[0].described(), DEVICE_ROW::described(*RECORD(manager->get_db_by_family(DEV_FAMILY_ENUM(1)))));
}

TEST_F(DevInfo, CopiesOutliveTheManager) {
    file.rows[0] = file.rows[0].with("cfg_dev", std::string(200, 'x'));
    file.part_table[1] = 0;
    MANAGER manager = load(file);
    const RECORD copy(manager->get_db_by_part(DEV_PART_ENUM(1)));
    manager.reset();
    EXPECT_EQ(file.rows[0].described(), DEVICE_ROW::described(*copy));
}

// ---- searches ----

TEST_F(DevInfo, FindsTheFirstRecordOfAValue) {
    const MANAGER manager = load(file);
    EXPECT_TRUE(manager->search_family(DEV_FAMILY_ENUM(1), false));
    EXPECT_EQ(0U, manager->m_index);
    EXPECT_TRUE(manager->search_family(DEV_FAMILY_GENERIC, true));
    EXPECT_EQ(1U, manager->m_index);
    EXPECT_TRUE(manager->search_device(DEV_DEVICE_GENERIC, false));
    EXPECT_EQ(3U, manager->m_index);
    EXPECT_TRUE(manager->search_part(DEV_PART_GENERIC, false));
    EXPECT_EQ(4U, manager->m_index);
}

TEST_F(DevInfo, FindsTheLastRecord) {
    const MANAGER manager = load_with(78, "family", 44);
    EXPECT_TRUE(manager->search_family(DEV_FAMILY_ENUM(44), false));
    EXPECT_EQ(78U, manager->m_index);
}

TEST_F(DevInfo, FindsNothingForAValueWithoutARecord) {
    const MANAGER manager = load(file);
    manager->m_index = 5;
    EXPECT_FALSE(manager->search_family(DEV_FAMILY_ENUM(2), false));
    EXPECT_EQ(INVALID_DWORD, manager->m_index);
    manager->m_index = 5;
    EXPECT_FALSE(manager->search_device(DEV_DEVICE_ENUM(2), true));
    EXPECT_EQ(INVALID_DWORD, manager->m_index);
    manager->m_index = 5;
    EXPECT_FALSE(manager->search_part(DEV_PART_ENUM(2), false));
    EXPECT_EQ(INVALID_DWORD, manager->m_index);
}

TEST_F(DevInfo, SearchesTheInvalidValuesLikeAnyOtherWhereAllowed) {
    const MANAGER manager = load(file);
    EXPECT_TRUE(manager->search_family(DEV_FAMILY_INVALID, true));
    EXPECT_EQ(3U, manager->m_index); // the first record without a family
    EXPECT_TRUE(manager->search_device(DEV_DEVICE_INVALID, true));
    EXPECT_EQ(0U, manager->m_index);
    EXPECT_TRUE(manager->search_part(DEV_PART_INVALID, true));
    EXPECT_EQ(0U, manager->m_index);
}

TEST_F(DevInfo, SearchesNoInvalidValueWhereNotAllowed) {
    const MANAGER manager = load(file);
    EXPECT_REPORT(manager->search_family(DEV_FAMILY_INVALID, false), FAMILY_SEARCH, IN_DEVICE_MANAGER);
    EXPECT_REPORT(manager->search_device(DEV_DEVICE_INVALID, false), DEVICE_SEARCH, IN_DEVICE_MANAGER);
    EXPECT_REPORT(manager->search_part(DEV_PART_INVALID, false), PART_SEARCH, IN_DEVICE_MANAGER);
}

TEST_F(DevInfo, SearchesNoValueOutOfBounds) {
    const MANAGER manager = load(file);
    for (const bool allow_invalid : {false, true}) {
        for (const unsigned int value : {74U, 1048U, 0x80000000U, 0xFFFFFFFFU})
            EXPECT_REPORT(manager->search_family(DEV_FAMILY_ENUM(value), allow_invalid), FAMILY_SEARCH,
                          IN_DEVICE_MANAGER);
        for (const unsigned int value : {1048U, 0x80000000U, 0xFFFFFFFFU})
            EXPECT_REPORT(manager->search_device(DEV_DEVICE_ENUM(value), allow_invalid), DEVICE_SEARCH,
                          IN_DEVICE_MANAGER);
        for (const unsigned int value : {unsigned{DEV_PART_MAX}, 0x80000000U, 0xFFFFFFFFU})
            EXPECT_REPORT(manager->search_part(DEV_PART_ENUM(value), allow_invalid), PART_SEARCH, IN_DEVICE_MANAGER);
    }
}

TEST_F(DevInfo, SearchesNothingWithoutADatabase) {
    const MANAGER manager = make_generator();
    EXPECT_REPORT(manager->search_family(DEV_FAMILY_GENERIC, true), FAMILY_SEARCH, IN_DEVICE_MANAGER);
    EXPECT_REPORT(manager->search_device(DEV_DEVICE_GENERIC, true), DEVICE_SEARCH, IN_DEVICE_MANAGER);
    EXPECT_REPORT(manager->search_part(DEV_PART_GENERIC, true), PART_SEARCH, IN_DEVICE_MANAGER);
}

TEST_F(DevInfo, ForgetsItsIndexBeforeItLooksAtTheValue) {
    const MANAGER manager = load(file);
    manager->m_index = 5;
    EXPECT_REPORT(manager->search_family(BAD_FAMILY, true), FAMILY_SEARCH, IN_DEVICE_MANAGER);
    EXPECT_EQ(INVALID_DWORD, manager->m_index);
}

TEST_F(DevInfo, ReportsARecordOutOfBoundsWhenASearchComesToIt) {
    MANAGER manager = load_with(7, "family", 74);
    EXPECT_REPORT(manager->search_family(DEV_FAMILY_ENUM(2), false), "id < DEV_FAMILY_MAX", IN_DEVICE_MANAGER);
    manager = load_with(7, "device", 1048);
    EXPECT_REPORT(manager->search_device(DEV_DEVICE_ENUM(2), false), "id < DEV_DEVICE_MAX", IN_DEVICE_MANAGER);
    manager = load_with(7, "part", DEV_PART_MAX);
    EXPECT_REPORT(manager->search_part(DEV_PART_ENUM(2), false), "id < DEV_PART_MAX", IN_DEVICE_MANAGER);
    manager = load_with(7, "part", 0xFFFFFFFF);
    EXPECT_REPORT(manager->search_part(DEV_PART_ENUM(2), false), "id < DEV_PART_MAX", IN_DEVICE_MANAGER);
}

TEST_F(DevInfo, MindsNoRecordOutOfBoundsBehindTheOneItFinds) {
    const MANAGER manager = load_with(7, "family", 74);
    EXPECT_TRUE(manager->search_family(DEV_FAMILY_GENERIC, false));
    EXPECT_EQ(1U, manager->m_index);
}

TEST_F(DevInfo, FindsARecordByWhatWasReadLast) {
    const MANAGER manager = load(file);
    BYTES record = plain_device_row().with("family", "44").bytes();
    unsigned int index = 0;
    manager->get_database(record.data(), index, 7);
    EXPECT_TRUE(manager->search_family(DEV_FAMILY_ENUM(44), false));
    EXPECT_EQ(7U, manager->m_index);
    record = plain_device_row().with("family", "45").bytes();
    index = 0;
    manager->get_database(record.data(), index, 7);
    EXPECT_FALSE(manager->search_family(DEV_FAMILY_ENUM(44), false));
    EXPECT_TRUE(manager->search_family(DEV_FAMILY_ENUM(45), false));
}

TEST_F(DevInfo, SearchesExactly79Records) {
    file.rows.push_back(plain_device_row().with("family", "44"));
    const MANAGER manager = load(file);
    EXPECT_EQ(80U, manager->get_record_count());
    EXPECT_EQ(DEV_FAMILY_ENUM(44), manager->get_record(79)->family);
    EXPECT_FALSE(manager->search_family(DEV_FAMILY_ENUM(44), false));
}

TEST_F(DevInfo, SearchesEmptyRecordsBehindTheLastOne) {
    file.rows.resize(3); // all with a family
    const MANAGER manager = load(file);
    EXPECT_FALSE(manager->search_family(DEV_FAMILY_ENUM(2), false));
    EXPECT_TRUE(manager->search_family(DEV_FAMILY_INVALID, true));
    EXPECT_EQ(3U, manager->m_index);
    EXPECT_EQ(DEVICE_ROW().described(), DEVICE_ROW::described(*RECORD(manager->copy_database())));
}

// ---- searches through the part list ----

TEST_F(DevInfo, HasNoPartListWhenLoaded) {
    put_part_list("p,QA02A,c,d,e,f,SPARE_10\n");
    const MANAGER manager = load(file);
    EXPECT_TRUE(manager->m_pcf_map.empty());
    for (unsigned int device = 0; device < 1048; ++device)
        EXPECT_FALSE(manager->search_pcf_for_device(DEV_DEVICE_ENUM(device)));
    for (unsigned int part = 0; part < DEV_PART_MAX; ++part)
        EXPECT_FALSE(manager->search_pcf_for_part(DEV_PART_ENUM(part)));
    EXPECT_EQ(INVALID_DWORD, manager->m_index);
}

TEST_F(DevInfo, SearchesThePartListForNoValueOutOfBounds) {
    const MANAGER manager = load(file);
    for (const unsigned int value : {1048U, 0x80000000U, 0xFFFFFFFFU})
        EXPECT_REPORT(manager->search_pcf_for_device(DEV_DEVICE_ENUM(value)),
                      "m_device_database != NULL && device < DEV_DEVICE_MAX", IN_DEVICE_MANAGER);
    for (const unsigned int value : {unsigned{DEV_PART_MAX}, 0x80000000U, 0xFFFFFFFFU})
        EXPECT_REPORT(manager->search_pcf_for_part(DEV_PART_ENUM(value)),
                      "m_device_database != NULL && part < DEV_PART_MAX", IN_DEVICE_MANAGER);
}

TEST_F(DevInfo, SearchesThePartListForNothingWithoutADatabase) {
    const MANAGER manager = make_generator();
    EXPECT_REPORT(manager->search_pcf_for_device(DEV_DEVICE_GENERIC),
                  "m_device_database != NULL && device < DEV_DEVICE_MAX", IN_DEVICE_MANAGER);
    EXPECT_REPORT(manager->search_pcf_for_part(DEV_PART_INVALID), "m_device_database != NULL && part < DEV_PART_MAX",
                  IN_DEVICE_MANAGER);
}

} // namespace
