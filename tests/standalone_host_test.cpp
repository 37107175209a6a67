// The standalone host's services with state: internal errors, debug messages, settings, places, the memory tracker.
#include "fixtures.h"
#include "host_cfg.h"
#include "host_fio.h"
#include "host_mem.h"
#include "host_msg.h"
#include "tovren_flash_manager.h"
#include "tovren_standalone_host.h"

#include <chrono>
#include <cstdarg>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// ---- internal errors ----

using StandaloneReport = HOST_TEST;
using StandaloneReportDeathTest = HOST_TEST;

TEST_F(StandaloneReportDeathTest, PrintsTheConditionAndItsPlaceAndEndsWith70) {
    EXPECT_EXIT(MSG_INTERNAL_ERROR::report("a == \"b\" && 100%s", "TOVREN", "pgm/tovren/x.cpp", 7),
                testing::ExitedWithCode(70), "^internal error: a == \"b\" && 100%s \\(pgm/tovren/x\\.cpp:7\\)\n$");
}

TEST_F(StandaloneReportDeathTest, EndsTheProcessThatLoadsABrokenDatabase) {
    TOVREN_STANDALONE_HOST::set_device_db_root(folder.path());
    EXPECT_EXIT(TOVREN_FLASH_MANAGER(true, 1, false, false), testing::ExitedWithCode(70),
                "^internal error: FIO_FILE_SYSTEM::exists\\(flash_file\\.fullpath\\(\\)\\.c_str\\(\\)\\) && "
                "FIO_FILE_SYSTEM::status\\(flash_file\\.fullpath\\(\\)\\.c_str\\(\\), &stat_info\\) "
                "\\(pgm/tovren/[a-z_]+\\.cpp:[0-9]+\\)\n$");
}

TEST_F(StandaloneReportDeathTest, EndsTheProcessAlsoBehindAHandlerThatReturns) {
    TOVREN_STANDALONE_HOST::set_report_handler([](const char*, const char*, const char*, int) {});
    EXPECT_EXIT(MSG_INTERNAL_ERROR::report("a", "TOVREN", "f", 1), testing::ExitedWithCode(70),
                "^internal error: a \\(f:1\\)\n$");
}

TEST_F(StandaloneReportDeathTest, PrintsAgainAfterTheHandlerIsTakenAway) {
    TOVREN_STANDALONE_HOST::set_report_handler([](const char*, const char*, const char*, int) { throw 1; });
    TOVREN_STANDALONE_HOST::set_report_handler({});
    EXPECT_EXIT(MSG_INTERNAL_ERROR::report("a", "TOVREN", "f", 1), testing::ExitedWithCode(70),
                "^internal error: a \\(f:1\\)\n$");
}

TEST_F(StandaloneReport, HandsAllFourArgumentsToTheHandler) {
    std::string seen;
    TOVREN_STANDALONE_HOST::set_report_handler(
        [&](const char* expression, const char* prefix, const char* file, int line) {
            seen = std::string(expression) + '|' + prefix + '|' + file + '|' + std::to_string(line);
            throw 1;
        });
    EXPECT_THROW(MSG_INTERNAL_ERROR::report("a == b", "TOVREN", "pgm/tovren/x.cpp", 12), int);
    EXPECT_EQ("a == b|TOVREN|pgm/tovren/x.cpp|12", seen);
}

// ---- debug messages ----

using StandaloneDebug = HOST_TEST;

int debug(MSG_D_LEVEL level, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int result = msg_local_vdebug("TOVREN", level, format, args);
    va_end(args);
    return result;
}

TEST_F(StandaloneDebug, ShowsNothingAtFirst) {
    EXPECT_EQ("", standard_error_of([] { EXPECT_EQ(0, debug(MSG_D_LEVEL_0, "text")); }));
}

TEST_F(StandaloneDebug, ShowsMessagesUpToItsLevelALineEach) {
    TOVREN_STANDALONE_HOST::set_debug_level(2);
    const std::string output = standard_error_of([] {
        EXPECT_GT(debug(MSG_D_LEVEL_0, "zero %d", 10), 0);
        EXPECT_GT(debug(MSG_D_LEVEL_2, "two %s", "texts"), 0);
        EXPECT_EQ(0, debug(MSG_D_LEVEL_3, "three"));
    });
    const size_t line_end = output.find('\n');
    ASSERT_NE(std::string::npos, line_end);
    const std::string lines[] = {output.substr(0, line_end), output.substr(line_end + 1)};
    EXPECT_NE(std::string::npos, lines[0].find("TOVREN"));
    EXPECT_TRUE(lines[0].ends_with("zero 10")) << lines[0];
    EXPECT_TRUE(lines[1].ends_with("two texts\n")) << lines[1];
}

