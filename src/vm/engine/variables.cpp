#include "vm/engine/variables.h"

#include <string>
#include <utility>

#include "vm/engine/instruction_table.h"

namespace morvel::ruby::internal {

namespace {

/// Turns an addition whose target is its left operand into an Increase, which has two operands.
void shortenIncrease(EngineInstruction& addition) {
    if ((addition.op == EngineOp::AddRR || addition.op == EngineOp::AddRK) && addition.a == addition.b) {
        addition.op = addition.op == EngineOp::AddRR ? EngineOp::IncreaseR : EngineOp::IncreaseK;
        addition.b = std::exchange(addition.c, 0);
    }
}

}  // namespace

void Variables::loadName(std::size_t index) {
    const std::uint32_t global = m_facts.globalSlots[index];
    if (global != kNotGlobal && global > kLargestOperand) {
        // No operand names it.
        m_code.emitWide(EngineOp::LoadFarGlobal, 0, m_stack.pushTemporary(), global);
        return;
    }
    if (global != kNotGlobal) {
        if (!m_assignment.isGlobalDefined(global)) {
            m_code.emitWide(EngineOp::CheckGlobal, 0, 0, wideOperand(global));
            m_assignment.noteGlobal(global);
        }
        return m_stack.push({Place::Global, global});
    }
    const std::int32_t local = localSlotAt(m_facts.function, index);
    const auto localRegister = static_cast<std::uint32_t>(local);
    if (m_assignment.isLocalAssigned(local)) {
        Entry entry{Place::Local, localRegister};
        // An entry below that stands for the same local would find it gone.
        entry.dies = m_facts.lastReads[index] && !m_stack.holds(entry);
        return m_stack.push(entry);
    }
    Code& code = m_code.code();
    const std::size_t fallback = code.fallbacks.size();
    code.fallbacks.push_back({reg(localRegister), m_names.slotOf(m_facts.function.code[index].a)});
    m_code.emitWide(EngineOp::LoadLocalOrGlobal, 0, m_stack.pushTemporary(), fallback);
}

void Variables::storeName(std::size_t index) {
    const std::uint32_t global = m_facts.globalSlots[index];
    if (global != kNotGlobal) {
        storeGlobal(global);
        m_assignment.noteGlobal(global);
        return;
    }
    const std::int32_t local = localSlotAt(m_facts.function, index);
    const Entry value = m_stack.pop();
    const Entry target{Place::Local, static_cast<std::uint32_t>(local)};
    if (value != target) {
        m_stack.detach(target);
        moveInto(target.index, value);
    }
    m_assignment.noteLocal(local);
    m_stack.push(target);
}

void Variables::popEntry(bool isLive) {
    const Entry value = m_stack.pop();
    if (isLive) {
        moveInto(m_code.lastValue(), value);
    } else if (value.place == Place::Temporary) {
        m_code.emit(EngineOp::Drop, 0, reg(value.index), 0, 0);
    }
}

void Variables::defineFunction(std::size_t index) {
    const Instruction& instruction = m_facts.function.code[index];
    const std::uint32_t slot = m_facts.globalSlots[index];
    m_stack.detach({Place::Global, slot});
    Code& code = m_code.code();
    const std::size_t definition = code.definitions.size();
    code.definitions.push_back({getStringConstantPtr(m_facts.program, instruction.a), instruction.b, slot});
    m_code.emitWide(EngineOp::DefineFunction, 0, 0, definition);
    m_assignment.noteGlobal(slot);
}

void Variables::moveInto(std::uint32_t target, const Entry& value) {
    EngineInstruction* last = m_code.lastInBlock();
    if (value.place == Place::Temporary && last != nullptr) {
        if (infoOf(last->op).writesRegister() && last->a == reg(value.index)) {
            last->a = reg(target);
            shortenIncrease(*last);
            return;
        }
        if (infoOf(last->op).givesCallResult() && last->b == reg(value.index)) {
            last->b = reg(target);
            return;
        }
    }
    loadInto(reg(target), value);
}

void Variables::loadInto(std::uint16_t target, const Entry& entry) {
    switch (entry.place) {
        case Place::Local:
            return m_code.emit(EngineOp::CopyLocal, 0, target, reg(entry.index), 0);
        case Place::Temporary:
            return m_code.emit(EngineOp::MoveTemporary, 0, target, reg(entry.index), 0);
        case Place::Constant:
            return m_code.emitWide(EngineOp::LoadConstant, 0, target, wideOperand(entry.index));
        case Place::Global:
            return m_code.emitWide(EngineOp::LoadGlobal, 0, target, wideOperand(entry.index));
    }
}

void Variables::storeGlobal(std::uint32_t slot) {
    if (slot > kLargestOperand) {
        const std::size_t top = m_stack.size() - 1;
        m_stack.materialize(top);
        m_code.emitWide(EngineOp::StoreFarGlobal, 0, reg(m_stack[top].index), slot);
        return;
    }
    const Entry value = m_stack.pop();
    const Entry target{Place::Global, slot};
    if (value != target) {
        m_stack.detach(target);
        EngineInstruction* last = m_code.lastInBlock();
        const bool isFresh = value.place == Place::Temporary && last != nullptr && last->a == reg(value.index);
        const auto intoGlobal = isFresh ? storingForm(last->op) : std::nullopt;
        if (intoGlobal) {
            last->op = *intoGlobal;
            last->a = operand(slot);
        } else {
            m_stack.push(value);
            m_stack.materialize(m_stack.size() - 1);
            m_code.emitWide(EngineOp::StoreGlobalMove, 0, reg(m_stack.pop().index), wideOperand(slot));
        }
    }
    m_stack.push(target);
}

}  // namespace morvel::ruby::internal
