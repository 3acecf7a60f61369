#include "vm/engine/conditional_jumps.h"

#include <optional>

#include "vm/engine/instruction_table.h"

namespace morvel::ruby::internal {

void ConditionalJumps::conditionalJump(std::size_t target, bool whenTrue) {
    const Entry condition = m_stack.pop();
    if (condition.place == Place::Constant) {
        const bool jumps = m_code.constant(condition.index).isTruthy() == whenTrue;
        m_stack.materializeAll();
        if (jumps) {
            m_code.emitJump(EngineOp::Jump, 0, 0, target);
        }
        return;
    }
    if (m_stack.empty() && fuseJump(condition, target, whenTrue)) {
        return;
    }
    m_stack.push(condition);
    m_stack.makeRegister(m_stack.size() - 1);
    const Entry inRegister = m_stack.pop();
    m_stack.materializeAll();
    m_code.emitJump(whenTrue ? EngineOp::JumpIfTrue : EngineOp::JumpIfFalse, flagFor(inRegister, kFirstDies),
                    reg(inRegister.index), target);
}

bool ConditionalJumps::fuseJump(const Entry& condition, std::size_t target, bool whenTrue) {
    const EngineInstruction* last = m_code.lastInBlock();
    if (condition.place != Place::Temporary || last == nullptr || last->a != reg(condition.index) ||
        !infoOf(last->op).writesRegister()) {
        return false;
    }
    const EngineInstruction test = *last;
    if (test.op == EngineOp::Not) {
        m_code.dropLast();
        const bool isTemporary = (test.n & kFirstDies) != 0;
        if (!isTemporary || !fuseTest(test.b, target, !whenTrue)) {
            m_code.emitJump(whenTrue ? EngineOp::JumpIfFalse : EngineOp::JumpIfTrue,
                            isTemporary ? kFirstDies : std::uint8_t{0}, test.b, target);
        }
        return true;
    }
    return fuseTest(reg(condition.index), target, whenTrue);
}

bool ConditionalJumps::fuseTest(std::uint16_t result, std::size_t target, bool whenTrue) {
    const EngineInstruction* last = m_code.lastInBlock();
    if (!m_code.isNear(target) || last == nullptr || last->a != result) {
        return false;
    }
    const EngineInstruction test = *last;
    const std::optional<EngineOp> jump = testingJump(test.op, whenTrue);
    if (!jump) {
        return false;
    }
    m_code.dropLast();
    m_code.emitShortJump(*jump, test.n, test.b, test.c, target);
    return true;
}

}  // namespace morvel::ruby::internal
