// Dumps as the usual programs print them. All of SAMPLES are what the named command printed for one file of 67 bytes:
// SFDP, 00 to 0B, 48 times FF, EE 11 22.
#include "sfdp.h"
#include "sfdp_image.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

struct SAMPLE {
    const char* command;
    const char* dump;
};

// clang-format off
constexpr SAMPLE SAMPLES[] = {
    {"xxd",
     "00000000: 5346 4450 0001 0203 0405 0607 0809 0a0b  SFDP............\n"
     "00000010: ffff ffff ffff ffff ffff ffff ffff ffff  ................\n"
     "00000020: ffff ffff ffff ffff ffff ffff ffff ffff  ................\n"
     "00000030: ffff ffff ffff ffff ffff ffff ffff ffff  ................\n"
     "00000040: ee11 22                                  ..\"\n"},
    {"xxd -p",
     "53464450000102030405060708090a0bffffffffffffffffffffffffffff\n"
     "ffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff\n"
     "ffffffffee1122\n"},
    {"xxd -g1 -u",
     "00000000: 53 46 44 50 00 01 02 03 04 05 06 07 08 09 0A 0B  SFDP............\n"
     "00000010: FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF  ................\n"
     "00000020: FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF  ................\n"
     "00000030: FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF  ................\n"
     "00000040: EE 11 22                                         ..\"\n"},
    {"xxd -a",
     "00000000: 5346 4450 0001 0203 0405 0607 0809 0a0b  SFDP............\n"
     "00000010: ffff ffff ffff ffff ffff ffff ffff ffff  ................\n"
     "00000020: ffff ffff ffff ffff ffff ffff ffff ffff  ................\n"
     "00000030: ffff ffff ffff ffff ffff ffff ffff ffff  ................\n"
     "00000040: ee11 22                                  ..\"\n"},
    {"hexdump -C",
     "00000000  53 46 44 50 00 01 02 03  04 05 06 07 08 09 0a 0b  |SFDP............|\n"
     "00000010  ff ff ff ff ff ff ff ff  ff ff ff ff ff ff ff ff  |................|\n"
     "*\n"
     "00000040  ee 11 22                                          |..\"|\n"
     "00000043\n"},
    {"hexdump",
     "0000000 4653 5044 0100 0302 0504 0706 0908 0b0a\n"
     "0000010 ffff ffff ffff ffff ffff ffff ffff ffff\n"
     "*\n"
     "0000040 11ee 0022\n"
     "0000043\n"},
    {"hexdump -x",
     "0000000    4653    5044    0100    0302    0504    0706    0908    0b0a\n"
     "0000010    ffff    ffff    ffff    ffff    ffff    ffff    ffff    ffff\n"
     "*\n"
     "0000040    11ee    0022\n"
     "0000043\n"},
    {"hexdump -b",
     "0000000 123 106 104 120 000 001 002 003 004 005 006 007 010 011 012 013\n"
     "0000010 377 377 377 377 377 377 377 377 377 377 377 377 377 377 377 377\n"
     "*\n"
     "0000040 356 021 042\n"
     "0000043\n"},
    {"hexdump -o",
     "0000000  043123  050104  000400  001402  002404  003406  004410  005412\n"
     "0000010  177777  177777  177777  177777  177777  177777  177777  177777\n"
     "*\n"
     "0000040  010756  000042\n"
     "0000043\n"},
    {"od",
     "0000000 043123 050104 000400 001402 002404 003406 004410 005412\n"
     "0000020 177777 177777 177777 177777 177777 177777 177777 177777\n"
     "*\n"
     "0000100 010756 000042\n"
     "0000103\n"},
    {"od -t x1",
     "0000000 53 46 44 50 00 01 02 03 04 05 06 07 08 09 0a 0b\n"
     "0000020 ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff\n"
     "*\n"
     "0000100 ee 11 22\n"
     "0000103\n"},
    {"od -A x -t x1z",
     "000000 53 46 44 50 00 01 02 03 04 05 06 07 08 09 0a 0b  >SFDP............<\n"
     "000010 ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff  >................<\n"
     "*\n"
     "000040 ee 11 22                                         >..\"<\n"
     "000043\n"},
    {"od -A d -t x1",
     "0000000 53 46 44 50 00 01 02 03 04 05 06 07 08 09 0a 0b\n"
     "0000016 ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff\n"
     "*\n"
     "0000064 ee 11 22\n"
     "0000067\n"},
    {"od -x",
     "0000000 4653 5044 0100 0302 0504 0706 0908 0b0a\n"
     "0000020 ffff ffff ffff ffff ffff ffff ffff ffff\n"
     "*\n"
     "0000100 11ee 0022\n"
     "0000103\n"},
    {"od -t x4",
     "0000000 50444653 03020100 07060504 0b0a0908\n"
     "0000020 ffffffff ffffffff ffffffff ffffffff\n"
     "*\n"
     "0000100 002211ee\n"
     "0000103\n"},
    {"od -t x8",
     "0000000 0302010050444653 0b0a090807060504\n"
     "0000020 ffffffffffffffff ffffffffffffffff\n"
     "*\n"
     "0000100 00000000002211ee\n"
     "0000103\n"},
    {"od -b",
     "0000000 123 106 104 120 000 001 002 003 004 005 006 007 010 011 012 013\n"
     "0000020 377 377 377 377 377 377 377 377 377 377 377 377 377 377 377 377\n"
     "*\n"
     "0000100 356 021 042\n"
     "0000103\n"},
    {"od -A x",
     "000000 043123 050104 000400 001402 002404 003406 004410 005412\n"
     "000010 177777 177777 177777 177777 177777 177777 177777 177777\n"
     "*\n"
     "000040 010756 000042\n"
     "000043\n"},
    {"od -v -A n -t x1",
     " 53 46 44 50 00 01 02 03 04 05 06 07 08 09 0a 0b\n"
     " ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff\n"
     " ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff\n"
     " ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff\n"
     " ee 11 22\n"},
};
// clang-format on