TEST_F(StandaloneDebug, ReturnsTheNumberOfCharactersShown) {
    TOVREN_STANDALONE_HOST::set_debug_level(0);
    int shown = 0;
    const std::string output =
        standard_error_of([&] { shown = debug(MSG_D_LEVEL_0, "%s", std::string(5000, 'x').c_str()); });
    EXPECT_EQ(output.size(), static_cast<size_t>(shown));
    EXPECT_NE(std::string::npos, output.find(std::string(5000, 'x')));
}

// ---- settings ----

class StandaloneSettings : public HOST_TEST {
protected:
    // What standard error says when this file is read.
    std::string read(const std::string& text) {
        write_text(path, text);
        return standard_error_of([&] { EXPECT_TRUE(TOVREN_STANDALONE_HOST::set_settings_file(path)); });
    }

    std::string path = folder.path("settings.ini");
};

TEST_F(StandaloneSettings, AreEmptyOrTheDefaultWhereNothingSetsThem) {
    EXPECT_EQ("", cfg_get_value("A"));
    EXPECT_FALSE(cfg_is_on("A", false));
    EXPECT_TRUE(cfg_is_on("A", true));
}

TEST_F(StandaloneSettings, AreTheLinesOfAFile) {
    EXPECT_EQ("", read("A = one\nB=two\n  C\t=\tthree words  \nD = a = b\nE =\nF = last"));
    EXPECT_EQ("one", cfg_get_value("A"));
    EXPECT_EQ("two", cfg_get_value("B"));
    EXPECT_EQ("three words", cfg_get_value("C"));
    EXPECT_EQ("a = b", cfg_get_value("D"));
    EXPECT_EQ("", cfg_get_value("E"));
    EXPECT_EQ("last", cfg_get_value("F"));
}

TEST_F(StandaloneSettings, SkipBlankLinesAndComments) {
    EXPECT_EQ("", read("\n  \t\n# a comment\n   # another = one\nA = one\n#B = two\r\n\r\n"));
    EXPECT_EQ("one", cfg_get_value("A"));
    EXPECT_EQ("", cfg_get_value("B"));
    EXPECT_EQ("", cfg_get_value("#B"));
}

TEST_F(StandaloneSettings, EndAtACommentInTheLine) {
    EXPECT_EQ("", read("A = one # two\nB = #three\n"));
    EXPECT_EQ("one", cfg_get_value("A"));
    EXPECT_EQ("", cfg_get_value("B"));
}

TEST_F(StandaloneSettings, TakeLinesThatEndInCarriageReturns) {
    EXPECT_EQ("", read("A = one\r\nB = on\r\n"));
    EXPECT_EQ("one", cfg_get_value("A"));
    EXPECT_TRUE(cfg_is_on("B", false));
}

TEST_F(StandaloneSettings, TakeTheLastOfTwoEqualNames) {
    read("A = one\nB = two\nA = three\n");
    EXPECT_EQ("three", cfg_get_value("A"));
}

TEST_F(StandaloneSettings, HaveCaseSensitiveNames) {
    read("Name = one\n");
    EXPECT_EQ("one", cfg_get_value("Name"));
    EXPECT_EQ("", cfg_get_value("NAME"));
    EXPECT_FALSE(cfg_is_on("name", false));
}

TEST_F(StandaloneSettings, NameAMalformedLineAndSkipIt) {
    const std::string errors = read("A = one\n\nno separator\n= no name\n   = none either\nB = two\n");
    EXPECT_NE(std::string::npos, errors.find(path + ":3")) << errors;
    EXPECT_NE(std::string::npos, errors.find(path + ":4")) << errors;
    EXPECT_NE(std::string::npos, errors.find(path + ":5")) << errors;
    EXPECT_EQ(3, std::count(errors.begin(), errors.end(), '\n')) << errors;
    EXPECT_EQ("one", cfg_get_value("A"));
    EXPECT_EQ("two", cfg_get_value("B"));
}

