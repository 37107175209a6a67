// The compression wrappers: destination, room in and length out, source, source length.
#include "bytes.h"
#include "tovren_zlib.h"

#include <gtest/gtest.h>
#include <zlib.h>

namespace {

const BYTES TEXT = text_bytes("one flash memory, one flash memory");

unsigned int size_of(const BYTES& bytes) {
    return static_cast<unsigned int>(bytes.size());
}

TEST(Zlib, HasZeroForDone) {
    EXPECT_EQ(0, ZLIB_OK);
}

TEST(Zlib, CompressesToAZlibStream) {
    BYTES stream(100);
    unsigned int size = size_of(stream);
    ASSERT_EQ(ZLIB_OK, zlib_compress(stream.data(), &size, TEXT.data(), size_of(TEXT)));
    ASSERT_LT(size, TEXT.size());
    EXPECT_EQ(TEXT, inflated(first(stream, size)));
}

TEST(Zlib, CompressesNothing) {
    BYTES stream(100);
    unsigned int size = size_of(stream);
    ASSERT_EQ(ZLIB_OK, zlib_compress(stream.data(), &size, TEXT.data(), 0));
    EXPECT_EQ(BYTES{}, inflated(first(stream, size)));
}

TEST(Zlib, TellsThatTheRoomIsTooSmall) {
    BYTES room(5);
    unsigned int size = size_of(room);
    EXPECT_EQ(Z_BUF_ERROR, zlib_compress(room.data(), &size, TEXT.data(), size_of(TEXT)));
    const BYTES stream = zlib_stream(TEXT);
    size = size_of(room);
    EXPECT_EQ(Z_BUF_ERROR, zlib_uncompress(room.data(), &size, stream.data(), size_of(stream)));
}

TEST(Zlib, UncompressesAndTellsTheLength) {
    const BYTES stream = zlib_stream(TEXT);
    for (const size_t room : {TEXT.size(), TEXT.size() + 1, TEXT.size() * 2}) {
        BYTES bytes(room);
        unsigned int size = size_of(bytes);
        ASSERT_EQ(ZLIB_OK, zlib_uncompress(bytes.data(), &size, stream.data(), size_of(stream)));
        EXPECT_EQ(TEXT, first(bytes, size));
    }
}

TEST(Zlib, TellsOfAStreamThatIsCut) {
    const BYTES stream = zlib_stream(TEXT);
    for (size_t kept = 0; kept < stream.size(); ++kept) {
        BYTES bytes(TEXT.size());
        unsigned int size = size_of(bytes);
        EXPECT_NE(ZLIB_OK, zlib_uncompress(bytes.data(), &size, stream.data(), static_cast<unsigned int>(kept)))
            << kept;
    }
}

TEST(Zlib, TellsOfAChecksumThatIsWrong) {
    BYTES stream = zlib_stream(TEXT);
    stream.back() = static_cast<unsigned char>(stream.back() ^ 1);
    BYTES bytes(TEXT.size());
    unsigned int size = size_of(bytes);
    EXPECT_EQ(Z_DATA_ERROR, zlib_uncompress(bytes.data(), &size, stream.data(), size_of(stream)));
}

TEST(Zlib, LooksAtNothingBehindAStream) {
    const BYTES stream = join({zlib_stream(TEXT), {1, 2, 3}});
    BYTES bytes(TEXT.size());
    unsigned int size = size_of(bytes);
    ASSERT_EQ(ZLIB_OK, zlib_uncompress(bytes.data(), &size, stream.data(), size_of(stream)));
    EXPECT_EQ(TEXT, bytes);
}

TEST(Zlib, KnowsTheMostThatAStreamCanStandFor) {
    // 64 KiB of one byte are what deflate packs tightest.
    const BYTES zeros(1 << 20);
    EXPECT_GE(zlib_most_uncompressed(zlib_stream(zeros).size()), zeros.size());
    EXPECT_EQ(0U, zlib_most_uncompressed(0));
    EXPECT_EQ(4294967295ULL * 1032, zlib_most_uncompressed(4294967295ULL));
}

} // namespace
