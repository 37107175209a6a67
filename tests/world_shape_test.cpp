// The figures and relations of the compiled-in world of parts: the naming maps, the ordering list and the catalogue
// tables, each for itself and against each other. What is expected is written here; nothing comes from the generator.
#include "pgmddb_grammar_data.h"
#include "pgmddb_opn_data.h"
#include "tovren_catalogue_tables.h"
#include "world_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

namespace {

const WORLD_MODEL& world() {
    static const WORLD_MODEL model;
    return model;
}

std::string name_of(const TOVREN_CATALOGUE_NAME& name) {
    return std::string(tovren_catalogue_text(name));
}

// Every part between INVALID and GENERIC.
std::span<const TOVREN_CATALOGUE_PART> named_parts() {
    return tovren_catalogue_parts().subspan(1, tovren_catalogue_parts().size() - 2);
}

std::string family_name_of(const TOVREN_CATALOGUE_PART& part) {
    return name_of(TOVREN_CATALOGUE_FAMILIES[TOVREN_CATALOGUE_DEVICES[part.device].family].name);
}

std::set<std::string> keys_of(std::size_t map) {
    std::set<std::string> keys;
    for (const auto& [key, contents] : world().maps.at(map))
        keys.insert(key);
    return keys;
}

std::set<std::string> contents_of(std::size_t map) {
    std::set<std::string> all;
    for (const auto& [key, contents] : world().maps.at(map))
        all.insert(contents.begin(), contents.end());
    return all;
}

std::size_t content_count(std::size_t map) {
    std::size_t count = 0;
    for (const auto& [key, contents] : world().maps.at(map))
        count += contents.size();
    return count;
}

bool includes(const std::set<std::string>& all, const std::set<std::string>& some) {
    return std::includes(all.begin(), all.end(), some.begin(), some.end());
}

bool ends_in_its_crc(const WORLD_BYTES& image) {
    const std::size_t body = image.size() - 4;
    const std::uint32_t crc = world_crc(image.data(), body);
    return image[body] == (crc & 0xFF) && image[body + 1] == ((crc >> 8) & 0xFF) &&
           image[body + 2] == ((crc >> 16) & 0xFF) && image[body + 3] == (crc >> 24);
}

} // namespace

TEST(WorldModel, ComputesThePublishedCheckValueOfItsCrc) {
    const char* digits = "123456789"; // the catalogued check input of CRC-32/BZIP2
    EXPECT_EQ(world_crc(reinterpret_cast<const unsigned char*>(digits), 9), 0xFC891918U);
}

TEST(NamingImage, IsMagicMapsAndCrc) {
    const WORLD_BYTES image =
        inflate_world_image(PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH, PGMDDB_GRAMMAR_LENGTH);
    ASSERT_GT(image.size(), 14U);
    EXPECT_EQ(std::memcmp(image.data(), "TOVREN_DDB", 10), 0);
    EXPECT_TRUE(ends_in_its_crc(image));
    EXPECT_EQ(world().maps.size(), 8U);
}

struct MAP_SHAPE {
    std::size_t map, keys, contents, fewest, most;
};

class NamingMapShape : public testing::TestWithParam<MAP_SHAPE> {};

TEST_P(NamingMapShape, HasItsKeysAndContents) {
    const MAP_SHAPE& shape = GetParam();
    std::size_t fewest = SIZE_MAX;
    std::size_t most = 0;
    for (const auto& [key, contents] : world().maps.at(shape.map)) {
        fewest = std::min(fewest, contents.size());
        most = std::max(most, contents.size());
    }
    EXPECT_EQ(keys_of(shape.map).size(), shape.keys);
    EXPECT_EQ(content_count(shape.map), shape.contents);
    EXPECT_EQ(fewest, shape.fewest);
    EXPECT_EQ(most, shape.most);
}

INSTANTIATE_TEST_SUITE_P(World, NamingMapShape,
                         testing::Values(MAP_SHAPE{0, 3483, 16338, 1, 22}, MAP_SHAPE{1, 2356, 3483, 1, 7},
                                         MAP_SHAPE{2, 279, 2356, 1, 315}, MAP_SHAPE{3, 9, 2356, 18, 680},
                                         MAP_SHAPE{4, 308, 957, 1, 55}, MAP_SHAPE{5, 9, 957, 3, 391},
                                         MAP_SHAPE{6, 8, 46, 1, 13}, MAP_SHAPE{7, 43, 308, 1, 66}));

