// Arrays that start as zeros and, when they are large, go back to the system as soon as they end.
#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <new>

namespace morvel::ruby::internal {

struct ZeroedBlock {
    void* start;
    /// Its size, if it comes from the system itself; otherwise 0.
    std::size_t mappedBytes;
};

/// Zeroed memory, which takes room in the machine only as it is touched. Large blocks come from the system itself, when
/// it has them: the allocator could keep them, or have to. Throws std::bad_alloc.
[[nodiscard]] ZeroedBlock allocateZeroed(std::size_t bytes);

/// Gives back what allocateZeroed gave.
struct ZeroedArrayEnd {
    std::size_t mappedBytes = 0;

    void operator()(void* block) const noexcept;
};

/// An array whose elements are neither constructed nor destroyed: zeros must be a value of the type, and one that
/// needs no end must be in each element when the array ends.
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
