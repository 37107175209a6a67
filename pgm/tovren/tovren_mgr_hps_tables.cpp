// The constant tables of the HPS flashes. They are built before everything else of the library and live longest.
#include "tovren_hps_mgr.h"

#define CONSTANT_TABLE __attribute__((init_priority(200))) const

// ---- serial flashes ----

CONSTANT_TABLE std::string TOVREN_HPS_SPI_MD5 = "9095cbfc6f5b69d3eb5d625df882a316";

CONSTANT_TABLE std::vector<std::string> TOVREN_HPS_SPI_PARAM_NAME_LIST = {
    "siid",
    "mask",
    "ext_siid",
    "ext_mask",
    "manufacturer",
    "name",
    "flash_bit_size",
    "sector_byte_size",
    "page_byte_size",
    "bulk_erase_time",
    "bulk_erase_interval_wait_time",
    "sector_erase_time",
    "page_program_time",
    "program_time",
    "die_size",
    "speed_mode",
    "byte4_se_opcode",
    "byte4_pp_opcode",
    "byte4_read_opcode",
};

CONSTANT_TABLE std::vector<TOVREN_PARAM_TYPE> TOVREN_HPS_SPI_PARAM_TYPE_LIST = {
    TOVREN_PARAM_DWORD,  // siid
    TOVREN_PARAM_DWORD,  // mask
    TOVREN_PARAM_DWORD,  // ext_siid
    TOVREN_PARAM_DWORD,  // ext_mask
    TOVREN_PARAM_STRING, // manufacturer
    TOVREN_PARAM_STRING, // name
    TOVREN_PARAM_QWORD,  // flash_bit_size
    TOVREN_PARAM_DWORD,  // sector_byte_size
    TOVREN_PARAM_DWORD,  // page_byte_size
    TOVREN_PARAM_DWORD,  // bulk_erase_time
    TOVREN_PARAM_DWORD,  // bulk_erase_interval_wait_time
    TOVREN_PARAM_DWORD,  // sector_erase_time
    TOVREN_PARAM_DWORD,  // page_program_time
    TOVREN_PARAM_DWORD,  // program_time
    TOVREN_PARAM_DWORD,  // die_size
    TOVREN_PARAM_BOOL,   // speed_mode
    TOVREN_PARAM_DWORD,  // byte4_se_opcode
    TOVREN_PARAM_DWORD,  // byte4_pp_opcode
    TOVREN_PARAM_DWORD,  // byte4_read_opcode
};

CONSTANT_TABLE std::vector<std::string> TOVREN_HPS_SPI_PROMPT_LIST = {
    "Silicon ID (hex)",
    "Silicon ID mask (hex)",
    "Extensive Silicon ID (hex)",
    "Extensive Silicon ID mask (hex)",
    "Manufacturer",
    "Device name",
    "Memory Density [1 - 4096 Mbit]",
    "Sector Size [1 - 1024 Kbyte]",
    "Page BYTE size",
    "Bulk Erase time [seconds]",
    "Bulk Erase interval wait time [seconds]",
    "Sector Erase time [seconds]",
    "Page Program time [microseconds]",
    "Program time [seconds]",
    "Die size [1/2/4]",
    "Speed Mode [Y/N]",
    "4-byte Sector Erase opcode (hex)",
    "4-byte Page Program opcode (hex)",
    "4-byte Read opcode (hex)",
};

