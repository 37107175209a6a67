// Generating the flash database: the rules of the CSV's rows, what a fault of each kind is reported as, the bytes of
// the file, and what an interrupted or impossible output leaves behind.
#include "fixtures.h"
#include "flash_model.h"
#include "report.h"
#include "tovren_flash_manager.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char ROW_SIZE[] = "DWORD(svec.size()) == TOTAL_DATABASE_MEMBER";
constexpr char NAME_ROW[] = "temp == m_name_list[i]";
constexpr char NOTHING_READ[] = "status && device_count > 0";
constexpr char EMPTY[] = "string.size() > 0";
constexpr char NO_FLAG[] = R"(string == "FALSE" || string == "TRUE")";

class FlashGenerate : public FLASH_TEST {
protected:
    std::string csv_path = folder.path("flash.csv");
    std::string output = folder.path("out.pcf");

    // The file that a CSV of this text gives.
    BYTES generated(const std::string& csv_text) {
        write_text(csv_path, csv_text);
        make_generator()->generate_flash_database(csv_path, output);
        return read_file(output);
    }

    BYTES generated_payload(const std::string& csv_text) {
        const BYTES file = generated(csv_text);
        return inflated({file.begin() + 44, file.end() - 2});
    }

    void check(const std::string& csv_text) {
        write_text(csv_path, csv_text);
        unsigned int flash_count = 0;
        make_generator()->check_flash_file(csv_path, flash_count);
    }

    // A CSV whose only data row is that of QX1 with one cell replaced.
    static std::string with_cell(const std::string& member, const std::string& cell) {
        const TOVREN_SFL_FLASH_INFO flash = make_flash("QX1");
        std::vector<std::string> row = csv_cells(flash);
        const std::vector<MEMBER> members = members_of(flash);
        std::string line;
        for (size_t position = 0; position < row.size(); ++position)
            line += (position == 0 ? "" : ",") + (members[position].name == member ? cell : row[position]);
        return FLASH_CSV().text() + line + "\n";
    }

    // A CSV with one header row replaced.
    static std::string with_header(size_t row, const std::string& line) {
        FLASH_CSV csv({make_flash("QX1")});
        csv.header[row] = line;
        return csv.text();
    }
};

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}

// ---- the file ----

TEST_F(FlashGenerate, WritesTheHeader) {
    const BYTES file = generated(FLASH_CSV({make_flash("QX1")}).text());
    const size_t payload_size = 12 + record_bytes(make_flash("QX1")).size() + 4;
    EXPECT_EQ(join({text_bytes("PGMIO_FM"), text_bytes(TOVREN_FLASH_INFO_CSV_MD5),
                    le32_bytes(static_cast<unsigned int>(payload_size))}),
              first(file, 44));
}

TEST_F(FlashGenerate, WritesTheRecordsInTheCsvsOrder) {
    const std::vector<TOVREN_SFL_FLASH_INFO> flashes = {make_flash("QX2"), make_flash("QX1"), make_flash("QX3")};
    EXPECT_EQ(FLASH_FILE(flashes).payload(), generated_payload(FLASH_CSV(flashes).text()));
}

TEST_F(FlashGenerate, EndsInTwoZeros) {
    const BYTES file = generated(FLASH_CSV({make_flash("QX1")}).text());
    EXPECT_EQ((BYTES{0, 0}), BYTES(file.end() - 2, file.end()));
}

TEST_F(FlashGenerate, WritesTheSameBytesAgain) {
    const std::string csv = FLASH_CSV({make_flash("QX1"), make_flash("QX2")}).text();
    EXPECT_EQ(generated(csv), generated(csv));
}

TEST_F(FlashGenerate, WritesWhatAManagerReadsBack) {
    std::vector<TOVREN_SFL_FLASH_INFO> flashes;
    for (unsigned int number = 0; number < 300; ++number) {
        flashes.push_back(make_flash("QX" + std::to_string(number)));
        flashes.back().memory_id = static_cast<BYTE>(number % 256);
        flashes.back().device_bit_size = number * 0x01010101U;
        flashes.back().micron_flow = number % 3 == 0;
    }
    const MANAGER manager = load(generated(FLASH_CSV(flashes).text()));
    ASSERT_EQ(flashes.size(), manager->m_flash_count);
    for (unsigned int index = 0; index < manager->m_flash_count; ++index)
        EXPECT_EQ(described(flashes[index]), described(*manager->get_flash(index)));
}

