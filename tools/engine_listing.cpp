#include "engine_listing.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "compiler/program.h"
#include "listing.h"
#include "listing_text.h"
#include "morvel/ruby/vm.h"
#include "vm/engine/translator.h"
#include "vm/impl.h"

namespace morvel::ruby::tools {

namespace {

using internal::Code;
using internal::EngineInstruction;
using internal::EngineOp;
using internal::EngineOperand;
using internal::EngineOpInfo;
using internal::GlobalTable;
using internal::Operation;
using internal::Program;

constexpr std::size_t kPositionWidth = 4;
constexpr std::size_t kLineWidth = 6;
constexpr std::size_t kNameWidth = 20;
// Bounds the listing even if many instructions refer to one long string.
constexpr std::size_t kLongestText = 60;

/// Renders the beginning of a string, followed by the total length if it was cut.
std::string shortened(std::string_view text, std::string (*render)(const std::string&)) {
    const std::string shown = render(std::string(text.substr(0, kLongestText)));
    return text.size() <= kLongestText ? shown : shown + "... " + std::to_string(text.size()) + " bytes";
}

std::string shortText(const RubyValue& constant) {
    if (constant.type == internal::kUndefinedType) {
        return "unassigned";
    }
    return constant.isString() ? shortened(constant.asString(), quoteText) : constantText(constant);
}

std::string shortName(std::string_view name) { return shortened(name, nameText); }

/// Renders the instructions of one function.
class CodeListing {
public:
    CodeListing(const Code& code, const GlobalTable& globals, std::string& text)
        : m_code(code), m_globals(globals), m_text(text) {}

    void append() {
        appendFrame();
        auto start = m_code.blocks.starts.begin();
        for (std::size_t i = 0; i < m_code.instructions.size(); ++i) {
            const bool startsBlock = start != m_code.blocks.starts.end() && *start == i;
            start += startsBlock ? 1 : 0;
            const bool isNewLine = i == 0 || m_code.lines[i] != m_code.lines[i - 1];
            appendInstruction(i, startsBlock, isNewLine);
        }
    }

private:
    void appendFrame() {
        std::string names;
        for (const std::string_view name : m_code.function->localNames) {
            names += (names.empty() ? "" : ", ") + shortName(name);
        }
        if (!names.empty()) {
            m_text += "  locals: " + names + '\n';
        }
        m_text += "  temporaries: " + std::to_string(m_code.registerCount - m_code.firstTemporary) + '\n';
        std::string constants;
        for (const RubyValue& constant : m_code.constants) {
            constants += (constants.empty() ? "" : ", ") + shortText(constant);
        }
        if (!constants.empty()) {
            m_text += "  constants: " + constants + '\n';
        }
    }

    void appendInstruction(std::size_t position, bool startsBlock, bool isNewLine) {
        const EngineInstruction& instruction = m_code.instructions[position];
        std::string row = startsBlock ? "> " : "  ";
        appendPadded(row, std::to_string(position), kPositionWidth, true);
        row += isNewLine ? "  line " : "       ";
        appendPadded(row, isNewLine ? std::to_string(m_code.lines[position]) : "", kLineWidth, false);
        appendPadded(row, nameOf(instruction.op), kNameWidth, false);
        const std::string operands = operandsText(position);
        row += operands.empty() ? "" : ' ' + operands;
        const std::string notes = notesOf(instruction);
        row += notes.empty() ? "" : "  ; " + notes;
        row.erase(row.find_last_not_of(' ') + 1);
        m_text += row + '\n';
    }

    /// The name of an instruction; for a fused pair, that of its first half and a plus sign.
    static std::string nameOf(EngineOp op) {
        const std::optional<internal::FusedPair> pair = internal::pairOf(op);
        const EngineOp shown = pair ? pair->first : op;
        return std::string(internal::kEngineOpNames[static_cast<std::size_t>(shown)]) + (pair ? "+" : "");
    }

