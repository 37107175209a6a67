// How a name was looked for: each hop through a map of names, and where it ended.
#include "tool_name_why.h"

#include "tool_output.h"
#include "tool_table.h"
#include "tool_text.h"
#include "tovren_device_grammar_mgr.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

namespace {

using GRAMMAR = TOVREN_DEVICE_GRAMMAR_MGR;
using NAMES = std::vector<std::string>;

enum MAP : unsigned int { PACKAGES, PROGRAMMER, PGM_PCF, PGM_FAMILY_PCF, DEV_PCF, DEV_FAMILY_PCF, PCF_FAMILY, FAMILY };

// Questions of several hops.
constexpr char PROGRAMMER_NAME[] = "programmer name";
constexpr char FAMILY_NAME[] = "family";

NAMES contents_of_map(unsigned int map) {
    NAMES names;
    GRAMMAR::visit_map(map, [&names](const std::string&, const NAMES& contents) {
        names.insert(names.end(), contents.begin(), contents.end());
    });
    return names;
}

TOOL_NAME_HOP look_up(const char* question, unsigned int map, const std::string& name) {
    TOOL_NAME_HOP hop{question, map, name};
    GRAMMAR::visit_map(map, [&](const std::string& key, const NAMES& contents) {
        if (hop.is_found() || std::find(contents.begin(), contents.end(), name) == contents.end())
            return;
        hop.answer = key;
        hop.count = contents.size();
    });
    if (!hop.is_found()) {
        const NAMES all = contents_of_map(map);
        hop.count = all.size();
        hop.near = tool_nearest_names(name, all);
    }
    return hop;
}

class HOPS {
public:
    // Returns the answer.
    std::string add(const char* question, unsigned int map, const std::string& name) {
        m_hops.push_back(look_up(question, map, name));
        return m_hops.back().answer;
    }

    std::vector<TOOL_NAME_HOP> take() { return std::move(m_hops); }

private:
    std::vector<TOOL_NAME_HOP> m_hops;
};

// What the name itself maps to comes first, then what its package maps to.
void add_programmer_name(HOPS& hops, const std::string& name) {
    if (!hops.add(PROGRAMMER_NAME, PROGRAMMER, name).empty())
        return;
    if (const std::string package = hops.add(PROGRAMMER_NAME, PACKAGES, name); !package.empty())
        hops.add(PROGRAMMER_NAME, PROGRAMMER, package);
}

// The family of the name, else of its part file.
void add_family(HOPS& hops, const std::string& name) {
    if (!hops.add(FAMILY_NAME, FAMILY, name).empty())
        return;
    std::string pcf = hops.add(FAMILY_NAME, PGM_PCF, name);
    if (pcf.empty())
        pcf = hops.add(FAMILY_NAME, DEV_PCF, name);
    if (!pcf.empty())
        hops.add(FAMILY_NAME, FAMILY, pcf);
}

std::string map_text(unsigned int map) {
    return std::to_string(map) + ' ' + GRAMMAR::get_map_name(map);
}

std::string answer_text(const TOOL_NAME_HOP& hop) {
    return hop.is_found() ? hop.answer + " (of " + tool_count_text(hop.count, "name") + ')'
                          : "not among its " + tool_count_text(hop.count, "name");
}

nlohmann::ordered_json hop_json(const TOOL_NAME_HOP& hop) {
    nlohmann::ordered_json object;
    object["question"] = hop.question;
    object["map"] = hop.map;
    object["map_name"] = GRAMMAR::get_map_name(hop.map);
    object["looked_for"] = hop.looked_for;
    object["answer"] = hop.is_found() ? nlohmann::ordered_json(hop.answer) : nlohmann::ordered_json();
    object["count"] = hop.count;
    object["near"] = hop.near;
    return object;
}

} // namespace

const char* tool_map_purpose(unsigned int map) {
    static constexpr const char* PURPOSES[GRAMMAR::MAP_COUNT] = {
        "packages, and the parts of each",
        "programmer names, and the names that each stands for",
        "programmer part files, and the programmer names of each",
        "programmer family files, and the programmer names of each",
        "device part files, and the devices of each",
        "device family files, and the devices of each",
        "family files, and the device part files of each",
        "families, and the part files of each",
    };
    return map < GRAMMAR::MAP_COUNT ? PURPOSES[map] : "";
}

std::vector<TOOL_NAME_HOP> tool_name_hops(const TOOL_NAME_ANSWERS& answers) {
    const std::string& name = answers.standardised;
    const std::string& device = answers.resolved.device.empty() ? name : answers.resolved.device;
    HOPS hops;
    hops.add("package-level name", PACKAGES, name);
    add_programmer_name(hops, name);
    hops.add("programmer part file", PGM_PCF, answers.pgm_name);
    hops.add("programmer family file", PGM_FAMILY_PCF, answers.pgm_name);
    const std::string pcf = hops.add("device part file", DEV_PCF, device);
    hops.add("device family file", DEV_FAMILY_PCF, device);
    hops.add("family file of the part file", PCF_FAMILY, pcf.empty() ? name : pcf);
    add_family(hops, name);
    return hops.take();
}

std::vector<TOOL_SPELLING> tool_known_spellings(const std::string& name) {
    NAMES names;
    for (unsigned int map = 0; map < GRAMMAR::MAP_COUNT; ++map) {
        GRAMMAR::visit_map(map, [&names](const std::string& key, const NAMES& contents) {
            names.push_back(key);
            names.insert(names.end(), contents.begin(), contents.end());
        });
    }
    auto spellings = tool_spellings(name, names);
    if (spellings.empty() || spellings.front().kind != TOOL_SPELLING::KIND::SUFFIX)
        return spellings;
    const NAMES parts = contents_of_map(PACKAGES);
    std::erase_if(spellings, [&parts](const TOOL_SPELLING& spelling) {
        return std::find(parts.begin(), parts.end(), spelling.meant) == parts.end();
    });
    return spellings;
}

void tool_write_name_why(const TOOL_NAME_ANSWERS& answers, const TOOL_OUTPUT& output) {
    TOOL_TABLE table({{"Question"}, {"Map"}, {"Looked for"}, {"Answer"}, {"Nearest there", false, 1}});
    std::set<unsigned int> maps;
    for (const TOOL_NAME_HOP& hop : tool_name_hops(answers)) {
        table.add_row({hop.question, map_text(hop.map), hop.looked_for, answer_text(hop), tool_join(hop.near, " ")});
        maps.insert(hop.map);
    }
    output.write(output.bold("Why") + ", map by map:\n");
    table.write(output);
    if (answers.resolved.device != answers.standardised && !answers.resolved.device.empty())
        output.write("The catalogue makes " + tool_printable(answers.standardised) + " the device " +
                     tool_printable(answers.resolved.device) + ".\n");
    std::string text;
    for (const unsigned int map : maps)
        text += "  " + map_text(map) + ": " + tool_map_purpose(map) + '\n';
    output.write(text);
}

nlohmann::ordered_json tool_name_why_json(const TOOL_NAME_ANSWERS& answers) {
    nlohmann::ordered_json object = {{"hops", nlohmann::ordered_json::array()},
                                     {"meant", nlohmann::ordered_json::array()}};
    for (const TOOL_NAME_HOP& hop : tool_name_hops(answers))
        object["hops"].push_back(hop_json(hop));
    if (answers.is_known())
        return object;
    for (const TOOL_SPELLING& spelling : tool_known_spellings(answers.standardised))
        object["meant"].push_back({{"name", spelling.meant}, {"mistake", spelling.mistake(answers.standardised)}});
    return object;
}
