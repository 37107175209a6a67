// What differs between two databases of one kind.
#include "tool_db_difference.h"

namespace {

size_t record_at(unsigned int position) {
    return position == INVALID_DWORD ? TOOL_DB_NO_RECORD : position;
}

std::vector<TOOL_DB_SERVED> other_served(const TOOL_DB_FILE& before, const TOOL_DB_FILE& after,
                                         const TOOL_DB_PAIRING& pairing) {
    std::vector<TOOL_DB_SERVED> others;
    for (size_t table = 0; table < after.tables.size(); ++table) {
        const auto& former = before.tables[table].positions; // both of this host's catalogue, so of one size
        const auto& present = after.tables[table].positions;
        for (unsigned int number = 0; number < present.size(); ++number) {
            const TOOL_DB_PAIR records = {record_at(former[number]), record_at(present[number])};
            if (!pairing.is_same(records))
                others.push_back({after.tables[table].name, number, records});
        }
    }
    return others;
}

std::vector<size_t> other_members(const TOOL_DB_RECORD& before, const TOOL_DB_RECORD& after) {
    std::vector<size_t> members;
    for (size_t i = 0; i < after.size(); ++i)
        if (before[i].value != after[i].value)
            members.push_back(i);
    return members;
}

std::vector<size_t> unpaired(const std::vector<size_t>& partners) {
    std::vector<size_t> positions;
    for (size_t i = 0; i < partners.size(); ++i)
        if (partners[i] == TOOL_DB_NO_RECORD)
            positions.push_back(i);
    return positions;
}

} // namespace

bool TOOL_DB_DIFFERENCE::is_none() const {
    return !has_other_md5 && removed.empty() && added.empty() && changed.empty() && moved.empty() &&
           identified.empty() && defaults.empty() && served.empty();
}

TOOL_DB_DIFFERENCE tool_db_difference(const TOOL_DB_FILE& before, const TOOL_DB_FILE& after) {
    TOOL_DB_PAIRING pairing = tool_db_pairing(before, after);
    TOOL_DB_DIFFERENCE difference;
    difference.has_other_md5 = before.md5 != after.md5;
    difference.removed = unpaired(pairing.after_of);
    difference.added = unpaired(pairing.before_of);
    for (size_t i = 0; i < pairing.before_of.size(); ++i) {
        const size_t former = pairing.before_of[i];
        if (former == TOOL_DB_NO_RECORD)
            continue;
        auto members = other_members(before.records[former], after.records[i]);
        if (!members.empty())
            difference.changed.push_back({{former, i}, std::move(members)});
    }
    if (after.kind == "device") {
        difference.served = other_served(before, after, pairing);
    } else {
        difference.identified = tool_db_other_identified(before, after, pairing);
        difference.defaults = tool_db_other_defaults(before, after, pairing);
    }
    difference.moved = std::move(pairing.moved);
    return difference;
}