// Rows of equal siid differ in their extended identification, sector size or dies; the first that fits is meant.
// clang-format off
CONSTANT_TABLE std::vector<TOVREN_HPS_SPI_PARAMS> TOVREN_HPS_SPI_DATABASE = {
    {0x17BA20, 0xFFFFFF, 0x00, 0x00, "MICRON", "QSPI_64", 0x4000000, 0x10000, 256, 120, 2, 3, 1000, 1, 1, true, 0xD8, 0x02, 0x03},
    {0x18BA20, 0xFFFFFF, 0x00, 0x00, "MICRON", "QSPI_128", 0x8000000, 0x10000, 256, 250, 2, 3, 1000, 1, 1, true, 0xD8, 0x02, 0x03},
    {0x19BA20, 0xFFFFFF, 0x00, 0x00, "MICRON", "QSPI_256", 0x10000000, 0x10000, 256, 480, 3, 3, 1000, 1, 1, true, 0xD8, 0x02, 0x03},
    {0x20BA20, 0xFFFFFF, 0x44, 0xFF, "MICRON", "QSPI_512", 0x20000000, 0x10000, 256, 460, 3, 1, 1000, 1, 1, true, 0xD8, 0x02, 0x03},
    {0x20BA20, 0xFFFFFF, 0x00, 0x00, "MICRON", "QSPI_512", 0x20000000, 0x10000, 256, 480, 3, 3, 1000, 1, 2, false, 0xD8, 0x02, 0x03},
    {0x21BA20, 0xFFFFFF, 0x00, 0x00, "MICRON", "QSPI_1024", 0x40000000, 0x10000, 256, 480, 3, 3, 1000, 1, 4, false, 0xD8, 0x02, 0x03},
    {0x22BA20, 0xFFFFFF, 0x00, 0x00, "MICRON", "QSPI_2048", 0x80000000, 0x10000, 256, 460, 3, 1, 1000, 1, 4, true, 0xD8, 0x02, 0x03},
    {0x18BB20, 0xFFFFFF, 0x00, 0x00, "MICRON", "QSPI_128", 0x8000000, 0x10000, 256, 250, 2, 3, 1000, 1, 1, true, 0xD8, 0x02, 0x03},
    {0x19BB20, 0xFFFFFF, 0x00, 0x00, "MICRON", "QSPI_256", 0x10000000, 0x10000, 256, 480, 3, 3, 1000, 1, 1, true, 0xD8, 0x02, 0x03},
    {0x20BB20, 0xFFFFFF, 0x44, 0xFF, "MICRON", "QSPI_512", 0x20000000, 0x10000, 256, 460, 3, 1, 1000, 1, 1, true, 0xD8, 0x02, 0x03},
    {0x20BB20, 0xFFFFFF, 0x00, 0x00, "MICRON", "QSPI_512", 0x20000000, 0x10000, 256, 480, 3, 3, 1000, 1, 2, false, 0xD8, 0x02, 0x03},
    {0x21BB20, 0xFFFFFF, 0x44, 0xFF, "MICRON", "QSPI_1024", 0x40000000, 0x10000, 256, 460, 3, 1, 1000, 1, 2, true, 0xD8, 0x02, 0x03},
    {0x21BB20, 0xFFFFFF, 0x00, 0x00, "MICRON", "QSPI_1024", 0x40000000, 0x10000, 256, 480, 3, 3, 1000, 1, 4, false, 0xD8, 0x02, 0x03},
    {0x22BB20, 0xFFFFFF, 0x00, 0x00, "MICRON", "QSPI_2048", 0x80000000, 0x10000, 256, 460, 3, 1, 1000, 1, 4, true, 0xD8, 0x02, 0x03},
    {0x132020, 0xFFFFFF, 0x00, 0x00, "MICRON", "SPI_4", 0x400000, 0x10000, 256, 10, 2, 3, 3000, 1, 1, true, 0xD8, 0x02, 0x03},
    {0x152020, 0xFFFFFF, 0x00, 0x00, "MICRON", "SPI_16", 0x1000000, 0x10000, 256, 40, 2, 3, 3000, 1, 1, true, 0xD8, 0x02, 0x03},
    {0x182001, 0xFFFFFF, 0x01, 0xFF, "SPANSION", "QSPI_128", 0x8000000, 0x10000, 256, 256, 2, 11, 2200, 1, 1, true, 0xD8, 0x02, 0x03},
    {0x182001, 0xFFFFFF, 0x00, 0xFF, "SPANSION", "QSPI_128", 0x8000000, 0x40000, 256, 256, 2, 11, 2200, 1, 1, true, 0xD8, 0x02, 0x03},
    {0x190201, 0xFFFFFF, 0x01, 0xFF, "SPANSION", "QSPI_256", 0x10000000, 0x10000, 256, 330, 3, 11, 2200, 1, 1, true, 0xDC, 0x12, 0x13},
    {0x190201, 0xFFFFFF, 0x00, 0xFF, "SPANSION", "QSPI_256", 0x10000000, 0x40000, 256, 330, 3, 11, 2200, 1, 1, true, 0xDC, 0x12, 0x13},
    {0x200201, 0xFFFFFF, 0x00, 0xFF, "SPANSION", "QSPI_512", 0x20000000, 0x40000, 512, 460, 3, 3, 2200, 1, 1, true, 0xDC, 0x12, 0x13},
    {0x1820C2, 0xFFFFFF, 0x00, 0x00, "MACRONIX", "QSPI_128", 0x8000000, 0x10000, 256, 80, 3, 1, 1500, 1, 1, true, 0xDC, 0x12, 0x13},
    {0x1920C2, 0xFFFFFF, 0x00, 0x00, "MACRONIX", "QSPI_256", 0x10000000, 0x10000, 256, 300, 3, 2, 3000, 1, 1, true, 0xDC, 0x12, 0x13},
    {0x1A20C2, 0xFFFFFF, 0x00, 0x00, "MACRONIX", "QSPI_512", 0x20000000, 0x10000, 256, 300, 3, 3, 1500, 1, 1, true, 0xDC, 0x12, 0x13},
    {0x3A25C2, 0xFFFFFF, 0x00, 0x00, "MACRONIX", "QSPI_512", 0x20000000, 0x10000, 256, 320, 3, 3, 3000, 1, 1, true, 0xDC, 0x12, 0x13},
    {0x1B20C2, 0xFFFFFF, 0x00, 0x00, "MACRONIX", "QSPI_1024", 0x40000000, 0x10000, 256, 600, 3, 2, 1000, 1, 1, true, 0xDC, 0x12, 0x13},
    {0x1840C8, 0xFFFFFF, 0x00, 0x00, "GIGADEVICE", "QSPI_128", 0x8000000, 0x10000, 256, 300, 3, 3, 3000, 1, 1, true, 0xDC, 0x12, 0x13},
};
// clang-format on

