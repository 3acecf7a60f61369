// The index of a map, and the look-ups in it.
#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <memory>
#include <utility>

#include "morvel/ruby/map.h"
#include "platform/large_pages.h"
#include "value/hash.h"
#include "value/map_probe.h"

namespace morvel::ruby {

using internal::boxOf;
using internal::fitsKey;
using internal::hashOfBox;
using internal::integerKey;
using internal::integerOf;
using internal::isIntegerKey;
using internal::keyOf;
using internal::StringBox;

namespace {

// The part of a slot that holds bits of the hash; the rest, below, holds the position.
std::uint32_t tagIn(std::uint32_t slot, std::size_t mask) noexcept { return slot & ~static_cast<std::uint32_t>(mask); }

std::uint32_t tagOf(std::uint64_t hash, std::size_t mask) noexcept {
    return tagIn(static_cast<std::uint32_t>(hash >> 32), mask);
}

// Slots are looked at in groups, all of a group at once: which slot of its group a key got is hard to foretell, and a
// wrong guess of the processor costs more than the whole group.
constexpr std::size_t kGroupSlots = 8;

std::size_t groupStart(std::uint64_t hash, std::size_t mask) noexcept { return hash & mask & ~(kGroupSlots - 1); }

/// A group of slots.
class SlotGroup {
public:
    explicit SlotGroup(const std::uint32_t* slots) noexcept : m_slots(slots) {}

