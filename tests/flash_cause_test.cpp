// What an identification that no flash gives may have been. The faults are held against a model that goes the other
// way: it damages the answer of each known flash and asks whether that can give what was read.
#include "tool_flash_cause.h"

#include <algorithm>
#include <bitset>
#include <gtest/gtest.h>
#include <random>

namespace {

using ANSWER = std::vector<BYTE>;

TOVREN_SFL_FLASH_INFO device_record(const std::string& name, BYTE maker, BYTE type, BYTE memory) {
    TOVREN_SFL_FLASH_INFO record;
    record.manufacturer_name = maker == 0xEF ? "ACME" : "BOLT";
    record.device_name = name;
    record.ini = "NONE";
    record.mfc_id = maker;
    record.mfc_id_index = 0;
    record.memory_type = type;
    record.memory_type_index = 1;
    record.memory_id = memory;
    record.memory_id_index = 2;
    return record;
}

TOVREN_SFL_FLASH_INFO silicon_record(const std::string& name, BYTE id) {
    TOVREN_SFL_FLASH_INFO record = device_record(name, 0, 0, id);
    record.silicon_id = true;
    record.memory_id_index = 0;
    record.memory_type_index = 0xFF;
    return record;
}

const std::vector<TOVREN_SFL_FLASH_INFO> RECORDS = {
    device_record("QXA", 0xEF, 0x40, 0x18), device_record("QXB", 0xEF, 0x40, 0x17),
    device_record("QXC", 0xC2, 0x20, 0x18), device_record("QXD", 0x20, 0xBA, 0x19),
    device_record("QXE", 0x7E, 0x81, 0xE7), silicon_record("QXS", 0x16),
};

std::vector<TOOL_LISTED_FLASH> listed(const std::vector<TOVREN_SFL_FLASH_INFO>& records) {
    std::vector<TOOL_LISTED_FLASH> flashes;
    for (const auto& record : records) {
        const auto place = static_cast<unsigned int>(flashes.size());
        flashes.push_back({&record, place, "", place});
    }
    return flashes;
}

std::vector<TOOL_FLASH_CAUSE> causes_of(const ANSWER& answer, bool by_silicon_id = false) {
    return tool_flash_causes(answer, by_silicon_id, listed(RECORDS));
}

std::vector<std::string> kinds_of(const std::vector<TOOL_FLASH_CAUSE>& causes) {
    std::vector<std::string> kinds;
    kinds.reserve(causes.size());
    for (const TOOL_FLASH_CAUSE& cause : causes)
        kinds.push_back(cause.kind);
    return kinds;
}

// The identifications that a cause leads to; nothing where the cause is not given.
std::vector<std::string> meant_by(const std::vector<TOOL_FLASH_CAUSE>& causes, const std::string& kind) {
    std::vector<std::string> answers;
    for (const TOOL_FLASH_CAUSE& cause : causes)
        for (const TOOL_MEANT_FLASHES& meant : cause.meant)
            if (cause.kind == kind)
                answers.push_back(meant.answer);
    return answers;
}

// ---- the model ----

std::string digits(const ANSWER& bytes) {
    constexpr char DIGITS[] = "0123456789ABCDEF";
    std::string text;
    for (const BYTE byte : bytes) {
        text += DIGITS[byte / 16];
        text += DIGITS[byte % 16];
    }
    return text;
}

std::string bits(const ANSWER& bytes) {
    std::string text;
    for (const BYTE byte : bytes)
        text += std::bitset<8>(byte).to_string();
    return text;
}

bool begin_alike(const std::string& left, const std::string& right) {
    const size_t size = std::min(left.size(), right.size());
    return left.substr(0, size) == right.substr(0, size);
}

// `count` bytes were read, then the true answer, of which two bytes or more can be seen.
bool is_behind(size_t count, const ANSWER& truth, const ANSWER& seen) {
    return seen.size() >= count + 2 && begin_alike(digits(truth), digits(seen).substr(2 * count));
}

size_t run(const ANSWER& seen, BYTE value) {
    size_t size = 0;
    while (size < seen.size() && seen[size] == value)
        ++size;
    return size;
}

bool is_special(BYTE byte) {
    return byte == 0x9F || byte == 0x7F || byte == 0x00 || byte == 0xFF;
}

ANSWER first_three(const ANSWER& seen) {
    return {seen[0], seen[1], seen[2]};
}

std::string reversed(std::string text) {
    return {text.rbegin(), text.rend()};
}

bool is_other_digit_order(const ANSWER& truth, const ANSWER& seen) {
    for (size_t i = 0; i < 5; ++i) {
        std::string text = digits(truth);
        std::swap(text[i], text[i + 1]);
        if (text == digits(first_three(seen)))
            return true;
    }
    return false;
}

size_t different_bits(const ANSWER& truth, const ANSWER& seen) {
    const std::string left = bits(truth);
    const std::string right = bits(first_three(seen));
    size_t count = 0;
    for (size_t i = 0; i < left.size(); ++i)
        count += left[i] == right[i] ? 0 : 1;
    return count;
}

size_t different_bytes(const ANSWER& truth, const ANSWER& seen) {
    size_t count = 0;
    for (size_t i = 0; i < truth.size(); ++i)
        count += truth[i] == seen[i] ? 0 : 1;
    return count;
}

bool is_broken_off(const ANSWER& truth, const ANSWER& seen) {
    const std::string rest = digits(seen).substr(4);
    const bool is_stuck = rest == std::string(rest.size(), '0') || rest == std::string(rest.size(), 'F');
    return is_stuck && seen[1] != seen[2] && seen[0] == truth[0] && seen[1] == truth[1];
}

bool can_become(const std::string& kind, const ANSWER& truth, const ANSWER& seen) {
    if (kind == "command_echo")
        return seen[0] == 0x9F && is_behind(1, truth, seen);
    if (kind == "continuation")
        return seen[0] == 0x7F && is_behind(run(seen, 0x7F), truth, seen);
    if (kind == "dummy_byte")
        return (seen[0] == 0x00 || seen[0] == 0xFF) && is_behind(run(seen, seen[0]), truth, seen);
    if (kind == "breaks_off")
        return is_broken_off(truth, seen);
    if (kind == "extra_byte")
        return !is_special(seen[0]) && is_behind(1, truth, seen);
    if (kind == "lost_byte, repeated")
        return seen[0] == truth[1] && seen[1] == truth[2] && seen[2] == truth[0];
    if (kind == "lost_byte")
        return seen[0] == truth[1] && seen[1] == truth[2];
    if (kind == "bit_late")
        return begin_alike("0" + bits(truth), bits(seen)) || begin_alike("1" + bits(truth), bits(seen));
    if (kind == "bit_early")
        return begin_alike(bits(truth).substr(1), bits(seen));
    if (kind == "byte_order")
        return ANSWER(truth.rbegin(), truth.rend()) == first_three(seen);
    if (kind == "bit_order")
        return reversed(bits(truth)) == bits({seen[2], seen[1], seen[0]});
    if (kind == "inverted")
        return different_bits(truth, seen) == 24;
    if (kind == "swapped_bytes")
        return first_three(seen) == ANSWER{truth[1], truth[0], truth[2]} ||
               first_three(seen) == ANSWER{truth[0], truth[2], truth[1]};
    if (kind == "swapped_digits")
        return is_other_digit_order(truth, seen);
    if (kind == "flipped_bit")
        return different_bits(truth, seen) == 1;
    return different_bytes(truth, seen) == 1 && different_bits(truth, seen) > 1; // other_byte
}

std::vector<std::string> modelled(const std::string& kind, const ANSWER& seen) {
    std::vector<std::string> answers;
    for (const auto& record : RECORDS) {
        const ANSWER truth = {record.mfc_id, record.memory_type, record.memory_id};
        if (!record.silicon_id && can_become(kind, truth, seen))
            answers.push_back(digits(truth));
    }
    std::sort(answers.begin(), answers.end());
    return answers;
}

void expect_as_modelled(const ANSWER& seen) {
    constexpr const char* KINDS_WITH_FLASHES[] = {"command_echo",   "continuation", "dummy_byte", "breaks_off",
                                                  "extra_byte",     "lost_byte",    "bit_late",   "bit_early",
                                                  "byte_order",     "bit_order",    "inverted",   "swapped_bytes",
                                                  "swapped_digits", "flipped_bit",  "other_byte"};
    const auto causes = causes_of(seen);
    for (const std::string kind : KINDS_WITH_FLASHES) {
        auto found = meant_by(causes, kind);
        std::sort(found.begin(), found.end());
        auto expected = modelled(kind, seen);
        if (kind == "lost_byte" && !modelled("lost_byte, repeated", seen).empty())
            expected = modelled("lost_byte, repeated", seen);
        EXPECT_EQ(found, expected) << kind << " of " << digits(seen);
    }
}

bool is_known(const ANSWER& seen) {
    return std::any_of(RECORDS.begin(), RECORDS.end(), [&seen](const auto& record) {
        return !record.silicon_id && first_three(seen) == ANSWER{record.mfc_id, record.memory_type, record.memory_id};
    });
}

void expect_as_modelled_unless_plain(const ANSWER& seen) {
    const bool is_one_byte = std::count(seen.begin(), seen.end(), seen[0]) == static_cast<long>(seen.size());
    if (!is_known(seen) && !is_one_byte)
        expect_as_modelled(seen);
}

} // namespace

