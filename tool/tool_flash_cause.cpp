// What may have happened to an answer that no flash gives.
//
// Each fault is undone. What that leaves open, such as the byte that was lost, is unknown; a record fits that agrees in
// all known bits of what it compares, if these are enough to mean anything.
#include "tool_flash_cause.h"

#include "tool_flash_match.h"
#include "tool_flash_record.h"
#include "tool_text.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <optional>

namespace {

constexpr BYTE COMMAND = 0x9F; // read identification
constexpr BYTE CONTINUATION = 0x7F;
constexpr BYTE WHOLE_BYTE = 0xFF;
constexpr size_t ID_SIZE = 3;
constexpr size_t HANDFUL = 5;
constexpr size_t HANDFUL_OF_NAMES = 3;
constexpr int ENOUGH_BITS = 16;

using BYTES = std::vector<BYTE>;
using KNOWN = std::vector<TOOL_LISTED_FLASH>;

// An answer of which only the bits set in `known` count.
struct READING {
    BYTES bytes;
    BYTES known;
    std::string note = {};
};

READING whole(BYTES bytes, std::string note = "") {
    const size_t size = bytes.size();
    return {std::move(bytes), BYTES(size, WHOLE_BYTE), std::move(note)};
}

// The known bits that a record compares; none where one of them is another than the record expects.
std::optional<int> known_bits(const TOVREN_SFL_FLASH_INFO& record, const READING& reading) {
    int bits = 0;
    for (const TOOL_COMPARED_BYTE& byte : tool_compared_bytes(record, reading.bytes)) {
        const BYTE mask = byte.found ? reading.known[byte.place] : BYTE{0};
        if (byte.found && ((*byte.found ^ byte.expected) & mask) != 0)
            return std::nullopt;
        bits += std::popcount(mask);
    }
    return bits;
}

int compared_bits(const TOVREN_SFL_FLASH_INFO& record) {
    return 8 * static_cast<int>(tool_compared_bytes(record, {}).size());
}

std::string shown_name(const TOOL_LISTED_FLASH& flash) {
    return tool_printable(flash.flash->device_name) + (flash.shown_by.empty() ? "" : " (hidden)");
}

// Adds a flash to those of its identification.
void add_meant(std::vector<TOOL_MEANT_FLASHES>& meant, const TOOL_LISTED_FLASH& flash, const std::string& note) {
    const std::string answer = tool_flash_id_text(*flash.flash);
    auto place = std::find_if(meant.begin(), meant.end(), [&](const TOOL_MEANT_FLASHES& other) {
        return other.answer == answer && other.note == note;
    });
    if (place == meant.end())
        place = meant.insert(place, {answer, note, {}});
    const std::string name = shown_name(flash);
    if (std::find(place->names.begin(), place->names.end(), name) == place->names.end())
        place->names.push_back(name);
}

// How much of what a record compares must be known: but for one bit, all of it; but for one byte; or all of it.
enum class NEED : unsigned char { ALL_BUT_A_BIT, ALL_BUT_A_BYTE, ALL };

bool is_enough(NEED need, int known, int compared) {
    const int open = compared - known;
    if (need == NEED::ALL)
        return open == 0;
    return open <= (need == NEED::ALL_BUT_A_BIT ? 1 : 8) && known >= ENOUGH_BITS;
}

class CAUSES {
public:
    CAUSES(std::span<const BYTE> answer, bool by_silicon_id, const KNOWN& known)
        : m_answer(answer.begin(), answer.end()), m_by_silicon_id(by_silicon_id), m_known(known) {}

    const BYTES& answer() const { return m_answer; }
    bool by_silicon_id() const { return m_by_silicon_id; }
    const KNOWN& known() const { return m_known; }

    // A cause that leads to no flash.
    void add(const char* kind, std::string text) { m_causes.push_back({kind, std::move(text), {}, 0, false}); }

    // A cause that leads to the flashes of one of the readings; none is added where there is no such flash.
    void add(const char* kind, const std::string& text, const std::vector<READING>& readings, NEED need) {
        add_fitting(kind, text, readings, need, m_by_silicon_id);
    }

    void add_other_kind(const std::string& text) {
        add_fitting("other_kind", text, {whole(m_answer)}, NEED::ALL, !m_by_silicon_id);
    }

    // The same cause is not found again on weaker grounds.
    void add_weaker(const char* kind, const std::string& text, const READING& reading) {
        const auto is_same = [kind](const TOOL_FLASH_CAUSE& cause) { return cause.kind == kind; };
        if (std::none_of(m_causes.begin(), m_causes.end(), is_same))
            add(kind, text, {reading}, NEED::ALL_BUT_A_BYTE);
    }

