// Series of flashes and what is compared over them: names, records, parameter tables, units of answers.
#include "sfdp.h"
#include "tool_flash_series.h"
#include "tool_flash_units.h"
#include "tool_sfdp_check.h"
#include "tool_sfdp_record.h"
#include "tovren_flash_manager.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

constexpr unsigned long long MBIT = 1 << 20;

TOVREN_SFL_FLASH_INFO flash(const char* name, BYTE maker, BYTE type, BYTE capacity, DWORD mbit) {
    TOVREN_SFL_FLASH_INFO record;
    record.manufacturer_name = "NOVA";
    record.device_name = name;
    record.mfc_id = maker;
    record.mfc_id_index = 0;
    record.memory_type = type;
    record.memory_type_index = 1;
    record.memory_id = capacity;
    record.memory_id_index = 2;
    record.device_bit_size = mbit << 20;
    return record;
}

// ---- names ----

TEST(FlashSeries, EndsBeforeTheSecondDigits) {
    EXPECT_EQ(tool_flash_series("MX25L25645G", 256 * MBIT), "MX25L");
    EXPECT_EQ(tool_flash_series("W25Q64JV", 64 * MBIT), "W25Q");
    EXPECT_EQ(tool_flash_series("N25Q064A", 64 * MBIT), "N25Q");
    EXPECT_EQ(tool_flash_series("IS25WP256", 256 * MBIT), "IS25WP");
    EXPECT_EQ(tool_flash_series("MT25QU256A", 256 * MBIT), "MT25QU");
    EXPECT_EQ(tool_flash_series("S25FL128S", 128 * MBIT), "S25FL");
    EXPECT_EQ(tool_flash_series("GD25WB256E", 256 * MBIT), "GD25WB");
    EXPECT_EQ(tool_flash_series("MX66UW2G345G", 2048 * MBIT), "MX66UW");
    EXPECT_EQ(tool_flash_series("M25P10-A", MBIT), "M25P");
}

TEST(FlashSeries, IsTheLettersBeforeTheOnlyDigits) {
    EXPECT_EQ(tool_flash_series("QXS128", 128 * MBIT), "QXS");
    EXPECT_EQ(tool_flash_series("QXS1G", 1024 * MBIT), "QXS");
}

TEST(FlashSeries, IsTheLettersBeforeDigitsThatAreTheDensity) {
    EXPECT_EQ(tool_flash_series("QXN128A13", 128 * MBIT), "QXN");
    EXPECT_EQ(tool_flash_series("QXN1G2", 1024 * MBIT), "QXN");
    EXPECT_EQ(tool_flash_series("QXN128A13", 64 * MBIT), "QXN128A");
}

TEST(FlashSeries, DoesNotTakeAFamilyNumberForADensity) {
    EXPECT_EQ(tool_flash_series("W25Q20CL", 2 * MBIT), "W25Q");
}

TEST(FlashSeries, IgnoresLetterCase) {
    EXPECT_EQ(tool_flash_series("w25q64jv", 64 * MBIT), "W25Q");
}

TEST(FlashSeries, IsUnknownWithoutLettersBeforeDigits) {
    EXPECT_EQ(tool_flash_series("", MBIT), "");
    EXPECT_EQ(tool_flash_series("25Q64", 64 * MBIT), "");
    EXPECT_EQ(tool_flash_series("NOVA", MBIT), "");
}

// ---- records ----

class FlashSiblings : public testing::Test {
protected:
    std::vector<std::string> names(const TOOL_FLASH_WANTED& wanted) {
        TOOL_FLASH_RECORDS records;
        for (const TOVREN_SFL_FLASH_INFO& record : m_flashes)
            records.push_back(&record);
        m_found = tool_flash_siblings(records, wanted);
        std::vector<std::string> found;
        for (const TOVREN_SFL_FLASH_INFO* record : m_found.records)
            found.push_back(record->device_name);
        return found;
    }