TEST_F(FlashGenerate, CountsRecordsThatASwitchHides) {
    TOVREN_SFL_FLASH_INFO hidden = make_flash("QX2");
    hidden.ini = "SOME_KEY";
    const BYTES file = generated(FLASH_CSV({make_flash("QX1"), hidden}).text());
    EXPECT_EQ(2U, inflated({file.begin() + 44, file.end() - 2})[4]);
    EXPECT_EQ(1U, load(file)->m_flash_count);
}

TEST_F(FlashGenerate, WritesTheCompiledInMd5WhateverTheCsv) {
    const BYTES one = generated(FLASH_CSV({make_flash("QX1")}).text());
    const BYTES two = generated(FLASH_CSV({make_flash("QX2")}).text());
    EXPECT_EQ(first(one, 40), first(two, 40));
}

// ---- the payload's size and the number of flashes ----

TEST_F(FlashGenerate, CountsBytesAndFlashes) {
    TOVREN_SFL_FLASH_INFO flash; // 85 bytes and the lengths of the four texts
    flash.manufacturer_name = "1";
    flash.device_name = "22";
    flash.ini = "333";
    flash.asc_voltage = "4444";
    write_text(csv_path, FLASH_CSV({flash, flash, flash}).text());
    unsigned int flash_count = 77;
    EXPECT_EQ(16 + 3 * (85 + 10), make_generator()->check_flash_file(csv_path, flash_count));
    EXPECT_EQ(3U, flash_count);
}

// ---- lines ----

TEST_F(FlashGenerate, IgnoresBlankLinesAnywhere) {
    const std::string csv = FLASH_CSV({make_flash("QX1"), make_flash("QX2")}).text();
    std::string blank = "\n \t\n";
    for (const char character : csv) {
        blank += character;
        if (character == '\n')
            blank += "\n   \n\t\n \r\n";
    }
    EXPECT_EQ(generated(csv), generated(blank));
}

TEST_F(FlashGenerate, TrimsItsLines) {
    const std::string csv = FLASH_CSV({make_flash("QX1")}).text();
    std::string padded = "  ";
    for (const char character : csv)
        padded += character == '\n' ? std::string(" \t\r\n \t") : std::string(1, character);
    EXPECT_EQ(generated(csv), generated(padded));
}

TEST_F(FlashGenerate, TakesALastLineWithoutItsEnd) {
    std::string csv = FLASH_CSV({make_flash("QX1"), make_flash("QX2")}).text();
    const BYTES expected = generated(csv);
    csv.pop_back();
    EXPECT_EQ(expected, generated(csv));
}

TEST_F(FlashGenerate, SeparatesCellsAtBlanksAndTabsToo) {
    const std::string csv = FLASH_CSV({make_flash("QX1")}).text();
    const BYTES expected = generated(csv);
    const FLASH_CSV spaced;
    std::string row;
    for (const std::string& cell : csv_cells(make_flash("QX1")))
        row += cell + (row.size() % 2 == 0 ? " \t " : " , ");
    row.resize(row.find_last_not_of(" \t,") + 1);
    EXPECT_EQ(expected, generated(spaced.text() + row + "\n"));
}

TEST_F(FlashGenerate, ReadsALineOfAnyLength) {
    // A cell that no fixed buffer holds; its own length byte is cut like any other.
    const std::string longest(100000, 'x');
    const BYTES payload = generated_payload(with_cell("asc_voltage", longest));
    EXPECT_EQ(16 + 85 + 7 + 3 + 4 + longest.size(), payload.size());
}

// ---- the header rows ----

TEST_F(FlashGenerate, NeedsTheTypeWordsExactly) {
    const std::string types = FLASH_CSV().header[0];
    const auto text_of = [](const char* word) { return std::string("svec.at(i) == \"") + word + '"'; };
    EXPECT_REPORT(check(with_header(0, replaced(types, "STL_STRING", "string"))), text_of("STL_STRING"),
                  IN_FLASH_GENERATE);
    EXPECT_REPORT(check(with_header(0, replaced(types, "STL_STRING", "stl_string"))), text_of("STL_STRING"),
                  IN_FLASH_GENERATE);
    EXPECT_REPORT(check(with_header(0, replaced(types, "bool", "BOOL"))), text_of("bool"), IN_FLASH_GENERATE);
    EXPECT_REPORT(check(with_header(0, replaced(types, "BYTE", "byte"))), text_of("BYTE"), IN_FLASH_GENERATE);
    EXPECT_REPORT(check(with_header(0, replaced(types, "BYTE", "WORD"))), text_of("BYTE"), IN_FLASH_GENERATE);
    EXPECT_REPORT(check(with_header(0, replaced(types, "DWORD", "dword"))), text_of("DWORD"), IN_FLASH_GENERATE);
}

