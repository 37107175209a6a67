// The fields' rules that no published table shows: each by hand on an image that is sound otherwise.
#include "sfdp.h"
#include "sfdp_image.h"

#include <gtest/gtest.h>

namespace {

using WORDS = std::vector<std::string>;

SFDP_TABLE decoded(const BYTES& image) {
    SFDP_RESULT result = sfdp_decode(image);
    if (const auto* refusal = std::get_if<SFDP_REFUSAL>(&result)) {
        ADD_FAILURE() << refusal->kind << ": " << refusal->reason;
        return {};
    }
    return std::get<SFDP_TABLE>(std::move(result));
}

SFDP_TABLE decoded(const SFDP_IMAGE_MODEL& model) {
    return decoded(model.image());
}

SFDP_TABLE with_dword(size_t number, std::uint32_t value) {
    SFDP_IMAGE_MODEL model;
    model.set(number, value);
    return decoded(model);
}

} // namespace

TEST(SfdpRules, DecodeTheImageThatAllOthersAreMadeOf) {
    const SFDP_TABLE table = decoded(SFDP_IMAGE_MODEL());
    EXPECT_EQ(33554432U, table.density_bits);
    EXPECT_EQ(SFDP_ADDRESS_MODE::THREE, table.address_mode);
    ASSERT_EQ(2U, table.erase_types.size());
    EXPECT_EQ(4096U, table.erase_types[0].size);
    EXPECT_EQ(80U, table.erase_types[0].typ_ms);
    EXPECT_EQ(480U, table.erase_types[0].max_ms);
    EXPECT_EQ(0xD8U, table.erase_types[1].opcode);
    EXPECT_EQ(10U, table.erase_types[1].typ_ms);
    EXPECT_EQ(40U, table.page_program_typ_us);
    EXPECT_EQ(160U, table.page_program_max_us);
    EXPECT_EQ(16U, table.chip_erase_typ_ms);
    EXPECT_EQ(96U, table.chip_erase_max_ms);
    EXPECT_EQ(64U, table.chip_erase_max_ms_if_program_factor);
    EXPECT_EQ(WORDS(), table.warnings);
}

TEST(SfdpRules, TakeTheLongestOfHeadersWithOneRevision) {
    SFDP_IMAGE_MODEL model;
    model.cut(9);
    model.add_table(0xFF00, SFDP_IMAGE_MODEL().basic);
    model.others[0].minor = model.minor;
    EXPECT_EQ(16U, decoded(model).bfpt.dwords);
}

TEST(SfdpRules, TakeTheFirstOfHeadersThatAreAlike) {
    SFDP_IMAGE_MODEL model;
    model.add_table(0xFF00, model.basic);
    model.others[0].minor = model.minor;
    EXPECT_EQ(24U, decoded(model).bfpt.offset);
}

TEST(SfdpRules, LookAtTheHighByteOfAnId) {
    SFDP_IMAGE_MODEL model;
    model.add_table(0x0200, {0});
    model.add_table(0x0284, {0});
    const SFDP_TABLE table = decoded(model);
    EXPECT_EQ(16U, table.bfpt.dwords);
    EXPECT_FALSE(table.four_byte_table);
}

TEST(SfdpRules, IgnoreFourByteInstructionsOfAnotherMajorRevision) {
    SFDP_IMAGE_MODEL model;
    model.add_table(0xFF84, {0x00000041, 0});
    model.others[0].major = 2;
    EXPECT_FALSE(decoded(model).four_byte_table);
}

TEST(SfdpRules, ReadATableOf255DwordsAsFarAsItIsKnown) {
    SFDP_IMAGE_MODEL model;
    model.set(255, 0x12345678);
    const SFDP_TABLE table = decoded(model);
    EXPECT_EQ(255U, table.bfpt.dwords);
    EXPECT_EQ(8U, table.octal.max_speed_mhz.size());
}

TEST(SfdpRules, TakeFourGigabitsAsAPower) {
    const SFDP_TABLE table = with_dword(2, 0x80000020);
    EXPECT_EQ(4294967296U, table.density_bits);
    EXPECT_TRUE(table.density_is_power);
    EXPECT_EQ(WORDS{"over_16MiB_but_3byte_only"}, table.warnings);
}