TEST(NamingMaps, ContentsOfTheCoarserAreTheKeysOfTheFiner) {
    EXPECT_EQ(contents_of(1), keys_of(0)) << "programmer names hold the package-level names";
    EXPECT_EQ(contents_of(2), keys_of(1)) << "programmer part files hold the programmer names";
    EXPECT_EQ(contents_of(3), keys_of(1)) << "programmer family files hold the programmer names";
    EXPECT_EQ(contents_of(5), contents_of(4)) << "device family files hold the devices of the part files";
    EXPECT_EQ(contents_of(7), keys_of(4)) << "families hold the part files";
}

TEST(NamingMaps, KeysOfRelatedMapsAreContainedInEachOther) {
    EXPECT_TRUE(includes(keys_of(4), keys_of(2)));
    EXPECT_EQ(keys_of(5), keys_of(3));
    EXPECT_TRUE(includes(keys_of(5), keys_of(6)));
    EXPECT_TRUE(includes(keys_of(4), contents_of(6)));
}

TEST(NamingMaps, NoContentStandsUnderTwoKeys) {
    for (std::size_t map = 0; map < 8; ++map)
        EXPECT_EQ(contents_of(map).size(), content_count(map)) << "map " << map;
}

TEST(NamingMaps, UseExactlyTheirCharacters) {
    std::set<char> used;
    for (std::size_t map = 0; map < 8; ++map) {
        for (const std::set<std::string>& names : {keys_of(map), contents_of(map)})
            for (const std::string& name : names)
                used.insert(name.begin(), name.end());
    }
    const std::string allowed = "-0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_";
    for (const char c : used)
        EXPECT_NE(allowed.find(c), std::string::npos) << "'" << c << "'";
    EXPECT_TRUE(used.contains('-') && used.contains('_'));
}

TEST(NamingMaps, AKeyOftenStandsAmongItsOwnContents) {
    std::map<std::size_t, std::size_t> own;
    for (std::size_t map = 0; map < 8; ++map)
        for (const auto& [key, contents] : world().maps[map])
            own[map] += std::count(contents.begin(), contents.end(), key) > 0 ? 1U : 0U;
    EXPECT_GE(own[0] * 2, keys_of(0).size()) << "package-level names without anything appended";
    EXPECT_GE(own[1] * 2, keys_of(1).size()) << "programmer names that are package-level names";
    EXPECT_GE(own[2], 1U) << "part files named for the programmer name of their one device";
    EXPECT_GE(own[4], 1U) << "part files named for their one device";
}

TEST(NamingMaps, EveryNameParsesByTheScheme) {
    const std::string device = "[A-Z]{2}[0-9]{2}[A-WYZ]";
    const std::string package = device + "[EMUF][1-9][0-9]{1,3}";
    const std::regex devices(device);
    const std::regex packages(package);
    const std::regex ordering_names(package + "([CIAM][678](N|ES)?)?");
    const std::regex programmer_names("(" + device + ")|(" + package + ")");
    const std::regex part_files("(" + device + ")|([A-Z]{2}[0-9]{2}X)|([A-Z]{2}XXX)");
    const std::regex family_files("[A-Z]+_FAM");
    const std::regex families("[A-Z]+-[0-9]+[LRST]?");
    const auto all_match = [](const std::set<std::string>& names, const std::regex& form) {
        return std::all_of(names.begin(), names.end(),
                           [&](const std::string& name) { return std::regex_match(name, form); });
    };
    EXPECT_TRUE(all_match(contents_of(0), ordering_names));
    EXPECT_TRUE(all_match(keys_of(0), packages));
    EXPECT_TRUE(all_match(keys_of(1), programmer_names));
    EXPECT_TRUE(all_match(keys_of(4), part_files));
    EXPECT_TRUE(all_match(contents_of(4), devices));
    EXPECT_TRUE(all_match(keys_of(5), family_files));
    EXPECT_TRUE(all_match(keys_of(7), families));
}

TEST(NamingMaps, HoldTheNamesOfTheManual) {
    EXPECT_EQ(world().key_of(0, "QX20AF256C6N"), "QX20AF256");
    EXPECT_EQ(world().key_of(0, "QX20AF256"), "QX20AF256");
    EXPECT_EQ(world().pgm_name("QX20AF256I7"), "QX20AF256");
    EXPECT_EQ(world().key_of(2, "QX20AF256"), "QX20X");
    EXPECT_EQ(world().key_of(3, "QX20AF256"), "QUARN_FAM");
    EXPECT_EQ(world().family_of_file("QX20X"), "QUARN-2");
}