// ---- NAND flashes ----

CONSTANT_TABLE std::string TOVREN_HPS_NAND_MD5 = "79b884d001a0760b19c475920183ef66";

CONSTANT_TABLE std::vector<std::string> TOVREN_HPS_NAND_PARAM_NAME_LIST = {
    "manufacturer_id",
    "device_id",
    "flash_byte_size",
};

CONSTANT_TABLE std::vector<TOVREN_PARAM_TYPE> TOVREN_HPS_NAND_PARAM_TYPE_LIST = {
    TOVREN_PARAM_DWORD, // manufacturer_id
    TOVREN_PARAM_DWORD, // device_id
    TOVREN_PARAM_QWORD, // flash_byte_size
};

CONSTANT_TABLE std::vector<std::string> TOVREN_HPS_NAND_PROMPT_LIST = {
    "Manufacturer ID (hex)",
    "Device ID (hex)",
    "Memory Size [Mbyte]",
};

CONSTANT_TABLE std::vector<TOVREN_HPS_NAND_PARAMS> TOVREN_HPS_NAND_DATABASE = {
    {0x2C, 0x68, 0x100000000}, {0x2C, 0x48, 0x80000000}, {0x2C, 0xA1, 0x40000000}, {0x2C, 0xF1, 0x40000000},
    {0x01, 0xF1, 0x8000000},   {0x01, 0xDA, 0x10000000}, {0x01, 0xDC, 0x20000000}, {0x01, 0xC1, 0x8000000},
    {0x01, 0xCA, 0x10000000},  {0x01, 0xCC, 0x20000000},
};

// ---- hard processor systems ----

CONSTANT_TABLE std::vector<TOVREN_HPS_INFO> TOVREN_HPS_DATABASE = {
    {0x1A5C20A9, "QX-HPS1", 2, 0xFA705000, 0xFA900000, 0xFAFF0000, 0x10000, 4},
    {0x1A5C40A9, "QX-HPS2", 4, 0xFC8D2000, 0xFCB90000, 0xFCE00000, 0x40000, 4},
};
