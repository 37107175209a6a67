// The types of `tovren enum`, as the command names them.
#ifndef TOOL_ENUM_H
#define TOOL_ENUM_H

#include "tovren_mgr.h"

inline constexpr const char* TOOL_ENUM_TYPE_NAMES[PGM_ENUM_TYPE_MAX] = {"PGM_RBA_TYPE", "PGM_FLASH_BLOCK_TYPE",
                                                                        "PGM_ICB_TYPE", "PGM_BITASM_GENERIC_ENUM_TYPE"};

#endif