TEST(OrderingImage, IsMagicListAndCrc) {
    const WORLD_BYTES image = inflate_world_image(PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH, PGMDDB_OPN_LENGTH);
    ASSERT_GT(image.size(), 18U);
    EXPECT_EQ(std::memcmp(image.data(), "TOVREN_DDB", 10), 0);
    EXPECT_TRUE(ends_in_its_crc(image));
}

TEST(OrderingList, HasItsPlacesAndNumbersEachPartOnce) {
    const std::vector<unsigned int>& list = world().ordering;
    std::set<unsigned int> parts(list.begin(), list.end());
    EXPECT_EQ(list.size(), 18830U);
    EXPECT_EQ(std::count(list.begin(), list.end(), 0U), 15558);
    EXPECT_EQ(*parts.begin(), 0U);
    EXPECT_EQ(*parts.rbegin(), 9272U);
    EXPECT_EQ(parts.size(), 1U + 18830U - 15558U);
}

TEST(OrderingList, RisesInRunsOfNeighbouringPlaces) {
    const std::vector<unsigned int>& list = world().ordering;
    std::size_t pairs = 0; // a non-zero value and the next non-zero value
    std::size_t steps = 0; // of these, in neighbouring places and rising by one
    std::size_t last = list.size();
    for (std::size_t place = 0; place < list.size(); ++place) {
        if (list[place] == 0)
            continue;
        pairs += last < list.size() ? 1 : 0;
        steps += last + 1 == place && list[last] + 1 == list[place] ? 1 : 0;
        last = place;
    }
    const std::size_t runs = pairs - steps + 1;
    EXPECT_GE(steps * 10, pairs * 8);
    EXPECT_GE(pairs + 1, runs * 8) << "the mean run is shorter than 8";
}

TEST(OrderingList, NumbersExactlyThePartsThatHaveAnOrderingNumber) {
    std::set<unsigned int> expected = {0};
    for (unsigned int number = 1; number <= named_parts().size(); ++number)
        if (TOVREN_CATALOGUE_PARTS[number].has_ordering_number)
            expected.insert(number);
    EXPECT_EQ(std::set<unsigned int>(world().ordering.begin(), world().ordering.end()), expected);
}

TEST(Catalogue, HasItsNumbersBetweenInvalidAndGeneric) {
    EXPECT_EQ(TOVREN_CATALOGUE_FAMILY_COUNT, 74U);
    EXPECT_EQ(TOVREN_CATALOGUE_DEVICE_COUNT, 1048U);
    EXPECT_EQ(TOVREN_CATALOGUE_PART_COUNT, 9274U);
    EXPECT_EQ(name_of(TOVREN_CATALOGUE_FAMILIES[0].name), "");
    EXPECT_EQ(name_of(TOVREN_CATALOGUE_FAMILIES[73].name), "GENERIC");
    EXPECT_EQ(name_of(TOVREN_CATALOGUE_DEVICES[0].name), "");
    EXPECT_EQ(name_of(TOVREN_CATALOGUE_DEVICES[1047].name), "GENERIC");
    EXPECT_EQ(TOVREN_CATALOGUE_DEVICES[1047].family, 73);
    EXPECT_EQ(name_of(TOVREN_CATALOGUE_PARTS[0].name), "");
    EXPECT_EQ(name_of(TOVREN_CATALOGUE_PARTS[9273].name), "GENERIC");
    EXPECT_EQ(TOVREN_CATALOGUE_PARTS[9273].device, 1047);
}

TEST(Catalogue, NamedRowsReferToNamedRows) {
    for (unsigned int device = 1; device < 1047; ++device)
        EXPECT_TRUE(TOVREN_CATALOGUE_DEVICES[device].family >= 1 && TOVREN_CATALOGUE_DEVICES[device].family <= 72);
    for (const TOVREN_CATALOGUE_PART& part : named_parts())
        EXPECT_TRUE(part.device >= 1 && part.device <= 1046);
}

