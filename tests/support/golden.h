// Golden files. A database is written down as a text, so that every byte can be read and changed by hand:
//
//     # a comment, to the end of the line
//     "PGMIO_FM" MD5 48 01 00 00     characters, the MD5 text of the library under test, bytes in hexadecimal
//     ZLIB{ 01 00 00 00 ... }        the zlib stream of the bytes between the braces
//     00 00
#ifndef TESTS_SUPPORT_GOLDEN_H
#define TESTS_SUPPORT_GOLDEN_H

#include "bytes.h"

#include <string>
#include <vector>

struct GOLDEN_FILE {
    BYTES bytes;   // the whole file
    BYTES payload; // what stands in ZLIB{}
};

GOLDEN_FILE read_golden(const std::string& path);

// The paths of the files in tests/golden/<folder> whose names end so, sorted. None at all fails the test.
std::vector<std::string> golden_paths(const std::string& folder, const std::string& ending);

// "two_flashes" of ".../golden/good/two_flashes.csv", and the file of that name with another ending.
std::string golden_name(const std::string& path);
std::string golden_sibling(const std::string& path, const std::string& ending);

#endif
