// Images of serial flash discoverable parameters for tests: the published ones, and one to build by hand.
#ifndef TESTS_SUPPORT_SFDP_IMAGE_H
#define TESTS_SUPPORT_SFDP_IMAGE_H

#include "bytes.h"

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>

BYTES hex_bytes(const std::string& digits);

// The document of a file of tests/data/sfdp.
nlohmann::json sfdp_document(const char* name);

// The image of the entry `name` of such a document.
BYTES sfdp_image(const nlohmann::json& document, const std::string& name);

struct SFDP_HEADER_MODEL {
    unsigned int id = 0;
    unsigned int minor = 6;
    unsigned int major = 1;
    unsigned int dwords = 0;
    unsigned int pointer = 0;
};

// An image of the fields' description: 4 MiB in blocks of 4 KiB (20h) and 64 KiB (D8h), pages of 256 bytes, 3 address
// bytes, one basic table of 16 dwords at 16.
struct SFDP_IMAGE_MODEL {
    SFDP_IMAGE_MODEL();

    // Dword `number`, from 1, of the basic table. Setting one makes the table long enough.
    void set(size_t number, std::uint32_t value);
    void cut(size_t dwords); // the basic table ends early

    // Adds a header; its table stands behind all others.
    void add_table(unsigned int id, const std::vector<std::uint32_t>& dwords);

    BYTES image() const;

    std::string signature = "SFDP";
    unsigned int minor = 6;
    unsigned int major = 1;
    unsigned int access_protocol = 0xFF;
    std::vector<std::uint32_t> basic;
    std::vector<SFDP_HEADER_MODEL> others;
    std::vector<std::vector<std::uint32_t>> other_dwords;
};

#endif