    void add_meant_flashes(const char* kind, const std::string& text, std::vector<TOOL_MEANT_FLASHES> meant,
                           bool is_silicon_id) {
        if (meant.empty())
            return;
        const size_t left_out = meant.size() - std::min(meant.size(), HANDFUL);
        meant.resize(meant.size() - left_out);
        m_causes.push_back({kind, text, std::move(meant), left_out, is_silicon_id});
    }

    std::vector<TOOL_FLASH_CAUSE> take() { return std::move(m_causes); }

private:
    void add_fitting(const char* kind, const std::string& text, const std::vector<READING>& readings, NEED need,
                     bool is_silicon_id) {
        std::vector<TOOL_MEANT_FLASHES> meant;
        for (const TOOL_LISTED_FLASH& flash : m_known) {
            if (flash.flash->silicon_id != is_silicon_id)
                continue;
            for (const READING& reading : readings)
                if (const auto bits = known_bits(*flash.flash, reading);
                    bits && is_enough(need, *bits, compared_bits(*flash.flash)))
                    add_meant(meant, flash, reading.note);
        }
        add_meant_flashes(kind, text, std::move(meant), is_silicon_id);
    }

    BYTES m_answer;
    bool m_by_silicon_id;
    const KNOWN& m_known;
    std::vector<TOOL_FLASH_CAUSE> m_causes;
};

// ---- the faults, undone ----

READING without_first(const BYTES& answer, size_t count) {
    return whole(BYTES(answer.begin() + static_cast<std::ptrdiff_t>(count), answer.end()));
}

READING behind_unknown_byte(const BYTES& answer) {
    READING reading = whole(answer);
    reading.bytes.insert(reading.bytes.begin(), BYTE{0});
    reading.known.insert(reading.known.begin(), BYTE{0});
    return reading;
}

// Every bit came one clock late: a bit that is none of the answer's stands in front.
READING one_bit_sooner(const BYTES& answer) {
    READING reading = whole(answer);
    for (size_t i = 0; i < answer.size(); ++i) {
        const unsigned int next = i + 1 < answer.size() ? answer[i + 1] : 0U;
        reading.bytes[i] = static_cast<BYTE>(unsigned{answer[i]} << 1U | next >> 7U);
    }
    reading.known.back() = 0xFE;
    return reading;
}

// Every bit came one clock early: the first one is lost.
READING one_bit_later(const BYTES& answer) {
    READING reading = whole(answer);
    for (size_t i = 0; i < answer.size(); ++i) {
        const unsigned int before = i > 0 ? answer[i - 1] : 0U;
        reading.bytes[i] = static_cast<BYTE>(answer[i] >> 1U | before << 7U);
    }
    reading.known.front() = 0x7F;
    return reading;
}

BYTES each_byte(BYTES bytes, const std::function<unsigned int(unsigned int)>& change) {
    std::transform(bytes.begin(), bytes.end(), bytes.begin(),
                   [&change](BYTE byte) { return static_cast<BYTE>(change(byte)); });
    return bytes;
}

unsigned int mirrored(unsigned int byte) {
    unsigned int result = 0;
    for (unsigned int bit = 0; bit < 8; ++bit)
        result |= (byte >> bit & 1U) << (7U - bit);
    return result;
}

std::vector<READING> with_a_flipped_bit(const BYTES& answer) {
    std::vector<READING> readings;
    for (size_t i = 0; i < answer.size(); ++i) {
        for (unsigned int bit = 0; bit < 8; ++bit) {
            BYTES bytes = answer;
            bytes[i] = static_cast<BYTE>(bytes[i] ^ 1U << bit);
            readings.push_back(whole(bytes, "bit " + std::to_string(bit) + " of byte " + std::to_string(i)));
        }
    }
    return readings;
}

// Two neighbours among the digits of the identification, the other way round.
std::vector<READING> with_swapped_digits(const BYTES& answer) {
    std::vector<READING> readings;
    for (size_t i = 0; i < ID_SIZE; ++i) {
        BYTES bytes = answer;
        bytes[i] = static_cast<BYTE>(bytes[i] << 4U | bytes[i] >> 4U);
        readings.push_back(whole(bytes));
        if (i + 1 == ID_SIZE)
            break;
        bytes = answer;
        bytes[i] = static_cast<BYTE>((answer[i] & 0xF0U) | answer[i + 1] >> 4U);
        bytes[i + 1] = static_cast<BYTE>((answer[i] & 0x0FU) << 4U | (answer[i + 1] & 0x0FU));
        readings.push_back(whole(bytes));
    }
    return readings;
}

std::vector<READING> with_swapped_bytes(const BYTES& answer) {
    std::vector<READING> readings;
    for (size_t i = 0; i + 1 < ID_SIZE; ++i) {
        BYTES bytes = answer;
        std::swap(bytes[i], bytes[i + 1]);
        readings.push_back(whole(bytes));
    }
    return readings;
}

// ---- causes that need no flash ----

bool add_stuck_line(CAUSES& causes) {
    const auto line = tool_stuck_line(causes.answer());
    if (line)
        causes.add(line->kind, std::string(line->look) + ": " + line->cause);
    return line.has_value();
}

// Makers with that code, each once, and how many of their flashes are known.
struct MAKERS {
    std::vector<std::string> names;
    size_t flash_count = 0;
};

MAKERS makers_of(const CAUSES& causes) {
    MAKERS makers;
    for (const TOOL_LISTED_FLASH& flash : causes.known()) {
        const TOVREN_SFL_FLASH_INFO& record = *flash.flash;
        if (record.silicon_id || record.mfc_id_index != 0 || record.mfc_id != causes.answer()[0])
            continue;
        ++makers.flash_count;
        const std::string name = tool_printable(record.manufacturer_name);
        if (std::find(makers.names.begin(), makers.names.end(), name) == makers.names.end())
            makers.names.push_back(name);
    }
    return makers;
}

void add_unknown_flash(CAUSES& causes) {
    const MAKERS makers = makers_of(causes);
    if (makers.names.empty())
        return;
    causes.add("unknown_flash", tool_hex_text(causes.answer().data(), 1) + " is the maker code of " +
                                    tool_join(makers.names, ", ") + " (" +
                                    tool_count_text(makers.flash_count, "record") +
                                    "): perhaps a flash that the database does not hold; `tovren flash define` "
                                    "describes one");
}

// ---- causes that lead to flashes ----

// How many bytes of that value the answer begins with.
size_t leading(const BYTES& answer, BYTE value) {
    const auto end = std::find_if(answer.begin(), answer.end(), [value](BYTE byte) { return byte != value; });
    return static_cast<size_t>(end - answer.begin());
}

// Byte 0 has a cause of its own for standing in front of the identification.
bool is_named_in_front(BYTE byte) {
    return byte == COMMAND || byte == CONTINUATION || byte == 0x00 || byte == 0xFF;
}

void add_byte_in_front(CAUSES& causes) {
    const BYTES& answer = causes.answer();
    if (answer[0] == COMMAND)
        causes.add("command_echo", "byte 0 is the command 9Fh, read back; the identification stands behind it",
                   {without_first(answer, 1)}, NEED::ALL_BUT_A_BYTE);
    if (answer[0] == CONTINUATION)
        causes.add("continuation", "7F continues the maker code; the identification stands behind it",
                   {without_first(answer, leading(answer, CONTINUATION))}, NEED::ALL_BUT_A_BYTE);
    if (answer[0] == 0x00 || answer[0] == 0xFF)
        causes.add("dummy_byte", "what stands in front was read before the flash answered",
                   {without_first(answer, leading(answer, answer[0]))}, NEED::ALL_BUT_A_BYTE);
}

// From byte 1 or 2 on nothing but ones, or zeros.
void add_broken_off(CAUSES& causes) {
    const BYTES& answer = causes.answer();
    const BYTE last = answer.back();
    if (last != 0x00 && last != 0xFF)
        return;
    size_t end = answer.size();
    while (end > 0 && answer[end - 1] == last)
        --end;
    if (end == 0 || end >= ID_SIZE)
        return;
    const std::string text = "from byte " + std::to_string(end) + " on all " + (last == 0 ? "zeros" : "ones") +
                             ": the flash stopped answering, or was deselected";
    READING reading = whole(answer);
    std::fill(reading.known.begin() + static_cast<std::ptrdiff_t>(end), reading.known.end(), BYTE{0});
    if (end == 1 && !makers_of(causes).names.empty())
        causes.add("breaks_off", text);
    else
        causes.add("breaks_off", text, {reading}, NEED::ALL_BUT_A_BYTE);
}

constexpr char EXTRA_BYTE[] = "one byte too many in front";
constexpr char LOST_BYTE[] = "the first byte is lost";

void add_shifts(CAUSES& causes) {
    const BYTES& answer = causes.answer();
    if (!is_named_in_front(answer[0]))
        causes.add("extra_byte", EXTRA_BYTE, {without_first(answer, 1)}, NEED::ALL);
    BYTES turned = answer; // the identification repeats: its first byte stands behind the third
    std::rotate(turned.begin(), turned.begin() + 2, turned.begin() + ID_SIZE);
    causes.add("lost_byte", LOST_BYTE, {whole(turned)}, NEED::ALL);
    causes.add("bit_late", "one bit too many in front: sampled a clock too early", {one_bit_sooner(answer)},
               NEED::ALL_BUT_A_BIT);
    causes.add("bit_early", "the first bit is lost: sampled a clock too late", {one_bit_later(answer)},
               NEED::ALL_BUT_A_BIT);
}

void add_orders(CAUSES& causes) {
    BYTES reversed = causes.answer();
    std::reverse(reversed.begin(), reversed.begin() + ID_SIZE);
    causes.add("byte_order", "the bytes stand in reverse order", {whole(reversed)}, NEED::ALL);
    causes.add("bit_order", "the bits of each byte stand in reverse order",
               {whole(each_byte(causes.answer(), mirrored))}, NEED::ALL);
    causes.add("inverted", "every bit is inverted", {whole(each_byte(causes.answer(), std::bit_not<>()))}, NEED::ALL);
    causes.add("swapped_bytes", "two neighbouring bytes are swapped", with_swapped_bytes(causes.answer()), NEED::ALL);
    causes.add("swapped_digits", "two neighbouring digits are swapped", with_swapped_digits(causes.answer()),
               NEED::ALL);
}

void add_flipped_bit(CAUSES& causes) {
    causes.add("flipped_bit", "one bit is flipped: a bad contact, or too fast a clock",
               with_a_flipped_bit(causes.answer()), NEED::ALL);
}

// One whole byte is another, in two bits or more: nearest first.
void add_other_byte(CAUSES& causes) {
    std::vector<std::vector<TOOL_MEANT_FLASHES>> by_distance(9);
    for (const TOOL_LISTED_FLASH& flash : causes.known()) {
        const auto compared = tool_compared_bytes(*flash.flash, causes.answer());
        if (flash.flash->silicon_id || compared.size() < 2 || tool_miss_count(compared) != 1)
            continue;
        const auto miss = std::find_if(compared.begin(), compared.end(),
                                       [](const TOOL_COMPARED_BYTE& byte) { return !byte.is_equal(); });
        if (!miss->found)
            continue;
        const int distance = std::popcount(static_cast<unsigned int>(*miss->found ^ miss->expected));
        if (distance > 1)
            add_meant(by_distance[static_cast<size_t>(distance)], flash, "byte " + std::to_string(miss->place));
    }
    std::vector<TOOL_MEANT_FLASHES> meant;
    for (const auto& alike : by_distance)
        meant.insert(meant.end(), alike.begin(), alike.end());
    causes.add_meant_flashes("other_byte", "one byte is another", std::move(meant), false);
}

void add_for_silicon_id(CAUSES& causes) {
    causes.add_other_kind("these are the bytes of a device ID: leave out --silicon-id");
    add_flipped_bit(causes);
}

void add_for_device_id(CAUSES& causes) {
    add_byte_in_front(causes);
    add_broken_off(causes);
    add_shifts(causes);
    add_orders(causes);
    add_unknown_flash(causes);
    add_flipped_bit(causes);
    causes.add_weaker("lost_byte", LOST_BYTE, behind_unknown_byte(causes.answer()));
    if (!is_named_in_front(causes.answer()[0]))
        causes.add_weaker("extra_byte", EXTRA_BYTE, without_first(causes.answer(), 1));
    add_other_byte(causes);
}

} // namespace

