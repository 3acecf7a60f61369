#include "vm/engine/symbolic_stack.h"

namespace morvel::ruby::internal {

void SymbolicStack::beginBlock(std::size_t depth) {
    m_entries.clear();
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
    for (std::size_t depth = 0; depth < m_entries.size(); ++depth) {
        if (m_entries[depth] == changing) {
            materialize(depth);
        }
    }
}

void SymbolicStack::detachGlobals() {
    for (std::size_t depth = 0; depth < m_entries.size(); ++depth) {
        if (m_entries[depth].place == Place::Global) {
            materialize(depth);
        }
    }
}

bool SymbolicStack::isElsewhere(std::size_t depth) const {
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
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
    entry = {Place::Temporary, temporary};
}

}  // namespace morvel::ruby::internal
