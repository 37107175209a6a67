// The flash memories that a device's hard processor system (HPS) boots from, and which of the two systems is current.
//
//     for (const auto& flash : TOVREN_HPS_SPI_MGR::get_mgr()->m_flash_list)  // the user's own first
//         if (((answer ^ flash->siid) & flash->mask) == 0) ...
//
// The user's own come from the sections "HPS SPI" and "HPS NAND" of the flash parameter file (tovren_flash_ini.h): the
// fingerprint of the record layout, then records without a gap or a count, each its parameters in list order
// (docs/formats/pgm_flash_ini.md). A section with another fingerprint is left aside; so is a last record that is cut
// short.
//
// The three managers live from the first get_mgr() to delete_mgr(), or to the end of the process. Nothing is re-read in
// between. The members are public for reading; only the manager writes them. Threads: none.
#ifndef TOVREN_HPS_MGR_H
#define TOVREN_HPS_MGR_H

#include "tovren_export.h"
#include "tovren_flash_ini.h"

#include <memory>
#include <string>
#include <vector>

// ---- serial (quad SPI) flashes ----

inline constexpr unsigned int TOVREN_HPS_SPI_PARAM_COUNT = 19;

// The parameters, in the order of the lists below.
struct TOVREN_HPS_SPI_PARAMS {
    unsigned int siid = 0;     // identification bytes, the maker's lowest
    unsigned int mask = 0;     // which bits of siid are compared
    unsigned int ext_siid = 0; // extended identification, which tells flashes of equal siid apart
    unsigned int ext_mask = 0; // which bits of ext_siid are compared
    std::string manufacturer;
    std::string name;
    unsigned long long flash_bit_size = 0;
    unsigned int sector_byte_size = 0; // erase sector
    unsigned int page_byte_size = 0;
    unsigned int bulk_erase_time = 0;               // seconds
    unsigned int bulk_erase_interval_wait_time = 0; // seconds between two looks at a running bulk erase
    unsigned int sector_erase_time = 0;             // seconds
    unsigned int page_program_time = 0;             // microseconds
    unsigned int program_time = 0;                  // seconds
    unsigned int die_size = 0;                      // number of dies: 1, 2 or 4
    bool speed_mode = false;
    unsigned int byte4_se_opcode = 0;   // sector erase with an address of four bytes
    unsigned int byte4_pp_opcode = 0;   // page program
    unsigned int byte4_read_opcode = 0; // read
};

// One flash, and where its parameters are for the functions of TOVREN_FLASH_INI.
struct TOVREN_API TOVREN_HPS_SPI_STRUCTURE : TOVREN_HPS_SPI_PARAMS {
    explicit TOVREN_HPS_SPI_STRUCTURE(const TOVREN_HPS_SPI_PARAMS& params = {});
    TOVREN_HPS_SPI_STRUCTURE(unsigned int siid, unsigned int mask, unsigned int ext_siid, unsigned int ext_mask,
                             std::string manufacturer, std::string name, unsigned long long flash_bit_size,
                             unsigned int sector_byte_size, unsigned int page_byte_size, unsigned int bulk_erase_time,
                             unsigned int bulk_erase_interval_wait_time, unsigned int sector_erase_time,
                             unsigned int page_program_time, unsigned int program_time, unsigned int die_size,
                             bool speed_mode, unsigned int byte4_se_opcode, unsigned int byte4_pp_opcode,
                             unsigned int byte4_read_opcode);
    TOVREN_HPS_SPI_STRUCTURE(const TOVREN_HPS_SPI_STRUCTURE&) = delete; // m_params point into the object
    TOVREN_HPS_SPI_STRUCTURE& operator=(const TOVREN_HPS_SPI_STRUCTURE&) = delete;

    void* m_params[TOVREN_HPS_SPI_PARAM_COUNT];
};

extern TOVREN_API const std::vector<std::string> TOVREN_HPS_SPI_PARAM_NAME_LIST;       // "siid" and so on
extern TOVREN_API const std::vector<TOVREN_PARAM_TYPE> TOVREN_HPS_SPI_PARAM_TYPE_LIST; // and their types
extern TOVREN_API const std::vector<std::string> TOVREN_HPS_SPI_PROMPT_LIST;           // how a person is asked for them
extern TOVREN_API const std::string TOVREN_HPS_SPI_MD5;                                // the layout's fingerprint
extern TOVREN_API const std::vector<TOVREN_HPS_SPI_PARAMS> TOVREN_HPS_SPI_DATABASE;    // the built-in flashes

