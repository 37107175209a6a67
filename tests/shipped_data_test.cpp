// The shipped flash table: what a row must keep to and no type can hold, read from the CSV by a plain reader of its
// own, and the database that the build made of it.
#include "fixtures.h"
#include "flash_model.h"
#include "report.h"
#include "tovren_flash_manager.h"
#include "tovren_standalone_host.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <openssl/evp.h>
#include <set>
#include <sstream>

namespace {

// A data row with its line in the file, for messages.
struct SHIPPED_FLASH {
    unsigned int line;
    std::vector<std::string> cells;
    TOVREN_SFL_FLASH_INFO flash;
};

std::ostream& operator<<(std::ostream& out, const SHIPPED_FLASH& row) {
    return out << "data/flash.csv:" << row.line << ": " << row.flash.device_name;
}

std::vector<std::string> split(const std::string& line) {
    std::vector<std::string> cells(1);
    for (const char character : line) {
        if (character == ',')
            cells.emplace_back();
        else
            cells.back() += character;
    }
    return cells;
}

// Hands out a row's cells one after the other.
class CELL_READER {
public:
    explicit CELL_READER(const std::vector<std::string>& cells) : m_cells(cells) {}

    const std::string& text() { return m_cells.at(m_next++); }
    bool flag() {
        const std::string& cell = text();
        EXPECT_TRUE(cell == "TRUE" || cell == "FALSE") << cell;
        return cell == "TRUE";
    }
    DWORD dword() {
        const std::string& cell = text();
        size_t used = 0;
        const unsigned long long value = std::stoull(cell, &used, cell.starts_with("0x") ? 16 : 10);
        EXPECT_EQ(cell.size(), used) << cell;
        EXPECT_LE(value, 0xFFFFFFFFULL) << cell;
        return static_cast<DWORD>(value);
    }
    BYTE byte() {
        const DWORD value = dword();
        EXPECT_LE(value, 255U);
        return static_cast<BYTE>(value);
    }

private:
    const std::vector<std::string>& m_cells;
    size_t m_next = 0;
};

TOVREN_SFL_FLASH_INFO flash_of(const std::vector<std::string>& cells) {
    CELL_READER next(cells);
    TOVREN_SFL_FLASH_INFO flash;
    flash.manufacturer_name = next.text();
    flash.device_name = next.text();
    flash.silicon_id = next.flag();
    flash.memory_id = next.byte();
    flash.memory_id_index = next.byte();
    flash.memory_type = next.byte();
    flash.memory_type_index = next.byte();
    flash.mfc_id = next.byte();
    flash.mfc_id_index = next.byte();
    flash.velkor_id = next.byte();
    flash.default_dev = next.flag();
    flash.ini = next.text();
    flash.extended_mode = next.flag();
    flash.micron_flow = next.flag();
    flash.spansion_flow = next.flag();
    flash.startup_protected = next.flag();
    flash.aai_mode = next.flag();
    flash.flag_status = next.flag();
    flash.die_count = next.byte();
    flash.device_bit_size = next.dword();
    flash.device_sector_byte = next.dword();
    flash.half_size = next.flag();
    flash.byte4_addressing = next.flag();
    flash.bulk_erase_time = next.dword();
    flash.sec_erase_time = next.dword();
    flash.program_utime = next.dword();
    flash.protection_mask = next.byte();
    flash.protection_value = next.byte();
    flash.unprotect_value = next.byte();
    flash.protection_division = next.byte();
    flash.bottom_value = next.byte();
    flash.sdm_support = next.flag();
    flash.asc_voltage = next.text();
    return flash;
}

std::vector<SHIPPED_FLASH> read_csv() {
    std::ifstream csv(SHIPPED_FLASH_CSV);
    EXPECT_TRUE(csv.good()) << SHIPPED_FLASH_CSV;
    std::vector<SHIPPED_FLASH> rows;
    unsigned int line_number = 0;
    unsigned int row_number = 0;
    for (std::string line; std::getline(csv, line);) {
        ++line_number;
        if (line.empty() || ++row_number <= 8)
            continue;
        const std::vector<std::string> cells = split(line);
        if (cells.size() != 33) {
            ADD_FAILURE() << "data/flash.csv:" << line_number << ": " << cells.size() << " cells";
            continue;
        }
        rows.push_back({line_number, cells, flash_of(cells)});
    }
    return rows;
}

const std::vector<SHIPPED_FLASH>& shipped() {
    static const std::vector<SHIPPED_FLASH> rows = read_csv();
    return rows;
}

std::vector<TOVREN_SFL_FLASH_INFO> shipped_flashes() {
    std::vector<TOVREN_SFL_FLASH_INFO> flashes;
    for (const SHIPPED_FLASH& row : shipped())
        flashes.push_back(row.flash);
    return flashes;
}

std::string upper(std::string text) {
    for (char& character : text)
        character = static_cast<char>(toupper(static_cast<unsigned char>(character)));
    return text;
}

std::map<std::string, std::vector<const SHIPPED_FLASH*>> shipped_by_name() {
    std::map<std::string, std::vector<const SHIPPED_FLASH*>> names;
    for (const SHIPPED_FLASH& row : shipped())
        names[upper(row.flash.device_name)].push_back(&row);
    return names;
}

std::set<std::string> shipped_keys() {
    std::set<std::string> keys;
    for (const SHIPPED_FLASH& row : shipped())
        if (row.flash.ini != "NONE")
            keys.insert(row.flash.ini);
    return keys;
}

unsigned int count_if(bool (*is_counted)(const TOVREN_SFL_FLASH_INFO&)) {
    const std::vector<TOVREN_SFL_FLASH_INFO> flashes = shipped_flashes();
    return static_cast<unsigned int>(std::count_if(flashes.begin(), flashes.end(), is_counted));
}

std::string md5_text(const std::string& bytes) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int size = 0;
    EXPECT_EQ(1, EVP_Digest(bytes.data(), bytes.size(), digest, &size, EVP_md5(), nullptr));
    std::string text;
    for (unsigned int position = 0; position < size; ++position) {
        char digits[3];
        snprintf(digits, sizeof digits, "%02x", digest[position]);
        text += digits;
    }
    return text;
}

