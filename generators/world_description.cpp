// Reads the description of the world of parts. The words of a row of dies are tables; a value that no table knows is
// a fault that quotes what was found.
#include "world_description.h"

#include <algorithm>
#include <array>

namespace {

template <typename VALUE>
struct WORD {
    std::string_view text;
    VALUE value;
};

constexpr std::array<WORD<WORLD_FILES>, 4> FILES_WORDS = {{{"none", WORLD_FILES::NONE},
                                                           {"line", WORLD_FILES::LINE},
                                                           {"die", WORLD_FILES::DIE},
                                                           {"device", WORLD_FILES::DEVICE}}};
constexpr std::array<WORD<WORLD_STATUS>, 4> STATUS_WORDS = {{{"current", WORLD_STATUS::CURRENT},
                                                             {"fading", WORLD_STATUS::FADING},
                                                             {"retired", WORLD_STATUS::RETIRED},
                                                             {"announced", WORLD_STATUS::ANNOUNCED}}};
constexpr std::array<WORD<WORLD_NUMBERED>, 3> NUMBERED_WORDS = {
    {{"none", WORLD_NUMBERED::NONE}, {"first", WORLD_NUMBERED::FIRST}, {"all", WORLD_NUMBERED::ALL}}};

class DESCRIPTION_READER {
public:
    DESCRIPTION_READER(const WORLD_SCHEME& scheme, WORLD_FAULTS& faults) : m_scheme(scheme), m_faults(faults) {}

    void add(const WORLD_ROW& row);
    WORLD_DESCRIPTION take() { return std::move(m_series); }

private:
    void add_series(const WORLD_ROW& row);
    void add_family(const WORLD_ROW& row);
    void add_dies(const WORLD_ROW& row);

    std::vector<WORLD_SUFFIX> grade_set(const WORLD_ROW& row, const std::string& name);
    void read_grades(const WORLD_ROW& row, WORLD_FAMILY_ROW& family);
    void read_packages(const WORLD_ROW& row, const std::string& text, WORLD_DIES& dies);
    void check_densities(const WORLD_DIES& dies);
    void check_variants(const WORLD_DIES& dies);
    void check_consistency(const WORLD_DIES& dies);
    bool flag(const WORLD_ROW& row, const std::string& name, const std::string& off, const std::string& on);
    void require(bool condition, const WORLD_PLACE& place, const std::string& reason);

    template <typename VALUE, std::size_t COUNT>
    VALUE word(const WORLD_ROW& row, const std::string& text, const std::array<WORD<VALUE>, COUNT>& words);

