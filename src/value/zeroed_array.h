// Arrays that start as zeros and, when large, return their memory to the system as soon as they end.
#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <new>

namespace morvel::ruby::internal {

struct ZeroedBlock {
    void* start;
    /// Its size, if it comes directly from the system; otherwise 0.
    std::size_t mappedBytes;
};

/// Zeroed memory. Large blocks come directly from the system if possible, and take physical memory only as they are
/// touched: the allocator might not return them to the system when freed. Throws std::bad_alloc.
[[nodiscard]] ZeroedBlock allocateZeroed(std::size_t bytes);

/// Frees a block from allocateZeroed.
struct ZeroedArrayEnd {
    std::size_t mappedBytes = 0;

    void operator()(void* block) const noexcept;
};

/// An array whose elements are neither constructed nor destroyed: all-zero bytes must be a valid element, and when the
/// array ends, each element must hold a value that needs no destruction.
template <typename Element>
using ZeroedArray = std::unique_ptr<Element[], ZeroedArrayEnd>;

/// An array of `count` elements. Throws std::bad_alloc.
template <typename Element>
[[nodiscard]] ZeroedArray<Element> makeZeroedArray(std::size_t count) {
    if (count > std::numeric_limits<std::size_t>::max() / sizeof(Element)) {
        throw std::bad_alloc();
    }
    const ZeroedBlock block = allocateZeroed(count * sizeof(Element));
    return ZeroedArray<Element>(static_cast<Element*>(block.start), ZeroedArrayEnd{block.mappedBytes});
}

}  // namespace morvel::ruby::internal
