#include "listing.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "compiler/program.h"
#include "morvel/ruby/value.h"

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

void appendPadded(std::string& text, std::string_view cell, std::size_t width, bool toTheRight) {
    const std::size_t gap = cell.size() < width ? width - cell.size() : 0;
    if (toTheRight) {
        text.append(gap, ' ');
    }
    text += cell;
    if (!toTheRight) {
        text.append(gap, ' ');
    }
}

// The shortest digits that read back as the same number; "inf" and "nan" need no more.
std::string floatText(double number) {
    if (!std::isfinite(number)) {
        return RubyValue(number).toString();
    }
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
    std::string text(buffer.data(), result.ptr);
    // Floats always show that they are floats.
    return text.find_first_of(".e") == std::string::npos ? text + ".0" : text;
}

std::string constantText(const RubyValue& constant) {
    if (constant.isString()) {
        return quoteText(constant.asString());
    }
    return constant.isFloat() ? floatText(constant.asFloat()) : constant.toString();
}

bool isIndex(std::int32_t index, std::size_t size) { return index >= 0 && static_cast<std::size_t>(index) < size; }

std::string constantMeaning(const Program& program, std::int32_t index) {
    if (!isIndex(index, program.constants.size())) {
        return "invalid constant";
    }
    return constantText(program.constants[static_cast<std::size_t>(index)]);
}

// A name that could stand in a source text is shown bare.
bool isPlainName(std::string_view text) {
    constexpr std::string_view kNameBytes = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_0123456789?!";
    return !text.empty() && text.find_first_not_of(kNameBytes) == std::string_view::npos &&
           (text[0] < '0' || text[0] > '9') && text[0] != '?' && text[0] != '!';
}

std::string nameText(const std::string& name) { return isPlainName(name) ? name : quoteText(name); }

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

// Operands that the opcode has, and any other that is not 0.
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
    text += "\nfunction " + std::to_string(index) + " " +
            (index == 0 && function.name == "<main>" ? function.name : nameText(function.name)) + "(";
    const char* separator = "";
    for (const std::string& param : function.params) {
        text += separator + nameText(param);
        separator = ", ";
    }
    text += ")\n" + fastFormText(function);
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

std::string quoteText(const std::string& text) {
    constexpr std::string_view kHexDigits = "0123456789abcdef";
    std::string quoted = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (c == '\n') {
            quoted += "\\n";
        } else if (c == '\t') {
            quoted += "\\t";
        } else if (c == '\r') {
            quoted += "\\r";
        } else if (byte < 0x20 || byte > 0x7e) {
            quoted += "\\x";
            quoted += kHexDigits[byte >> 4];
            quoted += kHexDigits[byte & 0xf];
        } else {
            quoted += c;
        }
    }
    return quoted + '"';
}

}  // namespace morvel::ruby::tools
