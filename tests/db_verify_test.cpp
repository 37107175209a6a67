// Databases held against this library: what is planted is found, all of it, and nothing else.
#include "device_fixtures.h"
#include "fixtures.h"
#include "tool_db_checks.h"
#include "tool_error.h"
#include "tovren_standalone_host.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace {

using VERDICT = TOOL_DB_FINDING::VERDICT;

// "check: text" of the faults.
std::vector<std::string> faults_of(const std::vector<TOOL_DB_FINDING>& findings) {
    std::vector<std::string> faults;
    for (const TOOL_DB_FINDING& finding : findings)
        if (finding.verdict == VERDICT::FAULT)
            faults.push_back(std::string(finding.check) + ": " + finding.text);
    return faults;
}

class DbVerify : public FLASH_TEST {
protected:
    DbVerify() {
        TOVREN_STANDALONE_HOST::set_report_handler([](const char* condition, const char* prefix, const char* file,
                                                      int line) { throw TOOL_REPORT(condition, prefix, file, line); });
    }

    std::vector<std::string> flash_faults(const BYTES& file) {
        put_database(file);
        return faults_of(tool_db_flash_findings());
    }
    std::vector<std::string> flash_faults(const FLASH_FILE& file) { return flash_faults(file.bytes()); }

    std::vector<std::string> device_faults(const DEVICE_DATABASE& file) {
        write_file(folder.path("programmer/pgm_dev_info.pcf"), file.bytes());
        return faults_of(tool_db_device_findings());
    }
};

using FAULTS = std::vector<std::string>;

TEST_F(DbVerify, PassesTheShippedDatabases) {
    TOVREN_STANDALONE_HOST::set_device_db_root(SHIPPED_DATABASE_ROOT);
    EXPECT_EQ(FAULTS(), faults_of(tool_db_flash_findings()));
    EXPECT_EQ(FAULTS(), faults_of(tool_db_device_findings()));
}

TEST_F(DbVerify, PassesAGoodFlashDatabase) {
    EXPECT_EQ(FAULTS(), flash_faults(FLASH_FILE({make_flash("QXA"), make_flash("QXB")})));
}

TEST_F(DbVerify, TellsAnEmptyEnablingKey) {
    EXPECT_EQ((FAULTS{"payload: record 1: ini: the text is empty",
                      "load: the library refuses it; condition: !ini.empty()"}),
              flash_faults(FLASH_FILE({make_flash("QXA"), keyed("QXB", "")})));
}

TEST_F(DbVerify, TellsBothNamesThatBreakTheDefaultRule) {
    EXPECT_EQ((FAULTS{"defaults: record 1: default_dev: \"qxa\" has its default in record 0 already",
                      "defaults: record 2: default_dev: \"QXB\" has no default record",
                      "load: the library refuses it; condition: !one_default"}),
              flash_faults(FLASH_FILE({make_flash("QXA"), make_flash("qxa"), no_default("QXB")})));
}

TEST_F(DbVerify, TellsTheFaultsOfSeveralRecords) {
    const FLASH_FILE file({make_flash("QXA"), make_flash("QXB"), make_flash("QXC"), make_flash("QXD")});
    BYTES payload = file.payload();
    const size_t record = record_bytes(make_flash("QXA")).size();
    const size_t flag = 12 + 9 + 5; // behind the header and two texts; the tag of silicon_id
    payload[flag] = 4;
    payload[flag + 2 * record] = 4;
    const auto faults = flash_faults(file.bytes_around(payload));
    ASSERT_EQ(3U, faults.size());
    EXPECT_EQ("payload: offset 26: record 0, silicon_id: tag 4 where 3 (bool) is expected", faults[0]);
    EXPECT_EQ("payload: offset " + std::to_string(26 + 2 * record) +
                  ": record 2, silicon_id: tag 4 where 3 (bool) is expected",
              faults[1]);
}

