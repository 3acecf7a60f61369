#include "vm/engine/call_sites.h"

#include <cstdint>

namespace morvel::ruby::internal {

std::size_t CallSites::call(std::size_t index, std::size_t blockEnd) {
    // Each has to fit an instruction's `n`, which is one byte.
    constexpr std::size_t kMostArguments = 255;
    constexpr std::size_t kDeepestWindow = 255;
    const auto count = static_cast<std::size_t>(m_facts.function.code[index].a);
    if (count > kMostArguments) {
        m_code.fail();
        return 1;
    }
    if (index == m_facts.guard.call) {
        m_code.setLine(0);
    }
    const std::size_t callee = m_stack.size() - count - 1;
    if (callee <= kDeepestWindow) {
        const Shortcut shortcut = shortcutOf(m_stack[callee]);
        if (shortcut == Shortcut::Len && count == 1) {
            callLen(callee);
            return 1;
        }
        const bool dropsResult =
            index + 1 < blockEnd && m_facts.function.code[index + 1].op == OpCode::Pop && !m_facts.livePops[index + 1];
        if (shortcut == Shortcut::ArrayPush && count == 2 && dropsResult) {
            callArrayPush(callee);
            return 2;
        }
    }
    callGeneral(callee, (m_facts.flags[index] & kLastValueDies) != 0);
    return 1;
}

Shortcut CallSites::shortcutOf(const Entry& callee) const {
    if (callee.place != Place::Global || !m_globals.isDefined(callee.index) ||
        !m_globals.value(callee.index).isFunction()) {
        return Shortcut::None;
    }
    const auto* handle = static_cast<const RubyFunctionHandle*>(m_globals.value(callee.index).data.box);
    return FunctionInternals::of(*handle).shortcut;
}

void CallSites::callLen(std::size_t callee) {
    m_stack.makeRegister(callee + 1);
    const Entry argument = m_stack.pop();
    const Entry function = m_stack.pop();
    m_stack.detachGlobals();
    const std::uint16_t target = m_stack.pushTemporary();
    m_code.emit(EngineOp::Len, static_cast<std::uint8_t>(callee), target, reg(argument.index), operand(function.index));
}

void CallSites::callArrayPush(std::size_t callee) {
    m_stack.makeRegister(callee + 1);
    m_stack.makeRegister(callee + 2);
    const Entry value = m_stack.pop();
    const Entry array = m_stack.pop();
    const Entry function = m_stack.pop();
    m_stack.detachGlobals();
    m_code.emit(EngineOp::ArrayPush, static_cast<std::uint8_t>(callee), reg(value.index), reg(array.index),
                operand(function.index));
    m_code.emit(EngineOp::Drop, 0, reg(m_code.temporary(callee)), 0, 0);
}

void CallSites::callGeneral(std::size_t callee, bool lastValueDies) {
    const auto count = static_cast<std::uint8_t>(m_stack.size() - callee - 1);
    if (lastValueDies && m_stack.hasDying(callee + 1)) {
        // The last value may be the one in a dying local; without it, the callee can become the only holder.
        m_code.emit(EngineOp::Drop, 0, reg(m_code.lastValue()), 0, 0);
    }
    m_stack.materializeFrom(callee + 1);
    const bool byGlobal = m_stack[callee].place == Place::Global;
    if (!byGlobal) {
        m_stack.materialize(callee);
    }
    const Entry calleeEntry = m_stack[callee];
    m_stack.cutTo(callee);
    m_stack.detachGlobals();
    const std::uint16_t window = m_stack.pushTemporary();
    if (byGlobal) {
        m_code.emit(EngineOp::CallGlobal, count, window, window, operand(calleeEntry.index));
    } else {
        m_code.emit(EngineOp::CallRegister, count, window, window, 0);
    }
}

}  // namespace morvel::ruby::internal
