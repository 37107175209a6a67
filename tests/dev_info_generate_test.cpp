// Generating the device database: the rules of the CSV's rows, what a fault of each kind is reported as, the bytes of
// the file, and what an impossible output leaves behind.
#include "device_fixtures.h"
#include "tovren_dev_info_manager.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <stdexcept>
#include <sys/resource.h>

namespace {

constexpr char ROW_SIZE[] = "DWORD(svec.size()) == TOTAL_DEVICE_DATABASE_MEMBER";
constexpr char NAME_ROW[] = "temp == m_db_name_list[i]";
constexpr char ROW_COUNT[] = "device_count == TOTAL_DATABASE_DEVICE";
constexpr char NO_FLAG[] = R"(string == "" || string == "FALSE" || string == "TRUE")";

class DevInfoGenerate : public DEVICE_TEST {
protected:
    DEVICE_CSV csv{make_device_rows()};
    std::string csv_path = folder.path("devices.csv");
    std::string output = folder.path("out.pcf");

    // Generates from a CSV of this text; the notices of missing families are thrown away.
    MANAGER generate(const std::string& csv_text) {
        write_text(csv_path, csv_text);
        MANAGER manager = make_generator();
        standard_error_of([&] { manager->generate_device_database(csv_path, output); });
        return manager;
    }

    // The record part of the payload that a CSV of this text gives.
    BYTES generated_records(const std::string& csv_text) {
        const MANAGER manager = generate(csv_text);
        const BYTES file = read_file(output);
        const BYTES payload = inflated({file.begin() + 44, file.end() - 2});
        return first(payload, payload.size() - manager->get_table_size());
    }

    BYTES expected_records() const { return DEVICE_DATABASE(csv.rows).record_part(); }

    unsigned int checked_size(const std::string& csv_text) {
        write_text(csv_path, csv_text);
        unsigned int device_count = 0;
        const unsigned int size = make_generator()->check_device_file(csv_path, device_count);
        EXPECT_EQ(79U, device_count);
        return size;
    }

    void check(const std::string& csv_text) { checked_size(csv_text); }

    // The CSV with a member of its first record replaced.
    std::string with_cell(const std::string& member, const std::string& cell) const {
        DEVICE_CSV changed = csv;
        changed.rows[0] = changed.rows[0].with(member, cell);
        return changed.text();
    }
};

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}

