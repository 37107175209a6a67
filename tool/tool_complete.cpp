// `tovren __complete`: the answer to a shell.
#include "tool_complete.h"

#include "host_text.h"
#include "tool_complete_values.h"
#include "tool_error.h"
#include "tool_output.h"
#include "tool_text.h"
#include "tovren_standalone_host.h"

#include <algorithm>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

namespace {

constexpr std::string_view VERB = "__complete";

// The host tells of malformed settings there, and loads warn.
void silence_standard_error() {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere >= 0)
        dup2(nowhere, STDERR_FILENO);
}

std::vector<std::string> words_of(int argc, const char* const* argv) {
    bool is_quoted = false;
    int first = 2;
    for (; first < argc && std::string_view(argv[first]) != "--"; ++first)
        is_quoted = is_quoted || std::string_view(argv[first]) == "--quoted";
    std::vector<std::string> words;
    for (int i = first + 1; i < argc; ++i)
        words.push_back(is_quoted ? tool_unquoted(argv[i]) : argv[i]);
    if (words.empty())
        words.emplace_back();
    return words;
}

void set_up(const TOOL_COMPLETION_SETUP& setup) {
    if (setup.db_root)
        TOVREN_STANDALONE_HOST::set_device_db_root(*setup.db_root);
    if (setup.settings)
        (void)TOVREN_STANDALONE_HOST::set_settings_file(*setup.settings);
    for (const std::string& setting : setup.set) {
        const size_t sign = setting.find('=');
        std::string name = setting.substr(0, sign);
        std::string value = sign == std::string::npos ? "" : setting.substr(sign + 1);
        gen_remove_leading_and_trailing_white_spaces(name);
        gen_remove_leading_and_trailing_white_spaces(value);
        TOVREN_STANDALONE_HOST::set_setting(name, value);
    }
}

bool begins(std::string_view word, const std::string& typed) {
    return word.size() >= typed.size() && tool_equal_ignoring_case(std::string(word.substr(0, typed.size())), typed);
}

// A line of the answer cannot hold it, and no terminal shall see it.
bool is_plain(const std::string& word) {
    return !word.empty() && tool_printable(word) == word;
}

std::string answer(const TOOL_COMPLETION_PLACE& place, TOOL_COMPLETION_VALUES values) {
    using KIND = TOOL_COMPLETION_VALUES::KIND;
    if (values.kind != KIND::WORDS)
        return (values.kind == KIND::FILES ? "files " : "folders ") + place.before + values.before + '\n';
    std::string text = "words\n";
    for (const TOOL_CANDIDATE& candidate : values.words) {
        if (begins(candidate.word, place.typed) && is_plain(candidate.word))
            text += place.before + candidate.word + '\t' + tool_printable(candidate.description) + '\n';
    }
    return text;
}

std::string answer(const TOOL_COMMAND_LINE& line, const std::vector<std::string>& words) {
    const TOOL_COMPLETION_PLACE place = tool_completion_place(line, words);
    if (place.value.empty())
        return answer(place, {TOOL_COMPLETION_VALUES::KIND::WORDS, place.words, ""});
    try {
        const TOOL_CAPTURE capture; // what loads print
        set_up(place.setup);
        return answer(place, tool_completion_values(place));
    } catch (const std::exception&) {
        return "words\n"; // a database that is refused has no names
    }
}

} // namespace

bool tool_is_completion(int argc, const char* const* argv) {
    return argc > 1 && argv[1] == VERB;
}

int tool_complete(const TOOL_COMMAND_LINE& line, int argc, const char* const* argv) {
    silence_standard_error();
    TOOL_OUTPUT(false).write(answer(line, words_of(argc, argv)));
    return TOOL_EXIT_DONE;
}
