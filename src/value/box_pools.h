// Memory of strings, arrays and maps that a thread keeps for its next ones.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

#include "morvel/ruby/value.h"

#if defined(__SANITIZE_ADDRESS__)
#define MORVEL_RECYCLES_BOXES 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define MORVEL_RECYCLES_BOXES 0
#endif
#endif
#ifndef MORVEL_RECYCLES_BOXES
#define MORVEL_RECYCLES_BOXES 1
#endif

namespace morvel::ruby::internal {

/// Free blocks of one size, kept for reuse: strings, arrays and maps come and go at a rate that the general
/// allocator is slow for. Blocks come one by one from the general allocator, so a block may be freed by another
/// thread than the one that made it. Under AddressSanitizer every block goes back at once, so that it sees misuse.
class FreeList {
public:
    constexpr FreeList() = default;

    void* take(std::size_t size) {
        if (m_first == nullptr) {
            return ::operator new(size);
        }
        Link* link = m_first;
        m_first = link->next;
        --m_length;
        return link;
    }

    void give(void* block) noexcept;

    /// Gives blocks back to the general allocator until `most` are left; true when there were more.
    bool shrink(std::size_t most) noexcept;

private:
    struct Link {
        Link* next;
    };

    static constexpr std::size_t kMostBlocks = MORVEL_RECYCLES_BOXES != 0 ? 1 << 16 : 0;

    Link* m_first = nullptr;
    std::size_t m_length = 0;
};

/// Empty arrays that still have room for just a pair: pairs and outcomes of pcall come and go as whole arrays. All have
/// the same room, so that what they take up follows from their number alone.
class SpareArrays {
public:
    constexpr SpareArrays() = default;

    /// An empty array with one reference, or null.
    ArrayBox* take() noexcept {
        ArrayBox* const array = m_first;
        if (array != nullptr) {
            m_first = nextOf(array);
            --m_length;
            array->references = 1;
        }
        return array;
    }

    /// Keeps an array whose elements are gone; false when it is not worth keeping.
    bool keep(ArrayBox* array) noexcept;

    /// Destroys them all; true when there were any.
    bool clear() noexcept;

private:
    static ArrayBox* nextOf(const ArrayBox* array) noexcept {
        return reinterpret_cast<ArrayBox*>(static_cast<std::uintptr_t>(array->references));
    }

    static constexpr std::size_t kMostArrays = MORVEL_RECYCLES_BOXES != 0 ? 256 : 0;
    static constexpr std::size_t kElements = 2;

    ArrayBox* m_first = nullptr;
    std::size_t m_length = 0;
};

/// What one thread keeps.
struct BoxPool {
    /// A pool is open once it is known to be emptied at the end of its thread, and closed from then on. Only an open
    /// one keeps anything; for others releases go straight to the general allocator.
    enum class State : std::uint8_t { New, Open, Closed };

    FreeList strings;
    FreeList arrays;
    FreeList maps;
    SpareArrays spareArrays;
    State state = State::New;

    [[nodiscard]] bool isOpen() noexcept { return state == State::Open || (state == State::New && open()); }

    /// Gives back what the pool keeps beyond `most` blocks of each kind; true when that was anything.
    bool shrink(std::size_t most) noexcept;

private:
    bool open() noexcept;
};

extern constinit thread_local BoxPool boxPool;

inline void FreeList::give(void* block) noexcept {
    if (m_length >= kMostBlocks || !boxPool.isOpen()) {
        ::operator delete(block);
        return;
    }
    m_first = new (block) Link{m_first};
    ++m_length;
}

inline bool SpareArrays::keep(ArrayBox* array) noexcept {
    if (m_length >= kMostArrays || array->elements.capacity() != kElements || !boxPool.isOpen()) {
        return false;
    }
    array->references = reinterpret_cast<std::uintptr_t>(m_first);
    m_first = array;
    ++m_length;
    return true;
}

}  // namespace morvel::ruby::internal
