// Which flash record answers: to an identification, and as the default of a name. Before and after.
//
// A record compares up to three bytes of what a flash answers. It matches an identification for certain where each of
// its bytes is among those of the identification: its places and bytes are a part of it. So the candidates are found by
// the parts of the identification, seven at most.
#include "host_text.h"
#include "tool_db_difference.h"
#include "tool_db_record.h"
#include "tool_flash_record.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <unordered_map>

namespace {

constexpr unsigned int NO_PLACE = 255; // of memory_type_index

// A place of the answer and the byte that is expected there.
using COMPARED = std::pair<unsigned int, unsigned int>;

struct IDENTIFICATION {
    bool is_silicon_id = false;
    std::vector<COMPARED> bytes; // by place; empty where none can match
};

using KEY = unsigned long long;

unsigned int number(const TOOL_DB_RECORD& record, size_t member) {
    return std::get<unsigned int>(record[member].value);
}

IDENTIFICATION identification_of(const TOOL_DB_RECORD& record) {
    static const size_t SILICON = tool_db_flash_member("silicon_id");
    const size_t memory = SILICON + 1; // each byte has its place behind it
    const size_t type = SILICON + 3;
    const size_t maker = SILICON + 5;
    IDENTIFICATION id;
    id.is_silicon_id = std::get<bool>(record[SILICON].value);
    std::map<unsigned int, unsigned int> bytes;
    bool is_possible = true;
    const auto add = [&](size_t member) {
        const unsigned int byte = number(record, member);
        is_possible = bytes.emplace(number(record, member + 1), byte).first->second == byte && is_possible;
    };
    add(memory);
    if (!id.is_silicon_id) {
        add(maker);
        if (number(record, type + 1) != NO_PLACE)
            add(type);
    }
    if (is_possible)
        id.bytes.assign(bytes.begin(), bytes.end());
    return id;
}

// Of the bytes that `part` has a bit for.
KEY key_of(const IDENTIFICATION& id, unsigned int part) {
    KEY key = id.is_silicon_id ? 3 : 2;
    for (size_t i = 0; i < id.bytes.size(); ++i)
        if ((part >> i & 1) != 0)
            key = key << 16 | id.bytes[i].first << 8 | id.bytes[i].second;
    return key;
}

unsigned int all_of(const IDENTIFICATION& id) {
    return (1U << id.bytes.size()) - 1;
}

const std::string& ini_of(const TOOL_DB_RECORD& record) {
    static const size_t INI = tool_db_flash_member("ini");
    return std::get<std::string>(record[INI].value);
}

bool is_always_shown(const TOOL_DB_RECORD& record) {
    return gen_stricmp(ini_of(record).c_str(), "NONE") == 0;
}

class ANSWERS {
public:
    explicit ANSWERS(const TOOL_DB_FILE& file) : m_records(file.records) {
        for (size_t i = 0; i < m_records.size(); ++i) {
            const IDENTIFICATION id = identification_of(m_records[i]);
            if (!id.bytes.empty())
                m_by_key[key_of(id, all_of(id))].push_back(i);
        }
    }

    // The positions of the records that it matches, in order.
    std::vector<size_t> candidates(const IDENTIFICATION& id) const {
        std::vector<size_t> found;
        for (unsigned int part = 1; part <= all_of(id); ++part)
            if (const auto place = m_by_key.find(key_of(id, part)); place != m_by_key.end())
                found.insert(found.end(), place->second.begin(), place->second.end());
        std::sort(found.begin(), found.end());
        return found;
    }

    void add_keys(const std::vector<size_t>& candidates, std::set<std::string>& keys) const {
        for (const size_t i : candidates) {
            if (is_always_shown(m_records[i]))
                return; // nothing behind it answers
            keys.insert(ini_of(m_records[i]));
        }
    }

