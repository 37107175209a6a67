#include "golden.h"

#include "tovren_dev_info_manager_auto_export.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <gtest/gtest.h>

namespace {

// Position of the first character behind white space and comments.
size_t skip_space(const std::string& text, size_t position) {
    while (position < text.size() &&
           (isspace(static_cast<unsigned char>(text[position])) != 0 || text[position] == '#'))
        position = text[position] == '#' ? std::min(text.find('\n', position), text.size()) : position + 1;
    return position;
}

// Consumes `word` if it stands at `position`.
bool takes(const std::string& text, size_t& position, const std::string& word) {
    if (text.compare(position, word.size(), word) != 0)
        return false;
    position += word.size();
    return true;
}

void take_characters(const std::string& text, size_t& position, BYTES& bytes) {
    const size_t end = text.find('"', position);
    ASSERT_NE(std::string::npos, end) << "characters without their end";
    bytes.insert(bytes.end(), text.begin() + static_cast<std::ptrdiff_t>(position),
                 text.begin() + static_cast<std::ptrdiff_t>(end));
    position = end + 1;
}

void take_hex(const std::string& text, size_t& position, BYTES& bytes) {
    const std::string digits = text.substr(position, 2);
    ASSERT_EQ(2U, digits.size());
    ASSERT_NE(0, isxdigit(static_cast<unsigned char>(digits[0]))) << text.substr(position, 20);
    ASSERT_NE(0, isxdigit(static_cast<unsigned char>(digits[1]))) << text.substr(position, 20);
    bytes.push_back(static_cast<unsigned char>(std::stoul(digits, nullptr, 16)));
    position += 2;
}

void append(BYTES& bytes, const BYTES& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

} // namespace

GOLDEN_FILE read_golden(const std::string& path) {
    SCOPED_TRACE(path);
    const std::string text = read_text(path);
    GOLDEN_FILE file;
    BYTES* target = &file.bytes;
    for (size_t at = skip_space(text, 0); at < text.size() && !testing::Test::HasFatalFailure();
         at = skip_space(text, at)) {
        if (takes(text, at, "MD5")) {
            append(*target, text_bytes(TOVREN_FLASH_INFO_CSV_MD5));
        } else if (takes(text, at, "ZLIB{")) {
            target = &file.payload;
        } else if (takes(text, at, "}")) {
            target = &file.bytes;
            append(file.bytes, zlib_stream(file.payload));
        } else if (takes(text, at, "\"")) {
            take_characters(text, at, *target);
        } else {
            take_hex(text, at, *target);
        }
    }
    return file;
}

std::vector<std::string> golden_paths(const std::string& folder, const std::string& ending) {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(std::string(TESTS_GOLDEN_DIR) + "/" + folder)) {
        const std::string path = entry.path();
        if (path.ends_with(ending))
            paths.push_back(path);
    }
    EXPECT_FALSE(paths.empty()) << folder << "/*" << ending;
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::string golden_name(const std::string& path) {
    const std::string name = std::filesystem::path(path).filename();
    return name.substr(0, name.find('.'));
}

std::string golden_sibling(const std::string& path, const std::string& ending) {
    return std::filesystem::path(path).parent_path() / (golden_name(path) + ending);
}
