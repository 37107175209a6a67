// Refusals that no published image shows, and the byte that each names.
#include "sfdp.h"
#include "sfdp_image.h"

#include <gtest/gtest.h>

namespace {

// "kind @ offset", or "accepted".
std::string verdict(const BYTES& image) {
    const SFDP_RESULT result = sfdp_decode(image);
    const auto* refusal = std::get_if<SFDP_REFUSAL>(&result);
    return refusal ? std::string(refusal->kind) + " @ " + std::to_string(refusal->offset) : "accepted";
}

std::string with_dword(size_t number, std::uint32_t value) {
    SFDP_IMAGE_MODEL model;
    model.set(number, value);
    return verdict(model.image());
}

std::string reason(const BYTES& image) {
    const SFDP_RESULT result = sfdp_decode(image);
    const auto* refusal = std::get_if<SFDP_REFUSAL>(&result);
    return refusal ? refusal->reason : "accepted";
}

BYTES with_text(const std::string& text) {
    BYTES image = SFDP_IMAGE_MODEL().image();
    std::copy(text.begin(), text.end(), image.begin());
    return image;
}

// All bits of the image later by `count`, ones in front; or earlier where it is negative.
BYTES shifted(const BYTES& image, int count) {
    BYTES result(image.size());
    for (size_t bit = 0; bit < 8 * image.size(); ++bit) {
        const auto from = static_cast<long>(bit) - count;
        const bool is_inside = from >= 0 && from < static_cast<long>(8 * image.size());
        const auto place = static_cast<size_t>(from);
        if (!is_inside || (image[place / 8] >> (7 - place % 8) & 1) != 0)
            result[bit / 8] = static_cast<unsigned char>(result[bit / 8] | 0x80 >> bit % 8);
    }
    return result;
}

} // namespace

// The model: 8 bytes of header, one parameter header at 8, 16 dwords from 16 to 80.
TEST(SfdpRefusal, IsForAnImageWithoutAWholeHeader) {
    const BYTES image = SFDP_IMAGE_MODEL().image();
    EXPECT_EQ("too_short @ 0", verdict({}));
    EXPECT_EQ("too_short @ 7", verdict(first(image, 7)));
    EXPECT_EQ("headers_past_end @ 6", verdict(first(image, 8)));
    EXPECT_EQ("headers_past_end @ 6", verdict(first(image, 15)));
    EXPECT_EQ("bfpt_past_end @ 12", verdict(first(image, 16)));
    EXPECT_EQ("bfpt_past_end @ 12", verdict(first(image, 79)));
    EXPECT_EQ("accepted", verdict(image));
}

TEST(SfdpRefusal, IsForEachMajorRevisionButOne) {
    const BYTES image = SFDP_IMAGE_MODEL().image();
    EXPECT_EQ("bad_major @ 5", verdict(with_byte(image, 5, 2)));
    EXPECT_EQ("bad_major @ 5", verdict(with_byte(image, 5, 0xFF)));
    EXPECT_EQ("no_bfpt @ 8", verdict(with_byte(image, 10, 0)));
}

TEST(SfdpRefusal, NamesTheLikelyCauseOfAForeignImage) {
    EXPECT_EQ("the signature SFDP is missing: every byte is FF: no flash answers, or it has no SFDP",
              reason(BYTES(64, 0xFF)));
    EXPECT_EQ("the signature SFDP is missing: every byte is 00: the data line is stuck low", reason(BYTES(64, 0)));
    EXPECT_EQ("the signature SFDP is missing: the four bytes of each dword stand in reverse order",
              reason(with_text("PDFS")));
    EXPECT_EQ("the signature SFDP is missing: the two bytes of each 16-bit word are swapped",
              reason(with_text("FSPD")));
    EXPECT_EQ("the signature SFDP is missing: it stands in small letters, which no flash sends",
              reason(with_text("sfdp")));
    EXPECT_EQ("the signature SFDP is missing: the bits of each byte stand in reverse order",
              reason(with_text("\xCA\x62\x22\x0A")));
    EXPECT_EQ("the signature SFDP is missing: the image begins with 53464451", reason(with_text("SFDQ")));
}

TEST(SfdpRefusal, FindsTheSignatureFurtherBehind) {
    const BYTES image = SFDP_IMAGE_MODEL().image();
    EXPECT_EQ("the signature SFDP is missing: it stands at byte 1: the dummy byte of the command is kept as data",
              reason(join({{0xFF}, image})));
    EXPECT_EQ("the signature SFDP is missing: it stands at byte 4: what stands before it is no part",
              reason(join({{0x5A, 0, 0, 0}, image})));
}

TEST(SfdpRefusal, FindsTheSignatureAtAnotherBit) {
    const BYTES image = SFDP_IMAGE_MODEL().image();
    EXPECT_EQ("the signature SFDP is missing: all comes 1 bit late, a clock too many or too early an edge",
              reason(shifted(image, 1)));
    EXPECT_EQ("the signature SFDP is missing: all comes 7 bits late, a clock too many or too early an edge",
              reason(shifted(image, 7)));
    EXPECT_EQ("the signature SFDP is missing: all comes 1 bit early, a clock too few or too late an edge",
              reason(shifted(image, -1)));
    EXPECT_EQ("the signature SFDP is missing: all comes 3 bits early, a clock too few or too late an edge",
              reason(shifted(image, -3)));
}

