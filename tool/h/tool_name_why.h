// How a name was looked for: each hop through a map of names, and where it ended.
#ifndef TOOL_NAME_WHY_H
#define TOOL_NAME_WHY_H

#include "tool_name_explain.h"
#include "tool_name_spelling.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

class TOOL_OUTPUT;

// One look-up: the key of a map that owns a name.
struct TOOL_NAME_HOP {
    const char* question; // "programmer name"
    unsigned int map;     // below TOVREN_DEVICE_GRAMMAR_MGR::MAP_COUNT
    std::string looked_for;
    std::string answer = {};            // the key; empty where the map does not hold the name
    size_t count = 0;                   // names under that key; of the whole map where it does not hold the name
    std::vector<std::string> near = {}; // the nearest names of the map where it does not hold the name

    bool is_found() const { return !answer.empty(); }
};

// What a map holds, for people: "packages, and the parts of each".
const char* tool_map_purpose(unsigned int map);

// The look-ups behind the answers, in the order in which they are made. A question may take several.
std::vector<TOOL_NAME_HOP> tool_name_hops(const TOOL_NAME_ANSWERS& answers);

// What an unknown name means in the spelling of the maps. A suffix is only seen behind the name of a part.
std::vector<TOOL_SPELLING> tool_known_spellings(const std::string& name);

void tool_write_name_why(const TOOL_NAME_ANSWERS& answers, const TOOL_OUTPUT& output);
nlohmann::ordered_json tool_name_why_json(const TOOL_NAME_ANSWERS& answers);

#endif
