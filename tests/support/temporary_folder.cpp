#include "temporary_folder.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

std::string place() {
    const std::string in_memory = "/dev/shm/";
    return access(in_memory.c_str(), W_OK) == 0 ? in_memory : testing::TempDir();
}

} // namespace

TEMPORARY_FOLDER::TEMPORARY_FOLDER() : m_path(place() + "tovren_test_XXXXXX") {
    if (mkdtemp(m_path.data()) == nullptr)
        ADD_FAILURE() << "cannot make " << m_path;
}

TEMPORARY_FOLDER::~TEMPORARY_FOLDER() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::vector<std::string> TEMPORARY_FOLDER::names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_path))
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}
