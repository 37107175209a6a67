// A module made of the library's own objects, with one door more: it creates the naming singletons, which nothing that
// leaves the library does yet.
#include "tovren_ddb_mgr.h"

extern "C" __attribute__((visibility("default"))) void frame_probe_make_singletons(const void** grammar,
                                                                                   const void** opn);

void frame_probe_make_singletons(const void** grammar, const void** opn) {
    TOVREN_DDB_OPN_MGR::m_mgr = new TOVREN_DDB_OPN_MGR;
    TOVREN_DDB_GRAMMAR_MGR::m_mgr = new TOVREN_DDB_GRAMMAR_MGR;
    *grammar = TOVREN_DDB_GRAMMAR_MGR::m_mgr;
    *opn = TOVREN_DDB_OPN_MGR::m_mgr;
}