TEST_F(FlashGenerate, ChecksTheTypeOfEveryMember) {
    const std::vector<MEMBER> members = members_of({});
    for (size_t wrong = 0; wrong < members.size(); ++wrong) {
        std::string row;
        for (size_t position = 0; position < members.size(); ++position) {
            const unsigned char tag = members[position].tag;
            const std::string word = tag == TAG_TEXT   ? "STL_STRING"
                                     : tag == TAG_BOOL ? "bool"
                                     : tag == TAG_BYTE ? "BYTE"
                                                       : "DWORD";
            row += (position == 0 ? "" : ",") + (position == wrong ? "QWORD" : word);
        }
        EXPECT_TRUE(report_of([&] { check(with_header(0, row)); }).has_value()) << members[wrong].name;
    }
}

TEST_F(FlashGenerate, TakesTheNameRowInAnyCase) {
    std::string upper = FLASH_CSV().header[1];
    for (char& character : upper)
        character = static_cast<char>(toupper(character));
    EXPECT_NO_REPORT(check(with_header(1, upper)));
    EXPECT_NO_REPORT(check(with_header(1, replaced(FLASH_CSV().header[1], "device_name", "Device_Name"))));
}

TEST_F(FlashGenerate, ChecksEveryName) {
    for (const MEMBER& member : members_of({})) {
        const std::string row = "," + FLASH_CSV().header[1] + ",";
        const std::string wrong = replaced(row, "," + member.name + ",", ",x" + member.name + ",");
        EXPECT_REPORT(check(with_header(1, wrong.substr(1, wrong.size() - 2))), NAME_ROW, IN_FLASH_GENERATE)
            << member.name;
    }
}

TEST_F(FlashGenerate, NeedsTheNamesInTheirOrder) {
    const std::string row =
        replaced(FLASH_CSV().header[1], "manufacturer_name,device_name", "device_name,manufacturer_name");
    EXPECT_REPORT(check(with_header(1, row)), NAME_ROW, IN_FLASH_GENERATE);
}

TEST_F(FlashGenerate, NeedsAllCellsInTheHeaderRows0And1And4To6) {
    for (const size_t row : {0U, 1U, 4U, 5U, 6U}) {
        for (const unsigned int count : {1U, 5U, 32U, 34U})
            EXPECT_REPORT(check(with_header(row, cells(count))), ROW_SIZE, IN_FLASH_GENERATE) << row << ' ' << count;
    }
}

TEST_F(FlashGenerate, TakesAnyNumberOfCellsInTheHeaderRows2And3And7) {
    for (const size_t row : {2U, 3U, 7U}) {
        for (const unsigned int count : {1U, 5U, 32U, 33U, 34U, 200U})
            EXPECT_NO_REPORT(check(with_header(row, cells(count)))) << row << ' ' << count;
    }
}

TEST_F(FlashGenerate, ReadsNothingInTheHeaderRows2To7) {
    const std::string expected = FLASH_CSV({make_flash("QX1")}).text();
    FLASH_CSV other({make_flash("QX1")});
    for (size_t row = 2; row < 8; ++row)
        other.header[row] = replaced(cells(33), "17", "TRUE");
    EXPECT_EQ(generated(expected), generated(other.text()));
}

// ---- the data rows ----

TEST_F(FlashGenerate, NeedsAllCellsInADataRow) {
    const std::string csv = FLASH_CSV({make_flash("QX1")}).text();
    for (const unsigned int count : {1U, 32U, 34U})
        EXPECT_REPORT(check(csv + cells(count) + "\n"), ROW_SIZE, IN_FLASH_GENERATE) << count;
}

TEST_F(FlashGenerate, NeedsADataRow) {
    EXPECT_REPORT(check(FLASH_CSV().text()), NOTHING_READ, IN_FLASH_GENERATE);
    EXPECT_REPORT(check(""), NOTHING_READ, IN_FLASH_GENERATE);
    EXPECT_REPORT(check("\n\n"), NOTHING_READ, IN_FLASH_GENERATE);
}

TEST_F(FlashGenerate, NeedsACsv) {
    unsigned int flash_count = 0;
    EXPECT_REPORT(make_generator()->check_flash_file(folder.path("none.csv"), flash_count), NOTHING_READ,
                  IN_FLASH_GENERATE);
    EXPECT_REPORT(make_generator()->generate_flash_database(folder.path("none.csv"), output), NOTHING_READ,
                  IN_FLASH_GENERATE);
}

TEST_F(FlashGenerate, TakesNoFolderForACsv) {
    unsigned int flash_count = 0;
    EXPECT_REPORT(make_generator()->check_flash_file(folder.path(), flash_count), NOTHING_READ, IN_FLASH_GENERATE);
}

