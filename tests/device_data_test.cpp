// The shipped device description held to the rules of data/README.md and docs/formats/devices_csv.md, together with the
// lists that go with it: names of the ENUM columns, meanings of the members, families and groups of the catalogue.
// Everything is read here by plain means; nothing of the library or its generators takes part.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using CELLS = std::vector<std::string>;

constexpr size_t RECORDS = 79;
constexpr size_t MEMBERS = 86;
constexpr size_t KEYS = 4;    // family, pcf, device, part
constexpr size_t DUMMIES = 5; // the last members of a record

std::vector<std::string> lines_of(const std::string& name) {
    std::ifstream input(std::string(TOVREN_SOURCE_DIR "/data/") + name, std::ios::binary);
    EXPECT_TRUE(input) << name;
    std::vector<std::string> lines;
    for (std::string line; std::getline(input, line);)
        lines.push_back(line);
    return lines;
}

CELLS split(const std::string& text, char separator) {
    CELLS cells(1);
    for (const char c : text) {
        if (c == separator)
            cells.emplace_back();
        else
            cells.back() += c;
    }
    return cells;
}

CELLS words_of(const std::string& line) {
    std::istringstream stream(line);
    CELLS words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

// Lines that are neither empty nor a comment behind '#'.
std::vector<std::string> plain_lines_of(const std::string& name) {
    auto lines = lines_of(name);
    std::erase_if(lines, [](const std::string& line) { return line.empty() || line[0] == '#'; });
    return lines;
}

struct DESCRIPTION {
    CELLS types;
    CELLS names;
    std::vector<CELLS> records;

    size_t position_of(const std::string& name) const {
        return static_cast<size_t>(std::find(names.begin(), names.end(), name) - names.begin());
    }

    CELLS column(size_t member) const {
        CELLS cells;
        for (const CELLS& record : records)
            cells.push_back(record.at(member));
        return cells;
    }

    CELLS column(const std::string& name) const { return column(position_of(name)); }
};

DESCRIPTION read_description() {
    DESCRIPTION description;
    for (const std::string& line : lines_of("devices.csv"))
        description.records.push_back(split(line, ','));
    if (description.records.size() < 2)
        return {};
    description.types = description.records[0];
    description.names = description.records[1];
    description.records.erase(description.records.begin(), description.records.begin() + 2);
    return description;
}

const DESCRIPTION& devices() {
    static const DESCRIPTION description = read_description();
    return description;
}

bool is_number_type(const std::string& type) {
    return type == "BYTE" || type == "WORD" || type == "DWORD";
}

bool is_text_type(const std::string& type) {
    return type == "STL_STRING" || type == "DEVID_STR";
}

// The number of decimal digits, or of hexadecimal digits behind 0x; nothing for any other text.
std::optional<unsigned long long> number_of(const std::string& text) {
    const bool is_hex = text.starts_with("0x");
    const std::string digits = is_hex ? text.substr(2) : text;
    const auto is_digit = [&](unsigned char c) { return is_hex ? std::isxdigit(c) != 0 : std::isdigit(c) != 0; };
    if (digits.empty() || digits.size() > 12 || !std::all_of(digits.begin(), digits.end(), is_digit))
        return std::nullopt;
    return std::stoull(digits, nullptr, is_hex ? 16 : 10);
}

// A cell as a reader takes it, so that two spellings of one value are equal.
std::string value_of(const std::string& type, const std::string& cell) {
    if (type == "bool" && cell.empty())
        return "FALSE";
    const auto number = is_number_type(type) ? number_of(cell) : std::nullopt;
    return number ? std::to_string(*number) : cell;
}

CELLS values_of(size_t member) {
    CELLS values = devices().column(member);
    for (std::string& value : values)
        value = value_of(devices().types.at(member), value);
    return values;
}

std::vector<size_t> members_of_type(const std::string& type) {
    std::vector<size_t> members;
    for (size_t i = 0; i < devices().types.size(); ++i)
        if (devices().types[i] == type)
            members.push_back(i);
    return members;
}

const std::string& cell_of(const CELLS& record, const std::string& name) {
    return record.at(devices().position_of(name));
}

// The text of the record's key.
std::string name_of(const CELLS& record) {
    return record[0] + record[1] + record[2] + record[3];
}

// Whether a cell says more than "no", "none" or nothing.
bool is_set(const CELLS& record, const std::string& name) {
    const std::set<std::string> no = {"", "FALSE", "0", "CFG_BLOCK_NONE"};
    return !no.contains(cell_of(record, name));
}

// Size in Mbit of each flash of the flash table.
std::map<std::string, unsigned long long> flash_sizes() {
    std::map<std::string, unsigned long long> megabits;
    size_t name = 0;
    size_t bits = 0;
    for (const std::string& line : lines_of("flash.csv")) {
        const CELLS cells = split(line, ',');
        const auto place = std::find(cells.begin(), cells.end(), "device_bit_size");
        if (place != cells.end()) {
            name = static_cast<size_t>(std::find(cells.begin(), cells.end(), "device_name") - cells.begin());
            bits = static_cast<size_t>(place - cells.begin());
        } else if (bits != 0 && bits < cells.size()) {
            megabits[cells.at(name)] = number_of(cells[bits]).value_or(0) / (1024 * 1024);
        }
    }
    return megabits;
}

// ---- the catalogue, from its description ----

struct CATALOGUE {
    std::set<std::string> families;
    CELLS own;    // families with a record of their own, in catalogue order
    CELLS groups; // PCF records, in catalogue order
};

void read_family(const CELLS& words, CATALOGUE& catalogue) {
    catalogue.families.insert(words.at(1));
    if (std::find(words.begin(), words.end(), "record=none") == words.end())
        catalogue.own.push_back(words.at(1));
}

void read_dies(const CELLS& words, CATALOGUE& catalogue) {
    for (const std::string& word : words) {
        const std::string group = word.starts_with("pcf=") ? word.substr(4) : "";
        if (!group.empty() &&
            std::find(catalogue.groups.begin(), catalogue.groups.end(), group) == catalogue.groups.end())
            catalogue.groups.push_back(group);
    }
}

CATALOGUE read_catalogue() {
    CATALOGUE catalogue;
    for (const std::string& line : plain_lines_of("catalogue/world.txt")) {
        const CELLS words = words_of(line);
        if (!words.empty() && words[0] == "family")
            read_family(words, catalogue);
        else if (!words.empty() && words[0] == "dies")
            read_dies(words, catalogue);
    }
    return catalogue;
}

const CATALOGUE& catalogue() {
    static const CATALOGUE read = read_catalogue();
    return read;
}

CELLS without_empty(CELLS cells) {
    std::erase(cells, "");
    return cells;
}

// ---- the names of the ENUM columns ----

CELLS names_beginning_with(const std::string& prefix) {
    CELLS names = plain_lines_of("device_enums.txt");
    std::erase_if(names, [&](const std::string& name) { return !name.starts_with(prefix); });
    return names;
}

const std::map<std::string, std::string> PREFIX_OF_ENUM_COLUMN = {
    {"ekp_alg_family", "DEV_FAMILY_"},
    {"cmp_fbgen_start_block", "CFG_BLOCK_"},
    {"cmp_fbgen_end_block", "CFG_BLOCK_"},
    {"fbgen_cvp_core_start_block", "CFG_BLOCK_"},
    {"fbgen_hps_core_start_block", "CFG_BLOCK_"},
    {"default_prog_mode", "PROG_MODE_"},
};

// ---- shape ----

TEST(DeviceData, HasSeventyNineRecordsOfEightySixCells) {
    ASSERT_EQ(MEMBERS, devices().types.size());
    ASSERT_EQ(MEMBERS, devices().names.size());
    EXPECT_EQ(RECORDS, devices().records.size());
    for (size_t position = 0; position < devices().records.size(); ++position)
        EXPECT_EQ(MEMBERS, devices().records[position].size()) << "position " << position;
}

TEST(DeviceData, HasAsManyColumnsOfEachTypeAsARecordHas) {
    const std::map<std::string, size_t> expected = {{"DEVID_ENUM", 3}, {"DEVID_STR", 1}, {"STL_STRING", 4},
                                                    {"bool", 37},      {"BYTE", 10},     {"WORD", 1},
                                                    {"DWORD", 24},     {"ENUM", 6}};
    std::map<std::string, size_t> counted;
    for (const std::string& type : devices().types)
        ++counted[type];
    EXPECT_EQ(expected, counted);
}

TEST(DeviceData, EndsEveryLineWithOneLineFeedAndHoldsNoBlank) {
    std::ifstream input(TOVREN_SOURCE_DIR "/data/devices.csv", std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(input), {});
    ASSERT_FALSE(text.empty());
    EXPECT_EQ('\n', text.back());
    EXPECT_EQ(std::string::npos, text.find_first_of(" \t\r\"'"));
    EXPECT_EQ(std::string::npos, text.find("\n\n"));
}

// ---- keys ----

TEST(DeviceData, HasTheGenericFamilyAtPositionOne) {
    ASSERT_LT(1U, devices().records.size());
    EXPECT_EQ("GENERIC", devices().records[1].at(0));
}

TEST(DeviceData, IdentifiesEveryRecordByExactlyOneKey) {
    for (size_t position = 0; position < devices().records.size(); ++position) {
        const CELLS& record = devices().records[position];
        EXPECT_EQ(KEYS - 1, static_cast<size_t>(std::count(record.begin(), record.begin() + KEYS, ""))) << position;
    }
}

TEST(DeviceData, HasARecordForEveryFamilyThatIsToHaveOneInCatalogueOrder) {
    CELLS families = without_empty(devices().column("family"));
    ASSERT_LT(1U, families.size());
    families.erase(families.begin() + 1); // GENERIC is no family of the catalogue's description
    EXPECT_EQ(68U, families.size());
    EXPECT_EQ(catalogue().own, families);
}

TEST(DeviceData, HasARecordForEveryGroupOfTheCatalogueInItsOrder) {
    EXPECT_EQ(8U, catalogue().groups.size());
    EXPECT_EQ(catalogue().groups, without_empty(devices().column("pcf")));
}

TEST(DeviceData, HasOneGenericDeviceAndOneGenericPart) {
    EXPECT_EQ(CELLS{"GENERIC"}, without_empty(devices().column("device")));
    EXPECT_EQ(CELLS{"GENERIC"}, without_empty(devices().column("part")));
}

// ---- cells ----

TEST(DeviceData, HoldsTrueFalseOrNothingInAFlagAndBothValuesInItsColumn) {
    for (const size_t member : members_of_type("bool")) {
        const CELLS column = devices().column(member);
        const std::set<std::string> spellings(column.begin(), column.end());
        for (const std::string& cell : spellings)
            EXPECT_TRUE(cell.empty() || cell == "TRUE" || cell == "FALSE") << devices().names[member] << ' ' << cell;
        EXPECT_EQ(1U, spellings.count("TRUE")) << devices().names[member];
        EXPECT_LT(0U, spellings.count("FALSE") + spellings.count("")) << devices().names[member];
    }
}

TEST(DeviceData, KeepsEveryNumberWithinItsWidth) {
    const std::map<std::string, unsigned long long> highest = {{"BYTE", 0xFF}, {"WORD", 0xFFFF}, {"DWORD", 0xFFFFFFFF}};
    for (const auto& [type, limit] : highest) {
        for (const size_t member : members_of_type(type)) {
            for (const std::string& cell : devices().column(member)) {
                const auto number = number_of(cell);
                ASSERT_TRUE(number) << devices().names[member] << " \"" << cell << '"';
                EXPECT_LE(*number, limit) << devices().names[member];
            }
        }
    }
}

TEST(DeviceData, KeepsTextsWithinALengthByte) {
    for (const char* type : {"STL_STRING", "DEVID_STR"}) {
        for (const size_t member : members_of_type(type))
            for (const std::string& cell : devices().column(member))
                EXPECT_LE(cell.size(), 255U) << devices().names[member];
    }
}

TEST(DeviceData, ProposesAFlashOfTheFlashTableThatIsLargeEnough) {
    const auto megabits = flash_sizes();
    for (const CELLS& record : devices().records) {
        const std::string flash = cell_of(record, "cfg_dev");
        if (flash.empty())
            continue;
        ASSERT_EQ(1U, megabits.count(flash)) << flash;
        EXPECT_GE(megabits.at(flash), number_of(cell_of(record, "as_minimum_flash_density"))) << name_of(record);
    }
}

// ---- members that hang together ----

TEST(DeviceData, SetsWhatBelongsToAFlashWhereTheDeviceStartsFromOne) {
    for (const CELLS& record : devices().records) {
        for (const char* member : {"asc_voltage", "flash_width_bits", "as_minimum_flash_density", "asc_dummy_cycle",
                                   "spi_dummy_clk_x1_128mb", "supported_max_cascaded_asc_count"})
            EXPECT_EQ(is_set(record, "support_asc"), is_set(record, member)) << name_of(record) << ' ' << member;
    }
}

TEST(DeviceData, SetsAFigureWhereItsFlagIsSet) {
    const std::map<std::string, std::string> flag_of = {
        {"as_second_offset_addr", "as_read_in_two_steps"},
        {"asx1_second_offset_extra_bytes", "as_read_in_two_steps"},
        {"asx4_second_offset_extra_bytes", "as_read_in_two_steps"},
        {"cmf_flash_block_size", "use_sdm"},
        {"n_tck_ticks_after_config_io", "need_config_io_instr"},
    };
    for (const CELLS& record : devices().records)
        for (const auto& [member, flag] : flag_of)
            EXPECT_EQ(is_set(record, flag), is_set(record, member)) << name_of(record) << ' ' << member;
}

TEST(DeviceData, LeavesAFlagEmptyWhereItsQuestionDoesNotArise) {
    const std::map<std::string, std::string> condition_of = {
        {"as_cb_hold_time_issue", "support_asc"},         {"need_brenlow_padding_mask", "fbgen_cvp_core_start_block"},
        {"support_ru_cvp", "fbgen_cvp_core_start_block"}, {"fi_program_twice", "support_fi"},
        {"support_ru_hps", "fbgen_hps_core_start_block"}, {"support_sdmmc", "fbgen_hps_core_start_block"},
        {"support_vab", "fbgen_hps_core_start_block"},    {"support_sdos", "fbgen_hps_core_start_block"},
    };
    for (const CELLS& record : devices().records) {
        for (const size_t flag : members_of_type("bool")) {
            const auto condition = condition_of.find(devices().names[flag]);
            const bool is_empty = condition != condition_of.end() && !is_set(record, condition->second);
            EXPECT_EQ(is_empty, record[flag].empty()) << name_of(record) << ' ' << devices().names[flag];
        }
    }
}

// ---- names of the ENUM columns ----

TEST(DeviceEnums, AreFourteenDifferentNames) {
    const CELLS names = plain_lines_of("device_enums.txt");
    EXPECT_EQ(14U, names.size());
    EXPECT_EQ(14U, std::set<std::string>(names.begin(), names.end()).size());
    EXPECT_EQ(5U, names_beginning_with("DEV_FAMILY_").size());
    EXPECT_EQ(5U, names_beginning_with("CFG_BLOCK_").size());
    EXPECT_EQ(4U, names_beginning_with("PROG_MODE_").size());
}

TEST(DeviceEnums, NameFamiliesOfTheCatalogue) {
    std::set<std::string> known = {"DEV_FAMILY_INVALID"};
    for (std::string name : catalogue().families) {
        std::replace(name.begin(), name.end(), '-', '_');
        known.insert("DEV_FAMILY_" + name);
    }
    for (const std::string& name : names_beginning_with("DEV_FAMILY_"))
        EXPECT_EQ(1U, known.count(name)) << name;
}

TEST(DeviceEnums, AreAllThatAnEnumColumnHoldsEachItsOwn) {
    ASSERT_EQ(PREFIX_OF_ENUM_COLUMN.size(), members_of_type("ENUM").size());
    for (const size_t member : members_of_type("ENUM")) {
        const CELLS allowed = names_beginning_with(PREFIX_OF_ENUM_COLUMN.at(devices().names[member]));
        for (const std::string& cell : devices().column(member))
            EXPECT_EQ(1, std::count(allowed.begin(), allowed.end(), cell)) << devices().names[member] << ' ' << cell;
    }
}

TEST(DeviceEnums, AllOccur) {
    std::set<std::string> used;
    for (const size_t member : members_of_type("ENUM")) {
        const CELLS column = devices().column(member);
        used.insert(column.begin(), column.end());
    }
    const CELLS names = plain_lines_of("device_enums.txt");
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()), used);
}

