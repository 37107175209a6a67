// A new folder, gone with everything in it at the end. It is in memory where the system has such a place: some tests
// write a file tens of thousands of times.
#ifndef TESTS_SUPPORT_TEMPORARY_FOLDER_H
#define TESTS_SUPPORT_TEMPORARY_FOLDER_H

#include <string>
#include <vector>

class TEMPORARY_FOLDER {
public:
    TEMPORARY_FOLDER();
    ~TEMPORARY_FOLDER();
    TEMPORARY_FOLDER(const TEMPORARY_FOLDER&) = delete;
    TEMPORARY_FOLDER& operator=(const TEMPORARY_FOLDER&) = delete;

    std::string path(const std::string& name) const { return m_path + "/" + name; }
    const std::string& path() const { return m_path; }

    // The names in it, sorted.
    std::vector<std::string> names() const;

private:
    std::string m_path;
};

#endif