TEST_F(StandaloneSettings, AreSwitchesInAnyCase) {
    for (const char* value : {"on", "ON", "On", "true", "TRUE", "True", "yes", "YES", "yEs", "1"}) {
        TOVREN_STANDALONE_HOST::set_setting("A", value);
        EXPECT_TRUE(cfg_is_on("A", false)) << value;
    }
    for (const char* value : {"off", "false", "no", "0", "2", "11", "onn", "o", "enabled", "y", "t"}) {
        TOVREN_STANDALONE_HOST::set_setting("A", value);
        EXPECT_FALSE(cfg_is_on("A", true)) << value;
    }
}

TEST_F(StandaloneSettings, AreOverriddenOneByOne) {
    read("A = one\nB = two\n");
    TOVREN_STANDALONE_HOST::set_setting("A", "own");
    EXPECT_EQ("own", cfg_get_value("A"));
    EXPECT_EQ("two", cfg_get_value("B"));
}

TEST_F(StandaloneSettings, AreOverriddenAlsoByAFileReadLater) {
    TOVREN_STANDALONE_HOST::set_setting("A", "own");
    read("A = one\n");
    EXPECT_EQ("own", cfg_get_value("A"));
}

TEST_F(StandaloneSettings, AreOverriddenByAnEmptyValueToo) {
    read("A = on\n");
    TOVREN_STANDALONE_HOST::set_setting("A", "");
    EXPECT_EQ("", cfg_get_value("A"));
    EXPECT_FALSE(cfg_is_on("A", false));
}

TEST_F(StandaloneSettings, AreForgottenWithAReset) {
    read("A = one\n");
    TOVREN_STANDALONE_HOST::set_setting("B", "own");
    TOVREN_STANDALONE_HOST::reset_settings();
    EXPECT_EQ("", cfg_get_value("A"));
    EXPECT_EQ("", cfg_get_value("B"));
}

TEST_F(StandaloneSettings, AreEmptyWhereTheFileCannotBeRead) {
    read("A = one\n");
    EXPECT_FALSE(TOVREN_STANDALONE_HOST::set_settings_file(folder.path("none.ini")));
    EXPECT_EQ("", cfg_get_value("A"));
    EXPECT_FALSE(TOVREN_STANDALONE_HOST::set_settings_file(folder.path()));
}

TEST_F(StandaloneSettings, OfOneFileReplaceThoseOfAnother) {
    read("A = one\nB = two\n");
    read("A = three\n");
    EXPECT_EQ("three", cfg_get_value("A"));
    EXPECT_EQ("", cfg_get_value("B"));
}

TEST_F(StandaloneSettings, ComeFromTheFileThatTheEnvironmentNames) {
    write_text(path, "A = one\n");
    const SCOPED_ENVIRONMENT named("TOVREN_SETTINGS", path.c_str());
    TOVREN_STANDALONE_HOST::reset_settings();
    EXPECT_EQ(path, TOVREN_STANDALONE_HOST::get_settings_file());
    EXPECT_EQ("one", cfg_get_value("A"));
}

TEST_F(StandaloneSettings, ComeFromTheUsersConfigurationFolderOtherwise) {
    const SCOPED_ENVIRONMENT unnamed("TOVREN_SETTINGS", nullptr);
    const SCOPED_ENVIRONMENT home("HOME", folder.path("home").c_str());
    {
        const SCOPED_ENVIRONMENT config("XDG_CONFIG_HOME", folder.path("config").c_str());
        TOVREN_STANDALONE_HOST::reset_settings();
        EXPECT_EQ(folder.path("config/tovren/settings.ini"), TOVREN_STANDALONE_HOST::get_settings_file());
        std::filesystem::create_directories(folder.path("config/tovren"));
        write_text(folder.path("config/tovren/settings.ini"), "A = one\n");
        EXPECT_EQ("one", cfg_get_value("A"));
    }
    const SCOPED_ENVIRONMENT no_config("XDG_CONFIG_HOME", nullptr);
    TOVREN_STANDALONE_HOST::reset_settings();
    EXPECT_EQ(folder.path("home/.config/tovren/settings.ini"), TOVREN_STANDALONE_HOST::get_settings_file());
    EXPECT_EQ("", cfg_get_value("A"));
}

TEST_F(StandaloneSettings, SayNothingOfAMissingDefaultFile) {
    const SCOPED_ENVIRONMENT unnamed("TOVREN_SETTINGS", nullptr);
    const SCOPED_ENVIRONMENT config("XDG_CONFIG_HOME", folder.path("none").c_str());
    TOVREN_STANDALONE_HOST::reset_settings();
    EXPECT_EQ("", standard_error_of([] { cfg_get_value("A"); }));
}

