// From the names in a program to the slots of globals.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "compiler/program.h"
#include "vm/globals.h"

namespace morvel::ruby::internal {

/// Stands for "addresses no global".
inline constexpr std::uint32_t kNotGlobal = ~std::uint32_t{0};

/// The slots of the globals that a program's constants name. Each is looked up once, however many instructions use it.
class GlobalNames {
public:
    /// Not to be used once either is gone.
    GlobalNames(const Program& program, GlobalTable& globals)
        : m_program(program), m_globals(globals), m_slots(program.constants.size(), kNotGlobal) {}

    /// Ends the program's mentions of its globals, whose table must still be there.
    void endMentions() noexcept {
        for (std::uint32_t& slot : m_slots) {
            if (slot != kNotGlobal) {
                m_globals.endMention(std::exchange(slot, kNotGlobal));
            }
        }
    }

    /// The slot of the global that constant `index`, a string, names; created when needed, and the program's from then
    /// on.
    [[nodiscard]] std::uint32_t slotOf(std::int32_t index) {
        std::uint32_t& slot = m_slots[static_cast<std::size_t>(index)];
        if (slot == kNotGlobal) {
            slot = static_cast<std::uint32_t>(m_globals.mention(*getStringConstantPtr(m_program, index)));
        }
        return slot;
    }
    [[nodiscard]] const GlobalTable& table() const { return m_globals; }

private:
    const Program& m_program;
    GlobalTable& m_globals;
    std::vector<std::uint32_t> m_slots;
};

}  // namespace morvel::ruby::internal
