// A device database byte by byte: the first record's row and bytes are written out by hand, cell for cell.
#include "device_fixtures.h"
#include "golden.h"
#include "tovren_dev_info_manager.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace {

constexpr char FIRST_ROW[] = "QUARN-1,,,,"
                             "TRUE,FALSE,,TRUE,TRUE,FALSE,FALSE,,TRUE,FALSE,"
                             "INI,"
                             "FALSE,TRUE,TRUE,,FALSE,,TRUE,TRUE,"
                             "1,0x10,256,65536,16777216,4294967295,0xABCDEF,,9,"
                             "DEV_FAMILY_QUARN_2,1,255,0x7F,300,CFG_BLOCK_IOCSR,CFG_BLOCK_TRAILER,40,"
                             "TRUE,,FALSE,TRUE,45,FALSE,TRUE,FALSE,TRUE,50,51,52,"
                             "53,54,55,56,57,58,59,TRUE,QXS256,62,63,64,65,66,"
                             "CFG_BLOCK_CORE,CFG_BLOCK_HPS,,TRUE,,TRUE,FALSE,74,PROG_MODE_JTAG,76,3.3V,"
                             "TRUE,TRUE,FALSE,,"
                             ",83,0x1234,85,TRUE";

constexpr char FIRST_RECORD[] = R"(
    07 01 00 00 00   01 00   07 00 00 00 00   07 00 00 00 00    # family, pcf, device, part
    03 01  03 00  03 00  03 01  03 01  03 00  03 00  03 00  03 01  03 00
    02 03 "INI"                                                 # support_asc_ini
    03 00  03 01  03 01  03 00  03 00  03 00  03 01  03 01
    06 01 00 00 00   06 10 00 00 00   06 00 01 00 00            # from jtag_program_initialize_microsec
    06 00 00 01 00   06 00 00 00 01   06 FF FF FF FF
    06 EF CD AB 00   06 00 00 00 00   06 09 00 00 00            # to n_iv_bits
    07 02 00 00 00                                              # ekp_alg_family
    04 01  04 FF  04 7F  04 2C                                  # ps_cmp_dclk_ratio and its three others; 300 is cut
    07 01 00 00 00   07 04 00 00 00                             # cmp_fbgen_start_block, cmp_fbgen_end_block
    06 28 00 00 00                                              # cmp_end_padding_alignement
    03 01  03 00  03 00  03 01
    06 2D 00 00 00                                              # n_tck_ticks_after_config_io
    03 00  03 01  03 00  03 01
    06 32 00 00 00   06 33 00 00 00   06 34 00 00 00            # from as_second_offset_addr
    04 35  04 36  04 37  04 38  04 39                           # from asc_dummy_cycle
    06 3A 00 00 00   06 3B 00 00 00
    03 01                                                       # skip_fbgen
    02 06 "QXS256"                                              # cfg_dev
    06 3E 00 00 00   06 3F 00 00 00   06 40 00 00 00   06 41 00 00 00   06 42 00 00 00
    07 02 00 00 00   07 03 00 00 00                             # fbgen_cvp_core_start_block, fbgen_hps_core_start_block
    03 00  03 01  03 00  03 01  03 00
    06 4A 00 00 00                                              # flash_width_bits
    07 01 00 00 00                                              # default_prog_mode
    06 4C 00 00 00                                              # cmf_flash_block_size
    02 04 "3.3V"                                                # asc_voltage
    03 01  03 01  03 00  03 00
    02 00   04 53   05 34 12   06 55 00 00 00   03 01           # the dummies
    "END1"
)";

// The other 78 records: the Generic family and nothing else.
constexpr char OTHER_ROW[] =
    "GENERIC,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,DEV_FAMILY_INVALID,,,,,CFG_BLOCK_NONE,CFG_BLOCK_NONE"
    ",,,,,,,,,,,,,,,,,,,,,,,,,,,,CFG_BLOCK_NONE,CFG_BLOCK_NONE,,,,,,,PROG_MODE_NONE,,,,,,,,,,,";

constexpr char OTHER_RECORD[] = R"(
    07 49 00 00 00   01 00   07 00 00 00 00   07 00 00 00 00
    03 00  03 00  03 00  03 00  03 00  03 00  03 00  03 00  03 00  03 00
    02 00
    03 00  03 00  03 00  03 00  03 00  03 00  03 00  03 00
    06 00 00 00 00   06 00 00 00 00   06 00 00 00 00
    06 00 00 00 00   06 00 00 00 00   06 00 00 00 00
    06 00 00 00 00   06 00 00 00 00   06 00 00 00 00
    07 00 00 00 00   04 00  04 00  04 00  04 00   07 00 00 00 00   07 00 00 00 00   06 00 00 00 00
    03 00  03 00  03 00  03 00   06 00 00 00 00   03 00  03 00  03 00  03 00
    06 00 00 00 00   06 00 00 00 00   06 00 00 00 00   04 00  04 00  04 00  04 00  04 00
    06 00 00 00 00   06 00 00 00 00   03 00   02 00
    06 00 00 00 00   06 00 00 00 00   06 00 00 00 00   06 00 00 00 00   06 00 00 00 00
    07 00 00 00 00   07 00 00 00 00   03 00  03 00  03 00  03 00  03 00
    06 00 00 00 00   07 00 00 00 00   06 00 00 00 00   02 00   03 00  03 00  03 00  03 00
    02 00   04 00   05 00 00   06 00 00 00 00   03 00
    "END1"
)";

