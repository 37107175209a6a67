// Writers of the flash parameter file that are killed, run side by side, find no room or have no right: afterwards the
// file is a whole old or a whole new one, and no section that was stored is lost.
#include "ini_fixture.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <grp.h>
#include <random>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using FlashIniFaults = INI_TEST;
using SECTIONS = std::vector<std::optional<BYTES>>;

const BYTES STORED = {0x51, 0x58, 0x00, 0x31}; // section 0 of every test

// What the numbered write stores; the size varies, so that no two files are alike in shape.
BYTES numbered(unsigned int number) {
    return join({le32_bytes(number), BYTES(number % 5000, static_cast<unsigned char>(number))});
}

// The number of such a section; none for any other bytes.
std::optional<unsigned int> number_of(const std::optional<BYTES>& section) {
    if (!section || section->size() < 4)
        return std::nullopt;
    unsigned int number = 0;
    for (size_t i = 0; i < 4; ++i)
        number |= static_cast<unsigned int>(section->at(i)) << (8 * i);
    return *section == numbered(number) ? std::optional(number) : std::nullopt;
}

// A number that processes share.
class SHARED_COUNTER {
public:
    SHARED_COUNTER() : m_place(mmap(nullptr, PAGE, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
        m_counter = new (m_place) std::atomic<unsigned int>(0);
    }
    ~SHARED_COUNTER() { munmap(m_place, PAGE); }
    SHARED_COUNTER(const SHARED_COUNTER&) = delete;
    SHARED_COUNTER& operator=(const SHARED_COUNTER&) = delete;

    std::atomic<unsigned int>& operator*() { return *m_counter; }

private:
    static constexpr size_t PAGE = 4096;
    void* m_place;
    std::atomic<unsigned int>* m_counter;
};

pid_t start(const std::function<int()>& work) {
    const pid_t child = fork();
    if (child == 0)
        _exit(work());
    return child;
}

// Leaves the exit code to be fetched.
bool is_running(pid_t child) {
    siginfo_t info = {};
    return waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid == 0;
}

int exit_code(pid_t child) {
    int status = 0;
    EXPECT_EQ(child, waitpid(child, &status, 0));
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

// Kills the process at a random point within `microseconds`, counted from when `has_begun` turns true.
void kill_soon(pid_t child, unsigned long microseconds, const std::function<bool()>& has_begun) {
    while (!has_begun() && is_running(child))
        std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
    kill(child, SIGKILL);
}

TEST_F(FlashIniFaults, LoseNothingWhenAWriterIsKilledAtAnyPoint) {
    ASSERT_TRUE(write(0, STORED));
    ASSERT_TRUE(write(1, numbered(0)));
    SHARED_COUNTER done;
    std::mt19937 random(500);
    for (int round = 0; round < 500; ++round) {
        const unsigned int before = *done;
        const pid_t writer = start([&] {
            for (unsigned int number = before + 1; write(1, numbered(number)); ++number)
                *done = number;
            return 1;
        });
        kill_soon(writer, random() % 2000, [&] { return *done != before; });
        ASSERT_EQ(128 + SIGKILL, exit_code(writer));

        ASSERT_EQ(STORED, read(0)) << round;
        const auto number = number_of(read(1));
        ASSERT_TRUE(number == *done || number == *done + 1) << round; // killed before or after it could say so
        *done = *number;
    }
    EXPECT_FALSE(std::filesystem::exists(file + ".damaged"));
    EXPECT_TRUE(write(1, {0x01}));
    EXPECT_EQ((std::vector<std::string>{"pgm_flash.ini", "pgm_flash.ini.lock"}), folder.names());
}

TEST_F(FlashIniFaults, LoseNoDamagedFileWhenAWriterIsKilledAtAnyPoint) {
    SHARED_COUNTER begun;
    std::mt19937 random(100);
    unsigned int replaced = 0;
    for (int round = 0; round < 100; ++round) {
        const BYTES damaged(100000, static_cast<unsigned char>(round));
        put(damaged);
        *begun = 0;
        const pid_t writer = start([&] {
            *begun = 1;
            return write(1, STORED) ? 0 : 1;
        });
        kill_soon(writer, random() % 1000, [&] { return *begun == 1; });
        const int code = exit_code(writer);
        ASSERT_TRUE(code == 0 || code == 128 + SIGKILL) << code;

        const bool is_replaced = read(1) == STORED;
        replaced += is_replaced ? 1 : 0;
        ASSERT_TRUE(is_replaced || code != 0) << round;
        ASSERT_EQ(damaged, read_file(is_replaced ? file + ".damaged" : file)) << round;
    }
    EXPECT_LT(0U, replaced);
}

TEST_F(FlashIniFaults, LoseNothingWhenTwoProcessesWriteDifferentSections) {
    ASSERT_TRUE(write(0, STORED));
    constexpr unsigned int WRITES = 1000;
    SHARED_COUNTER running;
    *running = 2;
    const auto write_all = [&](unsigned int section) {
        return start([&, section] {
            bool all = true;
            for (unsigned int number = 1; number <= WRITES; ++number)
                all = write(section, numbered(number)) && number_of(read(section)) == number && all;
            --*running;
            return all ? 0 : 1;
        });
    };
    const pid_t writers[] = {write_all(1), write_all(2)};

    unsigned int newest[3] = {};
    while (*running > 0) {
        ASSERT_EQ(STORED, read(0));
        for (const unsigned int section : {1U, 2U}) {
            const auto bytes = read(section);
            ASSERT_TRUE(bytes || newest[section] == 0);
            const unsigned int number = bytes ? number_of(bytes).value_or(0) : 0;
            ASSERT_LE(newest[section], number);
            newest[section] = number;
        }
        std::this_thread::yield();
    }
    EXPECT_EQ(0, exit_code(writers[0]));
    EXPECT_EQ(0, exit_code(writers[1]));
    EXPECT_EQ((SECTIONS{STORED, numbered(WRITES), numbered(WRITES)}), read_all());
}

TEST_F(FlashIniFaults, LeaveAWholeSectionWhenTwoProcessesWriteTheSame) {
    ASSERT_TRUE(write(0, STORED));
    const auto write_all = [&](unsigned int first_number) {
        return start([&, first_number] {
            bool all = true;
            for (unsigned int number = first_number; number < first_number + 400; number += 2)
                all = write(1, numbered(number)) && number_of(read(1)) && all;
            return all ? 0 : 1;
        });
    };
    const pid_t writers[] = {write_all(1), write_all(2)};
    EXPECT_EQ(0, exit_code(writers[0]));
    EXPECT_EQ(0, exit_code(writers[1]));
    const auto last = number_of(read(1));
    EXPECT_TRUE(last == 399U || last == 400U);
    EXPECT_EQ(STORED, read(0));
}

TEST_F(FlashIniFaults, LoseNothingWhenTwoProcessesChangeTheSameSection) {
    ASSERT_TRUE(write(0, STORED));
    constexpr size_t CHANGES = 500;
    const auto append_all = [](unsigned char byte) {
        return start([byte] {
            bool all = true;
            for (size_t i = 0; i < CHANGES; ++i)
                all = TOVREN_FLASH_INI::change_flash_ini_data(TOVREN_FLASH_INI_HPS_SPI,
                                                              [byte](std::vector<unsigned char>& bytes) {
                                                                  bytes.push_back(byte);
                                                              }) &&
                      all;
            return all ? 0 : 1;
        });
    };
    const pid_t writers[] = {append_all(1), append_all(2)};
    EXPECT_EQ(0, exit_code(writers[0]));
    EXPECT_EQ(0, exit_code(writers[1]));
    const BYTES changed = read(1).value_or(BYTES());
    EXPECT_EQ(2 * CHANGES, changed.size());
    EXPECT_EQ(CHANGES, static_cast<size_t>(std::count(changed.begin(), changed.end(), 1)));
    EXPECT_EQ(STORED, read(0));
}

TEST_F(FlashIniFaults, ChangeNoSectionThatThereIsNot) {
    bool is_asked = false;
    EXPECT_FALSE(
        TOVREN_FLASH_INI::change_flash_ini_data(TOVREN_FLASH_INI_MAX,
                                                [&is_asked](std::vector<unsigned char>&) { is_asked = true; }));
    EXPECT_FALSE(is_asked);
}

TEST_F(FlashIniFaults, LeaveTheFileAsItIsWhenAChangeThrows) {
    ASSERT_TRUE(write(1, STORED));
    const BYTES before = read_file(file);
    const auto change = [](std::vector<unsigned char>& bytes) {
        bytes.clear();
        throw 1;
    };
    EXPECT_THROW(TOVREN_FLASH_INI::change_flash_ini_data(TOVREN_FLASH_INI_HPS_SPI, change), int);
    EXPECT_EQ(before, read_file(file));
    EXPECT_TRUE(write(1, STORED)); // the lock is free again
}

TEST_F(FlashIniFaults, WaitForAWriterThatHoldsTheLock) {
    ASSERT_TRUE(write(0, STORED));
    const int lock = open((file + ".lock").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(0, flock(lock, LOCK_EX));
    SHARED_COUNTER begun;
    const pid_t writer = start([&] {
        close(lock); // of this process; the parent's stays
        *begun = 1;
        return write(1, {0x01}) ? 0 : 1;
    });
    while (*begun == 0)
        std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_TRUE(is_running(writer));
    EXPECT_EQ(std::nullopt, read(1));
    EXPECT_EQ(STORED, read(0)); // a reader does not wait
    close(lock);
    EXPECT_EQ(0, exit_code(writer));
    EXPECT_EQ((BYTES{0x01}), read(1));
}

// ---- no room ----

void limit_file_size(rlim_t size) {
    const rlimit limit = {size, size};
    setrlimit(RLIMIT_FSIZE, &limit);
}

TEST_F(FlashIniFaults, KeepTheOldFileWhenTheDiskIsFull) {
    ASSERT_TRUE(write(0, STORED));
    ASSERT_TRUE(write(1, numbered(100)));
    const BYTES before = read_file(file);
    const BYTES section = numbered(3000);
    for (const rlim_t room : {0UL, 1UL, 19UL, 44UL, 1000UL, 3051UL}) { // the new file takes 44 + 4 + 3004 bytes
        EXPECT_EQ(0, exit_code_of([&] {
                      signal(SIGXFSZ, SIG_IGN);
                      limit_file_size(room);
                      return write(1, section) ? 1 : 0;
                  }))
            << room;
        EXPECT_EQ(before, read_file(file));
        EXPECT_EQ((std::vector<std::string>{"pgm_flash.ini", "pgm_flash.ini.lock"}), folder.names());
    }
    EXPECT_EQ(0, exit_code_of([&] {
                  limit_file_size(3052);
                  return write(1, section) ? 0 : 1;
              }));
    EXPECT_EQ((SECTIONS{STORED, section, std::nullopt}), read_all());
}

TEST_F(FlashIniFaults, KeepTheOldFileWhenTheSystemKillsAWriterThatFindsNoRoom) {
    ASSERT_TRUE(write(0, STORED));
    const BYTES before = read_file(file);
    EXPECT_EQ(128 + SIGXFSZ, exit_code_of([&] {
                  const rlimit none = {0, 0};
                  setrlimit(RLIMIT_CORE, &none);
                  limit_file_size(1000);
                  return write(1, numbered(3000)) ? 1 : 0;
              }));
    EXPECT_EQ(before, read_file(file));
}

TEST_F(FlashIniFaults, KeepAFileThatDoesNotVerifyWhenThereIsNoRoomForItsCopy) {
    const BYTES damaged(5000, 0x11);
    put(damaged);
    EXPECT_EQ(0, exit_code_of([&] {
                  signal(SIGXFSZ, SIG_IGN);
                  limit_file_size(4999);
                  return write(1, {0x01}) ? 1 : 0;
              }));
    EXPECT_EQ(damaged, read_file(file));
    EXPECT_EQ((std::vector<std::string>{"pgm_flash.ini", "pgm_flash.ini.lock"}), folder.names());
}

// ---- no right ----

class FlashIniRights : public INI_TEST {
protected:
    // Others may look in, but not change anything.
    FlashIniRights() { chmod(folder.path().c_str(), 0555); }
    ~FlashIniRights() override { chmod(folder.path().c_str(), 0755); }

    void own_folder() const { chmod(folder.path().c_str(), 0777); }
};

TEST_F(FlashIniRights, SufficeForReadingInAFolderThatMayNotBeWritten) {
    chmod(folder.path().c_str(), 0755);
    ASSERT_TRUE(write(0, STORED));
    std::filesystem::remove(file + ".lock");
    chmod(folder.path().c_str(), 0555);
    EXPECT_EQ(0, unprivileged_exit_code_of([&] { return read(0) == STORED ? 0 : 1; }));
}

TEST_F(FlashIniRights, DoNotSufficeForWritingThere) {
    chmod(folder.path().c_str(), 0755);
    ASSERT_TRUE(write(0, STORED));
    const BYTES before = read_file(file);
    for (const bool has_lock : {true, false}) {
        if (!has_lock)
            std::filesystem::remove(file + ".lock");
        chmod(file.c_str(), 0666);
        chmod(folder.path().c_str(), 0555);
        EXPECT_EQ(0, unprivileged_exit_code_of([&] { return write(1, {0x01}) || remove(0) ? 1 : 0; }));
        chmod(folder.path().c_str(), 0755);
        EXPECT_EQ(before, read_file(file));
    }
}

TEST_F(FlashIniRights, DoNotSufficeForWritingWithoutAFileThere) {
    EXPECT_EQ(0, unprivileged_exit_code_of([&] { return write(1, {0x01}) ? 1 : 0; }));
    EXPECT_EQ(std::vector<std::string>{}, folder.names());
}

TEST_F(FlashIniRights, DoNotSufficeForReplacingAFileThatMayNotBeRead) {
    own_folder();
    put(INI_FILE({STORED, {}, {}}));
    chmod(file.c_str(), 0222);
    EXPECT_EQ(0, unprivileged_exit_code_of([&] { return read(0) ? 1 : 0; }));
    EXPECT_EQ(0, unprivileged_exit_code_of([&] { return write(1, {0x01}) ? 1 : 0; }));
    chmod(file.c_str(), 0666);
    EXPECT_EQ((SECTIONS{STORED, std::nullopt, std::nullopt}), read_all());
}

TEST_F(FlashIniRights, DoNotSufficeForReplacingAFileThatMayNotBeWritten) {
    own_folder();
    put(INI_FILE({STORED, {}, {}}));
    chmod(file.c_str(), 0444);
    EXPECT_EQ(0, unprivileged_exit_code_of([&] { return write(1, {0x01}) ? 1 : 0; }));
    EXPECT_EQ((SECTIONS{STORED, std::nullopt, std::nullopt}), read_all());
}

TEST_F(FlashIniRights, SufficeWhereAnotherUserHasLeftTheLockAndAKilledWritersFile) {
    own_folder();
    ASSERT_TRUE(write(0, STORED));
    chmod(file.c_str(), 0666);
    chmod((file + ".lock").c_str(), 0644);
    write_file(file + ".new", {0x01});
    chmod((file + ".new").c_str(), 0600);
    EXPECT_EQ(0, unprivileged_exit_code_of([&] { return write(1, {0x01}) ? 0 : 1; }));
    EXPECT_EQ((SECTIONS{STORED, BYTES{0x01}, std::nullopt}), read_all());
}

} // namespace
