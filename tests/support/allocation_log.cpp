#include "allocation_log.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <new>

namespace {

// Plain storage: recording must not allocate.
constexpr size_t MOST_EVENTS = 1 << 16;
ALLOCATION_EVENT recorded[MOST_EVENTS];
size_t recorded_count = 0;
bool is_recording = false;

void* allocate(size_t size) {
    void* storage = std::malloc(std::max<size_t>(size, 1));
    if (storage == nullptr)
        throw std::bad_alloc();
    ALLOCATION_LOG::note(ALLOCATION_EVENT::ALLOCATED, storage, size);
    return storage;
}

void release(void* storage) {
    if (storage != nullptr)
        ALLOCATION_LOG::note(ALLOCATION_EVENT::FREED, storage);
    std::free(storage);
}

} // namespace

ALLOCATION_LOG::ALLOCATION_LOG() {
    recorded_count = 0;
    is_recording = true;
}

ALLOCATION_LOG::~ALLOCATION_LOG() {
    is_recording = false;
    EXPECT_LT(recorded_count, MOST_EVENTS) << "more events than there is room for";
}

std::span<const ALLOCATION_EVENT> ALLOCATION_LOG::events() const {
    return {recorded, recorded_count};
}

size_t ALLOCATION_LOG::largest_allocation() const {
    size_t largest = 0;
    for (const ALLOCATION_EVENT& event : events())
        largest = std::max(largest, event.size);
    return largest;
}

size_t ALLOCATION_LOG::live_allocations() const {
    size_t live = 0;
    for (size_t made = 0; made < recorded_count; ++made) {
        if (recorded[made].kind != ALLOCATION_EVENT::ALLOCATED)
            continue;
        const auto is_its_end = [&](const ALLOCATION_EVENT& event) {
            return event.kind == ALLOCATION_EVENT::FREED && event.address == recorded[made].address;
        };
        live += std::none_of(recorded + made, recorded + recorded_count, is_its_end) ? 1 : 0;
    }
    return live;
}

void ALLOCATION_LOG::note(ALLOCATION_EVENT::KIND kind, void* address, size_t size) {
    if (is_recording && recorded_count < MOST_EVENTS)
        recorded[recorded_count++] = {kind, address, size};
}

void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return std::malloc(std::max<size_t>(size, 1));
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
    return std::malloc(std::max<size_t>(size, 1));
}
void* operator new(size_t size) {
    return allocate(size);
}
void* operator new[](size_t size) {
    return allocate(size);
}
void operator delete(void* storage) noexcept {
    release(storage);
}
void operator delete[](void* storage) noexcept {
    release(storage);
}
void operator delete(void* storage, size_t) noexcept {
    release(storage);
}
void operator delete[](void* storage, size_t) noexcept {
    release(storage);
}
