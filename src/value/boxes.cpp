// Allocation and release of the heap objects behind values.
#include <cstddef>
#include <cstdint>
#include <new>

#include "morvel/ruby/function.h"
#include "morvel/ruby/map.h"
#include "morvel/ruby/value.h"
#include "value/deferred_release.h"

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

namespace {

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

    void freeAll() noexcept {
        while (m_first != nullptr) {
            Link* link = m_first;
            m_first = link->next;
            ::operator delete(link);
        }
        m_length = 0;
    }

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
    bool keep(ArrayBox* array) noexcept {
        if (m_length >= kMostArrays || array->elements.capacity() != kElements) {
            return false;
        }
        array->references = reinterpret_cast<std::uintptr_t>(m_first);
        m_first = array;
        ++m_length;
        return true;
    }

    void freeAll() noexcept {
        while (ArrayBox* array = take()) {
            delete array;
        }
    }

private:
    static ArrayBox* nextOf(const ArrayBox* array) noexcept {
        return reinterpret_cast<ArrayBox*>(static_cast<std::uintptr_t>(array->references));
    }

    static constexpr std::size_t kMostArrays = MORVEL_RECYCLES_BOXES != 0 ? 256 : 0;
    static constexpr std::size_t kElements = 2;

    ArrayBox* m_first = nullptr;
    std::size_t m_length = 0;
};

struct ThreadPool {
    FreeList strings;
    FreeList arrays;
    FreeList maps;
    SpareArrays spareArrays;
    /// Set when the thread ends: later releases go straight to the general allocator.
    bool closed = false;
};

constinit thread_local ThreadPool pool;

/// Returns a thread's free blocks when the thread ends.
struct PoolCloser {
    bool armed = false;
    ~PoolCloser() {
        pool.closed = true;
        pool.spareArrays.freeAll();
        pool.strings.freeAll();
        pool.arrays.freeAll();
        pool.maps.freeAll();
    }
};

thread_local PoolCloser poolCloser;

void FreeList::give(void* block) noexcept {
    if (m_length >= kMostBlocks || pool.closed) {
        ::operator delete(block);
        return;
    }
    if (m_length == 0) {
        poolCloser.armed = true;
    }
    m_first = new (block) Link{m_first};
    ++m_length;
}

/// Containers whose last reference is gone and whose contents still have to be released. The chain runs through the
/// dead boxes themselves, so that releasing needs no memory and no recursion.
constinit thread_local Box* graveyard = nullptr;
/// The contents of one are being released: the others wait. Host functions wait longer, so that this runs no other
/// code.
constinit thread_local bool isDraining = false;

static_assert(alignof(ArrayBox) >= 8 && alignof(MapBox) >= 8 && alignof(RubyFunctionHandle) >= 8,
              "the low bits of a box address hold its type");

void bury(std::uint8_t type, Box* box) noexcept {
    // The count is 0 and no longer needed: it links to the next dead box.
    box->references = reinterpret_cast<std::uintptr_t>(graveyard);
    graveyard = reinterpret_cast<Box*>(reinterpret_cast<std::uintptr_t>(box) | type);
}

void deleteArray(ArrayBox* array) noexcept {
    array->elements.clear();
    if (pool.closed || !pool.spareArrays.keep(array)) {
        delete array;
        return;
    }
    poolCloser.armed = true;
}

bool mayRunHostCode(const RubyFunctionHandle& handle) noexcept {
    return handle.kind == RubyFunctionHandle::Kind::Host && handle.nativeFunction == nullptr;
}

void deleteContainer(RubyValue::Type type, Box* box) noexcept {
    if (type == RubyValue::Type::Array) {
        deleteArray(static_cast<ArrayBox*>(box));
        return;
    }
    if (type == RubyValue::Type::Map) {
        delete static_cast<MapBox*>(box);
        return;
    }
    auto* handle = static_cast<RubyFunctionHandle*>(box);
    if (mayRunHostCode(*handle)) {
        deferHost(handle);
    } else {
        delete handle;
    }
}

}  // namespace

void destroyBox(std::uint8_t type, Box* box) noexcept {
    if (static_cast<RubyValue::Type>(type) == RubyValue::Type::String) {
        delete static_cast<StringBox*>(box);
        return;
    }
    if (isDraining) {
        bury(type, box);
        return;
    }
    isDraining = true;
    deleteContainer(static_cast<RubyValue::Type>(type), box);
    constexpr std::uintptr_t kTypeBits = 7;
    while (graveyard != nullptr) {
        const auto tagged = reinterpret_cast<std::uintptr_t>(graveyard);
        Box* dead = reinterpret_cast<Box*>(tagged & ~kTypeBits);
        graveyard = reinterpret_cast<Box*>(static_cast<std::uintptr_t>(dead->references));
        deleteContainer(static_cast<RubyValue::Type>(tagged & kTypeBits), dead);
    }
    isDraining = false;
    if (deferredHosts != nullptr && mayReleaseHosts()) {
        releaseDeferredHosts();
    }
}

ArrayBox* makeEmptyArray() {
    ArrayBox* const spare = pool.spareArrays.take();
    return spare != nullptr ? spare : new ArrayBox;
}

void* StringBox::operator new(std::size_t size) { return pool.strings.take(size); }
void StringBox::operator delete(void* block) noexcept { pool.strings.give(block); }
void* ArrayBox::operator new(std::size_t size) { return pool.arrays.take(size); }
void ArrayBox::operator delete(void* block) noexcept { pool.arrays.give(block); }
void* MapBox::operator new(std::size_t size) { return pool.maps.take(size); }
void MapBox::operator delete(void* block) noexcept { pool.maps.give(block); }

}  // namespace morvel::ruby::internal
