// Files through the operating system, and where the program's data are.
#include "host_cfg.h"
#include "host_fio.h"
#include "tovren_standalone_host.h"

#include <climits>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string& device_db_root() {
    static std::string folder;
    return folder;
}

std::string& product_root() {
    static std::string folder;
    return folder;
}

bool is_folder(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// The folder above the one that holds the running program: <prefix>/bin/tovren gives <prefix>.
std::string program_prefix() {
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    std::string prefix(path, length > 0 ? static_cast<size_t>(length) : 0);
    for (int level = 0; level < 2; ++level)
        prefix.erase(prefix.rfind('/') == std::string::npos ? 0 : prefix.rfind('/'));
    return prefix;
}

// share/tovren of the program's own prefix, so that a build tree and a moved installation find their data; else that of
// the installation; else that of the system's packages, which are made of an installation below another prefix.
std::string share_folder() {
    for (const std::string& folder : {program_prefix() + "/share/tovren", std::string(TOVREN_INSTALLED_SHARE_DIR)})
        if (is_folder(folder))
            return folder;
    constexpr char OF_PACKAGES[] = "/usr/share/tovren";
    return is_folder(OF_PACKAGES) ? OF_PACKAGES : TOVREN_INSTALLED_SHARE_DIR;
}

} // namespace

bool FIO_FILE_SYSTEM::exists(const char* path) {
    return access(path, F_OK) == 0;
}

bool FIO_FILE_SYSTEM::status(const char* path, FIO_STATUS* status) {
    struct stat system_status = {};
    if (stat(path, &system_status) != 0 || !S_ISREG(system_status.st_mode))
        return false;
    status->size = static_cast<unsigned long long>(system_status.st_size);
    return true;
}

std::string gen_get_device_db_fullpath() {
    if (!device_db_root().empty())
        return device_db_root();
    if (const char* folder = std::getenv("TOVREN_DB_ROOT"); folder && *folder != '\0')
        return folder;
    return share_folder() + "/db";
}

std::string gen_get_morvath_path() {
    if (!product_root().empty())
        return product_root();
    if (const char* folder = std::getenv("TOVREN_PRODUCT_ROOT"); folder && *folder != '\0')
        return folder;
    return share_folder();
}

void TOVREN_STANDALONE_HOST::set_product_root(const std::string& folder) {
    product_root() = folder;
}

void TOVREN_STANDALONE_HOST::set_device_db_root(const std::string& folder) {
    device_db_root() = folder;
}

// ---- the module's own folder ----

namespace {

constexpr char MODULE_PATH_NAME[] = "TOVREN_MODULE_PATH"; // of the variable and of the setting

std::string& module_path() {
    static std::string folder;
    return folder;
}

std::string program_folder() {
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    const std::string program(path, length > 0 ? static_cast<size_t>(length) : 0);
    const size_t slash = program.rfind('/');
    return slash == std::string::npos ? "." : program.substr(0, slash);
}

} // namespace

std::string gen_get_module_path() {
    if (!module_path().empty())
        return module_path();
    if (const char* folder = std::getenv(MODULE_PATH_NAME); folder && *folder != '\0')
        return folder;
    const std::string setting = cfg_get_value(MODULE_PATH_NAME);
    return setting.empty() ? program_folder() : setting;
}

void TOVREN_STANDALONE_HOST::set_module_path(const std::string& folder) {
    module_path() = folder;
}
