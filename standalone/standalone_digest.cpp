// Digests: SHA-256 by nettle, and a CRC of 32 bits for any polynomial.
//
// The CRC takes sixteen bytes a step: table k holds what a byte does to the register when k more bytes follow it, so
// the look-ups of a step do not wait for one another. Bits that do not fill a byte are taken one by one.
#include "host_msg.h"
#include "host_pgm_common.h"

#include <array>
#include <cstdint>
#include <nettle/sha2.h>

namespace {

constexpr unsigned int TOP_BIT = 0x80000000;
constexpr unsigned int STEP_SIZE = 16; // bytes

constexpr unsigned int shift_bit(unsigned int crc, unsigned int polynomial) {
    return (crc << 1) ^ ((crc & TOP_BIT) != 0 ? polynomial : 0);
}

class CRC_TABLES {
public:
    explicit CRC_TABLES(unsigned int polynomial) {
        // By the doubling of the highest set bit: what a byte does is the sum of what its bits do.
        m_tables[0][0] = 0;
        unsigned int effect = polynomial;
        for (unsigned int bit = 1; bit < 256; bit <<= 1) {
            for (unsigned int rest = 0; rest < bit; ++rest)
                m_tables[0][bit + rest] = effect ^ m_tables[0][rest];
            effect = shift_bit(effect, polynomial);
        }
        for (unsigned int k = 1; k < STEP_SIZE; ++k)
            for (unsigned int byte = 0; byte < 256; ++byte)
                m_tables[k][byte] = add_byte(m_tables[k - 1][byte], 0);
    }

    unsigned int add_byte(unsigned int crc, unsigned char byte) const {
        return (crc << 8) ^ m_tables[0][(crc >> 24) ^ byte];
    }

    unsigned int add_step(unsigned int crc, const unsigned char* bytes) const {
        return sum_of(12, crc ^ word_at(bytes)) ^ sum_of(8, word_at(bytes + 4)) ^ sum_of(4, word_at(bytes + 8)) ^
               sum_of(0, word_at(bytes + 12));
    }

private:
    static unsigned int word_at(const unsigned char* bytes) {
        return static_cast<unsigned int>(bytes[0]) << 24 | static_cast<unsigned int>(bytes[1]) << 16 |
               static_cast<unsigned int>(bytes[2]) << 8 | bytes[3];
    }

    // What four bytes do when `following` bytes come after them.
    unsigned int sum_of(unsigned int following, unsigned int word) const {
        return m_tables[following + 3][word >> 24] ^ m_tables[following + 2][word >> 16 & 0xFF] ^
               m_tables[following + 1][word >> 8 & 0xFF] ^ m_tables[following][word & 0xFF];
    }

    std::array<std::array<unsigned int, 256>, STEP_SIZE> m_tables;
};

unsigned char reversed(unsigned char byte) {
    unsigned int bits = 0;
    for (unsigned int bit = 0; bit < 8; ++bit)
        bits |= (byte >> bit & 1U) << (7 - bit);
    return static_cast<unsigned char>(bits);
}

unsigned int add_whole_bytes(unsigned int crc, const unsigned char* data, size_t count, unsigned int polynomial,
                             bool top_bit_first) {
    const CRC_TABLES tables(polynomial);
    size_t place = 0;
    for (; top_bit_first && count - place >= STEP_SIZE; place += STEP_SIZE)
        crc = tables.add_step(crc, data + place);
    for (; place < count; ++place)
        crc = tables.add_byte(crc, top_bit_first ? data[place] : reversed(data[place]));
    return crc;
}

unsigned int add_bits(unsigned int crc, const unsigned char* data, std::uint64_t begin, std::uint64_t end,
                      unsigned int polynomial, bool top_bit_first) {
    for (std::uint64_t bit = begin; bit < end; ++bit) {
        const auto shift = static_cast<unsigned int>(top_bit_first ? 7 - bit % 8 : bit % 8);
        crc = shift_bit(crc ^ (static_cast<unsigned int>(data[bit / 8]) >> shift & 1) << 31, polynomial);
    }
    return crc;
}

} // namespace

unsigned char* PGM_COMMON::get_block_sha(const unsigned char* data, unsigned int length, unsigned int digest_length) {
    if (digest_length != SHA256_DIGEST_SIZE)
        MSG_INTERNAL_ERROR::report("Unsupported digest length", "STANDALONE", __FILE__, __LINE__);
    sha256_ctx context;
    sha256_init(&context);
    sha256_update(&context, length, data);
    auto* const digest = new unsigned char[SHA256_DIGEST_SIZE];
    sha256_digest(&context, SHA256_DIGEST_SIZE, digest);
    return digest;
}

unsigned int PGM_COMMON::msb_calculate_crc32(const unsigned char* data, unsigned int start_bit, unsigned int bit_count,
                                             unsigned int initial, unsigned int polynomial, bool top_bit_first) {
    const std::uint64_t end = std::uint64_t{start_bit} + bit_count;
    const std::uint64_t aligned_begin = (std::uint64_t{start_bit} + 7) / 8 * 8;
    if (aligned_begin >= end)
        return add_bits(initial, data, start_bit, end, polynomial, top_bit_first);
    const std::uint64_t aligned_end = end / 8 * 8;
    unsigned int crc = add_bits(initial, data, start_bit, aligned_begin, polynomial, top_bit_first);
    crc = add_whole_bytes(crc, data + aligned_begin / 8, (aligned_end - aligned_begin) / 8, polynomial, top_bit_first);
    return add_bits(crc, data, aligned_end, end, polynomial, top_bit_first);
}