std::optional<TOOL_STUCK_LINE> tool_stuck_line(std::span<const BYTE> answer) {
    if (std::adjacent_find(answer.begin(), answer.end(), std::not_equal_to<>()) != answer.end())
        return std::nullopt;
    if (answer[0] == 0xFF)
        return TOOL_STUCK_LINE{"all_ones", "all ones",
                               "nothing is connected, the flash has no power, or the line is held high"};
    if (answer[0] == 0x00)
        return TOOL_STUCK_LINE{"all_zeros", "all zeros",
                               "the line is held low, or the flash is in reset or has no power"};
    if (answer.size() > 1)
        return TOOL_STUCK_LINE{"repeated_byte", "a repeated byte",
                               "likely an echo: data out is joined to data in, or to the command"};
    return std::nullopt;
}

std::vector<TOOL_FLASH_CAUSE> tool_flash_causes(std::span<const BYTE> answer, bool by_silicon_id,
                                                const std::vector<TOOL_LISTED_FLASH>& known) {
    CAUSES causes(answer, by_silicon_id, known);
    if (add_stuck_line(causes)) {
        if (!by_silicon_id)
            causes.add_other_kind("as a silicon ID it is known: add --silicon-id");
    } else if (by_silicon_id) {
        add_for_silicon_id(causes);
    } else if (answer.size() >= ID_SIZE) {
        add_for_device_id(causes);
    }
    return causes.take();
}

std::string tool_meant_text(const TOOL_MEANT_FLASHES& meant) {
    std::vector<std::string> names = meant.names;
    const size_t more = names.size() - std::min(names.size(), HANDFUL_OF_NAMES);
    names.resize(names.size() - more);
    return meant.answer + (meant.note.empty() ? "" : " (" + meant.note + ')') + ": " + tool_join(names, ", ") +
           (more == 0 ? "" : " and " + std::to_string(more) + " more");
}
