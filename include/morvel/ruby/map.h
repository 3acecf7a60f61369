// RubyMap: the hash map behind map values. Keeps insertion order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "morvel/ruby/value.h"

namespace morvel::ruby {

/// A hash map from byte strings to values that keeps insertion order.
///
/// Overwriting an entry keeps its place; erasing it and storing it again moves it to the end. The interface follows
/// std::unordered_map, except that iteration gives pairs by value of the key text and a reference to the stored value.
/// Look-ups take a std::string_view and allocate nothing. Hashing is seeded at random once per process (SipHash-1-3,
/// Aumasson and Bernstein), so that chosen keys cannot make it slow. Insertion and look-up take constant expected
/// time; erasing keeps the order and is constant amortised.
///
/// A key that is the decimal text of an integer is kept as that integer; this is invisible except in speed.
class RubyMap {
public:
    /// What iteration yields: the key text and the stored value.
    template <typename Value>
    struct Pair {
        std::string first;
        Value& second;
    };

    /// Forward iterator over the entries in insertion order. Storing a new key invalidates it.
    template <typename Map, typename Value>
    class BasicIterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Pair<Value>;
        using difference_type = std::ptrdiff_t;
        using reference = Pair<Value>;

        /// Lets `it->second` work although the pair is made on the fly.
        struct Arrow {
            Pair<Value> pair;
            Pair<Value>* operator->() { return &pair; }
        };
        using pointer = Arrow;

        BasicIterator() = default;
        BasicIterator(Map* map, std::size_t index) : m_map(map), m_index(index) { skipErased(); }

        reference operator*() const {
            return {RubyMap::keyText(m_map->m_entries[m_index].key), m_map->m_entries[m_index].value};
        }
        pointer operator->() const { return {**this}; }
        BasicIterator& operator++() {
            ++m_index;
            skipErased();
            return *this;
        }
        BasicIterator operator++(int) {
            BasicIterator before = *this;
            ++*this;
            return before;
        }
        bool operator==(const BasicIterator& other) const noexcept { return m_index == other.m_index; }

    private:
        friend class RubyMap;

        void skipErased() {
            while (m_index < m_map->m_entries.size() && m_map->m_entries[m_index].key == kErased) {
                ++m_index;
            }
        }

        Map* m_map = nullptr;
        std::size_t m_index = 0;
    };

    using iterator = BasicIterator<RubyMap, RubyValue>;
    using const_iterator = BasicIterator<const RubyMap, const RubyValue>;

    RubyMap() noexcept = default;
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
    void clear() noexcept;

    [[nodiscard]] iterator begin() { return {this, 0}; }
    [[nodiscard]] iterator end() { return {this, m_entries.size()}; }
    [[nodiscard]] const_iterator begin() const { return {this, 0}; }
    [[nodiscard]] const_iterator end() const { return {this, m_entries.size()}; }

    /// The entry stored under `key`, or end().
    [[nodiscard]] iterator find(std::string_view key);
    [[nodiscard]] const_iterator find(std::string_view key) const;
    [[nodiscard]] bool contains(std::string_view key) const;
    /// The value stored under `key`. Throws std::out_of_range when there is none.
    [[nodiscard]] RubyValue& at(std::string_view key);
    [[nodiscard]] const RubyValue& at(std::string_view key) const;
    /// The value stored under `key`; stores nil first when there is none.
    RubyValue& operator[](std::string_view key);
    /// Stores `value` under `key`; true when the key is new.
    bool insert_or_assign(std::string_view key, RubyValue value);
    /// Removes the entry of `key`; the number of entries removed, 0 or 1.
    std::size_t erase(std::string_view key);

    /// Pointer to the value stored under a key given as a value of kind string or integer, or null. A string value's
    /// hash is computed once and kept with it.
    [[nodiscard]] RubyValue* findValue(const RubyValue& key);
    /// The value stored under a key given as a value of kind string or integer; stores nil first when there is none.
    /// The string is shared, not copied.
    RubyValue& findOrInsert(const RubyValue& key);
    /// The same for a key that is a string. Mostly a key is looked up through the very string it was stored with: in a
    /// small map comparing addresses answers that without looking at a byte.
    [[nodiscard]] RubyValue* findText(internal::StringBox* box) noexcept {
        if (m_slots.empty()) {
            for (Entry& entry : m_entries) {
                if (entry.key == reinterpret_cast<std::uintptr_t>(box)) {
                    return &entry.value;
                }
            }
        }
        return findEqualText(box);
    }
    /// The same for a key that is an integer.
    [[nodiscard]] RubyValue* findInteger(std::int64_t number) noexcept;
    /// The keys in insertion order, as string values that share their text with the map where they can.
    [[nodiscard]] RubyArray keyValues() const;
    /// The stored values in insertion order.
    [[nodiscard]] RubyArray entryValues() const;

private:
    /// A key in one word: 0 for an erased entry, an odd number for the integer (key >> 1), else a StringBox pointer
    /// that owns one reference.
    using Key = std::uint64_t;
    static constexpr Key kErased = 0;

    struct Entry {
        Key key;
        RubyValue value;
    };
    struct Probe;

    static std::string keyText(Key key);
    static void releaseKey(Key key) noexcept;
    static bool matches(Key stored, const Probe& probe) noexcept;
    [[nodiscard]] RubyValue* findEqualText(internal::StringBox* box) noexcept;
    [[nodiscard]] RubyValue* findProbe(const Probe& probe) noexcept;
    [[nodiscard]] RubyValue* findLargeInteger(std::int64_t number) noexcept;
    /// The index of the entry whose key word has this hash and `matches`, looked up through the index; the number of
    /// entries when there is none.
    template <typename Matches>
    [[nodiscard]] std::size_t findIndexed(std::uint64_t hash, Matches matches) const noexcept;
    static std::uint64_t hashOf(Key key) noexcept;
    /// True for the integers that number a slot.
    [[nodiscard]] bool numbersSlot(Key key) const noexcept;
    /// The index of the entry with this key in a map whose slots are numbered by keys; the number of entries when there
    /// is none.
    [[nodiscard]] std::size_t findNumbered(Key key) const noexcept;
    void enterSlot(Key key, std::size_t index) noexcept;
    void enterSlots() noexcept;

    [[nodiscard]] std::size_t findIndex(const Probe& probe) const noexcept;
    RubyValue& findOrAppend(const Probe& probe);
    RubyValue& append(const Probe& probe);
    std::size_t eraseProbe(const Probe& probe) noexcept;
    void prepareAppend(const Probe& probe);
    void makeRoom();
    void rebuildIndex(std::size_t slots);
    void compact() noexcept;
    void releaseKeys() noexcept;

    std::vector<Entry> m_entries;
    /// Open addressing in groups of slots: entry index + 1 in the low bits, as many as the size of the table needs, and
    /// in the bits above them those of the key's hash, so that most other keys are told apart without a look at their
    /// entries. 0 for a free slot. Empty while the map is small enough to scan. When every key is the number of a slot,
    /// each entry's index + 1 is in just that slot, and `m_isNumbered` is set.
    std::vector<std::uint32_t> m_slots;
    std::uint32_t m_size = 0;
    bool m_isNumbered = false;
};

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
