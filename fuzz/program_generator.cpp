#include "program_generator.h"

#include <array>
#include <cstdint>
#include <limits>
#include <string_view>
#include <utility>

namespace morvel::ruby::fuzz {

namespace {

using internal::CompiledFunction;
using internal::Instruction;
using internal::OpCode;
using internal::Program;

constexpr std::array<std::int32_t, 8> kOddOperands{
    -1, 1 << 20, 1 << 21, std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::min(),
    17, 300,     70'000};

/// Any opcode, and occasionally the first invalid number.
OpCode randomOpcode(ByteSource& bytes) { return static_cast<OpCode>(bytes.below(internal::kOpcodes.size() + 1)); }

/// An operand that fits the opcode in most cases.
std::int32_t operandFor(OpCode op, const Program& program, std::size_t codeSize, ByteSource& bytes) {
    if (bytes.chance(4)) {
        return bytes.pick(kOddOperands);
    }
    const internal::OpcodeInfo* info = internal::opcodeInfo(op);
    switch (info == nullptr ? internal::OperandKind::None : info->operand) {
        case internal::OperandKind::Constant:
        case internal::OperandKind::NameConstant:
            return static_cast<std::int32_t>(bytes.byte() % (program.constants.size() + 1));
        case internal::OperandKind::JumpTarget:
            return static_cast<std::int32_t>(bytes.byte() % (codeSize + 2));
        case internal::OperandKind::Count:
            return static_cast<std::int32_t>(bytes.below(4));
        case internal::OperandKind::None:
            break;
    }
    return 0;
}

Instruction randomInstruction(const Program& program, std::size_t codeSize, ByteSource& bytes) {
    Instruction instruction;
    // Loads of names and constants supply operands for the other instructions.
    instruction.op =
        bytes.chance(110) ? (bytes.chance(128) ? OpCode::PushConst : OpCode::LoadName) : randomOpcode(bytes);
    instruction.a = operandFor(instruction.op, program, codeSize, bytes);
    instruction.b = static_cast<std::int32_t>(bytes.below(program.functions.size() + 1));
    instruction.line = static_cast<std::uint32_t>(bytes.below(50));
    return instruction;
}

RubyValue randomConstant(ByteSource& bytes) {
    switch (bytes.below(6)) {
        case 0:
            return bytes.below(10);
        case 1:
            return static_cast<std::int64_t>(bytes.word());
        case 2:
            return static_cast<double>(bytes.below(100)) / 8;
        case 3:
            return bytes.chance(128);
        case 4:
            return nullptr;
        default:
            return bytes.text(6);
    }
}

constexpr std::int32_t kFunctionName = 1;

/// Adds an instruction whose operands are on the stack; returns the stack depth after it.
std::size_t addBalanced(CompiledFunction& function, const Program& program, std::size_t depth, ByteSource& bytes) {
    // Few names, so that variables change while their old values lie on the stack.
    constexpr std::array<std::int32_t, 4> kNames{0, 0, 8, 2};
    const auto add = [&](OpCode op, std::int32_t a) {
        function.code.push_back({op, a, 0, static_cast<std::uint32_t>(bytes.below(50))});
    };
    const std::size_t kind = depth == 0 ? bytes.below(5) : bytes.below(16);
    if (kind < 3) {
        add(OpCode::LoadName, bytes.pick(kNames));
        return depth + 1;
    }
    if (kind < 5) {
        add(OpCode::PushConst, static_cast<std::int32_t>(bytes.byte() % program.constants.size()));
        return depth + 1;
    }
    if (kind < 8) {
        add(OpCode::StoreName, bytes.pick(kNames));
        return depth;
    }
    if (kind == 8) {
        add(OpCode::Pop, 0);
        return depth - 1;
    }
    if (kind == 9) {
        add(OpCode::Not, 0);
        return depth;
    }
    if (kind == 10) {
        const std::size_t count = bytes.below(4) % (depth + 1);
        add(OpCode::MakeArray, static_cast<std::int32_t>(count));
        return depth - count + 1;
    }
    if (kind == 11 && depth >= 3) {
        add(OpCode::SetIndex, 0);
        return depth - 2;
    }
    if (depth >= 2) {
        constexpr std::array kBinary{OpCode::Add, OpCode::Add, OpCode::Equal, OpCode::NotEqual,
                                     OpCode::And, OpCode::Or,  OpCode::Less,  OpCode::GetIndex};
        add(bytes.pick(kBinary), 0);
        return depth - 1;
    }
    return depth;
}

/// Gives every function but the first code that usually runs to its end, and makes the first call them all.
void fillBalanced(Program& program, ByteSource& bytes) {
    const auto end = [](CompiledFunction& function, std::size_t depth) {
        function.code.push_back({OpCode::MakeArray, static_cast<std::int32_t>(depth), 0, 1});
        function.code.push_back({OpCode::Return, 0, 0, 1});
    };
    CompiledFunction& first = program.functions[0];
    for (std::size_t i = 1; i < program.functions.size(); ++i) {
        CompiledFunction& function = program.functions[i];
        std::size_t depth = 0;
        for (std::size_t left = bytes.below(40); left > 0; --left) {
            depth = addBalanced(function, program, depth, bytes);
        }
        end(function, depth);
        first.code.push_back({OpCode::DefineFunction, kFunctionName, static_cast<std::int32_t>(i), 1});
        first.code.push_back({OpCode::LoadName, kFunctionName, 0, 1});
        for (std::size_t param = 0; param < function.params.size(); ++param) {
            first.code.push_back(
                {OpCode::PushConst, static_cast<std::int32_t>(bytes.byte() % program.constants.size()), 0, 1});
        }
        first.code.push_back({OpCode::Call, static_cast<std::int32_t>(function.params.size()), 0, 1});
    }
    end(first, program.functions.size() - 1);
}

}  // namespace

Program generateProgram(ByteSource& bytes) {
    Program program;
    program.name = "hand";
    for (const std::string_view name : {"a", "f", "c", "puts", "pcall", "error", "len", "table_set", "p"}) {
        program.constants.emplace_back(name);
    }
    for (std::size_t left = bytes.below(8); left > 0; --left) {
        program.constants.push_back(randomConstant(bytes));
    }
    program.functions.resize(1 + bytes.below(4));
    program.functions[0].name = "<main>";
    const bool isBalanced = bytes.chance(128);
    for (std::size_t i = 0; i < program.functions.size(); ++i) {
        CompiledFunction& function = program.functions[i];
        if (i > 0) {
            function.name = "f";
            for (std::size_t left = bytes.below(3); left > 0; --left) {
                function.params.emplace_back(bytes.chance(200) ? "a" : "p");
            }
        }
        const std::size_t size = isBalanced ? 0 : bytes.below(40);
        for (std::size_t left = size; left > 0; --left) {
            function.code.push_back(randomInstruction(program, size, bytes));
        }
    }
    if (isBalanced) {
        fillBalanced(program, bytes);
    }
    return program;
}

void mutateProgram(Program& program, ByteSource& bytes) {
    for (std::size_t left = 1 + bytes.below(6); left > 0; --left) {
        CompiledFunction& function = program.functions[bytes.byte() % program.functions.size()];
        const std::size_t size = function.code.size();
        const std::size_t at = size == 0 ? 0 : bytes.word() % size;
        switch (bytes.below(size == 0 ? 2 : 7)) {
            case 0:
                function.code.insert(function.code.begin() + static_cast<std::ptrdiff_t>(at),
                                     randomInstruction(program, size, bytes));
                break;
            case 1:
                program.constants[bytes.byte() % program.constants.size()] = randomConstant(bytes);
                break;
            case 2:
                function.code[at] = randomInstruction(program, size, bytes);
                break;
            case 3:
                function.code[at].a = operandFor(function.code[at].op, program, size, bytes);
                break;
            case 4:
                function.code.erase(function.code.begin() + static_cast<std::ptrdiff_t>(at));
                break;
            case 5:
                std::swap(function.code[at], function.code[bytes.word() % size]);
                break;
            default:
                function.code[at].op = randomOpcode(bytes);
                break;
        }
    }
}

}  // namespace morvel::ruby::fuzz
