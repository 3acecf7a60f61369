// Allocation and release of the heap objects behind values.
#include <cstddef>
#include <cstdint>

#include "morvel/ruby/function.h"
#include "morvel/ruby/map.h"
#include "morvel/ruby/value.h"
#include "value/box_pools.h"
#include "value/deferred_release.h"

namespace morvel::ruby::internal {

namespace {

/// Containers whose last reference is gone and whose contents are still to be released. The list links the dead boxes
/// themselves, so that releasing needs neither memory nor recursion.
constinit thread_local Box* graveyard = nullptr;
/// True while the contents of one container are being released; the others wait. Host functions wait even longer, so
/// that releasing contents runs no foreign code.
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
    if (boxPool.spareArrays.keep(array)) {
        return;
    }
    if (array->elements.capacity() >= kLargeBuffer / sizeof(RubyValue) && boxPool.keepLarge(array)) {
        return;
    }
    delete array;
}

void deleteString(StringBox* string) noexcept {
    if (string->text.capacity() >= kLargeBuffer) [[unlikely]] {
        string->text.clear();
        if (boxPool.keepLarge(string)) {
            return;
        }
    }
    delete string;
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
        deleteString(static_cast<StringBox*>(box));
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
    constexpr std::size_t kMostlyEnough = 2;
    return takeArray(kMostlyEnough);
}

void* StringBox::operator new(std::size_t size) { return boxPool.strings.take(size); }
void StringBox::operator delete(void* block) noexcept { boxPool.strings.give(block); }
void* ArrayBox::operator new(std::size_t size) { return boxPool.arrays.take(size); }
void ArrayBox::operator delete(void* block) noexcept { boxPool.arrays.give(block); }
void* MapBox::operator new(std::size_t size) { return boxPool.maps.take(size); }
void MapBox::operator delete(void* block) noexcept { boxPool.maps.give(block); }

}  // namespace morvel::ruby::internal
