// The golden files. golden/good: NAME.pcf.txt is a database byte for byte, NAME.csv generates it, NAME.printed is its
// records' report. golden/refused: what loading NAME.pcf.txt or generating from NAME.csv reports stands in NAME.report.
#include "fixtures.h"
#include "golden.h"
#include "report.h"
#include "tovren_flash_manager.h"
#include "tovren_standalone_host.h"

#include <gtest/gtest.h>

namespace {

class Golden : public FLASH_TEST {
protected:
    Golden() { TOVREN_STANDALONE_HOST::set_setting("PGM_ALLOW_QX_KEY", "on"); }

    BYTES generated(const std::string& csv_path) {
        make_generator()->generate_flash_database(csv_path, folder.path("out.pcf"));
        return read_file(folder.path("out.pcf"));
    }
};

TEST_F(Golden, GoodDatabasesAreGeneratedByteForByte) {
    for (const std::string& path : golden_paths("good", ".csv")) {
        SCOPED_TRACE(path);
        const GOLDEN_FILE expected = read_golden(golden_sibling(path, ".pcf.txt"));
        const BYTES file = generated(path);
        ASSERT_GT(file.size(), 46U);
        EXPECT_EQ(hex_text(first(expected.bytes, 44)), hex_text(first(file, 44)));
        EXPECT_EQ(hex_text(expected.payload), hex_text(inflated({file.begin() + 44, file.end() - 2})));
        EXPECT_EQ("00 00", hex_text({file.end() - 2, file.end()}));
    }
}

TEST_F(Golden, GoodDatabasesLoadAsTheyArePrinted) {
    for (const std::string& path : golden_paths("good", ".pcf.txt")) {
        SCOPED_TRACE(path);
        put_database(read_golden(path).bytes);
        EXPECT_EQ(read_text(golden_sibling(path, ".printed")),
                  standard_output_of([] { TOVREN_FLASH_MANAGER(true, 1, false, true); }));
    }
}

TEST_F(Golden, RefusedDatabasesAreReported) {
    for (const std::string& path : golden_paths("refused", ".pcf.txt")) {
        const std::string expected = read_text(golden_sibling(path, ".report"));
        const std::optional<REPORT> report = report_of([&] { load(read_golden(path).bytes); });
        ASSERT_TRUE(report.has_value()) << path;
        EXPECT_EQ(expected, report->expression + "\n") << path;
    }
}

TEST_F(Golden, RefusedCsvsAreReported) {
    for (const std::string& path : golden_paths("refused", ".csv")) {
        const std::string expected = read_text(golden_sibling(path, ".report"));
        const std::optional<REPORT> report = report_of([&] { generated(path); });
        ASSERT_TRUE(report.has_value()) << path;
        EXPECT_EQ(expected, report->expression + "\n") << path;
    }
}

} // namespace
