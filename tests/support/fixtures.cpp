#include "fixtures.h"

#include "tovren_standalone_host.h"

#include <cstdlib>
#include <filesystem>

namespace {

// Whatever way `action` leaves, the capture ends.
std::string captured(const std::function<void()>& action, std::string (*end_capture)()) {
    try {
        action();
    } catch (...) {
        end_capture();
        throw;
    }
    return end_capture();
}

} // namespace

std::string standard_output_of(const std::function<void()>& action) {
    testing::internal::CaptureStdout();
    return captured(action, testing::internal::GetCapturedStdout);
}

std::string standard_error_of(const std::function<void()>& action) {
    testing::internal::CaptureStderr();
    return captured(action, testing::internal::GetCapturedStderr);
}

SCOPED_ENVIRONMENT::SCOPED_ENVIRONMENT(const char* name, const char* value) : m_name(name) {
    const char* former = std::getenv(name);
    m_was_set = former != nullptr;
    m_former = m_was_set ? former : "";
    if (value != nullptr)
        setenv(name, value, 1);
    else
        unsetenv(name);
}

SCOPED_ENVIRONMENT::~SCOPED_ENVIRONMENT() {
    if (m_was_set)
        setenv(m_name.c_str(), m_former.c_str(), 1);
    else
        unsetenv(m_name.c_str());
}

HOST_TEST::HOST_TEST() : m_no_settings("TOVREN_SETTINGS", "/dev/null") {
    TOVREN_STANDALONE_HOST::reset_settings();
}

HOST_TEST::~HOST_TEST() {
    TOVREN_STANDALONE_HOST::reset_settings();
    TOVREN_STANDALONE_HOST::set_report_handler({});
    TOVREN_STANDALONE_HOST::set_debug_level(-1);
    TOVREN_STANDALONE_HOST::set_device_db_root("");
}

FLASH_TEST::FLASH_TEST() : database(folder.path("programmer/pgm_flash.pcf")) {
    std::filesystem::create_directory(folder.path("programmer"));
    TOVREN_STANDALONE_HOST::set_device_db_root(folder.path());
}

FLASH_TEST::MANAGER FLASH_TEST::load(const BYTES& file, unsigned int device_count) const {
    put_database(file);
    return std::make_unique<TOVREN_FLASH_MANAGER>(true, device_count, false, false);
}
