// The registers of all active frames. Grows by chunks that never move, so that pointers to registers stay valid.
#pragma once

#include <cstddef>
#include <vector>

#include "morvel/ruby/value.h"
#include "value/zeroed_array.h"

namespace morvel::ruby::internal {

/// A dead register never holds a boxed value; all registers above the top frame are dead.
class ValueStack {
public:
    ValueStack();

    [[nodiscard]] RubyValue* begin() noexcept { return m_chunks.front().values.get(); }
    [[nodiscard]] RubyValue* end() const noexcept { return m_end; }
    [[nodiscard]] std::size_t chunk() const noexcept { return m_chunk; }

    /// Moves on to a chunk with room for `count` registers and returns its beginning; null when the stack has reached
    /// its limit. Throws std::bad_alloc.
    [[nodiscard]] RubyValue* enterNextChunk(std::size_t count);
    /// Moves back to an earlier chunk. Later chunks are kept for the next time.
    void returnToChunk(std::size_t chunk) noexcept;
    /// Frees later chunks while the stack is larger than is worth keeping.
    void giveBack() noexcept;
    /// Frees the chunks after the current one; true when there were any.
    bool giveBackSpare() noexcept;

private:
    struct Chunk {
        ZeroedArray<RubyValue> values;
        std::size_t size = 0;
    };

    /// Enough for most scripts, yet small for a host with many VMs.
    static constexpr std::size_t kFirstChunk = 1 << 10;
    /// Chunks double up to this size, so that a deep recursion takes little more than it needs.
    static constexpr std::size_t kLargestStep = 1 << 20;
    /// Limit of the whole stack, in values of 16 bytes.
    static constexpr std::size_t kMostValues = 1 << 25;
    /// How much of an unused stack giveBack keeps.
    static constexpr std::size_t kKeptValues = 1 << 16;

    void addChunk(std::size_t size);
    void dropLastChunk() noexcept;

    std::vector<Chunk> m_chunks;
    std::size_t m_chunk = 0;
    std::size_t m_total = 0;
    RubyValue* m_end = nullptr;
};

}  // namespace morvel::ruby::internal