// ---- the library and the file belong together ----

TEST(ShippedData, IsWhatTheLibraryWasBuiltFor) {
    EXPECT_EQ(md5_text(read_text(SHIPPED_FLASH_CSV)), TOVREN_FLASH_INFO_CSV_MD5);
    EXPECT_EQ(md5_text(read_text(SHIPPED_DEVICES_CSV)), TOVREN_DEV_INFO_CSV_MD5);
}

TEST(ShippedData, IsInTheDatabaseByteForByte) {
    const BYTES file = read_file(SHIPPED_FLASH_DATABASE);
    ASSERT_GT(file.size(), 46U);
    const BYTES payload = inflated({file.begin() + 44, file.end() - 2});
    EXPECT_TRUE(FLASH_FILE(shipped_flashes()).payload() == payload);
    EXPECT_EQ(join({text_bytes("PGMIO_FM"), text_bytes(md5_text(read_text(SHIPPED_FLASH_CSV))),
                    le32_bytes(static_cast<unsigned int>(payload.size()))}),
              first(file, 44));
    EXPECT_EQ((BYTES{0, 0}), BYTES(file.end() - 2, file.end()));
}

class ShippedDatabase : public HOST_TEST {
protected:
    ShippedDatabase() { TOVREN_STANDALONE_HOST::set_device_db_root(SHIPPED_DATABASE_ROOT); }

