#include "vm/engine/list_collector.h"

#include <algorithm>
#include <cstdint>

namespace morvel::ruby::internal {

bool ListCollector::takeSteps(std::size_t index) {
    for (; m_next < m_steps.size() && m_steps[m_next].instruction == index; ++m_next) {
        const LongListStep& step = m_steps[m_next];
        if (step.kind == LongListStep::Kind::Begin) {
            const std::uint16_t array = m_stack.pushTemporary();
            m_code.emit(EngineOp::MakeArray, 0, array, array, 0);
            continue;
        }
        movePart(step);
        if (step.kind == LongListStep::Kind::End) {
            if (m_function.code[index].op == OpCode::Call) {
                call();
            }
            ++m_next;
            return true;
        }
    }
    // One instruction pushes at most one entry.
    m_deepest = std::max(m_deepest, m_stack.size() + 1);
    return false;
}

void ListCollector::movePart(const LongListStep& step) {
    const std::size_t first = m_stack.size() - step.count;
    m_stack.materializeFrom(first);
    m_stack.cutTo(first);
    m_code.emitWide(EngineOp::ExtendArray, static_cast<std::uint8_t>(step.count), reg(m_stack.top().index),
                    step.length);
}

void ListCollector::call() {
    const std::size_t callee = m_stack.size() - 2;
    m_stack.materialize(callee);
    m_stack.cutTo(callee);
    m_stack.detachGlobals();
    const std::uint16_t window = m_stack.pushTemporary();
    m_code.emit(EngineOp::CallWithArray, 0, window, window, 0);
}

}  // namespace morvel::ruby::internal
