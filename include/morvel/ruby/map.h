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

namespace internal {
class MapPlace;
}

/// A hash map from byte strings to values that keeps insertion order.
///
/// Overwriting an entry keeps its place; erasing it and storing it again moves it to the end. Look-ups take a
/// std::string_view and allocate nothing. Hashing is seeded at random once per process (SipHash-1-3, Aumasson and
/// Bernstein), so that chosen keys cannot make it slow. Look-up, insertion and erasing take constant expected time,
/// insertion amortised, in whatever pattern they follow each other; so does a step of an iterator.
///
/// The interface is that of std::unordered_map<std::string, RubyValue>, with these differences: iteration is in
/// insertion order; iterators are input iterators, which hold the pair that they give (see Pair); keys are given as
/// std::string_view; insert_or_assign gives a pair that also converts to bool; erase_if is found by argument-dependent
/// lookup only, without std::; and there are no buckets, hash policy, allocators, node handles, merge or equal_range.
///
/// A reference to a stored value stays valid until its entry is erased or the map is cleared, assigned to or destroyed.
/// Storing other keys, moving the map and swapping it leave it valid: `m["b"] = m["a"]` is safe. Two things move the
/// values: shrink_to_fit(), and a script that stores a new key in a map of which more than seven eighths are erased,
/// which gives the memory back. The same goes for iterators, but moving or swapping the map invalidates them. An
/// iterator whose entry is erased may still be advanced until a key is stored. Entries that are stored during an
/// iteration come last in it.
///
/// A key that is the decimal text of an integer is kept as that integer; this is invisible except in speed.
class RubyMap {
public:
    using key_type = std::string;
    using mapped_type = RubyValue;
    using value_type = std::pair<const std::string, RubyValue>;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;