TEST_F(FlashGenerate, ChecksNoValues) {
    EXPECT_NO_REPORT(check(with_cell("silicon_id", "true")));
    EXPECT_NO_REPORT(check(with_cell("memory_id", "many")));
    EXPECT_NO_REPORT(check(with_cell("device_name", "")));
}

TEST_F(FlashGenerate, WritesNoFlagThatIsNotTrueOrFalse) {
    for (const char* cell : {"true", "false", "1", "0", "yes", ""})
        EXPECT_REPORT(generated(with_cell("default_dev", cell)), NO_FLAG, IN_FLASH_GENERATE) << cell;
}

TEST_F(FlashGenerate, WritesNoEmptyTextAndNoEmptyNumber) {
    EXPECT_REPORT(generated(with_cell("manufacturer_name", "")), EMPTY, IN_FLASH_GENERATE);
    EXPECT_REPORT(generated(with_cell("device_name", "")), EMPTY, IN_FLASH_GENERATE);
    EXPECT_REPORT(generated(with_cell("asc_voltage", "")), EMPTY, IN_FLASH_GENERATE);
    EXPECT_REPORT(generated(with_cell("memory_id", "")), EMPTY, IN_FLASH_GENERATE);
    EXPECT_REPORT(generated(with_cell("device_bit_size", "")), EMPTY, IN_FLASH_GENERATE);
}

TEST_F(FlashGenerate, WritesNoBadNumber) {
    // The host's own report: its converter is what refuses.
    for (const char* cell : {"many", "12x", "0x", "-1", "4294967296"}) {
        const std::optional<REPORT> report = report_of([&] { generated(with_cell("program_utime", cell)); });
        ASSERT_TRUE(report.has_value()) << cell;
        EXPECT_NE("TOVREN", report->prefix);
    }
}

TEST_F(FlashGenerate, TakesHexadecimalNumbers) {
    EXPECT_EQ(generated(with_cell("memory_id", "90")), generated(with_cell("memory_id", "0x5A")));
    EXPECT_EQ(generated(with_cell("program_utime", "305419896")), generated(with_cell("program_utime", "0X12345678")));
}

TEST_F(FlashGenerate, CutsANumberToItsMember) {
    EXPECT_EQ(generated(with_cell("die_count", "44")), generated(with_cell("die_count", "300")));
    EXPECT_EQ(generated(with_cell("die_count", "255")), generated(with_cell("die_count", "4294967295")));
}

TEST_F(FlashGenerate, WritesALongTextThatCannotBeReadBack) {
    const std::string csv = with_cell("manufacturer_name", std::string(300, 'x'));
    const BYTES payload = generated_payload(csv);
    EXPECT_EQ(join({{2, 44}, BYTES(300, 'x')}), BYTES(payload.begin() + 12, payload.begin() + 12 + 302));
    EXPECT_REPORT(load(generated(csv)), "type == TOVREN_MANAGER_STRING", IN_DB_STREAM);
}

TEST_F(FlashGenerate, WritesOneRowByItself) {
    const MANAGER manager = make_generator();
    const BYTES expected = record_bytes(make_flash("QX1"));
    BYTES bytes(expected.size());
    unsigned char* buffer = bytes.data();
    unsigned int index = 0;
    manager->dump_to_database(&buffer, index, csv_cells(make_flash("QX1")));
    EXPECT_EQ(expected.size() - 4, index);
    EXPECT_EQ(first(expected, index), first(bytes, index));
}

TEST_F(FlashGenerate, WritesNoRowOfAnotherSize) {
    std::vector<std::string> row = csv_cells(make_flash("QX1"));
    BYTES bytes(500);
    unsigned char* buffer = bytes.data();
    unsigned int index = 0;
    row.emplace_back("more");
    EXPECT_REPORT(make_generator()->dump_to_database(&buffer, index, row), "svec.size() == TOTAL_DATABASE_MEMBER",
                  IN_FLASH_GENERATE);
    row.resize(32);
    EXPECT_REPORT(make_generator()->dump_to_database(&buffer, index, row), "svec.size() == TOTAL_DATABASE_MEMBER",
                  IN_FLASH_GENERATE);
    EXPECT_EQ(0U, index);
}

