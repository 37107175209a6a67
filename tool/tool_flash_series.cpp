// The series of a flash, and its records.
#include "tool_flash_series.h"

#include "host_text.h"
#include "tool_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <tuple>

namespace {

constexpr unsigned long long MBIT = 1 << 20;
constexpr unsigned long long GBIT = 1 << 30;

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

bool is_letter(char c) {
    return c >= 'A' && c <= 'Z';
}

size_t end_of(const std::string& text, size_t begin, bool (*is_part)(char)) {
    return static_cast<size_t>(
        std::find_if_not(text.begin() + static_cast<std::ptrdiff_t>(begin), text.end(), is_part) - text.begin());
}

// The digits are the density in Mbit, or, before a G, in Gbit.
bool is_density(const std::string& name, size_t begin, size_t end, unsigned long long bits) {
    const auto number = gen_local_strtoQWORD(name.c_str() + begin, nullptr, 10);
    const bool is_gbit = end < name.size() && name[end] == 'G';
    return bits / (is_gbit ? GBIT : MBIT) == number && bits >= MBIT;
}

// ---- which records ----

constexpr size_t ID_BYTES = 3;
using ID = std::array<BYTE, ID_BYTES>;

ID id_of(const TOVREN_SFL_FLASH_INFO& record) {
    return {record.mfc_id, record.memory_type, record.memory_id};
}

// Records that answer the first `count` bytes.
TOOL_FLASH_RECORDS answering(const TOOL_FLASH_RECORDS& records, std::span<const unsigned char> id, size_t count) {
    TOOL_FLASH_RECORDS found;
    for (const TOVREN_SFL_FLASH_INFO* record : records) {
        const ID own = id_of(*record);
        if (tool_has_usual_id(*record) && std::equal(own.begin(), own.begin() + static_cast<long>(count), id.begin()))
            found.push_back(record);
    }
    return found;
}

std::string series_of(const TOVREN_SFL_FLASH_INFO& record) {
    return tool_flash_series(record.device_name, record.device_bit_size);
}

std::vector<std::string> different_series(const TOOL_FLASH_RECORDS& records) {
    std::vector<std::string> series;
    for (const TOVREN_SFL_FLASH_INFO* record : records)
        if (const std::string own = series_of(*record);
            !own.empty() && std::find(series.begin(), series.end(), own) == series.end())
            series.push_back(own);
    return series;
}

std::string id_text(const TOOL_FLASH_WANTED& wanted, size_t count) {
    return tool_hex_text(wanted.id.data(), count);
}

void point_by_name(const TOOL_FLASH_WANTED& wanted, TOOL_FLASH_SIBLINGS& siblings) {
    siblings.series = tool_flash_series(*wanted.name, wanted.bits);
    siblings.pointed_to_by = "device_name";
    if (siblings.series.empty())
        siblings.absence = tool_quoted(*wanted.name) + " names no series: it has no letters before digits";
}

void point_by_answer(const TOOL_FLASH_RECORDS& records, const TOOL_FLASH_WANTED& wanted,
                     TOOL_FLASH_SIBLINGS& siblings) {
    const char* const alike[] = {"manufacturer byte ", "manufacturer and type byte ", "answer "};
    for (size_t count = ID_BYTES; count >= 2; --count) {
        const auto series = different_series(answering(records, wanted.id, count));
        const std::string what = alike[count - 1] + id_text(wanted, count);
        if (series.size() == 1) {
            siblings.series = series.front();
            siblings.pointed_to_by = "records with the " + what;
            return;
        }
        if (series.size() > 1) {
            siblings.absence = "the records with the " + what + " are of several series (" + tool_join(series, ", ") +
                               "); --member device_name=NAME tells which";
            return;
        }
    }
    siblings.absence = "no record has the " + std::string(alike[1]) + id_text(wanted, 2) +
                       "; --member device_name=NAME may name a series";
}

bool is_of_maker(const TOVREN_SFL_FLASH_INFO& record, const std::optional<std::string>& maker) {
    return !maker || tool_equal_ignoring_case(record.manufacturer_name, *maker);
}

int step(unsigned long long left, unsigned long long right) {
    return std::abs(static_cast<int>(std::bit_width(left)) - static_cast<int>(std::bit_width(right)));
}

// Smaller is closer.
auto distance_of(const TOVREN_SFL_FLASH_INFO& record, const TOOL_FLASH_WANTED& wanted) {
    const ID own = id_of(record);
    return std::make_tuple(!(wanted.name && tool_equal_ignoring_case(record.device_name, *wanted.name)),
                           !std::equal(own.begin(), own.end(), wanted.id.begin()), own[1] != wanted.id[1],
                           step(record.device_bit_size, wanted.bits), record.device_bit_size < wanted.bits);
}

} // namespace

std::string tool_flash_series(const std::string& name, unsigned long long bits) {
    std::string text = name;
    gen_ascii_toupper(text);
    const size_t digits = end_of(text, 0, is_letter);
    const size_t letters = end_of(text, digits, is_digit);
    if (digits == 0 || letters == digits)
        return "";
    const size_t density = end_of(text, letters, is_letter);
    const bool has_second = text.find_first_of("0123456789", density) != std::string::npos && density > letters;
    return text.substr(0, !has_second || is_density(text, digits, letters, bits) ? digits : density);
}

TOOL_FLASH_SIBLINGS tool_flash_siblings(const TOOL_FLASH_RECORDS& records, const TOOL_FLASH_WANTED& wanted) {
    TOOL_FLASH_SIBLINGS siblings;
    if (wanted.name)
        point_by_name(wanted, siblings);
    else
        point_by_answer(records, wanted, siblings);
    if (siblings.series.empty())
        return siblings;
    for (const TOVREN_SFL_FLASH_INFO* record : answering(records, wanted.id, 1))
        if (series_of(*record) == siblings.series && is_of_maker(*record, wanted.maker))
            siblings.records.push_back(record);
    std::stable_sort(siblings.records.begin(), siblings.records.end(), [&wanted](const auto* left, const auto* right) {
        return distance_of(*left, wanted) < distance_of(*right, wanted);
    });
    if (siblings.records.empty())
        siblings.absence = "no record of the series " + siblings.series + " has the manufacturer byte " +
                           id_text(wanted, 1) + (wanted.maker ? " and the maker " + tool_quoted(*wanted.maker) : "");
    return siblings;
}

bool tool_has_usual_id(const TOVREN_SFL_FLASH_INFO& record) {
    return !record.silicon_id && record.mfc_id_index == 0 && record.memory_type_index == 1 &&
           record.memory_id_index == 2;
}

std::vector<std::string> tool_different_texts(const TOOL_FLASH_RECORDS& records,
                                              std::string TOVREN_SFL_FLASH_INFO::*member) {
    std::vector<std::string> texts;
    for (const TOVREN_SFL_FLASH_INFO* record : records)
        if (std::find(texts.begin(), texts.end(), record->*member) == texts.end())
            texts.push_back(record->*member);
    return texts;
}
