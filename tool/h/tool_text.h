// Texts for people: quantities with units, printable forms, similar names.
#ifndef TOOL_TEXT_H
#define TOOL_TEXT_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

std::string tool_bits_text(unsigned long long bits);             // "128 Mbit", "512 Kbit", "100 bit"
std::string tool_bytes_text(unsigned long long bytes);           // "16 MiB", "64 KiB", "100 B"
std::string tool_seconds_text(unsigned int seconds);             // "240 s"
std::string tool_microseconds_text(unsigned int microseconds);   // "700 us", "5 ms", "4.224 ms"
std::string tool_hex_text(const unsigned char* bytes, size_t n); // "20BA18"

// "1 record", "2 records".
std::string tool_count_text(size_t count, std::string_view noun);

// `texts` with `separator` between two.
std::string tool_join(const std::vector<std::string>& texts, std::string_view separator);

// The text in a form that leaves a terminal alone: control characters and bytes that are not UTF-8 become \xNN.
std::string tool_printable(std::string_view text);
std::string tool_quoted(std::string_view text); // the same in quotes

// Columns that a printable text takes: its characters.
size_t tool_text_width(std::string_view text);

// A decimal number up to `most`; none for anything else.
std::optional<unsigned int> tool_number(std::string_view text, unsigned int most);

bool tool_equal_ignoring_case(const std::string& left, const std::string& right);

// The names nearest to `name`, letter case aside, five at most: those within two edits, the nearest first; where there
// are none, those that share its longest known beginning of three letters or more.
std::vector<std::string> tool_nearest_names(const std::string& name, const std::vector<std::string>& names);

// "Did you mean A, B or C?"; empty without names.
std::string tool_did_you_mean(const std::vector<std::string>& names);

#endif
