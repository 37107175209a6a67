// The shipped device database against a model of its own: a reader of the description, a reader of the part list, and
// the rules of who is served by which record, spelled out plainly and asked for every value of the catalogue.
#include "device_fixtures.h"
#include "tovren_dev_info_manager.h"
#include "tovren_standalone_host.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

namespace {

using CELLS = std::vector<std::string>;

std::string upper(std::string text) {
    for (char& c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

std::vector<std::string> lines_of(const std::string& path) {
    std::istringstream input(read_text(path));
    std::vector<std::string> lines;
    for (std::string line; std::getline(input, line);)
        lines.push_back(line);
    return lines;
}

// The shipped files have single separators and no blanks around commas.
CELLS split(const std::string& line) {
    CELLS cells(1);
    for (const char c : line)
        if (c == ',' || c == ' ')
            cells.emplace_back();
        else
            cells.back() += c;
    return cells;
}

class MODEL {
public:
    MODEL() {
        const std::vector<std::string> csv = lines_of(SHIPPED_DEVICES_CSV);
        for (size_t row = 2; row < csv.size(); ++row)
            m_records.push_back(split(csv[row]));
        for (const std::string& line : lines_of(SHIPPED_PRODUCT_ROOT "/h/pgm_parts.txt"))
            if (!line.starts_with("//"))
                m_part_list.push_back(split(line));
        for (const std::string& line : lines_of(SHIPPED_CATALOGUE))
            if (line.starts_with("family "))
                m_families.push_back(split(line).at(1)); // numbered from 1 in this order
        for (unsigned int family = 0; family < 74; ++family)
            family_table.push_back(entry_of_family(family));
        for (unsigned int device = 0; device < 1048; ++device)
            device_table.push_back(entry_of_device(DEV_DEVICE_ENUM(device)));
        for (unsigned int part = 0; part < DEV_PART_MAX; ++part)
            part_table.push_back(entry_of_part(DEV_PART_ENUM(part)));
    }

    const std::vector<CELLS>& records() const { return m_records; }
    const std::vector<CELLS>& part_list() const { return m_part_list; }

    std::string family_name(unsigned int family) const {
        return family == 0 ? "" : family == 73 ? "GENERIC" : upper(m_families.at(family - 1));
    }

    // The number that a cell of the CSV stands for.
    unsigned int number_of(const DEVICE_MEMBER& member, const std::string& cell) const {
        static const std::map<std::string, unsigned int> NAMES = {{"CFG_BLOCK_NONE", 0},
                                                                  {"CFG_BLOCK_IOCSR", 1},
                                                                  {"CFG_BLOCK_CORE", 2},
                                                                  {"CFG_BLOCK_HPS", 3},
                                                                  {"PROG_MODE_NONE", 0},
                                                                  {"PROG_MODE_JTAG", 1},
                                                                  {"PROG_MODE_PASSIVE_SERIAL", 2},
                                                                  {"CFG_BLOCK_TRAILER", 4},
                                                                  {"TRUE", 1},
                                                                  {"FALSE", 0},
                                                                  {"PROG_MODE_ACTIVE_SERIAL", 3},
                                                                  {"DEV_FAMILY_INVALID", 0},
                                                                  {"", 0}};
        if (NAMES.contains(cell))
            return NAMES.at(cell);
        if (cell == "GENERIC" && std::string(member.name) != "family")
            return std::string(member.name) == "device" ? 1047 : unsigned{DEV_PART_GENERIC};
        for (unsigned int family = 1; family < 74; ++family)
            if (cell == family_name(family) || cell == enumerator_name(family))
                return family;
        return static_cast<unsigned int>(std::stoul(cell, nullptr, 0));
    }

    std::vector<unsigned int> family_table;
    std::vector<unsigned int> device_table;
    std::vector<unsigned int> part_table;

private:
    std::string enumerator_name(unsigned int family) const {
        std::string name = "DEV_FAMILY_" + family_name(family);
        std::replace(name.begin(), name.end(), '-', '_');
        return name;
    }

    unsigned int first_record_with(size_t column, const std::string& cell) const {
        for (unsigned int position = 0; position < m_records.size(); ++position)
            if (upper(m_records[position].at(column)) == upper(cell))
                return position;
        return INVALID_DWORD;
    }

    unsigned int entry_of_family(unsigned int family) const {
        const unsigned int own = first_record_with(0, family_name(family));
        return own != INVALID_DWORD || family == 0 ? own : 1;
    }

    std::string pcf_in_part_list(const std::string& device) const {
        for (const CELLS& line : m_part_list)
            if (upper(line.at(1)) == upper(device))
                return line.at(6);
        return "";
    }

    unsigned int entry_of_device(DEV_DEVICE_ENUM device) const {
        if (device == 0 || device == 1047)
            return first_record_with(2, device == 0 ? "" : "GENERIC");
        const std::string pcf = pcf_in_part_list(dstr_get_user_string(device));
        if (!pcf.empty() && first_record_with(1, pcf) != INVALID_DWORD)
            return first_record_with(1, pcf);
        return family_table.at(DEV_PART_MANAGER().get_family_of(device));
    }

    unsigned int entry_of_part(DEV_PART_ENUM part) const {
        if (part == DEV_PART_INVALID || part == DEV_PART_GENERIC)
            return first_record_with(3, part == DEV_PART_INVALID ? "" : "GENERIC");
        return device_table.at(DEV_PART_MANAGER().get_device_of(part));
    }

    std::vector<CELLS> m_records;
    std::vector<CELLS> m_part_list;
    std::vector<std::string> m_families;
};

const MODEL& model() {
    static const MODEL the_model;
    return the_model;
}

class ShippedDevices : public HOST_TEST {
protected:
    ShippedDevices() { TOVREN_STANDALONE_HOST::set_device_db_root(SHIPPED_DATABASE_ROOT); }

    // What the shipped record at `position` holds, by the CSV.
    static std::string described(unsigned int position) {
        std::string text;
        for (size_t column = 0; column < 86; ++column) {
            const DEVICE_MEMBER& member = device_members()[column];
            const std::string& cell = model().records().at(position).at(column);
            const std::string type = member.type;
            const bool is_text = type == "DEVID_STR" || type == "STL_STRING";
            text += std::string(member.name) + "=" +
                    (is_text ? cell : std::to_string(model().number_of(member, cell))) + "\n";
        }
        return text;
    }

    // The five bytes of a table's tag and count.
    static std::string head_at(const BYTES& payload, size_t start) {
        const auto begin = payload.begin() + static_cast<std::ptrdiff_t>(start);
        return hex_text({begin, begin + 5});
    }

    // The entries of a table that stands in the payload with so many numbers behind its tag and count.
    static std::vector<unsigned int> entries_at(const BYTES& payload, size_t start, size_t count) {
        std::vector<unsigned int> entries;
        for (size_t at = start; at < start + 4 * count; at += 4)
            entries.push_back(payload.at(at) | static_cast<unsigned int>(payload.at(at + 1)) << 8 |
                              static_cast<unsigned int>(payload.at(at + 2)) << 16 |
                              static_cast<unsigned int>(payload.at(at + 3)) << 24);
        return entries;
    }
};

TEST_F(ShippedDevices, HaveTheScaleOfTheCatalogue) {
    EXPECT_EQ(79U, model().records().size());
    EXPECT_GE(DEV_PART_MAX, 9274U);
    EXPECT_EQ(DEV_PART_MAX - 2U, model().part_list().size());
    EXPECT_EQ("GENERIC", model().records().at(1).at(0));
}

TEST_F(ShippedDevices, AreInThePartListUnderTheirOwnNames) {
    const DEV_PART_MANAGER catalogue;
    for (unsigned int part = 1; part < DEV_PART_GENERIC; ++part) {
        const CELLS& line = model().part_list().at(part - 1);
        EXPECT_EQ(dstr_get_user_string(DEV_PART_ENUM(part)), line.at(0));
        EXPECT_EQ(dstr_get_user_string(catalogue.get_device_of(DEV_PART_ENUM(part))), line.at(1));
    }
}

TEST_F(ShippedDevices, HoldTheDescription) {
    const TOVREN_DEV_INFO_MANAGER manager(false, 0);
    ASSERT_EQ(79U, manager.get_record_count());
    for (unsigned int position = 0; position < 79; ++position)
        EXPECT_EQ(described(position), DEVICE_ROW::described(*manager.get_record(position))) << position;
}

TEST_F(ShippedDevices, HaveTheTablesOfTheModel) {
    const TOVREN_DEV_INFO_MANAGER manager(false, 0);
    for (unsigned int family = 0; family < 74; ++family)
        EXPECT_EQ(model().family_table[family], manager.get_position_of(DEV_FAMILY_ENUM(family))) << family;
    for (unsigned int device = 0; device < 1048; ++device)
        EXPECT_EQ(model().device_table[device], manager.get_position_of(DEV_DEVICE_ENUM(device))) << device;
    for (unsigned int part = 0; part < DEV_PART_MAX; ++part)
        EXPECT_EQ(model().part_table[part], manager.get_position_of(DEV_PART_ENUM(part))) << part;
}

TEST_F(ShippedDevices, HaveTheTablesOfTheModelInTheirFile) {
    const BYTES file = read_file(SHIPPED_DATABASE_ROOT "/programmer/pgm_dev_info.pcf");
    const BYTES payload = inflated({file.begin() + 44, file.end() - 2});
    const size_t tables = payload.size() - (4503 + 4 * DEV_PART_MAX);
    EXPECT_EQ("08 4A 00 00 00", head_at(payload, tables));
    EXPECT_EQ(model().family_table, entries_at(payload, tables + 5, 74));
    const size_t devices = tables + 5 + 74 * 4;
    EXPECT_EQ("0A 18 04 00 00", head_at(payload, devices));
    EXPECT_EQ(model().device_table, entries_at(payload, devices + 5, 1048));
    const size_t parts = devices + 5 + 1048 * 4;
    EXPECT_EQ(11, payload.at(parts));
    EXPECT_EQ(model().part_table, entries_at(payload, parts + 5, DEV_PART_MAX));
}

TEST_F(ShippedDevices, AreAnsweredWithTheRecordOfTheModel) {
    TOVREN_DEV_INFO_MANAGER manager(false, 0);
    std::vector<std::string> records;
    for (unsigned int position = 0; position < 79; ++position)
        records.push_back(described(position));
    const auto expect_record = [&](TOVREN_DEVICE_INFO* answer, unsigned int position) {
        const std::unique_ptr<TOVREN_DEVICE_INFO> record(answer);
        ASSERT_NE(nullptr, record);
        EXPECT_EQ(records.at(position), DEVICE_ROW::described(*record));
    };
    for (unsigned int family = 0; family < 74; ++family)
        expect_record(manager.get_db_by_family(DEV_FAMILY_ENUM(family)), model().family_table[family]);
    for (unsigned int device = 0; device < 1048; ++device)
        expect_record(manager.get_db_by_device(DEV_DEVICE_ENUM(device)), model().device_table[device]);
    for (unsigned int part = 0; part < DEV_PART_MAX; ++part)
        expect_record(manager.get_db_by_part(DEV_PART_ENUM(part)), model().part_table[part]);
}

TEST_F(ShippedDevices, AreServedInEveryWayThereIs) {
    // Figures of data/README.md: families without a record, devices through the part list, devices of those families.
    const auto by_pcf = [](unsigned int position) { return position >= 69 && position <= 76; };
    const auto& devices = model().device_table;
    EXPECT_EQ(5, std::count(model().family_table.begin(), model().family_table.end(), 1U)); // and GENERIC itself
    EXPECT_EQ(128, std::count_if(devices.begin() + 1, devices.end() - 1, by_pcf));
    EXPECT_EQ(22, std::count(devices.begin() + 1, devices.end() - 1, 1U));
    EXPECT_EQ(69U, model().family_table[0]);
    EXPECT_EQ(0U, devices[0]);
    EXPECT_EQ(77U, devices[1047]);
    EXPECT_EQ(78U, model().part_table[DEV_PART_GENERIC]);
}

} // namespace
