// The tovren command: its groups.
#include "tool_groups.h"
#include "tool_run.h"

namespace {

void add_groups(TOOL_COMMAND_LINE& line) {
    tool_add_flash_group(line);
    tool_add_device_group(line);
    tool_add_check_group(line);
    tool_add_db_group(line);
    tool_add_name_group(line);
    tool_add_opn_group(line);
    tool_add_enum_group(line);
    tool_add_params_group(line);
    tool_add_sfdp_group(line);
    tool_add_hps_group(line);
    tool_add_report_verb(line);
}

} // namespace

int main(int argc, char** argv) {
    return tool_run(argc, argv, add_groups);
}
