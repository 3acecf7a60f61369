#include "listing.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "compiler/program.h"
#include "listing_text.h"

namespace morvel::ruby::tools {

namespace {

using internal::CompiledFunction;
using internal::Instruction;
using internal::OpCode;
using internal::OpcodeInfo;
using internal::OperandKind;
using internal::Program;

constexpr std::size_t kIndexWidth = 4;
constexpr std::size_t kLineWidth = 5;
constexpr std::size_t kNameWidth = 15;
constexpr std::size_t kOperandWidth = 6;

bool isIndex(std::int32_t index, std::size_t size) { return index >= 0 && static_cast<std::size_t>(index) < size; }

std::string constantMeaning(const Program& program, std::int32_t index) {
    if (!isIndex(index, program.constants.size())) {
        return "invalid constant";
    }
    return constantText(program.constants[static_cast<std::size_t>(index)]);
}

std::string nameMeaning(const Program& program, const CompiledFunction& function, std::size_t index) {
    const std::int32_t constant = function.code[index].a;
    if (!isIndex(constant, program.constants.size())) {
        return "invalid constant";
    }
    const std::string* name = internal::getStringConstantPtr(program, constant);
    if (name == nullptr) {
        return "invalid name: " + constantMeaning(program, constant);
    }
    const std::int32_t slot = internal::localSlotAt(function, index);
    return nameText(*name) + (slot == internal::kNoLocalSlot ? "" : " (local " + std::to_string(slot) + ")");
}

std::string functionMeaning(const Program& program, std::int32_t index) {
    return isIndex(index, program.functions.size()) ? "function " + std::to_string(index) : "invalid function";
}

std::string jumpMeaning(const CompiledFunction& function, std::int32_t target) {
    if (target < 0 || static_cast<std::size_t>(target) > function.code.size()) {
        return "invalid target";
    }
    return static_cast<std::size_t>(target) == function.code.size() ? "end" : "";
}

std::string meaning(const Program& program, const CompiledFunction& function, std::size_t index,
                    const OpcodeInfo& info) {
    const Instruction& instruction = function.code[index];
    switch (info.operand) {
        case OperandKind::None:
            return "";
        case OperandKind::Constant:
            return constantMeaning(program, instruction.a);
        case OperandKind::NameConstant: {
            const std::string name = nameMeaning(program, function, index);
            return instruction.op == OpCode::DefineFunction ? name + " = " + functionMeaning(program, instruction.b)
                                                            : name;
        }
        case OperandKind::JumpTarget:
            return jumpMeaning(function, instruction.a);
        case OperandKind::Count:
            return instruction.a < 0 ? "invalid count" : "";
    }
    return "";
}

// The operands that the opcode uses, and any other that is not 0.
std::string operandText(const Instruction& instruction, const OpcodeInfo* info) {
    const bool hasA = info == nullptr || info->operand != OperandKind::None || instruction.a != 0;
    const bool hasB = info == nullptr || instruction.op == OpCode::DefineFunction || instruction.b != 0;
    std::string text = hasA || hasB ? std::to_string(instruction.a) : "";
    return hasB ? text + " " + std::to_string(instruction.b) : text;
}

void appendInstruction(std::string& text, const Program& program, const CompiledFunction& function, std::size_t index) {
    const Instruction& instruction = function.code[index];
    const OpcodeInfo* info = internal::opcodeInfo(instruction.op);
    const std::string number = std::to_string(static_cast<std::uint32_t>(instruction.op));
    const std::string note = info == nullptr ? "unknown opcode" : meaning(program, function, index, *info);
    const std::string operands = operandText(instruction, info);
    std::string line;
    appendPadded(line, std::to_string(index), kIndexWidth, true);
    line += "  line ";
    appendPadded(line, std::to_string(instruction.line), kLineWidth, false);
    appendPadded(line, info == nullptr ? "opcode " + number : std::string(info->name), kNameWidth, false);
    line += ' ';
    appendPadded(line, operands, kOperandWidth, false);
    if (!note.empty()) {
        line += " ; " + note;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + '\n';
}

std::string fastFormText(const CompiledFunction& function) {
    switch (function.fastKind) {
        case internal::FastKind::Expression:
            return "  fast: expression\n";
        case internal::FastKind::Guarded:
            return "  fast: guarded, error " + quoteText(function.fastErrorMessage.asString()) + "\n";
        case internal::FastKind::None:
            break;
    }
    return "";
}

void appendFunction(std::string& text, const Program& program, std::size_t index) {
    const CompiledFunction& function = program.functions[index];
    text += '\n' + functionTitle(program, index) + '\n' + fastFormText(function);
    for (std::size_t i = 0; i < function.code.size(); ++i) {
        appendInstruction(text, program, function, i);
    }
}

}  // namespace

std::string listProgram(const Program& program) {
    std::string text = "program " + quoteText(program.name) + ", " + std::to_string(program.constants.size()) +
                       " constants, " + std::to_string(program.functions.size()) + " functions\n";
    for (std::size_t i = 0; i < program.functions.size(); ++i) {
        appendFunction(text, program, i);
    }
    return text;
}

}  // namespace morvel::ruby::tools