TEST_F(FlashGenerate, ReportsACsvThatIsAnotherOneInTheSecondPass) {
    // A pipe is empty once it was read.
    int ends[2];
    ASSERT_EQ(0, pipe(ends));
    const std::string csv = FLASH_CSV({make_flash("QX1")}).text();
    ASSERT_EQ(static_cast<ssize_t>(csv.size()), write(ends[1], csv.data(), csv.size()));
    close(ends[1]);
    const std::string path = "/dev/fd/" + std::to_string(ends[0]);
    EXPECT_REPORT(make_generator()->generate_flash_database(path, output), "index == memory_size", IN_FLASH_GENERATE);
    close(ends[0]);
}

// ---- the output ----

TEST_F(FlashGenerate, ReplacesAnOlderOutput) {
    write_text(output, std::string(100000, 'o'));
    const BYTES file = generated(FLASH_CSV({make_flash("QX1")}).text());
    EXPECT_EQ(1U, load(file)->m_flash_count);
}

TEST_F(FlashGenerate, LeavesTheOlderOutputWholeWhenTheCsvIsWrong) {
    write_text(output, "older");
    EXPECT_TRUE(report_of([&] { generated(with_cell("default_dev", "yes")); }).has_value());
    EXPECT_EQ("older", read_text(output));
    EXPECT_EQ((std::vector<std::string>{"flash.csv", "out.pcf", "programmer"}), folder.names());
}

TEST_F(FlashGenerate, LeavesNothingBehindWhenTheCsvIsWrong) {
    EXPECT_TRUE(report_of([&] { generated(with_cell("default_dev", "yes")); }).has_value());
    EXPECT_EQ((std::vector<std::string>{"flash.csv", "programmer"}), folder.names());
}

TEST_F(FlashGenerate, LeavesNothingButTheOutputBehind) {
    generated(FLASH_CSV({make_flash("QX1")}).text());
    EXPECT_EQ((std::vector<std::string>{"flash.csv", "out.pcf", "programmer"}), folder.names());
}

// No file may grow beyond so many bytes, as on a disk that is full.
class FULL_DISK {
public:
    explicit FULL_DISK(rlim_t size) : m_former_action(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_former);
        const rlimit limit = {size, m_former.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FULL_DISK() {
        setrlimit(RLIMIT_FSIZE, &m_former);
        std::signal(SIGXFSZ, m_former_action);
    }
    FULL_DISK(const FULL_DISK&) = delete;
    FULL_DISK& operator=(const FULL_DISK&) = delete;

private:
    rlimit m_former{};
    void (*m_former_action)(int);
};

TEST_F(FlashGenerate, LeavesTheOlderOutputWholeOnAFullDisk) {
    write_text(output, "older");
    write_text(csv_path, FLASH_CSV({make_flash("QX1")}).text());
    for (const rlim_t size : {0U, 1U, 44U, 100U}) {
        std::optional<REPORT> report;
        {
            const FULL_DISK full(size);
            report = report_of([&] { make_generator()->generate_flash_database(csv_path, output); });
        }
        EXPECT_TRUE(is_report(report, "output_is_written", IN_DB_STREAM)) << size;
        EXPECT_EQ("older", read_text(output));
        EXPECT_EQ((std::vector<std::string>{"flash.csv", "out.pcf", "programmer"}), folder.names());
    }
}

TEST_F(FlashGenerate, ReportsAnOutputThatCannotBeOpened) {
    write_text(csv_path, FLASH_CSV({make_flash("QX1")}).text());
    for (const std::string& path :
         {folder.path("none/out.pcf"), folder.path("programmer"), folder.path("flash.csv/x"), std::string()})
        EXPECT_REPORT(make_generator()->generate_flash_database(csv_path, path), "output_is_written", IN_DB_STREAM)
            << path;
}

TEST_F(FlashGenerate, ReportsADeviceThatTakesNothing) {
    write_text(csv_path, FLASH_CSV({make_flash("QX1")}).text());
    EXPECT_REPORT(make_generator()->generate_flash_database(csv_path, "/dev/full"), "output_is_written", IN_DB_STREAM);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(FlashGenerate, FollowsALinkToTheOutput) {
    write_text(folder.path("real.pcf"), "older");
    std::filesystem::create_symlink("real.pcf", output);
    const BYTES file = generated(FLASH_CSV({make_flash("QX1")}).text());
    EXPECT_TRUE(std::filesystem::is_symlink(output));
    EXPECT_EQ(file, read_file(folder.path("real.pcf")));
}

TEST_F(FlashGenerate, KeepsTheOlderOutputsPermissions) {
    write_text(output, "older");
    ASSERT_EQ(0, chmod(output.c_str(), 0640));
    generated(FLASH_CSV({make_flash("QX1")}).text());
    struct stat status {};
    ASSERT_EQ(0, stat(output.c_str(), &status));
    EXPECT_EQ(0640U, status.st_mode & 0777U);
}

} // namespace
