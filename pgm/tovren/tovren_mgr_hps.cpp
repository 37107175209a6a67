// The managers of the HPS flashes: the user's sections of the flash parameter file ahead of the built-in tables.
#include "tovren_hps_mgr.h"
#include "tovren_types.h"

#include <algorithm>
#include <iterator>
#include <utility>

TOVREN_HPS_MGR* TOVREN_HPS_MGR::m_mgr = nullptr;
TOVREN_HPS_SPI_MGR* TOVREN_HPS_SPI_MGR::m_mgr = nullptr;
TOVREN_HPS_NAND_MGR* TOVREN_HPS_NAND_MGR::m_mgr = nullptr;

namespace {

// Appends what a section holds to a manager's two lists. Records run to the end of the section.
template <typename MANAGER>
void load_user_flashes(MANAGER& manager, TOVREN_FLASH_INI_ENUM section, const std::string& md5,
                       const std::vector<TOVREN_PARAM_TYPE>& types) {
    unsigned int size = 0;
    const std::unique_ptr<unsigned char[]> data(TOVREN_FLASH_INI::read_flash_ini_data(section, size));
    if (size <= md5.size() || !std::equal(md5.begin(), md5.end(), data.get()))
        return;

    using STRUCTURE = typename decltype(manager.m_flash_list)::value_type::element_type;
    auto index = static_cast<unsigned int>(md5.size());
    const auto count = static_cast<unsigned int>(types.size());
    auto flash = std::make_unique<STRUCTURE>();
    while (TOVREN_FLASH_INI::assign_flash_ini_data(data.get(), index, size, count, types.data(), flash->m_params)) {
        manager.m_user_flash_list.push_back(flash.get());
        manager.m_flash_list.push_back(std::move(flash));
        flash = std::make_unique<STRUCTURE>();
    }
}

// Appends the rows of a built-in table.
template <typename MANAGER, typename PARAMS>
void load_built_in_flashes(MANAGER& manager, const std::vector<PARAMS>& database) {
    using STRUCTURE = typename decltype(manager.m_flash_list)::value_type::element_type;
    std::transform(database.begin(), database.end(), std::back_inserter(manager.m_flash_list),
                   [](const PARAMS& row) { return std::make_unique<STRUCTURE>(row); });
}

} // namespace

// ---- serial flashes ----

TOVREN_HPS_SPI_STRUCTURE::TOVREN_HPS_SPI_STRUCTURE(const TOVREN_HPS_SPI_PARAMS& params)
    : TOVREN_HPS_SPI_PARAMS(params), m_params{&siid,
                                              &mask,
                                              &ext_siid,
                                              &ext_mask,
                                              &manufacturer,
                                              &name,
                                              &flash_bit_size,
                                              &sector_byte_size,
                                              &page_byte_size,
                                              &bulk_erase_time,
                                              &bulk_erase_interval_wait_time,
                                              &sector_erase_time,
                                              &page_program_time,
                                              &program_time,
                                              &die_size,
                                              &speed_mode,
                                              &byte4_se_opcode,
                                              &byte4_pp_opcode,
                                              &byte4_read_opcode} {}

// The arguments bear short names because -Wshadow sees the members.
TOVREN_HPS_SPI_STRUCTURE::TOVREN_HPS_SPI_STRUCTURE(unsigned int a1, unsigned int a2, unsigned int a3, unsigned int a4,
                                                   std::string a5, std::string a6, unsigned long long a7,
                                                   unsigned int a8, unsigned int a9, unsigned int a10, unsigned int a11,
                                                   unsigned int a12, unsigned int a13, unsigned int a14,
                                                   unsigned int a15, bool a16, unsigned int a17, unsigned int a18,
                                                   unsigned int a19)
    : TOVREN_HPS_SPI_STRUCTURE(TOVREN_HPS_SPI_PARAMS{a1, a2, a3, a4, std::move(a5), std::move(a6), a7, a8, a9, a10, a11,
                                                     a12, a13, a14, a15, a16, a17, a18, a19}) {}

TOVREN_HPS_SPI_MGR::TOVREN_HPS_SPI_MGR() {
    initialize_ini_file();
    load_built_in_flashes(*this, TOVREN_HPS_SPI_DATABASE);
}

TOVREN_HPS_SPI_MGR* TOVREN_HPS_SPI_MGR::get_mgr() {
    if (!m_mgr)
        m_mgr = new TOVREN_HPS_SPI_MGR;
    return m_mgr;
}

void TOVREN_HPS_SPI_MGR::delete_mgr() {
    delete m_mgr;
    m_mgr = nullptr;
}

void TOVREN_HPS_SPI_MGR::initialize_ini_file() {
    load_user_flashes(*this, TOVREN_FLASH_INI_HPS_SPI, TOVREN_HPS_SPI_MD5, TOVREN_HPS_SPI_PARAM_TYPE_LIST);
}

// ---- NAND flashes ----

TOVREN_HPS_NAND_STRUCTURE::TOVREN_HPS_NAND_STRUCTURE(const TOVREN_HPS_NAND_PARAMS& params)
    : TOVREN_HPS_NAND_PARAMS(params), m_params{&manufacturer_id, &device_id, &flash_byte_size} {}

TOVREN_HPS_NAND_STRUCTURE::TOVREN_HPS_NAND_STRUCTURE(unsigned int a1, unsigned int a2, unsigned long long a3)
    : TOVREN_HPS_NAND_STRUCTURE(TOVREN_HPS_NAND_PARAMS{a1, a2, a3}) {}

TOVREN_HPS_NAND_MGR::TOVREN_HPS_NAND_MGR() {
    initialize_ini_file();
    load_built_in_flashes(*this, TOVREN_HPS_NAND_DATABASE);
}

TOVREN_HPS_NAND_MGR* TOVREN_HPS_NAND_MGR::get_mgr() {
    if (!m_mgr)
        m_mgr = new TOVREN_HPS_NAND_MGR;
    return m_mgr;
}

void TOVREN_HPS_NAND_MGR::delete_mgr() {
    delete m_mgr;
    m_mgr = nullptr;
}

void TOVREN_HPS_NAND_MGR::initialize_ini_file() {
    load_user_flashes(*this, TOVREN_FLASH_INI_HPS_NAND, TOVREN_HPS_NAND_MD5, TOVREN_HPS_NAND_PARAM_TYPE_LIST);
}

// ---- hard processor systems ----

TOVREN_HPS_MGR::TOVREN_HPS_MGR() : m_current_hps(INVALID_DWORD) {}

TOVREN_HPS_MGR* TOVREN_HPS_MGR::get_mgr() {
    if (!m_mgr)
        m_mgr = new TOVREN_HPS_MGR;
    return m_mgr;
}

void TOVREN_HPS_MGR::delete_mgr() {
    delete m_mgr;
    m_mgr = nullptr;
}

bool TOVREN_HPS_MGR::set_current_hps(unsigned int id) {
    m_current_hps = INVALID_DWORD;
    const auto place = std::find_if(TOVREN_HPS_DATABASE.begin(), TOVREN_HPS_DATABASE.end(),
                                    [id](const TOVREN_HPS_INFO& hps) { return hps.id == id; });
    if (place == TOVREN_HPS_DATABASE.end())
        return false;
    m_current_hps = static_cast<unsigned int>(place - TOVREN_HPS_DATABASE.begin());
    return true;
}

const TOVREN_HPS_INFO* TOVREN_HPS_MGR::get_current_hps() const {
    return m_current_hps < TOVREN_HPS_DATABASE.size() ? &TOVREN_HPS_DATABASE[m_current_hps] : nullptr;
}
