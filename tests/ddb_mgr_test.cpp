// The release functions of the two naming singletons.
#include "tovren_ddb_mgr.h"

#include <gtest/gtest.h>

namespace {

TEST(DdbMgr, ReleasesNothingWhereThereIsNothing) {
    TOVREN_DDB_GRAMMAR_MGR::delete_mgr();
    TOVREN_DDB_OPN_MGR::delete_mgr();
    EXPECT_EQ(nullptr, TOVREN_DDB_GRAMMAR_MGR::m_mgr);
    EXPECT_EQ(nullptr, TOVREN_DDB_OPN_MGR::m_mgr);
}

TEST(DdbMgr, ReleasesASingletonAndForgetsIt) {
    TOVREN_DDB_GRAMMAR_MGR::m_mgr = new TOVREN_DDB_GRAMMAR_MGR;
    TOVREN_DDB_OPN_MGR::m_mgr = new TOVREN_DDB_OPN_MGR;
    TOVREN_DDB_GRAMMAR_MGR::delete_mgr();
    EXPECT_EQ(nullptr, TOVREN_DDB_GRAMMAR_MGR::m_mgr);
    EXPECT_NE(nullptr, TOVREN_DDB_OPN_MGR::m_mgr);
    TOVREN_DDB_OPN_MGR::delete_mgr();
    EXPECT_EQ(nullptr, TOVREN_DDB_OPN_MGR::m_mgr);
}

TEST(DdbMgr, ReleasesTwiceWithoutHarm) {
    TOVREN_DDB_GRAMMAR_MGR::m_mgr = new TOVREN_DDB_GRAMMAR_MGR;
    TOVREN_DDB_OPN_MGR::m_mgr = new TOVREN_DDB_OPN_MGR;
    for (int time = 0; time < 2; ++time) {
        TOVREN_DDB_GRAMMAR_MGR::delete_mgr();
        TOVREN_DDB_OPN_MGR::delete_mgr();
    }
    EXPECT_EQ(nullptr, TOVREN_DDB_GRAMMAR_MGR::m_mgr);
    EXPECT_EQ(nullptr, TOVREN_DDB_OPN_MGR::m_mgr);
}

} // namespace
