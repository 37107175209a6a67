// A decoded parameter table (SFDP) as text for people.
#ifndef TOOL_SFDP_TEXT_H
#define TOOL_SFDP_TEXT_H

#include "sfdp.h"

class TOOL_OUTPUT;

void tool_sfdp_write(const SFDP_TABLE& table, const TOOL_OUTPUT& output);

#endif
