// The version of the host.
#ifndef HOST_VER_H
#define HOST_VER_H

#include <string>

// The version as people write it, such as "7.1.0". What a user stores is tied to this text and to the number below.
std::string ver_get_version();

// The same version packed: the service pack in bits 0 to 7 (0: none), the build in bits 8 to 23. Higher bits are the
// host's own.
unsigned int ver_get_current_version_index_number();

#endif