// ---- all of it, against the model ----

TEST(FlashCause, EveryAnswerNearAKnownOneIsAsModelled) {
    constexpr BYTE EDGES[] = {0x00, 0xFF, 0x7F, 0x9F, 0xEF, 0x40, 0x18, 0x20, 0xBA, 0xC2, 0x81};
    for (const BYTE first : EDGES) {
        for (const BYTE second : EDGES) {
            for (const BYTE third : EDGES) {
                expect_as_modelled_unless_plain({first, second, third});
                for (const unsigned int fourth : {0x00U, 0x18U, 0x40U, 0xFFU})
                    expect_as_modelled_unless_plain({first, second, third, static_cast<BYTE>(fourth)});
            }
        }
    }
}

TEST(FlashCause, DamagedAnswersAreAsModelled) {
    std::mt19937 random(1);
    const auto byte = [&random] { return static_cast<BYTE>(random()); };
    for (unsigned int round = 0; round < 2000; ++round) {
        const auto& record = RECORDS[random() % 5];
        const ANSWER truth = {record.mfc_id, record.memory_type, record.memory_id};
        ANSWER stream = {byte(), truth[0], truth[1], truth[2], truth[0], byte()};
        if (random() % 2 == 0)
            stream[4] = byte();
        const unsigned int shift = static_cast<unsigned int>(random() % 17);
        ANSWER seen;
        const std::string text = bits(stream);
        for (size_t i = 0; i < 3 + random() % 2; ++i)
            seen.push_back(static_cast<BYTE>(std::bitset<8>(text.substr(shift + 8 * i, 8)).to_ulong()));
        if (random() % 3 == 0)
            std::reverse(seen.begin(), seen.begin() + 3);
        if (random() % 3 == 0)
            seen[random() % 3] ^= static_cast<BYTE>(1U << random() % 8);
        if (seen.size() >= 3)
            expect_as_modelled_unless_plain(seen);
    }
}