// ---- a mix-up must show ----

TEST(DeviceData, HasNoTwoEqualColumnsOfOneType) {
    std::map<std::pair<std::string, CELLS>, std::string> seen; // type and values: the column that has them
    for (size_t member = 0; member < devices().types.size(); ++member) {
        const std::string type = is_text_type(devices().types[member]) ? "text" : devices().types[member];
        const auto [other, is_new] = seen.try_emplace({type, values_of(member)}, devices().names[member]);
        EXPECT_TRUE(is_new) << devices().names[member] << " equals " << other->second;
    }
}

TEST(DeviceData, HasNoTwoRecordsEqualBetweenKeysAndDummies) {
    std::map<CELLS, size_t> seen;
    for (size_t position = 0; position < devices().records.size(); ++position) {
        CELLS values;
        for (size_t member = KEYS; member < MEMBERS - DUMMIES; ++member)
            values.push_back(value_of(devices().types.at(member), devices().records[position].at(member)));
        const auto [other, is_new] = seen.try_emplace(values, position);
        EXPECT_TRUE(is_new) << "position " << position << " equals " << other->second;
    }
}

// ---- meanings of the members ----

TEST(DeviceMembers, AreTheColumnsInRecordOrder) {
    CELLS names;
    for (const std::string& line : lines_of("device_members.csv"))
        names.push_back(split(line, ',').at(0));
    EXPECT_EQ(devices().names, names);
}

TEST(DeviceMembers, HaveEachAMeaningOfItsOwnThatFitsALine) {
    std::map<std::string, std::string> seen; // meaning: member
    for (const std::string& line : lines_of("device_members.csv")) {
        const CELLS cells = split(line, ',');
        ASSERT_EQ(2U, cells.size()) << line;
        ASSERT_TRUE(cells[1].starts_with(' ')) << line;
        const std::string meaning = cells[1].substr(1);
        EXPECT_FALSE(meaning.empty()) << line;
        EXPECT_LE(meaning.size(), 90U) << line;
        EXPECT_TRUE(seen.try_emplace(meaning, cells[0]).second) << line;
    }
}

} // namespace
