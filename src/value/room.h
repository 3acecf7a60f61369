// Room for the contents of arrays and strings: large buffers that others have left are used again.
#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "morvel/ruby/value.h"
#include "value/spare_buffers.h"

namespace morvel::ruby::internal {

/// An empty array with room for `count` elements. Throws std::bad_alloc.
[[nodiscard]] RubyArray arrayWithRoom(std::size_t count);

/// An empty text with room for `size` bytes. Throws std::bad_alloc.
[[nodiscard]] std::string textWithRoom(std::size_t size);

/// Gives an array that is full room for `count` elements, and for a share more: growing one by one takes constant time
/// each. Leaves small arrays as they are, for they grow by themselves. Throws std::bad_alloc.
void growArray(RubyArray& elements, std::size_t count);

/// Gives a large text room for `added` bytes more, and for a share more than that. Leaves small texts as they are.
/// Throws std::bad_alloc.
void makeTextRoom(std::string& text, std::size_t added);

/// The same as appendElement, for an array that is full.
void appendToFull(RubyArray& elements, const RubyValue& value);
void appendToFull(RubyArray& elements, RubyValue&& value);

/// Adds an element at the end. Throws std::bad_alloc.
template <typename Element>
void appendElement(RubyArray& elements, Element&& value) {
    if (elements.size() == elements.capacity()) [[unlikely]] {
        appendToFull(elements, std::forward<Element>(value));
    } else {
        elements.push_back(std::forward<Element>(value));
    }
}

/// Makes a copy of a part of an array, or of all of it. Throws std::bad_alloc.
template <typename Iterator>
[[nodiscard]] RubyArray copyElements(Iterator first, Iterator last) {
    RubyArray copy = arrayWithRoom(static_cast<std::size_t>(last - first));
    copy.assign(first, last);
    return copy;
}

}  // namespace morvel::ruby::internal