    std::vector<TOVREN_SFL_FLASH_INFO> m_flashes = {
        flash("QX25N64", 0xC2, 0x20, 0x17, 64),   flash("QX25N512", 0xC2, 0x20, 0x1A, 512),
        flash("QX25N128", 0xC2, 0x25, 0x38, 128), flash("QX25M128", 0xC2, 0x20, 0x18, 128),
        flash("QX25N32", 0xEF, 0x20, 0x16, 32),
    };
    TOOL_FLASH_SIBLINGS m_found;
    const std::vector<unsigned char> m_id = {0xC2, 0x20, 0x19};
};

using NAMES = std::vector<std::string>;

TEST_F(FlashSiblings, AreThoseOfTheSameMakerByteAndSeries) {
    EXPECT_EQ(names({m_id, "QX25N256", {}, 256 * MBIT}), (NAMES{"QX25N512", "QX25N64", "QX25N128"}));
}

TEST_F(FlashSiblings, BeginWithTheSameName) {
    EXPECT_EQ(names({m_id, "qx25n128", {}, 256 * MBIT}).front(), "QX25N128");
}

TEST_F(FlashSiblings, BeginWithTheSameAnswer) {
    const std::vector<unsigned char> id = {0xC2, 0x25, 0x38};
    EXPECT_EQ(names({id, "QX25N64", {}, 64 * MBIT}), (NAMES{"QX25N64", "QX25N128", "QX25N512"}));
    EXPECT_EQ(names({id, "QX25N99", {}, 64 * MBIT}), (NAMES{"QX25N128", "QX25N64", "QX25N512"}));
}

TEST_F(FlashSiblings, PreferTheLargerOfTwoAtOneStep) {
    m_flashes.push_back(flash("QX25N128B", 0xC2, 0x20, 0x18, 128));
    EXPECT_EQ(names({m_id, "QX25N256", {}, 256 * MBIT}), (NAMES{"QX25N512", "QX25N128B", "QX25N64", "QX25N128"}));
}

TEST_F(FlashSiblings, AreOfTheMakerThatIsNamed) {
    m_flashes[0].manufacturer_name = "OTHER";
    EXPECT_EQ(names({m_id, "QX25N256", "nova", 256 * MBIT}), (NAMES{"QX25N512", "QX25N128"}));
    EXPECT_TRUE(names({m_id, "QX25N256", "BOLT", 256 * MBIT}).empty());
    EXPECT_EQ(m_found.absence, "no record of the series QX25N has the manufacturer byte C2 and the maker \"BOLT\"");
}

TEST_F(FlashSiblings, AreToldByRecordsThatAnswerAlike) {
    const std::vector<unsigned char> id = {0xC2, 0x20, 0x18, 0x00};
    EXPECT_EQ(names({id, {}, {}, 128 * MBIT}), (NAMES{"QX25M128"}));
    EXPECT_EQ(m_found.pointed_to_by, "records with the answer C22018");
}

TEST_F(FlashSiblings, AreToldByTheTypeByteWhereItsRecordsAgree) {
    const std::vector<unsigned char> id = {0xC2, 0x25, 0x39};
    EXPECT_EQ(names({id, {}, {}, 256 * MBIT}).front(), "QX25N128");
    EXPECT_EQ(m_found.pointed_to_by, "records with the manufacturer and type byte C225");
}

TEST_F(FlashSiblings, AreUnknownWhereTheRecordsOfTheTypeByteDisagree) {
    EXPECT_TRUE(names({m_id, {}, {}, 256 * MBIT}).empty());
    EXPECT_EQ(m_found.absence, "the records with the manufacturer and type byte C220 are of several series (QX25N, "
                               "QX25M); --member device_name=NAME tells which");
}

TEST_F(FlashSiblings, LeaveOutRecordsThatAreRecognisedInOtherWays) {
    m_flashes[1].silicon_id = true;
    m_flashes[2].mfc_id_index = 2;
    EXPECT_EQ(names({m_id, "QX25N256", {}, 256 * MBIT}), (NAMES{"QX25N64"}));
}

