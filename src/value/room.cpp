#include "value/room.h"

#include <algorithm>
#include <iterator>
#include <memory>

#include "value/box_pools.h"

namespace morvel::ruby::internal {

namespace {

/// An empty box of its kind with room for `count` elements.
template <typename Box>
std::unique_ptr<Box> boxWithRoom(SpareBuffers<Box>& spare, std::size_t count) {
    if (Box* const box = spare.take(count)) {
        return std::unique_ptr<Box>(box);
    }
    auto box = std::make_unique<Box>();
    contentsOf(*box).reserve(count);
    return box;
}

/// Replaces outgrown contents by those of `box`, and keeps the outgrown buffer if it is worth reusing.
template <typename Box, typename Contents>
void leaveOutgrown(Contents& outgrown, std::unique_ptr<Box> box) noexcept {
    contentsOf(*box).swap(outgrown);
    contentsOf(*box).clear();
    if (boxPool.keepOutgrown(box.get())) {
        static_cast<void>(box.release());
    }
}

}  // namespace

RubyArray arrayWithRoom(std::size_t count) {
    if (count < kLargeBuffer / sizeof(RubyValue)) {
        RubyArray array;
        array.reserve(count);
        return array;
    }
    return std::move(boxWithRoom(boxPool.largeArrays, count)->elements);
}

std::string textWithRoom(std::size_t size) {
    if (size < kLargeBuffer) {
        std::string text;
        text.reserve(size);
        return text;
    }
    return std::move(boxWithRoom(boxPool.largeStrings, size)->text);
}

void growArray(RubyArray& elements, std::size_t count) {
    const std::size_t room = std::max(count, 2 * elements.capacity());
    if (room < kLargeBuffer / sizeof(RubyValue)) {
        return;
    }
    std::unique_ptr<ArrayBox> box = boxWithRoom(boxPool.largeArrays, room);
    box->elements.assign(std::make_move_iterator(elements.begin()), std::make_move_iterator(elements.end()));
    leaveOutgrown(elements, std::move(box));
}

void appendToFull(RubyArray& elements, const RubyValue& value) { appendToFull(elements, RubyValue(value)); }

void appendToFull(RubyArray& elements, RubyValue&& value) {
    // The value may be an element of the array.
    RubyValue kept = std::move(value);
    growArray(elements, elements.size() + 1);
    elements.push_back(std::move(kept));
}

void makeTextRoom(std::string& text, std::size_t added) {
    const std::size_t room = std::max(text.size() + added, 2 * text.capacity());
    if (added <= text.capacity() - text.size() || room < kLargeBuffer) {
        return;
    }
    std::unique_ptr<StringBox> box = boxWithRoom(boxPool.largeStrings, room);
    box->text = text;
    leaveOutgrown(text, std::move(box));
}

}  // namespace morvel::ruby::internal
