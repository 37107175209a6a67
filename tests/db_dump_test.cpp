// The description that a database's records make: generating from it gives the same records, and what no cell can hold
// is told.
#include "device_fixtures.h"
#include "fixtures.h"
#include "tool_db_csv.h"
#include "tovren_standalone_host.h"

#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <sstream>

namespace {

using RANDOM = std::mt19937;

unsigned int drawn(RANDOM& source, unsigned int bound) {
    return std::uniform_int_distribution<unsigned int>(0, bound - 1)(source);
}

TOOL_DB_CSV dumped(const std::string& path) {
    const TOOL_DB_FILE file = tool_read_db_file(path);
    EXPECT_TRUE(file.faults.empty()) << file.faults.front().reason;
    return tool_db_csv(file);
}

// "record member", one a fault.
std::vector<std::string> places(const TOOL_DB_CSV& csv) {
    std::vector<std::string> places;
    for (const TOOL_DB_CSV_FAULT& fault : csv.faults)
        places.push_back(std::to_string(fault.record) + " " + fault.member);
    return places;
}

std::vector<std::string> lines_of(const std::string& text) {
    std::istringstream input(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(input, line);)
        lines.push_back(line);
    return lines;
}

BYTES payload_of(const BYTES& file) {
    return inflated(BYTES(file.begin() + 44, file.end() - 2));
}

// ---- flashes ----

class DbDumpFlash : public FLASH_TEST {
protected:
    // The payload that generating from the dump of this file gives.
    BYTES regenerated(const BYTES& file) {
        put_database(file);
        const TOOL_DB_CSV csv = dumped(database);
        EXPECT_EQ(std::vector<std::string>(), places(csv));
        write_text(description, csv.text);
        make_generator()->generate_flash_database(description, output);
        return payload_of(read_file(output));
    }

    std::vector<std::string> faults_of(const TOVREN_SFL_FLASH_INFO& flash) {
        put_database(FLASH_FILE({make_flash("QX"), flash}).bytes());
        return places(dumped(database));
    }

