// The generator of the world of parts as a program: the same bytes each time, and for a broken description every fault
// with its file, line and reason, and no output.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

std::string read_file(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class WorldGenerator : public testing::Test {
protected:
    WorldGenerator()
        : m_folder(fs::path(testing::TempDir()) /
                   ("world_gen_" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()))) {
        fs::remove_all(m_folder);
        fs::create_directories(m_folder / "data");
        fs::copy(fs::path(TOVREN_SOURCE_DIR) / "data/catalogue", m_folder / "data/catalogue");
        fs::copy(fs::path(TOVREN_SOURCE_DIR) / "data/naming", m_folder / "data/naming");
    }
    ~WorldGenerator() override {
        std::error_code ignored;
        fs::remove_all(m_folder, ignored);
    }

    // The exit status; what the generator said is in m_errors afterwards.
    int run(const std::vector<std::string>& arguments) {
        const pid_t child = fork();
        if (child == 0)
            become_generator(arguments);
        int status = -1;
        waitpid(child, &status, 0);
        m_errors = read_file(m_folder / "errors.txt");
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    // In the child: runs in the test's folder, its error output in a file there.
    [[noreturn]] void become_generator(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), TOVREN_WORLD_GEN);
        std::vector<char*> pointers;
        pointers.reserve(arguments.size() + 1);
        for (std::string& argument : arguments)
            pointers.emplace_back(argument.data());
        pointers.emplace_back(nullptr);
        if (chdir(m_folder.c_str()) == 0 && std::freopen("errors.txt", "w", stderr) != nullptr)
            execv(TOVREN_WORLD_GEN, pointers.data());
        _exit(127);
    }

    void replace(const std::string& file, const std::string& old_text, const std::string& new_text) {
        std::string text = read_file(m_folder / file);
        const std::size_t place = text.find(old_text);
        ASSERT_NE(place, std::string::npos) << old_text;
        std::ofstream(m_folder / file, std::ios::binary) << text.replace(place, old_text.size(), new_text);
    }

    void expect_refused(const std::string& reason) {
        EXPECT_EQ(run({"data", "out"}), 3);
        EXPECT_NE(m_errors.find(reason), std::string::npos) << m_errors;
        EXPECT_FALSE(fs::exists(m_folder / "out"));
    }

    fs::path m_folder;
    std::string m_errors;
};

} // namespace

TEST_F(WorldGenerator, WritesTheSameBytesEachTime) {
    ASSERT_EQ(run({"data", "out"}), 0) << m_errors;
    std::size_t files = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(m_folder / "out")) {
        if (!entry.is_regular_file())
            continue;
        const fs::path built = fs::path(TOVREN_GEN_DIR) / fs::relative(entry.path(), m_folder / "out");
        EXPECT_EQ(read_file(entry.path()), read_file(built)) << built;
        ++files;
    }
    EXPECT_EQ(files, 8U);
}

TEST_F(WorldGenerator, AsksForItsTwoFolders) {
    EXPECT_EQ(run({"data"}), 2);
    EXPECT_EQ(m_errors, "usage: tovren_world_gen DATA_FOLDER OUTPUT_FOLDER\n");
}

TEST_F(WorldGenerator, TellsAFileThatIsMissing) {
    fs::remove(m_folder / "data/naming/scheme.txt");
    expect_refused("data/naming/scheme.txt: cannot be read\n");
}

TEST_F(WorldGenerator, TellsEveryFaultOfOneRunWithItsLine) {
    std::ofstream(m_folder / "data/catalogue/world.txt", std::ios::binary)
        << "series Q QUARN file=QUARN_FAM\n"
           "family QUARN-1 grades=triple/none-such\n"
           "dies QA 2,04 AX die F256,G1 current some colour=red\n"
           "dies QA 02 BA die F256,G1 current some\n"
           "planet Q\n";
    expect_refused("data/catalogue/world.txt:2: grades: no grade set \"none-such\"\n"
                   "data/catalogue/world.txt:3: \"dies\" has no attribute \"colour\"\n"
                   "data/catalogue/world.txt:4: \"G1\" is no package\n"
                   "data/catalogue/world.txt:4: \"some\" is none of none, first, all\n"
                   "data/catalogue/world.txt:4: \"BA\" are no variants (rising letters without X)\n"
                   "data/catalogue/world.txt:5: \"planet\" is no word of the description\n");
}

TEST_F(WorldGenerator, RefusesADeviceThatIsDescribedTwice) {
    replace("data/catalogue/world.txt", "dies QB 10,15,20 ", "dies QB 10,15,07 ");
    expect_refused(": a second device QB07A\n");
}

TEST_F(WorldGenerator, RefusesAFamilyWhoseNameDoesNotParse) {
    replace("data/catalogue/world.txt", "family QUARN-4T", "family QUARN-4Z");
    expect_refused("\"QUARN-4Z\" is not QUARN-GENERATION and at most one of the kinds L, R, S, T\n");
}

TEST_F(WorldGenerator, RefusesADieOfAnotherSeries) {
    replace("data/catalogue/world.txt", "dies VA 06", "dies QA 06");
    expect_refused("\"QA\" is no line of the series V\n");
}

TEST_F(WorldGenerator, RefusesAGradeThatTheSchemeDoesNotKnow) {
    replace("data/naming/scheme.txt", "grades=C6,C7,I7 ", "grades=C6,C7,I9 ");
    expect_refused("grades: \"I9\" is no temperature and speed\n");
}

TEST_F(WorldGenerator, RefusesADescriptionThatGivesOtherFigures) {
    replace("data/catalogue/world.txt", "E144+M164 ", "E144      ");
    expect_refused("data/catalogue/shape.txt:10: PACKAGE_GRAMMAR.keys: the description gives 3471, expected is 3483\n");
}