BYTES sample_bytes() {
    BYTES bytes = text_bytes("SFDP");
    for (unsigned char byte = 0; byte < 12; ++byte)
        bytes.push_back(byte);
    return join({bytes, BYTES(48, 0xFF), {0xEE, 0x11, 0x22}});
}

// The bytes, or the error.
std::string read(const std::string& text) {
    const SFDP_INPUT input = sfdp_read_dump(text);
    if (const auto* error = std::get_if<SFDP_INPUT_ERROR>(&input))
        return "line " + std::to_string(error->line) + ": " + error->reason;
    return hex_text(std::get<std::vector<std::uint8_t>>(input));
}

std::string sample(const std::string& command) {
    for (const SAMPLE& entry : SAMPLES)
        if (command == entry.command)
            return entry.dump;
    ADD_FAILURE() << command;
    return "";
}

// Each line cut or put in front by `edit`.
template <typename EDIT>
std::string edited_lines(const std::string& text, EDIT&& edit) {
    std::istringstream lines(text);
    std::string result;
    for (std::string line; std::getline(lines, line);)
        result += edit(line);
    return result;
}

} // namespace

TEST(SfdpDump, IsReadAsEachProgramPrintsIt) {
    for (const SAMPLE& entry : SAMPLES)
        EXPECT_EQ(hex_text(sample_bytes()), read(entry.dump)) << entry.command;
}

TEST(SfdpDump, IsReadWithBlanksAroundAndEmptyLines) {
    for (const char* command : {"xxd", "xxd -p", "hexdump -C", "od", "od -t x1"}) {
        const auto pasted = [](const std::string& line) { return "\n   \t" + line + "  \r\n"; };
        EXPECT_EQ(hex_text(sample_bytes()), read(edited_lines(sample(command), pasted))) << command;
    }
}

TEST(SfdpDump, IsReadWithoutItsLastLineEnd) {
    EXPECT_EQ("53 46 44 50", read("53464450"));
    EXPECT_EQ("53 46 44 50 06", read("53 46 44 50 06"));
}

TEST(SfdpDump, IsReadFromAnyFirstAddress) {
    EXPECT_EQ("53 46 44 50 06 01", read("82000000: 53 46 44 50  SFDP\n82000004: 06 01  ..\n"));
}

// Nothing says then that the last word is filled up with 00.
TEST(SfdpDump, IsReadWithoutAddresses) {
    EXPECT_EQ("53 46 44 50 FF EE 11 00", read(" 4653 5044 eeff 0011\n"));
    EXPECT_EQ("53 46 44 50 FF EE 11 00", read(" 043123 050104 167377 000021\n"));
    EXPECT_EQ("53 46 44 50 FF EE 11", read(" 53 46 44 50\n ff ee 11\n"));
}