TEST_F(StandaloneSettings, NameAMissingFileThatTheEnvironmentNames) {
    const SCOPED_ENVIRONMENT named("TOVREN_SETTINGS", folder.path("none.ini").c_str());
    TOVREN_STANDALONE_HOST::reset_settings();
    const std::string errors = standard_error_of([] { cfg_get_value("A"); });
    EXPECT_TRUE(errors.starts_with(folder.path("none.ini") + ":")) << errors;
    EXPECT_EQ("", standard_error_of([] { cfg_get_value("A"); }));
}

TEST_F(StandaloneSettings, NameALineWithoutTheBytesThatSteerATerminal) {
    const std::string errors = read("no \033[31mred\177 and no \xC2\x9B but \xC3\xA4\n");
    EXPECT_EQ(path + ":1: \"no \\x1B[31mred\\x7F and no \\xC2\\x9B but \xC3\xA4\" is not of the form name = value; "
                     "the line is skipped\n",
              errors);
}

// ---- changing the settings file ----

class StandaloneSettingsFile : public HOST_TEST {
protected:
    // What the file holds after the setting A was stored in a file of this text.
    std::string stored(const std::string& text, const std::string& value = "new") {
        write_text(path, text);
        TOVREN_STANDALONE_HOST::set_settings_file(path);
        EXPECT_EQ("", TOVREN_STANDALONE_HOST::store_setting("A", value)) << text;
        return read_text(path);
    }

    std::string removed(const std::string& text, unsigned int expected_count) {
        write_text(path, text);
        TOVREN_STANDALONE_HOST::set_settings_file(path);
        unsigned int count = 99;
        EXPECT_EQ("", TOVREN_STANDALONE_HOST::remove_setting("A", count)) << text;
        EXPECT_EQ(expected_count, count) << text;
        return read_text(path);
    }

    // The names in the folder: what a change leaves beside the file would show.
    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
            found.push_back(entry.path().filename());
        return found;
    }

    std::string path = folder.path("settings.ini");
};

TEST_F(StandaloneSettingsFile, TakesANewSettingAsItsLastLine) {
    EXPECT_EQ("A = new\n", stored(""));
    EXPECT_EQ("# mine\n\nnonsense\nAA = 1\nA = new\n", stored("# mine\n\nnonsense\nAA = 1\n"));
    EXPECT_EQ("a = 1\nA = new\n", stored("a = 1\n"));
    EXPECT_EQ("# A = 1\nA = new\n", stored("# A = 1\n"));
}

TEST_F(StandaloneSettingsFile, EndsALineThatHadNoEndBeforeANewOne) {
    EXPECT_EQ("B = 1\nA = new\n", stored("B = 1"));
    EXPECT_EQ("B = 1\r\nC = 2\r\nA = new\r\n", stored("B = 1\r\nC = 2"));
}

TEST_F(StandaloneSettingsFile, KeepsItsLineEnds) {
    EXPECT_EQ("B = 1\r\nA = new\r\n", stored("B = 1\r\n"));
    EXPECT_EQ("A = new\r\nB = 1\n", stored("A = old\r\nB = 1\n"));
    EXPECT_EQ("A = new", stored("A = old"));
}

TEST_F(StandaloneSettingsFile, ChangesNothingOfALineButTheValue) {
    EXPECT_EQ("\tA=new # why = old\n", stored("\tA=old # why = old\n"));
    EXPECT_EQ("A  =  new  \n", stored("A  =  old  \n"));
    EXPECT_EQ("A = new\n", stored("A = A = A\n"));
    EXPECT_EQ("A =new# none\n", stored("A =# none\n"));
    EXPECT_EQ("A =\n", stored("A =old\n", ""));
}

TEST_F(StandaloneSettingsFile, ChangesTheLineThatCounts) {
    EXPECT_EQ("A = 1\nB = 2\nA = new\n", stored("A = 1\nB = 2\nA = 3\n"));
    EXPECT_EQ("new", cfg_get_value("A"));
}

TEST_F(StandaloneSettingsFile, KeepsBytesThatAreNoText) {
    const std::string bytes("\0\xFF\033\r\rx\n\n", 8);
    EXPECT_EQ(bytes + "A = new\n", stored(bytes));
}

TEST_F(StandaloneSettingsFile, LosesEachLineOfARemovedSettingAndNoOther) {
    EXPECT_EQ("# A = 0\n\nB = A\n", removed("# A = 0\nA = 1\n\nB = A\n A=2 # two\nA =", 3));
    EXPECT_EQ("B = 1", removed("A = 1\nB = 1", 1));
    EXPECT_EQ("", cfg_get_value("A"));
    EXPECT_EQ("1", cfg_get_value("B"));
}

