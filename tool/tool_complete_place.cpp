// Walking the parser's tree along the words of a line that is being typed.
#include "tool_complete_place.h"

#include "tool_command_line.h"

#include <algorithm>
#include <CLI/CLI.hpp>
#include <cstdlib>

namespace {

bool is_flag(const CLI::Option& option) {
    return option.get_items_expected_max() == 0;
}

bool takes_several(const CLI::Option& option) {
    return option.get_items_expected_max() > 1;
}

std::string long_name(const CLI::Option& option) {
    return option.get_lnames().empty() ? "" : "--" + option.get_lnames().front();
}

const CLI::Option* find_option(const CLI::App* app, const std::string& name) {
    for (; app; app = app->get_parent())
        if (const CLI::Option* const option = app->get_option_no_throw(name))
            return option;
    return nullptr;
}

const CLI::App* find_verb(const CLI::App& app, const std::string& name) {
    const auto found = app.get_subcommands([&name](const CLI::App* verb) { return verb->get_name() == name; });
    return found.empty() ? nullptr : found.front();
}

std::vector<const CLI::Option*> positionals(const CLI::App& app) {
    return app.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

// The state of the walk.
class WALK {
public:
    explicit WALK(const CLI::App& app) : m_app(&app) {}

    void take(const std::string& word);
    void stop_at(const std::string& word);
    TOOL_COMPLETION_PLACE& place() { return m_place; }

private:
    void take_option(const std::string& word);
    void take_word(const std::string& word);
    void take_value(const CLI::Option& option, const std::string& text);
    void stop_at_value(const CLI::Option& option, const std::string& typed);
    void stop_at_option(const std::string& word);
    void stop_at_word();
    void offer_options();
    void offer_verbs(const std::vector<const CLI::App*>& verbs);

    const CLI::App* m_app;
    const CLI::Option* m_pending = nullptr; // its value comes next
    bool m_is_past_options = false;         // behind "--"
    std::vector<const CLI::Option*> m_used;
    TOOL_COMPLETION_PLACE m_place;
};

void WALK::take(const std::string& word) {
    if (m_pending)
        take_value(*m_pending, word);
    else if (m_is_past_options || word.size() < 2 || word[0] != '-')
        take_word(word);
    else if (word == "--")
        m_is_past_options = true;
    else
        take_option(word);
}

void WALK::take_option(const std::string& word) {
    const size_t sign = word.find('=');
    const CLI::Option* const option = find_option(m_app, word.substr(0, sign));
    if (!option)
        return;
    m_used.push_back(option);
    if (is_flag(*option))
        return;
    if (sign == std::string::npos)
        m_pending = option;
    else
        take_value(*option, word.substr(sign + 1));
}

void WALK::take_value(const CLI::Option& option, const std::string& text) {
    m_pending = nullptr;
    if (option.check_lname("db-root"))
        m_place.setup.db_root = text;
    else if (option.check_lname("settings"))
        m_place.setup.settings = text;
    else if (option.check_lname("set"))
        m_place.setup.set.push_back(text);
}

void WALK::take_word(const std::string& word) {
    const CLI::App* const verb = m_is_past_options ? nullptr : find_verb(*m_app, word);
    if (!verb) {
        m_place.arguments.push_back(word);
        return;
    }
    m_app = verb;
    m_place.command += (m_place.command.empty() ? "" : " ") + word;
}

void WALK::stop_at(const std::string& word) {
    m_place.typed = word;
    if (m_pending)
        stop_at_value(*m_pending, word);
    else if (m_is_past_options || word.empty() || word[0] != '-')
        stop_at_word();
    else
        stop_at_option(word);
}

void WALK::stop_at_value(const CLI::Option& option, const std::string& typed) {
    m_place.typed = typed;
    m_place.value = option.get_positional() ? option.get_name(true) : long_name(option);
    m_place.placeholder = option.get_positional() ? m_place.value : option.get_type_name();
}

void WALK::stop_at_option(const std::string& word) {
    const size_t sign = word.find('=');
    if (sign == std::string::npos) {
        offer_options();
        return;
    }
    const CLI::Option* const option = find_option(m_app, word.substr(0, sign));
    if (!option || is_flag(*option))
        return;
    m_place.before = word.substr(0, sign + 1);
    stop_at_value(*option, word.substr(sign + 1));
}

void WALK::stop_at_word() {
    const auto verbs = m_app->get_subcommands([](const CLI::App* verb) { return !verb->get_group().empty(); });
    if (!verbs.empty()) {
        if (!m_is_past_options)
            offer_verbs(verbs);
        return;
    }
    const auto asked = positionals(*m_app);
    const size_t index = m_place.arguments.size();
    if (index < asked.size())
        stop_at_value(*asked[index], m_place.typed);
    else if (!asked.empty() && takes_several(*asked.back()))
        stop_at_value(*asked.back(), m_place.typed);
    else if (!m_is_past_options)
        offer_options();
}

void WALK::offer_verbs(const std::vector<const CLI::App*>& verbs) {
    if (m_place.arguments.empty()) // behind a word that is no verb there is nothing to say
        for (const CLI::App* verb : verbs)
            m_place.words.push_back({verb->get_name(), verb->get_description()});
}

// The verb's own ahead of those of its groups. One that is given and counts once is not offered again.
void WALK::offer_options() {
    for (const CLI::App* app = m_app; app; app = app->get_parent()) {
        for (const CLI::Option* option : app->get_options()) {
            const std::string name = long_name(*option);
            const bool is_known = std::any_of(m_place.words.begin(), m_place.words.end(),
                                              [&name](const TOOL_CANDIDATE& known) { return known.word == name; });
            const bool is_used = std::find(m_used.begin(), m_used.end(), option) != m_used.end();
            if (!name.empty() && !option->get_group().empty() && !is_known && (!is_used || takes_several(*option)))
                m_place.words.push_back({name, option->get_description()});
        }
    }
}

bool is_name_byte(char byte) {
    return byte == '_' || (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

// Takes a word apart that was typed in a shell.
class UNQUOTING {
public:
    explicit UNQUOTING(const std::string& typed) : m_typed(typed) {}

    std::string run() {
        if (m_typed == "~" || m_typed.starts_with("~/"))
            m_at = add_variable("HOME", 1);
        while (m_at < m_typed.size())
            step();
        return m_plain;
    }

private:
    void step() {
        const char byte = m_typed[m_at++];
        if (m_quote == '\'' ? byte == '\'' : m_quote == '"' ? byte == '"' : byte == '\'' || byte == '"')
            m_quote = m_quote == '\0' ? byte : '\0';
        else if (byte == '\\' && m_quote != '\'' && m_at < m_typed.size() && is_escaped(m_typed[m_at]))
            m_plain += m_typed[m_at++];
        else if (byte == '$' && m_quote != '\'')
            take_variable();
        else
            m_plain += byte;
    }

    bool is_escaped(char byte) const {
        return m_quote == '\0' || byte == '"' || byte == '\\' || byte == '$' || byte == '`';
    }

    void take_variable() {
        const bool is_braced = m_at < m_typed.size() && m_typed[m_at] == '{';
        const size_t begin = m_at + (is_braced ? 1 : 0);
        size_t end = begin;
        while (end < m_typed.size() && is_name_byte(m_typed[end]))
            ++end;
        const bool is_closed = !is_braced || (end < m_typed.size() && m_typed[end] == '}');
        if (begin == end || !is_closed)
            m_plain += '$';
        else
            m_at = add_variable(m_typed.substr(begin, end - begin), end + (is_braced ? 1 : 0));
    }

    size_t add_variable(const std::string& name, size_t next) {
        const char* const value = std::getenv(name.c_str());
        m_plain += value ? value : "";
        return next;
    }

    const std::string& m_typed;
    size_t m_at = 0;
    char m_quote = '\0'; // the open one
    std::string m_plain;
};

} // namespace

TOOL_COMPLETION_PLACE tool_completion_place(const TOOL_COMMAND_LINE& line, const std::vector<std::string>& words) {
    WALK walk(line.tree());
    for (size_t i = 0; i + 1 < words.size(); ++i)
        walk.take(words[i]);
    walk.stop_at(words.back());
    return std::move(walk.place());
}

std::string tool_unquoted(const std::string& typed) {
    return UNQUOTING(typed).run();
}
