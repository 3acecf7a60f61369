#include "vm/engine/symbolic_stack.h"

#include <algorithm>

namespace morvel::ruby::internal {

void SymbolicStack::beginBlock(std::size_t depth) {
    cutTo(0);
    while (m_entries.size() < depth) {
        pushTemporary();
    }
}

void SymbolicStack::materializeFrom(std::size_t first) {
    for (std::size_t depth = first; depth < m_entries.size(); ++depth) {
        materialize(depth);
    }
}

void SymbolicStack::detach(const Entry& changing) {
    for (std::size_t depth = 0; countOf(changing) > 0 && depth < m_entries.size(); ++depth) {
        if (m_entries[depth] == changing) {
            materialize(depth);
        }
    }
}

void SymbolicStack::detachGlobals() {
    for (std::size_t depth = 0; countOf({Place::Global, 0}) > 0; ++depth) {
        if (m_entries[depth].place == Place::Global) {
            materialize(depth);
        }
    }
}

bool SymbolicStack::holds(const Entry& entry) const {
    return countOf(entry) > 0 && std::find(m_entries.begin(), m_entries.end(), entry) != m_entries.end();
}

bool SymbolicStack::isElsewhere(std::size_t depth) const {
    const std::size_t alike = countOf(m_entries[depth]);
    for (std::size_t i = 0; alike > 1 && i < m_entries.size(); ++i) {
        if (i != depth && m_entries[i] == m_entries[depth]) {
            return true;
        }
    }
    return false;
}

void SymbolicStack::passToTemporary(std::size_t depth) {
    Entry& entry = m_entries[depth];
    const std::uint32_t temporary = m_code.temporary(depth);
    if (entry.place == Place::Local) {
        m_code.emit(EngineOp::PassLocal, 0, reg(temporary), reg(entry.index), 0);
    } else {
        const bool isConstant = entry.place == Place::Constant;
        m_code.emitWide(isConstant ? EngineOp::PassConstant : EngineOp::PassGlobal, 0, reg(temporary), entry.index * 2);
    }
    --countOf(entry);
    entry = {Place::Temporary, temporary};
    ++countOf(entry);
}

}  // namespace morvel::ruby::internal
