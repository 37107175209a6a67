// `tovren name explain`.
#include "tool_name_explain.h"

#include "host_dev.h"
#include "host_text.h"
#include "tool_error.h"
#include "tool_name_why.h"
#include "tool_table.h"
#include "tool_text.h"
#include "tovren_device_grammar_mgr.h"
#include "tovren_mgr.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>
#include <unistd.h>
#include <unordered_set>

namespace {

using GRAMMAR = TOVREN_DEVICE_GRAMMAR_MGR;

constexpr unsigned int NO_OPN = 0xFFFFFFFF;
constexpr unsigned long long NO_HASH = 0xFFFFFFFFFFFFFFFF;

// Calls `visit(key)` for each key of the first two maps: package-level names and programmer names.
template <typename VISIT>
void visit_coarser_names(const VISIT& visit) {
    for (const unsigned int map : {0U, 1U})
        GRAMMAR::visit_map(map, [&visit](const std::string& key, const auto&) { visit(key); });
}

// Whether a part may have the name as its package-level or programmer name. A set pays off behind the first few names.
bool is_coarser_name(const std::string& name) {
    constexpr unsigned int FEW = 16;
    static unsigned int asked = 0;
    if (++asked <= FEW) {
        bool is_found = false;
        visit_coarser_names([&](const std::string& key) { is_found = is_found || key == name; });
        return is_found;
    }
    static const std::unordered_set<std::string> names = [] {
        std::unordered_set<std::string> keys;
        visit_coarser_names([&keys](const std::string& key) { keys.insert(key); });
        return keys;
    }();
    return names.contains(name);
}

// What the library's search gives, which scans the maps for every part that begins alike. No other name than those
// above can stand for a part other than itself, so it is only looked up.
std::string full_name_of(const std::string& name) {
    if (is_coarser_name(name))
        return TOVREN_MGR::find_possible_full_name(name);
    const DEV_PART_ENUM part = dstr_get_dev_part_enum_by_string(name);
    std::string spelling = part == DEV_PART_GENERIC ? "" : dstr_get_user_string(part);
    stl_toupper(spelling);
    return spelling;
}

// The first part of the catalogue among the names that a map holds under a key; with `deeper`, among those that the
// first map holds under each of these.
DEV_PART_ENUM first_part_under(unsigned int map, const std::string& key, bool deeper) {
    DEV_PART_ENUM first = DEV_PART_GENERIC;
    std::vector<std::string> names;
    GRAMMAR::visit_map(map, [&](const std::string& own, const std::vector<std::string>& contents) {
        if (own == key)
            names = contents;
    });
    for (const std::string& name : names) {
        const DEV_PART_ENUM part = deeper ? first_part_under(0, name, false) : dstr_get_dev_part_enum_by_string(name);
        if (part != DEV_PART_INVALID)
            first = std::min(first, part);
    }
    return first;
}

// The part that the name stands for, else the first one of its package, else of its programmer name.
std::string catalogue_part_of(const TOOL_NAME_ANSWERS& answers) {
    if (!answers.full_name.empty())
        return answers.full_name;
    DEV_PART_ENUM part = first_part_under(0, answers.package_name, false);
    if (part == DEV_PART_GENERIC)
        part = first_part_under(1, answers.pgm_name, true);
    std::string name = part == DEV_PART_GENERIC ? "" : dstr_get_user_string(part);
    stl_toupper(name);
    return name;
}

// Whether the name is a key of the map of device family files; the programmer has the same ones.
bool is_family_file(const std::string& name) {
    constexpr unsigned int DEV_FAMILY_PCF = 5;
    bool is_found = false;
    GRAMMAR::visit_map(DEV_FAMILY_PCF,
                       [&](const std::string& key, const auto&) { is_found = is_found || key == name; });
    return is_found;
}

// From a part, a device or a part file to the rest. A family and a family file lead to themselves alone.
TOOL_NAME_ANSWERS::RESOLVED resolve(const TOOL_NAME_ANSWERS& answers) {
    TOOL_NAME_ANSWERS::RESOLVED resolved;
    resolved.catalogue_part = catalogue_part_of(answers);
    const DEV_PART_MANAGER catalogue;
    DEV_DEVICE_ENUM device = catalogue.get_device_of(dstr_get_dev_part_enum_by_string(resolved.catalogue_part));
    if (device == DEV_DEVICE_INVALID)
        device = dstr_get_dev_device_enum_by_string(answers.standardised);
    if (device == DEV_DEVICE_INVALID)
        device = dstr_get_dev_device_enum_by_string(GRAMMAR::get_pcf_device(std::string(answers.standardised)));
    resolved.device = dstr_get_user_string(device);
    resolved.family = dstr_get_user_string(catalogue.get_family_of(device));
    if (resolved.family.empty())
        resolved.family = answers.family;
    if (resolved.family.empty())
        resolved.family = dstr_get_user_string(dstr_get_dev_family_enum_by_string(answers.standardised));
    if (!resolved.device.empty())
        GRAMMAR::get_dev_pcfs(std::string(resolved.device), resolved.dev_part_pcf, resolved.dev_family_pcf);
    else if (is_family_file(answers.standardised))
        resolved.dev_family_pcf = answers.standardised;
    return resolved;
}

// ---- output ----

nlohmann::ordered_json text_or_null(const std::string& text) {
    return text.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(text);
}

nlohmann::ordered_json as_json(const TOOL_NAME_ANSWERS& answers) {
    nlohmann::ordered_json object;
    object["input"] = answers.input;
    object["standardised"] = answers.standardised;
    object["package_name"] = text_or_null(answers.package_name);
    object["pgm_name"] = text_or_null(answers.pgm_name);
    object["pgm_part_pcf"] = text_or_null(answers.pgm_part_pcf);
    object["pgm_family_pcf"] = text_or_null(answers.pgm_family_pcf);
    object["dev_part_pcf"] = text_or_null(answers.dev_part_pcf);
    object["dev_family_pcf"] = text_or_null(answers.dev_family_pcf);
    object["family"] = text_or_null(answers.family);
    object["use_package_name"] = answers.use_package_name;
    object["use_full_name"] = answers.use_full_name;
    object["full_name"] = text_or_null(answers.full_name);
    object["opn_enum"] = answers.opn_enum ? nlohmann::ordered_json(*answers.opn_enum) : nlohmann::ordered_json();
    object["opn_hash"] = text_or_null(answers.opn_hash);
    object["resolved"] = {{"catalogue_part", text_or_null(answers.resolved.catalogue_part)},
                          {"device", text_or_null(answers.resolved.device)},
                          {"family", text_or_null(answers.resolved.family)},
                          {"dev_part_pcf", text_or_null(answers.resolved.dev_part_pcf)},
                          {"dev_family_pcf", text_or_null(answers.resolved.dev_family_pcf)}};
    return object;
}

void write_table(const TOOL_NAME_ANSWERS& answers, const TOOL_OUTPUT& output) {
    const auto or_dash = [](const std::string& text) { return text.empty() ? "-" : text; };
    TOOL_TABLE table({{"What"}, {"Answer"}});
    table.add_row({"name", answers.standardised});
    table.add_row({"package-level name", answers.package_name});
    table.add_row({"programmer name", answers.pgm_name});
    table.add_row({"programmer part file", or_dash(answers.pgm_part_pcf)});
    table.add_row({"programmer family file", or_dash(answers.pgm_family_pcf)});
    table.add_row({"known by its package-level name", answers.use_package_name ? "yes" : "no"});
    table.add_row({"known by its full name", answers.use_full_name ? "yes" : "no"});
    table.add_row({"catalogue part", or_dash(answers.resolved.catalogue_part)});
    table.add_row({"device", or_dash(answers.resolved.device)});
    table.add_row({"device part file", or_dash(answers.resolved.dev_part_pcf)});
    table.add_row({"device family file", or_dash(answers.resolved.dev_family_pcf)});
    table.add_row({"family", or_dash(answers.resolved.family)});
    table.add_row({"ordering index", answers.opn_enum ? std::to_string(*answers.opn_enum) : "-"});
    table.add_row({"ordering hash", or_dash(answers.opn_hash)});
    table.write(output);
}

void complain_about(const TOOL_NAME_ANSWERS& answers) {
    tool_complain("there is no name " + tool_quoted(answers.standardised));
    const auto spellings = tool_known_spellings(answers.standardised);
    for (const TOOL_SPELLING& spelling : spellings)
        tool_note((spelling.is_open ? "  It may mean " : "  It means ") + tool_printable(spelling.meant) + ": " +
                  spelling.mistake(answers.standardised) + '.');
    const std::string guess = tool_did_you_mean(GRAMMAR::get_near_names(answers.standardised));
    if (spellings.empty() && !guess.empty())
        tool_note("  " + guess);
}

// ---- several names ----

// How far a long run has come, on standard error where that is a terminal. Answers that go to a terminal show it
// themselves.
class PROGRESS {
public:
    explicit PROGRESS(size_t total)
        : m_total(total), m_is_shown(total > 1 && isatty(STDERR_FILENO) == 1 && isatty(STDOUT_FILENO) != 1) {}
    ~PROGRESS() { clear(); }
    PROGRESS(const PROGRESS&) = delete;
    PROGRESS& operator=(const PROGRESS&) = delete;