    // The first that is shown while the switch of `key` is on.
    size_t winner(const std::vector<size_t>& candidates, const std::string& key) const {
        for (const size_t i : candidates)
            if (is_always_shown(m_records[i]) || (!key.empty() && ini_of(m_records[i]) == key))
                return i;
        return TOOL_DB_NO_RECORD;
    }

private:
    const std::vector<TOOL_DB_RECORD>& m_records;
    std::unordered_map<KEY, std::vector<size_t>> m_by_key;
};

// Compares the winners of one question, with no switch on and with each that may matter.
class COMPARISON {
public:
    COMPARISON(const TOOL_DB_FILE& before, const TOOL_DB_FILE& after, const TOOL_DB_PAIRING& pairing)
        : m_before(before), m_after(after), m_pairing(pairing) {}

    void compare(const IDENTIFICATION& id, const TOOL_DB_RECORD& asking) {
        const auto before = m_before.candidates(id);
        const auto after = m_after.candidates(id);
        const TOOL_DB_PAIR plain = add(before, after, "", asking);
        std::set<std::string> keys;
        m_before.add_keys(before, keys);
        m_after.add_keys(after, keys);
        for (const std::string& key : keys) {
            const TOOL_DB_PAIR keyed = {m_before.winner(before, key), m_after.winner(after, key)};
            if (keyed.before != plain.before || keyed.after != plain.after)
                add(before, after, key, asking);
        }
    }

    std::vector<TOOL_DB_ANSWER> m_found;

private:
    TOOL_DB_PAIR add(const std::vector<size_t>& before, const std::vector<size_t>& after, const std::string& key,
                     const TOOL_DB_RECORD& asking) {
        const TOOL_DB_PAIR winners = {m_before.winner(before, key), m_after.winner(after, key)};
        const bool is_answered = winners.before != TOOL_DB_NO_RECORD && winners.after != TOOL_DB_NO_RECORD;
        if (is_answered && !m_pairing.is_same(winners))
            m_found.push_back(
                {tool_flash_id_text(tool_db_flash(asking)), key.empty() ? "" : "PGM_ALLOW_" + key, winners});
        return winners;
    }

    ANSWERS m_before;
    ANSWERS m_after;
    const TOOL_DB_PAIRING& m_pairing;
};

// By name, letter case aside: the first default that is always shown, else the first.
std::map<std::string, size_t> defaults_of(const TOOL_DB_FILE& file) {
    static const size_t NAME = tool_db_flash_member("device_name");
    static const size_t DEFAULT = tool_db_flash_member("default_dev");
    std::map<std::string, size_t> defaults;
    for (size_t i = 0; i < file.records.size(); ++i) {
        const TOOL_DB_RECORD& record = file.records[i];
        if (!std::get<bool>(record[DEFAULT].value))
            continue;
        std::string name = std::get<std::string>(record[NAME].value);
        stl_tolower(name);
        const auto [place, is_new] = defaults.emplace(name, i);
        if (!is_new && is_always_shown(record) && !is_always_shown(file.records[place->second]))
            place->second = i;
    }
    return defaults;
}

} // namespace

std::vector<TOOL_DB_ANSWER> tool_db_other_identified(const TOOL_DB_FILE& before, const TOOL_DB_FILE& after,
                                                     const TOOL_DB_PAIRING& pairing) {
    COMPARISON comparison(before, after, pairing);
    std::set<KEY> asked;
    for (const TOOL_DB_FILE* file : {&after, &before}) {
        for (const TOOL_DB_RECORD& record : file->records) {
            const IDENTIFICATION id = identification_of(record);
            if (!id.bytes.empty() && asked.insert(key_of(id, all_of(id))).second)
                comparison.compare(id, record);
        }
    }
    return std::move(comparison.m_found);
}

std::vector<TOOL_DB_ANSWER> tool_db_other_defaults(const TOOL_DB_FILE& before, const TOOL_DB_FILE& after,
                                                   const TOOL_DB_PAIRING& pairing) {
    static const size_t NAME = tool_db_flash_member("device_name");
    const auto former = defaults_of(before);
    std::vector<TOOL_DB_ANSWER> others;
    for (const auto& [name, position] : defaults_of(after)) {
        const auto place = former.find(name);
        if (place != former.end() && !pairing.is_same({place->second, position}))
            others.push_back(
                {std::get<std::string>(after.records[position][NAME].value), "", {place->second, position}});
    }
    return others;
}
