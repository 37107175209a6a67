// Device-name grammar: walking the naming maps, and the known names nearest to an unknown one.
#include "tovren_ddb_mgr.h"
#include "tovren_device_grammar_mgr.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string_view>
#include <utility>

static_assert(TOVREN_DEVICE_GRAMMAR_MGR::MAP_COUNT == TOVREN_DDB_GRAMMAR_NAMES.size());

namespace {

constexpr unsigned int MOST_EDITS = 2;
constexpr size_t MOST_NAMES = 5;
constexpr size_t SHORTEST_BEGINNING = 3;

size_t shared_beginning(std::string_view left, std::string_view right) {
    const auto count = std::min(left.size(), right.size());
    const auto end = left.begin() + static_cast<std::ptrdiff_t>(count);
    return static_cast<size_t>(std::mismatch(left.begin(), end, right.begin()).first - left.begin());
}

// Levenshtein's distance up to `most`, and some number above `most` for a larger one.
size_t edits_between(std::string_view left, std::string_view right, unsigned int most) {
    const size_t shared = shared_beginning(left, right);
    left.remove_prefix(shared);
    right.remove_prefix(shared);
    if (left.empty() || right.empty())
        return std::max(left.size(), right.size());
    if (most == 0)
        return 1;
    const size_t replaced = edits_between(left.substr(1), right.substr(1), most - 1);
    const size_t left_out = edits_between(left.substr(1), right, most - 1);
    const size_t put_in = edits_between(left, right.substr(1), most - 1);
    return 1 + std::min({replaced, left_out, put_in});
}

template <typename NAME>
void add_to_first(std::set<NAME>& names, NAME name) {
    names.insert(std::move(name));
    if (names.size() > MOST_NAMES)
        names.erase(std::prev(names.end()));
}

// Keeps the best of the names that it is shown.
class NEAR_NAMES {
public:
    explicit NEAR_NAMES(std::string wanted) : m_wanted(std::move(wanted)) {}

    void show(const std::string& name) {
        if (const size_t edits = edits_between(m_wanted, name, MOST_EDITS); edits <= MOST_EDITS)
            add_to_first(m_by_edits, {edits, name});
        const size_t beginning = shared_beginning(m_wanted, name);
        if (beginning < m_beginning)
            return;
        if (beginning > m_beginning)
            m_by_beginning.clear();
        m_beginning = beginning;
        add_to_first(m_by_beginning, name);
    }

    std::vector<std::string> get() const {
        if (m_by_edits.empty())
            return {m_by_beginning.begin(), m_by_beginning.end()};
        std::vector<std::string> names;
        for (const auto& [edits, name] : m_by_edits)
            names.push_back(name);
        return names;
    }

private:
    std::string m_wanted;
    std::set<std::pair<size_t, std::string>> m_by_edits;
    std::set<std::string> m_by_beginning; // all share this much
    size_t m_beginning = SHORTEST_BEGINNING;
};

} // namespace

std::string TOVREN_DEVICE_GRAMMAR_MGR::get_map_name(unsigned int map) {
    return map < MAP_COUNT ? TOVREN_DDB_GRAMMAR_NAMES[map] : "";
}

void TOVREN_DEVICE_GRAMMAR_MGR::visit_map(unsigned int map, const MAP_VISITOR& visit) {
    for (const auto& [key, contents] : *TOVREN_DDB_GRAMMAR_MGR::get_mgr()->get_map(TOVREN_DDB_GRAMMAR_ENUM(map)))
        visit(key, contents);
}

std::vector<std::string> TOVREN_DEVICE_GRAMMAR_MGR::get_near_names(std::string name) {
    standardize_name(name);
    NEAR_NAMES near(std::move(name));
    for (unsigned int map = 0; map < MAP_COUNT; ++map) {
        visit_map(map, [&](const std::string& key, const std::vector<std::string>& contents) {
            near.show(key);
            for (const std::string& content : contents)
                near.show(content);
        });
    }
    return near.get();
}