    /// What iteration yields: a copy of the key text and the stored value itself. It lives in the iterator, until that
    /// is advanced, assigned to or destroyed. A copy of it has a text of its own, and so has what an iterator without a
    /// name gives: `const auto& [key, value] = *map.find("x")`.
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
        /// A read-only iterator from one that allows changes.
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
                // The text of the entry before lends its memory.
                std::string text = m_pair ? std::move(m_pair->first) : std::string();
                Entry& entry = m_map->entryAt(m_position);
                assignKeyText(text, entry.key);
                m_pair.emplace(Pair<Value>{std::move(text), entry.value});
                m_isCurrent = true;
            }
            return *m_pair;
        }
        /// A temporary iterator is gone before its pair is used.
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
        /// True when the pair is that of the current position.
        mutable bool m_isCurrent = false;
        mutable std::optional<Pair<Value>> m_pair;
    };

    using iterator = BasicIterator<RubyMap, RubyValue>;
    using const_iterator = BasicIterator<const RubyMap, const RubyValue>;
    using reference = Pair<RubyValue>&;
    using const_reference = Pair<const RubyValue>&;
    struct Assignment;

    RubyMap() noexcept = default;
    /// Holds the entries in the order given; of those with equal keys the first.
    RubyMap(std::initializer_list<value_type> entries) : RubyMap() { insert(entries); }
    /// Holds the pairs of a range in its order; of those with equal keys the first.
    template <std::input_iterator Iterator>
    requires(std::constructible_from<value_type, std::iter_reference_t<Iterator>>)
        RubyMap(Iterator first, Iterator last)
        : RubyMap() {
        insert(std::move(first), std::move(last));
    }
    /// Holds copies of the entries, in the iteration order of the argument.
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
    /// Erases all entries and gives their memory back.
    void clear() noexcept;
    void swap(RubyMap& other) noexcept;
    friend void swap(RubyMap& left, RubyMap& right) noexcept { left.swap(right); }
    /// Makes room for `count` entries in all. Throws std::bad_alloc when there is no memory for them.
    void reserve(std::size_t count);
    /// Gives back the memory of erased entries, moving the others. Throws std::bad_alloc, with the map as it was, when
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

    /// Stores a pair of key and value unless the key is there; gives its entry and whether it is new.
    template <typename Entry>
    requires(std::constructible_from<value_type, Entry&&>) std::pair<iterator, bool> insert(Entry&& entry) {
        return emplace(std::forward<Entry>(entry));
    }
    std::pair<iterator, bool> insert(value_type&& entry) { return try_emplace(entry.first, std::move(entry.second)); }
    /// The same; the hint is not needed.
    template <typename Entry>
    requires(std::constructible_from<value_type, Entry&&>) iterator insert(const const_iterator&, Entry&& entry) {
        return emplace(std::forward<Entry>(entry)).first;
    }
    iterator insert(const const_iterator&, value_type&& entry) { return insert(std::move(entry)).first; }
    /// Stores the pairs of a range whose keys are not there.
    template <std::input_iterator Iterator>
    requires(std::constructible_from<value_type, std::iter_reference_t<Iterator>>) void insert(Iterator first,
                                                                                               Iterator last) {
        for (; first != last; ++first) {
            emplace(*first);
        }
    }
    void insert(std::initializer_list<value_type> entries) { insert(entries.begin(), entries.end()); }
    /// Stores a pair made from the arguments unless its key is there.
    template <typename... Arguments>
    std::pair<iterator, bool> emplace(Arguments&&... arguments) {
        return insert(value_type(std::forward<Arguments>(arguments)...));
    }
    template <typename... Arguments>
    iterator emplace_hint(const const_iterator&, Arguments&&... arguments) {
        return emplace(std::forward<Arguments>(arguments)...).first;
    }
    /// Stores a value made from the arguments under `key`; makes none and leaves the arguments alone when it is there.
    template <typename... Arguments>
    std::pair<iterator, bool> try_emplace(std::string_view key, Arguments&&... arguments);
    template <typename... Arguments>
    iterator try_emplace(const const_iterator&, std::string_view key, Arguments&&... arguments) {
        return try_emplace(key, std::forward<Arguments>(arguments)...).first;
    }
    /// Stores `value` under `key`; gives its entry and whether the key is new.
    Assignment insert_or_assign(std::string_view key, RubyValue value);
    iterator insert_or_assign(const const_iterator&, std::string_view key, RubyValue value);

    /// Removes the entry of `key`; the number of entries removed, 0 or 1.
    std::size_t erase(std::string_view key);
    /// Removes the entry that an iterator stands at; gives the entry behind it.
    iterator erase(const const_iterator& position);
    iterator erase(const_iterator first, const const_iterator& last);
    /// Removes the entries for whose pairs `predicate` is true; the number of entries removed.
    template <typename Predicate>
    friend std::size_t erase_if(RubyMap& map, Predicate predicate) {
        const std::size_t before = map.size();
        for (iterator entry = map.begin(); entry != map.end();) {
            entry = predicate(*entry) ? map.erase(entry) : std::next(entry);
        }
        return before - map.size();
    }

    /// True when both have the same keys with values that are equal in the language, in any order. Throws RubyError
    /// "stack overflow" for nests too deep for the native stack.
    friend bool operator==(const RubyMap& left, const RubyMap& right);

    /// Pointer to the value stored under a key given as a value of kind string or integer, or null. A string value's
    /// hash is computed once and kept with it.
    [[nodiscard]] RubyValue* findValue(const RubyValue& key);
    /// The value stored under a key given as a value of kind string or integer; stores nil first when there is none.
    /// The string is shared, not copied. This is how scripts store: when more than seven eighths of a large map are
    /// erased, a new key makes it give their memory back, and the other values move.
    RubyValue& findOrInsert(const RubyValue& key);
    /// Removes the entry of a key given as a value of kind string or integer; its value, or nothing.
    std::optional<RubyValue> take(const RubyValue& key);
    /// The same as findValue for a key that is a string. Mostly a key is looked up through the very string it was
    /// stored with: in a small map comparing addresses answers that without looking at a byte.
    [[nodiscard]] RubyValue* findText(internal::StringBox* box) noexcept {
        if (m_slots == nullptr) {
            const auto word = reinterpret_cast<std::uintptr_t>(box);
            // cppcheck-suppress CastIntegerToAddressAtReturn; the comparison gives a bool
            if (Entry* const entry = scan([word](Key key) { return key == word; })) {
                return &entry->value;
            }
        }
        return valueOf(findTextEntry(box));
    }
    /// The same for a key that is an integer.
    [[nodiscard]] RubyValue* findInteger(std::int64_t number) noexcept { return valueOf(findIntegerEntry(number)); }
    /// The keys in insertion order, as string values that share their text with the map where they can.
    [[nodiscard]] RubyArray keyValues() const;
    /// The stored values in insertion order.
    [[nodiscard]] RubyArray entryValues() const;

