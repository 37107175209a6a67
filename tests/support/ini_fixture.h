// A module folder of one's own for the flash parameter file, and processes to disturb it with.
#ifndef TESTS_SUPPORT_INI_FIXTURE_H
#define TESTS_SUPPORT_INI_FIXTURE_H

#include "fixtures.h"
#include "ini_model.h"
#include "tovren_flash_ini.h"

#include <optional>

inline constexpr char IN_FLASH_INI[] = "pgm/tovren/tovren_flash_ini.cpp";

class INI_TEST : public HOST_TEST {
protected:
    INI_TEST();
    ~INI_TEST() override;

    void put(const BYTES& bytes) const { write_file(file, bytes); }
    void put(const INI_FILE& ini) const { put(ini.bytes()); }

    // What the library reads and writes.
    static std::optional<BYTES> read(unsigned int section);
    static std::vector<std::optional<BYTES>> read_all();
    static bool write(unsigned int section, BYTES bytes);
    static bool remove(unsigned int section);

    std::string file; // path of pgm_flash.ini
};

// The exit code of a new process that does this, or 128 and the signal that killed it.
int exit_code_of(const std::function<int()>& work);

// The same by a user who may write in folders of its own only.
int unprivileged_exit_code_of(const std::function<int()>& work);

#endif
