// The compiled form of a script.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "compiler/opcodes.h"
#include "morvel/ruby/value.h"

namespace morvel::ruby::internal {

/// Marks an instruction that addresses no local slot.
inline constexpr std::int32_t kNoLocalSlot = -1;

struct Instruction {
    OpCode op = OpCode::PushConst;
    std::int32_t a = 0;
    std::int32_t b = 0;
    /// Source line of the token that the instruction comes from.
    std::uint32_t line = 0;
};

/// A number as the operand of an instruction. Throws RubyError "bytecode image is too large" when it does not fit.
[[nodiscard]] std::int32_t toOperand(std::size_t number);

/// Where a leaf takes its value from.
enum class FastLeafSource : std::uint8_t { Constant = 0, Parameter = 1, Global = 2 };

/// A node of the expression tree of a fast function.
struct FastNode {
    /// The operation; PushConst or LoadName in a leaf.
    OpCode op = OpCode::PushConst;
    FastLeafSource source = FastLeafSource::Constant;
    /// Leaf: constant index, parameter slot, or constant index of the global's name, by source.
    std::int32_t value = 0;
    std::int32_t left = -1;
    std::int32_t right = -1;
    /// MakeArray: the elements in source order.
    std::vector<std::int32_t> children;
    std::uint32_t line = 0;

    [[nodiscard]] bool isLeaf() const noexcept {
        return classOf(op) == OpcodeClass::Constant || classOf(op) == OpcodeClass::Load;
    }
};

/// Which short form a function has.
enum class FastKind : std::uint8_t {
    None = 0,
    /// The whole function is `return <expression>`.
    Expression = 1,
    /// `if <condition> then error("...") end return <expression>`.
    Guarded = 2,
};

struct CompiledFunction {
    std::string name;
    std::vector<std::string> params;
    std::vector<Instruction> code;

    // Derived by finalizeProgramMetadata, never stored in images.
    /// The locals by slot: views of the parameters and of string constants.
    std::vector<std::string_view> localNames;
    /// For each instruction the local slot that it addresses, or kNoLocalSlot. Empty when no name is local.
    std::vector<std::int32_t> instructionSlots;
    FastKind fastKind = FastKind::None;
    /// The nodes of one expression lie together, in the order of evaluation: operands before their operator.
    std::vector<FastNode> fastNodes;
    std::int32_t fastRoot = -1;
    std::int32_t fastGuardRoot = -1;
    /// The string that a guarded function raises, nil in others.
    RubyValue fastErrorMessage;
};

/// A program that runs is owned by shared pointers, one of them in every function value made from it.
struct Program : std::enable_shared_from_this<Program> {
    /// The chunk name, which error locations begin with.
    std::string name = "<string>";
    /// Scalars only: nil, integers, floats, booleans, strings.
    std::vector<RubyValue> constants;
    /// Element 0 is the top-level code.
    std::vector<CompiledFunction> functions;
    /// State that the executors attach to a program; only they know its type.
    mutable std::shared_ptr<void> executionState;
};

/// The local slot that instruction `index` of the function addresses, or kNoLocalSlot.
[[nodiscard]] inline std::int32_t localSlotAt(const CompiledFunction& function, std::size_t index) noexcept {
    return index < function.instructionSlots.size() ? function.instructionSlots[index] : kNoLocalSlot;
}

/// The string held by constant `index`; null when there is no such constant or it is not a string.
[[nodiscard]] const std::string* getStringConstantPtr(const Program& program, std::int32_t index) noexcept;

}  // namespace morvel::ruby::internal