TEST(SfdpRules, TakeTwoGigabitsAsALinearNumber) {
    EXPECT_EQ(2147483648U, with_dword(2, 0x7FFFFFFF).density_bits);
}

TEST(SfdpRules, AcceptTheSmallestFlash) {
    EXPECT_EQ(524288U, with_dword(2, 0x0007FFFF).density_bits); // one block of 64 KiB
    SFDP_IMAGE_MODEL model;
    model.set(2, 0x0000FFFF); // 64 Kbit, 8 KiB
    model.set(8, 0x0000200C);
    EXPECT_EQ(65536U, decoded(model).density_bits);
}

TEST(SfdpRules, KnowTheAddressModes) {
    EXPECT_EQ(SFDP_ADDRESS_MODE::THREE_OR_FOUR, with_dword(1, 0x000220E5).address_mode);
    EXPECT_EQ(SFDP_ADDRESS_MODE::FOUR, with_dword(1, 0x000420E5).address_mode);
}

TEST(SfdpRules, SeparateTheBitsOfTheCapabilities) {
    const SFDP_TABLE table = with_dword(1, 0x0008FF03);
    EXPECT_FALSE(table.uniform_4k);
    EXPECT_FALSE(table.write_granularity_64plus);
    EXPECT_TRUE(table.dtr);
    EXPECT_EQ(0xFFU, table.opcode_4k);
    EXPECT_EQ(WORDS(), table.warnings);
}

TEST(SfdpRules, LeaveOutFastReadsWithoutAnOpcode) {
    SFDP_IMAGE_MODEL model;
    model.set(1, 0x00F120E5); // all four
    model.set(3, 0x00080044); // both opcodes 00
    model.set(4, 0xFF803B08); // 1-2-2 FF
    const SFDP_TABLE table = decoded(model);
    ASSERT_EQ(1U, table.fast_reads.size());
    EXPECT_STREQ("1-1-2", table.fast_reads[0].mode);
    EXPECT_EQ(0x3BU, table.fast_reads[0].opcode);
    EXPECT_EQ(0U, table.fast_reads[0].mode_clocks);
    EXPECT_EQ(8U, table.fast_reads[0].dummy_clocks);
}

TEST(SfdpRules, LeaveOutFastReadsThatAreNotDeclared) {
    SFDP_IMAGE_MODEL model;
    model.set(3, 0x6B08EB44);
    model.set(4, 0xBB803B08);
    model.set(6, 0xFF44FFFF);
    model.set(7, 0xEB44FFFF);
    EXPECT_TRUE(decoded(model).fast_reads.empty());
}

TEST(SfdpRules, AcceptTwoOpcodesOfOneSize) {
    const SFDP_TABLE table = with_dword(8, 0xD70C200C);
    EXPECT_EQ(2U, table.erase_types.size());
    EXPECT_EQ(WORDS(), table.warnings);
}

TEST(SfdpRules, AcceptAnEraseOfOnePage) {
    EXPECT_EQ(256U, with_dword(9, 0x00008108).erase_types.back().size);
}

TEST(SfdpRules, IgnoreTheOpcodeOfATypeThatDoesNotExist) {
    EXPECT_EQ(2U, with_dword(9, 0x0000D800).erase_types.size());
}

TEST(SfdpRules, ReadTheLongestTimes) {
    SFDP_IMAGE_MODEL model;
    model.set(10, 0xFFFFFFFF);
    model.set(11, 0x7FFFFF8F);
    const SFDP_TABLE table = decoded(model);
    EXPECT_EQ(32000U, table.erase_types[0].typ_ms);
    EXPECT_EQ(1024000U, table.erase_types[0].max_ms);
    EXPECT_EQ(2048U, table.page_program_typ_us);
    EXPECT_EQ(65536U, table.page_program_max_us);
    EXPECT_EQ(128U, table.byte_program_first_typ_us);
    EXPECT_EQ(4096U, table.byte_program_next_max_us);
    EXPECT_EQ(2048000U, table.chip_erase_typ_ms);
    EXPECT_EQ(65536000U, table.chip_erase_max_ms);
}

