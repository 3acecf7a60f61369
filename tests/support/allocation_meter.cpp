#include "support/allocation_meter.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

struct Meter {
    bool running = false;
    std::size_t count = 0;
    std::size_t largest = 0;
};

constinit thread_local Meter meter;

void* allocate(std::size_t size) noexcept {
    if (meter.running) {
        ++meter.count;
        meter.largest = std::max(meter.largest, size);
    }
    return std::malloc(std::max<std::size_t>(size, 1));
}

}  // namespace

// These replace the general allocator of the whole test program; all other forms of new and delete call them.
void* operator new(std::size_t size) {
    if (void* block = allocate(size)) {
        return block;
    }
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }

void operator delete(void* block) noexcept { std::free(block); }

void operator delete(void* block, std::size_t) noexcept { std::free(block); }

void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }

namespace morvel::ruby::tests {

AllocationMeter::AllocationMeter() { meter = {true, 0, 0}; }

AllocationMeter::~AllocationMeter() { meter.running = false; }

std::size_t AllocationMeter::count() { return meter.count; }

std::size_t AllocationMeter::largest() { return meter.largest; }

}  // namespace morvel::ruby::tests