class DevInfoGolden : public DEVICE_TEST {
protected:
    // The bytes of a text of hexadecimal digits, characters and comments.
    BYTES bytes_of(const std::string& text) {
        write_text(folder.path("golden.txt"), text);
        return read_golden(folder.path("golden.txt")).bytes;
    }

    static void append(BYTES& bytes, const BYTES& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

    // QUARN-1, family 1, has the first 55 devices of the catalogue and their parts; it is served by record 0, all else
    // by record 1. No record lacks a family; all lack device and part.
    static unsigned int entry_of(unsigned int device) { return device <= 55 ? 0 : 1; }

    BYTES expected_tables() {
        BYTES bytes = bytes_of("08 4A 00 00 00  FF FF FF FF  00 00 00 00");
        for (unsigned int family = 2; family < 74; ++family)
            append(bytes, {1, 0, 0, 0});
        append(bytes, bytes_of("0A 18 04 00 00"));
        for (unsigned int device = 0; device < 1048; ++device)
            append(bytes, le32_bytes(entry_of(device)));
        append(bytes, join({{0x0B}, le32_bytes(DEV_PART_MAX)}));
        for (unsigned int part = 0; part < DEV_PART_MAX; ++part)
            append(bytes, le32_bytes(entry_of(DEV_PART_MANAGER().get_device_of(DEV_PART_ENUM(part)))));
        return bytes;
    }

    BYTES expected_payload() {
        BYTES bytes = bytes_of("01 00 00 00  4F 00 00 00  56 00 00 00");
        append(bytes, bytes_of(FIRST_RECORD));
        for (unsigned int record = 1; record < 79; ++record)
            append(bytes, bytes_of(OTHER_RECORD));
        append(bytes, bytes_of("\"END2\""));
        append(bytes, expected_tables());
        return bytes;
    }

    BYTES generated() {
        std::string text = DEVICE_CSV({}).text() + FIRST_ROW + "\n";
        for (unsigned int record = 1; record < 79; ++record)
            text += std::string(OTHER_ROW) + "\n";
        write_text(folder.path("devices.csv"), text);
        standard_error_of([&] { make_generator()->generate_device_database(folder.path("devices.csv"), database); });
        return read_file(database);
    }
};

TEST_F(DevInfoGolden, IsGeneratedByteForByte) {
    const BYTES file = generated();
    const BYTES expected = expected_payload();
    EXPECT_EQ(hex_text(join({text_bytes("PGMIO_DM"), text_bytes(TOVREN_DEV_INFO_CSV_MD5),
                             le32_bytes(static_cast<unsigned int>(expected.size()))})),
              hex_text(first(file, 44)));
    EXPECT_EQ(hex_text(expected), hex_text(inflated({file.begin() + 44, file.end() - 2})));
    EXPECT_EQ("00 00", hex_text({file.end() - 2, file.end()}));
}

TEST_F(DevInfoGolden, LoadsMemberByMember) {
    DEVICE_DATABASE envelope({});
    const MANAGER manager = load(envelope.bytes_around(expected_payload()));
    const TOVREN_DEVICE_INFO& record = *manager->get_record(0);
    EXPECT_EQ(DEV_FAMILY_ENUM(1), record.family);
    EXPECT_EQ("", record.pcf);
    EXPECT_TRUE(record.skip_pof_bitstream_conversion);
    EXPECT_FALSE(record.no_flash_option_for_unvm);
    EXPECT_EQ("INI", record.support_asc_ini);
    EXPECT_EQ(1U, record.jtag_program_initialize_microsec);
    EXPECT_EQ(0xABCDEFU, record.aes_n_v_key_bits);
    EXPECT_EQ(9U, record.n_iv_bits);
    EXPECT_EQ(2U, record.ekp_alg_family);
    EXPECT_EQ(44, record.fppx32_cmp_dclk_ratio);
    EXPECT_EQ(40U, record.cmp_end_padding_alignement);
    EXPECT_EQ(57, record.spi_dummy_clk_x4_256mb);
    EXPECT_EQ("QXS256", record.cfg_dev);
    EXPECT_EQ(3U, record.fbgen_hps_core_start_block);
    EXPECT_EQ("3.3V", record.asc_voltage);
    EXPECT_EQ(0x1234, record.dummy_word);
    EXPECT_EQ(85U, record.dummy_dword);
    EXPECT_TRUE(record.dummy_bool);
    EXPECT_EQ(DEV_FAMILY_GENERIC, manager->get_record(78)->family);
}

} // namespace