    std::string description = folder.path("dump.csv");
    std::string output = folder.path("again.pcf");
};

TEST_F(DbDumpFlash, GivesTheShippedDatabaseAgain) {
    const std::string shipped = std::string(SHIPPED_DATABASE_ROOT) + "/programmer/pgm_flash.pcf";
    write_text(description, dumped(shipped).text);
    make_generator()->generate_flash_database(description, output);
    EXPECT_EQ(read_file(shipped), read_file(output));
}

TEST_F(DbDumpFlash, WritesRowsAsTheShippedDescriptionHasThem) {
    const auto shipped = lines_of(read_text(SHIPPED_FLASH_CSV));
    const auto lines = lines_of(dumped(std::string(SHIPPED_DATABASE_ROOT) + "/programmer/pgm_flash.pcf").text);
    ASSERT_EQ(shipped.size(), lines.size());
    // The other header rows are comments, and limits that a database does not know.
    for (const size_t row : {size_t{0}, size_t{1}, size_t{4}, size_t{7}})
        EXPECT_EQ(shipped[row], lines[row]);
    for (size_t row = 8; row < lines.size(); ++row)
        EXPECT_EQ(shipped[row], lines[row]);
}

TEST_F(DbDumpFlash, HasTheLowestAndTheHighestValuesInItsHeader) {
    TOVREN_SFL_FLASH_INFO low = make_flash("Q");
    TOVREN_SFL_FLASH_INFO high = make_flash("QXLONG");
    low.memory_id = 0x0A;
    high.memory_id = 0xB1;
    low.device_bit_size = 7;
    high.device_bit_size = 4294967295;
    high.silicon_id = true;
    put_database(FLASH_FILE({high, low}).bytes());
    const auto lines = lines_of(dumped(database).text);
    EXPECT_TRUE(lines[5].starts_with("7,1,FALSE,0x0A,2,0x40,1,0xA1,0,24,TRUE,4,TRUE,")) << lines[5];
    EXPECT_TRUE(lines[6].starts_with("7,6,TRUE,0xB1,2,0x40,1,0xA1,0,24,TRUE,4,TRUE,")) << lines[6];
    EXPECT_NE(std::string::npos, lines[5].find(",7,65536,"));
    EXPECT_NE(std::string::npos, lines[6].find(",4294967295,65536,"));
}

TEST_F(DbDumpFlash, KeepsEveryMemberInItsColumn) {
    TOVREN_SFL_FLASH_INFO flash = make_flash("QXA");
    put_database(FLASH_FILE({flash}).bytes());
    EXPECT_EQ("QXMAKER,QXA,FALSE,0x18,2,0x40,1,0xA1,0,24,TRUE,NONE,TRUE,FALSE,TRUE,FALSE,TRUE,FALSE,3,134217728,65536,"
              "FALSE,TRUE,200,2,3000,0x7C,0x5C,0x04,255,0x20,FALSE,1.8V",
              lines_of(dumped(database).text).at(8));
}

// Characters that a cell holds as they are, whatever they mean elsewhere.
std::string random_text(RANDOM& source) {
    static const std::string CHARACTERS = "AZaz09_-./\"'#;\\\r\v\f\xEF\xBB\xBF\x80\x7F\x01=" + std::string(1, '\0');
    std::string text = "x";
    const unsigned int lengths[] = {0, 1, 6, 40, 253};
    for (unsigned int left = lengths[drawn(source, 5)]; left > 0; --left)
        text += CHARACTERS[drawn(source, static_cast<unsigned int>(CHARACTERS.size()))];
    return text + 'y';
}

unsigned int random_number(RANDOM& source) {
    const unsigned int numbers[] = {
        0, 1, 0xFF, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, drawn(source, 300), drawn(source, 0xFFFFFFFF)};
    return numbers[drawn(source, 8)];
}

TOVREN_SFL_FLASH_INFO random_flash(RANDOM& source) {
    TOVREN_SFL_FLASH_INFO flash;
    tovren_visit_members(flash, [&source](const char*, auto& member) {
        using VALUE = std::decay_t<decltype(member)>;
        if constexpr (std::is_same_v<VALUE, std::string>)
            member = random_text(source);
        else if constexpr (std::is_same_v<VALUE, bool>)
            member = drawn(source, 2) == 1;
        else
            member = static_cast<VALUE>(random_number(source));
    });
    return flash;
}

TEST_F(DbDumpFlash, GivesRandomRecordsAgain) {
    for (unsigned int seed = 0; seed < 60; ++seed) {
        RANDOM source(seed);
        std::vector<TOVREN_SFL_FLASH_INFO> flashes(1 + drawn(source, 40));
        for (TOVREN_SFL_FLASH_INFO& flash : flashes)
            flash = random_flash(source);
        const FLASH_FILE file(flashes);
        ASSERT_EQ(file.payload(), regenerated(file.bytes())) << "seed " << seed;
    }
}

// Whether a cell of a row holds it: from docs/formats/flash_csv.md.
bool is_carried(char c, bool begins_the_row, bool ends_the_row) {
    if (c == ' ' || c == '\t' || c == '\n' || c == ',')
        return false;
    return !(begins_the_row || ends_the_row) || (c != '\r' && c != '\v' && c != '\f');
}

TEST_F(DbDumpFlash, TellsEveryCharacterThatACellDoesNotHold) {
    for (int code = 0; code < 256; ++code) {
        const auto c = static_cast<char>(code);
        const std::string at_front = c + std::string("x");
        const std::string at_end = std::string("x") + c;
        TOVREN_SFL_FLASH_INFO flash = make_flash(at_front + c + "y");
        flash.manufacturer_name = at_front;
        flash.ini = at_end;
        flash.asc_voltage = at_end;
        std::vector<std::string> expected;
        if (!is_carried(c, true, false))
            expected.emplace_back("1 manufacturer_name");
        if (!is_carried(c, false, false))
            expected.insert(expected.end(), {"1 device_name", "1 ini"});
        if (!is_carried(c, false, true))
            expected.emplace_back("1 asc_voltage");
        EXPECT_EQ(expected, faults_of(flash)) << "character " << code;
    }
}

TEST_F(DbDumpFlash, CarriesTheCharactersThatItDoesNotTell) {
    for (int code = 0; code < 256; ++code) {
        const auto c = static_cast<char>(code);
        TOVREN_SFL_FLASH_INFO flash = make_flash("QX");
        flash.manufacturer_name = std::string("x") + c; // white space at this end is in the middle of the row
        flash.device_name = std::string(1, c);
        flash.asc_voltage = c + std::string("x");
        if (!is_carried(c, false, false))
            continue;
        const FLASH_FILE file({flash, make_flash("QY")});
        EXPECT_EQ(file.payload(), regenerated(file.bytes())) << "character " << code;
    }
}

TEST_F(DbDumpFlash, TellsAnEmptyText) {
    TOVREN_SFL_FLASH_INFO flash = make_flash("");
    flash.asc_voltage.clear();
    EXPECT_EQ((std::vector<std::string>{"1 device_name", "1 asc_voltage"}), faults_of(flash));
}

// ---- devices ----

class DbDumpDevice : public DEVICE_TEST {
protected:
    void generate(const std::string& csv_text, const std::string& output) {
        write_text(description, csv_text);
        standard_error_of([&] { make_generator()->generate_device_database(description, output); });
    }

