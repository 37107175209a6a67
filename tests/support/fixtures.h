// What tests under the standalone host start from: no settings, an own folder, a database of their own.
#ifndef TESTS_SUPPORT_FIXTURES_H
#define TESTS_SUPPORT_FIXTURES_H

#include "bytes.h"
#include "flash_model.h"
#include "temporary_folder.h"
#include "tovren_flash_manager.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>

// What `action` writes on standard output or standard error.
std::string standard_output_of(const std::function<void()>& action);
std::string standard_error_of(const std::function<void()>& action);

// Sets an environment variable, or takes it away with null, and brings the former value back.
class SCOPED_ENVIRONMENT {
public:
    SCOPED_ENVIRONMENT(const char* name, const char* value);
    ~SCOPED_ENVIRONMENT();
    SCOPED_ENVIRONMENT(const SCOPED_ENVIRONMENT&) = delete;
    SCOPED_ENVIRONMENT& operator=(const SCOPED_ENVIRONMENT&) = delete;

private:
    std::string m_name;
    std::string m_former;
    bool m_was_set;
};

// The host as a new process has it, without any settings of the machine's user.
class HOST_TEST : public testing::Test {
protected:
    HOST_TEST();
    ~HOST_TEST() override;

    TEMPORARY_FOLDER folder;

private:
    SCOPED_ENVIRONMENT m_no_settings;
};

// A device-database root of one's own.
class FLASH_TEST : public HOST_TEST {
protected:
    using MANAGER = std::unique_ptr<TOVREN_FLASH_MANAGER>;

    FLASH_TEST();

    void put_database(const BYTES& file) const { write_file(database, file); }

    // A manager for so many devices that has loaded these bytes.
    MANAGER load(const BYTES& file, unsigned int device_count = 1) const;
    MANAGER load(const FLASH_FILE& file, unsigned int device_count = 1) const {
        return load(file.bytes(), device_count);
    }

    // One that has loaded nothing.
    static MANAGER make_generator() { return std::make_unique<TOVREN_FLASH_MANAGER>(true, 1, true, false); }

    std::string database; // path of programmer/pgm_flash.pcf under the root
};

#endif
