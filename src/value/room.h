// Buffers for arrays and strings, which reuse large buffers that others left behind.
#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "morvel/ruby/value.h"
#include "value/spare_buffers.h"

namespace morvel::ruby::internal {

/// An empty array with room for `count` elements. Throws std::bad_alloc.
[[nodiscard]] RubyArray arrayWithRoom(std::size_t count);

/// An empty string with room for `size` bytes. Throws std::bad_alloc.
[[nodiscard]] std::string textWithRoom(std::size_t size);

/// Gives a full array room for `count` elements and a proportional reserve, so that growing by one takes constant time
/// on average. Leaves small arrays alone, since std::vector grows them well. Throws std::bad_alloc.
void growArray(RubyArray& elements, std::size_t count);

/// Gives a large string room for `added` more bytes and a proportional reserve. Leaves small strings alone. Throws
/// std::bad_alloc.
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

/// Copies all or part of an array. Throws std::bad_alloc.
template <typename Iterator>
[[nodiscard]] RubyArray copyElements(Iterator first, Iterator last) {
    RubyArray copy = arrayWithRoom(static_cast<std::size_t>(last - first));
    copy.assign(first, last);
    return copy;
}

}  // namespace morvel::ruby::internal
