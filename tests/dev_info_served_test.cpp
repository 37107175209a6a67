// Which record serves whom: the three index tables that are computed from the records and the part list, and the
// notices of families without a record.
#include "device_fixtures.h"
#include "tovren_dev_info_manager.h"
#include "tovren_standalone_host.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <stdexcept>

namespace {

constexpr auto QUARN_1 = DEV_FAMILY_ENUM(1); // whose devices are the catalogue's first
constexpr auto QA02A = DEV_DEVICE_ENUM(1);
constexpr auto QA02B = DEV_DEVICE_ENUM(2);

// ---- the tables ----

// Rows of the usual CSV: QUARN-1 at 0, GENERIC at 1, PCF names SPARE_2 to SPARE_78 behind them.
class Served : public DEVICE_TEST {
protected:
    DEVICE_CSV csv{make_device_rows()};
    std::string csv_path = folder.path("devices.csv");
    std::string output = folder.path("out.pcf");
    std::string standard_error; // of the last generation

    MANAGER generate() {
        write_text(csv_path, csv.text());
        MANAGER manager = make_generator();
        standard_error = standard_error_of([&] { manager->generate_device_database(csv_path, output); });
        return manager;
    }

    // The record of a device under a part list of this text.
    unsigned int position_of(DEV_DEVICE_ENUM device, const std::string& part_list_text) {
        put_part_list(part_list_text);
        return generate()->get_position_of(device);
    }
};

TEST_F(Served, FamiliesAreByTheirOwnRecordFirst) {
    csv.rows[7] = csv.rows[0];
    const MANAGER manager = generate();
    EXPECT_EQ(0U, manager->get_position_of(QUARN_1));
    EXPECT_EQ(1U, manager->get_position_of(DEV_FAMILY_GENERIC));
}

TEST_F(Served, FamiliesWithoutARecordAreByPositionOne) {
    const MANAGER manager = generate();
    for (unsigned int family = 2; family < 73; ++family)
        EXPECT_EQ(1U, manager->get_position_of(DEV_FAMILY_ENUM(family)));
}

TEST_F(Served, FamiliesWithoutARecordAreByPositionOneWhereverTheGenericRecordIs) {
    std::swap(csv.rows[1], csv.rows[5]);
    const MANAGER manager = generate();
    EXPECT_EQ(1U, manager->get_position_of(DEV_FAMILY_ENUM(2)));
    EXPECT_EQ(5U, manager->get_position_of(DEV_FAMILY_GENERIC));
    EXPECT_EQ("SPARE_5", manager->get_record(1)->pcf);
}

TEST_F(Served, ThereMustBeAGenericRecord) {
    csv.rows[1] = plain_device_row().with("pcf", "SPARE_1");
    write_text(csv_path, csv.text());
    const MANAGER manager = make_generator();
    standard_error = standard_error_of([&] {
        EXPECT_REPORT(manager->generate_device_database(csv_path, output), "DEV_FAMILY_ENUM(i) != DEV_FAMILY_GENERIC",
                      IN_DEVICE_GENERATE);
    });
    EXPECT_FALSE(std::filesystem::exists(output));
    EXPECT_EQ(0U, manager->get_position_of(DEV_FAMILY_ENUM(2))); // the number of a search without success
    EXPECT_NE(std::string::npos, standard_error.find("(72)"));   // its notice was sent before
}

TEST_F(Served, NoFamilyIsByTheFirstRecordWithoutOne) {
    EXPECT_EQ(2U, generate()->get_position_of(DEV_FAMILY_INVALID));
    csv.rows[1] = csv.rows[1].with("pcf", "QX");
    std::fill(csv.rows.begin() + 2, csv.rows.end(), csv.rows[0]);
    EXPECT_EQ(INVALID_DWORD, generate()->get_position_of(DEV_FAMILY_INVALID));
}

TEST_F(Served, NoDeviceAndNoPartAreByTheFirstRecordWithoutOne) {
    csv.rows[0] = csv.rows[0].with("device", "GENERIC").with("part", "GENERIC");
    csv.rows[1] = csv.rows[1].with("part", "GENERIC");
    const MANAGER manager = generate();
    EXPECT_EQ(1U, manager->get_position_of(DEV_DEVICE_INVALID));
    EXPECT_EQ(2U, manager->get_position_of(DEV_PART_INVALID));
}

TEST_F(Served, NoDeviceAndNoPartAreByNothingWhereEachRecordHasOne) {
    for (DEVICE_ROW& row : csv.rows)
        row = row.with("device", "GENERIC").with("part", "GENERIC");
    put_part_list("NO_PART,NO_DEVICE,c,d,e,f,SPARE_10\n"); // unknown names give the INVALID values
    const MANAGER manager = generate();
    EXPECT_EQ(INVALID_DWORD, manager->get_position_of(DEV_DEVICE_INVALID));
    EXPECT_EQ(INVALID_DWORD, manager->get_position_of(DEV_PART_INVALID));
}

TEST_F(Served, TheGenericDeviceAndPartAreByTheirOwnRecords) {
    csv.rows[70] = plain_device_row().with("device", "GENERIC");
    csv.rows[71] = plain_device_row().with("part", "GENERIC");
    put_part_list("GENERIC,GENERIC,c,d,e,f,SPARE_10\n");
    const MANAGER manager = generate();
    EXPECT_EQ(70U, manager->get_position_of(DEV_DEVICE_GENERIC));
    EXPECT_EQ(71U, manager->get_position_of(DEV_PART_GENERIC));
}

TEST_F(Served, TheGenericDeviceAndPartAreByTheGenericFamilyOtherwise) {
    std::swap(csv.rows[1], csv.rows[5]);
    const MANAGER manager = generate();
    EXPECT_EQ(5U, manager->get_position_of(DEV_DEVICE_GENERIC));
    EXPECT_EQ(5U, manager->get_position_of(DEV_PART_GENERIC));
}

TEST_F(Served, TheGenericDeviceMayBeServedThroughThePartList) {
    EXPECT_EQ(10U, position_of(DEV_DEVICE_GENERIC, "x,generic,c,d,e,f,SPARE_10\n"));
}

TEST_F(Served, DevicesAreByTheirFamilyAndPartsByTheirDevice) {
    std::swap(csv.rows[1], csv.rows[5]);
    const MANAGER manager = generate();
    const DEV_PART_MANAGER catalogue;
    for (unsigned int device = 1; device < 1048; ++device) {
        const DEV_FAMILY_ENUM family = catalogue.get_family_of(DEV_DEVICE_ENUM(device));
        EXPECT_EQ(family == QUARN_1              ? 0U
                  : family == DEV_FAMILY_GENERIC ? 5U
                                                 : 1U,
                  manager->get_position_of(DEV_DEVICE_ENUM(device)));
    }
    for (unsigned int part = 1; part < DEV_PART_MAX; ++part)
        EXPECT_EQ(manager->get_position_of(catalogue.get_device_of(DEV_PART_ENUM(part))),
                  manager->get_position_of(DEV_PART_ENUM(part)));
}

TEST_F(Served, DevicesAreByThePcfNameOfThePartList) {
    EXPECT_EQ(10U, position_of(QA02A, "QA02AE144,QA02A,c,d,e,f,SPARE_10\n"));
    EXPECT_EQ(78U, position_of(QA02A, "x,QA02A,c,d,e,f,spare_78\n"));
}

TEST_F(Served, DevicesAreByTheFirstRecordOfThePcfName) {
    csv.rows[9] = csv.rows[12] = plain_device_row().with("pcf", "Qx_Cfg");
    EXPECT_EQ(9U, position_of(QA02A, "x,QA02A,c,d,e,f,qX_cFG\n"));
}

TEST_F(Served, DevicesAreByTheFirstEntryOfThePartList) {
    EXPECT_EQ(10U, position_of(QA02A, "x,QA02B,c,d,e,f,SPARE_9\nx,QA02A,c,d,e,f,SPARE_10\nx,QA02A,c,d,e,f,SPARE_11\n"));
}

TEST_F(Served, DevicesAreByTheirFamilyWhereTheFirstEntryNamesNoRecord) {
    EXPECT_EQ(0U, position_of(QA02A, "x,QA02A,c,d,e,f,NO_SUCH\nx,QA02A,c,d,e,f,SPARE_11\n"));
    EXPECT_EQ(0U, position_of(QA02A, "x,QA02A,c,d,e,f,\nx,QA02A,c,d,e,f,SPARE_11\n"));
    EXPECT_EQ(0U, position_of(QA02A, "x,QA02A,c,d,e,f,SPARE_1\n"));
    EXPECT_EQ(0U, position_of(QA02A, "x,QA02A,c,d,e,f,SPARE_100\n"));
}

TEST_F(Served, PartsAreNotByThePartList) {
    put_part_list("QA02AE144,QA02B,c,d,e,f,SPARE_10\n");
    const MANAGER manager = generate();
    EXPECT_EQ(10U, manager->get_position_of(QA02B));
    EXPECT_EQ(0U, manager->get_position_of(DEV_PART_ENUM(1)));
    EXPECT_TRUE(manager->search_pcf_for_part(DEV_PART_ENUM(1)));
    EXPECT_EQ(10U, manager->m_index);
}

TEST_F(Served, PartsAreByTheRecordThatTheirDeviceHasThroughThePartList) {
    put_part_list("x,QA02A,c,d,e,f,SPARE_10\n");
    const MANAGER manager = generate();
    EXPECT_EQ(10U, manager->get_position_of(DEV_PART_ENUM(1)));
    EXPECT_FALSE(manager->search_pcf_for_part(DEV_PART_ENUM(1)));
    EXPECT_EQ(INVALID_DWORD, manager->m_index);
}

TEST_F(Served, SearchesThroughThePartListFindTheFirstEntryAndRecord) {
    put_part_list("QA02AE144,QA02A,c,d,e,f,spare_10\nQA02AE144,QA02A,c,d,e,f,SPARE_11\nQA02AE144C6,QA02B,c,d,e,f,\n");
    const MANAGER manager = generate();
    EXPECT_TRUE(manager->search_pcf_for_device(QA02A));
    EXPECT_EQ(10U, manager->m_index);
    EXPECT_FALSE(manager->search_pcf_for_device(QA02B));
    EXPECT_EQ(INVALID_DWORD, manager->m_index);
    EXPECT_TRUE(manager->search_pcf_for_part(DEV_PART_ENUM(1)));
    EXPECT_EQ(10U, manager->m_index);
    EXPECT_FALSE(manager->search_pcf_for_part(DEV_PART_ENUM(2)));
    EXPECT_EQ(INVALID_DWORD, manager->m_index);
}

TEST_F(Served, SearchesThroughThePartListFindTheInvalidDeviceButNoInvalidPart) {
    put_part_list("NO_PART,NO_DEVICE,c,d,e,f,SPARE_10\n");
    const MANAGER manager = generate();
    EXPECT_TRUE(manager->search_pcf_for_device(DEV_DEVICE_INVALID));
    EXPECT_EQ(10U, manager->m_index);
    EXPECT_FALSE(manager->search_pcf_for_part(DEV_PART_INVALID));
    EXPECT_EQ(INVALID_DWORD, manager->m_index);
}

TEST_F(Served, TablesNeedRecords) {
    BYTES bytes(100000);
    unsigned char* buffer = bytes.data();
    unsigned int index = 0;
    EXPECT_REPORT(make_generator()->print_table(&buffer, index), "m_device_database != NULL", IN_DEVICE_GENERATE);
}

TEST_F(Served, AShortLineOfThePartListEndsTheGeneration) {
    put_part_list("x,QA02A,c,d,e,f,SPARE_10\na,b,c,d,e,f\n");
    EXPECT_THROW(generate(), std::out_of_range);
    EXPECT_FALSE(std::filesystem::exists(output));
}

// ---- notices ----

class Notices : public Served {
protected:
    std::string outbox = folder.path("outbox");

