// Images of parameter tables from files.
#include "tool_sfdp_file.h"

#include "tool_file.h"
#include "tool_text.h"

#include <fstream>
#include <iostream>

namespace {

constexpr size_t LARGEST_DUMP = 4 << 20; // bytes of text

std::string content(const std::string& file) {
    if (file == "-")
        return tool_read_all(std::cin, tool_sfdp_file_text(file), LARGEST_DUMP);
    if (const std::string fault = tool_reading_fault(file); !fault.empty())
        throw TOOL_ERROR(TOOL_EXIT_REFUSED, tool_sfdp_file_text(file) + ": " + fault,
                         {"next: name the file that holds the table, or - for standard input"});
    std::ifstream input(file, std::ios::in | std::ios::binary);
    return tool_read_all(input, tool_sfdp_file_text(file), LARGEST_DUMP);
}

std::vector<std::uint8_t> image(const std::string& file) {
    const std::string text = content(file);
    SFDP_INPUT input = sfdp_read_dump(text);
    if (const auto* error = std::get_if<SFDP_INPUT_ERROR>(&input))
        throw TOOL_ERROR(TOOL_EXIT_REFUSED,
                         tool_sfdp_file_text(file) + ", line " + std::to_string(error->line) + ": " +
                             tool_printable(error->reason),
                         {"next: give the raw bytes, or a dump of xxd, xxd -p, hexdump -C or od"});
    return std::get<std::vector<std::uint8_t>>(std::move(input));
}

} // namespace

SFDP_RESULT tool_read_sfdp(const std::string& file) {
    return sfdp_decode(image(file));
}

std::string tool_sfdp_file_text(const std::string& file) {
    return file == "-" ? "standard input" : tool_printable(file);
}

TOOL_ERROR tool_sfdp_error(const std::string& file, const SFDP_REFUSAL& refusal) {
    return {TOOL_EXIT_REFUSED,
            tool_sfdp_file_text(file) + ": " + tool_printable(refusal.reason) + ", at byte " +
                std::to_string(refusal.offset),
            {"refused as: " + std::string(refusal.kind),
             "next: read the table again (instruction 5Ah, three address bytes, one dummy byte); a chip that has none",
             "      is defined with `tovren flash define --from FILE`"}};
}
