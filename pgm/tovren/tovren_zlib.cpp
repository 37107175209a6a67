// The library's wrappers over zlib, with the integer widths of its formats.
#include "tovren_zlib.h"

#include <zlib.h>

static_assert(ZLIB_OK == Z_OK);

int zlib_compress(unsigned char* destination, unsigned int* destination_length, const unsigned char* source,
                  unsigned int source_length) {
    uLongf length = *destination_length;
    const int result = compress(destination, &length, source, source_length);
    *destination_length = static_cast<unsigned int>(length);
    return result;
}

int zlib_uncompress(unsigned char* destination, unsigned int* destination_length, const unsigned char* source,
                    unsigned int source_length) {
    uLongf length = *destination_length;
    const int result = uncompress(destination, &length, source, source_length);
    *destination_length = static_cast<unsigned int>(length);
    return result;
}
