#include "vm/engine/translator.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "vm/engine/call_sites.h"
#include "vm/engine/code_builder.h"
#include "vm/engine/conditional_jumps.h"
#include "vm/engine/flow.h"
#include "vm/engine/function_facts.h"
#include "vm/engine/list_collector.h"
#include "vm/engine/long_lists.h"
#include "vm/engine/operations.h"
#include "vm/engine/symbolic_stack.h"
#include "vm/engine/variables.h"
#include "vm/globals.h"

namespace morvel::ruby::internal {

namespace {

std::uint32_t registerCount(const FunctionFacts& facts, const Code& code, std::size_t deepest) {
    // Surplus arguments of duplicate parameter names arrive behind the locals, in the place of temporaries.
    const std::size_t surplus = code.parameterCount - std::min(code.parameterCount, code.localCount);
    // The sum of an append chain takes two temporaries.
    const std::size_t temporaries = std::max(deepest, surplus) + (facts.hasAppendChains ? 2 : 1);
    return code.firstTemporary + static_cast<std::uint32_t>(temporaries);
}

std::unique_ptr<Code> layOutFrame(const FunctionFacts& facts) {
    auto code = std::make_unique<Code>();
    code->program = &facts.program;
    code->function = &facts.function;
    code->parameterCount = static_cast<std::uint32_t>(facts.function.params.size());
    code->localCount = static_cast<std::uint32_t>(facts.function.localNames.size());
    code->keepsLastValue = facts.keepsLastValue;
    code->firstTemporary = code->localCount + (code->keepsLastValue ? 1U : 0U);
    code->registerCount = registerCount(facts, *code, static_cast<std::size_t>(facts.flow.deepest));
    code->isTopLevel = facts.isMain;
    code->isProtectable = facts.function.fastKind != FastKind::Guarded;
    return code;
}

/// Walks the stack code once; each instruction is translated by the class responsible for its kind.
class Translator {
public:
    Translator(const FunctionFacts& facts, const std::vector<LongListStep>& longLists, GlobalNames& names)
        : m_facts(facts),
          m_code(layOutFrame(facts), facts.function.code.size()),
          m_stack(m_code, facts.function.code.size()),
          m_variables(facts, names, m_code, m_stack),
          m_operations(facts, m_code, m_stack),
          m_callSites(facts, names.table(), m_code, m_stack),
          m_lists(facts.function, longLists, m_code, m_stack),
          m_conditionalJumps(m_code, m_stack) {}

    /// False when the function has something that register code cannot express.
    [[nodiscard]] bool translate() {
        for (std::size_t block = 0; block < m_facts.flow.blocks.size(); ++block) {
            translateBlock(block);
            if (m_code.hasFailed()) {
                return false;
            }
        }
        m_code.beginBlock(m_facts.function.code.size());
        m_code.markStart(m_facts.function.code.size());
        translateEnd();
        translateStart();
        Code& code = m_code.code();
        if (m_lists.deepest() > 0) {
            code.registerCount = registerCount(m_facts, code, m_lists.deepest());
        }
        code.registerBytes = code.registerCount * static_cast<std::uint32_t>(sizeof(RubyValue));
        return code.registerCount <= kLargestOperand;
    }

    /// The translated code.
    [[nodiscard]] std::unique_ptr<Code> finish() { return m_code.finish(); }

private:
    void translateBlock(std::size_t number) {
        const Block& block = m_facts.flow.blocks[number];
        m_code.beginBlock(block.begin);
        m_variables.enterBlock(number);
        m_stack.beginBlock(static_cast<std::size_t>(m_facts.flow.depths[block.begin]));
        translateRange(block.begin, block.end, false);
        if (!endsBlock(m_facts.function.code[block.end - 1].op)) {
            m_stack.materializeAll();
        }
    }

    void translateRange(std::size_t index, std::size_t end, bool isRepeated) {
        while (index < end && !m_code.hasFailed()) {
            if (!isRepeated) {
                m_code.markStart(index);
            }
            m_code.setLine(m_facts.function.code[index].line);
            index += m_lists.translate(index) ? 1 : translateInstruction(index, end);
        }
    }