TEST(Catalogue, RowsSayWhatTheNameSays) {
    for (const TOVREN_CATALOGUE_PART& part : named_parts()) {
        const std::string device = name_of(TOVREN_CATALOGUE_DEVICES[part.device].name);
        const std::string type = name_of(TOVREN_CATALOGUE_PACKAGES[part.package]);
        std::string name = device + type.substr(0, 1) + std::to_string(part.pin_count);
        if (part.temperature_grade != '-')
            name.append({part.temperature_grade, part.speed_grade});
        EXPECT_EQ(name_of(part.name), name);
        EXPECT_EQ(part.temperature_grade == '-', part.speed_grade == '-');
        EXPECT_EQ(part.has_hard_processor, family_name_of(part).back() == 'S');
    }
}

TEST(Catalogue, EveryFlagHoldsBothValues) {
    const auto parts = named_parts();
    const auto both = [&](bool TOVREN_CATALOGUE_PART::*flag) {
        const auto set = std::count_if(parts.begin(), parts.end(), [&](const auto& part) { return part.*flag; });
        return set > 0 && set < static_cast<std::ptrdiff_t>(parts.size());
    };
    EXPECT_TRUE(both(&TOVREN_CATALOGUE_PART::in_production));
    EXPECT_TRUE(both(&TOVREN_CATALOGUE_PART::has_ordering_number));
    EXPECT_TRUE(both(&TOVREN_CATALOGUE_PART::has_hard_processor));
}

namespace {

// Each number from 1 to `count` - 1 once, by strictly rising names.
template <typename ROW>
void expect_index(const ROW* rows, const std::uint16_t* index, std::size_t count) {
    for (std::size_t position = 0; position + 1 < count; ++position) {
        ASSERT_TRUE(index[position] >= 1 && index[position] < count);
        if (position > 0) {
            EXPECT_LT(name_of(rows[index[position - 1]].name), name_of(rows[index[position]].name));
        }
    }
}

} // namespace

TEST(Catalogue, IndexesRiseByName) {
    expect_index(TOVREN_CATALOGUE_FAMILIES, TOVREN_CATALOGUE_FAMILIES_BY_NAME, TOVREN_CATALOGUE_FAMILY_COUNT);
    expect_index(TOVREN_CATALOGUE_DEVICES, TOVREN_CATALOGUE_DEVICES_BY_NAME, TOVREN_CATALOGUE_DEVICE_COUNT);
    expect_index(TOVREN_CATALOGUE_PARTS, TOVREN_CATALOGUE_PARTS_BY_NAME, TOVREN_CATALOGUE_PART_COUNT);
}

TEST(Catalogue, NamesAreUpperCaseAndEndInTheirPoolWithAZero) {
    for (const TOVREN_CATALOGUE_PART& part : tovren_catalogue_parts()) {
        const std::string_view name = tovren_catalogue_text(part.name);
        EXPECT_EQ(std::strlen(name.data()), name.size());
        EXPECT_TRUE(std::none_of(name.begin(), name.end(), [](char c) { return c >= 'a' && c <= 'z'; }));
    }
}

TEST(Catalogue, FirstFiveCharactersTellDevicesApart) {
    std::set<std::string> starts;
    for (unsigned int device = 1; device < 1047; ++device)
        starts.insert(name_of(TOVREN_CATALOGUE_DEVICES[device].name).substr(0, 5));
    EXPECT_EQ(starts.size(), 1046U);
}

TEST(Catalogue, TheNamingMapsKnowMostDevicesAndEveryFamilyIsWhollyKnownOrUnknown) {
    const std::set<std::string> known = contents_of(4);
    const std::set<std::string> families = keys_of(7);
    std::size_t unknown = 0;
    std::set<std::string> unknown_families;
    for (unsigned int device = 1; device < 1047; ++device) {
        const std::string family = name_of(TOVREN_CATALOGUE_FAMILIES[TOVREN_CATALOGUE_DEVICES[device].family].name);
        const bool is_known = known.contains(name_of(TOVREN_CATALOGUE_DEVICES[device].name));
        EXPECT_EQ(is_known, families.contains(family)) << family;
        unknown += is_known ? 0 : 1;
        if (!is_known)
            unknown_families.insert(family);
    }
    EXPECT_EQ(unknown, 89U);
    EXPECT_EQ(unknown_families.size(), 29U);
}

TEST(OneWorld, EveryPartNameIsAnOrderingNameOrAPackageLevelName) {
    for (const TOVREN_CATALOGUE_PART& part : named_parts()) {
        const std::string name = name_of(part.name);
        EXPECT_TRUE(!world().key_of(0, name).empty() || !world().key_of(1, name).empty()) << name;
    }
}

