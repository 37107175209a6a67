// Reads the naming scheme. A grade is a temperature and a speed code ("C6"); the ordering names of a grade set are the
// bare name, then for each option every grade: that order is the order of names in the maps and of catalogue parts.
#include "world_scheme.h"

#include <algorithm>
#include <vector>

namespace {

bool contains(const std::vector<std::string>& list, const std::string& item) {
    return std::find(list.begin(), list.end(), item) != list.end();
}

void add_code(std::vector<std::string>& codes, const WORLD_ROW& row, bool right_form, WORLD_FAULTS& faults) {
    const std::string& code = row.values.front();
    if (!right_form)
        faults.add(row.place, "\"" + code + "\" is no code of a " + row.word);
    else if (contains(codes, code))
        faults.add(row.place, row.word + " \"" + code + "\" is described twice");
    else
        codes.push_back(code);
}

void add_package_type(WORLD_SCHEME& scheme, const WORLD_ROW& row, WORLD_FAULTS& faults) {
    const std::string& code = row.values.front();
    if (row.values.size() < 2 || code.size() != 1 || !is_world_capitals(code) || !is_world_capitals(row.values[1]))
        faults.add(row.place, "a package is a capital letter, a type in capitals and its meaning");
    else if (!scheme.package_types.emplace(code.front(), row.values[1]).second)
        faults.add(row.place, "package \"" + code + "\" is described twice");
}

// A grade set as its row gives it, checked against the codes.
struct GRADE_ROW {
    bool bare = false;
    std::vector<std::string> grades;
    std::vector<std::string> options;
    std::vector<std::string> listed;
};

bool known_grade(const WORLD_SCHEME& scheme, const std::string& grade) {
    return grade.size() == 2 && contains(scheme.temperatures, grade.substr(0, 1)) &&
           contains(scheme.speeds, grade.substr(1));
}

// "-" among the options stands for the name without an option, so these lists are not empty for "-".
std::vector<std::string> option_list(const WORLD_SCHEME& scheme, const WORLD_ROW& row, const std::string& name,
                                     WORLD_FAULTS& faults) {
    const std::string text = world_attribute(row, name, "");
    std::vector<std::string> options = text == "-" ? std::vector<std::string>{"-"} : split_world_list(text, ',');
    for (const std::string& option : options) {
        if (option == "-" || contains(scheme.options, option))
            continue;
        std::string reason = name;
        reason.append(": \"").append(option).append("\" is no option");
        faults.add(row.place, reason);
    }
    return options;
}

GRADE_ROW parse_grade_row(const WORLD_SCHEME& scheme, const WORLD_ROW& row, WORLD_FAULTS& faults) {
    GRADE_ROW set;
    const std::string bare = world_attribute(row, "bare", "");
    if (bare != "yes" && bare != "no")
        faults.add(row.place, "bare: \"" + bare + "\" is neither yes nor no");
    set.bare = bare == "yes";
    set.grades = split_world_list(world_attribute(row, "grades", ""), ',');
    std::erase_if(set.grades, [&](const std::string& grade) {
        if (known_grade(scheme, grade))
            return false;
        faults.add(row.place, "grades: \"" + grade + "\" is no temperature and speed");
        return true;
    });
    set.options = option_list(scheme, row, "options", faults);
    set.listed = option_list(scheme, row, "listed", faults);
    if (!set.bare && set.grades.empty())
        faults.add(row.place, "the set holds no name");
    return set;
}

std::vector<WORLD_SUFFIX> expand_grade_row(const GRADE_ROW& set) {
    std::vector<WORLD_SUFFIX> suffixes;
    if (set.bare)
        suffixes.push_back({"", "", "", true});
    for (const std::string& option : set.options) {
        const std::string tail = option == "-" ? "" : option;
        for (const std::string& grade : set.grades)
            suffixes.push_back({grade + tail, grade.substr(0, 1), grade.substr(1), contains(set.listed, option)});
    }
    return suffixes;
}

void add_grade_set(WORLD_SCHEME& scheme, const WORLD_ROW& row, WORLD_FAULTS& faults) {
    if (!check_world_row(row, 1, {"bare", "grades", "options", "listed"}, faults))
        return;
    const std::vector<WORLD_SUFFIX> suffixes = expand_grade_row(parse_grade_row(scheme, row, faults));
    if (!scheme.grade_sets.emplace(row.values.front(), suffixes).second)
        faults.add(row.place, "grade set \"" + row.values.front() + "\" is described twice");
}

void add_scheme_row(WORLD_SCHEME& scheme, const WORLD_ROW& row, WORLD_FAULTS& faults) {
    const std::string code = row.values.empty() ? "" : row.values.front();
    if (code.empty())
        faults.add(row.place, "\"" + row.word + "\" without a code");
    else if (row.word == "package")
        add_package_type(scheme, row, faults);
    else if (row.word == "temperature")
        add_code(scheme.temperatures, row, code.size() == 1 && is_world_capitals(code), faults);
    else if (row.word == "speed")
        add_code(scheme.speeds, row, code.size() == 1 && is_world_digits(code), faults);
    else if (row.word == "option")
        add_code(scheme.options, row, is_world_capitals(code), faults);
    else if (row.word == "grades")
        add_grade_set(scheme, row, faults);
    else
        faults.add(row.place, "\"" + row.word + "\" is no word of the naming scheme");
}

} // namespace

std::optional<WORLD_PACKAGE> WORLD_SCHEME::package_of(std::string_view code) const {
    if (code.size() < 3 || code.size() > 5 || code[1] == '0' || !is_world_digits(code.substr(1)))
        return std::nullopt;
    const auto type = package_types.find(code.front());
    const int pins = std::stoi(std::string(code.substr(1)));
    if (type == package_types.end())
        return std::nullopt;
    return WORLD_PACKAGE{std::string(code), type->second, static_cast<unsigned int>(pins)};
}

WORLD_SCHEME read_world_scheme(const std::string& file, WORLD_FAULTS& faults) {
    WORLD_SCHEME scheme;
    for (const WORLD_ROW& row : read_world_rows(file, {"package", "temperature", "speed", "option"}, faults))
        add_scheme_row(scheme, row, faults);
    return scheme;
}
