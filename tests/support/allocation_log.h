// Records what the process allocates and frees, and where in that order the host was called. A program that links this
// has its own operator new and delete, which the libraries that it loads use too.
#ifndef TESTS_SUPPORT_ALLOCATION_LOG_H
#define TESTS_SUPPORT_ALLOCATION_LOG_H

#include <cstddef>
#include <span>

struct ALLOCATION_EVENT {
    enum KIND { ALLOCATED, FREED, TRACKER_ENTERED, TRACKER_LEFT };
    KIND kind;
    const void* address; // of the storage; null for the tracker's events
    size_t size;         // of what was allocated
};

// Records from its construction to its destruction. One at a time.
class ALLOCATION_LOG {
public:
    ALLOCATION_LOG();
    ~ALLOCATION_LOG();
    ALLOCATION_LOG(const ALLOCATION_LOG&) = delete;
    ALLOCATION_LOG& operator=(const ALLOCATION_LOG&) = delete;

    std::span<const ALLOCATION_EVENT> events() const;
    size_t largest_allocation() const;
    size_t live_allocations() const; // made since the construction and not freed

    // For whoever records something else in the same order.
    static void note(ALLOCATION_EVENT::KIND kind, void* address = nullptr, size_t size = 0);
};

#endif
