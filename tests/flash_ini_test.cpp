// The flash parameter file: what is read from it, what is refused, what a write leaves.
#include "host_fio.h"
#include "ini_fixture.h"
#include "report.h"
#include "tovren_standalone_host.h"

#include <filesystem>
#include <random>
#include <sys/stat.h>

namespace {

using FlashIni = INI_TEST;
using SECTIONS = std::vector<std::optional<BYTES>>;

const SECTIONS NOTHING = {std::nullopt, std::nullopt, std::nullopt};
const INI_FILE THREE({{0xAA, 0xBB}, {0x01}, {0x10, 0x11, 0x12}});

// By hand from the format page.
const BYTES GOLDEN = {
    0x54, 0x4F, 0x56, 0x52, 0x45, 0x4E, 0x5F, 0x46, 0x4C, 0x41, 0x53, 0x48, 0x5F, 0x49, 0x4E, 0x49, // TOVREN_FLASH_INI
    0x03, 0x00, 0x00, 0x00,                                                                         // entries
    0x2C, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00,                                                 // section 0
    0x2E, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00,                                                 // section 1
    0x2F, 0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x00,                                                 // section 2
    0xAA, 0xBB, 0x01, 0x10, 0x11, 0x12,
};

BYTES pattern(size_t size) {
    BYTES bytes(size);
    for (size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<unsigned char>(i * 7 + i / 256);
    return bytes;
}

// ---- names ----

TEST_F(FlashIni, HasThreeSectionsWithNames) {
    EXPECT_EQ((std::vector<std::string>{"SFL FLASH", "HPS SPI", "HPS NAND"}), TOVREN_FLASH_INI_STRING);
    EXPECT_EQ(0, TOVREN_FLASH_INI_SFL);
    EXPECT_EQ(1, TOVREN_FLASH_INI_HPS_SPI);
    EXPECT_EQ(2, TOVREN_FLASH_INI_HPS_NAND);
    EXPECT_EQ(3, TOVREN_FLASH_INI_MAX);
}

TEST_F(FlashIni, BeginsWithSixteenCharactersAndNoTerminator) {
    EXPECT_EQ("TOVREN_FLASH_INI", TOVREN_FLASH_INI_CONST_STRING);
    EXPECT_EQ(16U, TOVREN_FLASH_INI_CONST_STRING.size());
}

TEST_F(FlashIni, StandsInTheFolderThatTheEnvironmentNamesWhereTheHostIsNotTold) {
    put(GOLDEN);
    TOVREN_STANDALONE_HOST::set_module_path("");
    const SCOPED_ENVIRONMENT environment("TOVREN_MODULE_PATH", folder.path().c_str());
    EXPECT_EQ((BYTES{0x01}), read(1));
}

TEST_F(FlashIni, StandsInTheFolderThatTheSettingNamesWhereTheEnvironmentDoesNot) {
    put(GOLDEN);
    TOVREN_STANDALONE_HOST::set_module_path("");
    const SCOPED_ENVIRONMENT environment("TOVREN_MODULE_PATH", nullptr);
    TOVREN_STANDALONE_HOST::set_setting("TOVREN_MODULE_PATH", folder.path());
    EXPECT_EQ((BYTES{0x01}), read(1));
}

TEST_F(FlashIni, StandsBesideTheProgramWhereNothingNamesAFolder) {
    TOVREN_STANDALONE_HOST::set_module_path("");
    const SCOPED_ENVIRONMENT environment("TOVREN_MODULE_PATH", nullptr);
    EXPECT_EQ(std::filesystem::read_symlink("/proc/self/exe").parent_path().string(), gen_get_module_path());
}

TEST_F(FlashIni, SaysWhereItStands) {
    EXPECT_EQ(file, TOVREN_FLASH_INI::get_flash_ini_path());
    EXPECT_EQ(std::vector<std::string>{}, folder.names());
}

// ---- its state ----

TEST_F(FlashIni, IsMissingUntilItIsWritten) {
    EXPECT_EQ(TOVREN_FLASH_INI_FILE_MISSING, TOVREN_FLASH_INI::get_flash_ini_file_state());
    EXPECT_TRUE(write(1, {0x01}));
    EXPECT_EQ(TOVREN_FLASH_INI_FILE_SOUND, TOVREN_FLASH_INI::get_flash_ini_file_state());
}

TEST_F(FlashIni, IsSoundWithoutAnySection) {
    put(INI_FILE({{}, {}, {}}));
    EXPECT_EQ(TOVREN_FLASH_INI_FILE_SOUND, TOVREN_FLASH_INI::get_flash_ini_file_state());
    put(INI_FILE(std::vector<BYTES>(1)));
    EXPECT_EQ(TOVREN_FLASH_INI_FILE_SOUND, TOVREN_FLASH_INI::get_flash_ini_file_state());
}

TEST_F(FlashIni, IsDamagedWhereItDoesNotVerify) {
    for (size_t kept = 0; kept < GOLDEN.size(); ++kept) {
        put(first(GOLDEN, kept));
        EXPECT_EQ(TOVREN_FLASH_INI_FILE_DAMAGED, TOVREN_FLASH_INI::get_flash_ini_file_state()) << kept;
    }
    put(join({GOLDEN, {0x00}}));
    EXPECT_EQ(TOVREN_FLASH_INI_FILE_DAMAGED, TOVREN_FLASH_INI::get_flash_ini_file_state());
}

TEST_F(FlashIni, IsUnreadableWhereSomethingElseStands) {
    std::filesystem::create_directory(file);
    EXPECT_EQ(TOVREN_FLASH_INI_FILE_UNREADABLE, TOVREN_FLASH_INI::get_flash_ini_file_state());
    std::filesystem::remove(file);
    ASSERT_EQ(0, mkfifo(file.c_str(), 0600));
    EXPECT_EQ(TOVREN_FLASH_INI_FILE_UNREADABLE, TOVREN_FLASH_INI::get_flash_ini_file_state());
}

// ---- reading ----

TEST_F(FlashIni, ReadsTheSectionsOfAFileWrittenByHand) {
    put(GOLDEN);
    EXPECT_EQ((SECTIONS{{{0xAA, 0xBB}}, {{0x01}}, {{0x10, 0x11, 0x12}}}), read_all());
}

TEST_F(FlashIni, GivesNothingWithoutAFile) {
    EXPECT_EQ(NOTHING, read_all());
    EXPECT_EQ(std::vector<std::string>{}, folder.names());
}

TEST_F(FlashIni, LeavesNothingInTheFolderWhenItIsRead) {
    put(GOLDEN);
    read_all();
    EXPECT_EQ(std::vector<std::string>{"pgm_flash.ini"}, folder.names());
}

TEST_F(FlashIni, ReadsEachCombinationOfAbsentSections) {
    for (unsigned int present = 0; present < 8; ++present) {
        INI_FILE ini({{}, {}, {}});
        SECTIONS expected(3);
        for (unsigned int i = 0; i < 3; ++i) {
            if ((present >> i & 1) != 0)
                expected[i] = ini.sections[i] = BYTES(i + 1, static_cast<unsigned char>(0x50 + i));
        }
        put(ini);
        EXPECT_EQ(expected, read_all()) << present;
    }
}

TEST_F(FlashIni, GivesNothingFromAFileOfTheMagicAlone) {
    put(text_bytes("TOVREN_FLASH_INI"));
    EXPECT_EQ(NOTHING, read_all());
}

TEST_F(FlashIni, GivesNothingFromAFileWithoutData) {
    put(INI_FILE({{}, {}, {}}));
    EXPECT_EQ(NOTHING, read_all());
}

TEST_F(FlashIni, GivesNothingWhenAnyByteOfTheMagicDiffers) {
    for (size_t i = 0; i < 16; ++i) {
        put(with_byte(GOLDEN, i, static_cast<unsigned char>(GOLDEN[i] ^ 0x20)));
        EXPECT_EQ(NOTHING, read_all()) << i;
    }
}

TEST_F(FlashIni, GivesNothingForASectionThatTheTableDoesNotReach) {
    put(INI_FILE({{0xAA}, {0xBB}}));
    EXPECT_EQ((SECTIONS{{{0xAA}}, {{0xBB}}, std::nullopt}), read_all());
}

TEST_F(FlashIni, ReadsFilesOfMoreSections) {
    put(INI_FILE({{0x01}, {0x02}, {0x03}, {0x04}, {0x05}}));
    EXPECT_EQ((SECTIONS{{{0x01}}, {{0x02}}, {{0x03}}}), read_all());
    EXPECT_EQ((BYTES{0x05}), read(4));
    EXPECT_EQ(std::nullopt, read(5));
    EXPECT_EQ(std::nullopt, read(0xFFFFFFFF));
}

TEST_F(FlashIni, GivesNothingFromAFileWithATrailingByte) {
    INI_FILE ini = THREE;
    ini.behind_end = {0x00};
    put(ini);
    EXPECT_EQ(NOTHING, read_all());
}

TEST_F(FlashIni, GivesNothingFromATableThatIsWrongAnywhere) {
    const std::vector<INI_ENTRY> right = THREE.true_entries();
    const std::vector<std::vector<INI_ENTRY>> wrong = {
        {{43, 2}, right[1], right[2]},          // in the table
        {{45, 2}, right[1], right[2]},          // a gap
        {right[0], {44, 1}, right[2]},          // over another
        {right[1], right[0], right[2]},         // not in file order
        {{44, 0}, right[1], right[2]},          // present and empty
        {{0, 2}, right[1], right[2]},           // absent with a size
        {right[0], right[1], {47, 4}},          // past the end
        {right[0], right[1], {47, 2}},          // before the end
        {right[0], right[1], {0, 0}},           // data of no section
        {right[0], right[1], {47, 0xFFFFFFFF}}, // far past the end
        {{44, 0xFFFFFFFE}, {42, 5}, {47, 3}},   // the sum of 32 bits would fit again
        {{44, 2}, {46, 0xFFFFFFFF}, {45, 5}},   // the same
    };
    for (const auto& entries : wrong) {
        INI_FILE ini = THREE;
        ini.entries = entries;
        put(ini);
        EXPECT_EQ(NOTHING, read_all()) << entries[0].offset << ' ' << entries[1].offset << ' ' << entries[2].offset;
    }
}

TEST_F(FlashIni, GivesNothingWhenTheCountIsNotThatOfTheEntries) {
    for (const unsigned int count : {0U, 1U, 2U, 4U, 5U, 6U, 7U, 0x20000003U, 0xE0000003U, 0xFFFFFFFFU}) {
        INI_FILE ini = THREE;
        ini.count = count;
        put(ini);
        EXPECT_EQ(NOTHING, read_all()) << count;
    }
}

TEST_F(FlashIni, GivesNothingFromAnyTruncation) {
    for (size_t kept = 0; kept < GOLDEN.size(); ++kept) {
        put(first(GOLDEN, kept));
        EXPECT_EQ(NOTHING, read_all()) << kept;
    }
}

TEST_F(FlashIni, ReadsWhatTheFormatLetsItReadWhenAnyByteIsAnyOther) {
    for (size_t i = 0; i < GOLDEN.size(); ++i) {
        for (unsigned int value = 0; value < 256; ++value) {
            const BYTES changed = with_byte(GOLDEN, i, static_cast<unsigned char>(value));
            put(changed);
            ASSERT_EQ((SECTIONS{section_of(changed, 0), section_of(changed, 1), section_of(changed, 2)}), read_all())
                << i << ' ' << value;
        }
    }
}

TEST_F(FlashIni, ReadsWhatTheFormatLetsItReadFromRandomTables) {
    std::mt19937 random(20240611);
    const std::vector<unsigned int> numbers = {0, 0, 1, 2, 3, 28, 36, 44, 45, 46, 52, 0xFFFFFFFF};
    const auto pick = [&] { return numbers[random() % numbers.size()]; };
    unsigned int readable = 0;
    for (int round = 0; round < 5000; ++round) {
        INI_FILE ini({BYTES(random() % 3), BYTES(random() % 3), BYTES(random() % 3)});
        ini.entries = ini.true_entries();
        ini.entries->resize(random() % 4);
        if (random() % 2 == 0 && !ini.entries->empty())
            ini.entries->at(random() % ini.entries->size()) = {pick(), pick()};
        if (random() % 8 == 0)
            ini.count = pick();
        put(ini);
        const BYTES bytes = ini.bytes();
        const SECTIONS expected = {section_of(bytes, 0), section_of(bytes, 1), section_of(bytes, 2)};
        readable += expected == NOTHING ? 0 : 1;
        ASSERT_EQ(expected, read_all()) << hex_text(bytes);
    }
    EXPECT_LT(500U, readable);
}

TEST_F(FlashIni, GivesNothingFromWhatIsNoFile) {
    std::filesystem::create_directory(file);
    EXPECT_EQ(NOTHING, read_all());
    std::filesystem::remove(file);
    ASSERT_EQ(0, mkfifo(file.c_str(), 0600));
    EXPECT_EQ(NOTHING, read_all());
    std::filesystem::remove(file);
    std::filesystem::create_symlink("/dev/zero", file);
    EXPECT_EQ(NOTHING, read_all());
    std::filesystem::remove(file);
    std::filesystem::create_symlink(file, file);
    EXPECT_EQ(NOTHING, read_all());
}

TEST_F(FlashIni, GivesNothingFromAFileWithMoreThanItsTableCovers) {
    put(GOLDEN);
    std::filesystem::resize_file(file, 1ULL << 40);
    EXPECT_EQ(NOTHING, read_all());
    INI_FILE ini = THREE;
    ini.entries = {{44, 0xFFFFFFFF}, {0, 0}, {0, 0}}; // 6 bytes of data
    put(ini);
    EXPECT_EQ(NOTHING, read_all());
}

// ---- writing ----

TEST_F(FlashIni, WritesTheBytesOfAFileWrittenByHand) {
    EXPECT_TRUE(write(1, {0x01}));
    EXPECT_TRUE(write(2, {0x10, 0x11, 0x12}));
    EXPECT_TRUE(write(0, {0xAA, 0xBB}));
    EXPECT_EQ(GOLDEN, read_file(file));
}

TEST_F(FlashIni, LeavesNothingBesideTheFileButTheLock) {
    EXPECT_TRUE(write(1, {0x01}));
    EXPECT_EQ((std::vector<std::string>{"pgm_flash.ini", "pgm_flash.ini.lock"}), folder.names());
    EXPECT_TRUE(write(2, {0x02}));
    EXPECT_EQ((std::vector<std::string>{"pgm_flash.ini", "pgm_flash.ini.lock"}), folder.names());
}

TEST_F(FlashIni, TakesFortyFourBytesMoreThanItsSections) {
    EXPECT_TRUE(write(0, pattern(1000)));
    EXPECT_TRUE(write(1, pattern(100)));
    EXPECT_TRUE(write(2, pattern(10)));
    EXPECT_EQ(44U + 1110U, read_file(file).size());
}

TEST_F(FlashIni, ReadsBackASectionOfAnySize) {
    for (const size_t size : {size_t{1}, size_t{255}, size_t{256}, size_t{65536}, size_t{3} << 20}) {
        EXPECT_TRUE(write(2, pattern(size)));
        EXPECT_EQ((SECTIONS{std::nullopt, std::nullopt, pattern(size)}), read_all());
    }
}

TEST_F(FlashIni, ReplacesOneSectionAndKeepsTheOthers) {
    put(GOLDEN);
    EXPECT_TRUE(write(1, {0x55, 0x66, 0x77, 0x88}));
    EXPECT_EQ(INI_FILE({{0xAA, 0xBB}, {0x55, 0x66, 0x77, 0x88}, {0x10, 0x11, 0x12}}).bytes(), read_file(file));
}

TEST_F(FlashIni, RemovesASectionAndKeepsTheOthers) {
    put(GOLDEN);
    EXPECT_TRUE(remove(1));
    EXPECT_EQ((SECTIONS{{{0xAA, 0xBB}}, std::nullopt, {{0x10, 0x11, 0x12}}}), read_all());
    EXPECT_EQ(INI_FILE({{0xAA, 0xBB}, {}, {0x10, 0x11, 0x12}}).bytes(), read_file(file));
}

TEST_F(FlashIni, KeepsAFileWithoutDataWhenTheLastSectionIsRemoved) {
    EXPECT_TRUE(write(2, {0x01}));
    EXPECT_TRUE(remove(2));
    EXPECT_EQ(INI_FILE({{}, {}, {}}).bytes(), read_file(file));
    EXPECT_TRUE(write(0, {0x02}));
    EXPECT_EQ((SECTIONS{{{0x02}}, std::nullopt, std::nullopt}), read_all());
    EXPECT_FALSE(std::filesystem::exists(file + ".damaged"));
}

TEST_F(FlashIni, WritesThreeEntriesOverAFileOfTwo) {
    put(INI_FILE({{0xAA}, {0xBB}}));
    EXPECT_TRUE(write(2, {0xCC}));
    EXPECT_EQ(INI_FILE({{0xAA}, {0xBB}, {0xCC}}).bytes(), read_file(file));
    EXPECT_FALSE(std::filesystem::exists(file + ".damaged"));
}

TEST_F(FlashIni, RefusesASectionThatThereIsNotWithoutTouchingAnything) {
    put(GOLDEN);
    unsigned char byte = 0;
    for (const unsigned int section : {3U, 4U, 0xFFFFFFFFU}) {
        const auto value = static_cast<TOVREN_FLASH_INI_ENUM>(section);
        EXPECT_NO_REPORT(EXPECT_FALSE(TOVREN_FLASH_INI::write_flash_ini_data(value, &byte, 1)));
        EXPECT_NO_REPORT(EXPECT_FALSE(TOVREN_FLASH_INI::write_flash_ini_data(value, &byte, 0)));
        EXPECT_NO_REPORT(EXPECT_FALSE(TOVREN_FLASH_INI::write_flash_ini_data(value, nullptr, 1)));
    }
    EXPECT_EQ(GOLDEN, read_file(file));
    EXPECT_EQ(std::vector<std::string>{"pgm_flash.ini"}, folder.names());
}

TEST_F(FlashIni, ReportsASizeWithoutData) {
    EXPECT_REPORT(TOVREN_FLASH_INI::write_flash_ini_data(TOVREN_FLASH_INI_SFL, nullptr, 1), "data != NULL",
                  IN_FLASH_INI);
}

TEST_F(FlashIni, ReportsDataWithoutASize) {
    unsigned char byte = 0;
    EXPECT_REPORT(TOVREN_FLASH_INI::write_flash_ini_data(TOVREN_FLASH_INI_SFL, &byte, 0), "data == NULL", IN_FLASH_INI);
}

TEST_F(FlashIni, RefusesASectionThatNoOffsetReaches) {
    put(GOLDEN);
    unsigned char byte = 0;
    EXPECT_FALSE(TOVREN_FLASH_INI::write_flash_ini_data(TOVREN_FLASH_INI_SFL, &byte, 0xFFFFFFFF));
    EXPECT_EQ(GOLDEN, read_file(file));
}

// ---- what stands in the way of a write ----

TEST_F(FlashIni, KeepsAFileThatDoesNotVerifyBesideTheNewOne) {
    const BYTES damaged = first(GOLDEN, GOLDEN.size() - 1);
    put(damaged);
    EXPECT_TRUE(write(1, {0x01}));
    EXPECT_EQ(damaged, read_file(file + ".damaged"));
    EXPECT_EQ(INI_FILE({{}, {0x01}, {}}).bytes(), read_file(file));
    EXPECT_EQ((std::vector<std::string>{"pgm_flash.ini", "pgm_flash.ini.damaged", "pgm_flash.ini.lock"}),
              folder.names());
}

TEST_F(FlashIni, KeepsTheLastFileThatDoesNotVerify) {
    INI_FILE without_entries;
    ASSERT_EQ(20U, without_entries.bytes().size());
    for (const BYTES& damaged : {BYTES{}, without_entries.bytes(), pattern(65536), pattern(200000)}) {
        put(damaged);
        EXPECT_TRUE(write(1, {0x01}));
        EXPECT_EQ(damaged, read_file(file + ".damaged"));
        EXPECT_TRUE(write(1, {0x02}));
        EXPECT_EQ(damaged, read_file(file + ".damaged"));
    }
}

TEST_F(FlashIni, KeepsWhateverTheFormatDoesNotLetItRead) {
    for (size_t i = 0; i < 2 * GOLDEN.size(); ++i) {
        const size_t place = i / 2;
        const BYTES changed =
            with_byte(GOLDEN, place, static_cast<unsigned char>(GOLDEN[place] ^ (i % 2 == 0 ? 1 : 64)));
        std::filesystem::remove(file + ".damaged");
        put(changed);
        EXPECT_TRUE(write(1, {0x77}));
        EXPECT_EQ(!is_sound(changed), std::filesystem::exists(file + ".damaged")) << i;
        EXPECT_EQ((SECTIONS{section_of(changed, 0), BYTES{0x77}, section_of(changed, 2)}), read_all()) << i;
    }
}

TEST_F(FlashIni, ChangesNothingWhenAFileThatDoesNotVerifyCannotBeKept) {
    put(pattern(50));
    std::filesystem::create_directory(file + ".damaged");
    EXPECT_FALSE(write(1, {0x01}));
    EXPECT_EQ(pattern(50), read_file(file));
    std::filesystem::remove(file + ".damaged");
    ASSERT_EQ(0, mkfifo((file + ".damaged").c_str(), 0600));
    EXPECT_FALSE(write(1, {0x01}));
    EXPECT_EQ(pattern(50), read_file(file));
}

TEST_F(FlashIni, WritesNothingWithoutALock) {
    put(GOLDEN);
    std::filesystem::create_directory(file + ".lock");
    EXPECT_FALSE(write(1, {0x55}));
    EXPECT_EQ(GOLDEN, read_file(file));
}

TEST_F(FlashIni, WritesNothingWithoutAFolder) {
    TOVREN_STANDALONE_HOST::set_module_path(folder.path("none"));
    EXPECT_FALSE(write(1, {0x55}));
}

TEST_F(FlashIni, WritesNothingThroughLinksInACircle) {
    std::filesystem::create_symlink("pgm_flash.ini", file);
    EXPECT_FALSE(write(1, {0x55}));
    EXPECT_EQ(std::vector<std::string>{"pgm_flash.ini"}, folder.names());
    EXPECT_FALSE(std::filesystem::exists(".lock"));
}

TEST_F(FlashIni, WritesNothingOverWhatIsNoFile) {
    ASSERT_EQ(0, mkfifo(file.c_str(), 0600));
    EXPECT_FALSE(write(1, {0x55}));
    EXPECT_TRUE(std::filesystem::is_fifo(file));
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    EXPECT_FALSE(write(1, {0x55}));
    EXPECT_TRUE(std::filesystem::is_directory(file));
}

TEST_F(FlashIni, UsesAgainWhatAKilledWriterLeft) {
    put(GOLDEN);
    write_file(file + ".new", pattern(30));
    EXPECT_TRUE(write(1, {0x55}));
    EXPECT_EQ((BYTES{0x55}), read(1));
    EXPECT_EQ((std::vector<std::string>{"pgm_flash.ini", "pgm_flash.ini.lock"}), folder.names());
}

TEST_F(FlashIni, IsWrittenThroughALinkAndKeepsItsPermissions) {
    std::filesystem::create_directory(folder.path("elsewhere"));
    const std::string target = folder.path("elsewhere/parameters");
    write_file(target, GOLDEN);
    ASSERT_EQ(0, chmod(target.c_str(), 0640));
    std::filesystem::create_symlink(target, file);
    EXPECT_TRUE(remove(2));
    EXPECT_EQ((std::vector<std::string>{"elsewhere", "pgm_flash.ini"}), folder.names());
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    EXPECT_EQ(INI_FILE({{0xAA, 0xBB}, {0x01}, {}}).bytes(), read_file(target));
    EXPECT_TRUE(std::filesystem::exists(target + ".lock"));
    EXPECT_EQ(std::filesystem::perms{0640}, std::filesystem::status(target).permissions());
}

} // namespace
