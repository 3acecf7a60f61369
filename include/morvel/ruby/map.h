// RubyMap: the hash map behind map values. Keeps insertion order.
#pragma once

#include <array>
#include <bit>
#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>

#include "morvel/ruby/value.h"

namespace morvel::ruby {

/// A hash map from byte strings to values that keeps insertion order.
///
/// Overwriting an entry keeps its place; erasing it and storing it again moves it to the end. Look-ups take a
/// std::string_view and allocate nothing. Hashing is seeded at random once per process (SipHash-1-3, Aumasson and
/// Bernstein), so that chosen keys cannot make it slow. Look-up, insertion (amortised) and erasure take constant
/// expected time in any sequence of operations; so does advancing an iterator.
///
/// The interface is that of std::unordered_map<std::string, RubyValue>, with these differences: iteration is in
/// insertion order; iterators are input iterators, which hold the pair that they yield (see Pair); keys are passed as
/// std::string_view; insert_or_assign returns a pair that also converts to bool; erase_if is found by
/// argument-dependent lookup only, not as std::erase_if; and there are no buckets, hash policy, allocators, node
/// handles, merge or equal_range.
///
/// A reference to a stored value stays valid until its entry is erased or the map is cleared, assigned to or destroyed.
/// Storing other keys, moving the map and swapping it keep the reference valid: `m["b"] = m["a"]` is safe. Only two
/// things move the values: shrink_to_fit(), and a script that stores a new key in a map with more than seven eighths of
/// its entries erased, which frees their memory. The same rules hold for iterators, except that moving or swapping the
/// map invalidates them. An iterator whose entry is erased may still be advanced until a key is stored. Entries stored
/// during an iteration are visited last.
///
/// A key that spells an integer in decimal is stored as that integer; this is invisible except in speed.
class RubyMap {
public:
    using key_type = std::string;
    using mapped_type = RubyValue;
    using value_type = std::pair<const std::string, RubyValue>;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;

    /// The pair that iteration yields: a copy of the key and a reference to the stored value. It lives in the iterator
    /// until the iterator is advanced, assigned to or destroyed. A copy of the pair has its own copy of the key, and so
    /// does the pair of a temporary iterator: `const auto& [key, value] = *map.find("x")` is safe.
    template <typename Value>
    struct Pair {
        std::string first;
        Value& second;

        template <std::constructible_from<const std::string&> First, std::constructible_from<Value&> Second>
        operator std::pair<First, Second>() const {
            return std::pair<First, Second>(first, second);
        }
    };

    /// Input iterator over the entries in insertion order.
    template <typename Map, typename Value>
    class BasicIterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Pair<Value>;
        using difference_type = std::ptrdiff_t;
        using reference = Pair<Value>&;
        using pointer = Pair<Value>*;

        BasicIterator() = default;
        BasicIterator(const BasicIterator& other) noexcept : m_map(other.m_map), m_position(other.m_position) {}
        /// Makes a const_iterator from an iterator.
        template <typename OtherMap, typename OtherValue>
        requires(std::same_as<const OtherMap, Map>) BasicIterator(const BasicIterator<OtherMap, OtherValue>& other)
        noexcept : m_map(other.m_map), m_position(other.m_position) {}
        BasicIterator& operator=(const BasicIterator& other) noexcept {
            if (this != &other) {
                m_map = other.m_map;
                m_position = other.m_position;
                m_isCurrent = false;
            }
            return *this;
        }
        ~BasicIterator() = default;

        reference operator*() const& {
            if (!m_isCurrent) {
                // Reuses the memory of the previous key.
                std::string text = m_pair ? std::move(m_pair->first) : std::string();
                Entry& entry = m_map->entryAt(m_position);
                assignKeyText(text, entry.key);
                m_pair.emplace(Pair<Value>{std::move(text), entry.value});
                m_isCurrent = true;
            }
            return *m_pair;
        }
        /// Returns the pair by value, since a temporary iterator is gone before its pair is used.
        value_type operator*() const&& {
            const BasicIterator& self = *this;
            reference pair = *self;
            m_isCurrent = false;
            return std::move(pair);
        }
        pointer operator->() const { return &**this; }
        BasicIterator& operator++() noexcept {
            m_position = m_map->positionAfter(m_position);
            m_isCurrent = false;
            return *this;
        }
        BasicIterator operator++(int) noexcept {
            BasicIterator before = *this;
            ++*this;
            return before;
        }
        friend bool operator==(const BasicIterator& left, const BasicIterator& right) noexcept {
            return left.m_position == right.m_position;
        }

