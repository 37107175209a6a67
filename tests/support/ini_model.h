// A plain model of the flash parameter file, spelled out from the format. It shares nothing with the library.
#ifndef TESTS_SUPPORT_INI_MODEL_H
#define TESTS_SUPPORT_INI_MODEL_H

#include "bytes.h"

#include <optional>
#include <string>
#include <vector>

// What the table says of one section.
struct INI_ENTRY {
    unsigned int offset = 0;
    unsigned int size = 0;
};

// A file, field by field; a test sets the one that it wants wrong.
struct INI_FILE {
    std::string magic = "TOVREN_FLASH_INI";
    std::optional<unsigned int> count;             // else the number of sections
    std::vector<BYTES> sections;                   // an empty one is absent
    std::optional<std::vector<INI_ENTRY>> entries; // else those that fit the sections
    BYTES behind_end;

    INI_FILE() = default;
    explicit INI_FILE(std::vector<BYTES> parts) : sections(std::move(parts)) {}

    std::vector<INI_ENTRY> true_entries() const;
    BYTES bytes() const;
};

// The section as the format lets it be read from these bytes; none where it does not.
std::optional<BYTES> section_of(const BYTES& file, unsigned int section);

// Whether the file is in order, be its sections all absent.
bool is_sound(const BYTES& file);

BYTES le64_bytes(unsigned long long value);
BYTES zero_ended(const std::string& text);

#endif
