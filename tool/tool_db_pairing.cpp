// Which record of one database is which of the other: pairs by ever weaker keys, then the fewest that have moved.
#include "host_text.h"
#include "tool_db_difference.h"
#include "tool_db_record.h"

#include <algorithm>
#include <unordered_map>

namespace {

using KEY_OF = std::string (*)(const TOOL_DB_RECORD& record);

void append(std::string& key, const TOOL_DB_VALUE& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        key += static_cast<char>(text->size());
        key += *text;
    } else if (const auto* flag = std::get_if<bool>(&value)) {
        key += *flag ? '1' : '0';
    } else {
        for (unsigned int rest = std::get<unsigned int>(value), i = 0; i < 4; ++i, rest >>= 8)
            key += static_cast<char>(rest & 0xFF);
    }
}

std::string whole_key(const TOOL_DB_RECORD& record) {
    std::string key;
    for (const TOOL_DB_MEMBER& member : record)
        append(key, member.value);
    return key;
}

std::string folded(const TOOL_DB_VALUE& value) {
    std::string text = std::get<std::string>(value);
    stl_tolower(text);
    return text;
}

std::string flash_name_key(const TOOL_DB_RECORD& record) {
    static const size_t NAME = tool_db_flash_member("device_name");
    return folded(record[NAME].value);
}

// silicon_id to mfc_id_index.
std::string flash_id_key(const TOOL_DB_RECORD& record) {
    static const size_t FIRST = tool_db_flash_member("silicon_id");
    static const size_t LAST = tool_db_flash_member("mfc_id_index");
    std::string key;
    for (size_t i = FIRST; i <= LAST; ++i)
        append(key, record[i].value);
    return key;
}

std::string flash_key(const TOOL_DB_RECORD& record) {
    return flash_id_key(record) + flash_name_key(record);
}

// family, pcf, device, part.
std::string device_key(const TOOL_DB_RECORD& record) {
    std::string key;
    for (const size_t i : {size_t{0}, size_t{2}, size_t{3}})
        append(key, record[i].value);
    return key + folded(record[1].value);
}

class PAIRER {
public:
    PAIRER(const TOOL_DB_FILE& before, const TOOL_DB_FILE& after) : m_before(before), m_after(after) {
        m_pairing.after_of.assign(before.records.size(), TOOL_DB_NO_RECORD);
        m_pairing.before_of.assign(after.records.size(), TOOL_DB_NO_RECORD);
    }

    TOOL_DB_PAIRING pair() {
        pair_by(whole_key, false);
        if (m_before.kind == "device") {
            pair_by(device_key, false);
        } else {
            pair_by(flash_key, false);
            pair_by(flash_name_key, true);
            pair_by(flash_id_key, true);
        }
        find_moved();
        return std::move(m_pairing);
    }

private:
    struct GROUP {
        std::vector<size_t> before;
        std::vector<size_t> after;
    };

    // Those of one key in their order; with `only_single`, where there is no more than one on either side.
    void pair_by(KEY_OF key_of, bool only_single) {
        std::unordered_map<std::string, GROUP> groups;
        for (size_t i = 0; i < m_pairing.after_of.size(); ++i)
            if (m_pairing.after_of[i] == TOOL_DB_NO_RECORD)
                groups[key_of(m_before.records[i])].before.push_back(i);
        for (size_t i = 0; i < m_pairing.before_of.size(); ++i)
            if (m_pairing.before_of[i] == TOOL_DB_NO_RECORD)
                groups[key_of(m_after.records[i])].after.push_back(i);
        for (const auto& [key, group] : groups)
            if (!only_single || (group.before.size() == 1 && group.after.size() == 1))
                pair_up(group);
    }

    void pair_up(const GROUP& group) {
        for (size_t i = 0; i < std::min(group.before.size(), group.after.size()); ++i) {
            m_pairing.after_of[group.before[i]] = group.after[i];
            m_pairing.before_of[group.after[i]] = group.before[i];
        }
    }

    // All but a longest run of pairs whose positions grow in both databases.
    void find_moved() {
        std::vector<size_t> ends;                                                  // of the best run of each length
        std::vector<size_t> former(m_pairing.before_of.size(), TOOL_DB_NO_RECORD); // the one before it in its run
        for (size_t after = 0; after < m_pairing.before_of.size(); ++after) {
            const size_t before = m_pairing.before_of[after];
            if (before == TOOL_DB_NO_RECORD)
                continue;
            const auto place = std::lower_bound(ends.begin(), ends.end(), before, [this](size_t end, size_t value) {
                return m_pairing.before_of[end] < value;
            });
            if (place != ends.begin())
                former[after] = *(place - 1);
            if (place == ends.end())
                ends.push_back(after);
            else
                *place = after;
        }
        std::vector<bool> has_stayed(m_pairing.before_of.size(), false);
        for (size_t i = ends.empty() ? TOOL_DB_NO_RECORD : ends.back(); i != TOOL_DB_NO_RECORD; i = former[i])
            has_stayed[i] = true;
        for (size_t after = 0; after < has_stayed.size(); ++after)
            if (!has_stayed[after] && m_pairing.before_of[after] != TOOL_DB_NO_RECORD)
                m_pairing.moved.push_back({m_pairing.before_of[after], after});
    }

    const TOOL_DB_FILE& m_before;
    const TOOL_DB_FILE& m_after;
    TOOL_DB_PAIRING m_pairing;
};

} // namespace

bool TOOL_DB_PAIRING::is_same(TOOL_DB_PAIR records) const {
    if (records.before == TOOL_DB_NO_RECORD)
        return records.after == TOOL_DB_NO_RECORD;
    return after_of[records.before] == records.after && records.after != TOOL_DB_NO_RECORD;
}

TOOL_DB_PAIRING tool_db_pairing(const TOOL_DB_FILE& before, const TOOL_DB_FILE& after) {
    return PAIRER(before, after).pair();
}