    private:
        friend class RubyMap;
        template <typename OtherMap, typename OtherValue>
        friend class BasicIterator;

        BasicIterator(Map* map, std::uint32_t position) noexcept : m_map(map), m_position(position) {}

        Map* m_map = nullptr;
        std::uint32_t m_position = 0;
        /// True when m_pair belongs to the current position.
        mutable bool m_isCurrent = false;
        mutable std::optional<Pair<Value>> m_pair;
    };

    using iterator = BasicIterator<RubyMap, RubyValue>;
    using const_iterator = BasicIterator<const RubyMap, const RubyValue>;
    using reference = Pair<RubyValue>&;
    using const_reference = Pair<const RubyValue>&;
    struct Assignment;

    RubyMap() noexcept = default;
    /// Makes a map of the entries in the order given; of those with equal keys, it keeps the first.
    RubyMap(std::initializer_list<value_type> entries) : RubyMap() { insert(entries); }
    /// Makes a map of the pairs of a range, in its order; of those with equal keys, it keeps the first.
    template <std::input_iterator Iterator>
    requires(std::constructible_from<value_type, std::iter_reference_t<Iterator>>)
        RubyMap(Iterator first, Iterator last)
        : RubyMap() {
        insert(std::move(first), std::move(last));
    }
    /// Makes a map of copies of the entries, in the iteration order of the argument.
    explicit RubyMap(const std::unordered_map<std::string, RubyValue>& entries);
    RubyMap(const RubyMap& other);
    RubyMap(RubyMap&& other) noexcept;
    RubyMap& operator=(const RubyMap& other);
    RubyMap& operator=(RubyMap&& other) noexcept;
    ~RubyMap();

    /// A copy of the entries in a standard map.
    [[nodiscard]] explicit operator std::unordered_map<std::string, RubyValue>() const;

    [[nodiscard]] std::size_t size() const noexcept { return m_size; }
    [[nodiscard]] bool empty() const noexcept { return m_size == 0; }
    [[nodiscard]] static std::size_t max_size() noexcept { return kMostEntries; }
    /// Erases all entries and frees their memory.
    void clear() noexcept;
    void swap(RubyMap& other) noexcept;
    friend void swap(RubyMap& left, RubyMap& right) noexcept { left.swap(right); }
    /// Makes room for `count` entries in total. Throws std::bad_alloc when there is no memory for them.
    void reserve(std::size_t count);
    /// Frees the memory of erased entries by moving the others. Throws std::bad_alloc, leaving the map as it was, when
    /// there is no memory to move them to.
    void shrink_to_fit();

    [[nodiscard]] iterator begin() noexcept { return {this, m_head}; }
    [[nodiscard]] iterator end() noexcept { return {this, kNone}; }
    [[nodiscard]] const_iterator begin() const noexcept { return {this, m_head}; }
    [[nodiscard]] const_iterator end() const noexcept { return {this, kNone}; }
    [[nodiscard]] const_iterator cbegin() const noexcept { return begin(); }
    [[nodiscard]] const_iterator cend() const noexcept { return end(); }

    /// The entry stored under `key`, or end().
    [[nodiscard]] iterator find(std::string_view key);
    [[nodiscard]] const_iterator find(std::string_view key) const;
    [[nodiscard]] bool contains(std::string_view key) const;
    /// The number of entries stored under `key`, 0 or 1.
    [[nodiscard]] std::size_t count(std::string_view key) const { return contains(key) ? 1 : 0; }
    /// The value stored under `key`. Throws std::out_of_range when there is none.
    [[nodiscard]] RubyValue& at(std::string_view key);
    [[nodiscard]] const RubyValue& at(std::string_view key) const;
    /// The value stored under `key`; stores nil first when there is none.
    RubyValue& operator[](std::string_view key);

