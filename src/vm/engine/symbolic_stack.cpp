#include "vm/engine/symbolic_stack.h"

#include <algorithm>

namespace morvel::ruby::internal {

void SymbolicStack::beginBlock(std::size_t depth) {
    m_entries.clear();
    m_counts.fill(0);
    m_settled = depth;
}

void SymbolicStack::materializeFrom(std::size_t first) {
    for (std::size_t depth = std::max(first, m_settled); depth < size(); ++depth) {
        materialize(depth);
    }
}

void SymbolicStack::materializeAll() {
    materializeFrom(0);
    beginBlock(size());
}

void SymbolicStack::detach(const Entry& changing) {
    for (std::size_t depth = lowestOf(changing.place); depth < size(); ++depth) {
        if ((*this)[depth] == changing) {
            materialize(depth);
        }
    }
}

void SymbolicStack::detachGlobals() {
    for (std::size_t depth = lowestOf(Place::Global); depth < size(); ++depth) {
        if ((*this)[depth].place == Place::Global) {
            materialize(depth);
        }
    }
}

bool SymbolicStack::hasDying(std::size_t first) const {
    const std::size_t known = std::min(std::max(first, m_settled) - m_settled, m_entries.size());
    return std::any_of(m_entries.begin() + static_cast<std::ptrdiff_t>(known), m_entries.end(),
                       [](const Entry& entry) { return entry.dies; });
}

bool SymbolicStack::holds(const Entry& entry) {
    for (std::size_t depth = lowestOf(entry.place); depth < size(); ++depth) {
        if ((*this)[depth] == entry) {
            return true;
        }
    }
    return false;
}

bool SymbolicStack::isElsewhere(std::size_t depth) {
    const Entry entry = (*this)[depth];
    if (entry.place == Place::Temporary) {
        return false;
    }
    for (std::size_t other = lowestOf(entry.place); other < size(); ++other) {
        if (other != depth && (*this)[other] == entry) {
            return true;
        }
    }
    return false;
}

void SymbolicStack::passToTemporary(std::size_t depth) {
    Entry& entry = m_entries[depth - m_settled];
    const Entry temporary = temporaryAt(depth);
    if (entry.place == Place::Local) {
        m_code.emit(entry.dies ? EngineOp::MoveTemporary : EngineOp::PassLocal, 0, reg(temporary.index),
                    reg(entry.index), 0);
    } else {
        const bool isConstant = entry.place == Place::Constant;
        m_code.emitWide(isConstant ? EngineOp::PassConstant : EngineOp::PassGlobal, 0, reg(temporary.index),
                        wideOperand(entry.index));
    }
    --countOf(entry.place);
    entry = temporary;
    ++countOf(entry.place);
}

std::size_t SymbolicStack::lowestOf(Place place) {
    std::size_t index = m_entries.size();
    for (std::size_t left = countOf(place); left > 0;) {
        --index;
        if (m_entries[index].place == place) {
            --left;
        }
    }
    const std::size_t looks = m_entries.size() - index;
    if (looks > m_looksLeft) {
        m_code.fail();
    }
    m_looksLeft -= std::min(looks, m_looksLeft);
    return m_settled + index;
}

}  // namespace morvel::ruby::internal
