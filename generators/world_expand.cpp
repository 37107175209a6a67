// Expands the description row by row. The ordering list is arranged by line, not by family: within a row of dies first
// the numbered parts, in the order of their numbers, then a place for every other ordering name, then reserved places.
#include "world_expand.h"

#include <algorithm>
#include <map>
#include <set>

namespace {

// The places of one row of dies in the ordering list.
struct ORDERING_BLOCK {
    std::string line;
    std::vector<unsigned int> numbered;
    unsigned int unnumbered = 0;
};

class EXPANDER {
public:
    explicit EXPANDER(WORLD_FAULTS& faults) : m_faults(faults) {}

    void add_series(const WORLD_SERIES& series);
    WORLD finish();

private:
    void add_family(const WORLD_SERIES& series, const WORLD_FAMILY_ROW& family);
    void add_dies(const WORLD_SERIES& series, const WORLD_FAMILY_ROW& family, const WORLD_DIES& dies);
    void add_device(const WORLD_FAMILY_ROW& family, const WORLD_DIES& dies, const std::string& name, bool first);
    void add_group(const WORLD_FAMILY_ROW& family, const WORLD_DIES& dies, std::size_t group, bool first);
    WORLD_PACKAGE_NAME add_package(const WORLD_DIES& dies, const WORLD_PACKAGE& package,
                                   const std::vector<WORLD_SUFFIX>& grades, const WORLD_PART& model);
    std::size_t part_file(const WORLD_FAMILY_ROW& family, const WORLD_DIES& dies, const std::string& name);
    void add_pcf_record(const std::string& name);
    void claim(const std::string& kind, const std::string& name, const WORLD_PLACE& place);