    /// Stores a key and its value unless the key is present; returns the key's entry and whether it is new.
    template <typename Entry>
    requires(std::constructible_from<value_type, Entry&&>) std::pair<iterator, bool> insert(Entry&& entry) {
        return emplace(std::forward<Entry>(entry));
    }
    std::pair<iterator, bool> insert(value_type&& entry) { return try_emplace(entry.first, std::move(entry.second)); }
    /// The same; the hint is ignored.
    template <typename Entry>
    requires(std::constructible_from<value_type, Entry&&>) iterator insert(const const_iterator&, Entry&& entry) {
        return emplace(std::forward<Entry>(entry)).first;
    }
    iterator insert(const const_iterator&, value_type&& entry) { return insert(std::move(entry)).first; }
    /// Stores the pairs of a range whose keys are not present yet.
    template <std::input_iterator Iterator>
    requires(std::constructible_from<value_type, std::iter_reference_t<Iterator>>) void insert(Iterator first,
                                                                                               Iterator last) {
        for (; first != last; ++first) {
            emplace(*first);
        }
    }
    void insert(std::initializer_list<value_type> entries) { insert(entries.begin(), entries.end()); }
    /// Stores a pair made from the arguments unless its key is present.
    template <typename... Arguments>
    std::pair<iterator, bool> emplace(Arguments&&... arguments) {
        return insert(value_type(std::forward<Arguments>(arguments)...));
    }
    template <typename... Arguments>
    iterator emplace_hint(const const_iterator&, Arguments&&... arguments) {
        return emplace(std::forward<Arguments>(arguments)...).first;
    }
    /// Stores a value made from the arguments under `key`, or leaves the arguments untouched when the key is present.
    template <typename... Arguments>
    std::pair<iterator, bool> try_emplace(std::string_view key, Arguments&&... arguments);
    template <typename... Arguments>
    iterator try_emplace(const const_iterator&, std::string_view key, Arguments&&... arguments) {
        return try_emplace(key, std::forward<Arguments>(arguments)...).first;
    }
    /// Stores `value` under `key`; returns the key's entry and whether it is new.
    Assignment insert_or_assign(std::string_view key, RubyValue value);
    iterator insert_or_assign(const const_iterator&, std::string_view key, RubyValue value);

    /// Removes the entry of `key`; returns the number of entries removed, 0 or 1.
    std::size_t erase(std::string_view key);
    /// Removes the entry at `position`; returns an iterator to the next one.
    iterator erase(const const_iterator& position);
    iterator erase(const_iterator first, const const_iterator& last);
    /// Removes the entries whose pairs satisfy `predicate`; returns the number of entries removed.
    template <typename Predicate>
    friend std::size_t erase_if(RubyMap& map, Predicate predicate) {
        const std::size_t before = map.size();
        for (iterator entry = map.begin(); entry != map.end();) {
            entry = predicate(*entry) ? map.erase(entry) : std::next(entry);
        }
        return before - map.size();
    }

    /// True when both have the same keys, in any order, with values that the language calls equal. Throws RubyError
    /// "stack overflow" when they nest too deeply for the native stack.
    friend bool operator==(const RubyMap& left, const RubyMap& right);

    /// Pointer to the value stored under `key`, a string or an integer, or null. The hash of a string is computed once
    /// and kept with it.
    [[nodiscard]] RubyValue* findValue(const RubyValue& key);
    /// The value stored under `key`, a string or an integer; stores nil first when there is none. The string is shared,
    /// not copied. Scripts store through this function: in a large map with more than seven eighths of its entries
    /// erased, a new key frees their memory and moves the other values.
    RubyValue& findOrInsert(const RubyValue& key);
    /// Removes the entry of `key`, a string or an integer; returns its value, if there was one.
    std::optional<RubyValue> take(const RubyValue& key);
    /// The same as findValue for a string key. Usually this is a constant that was last found in this very place, here
    /// or in a map that was filled in the same way: one comparison of addresses tells, without reading a byte.
    [[nodiscard]] RubyValue* findText(internal::StringBox* box) noexcept {
        const Position remembered = box->keyPosition;
        if (m_slots == nullptr && remembered <= m_last) [[likely]] {
            Entry& entry = m_few[remembered / (2 * kFirst)].get()[remembered % kFirst];
            if (entry.key == reinterpret_cast<std::uintptr_t>(box)) [[likely]] {
                return &entry.value;
            }
        }
        return valueOf(findTextEntry(box));
    }
    /// The same as findValue for an integer key.
    [[nodiscard]] RubyValue* findInteger(std::int64_t number) noexcept { return valueOf(findIntegerEntry(number)); }
    /// The keys in insertion order, as string values that share their memory with the map where they can.
    [[nodiscard]] RubyArray keyValues() const;
    /// The stored values in insertion order.
    [[nodiscard]] RubyArray entryValues() const;

private:
    /// A key in one word: 0 for an erased entry, an odd number for the integer (key >> 1), else a StringBox pointer
    /// that owns one reference.
    using Key = std::uint64_t;
    static constexpr Key kErased = 0;
    static constexpr unsigned kKeyBits = 64;

