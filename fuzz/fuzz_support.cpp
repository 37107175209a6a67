// What the fuzz targets share.
#include "fuzz_support.h"

#include "host_pgm_common.h"
#include "tovren_standalone_host.h"

#include <algorithm>
#include <sys/mman.h>
#include <unistd.h>
#include <zlib.h>

void fuzz_set_up_host() {
    static const bool is_done = [] {
        TOVREN_STANDALONE_HOST::set_report_handler(
            [](const char*, const char*, const char*, int) { throw FUZZ_REPORT(); });
        TOVREN_STANDALONE_HOST::set_settings_file("/dev/null");
        TOVREN_STANDALONE_HOST::set_setting("PGM_ALLOW_X", "on");
        return true;
    }();
    FUZZ_REQUIRE(is_done);
}

FUZZ_FILE::FUZZ_FILE(std::span<const unsigned char> bytes) : m_descriptor(memfd_create("fuzz", MFD_CLOEXEC)) {
    FUZZ_REQUIRE(m_descriptor >= 0);
    while (!bytes.empty()) {
        const ssize_t written = write(m_descriptor, bytes.data(), bytes.size());
        FUZZ_REQUIRE(written > 0);
        bytes = bytes.subspan(static_cast<size_t>(written));
    }
}

FUZZ_FILE::~FUZZ_FILE() {
    close(m_descriptor);
}

std::string FUZZ_FILE::path() const {
    return "/proc/self/fd/" + std::to_string(m_descriptor);
}

std::vector<unsigned char> fuzz_database_file(std::string_view magic, std::string_view md5,
                                              std::span<const unsigned char> payload) {
    std::vector<unsigned char> file(magic.begin(), magic.end());
    file.insert(file.end(), md5.begin(), md5.end());
    for (unsigned int shift = 0; shift < 32; shift += 8)
        file.push_back(static_cast<unsigned char>(payload.size() >> shift));

    const size_t header_size = file.size();
    uLongf stream_size = compressBound(static_cast<uLong>(payload.size()));
    file.resize(header_size + stream_size);
    FUZZ_REQUIRE(compress2(file.data() + header_size, &stream_size, payload.data(), static_cast<uLong>(payload.size()),
                           Z_NO_COMPRESSION) == Z_OK);
    file.resize(header_size + stream_size + 2); // and the check field of two zero bytes
    return file;
}

namespace {

void append(std::vector<unsigned char>& bytes, unsigned long value, unsigned int count) {
    for (unsigned int shift = 0; shift < 8 * count; shift += 8)
        bytes.push_back(static_cast<unsigned char>(value >> shift));
}

// Stored blocks alone, written out: setting up a deflater takes longer than everything else about a small input.
std::vector<unsigned char> stored_stream(const std::vector<unsigned char>& image) {
    constexpr size_t LARGEST_BLOCK = 0xFFFF;
    std::vector<unsigned char> stream = {0x78, 0x01};
    size_t place = 0;
    do {
        const size_t size = std::min(LARGEST_BLOCK, image.size() - place);
        append(stream, place + size == image.size(), 1);
        append(stream, size, 2);
        append(stream, ~size, 2);
        const auto begin = image.begin() + static_cast<std::ptrdiff_t>(place);
        stream.insert(stream.end(), begin, begin + static_cast<std::ptrdiff_t>(size));
        place += size;
    } while (place < image.size());
    const uLong check = adler32(1, image.data(), static_cast<uInt>(image.size()));
    for (const unsigned int shift : {24U, 16U, 8U, 0U})
        append(stream, check >> shift, 1);
    return stream;
}

std::vector<unsigned char> naming_image(std::string_view body) {
    constexpr unsigned int POLYNOMIAL = 0x04C11DB7;
    const std::string front = "TOVREN_DDB" + std::string(body);
    std::vector<unsigned char> image(front.begin(), front.end());
    const unsigned int crc =
        ~PGM_COMMON::msb_calculate_crc32(image.data(), 0, static_cast<unsigned int>(image.size() * 8), 0xFFFFFFFF,
                                         POLYNOMIAL, true);
    append(image, crc, 4);
    return image;
}

} // namespace

FUZZ_NAMING_TABLE::FUZZ_NAMING_TABLE(std::span<const unsigned char> input) {
    if (input.size() > 2 && input[0] == 'S') {
        length = input[1] + 256U * input[2];
        stream.assign(input.begin() + 3, input.end());
        return;
    }
    std::vector<unsigned char> image(input.begin(), input.end());
    if (!input.empty() && input[0] == 'B') {
        body.assign(input.begin() + 1, input.end());
        image = naming_image(body);
    }
    stream = stored_stream(image);
    length = static_cast<unsigned int>(image.size());
}