    // Makes room for something else on standard error.
    void clear() {
        if (m_percent == NONE)
            return;
        std::fputs("\r\x1b[K", stderr);
        m_percent = NONE;
    }

    void advance() {
        const size_t percent = ++m_done * 100 / m_total;
        if (!m_is_shown || percent == m_percent)
            return;
        m_percent = percent;
        constexpr size_t WIDTH = 20; // short enough for a narrow terminal
        const size_t filled = m_done * WIDTH / m_total;
        const std::string bar = std::string(filled, '#') + std::string(WIDTH - filled, '.');
        std::fprintf(stderr, "\r[%s] %3zu %%", bar.c_str(), percent);
    }

private:
    static constexpr size_t NONE = 101;

    size_t m_total;
    size_t m_done = 0;
    size_t m_percent = NONE; // shown at the moment
    bool m_is_shown;
};

// The names asked for, those of standard input put in for -. Blank lines are none.
std::vector<std::string> all_names(const std::vector<std::string>& given) {
    std::vector<std::string> names;
    for (const std::string& name : given) {
        if (name != "-") {
            names.push_back(name);
            continue;
        }
        for (std::string line; std::getline(std::cin, line);) {
            if (!line.empty() && line.back() == '\r')
                line.pop_back();
            if (line.find_first_not_of(" \t") != std::string::npos)
                names.push_back(line);
        }
    }
    return names;
}

} // namespace

