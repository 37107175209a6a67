// Runs a fuzz target over files instead of generated input: NAME_replay FILE_OR_FOLDER...
// It is there to crash, or not; a folder without a file in it is an error.
#include "fuzz_support.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

std::vector<std::filesystem::path> files_of(const std::filesystem::path& place) {
    if (!std::filesystem::is_directory(place))
        return {place};
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(place))
        if (entry.is_regular_file())
            files.push_back(entry.path());
    return files;
}

bool run(const std::filesystem::path& path) {
    std::ifstream input(path, std::ios::binary);
    if (!input)
        return false;
    const std::vector<char> bytes{std::istreambuf_iterator<char>(input), {}};
    // An array of the exact size, so that a sanitizer sees a read past its end.
    const std::vector<unsigned char> exact(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
    return true;
}

int replay(const std::filesystem::path& place) {
    const auto files = files_of(place);
    if (files.empty()) {
        std::fprintf(stderr, "%s: no files\n", place.c_str());
        return 1;
    }
    for (const auto& file : files) {
        if (!run(file)) {
            std::fprintf(stderr, "%s: cannot be read\n", file.c_str());
            return 1;
        }
    }
    std::printf("%s: %zu files\n", place.c_str(), files.size());
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    int result = argc > 1 ? 0 : 2;
    for (int i = 1; i < argc && result == 0; ++i)
        result = replay(argv[i]);
    return result;
}
