// The fields and the rules of a stored definition: every member at its limits and one past them.
#include "external_flash.h"

namespace {

using M = TOVREN_FLASH_MANAGER;
using FlashRules = EXTERNAL_FLASH_TEST;

// ---- fields ----

constexpr size_t TEXT_FIELDS[] = {1, 2, 12, 33};
constexpr size_t FLAG_FIELDS[] = {3, 11, 13, 14, 15, 16, 17, 18, 22, 23, 32};
constexpr size_t BYTE_FIELDS[] = {4, 5, 6, 7, 8, 9, 10, 19, 27, 28, 29, 30, 31};
constexpr size_t DWORD_FIELDS[] = {20, 21, 24, 25, 26};

class FlashFields : public EXTERNAL_FLASH_TEST {
protected:
    // Whether assign_ini takes this text as the field.
    bool is_taken(size_t number, const std::string& text) {
        manager.m_ext_flash_info = TOVREN_SFL_FLASH_INFO();
        return manager.assign_ini(DEFINITION().with(number, text).fields);
    }

    // The member's value then.
    std::string value_of(size_t number) {
        const MEMBER member = members_of(manager.m_ext_flash_info).at(number - 1);
        return member.tag == TAG_TEXT ? member.text : std::to_string(member.number);
    }
};

TEST_F(FlashFields, TakeTextsAsTheyAre) {
    for (const size_t number : TEXT_FIELDS) {
        for (const std::string& text : {std::string(), std::string("a b"), std::string(300, 'X'), std::string("#;")}) {
            EXPECT_TRUE(is_taken(number, text)) << number;
            EXPECT_EQ(text, value_of(number)) << number;
        }
    }
}

TEST_F(FlashFields, TakeFlagsOfZeroAndOneOnly) {
    for (const size_t number : FLAG_FIELDS) {
        for (const char* text : {"0", "1"}) {
            EXPECT_TRUE(is_taken(number, text)) << number;
            EXPECT_EQ(text, value_of(number)) << number;
        }
        for (const char* text : {"", "2", "-1", "Y", "01", "+1"})
            EXPECT_FALSE(is_taken(number, text)) << number << " " << text;
    }
}

TEST_F(FlashFields, TakeBytesUpTo255InTheirLow32Bits) {
    for (const size_t number : BYTE_FIELDS) {
        for (const auto& [text, value] : {std::pair{"0", "0"}, {"255", "255"}, {"", "0"}, {"4294967297", "1"}}) {
            EXPECT_TRUE(is_taken(number, text)) << number << " " << text;
            EXPECT_EQ(value, value_of(number)) << number << " " << text;
        }
        for (const char* text : {"256", "-1", "4294967295", "9223372036854775807"})
            EXPECT_FALSE(is_taken(number, text)) << number << " " << text;
    }
}

TEST_F(FlashFields, TakeDwordsOfAnyValueCutTo32Bits) {
    for (const size_t number : DWORD_FIELDS) {
        for (const auto& [text, value] : {std::pair{"0", "0"},
                                          {"4294967295", "4294967295"},
                                          {"-1", "4294967295"},
                                          {"-2147483648", "2147483648"},
                                          {"4294967296", "0"}}) {
            EXPECT_TRUE(is_taken(number, text)) << number << " " << text;
            EXPECT_EQ(value, value_of(number)) << number << " " << text;
        }
    }
}

TEST_F(FlashFields, MayStandInAPlainArray) {
    const auto fields = DEFINITION().with(2, "QX77").fields;
    manager.m_ext_flash_info = TOVREN_SFL_FLASH_INFO();
    EXPECT_TRUE(manager.assign_ini(fields.data()));
    EXPECT_EQ("QX77", manager.m_ext_flash_info.device_name);
}

TEST_F(FlashFields, AreConvertedUpToTheFirstThatDoesNotFit) {
    manager.m_ext_flash_info = TOVREN_SFL_FLASH_INFO();
    EXPECT_FALSE(manager.assign_ini(DEFINITION().with(5, "256").fields));
    EXPECT_EQ("QX25", manager.m_ext_flash_info.device_name);
    EXPECT_EQ(24, manager.m_ext_flash_info.memory_id);
    EXPECT_EQ(0, manager.m_ext_flash_info.memory_type);
    EXPECT_EQ("", manager.m_ext_flash_info.asc_voltage);
}

TEST_F(FlashFields, ThatDoNotFitLeaveTheRecordEmpty) {
    for (const size_t number : FLAG_FIELDS)
        EXPECT_FALSE(is_applied(DEFINITION().with(number, "2"))) << number;
    for (const size_t number : BYTE_FIELDS)
        EXPECT_FALSE(is_applied(DEFINITION().with(number, "256"))) << number;
}

// ---- the rules ----

struct RULE_ROW {
    size_t rule; // from 0
    size_t number;
    const char* good;
    const char* bad;
};

// Each limit from both sides.
constexpr RULE_ROW RULE_ROWS[] = {
    {0, 4, "1", "0"},
    {0, 4, "255", "0"},
    {0, 5, "2", "3"},
    {0, 5, "2", "255"},
    {1, 7, "255", "3"},
    {1, 7, "1", "2"}, // memory_id_index
    {1, 7, "255", "254"},
    {2, 9, "0", "3"},
    {2, 9, "255", "2"}, // memory_id_index
    {2, 9, "255", "1"}, // memory_type_index
    {2, 9, "255", "254"},
    {3, 10, "16", "0"},
    {3, 10, "16", "15"},
    {3, 10, "18", "17"},
    {3, 10, "20", "19"},
    {3, 10, "21", "23"},
    {3, 10, "22", "26"},
    {3, 10, "24", "31"},
    {3, 10, "25", "33"},
    {3, 10, "32", "64"}, // a shift by 64 is one by 0
    {3, 10, "32", "80"}, // and by 80 one by 16
    {3, 10, "32", "255"},
    {4, 19, "1", "0"},
    {4, 19, "255", "0"},
    {5, 20, "1048576", "0"},
    {5, 20, "3145728", "1048575"},
    {5, 20, "-2147483648", "-1"},
    {5, 20, "-1048576", "1048577"},
    {5, 21, "1024", "0"},
    {5, 21, "3072", "1023"},
    {5, 21, "-1024", "1025"},
    {6, 24, "1", "0"},
    {6, 24, "900", "901"},
    {6, 25, "1", "0"},
    {6, 25, "60", "61"},
    {6, 26, "1000", "999"},
    {6, 26, "1000000", "1000001"},
    {6, 26, "1000", "-1"},
    {7, 30, "31", "32"},
    {7, 30, "0", "254"},
    {7, 30, "255", "128"},
};

// "11111111": a digit for each rule.
std::string verdicts(const TOVREN_SFL_FLASH_INFO& record) {
    std::string digits;
    for (const TOVREN_FLASH_RULE& rule : M::get_flash_rules())
        digits += rule.holds(record) ? '1' : '0';
    return digits;
}

TEST_F(FlashRules, ObeysEachRuleAtItsLimits) {
    for (const RULE_ROW& row : RULE_ROWS) {
        EXPECT_TRUE(is_applied(DEFINITION().with(row.number, row.good))) << row.number << " " << row.good;
        EXPECT_EQ("11111111", verdicts(manager.m_ext_flash_info));
        EXPECT_FALSE(is_applied(DEFINITION().with(row.number, row.bad))) << row.number << " " << row.bad;
    }
}

TEST_F(FlashRules, BreaksTheRuleThatTheListNames) {
    for (const RULE_ROW& row : RULE_ROWS) {
        ASSERT_TRUE(manager.assign_ini(DEFINITION().with(row.number, row.bad).fields));
        EXPECT_EQ('0', verdicts(manager.m_ext_flash_info)[row.rule]) << row.number << " " << row.bad;
    }
}

TEST_F(FlashRules, AcceptsAllEightCodesAndNoOther) {
    std::string accepted;
    for (int code = 0; code < 256; ++code)
        if (is_applied(DEFINITION().with(10, std::to_string(code))))
            accepted += std::to_string(code) + " ";
    EXPECT_EQ("16 18 20 21 22 24 25 32 ", accepted);
}

TEST_F(FlashRules, TakesAMakersIndexThatOnlyTheTypeSharesAsNone) {
    EXPECT_TRUE(is_applied(DEFINITION().with(7, "255").with(9, "255")));
    EXPECT_TRUE(is_applied(DEFINITION().with(7, "255").with(9, "1")));
    EXPECT_FALSE(is_applied(DEFINITION().with(7, "255").with(9, "2")));
}

TEST_F(FlashRules, HasNoOtherLimits) {
    EXPECT_TRUE(is_applied(DEFINITION().with(1, "").with(33, std::string(40, 'V')).with(12, "").with(8, "0")));
    EXPECT_TRUE(is_applied(DEFINITION().with(2, std::string(40, 'N'))));
}

TEST_F(FlashRules, HasATextForEachRule) {
    std::string texts;
    for (const TOVREN_FLASH_RULE& rule : M::get_flash_rules())
        texts += std::string(rule.text) + "\n";
    EXPECT_EQ("memory_id is not 0 and memory_id_index is at most 2\n"
              "memory_type_index is 255, or at most 2 and not memory_id_index\n"
              "mfc_id_index is 255, or at most 2 and neither memory_id_index nor memory_type_index\n"
              "velkor_id is one of 16, 18, 20, 21, 22, 24, 25, 32\n"
              "die_count is not 0\n"
              "device_bit_size is a multiple of 0x100000 and device_sector_byte one of 0x400, neither is 0\n"
              "bulk_erase_time is 1 to 900, sec_erase_time 1 to 60, program_utime 1000 to 1000000\n"
              "protection_division is 0 to 31, or 255\n",
              texts);
}

} // namespace