    [[nodiscard]] std::string operandsText(std::size_t position) const {
        const EngineInstruction& instruction = m_code.instructions[position];
        const EngineOpInfo& info = infoOf(instruction.op);
        const std::array<std::uint16_t, 3> fields{instruction.a, instruction.b, instruction.c};
        std::string text;
        std::uint8_t deathFlag = internal::kFirstDies;
        for (std::size_t i = 0; i < fields.size(); ++i) {
            const char use = info.does().uses[i];
            bool dies = use == 'm';
            if (use == 'd' || use == 'u') {
                dies = (instruction.n & deathFlag) != 0;
                deathFlag = internal::kSecondDies;
            }
            const std::string operand = operandText(position, info.operands[i], fields[i]);
            if (!operand.empty()) {
                text += (text.empty() ? "" : ", ") + (dies ? '<' + operand + '>' : operand);
            }
        }
        return text;
    }

    [[nodiscard]] std::string operandText(std::size_t position, EngineOperand kind, std::uint16_t field) const {
        const EngineInstruction& instruction = m_code.instructions[position];
        const auto wide = static_cast<std::size_t>(instruction.wide());
        switch (kind) {
            case EngineOperand::None:
                return "";
            case EngineOperand::Register:
                return registerText(field / 2U);
            case EngineOperand::Constant:
                return shortText(m_code.constants.at(field / 2U));
            case EngineOperand::WideConstant:
                return shortText(m_code.constants.at(wide / 2));
            case EngineOperand::Global:
                return globalText(field / 2U);
            case EngineOperand::WideGlobal:
                return globalText(wide / 2);
            case EngineOperand::Count:
                return std::to_string(field);
            case EngineOperand::Distance:
            case EngineOperand::WideDistance:
                return "-> " + std::to_string(internal::jumpTarget(m_code.instructions, position).value());
            case EngineOperand::WideNumber:
                return numberText(instruction.op, wide);
        }
        return "";
    }

    [[nodiscard]] std::string registerText(std::size_t index) const {
        if (index < m_code.localCount) {
            return shortName(m_code.function->localNames[index]);
        }
        if (index < m_code.firstTemporary) {
            return "%last";
        }
        return '%' + std::to_string(index - m_code.firstTemporary);
    }

    [[nodiscard]] std::string globalText(std::size_t slot) const { return '$' + shortName(m_globals.nameOf(slot)); }

    /// The meaning of a number that is an index into a side table; otherwise the number itself.
    [[nodiscard]] std::string numberText(EngineOp op, std::size_t number) const {
        if (infoOf(op).operation == Operation::LoadLocalOrGlobal) {
            const internal::LocalFallback& fallback = m_code.fallbacks.at(number);
            return registerText(fallback.local / 2U) + " or " + globalText(fallback.globalSlot);
        }
        if (infoOf(op).operation == Operation::DefineFunction) {
            const internal::Definition& definition = m_code.definitions.at(number);
            return globalText(definition.globalSlot) + ", function " + std::to_string(definition.functionIndex);
        }
        return std::to_string(number);
    }

    /// The meaning of the field `n`, apart from which operands die, and the fields that should be 0 but are not.
    [[nodiscard]] std::string notesOf(const EngineInstruction& instruction) const {
        std::string notes = meaningOfN(instruction);
        for (const auto& [name, value] : unusedFields(instruction)) {
            if (value != 0) {
                notes += (notes.empty() ? "" : ", ") + std::string("unused ") + name + " = " + std::to_string(value);
            }
        }
        return notes;
    }

    using Field = std::pair<char, unsigned>;

    /// The fields that have no meaning for the instruction; of `n`, the flags without a meaning.
    static std::array<Field, 4> unusedFields(const EngineInstruction& instruction) {
        const EngineOpInfo& info = infoOf(instruction.op);
        const auto isUnused = [&info](std::size_t operand) { return info.operands[operand] == EngineOperand::None; };
        const bool isWide = std::any_of(info.operands.begin(), info.operands.end(), isWideKind);
        return {Field{'n', instruction.n & ~flagsOf(info)}, Field{'a', isUnused(0) ? instruction.a : 0U},
                Field{'b', isUnused(1) ? instruction.b : 0U}, Field{'c', isUnused(2) && !isWide ? instruction.c : 0U}};
    }

    /// The operand takes the place of b and c.
    static bool isWideKind(EngineOperand kind) {
        return kind == EngineOperand::WideConstant || kind == EngineOperand::WideGlobal ||
               kind == EngineOperand::WideDistance || kind == EngineOperand::WideNumber;
    }

    static bool isReturn(const EngineOpInfo& info) {
        return info.has(internal::kNeverFallsThrough) && !info.has(internal::kMayJump);
    }