// ---- a table beside a record ----

SFDP_TABLE table_of_64_mbit() {
    SFDP_TABLE table;
    table.density_bits = 64 * MBIT;
    table.erase_types = {{1, 4096, 0x20, 64, 896}, {3, 65536, 0xD8, 160, 2240}};
    table.page_program_max_us = 4224;
    table.chip_erase_max_ms = 280000;
    table.chip_erase_max_ms_if_program_factor = 120000;
    table.flag_status_register = false;
    return table;
}

TOVREN_SFL_FLASH_INFO record_of_64_mbit() {
    TOVREN_SFL_FLASH_INFO record = flash("QX25N64", 0xEF, 0x40, 0x17, 64);
    record.device_sector_byte = 65536;
    record.bulk_erase_time = 280;
    record.sec_erase_time = 3;
    record.program_utime = 4224;
    return record;
}

std::vector<std::string> texts(const TOVREN_SFL_FLASH_INFO& record, const SFDP_TABLE& table) {
    std::vector<std::string> lines;
    for (const SFDP_DIFFERENCE& difference : sfdp_differences(record, table))
        lines.push_back(difference.member + ": " + difference.record_value + " / " + difference.table_value);
    return lines;
}

TEST(SfdpDifferences, AreNoneWhereTheRecordHoldsTheRoundedFigures) {
    EXPECT_EQ(texts(record_of_64_mbit(), table_of_64_mbit()), NAMES());
}

TEST(SfdpDifferences, NameEachFigureWithItsUnit) {
    TOVREN_SFL_FLASH_INFO record = record_of_64_mbit();
    record.flag_status = true;
    record.device_bit_size = 256 * MBIT;
    record.byte4_addressing = true;
    record.bulk_erase_time = 100;
    record.sec_erase_time = 2;
    record.program_utime = 3000;
    EXPECT_EQ(texts(record, table_of_64_mbit()),
              (NAMES{"flag_status: yes / no", "device_bit_size: 256 Mbit / 64 Mbit", "byte4_addressing: yes / no",
                     "bulk_erase_time: 100 s / 280 s", "sec_erase_time: 2 s / 2.24 s",
                     "program_utime: 3 ms / 4.224 ms"}));
}

TEST(SfdpDifferences, CompareTheTimeOfTheRecordsOwnSector) {
    TOVREN_SFL_FLASH_INFO record = record_of_64_mbit();
    record.device_sector_byte = 4096;
    EXPECT_EQ(texts(record, table_of_64_mbit()), (NAMES{"sec_erase_time: 3 s / 896 ms"}));
}

TEST(SfdpDifferences, ListTheEraseBlocksWhereNoneHasTheSectorsSize) {
    TOVREN_SFL_FLASH_INFO record = record_of_64_mbit();
    record.device_sector_byte = 262144;
    EXPECT_EQ(texts(record, table_of_64_mbit()), (NAMES{"device_sector_byte: 256 KiB / 4 KiB, 64 KiB"}));
}

TEST(SfdpDifferences, LeaveOutWhatTheTableDoesNotTell) {
    SFDP_TABLE table;
    table.density_bits = 64 * MBIT;
    table.erase_types = {{1, 65536, 0xD8, {}, {}}};
    EXPECT_EQ(texts(record_of_64_mbit(), table), NAMES());
}

TEST(SfdpDifferences, NameFourByteInstructionsThatTheRecordDoesWithout) {
    SFDP_TABLE table = table_of_64_mbit();
    table.four_byte_table = SFDP_FOUR_BYTE_TABLE{{{"read_1_1_1", 0x13}, {"program_1_1_1", 0x12}}, {{1, 4096, 0x21}}};
    EXPECT_EQ(texts(record_of_64_mbit(), table), (NAMES{"extended_mode: no / yes"}));
    table.four_byte_table->supported.pop_back();
    EXPECT_EQ(texts(record_of_64_mbit(), table), NAMES());
}