TEST(SfdpRules, ReadTheShortestTimes) {
    SFDP_IMAGE_MODEL model;
    model.set(10, 0);
    model.set(11, 0x00000080);
    const SFDP_TABLE table = decoded(model);
    EXPECT_EQ(1U, table.erase_types[0].typ_ms);
    EXPECT_EQ(2U, table.erase_types[0].max_ms);
    EXPECT_EQ(8U, table.page_program_typ_us);
    EXPECT_EQ(1U, table.byte_program_first_typ_us);
    EXPECT_EQ(16U, table.chip_erase_typ_ms);
    EXPECT_EQ(32U, table.chip_erase_max_ms_if_program_factor);
}

TEST(SfdpRules, ReadTheTimesOfTheThirdAndFourthType) {
    SFDP_IMAGE_MODEL model;
    model.set(9, 0xC411520F);  // 2^15 52h, 2^17 C4h
    model.set(10, 0x5AA40002); // type 3: 22:18 = 9, 24:23 = 1; type 4: 29:25 = 13, 31:30 = 1
    const SFDP_TABLE table = decoded(model);
    ASSERT_EQ(4U, table.erase_types.size());
    EXPECT_EQ(160U, table.erase_types[2].typ_ms);
    EXPECT_EQ(224U, table.erase_types[3].typ_ms);
    EXPECT_EQ(1344U, table.erase_types[3].max_ms);
}

TEST(SfdpRules, KnowWhatATableThatEndsEarlyDoesNotTell) {
    SFDP_IMAGE_MODEL model;
    model.cut(10);
    EXPECT_TRUE(decoded(model).erase_types[0].typ_ms);
    EXPECT_TRUE(decoded(model).page_is_default);
    EXPECT_EQ(256U, decoded(model).page_bytes);
    model.cut(9);
    EXPECT_FALSE(decoded(model).erase_types[0].typ_ms);
    EXPECT_FALSE(decoded(model).legacy_status_polling);
    EXPECT_FALSE(decoded(model).enter_4byte);
}

TEST(SfdpRules, WantBothDwordsOfSuspend) {
    SFDP_IMAGE_MODEL model;
    model.cut(12);
    EXPECT_FALSE(decoded(model).suspend);
    model.set(13, 0);
    ASSERT_TRUE(decoded(model).suspend);
    EXPECT_FALSE(decoded(model).suspend->supported);
}

TEST(SfdpRules, ReadSuspendByItsFields) {
    SFDP_IMAGE_MODEL model;
    model.set(12, 0x42386200); // 30:29 = 2, 28:24 = 2; 23:20 = 3; 19:18 = 2, 17:13 = 3; 12:9 = 1
    model.set(13, 0x757AB030);
    const SFDP_SUSPEND suspend = decoded(model).suspend.value_or(SFDP_SUSPEND());
    EXPECT_TRUE(suspend.supported);
    EXPECT_EQ(24000U, suspend.erase_suspend_latency_ns);
    EXPECT_EQ(256U, suspend.erase_resume_to_suspend_us);
    EXPECT_EQ(32000U, suspend.program_suspend_latency_ns);
    EXPECT_EQ(128U, suspend.program_resume_to_suspend_us);
    EXPECT_EQ(0x75U, suspend.suspend_opcode);
    EXPECT_EQ(0x7AU, suspend.resume_opcode);
    EXPECT_EQ(0xB0U, suspend.program_suspend_opcode);
    EXPECT_EQ(0x30U, suspend.program_resume_opcode);
}

TEST(SfdpRules, PollTheStatusRegisterWhereBothWaysAreDeclared) {
    EXPECT_FALSE(with_dword(14, 0x8000000C).poll_flag_status);
    EXPECT_TRUE(with_dword(14, 0x80000008).poll_flag_status);
}

