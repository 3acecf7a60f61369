#include "counting_allocator.h"

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

namespace morvel::ruby::tests {

namespace {

constinit std::atomic<std::size_t> liveBlocks{0};
constinit std::atomic<std::size_t> liveBytes{0};
constinit std::atomic<std::size_t> peakBytes{0};
constinit std::atomic<std::size_t> requests{0};
constinit std::atomic<std::size_t> refused{0};
constinit std::atomic<std::size_t> mostBytes{std::numeric_limits<std::size_t>::max()};

/// What is to fail on this thread.
struct FailurePlan {
    bool active = false;
    FailureMode mode = FailureMode::OnlyOne;
    std::size_t requestsBefore = 0;
    bool failed = false;
};

constinit thread_local FailurePlan plan;

bool isPlannedToFail() noexcept {
    if (!plan.active) {
        return false;
    }
    if (plan.requestsBefore > 0) {
        --plan.requestsBefore;
        return false;
    }
    if (plan.failed && plan.mode == FailureMode::OnlyOne) {
        return false;
    }
    plan.failed = true;
    return true;
}

void* allocate(std::size_t size) noexcept {
    ++requests;
    if (isPlannedToFail()) {
        return nullptr;
    }
    if (size > mostBytes - std::min<std::size_t>(liveBytes, mostBytes)) {
        ++refused;
        return nullptr;
    }
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) {
        return nullptr;
    }
    ++liveBlocks;
    const std::size_t now = liveBytes += malloc_usable_size(block);
    if (now > peakBytes) {
        peakBytes = now;
    }
    return block;
}

void release(void* block) noexcept {
    if (block == nullptr) {
        return;
    }
    --liveBlocks;
    liveBytes -= malloc_usable_size(block);
    std::free(block);
}

}  // namespace

AllocationCounts allocationCounts() noexcept { return {liveBlocks, liveBytes, peakBytes, requests, refused}; }

void resetPeak() noexcept { peakBytes = liveBytes.load(); }

void limitLiveBytes(std::size_t bytes) noexcept { mostBytes = bytes; }

FailingAllocations::FailingAllocations(std::size_t first, FailureMode mode) noexcept {
    plan = {true, mode, first - 1, false};
}

FailingAllocations::~FailingAllocations() { stop(); }

bool FailingAllocations::stop() noexcept {
    plan.active = false;
    return plan.failed;
}

}  // namespace morvel::ruby::tests

void* operator new(std::size_t size) {
    if (void* block = morvel::ruby::tests::allocate(size)) {
        return block;
    }
    throw std::bad_alloc();
}

void* operator new[](std::size_t size) { return operator new(size); }

void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return morvel::ruby::tests::allocate(size); }

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return morvel::ruby::tests::allocate(size); }

void operator delete(void* block) noexcept { morvel::ruby::tests::release(block); }

void operator delete[](void* block) noexcept { morvel::ruby::tests::release(block); }

void operator delete(void* block, std::size_t) noexcept { morvel::ruby::tests::release(block); }

void operator delete[](void* block, std::size_t) noexcept { morvel::ruby::tests::release(block); }

void operator delete(void* block, const std::nothrow_t&) noexcept { morvel::ruby::tests::release(block); }

void operator delete[](void* block, const std::nothrow_t&) noexcept { morvel::ruby::tests::release(block); }
