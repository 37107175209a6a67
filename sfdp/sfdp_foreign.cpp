// What an image that does not begin with SFDP probably is: nothing connected, a stuck line, or bytes, words or bits in
// another order or place.
#include "sfdp_parts.h"

#include <algorithm>

namespace {

constexpr std::uint32_t SIGNATURE = 0x53464450; // the first byte highest

bool is_all(SFDP_IMAGE image, std::uint8_t value) {
    return std::all_of(image.begin(), image.end(), [value](std::uint8_t byte) { return byte == value; });
}

std::uint32_t first_bytes(SFDP_IMAGE image) {
    return std::uint32_t{image[0]} << 24 | std::uint32_t{image[1]} << 16 | std::uint32_t{image[2]} << 8 | image[3];
}

std::uint32_t reversed_bits_of_bytes(std::uint32_t word) {
    word = (word & 0xF0F0F0F0) >> 4 | (word & 0x0F0F0F0F) << 4;
    word = (word & 0xCCCCCCCC) >> 2 | (word & 0x33333333) << 2;
    return (word & 0xAAAAAAAA) >> 1 | (word & 0x55555555) << 1;
}

// How many bits late (positive) or early the signature comes, 1 to 7; 0 where it does not.
int bit_shift(SFDP_IMAGE image) {
    const std::uint64_t bits = std::uint64_t{first_bytes(image)} << 8 | image[4];
    for (int shift = 1; shift < 8; ++shift) {
        if (static_cast<std::uint32_t>(bits >> (8 - shift)) == SIGNATURE)
            return shift;
        if (bits >> (8 + shift) == (SIGNATURE & (0xFFFFFFFFU >> shift)))
            return -shift;
    }
    return 0;
}

std::string shifted_text(int shift) {
    const int count = shift < 0 ? -shift : shift;
    const std::string bits = std::to_string(count) + (count == 1 ? " bit" : " bits");
    return shift > 0 ? "all comes " + bits + " late, a clock too many or too early an edge"
                     : "all comes " + bits + " early, a clock too few or too late an edge";
}

} // namespace

std::string sfdp_foreign_text(SFDP_IMAGE image) {
    const std::uint32_t first = first_bytes(image);
    if (is_all(image, 0xFF))
        return "every byte is FF: no flash answers, or it has no SFDP";
    if (is_all(image, 0x00))
        return "every byte is 00: the data line is stuck low";
    if (first == 0x50444653)
        return "the four bytes of each dword stand in reverse order";
    if (first == 0x46535044)
        return "the two bytes of each 16-bit word are swapped";
    if (first == (SIGNATURE | 0x20202020))
        return "it stands in small letters, which no flash sends";
    if (first == reversed_bits_of_bytes(SIGNATURE))
        return "the bits of each byte stand in reverse order";
    constexpr std::array<std::uint8_t, 4> BYTES = {'S', 'F', 'D', 'P'};
    const auto place = std::search(image.begin(), image.end(), BYTES.begin(), BYTES.end());
    if (place != image.end()) {
        const auto late = place - image.begin();
        return "it stands at byte " + std::to_string(late) +
               (late == 1 ? ": the dummy byte of the command is kept as data" : ": what stands before it is no part");
    }
    if (const int shift = bit_shift(image))
        return shifted_text(shift);
    return "the image begins with " + sfdp_hex(first, 8);
}
