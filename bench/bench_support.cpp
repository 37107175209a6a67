// What the benchmarks share.
#include "bench_support.h"

#include "host_text.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <unistd.h>
#include <zlib.h>

namespace {

constexpr size_t HEADER_SIZE = 44; // ahead of the compressed payload; its last four bytes are the payload's size
constexpr size_t CHECK_SIZE = 2;   // behind it

constexpr unsigned int HEADER_ROWS = 8; // of a flash description
constexpr size_t NAME_COLUMN = 1;
constexpr size_t DEFAULT_COLUMN = 10;

[[noreturn]] void give_up(const std::string& reason) {
    std::fprintf(stderr, "%s\n", reason.c_str());
    std::exit(1);
}

class MEMORY_FOLDER {
public:
    MEMORY_FOLDER() : m_path("/dev/shm/tovren_bench." + std::to_string(getpid())) {
        std::filesystem::create_directories(m_path);
    }
    ~MEMORY_FOLDER() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    MEMORY_FOLDER(const MEMORY_FOLDER&) = delete;
    MEMORY_FOLDER& operator=(const MEMORY_FOLDER&) = delete;

    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

} // namespace

std::vector<COMPARISON>& comparisons() {
    static std::vector<COMPARISON> all;
    return all;
}

BYTES read_file(const std::string& path) {
    std::ifstream input(path, std::ios::binary);
    if (!input)
        give_up(path + ": cannot be read");
    const std::vector<char> bytes{std::istreambuf_iterator<char>(input), {}};
    return {bytes.begin(), bytes.end()};
}

void write_file(const std::string& path, std::span<const unsigned char> bytes) {
    std::ofstream output(path, std::ios::binary);
    output.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!output.flush())
        give_up(path + ": cannot be written");
}

std::string text_of(const BYTES& bytes) {
    return {bytes.begin(), bytes.end()};
}

BYTES payload_of(const BYTES& file) {
    uLongf size = 0;
    for (unsigned int i = 0; i < 4; ++i)
        size |= static_cast<uLongf>(file[HEADER_SIZE - 4 + i]) << (8 * i);
    BYTES payload(size);
    if (uncompress(payload.data(), &size, file.data() + HEADER_SIZE,
                   static_cast<uLong>(file.size() - HEADER_SIZE - CHECK_SIZE)) != Z_OK)
        give_up("a database that does not decompress");
    return payload;
}

const std::filesystem::path& memory_folder() {
    static const MEMORY_FOLDER folder;
    return folder.path();
}

std::string write_large_flash_csv(const std::string& shipped, size_t count) {
    std::ifstream input(shipped);
    std::vector<std::vector<std::string>> rows;
    std::ostringstream csv;
    std::string line;
    for (unsigned int row = 0; std::getline(input, line); ++row) {
        if (row < HEADER_ROWS)
            csv << line << '\n';
        else
            gen_tokenize(line, ",", rows.emplace_back());
    }
    for (size_t i = 0; i < count; ++i) {
        std::vector<std::string> cells = rows[i % rows.size()];
        cells[NAME_COLUMN] = cells[NAME_COLUMN].substr(0, 10) + "_" + std::to_string(i);
        cells[DEFAULT_COLUMN] = "TRUE";
        for (size_t cell = 0; cell < cells.size(); ++cell)
            csv << (cell > 0 ? "," : "") << cells[cell];
        csv << '\n';
    }
    const std::string path = memory_folder() / "large.csv";
    const std::string text = csv.str();
    write_file(path, BYTES(text.begin(), text.end()));
    return path;
}
