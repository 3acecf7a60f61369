// The instruction set, listed once; everything about opcodes is derived from the list.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace morvel::ruby::internal {

/// What an instruction's `a` operand means.
enum class OperandKind : std::uint8_t { None, Constant, NameConstant, JumpTarget, Count };

/// Groups opcodes that passes over code treat alike.
enum class OpcodeClass : std::uint8_t {
    Constant,
    Load,
    Store,
    Pop,
    Arithmetic,
    Comparison,
    Logic,
    /// Unary operators.
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
    /// The class of numbers that are not opcodes.
    Unknown,
};

// One row per opcode, in the order of their numbers: name, class, meaning of `a`, values popped, values pushed. A pop
// count of kCounted means `a` of them, kCountedAndOne one more.
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

/// The classes in an array of their own: passes over code need little else.
inline constexpr std::array kOpcodeClasses{
#define MORVEL_ROW(name, opcodeClass, ...) OpcodeClass::opcodeClass,
    MORVEL_OPCODES(MORVEL_ROW)
#undef MORVEL_ROW
};

/// The row of `op`, or null for a number that is not an opcode.
[[nodiscard]] constexpr const OpcodeInfo* opcodeInfo(OpCode op) {
    const auto number = static_cast<std::size_t>(op);
    return number < kOpcodes.size() ? &kOpcodes[number] : nullptr;
}

[[nodiscard]] constexpr OpcodeClass classOf(OpCode op) {
    const auto number = static_cast<std::size_t>(op);
    return number < kOpcodeClasses.size() ? kOpcodeClasses[number] : OpcodeClass::Unknown;
}

/// True for a binary operator.
[[nodiscard]] constexpr bool isBinary(OpCode op) {
    const OpcodeClass opcodeClass = classOf(op);
    return opcodeClass == OpcodeClass::Arithmetic || opcodeClass == OpcodeClass::Comparison ||
           opcodeClass == OpcodeClass::Logic;
}

/// True when the instruction may continue at its operand.
[[nodiscard]] constexpr bool isJump(OpCode op) {
    const OpcodeClass opcodeClass = classOf(op);
    return opcodeClass == OpcodeClass::Jump || opcodeClass == OpcodeClass::ConditionalJump;
}

/// True when the instruction may continue with the next one.
[[nodiscard]] constexpr bool fallsThrough(OpCode op) {
    const OpcodeClass opcodeClass = classOf(op);
    return opcodeClass != OpcodeClass::Jump && opcodeClass != OpcodeClass::Return;
}

/// True when the instruction may continue somewhere other than the next one.
[[nodiscard]] constexpr bool endsBlock(OpCode op) { return isJump(op) || !fallsThrough(op); }

}  // namespace morvel::ruby::internal
