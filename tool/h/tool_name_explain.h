// `tovren name explain`: everything the library knows of a name.
#ifndef TOOL_NAME_EXPLAIN_H
#define TOOL_NAME_EXPLAIN_H

#include "tool_output.h"

#include <optional>
#include <string>
#include <vector>

// The answers to one name. An empty text stands for none.
struct TOOL_NAME_ANSWERS {
    // What a person wants beside the literal answers, reached through the conversions.
    struct RESOLVED {
        std::string catalogue_part;
        std::string device;
        std::string family;
        std::string dev_part_pcf;
        std::string dev_family_pcf;
    };

    std::string input;
    std::string standardised;
    std::string package_name;
    std::string pgm_name;
    std::string pgm_part_pcf;
    std::string pgm_family_pcf;
    std::string dev_part_pcf;
    std::string dev_family_pcf;
    std::string family;
    bool use_package_name = false;
    bool use_full_name = false;
    std::string full_name;
    std::optional<unsigned int> opn_enum;
    std::string opn_hash;
    RESOLVED resolved;

    bool is_known() const; // to anything at all
};

TOOL_NAME_ANSWERS tool_explain_name(const std::string& name);

// Those of the catalogue, in its order.
std::vector<std::string> tool_part_names();

// "0x" and twelve digits; empty for the hash that stands for none.
std::string tool_opn_hash_text(unsigned long long hash);

// Names of the command line; - stands for those of standard input, one a line. One name is answered by a table or a
// JSON document, several by one after the other, a line each with JSON. With `is_why` each look-up is told too.
int tool_name_explain(const std::vector<std::string>& names, bool is_why, const TOOL_OUTPUT& output);

#endif
