// One-call compression. A zlib stream: header, deflate data, Adler-32.
#ifndef TOVREN_ZLIB_H
#define TOVREN_ZLIB_H

inline constexpr int ZLIB_OK = 0;

// The most bytes that `length` compressed bytes can stand for: deflate codes at most 258 bytes in two bits.
constexpr unsigned long long zlib_most_uncompressed(unsigned long long length) {
    return length * 1032;
}

// Both take the room at `destination` in `*destination_length` and leave there what was written. The result is ZLIB_OK,
// or zlib's error number: not enough room, or a bad stream. Bytes behind the end of a stream are not looked at.
int zlib_compress(unsigned char* destination, unsigned int* destination_length, const unsigned char* source,
                  unsigned int source_length);
int zlib_uncompress(unsigned char* destination, unsigned int* destination_length, const unsigned char* source,
                    unsigned int source_length);

#endif
