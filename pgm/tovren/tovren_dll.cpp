// What happens when the library is loaded and unloaded, and the one way to the host's debug sink.
//
// Load: the constant tables (they have an initialisation priority), then the memory tracker, then tovren_dll_main.
// Unload is the reverse: the naming singletons are released first, then the tracker, then the tables.
#include "host_mem.h"
#include "tovren_check.h"
#include "tovren_ddb_mgr.h"

namespace {

class TOVREN_DLL_MAIN {
public:
    TOVREN_DLL_MAIN() = default;
    ~TOVREN_DLL_MAIN() {
        TOVREN_DDB_GRAMMAR_MGR::delete_mgr();
        TOVREN_DDB_OPN_MGR::delete_mgr();
    }
    TOVREN_DLL_MAIN(const TOVREN_DLL_MAIN&) = delete;
    TOVREN_DLL_MAIN& operator=(const TOVREN_DLL_MAIN&) = delete;
};

MEM_INITIALIZER mem_initializer(TOVREN_PREFIX);
TOVREN_DLL_MAIN tovren_dll_main;

} // namespace

int msg_vdebug_impl(MSG_D_LEVEL level, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int result = msg_local_vdebug(TOVREN_PREFIX, level, format, args);
    va_end(args);
    return result;
}