private:
    friend class internal::MapPlace;

    /// A key in one word: 0 for an erased entry, an odd number for the integer (key >> 1), else a StringBox pointer
    /// that owns one reference.
    using Key = std::uint64_t;
    static constexpr Key kErased = 0;
    static constexpr unsigned kKeyBits = 64;

    /// Where an entry is, for as long as it lives. The first positions are not used: so the highest bit of a position
    /// numbers the segment that it is in.
    using Position = std::uint32_t;
    static constexpr Position kNone = 0;
    static constexpr Position kFirst = 4;
    /// Positions must leave slots some bits for the hash.
    static constexpr std::size_t kMostEntries = std::size_t{1} << 30;

    struct Entry {
        Key key = kErased;
        RubyValue value;
        /// In insertion order. An erased entry keeps what came after it, for iterators that are still there; in place
        /// of what came before it is the position that was erased before it.
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
        /// Where position 0 would be.
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
    /// The next position in insertion order, also from one that was erased since the last key was stored.
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
            // All four of them are there, used or erased; a map with more than eight has an index.
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

    // The finders give the entry of a key, or null. The first two are those of scripts; the third takes any key.
    [[nodiscard]] Entry* findTextEntry(internal::StringBox* box) const noexcept;
    [[nodiscard]] Entry* findIntegerEntry(std::int64_t number) const noexcept;
    [[nodiscard]] Entry* findEntry(const Probe& probe) const noexcept;
    [[nodiscard]] Entry* findEqualText(internal::StringBox* box) const noexcept;
    [[nodiscard]] Entry* findHashedInteger(std::int64_t number) const noexcept;
    /// The position of the key word that has this hash and `matches`, by the index of a map that is not numbered.
    template <typename Matches>
    [[nodiscard]] Position findHashed(std::uint32_t hash, Matches matches) const noexcept;

    /// The slot of an integer key in a numbered map.
    [[nodiscard]] std::size_t numberedSlot(Key key) const noexcept {
        return static_cast<std::size_t>(key >> m_numberShift) & m_mask;
    }

    [[nodiscard]] std::size_t slotCount() const noexcept { return m_slots == nullptr ? 0 : std::size_t{m_mask} + 1; }
    // Of a map that is not numbered.
    void enterSlot(Key key, Position position) noexcept;
    void leaveSlot(Key key, Position position) noexcept;

    void enterAllSlots(unsigned shiftLimit) noexcept;
    [[nodiscard]] bool numberAllSlots(unsigned shiftLimit) noexcept;
    void rebuildIndex(std::size_t slots);

    Entry& append(const Probe& probe);
    /// Appends an entry under a key that is not there and takes over the key's reference. There must be room.
    Entry& link(Key key) noexcept;
    void makeRoom();
    /// Gives back the memory of erased entries where there is memory to move the others to.
    void giveBackRoom() noexcept;
    void addSegment(std::size_t segment);
    [[nodiscard]] RubyValue unlink(Entry& entry) noexcept;
    void copyPositions(const RubyMap& other);

    /// The segments of a map without an index.
    std::array<Segment, 2> m_few;
    /// The segments of a map with an index: as many as its slots can point into.
    std::unique_ptr<NumberedSegment[]> m_table;
    /// The index, null while the map is small enough to scan. Open addressing in groups of slots: the position in the
    /// low bits, as many as the size of the table needs, and in the bits above them those of the key's hash, so that
    /// most other keys are told apart without a look at their entries. A group is filled from its first slot on; 0 is a
    /// free slot, 1 a slot of a full group that was given up: the search for a key goes on past full groups, so they
    /// stay full until all slots are entered anew. In a numbered map, a slot holds just the position of the one key
    /// that it belongs to.
    std::unique_ptr<std::uint32_t[]> m_slots;
    /// The number of slots less 1.
    std::uint32_t m_mask = 0;
    std::uint32_t m_size = 0;
    /// The highest position that was ever used.
    Position m_last = kFirst - 1;
    Position m_head = kNone;
    Position m_tail = kNone;
    /// The position that was erased last and is not in use again.
    Position m_free = kNone;
    std::uint32_t m_givenUpSlots = 0;
    /// True when all keys are integers whose low bits are the numbers of slots, a different one for each.
    bool m_isNumbered = false;
    /// The number of low bits of a key word that all keys of a numbered map have in common.
    std::uint8_t m_numberShift = 0;
};

/// What insert_or_assign gives: the entry and whether it is new; as a bool, whether it is new.
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