    void set_outbox(const std::string& path) { TOVREN_STANDALONE_HOST::set_setting("TOVREN_MAIL_OUTBOX", path); }

    // A record for every family but the last ones.
    void give_records_to_families(size_t count) {
        for (size_t family = 0; family < count; ++family)
            csv.rows[family + 2] =
                plain_device_row().with("family", TOVREN_DEV_INFO_MANAGER::m_supported_family_list[family].name);
    }

    // The messages of the outbox.
    std::vector<std::string> messages() const {
        std::vector<std::string> texts;
        for (const auto& entry : std::filesystem::directory_iterator(outbox))
            texts.push_back(read_text(entry.path()));
        return texts;
    }

    static std::string notice(const std::string& label) {
        return "Missing family " + label +
               " from Dev Info CSV.\n\nForcing this family to use Generic database.\n\nPlease add the family support "
               "as soon as possible.\n";
    }

    static std::string label_of(unsigned int family) {
        return TOVREN_DEV_INFO_MANAGER::m_supported_family_list[family - 1].name + " (" + std::to_string(family) + ")";
    }
};

// The header of a message, and its body with plain line ends.
struct MESSAGE {
    std::string header;
    std::string body;

    explicit MESSAGE(const std::string& text) {
        const size_t gap = text.find("\r\n\r\n");
        EXPECT_NE(std::string::npos, gap) << text;
        header = text.substr(0, gap + 2);
        body = std::regex_replace(text.substr(gap + 4), std::regex("\r\n"), "\n");
    }

