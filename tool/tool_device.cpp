// `tovren device`: the group's verbs.
#include "tool_command_line.h"
#include "tool_file.h"
#include "tool_groups.h"
#include "tool_output.h"
#include "tool_text.h"
#include "tovren_dev_info_manager.h"
#include "tovren_standalone_host.h"

#include <memory>

namespace {

struct GENERATE_OPTIONS {
    std::string csv;
    std::string output;
    std::optional<std::string> product_root;
};

int generate(const GENERATE_OPTIONS& options) {
    if (options.product_root)
        TOVREN_STANDALONE_HOST::set_product_root(*options.product_root);
    const auto advise = [&](const TOOL_REPORT&) {
        return TOOL_ADVICE{tool_printable(options.csv) + ": the description is refused", {}, {}};
    };
    tool_over_file(options.csv, advise,
                   [&] { TOVREN_DEV_INFO_MANAGER(true, 0).generate_device_database(options.csv, options.output); });
    return 0;
}

} // namespace

void tool_add_device_group(TOOL_COMMAND_LINE& line) {
    TOOL_GROUP group = line.add_group("device", "Devices and their programming records");

    const auto generated = std::make_shared<GENERATE_OPTIONS>();
    group
        .add_verb("generate", "Write the device database from its CSV description",
                  [generated](const TOOL_OUTPUT&) { return generate(*generated); })
        .argument("CSV", generated->csv, "The description to read")
        .argument("OUT", generated->output, "The database to write")
        .option("--product-root", "DIR", generated->product_root, "The product's root, with h/pgm_parts.txt");
}
