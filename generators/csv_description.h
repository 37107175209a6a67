// What the CSV descriptions under data/ say to the table generator.
#ifndef CSV_DESCRIPTION_H
#define CSV_DESCRIPTION_H

#include <string>
#include <vector>

struct CSV_MEMBER {
    std::string type;    // the type word of the type row
    std::string name;    // lower case
    std::string meaning; // for the record's declaration; empty where it is declared by hand
};

struct CSV_DESCRIPTION {
    std::string md5; // of the file's bytes, lower-case hexadecimal
    std::vector<CSV_MEMBER> members;
};

// A name of an enumeration cell and its value as C++ writes it.
struct CSV_NAME_VALUE {
    std::string name;
    std::string value;
};

// All of these throw std::runtime_error with file, place and reason.

// The first two rows that are not blank: type row and name row.
CSV_DESCRIPTION read_csv_description(const std::string& path);

// Adds the meanings, a line `name, meaning` for each member in order.
void read_member_meanings(const std::string& path, CSV_DESCRIPTION& description);

// Lines `number name ...`.
std::vector<CSV_NAME_VALUE> read_family_names(const std::string& path);

// Lines `name`; DEV_FAMILY_X has the value of family X, any other name is an enumerator of the host.
std::vector<CSV_NAME_VALUE> read_enum_names(const std::string& path, const std::vector<CSV_NAME_VALUE>& families);

// Lines `name`.
std::vector<std::string> read_names(const std::string& path);

#endif
