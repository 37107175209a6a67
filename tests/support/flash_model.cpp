#include "flash_model.h"

#include "tovren_dev_info_manager_auto_export.h"

#include <utility>

namespace {

MEMBER text(const char* name, const std::string& value) {
    return {name, TAG_TEXT, value, 0};
}

MEMBER flag(const char* name, bool value) {
    return {name, TAG_BOOL, "", value ? 1U : 0U};
}

MEMBER byte(const char* name, BYTE value) {
    return {name, TAG_BYTE, "", value};
}

MEMBER dword(const char* name, DWORD value) {
    return {name, TAG_DWORD, "", value};
}

std::string value_text(const MEMBER& member) {
    return member.tag == TAG_TEXT ? member.text : std::to_string(member.number);
}

} // namespace

std::vector<MEMBER> members_of(const TOVREN_SFL_FLASH_INFO& flash) {
    return {
        text("manufacturer_name", flash.manufacturer_name),
        text("device_name", flash.device_name),
        flag("silicon_id", flash.silicon_id),
        byte("memory_id", flash.memory_id),
        byte("memory_id_index", flash.memory_id_index),
        byte("memory_type", flash.memory_type),
        byte("memory_type_index", flash.memory_type_index),
        byte("mfc_id", flash.mfc_id),
        byte("mfc_id_index", flash.mfc_id_index),
        byte("velkor_id", flash.velkor_id),
        flag("default_dev", flash.default_dev),
        text("ini", flash.ini),
        flag("extended_mode", flash.extended_mode),
        flag("micron_flow", flash.micron_flow),
        flag("spansion_flow", flash.spansion_flow),
        flag("startup_protected", flash.startup_protected),
        flag("aai_mode", flash.aai_mode),
        flag("flag_status", flash.flag_status),
        byte("die_count", flash.die_count),
        dword("device_bit_size", flash.device_bit_size),
        dword("device_sector_byte", flash.device_sector_byte),
        flag("half_size", flash.half_size),
        flag("byte4_addressing", flash.byte4_addressing),
        dword("bulk_erase_time", flash.bulk_erase_time),
        dword("sec_erase_time", flash.sec_erase_time),
        dword("program_utime", flash.program_utime),
        byte("protection_mask", flash.protection_mask),
        byte("protection_value", flash.protection_value),
        byte("unprotect_value", flash.unprotect_value),
        byte("protection_division", flash.protection_division),
        byte("bottom_value", flash.bottom_value),
        flag("sdm_support", flash.sdm_support),
        text("asc_voltage", flash.asc_voltage),
    };
}

BYTES member_bytes(const MEMBER& member) {
    if (member.tag == TAG_TEXT)
        return join({{TAG_TEXT, static_cast<unsigned char>(member.text.size() % 256)}, text_bytes(member.text)});
    if (member.tag == TAG_DWORD)
        return join({{TAG_DWORD}, le32_bytes(member.number)});
    return {member.tag, static_cast<unsigned char>(member.number)};
}

BYTES record_bytes(const TOVREN_SFL_FLASH_INFO& flash) {
    BYTES bytes;
    for (const MEMBER& member : members_of(flash))
        bytes = join({bytes, member_bytes(member)});
    return join({bytes, text_bytes("END1")});
}

std::vector<std::string> csv_cells(const TOVREN_SFL_FLASH_INFO& flash) {
    std::vector<std::string> row;
    for (const MEMBER& member : members_of(flash)) {
        if (member.tag == TAG_BOOL)
            row.emplace_back(member.number == 1 ? "TRUE" : "FALSE");
        else
            row.push_back(value_text(member));
    }
    return row;
}

std::string csv_row(const TOVREN_SFL_FLASH_INFO& flash) {
    std::string row;
    for (const std::string& cell : csv_cells(flash))
        row += cell + ",";
    row.pop_back();
    return row;
}

std::string printed(unsigned int index, const TOVREN_SFL_FLASH_INFO& flash) {
    std::string line = "Flash Manager Debug " + std::to_string(index) + "\n\t";
    for (const MEMBER& member : members_of(flash))
        line += (member.name == "manufacturer_name" ? "" : " ") + value_text(member);
    return line + "\n";
}

std::string described(const TOVREN_SFL_FLASH_INFO& flash) {
    std::string description;
    for (const MEMBER& member : members_of(flash))
        description += member.name + "=" + value_text(member) + "\n";
    return description;
}

