// The command groups. Each describes its verbs on the command line.
#ifndef TOOL_GROUPS_H
#define TOOL_GROUPS_H

class TOOL_COMMAND_LINE;

void tool_add_check_group(TOOL_COMMAND_LINE& line);
void tool_add_db_group(TOOL_COMMAND_LINE& line);
void tool_add_device_group(TOOL_COMMAND_LINE& line);
void tool_add_enum_group(TOOL_COMMAND_LINE& line);
void tool_add_flash_group(TOOL_COMMAND_LINE& line);
void tool_add_name_group(TOOL_COMMAND_LINE& line);
void tool_add_opn_group(TOOL_COMMAND_LINE& line);
void tool_add_hps_group(TOOL_COMMAND_LINE& line);
void tool_add_params_group(TOOL_COMMAND_LINE& line);
void tool_add_sfdp_group(TOOL_COMMAND_LINE& line);

// A verb without a group.
void tool_add_report_verb(TOOL_COMMAND_LINE& line);

#endif
