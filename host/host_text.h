// Text helpers of the host. All of them work on bytes; letters are those of ASCII, whatever the locale.
#ifndef HOST_TEXT_H
#define HOST_TEXT_H

#include <string>
#include <vector>

// Compares two texts up to their terminators, letter case aside: negative, 0 or positive as for strcmp.
int gen_stricmp(const char* left, const char* right);

// Takes blanks, tabs, carriage returns, line, form and vertical feeds off both ends, in place.
void gen_remove_leading_and_trailing_white_spaces(std::string& text);

void stl_toupper(std::string& text);       // in place
void stl_tolower(std::string& text);       // in place
void gen_ascii_toupper(std::string& text); // in place; other bytes stay, whatever the locale

// Splits `text` at the characters of `separators` into `tokens`, whose former contents are lost (their storage is used
// again where it can be).
// White space among the separators joins: a run of it between two words is one separator, and at either end it counts
// for nothing. Any other separator stands for itself, together with the white space around it, so there is an empty
// token between two commas, before a leading and after a trailing one. A text of nothing but white space has no tokens.
void gen_tokenize(const std::string& text, const char* separators, std::vector<std::string>& tokens);

// Reads digits of the radix (2 to 36; letters of either case) from the start of `text`: no white space, no sign, no
// prefix. Digits past 64 bits give 0xFFFFFFFFFFFFFFFF; no digit gives 0. `end`, unless null, receives the first place
// behind the digits.
unsigned long long gen_local_strtoQWORD(const char* text, const char** end, int radix);

#endif