TOVREN_SFL_FLASH_INFO make_flash(const std::string& device_name) {
    TOVREN_SFL_FLASH_INFO flash;
    flash.manufacturer_name = "QXMAKER";
    flash.device_name = device_name;
    flash.memory_id = 0x18;
    flash.memory_id_index = 2;
    flash.memory_type = 0x40;
    flash.memory_type_index = 1;
    flash.mfc_id = 0xA1;
    flash.mfc_id_index = 0;
    flash.velkor_id = 24;
    flash.default_dev = true;
    flash.ini = "NONE";
    flash.extended_mode = true;
    flash.spansion_flow = true;
    flash.aai_mode = true;
    flash.die_count = 3;
    flash.device_bit_size = 0x08000000;
    flash.device_sector_byte = 0x00010000;
    flash.byte4_addressing = true;
    flash.bulk_erase_time = 200;
    flash.sec_erase_time = 2;
    flash.program_utime = 3000;
    flash.protection_mask = 0x7C;
    flash.protection_value = 0x5C;
    flash.unprotect_value = 0x04;
    flash.protection_division = 0xFF;
    flash.bottom_value = 0x20;
    flash.asc_voltage = "1.8V";
    return flash;
}

TOVREN_SFL_FLASH_INFO keyed(const std::string& device_name, const std::string& key, bool default_dev) {
    TOVREN_SFL_FLASH_INFO flash = make_flash(device_name);
    flash.ini = key;
    flash.default_dev = default_dev;
    return flash;
}

TOVREN_SFL_FLASH_INFO no_default(const std::string& device_name) {
    return keyed(device_name, "NONE", false);
}

FLASH_FILE::FLASH_FILE() : md5(TOVREN_FLASH_INFO_CSV_MD5) {}

FLASH_FILE::FLASH_FILE(std::vector<TOVREN_SFL_FLASH_INFO> all) : FLASH_FILE() {
    flashes = std::move(all);
}

BYTES FLASH_FILE::payload() const {
    const unsigned int true_count = static_cast<unsigned int>(flashes.size());
    BYTES bytes = join({le32_bytes(version), le32_bytes(flash_count.value_or(true_count)), le32_bytes(member_count)});
    for (const TOVREN_SFL_FLASH_INFO& flash : flashes)
        bytes = join({bytes, record_bytes(flash)});
    return join({bytes, text_bytes(end), behind_end});
}

BYTES FLASH_FILE::bytes_around(const BYTES& payload_bytes) const {
    FLASH_FILE file = *this;
    file.payload_size = payload_size.value_or(static_cast<unsigned int>(payload_bytes.size()));
    return file.bytes_around_stream(zlib_stream(payload_bytes));
}

BYTES FLASH_FILE::bytes_around_stream(const BYTES& stream) const {
    return join({text_bytes(magic), text_bytes(md5), le32_bytes(payload_size.value_or(0)), stream, check});
}

FLASH_CSV::FLASH_CSV() {
    header = {"STL_STRING,STL_STRING,bool,BYTE,BYTE,BYTE,BYTE,BYTE,BYTE,BYTE,bool,STL_STRING,bool,bool,bool,bool,bool,"
              "bool,BYTE,DWORD,DWORD,bool,bool,DWORD,DWORD,DWORD,BYTE,BYTE,BYTE,BYTE,BYTE,bool,STL_STRING",
              "manufacturer_name,device_name,silicon_id,memory_id,memory_id_index,memory_type,memory_type_index,mfc_id,"
              "mfc_id_index,velkor_id,default_dev,ini,extended_mode,micron_flow,spansion_flow,startup_protected,"
              "aai_mode,flag_status,die_count,device_bit_size,device_sector_byte,half_size,byte4_addressing,"
              "bulk_erase_time,sec_erase_time,program_utime,protection_mask,protection_value,unprotect_value,"
              "protection_division,bottom_value,sdm_support,asc_voltage",
              "a free text",
              "another",
              cells(33),
              cells(33),
              cells(33),
              "and a last one"};
}

FLASH_CSV::FLASH_CSV(std::vector<TOVREN_SFL_FLASH_INFO> all) : FLASH_CSV() {
    flashes = std::move(all);
}

std::string FLASH_CSV::text() const {
    std::string whole;
    for (const std::string& row : header)
        whole += row + "\n";
    for (const TOVREN_SFL_FLASH_INFO& flash : flashes)
        whole += csv_row(flash) + "\n";
    return whole;
}

std::string cells(unsigned int count) {
    std::string row;
    for (unsigned int cell = 1; cell <= count; ++cell)
        row += (cell == 1 ? "" : ",") + std::to_string(cell);
    return row;
}