TEST_F(DbVerify, GoesOnBehindATextThatIsTooLong) {
    const FLASH_FILE file({make_flash("QXA"), make_flash("QXB"), make_flash("QXC")});
    BYTES payload = file.payload();
    const size_t record = record_bytes(make_flash("QXA")).size();
    payload[12 + record - 4 - 5] = 5; // the length of "1.8V", which swallows the E of END1
    const auto faults = flash_faults(file.bytes_around(payload));
    ASSERT_EQ(2U, faults.size());
    EXPECT_TRUE(faults[0].starts_with("payload: offset ")) << faults[0];
    EXPECT_TRUE(faults[1].starts_with("load: ")) << faults[1];
}

TEST_F(DbVerify, SaysWhatItCannotCheck) {
    const FLASH_FILE file({make_flash("QXA")});
    BYTES payload = file.payload();
    payload[12] = 9;
    put_database(file.bytes_around(payload));
    const auto findings = tool_db_flash_findings();
    const auto is_note = [](const TOOL_DB_FINDING& finding) {
        return finding.verdict == VERDICT::NOTE && finding.text == "not checked: not every record can be read";
    };
    EXPECT_EQ(1, std::count_if(findings.begin(), findings.end(), is_note));
}

// Any bytes give findings, and a fault where the library refuses the file.
TEST_F(DbVerify, TakesAnyBytes) {
    const FLASH_FILE file({make_flash("QXA"), make_flash("QXB")});
    const BYTES good = file.payload();
    std::mt19937 source(5);
    for (unsigned int i = 0; i < 1500; ++i) {
        BYTES payload = good;
        for (unsigned int change = 0; change <= i % 3; ++change)
            payload[source() % payload.size()] = static_cast<unsigned char>(source());
        put_database(file.bytes_around(payload));
        const auto findings = tool_db_flash_findings();
        ASSERT_FALSE(findings.empty());
        const bool is_refused = findings.back().verdict == VERDICT::FAULT;
        const auto faults = faults_of(findings);
        if (is_refused) {
            ASSERT_GT(faults.size(), 1U) << "the library alone found a fault: " << faults.front();
        }
    }
}

// ---- devices ----

// Records of each family (1 at position 0, the generic 73 at 1, all others at their number), of the generic device and
// part, and of PCF names; tables as the rules give them without a part list.
class DbVerifyDevice : public DbVerify {
protected:
    static constexpr unsigned int PCF_A = 73; // also the first record without a family
    static constexpr unsigned int GENERIC_DEVICE = 74;
    static constexpr unsigned int GENERIC_PART = 75;
    static constexpr unsigned int PCF_B = 76;
    static constexpr unsigned int PCF_A_AGAIN = 77;

    DbVerifyDevice() : file(rows()) {
        for (unsigned int family = 0; family < 74; ++family)
            file.family_table[family] = family == 0 ? PCF_A : family == 1 ? 0 : family == 73 ? 1 : family;
        for (unsigned int device = 1; device < 1047; ++device)
            file.device_table[device] = file.family_table[DEV_PART_MANAGER().get_family_of(DEV_DEVICE_ENUM(device))];
        file.device_table[0] = 0;
        file.device_table[1047] = GENERIC_DEVICE;
        for (unsigned int part = 0; part < DEV_PART_MAX; ++part)
            file.part_table[part] = file.device_table[DEV_PART_MANAGER().get_device_of(DEV_PART_ENUM(part))];
        file.part_table[DEV_PART_INVALID] = 0;
        file.part_table[DEV_PART_GENERIC] = GENERIC_PART;
    }

    static std::vector<DEVICE_ROW> rows() {
        std::vector<DEVICE_ROW> rows;
        for (unsigned int i = 0; i < 73; ++i)
            rows.push_back(plain_device_row().with("family", std::to_string(i == 0 ? 1 : i == 1 ? 73 : i)));
        rows.push_back(plain_device_row().with("pcf", "QX_A"));
        rows.push_back(plain_device_row().with("device", "GENERIC"));
        rows.push_back(plain_device_row().with("part", "GENERIC"));
        for (const char* pcf : {"QX_B", "QX_C", "QX_D"})
            rows.push_back(plain_device_row().with("pcf", pcf));
        return rows;
    }

    // All parts of the device, and the device itself.
    void serve(unsigned int device, unsigned int position) {
        file.device_table[device] = position;
        for (unsigned int part = 1; part < DEV_PART_GENERIC; ++part)
            if (DEV_PART_MANAGER().get_device_of(DEV_PART_ENUM(part)) == device)
                file.part_table[part] = position;
    }

