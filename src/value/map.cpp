// The insertion-ordered hash map: its entries and their order.
#include "morvel/ruby/map.h"

#include <algorithm>
#include <bit>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <utility>

#include "platform/large_pages.h"
#include "value/map_probe.h"
#include "value/numbers.h"
#include "value/room.h"

namespace morvel::ruby {

using internal::boxOf;
using internal::integerOf;
using internal::isIntegerKey;

namespace {

// Up to this many entries a scan is faster than an index.
constexpr std::size_t kScannedEntries = 8;
// Three quarters of them hold more entries than a scan covers, and a slot has enough position bits for those entries.
// With 16, the map would need a larger index soon after the first.
constexpr std::size_t kFewestSlots = 32;
// Fewer erased entries are not worth freeing: they take one or two KiB, less than a page.
constexpr std::size_t kWorthShrinking = 64;

}  // namespace

// Delegating completes the object before anything can fail, so that a failure runs the destructor.
RubyMap::RubyMap(const std::unordered_map<std::string, RubyValue>& entries) : RubyMap() {
    for (const auto& [key, value] : entries) {
        insert_or_assign(key, value);
    }
}

RubyMap::RubyMap(const RubyMap& other) : RubyMap() {
    // Copying position by position is fast unless many entries are erased; then only the live ones are copied.
    if (other.m_last - (kFirst - 1) <= 2 * other.m_size) {
        copyPositions(other);
        return;
    }
    reserve(other.m_size);
    for (Position position = other.m_head; position != kNone; position = other.entryAt(position).next) {
        const Entry& entry = other.entryAt(position);
        retainKey(entry.key);
        link(entry.key).value = entry.value;
    }
}

RubyMap::RubyMap(RubyMap&& other) noexcept : RubyMap() { swap(other); }

RubyMap& RubyMap::operator=(const RubyMap& other) {
    if (this != &other) {
        *this = RubyMap(other);
    }
    return *this;
}

RubyMap& RubyMap::operator=(RubyMap&& other) noexcept {
    if (this != &other) {
        RubyMap taken(std::move(other));
        swap(taken);
    }
    return *this;
}

RubyMap::~RubyMap() {
    for (Position first = kFirst; first <= m_last; first *= 2) {
        Entry* const entries = &entryAt(first);
        const Position count = std::min(first, m_last - first + 1);
        for (Entry* entry = entries; entry != entries + count; ++entry) {
            releaseKey(entry->key);
            std::destroy_at(entry);
        }
    }
}

RubyMap::operator std::unordered_map<std::string, RubyValue>() const { return {begin(), end()}; }

void RubyMap::clear() noexcept {
    // Empty the map before releasing the first value, in case the release looks at the map.
    const RubyMap dying(std::move(*this));
}

void RubyMap::swap(RubyMap& other) noexcept {
    m_few.swap(other.m_few);
    m_table.swap(other.m_table);
    m_slots.swap(other.m_slots);
    std::swap(m_mask, other.m_mask);
    std::swap(m_size, other.m_size);
    std::swap(m_last, other.m_last);
    std::swap(m_head, other.m_head);
    std::swap(m_tail, other.m_tail);
    std::swap(m_free, other.m_free);
    std::swap(m_givenUpSlots, other.m_givenUpSlots);
    std::swap(m_isNumbered, other.m_isNumbered);
    std::swap(m_numberShift, other.m_numberShift);
}

void RubyMap::reserve(std::size_t count) {
    if (count > kMostEntries) {
        throw std::bad_alloc();
    }
    if (count > kScannedEntries && count * 4 > slotCount() * 3) {
        rebuildIndex(std::max(kFewestSlots, std::bit_ceil(count + count / 3 + 1)));
    }
    std::size_t segment = 0;
    for (std::size_t room = 0; room < count; room += std::size_t{kFirst} << segment, ++segment) {
        addSegment(segment);
    }
}

void RubyMap::shrink_to_fit() {
    RubyMap fresh;
    fresh.reserve(m_size);
    for (Position position = m_head; position != kNone; position = entryAt(position).next) {
        Entry& entry = entryAt(position);
        fresh.link(std::exchange(entry.key, kErased)).value = std::move(entry.value);
    }
    swap(fresh);
}

RubyMap::iterator RubyMap::find(std::string_view key) {
    const Entry* const entry = findEntry(Probe(key));
    return {this, entry == nullptr ? kNone : positionOf(*entry)};
}

RubyMap::const_iterator RubyMap::find(std::string_view key) const { return const_cast<RubyMap*>(this)->find(key); }

bool RubyMap::contains(std::string_view key) const { return findEntry(Probe(key)) != nullptr; }

RubyValue& RubyMap::at(std::string_view key) {
    Entry* const entry = findEntry(Probe(key));
    if (entry == nullptr) {
        throw std::out_of_range("RubyMap::at");
    }
    return entry->value;
}

const RubyValue& RubyMap::at(std::string_view key) const { return const_cast<RubyMap*>(this)->at(key); }

RubyValue& RubyMap::operator[](std::string_view key) {
    const Probe probe(key);
    Entry* const entry = findEntry(probe);
    return (entry == nullptr ? append(probe) : *entry).value;
}

RubyMap::Assignment RubyMap::insert_or_assign(std::string_view key, RubyValue value) {
    const Probe probe(key);
    Entry* const entry = findEntry(probe);
    Entry& stored = entry == nullptr ? append(probe) : *entry;
    const iterator position(this, positionOf(stored));
    stored.value = std::move(value);
    return {position, entry == nullptr};
}

std::size_t RubyMap::erase(std::string_view key) {
    Entry* const entry = findEntry(Probe(key));
    if (entry == nullptr) {
        return 0;
    }
    const RubyValue dying = unlink(*entry);
    return 1;
}

RubyMap::iterator RubyMap::erase(const const_iterator& position) {
    const iterator next(this, positionAfter(position.m_position));
    const RubyValue dying = unlink(entryAt(position.m_position));
    return next;
}

RubyMap::iterator RubyMap::erase(const_iterator first, const const_iterator& last) {
    while (first != last) {
        first = erase(first);
    }
    return {this, last.m_position};
}

RubyValue& RubyMap::findOrInsert(const RubyValue& key) {
    if (RubyValue* const found = findValue(key)) {
        return *found;
    }
    if (m_last > kWorthShrinking && m_last / 8 > m_size) {
        giveBackRoom();
    }
    if (key.isInteger() && internal::fitsKey(key.data.integer)) {
        makeRoom();
        return link(internal::integerKey(key.data.integer)).value;
    }
    return append(Probe(key)).value;
}

void RubyMap::giveBackRoom() noexcept {
    try {
        shrink_to_fit();
    } catch (const std::bad_alloc&) {
        // The map stays usable as it is.
        return;
    }
}

std::optional<RubyValue> RubyMap::take(const RubyValue& key) {
    Entry* const entry = key.isString() ? findTextEntry(static_cast<internal::StringBox*>(key.data.box))
                                        : findIntegerEntry(key.data.integer);
    return entry == nullptr ? std::nullopt : std::optional(unlink(*entry));
}

RubyArray RubyMap::keyValues() const {
    RubyArray keys = internal::arrayWithRoom(m_size);
    for (Position position = m_head; position != kNone; position = entryAt(position).next) {
        const Key word = entryAt(position).key;
        if (isIntegerKey(word)) {
            std::string text;
            assignKeyText(text, word);
            keys.emplace_back(std::move(text));
            continue;
        }
        RubyValue& key = keys.emplace_back();
        key.type = RubyValue::Type::String;
        key.data.box = boxOf(word);
        ++key.data.box->references;
    }
    return keys;
}

RubyArray RubyMap::entryValues() const {
    RubyArray values = internal::arrayWithRoom(m_size);
    for (Position position = m_head; position != kNone; position = entryAt(position).next) {
        values.push_back(entryAt(position).value);
    }
    return values;
}

void RubyMap::assignKeyText(std::string& text, Key key) {
    if (!isIntegerKey(key)) {
        text = boxOf(key)->text;
        return;
    }
    text.clear();
    internal::appendInteger(text, integerOf(key));
}

void RubyMap::retainKey(Key key) noexcept {
    if (key != kErased && !isIntegerKey(key)) {
        ++boxOf(key)->references;
    }
}

void RubyMap::releaseKey(Key key) noexcept {
    if (key != kErased && !isIntegerKey(key) && --boxOf(key)->references == 0) {
        delete boxOf(key);
    }
}

[[gnu::noinline]] RubyMap::Entry& RubyMap::append(const Probe& probe) {
    makeRoom();
    return link(probe.makeKey());
}

// Cannot fail: there is room for the entry and its slot.
RubyMap::Entry& RubyMap::link(Key key) noexcept {
    const bool isReused = m_free != kNone;
    const Position position = isReused ? m_free : ++m_last;
    Entry& entry = entryAt(position);
    if (isReused) {
        m_free = entry.previous;
    } else {
        std::construct_at(&entry);
    }
    entry.key = key;
    entry.next = kNone;
    entry.previous = m_tail;
    (m_tail == kNone ? m_head : entryAt(m_tail).next) = position;
    m_tail = position;
    ++m_size;
    if (m_slots != nullptr) {
        if (!m_isNumbered) {
            enterSlot(key, position);
        } else if (isIntegerKey(key) && m_slots[numberedSlot(key)] == kNone) {
            m_slots[numberedSlot(key)] = position;
        } else {
            // Enters all keys anew, this one included. The step between numbers may only get smaller, so that it cannot
            // change back and forth as keys come and go.
            enterAllSlots(m_numberShift);
        }
    }
    return entry;
}

void RubyMap::makeRoom() {
    if (m_slots == nullptr) {
        if (m_size == kScannedEntries) {
            rebuildIndex(kFewestSlots);
        }
    } else if ((std::size_t{m_size} + 1) * 4 > slotCount() * 3) {
        if (m_size >= kMostEntries) {
            throw std::bad_alloc();
        }
        // Doubling means that over all growth, an entry is entered twice on average.
        rebuildIndex(slotCount() * 2);
    } else if (m_givenUpSlots > slotCount() / 16) {
        enterAllSlots(kKeyBits);
    }
    // A power of two is the first position of a segment.
    if (m_free == kNone && (m_last & (m_last + 1)) == 0) {
        addSegment(segmentOf(m_last + 1));
    }
}

void RubyMap::addSegment(std::size_t segment) {
    if ((m_table == nullptr ? m_few[segment] : m_table[segment].entries) != nullptr) {
        return;
    }
    const Position count = kFirst << segment;
    Segment entries(static_cast<Entry*>(::operator new (std::size_t{count} * sizeof(Entry))));
    platform::preferLargePages(entries.get(), std::size_t{count} * sizeof(Entry));
    if (segment < m_few.size()) {
        // A scan reads the keys of unused entries too.
        std::uninitialized_value_construct_n(entries.get(), count);
    }
    if (m_table == nullptr) {
        m_few[segment] = std::move(entries);
    } else {
        m_table[segment].hold(std::move(entries), count);
    }
}

RubyValue RubyMap::unlink(Entry& entry) noexcept {
    const Position position = positionOf(entry);
    if (m_isNumbered) {
        m_slots[numberedSlot(entry.key)] = kNone;
    } else if (m_slots != nullptr) {
        leaveSlot(entry.key, position);
    }
    (entry.previous == kNone ? m_head : entryAt(entry.previous).next) = entry.next;
    (entry.next == kNone ? m_tail : entryAt(entry.next).previous) = entry.previous;
    RubyValue value = std::move(entry.value);
    releaseKey(std::exchange(entry.key, kErased));
    entry.previous = std::exchange(m_free, position);
    --m_size;
    if (m_size == 0 && m_slots != nullptr) {
        // A large map frees its memory when its last entry is erased.
        const RubyMap emptied(std::move(*this));
    }
    return value;
}

void RubyMap::copyPositions(const RubyMap& other) {
    if (other.m_slots != nullptr) {
        rebuildIndex(other.slotCount());
        std::copy_n(other.m_slots.get(), slotCount(), m_slots.get());
    }
    for (Position first = kFirst; first <= other.m_last; first *= 2) {
        addSegment(segmentOf(first));
        const Entry* const from = &other.entryAt(first);
        Entry* const to = &entryAt(first);
        const Position count = std::min(first, other.m_last - first + 1);
        for (Position i = 0; i < count; ++i) {
            retainKey(from[i].key);
            std::construct_at(to + i, from[i]);
        }
        m_last = first + count - 1;
    }
    m_size = other.m_size;
    m_head = other.m_head;
    m_tail = other.m_tail;
    m_free = other.m_free;
    m_givenUpSlots = other.m_givenUpSlots;
    m_isNumbered = other.m_isNumbered;
    m_numberShift = other.m_numberShift;
}

}  // namespace morvel::ruby
