#include "external_flash.h"

#include "tovren_standalone_host.h"

std::string entry_of(const std::string& definition) {
    return definition + "#" + model_tag(definition, EXTERNAL_VERSION_TEXT) + ";";
}

std::string entry_of(const DEFINITION& definition) {
    return entry_of(definition.text());
}

TOVREN_SFL_FLASH_INFO record_of_definition() {
    TOVREN_SFL_FLASH_INFO record;
    record.manufacturer_name = "QXMAKER";
    record.device_name = "QX25";
    record.memory_id = 24;
    record.memory_id_index = 2;
    record.memory_type = 32;
    record.memory_type_index = 1;
    record.mfc_id = 161;
    record.velkor_id = 32;
    record.default_dev = true;
    record.ini = "NONE";
    record.micron_flow = true;
    record.startup_protected = true;
    record.flag_status = true;
    record.die_count = 2;
    record.device_bit_size = 0x10000000;
    record.device_sector_byte = 0x10000;
    record.byte4_addressing = true;
    record.bulk_erase_time = 250;
    record.sec_erase_time = 3;
    record.program_utime = 5000;
    record.protection_mask = 0x7C;
    record.protection_value = 0x5C;
    record.unprotect_value = 4;
    record.protection_division = 255;
    record.bottom_value = 0x20;
    record.asc_voltage = "1.8V";
    return record;
}

EXTERNAL_FLASH_TEST::EXTERNAL_FLASH_TEST() {
    TOVREN_STANDALONE_HOST::set_version("7.1.0", 2, 345);
}

EXTERNAL_FLASH_TEST::~EXTERNAL_FLASH_TEST() {
    TOVREN_STANDALONE_HOST::reset_version();
}

void EXTERNAL_FLASH_TEST::store_text(const std::string& text) {
    TOVREN_STANDALONE_HOST::set_setting("TOVREN_USER_SPI_FLASHES", text);
}

void EXTERNAL_FLASH_TEST::store(const std::string& list) {
    store_text(model_encoded(list));
}

void EXTERNAL_FLASH_TEST::switch_debug_on() {
    TOVREN_STANDALONE_HOST::set_setting("TOVREN_USER_SPI_FLASHES_DEBUG", "on");
}

std::string EXTERNAL_FLASH_TEST::apply() {
    manager.m_ext_flash_info = make_flash("FORMER");
    return standard_output_of([&] { manager.parse_ext_flash_info(); });
}

std::string EXTERNAL_FLASH_TEST::apply(const std::string& list) {
    store(list);
    return apply();
}

bool EXTERNAL_FLASH_TEST::is_applied(const DEFINITION& definition) {
    EXPECT_EQ("", apply(entry_of(definition)));
    const bool is_empty = manager.m_ext_flash_info.device_name.empty();
    EXPECT_EQ(is_empty ? "" : definition.fields[1], manager.m_ext_flash_info.device_name);
    EXPECT_TRUE(!is_empty || described({}) == described(manager.m_ext_flash_info));
    return !is_empty;
}