    DEVICE_DATABASE file;
};

TEST_F(DbVerifyDevice, PassesTablesByTheRules) {
    EXPECT_EQ(FAULTS(), device_faults(file));
}

TEST_F(DbVerifyDevice, TellsAWrongFamilyOnceAndNotItsDevices) {
    file.family_table[1] = 2;
    EXPECT_EQ((FAULTS{
                  "tables: family QUARN-1 is served by record 2, family QUARN-2, expected record 0, family QUARN-1"}),
              device_faults(file));
}

TEST_F(DbVerifyDevice, TellsAFamilyAPartAndADeviceThatNobodyServes) {
    file.family_table[2] = 0xFFFFFFFF;
    file.device_table[1] = 0xFFFFFFFF;
    file.part_table[1] = 0xFFFFFFFF;
    const auto faults = device_faults(file);
    ASSERT_EQ(3U, faults.size());
    EXPECT_EQ("tables: family QUARN-2 is served by no record, expected record 2, family QUARN-2", faults[0]);
    EXPECT_EQ("tables: device QA02A is served by no record, expected record 0, family QUARN-1", faults[1]);
    EXPECT_TRUE(faults[2].ends_with("is served by no record, expected record 0, family QUARN-1")) << faults[2];
}

TEST_F(DbVerifyDevice, TakesARecordWithAPcfNameForTheChoiceOfThePartList) {
    serve(1, PCF_B);
    EXPECT_EQ(FAULTS(), device_faults(file));
}

TEST_F(DbVerifyDevice, TellsAPartThatDoesNotFollowItsDevice) {
    serve(1, PCF_B);
    file.part_table[1] = 0;
    const auto faults = device_faults(file);
    ASSERT_EQ(1U, faults.size());
    EXPECT_TRUE(faults[0].ends_with(" is served by record 0, family QUARN-1, expected record 76, pcf QX_B"))
        << faults[0];
}

TEST_F(DbVerifyDevice, TellsADeviceThatNoneOfItsPartsFollows) {
    file.device_table[1] = PCF_B;
    EXPECT_EQ(FAULTS{"tables: device QA02A is served by record 76, pcf QX_B, expected record 0, family QUARN-1"},
              device_faults(file));
}

TEST_F(DbVerifyDevice, TellsARecordBehindAnotherOfItsPcfName) {
    file.rows[PCF_A_AGAIN] = file.rows[PCF_A_AGAIN].with("pcf", "qx_a");
    serve(1, PCF_A_AGAIN);
    const auto faults = device_faults(file);
    ASSERT_GT(faults.size(), 2U);
    EXPECT_EQ("keys: record 77: pcf: \"qx_a\" has its record in record 73 already; this one serves nothing", faults[0]);
    EXPECT_EQ("tables: device QA02A is served by record 77, pcf qx_a, expected record 0, family QUARN-1", faults[1]);
}

TEST_F(DbVerifyDevice, TellsEveryEntryPastTheRecords) {
    file.family_table[2] = 79;
    file.part_table[5] = 1000;
    const auto faults = device_faults(file);
    ASSERT_EQ(4U, faults.size());
    EXPECT_TRUE(faults[0].ends_with("the family table: entry 2 names record 79, there are 79")) << faults[0];
    EXPECT_TRUE(faults[1].ends_with("the part table: entry 5 names record 1000, there are 79")) << faults[1];
    EXPECT_EQ("tables: family QUARN-2 is served by record 79, which is not there, expected record 2, family QUARN-2",
              faults[2]);
    EXPECT_NE(std::string::npos, faults[3].find("is served by record 1000, which is not there, expected record "));
}

TEST_F(DbVerifyDevice, TellsTheWrongNumberOfRecords) {
    file.rows.pop_back();
    EXPECT_EQ("payload: 78 records; searches walk 79", device_faults(file).at(0));
}

TEST_F(DbVerifyDevice, TellsAMissingGenericFamily) {
    file.rows[1] = file.rows[1].with("family", "").with("pcf", "QX_G");
    EXPECT_EQ("keys: the GENERIC family has no record", device_faults(file).at(0));
}

} // namespace
