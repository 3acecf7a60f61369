// The operators of the language on values. All type rules of expressions live here.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "morvel/ruby/map.h"
#include "morvel/ruby/value.h"
#include "value/fault.h"

namespace morvel::ruby::internal {

struct Program;

/// Numbers this close to zero count as zero in division and modulo, and numbers of different kinds this close to each
/// other count as equal: the machine epsilon of double, 2 to the power -52.
inline constexpr double kZeroTolerance = 2.220446049250313e-16;

/// The four ordered comparisons.
enum class Ordering : std::uint8_t { Less, LessEqual, Greater, GreaterEqual };

// The operators. Each stores its result or returns a fault. When memory runs out, they throw std::bad_alloc.

/// A string when either operand is one, a new array for two arrays, else the sum (wrapping for two integers).
/// Faults: "operator '+' expects numbers, strings, or arrays"; kStackOverflow when rendering nests too deeply.
[[nodiscard]] Fault add(const RubyValue& left, const RubyValue& right, RubyValue& result);
/// The difference, wrapping for two integers. Fault: "operator '-' expects numeric values".
[[nodiscard]] Fault subtract(const RubyValue& left, const RubyValue& right, RubyValue& result);
/// The product, wrapping for two integers. Fault: "operator '*' expects numeric values".
[[nodiscard]] Fault multiply(const RubyValue& left, const RubyValue& right, RubyValue& result);
/// The quotient, always a float. Faults: "operator '/' expects numeric values", "division by zero".
[[nodiscard]] Fault divide(const RubyValue& left, const RubyValue& right, RubyValue& result);
/// The remainder with the sign of the left operand. Faults: "operator '%' expects numeric values", "modulo by zero".
[[nodiscard]] Fault modulo(const RubyValue& left, const RubyValue& right, RubyValue& result);
/// The negation, wrapping for an integer. Fault: "unary '-' expects a numeric value".
[[nodiscard]] Fault negate(const RubyValue& value, RubyValue& result);
/// Whether the operands are equal, as in valuesEqual. Fault: kStackOverflow when they nest too deeply.
[[nodiscard]] Fault equal(const RubyValue& left, const RubyValue& right, bool& result);
/// Compares two numbers (as doubles) or two strings (by unsigned bytes). Fault: "ordered comparisons require matching
/// numeric or string values".
[[nodiscard]] Fault compare(const RubyValue& left, const RubyValue& right, Ordering ordering, bool& result);

/// Appends the text of `part` to `text`, or nothing when it fails. Fault: kStackOverflow when `part` nests too deeply.
[[nodiscard]] Fault appendOperand(std::string& text, const RubyValue& part);

/// Equality: exact for equal kinds, tolerant for numbers of different kinds, element by element for arrays and maps.
/// Throws StackOverflow when they nest too deeply for the native stack.
[[nodiscard]] bool valuesEqual(const RubyValue& left, const RubyValue& right);

/// True for values that may be map keys: all but arrays, maps and functions.
[[nodiscard]] inline bool isMapKey(const RubyValue& value) noexcept {
    return !value.isArray() && !value.isMap() && !value.isFunction();
}
/// The fault for all other keys.
inline constexpr Fault kNoMapKey{"unsupported map key type", Fault::Kind::Placeless};

/// The key string that `value` stands for. Throws RubyError "unsupported map key type" for arrays, maps and functions.
[[nodiscard]] std::string valueKeyString(const RubyValue& value);

/// The address of the value stored under `key`, or null. Fails like valueKeyString. Allocates nothing for strings and
/// integers.
[[nodiscard]] RubyValue* findMapValue(RubyMap& map, const RubyValue& key);
[[nodiscard]] const RubyValue* findMapValue(const RubyMap& map, const RubyValue& key);

/// The value stored under `key`; stores nil first when there is none. Fails like valueKeyString.
[[nodiscard]] RubyValue& setMapValue(RubyMap& map, const RubyValue& key);

/// Removes the entry of `key`; returns its value, if there was one. Fails like valueKeyString.
[[nodiscard]] inline std::optional<RubyValue> takeMapValue(RubyMap& map, const RubyValue& key) {
    if (key.isString() || key.isInteger()) {
        return map.take(key);
    }
    return map.take(valueKeyString(key));
}

}  // namespace morvel::ruby::internal
