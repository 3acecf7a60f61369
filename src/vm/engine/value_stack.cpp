#include "vm/engine/value_stack.h"

#include <algorithm>

#include "vm/engine/code.h"

namespace morvel::ruby::internal {

ValueStack::ValueStack() {
    addChunk(kFirstChunk);
    returnToChunk(0);
}

void ValueStack::addChunk(std::size_t size) {
    // A return may look at registers beyond those of the last frame.
    m_chunks.push_back({makeZeroedArray<RubyValue>(size + kRegistersAtOnce), size});
    m_total += size;
}

RubyValue* ValueStack::enterNextChunk(std::size_t count) {
    const std::size_t next = m_chunk + 1;
    if (next < m_chunks.size() && m_chunks[next].size < count) {
        // Nothing beyond the current chunk is in use, so one that is too small can go.
        giveBackSpare();
    }
    if (next == m_chunks.size()) {
        const std::size_t size = std::max(count, std::min(m_chunks.back().size * 2, kLargestStep));
        if (size > kMostValues - m_total) {
            return nullptr;
        }
        addChunk(size);
    }
    returnToChunk(next);
    return m_chunks[next].values.get();
}

void ValueStack::returnToChunk(std::size_t chunk) noexcept {
    m_chunk = chunk;
    m_end = m_chunks[chunk].values.get() + m_chunks[chunk].size;
}

void ValueStack::giveBack() noexcept {
    while (m_total > kKeptValues && m_chunks.size() > m_chunk + 1) {
        dropLastChunk();
    }
}

bool ValueStack::giveBackSpare() noexcept {
    const bool hasSpare = m_chunks.size() > m_chunk + 1;
    while (m_chunks.size() > m_chunk + 1) {
        dropLastChunk();
    }
    return hasSpare;
}

void ValueStack::dropLastChunk() noexcept {
    m_total -= m_chunks.back().size;
    m_chunks.pop_back();
}

}  // namespace morvel::ruby::internal
