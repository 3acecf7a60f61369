#include "vm/engine/operations.h"

#include <array>
#include <cstddef>
#include <limits>
#include <optional>
#include <utility>

#include "value/operators.h"
#include "vm/engine/assignment.h"
#include "vm/engine/instruction_table.h"

namespace morvel::ruby::internal {

namespace {

std::uint8_t flagsFor(const Entry& first, const Entry& second) {
    return static_cast<std::uint8_t>(flagFor(first, kFirstDies) | flagFor(second, kSecondDies));
}

/// The comparison that replaces `op` with swapped operands: a > b is b < a. Other opcodes stand for themselves.
constexpr OpCode standIn(OpCode op) {
    return op == OpCode::Greater ? OpCode::Less : op == OpCode::GreaterEqual ? OpCode::LessEqual : op;
}

/// For each arithmetic or comparison opcode, the operation of the same name. A missing one is a compile-time error.
constexpr auto kOperationsByOpcode = [] {
    std::array<Operation, kOpcodes.size()> operations{};
    for (std::size_t i = 0; i != kOpcodes.size(); ++i) {
        const auto op = static_cast<OpCode>(i);
        if (classOf(op) == OpcodeClass::Arithmetic || classOf(op) == OpcodeClass::Comparison) {
            operations[i] = operationNamed(opcodeInfo(standIn(op))->name).value();
        }
    }
    return operations;
}();

/// The instruction for an arithmetic operator or a comparison on these operands, which it may take in reverse order.
/// Nothing when there is none for operands in these places; there always is one for two registers.
std::optional<EngineOp> instructionFor(OpCode op, const Entry& left, const Entry& right) {
    const bool isSwapped = standIn(op) != op;
    return findInstruction(
        kOperationsByOpcode[static_cast<std::size_t>(op)],
        {EngineOperand::Register, operandKind(isSwapped ? right : left), operandKind(isSwapped ? left : right)});
}

}  // namespace

void Operations::negate() {
    // The negation of a number constant is a constant: it cannot fail.
    if (m_stack.top().place == Place::Constant) {
        RubyValue negated;
        if (!internal::negate(m_code.constant(m_stack.top().index), negated)) {
            m_stack.pop();
            return m_stack.push({Place::Constant, m_code.addConstant(negated)});
        }
    }
    m_stack.makeRegister(m_stack.size() - 1);
    const Entry value = m_stack.pop();
    m_code.emit(EngineOp::Negate, flagFor(value, kFirstDies), m_stack.pushTemporary(), reg(value.index), 0);
}

void Operations::logicalNot() {
    m_stack.makeRegister(m_stack.size() - 1);
    const Entry value = m_stack.pop();
    m_code.emit(EngineOp::Not, flagFor(value, kFirstDies), m_stack.pushBoolean(), reg(value.index), 0);
}

void Operations::logical(EngineOp op) {
    const std::size_t right = m_stack.size() - 1;
    m_stack.makeRegister(right - 1);
    m_stack.makeRegister(right);
    const Entry rightEntry = m_stack.pop();
    const Entry leftEntry = m_stack.pop();
    const std::uint16_t target = m_stack.pushBoolean();
    if (!combine(op, leftEntry, rightEntry)) {
        m_code.emit(op, flagsFor(leftEntry, rightEntry), target, reg(leftEntry.index), reg(rightEntry.index));
    }
}

bool Operations::combine(EngineOp op, const Entry& left, const Entry& right) {
    EngineInstruction* last = m_code.lastInBlock();
    if (!left.isBoolean || right.place != Place::Temporary || last == nullptr || last->a != reg(right.index) ||
        !infoOf(last->op).writesRegister()) {
        return false;
    }
    const std::optional<EngineOp> combining = combiningForm(last->op);
    if (!combining) {
        return false;
    }
    last->op = *combining;
    last->n |= op == EngineOp::Or ? kCombinesByOr : std::uint8_t{0};
    last->a = reg(left.index);
    return true;
}

void Operations::binary(std::size_t index) {
    const OpCode op = m_facts.function.code[index].op;
    const std::uint8_t facts = m_facts.flags[index];
    const std::size_t right = m_stack.size() - 1;
    m_stack.makeNameable(right - 1);
    m_stack.makeNameable(right);
    if (m_stack[right - 1].place == Place::Constant && m_stack[right].place == Place::Constant) {
        m_stack.materialize(right - 1);
    }
    if (!instructionFor(op, m_stack[right - 1], m_stack[right])) {
        m_stack.makeRegister(right - 1);
        m_stack.makeRegister(right);
    }
    Entry rightEntry = m_stack.pop();
    Entry leftEntry = m_stack.pop();
    const EngineOp paired = *instructionFor(op, leftEntry, rightEntry);
    if (standIn(op) != op) {
        // Both operands are already evaluated, so swapping them does not show.
        std::swap(leftEntry, rightEntry);
    }
    const auto flags = static_cast<std::uint8_t>(flagsFor(leftEntry, rightEntry) | facts);
    // Within an append chain, the sum takes two stack entries.
    if ((facts & kEndsAppend) != 0) {
        m_stack.pop();
    }
    if ((facts & kBeginsAppend) != 0) {
        m_stack.pushTemporary();
    }
    const std::uint16_t target =
        classOf(op) == OpcodeClass::Comparison ? m_stack.pushBoolean() : m_stack.pushTemporary();
    m_code.emit(paired, flags, target, operand(leftEntry.index), operand(rightEntry.index));
}

void Operations::makeArray(std::size_t count) {
    const std::size_t first = m_stack.size() - count;
    m_stack.materializeFrom(first);
    m_stack.cutTo(first);
    const std::uint16_t target = m_stack.pushTemporary();
    if (count > std::numeric_limits<std::uint16_t>::max()) {
        m_code.fail();
        return;
    }
    m_code.emit(EngineOp::MakeArray, 0, target, target, static_cast<std::uint16_t>(count));
}

void Operations::getIndex() {
    const std::size_t index = m_stack.size() - 1;
    m_stack.makeNameable(index - 1);
    m_stack.makeNameable(index);
    if (m_stack[index - 1].place == Place::Constant) {
        m_stack.materialize(index - 1);
    }
    const Entry indexEntry = m_stack.pop();
    const Entry container = m_stack.pop();
    const EngineOp op = *findInstruction(Operation::GetIndex,
                                         {EngineOperand::Register, operandKind(container), operandKind(indexEntry)});
    const std::uint16_t target = m_stack.pushTemporary();
    m_code.emit(op, flagsFor(container, indexEntry), target, operand(container.index), operand(indexEntry.index));
}

std::size_t Operations::setIndex(std::size_t index, std::size_t blockEnd) {
    const std::size_t value = m_stack.size() - 1;
    const std::size_t container = value - 2;
    for (std::size_t depth = container; depth <= value; ++depth) {
        m_stack.makeNameable(depth);
    }
    // The container is changed in place only when it is stored back at once; otherwise a changed string must not show
    // in the variable.
    const bool inPlace = storesBack(index + 1, blockEnd, m_stack[container]) && !m_stack.isElsewhere(container);
    if (!inPlace) {
        m_stack.materialize(container);
    }
    const Entry valueEntry = m_stack.pop();
    const Entry indexEntry = m_stack.pop();
    const Entry containerEntry = m_stack.pop();
    const EngineOp op = *findInstruction(
        Operation::SetIndex, {operandKind(containerEntry), operandKind(indexEntry), operandKind(valueEntry)});
    const auto flags = static_cast<std::uint8_t>(flagsFor(indexEntry, valueEntry) | m_facts.flags[index]);
    m_code.emit(op, flags, operand(containerEntry.index), operand(indexEntry.index), operand(valueEntry.index));
    // A local that was read as about to be overwritten holds its new value by now, and stays.
    m_stack.push({containerEntry.place, containerEntry.index});
    return inPlace ? 2 : 1;
}

bool Operations::storesBack(std::size_t index, std::size_t blockEnd, const Entry& entry) const {
    if (index >= blockEnd || m_facts.function.code[index].op != OpCode::StoreName) {
        return false;
    }
    const std::uint32_t global = m_facts.globalSlots[index];
    if (global != kNotGlobal) {
        return entry == Entry{Place::Global, global};
    }
    return entry == Entry{Place::Local, static_cast<std::uint32_t>(localSlotAt(m_facts.function, index))};
}

}  // namespace morvel::ruby::internal
