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

// How the parts of a map fit together, shown for a map with the keys "a", "b" and "c", of which "b" was erased:
//
//   m_slots     | 0 | 0 | tag,6 | 0 | ... | tag,4 | 0 |     one array; the hash of a key chooses a group of eight
//                           |                 |
//                           +-----------------|---------------------+
//                       +---------------------+                     |
//                       v                                           v
//   m_table[0]   4: "a", 1, next 6   5: erased   6: "c", 3, previous 4   7: unused
//   m_table[1]   8: ...                 ^
//   m_table[2]  16: ...                 m_free, which the next new key takes
//
// The list from m_head to m_tail through `next` is the insertion order. The segments stay where they are; when there
// are too few slots, only these are rebuilt. In a numbered map, whose keys are integers, slots hold no tags, and the
// key alone determines the slot:
//
//   key -3  =  ...11111101        4 low bits  ->  slot 13, which holds its position or nothing
//   key 16, 32, 48: the 4 low bits, which all have in common, are left out  ->  slots 1, 2, 3
namespace morvel::ruby {

using internal::boxOf;
using internal::fitsKey;
using internal::hashOfInteger;
using internal::integerKey;
using internal::integerOf;
using internal::isHashOfInteger;
using internal::isIntegerKey;
using internal::keyHashOf;
using internal::keyOf;
using internal::StringBox;

namespace {

// The part of a hash that a slot holds. The low bits of the hash choose the group; in the slot, the position replaces
// them.
std::uint32_t tagOf(std::uint32_t hash, std::size_t mask) noexcept { return hash & ~static_cast<std::uint32_t>(mask); }

// A search compares all slots of a group at once: the slot that holds a key is hard to predict, and a mispredicted
// branch costs more than comparing the whole group. Eight slots are two vectors, and half a cache line.
constexpr std::size_t kGroupSlots = 8;

std::size_t groupStart(std::size_t hash, std::size_t mask) noexcept { return hash & mask & ~(kGroupSlots - 1); }

/// A group of slots.
class SlotGroup {
public:
    explicit SlotGroup(const std::uint32_t* slots) noexcept : m_slots(slots) {}