class TOVREN_API TOVREN_HPS_SPI_MGR {
public:
    static TOVREN_HPS_SPI_MGR* get_mgr(); // makes the instance on first use
    static void delete_mgr();             // destroys it, if there is one; the next get_mgr() reads the file again

    // Loads the user's own flashes. The constructor does this.
    void initialize_ini_file();

    std::vector<std::unique_ptr<TOVREN_HPS_SPI_STRUCTURE>> m_flash_list; // the user's own, then the built-in ones
    std::vector<TOVREN_HPS_SPI_STRUCTURE*> m_user_flash_list;            // the user's own again

    static TOVREN_HPS_SPI_MGR* m_mgr; // null while there is none

private:
    TOVREN_LOCAL TOVREN_HPS_SPI_MGR();
};

// ---- NAND flashes ----

inline constexpr unsigned int TOVREN_HPS_NAND_PARAM_COUNT = 3;

struct TOVREN_HPS_NAND_PARAMS {
    unsigned int manufacturer_id = 0; // identification byte
    unsigned int device_id = 0;       // identification byte
    unsigned long long flash_byte_size = 0;
};

struct TOVREN_API TOVREN_HPS_NAND_STRUCTURE : TOVREN_HPS_NAND_PARAMS {
    explicit TOVREN_HPS_NAND_STRUCTURE(const TOVREN_HPS_NAND_PARAMS& params = {});
    TOVREN_HPS_NAND_STRUCTURE(unsigned int manufacturer_id, unsigned int device_id, unsigned long long flash_byte_size);
    TOVREN_HPS_NAND_STRUCTURE(const TOVREN_HPS_NAND_STRUCTURE&) = delete;
    TOVREN_HPS_NAND_STRUCTURE& operator=(const TOVREN_HPS_NAND_STRUCTURE&) = delete;

    void* m_params[TOVREN_HPS_NAND_PARAM_COUNT];
};

extern TOVREN_API const std::vector<std::string> TOVREN_HPS_NAND_PARAM_NAME_LIST;
extern TOVREN_API const std::vector<TOVREN_PARAM_TYPE> TOVREN_HPS_NAND_PARAM_TYPE_LIST;
extern TOVREN_API const std::vector<std::string> TOVREN_HPS_NAND_PROMPT_LIST;
extern TOVREN_API const std::string TOVREN_HPS_NAND_MD5;
extern TOVREN_API const std::vector<TOVREN_HPS_NAND_PARAMS> TOVREN_HPS_NAND_DATABASE;

class TOVREN_API TOVREN_HPS_NAND_MGR {
public:
    static TOVREN_HPS_NAND_MGR* get_mgr();
    static void delete_mgr();

    void initialize_ini_file();

    std::vector<std::unique_ptr<TOVREN_HPS_NAND_STRUCTURE>> m_flash_list;
    std::vector<TOVREN_HPS_NAND_STRUCTURE*> m_user_flash_list;

    static TOVREN_HPS_NAND_MGR* m_mgr;

private:
    TOVREN_LOCAL TOVREN_HPS_NAND_MGR();
};

// ---- hard processor systems ----

// What the programmer must know of a system to reach its flash controllers.
struct TOVREN_HPS_INFO {
    unsigned int id;  // what its debug port answers to the identification command
    std::string name; // for people
    unsigned int core_count;
    unsigned int spi_address;  // first register of the quad SPI controller
    unsigned int nand_address; // first register of the NAND controller; 0: it has none
    unsigned int ram_address;  // on-chip memory, which takes the flash loader
    unsigned int ram_byte_size;
    unsigned int spi_chip_selects; // how many serial flashes it can have
};

extern TOVREN_API const std::vector<TOVREN_HPS_INFO> TOVREN_HPS_DATABASE; // two

class TOVREN_API TOVREN_HPS_MGR {
public:
    static TOVREN_HPS_MGR* get_mgr();
    static void delete_mgr();

    // Makes the system with this id current; true when there is one. Otherwise none is current afterwards.
    bool set_current_hps(unsigned int id);

    // The current one, null when there is none. It lives as long as the library is loaded.
    const TOVREN_HPS_INFO* get_current_hps() const;

    unsigned int m_current_hps; // index into TOVREN_HPS_DATABASE, 0xFFFFFFFF for none

    static TOVREN_HPS_MGR* m_mgr;

private:
    TOVREN_LOCAL TOVREN_HPS_MGR();
};

#endif
