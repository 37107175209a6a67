// Services that the programmer's libraries share.
#include "host_msg.h"
#include "host_pgm_common.h"
#include "host_text.h"

#include <charconv>
#include <system_error>

namespace {

enum class NUMBER_FAULT : unsigned char { NONE, BAD_TEXT, TOO_LARGE };

NUMBER_FAULT read_number(const std::string& text, bool no_empty, bool allow_hex, unsigned int& value) {
    if (text.empty())
        return no_empty ? NUMBER_FAULT::BAD_TEXT : NUMBER_FAULT::NONE;
    const bool is_hex = allow_hex && text.size() > 1 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const char* const begin = text.data() + (is_hex ? 2 : 0);
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(begin, end, value, is_hex ? 16 : 10);
    if (rest != end || error == std::errc::invalid_argument)
        return NUMBER_FAULT::BAD_TEXT;
    return error == std::errc::result_out_of_range ? NUMBER_FAULT::TOO_LARGE : NUMBER_FAULT::NONE;
}

} // namespace

unsigned int PGM_COMMON::convert_string_to_dword(const std::string& text, bool no_empty, bool* ok, bool* overflow,
                                                 bool allow_hex) {
    unsigned int value = 0;
    const NUMBER_FAULT fault = read_number(text, no_empty, allow_hex, value);
    if (overflow)
        *overflow = fault == NUMBER_FAULT::TOO_LARGE;
    if (ok)
        *ok = fault == NUMBER_FAULT::NONE;
    else if (fault != NUMBER_FAULT::NONE)
        MSG_INTERNAL_ERROR::report("Invalid string to DWORD conversion", "STANDALONE", __FILE__, __LINE__);
    return fault == NUMBER_FAULT::NONE ? value : 0;
}

bool PGM_COMMON::compare_string(const std::string& left, const std::string& right, bool case_sensitive) {
    if (case_sensitive || left.size() != right.size())
        return left == right;
    std::string folded_left = left;
    std::string folded_right = right;
    stl_toupper(folded_left);
    stl_toupper(folded_right);
    return folded_left == folded_right;
}