    // Loads with the switches of these keys on and compares with the rows that these show.
    static void expect_loads_with(const std::set<std::string>& keys) {
        for (const std::string& key : shipped_keys())
            TOVREN_STANDALONE_HOST::set_setting("PGM_ALLOW_" + key, keys.contains(key) ? "on" : "off");
        const TOVREN_FLASH_MANAGER manager(true, 1, false, false);
        unsigned int index = 0;
        for (const SHIPPED_FLASH& row : shipped()) {
            if (row.flash.ini != "NONE" && !keys.contains(row.flash.ini))
                continue;
            ASSERT_LT(index, manager.get_flash_count());
            ASSERT_EQ(described(row.flash), described(*manager.get_flash(index)));
            ++index;
        }
        EXPECT_EQ(index, manager.get_flash_count());
    }
};

TEST_F(ShippedDatabase, LoadsWithoutAnySwitch) {
    EXPECT_NO_REPORT(expect_loads_with({}));
}

TEST_F(ShippedDatabase, LoadsWithEachSwitchAlone) {
    for (const std::string& key : shipped_keys())
        EXPECT_NO_REPORT(expect_loads_with({key})) << key;
}

TEST_F(ShippedDatabase, LoadsWithAllSwitches) {
    EXPECT_NO_REPORT(expect_loads_with(shipped_keys()));
}

TEST_F(ShippedDatabase, IdentifiesTheFirstRowOfEveryIdentification) {
    TOVREN_FLASH_MANAGER manager(true, 1, false, false);
    for (unsigned int index = 0; index < manager.get_flash_count(); ++index) {
        const TOVREN_SFL_FLASH_INFO flash = *manager.get_flash(index);
        BYTES id(256);
        id[flash.mfc_id_index] = flash.mfc_id;
        id[flash.memory_type_index] = flash.memory_type;
        id[flash.memory_id_index] = flash.memory_id;
        ASSERT_TRUE(manager.flash_id_database_mapping(flash.silicon_id, 0, id.data())) << flash.device_name;
        EXPECT_LE(manager.get_flash_mapping_index(0, false), index) << flash.device_name;
    }
}

// ---- the table as a whole ----

TEST(ShippedData, HasAtLeast150Flashes) {
    EXPECT_GE(shipped().size(), 150U);
}

TEST(ShippedData, HasAboutTenFlashesWithASiliconId) {
    const unsigned int count = count_if([](const TOVREN_SFL_FLASH_INFO& flash) { return flash.silicon_id; });
    EXPECT_GE(count, 8U);
    EXPECT_LE(count, 13U);
}

TEST(ShippedData, HasAtLeastTwelveFlashesBehindAKey) {
    EXPECT_GE(count_if([](const TOVREN_SFL_FLASH_INFO& flash) { return flash.ini != "NONE"; }), 12U);
}

TEST(ShippedData, HasNamesThatSeveralFlashesShare) {
    unsigned int shared = 0;
    for (const auto& [name, rows] : shipped_by_name())
        shared += rows.size() > 1 ? 1 : 0;
    EXPECT_GE(shared, 3U);
}

TEST(ShippedData, HasNoFlashTwice) {
    std::set<std::string> seen;
    for (const SHIPPED_FLASH& row : shipped()) {
        const TOVREN_SFL_FLASH_INFO& flash = row.flash;
        std::ostringstream key;
        key << upper(flash.device_name) << ' ' << int{flash.mfc_id} << ' ' << int{flash.memory_type} << ' '
            << int{flash.memory_id} << ' ' << flash.device_sector_byte;
        EXPECT_TRUE(seen.insert(key.str()).second) << row;
    }
}

// ---- names, defaults, keys ----

TEST(ShippedData, HasOneDefaultForEachName) {
    for (const auto& [name, rows] : shipped_by_name())
        EXPECT_EQ(1, std::count_if(rows.begin(), rows.end(), [](const auto* row) { return row->flash.default_dev; }))
            << name;
}

