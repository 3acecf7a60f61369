#include "support/code.h"

#include "compiler/compiler.h"
#include "support/describe.h"
#include "support/runs.h"

namespace morvel::ruby::tests {

namespace {

using internal::Instruction;
using internal::OpCode;
using internal::OperandKind;
using internal::Program;

std::string operandText(const Program& program, const Instruction& instruction, OperandKind kind) {
    switch (kind) {
        case OperandKind::None:
            return "";
        case OperandKind::Constant:
            return " " + describe(program.constants.at(static_cast<std::size_t>(instruction.a)));
        case OperandKind::NameConstant:
            return " " + program.constants.at(static_cast<std::size_t>(instruction.a)).asString();
        case OperandKind::JumpTarget:
        case OperandKind::Count:
            return " " + std::to_string(instruction.a);
    }
    return "?";
}

}  // namespace

std::string code(const std::string& source, std::size_t index) {
    const Program program = internal::compileSource(source, "t");
    std::string text;
    for (const Instruction& instruction : program.functions.at(index).code) {
        const auto& info = internal::kOpcodes.at(static_cast<std::size_t>(instruction.op));
        text += text.empty() ? "" : "; ";
        text += info.name;
        text += operandText(program, instruction, info.operand);
        // Unused operands are expected to be 0.
        text += info.operand == OperandKind::None && instruction.a != 0 ? " a=" + std::to_string(instruction.a) : "";
        text +=
            instruction.op == OpCode::DefineFunction || instruction.b != 0 ? " " + std::to_string(instruction.b) : "";
    }
    return text;
}

std::string lines(const std::string& source, std::size_t index) {
    const Program program = internal::compileSource(source, "t");
    std::string text;
    for (const Instruction& instruction : program.functions.at(index).code) {
        text += (text.empty() ? "" : " ") + std::to_string(instruction.line);
    }
    return text;
}

std::string constants(const std::string& source) {
    const Program program = internal::compileSource(source, "t");
    std::string text;
    for (const RubyValue& constant : program.constants) {
        text += (text.empty() ? "" : ", ") + describe(constant);
    }
    return text;
}

std::string compileError(const std::string& source) {
    return errorOf([&] { (void)internal::compileSource(source, "t"); });
}

}  // namespace morvel::ruby::tests