    /// A bit for each slot with this tag. An equal slot has all bits of the comparison set.
    [[nodiscard]] unsigned matching(std::uint32_t tag, std::size_t mask) const noexcept {
        using Lanes [[gnu::vector_size(16)]] = std::uint32_t;
        constexpr Lanes kLowBits{1, 2, 4, 8};
        constexpr Lanes kHighBits{16, 32, 64, 128};
        Lanes low;
        Lanes high;
        std::memcpy(&low, m_slots, sizeof low);
        std::memcpy(&high, m_slots + 4, sizeof high);
        const auto tagBits = ~static_cast<std::uint32_t>(mask);
        const Lanes bits = (static_cast<Lanes>((low & tagBits) == tag) & kLowBits) |
                           (static_cast<Lanes>((high & tagBits) == tag) & kHighBits);
        std::array<std::uint64_t, 2> halves;
        std::memcpy(halves.data(), &bits, sizeof bits);
        const std::uint64_t both = halves[0] | halves[1];
        return static_cast<unsigned>(both | both >> 32);
    }
    /// Slots are taken from the first on.
    [[nodiscard]] bool isFull() const noexcept { return m_slots[kGroupSlots - 1] != 0; }

private:
    const std::uint32_t* m_slots;
};

// A slot of a full group that was given up. No entry has this position.
constexpr std::uint32_t kGivenUp = 1;

}  // namespace

template <typename Matches>
RubyMap::Entry* RubyMap::findIndexed(std::uint64_t hash, Matches matches) const noexcept {
    const std::size_t mask = m_mask;
    const auto tag = tagOf(hash, mask);
    for (std::size_t start = groupStart(hash, mask);; start = groupStart(start + kGroupSlots, mask)) {
        const SlotGroup group(m_slots.get() + start);
        for (unsigned bits = group.matching(tag, mask); bits != 0; bits &= bits - 1) {
            const std::uint32_t slot = m_slots[start + static_cast<unsigned>(std::countr_zero(bits))];
            const auto position = static_cast<Position>(slot & mask);
            // A slot that is free or given up may have the tag too.
            if (position > kGivenUp) {
                Entry& entry = indexedEntry(position);
                if (matches(entry.key)) {
                    return &entry;
                }
            }
        }
        if (!group.isFull()) {
            return nullptr;
        }
    }
}

RubyMap::Entry* RubyMap::findEntry(const Probe& probe) const noexcept {
    const auto isWanted = [&probe](Key stored) { return matches(stored, probe); };
    if (m_slots == nullptr) {
        return scan(isWanted);
    }
    return m_isNumbered ? findNumbered(probe.integer) : findIndexed(probe.hash(), isWanted);
}

bool RubyMap::matches(Key stored, const Probe& probe) noexcept {
    if (probe.integer != kErased || isIntegerKey(stored) || stored == kErased) {
        return stored == probe.integer && stored != kErased;
    }
    const StringBox& box = *boxOf(stored);
    if (&box == probe.box) {
        return true;
    }
    const bool differs = probe.box != nullptr && probe.box->hash != 0 && box.hash != 0 && box.hash != probe.box->hash;
    return !differs && box.text == probe.text;
}

RubyValue* RubyMap::findValue(const RubyValue& key) {
    if (key.isString()) {
        return findText(static_cast<StringBox*>(key.data.box));
    }
    return findInteger(key.data.integer);
}

RubyValue* RubyMap::findEqualText(StringBox* box) noexcept {
    Entry* entry = nullptr;
    if (m_slots == nullptr || m_isNumbered || internal::canonicalInteger(box->text)) {
        entry = findEntry(Probe(box));
    } else {
        // All texts that the index knows have their hash with them.
        const std::uint64_t hash = hashOfBox(*box);
        entry = findIndexed(hash, [box, hash](Key stored) {
            if (stored == keyOf(box)) {
                return true;
            }
            return !isIntegerKey(stored) && boxOf(stored)->hash == hash && boxOf(stored)->text == box->text;
        });
    }
    return entry == nullptr ? nullptr : &entry->value;
}

// Apart, so that the common cases need little or no memory on the stack.
[[gnu::noinline]] RubyValue* RubyMap::findLargeInteger(std::int64_t number) noexcept {
    Entry* const entry = findEntry(Probe(RubyValue(number)));
    return entry == nullptr ? nullptr : &entry->value;
}

[[gnu::noinline]] RubyValue* RubyMap::findHashedInteger(std::int64_t number) noexcept {
    Entry* const entry = findIndexed(internal::hashInteger(number),
                                     [wanted = integerKey(number)](Key stored) { return stored == wanted; });
    return entry == nullptr ? nullptr : &entry->value;
}

RubyValue* RubyMap::findInteger(std::int64_t number) noexcept {
    if (m_isNumbered) {
        if (static_cast<std::uint64_t>(number) > m_mask) {
            return nullptr;
        }
        const Position position = m_slots[static_cast<std::size_t>(number)];
        return position == kNone ? nullptr : &indexedEntry(position).value;
    }
    if (!fitsKey(number)) [[unlikely]] {
        return findLargeInteger(number);
    }
    if (m_slots != nullptr) {
        return findHashedInteger(number);
    }
    Entry* const entry = scan([wanted = integerKey(number)](Key stored) { return stored == wanted; });
    return entry == nullptr ? nullptr : &entry->value;
}

bool RubyMap::numbersSlot(Key key) const noexcept {
    return isIntegerKey(key) && static_cast<std::uint64_t>(integerOf(key)) <= m_mask;
}

RubyMap::Entry* RubyMap::findNumbered(Key key) const noexcept {
    const Position position = numbersSlot(key) ? m_slots[static_cast<std::size_t>(integerOf(key))] : kNone;
    return position == kNone ? nullptr : &indexedEntry(position);
}

std::uint64_t RubyMap::hashOf(Key key) noexcept {
    return isIntegerKey(key) ? internal::hashInteger(integerOf(key)) : hashOfBox(*boxOf(key));
}

void RubyMap::enterSlot(Key key, Position position) noexcept {
    if (m_isNumbered) {
        m_slots[static_cast<std::size_t>(integerOf(key))] = position;
        return;
    }
    const std::uint64_t hash = hashOf(key);
    const std::size_t mask = m_mask;
    std::size_t slot = groupStart(hash, mask);
    while (m_slots[slot] > kGivenUp) {
        slot = (slot + 1) & mask;
    }
    m_givenUpSlots -= m_slots[slot];
    m_slots[slot] = tagOf(hash, mask) | position;
}

void RubyMap::leaveSlot(Key key, Position position) noexcept {
    if (m_isNumbered) {
        m_slots[static_cast<std::size_t>(integerOf(key))] = kNone;
        return;
    }
    const std::uint64_t hash = hashOf(key);
    const std::size_t mask = m_mask;
    const std::uint32_t entered = tagOf(hash, mask) | position;
    std::size_t slot = groupStart(hash, mask);
    while (m_slots[slot] != entered) {
        slot = (slot + 1) & mask;
    }
    std::size_t last = slot | (kGroupSlots - 1);
    if (m_slots[last] != 0) {
        // The group stays full: the search for keys that found no room in it must not end here.
        m_slots[slot] = kGivenUp;
        ++m_givenUpSlots;
        return;
    }
    while (m_slots[last] == 0) {
        --last;
    }
    m_slots[slot] = m_slots[last];
    m_slots[last] = 0;
}

void RubyMap::enterAllSlots() noexcept {
    std::fill_n(m_slots.get(), slotCount(), 0);
    m_givenUpSlots = 0;
    for (Position position = m_head; position != kNone; position = entryAt(position).next) {
        enterSlot(entryAt(position).key, position);
    }
}

void RubyMap::rebuildIndex(std::size_t slots) {
    // The first two bits of a position number no segment.
    const auto segmentsOf = [](std::size_t count) { return static_cast<std::size_t>(std::bit_width(count)) - 3; };
    auto table = std::make_unique<NumberedSegment[]>(segmentsOf(slots));
    std::unique_ptr<std::uint32_t[]> fresh(new std::uint32_t[slots]);
    platform::preferLargePages(fresh.get(), slots * sizeof(std::uint32_t));
    if (m_table == nullptr) {
        for (Position i = 0; i < m_few.size(); ++i) {
            table[i].hold(std::move(m_few[i]), kFirst << i);
        }
    } else {
        std::move(m_table.get(), m_table.get() + segmentsOf(slotCount()), table.get());
    }
    m_table = std::move(table);
    m_slots = std::move(fresh);
    m_mask = static_cast<std::uint32_t>(slots - 1);
    m_isNumbered = true;
    for (Position position = m_head; m_isNumbered && position != kNone; position = entryAt(position).next) {
        m_isNumbered = numbersSlot(entryAt(position).key);
    }
    enterAllSlots();
}

}  // namespace morvel::ruby
