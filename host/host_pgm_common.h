// Services that the programmer's libraries share.
#ifndef HOST_PGM_COMMON_H
#define HOST_PGM_COMMON_H

#include <string>

class PGM_COMMON {
public:
    // The 32-bit number that `text` writes: decimal digits, or, with `allow_hex`, hexadecimal digits behind 0x or 0X.
    // Nothing may stand before, between or behind the digits. `no_empty` forbids the empty text, which otherwise is 0.
    // A bad text or a number past 32 bits gives 0 and clears `*ok`, which is set otherwise; without `ok` it is an
    // internal error of the host. `*overflow`, where given, tells a number past 32 bits from a bad text.
    static unsigned int convert_string_to_dword(const std::string& text, bool no_empty, bool* ok, bool* overflow,
                                                bool allow_hex);
};

#endif
