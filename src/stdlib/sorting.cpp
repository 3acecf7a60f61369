#include "stdlib/sorting.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <new>
#include <string>
#include <vector>

#include "value/numbers.h"

namespace morvel::ruby::internal {

namespace {

bool isOrderedNumber(const RubyValue& value) { return value.isNumeric() && !std::isnan(value.asFloat()); }

/// Iterates over the integer payloads of an array's elements, so that sorting moves only those and needs no copy.
class IntegerIterator {
public:
    using iterator_category = std::random_access_iterator_tag;
    using value_type = std::int64_t;
    using difference_type = std::ptrdiff_t;
    using pointer = std::int64_t*;
    using reference = std::int64_t&;

    IntegerIterator() = default;
    explicit IntegerIterator(RubyValue* element) noexcept : m_element(element) {}

    reference operator*() const noexcept { return m_element->data.integer; }
    reference operator[](difference_type offset) const noexcept { return m_element[offset].data.integer; }
    IntegerIterator& operator+=(difference_type offset) noexcept {
        m_element += offset;
        return *this;
    }
    IntegerIterator& operator-=(difference_type offset) noexcept { return *this += -offset; }
    IntegerIterator& operator++() noexcept { return *this += 1; }
    IntegerIterator& operator--() noexcept { return *this -= 1; }
    IntegerIterator operator++(int) noexcept { return IntegerIterator(m_element++); }
    IntegerIterator operator--(int) noexcept { return IntegerIterator(m_element--); }
    IntegerIterator operator+(difference_type offset) const noexcept { return IntegerIterator(m_element + offset); }
    IntegerIterator operator-(difference_type offset) const noexcept { return IntegerIterator(m_element - offset); }
    difference_type operator-(const IntegerIterator& other) const noexcept { return m_element - other.m_element; }
    bool operator==(const IntegerIterator& other) const noexcept = default;
    bool operator<(const IntegerIterator& other) const noexcept { return m_element < other.m_element; }

private:
    RubyValue* m_element = nullptr;
};

void sortIntegers(RubyArray& elements) {
    IntegerIterator first(elements.data());
    std::sort(first, first + static_cast<std::ptrdiff_t>(elements.size()));
}

void sortNumbers(RubyArray& elements) {
    std::sort(elements.begin(), elements.end(),
              [](const RubyValue& left, const RubyValue& right) { return left.asFloat() < right.asFloat(); });
}

/// The first eight bytes of a string as a number with the same order; zeros stand for bytes past the end.
std::uint64_t prefixOf(const std::string& text) noexcept {
    constexpr std::size_t kBytes = sizeof(std::uint64_t);
    constexpr unsigned kByteBits = 8;
    std::uint64_t prefix = 0;
    const std::size_t size = std::min(text.size(), kBytes);
    for (std::size_t i = 0; i < size; ++i) {
        prefix |= std::uint64_t{static_cast<unsigned char>(text[i])} << (kByteBits * (kBytes - 1 - i));
    }
    return prefix;
}

/// A string to be sorted. The prefix decides most comparisons without reading the string's memory.
struct KeyedString {
    std::uint64_t prefix;
    StringBox* box;

    bool operator<(const KeyedString& other) const noexcept {
        // Strings compare by unsigned bytes. Comparing the boxes first helps when the array repeats a long string.
        return prefix != other.prefix ? prefix < other.prefix : box != other.box && box->text < other.box->text;
    }
};

static_assert(sizeof(KeyedString) == sizeof(RubyValue));
static_assert(alignof(KeyedString) == alignof(RubyValue));

/// Sorts strings in the array's own memory. Converting values to keyed strings and back cannot fail.
void sortStrings(RubyArray& elements) {
    KeyedString* keyed = nullptr;
    for (std::size_t i = elements.size(); i-- > 0;) {
        auto* const box = static_cast<StringBox*>(elements[i].data.box);
        keyed = ::new (static_cast<void*>(&elements[i])) KeyedString{prefixOf(box->text), box};
    }
    std::sort(keyed, keyed + elements.size());
    for (RubyValue& element : elements) {
        StringBox* const box = std::launder(reinterpret_cast<KeyedString*>(&element))->box;
        ::new (static_cast<void*>(&element)) RubyValue();
        element.type = RubyValue::Type::String;
        element.data.box = box;
    }
}

/// An element and its text: the string itself, or the rendered value.
class RenderedElement {
public:
    explicit RenderedElement(const RubyValue& element) : value(element) {
        if (!element.isString()) {
            m_rendered = element.toString();
        }
    }

    bool operator<(const RenderedElement& other) const {
        if (value.isNumeric() && other.value.isNumeric()) {
            return value.asFloat() < other.value.asFloat();
        }
        const std::string& left = text();
        const std::string& right = other.text();
        return &left != &right && left < right;
    }

    RubyValue value;

private:
    [[nodiscard]] const std::string& text() const { return value.isString() ? value.asString() : m_rendered; }

    std::string m_rendered;
};

void sortMixed(RubyArray& elements) {
    std::vector<RenderedElement> rendered;
    rendered.reserve(elements.size());
    for (const RubyValue& element : elements) {
        rendered.emplace_back(element);
    }
    // A merge sort, unlike a quicksort, stays within bounds even when the comparison is inconsistent.
    std::stable_sort(rendered.begin(), rendered.end());
    for (std::size_t i = 0; i < elements.size(); ++i) {
        elements[i] = std::move(rendered[i].value);
    }
}

}  // namespace

void sortElements(RubyArray& elements) {
    const auto isString = [](const RubyValue& value) { return value.isString(); };
    if (std::all_of(elements.begin(), elements.end(), isExactInteger)) {
        sortIntegers(elements);
    } else if (std::all_of(elements.begin(), elements.end(), isOrderedNumber)) {
        sortNumbers(elements);
    } else if (std::all_of(elements.begin(), elements.end(), isString)) {
        sortStrings(elements);
    } else {
        sortMixed(elements);
    }
}

}  // namespace morvel::ruby::internal