TEST_F(StandaloneSettingsFile, StaysTheSameFileWhereNothingIsToBeChanged) {
    write_text(path, "A = 1");
    const auto time = std::filesystem::file_time_type() + std::chrono::hours(1);
    std::filesystem::last_write_time(path, time);
    TOVREN_STANDALONE_HOST::set_settings_file(path);
    unsigned int count = 99;
    EXPECT_EQ("", TOVREN_STANDALONE_HOST::store_setting("A", "1"));
    EXPECT_EQ("", TOVREN_STANDALONE_HOST::remove_setting("B", count));
    EXPECT_EQ(0U, count);
    EXPECT_EQ(time, std::filesystem::last_write_time(path));
}

TEST_F(StandaloneSettingsFile, IsMadeWithItsFolder) {
    path = folder.path("new/deeper/settings.ini");
    TOVREN_STANDALONE_HOST::set_settings_file(path);
    EXPECT_EQ("", TOVREN_STANDALONE_HOST::store_setting("A", "1"));
    EXPECT_EQ("A = 1\n", read_text(path));
}

TEST_F(StandaloneSettingsFile, IsNotMadeToRemoveASetting) {
    TOVREN_STANDALONE_HOST::set_settings_file(path);
    unsigned int count = 99;
    EXPECT_EQ("", TOVREN_STANDALONE_HOST::remove_setting("A", count));
    EXPECT_EQ(0U, count);
    EXPECT_TRUE(names().empty());
}

TEST_F(StandaloneSettingsFile, KeepsItsRightsAndTheLinkToIt) {
    write_text(path, "B = 1\n");
    chmod(path.c_str(), 0640);
    std::filesystem::create_symlink("settings.ini", folder.path("link.ini"));
    TOVREN_STANDALONE_HOST::set_settings_file(folder.path("link.ini"));
    EXPECT_EQ("", TOVREN_STANDALONE_HOST::store_setting("A", "1"));
    EXPECT_EQ("B = 1\nA = 1\n", read_text(path));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link.ini")));
    EXPECT_EQ(std::filesystem::perms(0640), std::filesystem::status(path).permissions());
    EXPECT_EQ(2U, names().size());
}

TEST_F(StandaloneSettingsFile, IsWholeWhereTheNewOneCannotBeWritten) {
    write_text(path, "B = 1\n");
    TOVREN_STANDALONE_HOST::set_settings_file(path);
    std::filesystem::create_directory(path + '.' + std::to_string(getpid()) + ".new"); // in the way
    EXPECT_EQ("it cannot be written: Is a directory", TOVREN_STANDALONE_HOST::store_setting("A", "1"));
    EXPECT_EQ("B = 1\n", read_text(path));
    EXPECT_EQ("1", cfg_get_value("B"));
}

TEST_F(StandaloneSettingsFile, IsNoFolderAndNoDevice) {
    TOVREN_STANDALONE_HOST::set_settings_file(folder.path());
    EXPECT_EQ("it is no file", TOVREN_STANDALONE_HOST::store_setting("A", "1"));
    TOVREN_STANDALONE_HOST::set_settings_file("/dev/null");
    EXPECT_EQ("it is no file", TOVREN_STANDALONE_HOST::store_setting("A", "1"));
}

TEST_F(StandaloneSettingsFile, RefusesWhatWouldNotComeBack) {
    write_text(path, "B = 1\n");
    TOVREN_STANDALONE_HOST::set_settings_file(path);
    for (const char* value : {"a # b", " a", "a ", "a\nb", "a\n"})
        EXPECT_NE("", TOVREN_STANDALONE_HOST::store_setting("A", value)) << value;
    for (const char* name : {"", " A", "A#", "A=B", "A\nB"})
        EXPECT_NE("", TOVREN_STANDALONE_HOST::store_setting(name, "1")) << name;
    EXPECT_EQ("B = 1\n", read_text(path));
}

// ---- places and files ----

using StandaloneFiles = HOST_TEST;

TEST_F(StandaloneFiles, HaveTheDatabaseRootThatIsSet) {
    TOVREN_STANDALONE_HOST::set_device_db_root("/some/root");
    EXPECT_EQ("/some/root", gen_get_device_db_fullpath());
}

