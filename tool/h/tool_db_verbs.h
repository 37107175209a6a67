// The verbs of `tovren db` that compare, trust and read back databases; each describes itself on the command line.
#ifndef TOOL_DB_VERBS_H
#define TOOL_DB_VERBS_H

class TOOL_GROUP;

void tool_add_db_dump(TOOL_GROUP& group);
void tool_add_db_diff(TOOL_GROUP& group);
void tool_add_db_verify(TOOL_GROUP& group);

#endif
