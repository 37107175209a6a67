// Configuration settings of the host. Setting names are case-sensitive.
#ifndef HOST_CFG_H
#define HOST_CFG_H

#include <string>

// Whether the switch `name` is on; `default_value` where nothing sets it. A value that does not read as "on" is off.
bool cfg_is_on(const std::string& name, bool default_value);

// The text of the setting `name`; empty where nothing sets it.
std::string cfg_get_value(const std::string& name);

#endif
