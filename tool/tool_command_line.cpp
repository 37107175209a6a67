// The command line, parsed.
#include "tool_command_line.h"

#include "tool_error.h"
#include "tool_output.h"
#include "tool_text.h"

#include <algorithm>
#include <CLI/CLI.hpp>
#include <iostream>
#include <sstream>

namespace {

constexpr char FOOTER[] = R"(
Results go to standard output, everything else to standard error.
Exit codes: 0 done; 1 asked and not found; 2 wrong usage; 3 a file refused;
            70 an internal error.
Environment: TOVREN_DB_ROOT, TOVREN_SETTINGS, TOVREN_MODULE_PATH, NO_COLOR.
`tovren GROUP --help` lists a group's verbs, `tovren GROUP VERB --help` one
verb's arguments. The options above are taken behind the verb too.)";

constexpr char VERB_FOOTER[] = "\nOptions for all verbs: see `tovren --help`.";

// "flash show": as far as the parse came.
std::string command_of(const CLI::App& app) {
    std::string command;
    for (const CLI::App* chosen = &app; !chosen->get_subcommands().empty();) {
        chosen = chosen->get_subcommands().front();
        command += (command.empty() ? "" : " ") + chosen->get_name();
    }
    return command;
}

const CLI::App& innermost(const CLI::App& app) {
    return app.get_subcommands().empty() ? app : innermost(*app.get_subcommands().front());
}

std::vector<std::string> child_names(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* child : app.get_subcommands({}))
        names.push_back(child->get_name());
    return names;
}

// The first argument that nothing took, a word rather than an option where there is one.
std::string unexpected(const CLI::App& app, bool is_word_wanted) {
    const std::vector<std::string> rest = app.remaining(true);
    const auto word = std::find_if(rest.begin(), rest.end(), [](const std::string& text) { return text[0] != '-'; });
    if (is_word_wanted)
        return word == rest.end() ? "" : *word;
    return rest.empty() ? "" : rest.front();
}

// What may stand where `word` stands: the options of the verb and of all around it, or the verbs beside it.
std::vector<std::string> alternatives(const std::string& word, const CLI::App& chosen) {
    std::vector<std::string> names;
    if (word[0] != '-')
        return chosen.get_parent() ? child_names(*chosen.get_parent()) : names;
    for (const CLI::App* app = &chosen; app; app = app->get_parent())
        for (const CLI::Option* option : app->get_options())
            for (const std::string& name : option->get_lnames())
                names.push_back("--" + name);
    return names;
}

std::vector<std::string> guesses(const std::string& word, const CLI::App& chosen) {
    std::vector<std::string> names = tool_nearest_names(word, alternatives(word, chosen));
    std::erase(names, word);
    const std::string guess = tool_did_you_mean(names);
    return guess.empty() ? std::vector<std::string>() : std::vector<std::string>{guess};
}

// A group or a verb is missing or is none.
TOOL_ERROR wrong_choice(const CLI::App& app, const CLI::App& chosen) {
    const std::string kind = &chosen == &app ? "group" : "verb";
    const std::vector<std::string> known = child_names(chosen);
    const std::string word = unexpected(app, true);
    const std::string fault = word.empty() ? "a " + kind + " is missing" : tool_quoted(word) + " is no " + kind;
    const std::string guess = word.empty() ? "" : tool_did_you_mean(tool_nearest_names(word, known));
    return tool_usage_error(command_of(app), fault + " (there are: " + tool_join(known, ", ") + ')',
                            guess.empty() ? std::vector<std::string>() : std::vector<std::string>{guess});
}

TOOL_ERROR wrong_usage(const CLI::App& app, const CLI::ParseError& error) {
    const CLI::App& chosen = innermost(app);
    const bool is_extra = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError);
    const bool is_missing = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::RequiredError);
    const std::string rest = unexpected(app, false);
    const std::string message = error.what();
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ArgumentMismatch))
        return tool_usage_error(command_of(app), message.substr(0, message.find(':')) + ": its value is missing");
    if (is_missing && !child_names(chosen).empty() && (rest.empty() || !unexpected(app, true).empty()))
        return wrong_choice(app, chosen);
    if (rest.empty() || !(is_extra || is_missing))
        return tool_usage_error(command_of(app), tool_printable(message));
    if (rest[0] == '-')
        return tool_usage_error(command_of(app), "there is no option " + tool_quoted(rest), guesses(rest, chosen));
    return tool_usage_error(command_of(app), "one argument too many: " + tool_quoted(rest), guesses(rest, chosen));
}

CLI::Option* add_text(CLI::App& app, const std::string& name, std::optional<std::string>& value, const char* help) {
    return app
        .add_option_function<std::string>(
            name, [&value](const std::string& text) { value = text; }, help)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
}

CLI::App* add_group_to(CLI::App& app, const char* name, const char* help) {
    CLI::App* group = app.add_subcommand(name, help);
    group->require_subcommand(1)->fallthrough();
    group->footer(VERB_FOOTER);
    return group;
}

} // namespace

