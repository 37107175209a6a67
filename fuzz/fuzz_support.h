// What the fuzz targets share. A target is one function over the bytes of one input. Refusing an input by a report is
// a proper answer; a crash, a sanitizer's finding, or FUZZ_REQUIRE of something false is a fault.
#ifndef FUZZ_SUPPORT_H
#define FUZZ_SUPPORT_H

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

#define FUZZ_REQUIRE(condition) ((condition) ? (void)0 : std::abort())

// What the report handler throws.
struct FUZZ_REPORT {};

// Installs that handler, and settings of no file in which PGM_ALLOW_X alone is on.
void fuzz_set_up_host();

// Whether `work` ends without a report.
template <typename WORK>
bool fuzz_is_accepted(WORK&& work) {
    fuzz_set_up_host();
    try {
        work();
    } catch (const FUZZ_REPORT&) {
        return false;
    }
    return true;
}

// A file in memory with a path.
class FUZZ_FILE {
public:
    explicit FUZZ_FILE(std::span<const unsigned char> bytes);
    ~FUZZ_FILE();
    FUZZ_FILE(const FUZZ_FILE&) = delete;
    FUZZ_FILE& operator=(const FUZZ_FILE&) = delete;

    std::string path() const;

private:
    int m_descriptor;
};

// A database file around a payload. The payload is only stored, in the zlib stream of level 0: cheap, and its bytes
// stay where a fuzzer finds them.
std::vector<unsigned char> fuzz_database_file(std::string_view magic, std::string_view md5,
                                              std::span<const unsigned char> payload);

// The compressed table of an input for the naming tables, by the input's first character: B, a body, which gets its
// magic and its CRC; S, two bytes of length and a stream; else a whole image.
struct FUZZ_NAMING_TABLE {
    explicit FUZZ_NAMING_TABLE(std::span<const unsigned char> input);

    std::vector<unsigned char> stream;
    unsigned int length = 0;
    std::string body; // of a B
};

#endif
