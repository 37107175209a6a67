// How a name is looked for: hops by hand, and over many names against the library's own answers, which take another
// way.
#include "tool_name_why.h"
#include "tovren_device_grammar_mgr.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

using HOP_TEXT = std::vector<std::string>; // question, map, name, answer

std::vector<HOP_TEXT> hops_of(const std::string& name) {
    std::vector<HOP_TEXT> texts;
    for (const TOOL_NAME_HOP& hop : tool_name_hops(tool_explain_name(name)))
        texts.push_back({hop.question, std::to_string(hop.map), hop.looked_for, hop.answer});
    return texts;
}

// The answer of the last hop of a question.
std::string last_answer(const std::vector<TOOL_NAME_HOP>& hops, const std::string& question) {
    std::string answer;
    for (const TOOL_NAME_HOP& hop : hops)
        if (hop.question == question)
            answer = hop.answer;
    return answer;
}

std::vector<std::string> some_names() {
    std::vector<std::string> names;
    unsigned int count = 0;
    for (unsigned int map = 0; map < TOVREN_DEVICE_GRAMMAR_MGR::MAP_COUNT; ++map)
        TOVREN_DEVICE_GRAMMAR_MGR::visit_map(map, [&](const std::string& key, const auto& contents) {
            if (count++ % 211 == 0)
                names.insert(names.end(), {key, contents.front(), contents.back()});
        });
    return names;
}

} // namespace

TEST(NameWhy, PartGoesThroughItsPackageToTheProgrammerName) {
    EXPECT_EQ(hops_of("ba50af672i7"), (std::vector<HOP_TEXT>{
                                          {"package-level name", "0", "BA50AF672I7", "BA50AF672"},
                                          {"programmer name", "1", "BA50AF672I7", ""},
                                          {"programmer name", "0", "BA50AF672I7", "BA50AF672"},
                                          {"programmer name", "1", "BA50AF672", "BA50AF672"},
                                          {"programmer part file", "2", "BA50AF672", "BA50X"},
                                          {"programmer family file", "3", "BA50AF672", "BRONTA_FAM"},
                                          {"device part file", "4", "BA50A", "BA50X"},
                                          {"device family file", "5", "BA50A", "BRONTA_FAM"},
                                          {"family file of the part file", "6", "BA50X", ""},
                                          {"family", "7", "BA50AF672I7", ""},
                                          {"family", "2", "BA50AF672I7", ""},
                                          {"family", "4", "BA50AF672I7", ""},
                                      }));
}

TEST(NameWhy, FamilyOfAPackageIsThatOfItsPartFile) {
    const auto hops = hops_of("BA50AF672");
    const std::vector<HOP_TEXT> last(hops.end() - 3, hops.end());
    EXPECT_EQ(last, (std::vector<HOP_TEXT>{{"family", "7", "BA50AF672", ""},
                                           {"family", "2", "BA50AF672", "BA50X"},
                                           {"family", "7", "BA50X", "BRONTA-1"}}));
}

TEST(NameWhy, HopCountsTheNamesUnderItsKey) {
    const auto hops = tool_name_hops(tool_explain_name("BA50AF672I7"));
    EXPECT_EQ(hops.at(0).count, 4U); // BA50AF672C7, BA50AF672I7 and both with N
}

TEST(NameWhy, MissedHopNamesWhatIsNear) {
    const auto hops = tool_name_hops(tool_explain_name("BA50AF672I8"));
    EXPECT_FALSE(hops.at(0).is_found());
    EXPECT_EQ(hops[0].near.front(), "BA50AF672I7");
    EXPECT_EQ(hops[0].count, 16338U); // all parts of map 0
}

TEST(NameWhy, LastHopIsTheLibrarysAnswer) {
    const auto names = some_names();
    ASSERT_GT(names.size(), 50U);
    for (const std::string& name : names) {
        const TOOL_NAME_ANSWERS answers = tool_explain_name(name);
        const auto hops = tool_name_hops(answers);
        const auto or_name = [&name](const std::string& answer) { return answer.empty() ? name : answer; };
        EXPECT_EQ(or_name(last_answer(hops, "package-level name")), answers.package_name) << name;
        EXPECT_EQ(or_name(last_answer(hops, "programmer name")), answers.pgm_name) << name;
        EXPECT_EQ(last_answer(hops, "programmer part file"), answers.pgm_part_pcf) << name;
        EXPECT_EQ(last_answer(hops, "programmer family file"), answers.pgm_family_pcf) << name;
        EXPECT_EQ(last_answer(hops, "family"), answers.family) << name;
        EXPECT_EQ(last_answer(hops, "device part file"), answers.resolved.dev_part_pcf) << name;
        const std::string file = last_answer(hops, "device family file");
        const bool is_family_file = file.empty() && answers.resolved.dev_family_pcf == name; // leads to itself
        EXPECT_EQ(is_family_file ? name : file, answers.resolved.dev_family_pcf) << name;
    }
}

TEST(NameWhy, EveryMapHasAPurpose) {
    for (unsigned int map = 0; map < TOVREN_DEVICE_GRAMMAR_MGR::MAP_COUNT; ++map)
        EXPECT_STRNE(tool_map_purpose(map), "") << map;
    EXPECT_STREQ(tool_map_purpose(TOVREN_DEVICE_GRAMMAR_MGR::MAP_COUNT), "");
}

TEST(NameWhy, DashesAreNamedAsTheMistake) {
    const auto spellings = tool_known_spellings("BA50A-F672-I7");
    ASSERT_EQ(spellings.size(), 1U);
    EXPECT_EQ(spellings[0].meant, "BA50AF672I7");
    EXPECT_EQ(spellings[0].mistake("BA50A-F672-I7"), "it differs only by \"-\"");
}

TEST(NameWhy, SuffixIsSeenBehindPartsOnly) {
    const auto packed = tool_known_spellings("BA50AF672I7-TR");
    ASSERT_EQ(packed.size(), 1U);
    EXPECT_EQ(packed[0].meant, "BA50AF672I7");
    EXPECT_EQ(packed[0].suffix, "TR");
    EXPECT_TRUE(tool_known_spellings("BA50AF672X9").empty()); // BA50AF672 is a package
}
