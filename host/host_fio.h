// Paths and files of the host.
#ifndef HOST_FIO_H
#define HOST_FIO_H

#include <string>
#include <utility>

// A file's path as it was given; nothing is looked up when one is made.
class FIO_PATH {
public:
    FIO_PATH(std::string path) : m_path(std::move(path)) {}
    FIO_PATH(const char* path) : m_path(path) {}

    // The text to open the file by.
    const std::string& fullpath() const { return m_path; }

private:
    std::string m_path;
};

struct FIO_STATUS {
    unsigned long long size = 0; // bytes
};

class FIO_FILE_SYSTEM {
public:
    // Whether something stands at `path`, following links.
    static bool exists(const char* path);

    // Fills `status` for the regular file at `path`. False, with `status` untouched, when there is none, when it may
    // not be asked, or when what stands there has no size of its own (a folder, a pipe, a terminal).
    static bool status(const char* path, FIO_STATUS* status);
};

// The folder that holds the device databases (`programmer/pgm_flash.pcf` and others), without a closing slash.
std::string gen_get_device_db_fullpath();

// The folder of the running module, where it keeps files of its own (`pgm_flash.ini`), without a closing slash.
std::string gen_get_module_path();

// The root of the product's installation (`h/pgm_parts.txt` and others), without a closing slash.
std::string gen_get_morvath_path();

#endif
