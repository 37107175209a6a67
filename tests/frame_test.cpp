// Loading and unloading the shared library at run time, in a process whose host writes down how it is called.
#include "allocation_log.h"
#include "recording_host.h"

#include <algorithm>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <vector>

namespace {

using CALLS = std::vector<std::string>;

// All symbols are bound at once: a service that this host does not have makes the load fail.
class LOADED_LIBRARY {
public:
    explicit LOADED_LIBRARY(const char* path) : m_handle(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {
        if (m_handle == nullptr)
            ADD_FAILURE() << dlerror();
    }
    ~LOADED_LIBRARY() { close(); }
    LOADED_LIBRARY(const LOADED_LIBRARY&) = delete;
    LOADED_LIBRARY& operator=(const LOADED_LIBRARY&) = delete;

    void close() {
        if (m_handle != nullptr) {
            EXPECT_EQ(0, dlclose(m_handle));
        }
        m_handle = nullptr;
    }
    void* symbol(const char* name) const { return dlsym(m_handle, name); }

private:
    void* m_handle;
};

bool is_loaded(const char* path) {
    void* handle = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr)
        dlclose(handle);
    return handle != nullptr;
}

class Frame : public testing::Test {
protected:
    Frame() { recording_host() = {}; }
};

TEST_F(Frame, LoadingRegistersTheTrackerAndCallsNothingElse) {
    const LOADED_LIBRARY library(TOVREN_LIBRARY);
    EXPECT_EQ(CALLS{"MEM_INITIALIZER(TOVREN)"}, recording_host().calls);
}

TEST_F(Frame, UnloadingTakesTheTrackerOutAndCallsNothingElse) {
    LOADED_LIBRARY library(TOVREN_LIBRARY);
    recording_host().calls.clear();
    library.close();
    ASSERT_FALSE(is_loaded(TOVREN_LIBRARY));
    EXPECT_EQ(CALLS{"~MEM_INITIALIZER(TOVREN)"}, recording_host().calls);
}

TEST_F(Frame, LoadsAgainAfterUnloading) {
    for (int time = 0; time < 3; ++time) {
        const LOADED_LIBRARY library(TOVREN_LIBRARY);
    }
    EXPECT_EQ((CALLS{"MEM_INITIALIZER(TOVREN)", "~MEM_INITIALIZER(TOVREN)", "MEM_INITIALIZER(TOVREN)",
                     "~MEM_INITIALIZER(TOVREN)", "MEM_INITIALIZER(TOVREN)", "~MEM_INITIALIZER(TOVREN)"}),
              recording_host().calls);
}

TEST_F(Frame, IsLoadedOnceForTwoUsers) {
    LOADED_LIBRARY one(TOVREN_LIBRARY);
    LOADED_LIBRARY two(TOVREN_LIBRARY);
    one.close();
    EXPECT_TRUE(is_loaded(TOVREN_LIBRARY));
    EXPECT_EQ(CALLS{"MEM_INITIALIZER(TOVREN)"}, recording_host().calls);
    two.close();
    EXPECT_EQ((CALLS{"MEM_INITIALIZER(TOVREN)", "~MEM_INITIALIZER(TOVREN)"}), recording_host().calls);
}

// Where an event stands among the events; past the end when it is not there.
size_t position_of(std::span<const ALLOCATION_EVENT> events, ALLOCATION_EVENT::KIND kind,
                   const void* address = nullptr) {
    const auto is_it = [&](const ALLOCATION_EVENT& event) { return event.kind == kind && event.address == address; };
    return static_cast<size_t>(std::find_if(events.begin(), events.end(), is_it) - events.begin());
}

TEST_F(Frame, TheConstantTablesOutliveTheTracker) {
    recording_host().calls.reserve(10);
    const ALLOCATION_LOG log;
    LOADED_LIBRARY library(TOVREN_LIBRARY);
    const size_t loaded = log.events().size();
    library.close();
    const std::span<const ALLOCATION_EVENT> events = log.events();
    const size_t tracker_left = position_of(events, ALLOCATION_EVENT::TRACKER_LEFT);
    ASSERT_LT(tracker_left, events.size());
    size_t tables = 0;
    for (size_t made = 0; made < loaded; ++made) {
        if (events[made].kind != ALLOCATION_EVENT::ALLOCATED)
            continue;
        const size_t freed = made + position_of(events.subspan(made), ALLOCATION_EVENT::FREED, events[made].address);
        if (freed < loaded || freed == events.size())
            continue; // a temporary of loading, or nothing of the library's
        EXPECT_GT(freed, tracker_left) << events[made].size << " bytes";
        ++tables;
    }
    EXPECT_GT(tables, 5U); // the names that are too long to stand inside of their text objects, and the lists
}

class FrameProbe : public Frame {
protected:
    FrameProbe() {
        using MAKE_SINGLETONS = void (*)(const void**, const void**);
        make_singletons = reinterpret_cast<MAKE_SINGLETONS>(library.symbol("frame_probe_make_singletons"));
    }

    LOADED_LIBRARY library{TOVREN_FRAME_PROBE};
    void (*make_singletons)(const void**, const void**) = nullptr;
};

TEST_F(FrameProbe, UnloadsWithoutAnySingleton) {
    library.close();
    EXPECT_EQ((CALLS{"MEM_INITIALIZER(TOVREN)", "~MEM_INITIALIZER(TOVREN)"}), recording_host().calls);
}

TEST_F(FrameProbe, ReleasesTheGrammarMapsThenThePartNumbersThenTheTracker) {
    const void* grammar = nullptr;
    const void* opn = nullptr;
    ASSERT_NE(nullptr, make_singletons);
    make_singletons(&grammar, &opn);
    const ALLOCATION_LOG log;
    library.close();
    const std::span<const ALLOCATION_EVENT> events = log.events();
    const size_t grammar_freed = position_of(events, ALLOCATION_EVENT::FREED, grammar);
    const size_t opn_freed = position_of(events, ALLOCATION_EVENT::FREED, opn);
    const size_t tracker_left = position_of(events, ALLOCATION_EVENT::TRACKER_LEFT);
    ASSERT_LT(tracker_left, events.size());
    EXPECT_LT(grammar_freed, opn_freed);
    EXPECT_LT(opn_freed, tracker_left);
}

TEST_F(FrameProbe, ReleasesEachSingletonOnce) {
    const void* grammar = nullptr;
    const void* opn = nullptr;
    ASSERT_NE(nullptr, make_singletons);
    make_singletons(&grammar, &opn);
    const ALLOCATION_LOG log;
    library.close();
    for (const void* singleton : {grammar, opn}) {
        // The storage may be used again, but not be freed twice in a row.
        ALLOCATION_EVENT::KIND former = ALLOCATION_EVENT::ALLOCATED;
        for (const ALLOCATION_EVENT& event : log.events()) {
            if (event.address != singleton)
                continue;
            EXPECT_NE(former, event.kind);
            former = event.kind;
        }
        EXPECT_LT(position_of(log.events(), ALLOCATION_EVENT::FREED, singleton), log.events().size());
    }
}

} // namespace