// ---- one by one ----

TEST(FlashCause, AllOnesAreNoFlash) {
    EXPECT_EQ(kinds_of(causes_of({0xFF, 0xFF, 0xFF})), std::vector<std::string>{"all_ones"});
}

TEST(FlashCause, AllZerosAreNoFlash) {
    EXPECT_EQ(kinds_of(causes_of({0, 0, 0})), std::vector<std::string>{"all_zeros"});
}

TEST(FlashCause, RepeatedByteIsAnEcho) {
    EXPECT_EQ(kinds_of(causes_of({0x9F, 0x9F, 0x9F})), std::vector<std::string>{"repeated_byte"});
}

TEST(FlashCause, RepeatedSiliconIdIsToldAsSuch) {
    const auto causes = causes_of({0x16, 0x16, 0x16});
    EXPECT_EQ(kinds_of(causes), (std::vector<std::string>{"repeated_byte", "other_kind"}));
    EXPECT_EQ(causes[1].meant[0].names, std::vector<std::string>{"QXS"});
}

TEST(FlashCause, DeviceIdIsNoSiliconId) {
    const auto causes = causes_of({0xEF, 0x40, 0x18}, true);
    EXPECT_EQ(kinds_of(causes), std::vector<std::string>{"other_kind"});
    EXPECT_EQ(causes[0].meant[0].answer, "EF4018");
}

