#include "value/zeroed_array.h"

#include <cstring>

#include "platform/mapped_memory.h"

namespace morvel::ruby::internal {

namespace {

// Smaller blocks are not worth a system call.
constexpr std::size_t kLargeBlock = std::size_t{256} * 1024;

}  // namespace

ZeroedBlock allocateZeroed(std::size_t bytes) {
    if (bytes >= kLargeBlock) {
        if (void* const block = platform::mapZeroed(bytes)) {
            return {block, bytes};
        }
        // The allocator may still have free memory that it could not return to the system.
    }
    return {std::memset(::operator new(bytes), 0, bytes), 0};
}

void ZeroedArrayEnd::operator()(void* block) const noexcept {
    if (mappedBytes != 0) {
        platform::unmap(block, mappedBytes);
    } else {
        ::operator delete(block);
    }
}

}  // namespace morvel::ruby::internal
