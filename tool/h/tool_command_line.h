// The command line: `tovren [GLOBAL OPTIONS] GROUP VERB ...`.
//
// Groups describe their verbs here; the parser's own header, which compiles slowly, stays in one source.
//
//     void tool_add_flash_group(TOOL_COMMAND_LINE& line) {
//         TOOL_GROUP group = line.add_group("flash", "Flash memories");
//         const auto options = std::make_shared<SHOW_OPTIONS>();
//         group.add_verb("show", "One flash", [options](const TOOL_OUTPUT& output) { return show(*options, output); })
//             .argument("NAME", options->name, "Its name");
//     }
#ifndef TOOL_COMMAND_LINE_H
#define TOOL_COMMAND_LINE_H

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

class TOOL_OUTPUT;

namespace CLI {
class App;
}

// What a verb does. Returns the exit code.
using TOOL_ACTION = std::function<int(const TOOL_OUTPUT& output)>;

// The options that stand before any group, and are taken behind the verb too.
struct TOOL_GLOBALS {
    std::optional<std::string> db_root;
    std::optional<std::string> settings;
    std::vector<std::string> set;
    bool is_json = false;
    std::optional<std::string> debug;
    bool is_settings_file_made = false; // the verb makes the file of `settings` where there is none
};

// What a verb does with the settings file.
enum class TOOL_SETTINGS_USE : unsigned char { READS, MAKES };

// A verb that is being described. What is handed in by reference is filled by the parse.
class TOOL_VERB {
public:
    explicit TOOL_VERB(CLI::App* app) : m_app(app) {} // none: its description is not wanted

    TOOL_VERB& argument(const char* name, std::string& value, const char* help); // must be given
    TOOL_VERB& argument(const char* name, std::optional<std::string>& value, const char* help);
    TOOL_VERB& arguments(const char* name, std::vector<std::string>& values, const char* help); // one or more
    TOOL_VERB& option(const char* name, const char* placeholder, std::optional<std::string>& value, const char* help);
    // An option that may be repeated, one value each time.
    TOOL_VERB& options(const char* name, const char* placeholder, std::vector<std::string>& values, const char* help);
    TOOL_VERB& flag(const char* name, bool& value, const char* help);
    TOOL_VERB& footer(const char* text); // below the help

private:
    CLI::App* m_app;
};

class TOOL_COMMAND_LINE;

class TOOL_GROUP {
public:
    TOOL_GROUP(TOOL_COMMAND_LINE& line, CLI::App* app) : m_line(line), m_app(app) {} // none: as above

    TOOL_VERB add_verb(const char* name, const char* help, TOOL_ACTION action,
                       TOOL_SETTINGS_USE settings_use = TOOL_SETTINGS_USE::READS);
    TOOL_GROUP add_group(const char* name, const char* help); // `tovren GROUP GROUP VERB`

private:
    TOOL_COMMAND_LINE& m_line;
    CLI::App* m_app;
};

class TOOL_COMMAND_LINE {
public:
    explicit TOOL_COMMAND_LINE(const char* version);
    ~TOOL_COMMAND_LINE();
    TOOL_COMMAND_LINE(const TOOL_COMMAND_LINE&) = delete;
    TOOL_COMMAND_LINE& operator=(const TOOL_COMMAND_LINE&) = delete;

    // From here on describes only what these arguments can ask for: of a group or a verb whose name is not among them
    // just that name, and its help. A parse of the same arguments comes to the same.
    void expect(int argc, const char* const* argv);

    TOOL_GROUP add_group(const char* name, const char* help);
    TOOL_VERB add_verb(const char* name, const char* help, TOOL_ACTION action); // `tovren VERB`

    // The action that the arguments ask for; none after help or the version was printed. Wrong usage is thrown.
    const TOOL_ACTION* parse(int argc, char** argv);

    const TOOL_GLOBALS& globals() const { return m_globals; }

    // What is described: the groups, their verbs, the options of each.
    const CLI::App& tree() const { return *m_app; }

private:
    friend class TOOL_GROUP;

    struct VERB_ACTION {
        const CLI::App* verb;
        TOOL_ACTION action;
        TOOL_SETTINGS_USE settings_use;
    };

    void add_globals();
    bool is_expected(const char* name) const;

    std::optional<std::set<std::string, std::less<>>> m_expected; // all where there is none
    std::unique_ptr<CLI::App> m_app;
    std::vector<VERB_ACTION> m_actions;
    TOOL_GLOBALS m_globals;
};

#endif
