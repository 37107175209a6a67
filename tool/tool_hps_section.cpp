// Sections of HPS flashes.
#include "tool_hps_section.h"

#include "tovren_hps_mgr.h"

#include <algorithm>

namespace {

template <typename MANAGER>
TOOL_HPS_LIST load_from(MANAGER& manager, const TOOL_HPS_PARAMS& params) {
    TOOL_HPS_LIST list;
    list.user_count = manager.m_user_flash_list.size();
    for (const auto& flash : manager.m_flash_list)
        list.records.emplace_back(params, flash->m_params);
    return list;
}

const TOOL_HPS_PARAMS SPI_PARAMS = {TOVREN_HPS_SPI_PARAM_NAME_LIST, TOVREN_HPS_SPI_PARAM_TYPE_LIST,
                                    TOVREN_HPS_SPI_PROMPT_LIST};
const TOOL_HPS_PARAMS NAND_PARAMS = {TOVREN_HPS_NAND_PARAM_NAME_LIST, TOVREN_HPS_NAND_PARAM_TYPE_LIST,
                                     TOVREN_HPS_NAND_PROMPT_LIST};

} // namespace

const TOOL_HPS_KIND TOOL_HPS_SPI = {"hps spi", TOVREN_FLASH_INI_HPS_SPI, TOVREN_HPS_SPI_MD5, SPI_PARAMS,
                                    [] { return load_from(*TOVREN_HPS_SPI_MGR::get_mgr(), SPI_PARAMS); }};
const TOOL_HPS_KIND TOOL_HPS_NAND = {"hps nand", TOVREN_FLASH_INI_HPS_NAND, TOVREN_HPS_NAND_MD5, NAND_PARAMS,
                                     [] { return load_from(*TOVREN_HPS_NAND_MGR::get_mgr(), NAND_PARAMS); }};

const TOOL_HPS_KIND* tool_hps_kind_of(TOVREN_FLASH_INI_ENUM section) {
    for (const TOOL_HPS_KIND* kind : {&TOOL_HPS_SPI, &TOOL_HPS_NAND})
        if (kind->section == section)
            return kind;
    return nullptr;
}

TOOL_HPS_SECTION tool_hps_section(const TOOL_HPS_KIND& kind, const TOOL_BYTES& bytes) {
    TOOL_HPS_SECTION section;
    if (bytes.empty())
        return section;
    section.is_foreign = bytes.size() < kind.md5.size() || !std::equal(kind.md5.begin(), kind.md5.end(), bytes.begin());
    if (section.is_foreign)
        return section;

    const auto size = static_cast<unsigned int>(bytes.size());
    auto index = static_cast<unsigned int>(kind.md5.size());
    section.offsets.push_back(index);
    TOOL_HPS_RECORD record(kind.params);
    while (TOVREN_FLASH_INI::assign_flash_ini_data(bytes.data(), index, size,
                                                   static_cast<unsigned int>(kind.params.types.size()),
                                                   kind.params.types.data(), record.pointers().data())) {
        section.records.push_back(record);
        section.offsets.push_back(index);
    }
    section.rest = bytes.size() - section.offsets.back();
    return section;
}
