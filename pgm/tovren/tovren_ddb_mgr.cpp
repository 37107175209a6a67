// Life and death of the naming singletons.
#include "tovren_ddb_mgr.h"

TOVREN_DDB_GRAMMAR_MGR* TOVREN_DDB_GRAMMAR_MGR::m_mgr = nullptr;
TOVREN_DDB_OPN_MGR* TOVREN_DDB_OPN_MGR::m_mgr = nullptr;

void TOVREN_DDB_GRAMMAR_MGR::delete_mgr() {
    delete m_mgr;
    m_mgr = nullptr;
}

void TOVREN_DDB_OPN_MGR::delete_mgr() {
    delete m_mgr;
    m_mgr = nullptr;
}