TEST(OneWorld, NinetyFiveOfAHundredPartsLeadToTheirFilesAndTheirFamily) {
    std::size_t led = 0;
    for (const TOVREN_CATALOGUE_PART& part : named_parts()) {
        const std::string pgm = world().pgm_name(name_of(part.name));
        const std::string part_file = world().key_of(2, pgm);
        const std::string family = world().family_of_file(part_file);
        led += !part_file.empty() && !world().key_of(3, pgm).empty() && !family.empty() ? 1 : 0;
        EXPECT_EQ(family, family_name_of(part)) << name_of(part.name);
    }
    EXPECT_GE(led * 100, named_parts().size() * 95);
}

TEST(OneWorld, PartsAndDevicesAgreeOnTheirPartFileAndFamilyFile) {
    for (const TOVREN_CATALOGUE_PART& part : named_parts()) {
        const std::string device = name_of(TOVREN_CATALOGUE_DEVICES[part.device].name);
        const std::string pgm = world().pgm_name(name_of(part.name));
        EXPECT_EQ(world().key_of(2, pgm), world().key_of(4, device));
        EXPECT_EQ(world().key_of(3, pgm), world().key_of(5, device));
    }
}

TEST(OneWorld, TheFullNameOfAPackageLevelNameIsAPartOfThatPackage) {
    std::set<std::string> with_parts;
    for (const TOVREN_CATALOGUE_PART& part : named_parts())
        with_parts.insert(world().package_name(name_of(part.name)));
    EXPECT_EQ(with_parts.size(), 3483U);
    for (const std::string& package : with_parts)
        EXPECT_EQ(world().package_name(world().full_name(package)), package);
}

TEST(OneWorld, MostProgrammerPartFilesLeadBackToAPart) {
    std::size_t answered = 0;
    for (const std::string& part_file : keys_of(2)) {
        const std::string part = world().part_of_pcf(part_file);
        answered += part.empty() ? 0 : 1;
        if (!part.empty()) {
            EXPECT_EQ(world().key_of(2, part), part_file);
        }
    }
    EXPECT_GE(answered, 270U);
    EXPECT_LT(answered, 279U) << "a part file without an answer belongs to the world too";
}

namespace {

std::vector<std::vector<std::string>> part_list_rows() {
    std::vector<std::vector<std::string>> rows;
    std::ifstream stream(TOVREN_WORLD_PART_LIST);
    for (std::string line; std::getline(stream, line);) {
        if (line.substr(0, 2) == "//")
            continue;
        std::replace(line.begin(), line.end(), ',', ' ');
        std::istringstream cells(line);
        rows.emplace_back(std::istream_iterator<std::string>(cells), std::istream_iterator<std::string>());
    }
    return rows;
}

} // namespace

TEST(PartList, HasOneLineOfSevenCellsForEachPart) {
    const auto rows = part_list_rows();
    ASSERT_EQ(rows.size(), named_parts().size());
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const TOVREN_CATALOGUE_PART& part = named_parts()[index];
        ASSERT_EQ(rows[index].size(), 7U);
        EXPECT_EQ(rows[index][0], name_of(part.name));
        EXPECT_EQ(rows[index][1], name_of(TOVREN_CATALOGUE_DEVICES[part.device].name));
        EXPECT_EQ(rows[index][2], name_of(TOVREN_CATALOGUE_PACKAGES[part.package]));
        EXPECT_EQ(rows[index][3], std::to_string(part.pin_count));
        EXPECT_EQ(rows[index][4], std::string(1, part.temperature_grade));
        EXPECT_EQ(rows[index][5], std::string(1, part.speed_grade));
    }
}

TEST(PartList, NamesAPcfRecordOrThePartFileOfTheDevice) {
    std::set<std::string> records;
    std::map<std::string, std::string> pcf_of_device;
    for (const auto& row : part_list_rows()) {
        ASSERT_EQ(row.size(), 7U);
        if (row[6] != world().key_of(4, row[1]))
            records.insert(row[6]);
        EXPECT_EQ(pcf_of_device.emplace(row[1], row[6]).first->second, row[6]) << row[1];
    }
    EXPECT_EQ(records.size(), 8U);
    for (const std::string& record : records)
        EXPECT_NE(record.find("_CFG_"), std::string::npos) << record;
}