    WORLD_FAULTS& m_faults;
    WORLD m_world;
    std::map<std::string, std::size_t> m_part_files;
    std::set<std::string> m_claimed;
    std::vector<ORDERING_BLOCK> m_blocks;
};

void EXPANDER::claim(const std::string& kind, const std::string& name, const WORLD_PLACE& place) {
    if (!m_claimed.insert(kind + " " + name).second)
        m_faults.add(place, "a second " + kind + " " + name);
}

void EXPANDER::add_pcf_record(const std::string& name) {
    std::vector<std::string>& records = m_world.pcf_records;
    if (!name.empty() && std::find(records.begin(), records.end(), name) == records.end())
        records.push_back(name);
}

void EXPANDER::add_series(const WORLD_SERIES& series) {
    claim("series", series.letter, series.place);
    claim("series", series.word, series.place);
    for (const WORLD_FAMILY_ROW& family : series.families)
        add_family(series, family);
}

void EXPANDER::add_family(const WORLD_SERIES& series, const WORLD_FAMILY_ROW& family) {
    claim("family", family.name, family.place);
    m_world.families.push_back({family.name, series.family_file, family.own_record});
    for (const WORLD_DIES& dies : family.dies)
        add_dies(series, family, dies);
}

void EXPANDER::add_dies(const WORLD_SERIES& series, const WORLD_FAMILY_ROW& family, const WORLD_DIES& dies) {
    add_pcf_record(dies.pcf);
    m_blocks.push_back({dies.line, {}, 0});
    for (const std::string& density : dies.densities) {
        for (const char variant : dies.variants) {
            add_device(family, dies, dies.line + density + variant, variant == dies.variants.front());
            m_blocks.back().unnumbered += series.reserved;
        }
    }
}

// A line's one part file is QAXXX, a die's QX20X; the part file of a die that has a single device bears its name.
std::string part_file_name(const WORLD_DIES& dies, const std::string& device) {
    switch (dies.files) {
    case WORLD_FILES::LINE:
        return dies.line + "XXX";
    case WORLD_FILES::DIE:
        return dies.variants.size() == 1 ? device : device.substr(0, 4) + "X";
    case WORLD_FILES::DEVICE:
        return device;
    case WORLD_FILES::NONE:
        break;
    }
    return "";
}

std::size_t EXPANDER::part_file(const WORLD_FAMILY_ROW& family, const WORLD_DIES& dies, const std::string& name) {
    const auto [entry, is_new] = m_part_files.emplace(name, m_world.part_files.size());
    if (is_new) {
        m_world.part_files.push_back({name, family.name, m_world.families.back().family_file, dies.shared, {}, {}});
    } else {
        const WORLD_PART_FILE& older = m_world.part_files[entry->second];
        if (older.family != family.name || older.shared != dies.shared)
            m_faults.add(dies.place, "part file " + name + " is described otherwise in an earlier row");
    }
    return entry->second;
}

void EXPANDER::add_device(const WORLD_FAMILY_ROW& family, const WORLD_DIES& dies, const std::string& name, bool first) {
    claim("device", name, dies.place);
    const std::string file = part_file_name(dies, name);
    m_world.devices.push_back(
        {name, static_cast<unsigned int>(m_world.families.size()), file, dies.pcf.empty() ? file : dies.pcf});
    if (file.empty())
        return;
    WORLD_PART_FILE& entry = m_world.part_files[part_file(family, dies, file)];
    entry.devices.push_back(name);
    for (std::size_t group = 0; group < dies.groups.size(); ++group)
        add_group(family, dies, group, first);
}

bool in_production(WORLD_STATUS status, bool first) {
    return status == WORLD_STATUS::CURRENT || (status == WORLD_STATUS::FADING && first);
}

bool is_numbered(WORLD_NUMBERED numbered, bool first) {
    return numbered == WORLD_NUMBERED::ALL || (numbered == WORLD_NUMBERED::FIRST && first);
}

void EXPANDER::add_group(const WORLD_FAMILY_ROW& family, const WORLD_DIES& dies, std::size_t group, bool first) {
    const std::vector<WORLD_PACKAGE>& packages = dies.groups[group];
    const WORLD_DEVICE& device = m_world.devices.back();
    const bool by_device = dies.merged_by_device && packages.size() > 1;
    WORLD_PART model;
    model.device = static_cast<unsigned int>(m_world.devices.size());
    model.in_production = in_production(dies.status, first);
    model.has_ordering_number = is_numbered(dies.numbered, first);
    model.has_hard_processor = family.hard_processor;
    WORLD_PROGRAMMER_NAME programmer{by_device ? device.name : device.name + packages.front().code, {}};
    claim("programmer name", programmer.name, dies.place);
    for (const WORLD_PACKAGE& package : packages) {
        const bool is_first = group == 0 && programmer.packages.empty();
        programmer.packages.push_back(
            add_package(dies, package, is_first ? family.first_grades : family.other_grades, model));
    }
    m_world.part_files[m_part_files.at(device.part_file)].programmer_names.push_back(std::move(programmer));
}

WORLD_PACKAGE_NAME EXPANDER::add_package(const WORLD_DIES& dies, const WORLD_PACKAGE& package,
                                         const std::vector<WORLD_SUFFIX>& grades, const WORLD_PART& model) {
    WORLD_PACKAGE_NAME names{m_world.devices.back().name + package.code, {}};
    claim("package-level name", names.name, dies.place);
    for (const WORLD_SUFFIX& suffix : grades) {
        WORLD_PART part = model;
        part.name = names.name + suffix.text;
        part.package = package;
        part.temperature = suffix.temperature;
        part.speed = suffix.speed;
        claim("ordering name", part.name, dies.place);
        names.ordering_names.push_back(part.name);
        if (suffix.listed)
            m_world.parts.push_back(part);
        if (suffix.listed && part.has_ordering_number)
            m_blocks.back().numbered.push_back(static_cast<unsigned int>(m_world.parts.size()));
        else
            ++m_blocks.back().unnumbered;
    }
    return names;
}

WORLD EXPANDER::finish() {
    std::stable_sort(m_blocks.begin(), m_blocks.end(),
                     [](const ORDERING_BLOCK& a, const ORDERING_BLOCK& b) { return a.line < b.line; });
    std::vector<unsigned int>& list = m_world.ordering_list;
    for (const ORDERING_BLOCK& block : m_blocks) {
        list.insert(list.end(), block.numbered.begin(), block.numbered.end());
        list.insert(list.end(), block.unnumbered, 0U);
    }
    return std::move(m_world);
}

} // namespace

WORLD expand_world(const WORLD_DESCRIPTION& description, WORLD_FAULTS& faults) {
    EXPANDER expander(faults);
    for (const WORLD_SERIES& series : description)
        expander.add_series(series);
    return expander.finish();
}
