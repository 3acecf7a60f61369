// The stack of the stack code, run symbolically: what an entry stands for is known, its value only later.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "vm/engine/code_builder.h"
#include "vm/engine/instruction_families.h"

namespace morvel::ruby::internal {

enum class Place : std::uint8_t { Local, Temporary, Constant, Global };

/// Where the value of a stack entry is.
struct Entry {
    Place place;
    std::uint32_t index;
    /// A local that is written again before anything can read it.
    bool dies = false;

    bool operator==(const Entry& other) const { return place == other.place && index == other.index; }
};

[[nodiscard]] inline Letter letterOf(const Entry& entry) {
    switch (entry.place) {
        case Place::Constant:
            return Letter::K;
        case Place::Global:
            return Letter::G;
        default:
            return Letter::R;
    }
}

/// The mark `bit` when the entry dies with its use.
[[nodiscard]] inline std::uint8_t mark(const Entry& entry, std::uint8_t bit) {
    return entry.place == Place::Temporary || entry.dies ? bit : std::uint8_t{0};
}

/// Only what has to be in a register is put there. The temporary of the entry at depth d is always the register
/// firstTemporary + d.
class SymbolicStack {
public:
    /// Emits into `code`, which must outlive the stack.
    explicit SymbolicStack(CodeBuilder& code) : m_code(code) {}

    [[nodiscard]] bool empty() const { return m_entries.empty(); }
    [[nodiscard]] std::size_t size() const { return m_entries.size(); }
    [[nodiscard]] const Entry& operator[](std::size_t depth) const { return m_entries[depth]; }
    [[nodiscard]] const Entry& top() const { return m_entries.back(); }

    void push(const Entry& entry) {
        m_entries.push_back(entry);
        ++countOf(entry);
    }
    /// Pushes the temporary of the next depth and gives its register.
    std::uint16_t pushTemporary() {
        const std::uint32_t index = m_code.temporary(size());
        push({Place::Temporary, index});
        return reg(index);
    }
    Entry pop() {
        const Entry top = m_entries.back();
        m_entries.pop_back();
        --countOf(top);
        return top;
    }
    /// Drops the entries from `depth` on.
    void cutTo(std::size_t depth) {
        while (m_entries.size() > depth) {
            pop();
        }
    }

    /// Starts a block, before which `depth` entries are in their temporaries.
    void beginBlock(std::size_t depth);

    /// Puts the entry at `depth` into its temporary.
    void materialize(std::size_t depth) {
        if (m_entries[depth].place != Place::Temporary) {
            passToTemporary(depth);
        }
    }
    /// The same for all entries from `first` on.
    void materializeFrom(std::size_t first);
    void materializeAll() { materializeFrom(0); }
    /// Entries that stand for what is about to change have to take their value first.
    void detach(const Entry& changing);
    /// A call may rebind any global.
    void detachGlobals();
    /// Makes sure that the entry at `depth` can be named by a 16-bit operand.
    void makeNameable(std::size_t depth) {
        if (m_entries[depth].index > kLargestOperand) {
            materialize(depth);
        }
    }
    void makeRegister(std::size_t depth) {
        if (letterOf(m_entries[depth]) != Letter::R) {
            materialize(depth);
        }
    }

    /// True when an entry stands for the same as this one.
    [[nodiscard]] bool holds(const Entry& entry) const;
    /// True when another entry stands for the same variable as the entry at `depth`.
    [[nodiscard]] bool isElsewhere(std::size_t depth) const;

private:
    void passToTemporary(std::size_t depth);
    [[nodiscard]] std::size_t& countOf(const Entry& entry) { return m_counts[static_cast<std::size_t>(entry.place)]; }
    [[nodiscard]] std::size_t countOf(const Entry& entry) const {
        return m_counts[static_cast<std::size_t>(entry.place)];
    }

    CodeBuilder& m_code;
    std::vector<Entry> m_entries;
    /// How many entries are in each place: a deep stack is gone through only when there is something to find.
    std::array<std::size_t, 4> m_counts{};
};

}  // namespace morvel::ruby::internal