// Where the default is hidden, all of its name must be hidden by the same key: then, and only then, the one-default
// rule holds for whatever keys are on.
TEST(ShippedData, KeepsOneDefaultWhateverKeysAreOn) {
    for (const auto& [name, rows] : shipped_by_name()) {
        const auto chosen =
            std::find_if(rows.begin(), rows.end(), [](const auto* row) { return row->flash.default_dev; });
        ASSERT_NE(rows.end(), chosen) << name;
        if ((*chosen)->flash.ini == "NONE")
            continue;
        for (const SHIPPED_FLASH* row : rows)
            EXPECT_EQ((*chosen)->flash.ini, row->flash.ini) << *row;
    }
}

TEST(ShippedData, SpellsANameInOneLetterCase) {
    for (const auto& [name, rows] : shipped_by_name())
        for (const SHIPPED_FLASH* row : rows)
            EXPECT_EQ(rows.front()->flash.device_name, row->flash.device_name) << *row;
}

TEST(ShippedData, HasKeysOfUpperCaseLettersDigitsAndUnderscores) {
    for (const SHIPPED_FLASH& row : shipped())
        EXPECT_EQ(std::string::npos, row.flash.ini.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_")) << row;
}

TEST(ShippedData, SharesANameOnlyAmongInterchangeableFlashes) {
    for (const auto& [name, rows] : shipped_by_name()) {
        for (const SHIPPED_FLASH* row : rows) {
            EXPECT_EQ(rows.front()->flash.manufacturer_name, row->flash.manufacturer_name) << *row;
            EXPECT_EQ(rows.front()->flash.device_bit_size, row->flash.device_bit_size) << *row;
        }
    }
}

// ---- texts and cells ----

TEST(ShippedData, HasTextsThatTheStreamAndTheTokenizerCanHold) {
    for (const SHIPPED_FLASH& row : shipped()) {
        for (const std::string& text :
             {row.flash.manufacturer_name, row.flash.device_name, row.flash.ini, row.flash.asc_voltage}) {
            EXPECT_FALSE(text.empty()) << row;
            EXPECT_LT(text.size(), 256U) << row;
        }
        for (const std::string& cell : row.cells)
            EXPECT_EQ(std::string::npos, cell.find_first_of(" \t\r\"")) << row;
    }
}

TEST(ShippedData, KeepsToTheLimitsOfItsHeaderRows) {
    std::ifstream csv(SHIPPED_FLASH_CSV);
    std::vector<std::string> header;
    for (std::string line; header.size() < 8 && std::getline(csv, line);)
        if (!line.empty())
            header.push_back(line);
    const TOVREN_SFL_FLASH_INFO lowest = flash_of(split(header.at(5)));
    const TOVREN_SFL_FLASH_INFO highest = flash_of(split(header.at(6)));
    const std::vector<MEMBER> low = members_of(lowest);
    const std::vector<MEMBER> high = members_of(highest);
    for (const SHIPPED_FLASH& row : shipped()) {
        const std::vector<MEMBER> members = members_of(row.flash);
        for (size_t position = 0; position < members.size(); ++position) {
            const bool is_text = members[position].tag == TAG_TEXT;
            const auto number_of = [&](const MEMBER& member) {
                return is_text ? std::stoul(member.text) : static_cast<unsigned long>(member.number);
            };
            const unsigned long value = is_text ? members[position].text.size() : members[position].number;
            EXPECT_GE(value, number_of(low[position])) << row << ' ' << members[position].name;
            EXPECT_LE(value, number_of(high[position])) << row << ' ' << members[position].name;
        }
    }
}

// ---- identification ----

TEST(ShippedData, IdentifiesRealChipsByThreeBytes) {
    for (const SHIPPED_FLASH& row : shipped()) {
        const TOVREN_SFL_FLASH_INFO& flash = row.flash;
        if (flash.silicon_id)
            continue;
        EXPECT_EQ(0, flash.mfc_id_index) << row;
        EXPECT_EQ(1, flash.memory_type_index) << row;
        EXPECT_EQ(2, flash.memory_id_index) << row;
        // Neither a line that is held nor one that floats answers like a chip.
        EXPECT_FALSE(flash.mfc_id == 0 && flash.memory_type == 0 && flash.memory_id == 0) << row;
        EXPECT_FALSE(flash.mfc_id == 0xFF && flash.memory_type == 0xFF && flash.memory_id == 0xFF) << row;
    }
}

TEST(ShippedData, IdentifiesOwnDevicesByOneByteEach) {
    std::map<unsigned int, std::string> seen;
    for (const SHIPPED_FLASH& row : shipped()) {
        if (!row.flash.silicon_id)
            continue;
        EXPECT_EQ(0xFF, row.flash.memory_type_index) << row;
        const unsigned int place = row.flash.memory_id_index * 256U + row.flash.memory_id;
        EXPECT_TRUE(seen.emplace(place, row.flash.device_name).second) << row;
    }
}

// ---- figures ----

TEST(ShippedData, HasSectorsThatAddUpToTheSize) {
    for (const SHIPPED_FLASH& row : shipped()) {
        const DWORD bytes = row.flash.device_bit_size / 8;
        EXPECT_EQ(0U, row.flash.device_bit_size % 8) << row;
        ASSERT_GT(row.flash.device_sector_byte, 0U) << row;
        EXPECT_EQ(0U, bytes % row.flash.device_sector_byte) << row;
        EXPECT_GE(bytes, row.flash.device_sector_byte) << row;
    }
}

TEST(ShippedData, NeedsFourAddressBytesAbove16MiB) {
    for (const SHIPPED_FLASH& row : shipped())
        EXPECT_EQ(row.flash.device_bit_size / 8 > 0x1000000, row.flash.byte4_addressing) << row;
}

TEST(ShippedData, HasTimesAndDies) {
    for (const SHIPPED_FLASH& row : shipped()) {
        EXPECT_GE(row.flash.die_count, 1) << row;
        EXPECT_GT(row.flash.bulk_erase_time, 0U) << row;
        EXPECT_GT(row.flash.sec_erase_time, 0U) << row;
        EXPECT_GT(row.flash.program_utime, 0U) << row;
        EXPECT_GE(row.flash.bulk_erase_time, row.flash.sec_erase_time) << row;
    }
}

TEST(ShippedData, HasTheEightCodesByDensity) {
    const std::set<unsigned int> codes = {16, 18, 20, 21, 22, 24, 25, 32};
    std::map<unsigned int, unsigned int> code_of_density;
    for (const SHIPPED_FLASH& row : shipped()) {
        EXPECT_TRUE(codes.contains(row.flash.velkor_id)) << row;
        const auto [known, is_new] = code_of_density.emplace(row.flash.device_bit_size, row.flash.velkor_id);
        EXPECT_EQ(known->second, row.flash.velkor_id) << row;
    }
    unsigned int former = 0;
    for (const auto& [density, code] : code_of_density) {
        EXPECT_GE(code, former) << density;
        former = code;
    }
}

TEST(ShippedData, ProtectsWithAllProtectionBitsAndUnprotectsWithNone) {
    for (const SHIPPED_FLASH& row : shipped()) {
        EXPECT_EQ(row.flash.protection_mask, row.flash.protection_value) << row;
        EXPECT_EQ(0, row.flash.unprotect_value) << row;
    }
}

TEST(ShippedData, HasOneBitForTopOrBottomAndNotAmongTheProtectionBits) {
    for (const SHIPPED_FLASH& row : shipped()) {
        EXPECT_EQ(0, row.flash.bottom_value & (row.flash.bottom_value - 1)) << row;
        EXPECT_EQ(0, row.flash.bottom_value & row.flash.protection_mask) << row;
    }
}

} // namespace
