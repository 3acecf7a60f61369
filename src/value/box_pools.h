// Freed memory of strings, arrays and maps that a thread keeps for new ones.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <new>

#include "morvel/ruby/value.h"
#include "value/spare_buffers.h"

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

/// Free blocks of one size, kept for reuse: strings, arrays and maps come and go faster than the general allocator
/// handles well. Each block is allocated on its own, so a thread may free a block that another thread made. Under
/// AddressSanitizer every block is freed at once, so that the sanitizer sees misuse.
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

    /// Frees blocks until at most `most` are left; true when there were more.
    bool shrink(std::size_t most) noexcept;

private:
    struct Link {
        Link* next;
    };

    static constexpr std::size_t kMostBlocks = MORVEL_RECYCLES_BOXES != 0 ? 1 << 16 : 0;

    Link* m_first = nullptr;
    std::size_t m_length = 0;
};

/// Empty arrays that still have room for a few elements: programs create and drop many small arrays, such as pairs,
/// records, tree nodes and results of pcall. Of each size, no more are kept than there were failed requests for it.
class SpareArrays {
public:
    constexpr SpareArrays() = default;

    /// An empty array with one reference and room for exactly `room` elements, or null.
    ArrayBox* take(std::size_t room) noexcept {
        if (room - 1 >= kMostRoom) {
            return nullptr;
        }
        List& list = m_lists[room - 1];
        ArrayBox* const array = list.first;
        if (array == nullptr) {
            ++list.misses;
            return nullptr;
        }
        list.first = nextOf(array);
        --list.length;
        array->references = 1;
        return array;
    }

    /// Keeps an empty array; false when it is not worth keeping.
    bool keep(ArrayBox* array) noexcept;

    /// Destroys arrays until at most `most` of each size are left; true when there were more.
    bool shrink(std::size_t most) noexcept;

private:
    struct List {
        ArrayBox* first = nullptr;
        std::size_t length = 0;
        /// How often a request found the list empty.
        std::size_t misses = 0;
    };

    static ArrayBox* nextOf(const ArrayBox* array) noexcept {
        return reinterpret_cast<ArrayBox*>(static_cast<std::uintptr_t>(array->references));
    }

    static constexpr std::size_t kMostArrays = MORVEL_RECYCLES_BOXES != 0 ? 1 << 14 : 0;
    static constexpr std::size_t kMostRoom = 4;

    /// By room: for one element, for two, and so on.
    std::array<List, kMostRoom> m_lists;
};

/// The spare memory that one thread keeps.
struct BoxPool {
    /// A pool opens once it is sure to be emptied at the end of its thread, and closes at that end. Only an open pool
    /// keeps anything; otherwise memory goes straight back to the general allocator.
    enum class State : std::uint8_t { New, Open, Closed };

    FreeList strings;
    FreeList arrays;
    FreeList maps;
    SpareArrays spareArrays;
    SpareBuffers<ArrayBox> largeArrays;
    SpareBuffers<StringBox> largeStrings;
    State state = State::New;

    [[nodiscard]] bool isOpen() noexcept { return state == State::Open || (state == State::New && open()); }

    /// Keeps the empty box of a dead array or string because of its large buffer; false when it is not worth keeping.
    bool keepLarge(ArrayBox* array) noexcept { return mayKeepLarge() && largeArrays.keepAny(array); }
    bool keepLarge(StringBox* string) noexcept { return mayKeepLarge() && largeStrings.keepAny(string); }
    /// The same for a buffer that an array or string outgrew. Huge buffers are not kept: one that was too small for its
    /// owner would only add to the owner's memory.
    bool keepOutgrown(ArrayBox* array) noexcept { return mayKeepLarge() && largeArrays.keep(array); }
    bool keepOutgrown(StringBox* string) noexcept { return mayKeepLarge() && largeStrings.keep(string); }

    /// Large buffers are kept only while the thread has a run in progress: the next run may be far off.
    void beginRun() noexcept { ++m_runs; }
    void endRun() noexcept {
        // A host may end a run on a different thread than the one that began it.
        if (m_runs == 0 || --m_runs == 0) {
            clearLarge();
        }
    }

    /// Frees all large buffers, and all but `most` blocks of each kind; true when there was anything to free.
    bool shrink(std::size_t most) noexcept;

private:
    bool open() noexcept;
    bool clearLarge() noexcept;
    bool mayKeepLarge() noexcept { return MORVEL_RECYCLES_BOXES != 0 && m_runs != 0 && isOpen(); }

    std::size_t m_runs = 0;
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
    const std::size_t room = array->elements.capacity();
    if (room - 1 >= kMostRoom) {
        return false;
    }
    List& list = m_lists[room - 1];
    if (list.length >= kMostArrays || list.length >= list.misses || !boxPool.isOpen()) {
        return false;
    }
    array->references = reinterpret_cast<std::uintptr_t>(list.first);
    list.first = array;
    ++list.length;
    return true;
}

/// An empty array with one reference. It may already have room for `room` elements.
[[nodiscard]] inline ArrayBox* takeArray(std::size_t room) {
    ArrayBox* const spare = boxPool.spareArrays.take(room);
    return spare != nullptr ? spare : new ArrayBox;
}

/// An empty array that has room for `room` elements.
[[nodiscard]] inline RubyValue makeArrayFor(std::size_t room) {
    RubyValue array;
    ArrayBox* const box = takeArray(room);
    array.data.box = box;
    array.type = RubyValue::Type::Array;
    box->elements.reserve(room);
    return array;
}

}  // namespace morvel::ruby::internal