TEST_F(StandaloneFiles, HaveTheDatabaseRootOfTheEnvironmentOtherwise) {
    const SCOPED_ENVIRONMENT root("TOVREN_DB_ROOT", "/other/root");
    EXPECT_EQ("/other/root", gen_get_device_db_fullpath());
    TOVREN_STANDALONE_HOST::set_device_db_root("/some/root");
    EXPECT_EQ("/some/root", gen_get_device_db_fullpath());
    TOVREN_STANDALONE_HOST::set_device_db_root("");
    EXPECT_EQ("/other/root", gen_get_device_db_fullpath());
}

TEST_F(StandaloneFiles, ExistWhateverTheyAre) {
    write_text(folder.path("file"), "12345");
    ASSERT_EQ(0, mkfifo(folder.path("pipe").c_str(), 0600));
    std::filesystem::create_symlink("file", folder.path("link"));
    std::filesystem::create_symlink("nowhere", folder.path("dangling"));
    EXPECT_TRUE(FIO_FILE_SYSTEM::exists(folder.path("file").c_str()));
    EXPECT_TRUE(FIO_FILE_SYSTEM::exists(folder.path("pipe").c_str()));
    EXPECT_TRUE(FIO_FILE_SYSTEM::exists(folder.path("link").c_str()));
    EXPECT_TRUE(FIO_FILE_SYSTEM::exists(folder.path().c_str()));
    EXPECT_FALSE(FIO_FILE_SYSTEM::exists(folder.path("dangling").c_str()));
    EXPECT_FALSE(FIO_FILE_SYSTEM::exists(folder.path("none").c_str()));
    EXPECT_FALSE(FIO_FILE_SYSTEM::exists(folder.path("file/x").c_str()));
    EXPECT_FALSE(FIO_FILE_SYSTEM::exists(""));
}

TEST_F(StandaloneFiles, HaveASizeWhenTheyAreRegular) {
    write_text(folder.path("file"), "12345");
    write_text(folder.path("empty"), "");
    std::filesystem::create_symlink("file", folder.path("link"));
    FIO_STATUS status;
    EXPECT_TRUE(FIO_FILE_SYSTEM::status(folder.path("file").c_str(), &status));
    EXPECT_EQ(5U, status.size);
    EXPECT_TRUE(FIO_FILE_SYSTEM::status(folder.path("empty").c_str(), &status));
    EXPECT_EQ(0U, status.size);
    EXPECT_TRUE(FIO_FILE_SYSTEM::status(folder.path("link").c_str(), &status));
    EXPECT_EQ(5U, status.size);
}

TEST_F(StandaloneFiles, HaveNoSizeOtherwise) {
    ASSERT_EQ(0, mkfifo(folder.path("pipe").c_str(), 0600));
    FIO_STATUS status;
    status.size = 77;
    for (const std::string& path : {folder.path("pipe"), folder.path(), folder.path("none"), std::string("/dev/null")})
        EXPECT_FALSE(FIO_FILE_SYSTEM::status(path.c_str(), &status)) << path;
    EXPECT_EQ(77U, status.size);
}

TEST_F(StandaloneFiles, KeepTheirPathAsItWasGiven) {
    EXPECT_EQ("a/../b//c", FIO_PATH("a/../b//c").fullpath());
    EXPECT_EQ("", FIO_PATH(std::string()).fullpath());
}

// ---- memory tracker ----

using NAMES = std::vector<std::string>;

TEST(StandaloneMemoryTracker, KnowsTheLibraryFromItsLoad) {
    EXPECT_EQ(NAMES{"TOVREN"}, TOVREN_STANDALONE_HOST::get_registered_prefixes());
}

TEST(StandaloneMemoryTracker, KnowsALibraryForItsLifetime) {
    {
        std::string name = "QXLIB";
        const MEM_INITIALIZER one(name.c_str());
        name = "other";
        const MEM_INITIALIZER two("QXLIB2");
        EXPECT_EQ((NAMES{"TOVREN", "QXLIB", "QXLIB2"}), TOVREN_STANDALONE_HOST::get_registered_prefixes());
    }
    EXPECT_EQ(NAMES{"TOVREN"}, TOVREN_STANDALONE_HOST::get_registered_prefixes());
}

TEST(StandaloneMemoryTracker, CountsEqualNamesOneByOne) {
    auto one = std::make_unique<MEM_INITIALIZER>("QXLIB");
    const MEM_INITIALIZER two("QXLIB");
    one.reset();
    EXPECT_EQ((NAMES{"TOVREN", "QXLIB"}), TOVREN_STANDALONE_HOST::get_registered_prefixes());
}

} // namespace
