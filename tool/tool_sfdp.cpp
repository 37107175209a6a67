// `tovren sfdp`: the parameter tables that flashes answer of themselves.
#include "tool_command_line.h"
#include "tool_error.h"
#include "tool_groups.h"
#include "tool_output.h"
#include "tool_sfdp_file.h"
#include "tool_sfdp_json.h"
#include "tool_sfdp_text.h"

#include <nlohmann/json.hpp>

namespace {

int show(const std::string& file, const TOOL_OUTPUT& output) {
    const SFDP_RESULT result = tool_read_sfdp(file);
    if (const auto* refusal = std::get_if<SFDP_REFUSAL>(&result))
        throw tool_sfdp_error(file, *refusal);
    const auto& table = std::get<SFDP_TABLE>(result);
    if (output.is_json())
        output.write_json(tool_sfdp_json(table));
    else
        tool_sfdp_write(table, output);
    return TOOL_EXIT_DONE;
}

} // namespace

void tool_add_sfdp_group(TOOL_COMMAND_LINE& line) {
    TOOL_GROUP group = line.add_group("sfdp", "Parameter tables that flashes answer of themselves (SFDP)");
    const auto file = std::make_shared<std::string>();
    group
        .add_verb("show", "Everything that a table says of its flash",
                  [file](const TOOL_OUTPUT& output) { return show(*file, output); })
        .argument("FILE", *file, "The table as the flash answers it to 5A; - is standard input")
        .footer("\nFILE holds the raw bytes from address 0 on, or a dump of them as `xxd`,\n"
                "`xxd -p`, `hexdump`, `hexdump -C` or `od` prints it. Times are stated by the\n"
                "flash's maker; opcodes are hexadecimal. Exit code 3: FILE holds no table, or one\n"
                "that contradicts itself.\n");
}