    /// The bits of the field `n` that have a meaning for an instruction.
    static unsigned flagsOf(const EngineOpInfo& info) {
        if (info.does().uses[0] == 'p' || info.has(internal::kMayCall)) {
            return std::numeric_limits<std::uint8_t>::max();
        }
        unsigned flags = 0;
        for (const char use : info.does().uses) {
            if (use == 'd' || use == 'u') {
                flags |= flags == 0 ? internal::kFirstDies : internal::kSecondDies;
            }
        }
        if (info.does().uses[0] == 'b') {
            return flags | internal::kCombinesByOr | internal::kJumpsIfFalse | internal::kJumpsIfTrue;
        }
        if (isReturn(info)) {
            return flags | internal::kReleasesMany;
        }
        if (info.operation == Operation::Add) {
            flags |= internal::kBeginsAppend | internal::kEndsAppend;
        }
        const bool changesText = info.operation == Operation::Add || info.operation == Operation::Increase ||
                                 info.operation == Operation::SetIndex;
        return changesText ? flags | internal::kLastValueDies : flags;
    }

    [[nodiscard]] std::string meaningOfN(const EngineInstruction& instruction) const {
        const EngineOpInfo& info = infoOf(instruction.op);
        if (info.does().uses[0] == 'p') {
            return instruction.n == 0 ? "" : "takes " + rangeText(instruction.a / 2U + 1, instruction.n);
        }
        if (info.has(internal::kMayCall)) {
            return "window %" + std::to_string(instruction.n);
        }
        if (isReturn(info)) {
            return (instruction.n & internal::kReleasesMany) != 0 ? "releases many" : "";
        }
        return info.does().uses[0] == 'b'
                   ? flagTexts(instruction.n, {{{internal::kCombinesByOr, "by or"},
                                                {internal::kJumpsIfFalse, "makes the jump"},
                                                {internal::kJumpsIfTrue, "makes the jump"}}})
                   : flagTexts(instruction.n, {{{internal::kBeginsAppend, "begins an append"},
                                                {internal::kEndsAppend, "ends an append"},
                                                {internal::kLastValueDies, "the last value dies"}}});
    }

    using FlagText = std::pair<std::uint8_t, const char*>;

    /// The texts for the flags that are set.
    static std::string flagTexts(std::uint8_t flags, const std::array<FlagText, 3>& texts) {
        std::string notes;
        for (const auto& [flag, text] : texts) {
            if ((flags & flag) != 0) {
                notes += (notes.empty() ? "" : ", ") + std::string(text);
            }
        }
        return notes;
    }

    [[nodiscard]] std::string rangeText(std::size_t first, std::size_t count) const {
        const std::string begin = registerText(first);
        return count == 1 ? begin : begin + " to " + registerText(first + count - 1);
    }

    const Code& m_code;
    const GlobalTable& m_globals;
    std::string& m_text;
};

/// Defines as nil the globals that a program's top-level code assigns.
void defineGlobals(const Program& program, RubyVM::Impl& vm) {
    for (const internal::Instruction& instruction : program.functions[0].code) {
        const bool defines =
            instruction.op == internal::OpCode::StoreName || instruction.op == internal::OpCode::DefineFunction;
        const std::string* name = defines ? internal::getStringConstantPtr(program, instruction.a) : nullptr;
        if (name != nullptr) {
            vm.setGlobal(*name, RubyValue());
        }
    }
}

}  // namespace

std::string listEngineCode(const Program& program) {
    RubyVM vm;
    RubyVM::Impl& impl = RubyVM::Impl::of(vm);
    internal::GlobalNames names(program, impl.globals);
    std::string text = "engine code of program " + quoteText(program.name) + ", " +
                       std::to_string(program.functions.size()) + " functions\n";
    for (std::size_t i = 0; i < program.functions.size(); ++i) {
        text += '\n' + functionTitle(program, i) + '\n';
        const std::unique_ptr<Code> code = translateFunction(program, static_cast<std::int32_t>(i), names);
        if (code != nullptr) {
            CodeListing(*code, impl.globals, text).append();
        } else {
            text += "  run by the baseline interpreter\n";
        }
        if (i == 0) {
            defineGlobals(program, impl);
        }
    }
    return text;
}

}  // namespace morvel::ruby::tools
