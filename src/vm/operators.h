// The operators of the language by their opcodes.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "compiler/opcodes.h"
#include "value/operators.h"

namespace morvel::ruby::internal {

/// Applies a binary operator.
using BinaryFunction = Fault (*)(const RubyValue& left, const RubyValue& right, RubyValue& result);
/// Applies a unary operator.
using UnaryFunction = Fault (*)(const RubyValue& value, RubyValue& result);

struct BinaryOperator {
    OpCode op;
    BinaryFunction apply;
};

struct UnaryOperator {
    OpCode op;
    UnaryFunction apply;
};

template <bool kWanted>
[[nodiscard]] Fault testEquality(const RubyValue& left, const RubyValue& right, RubyValue& result) {
    bool areEqual = false;
    const Fault fault = equal(left, right, areEqual);
    result = RubyValue(areEqual == kWanted);
    return fault;
}

template <Ordering kOrdering>
[[nodiscard]] Fault testOrder(const RubyValue& left, const RubyValue& right, RubyValue& result) {
    bool isOrdered = false;
    const Fault fault = compare(left, right, kOrdering, isOrdered);
    result = RubyValue(isOrdered);
    return fault;
}

[[nodiscard]] inline Fault testBoth(const RubyValue& left, const RubyValue& right, RubyValue& result) {
    result = RubyValue(left.isTruthy() && right.isTruthy());
    return kNoFault;
}

[[nodiscard]] inline Fault testEither(const RubyValue& left, const RubyValue& right, RubyValue& result) {
    result = RubyValue(left.isTruthy() || right.isTruthy());
    return kNoFault;
}

[[nodiscard]] inline Fault testFalsy(const RubyValue& value, RubyValue& result) {
    result = RubyValue(!value.isTruthy());
    return kNoFault;
}

inline constexpr std::array kBinaryOperators{
    BinaryOperator{OpCode::Add, add},
    BinaryOperator{OpCode::Subtract, subtract},
    BinaryOperator{OpCode::Multiply, multiply},
    BinaryOperator{OpCode::Divide, divide},
    BinaryOperator{OpCode::Modulo, modulo},
    BinaryOperator{OpCode::Equal, testEquality<true>},
    BinaryOperator{OpCode::NotEqual, testEquality<false>},
    BinaryOperator{OpCode::Less, testOrder<Ordering::Less>},
    BinaryOperator{OpCode::LessEqual, testOrder<Ordering::LessEqual>},
    BinaryOperator{OpCode::Greater, testOrder<Ordering::Greater>},
    BinaryOperator{OpCode::GreaterEqual, testOrder<Ordering::GreaterEqual>},
    BinaryOperator{OpCode::And, testBoth},
    BinaryOperator{OpCode::Or, testEither},
};

inline constexpr std::array kUnaryOperators{
    UnaryOperator{OpCode::Negate, negate},
    UnaryOperator{OpCode::Not, testFalsy},
};

/// The functions by opcode number; null for opcodes that are not operators of that kind.
template <typename Function, typename Operators>
constexpr auto operatorsByOpcode(const Operators& operators) {
    std::array<Function, kOpcodes.size()> functions{};
    for (const auto& row : operators) {
        functions[static_cast<std::size_t>(row.op)] = row.apply;
    }
    return functions;
}

inline constexpr auto kBinaryFunctions = operatorsByOpcode<BinaryFunction>(kBinaryOperators);
inline constexpr auto kUnaryFunctions = operatorsByOpcode<UnaryFunction>(kUnaryOperators);

/// True when a row is there for just those opcodes that are operators of its kind.
template <typename Operators>
constexpr bool areComplete(const Operators& operators, bool (*isOperator)(OpCode)) {
    for (std::size_t i = 0; i != kOpcodes.size(); ++i) {
        const auto op = static_cast<OpCode>(i);
        const bool isThere =
            std::any_of(operators.begin(), operators.end(), [op](const auto& row) { return row.op == op; });
        if (isThere != isOperator(op)) {
            return false;
        }
    }
    return true;
}

static_assert(areComplete(kBinaryOperators, [](OpCode op) { return isBinary(op); }) &&
                  areComplete(kUnaryOperators, [](OpCode op) { return classOf(op) == OpcodeClass::Unary; }),
              "every operator has its function");

/// The result of `op`, a binary operator; raises its fault at a line of the program.
[[nodiscard]] inline RubyValue applyBinary(OpCode op, const RubyValue& left, const RubyValue& right,
                                           const Program& program, unsigned line) {
    RubyValue result;
    if (const Fault fault = kBinaryFunctions[static_cast<std::size_t>(op)](left, right, result)) {
        raise(fault, program, line);
    }
    return result;
}

/// The same for a unary operator.
[[nodiscard]] inline RubyValue applyUnary(OpCode op, const RubyValue& value, const Program& program, unsigned line) {
    RubyValue result;
    if (const Fault fault = kUnaryFunctions[static_cast<std::size_t>(op)](value, result)) {
        raise(fault, program, line);
    }
    return result;
}

}  // namespace morvel::ruby::internal
