// What differs between two flash databases: edits that are known come back, and who answers is held against a plain
// scan.
#include "fixtures.h"
#include "tool_db_difference.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <set>

namespace {

using FLASHES = std::vector<TOVREN_SFL_FLASH_INFO>;
using RANDOM = std::mt19937;

unsigned int drawn(RANDOM& source, size_t bound) {
    return std::uniform_int_distribution<unsigned int>(0, static_cast<unsigned int>(bound) - 1)(source);
}

class DbDiff : public FLASH_TEST {
protected:
    TOOL_DB_FILE file_of(const FLASHES& flashes) {
        put_database(FLASH_FILE(flashes).bytes());
        return tool_read_db_file(database);
    }

    TOOL_DB_DIFFERENCE difference(const FLASHES& before, const FLASHES& after) {
        return tool_db_difference(file_of(before), file_of(after));
    }
};

// Flashes of which no two share a name or an identification.
FLASHES distinct_flashes(size_t count) {
    FLASHES flashes;
    for (size_t i = 0; i < count; ++i) {
        TOVREN_SFL_FLASH_INFO flash = make_flash("QX" + std::to_string(i));
        flash.memory_id = static_cast<BYTE>(i % 256);
        flash.memory_type = static_cast<BYTE>(i / 256);
        flashes.push_back(flash);
    }
    return flashes;
}

TEST_F(DbDiff, FindsNothingBetweenEqualDatabases) {
    EXPECT_TRUE(difference(distinct_flashes(40), distinct_flashes(40)).is_none());
}

TEST_F(DbDiff, FindsNothingBetweenEqualDatabasesWhoseRecordsAreAllTheSame) {
    const FLASHES flashes(12, make_flash("QX"));
    EXPECT_TRUE(difference(flashes, flashes).is_none());
}

TEST_F(DbDiff, FindsTheEditsThatWereMade) {
    for (unsigned int seed = 0; seed < 40; ++seed) {
        RANDOM source(seed);
        const FLASHES all = distinct_flashes(60);
        const FLASHES before(all.begin(), all.begin() + 50);
        FLASHES after;
        std::vector<size_t> removed;
        std::vector<size_t> added;
        std::set<size_t> changed; // positions after
        size_t spare = 50;
        for (size_t i = 0; i < before.size(); ++i) {
            const unsigned int edit = drawn(source, 10);
            if (edit == 0) {
                removed.push_back(i);
                continue;
            }
            if (edit == 1 && spare < all.size()) {
                added.push_back(after.size());
                after.push_back(all[spare++]);
            }
            after.push_back(before[i]);
            if (edit == 2) {
                changed.insert(after.size() - 1);
                after.back().sec_erase_time += 1;
            }
        }
        const TOOL_DB_DIFFERENCE found = difference(before, after);
        EXPECT_EQ(removed, found.removed) << "seed " << seed;
        EXPECT_EQ(added, found.added) << "seed " << seed;
        EXPECT_TRUE(found.moved.empty()) << "seed " << seed;
        std::set<size_t> found_changed;
        for (const TOOL_DB_CHANGE& change : found.changed) {
            found_changed.insert(change.records.after);
            EXPECT_EQ(std::vector<size_t>{24}, change.members); // sec_erase_time is the 25th member
        }
        EXPECT_EQ(changed, found_changed) << "seed " << seed;
    }
}

// Over all choices of records that keep their order: the most.
size_t most_in_order(const std::vector<size_t>& order) {
    size_t most = 0;
    for (unsigned int choice = 0; choice < 1U << order.size(); ++choice) {
        std::vector<size_t> chosen;
        for (size_t i = 0; i < order.size(); ++i)
            if ((choice >> i & 1) != 0)
                chosen.push_back(order[i]);
        if (std::is_sorted(chosen.begin(), chosen.end()))
            most = std::max(most, chosen.size());
    }
    return most;
}

TEST_F(DbDiff, CallsTheFewestRecordsMoved) {
    std::vector<size_t> order(6);
    std::iota(order.begin(), order.end(), 0);
    const FLASHES before = distinct_flashes(order.size());
    do {
        FLASHES after;
        for (const size_t i : order)
            after.push_back(before[i]);
        const TOOL_DB_DIFFERENCE found = difference(before, after);
        ASSERT_EQ(order.size() - most_in_order(order), found.moved.size());
        ASSERT_TRUE(found.changed.empty() && found.added.empty() && found.removed.empty());
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(DbDiff, PairsRecordsOfOneNameByTheirIdentification) {
    FLASHES before = {make_flash("QX"), no_default("QX"), no_default("QX")};
    before[1].memory_id = 0x19;
    before[2].memory_id = 0x20;
    FLASHES after = {before[0], before[2], before[1]};
    after[1].program_utime = 1;
    const TOOL_DB_DIFFERENCE found = difference(before, after);
    ASSERT_EQ(1U, found.changed.size());
    EXPECT_EQ(2U, found.changed[0].records.before);
    EXPECT_EQ(1U, found.changed[0].records.after);
    EXPECT_EQ(1U, found.moved.size());
}

TEST_F(DbDiff, DoesNotGuessWhichOfTwoRecordsAnotherNameBelongsTo) {
    FLASHES before = {make_flash("QXA"), make_flash("QXB")};
    FLASHES after = {make_flash("QXC")};
    const TOOL_DB_DIFFERENCE found = difference(before, after);
    EXPECT_EQ((std::vector<size_t>{0, 1}), found.removed);
    EXPECT_EQ(std::vector<size_t>{0}, found.added);
}

TEST_F(DbDiff, TakesANameInOtherLetterCaseForTheSame) {
    const TOOL_DB_DIFFERENCE found =
        difference({make_flash("QXA"), make_flash("QXB")}, {make_flash("qxa"), make_flash("QXB")});
    ASSERT_EQ(1U, found.changed.size());
    EXPECT_EQ(std::vector<size_t>{1}, found.changed[0].members); // device_name
}

// ---- who answers ----

// What a flash answers, by place; -1 where nothing is known.
using ANSWER = std::array<int, 256>;

ANSWER answer_of(const TOVREN_SFL_FLASH_INFO& flash) {
    ANSWER answer;
    answer.fill(-1);
    answer[flash.memory_id_index] = flash.memory_id;
    if (!flash.silicon_id) {
        answer[flash.mfc_id_index] = flash.mfc_id;
        if (flash.memory_type_index != 0xFF)
            answer[flash.memory_type_index] = flash.memory_type;
    }
    return answer;
}

bool is_matching(const TOVREN_SFL_FLASH_INFO& flash, bool by_silicon_id, const ANSWER& answer) {
    if (flash.silicon_id != by_silicon_id || answer[flash.memory_id_index] != flash.memory_id)
        return false;
    return by_silicon_id ||
           ((flash.memory_type_index == 0xFF || answer[flash.memory_type_index] == flash.memory_type) &&
            answer[flash.mfc_id_index] == flash.mfc_id);
}

// By name: which are distinct here. Empty for nobody.
std::string winner(const FLASHES& flashes, bool by_silicon_id, const ANSWER& answer) {
    for (const TOVREN_SFL_FLASH_INFO& flash : flashes)
        if (is_matching(flash, by_silicon_id, answer))
            return flash.device_name;
    return "";
}

// "before after" of each question to which another name answers now.
std::set<std::string> other_winners(const FLASHES& before, const FLASHES& after) {
    std::set<std::string> others;
    for (const FLASHES* side : {&before, &after}) {
        for (const TOVREN_SFL_FLASH_INFO& flash : *side) {
            const ANSWER answer = answer_of(flash);
            const std::string former = winner(before, flash.silicon_id, answer);
            const std::string present = winner(after, flash.silicon_id, answer);
            if (!former.empty() && !present.empty() && former != present)
                others.insert(former + ' ' + present);
        }
    }
    return others;
}

// Few bytes at few places, so that many share an identification or a part of one.
TOVREN_SFL_FLASH_INFO crowded_flash(RANDOM& source, size_t number) {
    TOVREN_SFL_FLASH_INFO flash = make_flash("QX" + std::to_string(number));
    flash.silicon_id = drawn(source, 5) == 0;
    flash.memory_id = static_cast<BYTE>(drawn(source, 3));
    flash.memory_type = static_cast<BYTE>(drawn(source, 2));
    flash.mfc_id = static_cast<BYTE>(drawn(source, 2));
    const std::array<std::array<BYTE, 3>, 4> places = {{{2, 1, 0}, {2, 0xFF, 0}, {1, 2, 0}, {0, 0xFF, 2}}};
    const auto& chosen = places[drawn(source, places.size())];
    flash.memory_id_index = chosen[0];
    flash.memory_type_index = chosen[1];
    flash.mfc_id_index = chosen[2];
    return flash;
}

TEST_F(DbDiff, TellsWhoAnswersAsAPlainScanDoes) {
    size_t told = 0;
    for (unsigned int seed = 0; seed < 150; ++seed) {
        RANDOM source(seed);
        FLASHES all;
        for (size_t i = 0; i < 14; ++i)
            all.push_back(crowded_flash(source, i));
        FLASHES before(all.begin(), all.begin() + 10);
        FLASHES after(all.begin() + 3, all.end());
        std::shuffle(after.begin(), after.end(), source);
        // Only names pair the records: none is left to a guess.
        const TOOL_DB_FILE file_before = file_of(before);
        const TOOL_DB_FILE file_after = file_of(after);
        TOOL_DB_PAIRING pairing;
        pairing.after_of.assign(before.size(), TOOL_DB_NO_RECORD);
        pairing.before_of.assign(after.size(), TOOL_DB_NO_RECORD);
        for (size_t i = 0; i < before.size(); ++i)
            for (size_t j = 0; j < after.size(); ++j)
                if (before[i].device_name == after[j].device_name) {
                    pairing.after_of[i] = j;
                    pairing.before_of[j] = i;
                }
        std::set<std::string> found;
        for (const TOOL_DB_ANSWER& other : tool_db_other_identified(file_before, file_after, pairing))
            found.insert(before[other.records.before].device_name + ' ' + after[other.records.after].device_name);
        ASSERT_EQ(other_winners(before, after), found) << "seed " << seed;
        told += found.size();
    }
    EXPECT_GT(told, 100U);
}

TEST_F(DbDiff, IgnoresARecordThatNoAnswerCanMatch) {
    TOVREN_SFL_FLASH_INFO impossible = make_flash("QXI");
    impossible.mfc_id_index = impossible.memory_id_index; // two bytes at one place
    const TOOL_DB_DIFFERENCE found = difference({make_flash("QX")}, {impossible, make_flash("QX")});
    EXPECT_TRUE(found.identified.empty());
    EXPECT_EQ(std::vector<size_t>{0}, found.added);
}

} // namespace
