// Reads the CSV descriptions and the small tables beside them. Lines that are blank or begin with # are skipped in the
// small tables.
#include "csv_description.h"

#include <openssl/evp.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace {

constexpr char WHITE_SPACE[] = " \t\r\n";

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw std::runtime_error(path + ": " + reason);
}

std::string read_file(const std::string& path) {
    std::ifstream input(path, std::ios::binary);
    if (!input)
        fail(path, "cannot be read");
    return {std::istreambuf_iterator<char>(input), {}};
}

std::string md5_text(const std::string& bytes) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int size = 0;
    if (EVP_Digest(bytes.data(), bytes.size(), digest, &size, EVP_md5(), nullptr) != 1)
        throw std::runtime_error("MD5 is not available");
    static constexpr char DIGITS[] = "0123456789abcdef";
    std::string text;
    for (unsigned int i = 0; i < size; ++i) {
        text += DIGITS[digest[i] >> 4];
        text += DIGITS[digest[i] & 15];
    }
    return text;
}

std::string trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(WHITE_SPACE);
    const size_t last = text.find_last_not_of(WHITE_SPACE);
    return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

std::vector<std::string> split(const std::string& line) {
    std::vector<std::string> cells;
    std::string cell;
    std::istringstream stream(line);
    while (std::getline(stream, cell, ','))
        cells.push_back(trimmed(cell));
    return cells;
}

std::vector<std::string> next_row(std::istream& stream, const std::string& path) {
    std::string line;
    while (std::getline(stream, line))
        if (!trimmed(line).empty())
            return split(line);
    fail(path, "the type row or the name row is missing");
}

struct LINE {
    std::string text;
    std::string place; // file and number
};

std::vector<LINE> read_lines(const std::string& path) {
    std::istringstream stream(read_file(path));
    std::vector<LINE> lines;
    std::string line;
    for (int number = 1; std::getline(stream, line); ++number)
        if (const std::string text = trimmed(line); !text.empty() && text[0] != '#')
            lines.push_back({text, path + ":" + std::to_string(number)});
    return lines;
}

std::string lower_case(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

} // namespace

CSV_DESCRIPTION read_csv_description(const std::string& path) {
    const std::string bytes = read_file(path);
    std::istringstream stream(bytes);
    const auto types = next_row(stream, path);
    const auto names = next_row(stream, path);
    if (types.size() != names.size())
        fail(path, "the type row has " + std::to_string(types.size()) + " cells, the name row has " +
                       std::to_string(names.size()));

    CSV_DESCRIPTION description{md5_text(bytes), {}};
    for (size_t i = 0; i < types.size(); ++i)
        description.members.push_back({types[i], lower_case(names[i]), ""});
    return description;
}

void read_member_meanings(const std::string& path, CSV_DESCRIPTION& description) {
    const auto lines = read_lines(path);
    if (lines.size() != description.members.size())
        fail(path,
             std::to_string(description.members.size()) + " lines are expected, not " + std::to_string(lines.size()));
    for (size_t i = 0; i < lines.size(); ++i) {
        const size_t comma = lines[i].text.find(',');
        const std::string name = trimmed(lines[i].text.substr(0, comma));
        if (comma == std::string::npos || name != description.members[i].name)
            fail(lines[i].place, "\"" + description.members[i].name + ", meaning\" is expected");
        description.members[i].meaning = trimmed(lines[i].text.substr(comma + 1));
    }
}

std::vector<CSV_NAME_VALUE> read_family_names(const std::string& path) {
    std::vector<CSV_NAME_VALUE> families;
    for (const LINE& line : read_lines(path)) {
        CSV_NAME_VALUE family;
        std::istringstream stream(line.text);
        if (!(stream >> family.value >> family.name))
            fail(line.place, "a number and a name are expected");
        families.push_back(family);
    }
    return families;
}

std::vector<CSV_NAME_VALUE> read_enum_names(const std::string& path, const std::vector<CSV_NAME_VALUE>& families) {
    static const std::string FAMILY_PREFIX = "DEV_FAMILY_";
    std::vector<CSV_NAME_VALUE> enums;
    for (const LINE& line : read_lines(path)) {
        const auto is_named = [&](const CSV_NAME_VALUE& family) {
            std::string enumerator = FAMILY_PREFIX + family.name;
            std::replace(enumerator.begin(), enumerator.end(), '-', '_');
            return enumerator == line.text;
        };
        const auto family = std::find_if(families.begin(), families.end(), is_named);
        const bool is_host = line.text == FAMILY_PREFIX + "INVALID" || !line.text.starts_with(FAMILY_PREFIX);
        if (family == families.end() && !is_host)
            fail(line.place, "\"" + line.text + "\" names no family of the catalogue");
        enums.push_back({line.text, family == families.end() ? line.text : family->value});
    }
    return enums;
}

std::vector<std::string> read_names(const std::string& path) {
    std::vector<std::string> names;
    for (const LINE& line : read_lines(path))
        names.push_back(line.text);
    return names;
}
