// The density that a chip's identification tells, where its series puts it there.
#ifndef TOOL_FLASH_CAPACITY_H
#define TOOL_FLASH_CAPACITY_H

#include <optional>

struct TOOL_CAPACITY {
    const char* member;            // that holds the byte: `memory_id`, of a few series `memory_type`
    std::optional<unsigned> bytes; // none for a byte that tells no density, though all of its series do
};

// None where the series is not known to tell its density.
std::optional<TOOL_CAPACITY> tool_flash_capacity(unsigned int mfc_id, unsigned int memory_type, unsigned int memory_id);

#endif
