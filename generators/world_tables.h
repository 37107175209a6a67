// Writes the world's catalogue side: the tables compiled into the standalone host, and the plain lists.
#ifndef WORLD_TABLES_H
#define WORLD_TABLES_H

#include "world_expand.h"

// The source that defines the tables of standalone/h/tovren_catalogue_tables.h. A world that the tables' types cannot
// hold is a fault.
std::string catalogue_tables_text(const WORLD& world, WORLD_FAULTS& faults);

// The part list of the product (pgm_parts.txt): one line for each part.
std::string part_list_text(const WORLD& world);

// "NUMBER NAME own|none" for each family: whether the device database has a record of its own for it.
std::string family_list_text(const WORLD& world);

// The names of the PCF records, one a line.
std::string pcf_record_list_text(const WORLD& world);

#endif
