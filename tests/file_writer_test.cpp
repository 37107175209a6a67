// Writing a file in one step: nothing is seen of it before it is complete.
#include "bytes.h"
#include "temporary_folder.h"
#include "tovren_file.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class FileWriter : public testing::Test {
protected:
    // Writes the text and commits it.
    static bool written(const std::string& path, const std::string& text) {
        TOVREN_FILE_WRITER writer(path);
        writer.write(text_bytes(text));
        return writer.commit();
    }

    TEMPORARY_FOLDER folder;
    std::string path = folder.path("file");
};

TEST_F(FileWriter, WritesANewFile) {
    EXPECT_TRUE(written(path, "new"));
    EXPECT_EQ("new", read_text(path));
    EXPECT_EQ(std::vector<std::string>{"file"}, folder.names());
}

TEST_F(FileWriter, WritesPiecesOneAfterTheOther) {
    TOVREN_FILE_WRITER writer(path);
    writer.write(text_bytes("one "));
    writer.write({});
    writer.write(text_bytes("two"));
    EXPECT_TRUE(writer.commit());
    EXPECT_EQ("one two", read_text(path));
}

TEST_F(FileWriter, WritesAnEmptyFile) {
    EXPECT_TRUE(TOVREN_FILE_WRITER(path).commit());
    EXPECT_EQ("", read_text(path));
}

TEST_F(FileWriter, ReplacesAnOlderFileOnCommitOnly) {
    write_text(path, "older");
    TOVREN_FILE_WRITER writer(path);
    writer.write(text_bytes("new"));
    EXPECT_EQ("older", read_text(path));
    EXPECT_TRUE(writer.commit());
    EXPECT_EQ("new", read_text(path));
}

TEST_F(FileWriter, LeavesEverythingAsItWasWithoutACommit) {
    write_text(path, "older");
    { TOVREN_FILE_WRITER(path).write(text_bytes("new")); }
    EXPECT_EQ("older", read_text(path));
    EXPECT_EQ(std::vector<std::string>{"file"}, folder.names());
    { TOVREN_FILE_WRITER(folder.path("other")).write(text_bytes("new")); }
    EXPECT_EQ(std::vector<std::string>{"file"}, folder.names());
}

TEST_F(FileWriter, LeavesNothingBesideAfterACommitThatFailed) {
    TOVREN_FILE_WRITER writer(path);
    writer.write(text_bytes("new"));
    std::filesystem::create_directory(path); // in the way of the rename
    EXPECT_FALSE(writer.commit());
    EXPECT_EQ(std::vector<std::string>{"file"}, folder.names());
}

TEST_F(FileWriter, FailsWhereThereIsNoFolder) {
    EXPECT_FALSE(written(folder.path("none/file"), "new"));
    EXPECT_FALSE(written("", "new"));
}

TEST_F(FileWriter, FailsOnAFolder) {
    EXPECT_FALSE(written(folder.path(), "new"));
    EXPECT_TRUE(std::filesystem::is_directory(folder.path()));
    EXPECT_EQ(std::vector<std::string>{}, folder.names());
}

TEST_F(FileWriter, FailsOnADeviceThatIsFull) {
    EXPECT_FALSE(written("/dev/full", std::string(100000, 'x')));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(FileWriter, WritesToADeviceDirectly) {
    EXPECT_TRUE(written("/dev/null", "new"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(FileWriter, WritesIntoAPipeThatHasNoPathOfItsOwn) {
    int ends[2];
    ASSERT_EQ(0, pipe(ends));
    EXPECT_TRUE(written("/dev/fd/" + std::to_string(ends[1]), "new"));
    close(ends[1]);
    char text[10];
    EXPECT_EQ(3, read(ends[0], text, sizeof text));
    EXPECT_EQ("new", std::string(text, 3));
    close(ends[0]);
}

TEST_F(FileWriter, FollowsALink) {
    std::filesystem::create_directory(folder.path("elsewhere"));
    write_text(folder.path("elsewhere/real"), "older");
    std::filesystem::create_symlink("elsewhere/real", path);
    EXPECT_TRUE(written(path, "new"));
    EXPECT_TRUE(std::filesystem::is_symlink(path));
    EXPECT_EQ("new", read_text(folder.path("elsewhere/real")));
}

TEST_F(FileWriter, FollowsALinkToAFileThatIsNotThereYet) {
    std::filesystem::create_symlink("real", path);
    EXPECT_TRUE(written(path, "new"));
    EXPECT_EQ("new", read_text(folder.path("real")));
    EXPECT_TRUE(std::filesystem::is_symlink(path));
}

TEST_F(FileWriter, FollowsALinkToALink) {
    std::filesystem::create_symlink(folder.path("two"), path);
    std::filesystem::create_symlink("./three", folder.path("two"));
    EXPECT_TRUE(written(path, "new"));
    EXPECT_EQ("new", read_text(folder.path("three")));
    EXPECT_TRUE(std::filesystem::is_symlink(path));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("two")));
}

TEST_F(FileWriter, FollowsNoLinksInACircle) {
    std::filesystem::create_symlink("two", path);
    std::filesystem::create_symlink("file", folder.path("two"));
    EXPECT_FALSE(written(path, "new"));
    EXPECT_EQ((std::vector<std::string>{"file", "two"}), folder.names());
}

mode_t mode_of(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(0, stat(path.c_str(), &status));
    return status.st_mode & 0777U;
}

TEST_F(FileWriter, KeepsTheOlderFilesPermissions) {
    write_text(path, "older");
    ASSERT_EQ(0, chmod(path.c_str(), 0640));
    EXPECT_TRUE(written(path, "new"));
    EXPECT_EQ(0640U, mode_of(path));
}

TEST_F(FileWriter, GivesANewFileThePermissionsOfAnyNewFile) {
    const mode_t former = umask(0027);
    EXPECT_TRUE(written(path, "new"));
    umask(former);
    EXPECT_EQ(0640U, mode_of(path));
}

} // namespace
