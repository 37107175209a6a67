// `tovren flash mtd`.
#ifndef TOOL_FLASH_MTD_H
#define TOOL_FLASH_MTD_H

class TOOL_GROUP;

// Identifies the serial flashes that the running kernel publishes. Not found: there is none, or one is unmatched.
void tool_add_mtd_verb(TOOL_GROUP& group);

#endif
