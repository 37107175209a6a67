#include "ini_fixture.h"

#include "tovren_standalone_host.h"

#include <grp.h>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>

INI_TEST::INI_TEST() : file(folder.path("pgm_flash.ini")) {
    TOVREN_STANDALONE_HOST::set_module_path(folder.path());
}

INI_TEST::~INI_TEST() {
    TOVREN_STANDALONE_HOST::set_module_path("");
}

std::optional<BYTES> INI_TEST::read(unsigned int section) {
    unsigned int size = 12345;
    const std::unique_ptr<unsigned char[]> data(
        TOVREN_FLASH_INI::read_flash_ini_data(static_cast<TOVREN_FLASH_INI_ENUM>(section), size));
    EXPECT_EQ(data == nullptr, size == 0);
    return data ? std::optional(BYTES(data.get(), data.get() + size)) : std::nullopt;
}

std::vector<std::optional<BYTES>> INI_TEST::read_all() {
    return {read(0), read(1), read(2)};
}

bool INI_TEST::write(unsigned int section, BYTES bytes) {
    return TOVREN_FLASH_INI::write_flash_ini_data(static_cast<TOVREN_FLASH_INI_ENUM>(section), bytes.data(),
                                                  static_cast<unsigned int>(bytes.size()));
}

bool INI_TEST::remove(unsigned int section) {
    return TOVREN_FLASH_INI::write_flash_ini_data(static_cast<TOVREN_FLASH_INI_ENUM>(section), nullptr, 0);
}

int exit_code_of(const std::function<int()>& work) {
    const pid_t child = fork();
    if (child == 0)
        _exit(work());
    int status = 0;
    EXPECT_EQ(child, waitpid(child, &status, 0));
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

int unprivileged_exit_code_of(const std::function<int()>& work) {
    constexpr unsigned int NOBODY = 65534;
    return exit_code_of([&] {
        const bool is_root = geteuid() == 0;
        if (is_root && (setgroups(0, nullptr) != 0 || setgid(NOBODY) != 0 || setuid(NOBODY) != 0))
            return 99;
        return work();
    });
}
