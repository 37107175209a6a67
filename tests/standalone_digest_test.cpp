// Digests and text comparison of the standalone host.
#include "bytes.h"
#include "host_pgm_common.h"

#include <gtest/gtest.h>
#include <memory>
#include <openssl/evp.h>

namespace {

BYTES sha_of(const BYTES& bytes) {
    const std::unique_ptr<unsigned char[]> digest(
        PGM_COMMON::get_block_sha(bytes.data(), static_cast<unsigned int>(bytes.size()), 32));
    return {digest.get(), digest.get() + 32};
}

TEST(BlockSha, GivesThePublishedDigests) {
    EXPECT_EQ("BA 78 16 BF 8F 01 CF EA 41 41 40 DE 5D AE 22 23 B0 03 61 A3 96 17 7A 9C B4 10 FF 61 F2 00 15 AD",
              hex_text(sha_of(text_bytes("abc"))));
    EXPECT_EQ("E3 B0 C4 42 98 FC 1C 14 9A FB F4 C8 99 6F B9 24 27 AE 41 E4 64 9B 93 4C A4 95 99 1B 78 52 B8 55",
              hex_text(sha_of({})));
}

TEST(BlockSha, AgreesWithAnotherImplementationAroundItsBlockSize) {
    BYTES bytes;
    for (unsigned int size = 0; size < 200; ++size) {
        BYTES expected(32);
        ASSERT_EQ(1, EVP_Digest(bytes.data(), bytes.size(), expected.data(), nullptr, EVP_sha256(), nullptr));
        EXPECT_EQ(expected, sha_of(bytes)) << size;
        bytes.push_back(static_cast<unsigned char>(size * 7));
    }
}

constexpr unsigned int BZIP2 = 0x04C11DB7;

// The definition: a bit at a time, out of an array of bits in the order in which they are taken.
unsigned int plain_crc(const BYTES& bytes, size_t start, size_t count, unsigned int crc, unsigned int polynomial,
                       bool top_bit_first) {
    std::vector<bool> bits;
    for (const unsigned char byte : bytes)
        for (int bit = 0; bit < 8; ++bit)
            bits.push_back((byte >> (top_bit_first ? 7 - bit : bit) & 1) != 0);
    for (size_t bit = start; bit < start + count; ++bit) {
        const bool carry = ((crc & 0x80000000) != 0) != bits[bit];
        crc = (crc << 1) ^ (carry ? polynomial : 0);
    }
    return crc;
}

BYTES varied_bytes(size_t count) {
    BYTES bytes;
    unsigned int state = 1;
    for (size_t place = 0; place < count; ++place) {
        state = state * 1103515245 + 12345;
        bytes.push_back(static_cast<unsigned char>(state >> 16));
    }
    return bytes;
}

TEST(MsbCrc32, GivesTheCatalogueCheckValues) {
    const BYTES digits = text_bytes("123456789");
    // CRC-32/BZIP2, CRC-32/MPEG-2, CRC-32/XFER (polynomial 0xAF), CRC-32Q.
    EXPECT_EQ(0xFC891918, ~PGM_COMMON::msb_calculate_crc32(digits.data(), 0, 72, 0xFFFFFFFF, BZIP2, true));
    EXPECT_EQ(0x0376E6E7U, PGM_COMMON::msb_calculate_crc32(digits.data(), 0, 72, 0xFFFFFFFF, BZIP2, true));
    EXPECT_EQ(0xBD0BE338, PGM_COMMON::msb_calculate_crc32(digits.data(), 0, 72, 0, 0xAF, true));
    EXPECT_EQ(0x3010BF7FU, PGM_COMMON::msb_calculate_crc32(digits.data(), 0, 72, 0, 0x814141AB, true));
}

TEST(MsbCrc32, AgreesWithItsDefinitionForEverySize) {
    const BYTES bytes = varied_bytes(100);
    for (unsigned int size = 0; size <= 100; ++size)
        EXPECT_EQ(plain_crc(bytes, 0, size * 8, 0xFFFFFFFF, BZIP2, true),
                  PGM_COMMON::msb_calculate_crc32(bytes.data(), 0, size * 8, 0xFFFFFFFF, BZIP2, true))
            << size;
}

TEST(MsbCrc32, AgreesWithItsDefinitionForEveryStartAndCountOfBits) {
    const BYTES bytes = varied_bytes(24);
    for (unsigned int start = 0; start <= 24; ++start) {
        for (unsigned int count = 0; count + start <= 24 * 8; ++count) {
            for (const bool top_bit_first : {true, false})
                ASSERT_EQ(plain_crc(bytes, start, count, 0x12345678, 0x814141AB, top_bit_first),
                          PGM_COMMON::msb_calculate_crc32(bytes.data(), start, count, 0x12345678, 0x814141AB,
                                                          top_bit_first))
                    << start << ' ' << count << ' ' << top_bit_first;
        }
    }
}

TEST(MsbCrc32, GoesOnFromAnEarlierResult) {
    const BYTES bytes = varied_bytes(50);
    const unsigned int head = PGM_COMMON::msb_calculate_crc32(bytes.data(), 0, 123, 0xFFFFFFFF, BZIP2, true);
    EXPECT_EQ(PGM_COMMON::msb_calculate_crc32(bytes.data(), 0, 400, 0xFFFFFFFF, BZIP2, true),
              PGM_COMMON::msb_calculate_crc32(bytes.data(), 123, 400 - 123, head, BZIP2, true));
}

TEST(MsbCrc32, ReadsNothingBehindTheLastBit) {
    const BYTES bytes = varied_bytes(33);
    for (size_t size = 1; size <= 33; ++size) {
        const std::unique_ptr<unsigned char[]> exact = std::make_unique<unsigned char[]>(size);
        std::copy_n(bytes.begin(), size, exact.get());
        const auto bits = static_cast<unsigned int>(size * 8 - 3);
        EXPECT_EQ(plain_crc(bytes, 0, bits, 0, BZIP2, true),
                  PGM_COMMON::msb_calculate_crc32(exact.get(), 0, bits, 0, BZIP2, true));
    }
}

TEST(CompareString, IgnoresLetterCaseWhenToldTo) {
    EXPECT_TRUE(PGM_COMMON::compare_string("Qx20a_-9", "qX20A_-9", false));
    EXPECT_FALSE(PGM_COMMON::compare_string("Qx20a", "qX20A", true));
    EXPECT_TRUE(PGM_COMMON::compare_string("Qx20a", "Qx20a", true));
    EXPECT_TRUE(PGM_COMMON::compare_string("", "", false));
}

TEST(CompareString, TellsTextsApart) {
    for (const bool case_sensitive : {true, false}) {
        EXPECT_FALSE(PGM_COMMON::compare_string("QX20A", "QX20", case_sensitive));
        EXPECT_FALSE(PGM_COMMON::compare_string("QX20A", "QX20B", case_sensitive));
        EXPECT_FALSE(PGM_COMMON::compare_string("", "Q", case_sensitive));
        EXPECT_FALSE(PGM_COMMON::compare_string("[", "{", case_sensitive));
        EXPECT_FALSE(PGM_COMMON::compare_string(std::string("A\0B", 3), std::string("A\0C", 3), case_sensitive));
    }
}

} // namespace
