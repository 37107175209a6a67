// Comparisons between benchmarks, and what the benchmarks share.
#ifndef BENCH_SUPPORT_H
#define BENCH_SUPPORT_H

#include <filesystem>
#include <span>
#include <string>
#include <vector>

// `subject` against `reference`, both names of benchmarks. AT_MOST: the subject may take `limit` times as long as the
// reference. FASTER: it is to be `limit` times as fast.
enum class GOAL : unsigned char { AT_MOST, FASTER };

struct COMPARISON {
    std::string subject;
    std::string reference;
    GOAL goal;
    double limit;
};

// All comparisons, in the order in which they were added.
std::vector<COMPARISON>& comparisons();

struct ADD_COMPARISON {
    ADD_COMPARISON(std::string subject, std::string reference, GOAL goal, double limit) {
        comparisons().push_back({std::move(subject), std::move(reference), goal, limit});
    }
};

using BYTES = std::vector<unsigned char>;

BYTES read_file(const std::string& path);
void write_file(const std::string& path, std::span<const unsigned char> bytes);
std::string text_of(const BYTES& bytes);

// The payload of a database file, decompressed.
BYTES payload_of(const BYTES& file);

// A description of `count` flashes, in the folder below: those of the shipped one over and over, each under a name of
// its own. Returns its path.
std::string write_large_flash_csv(const std::string& shipped, size_t count);

// A folder in memory that goes away with the program.
const std::filesystem::path& memory_folder();

#endif
