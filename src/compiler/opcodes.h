// The instruction set, listed once; everything about opcodes is derived from the list.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace morvel::ruby::internal {

/// What an instruction's `a` operand means.
enum class OperandKind : std::uint8_t { None, Constant, NameConstant, JumpTarget, Count };

/// What opcodes have in common. Whoever treats opcodes alike asks for their class.
enum class OpcodeClass : std::uint8_t {
    Constant,
    Load,
    Store,
    Pop,
    Arithmetic,
    Comparison,
    Logic,
    /// Operators with one operand.
    Unary,
    Jump,
    ConditionalJump,
    Call,
    Definition,
    Return,
    /// Array literals.
    Array,
    GetElement,
    SetElement,
    /// Of the numbers that are no opcode.
    Unknown,
};

// One row an opcode, in the order of their numbers: name, class, meaning of `a`, values popped, values pushed. A pop
// count of kCounted stands for "as many as `a` says", kCountedAndOne for one more.
#define MORVEL_OPCODES(ROW)                             \
    ROW(PushConst, Constant, Constant, 0, 1)            \
    ROW(LoadName, Load, NameConstant, 0, 1)             \
    ROW(StoreName, Store, NameConstant, 1, 1)           \
    ROW(Pop, Pop, None, 1, 0)                           \
    ROW(Add, Arithmetic, None, 2, 1)                    \
    ROW(Subtract, Arithmetic, None, 2, 1)               \
    ROW(Multiply, Arithmetic, None, 2, 1)               \
    ROW(Divide, Arithmetic, None, 2, 1)                 \
    ROW(Modulo, Arithmetic, None, 2, 1)                 \
    ROW(Negate, Unary, None, 1, 1)                      \
    ROW(Not, Unary, None, 1, 1)                         \
    ROW(Equal, Comparison, None, 2, 1)                  \
    ROW(NotEqual, Comparison, None, 2, 1)               \
    ROW(Less, Comparison, None, 2, 1)                   \
    ROW(LessEqual, Comparison, None, 2, 1)              \
    ROW(Greater, Comparison, None, 2, 1)                \
    ROW(GreaterEqual, Comparison, None, 2, 1)           \
    ROW(And, Logic, None, 2, 1)                         \
    ROW(Or, Logic, None, 2, 1)                          \
    ROW(Jump, Jump, JumpTarget, 0, 0)                   \
    ROW(JumpIfFalse, ConditionalJump, JumpTarget, 1, 0) \
    ROW(Call, Call, Count, kCountedAndOne, 1)           \
    ROW(DefineFunction, Definition, NameConstant, 0, 0) \
    ROW(Return, Return, None, 0, 0)                     \
    ROW(MakeArray, Array, Count, kCounted, 1)           \
    ROW(GetIndex, GetElement, None, 2, 1)               \
    ROW(SetIndex, SetElement, None, 3, 1)

/// Operations of the stack machine; the numbers are part of the image format.
enum class OpCode : std::uint32_t {
#define MORVEL_ROW(name, ...) name,
    MORVEL_OPCODES(MORVEL_ROW)
#undef MORVEL_ROW
};

inline constexpr int kCounted = -1;
inline constexpr int kCountedAndOne = -2;

struct OpcodeInfo {
    std::string_view name;
    OperandKind operand;
    int pops;
    int pushes;
};

inline constexpr std::array kOpcodes{
#define MORVEL_ROW(name, opcodeClass, operand, pops, pushes) OpcodeInfo{#name, OperandKind::operand, pops, pushes},
    MORVEL_OPCODES(MORVEL_ROW)
#undef MORVEL_ROW
};

/// Their classes, apart: what goes through code looks at little else.
inline constexpr std::array kOpcodeClasses{
#define MORVEL_ROW(name, opcodeClass, ...) OpcodeClass::opcodeClass,
    MORVEL_OPCODES(MORVEL_ROW)
#undef MORVEL_ROW
};

/// The row of `op`, or null for a number that is no opcode.
[[nodiscard]] constexpr const OpcodeInfo* opcodeInfo(OpCode op) {
    const auto number = static_cast<std::size_t>(op);
    return number < kOpcodes.size() ? &kOpcodes[number] : nullptr;
}

[[nodiscard]] constexpr OpcodeClass classOf(OpCode op) {
    const auto number = static_cast<std::size_t>(op);
    return number < kOpcodeClasses.size() ? kOpcodeClasses[number] : OpcodeClass::Unknown;
}

/// True for an operator with two operands.
[[nodiscard]] constexpr bool isBinary(OpCode op) {
    const OpcodeClass opcodeClass = classOf(op);
    return opcodeClass == OpcodeClass::Arithmetic || opcodeClass == OpcodeClass::Comparison ||
           opcodeClass == OpcodeClass::Logic;
}

/// True when the instruction may go on at its operand.
[[nodiscard]] constexpr bool isJump(OpCode op) {
    const OpcodeClass opcodeClass = classOf(op);
    return opcodeClass == OpcodeClass::Jump || opcodeClass == OpcodeClass::ConditionalJump;
}

/// True when the instruction may go on at the next one.
[[nodiscard]] constexpr bool fallsThrough(OpCode op) {
    const OpcodeClass opcodeClass = classOf(op);
    return opcodeClass != OpcodeClass::Jump && opcodeClass != OpcodeClass::Return;
}

/// True when the instruction may go on elsewhere than at the next one.
[[nodiscard]] constexpr bool endsBlock(OpCode op) { return isJump(op) || !fallsThrough(op); }

}  // namespace morvel::ruby::internal