    /// Translates the instruction at `index`, or a short sequence that starts there; returns the number of
    /// instructions.
    std::size_t translateInstruction(std::size_t index, std::size_t blockEnd) {
        const Instruction& instruction = m_facts.function.code[index];
        const auto a = static_cast<std::size_t>(instruction.a);
        switch (classOf(instruction.op)) {
            case OpcodeClass::Constant:
                m_stack.push({Place::Constant, m_code.addConstant(m_facts.program.constants[a])});
                return 1;
            case OpcodeClass::Load:
                m_variables.loadName(index);
                return 1;
            case OpcodeClass::Store:
                m_variables.storeName(index);
                return 1;
            case OpcodeClass::Pop:
                if (m_facts.endingPops[index]) {
                    returnEntry();
                } else {
                    m_variables.popEntry(m_facts.livePops[index]);
                }
                return 1;
            case OpcodeClass::Arithmetic:
            case OpcodeClass::Comparison:
                m_operations.binary(index);
                return 1;
            case OpcodeClass::Unary:
                instruction.op == OpCode::Negate ? m_operations.negate() : m_operations.logicalNot();
                return 1;
            case OpcodeClass::Logic:
                m_operations.logical(instruction.op == OpCode::And ? EngineOp::And : EngineOp::Or);
                return 1;
            case OpcodeClass::Jump:
                jump(index);
                return 1;
            case OpcodeClass::ConditionalJump:
                m_conditionalJumps.conditionalJump(a, false);
                return 1;
            case OpcodeClass::Call:
                return m_callSites.call(index, blockEnd);
            case OpcodeClass::Definition:
                m_variables.defineFunction(index);
                return 1;
            case OpcodeClass::Return:
                returnEntry();
                return 1;
            case OpcodeClass::Array:
                m_operations.makeArray(a);
                return 1;
            case OpcodeClass::GetElement:
                m_operations.getIndex();
                return 1;
            case OpcodeClass::SetElement:
                return m_operations.setIndex(index, blockEnd);
            case OpcodeClass::Unknown:
                break;
        }
        m_code.fail();
        return 1;
    }

    void jump(std::size_t index) {
        const auto target = static_cast<std::size_t>(m_facts.function.code[index].a);
        m_stack.materializeAll();
        const std::size_t conditionEnd = m_stack.empty() ? m_facts.loopConditionEnd(index, target) : 0;
        if (conditionEnd != 0) {
            return repeatCondition(target, conditionEnd);
        }
        m_code.emitJump(EngineOp::Jump, 0, 0, target);
    }

    /// A loop repeats its condition at its end, which saves the jump back to the test at its start.
    void repeatCondition(std::size_t begin, std::size_t end) {
        translateRange(begin, end, true);
        if (!m_code.hasFailed()) {
            m_conditionalJumps.conditionalJump(end + 1, true);
        }
    }

    void returnEntry() {
        if (m_stack.empty()) {
            return m_code.emit(EngineOp::ReturnNil, returnFlags(), 0, 0, 0);
        }
        const Entry value = m_stack.pop();
        switch (value.place) {
            case Place::Constant:
                return m_code.emitWide(EngineOp::ReturnConstant, returnFlags(), 0, wideOperand(value.index));
            case Place::Global:
                return m_code.emitWide(EngineOp::ReturnGlobal, returnFlags(), 0, wideOperand(value.index));
            case Place::Local:
            case Place::Temporary:
                return m_code.emit(EngineOp::ReturnLocal, returnFlags(), reg(value.index), 0, 0);
        }
    }

    [[nodiscard]] std::uint8_t returnFlags() const {
        return m_code.code().firstTemporary > kRegistersAtOnce ? kReleasesMany : std::uint8_t{0};
    }

    void translateEnd() {
        Code& code = m_code.code();
        m_code.setLine(0);
        if (code.keepsLastValue) {
            m_code.emit(EngineOp::ReturnLocal, returnFlags(), reg(m_code.lastValue()), 0, 0);
        } else {
            m_code.emit(EngineOp::ReturnNil, returnFlags(), 0, 0, 0);
        }
    }

    /// Prepares the registers of a new frame, which hold only the arguments.
    void translateStart() {
        const Code& code = m_code.code();
        for (std::uint32_t surplus = code.localCount; surplus < code.parameterCount; ++surplus) {
            m_code.emitAtStart({EngineOp::Drop, 0, reg(surplus), 0, 0});
        }
        std::vector<bool> isMarked(code.localCount, false);
        for (const LocalFallback& fallback : code.fallbacks) {
            if (!isMarked[fallback.local / 2]) {
                isMarked[fallback.local / 2] = true;
                m_code.emitConstantAtStart(fallback.local, makeUndefined());
            }
        }
        if (code.keepsLastValue) {
            m_code.emitConstantAtStart(reg(m_code.lastValue()), RubyValue());
        }
    }

    const FunctionFacts& m_facts;
    CodeBuilder m_code;
    SymbolicStack m_stack;
    Variables m_variables;
    Operations m_operations;
    CallSites m_callSites;
    ListCollector m_lists;
    ConditionalJumps m_conditionalJumps;
};

}  // namespace

std::unique_ptr<Code> translateFunction(const Program& program, std::int32_t functionIndex, GlobalNames& names) {
    const CompiledFunction& function = program.functions[static_cast<std::size_t>(functionIndex)];
    std::optional<Flow> flow = analyzeFlow(program, function);
    if (!flow || function.localNames.size() > kLargestOperand) {
        return nullptr;
    }
    const FunctionFacts facts = findFacts(program, functionIndex, *std::move(flow), names);
    // Nested lists may run out of registers with parts of the usual length; parts of one value are tried then.
    for (const std::uint32_t part : {kLongestPart, 1U}) {
        const std::vector<LongListStep> longLists = findLongLists(function, facts.flow, part);
        Translator translator(facts, longLists, names);
        if (translator.translate()) {
            return translator.finish();
        }
    }
    return nullptr;
}

}  // namespace morvel::ruby::internal