    // The contents of a field that must be there once.
    std::string field(const std::string& name) const {
        const std::regex pattern("(^|\r\n)" + name + ": ([^\r\n]*)\r\n");
        EXPECT_EQ(1, std::distance(std::sregex_iterator(header.begin(), header.end(), pattern), {})) << name;
        std::smatch match;
        return std::regex_search(header, match, pattern) ? match[2].str() : "";
    }
};

TEST_F(Notices, AreNotSentWhereEveryFamilyHasARecord) {
    std::filesystem::create_directory(outbox);
    set_outbox(outbox);
    give_records_to_families(72);
    generate();
    EXPECT_EQ("", standard_error);
    EXPECT_TRUE(messages().empty());
}

TEST_F(Notices, AreToldOnStandardErrorWithoutAnOutbox) {
    give_records_to_families(70);
    generate();
    for (const unsigned int family : {71U, 72U})
        EXPECT_NE(std::string::npos, standard_error.find("Missing family " + label_of(family))) << standard_error;
    EXPECT_EQ(std::string::npos, standard_error.find("(70)"));
    EXPECT_EQ(std::string::npos, standard_error.find("(73)"));
    EXPECT_EQ((std::vector<std::string>{"devices.csv", "h", "out.pcf", "programmer"}), folder.names());
}

TEST_F(Notices, GoIntoTheOutboxOneForEachFamily) {
    std::filesystem::create_directory(outbox);
    set_outbox(outbox);
    generate();
    std::multiset<std::string> expected;
    for (unsigned int family = 2; family <= 72; ++family)
        expected.insert(notice(label_of(family)));
    std::multiset<std::string> bodies;
    for (const std::string& text : messages())
        bodies.insert(MESSAGE(text).body);
    EXPECT_EQ(expected, bodies);
    EXPECT_NE("", standard_error); // says so
}

TEST_F(Notices, AreCompleteMessages) {
    std::filesystem::create_directory(outbox);
    set_outbox(outbox);
    give_records_to_families(70);
    generate();
    std::set<std::string> ids;
    for (const std::string& text : messages()) {
        const MESSAGE message(text);
        const std::string address = R"(([^<>@,]*<)?[A-Za-z0-9._+-]+@[A-Za-z0-9.-]+>?)";
        EXPECT_TRUE(std::regex_match(message.field("From"), std::regex(address))) << text;
        EXPECT_TRUE(std::regex_match(message.field("To"), std::regex(address + "(, *" + address + ")*"))) << text;
        EXPECT_NE("", message.field("Subject"));
        EXPECT_TRUE(std::regex_match(message.field("Date"),
                                     std::regex(R"(((Mon|Tue|Wed|Thu|Fri|Sat|Sun), )?\d{1,2} )"
                                                R"((Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) \d{4} )"
                                                R"(\d\d:\d\d:\d\d [+-]\d{4})")))
            << text;
        EXPECT_TRUE(std::regex_match(message.field("Message-ID"), std::regex(R"(<[^<>@ ]+@[^<>@ ]+>)"))) << text;
        ids.insert(message.field("Message-ID"));
    }
    EXPECT_EQ(2U, ids.size());
}

TEST_F(Notices, HaveLinesAsMailHasThem) {
    std::filesystem::create_directory(outbox);
    set_outbox(outbox);
    give_records_to_families(71);
    generate();
    ASSERT_EQ(1U, messages().size());
    const std::string text = messages()[0];
    const std::string without_ends = std::regex_replace(text, std::regex("\r\n"), "");
    EXPECT_EQ(std::string::npos, without_ends.find_first_of("\r\n"));
    EXPECT_TRUE(text.ends_with("\r\n"));
}

TEST_F(Notices, BesideOlderOnesReplaceNone) {
    std::filesystem::create_directory(outbox);
    set_outbox(outbox);
    give_records_to_families(71);
    generate();
    generate();
    EXPECT_EQ(2U, messages().size());
}

TEST_F(Notices, ThatCannotBeSentEndNoGeneration) {
    write_text(folder.path("file"), "");
    set_outbox(folder.path("file/outbox"));
    const MANAGER manager = generate();
    EXPECT_EQ(1U, manager->get_position_of(DEV_FAMILY_ENUM(72)));
    EXPECT_NE(std::string::npos, standard_error.find("file/outbox")) << standard_error;
    EXPECT_TRUE(std::filesystem::exists(output));
}

} // namespace
