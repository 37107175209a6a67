// `tovren name`: the group's verbs.
#include "host_dev.h"
#include "tool_command_line.h"
#include "tool_error.h"
#include "tool_groups.h"
#include "tool_name_explain.h"
#include "tool_output.h"
#include "tool_text.h"
#include "tovren_device_grammar_mgr.h"
#include "tovren_mgr.h"

#include <nlohmann/json.hpp>

namespace {

using GRAMMAR = TOVREN_DEVICE_GRAMMAR_MGR;

// One answer under its key, none of which is null; for people the answer alone.
int write_answer(const char* question_key, const std::string& question, const char* answer_key,
                 const std::string& answer, const TOOL_OUTPUT& output) {
    if (output.is_json()) {
        nlohmann::ordered_json object = {{question_key, question}, {answer_key, nullptr}};
        if (!answer.empty())
            object[answer_key] = answer;
        output.write_json(object);
    } else if (!answer.empty()) {
        output.write(answer + '\n');
    }
    return answer.empty() ? TOOL_EXIT_NOT_FOUND : TOOL_EXIT_DONE;
}

int with_guess(int result, const std::string& message, const std::vector<std::string>& near_names) {
    if (result == TOOL_EXIT_DONE)
        return result;
    const std::string guess = tool_did_you_mean(near_names);
    throw TOOL_ERROR(TOOL_EXIT_NOT_FOUND, message,
                     guess.empty() ? std::vector<std::string>() : std::vector<std::string>{guess});
}

// As the library's tables spell a name.
std::string standardised(std::string name) {
    standardize_name(name);
    return name;
}

int full(const std::string& name, const TOOL_OUTPUT& output) {
    const std::string answer = TOVREN_MGR::find_possible_full_name(standardised(name));
    const int result = write_answer("name", name, "full_name", answer, output);
    return with_guess(result, tool_quoted(name) + " stands for no part of the catalogue",
                      result == TOOL_EXIT_DONE ? std::vector<std::string>()
                                               : tool_nearest_names(name, tool_part_names()));
}

std::vector<std::string> keys_of(unsigned int map) {
    std::vector<std::string> keys;
    GRAMMAR::visit_map(map, [&keys](const std::string& key, const auto&) { keys.push_back(key); });
    return keys;
}

int of_pcf(const std::string& pcf, const TOOL_OUTPUT& output) {
    constexpr unsigned int PGM_PCF = 2;
    const int result = write_answer("pcf", pcf, "name", TOVREN_MGR::get_part_name_from_pcf(standardised(pcf)), output);
    return with_guess(result, "no part in production with an ordering number has the part file " + tool_quoted(pcf),
                      result == TOOL_EXIT_DONE ? std::vector<std::string>()
                                               : tool_nearest_names(pcf, keys_of(PGM_PCF)));
}

std::vector<std::string> device_names() {
    std::vector<std::string> names;
    for (unsigned int device = 1; device < DEV_DEVICE_GENERIC; ++device)
        names.push_back(dstr_get_user_string(DEV_DEVICE_ENUM(device)));
    return names;
}

int of_device(const std::string& device, const TOOL_OUTPUT& output) {
    const DEV_DEVICE_ENUM number = dstr_get_dev_device_enum_by_string(standardised(device));
    const bool is_known = dstr_is_valid_dev_device_enum(number);
    const std::string answer = is_known ? TOVREN_MGR::get_part_name_from_dev(standardised(device)) : "";
    const int result = write_answer("device", device, "name", answer, output);
    return is_known ? with_guess(result, "device " + tool_quoted(device) + " has no part in the catalogue", {})
                    : with_guess(result, "there is no device " + tool_quoted(device),
                                 tool_nearest_names(device, device_names()));
}

// ---- maps ----

unsigned int map_number(const std::string& text) {
    std::vector<std::string> names;
    for (unsigned int map = 0; map < GRAMMAR::MAP_COUNT; ++map) {
        names.push_back(GRAMMAR::get_map_name(map));
        if (tool_equal_ignoring_case(text, names.back()))
            return map;
    }
    if (const auto number = tool_number(text, GRAMMAR::MAP_COUNT - 1))
        return *number;
    throw tool_usage_error("name maps", tool_quoted(text) + " is no map (there are: " + tool_join(names, ", ") + ')');
}

nlohmann::ordered_json map_json(unsigned int map) {
    nlohmann::ordered_json object = nlohmann::ordered_json::object();
    auto& entries = object.get_ref<nlohmann::ordered_json::object_t&>();
    GRAMMAR::visit_map(map, [&entries](const std::string& key, const std::vector<std::string>& contents) {
        entries.push_back({key, contents}); // keys are different, so none is looked for
    });
    return object;
}

std::string map_text(unsigned int map) {
    std::string text = GRAMMAR::get_map_name(map) + '\n';
    GRAMMAR::visit_map(map, [&text](const std::string& key, const std::vector<std::string>& contents) {
        text += "  " + key + ": " + tool_join(contents, " ") + '\n';
    });
    return text;
}

int maps(const std::optional<std::string>& which, const TOOL_OUTPUT& output) {
    const unsigned int first = which ? map_number(*which) : 0;
    const unsigned int end = which ? first + 1 : GRAMMAR::MAP_COUNT;
    nlohmann::ordered_json document;
    for (unsigned int map = first; map < end; ++map) {
        if (output.is_json())
            document[GRAMMAR::get_map_name(map)] = map_json(map);
        else
            output.write(map_text(map));
    }
    if (output.is_json())
        output.write_json(document, -1);
    return TOOL_EXIT_DONE;
}

} // namespace

void tool_add_name_group(TOOL_COMMAND_LINE& line) {
    TOOL_GROUP group = line.add_group("name", "Names of devices and parts");

    const auto names = std::make_shared<std::vector<std::string>>();
    const auto is_why = std::make_shared<bool>(false);
    group
        .add_verb("explain", "Everything that is known of a name",
                  [names, is_why](const TOOL_OUTPUT& output) { return tool_name_explain(*names, *is_why, output); })
        .arguments("NAME", *names, "Names, in any letter case; - reads them from standard input")
        .flag("--why", *is_why, "Also each map that was asked, and where a look-up ended");

    const auto short_name = std::make_shared<std::string>();
    group
        .add_verb("full", "The first part of the catalogue that a name stands for",
                  [short_name](const TOOL_OUTPUT& output) { return full(*short_name, output); })
        .argument("NAME", *short_name, "The name, possibly shortened");

    const auto pcf = std::make_shared<std::string>();
    group
        .add_verb("of-pcf", "A part whose programmer part file this is",
                  [pcf](const TOOL_OUTPUT& output) { return of_pcf(*pcf, output); })
        .argument("PCF", *pcf, "The part file's name");

    const auto device = std::make_shared<std::string>();
    group
        .add_verb("of-device", "The first part of a device",
                  [device](const TOOL_OUTPUT& output) { return of_device(*device, output); })
        .argument("DEVICE", *device, "The device's name");

    const auto map = std::make_shared<std::optional<std::string>>();
    group
        .add_verb("maps", "The maps that relate names", [map](const TOOL_OUTPUT& output) { return maps(*map, output); })
        .argument("MAP", *map, "One of them, by name or number");
}
