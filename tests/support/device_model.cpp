#include "device_model.h"

#include "host_dev.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <type_traits>

namespace {

template <typename VALUE>
std::string value_text(const VALUE& value) {
    if constexpr (std::is_same_v<VALUE, std::string>)
        return value;
    else
        return std::to_string(static_cast<unsigned int>(value));
}

#define MEMBER(type, name)                                                                                             \
    {                                                                                                                  \
#name, type, [](const TOVREN_DEVICE_INFO& record) { return value_text(record.name); }                          \
    }

constexpr DEVICE_MEMBER MEMBERS[] = {
    MEMBER("DEVID_ENUM", family),
    MEMBER("DEVID_STR", pcf),
    MEMBER("DEVID_ENUM", device),
    MEMBER("DEVID_ENUM", part),
    MEMBER("bool", skip_pof_bitstream_conversion),
    MEMBER("bool", no_flash_option_for_unvm),
    MEMBER("bool", ini_fbgen_flow),
    MEMBER("bool", support_legacy_f2p),
    MEMBER("bool", support_cpf),
    MEMBER("bool", support_ba_flow),
    MEMBER("bool", support_ob),
    MEMBER("bool", support_download_mode),
    MEMBER("bool", support_sld),
    MEMBER("bool", support_asc),
    MEMBER("STL_STRING", support_asc_ini),
    MEMBER("bool", support_remote_local_update),
    MEMBER("bool", need_brenlow_padding_mask),
    MEMBER("bool", support_aes_wo_ini),
    MEMBER("bool", unsupported_by_lodex),
    MEMBER("bool", unsupported_by_brenlow),
    MEMBER("bool", allow_partial_frame),
    MEMBER("bool", jtag_program_initialize_in_rti),
    MEMBER("bool", issue_apf_disengage),
    MEMBER("DWORD", jtag_program_initialize_microsec),
    MEMBER("DWORD", jtag_configuration_prepad_bits),
    MEMBER("DWORD", jtag_program_startup_tck),
    MEMBER("DWORD", aes_n_fuse_bits),
    MEMBER("DWORD", aes_fuse_bit_location),
    MEMBER("DWORD", aes_n_nv_key_bits),
    MEMBER("DWORD", aes_n_v_key_bits),
    MEMBER("DWORD", aes_n_verify_bits),
    MEMBER("DWORD", n_iv_bits),
    MEMBER("ENUM", ekp_alg_family),
    MEMBER("BYTE", ps_cmp_dclk_ratio),
    MEMBER("BYTE", fpp_cmp_dclk_ratio),
    MEMBER("BYTE", fppx16_cmp_dclk_ratio),
    MEMBER("BYTE", fppx32_cmp_dclk_ratio),
    MEMBER("ENUM", cmp_fbgen_start_block),
    MEMBER("ENUM", cmp_fbgen_end_block),
    MEMBER("DWORD", cmp_end_padding_alignement),
    MEMBER("bool", cmp_end_pad_with_one),
    MEMBER("bool", support_prpof),
    MEMBER("bool", need_factory_instr),
    MEMBER("bool", need_config_io_instr),
    MEMBER("DWORD", n_tck_ticks_after_config_io),
    MEMBER("bool", advanced_family),
    MEMBER("bool", as_cb_hold_time_issue),
    MEMBER("bool", as_cb_4byte_addressing),
    MEMBER("bool", as_read_in_two_steps),
    MEMBER("DWORD", as_second_offset_addr),
    MEMBER("DWORD", asx1_second_offset_extra_bytes),
    MEMBER("DWORD", asx4_second_offset_extra_bytes),
    MEMBER("BYTE", asc_dummy_cycle),
    MEMBER("BYTE", spi_dummy_clk_x1_128mb),
    MEMBER("BYTE", spi_dummy_clk_x1_256mb),
    MEMBER("BYTE", spi_dummy_clk_x4_128mb),
    MEMBER("BYTE", spi_dummy_clk_x4_256mb),
    MEMBER("DWORD", supported_max_cascaded_asc_count),
    MEMBER("DWORD", as_minimum_flash_density),
    MEMBER("bool", skip_fbgen),
    MEMBER("STL_STRING", cfg_dev),
    MEMBER("DWORD", cvp_post_iocsr_padding_cbws),
    MEMBER("DWORD", hps_post_iocsr_padding_cbws),
    MEMBER("DWORD", cvp_pre_core_padding_cbws),
    MEMBER("DWORD", cvp_pre_cmp_core_padding_cbws),
    MEMBER("DWORD", cvp_pre_enc_core_padding_cbws),
    MEMBER("ENUM", fbgen_cvp_core_start_block),
    MEMBER("ENUM", fbgen_hps_core_start_block),
    MEMBER("bool", support_ru_cvp),
    MEMBER("bool", support_ru_hps),
    MEMBER("bool", support_fi),
    MEMBER("bool", fi_program_twice),
    MEMBER("bool", use_sdm),
    MEMBER("DWORD", flash_width_bits),
    MEMBER("ENUM", default_prog_mode),
    MEMBER("DWORD", cmf_flash_block_size),
    MEMBER("STL_STRING", asc_voltage),
    MEMBER("bool", support_sdmmc),
    MEMBER("bool", support_vab),
    MEMBER("bool", support_sdos),
    MEMBER("bool", use_subidcode),
    MEMBER("STL_STRING", dummy_string),
    MEMBER("BYTE", dummy_byte),
    MEMBER("WORD", dummy_word),
    MEMBER("DWORD", dummy_dword),
    MEMBER("bool", dummy_bool),
};

#undef MEMBER

unsigned char tag_of(const std::string& type) {
    static const std::map<std::string, unsigned char> TAGS = {{"DEVID_ENUM", 7}, {"DEVID_STR", 1}, {"STL_STRING", 2},
                                                              {"bool", 3},       {"BYTE", 4},      {"WORD", 5},
                                                              {"DWORD", 6},      {"ENUM", 7}};
    return TAGS.at(type);
}

// The names that the tests use in enumeration columns.
unsigned int name_number(const std::string& member, const std::string& name) {
    static const std::map<std::string, unsigned int> NUMBERS = {
        {"", 0},
        {"QUARN-1", 1},
        {"GENERIC", 73},
        {"DEV_FAMILY_INVALID", 0},
        {"DEV_FAMILY_QUARN_2", 2},
        {"CFG_BLOCK_NONE", 0},
        {"CFG_BLOCK_IOCSR", 1},
        {"CFG_BLOCK_CORE", 2},
        {"CFG_BLOCK_HPS", 3},
        {"CFG_BLOCK_TRAILER", 4},
        {"PROG_MODE_NONE", 0},
        {"PROG_MODE_ACTIVE_SERIAL", 3},
    };
    if (name == "GENERIC" && member == "device")
        return 1047;
    if (name == "GENERIC" && member == "part")
        return DEV_PART_GENERIC;
    return NUMBERS.at(name);
}

bool is_number(const std::string& cell) {
    return !cell.empty() && isdigit(static_cast<unsigned char>(cell[0])) != 0;
}

unsigned int number_of(const DEVICE_MEMBER& member, const std::string& cell) {
    if (member.type == std::string("bool"))
        return cell == "TRUE" ? 1 : 0;
    if (is_number(cell))
        return static_cast<unsigned int>(std::stoul(cell, nullptr, 0));
    return name_number(member.name, cell);
}

bool is_text(const DEVICE_MEMBER& member) {
    return tag_of(member.type) == 1 || tag_of(member.type) == 2;
}

std::string held_value(const DEVICE_MEMBER& member, const std::string& cell) {
    return is_text(member) ? cell : std::to_string(number_of(member, cell));
}

BYTES value_bytes(const DEVICE_MEMBER& member, const std::string& cell) {
    const unsigned char tag = tag_of(member.type);
    if (is_text(member))
        return join({{tag, static_cast<unsigned char>(cell.size() & 0xFF)}, text_bytes(cell)});
    const size_t width = tag == 3 || tag == 4 ? 1 : tag == 5 ? 2 : 4;
    return join({{tag}, first(le32_bytes(number_of(member, cell)), width)});
}

// A value of its own for the member at `position`, the first being 1.
std::string distinct_cell(const std::string& type, size_t position) {
    if (type == "bool")
        return position % 3 == 0 ? "TRUE" : position % 3 == 1 ? "FALSE" : "";
    if (type == "STL_STRING")
        return "T" + std::to_string(position);
    if (type == "BYTE")
        return std::to_string(position + 100);
    if (type == "WORD")
        return std::to_string(position * 257 + 1);
    return std::to_string(position * 0x01000100 + 1);
}

void append(BYTES& bytes, const BYTES& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

BYTES table_bytes(unsigned char tag, const std::vector<unsigned int>& table) {
    BYTES bytes = join({{tag}, le32_bytes(static_cast<unsigned int>(table.size()))});
    for (const unsigned int entry : table)
        append(bytes, le32_bytes(entry));
    return bytes;
}

} // namespace

std::span<const DEVICE_MEMBER> device_members() {
    return MEMBERS;
}

size_t device_member_position(const std::string& name) {
    const auto found = std::find_if(std::begin(MEMBERS), std::end(MEMBERS),
                                    [&](const DEVICE_MEMBER& member) { return member.name == name; });
    return static_cast<size_t>(found - std::begin(MEMBERS));
}

DEVICE_ROW DEVICE_ROW::with(const std::string& member, const std::string& cell) const {
    DEVICE_ROW row = *this;
    row.cells.at(device_member_position(member)) = cell;
    return row;
}

std::string DEVICE_ROW::text() const {
    std::string line;
    for (const std::string& cell : cells)
        line += (&cell == cells.data() ? "" : ",") + cell;
    return line;
}

BYTES DEVICE_ROW::bytes() const {
    BYTES bytes;
    for (size_t position = 0; position < cells.size(); ++position)
        append(bytes, value_bytes(MEMBERS[position], cells[position]));
    append(bytes, text_bytes("END1"));
    return bytes;
}

std::string DEVICE_ROW::described() const {
    std::string text;
    for (size_t position = 0; position < cells.size(); ++position)
        text += std::string(MEMBERS[position].name) + "=" + held_value(MEMBERS[position], cells[position]) + "\n";
    return text;
}

std::string DEVICE_ROW::described(const TOVREN_DEVICE_INFO& record) {
    std::string text;
    for (const DEVICE_MEMBER& member : MEMBERS)
        text += std::string(member.name) + "=" + member.value_of(record) + "\n";
    return text;
}

std::string DEVICE_ROW::printed(unsigned int index, const std::string& label) const {
    std::string line = "Dev Info Manager Debug " + std::to_string(index) + "\n\t" + label;
    const char* const headings[] = {"FAMILY : ", "PCF : ", "DEVICE : ", "PART : "};
    for (size_t key = 0; key < 4; ++key)
        line += label.empty() && !cells[key].empty() ? headings[key] + cells[key] : "";
    for (size_t position = 4; position < cells.size(); ++position)
        line += " " + held_value(MEMBERS[position], cells[position]);
    return line + "\n";
}

DEVICE_ROW make_device_row() {
    DEVICE_ROW row = plain_device_row();
    for (size_t position = 4; position < row.cells.size(); ++position)
        if (std::string(MEMBERS[position].type) != "ENUM")
            row.cells[position] = distinct_cell(MEMBERS[position].type, position + 1);
    return row.with("ekp_alg_family", "DEV_FAMILY_QUARN_2")
        .with("cmp_fbgen_start_block", "CFG_BLOCK_CORE")
        .with("cmp_fbgen_end_block", "CFG_BLOCK_TRAILER")
        .with("fbgen_cvp_core_start_block", "CFG_BLOCK_IOCSR")
        .with("fbgen_hps_core_start_block", "CFG_BLOCK_HPS")
        .with("default_prog_mode", "PROG_MODE_ACTIVE_SERIAL");
}

DEVICE_ROW plain_device_row() {
    DEVICE_ROW row;
    for (size_t position = 0; position < row.cells.size(); ++position)
        if (std::string(MEMBERS[position].type) == "ENUM")
            row.cells[position] = "CFG_BLOCK_NONE";
        else if (std::string(MEMBERS[position].type).ends_with("WORD") || std::string(MEMBERS[position].type) == "BYTE")
            row.cells[position] = "0";
    return row.with("ekp_alg_family", "DEV_FAMILY_INVALID").with("default_prog_mode", "PROG_MODE_NONE");
}

DEVICE_CSV::DEVICE_CSV(std::vector<DEVICE_ROW> csv_rows) : rows(std::move(csv_rows)) {
    for (size_t position = 0; position < std::size(MEMBERS); ++position) {
        types.cells[position] = MEMBERS[position].type;
        names.cells[position] = MEMBERS[position].name;
    }
}

std::string DEVICE_CSV::text() const {
    std::string text = types.text() + "\n" + names.text() + "\n";
    for (const DEVICE_ROW& row : rows)
        text += row.text() + "\n";
    return text;
}

std::vector<DEVICE_ROW> make_device_rows() {
    std::vector<DEVICE_ROW> rows = {make_device_row().with("family", "QUARN-1"),
                                    plain_device_row().with("family", "GENERIC")};
    while (rows.size() < 79)
        rows.push_back(plain_device_row().with("pcf", "SPARE_" + std::to_string(rows.size())));
    return rows;
}

DEVICE_DATABASE::DEVICE_DATABASE(std::vector<DEVICE_ROW> file_rows)
    : md5(TOVREN_DEV_INFO_CSV_MD5), rows(std::move(file_rows)), family_table(74, 0xFFFFFFFF),
      device_table(1048, 0xFFFFFFFF), part_table(DEV_PART_MAX, 0xFFFFFFFF) {}

BYTES DEVICE_DATABASE::record_part() const {
    const auto row_count = static_cast<unsigned int>(rows.size());
    BYTES bytes = join({le32_bytes(version), le32_bytes(device_count.value_or(row_count)), le32_bytes(member_count)});
    for (const DEVICE_ROW& row : rows)
        append(bytes, row.bytes());
    append(bytes, text_bytes("END2"));
    return bytes;
}

BYTES DEVICE_DATABASE::tables() const {
    return join({table_bytes(8, family_table), table_bytes(10, device_table), table_bytes(11, part_table)});
}

BYTES DEVICE_DATABASE::bytes_around(const BYTES& payload) const {
    const auto size = static_cast<unsigned int>(payload.size());
    return join(
        {text_bytes(magic), text_bytes(md5), le32_bytes(payload_size.value_or(size)), zlib_stream(payload), check});
}