TEST(SfdpRules, ReadDeepPowerDownByItsFields) {
    const SFDP_TABLE table = with_dword(14, 0x5CD5A204); // B9h, ABh, (2 + 1) * 1 us
    ASSERT_TRUE(table.deep_power_down);
    EXPECT_EQ(0xB9U, table.deep_power_down->enter_opcode);
    EXPECT_EQ(0xABU, table.deep_power_down->exit_opcode);
    EXPECT_EQ(3000U, table.deep_power_down->exit_delay_ns);
}

TEST(SfdpRules, NameEveryQuadEnableCode) {
    EXPECT_STREQ("none", sfdp_quad_enable_name(0));
    EXPECT_STREQ("sr2_bit1_write2_clears", sfdp_quad_enable_name(1));
    EXPECT_STREQ("sr1_bit6", sfdp_quad_enable_name(2));
    EXPECT_STREQ("sr2_bit7_read3F_write3E", sfdp_quad_enable_name(3));
    EXPECT_STREQ("sr2_bit1_write2_keeps", sfdp_quad_enable_name(4));
    EXPECT_STREQ("sr2_bit1_read35_write01", sfdp_quad_enable_name(5));
    EXPECT_STREQ("sr2_bit1_read35_write31", sfdp_quad_enable_name(6));
    EXPECT_STREQ("reserved", sfdp_quad_enable_name(7));
}

TEST(SfdpRules, ReadEveryBitOfDword16) {
    EXPECT_EQ((WORDS{"B7", "06_B7", "ext_addr_reg_C5", "bank_reg_17", "nv_config_B1", "dedicated_opcodes",
                     "always_4byte"}),
              with_dword(16, 0x7F000000).enter_4byte);
    EXPECT_EQ((WORDS{"E9", "06_E9", "ext_addr_reg_C5", "bank_reg_17", "nv_config_B1", "hw_reset", "sw_reset",
                     "power_cycle"}),
              with_dword(16, 0x003FC000).exit_4byte);
    EXPECT_EQ((WORDS{"drive_F_8clk", "drive_F_10clk", "drive_F_16clk", "F0", "66_99", "exit_044_first"}),
              with_dword(16, 0x00003F00).soft_reset);
    EXPECT_EQ(0x7FU, with_dword(16, 0x0000007F).sr1_write_enable_bits);
}

TEST(SfdpRules, TakeFieldsOfDword16ThatAreAllOnesForUnfilled) {
    EXPECT_EQ(WORDS(), with_dword(16, 0xFF000000).enter_4byte);
    EXPECT_EQ(WORDS(), with_dword(16, 0x00FFC000).exit_4byte);
}

TEST(SfdpRules, ReadOctalModeByItsDwords) {
    SFDP_IMAGE_MODEL model;
    model.set(18, 0xE0800000); // swapped, 16-bit extension, reset protocol
    EXPECT_EQ("16bit", decoded(model).octal.command_extension);
    EXPECT_EQ(true, decoded(model).octal.dtr_byte_swap);
    EXPECT_EQ(true, decoded(model).octal.reset_protocol);
    EXPECT_FALSE(decoded(model).octal.enable_code);
    model.set(19, 0x00500000);
    EXPECT_EQ(5U, decoded(model).octal.enable_code);
    EXPECT_TRUE(decoded(model).octal.max_speed_mhz.empty());
}

TEST(SfdpRules, ReadEverySpeedOfDword20) {
    const auto speeds = [](std::uint32_t word) {
        std::vector<unsigned int> list;
        for (const auto& [mode, speed] : with_dword(20, word).octal.max_speed_mhz)
            list.push_back(speed.value_or(0));
        return list;
    };
    EXPECT_EQ((std::vector<unsigned int>{33, 50, 66, 80, 100, 133, 166, 200}), speeds(0x87654321));
    EXPECT_EQ((std::vector<unsigned int>{250, 266, 333, 400, 0, 0, 0, 0}), speeds(0x0FEDCBA9));
}