    std::string description = folder.path("dump.csv");
    std::string first = folder.path("first.pcf");
    std::string again = folder.path("again.pcf");
};

TEST_F(DbDumpDevice, GivesTheShippedDatabaseAgain) {
    TOVREN_STANDALONE_HOST::set_product_root(SHIPPED_PRODUCT_ROOT);
    const std::string shipped = std::string(SHIPPED_DATABASE_ROOT) + "/programmer/pgm_dev_info.pcf";
    generate(dumped(shipped).text, again);
    EXPECT_EQ(read_file(shipped), read_file(again));
}

TEST_F(DbDumpDevice, WritesCellsAsTheShippedDescriptionHasThem) {
    const auto shipped = lines_of(read_text(SHIPPED_DEVICES_CSV));
    const auto lines = lines_of(dumped(std::string(SHIPPED_DATABASE_ROOT) + "/programmer/pgm_dev_info.pcf").text);
    ASSERT_EQ(shipped.size(), lines.size());
    EXPECT_EQ(shipped[0], lines[0]);
    EXPECT_EQ(shipped[1], lines[1]);
    // QUARN-1: a flag that was left empty is a false one.
    EXPECT_TRUE(
        lines[2].starts_with("QUARN-1,,,,FALSE,FALSE,FALSE,TRUE,TRUE,FALSE,TRUE,TRUE,TRUE,TRUE,,TRUE,FALSE,FALSE,"
                             "FALSE,FALSE,FALSE,TRUE,FALSE,41000,224,230,12,0xE0,128,256,64,0,"
                             "DEV_FAMILY_QUARN_1,2,4,0,0,CFG_BLOCK_IOCSR,CFG_BLOCK_CORE,8,TRUE,"))
        << lines[2];
}

std::string random_cell(RANDOM& source, const DEVICE_MEMBER& member) {
    const std::string type = member.type;
    if (type == "bool")
        return std::vector<std::string>{"", "TRUE", "FALSE"}[drawn(source, 3)];
    if (type == "STL_STRING" || type == "DEVID_STR")
        return drawn(source, 2) == 0 ? "" : random_text(source);
    if (type == "ENUM") {
        const auto& names = TOVREN_DEV_INFO_MANAGER::m_supported_enum_list;
        return names[drawn(source, static_cast<unsigned int>(names.size()))].name;
    }
    const unsigned int number = random_number(source);
    return std::to_string(type == "BYTE" ? number & 0xFF : type == "WORD" ? number & 0xFFFF : number);
}

DEVICE_ROW random_row(RANDOM& source, const DEVICE_ROW& keys) {
    DEVICE_ROW row = keys;
    for (size_t i = 4; i < row.cells.size(); ++i)
        row.cells[i] = random_cell(source, device_members()[i]);
    return row;
}

TEST_F(DbDumpDevice, GivesRandomRecordsAgain) {
    for (unsigned int seed = 0; seed < 20; ++seed) {
        RANDOM source(seed);
        DEVICE_CSV csv(make_device_rows());
        csv.rows[2] = csv.rows[2].with("pcf", "").with("device", "GENERIC");
        csv.rows[3] = csv.rows[3].with("pcf", "").with("part", "GENERIC");
        for (DEVICE_ROW& row : csv.rows)
            row = random_row(source, row);
        generate(csv.text(), first);
        generate(dumped(first).text, again);
        ASSERT_EQ(read_file(first), read_file(again)) << "seed " << seed;
    }
}

TEST_F(DbDumpDevice, TellsANumberThatNoNameStandsFor) {
    auto rows = make_device_rows();
    rows[4] = rows[4].with("family", "74").with("device", "2").with("default_prog_mode", "99");
    write_file(first, DEVICE_DATABASE(rows).bytes());
    EXPECT_EQ((std::vector<std::string>{"4 family", "4 device", "4 default_prog_mode"}), places(dumped(first)));
}

TEST_F(DbDumpDevice, TakesTheNameOfAnotherEnumerationForANumberThatItsOwnDoesNotHave) {
    auto rows = make_device_rows();
    rows[4] = rows[4].with("default_prog_mode", "4"); // programming modes end at 3, and the block TRAILER is 4
    write_file(first, DEVICE_DATABASE(rows).bytes());
    const TOOL_DB_CSV csv = dumped(first);
    ASSERT_TRUE(csv.faults.empty());
    generate(csv.text, again);
    EXPECT_EQ(4U, load(read_file(again))->get_record(4)->default_prog_mode);
}

TEST_F(DbDumpDevice, TellsASeparatorInATextAndLeavesAnEmptyOneAlone) {
    auto rows = make_device_rows();
    rows[3].cells[device_member_position("cfg_dev")] = "QX 16";
    rows[78].cells[device_member_position("pcf")] = "A,B";
    rows[5].cells[device_member_position("dummy_string")] = "";
    write_file(first, DEVICE_DATABASE(rows).bytes());
    EXPECT_EQ((std::vector<std::string>{"3 cfg_dev", "78 pcf"}), places(dumped(first)));
}

} // namespace
