// What the fuzz targets share.
#include "fuzz_support.h"

#include "host_pgm_common.h"
#include "tovren_standalone_host.h"

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

std::vector<unsigned char> stored_stream(const std::vector<unsigned char>& image) {
    uLongf size = compressBound(static_cast<uLong>(image.size()));
    std::vector<unsigned char> stream(size);
    FUZZ_REQUIRE(compress2(stream.data(), &size, image.data(), static_cast<uLong>(image.size()), Z_NO_COMPRESSION) ==
                 Z_OK);
    stream.resize(size);
    return stream;
}

std::vector<unsigned char> naming_image(std::string_view body) {
    constexpr unsigned int POLYNOMIAL = 0x04C11DB7;
    const std::string front = "TOVREN_DDB" + std::string(body);
    std::vector<unsigned char> image(front.begin(), front.end());
    const unsigned int crc =
        ~PGM_COMMON::msb_calculate_crc32(image.data(), 0, static_cast<unsigned int>(image.size() * 8), 0xFFFFFFFF,
                                         POLYNOMIAL, true);
    for (unsigned int shift = 0; shift < 32; shift += 8)
        image.push_back(static_cast<unsigned char>(crc >> shift));
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
