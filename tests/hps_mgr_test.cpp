// The HPS flash managers: the built-in tables, the user's own flashes ahead of them, and the current system.
#include "ini_fixture.h"
#include "tovren_hps_mgr.h"

#include <set>

namespace {

class HpsMgr : public INI_TEST {
protected:
    HpsMgr() { delete_all(); }
    ~HpsMgr() override { delete_all(); }

    static void delete_all() {
        TOVREN_HPS_MGR::delete_mgr();
        TOVREN_HPS_SPI_MGR::delete_mgr();
        TOVREN_HPS_NAND_MGR::delete_mgr();
    }

    // A file with these sections, and managers that have not read it yet.
    void put_sections(const BYTES& spi, const BYTES& nand) const {
        put(INI_FILE({{}, spi, nand}));
        delete_all();
    }
};

using LINES = std::vector<std::string>;

// The tables as they are laid down: manufacturer, name, siid, ext_siid, ext_mask, flash_bit_size, sector_byte_size,
// page_byte_size, bulk_erase_time, bulk_erase_interval_wait_time, sector_erase_time, page_program_time, program_time,
// die_size, speed_mode, three opcodes.
const LINES SPI_TABLE = {
    "MICRON QSPI_64 0x17BA20 0x00 0x00 0x4000000 0x10000 256 120 2 3 1000 1 1 1 0xD8 0x02 0x03",
    "MICRON QSPI_128 0x18BA20 0x00 0x00 0x8000000 0x10000 256 250 2 3 1000 1 1 1 0xD8 0x02 0x03",
    "MICRON QSPI_256 0x19BA20 0x00 0x00 0x10000000 0x10000 256 480 3 3 1000 1 1 1 0xD8 0x02 0x03",
    "MICRON QSPI_512 0x20BA20 0x44 0xFF 0x20000000 0x10000 256 460 3 1 1000 1 1 1 0xD8 0x02 0x03",
    "MICRON QSPI_512 0x20BA20 0x00 0x00 0x20000000 0x10000 256 480 3 3 1000 1 2 0 0xD8 0x02 0x03",
    "MICRON QSPI_1024 0x21BA20 0x00 0x00 0x40000000 0x10000 256 480 3 3 1000 1 4 0 0xD8 0x02 0x03",
    "MICRON QSPI_2048 0x22BA20 0x00 0x00 0x80000000 0x10000 256 460 3 1 1000 1 4 1 0xD8 0x02 0x03",
    "MICRON QSPI_128 0x18BB20 0x00 0x00 0x8000000 0x10000 256 250 2 3 1000 1 1 1 0xD8 0x02 0x03",
    "MICRON QSPI_256 0x19BB20 0x00 0x00 0x10000000 0x10000 256 480 3 3 1000 1 1 1 0xD8 0x02 0x03",
    "MICRON QSPI_512 0x20BB20 0x44 0xFF 0x20000000 0x10000 256 460 3 1 1000 1 1 1 0xD8 0x02 0x03",
    "MICRON QSPI_512 0x20BB20 0x00 0x00 0x20000000 0x10000 256 480 3 3 1000 1 2 0 0xD8 0x02 0x03",
    "MICRON QSPI_1024 0x21BB20 0x44 0xFF 0x40000000 0x10000 256 460 3 1 1000 1 2 1 0xD8 0x02 0x03",
    "MICRON QSPI_1024 0x21BB20 0x00 0x00 0x40000000 0x10000 256 480 3 3 1000 1 4 0 0xD8 0x02 0x03",
    "MICRON QSPI_2048 0x22BB20 0x00 0x00 0x80000000 0x10000 256 460 3 1 1000 1 4 1 0xD8 0x02 0x03",
    "MICRON SPI_4 0x132020 0x00 0x00 0x400000 0x10000 256 10 2 3 3000 1 1 1 0xD8 0x02 0x03",
    "MICRON SPI_16 0x152020 0x00 0x00 0x1000000 0x10000 256 40 2 3 3000 1 1 1 0xD8 0x02 0x03",
    "SPANSION QSPI_128 0x182001 0x01 0xFF 0x8000000 0x10000 256 256 2 11 2200 1 1 1 0xD8 0x02 0x03",
    "SPANSION QSPI_128 0x182001 0x00 0xFF 0x8000000 0x40000 256 256 2 11 2200 1 1 1 0xD8 0x02 0x03",
    "SPANSION QSPI_256 0x190201 0x01 0xFF 0x10000000 0x10000 256 330 3 11 2200 1 1 1 0xDC 0x12 0x13",
    "SPANSION QSPI_256 0x190201 0x00 0xFF 0x10000000 0x40000 256 330 3 11 2200 1 1 1 0xDC 0x12 0x13",
    "SPANSION QSPI_512 0x200201 0x00 0xFF 0x20000000 0x40000 512 460 3 3 2200 1 1 1 0xDC 0x12 0x13",
    "MACRONIX QSPI_128 0x1820C2 0x00 0x00 0x8000000 0x10000 256 80 3 1 1500 1 1 1 0xDC 0x12 0x13",
    "MACRONIX QSPI_256 0x1920C2 0x00 0x00 0x10000000 0x10000 256 300 3 2 3000 1 1 1 0xDC 0x12 0x13",
    "MACRONIX QSPI_512 0x1A20C2 0x00 0x00 0x20000000 0x10000 256 300 3 3 1500 1 1 1 0xDC 0x12 0x13",
    "MACRONIX QSPI_512 0x3A25C2 0x00 0x00 0x20000000 0x10000 256 320 3 3 3000 1 1 1 0xDC 0x12 0x13",
    "MACRONIX QSPI_1024 0x1B20C2 0x00 0x00 0x40000000 0x10000 256 600 3 2 1000 1 1 1 0xDC 0x12 0x13",
    "GIGADEVICE QSPI_128 0x1840C8 0x00 0x00 0x8000000 0x10000 256 300 3 3 3000 1 1 1 0xDC 0x12 0x13",
};

// manufacturer_id, device_id, flash_byte_size
const LINES NAND_TABLE = {
    "0x2C 0x68 0x100000000", "0x2C 0x48 0x80000000", "0x2C 0xA1 0x40000000", "0x2C 0xF1 0x40000000",
    "0x01 0xF1 0x8000000",   "0x01 0xDA 0x10000000", "0x01 0xDC 0x20000000", "0x01 0xC1 0x8000000",
    "0x01 0xCA 0x10000000",  "0x01 0xCC 0x20000000",
};

constexpr char SPI_MD5[] = "9095cbfc6f5b69d3eb5d625df882a316";
constexpr char NAND_MD5[] = "79b884d001a0760b19c475920183ef66";

std::string line_of(const TOVREN_HPS_SPI_PARAMS& flash) {
    char numbers[300];
    std::snprintf(numbers, sizeof numbers,
                  " 0x%06X 0x%02X 0x%02X 0x%llX 0x%X %u %u %u %u %u %u %u %d 0x%02X 0x%02X 0x%02X", flash.siid,
                  flash.ext_siid, flash.ext_mask, flash.flash_bit_size, flash.sector_byte_size, flash.page_byte_size,
                  flash.bulk_erase_time, flash.bulk_erase_interval_wait_time, flash.sector_erase_time,
                  flash.page_program_time, flash.program_time, flash.die_size, flash.speed_mode ? 1 : 0,
                  flash.byte4_se_opcode, flash.byte4_pp_opcode, flash.byte4_read_opcode);
    return flash.manufacturer + " " + flash.name + numbers;
}

std::string line_of(const TOVREN_HPS_NAND_PARAMS& flash) {
    char numbers[100];
    std::snprintf(numbers, sizeof numbers, "0x%02X 0x%02X 0x%llX", flash.manufacturer_id, flash.device_id,
                  flash.flash_byte_size);
    return numbers;
}

template <typename LIST>
LINES lines_of(const LIST& flashes) {
    LINES lines;
    for (const auto& flash : flashes)
        lines.push_back(line_of(*flash));
    return lines;
}

LINES spi_list() {
    return lines_of(TOVREN_HPS_SPI_MGR::get_mgr()->m_flash_list);
}
LINES spi_user_list() {
    return lines_of(TOVREN_HPS_SPI_MGR::get_mgr()->m_user_flash_list);
}
LINES nand_list() {
    return lines_of(TOVREN_HPS_NAND_MGR::get_mgr()->m_flash_list);
}
LINES nand_user_list() {
    return lines_of(TOVREN_HPS_NAND_MGR::get_mgr()->m_user_flash_list);
}

LINES join_lines(LINES left, const LINES& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

// Records by hand from the format page, and the lines that they read as. No two values are alike.
const BYTES SPI_RECORD = join({
    le32_bytes(0x00112233),
    le32_bytes(0x00FFFF0F),
    le32_bytes(0x44),
    le32_bytes(0xF4), // identification
    zero_ended("QXMAKER"),
    zero_ended("QX_8"), // texts
    le64_bytes(0x123456789),
    le32_bytes(0x20000),
    le32_bytes(512), // geometry
    le32_bytes(11),
    le32_bytes(12),
    le32_bytes(13),
    le32_bytes(14),
    le32_bytes(15),
    le32_bytes(4), // times, dies
    {0x01},
    le32_bytes(0xD1),
    le32_bytes(0xD2),
    le32_bytes(0xD3), // speed mode, opcodes
});
const std::string SPI_LINE =
    "QXMAKER QX_8 0x112233 0x44 0xF4 0x123456789 0x20000 512 11 12 13 14 15 4 1 0xD1 0xD2 0xD3";
const BYTES EMPTY_SPI_RECORD = BYTES(16 + 1 + 1 + 8 + 8 + 24 + 1 + 12, 0);
const std::string EMPTY_SPI_LINE = "  0x000000 0x00 0x00 0x0 0x0 0 0 0 0 0 0 0 0 0x00 0x00 0x00";

const BYTES NAND_RECORD = join({le32_bytes(0x98), le32_bytes(0xDA), le64_bytes(0x2100000000)});
const std::string NAND_LINE = "0x98 0xDA 0x2100000000";
const BYTES OTHER_NAND_RECORD = join({le32_bytes(0xEC), le32_bytes(0x1234), le64_bytes(1)});
const std::string OTHER_NAND_LINE = "0xEC 0x1234 0x1";

// ---- tables ----

TEST_F(HpsMgr, KnowTheBuiltInSpiFlashesInOrder) {
    LINES lines;
    for (const TOVREN_HPS_SPI_PARAMS& row : TOVREN_HPS_SPI_DATABASE) {
        lines.push_back(line_of(row));
        EXPECT_EQ(0xFFFFFFU, row.mask);
    }
    EXPECT_EQ(27U, lines.size());
    EXPECT_EQ(SPI_TABLE, lines);
}

TEST_F(HpsMgr, KnowTheBuiltInNandFlashesInOrder) {
    LINES lines;
    for (const TOVREN_HPS_NAND_PARAMS& row : TOVREN_HPS_NAND_DATABASE)
        lines.push_back(line_of(row));
    EXPECT_EQ(10U, lines.size());
    EXPECT_EQ(NAND_TABLE, lines);
}

TEST_F(HpsMgr, NameFlashesForTheirSizes) {
    for (const TOVREN_HPS_SPI_PARAMS& row : TOVREN_HPS_SPI_DATABASE) {
        const std::string mbit = std::to_string(row.flash_bit_size >> 20);
        EXPECT_EQ((row.flash_bit_size < 0x4000000 ? "SPI_" : "QSPI_") + mbit, row.name);
    }
}

TEST_F(HpsMgr, KnowTheSpiParametersAndTheirTypes) {
    EXPECT_EQ((LINES{"siid", "mask", "ext_siid", "ext_mask", "manufacturer", "name", "flash_bit_size",
                     "sector_byte_size", "page_byte_size", "bulk_erase_time", "bulk_erase_interval_wait_time",
                     "sector_erase_time", "page_program_time", "program_time", "die_size", "speed_mode",
                     "byte4_se_opcode", "byte4_pp_opcode", "byte4_read_opcode"}),
              TOVREN_HPS_SPI_PARAM_NAME_LIST);
    const std::vector<unsigned int> types(TOVREN_HPS_SPI_PARAM_TYPE_LIST.begin(), TOVREN_HPS_SPI_PARAM_TYPE_LIST.end());
    EXPECT_EQ((std::vector<unsigned int>{5, 5, 5, 5, 1, 1, 6, 5, 5, 5, 5, 5, 5, 5, 5, 2, 5, 5, 5}), types);
}

TEST_F(HpsMgr, KnowTheNandParametersAndTheirTypes) {
    EXPECT_EQ((LINES{"manufacturer_id", "device_id", "flash_byte_size"}), TOVREN_HPS_NAND_PARAM_NAME_LIST);
    const std::vector<unsigned int> types(TOVREN_HPS_NAND_PARAM_TYPE_LIST.begin(),
                                          TOVREN_HPS_NAND_PARAM_TYPE_LIST.end());
    EXPECT_EQ((std::vector<unsigned int>{5, 5, 6}), types);
}

TEST_F(HpsMgr, AskForEveryParameterInWordsOfItsOwn) {
    EXPECT_EQ(19U, TOVREN_HPS_SPI_PROMPT_LIST.size());
    EXPECT_EQ("Extensive Silicon ID (hex)", TOVREN_HPS_SPI_PROMPT_LIST[2]);
    EXPECT_EQ("Manufacturer", TOVREN_HPS_SPI_PROMPT_LIST[4]);
    EXPECT_EQ("Device name", TOVREN_HPS_SPI_PROMPT_LIST[5]);
    EXPECT_EQ("Sector Size [1 - 1024 Kbyte]", TOVREN_HPS_SPI_PROMPT_LIST[7]);
    EXPECT_EQ("Page BYTE size", TOVREN_HPS_SPI_PROMPT_LIST[8]);
    EXPECT_EQ("Die size [1/2/4]", TOVREN_HPS_SPI_PROMPT_LIST[14]);
    EXPECT_EQ("Speed Mode [Y/N]", TOVREN_HPS_SPI_PROMPT_LIST[15]);
    EXPECT_EQ(3U, TOVREN_HPS_NAND_PROMPT_LIST.size());
    for (const LINES& prompts : {TOVREN_HPS_SPI_PROMPT_LIST, TOVREN_HPS_NAND_PROMPT_LIST}) {
        EXPECT_EQ(prompts.size(), std::set<std::string>(prompts.begin(), prompts.end()).size());
        EXPECT_FALSE(std::set<std::string>(prompts.begin(), prompts.end()).contains(""));
    }
}

TEST_F(HpsMgr, KnowTheFingerprintsOfTheRecords) {
    EXPECT_EQ(SPI_MD5, TOVREN_HPS_SPI_MD5);
    EXPECT_EQ(NAND_MD5, TOVREN_HPS_NAND_MD5);
}

// ---- structures ----

TEST_F(HpsMgr, TakeTheSpiParametersInListOrder) {
    TOVREN_HPS_SPI_STRUCTURE flash(1, 2, 3, 4, "maker", "name", 5, 6, 7, 8, 9, 10, 11, 12, 13, true, 14, 15, 16);
    LINES values;
    for (size_t i = 0; i < 19; ++i)
        values.push_back(
            TOVREN_FLASH_INI::print_flash_ini_data(TOVREN_HPS_SPI_PARAM_TYPE_LIST[i], false, flash.m_params[i]));
    EXPECT_EQ((LINES{"1", "2", "3", "4", "maker", "name", "5", "6", "7", "8", "9", "10", "11", "12", "13", "True", "14",
                     "15", "16"}),
              values);
    EXPECT_EQ("maker name 0x000001 0x03 0x04 0x5 0x6 7 8 9 10 11 12 13 1 0x0E 0x0F 0x10", line_of(flash));
    EXPECT_EQ(2U, flash.mask);
}

TEST_F(HpsMgr, TakeTheNandParametersInListOrder) {
    TOVREN_HPS_NAND_STRUCTURE flash(1, 2, 0x300000000);
    LINES values;
    for (size_t i = 0; i < 3; ++i)
        values.push_back(
            TOVREN_FLASH_INI::print_flash_ini_data(TOVREN_HPS_NAND_PARAM_TYPE_LIST[i], true, flash.m_params[i]));
    EXPECT_EQ((LINES{"0x00000001", "0x00000002", "0x0000000300000000"}), values);
}

TEST_F(HpsMgr, PointToTheParametersThemselves) {
    TOVREN_HPS_SPI_STRUCTURE spi;
    EXPECT_EQ(&spi.siid, spi.m_params[0]);
    EXPECT_EQ(&spi.byte4_read_opcode, spi.m_params[18]);
    TOVREN_HPS_NAND_STRUCTURE nand;
    EXPECT_EQ(&nand.flash_byte_size, nand.m_params[2]);
    for (const auto& flash : TOVREN_HPS_SPI_MGR::get_mgr()->m_flash_list)
        EXPECT_EQ(&flash->name, flash->m_params[5]);
}

// ---- lists ----

TEST_F(HpsMgr, ListTheBuiltInFlashesAloneWithoutAFile) {
    EXPECT_EQ(SPI_TABLE, spi_list());
    EXPECT_EQ(LINES{}, spi_user_list());
    EXPECT_EQ(NAND_TABLE, nand_list());
    EXPECT_EQ(LINES{}, nand_user_list());
}

TEST_F(HpsMgr, ListTheUsersOwnFirst) {
    put_sections(join({text_bytes(SPI_MD5), SPI_RECORD, EMPTY_SPI_RECORD}),
                 join({text_bytes(NAND_MD5), NAND_RECORD, OTHER_NAND_RECORD}));
    EXPECT_EQ((LINES{SPI_LINE, EMPTY_SPI_LINE}), spi_user_list());
    EXPECT_EQ(join_lines({SPI_LINE, EMPTY_SPI_LINE}, SPI_TABLE), spi_list());
    EXPECT_EQ((LINES{NAND_LINE, OTHER_NAND_LINE}), nand_user_list());
    EXPECT_EQ(join_lines({NAND_LINE, OTHER_NAND_LINE}, NAND_TABLE), nand_list());
    EXPECT_EQ(0x00FFFF0FU, TOVREN_HPS_SPI_MGR::get_mgr()->m_user_flash_list[0]->mask);
    EXPECT_EQ(TOVREN_HPS_SPI_MGR::get_mgr()->m_flash_list[0].get(),
              TOVREN_HPS_SPI_MGR::get_mgr()->m_user_flash_list[0]);
}

TEST_F(HpsMgr, ListWhatWasStoredThroughTheLibrary) {
    TOVREN_HPS_NAND_STRUCTURE flash(0x98, 0xDA, 0x2100000000);
    unsigned int size = 32;
    for (size_t i = 0; i < 3; ++i)
        TOVREN_FLASH_INI::calculate_flash_ini_data_size(size, TOVREN_HPS_NAND_PARAM_TYPE_LIST[i], flash.m_params[i]);
    BYTES section = text_bytes(TOVREN_HPS_NAND_MD5);
    section.resize(size);
    unsigned int index = 32;
    for (size_t i = 0; i < 3; ++i)
        TOVREN_FLASH_INI::fillup_flash_ini_data(section.data(), index, TOVREN_HPS_NAND_PARAM_TYPE_LIST[i],
                                                flash.m_params[i]);
    EXPECT_EQ(join({text_bytes(NAND_MD5), NAND_RECORD}), section);
    EXPECT_TRUE(write(2, section));
    EXPECT_EQ(LINES{NAND_LINE}, nand_user_list());
    EXPECT_EQ(LINES{}, spi_user_list());
}

TEST_F(HpsMgr, TakeASectionOfTheFingerprintAloneAsAbsent) {
    put_sections(text_bytes(SPI_MD5), text_bytes(NAND_MD5));
    EXPECT_EQ(SPI_TABLE, spi_list());
    EXPECT_EQ(LINES{}, spi_user_list());
    EXPECT_EQ(NAND_TABLE, nand_list());
    EXPECT_EQ(LINES{}, nand_user_list());
}

TEST_F(HpsMgr, TakeNothingFromASectionThatIsShorterThanItsFingerprint) {
    for (size_t kept = 1; kept < 32; ++kept) {
        put_sections(first(text_bytes(SPI_MD5), kept), first(text_bytes(NAND_MD5), kept));
        EXPECT_EQ(SPI_TABLE, spi_list());
        EXPECT_EQ(NAND_TABLE, nand_list());
    }
}

TEST_F(HpsMgr, TakeNothingFromASectionWithAnotherFingerprint) {
    const BYTES spi = join({text_bytes(SPI_MD5), SPI_RECORD});
    const BYTES nand = join({text_bytes(NAND_MD5), NAND_RECORD});
    for (size_t i = 0; i < 32; ++i) {
        put_sections(with_byte(spi, i, 'A'), with_byte(nand, i, 'A'));
        EXPECT_EQ(SPI_TABLE, spi_list()) << i;
        EXPECT_EQ(LINES{}, spi_user_list()) << i;
        EXPECT_EQ(NAND_TABLE, nand_list()) << i;
        EXPECT_EQ(LINES{}, nand_user_list()) << i;
    }
    put_sections(join({text_bytes(NAND_MD5), SPI_RECORD}), join({text_bytes(SPI_MD5), NAND_RECORD}));
    EXPECT_EQ(LINES{}, spi_user_list());
    EXPECT_EQ(LINES{}, nand_user_list());
}

TEST_F(HpsMgr, DropALastSpiRecordThatIsCutAtAnyPlace) {
    for (size_t kept = 0; kept < SPI_RECORD.size(); ++kept) {
        put_sections(join({text_bytes(SPI_MD5), SPI_RECORD, first(SPI_RECORD, kept)}), {});
        EXPECT_EQ(LINES{SPI_LINE}, spi_user_list()) << kept;
        EXPECT_EQ(join_lines({SPI_LINE}, SPI_TABLE), spi_list()) << kept;
    }
}

TEST_F(HpsMgr, DropALastNandRecordThatIsCutAtAnyPlace) {
    for (size_t kept = 0; kept < NAND_RECORD.size(); ++kept) {
        put_sections({}, join({text_bytes(NAND_MD5), NAND_RECORD, OTHER_NAND_RECORD, first(NAND_RECORD, kept)}));
        EXPECT_EQ((LINES{NAND_LINE, OTHER_NAND_LINE}), nand_user_list()) << kept;
        EXPECT_EQ(join_lines({NAND_LINE, OTHER_NAND_LINE}, NAND_TABLE), nand_list()) << kept;
    }
}

TEST_F(HpsMgr, TakeNothingFromAFileThatDoesNotVerify) {
    INI_FILE ini({{}, join({text_bytes(SPI_MD5), SPI_RECORD}), {}});
    ini.behind_end = {0x00};
    put(ini);
    EXPECT_EQ(LINES{}, spi_user_list());
    EXPECT_EQ(SPI_TABLE, spi_list());
}

TEST_F(HpsMgr, SurviveAnyByteOfARecordBeingAnother) {
    const BYTES section = join({text_bytes(SPI_MD5), SPI_RECORD, SPI_RECORD});
    for (size_t i = 32; i < section.size(); ++i) {
        for (const unsigned int value : {0x00U, 0x41U, 0xFFU}) {
            put_sections(with_byte(section, i, static_cast<unsigned char>(value)), {});
            EXPECT_GE(3U, spi_user_list().size());
            EXPECT_EQ(27 + spi_user_list().size(), spi_list().size());
        }
    }
}

// ---- life ----

TEST_F(HpsMgr, ExistOnceAndReadTheFileWhenTheyAreMade) {
    TOVREN_HPS_NAND_MGR* const mgr = TOVREN_HPS_NAND_MGR::get_mgr();
    EXPECT_EQ(mgr, TOVREN_HPS_NAND_MGR::get_mgr());
    EXPECT_EQ(mgr, TOVREN_HPS_NAND_MGR::m_mgr);
    put(INI_FILE({{}, {}, join({text_bytes(NAND_MD5), NAND_RECORD})}));
    EXPECT_EQ(LINES{}, nand_user_list());
    TOVREN_HPS_NAND_MGR::delete_mgr();
    EXPECT_EQ(nullptr, TOVREN_HPS_NAND_MGR::m_mgr);
    EXPECT_EQ(LINES{NAND_LINE}, nand_user_list());
}

TEST_F(HpsMgr, MayBeDeletedBeforeTheyAreMadeAndTwice) {
    delete_all();
    delete_all();
    EXPECT_EQ(nullptr, TOVREN_HPS_MGR::m_mgr);
    EXPECT_EQ(nullptr, TOVREN_HPS_SPI_MGR::m_mgr);
    EXPECT_EQ(nullptr, TOVREN_HPS_NAND_MGR::m_mgr);
    EXPECT_EQ(TOVREN_HPS_SPI_MGR::get_mgr(), TOVREN_HPS_SPI_MGR::get_mgr());
    EXPECT_EQ(TOVREN_HPS_MGR::get_mgr(), TOVREN_HPS_MGR::get_mgr());
}

// ---- the current system ----

TEST_F(HpsMgr, HaveNoCurrentSystemAtFirst) {
    EXPECT_EQ(0xFFFFFFFFU, TOVREN_HPS_MGR::get_mgr()->m_current_hps);
    EXPECT_EQ(nullptr, TOVREN_HPS_MGR::get_mgr()->get_current_hps());
}

TEST_F(HpsMgr, FindEitherSystemByItsId) {
    ASSERT_EQ(2U, TOVREN_HPS_DATABASE.size());
    EXPECT_NE(TOVREN_HPS_DATABASE[0].id, TOVREN_HPS_DATABASE[1].id);
    for (const unsigned int i : {1U, 0U}) {
        EXPECT_TRUE(TOVREN_HPS_MGR::get_mgr()->set_current_hps(TOVREN_HPS_DATABASE[i].id));
        EXPECT_EQ(i, TOVREN_HPS_MGR::get_mgr()->m_current_hps);
        EXPECT_EQ(&TOVREN_HPS_DATABASE[i], TOVREN_HPS_MGR::get_mgr()->get_current_hps());
    }
}

TEST_F(HpsMgr, ForgetTheCurrentSystemWhenAnotherIsNotFound) {
    EXPECT_TRUE(TOVREN_HPS_MGR::get_mgr()->set_current_hps(TOVREN_HPS_DATABASE[1].id));
    EXPECT_FALSE(TOVREN_HPS_MGR::get_mgr()->set_current_hps(TOVREN_HPS_DATABASE[1].id + 1));
    EXPECT_EQ(0xFFFFFFFFU, TOVREN_HPS_MGR::get_mgr()->m_current_hps);
    EXPECT_EQ(nullptr, TOVREN_HPS_MGR::get_mgr()->get_current_hps());
}

TEST_F(HpsMgr, ForgetTheCurrentSystemWhenTheyAreDeleted) {
    EXPECT_TRUE(TOVREN_HPS_MGR::get_mgr()->set_current_hps(TOVREN_HPS_DATABASE[0].id));
    TOVREN_HPS_MGR::delete_mgr();
    EXPECT_EQ(nullptr, TOVREN_HPS_MGR::get_mgr()->get_current_hps());
}

} // namespace
