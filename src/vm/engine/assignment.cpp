#include "vm/engine/assignment.h"

#include <algorithm>
#include <utility>

namespace morvel::ruby::internal {

namespace {

// Limit of the work for one function; beyond it, only the facts on entry are used.
constexpr std::size_t kMostWork = std::size_t{1} << 22;
constexpr std::size_t kExpectedVisits = 8;

}  // namespace

DefiniteAssignment::DefiniteAssignment(const CompiledFunction& function, const Flow& flow, const GlobalTable& globals,
                                       const std::vector<std::uint32_t>& globalSlots)
    : m_globals(globals), m_bitCount(function.localNames.size()) {
    for (const std::uint32_t slot : globalSlots) {
        if (slot != kNotGlobal && !globals.isDefined(slot) && m_globalBits.try_emplace(slot, m_bitCount).second) {
            ++m_bitCount;
        }
    }
    m_entry = entryFacts(function);
    m_current = m_entry;
    solve(function, flow, globalSlots);
}

void DefiniteAssignment::enterBlock(std::size_t block) {
    if (!m_blockEntry.empty()) {
        m_current = m_blockEntry[block];
    } else {
        for (const std::size_t bit : m_noted) {
            m_current[bit / kWordBits] = m_entry[bit / kWordBits];
        }
    }
    m_noted.clear();
}

void DefiniteAssignment::noteGlobal(std::size_t slot) {
    const auto bit = m_globalBits.find(slot);
    if (bit != m_globalBits.end()) {
        note(bit->second);
    }
}

bool DefiniteAssignment::isGlobalDefined(std::size_t slot) const {
    const auto bit = m_globalBits.find(slot);
    return bit == m_globalBits.end() ? m_globals.isDefined(slot) : has(m_current, bit->second);
}

DefiniteAssignment::Bits DefiniteAssignment::entryFacts(const CompiledFunction& function) const {
    Bits facts(m_bitCount / kWordBits + 1, 0);
    const std::size_t stored = std::min(function.params.size(), function.localNames.size());
    for (std::size_t i = 0; i < stored; ++i) {
        set(facts, i);
    }
    return facts;
}

DefiniteAssignment::Bits DefiniteAssignment::blockFacts(const CompiledFunction& function, const Block& block,
                                                        const std::vector<std::uint32_t>& globalSlots) const {
    Bits facts(m_bitCount / kWordBits + 1, 0);
    for (std::size_t i = block.begin; i < block.end; ++i) {
        if (globalSlots[i] != kNotGlobal) {
            const auto bit = m_globalBits.find(globalSlots[i]);
            if (bit != m_globalBits.end()) {
                set(facts, bit->second);
            }
        } else if (function.code[i].op == OpCode::StoreName) {
            set(facts, static_cast<std::size_t>(localSlotAt(function, i)));
        }
    }
    return facts;
}

void DefiniteAssignment::solve(const CompiledFunction& function, const Flow& flow,
                               const std::vector<std::uint32_t>& globalSlots) {
    const std::size_t words = m_bitCount / kWordBits + 1;
    const std::size_t blocks = flow.blocks.size();
    if (blocks * words > kMostWork / kExpectedVisits) {
        return;
    }
    std::vector<Bits> made;
    made.reserve(blocks);
    for (const Block& block : flow.blocks) {
        made.push_back(blockFacts(function, block, globalSlots));
    }
    // Everything is assumed to hold until a path shows otherwise.
    std::vector<Bits> entry(blocks, Bits(words, ~std::uint64_t{0}));
    std::vector<bool> queued(blocks, true);
    std::vector<std::size_t> pending(blocks);
    for (std::size_t i = 0; i < blocks; ++i) {
        pending[i] = blocks - 1 - i;
    }
    if (blocks > 0) {
        entry[0] = m_entry;
    }
    std::size_t work = 0;
    while (!pending.empty()) {
        const std::size_t block = pending.back();
        pending.pop_back();
        queued[block] = false;
        for (const std::size_t next : flow.blocks[block].successors) {
            work += words;
            bool changed = false;
            for (std::size_t word = 0; word < words; ++word) {
                const std::uint64_t met = entry[next][word] & (entry[block][word] | made[block][word]);
                changed = changed || met != entry[next][word];
                entry[next][word] = met;
            }
            if (changed && !queued[next]) {
                queued[next] = true;
                pending.push_back(next);
            }
        }
        if (work > kMostWork) {
            return;
        }
    }
    m_blockEntry = std::move(entry);
}

}  // namespace morvel::ruby::internal