bool TOOL_NAME_ANSWERS::is_known() const {
    if (standardised.empty())
        return false;
    return package_name != standardised || pgm_name != standardised || use_package_name || !pgm_part_pcf.empty() ||
           !dev_part_pcf.empty() || !family.empty() || !full_name.empty() || !resolved.device.empty() ||
           !resolved.dev_family_pcf.empty() || dstr_get_dev_family_enum_by_string(standardised) != DEV_FAMILY_INVALID;
}

std::vector<std::string> tool_part_names() {
    std::vector<std::string> names;
    for (unsigned int part = DEV_PART_INVALID + 1U; part < DEV_PART_GENERIC; ++part)
        names.push_back(dstr_get_user_string(DEV_PART_ENUM(part)));
    return names;
}

std::string tool_opn_hash_text(unsigned long long hash) {
    if (hash == NO_HASH)
        return "";
    char text[32];
    std::snprintf(text, sizeof text, "0x%012llx", hash);
    return text;
}

// Every question gets a copy of its own: the library standardises what it is asked in place.
TOOL_NAME_ANSWERS tool_explain_name(const std::string& name) {
    TOOL_NAME_ANSWERS answers;
    answers.input = name;
    answers.standardised = name;
    standardize_name(answers.standardised);
    const std::string& asked = answers.standardised;
    answers.package_name = GRAMMAR::get_package_name(std::string(asked), false);
    answers.pgm_name = GRAMMAR::get_pgm_name(std::string(asked), false, false);
    GRAMMAR::get_pgm_pcfs(std::string(asked), answers.pgm_part_pcf, answers.pgm_family_pcf);
    GRAMMAR::get_dev_pcfs(std::string(asked), answers.dev_part_pcf, answers.dev_family_pcf);
    answers.family = GRAMMAR::get_family(std::string(asked));
    answers.use_package_name = GRAMMAR::use_package_name(std::string(asked));
    answers.use_full_name = GRAMMAR::use_full_name(std::string(asked));
    answers.full_name = full_name_of(asked);
    if (const unsigned int opn = TOVREN_MGR::get_opn_enum(asked); opn != NO_OPN)
        answers.opn_enum = opn;
    answers.opn_hash = tool_opn_hash_text(TOVREN_MGR::get_opn_hash(asked));
    answers.resolved = resolve(answers);
    return answers;
}

namespace {

nlohmann::ordered_json document_of(const TOOL_NAME_ANSWERS& answers, bool is_why) {
    nlohmann::ordered_json document = as_json(answers);
    if (is_why)
        document["why"] = tool_name_why_json(answers);
    return document;
}

void write_for_people(const TOOL_NAME_ANSWERS& answers, bool is_why, const TOOL_OUTPUT& output) {
    if (answers.is_known())
        write_table(answers, output);
    if (is_why && answers.is_known())
        output.write("\n");
    if (is_why)
        tool_write_name_why(answers, output);
}

} // namespace

int tool_name_explain(const std::vector<std::string>& given, bool is_why, const TOOL_OUTPUT& output) {
    const std::vector<std::string> names = all_names(given);
    const bool is_one = names.size() == 1 && given.front() != "-";
    PROGRESS progress(names.size());
    int result = TOOL_EXIT_DONE;
    for (const std::string& name : names) {
        const TOOL_NAME_ANSWERS answers = tool_explain_name(name);
        if (output.is_json())
            output.write_json(document_of(answers, is_why), is_one ? 2 : -1);
        else
            write_for_people(answers, is_why, output);
        if (!answers.is_known()) {
            progress.clear();
            complain_about(answers);
            result = TOOL_EXIT_NOT_FOUND;
        }
        if (!output.is_json() && (is_why || answers.is_known()) && &name != &names.back()) {
            output.write("\n");
        }
        progress.advance();
    }
    return result;
}