TEST(FlashCause, SiliconIdMayHaveAFlippedBit) {
    const auto causes = causes_of({0x12}, true); // 16 without bit 2
    ASSERT_EQ(kinds_of(causes), std::vector<std::string>{"flipped_bit"});
    EXPECT_EQ(causes[0].meant[0].note, "bit 2 of byte 0");
}

TEST(FlashCause, FlippedBitHasItsPlace) {
    const auto causes = causes_of({0xEF, 0x60, 0x18}); // 40 with bit 5
    const auto flipped = std::find_if(causes.begin(), causes.end(),
                                      [](const TOOL_FLASH_CAUSE& cause) { return cause.kind == "flipped_bit"; });
    ASSERT_NE(flipped, causes.end());
    EXPECT_EQ(flipped->meant[0].note, "bit 5 of byte 1");
    EXPECT_EQ(tool_meant_text(flipped->meant[0]), "EF4018 (bit 5 of byte 1): QXA");
}

TEST(FlashCause, KnownMakerIsNamed) {
    const auto causes = causes_of({0xEF, 0x55, 0x55});
    ASSERT_EQ(kinds_of(causes), std::vector<std::string>{"unknown_flash"});
    EXPECT_EQ(causes[0].text.substr(0, 41), "EF is the maker code of ACME (2 records):");
}

TEST(FlashCause, UnknownMakerLeadsNowhere) {
    EXPECT_TRUE(causes_of({0x55, 0xA5, 0x33}).empty());
}

TEST(FlashCause, WholeIdentificationComesBeforeHalfOfOne) {
    // 40 18 EF: the first byte is lost, and the identification is repeated. 20 18 is also half of C22018.
    EXPECT_EQ(kinds_of(causes_of({0x40, 0x18, 0xEF})), std::vector<std::string>{"lost_byte"});
    const auto kinds = kinds_of(causes_of({0x20, 0x18, 0x55}));
    EXPECT_EQ(kinds, (std::vector<std::string>{"unknown_flash", "lost_byte"}));
}

TEST(FlashCause, HiddenFlashIsMarked) {
    std::vector<TOVREN_SFL_FLASH_INFO> records = {RECORDS[0]};
    const auto causes =
        tool_flash_causes(ANSWER{0x9F, 0xEF, 0x40, 0x18}, false, {{&records[0], INVALID_DWORD, "PGM_ALLOW_LAB", 0}});
    EXPECT_EQ(causes.at(0).meant.at(0).names, std::vector<std::string>{"QXA (hidden)"});
}

TEST(FlashCause, RecordWithoutMemoryTypeNeedsItsTwoBytes) {
    std::vector<TOVREN_SFL_FLASH_INFO> records = {device_record("QXT", 0xC2, 0, 0x13)};
    records[0].memory_type_index = 0xFF;
    const auto found = [&records](const ANSWER& answer) {
        return meant_by(tool_flash_causes(answer, false, listed(records)), "command_echo");
    };
    EXPECT_EQ(found({0x9F, 0xC2, 0x77, 0x13}), std::vector<std::string>{"C2..13"});
    EXPECT_TRUE(found({0x9F, 0xC2, 0x77}).empty()); // one byte of two
}

TEST(FlashCause, HandfulIsGivenAndTheRestCounted) {
    std::vector<TOVREN_SFL_FLASH_INFO> records;
    for (unsigned int memory = 0x10; memory < 0x18; ++memory) {
        const std::string name = "QX" + std::to_string(memory);
        for (const char* variant : {"A", "B", "C", "D", "A"})
            records.push_back(device_record(name + variant, 0xEF, 0x40, static_cast<BYTE>(memory)));
    }
    const auto causes = tool_flash_causes(ANSWER{0x9F, 0xEF, 0x40}, false, listed(records));
    ASSERT_EQ(causes.at(0).kind, "command_echo");
    EXPECT_EQ(causes[0].meant.size(), 5U);
    EXPECT_EQ(causes[0].left_out, 3U);
    EXPECT_EQ(tool_meant_text(causes[0].meant[0]), "EF4010: QX16A, QX16B, QX16C and 1 more");
}
