// Names in a spelling that a table does not use.
#include "tool_name_spelling.h"

#include "host_text.h"
#include "tool_text.h"

#include <algorithm>
#include <set>

namespace {

using KIND = TOOL_SPELLING::KIND;

constexpr size_t SHORTEST_STEM = 5;
constexpr size_t SHORTEST_SUFFIX = 2;

bool is_separator(char c) {
    return c == ' ' || c == '\t' || c == '-' || c == '_' || c == '.' || c == '/';
}

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

// In upper case, without separators.
std::string folded(std::string name) {
    gen_ascii_toupper(name);
    std::erase_if(name, is_separator);
    return name;
}

// The same with the digits that two letters look like.
std::string without_look_alikes(const std::string& name) {
    std::string text = folded(name);
    std::replace(text.begin(), text.end(), 'O', '0');
    std::replace(text.begin(), text.end(), 'I', '1');
    return text;
}

// How much of `name` stands behind its first `count` characters that are no separators.
std::string behind(const std::string& name, size_t count) {
    size_t place = 0;
    for (; count > 0; ++place)
        count -= is_separator(name[place]) ? 0 : 1;
    while (place < name.size() && is_separator(name[place]))
        ++place;
    return name.substr(place);
}

// A separator stands behind the first `count` characters that are none.
bool is_separated(const std::string& name, size_t count) {
    size_t place = 0;
    for (; count > 0; ++place)
        count -= is_separator(name[place]) ? 0 : 1;
    return place < name.size() && is_separator(name[place]);
}

// What stands behind the stem may be a suffix: it is long enough, and does not go on a number.
bool is_suffix_behind(size_t stem_size, const std::string& wanted) {
    return stem_size >= SHORTEST_STEM && wanted.size() >= stem_size + SHORTEST_SUFFIX &&
           !(is_digit(wanted[stem_size - 1]) && is_digit(wanted[stem_size]));
}

// The names whose folded form `fits` accepts, each once.
template <typename FOLD, typename FITS>
std::vector<TOOL_SPELLING> select(const std::vector<std::string>& names, KIND kind, FOLD&& fold, FITS&& fits) {
    std::vector<TOOL_SPELLING> spellings;
    std::set<std::string> known;
    for (const std::string& name : names)
        if (fits(fold(name)) && known.insert(name).second)
            spellings.push_back({kind, name, "", false});
    return spellings;
}

std::vector<TOOL_SPELLING> with_suffix(const std::string& name, const std::vector<std::string>& names) {
    const std::string wanted = folded(name);
    size_t longest = 0;
    for (const std::string& known : names)
        if (const std::string stem = folded(known); stem.size() > longest && wanted.starts_with(stem))
            longest = stem.size();
    if (!is_suffix_behind(longest, wanted))
        return {};
    const std::string stem = wanted.substr(0, longest);
    auto spellings = select(names, KIND::SUFFIX, folded, [&stem](const std::string& known) { return known == stem; });
    const bool is_open = std::any_of(names.begin(), names.end(), [&stem](const std::string& known) {
        const std::string text = folded(known);
        return text.size() > stem.size() && text.starts_with(stem) && !is_digit(text[stem.size()]);
    });
    for (TOOL_SPELLING& spelling : spellings) {
        spelling.suffix = behind(name, longest);
        spelling.is_open = is_open && !is_separated(name, longest);
    }
    return spellings;
}

// The separators that one of the names has more of, for people; all of both where none has.
std::vector<std::string> separators_between(const std::string& left, const std::string& right) {
    const auto is_different = [&](char c) {
        return std::count(left.begin(), left.end(), c) != std::count(right.begin(), right.end(), c);
    };
    std::set<char> all;
    std::set<char> different;
    for (const char c : left + right) {
        if (is_separator(c))
            all.insert(c);
        if (is_separator(c) && is_different(c))
            different.insert(c);
    }
    std::vector<std::string> texts;
    for (const char c : different.empty() ? all : different)
        texts.push_back(c == ' ' ? "blanks" : tool_quoted(std::string(1, c)));
    return texts;
}

} // namespace

std::string TOOL_SPELLING::mistake(const std::string& name) const {
    if (kind == KIND::SUFFIX)
        return tool_quoted(suffix) +
               (is_open ? " behind it may be package, grade and packing, or make it another one, which is not known"
                        : " behind it is no part of the name here (package, grade, packing)");
    if (kind == KIND::LOOK_ALIKES)
        return "a letter O or I and a digit 0 or 1 are taken for each other";
    return "it differs only by " + tool_join(separators_between(name, meant), " and ");
}

std::vector<TOOL_SPELLING> tool_spellings(const std::string& name, const std::vector<std::string>& names) {
    const std::string wanted = folded(name);
    const bool is_known = std::any_of(names.begin(), names.end(), [&name](const std::string& known) {
        return tool_equal_ignoring_case(name, known);
    });
    if (wanted.empty() || is_known)
        return {};
    auto found = select(names, KIND::SEPARATORS, folded, [&](const std::string& known) { return known == wanted; });
    if (found.empty())
        found = select(names, KIND::LOOK_ALIKES, without_look_alikes,
                       [look = without_look_alikes(name)](const std::string& known) { return known == look; });
    return found.empty() ? with_suffix(name, names) : found;
}