TOOL_COMMAND_LINE::TOOL_COMMAND_LINE(const char* version)
    : m_app(std::make_unique<CLI::App>("Knowledge of programmable logic devices and their serial flashes", "tovren")) {
    m_app->set_version_flag("--version", std::string("tovren ") + version, "Print the version and exit");
    m_app->set_help_flag("-h,--help", "Print this help and exit");
    m_app->require_subcommand(1);
    m_app->footer(FOOTER);
    add_globals();
}

TOOL_COMMAND_LINE::~TOOL_COMMAND_LINE() = default;

void TOOL_COMMAND_LINE::add_globals() {
    add_text(*m_app, "--db-root", m_globals.db_root, "Folder of the databases")->type_name("DIR");
    add_text(*m_app, "--settings", m_globals.settings, "Read settings from FILE")->type_name("FILE");
    m_app->add_option("--set", m_globals.set, "Override one setting; may be repeated")
        ->type_name("NAME=VALUE")
        ->type_size(1)
        ->allow_extra_args(false);
    m_app->add_flag("--json", m_globals.is_json, "Print one JSON document");
    add_text(*m_app, "--debug", m_globals.debug, "Print debug messages up to LEVEL, 0 to 3")->type_name("LEVEL");
}

void TOOL_COMMAND_LINE::expect(int argc, const char* const* argv) {
    m_expected.emplace(argv, argv + argc);
}

bool TOOL_COMMAND_LINE::is_expected(const char* name) const {
    return !m_expected || m_expected->contains(name);
}

TOOL_GROUP TOOL_COMMAND_LINE::add_group(const char* name, const char* help) {
    CLI::App* group = add_group_to(*m_app, name, help);
    return {*this, is_expected(name) ? group : nullptr};
}

TOOL_VERB TOOL_COMMAND_LINE::add_verb(const char* name, const char* help, TOOL_ACTION action) {
    CLI::App* verb = m_app->add_subcommand(name, help);
    verb->fallthrough();
    verb->footer(VERB_FOOTER);
    m_actions.push_back({verb, std::move(action), TOOL_SETTINGS_USE::READS});
    return TOOL_VERB(is_expected(name) ? verb : nullptr);
}

TOOL_GROUP TOOL_GROUP::add_group(const char* name, const char* help) {
    CLI::App* group = m_app ? add_group_to(*m_app, name, help) : nullptr;
    return {m_line, m_line.is_expected(name) ? group : nullptr};
}

TOOL_VERB TOOL_GROUP::add_verb(const char* name, const char* help, TOOL_ACTION action, TOOL_SETTINGS_USE settings_use) {
    if (!m_app)
        return TOOL_VERB(nullptr);
    CLI::App* verb = m_app->add_subcommand(name, help);
    verb->fallthrough();
    verb->footer(VERB_FOOTER);
    m_line.m_actions.push_back({verb, std::move(action), settings_use});
    return TOOL_VERB(m_line.is_expected(name) ? verb : nullptr);
}

const TOOL_ACTION* TOOL_COMMAND_LINE::parse(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << m_app->help();
        throw TOOL_ERROR(TOOL_EXIT_USAGE, "");
    }
    try {
        m_app->parse(argc, argv);
    } catch (const CLI::Success& asked) {
        std::ostringstream text;
        m_app->exit(asked, text, std::cerr);
        TOOL_OUTPUT(false).write(text.str());
        return nullptr;
    } catch (const CLI::ParseError& error) {
        throw wrong_usage(*m_app, error);
    }
    const CLI::App* verb = &innermost(*m_app);
    const auto place = std::find_if(m_actions.begin(), m_actions.end(),
                                    [verb](const VERB_ACTION& action) { return action.verb == verb; });
    m_globals.is_settings_file_made = place->settings_use == TOOL_SETTINGS_USE::MAKES;
    return &place->action;
}

TOOL_VERB& TOOL_VERB::argument(const char* name, std::string& value, const char* help) {
    if (m_app)
        m_app->add_option(name, value, help)->required()->type_name("");
    return *this;
}

TOOL_VERB& TOOL_VERB::argument(const char* name, std::optional<std::string>& value, const char* help) {
    if (m_app)
        add_text(*m_app, name, value, help)->type_name("");
    return *this;
}

TOOL_VERB& TOOL_VERB::arguments(const char* name, std::vector<std::string>& values, const char* help) {
    if (m_app)
        m_app->add_option(name, values, help)->required()->type_name("");
    return *this;
}

TOOL_VERB& TOOL_VERB::option(const char* name, const char* placeholder, std::optional<std::string>& value,
                             const char* help) {
    if (m_app)
        add_text(*m_app, name, value, help)->type_name(placeholder);
    return *this;
}

TOOL_VERB& TOOL_VERB::options(const char* name, const char* placeholder, std::vector<std::string>& values,
                              const char* help) {
    if (m_app)
        m_app->add_option(name, values, help)->type_name(placeholder)->type_size(1)->allow_extra_args(false);
    return *this;
}

TOOL_VERB& TOOL_VERB::flag(const char* name, bool& value, const char* help) {
    if (m_app)
        m_app->add_flag(name, value, help);
    return *this;
}

TOOL_VERB& TOOL_VERB::footer(const char* text) {
    if (m_app)
        m_app->footer(std::string(text) + VERB_FOOTER);
    return *this;
}
