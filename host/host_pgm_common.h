// Services that the programmer's libraries share.
#ifndef HOST_PGM_COMMON_H
#define HOST_PGM_COMMON_H

#include <string>
#include <vector>

// Whom a message of the build goes to; the host knows the addresses.
enum PGM_COMMON_INI_EMAIL_ADDR_ENUM : unsigned int {
    PGM_COMMON_INI_EMAIL_ADDR_DEVICE_DATA = 0, // the keepers of the device description
    PGM_COMMON_INI_EMAIL_ADDR_BUILD = 1,       // the keepers of the build
};

class PGM_COMMON {
public:
    // The 32-bit number that `text` writes: decimal digits, or, with `allow_hex`, hexadecimal digits behind 0x or 0X.
    // Nothing may stand before, between or behind the digits. `no_empty` forbids the empty text, which otherwise is 0.
    // A bad text or a number past 32 bits gives 0 and clears `*ok`, which is set otherwise; without `ok` it is an
    // internal error of the host. `*overflow`, where given, tells a number past 32 bits from a bad text.
    static unsigned int convert_string_to_dword(const std::string& text, bool no_empty, bool* ok, bool* overflow,
                                                bool allow_hex);

    // Sends `body` to all `recipients` at once. True when the message is on its way. A failure is the host's to tell;
    // it must not end the caller's work.
    static bool send_auto_email_file(const std::vector<PGM_COMMON_INI_EMAIL_ADDR_ENUM>& recipients,
                                     const std::string& subject, const std::string& body);

    // The digest of `length` bytes, of `digest_length` bytes: 32 for SHA-256, the only one there is; another length is
    // an internal error of the host. In a new array, the caller's (array delete).
    static unsigned char* get_block_sha(const unsigned char* data, unsigned int length, unsigned int digest_length);

    // The CRC of `bit_count` bits from bit `start_bit` on, by a 32-bit register that starts as `initial` and shifts
    // towards its top bit. `polynomial` has the top bit first, without the leading one (0x04C11DB7). `top_bit_first`
    // says in which order the bits of a byte are counted and taken. Returns the register as it stands then: not
    // reflected, not complemented, so that the result may be the initial value of the next call.
    static unsigned int msb_calculate_crc32(const unsigned char* data, unsigned int start_bit, unsigned int bit_count,
                                            unsigned int initial, unsigned int polynomial, bool top_bit_first);

    // Whether two texts are equal; without `case_sensitive` letter case aside.
    static bool compare_string(const std::string& left, const std::string& right, bool case_sensitive);
};

#endif
