// Definite assignment: where a local is known to be assigned and a global known to be defined.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "compiler/program.h"
#include "vm/engine/flow.h"
#include "vm/engine/global_names.h"
#include "vm/globals.h"

namespace morvel::ruby::internal {

/// Follows the translation: enterBlock at the start of each block, then noteLocal and noteGlobal at every assignment. A
/// global that was read successfully counts as defined from then on, since a defined global stays defined.
class DefiniteAssignment {
public:
    /// `globalSlots` gives, by instruction, the global that a LoadName, StoreName or DefineFunction addresses, or
    /// kNotGlobal.
    DefiniteAssignment(const CompiledFunction& function, const Flow& flow, const GlobalTable& globals,
                       const std::vector<std::uint32_t>& globalSlots);

    void enterBlock(std::size_t block);
    void noteLocal(std::int32_t slot) { note(static_cast<std::size_t>(slot)); }
    void noteGlobal(std::size_t slot);
    [[nodiscard]] bool isLocalAssigned(std::int32_t slot) const {
        return has(m_current, static_cast<std::size_t>(slot));
    }
    [[nodiscard]] bool isGlobalDefined(std::size_t slot) const;

private:
    using Bits = std::vector<std::uint64_t>;
    static constexpr std::size_t kWordBits = 64;

    [[nodiscard]] static bool has(const Bits& bits, std::size_t index) {
        return (bits[index / kWordBits] >> (index % kWordBits) & 1) != 0;
    }
    static void set(Bits& bits, std::size_t index) {
        bits[index / kWordBits] |= std::uint64_t{1} << (index % kWordBits);
    }
    void note(std::size_t bit) {
        if (!has(m_current, bit)) {
            set(m_current, bit);
            m_noted.push_back(bit);
        }
    }
    [[nodiscard]] Bits entryFacts(const CompiledFunction& function) const;
    [[nodiscard]] Bits blockFacts(const CompiledFunction& function, const Block& block,
                                  const std::vector<std::uint32_t>& globalSlots) const;
    void solve(const CompiledFunction& function, const Flow& flow, const std::vector<std::uint32_t>& globalSlots);

    const GlobalTable& m_globals;
    /// Bit of each global that is not yet defined; the bits of the locals come first.
    std::unordered_map<std::size_t, std::size_t> m_globalBits;
    std::size_t m_bitCount = 0;
    /// Facts at the start of each block; empty when the function is too large to solve, and m_entry is used instead.
    std::vector<Bits> m_blockEntry;
    Bits m_entry;
    Bits m_current;
    /// The bits set since the start of the block.
    std::vector<std::size_t> m_noted;
};

}  // namespace morvel::ruby::internal
