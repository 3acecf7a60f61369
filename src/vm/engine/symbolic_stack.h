// The stack of the stack code, run symbolically: entries stand for values that exist only at run time.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "vm/engine/code_builder.h"
#include "vm/engine/instruction_table.h"

namespace morvel::ruby::internal {

enum class Place : std::uint8_t { Local, Temporary, Constant, Global };

/// Where the value of a stack entry is.
struct Entry {
    Place place;
    std::uint32_t index;
    /// A local that nothing reads before it is written again or gone.
    bool dies = false;
    /// A temporary known to hold a boolean.
    bool isBoolean = false;

    bool operator==(const Entry& other) const { return place == other.place && index == other.index; }
};

/// The entry as an operand of an instruction.
[[nodiscard]] inline EngineOperand operandKind(const Entry& entry) {
    switch (entry.place) {
        case Place::Constant:
            return EngineOperand::Constant;
        case Place::Global:
            return EngineOperand::Global;
        case Place::Local:
        case Place::Temporary:
            break;
    }
    return EngineOperand::Register;
}

/// `flag` when the entry dies with its use.
[[nodiscard]] inline std::uint8_t flagFor(const Entry& entry, std::uint8_t flag) {
    return entry.place == Place::Temporary || entry.dies ? flag : std::uint8_t{0};
}

/// Puts a value into a register only when it has to be there. The temporary of the entry at depth d is always register
/// firstTemporary + d. In hand-made code the stack may be thousands deep at each of thousands of instructions. So
/// entries at the bottom that are in their temporaries are only counted, and the translation fails when searching the
/// others costs too much.
class SymbolicStack {
public:
    /// Emits the translation of `length` instructions into `code`, which must outlive the stack.
    SymbolicStack(CodeBuilder& code, std::size_t length) : m_code(code), m_looksLeft(length * kLooksForEach) {}

    [[nodiscard]] bool empty() const { return size() == 0; }
    [[nodiscard]] std::size_t size() const { return m_settled + m_entries.size(); }
    [[nodiscard]] Entry operator[](std::size_t depth) const {
        return depth < m_settled ? temporaryAt(depth) : m_entries[depth - m_settled];
    }
    [[nodiscard]] Entry top() const { return (*this)[size() - 1]; }

    void push(const Entry& entry) {
        m_entries.push_back(entry);
        ++countOf(entry.place);
    }
    /// Pushes the temporary of the next depth and returns its register.
    std::uint16_t pushTemporary() {
        const Entry entry = temporaryAt(size());
        push(entry);
        return reg(entry.index);
    }
    /// The same for a value known to be a boolean.
    std::uint16_t pushBoolean() {
        Entry entry = temporaryAt(size());
        entry.isBoolean = true;
        push(entry);
        return reg(entry.index);
    }
    Entry pop() {
        const Entry entry = top();
        if (m_entries.empty()) {
            --m_settled;
        } else {
            m_entries.pop_back();
            --countOf(entry.place);
        }
        return entry;
    }
    /// Drops the entries from `depth` on.
    void cutTo(std::size_t depth) {
        while (size() > depth && !m_entries.empty()) {
            pop();
        }
        m_settled = std::min(m_settled, depth);
    }

    /// Starts a block, before which `depth` entries are in their temporaries.
    void beginBlock(std::size_t depth);

    /// Puts the entry at `depth` into its temporary.
    void materialize(std::size_t depth) {
        if (depth >= m_settled && m_entries[depth - m_settled].place != Place::Temporary) {
            passToTemporary(depth);
        }
    }
    /// The same for all entries from `first` on.
    void materializeFrom(std::size_t first);
    void materializeAll();
    /// Puts the entries that stand for `changing` into their temporaries before it changes.
    void detach(const Entry& changing);
    /// The same for all globals: a call may rebind any of them.
    void detachGlobals();
    /// Makes sure that the entry at `depth` can be named by a 16-bit operand.
    void makeNameable(std::size_t depth) {
        if ((*this)[depth].index > kLargestOperand) {
            materialize(depth);
        }
    }
    void makeRegister(std::size_t depth) {
        if (operandKind((*this)[depth]) != EngineOperand::Register) {
            materialize(depth);
        }
    }

    /// True when an entry from `first` on is a local that dies.
    [[nodiscard]] bool hasDying(std::size_t first) const;
    /// True when some entry stands for the same place as this one, which is not a temporary.
    [[nodiscard]] bool holds(const Entry& entry);
    /// True when another entry stands for the same variable as the entry at `depth`.
    [[nodiscard]] bool isElsewhere(std::size_t depth);

private:
    /// Compiled code needs only a few: its stack is deep only in array literals and argument lists.
    static constexpr std::size_t kLooksForEach = 256;

    [[nodiscard]] Entry temporaryAt(std::size_t depth) const { return {Place::Temporary, m_code.temporary(depth)}; }
    void passToTemporary(std::size_t depth);
    /// The depth of the lowest entry in this place; size() when there is none.
    [[nodiscard]] std::size_t lowestOf(Place place);
    [[nodiscard]] std::size_t& countOf(Place place) { return m_counts[static_cast<std::size_t>(place)]; }

    CodeBuilder& m_code;
    /// How many entries at the bottom are in their temporaries.
    std::size_t m_settled = 0;
    /// The entries above them.
    std::vector<Entry> m_entries;
    /// How many of these are in each place.
    std::array<std::size_t, 4> m_counts{};
    std::size_t m_looksLeft;
};

}  // namespace morvel::ruby::internal
