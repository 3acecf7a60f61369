// The operators of the language on values: every type rule of an expression lives here.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "morvel/ruby/map.h"
#include "morvel/ruby/value.h"
#include "value/native_stack.h"

namespace morvel::ruby::internal {

struct Program;

/// Raises a located script error: the program's name, ":", the line, ": ", then `message`.
[[noreturn]] void runtimeError(const Program& program, unsigned line, const std::string& message);

/// Raises StackOverflow with the location.
[[noreturn]] void failOverflow(const Program& program, unsigned line);

/// Does what an operator at that location has to do. Rendering and comparing do not know for whom they work; when they
/// fail with "stack overflow", the error gets the operator's location here.
template <typename Work>
auto withOverflowLocated(const Program& program, unsigned line, const Work& work) {
    try {
        return work();
    } catch (const StackOverflow&) {
        failOverflow(program, line);
    }
}

/// Numbers this close to zero count as zero in division and modulo, and numbers of different kinds this close to each
/// other count as equal: the machine epsilon of double, 2 to the power -52.
inline constexpr double kZeroTolerance = 2.220446049250313e-16;

/// The four ordered comparisons.
enum class Ordering : std::uint8_t { Less, LessEqual, Greater, GreaterEqual };

// The arithmetic operators. `program` and `line` locate the error of an operand that does not fit.

/// Text when either operand is a string, a new array for two arrays, else the sum (wrapping for two integers).
/// Fails with "operator '+' expects numbers, strings, or arrays", or with a located "stack overflow" for text of a nest
/// too deep for the native stack.
[[nodiscard]] RubyValue addValues(const RubyValue& left, const RubyValue& right, const Program& program, unsigned line);
/// The difference, wrapping for two integers. Fails with "operator '-' expects numeric values".
[[nodiscard]] RubyValue subtractValues(const RubyValue& left, const RubyValue& right, const Program& program,
                                       unsigned line);
/// The product, wrapping for two integers. Fails with "operator '*' expects numeric values".
[[nodiscard]] RubyValue multiplyValues(const RubyValue& left, const RubyValue& right, const Program& program,
                                       unsigned line);
/// The quotient, always a float. Fails with "operator '/' expects numeric values" or "division by zero".
[[nodiscard]] RubyValue divideValues(const RubyValue& left, const RubyValue& right, const Program& program,
                                     unsigned line);
/// The remainder with the sign of the left operand. Fails with "operator '%' expects numeric values" or
/// "modulo by zero".
[[nodiscard]] RubyValue moduloValues(const RubyValue& left, const RubyValue& right, const Program& program,
                                     unsigned line);
/// The negation, wrapping for an integer. Fails with "unary '-' expects a numeric value".
[[nodiscard]] RubyValue negateValue(const RubyValue& value, const Program& program, unsigned line);

/// Equality: exact for equal kinds, tolerant for numbers of different kinds, element by element for arrays and maps.
/// Fails only for a nest too deep for the native stack, with StackOverflow.
[[nodiscard]] bool valuesEqual(const RubyValue& left, const RubyValue& right);

/// The same as an operator, whose "stack overflow" has its location.
[[nodiscard]] bool operandsEqual(const RubyValue& left, const RubyValue& right, const Program& program, unsigned line);

/// Compares two numbers (as doubles) or two strings (by unsigned bytes); the result is a boolean. Fails with
/// "ordered comparisons require matching numeric or string values".
[[nodiscard]] RubyValue compareOrdered(const RubyValue& left, const RubyValue& right, Ordering ordering,
                                       const Program& program, unsigned line);

/// The text under which `value` is a map key. Throws RubyError "unsupported map key type" for arrays, maps and
/// functions.
[[nodiscard]] std::string valueKeyString(const RubyValue& value);

/// Address of the value stored under `key`, or null. Fails as valueKeyString. Allocates nothing for strings and
/// integers.
[[nodiscard]] RubyValue* findMapValue(RubyMap& map, const RubyValue& key);
[[nodiscard]] const RubyValue* findMapValue(const RubyMap& map, const RubyValue& key);

/// The value stored under `key`, after storing nil when there is none. Fails as valueKeyString.
[[nodiscard]] RubyValue& setMapValue(RubyMap& map, const RubyValue& key);

/// Removes the entry of `key`; its value, or nothing when there is none. Fails as valueKeyString.
[[nodiscard]] std::optional<RubyValue> takeMapValue(RubyMap& map, const RubyValue& key);

}  // namespace morvel::ruby::internal
