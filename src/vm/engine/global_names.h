// Maps the names in a program to global slots.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "compiler/program.h"
#include "vm/globals.h"

namespace morvel::ruby::internal {

/// Stands for "addresses no global".
inline constexpr std::uint32_t kNotGlobal = ~std::uint32_t{0};

/// The slots of the globals that a program mentions, by the index of the constant that names them.
struct Mentions {
    explicit Mentions(std::size_t constants) : slots(constants, kNotGlobal) {}

    std::vector<std::uint32_t> slots;
    /// The next in the list of ended ones.
    Mentions* next = nullptr;
};

/// The mentions of programs that have ended. A program may end on a thread other than that of the VM which ran it, so
/// they wait here until the VM takes them.
class EndedMentions {
public:
    EndedMentions() = default;
    EndedMentions(const EndedMentions&) = delete;
    EndedMentions& operator=(const EndedMentions&) = delete;
    ~EndedMentions() {
        take([](const Mentions&) {});
    }

    void add(std::unique_ptr<Mentions> ended) noexcept {
        Mentions* const added = ended.release();
        added->next = m_first.load(std::memory_order_relaxed);
        while (
            !m_first.compare_exchange_weak(added->next, added, std::memory_order_release, std::memory_order_relaxed)) {
        }
    }

    /// Calls `action` with each waiting one and drops it.
    template <typename Action>
    void take(Action action) noexcept {
        Mentions* next = m_first.exchange(nullptr, std::memory_order_acquire);
        while (next != nullptr) {
            const std::unique_ptr<Mentions> ended(next);
            next = ended->next;
            action(*ended);
        }
    }

private:
    std::atomic<Mentions*> m_first = nullptr;
};

/// Looks up the slots of the globals that a program's constants name: each name once, however many instructions use it.
class GlobalNames {
public:
    /// Must not be used once either argument is gone.
    GlobalNames(const Program& program, GlobalTable& globals)
        : m_program(program), m_globals(globals), m_mentions(std::make_unique<Mentions>(program.constants.size())) {}

    /// Hands over the program's mentions when it ends.
    [[nodiscard]] std::unique_ptr<Mentions> end() noexcept { return std::move(m_mentions); }

    /// The slot of the global that string constant `index` names, created when needed. From then on the program
    /// mentions the global.
    [[nodiscard]] std::uint32_t slotOf(std::int32_t index) {
        std::uint32_t& slot = m_mentions->slots[static_cast<std::size_t>(index)];
        if (slot == kNotGlobal) {
            slot = static_cast<std::uint32_t>(m_globals.mention(*getStringConstantPtr(m_program, index)));
        }
        return slot;
    }
    [[nodiscard]] const GlobalTable& table() const { return m_globals; }

private:
    const Program& m_program;
    GlobalTable& m_globals;
    std::unique_ptr<Mentions> m_mentions;
};

}  // namespace morvel::ruby::internal
