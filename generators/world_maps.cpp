// Turns the world's part files into the naming maps. Contents keep the order of the catalogue.
#include "world_maps.h"

#include <set>

namespace {

constexpr std::array<const char*, WORLD_MAP_COUNT> MAP_NAMES = {
    "PACKAGE_GRAMMAR", "PGM_GRAMMAR",           "PGM_PCF", "PGM_FAMILY_PCF", "DEV_PCF",
    "DEV_FAMILY_PCF",  "DEVICE_PCF_FAMILY_PCF", "FAMILY"};

void add_programmer_name(WORLD_MAPS& maps, const WORLD_PART_FILE& file, const WORLD_PROGRAMMER_NAME& programmer) {
    maps[PGM_PCF][file.name].push_back(programmer.name);
    maps[PGM_FAMILY_PCF][file.family_file].push_back(programmer.name);
    for (const WORLD_PACKAGE_NAME& package : programmer.packages) {
        maps[PGM_GRAMMAR][programmer.name].push_back(package.name);
        maps[PACKAGE_GRAMMAR][package.name] = package.ordering_names;
    }
}

void add_part_file(WORLD_MAPS& maps, const WORLD_PART_FILE& file) {
    maps[FAMILY][file.family].push_back(file.name);
    maps[DEV_PCF][file.name] = file.devices;
    std::vector<std::string>& family_devices = maps[DEV_FAMILY_PCF][file.family_file];
    family_devices.insert(family_devices.end(), file.devices.begin(), file.devices.end());
    if (file.shared)
        maps[DEVICE_PCF_FAMILY_PCF][file.family_file].push_back(file.name);
    for (const WORLD_PROGRAMMER_NAME& programmer : file.programmer_names)
        add_programmer_name(maps, file, programmer);
}

void check_map(const std::string& name, const WORLD_MAP& map, WORLD_FAULTS& faults) {
    const WORLD_PLACE place{"map " + name, 0};
    std::set<std::string> seen;
    for (const auto& [key, contents] : map) {
        if (!is_world_name(key))
            faults.add(place, "\"" + key + "\" is no name");
        if (contents.empty())
            faults.add(place, "\"" + key + "\" has no contents");
        for (const std::string& content : contents) {
            if (!is_world_name(content))
                faults.add(place, "\"" + content + "\" is no name");
            if (!seen.insert(content).second)
                faults.add(place, "\"" + content + "\" stands there twice");
        }
    }
}

} // namespace

WORLD_MAPS make_world_maps(const WORLD& world) {
    WORLD_MAPS maps;
    for (const WORLD_PART_FILE& file : world.part_files)
        add_part_file(maps, file);
    return maps;
}

void check_world_maps(const WORLD_MAPS& maps, WORLD_FAULTS& faults) {
    for (std::size_t map = 0; map < maps.size(); ++map)
        check_map(MAP_NAMES[map], maps[map], faults);
}

namespace {

// What the world measures, by the names of the shape file.
using FIGURES = std::map<std::string, std::size_t>;

void measure_map(FIGURES& figures, const std::string& name, const WORLD_MAP& map) {
    std::size_t all = 0;
    std::size_t fewest = map.empty() ? 0 : map.begin()->second.size();
    std::size_t most = 0;
    for (const auto& [key, contents] : map) {
        all += contents.size();
        fewest = std::min(fewest, contents.size());
        most = std::max(most, contents.size());
    }
    figures[name + ".keys"] = map.size();
    figures[name + ".contents"] = all;
    figures[name + ".fewest"] = fewest;
    figures[name + ".most"] = most;
}

FIGURES measure(const WORLD& world, const WORLD_MAPS& maps) {
    FIGURES figures;
    figures["families"] = world.families.size();
    figures["devices"] = world.devices.size();
    figures["parts"] = world.parts.size();
    figures["pcf_records"] = world.pcf_records.size();
    std::size_t own_records = 0;
    for (const WORLD_FAMILY& family : world.families)
        own_records += family.own_record ? 1 : 0;
    figures["family_records"] = own_records;
    std::size_t numbered = 0;
    for (const WORLD_PART& part : world.parts)
        numbered += part.has_ordering_number ? 1 : 0;
    figures["ordering_places"] = world.ordering_list.size();
    figures["numbered_parts"] = numbered;
    for (std::size_t map = 0; map < maps.size(); ++map)
        measure_map(figures, MAP_NAMES[map], maps[map]);
    return figures;
}

void check_figure(const WORLD_ROW& row, const FIGURES& figures, WORLD_FAULTS& faults) {
    if (!check_world_row(row, 2, {}, faults))
        return;
    const auto figure = figures.find(row.values[0]);
    if (row.word != "figure" || figure == figures.end())
        faults.add(row.place, "\"" + row.word + " " + row.values[0] + "\" is no figure of the world");
    else if (std::to_string(figure->second) != row.values[1])
        faults.add(row.place, row.values[0] + ": the description gives " + std::to_string(figure->second) +
                                  ", expected is " + row.values[1]);
}

} // namespace

void check_world_shape(const WORLD& world, const WORLD_MAPS& maps, const std::string& file, WORLD_FAULTS& faults) {
    const FIGURES figures = measure(world, maps);
    for (const WORLD_ROW& row : read_world_rows(file, {}, faults))
        check_figure(row, figures, faults);
}