TEST(SfdpDump, TakesRawBytesAsTheyAre) {
    const BYTES bytes = sample_bytes();
    EXPECT_EQ(hex_text(bytes), read(std::string(bytes.begin(), bytes.end())));
}

TEST(SfdpDump, TakesNothingForNoBytes) {
    EXPECT_EQ("", read(""));
    EXPECT_EQ("", read(" \r\n\n"));
}

TEST(SfdpDump, KeepsWordsOfNoImageInTheOrderOfTheirProgram) {
    EXPECT_EQ("34 12", read("0000000 1234\n0000002\n"));
    EXPECT_EQ("12 34", read("00000000: 1234  .4\n"));
}

TEST(SfdpDump, BelievesWordsThatBeginWithTheSignature) {
    EXPECT_EQ("53 46 44 50 06 01", read("0000000 5346 4450 0601\n0000006\n"));
    EXPECT_EQ("53 46 44 50 06 01", read("5346 4450 0601\n"));
}

TEST(SfdpDump, NamesTheLineOfAWrongDigit) {
    EXPECT_EQ("line 2: \"5G\" is no byte in hexadecimal digits", read("5346\n5G44\n"));
    EXPECT_EQ("line 1: \"534\" has an odd number of digits", read("534\n"));
    EXPECT_EQ("line 3: \"4h53\" is no word of 4 hexadecimal digits, as those before it",
              read("\n0000000 4653 5044\n0000004 4h53\n"));
    EXPECT_EQ("line 1: \"400000\" is no word of 6 octal digits, as those before it", read("0000000 043123 400000\n"));
}

TEST(SfdpDump, NamesTheLineBehindAMissingOne) {
    EXPECT_EQ("line 3: the address 00000030 does not follow the 32 bytes before it: a line is missing, or is there "
              "twice",
              read("00000000: 5346 4450 0001 0203 0405 0607 0809 0a0b  SFDP............\n"
                   "00000010: ffff ffff ffff ffff ffff ffff ffff ffff  ................\n"
                   "00000030: ffff ffff ffff ffff ffff ffff ffff ffff  ................\n"));
    EXPECT_EQ("line 3: the address 0000060 does not follow the 32 bytes before it: a line is missing, or is there "
              "twice",
              read("0000000 53 46 44 50 00 01 02 03 04 05 06 07 08 09 0a 0b\n"
                   "0000020 53 46 44 50 00 01 02 03 04 05 06 07 08 09 0a 0b\n"
                   "0000060\n"));
    EXPECT_EQ("line 2: the address 00000000 does not follow the 2 bytes before it: a line is missing, or is there "
              "twice",
              read("00000000: 5346  SF\n00000000: 5346  SF\n"));
    EXPECT_EQ("line 2: the address 00000000 is below the first one", read("00000010: 5346  SF\n00000000: 5346  SF\n"));
}

TEST(SfdpDump, WantsAnEndForRepeatedLines) {
    EXPECT_EQ("line 2: the address behind \"*\" is missing, which tells how often", read("0000000 5346 5346\n*\n"));
    const std::string nothing = "there is nothing that \"*\" could repeat, or no address tells how often";
    EXPECT_EQ("line 3: " + nothing, read(" 4653 5044\n 4653 5044\n*\n"));
    EXPECT_EQ("line 3: " + nothing, read("00000000: 53\n00000001:\n*\n00000010:\n"));
}

TEST(SfdpDump, StopsAtTheEndOfTheAddressSpace) {
    EXPECT_EQ("line 3: the address 01000001 does not follow the 16 bytes before it: a line is missing, or is there "
              "twice",
              read("00000000  ff ff ff ff ff ff ff ff  ff ff ff ff ff ff ff ff  |................|\n*\n01000001\n"));
    const SFDP_INPUT input = sfdp_read_dump(std::string_view(
        "00000000  ff ff ff ff ff ff ff ff  ff ff ff ff ff ff ff ff  |................|\n*\n01000000\n"));
    ASSERT_TRUE(std::holds_alternative<std::vector<std::uint8_t>>(input));
    EXPECT_EQ(size_t{1} << 24, std::get<0>(input).size());
}

TEST(SfdpDump, RefusesTextThatIsNoDump) {
    EXPECT_EQ("line 1: \"he\" is no byte in hexadecimal digits", read("hell\n"));
    EXPECT_EQ("line 1: \"wrld\" is no word of a dump that is known", read("hello wrld\n"));
}
