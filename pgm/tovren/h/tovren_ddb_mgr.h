// Owners of the two naming tables that are compiled into the library. Each exists at most once.
#ifndef TOVREN_DDB_MGR_H
#define TOVREN_DDB_MGR_H

class TOVREN_DDB_GRAMMAR_MGR {
public:
    // Destroys the instance, if there is one. The next use makes a new one.
    static void delete_mgr();

    static TOVREN_DDB_GRAMMAR_MGR* m_mgr; // null until first use
};

class TOVREN_DDB_OPN_MGR {
public:
    // Destroys the instance, if there is one. The next use makes a new one.
    static void delete_mgr();

    static TOVREN_DDB_OPN_MGR* m_mgr; // null until first use
};

#endif