    const WORLD_SCHEME& m_scheme;
    WORLD_FAULTS& m_faults;
    WORLD_DESCRIPTION m_series;
};

std::string in_quotes(const std::string& text) {
    return "\"" + text + "\"";
}

void DESCRIPTION_READER::require(bool condition, const WORLD_PLACE& place, const std::string& reason) {
    if (!condition)
        m_faults.add(place, reason);
}

template <typename VALUE, std::size_t COUNT>
VALUE DESCRIPTION_READER::word(const WORLD_ROW& row, const std::string& text,
                               const std::array<WORD<VALUE>, COUNT>& words) {
    std::string known;
    for (const WORD<VALUE>& candidate : words) {
        if (candidate.text == text)
            return candidate.value;
        known += (known.empty() ? "" : ", ") + std::string(candidate.text);
    }
    m_faults.add(row.place, in_quotes(text) + " is none of " + known);
    return words.front().value;
}

bool DESCRIPTION_READER::flag(const WORLD_ROW& row, const std::string& name, const std::string& off,
                              const std::string& on) {
    const std::string text = world_attribute(row, name, off);
    require(text == on || text == off, row.place, name + ": " + in_quotes(text) + " is neither " + on + " nor " + off);
    return text == on;
}

void DESCRIPTION_READER::add(const WORLD_ROW& row) {
    if (row.word == "series")
        add_series(row);
    else if (row.word == "family")
        add_family(row);
    else if (row.word == "dies")
        add_dies(row);
    else
        m_faults.add(row.place, in_quotes(row.word) + " is no word of the description");
}

void DESCRIPTION_READER::add_series(const WORLD_ROW& row) {
    if (!check_world_row(row, 2, {"file", "reserved"}, m_faults))
        return;
    WORLD_SERIES series;
    series.place = row.place;
    series.letter = row.values[0];
    series.word = row.values[1];
    const std::string file = world_attribute(row, "file", "");
    const std::string reserved = world_attribute(row, "reserved", "0");
    series.family_file = file == "-" ? "" : file;
    require(series.letter.size() == 1 && is_world_capitals(series.letter), row.place,
            in_quotes(series.letter) + " is no capital letter");
    require(is_world_capitals(series.word), row.place, in_quotes(series.word) + " is no word in capitals");
    require(is_world_name(file), row.place, "file: " + in_quotes(file) + " is no file name");
    if (is_world_digits(reserved) && reserved.size() <= 4)
        series.reserved = static_cast<unsigned int>(std::stoi(reserved));
    else
        m_faults.add(row.place, "reserved: " + in_quotes(reserved) + " is no number of places");
    require(series.family_file.empty() || series.reserved == 0, row.place,
            "only a series without a family file reserves places");
    m_series.push_back(std::move(series));
}

void DESCRIPTION_READER::add_family(const WORLD_ROW& row) {
    if (!check_world_row(row, 1, {"grades", "record"}, m_faults))
        return;
    if (m_series.empty()) {
        m_faults.add(row.place, "a family before the first series");
        return;
    }
    WORLD_FAMILY_ROW family;
    family.place = row.place;
    family.name = row.values.front();
    const std::string start = m_series.back().word + "-";
    std::string_view rest = family.name;
    const bool started = rest.substr(0, start.size()) == start;
    rest.remove_prefix(started ? start.size() : rest.size());
    family.hard_processor = !rest.empty() && rest.back() == 'S';
    if (!rest.empty() && std::string_view("LRST").find(rest.back()) != std::string_view::npos)
        rest.remove_suffix(1);
    require(is_world_digits(rest), row.place,
            in_quotes(family.name) + " is not " + start + "GENERATION and at most one of the kinds L, R, S, T");
    family.own_record = !flag(row, "record", "own", "none");
    read_grades(row, family);
    m_series.back().families.push_back(std::move(family));
}

std::vector<WORLD_SUFFIX> DESCRIPTION_READER::grade_set(const WORLD_ROW& row, const std::string& name) {
    const auto found = m_scheme.grade_sets.find(name);
    if (found != m_scheme.grade_sets.end())
        return found->second;
    m_faults.add(row.place, "grades: no grade set " + in_quotes(name));
    return {};
}

void DESCRIPTION_READER::read_grades(const WORLD_ROW& row, WORLD_FAMILY_ROW& family) {
    const std::vector<std::string> sets = split_world_list(world_attribute(row, "grades", "-"), '/');
    if (sets.size() == 2) {
        family.first_grades = grade_set(row, sets[0]);
        family.other_grades = grade_set(row, sets[1]);
    }
    const bool named = !m_series.back().family_file.empty();
    require(sets.size() == (named ? 2U : 0U), row.place,
            named ? "grades: FIRST/OTHERS is expected" : "a series without names has no grades");
}

void DESCRIPTION_READER::read_packages(const WORLD_ROW& row, const std::string& text, WORLD_DIES& dies) {
    for (const std::string& group : split_world_list(text, ',')) {
        dies.groups.emplace_back();
        for (const std::string& code : split_world_list(group, '+')) {
            const std::optional<WORLD_PACKAGE> package = m_scheme.package_of(code);
            if (package)
                dies.groups.back().push_back(*package);
            else
                m_faults.add(row.place, in_quotes(code) + " is no package");
        }
    }
}

void DESCRIPTION_READER::check_densities(const WORLD_DIES& dies) {
    require(!dies.densities.empty(), dies.place, "no density");
    for (const std::string& density : dies.densities)
        require(density.size() == 2 && is_world_digits(density), dies.place,
                in_quotes(density) + " is no density of two digits");
}

// X stands for any variant in the names of part files, so no variant is called X.
void DESCRIPTION_READER::check_variants(const WORLD_DIES& dies) {
    const std::string& variants = dies.variants;
    const bool rising = std::adjacent_find(variants.begin(), variants.end(), std::greater_equal<>()) == variants.end();
    require(is_world_capitals(variants) && rising && variants.find('X') == std::string::npos, dies.place,
            in_quotes(variants) + " are no variants (rising letters without X)");
}

void DESCRIPTION_READER::check_consistency(const WORLD_DIES& dies) {
    const WORLD_SERIES& series = m_series.back();
    require(dies.line.size() == 2 && is_world_capitals(dies.line) && dies.line.substr(0, 1) == series.letter,
            dies.place, in_quotes(dies.line) + " is no line of the series " + series.letter);
    require((dies.files == WORLD_FILES::NONE) == series.family_file.empty(), dies.place,
            "part files go with a series that has a family file");
    const bool nameless = dies.files == WORLD_FILES::NONE || dies.status == WORLD_STATUS::ANNOUNCED;
    require(dies.groups.empty() == nameless, dies.place,
            "packages go with dies that have part files and are not only announced");
    require(!nameless || dies.numbered == WORLD_NUMBERED::NONE, dies.place, "ordering numbers without packages");
    require(dies.pcf.empty() || is_world_name(dies.pcf), dies.place, "pcf: " + in_quotes(dies.pcf) + " is no name");
}

void DESCRIPTION_READER::add_dies(const WORLD_ROW& row) {
    if (!check_world_row(row, 7, {"merged", "shared", "pcf"}, m_faults))
        return;
    if (m_series.empty() || m_series.back().families.empty()) {
        m_faults.add(row.place, "dies before the first family of their series");
        return;
    }
    WORLD_DIES dies;
    dies.place = row.place;
    dies.line = row.values[0];
    dies.densities = split_world_list(row.values[1], ',');
    dies.variants = row.values[2];
    dies.files = word(row, row.values[3], FILES_WORDS);
    read_packages(row, row.values[4], dies);
    dies.status = word(row, row.values[5], STATUS_WORDS);
    dies.numbered = word(row, row.values[6], NUMBERED_WORDS);
    dies.merged_by_device = flag(row, "merged", "package", "device");
    dies.shared = flag(row, "shared", "no", "yes");
    dies.pcf = world_attribute(row, "pcf", "");
    check_densities(dies);
    check_variants(dies);
    check_consistency(dies);
    m_series.back().families.back().dies.push_back(std::move(dies));
}

} // namespace

WORLD_DESCRIPTION read_world_description(const std::string& file, const WORLD_SCHEME& scheme, WORLD_FAULTS& faults) {
    DESCRIPTION_READER reader(scheme, faults);
    for (const WORLD_ROW& row : read_world_rows(file, {}, faults))
        reader.add(row);
    return reader.take();
}
