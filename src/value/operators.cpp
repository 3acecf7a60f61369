#include "value/operators.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "morvel/ruby/error.h"
#include "morvel/ruby/function.h"
#include "value/native_stack.h"
#include "value/numbers.h"
#include "value/render.h"
#include "value/room.h"

namespace morvel::ruby::internal {

namespace {

bool bothIntegers(const RubyValue& left, const RubyValue& right) noexcept {
    return left.isInteger() && right.isInteger();
}

bool bothNumeric(const RubyValue& left, const RubyValue& right) noexcept {
    return left.isNumeric() && right.isNumeric();
}

// Integer arithmetic wraps: it is done on the unsigned bit patterns, where that is well defined.
std::uint64_t bits(const RubyValue& value) noexcept { return static_cast<std::uint64_t>(value.data.integer); }

RubyValue wrapped(std::uint64_t pattern) noexcept { return static_cast<std::int64_t>(pattern); }

bool countsAsZero(double number) noexcept { return std::fabs(number) <= kZeroTolerance; }

RubyValue joinArrays(const RubyArray& left, const RubyArray& right) {
    RubyArray joined = arrayWithRoom(left.size() + right.size());
    joined.insert(joined.end(), left.begin(), left.end());
    joined.insert(joined.end(), right.begin(), right.end());
    return joined;
}

template <typename Work>
Fault withOverflowAsFault(const Work& work) {
    try {
        work();
        return kNoFault;
    } catch (const StackOverflow&) {
        return kStackOverflow;
    }
}

Fault joinTexts(const RubyValue& left, const RubyValue& right, RubyValue& result) {
    return withOverflowAsFault([&] {
        std::string text;
        if (left.isString() && right.isString()) {
            text.reserve(left.asString().size() + right.asString().size());
        }
        appendText(text, left);
        appendText(text, right);
        result = RubyValue(std::move(text));
    });
}

bool arraysEqual(const RubyArray& left, const RubyArray& right) {
    if (left.size() != right.size()) {
        return false;
    }
    checkNativeStack();
    return std::equal(left.begin(), left.end(), right.begin(), valuesEqual);
}

template <typename Number>
bool ordered(Number left, Number right, Ordering ordering) noexcept {
    switch (ordering) {
        case Ordering::Less:
            return left < right;
        case Ordering::LessEqual:
            return left <= right;
        case Ordering::Greater:
            return left > right;
        case Ordering::GreaterEqual:
            break;
    }
    return left >= right;
}

int compareBytes(const std::string& left, const std::string& right) noexcept {
    const int common = std::memcmp(left.data(), right.data(), std::min(left.size(), right.size()));
    if (common != 0) {
        return common;
    }
    return left.size() < right.size() ? -1 : static_cast<int>(left.size() > right.size());
}

}  // namespace

Fault add(const RubyValue& left, const RubyValue& right, RubyValue& result) {
    if (left.isString() || right.isString()) {
        return joinTexts(left, right, result);
    }
    if (left.isArray() && right.isArray()) {
        result = joinArrays(left.asArray(), right.asArray());
        return kNoFault;
    }
    if (!bothNumeric(left, right)) {
        return {"operator '+' expects numbers, strings, or arrays"};
    }
    result =
        bothIntegers(left, right) ? wrapped(bits(left) + bits(right)) : RubyValue(left.asFloat() + right.asFloat());
    return kNoFault;
}

Fault subtract(const RubyValue& left, const RubyValue& right, RubyValue& result) {
    if (!bothNumeric(left, right)) {
        return {"operator '-' expects numeric values"};
    }
    result =
        bothIntegers(left, right) ? wrapped(bits(left) - bits(right)) : RubyValue(left.asFloat() - right.asFloat());
    return kNoFault;
}

Fault multiply(const RubyValue& left, const RubyValue& right, RubyValue& result) {
    if (!bothNumeric(left, right)) {
        return {"operator '*' expects numeric values"};
    }
    result =
        bothIntegers(left, right) ? wrapped(bits(left) * bits(right)) : RubyValue(left.asFloat() * right.asFloat());
    return kNoFault;
}

Fault divide(const RubyValue& left, const RubyValue& right, RubyValue& result) {
    if (!bothNumeric(left, right)) {
        return {"operator '/' expects numeric values"};
    }
    const double divisor = right.asFloat();
    if (countsAsZero(divisor)) {
        return {"division by zero"};
    }
    result = left.asFloat() / divisor;
    return kNoFault;
}

Fault modulo(const RubyValue& left, const RubyValue& right, RubyValue& result) {
    if (!bothNumeric(left, right)) {
        return {"operator '%' expects numeric values"};
    }
    if (countsAsZero(right.asFloat())) {
        return {"modulo by zero"};
    }
    if (!bothIntegers(left, right)) {
        result = std::fmod(left.asFloat(), right.asFloat());
        return kNoFault;
    }
    // Dividing the smallest integer by -1 would trap; the remainder by -1 is always 0.
    result = right.data.integer == -1 ? 0 : left.data.integer % right.data.integer;
    return kNoFault;
}

Fault negate(const RubyValue& value, RubyValue& result) {
    if (!value.isNumeric()) {
        return {"unary '-' expects a numeric value"};
    }
    result = value.isInteger() ? wrapped(0 - bits(value)) : RubyValue(-value.asFloat());
    return kNoFault;
}

Fault equal(const RubyValue& left, const RubyValue& right, bool& result) {
    return withOverflowAsFault([&] { result = valuesEqual(left, right); });
}

Fault compare(const RubyValue& left, const RubyValue& right, Ordering ordering, bool& result) {
    if (bothNumeric(left, right)) {
        result = ordered(left.asFloat(), right.asFloat(), ordering);
        return kNoFault;
    }
    if (!left.isString() || !right.isString()) {
        return {"ordered comparisons require matching numeric or string values"};
    }
    result = ordered(compareBytes(left.asString(), right.asString()), 0, ordering);
    return kNoFault;
}

Fault appendOperand(std::string& text, const RubyValue& part) {
    if (part.isString()) {
        text += part.asString();
        return kNoFault;
    }
    return withOverflowAsFault([&] {
        // Rendered separately, since rendering may fail half-way.
        std::string rendered;
        appendText(rendered, part);
        text += rendered;
    });
}

bool valuesEqual(const RubyValue& left, const RubyValue& right) {
    if (left.type != right.type) {
        return bothNumeric(left, right) && countsAsZero(left.asFloat() - right.asFloat());
    }
    switch (left.type) {
        case RubyValue::Type::Nil:
            return true;
        case RubyValue::Type::Integer:
            return left.data.integer == right.data.integer;
        case RubyValue::Type::Float:
            return left.data.floating == right.data.floating;
        case RubyValue::Type::Boolean:
            return left.data.boolean == right.data.boolean;
        case RubyValue::Type::String:
            return left.data.box == right.data.box || left.asString() == right.asString();
        case RubyValue::Type::Array:
            return arraysEqual(left.asArray(), right.asArray());
        case RubyValue::Type::Map:
            return left.asMap() == right.asMap();
        case RubyValue::Type::Function:
            break;
    }
    return left.data.box == right.data.box;
}

std::string valueKeyString(const RubyValue& value) {
    if (!isMapKey(value)) {
        throw RubyError(kNoMapKey.message);
    }
    return value.toString();
}

RubyValue* findMapValue(RubyMap& map, const RubyValue& key) {
    if (key.isString() || key.isInteger()) {
        return map.findValue(key);
    }
    const auto found = map.find(valueKeyString(key));
    return found == map.end() ? nullptr : &found->second;
}

const RubyValue* findMapValue(const RubyMap& map, const RubyValue& key) {
    return findMapValue(const_cast<RubyMap&>(map), key);
}

RubyValue& setMapValue(RubyMap& map, const RubyValue& key) {
    if (key.isString() || key.isInteger()) {
        return map.findOrInsert(key);
    }
    return map.findOrInsert(valueKeyString(key));
}

}  // namespace morvel::ruby::internal

namespace morvel::ruby {

bool operator==(const RubyMap& left, const RubyMap& right) {
    if (left.size() != right.size()) {
        return false;
    }
    internal::checkNativeStack();
    return std::all_of(left.begin(), left.end(), [&right](const auto& entry) {
        const auto found = right.find(entry.first);
        return found != right.end() && internal::valuesEqual(entry.second, found->second);
    });
}

}  // namespace morvel::ruby
