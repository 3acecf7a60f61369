#include "counting_allocator.h"

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

namespace morvel::ruby::tests {

namespace {

constinit std::atomic<std::size_t> liveBlocks{0};
constinit std::atomic<std::size_t> liveBytes{0};
constinit std::atomic<std::size_t> peakBytes{0};
constinit std::atomic<std::size_t> requests{0};
constinit std::atomic<std::size_t> refused{0};
constinit std::atomic<std::size_t> requestedBytes{0};
constinit std::atomic<std::size_t> mostBytes{std::numeric_limits<std::size_t>::max()};

/// Which requests on this thread fail.
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

// Blocks store their requested size, since malloc may return slightly more. AddressSanitizer keeps the size itself, and
// would miss accesses in front of a block if the size were stored there.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define MORVEL_EXACT_MALLOC 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(MORVEL_EXACT_MALLOC)
void* allocateSized(std::size_t size) noexcept { return std::malloc(size); }

std::size_t sizeOf(void* block) noexcept { return malloc_usable_size(block); }

void freeSized(void* block) noexcept { std::free(block); }
#else
constexpr std::size_t kHeader = alignof(std::max_align_t);

void* allocateSized(std::size_t size) noexcept {
    if (size > std::numeric_limits<std::size_t>::max() - kHeader) {
        return nullptr;
    }
    void* const start = std::malloc(size + kHeader);
    if (start == nullptr) {
        return nullptr;
    }
    std::memcpy(start, &size, sizeof size);
    return static_cast<char*>(start) + kHeader;
}

void* startOf(void* block) noexcept { return static_cast<char*>(block) - kHeader; }

std::size_t sizeOf(void* block) noexcept {
    std::size_t size = 0;
    std::memcpy(&size, startOf(block), sizeof size);
    return size;
}

void freeSized(void* block) noexcept { std::free(startOf(block)); }
#endif

void* allocate(std::size_t size) noexcept {
    ++requests;
    requestedBytes += size;
    if (isPlannedToFail()) {
        return nullptr;
    }
    if (size > mostBytes - std::min<std::size_t>(liveBytes, mostBytes)) {
        ++refused;
        return nullptr;
    }
    void* block = allocateSized(size == 0 ? 1 : size);
    if (block == nullptr) {
        return nullptr;
    }
    ++liveBlocks;
    const std::size_t now = liveBytes += sizeOf(block);
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
    liveBytes -= sizeOf(block);
    freeSized(block);
}

}  // namespace

AllocationCounts allocationCounts() noexcept {
    return {liveBlocks, liveBytes, peakBytes, requests, refused, requestedBytes};
}

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
