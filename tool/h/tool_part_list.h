// Faults of the part list that generating a device database reads (docs/formats/pgm_parts.md), for the person who wrote
// it: the library ends at the first one and does not say in which line.
#ifndef TOOL_PART_LIST_H
#define TOOL_PART_LIST_H

#include <string>
#include <vector>

// The list of the host's product root.
std::string tool_part_list_path();

// "h/pgm_parts.txt:17: 6 cells, at least 7 expected" for each line that ends a generation: the first ten, and how many
// more there are. A list that cannot be read gives one line; one that is not there gives none.
std::vector<std::string> tool_part_list_fault_lines();

#endif