TEST(SfdpDifferences, NameAnUnusualPage) {
    SFDP_TABLE table = table_of_64_mbit();
    table.page_bytes = 512;
    EXPECT_EQ(texts(record_of_64_mbit(), table), (NAMES{"page: - / 512 B"}));
}

// ---- capacity bytes ----

TEST(CapacityByte, IsThePowerOfTwoInBytes) {
    EXPECT_EQ(tool_capacity_bits(0xEF, 0x10), MBIT / 2);
    EXPECT_EQ(tool_capacity_bits(0xEF, 0x17), 64 * MBIT);
    EXPECT_EQ(tool_capacity_bits(0xC2, 0x1C), 2048 * MBIT);
}

TEST(CapacityByte, GoesOnAtTwentyHexadecimal) {
    EXPECT_EQ(tool_capacity_bits(0x20, 0x20), 512 * MBIT);
    EXPECT_EQ(tool_capacity_bits(0xEF, 0x22), 2048 * MBIT);
}

TEST(CapacityByte, HasASecondRowOfOneMaker) {
    EXPECT_EQ(tool_capacity_bits(0xC2, 0x39), 256 * MBIT);
    EXPECT_EQ(tool_capacity_bits(0xEF, 0x39), std::nullopt);
}

TEST(CapacityByte, IsUnknownElsewhere) {
    EXPECT_EQ(tool_capacity_bits(0xBF, 0x4A), std::nullopt);
    EXPECT_EQ(tool_capacity_bits(0x1F, 0x02), std::nullopt);
    EXPECT_EQ(tool_capacity_bits(0x20, 0x23), std::nullopt);
}

// ---- units ----

std::string hint(const char* member, const char* text) {
    const auto prompts = TOVREN_FLASH_MANAGER::get_flash_prompts();
    const auto prompt = std::find_if(prompts.begin(), prompts.end(), [member](const TOVREN_FLASH_PROMPT& candidate) {
        return std::string_view(candidate.member) == member;
    });
    return tool_flash_unit_hint(*prompt, text);
}

TEST(FlashUnits, NameTheUnitsInWhichAFigureWouldDo) {
    EXPECT_EQ(hint("bulk_erase_time", "300000"), "300000 ms would be 300, 300000 us would be 1");
    EXPECT_EQ(hint("device_bit_size", "33554432"), "33554432 bit would be 32, 33554432 byte would be 256");
    EXPECT_EQ(hint("device_sector_byte", "65536"), "65536 byte would be 64");
    EXPECT_EQ(hint("program_utime", "3"), "3 ms would be 3000");
}

TEST(FlashUnits, RoundTimesUp) {
    EXPECT_EQ(hint("sec_erase_time", "5376"), "5376 ms would be 6");
}

TEST(FlashUnits, ReadAUnitBehindTheFigure) {
    EXPECT_EQ(hint("sec_erase_time", "2s"), "2 s is typed 2");
    EXPECT_EQ(hint("program_utime", "3ms"), "3 ms is typed 3000");
    EXPECT_EQ(hint("device_sector_byte", "64K"), "64 KiB is typed 64");
    EXPECT_EQ(hint("device_bit_size", "1Gbit"), "1 Gbit is typed 1024");
    EXPECT_EQ(hint("device_bit_size", "32MB"), "32 MiB is typed 256");
}

TEST(FlashUnits, TakeThePrefixOffAHexadecimalAnswer) {
    EXPECT_EQ(hint("protection_mask", "0x3C"), "it is typed without 0x: 3C");
    EXPECT_EQ(hint("protection_mask", "0x3CC"), "");
}

TEST(FlashUnits, SayNothingWhereNoUnitFits) {
    EXPECT_EQ(hint("bulk_erase_time", "0"), "");
    EXPECT_EQ(hint("bulk_erase_time", "9 parsecs"), "");
    EXPECT_EQ(hint("die_count", "64"), "");
}

} // namespace
