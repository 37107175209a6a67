#!/usr/bin/env python3
"""Writes a device description on standard output: device_csv.py CHANGE ...

Without a change: a record for each family of the catalogue (the Generic one at position 1), four of PCF names, the
generic device and the generic part. Cells are empty, but those of the six ENUM columns. Changes, in the order given:

    POSITION:MEMBER=VALUE   a cell of a record; the header rows are at the positions types and names
    POSITION:+LINE          a raw line in the record's place
    POSITION:-              no such record

Positions are those of the plain description. As a module it gives the members in record order.
"""
import os
import sys

WORDS = "DEVID_ENUM DEVID_STR STL_STRING bool BYTE WORD DWORD ENUM".split()
LETTERS = dict(zip("KPTbBWDE", WORDS))

# One letter a member, then the names.
TYPES = [LETTERS[letter] for letter in
         "KPKK" "bbbbbbbbbb" "T" "bbbbbbbb" "DDDDDDDDD" "EBBBBEED" "bbbbDbbbbDDD" "BBBBB" "DDbT" "DDDDDEE" "bbbbbDEDT"
         "bbbbTBWDb"]
NAMES = """
family pcf device part
skip_pof_bitstream_conversion no_flash_option_for_unvm ini_fbgen_flow support_legacy_f2p support_cpf support_ba_flow
support_ob support_download_mode support_sld support_asc support_asc_ini
support_remote_local_update need_brenlow_padding_mask support_aes_wo_ini unsupported_by_lodex unsupported_by_brenlow
allow_partial_frame jtag_program_initialize_in_rti issue_apf_disengage
jtag_program_initialize_microsec jtag_configuration_prepad_bits jtag_program_startup_tck aes_n_fuse_bits
aes_fuse_bit_location aes_n_nv_key_bits aes_n_v_key_bits aes_n_verify_bits n_iv_bits
ekp_alg_family ps_cmp_dclk_ratio fpp_cmp_dclk_ratio fppx16_cmp_dclk_ratio fppx32_cmp_dclk_ratio
cmp_fbgen_start_block cmp_fbgen_end_block cmp_end_padding_alignement
cmp_end_pad_with_one support_prpof need_factory_instr need_config_io_instr n_tck_ticks_after_config_io
advanced_family as_cb_hold_time_issue as_cb_4byte_addressing as_read_in_two_steps
as_second_offset_addr asx1_second_offset_extra_bytes asx4_second_offset_extra_bytes
asc_dummy_cycle spi_dummy_clk_x1_128mb spi_dummy_clk_x1_256mb spi_dummy_clk_x4_128mb spi_dummy_clk_x4_256mb
supported_max_cascaded_asc_count as_minimum_flash_density skip_fbgen cfg_dev
cvp_post_iocsr_padding_cbws hps_post_iocsr_padding_cbws cvp_pre_core_padding_cbws cvp_pre_cmp_core_padding_cbws
cvp_pre_enc_core_padding_cbws fbgen_cvp_core_start_block fbgen_hps_core_start_block
support_ru_cvp support_ru_hps support_fi fi_program_twice use_sdm flash_width_bits default_prog_mode
cmf_flash_block_size asc_voltage support_sdmmc support_vab support_sdos use_subidcode
dummy_string dummy_byte dummy_word dummy_dword dummy_bool
""".split()
ENUM_CELLS = {"ekp_alg_family": "DEV_FAMILY_INVALID", "default_prog_mode": "PROG_MODE_NONE"}
PCF_NAMES = ["QA_CFG_STD", "QX_CFG_STD", "QT_CFG_FAST", "VB_CFG_STD"]
ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "..")


def families():
    """The catalogue's families in upper case, numbered from 1."""
    with open(os.path.join(ROOT, "data/catalogue/world.txt"), encoding="utf-8") as file:
        return [line.split()[1].upper() for line in file if line.startswith("family ")]


def record(member, value):
    cells = dict.fromkeys(NAMES, "")
    for name, word in zip(NAMES, TYPES):
        cells[name] = ENUM_CELLS.get(name, "CFG_BLOCK_NONE") if word == "ENUM" else "0" if word in WORDS[4:7] else ""
    cells[member] = value
    return cells


def plain():
    names = families()
    rows = [record("family", name) for name in [names[0], "GENERIC"] + names[1:]]
    rows += [record("pcf", name) for name in PCF_NAMES]
    rows += [record("device", "GENERIC"), record("part", "GENERIC")]
    lines = {"types": dict(zip(NAMES, TYPES)), "names": dict(zip(NAMES, NAMES))}
    lines.update({str(position): row for position, row in enumerate(rows)})
    return lines


def change(lines, text):
    position, _, value = text.partition(":")
    if position not in lines:
        sys.exit(f"there is no position {position}")
    if value == "-":
        del lines[position]
    elif value.startswith("+"):
        lines[position] = value[1:]
    else:
        name, _, cell = value.partition("=")
        if name not in lines[position]:
            sys.exit(f"there is no member {name}")
        lines[position][name] = cell


def line(row):
    return row if isinstance(row, str) else ",".join(row[name] for name in NAMES)


def description(changes):
    lines = plain()
    for text in changes:
        change(lines, text)
    return "".join(line(row) + "\n" for row in lines.values())


if __name__ == "__main__":
    sys.stdout.buffer.write(description(sys.argv[1:]).encode("utf-8", "surrogateescape"))