TEST(SfdpRules, NameEveryFourByteInstruction) {
    SFDP_IMAGE_MODEL model;
    model.add_table(0xFF84, {0x01FFE1FF, 0});
    const SFDP_TABLE table = decoded(model);
    ASSERT_TRUE(table.four_byte_table);
    std::string text;
    for (const auto& [name, opcode] : table.four_byte_table->supported)
        text += std::string(name) + ' ' + std::to_string(opcode) + '\n';
    EXPECT_EQ("read_1_1_1 19\nfast_read_1_1_1 12\nfast_read_1_1_2 60\nfast_read_1_2_2 188\nfast_read_1_1_4 108\n"
              "fast_read_1_4_4 236\nprogram_1_1_1 18\nprogram_1_1_4 52\nprogram_1_4_4 62\ndtr_read_1_1_1 14\n"
              "dtr_read_1_2_2 190\ndtr_read_1_4_4 238\nvolatile_lock_read 224\nvolatile_lock_write 225\n"
              "nonvolatile_lock_read 226\nnonvolatile_lock_write 227\nfast_read_1_1_8 124\nfast_read_1_8_8 204\n"
              "dtr_read_1_8_8 253\nprogram_1_1_8 132\nprogram_1_8_8 142\n",
              text);
}

TEST(SfdpRules, TakeOnesInTheUpperBitsOfFourByteInstructionsForUnfilled) {
    const auto supported = [](std::uint32_t word) {
        SFDP_IMAGE_MODEL model;
        model.add_table(0xFF84, {word, 0});
        return decoded(model).four_byte_table->supported.size();
    };
    EXPECT_EQ(1U, supported(0xFFF00001)); // 24:20 say nothing
    EXPECT_EQ(2U, supported(0xFFF10001)); // bit 16 does
    EXPECT_EQ(1U, supported(0xFFFF0001)); // nor 19:16
    EXPECT_EQ(10U, supported(0x01FF0001));
}

TEST(SfdpRules, TakeOnlyFourByteErasesThatAreDeclaredAndExist) {
    SFDP_IMAGE_MODEL model;
    model.add_table(0xFF84, {0x00001C01, 0xDC5CDC21}); // types 2, 3 and 4; 3 and 4 do not exist
    const SFDP_TABLE table = decoded(model);
    ASSERT_EQ(1U, table.four_byte_table->erase.size());
    EXPECT_EQ(2U, table.four_byte_table->erase[0].index);
    EXPECT_EQ(65536U, table.four_byte_table->erase[0].size);
    EXPECT_EQ(0xDCU, table.four_byte_table->erase[0].opcode);
}

TEST(SfdpRules, WarnOfEachOddity) {
    EXPECT_EQ(WORDS{"no_polling_method_declared"}, with_dword(14, 0x80000000).warnings);
    EXPECT_EQ(WORDS{"quad_enable_reserved_code"}, with_dword(15, 0x00700000).warnings);
    EXPECT_EQ(WORDS{"4byte_methods_on_3byte_part"}, with_dword(16, 0x01000000).warnings);
    EXPECT_EQ(WORDS{"4k_opcode_disagrees_with_erase_types"}, with_dword(1, 0x000021E5).warnings);
    EXPECT_EQ(WORDS{"density_not_power_of_two"}, with_dword(2, 0x017FFFFF).warnings);
    EXPECT_EQ(WORDS{"power_density_below_4Gbit"}, with_dword(2, 0x80000019).warnings);
}

TEST(SfdpRules, WarnOfAFourByteEraseWithoutOpcode) {
    SFDP_IMAGE_MODEL model;
    model.add_table(0xFF84, {0x00000601, 0x00000021});
    EXPECT_EQ(WORDS{"ff84_erase_without_opcode:2"}, decoded(model).warnings);
}

TEST(SfdpRules, WarnOfAnotherTablePastTheEnd) {
    SFDP_IMAGE_MODEL model;
    model.add_table(0x01EF, {1, 2});
    const BYTES image = model.image();
    EXPECT_EQ(WORDS(), decoded(image).warnings);
    EXPECT_EQ(WORDS{"other_table_past_end:01EF"}, decoded(first(image, image.size() - 1)).warnings);
}

TEST(SfdpRules, AcceptAnyAccessProtocol) {
    SFDP_IMAGE_MODEL model;
    model.access_protocol = 0xFD;
    EXPECT_EQ(0xFDU, decoded(model).access_protocol);
}