    /// One bit per slot, set for slots with this tag. In the vector comparison, an equal slot has all bits set.
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
    /// Slots fill from the first on, so the last one decides.
    [[nodiscard]] bool isFull() const noexcept { return m_slots[kGroupSlots - 1] != 0; }

private:
    const std::uint32_t* m_slots;
};

// A slot of a full group that was given up. No entry has this position.
constexpr std::uint32_t kGivenUp = 1;

}  // namespace

template <typename Matches>
RubyMap::Position RubyMap::findHashed(std::uint32_t hash, Matches matches) const noexcept {
    const std::size_t mask = m_mask;
    const auto tag = tagOf(hash, mask);
    for (std::size_t start = groupStart(hash, mask);; start = groupStart(start + kGroupSlots, mask)) {
        const SlotGroup group(m_slots.get() + start);
        for (unsigned bits = group.matching(tag, mask); bits != 0; bits &= bits - 1) {
            const std::uint32_t slot = m_slots[start + static_cast<unsigned>(std::countr_zero(bits))];
            const auto position = static_cast<Position>(slot & mask);
            // A slot that is free or given up may have the tag too.
            if (position > kGivenUp && matches(indexedEntry(position).key)) {
                return position;
            }
        }
        if (!group.isFull()) {
            return kNone;
        }
    }
}

// Not inlined, so that the common cases need little or no stack.
[[gnu::noinline]] RubyMap::Entry* RubyMap::findEntry(const Probe& probe) const noexcept {
    if (m_isNumbered) {
        return probe.integer == kErased ? nullptr : findIntegerEntry(integerOf(probe.integer));
    }
    const auto isWanted = [&probe](Key stored) { return matches(stored, probe); };
    if (m_slots == nullptr) {
        return scan(isWanted);
    }
    const Position position = findHashed(probe.hash(), isWanted);
    return position == kNone ? nullptr : &indexedEntry(position);
}

bool RubyMap::matches(Key stored, const Probe& probe) noexcept {
    if (probe.integer != kErased || isIntegerKey(stored) || stored == kErased) {
        return stored == probe.integer && stored != kErased;
    }
    const StringBox& box = *boxOf(stored);
    if (&box == probe.box) {
        return true;
    }
    const bool differs =
        probe.box != nullptr && probe.box->keyHash != 0 && box.keyHash != 0 && box.keyHash != probe.box->keyHash;
    return !differs && box.text == probe.text;
}

RubyValue* RubyMap::findValue(const RubyValue& key) {
    return key.isString() ? findText(static_cast<StringBox*>(key.data.box)) : findInteger(key.data.integer);
}

RubyMap::Entry* RubyMap::findTextEntry(StringBox* box) const noexcept {
    const Key word = keyOf(box);
    if (m_slots == nullptr) {
        if (Entry* const entry = scan([word](Key stored) { return stored == word; })) {
            box->keyPosition = positionOf(*entry);
            return entry;
        }
    } else if (box->keyPosition <= m_last) {
        Entry& entry = indexedEntry(box->keyPosition);
        if (entry.key == word) {
            return &entry;
        }
    }
    return findEqualText(box);
}

[[gnu::noinline]] RubyMap::Entry* RubyMap::findEqualText(StringBox* box) const noexcept {
    const std::uint32_t hash = keyHashOf(*box);
    if (m_slots == nullptr || m_isNumbered || isHashOfInteger(hash)) {
        return findEntry(Probe(box));
    }
    const Key word = keyOf(box);
    // All strings in the index carry their hash.
    const Position position = findHashed(hash, [box, word, hash](Key stored) {
        return stored == word ||
               (!isIntegerKey(stored) && boxOf(stored)->keyHash == hash && boxOf(stored)->text == box->text);
    });
    if (position == kNone) {
        return nullptr;
    }
    box->keyPosition = position;
    return &indexedEntry(position);
}

RubyMap::Entry* RubyMap::findIntegerEntry(std::int64_t number) const noexcept {
    const Key word = integerKey(number);
    if (m_isNumbered) {
        const Position position = m_slots[numberedSlot(word)];
        if (position == kNone) {
            return nullptr;
        }
        Entry& entry = indexedEntry(position);
        // A number too large for a key word yields the word of a different number.
        return integerOf(entry.key) == number ? &entry : nullptr;
    }
    if (m_slots == nullptr && fitsKey(number)) {
        return scan([word](Key stored) { return stored == word; });
    }
    return findHashedInteger(number);
}

[[gnu::noinline]] RubyMap::Entry* RubyMap::findHashedInteger(std::int64_t number) const noexcept {
    if (m_slots == nullptr || !fitsKey(number)) {
        return findEntry(Probe(RubyValue(number)));
    }
    const Position position =
        findHashed(hashOfInteger(number), [word = integerKey(number)](Key stored) { return stored == word; });
    return position == kNone ? nullptr : &indexedEntry(position);
}

std::uint32_t RubyMap::hashOf(Key key) noexcept {
    return isIntegerKey(key) ? hashOfInteger(integerOf(key)) : keyHashOf(*boxOf(key));
}

void RubyMap::enterSlot(Key key, Position position) noexcept {
    const std::uint32_t hash = hashOf(key);
    const std::size_t mask = m_mask;
    std::size_t slot = groupStart(hash, mask);
    while (m_slots[slot] > kGivenUp) {
        slot = (slot + 1) & mask;
    }
    m_givenUpSlots -= m_slots[slot];
    m_slots[slot] = tagOf(hash, mask) | position;
}

void RubyMap::leaveSlot(Key key, Position position) noexcept {
    const std::uint32_t hash = hashOf(key);
    const std::size_t mask = m_mask;
    const std::uint32_t entered = tagOf(hash, mask) | position;
    std::size_t slot = groupStart(hash, mask);
    while (m_slots[slot] != entered) {
        slot = (slot + 1) & mask;
    }
    std::size_t last = slot | (kGroupSlots - 1);
    if (m_slots[last] != 0) {
        // The group stays full: a search for a key that found no room in it must not end here.
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

void RubyMap::enterAllSlots(unsigned shiftLimit) noexcept {
    m_givenUpSlots = 0;
    m_isNumbered = numberAllSlots(shiftLimit);
    if (m_isNumbered) {
        return;
    }
    std::fill_n(m_slots.get(), slotCount(), 0);
    for (Position position = m_head; position != kNone; position = entryAt(position).next) {
        enterSlot(entryAt(position).key, position);
    }
}

/// Enters every key in the slot of its own number; false when two keys would share a slot, a key is a string, or the
/// keys have `shiftLimit` or more low bits in common.
bool RubyMap::numberAllSlots(unsigned shiftLimit) noexcept {
    constexpr Key kHighestBit = Key{1} << (kKeyBits - 1);
    Key differing = 0;
    for (Position position = m_head; position != kNone; position = entryAt(position).next) {
        if (!isIntegerKey(entryAt(position).key)) {
            return false;
        }
        differing |= entryAt(position).key ^ entryAt(m_head).key;
    }
    // Multiples of a power of two differ in higher bits only; the lowest bit marks a key as an integer.
    const int inCommon = std::countr_zero(differing | kHighestBit);
    if (static_cast<unsigned>(inCommon) >= shiftLimit) {
        return false;
    }
    m_numberShift = static_cast<std::uint8_t>(inCommon);
    std::fill_n(m_slots.get(), slotCount(), kNone);
    for (Position position = m_head; position != kNone; position = entryAt(position).next) {
        std::uint32_t& slot = m_slots[numberedSlot(entryAt(position).key)];
        if (slot != kNone) {
            return false;
        }
        slot = position;
    }
    return true;
}

void RubyMap::rebuildIndex(std::size_t slots) {
    // Positions below 4 belong to no segment.
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
    enterAllSlots(kKeyBits);
}

}  // namespace morvel::ruby