TEST(SfdpRefusal, IsForABasicTableOfLessThanNineDwords) {
    SFDP_IMAGE_MODEL model;
    model.cut(9);
    EXPECT_EQ("accepted", verdict(model.image()));
    model.cut(8);
    EXPECT_EQ("bfpt_too_short @ 11", verdict(model.image()));
    EXPECT_EQ("bfpt_too_short @ 11", verdict(with_byte(SFDP_IMAGE_MODEL().image(), 11, 0)));
}

TEST(SfdpRefusal, IsForEachWrongPointer) {
    const BYTES image = SFDP_IMAGE_MODEL().image();
    EXPECT_EQ("bfpt_unaligned @ 12", verdict(with_byte(image, 12, 0x12)));
    EXPECT_EQ("bfpt_overlaps_headers @ 12", verdict(with_byte(image, 12, 0x0C)));
    EXPECT_EQ("bfpt_past_end @ 12", verdict(with_byte(image, 12, 0x14)));
    EXPECT_EQ("bfpt_past_end @ 12", verdict(with_byte(image, 14, 0x10))); // big-endian
    BYTES far = with_byte(with_byte(with_byte(image, 12, 0xFC), 13, 0xFF), 14, 0xFF);
    EXPECT_EQ("bfpt_past_end @ 12", verdict(with_byte(far, 11, 0xFF)));
}

TEST(SfdpRefusal, IsForEachWrongDensity) {
    EXPECT_EQ("density_too_large @ 20", with_dword(2, 0xFFFFFFFF));
    EXPECT_EQ("density_too_large @ 20", with_dword(2, 0x80000021));
    EXPECT_EQ("density_too_small @ 20", with_dword(2, 0x80000000));
    EXPECT_EQ("density_too_small @ 20", with_dword(2, 0x00000000));
    EXPECT_EQ("density_too_small @ 20", with_dword(2, 0x0000FFFE));
    EXPECT_EQ("density_not_whole_bytes @ 20", with_dword(2, 0x01000000));
    EXPECT_EQ("density_not_whole_blocks @ 20", with_dword(2, 0x01007FFF)); // one block of 4 KiB more
}

TEST(SfdpRefusal, IsForTheReservedAddressMode) {
    EXPECT_EQ("reserved_address_mode @ 18", with_dword(1, 0x000620E5));
}

TEST(SfdpRefusal, IsForEachWrongEraseType) {
    EXPECT_EQ("no_erase_type @ 44", with_dword(8, 0xFF00FF00));
    EXPECT_EQ("erase_larger_than_device @ 44", with_dword(8, 0x00002020));
    EXPECT_EQ("erase_larger_than_device @ 48", with_dword(9, 0x0000D8FF));
    EXPECT_EQ("erase_larger_than_device @ 46", with_dword(8, 0xD817200C)); // 8 MiB of 4
    EXPECT_EQ("accepted", with_dword(8, 0xD816200C));
    EXPECT_EQ("erase_opcode_missing @ 51", with_dword(9, 0xFF0F0000));
    EXPECT_EQ("erase_opcode_missing @ 45", with_dword(8, 0xD810000C));
    EXPECT_EQ("one_opcode_two_sizes @ 49", with_dword(9, 0x0000200F));
}

TEST(SfdpRefusal, IsForEachWrongPage) {
    EXPECT_EQ("page_of_one_byte @ 56", with_dword(11, 0x00000001));
    EXPECT_EQ("page_larger_than_erase @ 56", with_dword(11, 0x000000D0)); // 8 KiB against 4 KiB
    EXPECT_EQ("accepted", with_dword(11, 0x000000C0));
}

TEST(SfdpRefusal, IsForAnEraseBelowTheSupposedPage) {
    SFDP_IMAGE_MODEL model;
    model.cut(9);
    model.set(9, 0x00008107); // 128 bytes
    EXPECT_EQ("page_larger_than_erase @ 48", verdict(model.image()));
}

// With a second header the basic table begins at 24 and ends at 88; FF84 follows.
TEST(SfdpRefusal, IsForEachWrongTableOfFourByteInstructions) {
    SFDP_IMAGE_MODEL model;
    model.add_table(0xFF84, {0x00000641, 0x0000DC21});
    const BYTES image = model.image();
    EXPECT_EQ("accepted", verdict(image));
    EXPECT_EQ("ff84_too_short @ 19", verdict(with_byte(image, 19, 1)));
    EXPECT_EQ("ff84_unaligned @ 20", verdict(with_byte(image, 20, 89)));
    EXPECT_EQ("ff84_overlaps_headers @ 20", verdict(with_byte(image, 20, 16)));
    EXPECT_EQ("ff84_past_end @ 20", verdict(first(image, 95)));
}

TEST(SfdpRefusal, FallsBackToNoOlderTable) {
    SFDP_IMAGE_MODEL model;
    model.add_table(0xFF84, {0x00000641, 0x0000DC21});
    model.add_table(0xFF84, {0x00000641, 0x0000DC21});
    model.others[1].minor = 1;
    EXPECT_EQ("ff84_past_end @ 28", verdict(first(model.image(), model.image().size() - 1)));
}
