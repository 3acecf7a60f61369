#include "stdlib/sorting.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace morvel::ruby::internal {

namespace {

// Integers up to this size are exact as doubles, so that comparing them directly gives the same order.
constexpr std::int64_t kLargestExact = std::int64_t{1} << 53;

bool isExactInteger(const RubyValue& value) {
    return value.isInteger() && value.data.integer >= -kLargestExact && value.data.integer <= kLargestExact;
}

bool isOrderedNumber(const RubyValue& value) { return value.isNumeric() && !std::isnan(value.asFloat()); }

void sortIntegers(RubyArray& elements) {
    std::vector<std::int64_t> numbers;
    numbers.reserve(elements.size());
    for (const RubyValue& element : elements) {
        numbers.push_back(element.data.integer);
    }
    std::sort(numbers.begin(), numbers.end());
    std::copy(numbers.begin(), numbers.end(), elements.begin());
}

void sortNumbers(RubyArray& elements) {
    std::sort(elements.begin(), elements.end(),
              [](const RubyValue& left, const RubyValue& right) { return left.asFloat() < right.asFloat(); });
}

// char_traits compares bytes as unsigned, which is the order of the language.
void sortStrings(RubyArray& elements) {
    std::sort(elements.begin(), elements.end(),
              [](const RubyValue& left, const RubyValue& right) { return left.asString() < right.asString(); });
}

struct RenderedElement {
    RubyValue value;
    std::string text;
};

void sortMixed(RubyArray& elements) {
    std::vector<RenderedElement> rendered;
    rendered.reserve(elements.size());
    for (const RubyValue& element : elements) {
        rendered.push_back({element, element.toString()});
    }
    // A merge sort: unlike a quick sort it stays within its bounds whatever the comparison answers.
    std::stable_sort(rendered.begin(), rendered.end(), [](const RenderedElement& left, const RenderedElement& right) {
        return left.value.isNumeric() && right.value.isNumeric() ? left.value.asFloat() < right.value.asFloat()
                                                                 : left.text < right.text;
    });
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
