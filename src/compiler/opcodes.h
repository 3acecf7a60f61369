// The instruction set, listed once; everything about opcodes is derived from the list.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace morvel::ruby::internal {

/// What an instruction's `a` operand means.
enum class OperandKind : std::uint8_t { None, Constant, NameConstant, JumpTarget, Count };

// One row an opcode, in the order of their numbers: name, meaning of `a`, values popped, values pushed. A pop count of
// kCounted stands for "as many as `a` says", kCountedAndOne for one more.
#define MORVEL_OPCODES(ROW)                 \
    ROW(PushConst, Constant, 0, 1)          \
    ROW(LoadName, NameConstant, 0, 1)       \
    ROW(StoreName, NameConstant, 1, 1)      \
    ROW(Pop, None, 1, 0)                    \
    ROW(Add, None, 2, 1)                    \
    ROW(Subtract, None, 2, 1)               \
    ROW(Multiply, None, 2, 1)               \
    ROW(Divide, None, 2, 1)                 \
    ROW(Modulo, None, 2, 1)                 \
    ROW(Negate, None, 1, 1)                 \
    ROW(Not, None, 1, 1)                    \
    ROW(Equal, None, 2, 1)                  \
    ROW(NotEqual, None, 2, 1)               \
    ROW(Less, None, 2, 1)                   \
    ROW(LessEqual, None, 2, 1)              \
    ROW(Greater, None, 2, 1)                \
    ROW(GreaterEqual, None, 2, 1)           \
    ROW(And, None, 2, 1)                    \
    ROW(Or, None, 2, 1)                     \
    ROW(Jump, JumpTarget, 0, 0)             \
    ROW(JumpIfFalse, JumpTarget, 1, 0)      \
    ROW(Call, Count, kCountedAndOne, 1)     \
    ROW(DefineFunction, NameConstant, 0, 0) \
    ROW(Return, None, 0, 0)                 \
    ROW(MakeArray, Count, kCounted, 1)      \
    ROW(GetIndex, None, 2, 1)               \
    ROW(SetIndex, None, 3, 1)

/// Operations of the stack machine; the numbers are part of the image format.
enum class OpCode : std::uint32_t {
#define MORVEL_ROW(name, operand, pops, pushes) name,
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
#define MORVEL_ROW(name, operand, pops, pushes) OpcodeInfo{#name, OperandKind::operand, pops, pushes},
    MORVEL_OPCODES(MORVEL_ROW)
#undef MORVEL_ROW
};

/// The row of `op`, or null for a number that is no opcode.
[[nodiscard]] constexpr const OpcodeInfo* opcodeInfo(OpCode op) {
    const auto number = static_cast<std::size_t>(op);
    return number < kOpcodes.size() ? &kOpcodes[number] : nullptr;
}

}  // namespace morvel::ruby::internal
