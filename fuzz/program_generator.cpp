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
    // Numbers above the last opcode are possible, and rare. Names and constants are what the others work on.
    constexpr std::size_t kOpcodeNumbers = 28;
    instruction.op = bytes.chance(110) ? (bytes.chance(128) ? OpCode::PushConst : OpCode::LoadName)
                                       : static_cast<OpCode>(bytes.below(kOpcodeNumbers));
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
    for (std::size_t i = 0; i < program.functions.size(); ++i) {
        CompiledFunction& function = program.functions[i];
        if (i > 0) {
            function.name = "f";
            for (std::size_t left = bytes.below(3); left > 0; --left) {
                function.params.emplace_back(bytes.chance(200) ? "a" : "p");
            }
        }
        const std::size_t size = bytes.below(40);
        for (std::size_t left = size; left > 0; --left) {
            function.code.push_back(randomInstruction(program, size, bytes));
        }
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
                function.code[at].op = static_cast<OpCode>(bytes.below(28));
                break;
        }
    }
}

}  // namespace morvel::ruby::fuzz