    /// The place of an entry, fixed for its lifetime. The first positions are unused, so that the highest bit of a
    /// position determines its segment.
    using Position = std::uint32_t;
    static constexpr Position kNone = 0;
    static constexpr Position kFirst = 4;
    /// A slot needs some bits for the hash beside the position.
    static constexpr std::size_t kMostEntries = std::size_t{1} << 30;

    struct Entry {
        Key key = kErased;
        RubyValue value;
        /// The neighbours in insertion order. An erased entry keeps its `next`, for iterators that still refer to it;
        /// its `previous` becomes a link of the free list: the position that was erased before it.
        Position next = kNone;
        Position previous = kNone;
    };
    struct FreeSegment {
        void operator()(Entry* entries) const noexcept { ::operator delete(entries); }
    };
    /// Memory for entries. The segments double in size and never move.
    using Segment = std::unique_ptr<Entry, FreeSegment>;
    struct NumberedSegment {
        Segment entries;
        /// The address at which position 0 would be.
        std::uintptr_t origin = 0;

        void hold(Segment segment, Position first) noexcept {
            entries = std::move(segment);
            origin = reinterpret_cast<std::uintptr_t>(entries.get()) - std::uintptr_t{first} * sizeof(Entry);
        }
        [[nodiscard]] Entry& entryAt(Position position) const noexcept {
            return *reinterpret_cast<Entry*>(origin + std::uintptr_t{position} * sizeof(Entry));
        }
    };
    struct Probe;

    /// The number of the highest bit of a position.
    [[nodiscard]] static std::size_t highestBit(Position position) noexcept {
        return 31U - static_cast<unsigned>(std::countl_zero(position));
    }
    /// The number of the segment that a position is in.
    [[nodiscard]] static std::size_t segmentOf(Position position) noexcept { return highestBit(position) - 2; }
    [[nodiscard]] Entry& indexedEntry(Position position) const noexcept {
        return m_table[segmentOf(position)].entryAt(position);
    }
    [[nodiscard]] Entry& entryAt(Position position) const noexcept {
        if (m_table != nullptr) {
            return indexedEntry(position);
        }
        const Position second = 2 * kFirst;
        return position < second ? m_few[0].get()[position - kFirst] : m_few[1].get()[position - second];
    }
    [[nodiscard]] Position positionOf(const Entry& entry) const noexcept {
        return entry.previous == kNone ? m_head : entryAt(entry.previous).next;
    }
    /// The next position in insertion order. `position` may be erased, provided that no key was stored since.
    [[nodiscard]] Position positionAfter(Position position) const noexcept {
        if (m_size == 0) {
            return kNone;
        }
        do {
            position = entryAt(position).next;
        } while (position != kNone && entryAt(position).key == kErased);
        return position;
    }
    /// The entry of a map without an index whose key word `matches`, or null.
    template <typename Matches>
    [[nodiscard]] Entry* scan(Matches matches) const noexcept {
        for (const Segment& segment : m_few) {
            Entry* const entries = segment.get();
            if (entries == nullptr) {
                break;
            }
            // All four keys are initialised, even those of unused entries; a map of more than eight has an index.
            if (matches(entries[0].key)) {
                return entries;
            }
            if (matches(entries[1].key)) {
                return entries + 1;
            }
            if (matches(entries[2].key)) {
                return entries + 2;
            }
            if (matches(entries[3].key)) {
                return entries + 3;
            }
        }
        return nullptr;
    }

    static void assignKeyText(std::string& text, Key key);
    static void retainKey(Key key) noexcept;
    static void releaseKey(Key key) noexcept;
    static bool matches(Key stored, const Probe& probe) noexcept;
    static std::uint32_t hashOf(Key key) noexcept;

    static RubyValue* valueOf(Entry* entry) noexcept { return entry == nullptr ? nullptr : &entry->value; }