std::string everywhere(std::string text, const std::string& from, const std::string& to) {
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

// ---- rows ----

TEST_F(DevInfoGenerate, EncodesEveryRecordInTheCsvsOrder) {
    EXPECT_EQ(hex_text(expected_records()), hex_text(generated_records(csv.text())));
}

TEST_F(DevInfoGenerate, KnowsTheSizeOfTheRecordPartAsALoadedManagerDoes) {
    EXPECT_EQ(expected_records().size(), generate(csv.text())->m_csv_memory_size);
}

TEST_F(DevInfoGenerate, AnnouncesTheExactSizeOfTheRecords) {
    // 12 for the counts, 4 for END2, and for each record 276 without its texts: 33 numbers of 5 bytes, 37 flags and 10
    // bytes of 2, a word of 3, 5 texts of 2, END1.
    size_t characters = std::string("T15T61T77T82").size();
    for (unsigned int row = 2; row < 79; ++row)
        characters += ("SPARE_" + std::to_string(row)).size();
    EXPECT_EQ(12 + 79 * 276 + characters + 4, checked_size(csv.text()));
}

TEST_F(DevInfoGenerate, IgnoresBlankLinesEverywhere) {
    EXPECT_EQ(hex_text(expected_records()),
              hex_text(generated_records("\n \t\n" + everywhere(csv.text(), "\n", "\r\n \t \r\n\n"))));
}

TEST_F(DevInfoGenerate, TakesALastLineWithoutItsEnd) {
    std::string text = csv.text();
    text.pop_back();
    EXPECT_EQ(hex_text(expected_records()), hex_text(generated_records(text)));
}

TEST_F(DevInfoGenerate, HasNoCommentLines) {
    EXPECT_REPORT(check("// devices\n" + csv.text()), ROW_SIZE, IN_DEVICE_GENERATE);
    EXPECT_REPORT(check(csv.text() + "# devices\n"), ROW_SIZE, IN_DEVICE_GENERATE);
}

TEST_F(DevInfoGenerate, TakesBlanksAroundCommas) {
    EXPECT_EQ(hex_text(expected_records()), hex_text(generated_records(everywhere(csv.text(), ",", " ,\t "))));
}

TEST_F(DevInfoGenerate, TakesBlanksAsSeparatorsOfFullCells) {
    const std::string text = csv.types.text() + "\n" + csv.names.text() + "\n";
    EXPECT_EQ(hex_text(expected_records()),
              hex_text(generated_records(replaced(csv.text(), text, everywhere(text, ",", " \t")))));
}

TEST_F(DevInfoGenerate, TakesTheNameRowInAnyLetterCase) {
    std::string names = csv.names.text();
    for (size_t at = 0; at < names.size(); at += 2)
        names[at] = static_cast<char>(toupper(names[at]));
    EXPECT_EQ(hex_text(expected_records()), hex_text(generated_records(replaced(csv.text(), csv.names.text(), names))));
}

TEST_F(DevInfoGenerate, RefusesAnyOtherNameInTheNameRow) {
    for (const DEVICE_MEMBER& member : device_members()) {
        DEVICE_CSV wrong = csv;
        wrong.names = wrong.names.with(member.name, "x");
        EXPECT_REPORT(check(wrong.text()), NAME_ROW, IN_DEVICE_GENERATE) << member.name;
    }
    EXPECT_REPORT(check(replaced(csv.text(), "alignement", "alignment")), NAME_ROW, IN_DEVICE_GENERATE);
    EXPECT_REPORT(check(replaced(csv.text(), "family,pcf,", "pcf,family,")), NAME_ROW, IN_DEVICE_GENERATE);
}

TEST_F(DevInfoGenerate, RefusesAnyOtherWordInTheTypeRow) {
    for (const DEVICE_MEMBER& member : device_members()) {
        DEVICE_CSV wrong = csv;
        wrong.types = wrong.types.with(member.name, "x");
        EXPECT_REPORT(check(wrong.text()), "svec.at(i) == \"" + std::string(member.type) + "\"", IN_DEVICE_GENERATE)
            << member.name;
    }
}

TEST_F(DevInfoGenerate, MindsTheLetterCaseOfTheTypeRow) {
    EXPECT_REPORT(check(replaced(csv.text(), "bool", "BOOL")), R"(svec.at(i) == "bool")", IN_DEVICE_GENERATE);
    EXPECT_REPORT(check(replaced(csv.text(), "WORD", "word")), R"(svec.at(i) == "DWORD")", IN_DEVICE_GENERATE);
    EXPECT_REPORT(check(replaced(csv.text(), "DEVID_STR", "DEVID_Str")), R"(svec.at(i) == "DEVID_STR")",
                  IN_DEVICE_GENERATE);
}

TEST_F(DevInfoGenerate, NeedsEightySixCellsInEveryRow) {
    for (const std::string& row : {csv.types.text(), csv.names.text(), csv.rows[0].text(), csv.rows[78].text()}) {
        EXPECT_REPORT(check(replaced(csv.text(), row, row + ",x")), ROW_SIZE, IN_DEVICE_GENERATE) << row;
        EXPECT_REPORT(check(replaced(csv.text(), row, row.substr(0, row.rfind(',')))), ROW_SIZE, IN_DEVICE_GENERATE)
            << row;
    }
}

TEST_F(DevInfoGenerate, CountsTheCellsOfARowBeforeItReadsThem) {
    EXPECT_REPORT(check(replaced(csv.text(), csv.types.text(), "x,y,z")), ROW_SIZE, IN_DEVICE_GENERATE);
    EXPECT_REPORT(check(replaced(csv.text(), csv.names.text(), "x,y,z")), ROW_SIZE, IN_DEVICE_GENERATE);
}

TEST_F(DevInfoGenerate, ReadsTheTypeRowBeforeTheNameRowAndCellsFromTheLeft) {
    DEVICE_CSV wrong = csv;
    wrong.types = wrong.types.with("pcf", "x").with("dummy_bool", "x");
    wrong.names = wrong.names.with("family", "x");
    EXPECT_REPORT(check(wrong.text()), R"(svec.at(i) == "DEVID_STR")", IN_DEVICE_GENERATE);
    wrong = csv;
    wrong.names = wrong.names.with("dummy_bool", "x");
    wrong.rows[0].cells.pop_back();
    EXPECT_REPORT(check(wrong.text()), NAME_ROW, IN_DEVICE_GENERATE);
}

TEST_F(DevInfoGenerate, NeedsExactly79Records) {
    csv.rows.pop_back();
    EXPECT_REPORT(check(csv.text()), ROW_COUNT, IN_DEVICE_GENERATE);
    csv.rows.resize(80, csv.rows[5]);
    EXPECT_REPORT(check(csv.text()), ROW_COUNT, IN_DEVICE_GENERATE);
    csv.rows.clear();
    EXPECT_REPORT(check(csv.text()), ROW_COUNT, IN_DEVICE_GENERATE);
    EXPECT_REPORT(check(csv.types.text()), ROW_COUNT, IN_DEVICE_GENERATE);
    EXPECT_REPORT(check(" \n\n"), ROW_COUNT, IN_DEVICE_GENERATE);
    EXPECT_REPORT(check(""), ROW_COUNT, IN_DEVICE_GENERATE);
}

TEST_F(DevInfoGenerate, ReadsAllRowsBeforeItCountsThem) {
    csv.rows.resize(81, csv.rows[5]);
    csv.rows.back().cells.pop_back();
    EXPECT_REPORT(check(csv.text()), ROW_SIZE, IN_DEVICE_GENERATE);
}

TEST_F(DevInfoGenerate, NeedsACsvThatCanBeRead) {
    const MANAGER manager = make_generator();
    unsigned int device_count = 0;
    EXPECT_REPORT(manager->check_device_file(folder.path("missing.csv"), device_count), "status", IN_DEVICE_GENERATE);
    EXPECT_REPORT(manager->check_device_file(folder.path(), device_count), "status", IN_DEVICE_GENERATE);
    EXPECT_REPORT(manager->generate_device_database(folder.path("missing.csv"), output), "status", IN_DEVICE_GENERATE);
    EXPECT_FALSE(std::filesystem::exists(output));
}

TEST_F(DevInfoGenerate, TakesLinesOfUpTo10239Characters) {
    std::string row = csv.rows[0].text();
    row.insert(row.find(','), std::string(10239 - row.size(), ' '));
    ASSERT_EQ(10239U, row.size());
    EXPECT_EQ(hex_text(expected_records()), hex_text(generated_records(replaced(csv.text(), csv.rows[0].text(), row))));
}

TEST_F(DevInfoGenerate, TakesNoLongerLineInSilence) {
    for (const size_t size : {10240U, 10241U, 20480U, 100000U}) {
        std::string row = csv.rows[0].text();
        row.insert(row.find(','), std::string(size - row.size(), ' '));
        EXPECT_REPORT(generate(replaced(csv.text(), csv.rows[0].text(), row)), "line.size() < 10240",
                      IN_DEVICE_GENERATE)
            << size;
        EXPECT_FALSE(std::filesystem::exists(output));
    }
}

// ---- cells ----

class DevInfoCells : public DEVICE_TEST {
protected:
    MANAGER manager = make_generator();

    std::string written_name(const std::string& name, const std::string& list) {
        BYTES bytes(5);
        unsigned char* buffer = bytes.data();
        unsigned int index = 0;
        manager->dump_enum_to_database(&buffer, index, name, list);
        EXPECT_EQ(5U, index);
        return hex_text(bytes);
    }

    void write_row(const std::vector<std::string>& cells) {
        BYTES bytes(10000);
        unsigned char* buffer = bytes.data();
        unsigned int index = 0;
        manager->dump_to_database(&buffer, index, cells);
        written = first(bytes, index);
    }

    BYTES written;
};

TEST_F(DevInfoCells, OfEnumerationsBearTagSeven) {
    EXPECT_EQ("07 01 00 00 00", written_name("QUARN-1", "family"));
    EXPECT_EQ("07 49 00 00 00", written_name("GENERIC", "family"));
    EXPECT_EQ("07 00 00 00 00", written_name("", "family"));
    EXPECT_EQ("07 17 04 00 00", written_name("GENERIC", "device"));
    EXPECT_EQ("07 00 00 00 00", written_name("", "device"));
    EXPECT_EQ(hex_text(join({{7}, le32_bytes(DEV_PART_GENERIC)})), written_name("GENERIC", "part"));
    EXPECT_EQ(hex_text(join({{7}, le32_bytes(DEV_PART_INVALID)})), written_name("", "part"));
    EXPECT_EQ("07 04 00 00 00", written_name("CFG_BLOCK_TRAILER", ""));
    EXPECT_EQ("07 03 00 00 00", written_name("PROG_MODE_ACTIVE_SERIAL", ""));
}

TEST_F(DevInfoCells, OfEnumerationsAreNamesOfTheirListToTheLetter) {
    for (const char* name : {"quarn-1", "QUARN-1 ", "QUARN-", "QUARN-1X", "1", "CFG_BLOCK_NONE", "NO_SUCH_FAMILY"})
        EXPECT_REPORT(written_name(name, "family"), "found", IN_DEVICE_GENERATE) << name;
    for (const char* name : {"generic", "QUARN-1", "QA02A"})
        EXPECT_REPORT(written_name(name, "device"), "found", IN_DEVICE_GENERATE) << name;
    for (const char* name : {"Generic", "QUARN-1", "QA02AE144C6"})
        EXPECT_REPORT(written_name(name, "part"), "found", IN_DEVICE_GENERATE) << name;
    for (const char* name : {"", "cfg_block_none", "GENERIC", "2", "QUARN-1"})
        EXPECT_REPORT(written_name(name, ""), "found", IN_DEVICE_GENERATE) << name;
}

TEST_F(DevInfoCells, OfEnumerationsHaveNoOtherListThanTheFour) {
    for (const char* list : {"pcf", "Family", "families", " "})
        EXPECT_REPORT(written_name("GENERIC", list), "type_name.empty()", IN_DEVICE_GENERATE) << list;
}

TEST_F(DevInfoCells, OfARowAreEncodedMemberByMember) {
    const DEVICE_ROW row = make_device_row().with("pcf", "QX").with("part", "GENERIC");
    write_row(row.cells);
    const BYTES expected = row.bytes();
    EXPECT_EQ(hex_text(first(expected, expected.size() - 4)), hex_text(written)); // whose END1 the generator writes
}

TEST_F(DevInfoCells, AreCountedBeforeARowIsEncoded) {
    DEVICE_ROW row = make_device_row().with("family", "NO_SUCH_FAMILY");
    row.cells.pop_back();
    EXPECT_REPORT(write_row(row.cells), "svec.size() == TOTAL_DEVICE_DATABASE_MEMBER", IN_DEVICE_GENERATE);
    row.cells.resize(87);
    EXPECT_REPORT(write_row(row.cells), "svec.size() == TOTAL_DEVICE_DATABASE_MEMBER", IN_DEVICE_GENERATE);
    EXPECT_REPORT(write_row({}), "svec.size() == TOTAL_DEVICE_DATABASE_MEMBER", IN_DEVICE_GENERATE);
}

TEST_F(DevInfoCells, AreReportedFromTheLeft) {
    const DEVICE_ROW row = plain_device_row().with("support_cpf", "true").with("default_prog_mode", "x");
    EXPECT_REPORT(write_row(row.cells), NO_FLAG, IN_DEVICE_GENERATE);
    EXPECT_REPORT(write_row(row.with("part", "x").cells), "found", IN_DEVICE_GENERATE);
}

TEST_F(DevInfoGenerate, ReportsANameThatItsListDoesNotHave) {
    for (const char* member :
         {"family", "device", "part", "ekp_alg_family", "cmp_fbgen_start_block", "cmp_fbgen_end_block",
          "fbgen_cvp_core_start_block", "fbgen_hps_core_start_block", "default_prog_mode"})
        EXPECT_REPORT(generate(with_cell(member, "NO_SUCH_NAME")), "found", IN_DEVICE_GENERATE) << member;
    EXPECT_REPORT(generate(with_cell("family", "Quarn-1")), "found", IN_DEVICE_GENERATE);
    EXPECT_REPORT(generate(with_cell("ekp_alg_family", "")), "found", IN_DEVICE_GENERATE);
    EXPECT_FALSE(std::filesystem::exists(output));
}

TEST_F(DevInfoGenerate, ReportsAFlagThatIsNone) {
    for (const char* cell : {"true", "false", "1", "0", "YES"})
        EXPECT_REPORT(generate(with_cell("skip_pof_bitstream_conversion", cell)), NO_FLAG, IN_DEVICE_GENERATE) << cell;
    EXPECT_REPORT(generate(with_cell("dummy_bool", "True")), NO_FLAG, IN_DEVICE_GENERATE);
}

TEST_F(DevInfoGenerate, TakesAnEmptyFlagAsFalseAndAnEmptyNumberAsZero) {
    const MANAGER manager = generate(replaced(with_cell("dummy_dword", ""), csv.rows[0].cell("dummy_byte") + ",", ","));
    EXPECT_FALSE(manager->get_record(0)->dummy_bool);
    EXPECT_EQ(0U, manager->get_record(0)->dummy_dword);
    EXPECT_EQ(0U, manager->get_record(0)->dummy_byte);
}

TEST_F(DevInfoGenerate, TakesNumbersOfBothFormsAndCutsThemToTheirWidth) {
    DEVICE_ROW& row = csv.rows[0];
    row = row.with("dummy_byte", "300").with("dummy_word", "0x12345").with("dummy_dword", "0XFFFFFFFF");
    const MANAGER manager = generate(csv.text());
    EXPECT_EQ(44, manager->get_record(0)->dummy_byte);
    EXPECT_EQ(0x2345, manager->get_record(0)->dummy_word);
    EXPECT_EQ(0xFFFFFFFFU, manager->get_record(0)->dummy_dword);
}

TEST_F(DevInfoGenerate, TakesATextOf255Characters) {
    const std::string longest(255, 'x');
    const MANAGER manager = generate(with_cell("cfg_dev", longest));
    EXPECT_EQ(longest, manager->get_record(0)->cfg_dev);
}

TEST_F(DevInfoGenerate, ReadsNoLongerTextBack) {
    // The length byte of 256 characters is 0; the first of them is taken as the next member's tag.
    EXPECT_REPORT(generate(with_cell("support_asc_ini", std::string(256, 'x'))), "type == TOVREN_MANAGER_BOOL",
                  IN_DB_STREAM);
    EXPECT_FALSE(std::filesystem::exists(output));
}

TEST_F(DevInfoGenerate, TakesTwoRecordsOfOneKeyAndRecordsOfTwoKeys) {
    csv.rows[2] = csv.rows[0];
    csv.rows[3] = plain_device_row().with("pcf", "QX").with("device", "GENERIC");
    csv.rows[4] = plain_device_row();
    EXPECT_EQ(hex_text(expected_records()), hex_text(generated_records(csv.text())));
}

// ---- the file ----

TEST_F(DevInfoGenerate, WritesTheHeaderAndTwoZerosBehind) {
    const MANAGER manager = generate(csv.text());
    const BYTES file = read_file(output);
    const auto payload_size = static_cast<unsigned int>(expected_records().size()) + 4503 + 4 * DEV_PART_MAX;
    EXPECT_EQ(join({text_bytes("PGMIO_DM"), text_bytes(TOVREN_DEV_INFO_CSV_MD5), le32_bytes(payload_size)}),
              first(file, 44));
    EXPECT_EQ("00 00", hex_text({file.end() - 2, file.end()}));
}

TEST_F(DevInfoGenerate, WritesTheMd5OfTheLibraryAndNotOfTheCsv) {
    generate(csv.text());
    const BYTES one = first(read_file(output), 40);
    generate("\n" + csv.text());
    EXPECT_EQ(one, first(read_file(output), 40));
}

TEST_F(DevInfoGenerate, WritesTheSameBytesTwice) {
    put_part_list("p,QA02A,c,d,e,f,SPARE_10\n");
    generate(csv.text());
    const BYTES one = read_file(output);
    generate(csv.text());
    EXPECT_EQ(one, read_file(output));
}

TEST_F(DevInfoGenerate, WritesWhatLoads) {
    const MANAGER generator = generate(csv.text());
    const MANAGER loaded = load(read_file(output));
    for (unsigned int position = 0; position < 79; ++position)
        EXPECT_EQ(csv.rows[position].described(), DEVICE_ROW::described(*loaded->get_record(position)));
    EXPECT_TRUE(std::equal(&generator->m_family_table[0], &generator->m_family_table[74], &loaded->m_family_table[0]));
    EXPECT_TRUE(
        std::equal(&generator->m_device_table[0], &generator->m_device_table[1048], &loaded->m_device_table[0]));
    EXPECT_TRUE(
        std::equal(&generator->m_part_table[0], &generator->m_part_table[DEV_PART_MAX], &loaded->m_part_table[0]));
}

TEST_F(DevInfoGenerate, LeavesAManagerThatAnswers) {
    put_part_list("p,QA02A,c,d,e,f,SPARE_10\n");
    const MANAGER manager = generate(csv.text());
    EXPECT_EQ(79U, manager->get_record_count());
    EXPECT_EQ(1U, manager->m_pcf_map.size());
    const std::unique_ptr<TOVREN_DEVICE_INFO> record(manager->get_db_by_family(DEV_FAMILY_ENUM(1)));
    EXPECT_EQ(csv.rows[0].described(), DEVICE_ROW::described(*record));
}

TEST_F(DevInfoGenerate, GeneratesOnceInAManagersLife) {
    const MANAGER manager = generate(csv.text());
    EXPECT_REPORT(manager->generate_device_database(csv_path, output), "m_device_database == NULL", IN_DEVICE_MANAGER);
}

TEST_F(DevInfoGenerate, PrintsNothing) {
    write_text(csv_path, csv.text());
    EXPECT_EQ("", standard_output_of([&] {
                  standard_error_of(
                      [&] { TOVREN_DEV_INFO_MANAGER(true, 1).generate_device_database(csv_path, output); });
              }));
}

TEST_F(DevInfoGenerate, ReplacesAnOlderOutput) {
    write_text(output, std::string(1000000, 'x'));
    generate(csv.text());
    const BYTES fresh = read_file(output);
    std::filesystem::remove(output);
    generate(csv.text());
    EXPECT_EQ(fresh, read_file(output));
}

TEST_F(DevInfoGenerate, LeavesTheOlderOutputWholeAtAnyFault) {
    write_text(output, "old");
    EXPECT_TRUE(report_of([&] { generate(csv.types.text()); }));
    EXPECT_TRUE(report_of([&] { generate(with_cell("family", "x")); }));
    EXPECT_TRUE(report_of([&] { generate(with_cell("cfg_dev", std::string(256, 'x'))); }));
    EXPECT_TRUE(report_of([&] { generate(everywhere(csv.text(), "GENERIC", "")); }));
    put_part_list("a,b\n");
    EXPECT_THROW(generate(csv.text()), std::out_of_range);
    EXPECT_EQ("old", read_text(output));
}

TEST_F(DevInfoGenerate, LeavesNothingButTheOutputBehind) {
    generate(csv.text());
    EXPECT_EQ((std::vector<std::string>{"devices.csv", "h", "out.pcf", "programmer"}), folder.names());
}

TEST_F(DevInfoGenerate, ReportsAnOutputThatCannotBeWritten) {
    write_text(csv_path, csv.text());
    for (const std::string& path : {folder.path("no_folder/out.pcf"), folder.path("h")}) {
        const MANAGER manager = make_generator();
        std::optional<REPORT> report;
        standard_error_of([&] { report = report_of([&] { manager->generate_device_database(csv_path, path); }); });
        ASSERT_TRUE(report.has_value()) << path;
        EXPECT_EQ("TOVREN", report->prefix);
        EXPECT_TRUE(report->file.starts_with("pgm/tovren/tovren_")) << report->file;
    }
    EXPECT_TRUE(std::filesystem::is_directory(folder.path("h")));
}

TEST_F(DevInfoGenerate, LeavesTheOlderOutputWholeWhereThereIsNoRoom) {
    for (size_t family = 0; family < 72; ++family) // no notices, which are written too
        csv.rows[family + 2] =
            plain_device_row().with("family", TOVREN_DEV_INFO_MANAGER::m_supported_family_list[family].name);
    write_text(output, "old");
    write_text(csv_path, csv.text());
    const MANAGER manager = make_generator();
    rlimit limit{};
    ASSERT_EQ(0, getrlimit(RLIMIT_FSIZE, &limit));
    const rlimit none{200, limit.rlim_max};
    const auto former = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &none);
    const std::optional<REPORT> report = report_of([&] { manager->generate_device_database(csv_path, output); });
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, former);
    EXPECT_TRUE(report.has_value());
    EXPECT_EQ("old", read_text(output));
    EXPECT_EQ((std::vector<std::string>{"devices.csv", "h", "out.pcf", "programmer"}), folder.names());
}

} // namespace
