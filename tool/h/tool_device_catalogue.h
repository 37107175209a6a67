// `tovren device catalogue`: the families, devices or parts that the host knows.
#ifndef TOOL_DEVICE_CATALOGUE_H
#define TOOL_DEVICE_CATALOGUE_H

#include "tool_output.h"

// `which`: "families", "devices" or "parts".
int tool_device_catalogue(const std::string& which, const TOOL_OUTPUT& output);

#endif