    // These return the entry of a key, or null. Scripts use the first two; the third takes any key.
    [[nodiscard]] Entry* findTextEntry(internal::StringBox* box) const noexcept;
    [[nodiscard]] Entry* findIntegerEntry(std::int64_t number) const noexcept;
    [[nodiscard]] Entry* findEntry(const Probe& probe) const noexcept;
    [[nodiscard]] Entry* findEqualText(internal::StringBox* box) const noexcept;
    [[nodiscard]] Entry* findHashedInteger(std::int64_t number) const noexcept;
    /// The position of the key word with this hash that `matches`, from the index of a map that is not numbered.
    template <typename Matches>
    [[nodiscard]] Position findHashed(std::uint32_t hash, Matches matches) const noexcept;

    /// The slot of an integer key in a numbered map.
    [[nodiscard]] std::size_t numberedSlot(Key key) const noexcept {
        return static_cast<std::size_t>(key >> m_numberShift) & m_mask;
    }

    [[nodiscard]] std::size_t slotCount() const noexcept { return m_slots == nullptr ? 0 : std::size_t{m_mask} + 1; }
    // For maps that are not numbered.
    void enterSlot(Key key, Position position) noexcept;
    void leaveSlot(Key key, Position position) noexcept;

    void enterAllSlots(unsigned shiftLimit) noexcept;
    [[nodiscard]] bool numberAllSlots(unsigned shiftLimit) noexcept;
    void rebuildIndex(std::size_t slots);

    Entry& append(const Probe& probe);
    /// Appends an entry under a new key and takes over the key's reference. There must be room.
    Entry& link(Key key) noexcept;
    void makeRoom();
    /// Frees the memory of erased entries if there is memory to move the others to.
    void giveBackRoom() noexcept;
    void addSegment(std::size_t segment);
    [[nodiscard]] RubyValue unlink(Entry& entry) noexcept;
    void copyPositions(const RubyMap& other);

    /// The segments of a map without an index.
    std::array<Segment, 2> m_few;
    /// The segments of a map with an index: as many as its slots can point into.
    std::unique_ptr<NumberedSegment[]> m_table;
    /// The index, null while the map is small enough to scan. It uses open addressing in groups of slots. The low bits
    /// of a slot hold a position, as many as the size of the table needs; the bits above hold those of the key's hash,
    /// which rule out most other keys without reading their entries. A group is filled from its first slot on; 0 is a
    /// free slot, 1 a slot of a full group that was given up: the search for a key continues past full groups, so they
    /// stay full until all slots are entered anew. In a numbered map, a slot holds only the position of the one key
    /// that belongs there.
    std::unique_ptr<std::uint32_t[]> m_slots;
    /// The number of slots less 1.
    std::uint32_t m_mask = 0;
    std::uint32_t m_size = 0;
    /// The highest position ever used.
    Position m_last = kFirst - 1;
    Position m_head = kNone;
    Position m_tail = kNone;
    /// The head of the free list: the position erased last and not reused yet.
    Position m_free = kNone;
    std::uint32_t m_givenUpSlots = 0;
    /// True when all keys are integers, each in a slot of its own whose number is in the low bits of the key.
    bool m_isNumbered = false;
    /// The number of low bits that the key words of a numbered map all have in common.
    std::uint8_t m_numberShift = 0;
};

/// The result of insert_or_assign: the entry and whether it is new; as a bool, whether it is new.
struct RubyMap::Assignment : std::pair<iterator, bool> {
    using std::pair<iterator, bool>::pair;
    operator bool() const noexcept { return second; }
};

inline RubyMap::iterator RubyMap::insert_or_assign(const const_iterator&, std::string_view key, RubyValue value) {
    return insert_or_assign(key, std::move(value)).first;
}

template <typename... Arguments>
std::pair<RubyMap::iterator, bool> RubyMap::try_emplace(std::string_view key, Arguments&&... arguments) {
    if (const iterator found = find(key); found != end()) {
        return {found, false};
    }
    return insert_or_assign(key, RubyValue(std::forward<Arguments>(arguments)...));
}

namespace internal {

/// A map, shared by the values that refer to it.
struct MapBox : Box {
    MapBox() = default;
    explicit MapBox(RubyMap content) noexcept : entries(std::move(content)) {}

    RubyMap entries;

    static void* operator new(std::size_t size);
    static void operator delete(void* block) noexcept;
};

}  // namespace internal

}  // namespace morvel::ruby
