// The insertion-ordered hash map.
#include "morvel/ruby/map.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <limits>
#include <new>
#include <optional>
#include <stdexcept>
#include <utility>

#include "value/hash.h"
#include "value/large_pages.h"
#include "value/numbers.h"

namespace morvel::ruby {

namespace {

using internal::StringBox;

// Up to this many entries a scan is faster than an index.
constexpr std::size_t kScannedEntries = 8;
// Entry indices must leave slots some bits for the hash.
constexpr std::size_t kMostEntries = std::size_t{1} << 30;
// Integers of this many bits fit into a key word beside its tag.
constexpr std::int64_t kLargestIntegerKey = (std::int64_t{1} << 62) - 1;

bool fitsKey(std::int64_t number) noexcept { return number >= -kLargestIntegerKey && number <= kLargestIntegerKey; }

bool isIntegerKey(std::uint64_t key) noexcept { return (key & 1) != 0; }

std::uint64_t integerKey(std::int64_t number) noexcept { return (static_cast<std::uint64_t>(number) << 1) | 1; }

std::int64_t integerOf(std::uint64_t key) noexcept { return static_cast<std::int64_t>(key) >> 1; }

StringBox* boxOf(std::uint64_t key) noexcept { return reinterpret_cast<StringBox*>(static_cast<std::uintptr_t>(key)); }

std::uint64_t keyOf(StringBox* box) noexcept { return reinterpret_cast<std::uintptr_t>(box); }

// The integer whose decimal text is exactly `text`, so that the text and the integer stand for each other.
std::optional<std::int64_t> canonicalInteger(std::string_view text) noexcept {
    constexpr std::size_t kMostCharacters = 20;
    if (text.empty() || text.size() > kMostCharacters || (text[0] != '-' && (text[0] < '0' || text[0] > '9'))) {
        return std::nullopt;
    }
    const bool negative = text[0] == '-';
    const std::string_view digits = text.substr(negative ? 1 : 0);
    if (digits.empty() || (digits[0] == '0' && (negative || digits.size() > 1))) {
        return std::nullopt;
    }
    std::int64_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || !fitsKey(number)) {
        return std::nullopt;
    }
    return number;
}

// The part of a slot that holds bits of the hash; the rest, below, holds the entry index + 1.
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

std::uint64_t hashOfBox(const StringBox& box) noexcept {
    if (box.hash == 0) {
        box.hash = internal::hashText(box.text);
    }
    return box.hash;
}

}  // namespace

/// A key on its way into the map: an integer key word, or a text that may have a box to share.
struct RubyMap::Probe {
    explicit Probe(std::string_view keyText) noexcept : text(keyText) { recognizeInteger(); }

    explicit Probe(StringBox* keyBox) noexcept : box(keyBox), text(keyBox->text) { recognizeInteger(); }

    explicit Probe(const RubyValue& keyValue) noexcept {
        if (!keyValue.isInteger()) {
            box = static_cast<StringBox*>(keyValue.data.box);
            text = box->text;
            recognizeInteger();
        } else if (fitsKey(keyValue.data.integer)) {
            integer = integerKey(keyValue.data.integer);
        } else {
            const char* const end =
                std::to_chars(digits.data(), digits.data() + digits.size(), keyValue.data.integer).ptr;
            text = {digits.data(), static_cast<std::size_t>(end - digits.data())};
        }
    }
    Probe(const Probe&) = delete;
    Probe& operator=(const Probe&) = delete;

    void recognizeInteger() noexcept {
        if (const auto number = canonicalInteger(text)) {
            integer = integerKey(*number);
        }
    }

    [[nodiscard]] std::uint64_t hash() const noexcept {
        if (integer != kErased) {
            return internal::hashInteger(integerOf(integer));
        }
        return box != nullptr ? hashOfBox(*box) : internal::hashText(text);
    }

    /// The key word to store; owns one reference when it is a box.
    [[nodiscard]] Key makeKey() const {
        if (integer != kErased) {
            return integer;
        }
        if (box != nullptr) {
            ++box->references;
            return keyOf(box);
        }
        return keyOf(new StringBox(std::string(text)));
    }

    Key integer = kErased;
    StringBox* box = nullptr;
    std::string_view text;
    /// Holds the text of an integer that is too large for a key word.
    std::array<char, 24> digits;
};

// The delegation makes an object of it before anything can fail, so that its destructor runs then.
RubyMap::RubyMap(const std::unordered_map<std::string, RubyValue>& entries) : RubyMap() {
    for (const auto& [key, value] : entries) {
        insert_or_assign(key, value);
    }
}

RubyMap::RubyMap(const RubyMap& other)
    : m_entries(other.m_entries), m_slots(other.m_slots), m_size(other.m_size), m_isNumbered(other.m_isNumbered) {
    for (const Entry& entry : m_entries) {
        if (entry.key != kErased && !isIntegerKey(entry.key)) {
            ++boxOf(entry.key)->references;
        }
    }
}

RubyMap::RubyMap(RubyMap&& other) noexcept
    : m_entries(std::move(other.m_entries)),
      m_slots(std::move(other.m_slots)),
      m_size(std::exchange(other.m_size, 0)),
      m_isNumbered(std::exchange(other.m_isNumbered, false)) {
    other.m_entries.clear();
    other.m_slots.clear();
}

RubyMap& RubyMap::operator=(const RubyMap& other) {
    if (this != &other) {
        *this = RubyMap(other);
    }
    return *this;
}

RubyMap& RubyMap::operator=(RubyMap&& other) noexcept {
    if (this != &other) {
        RubyMap taken(std::move(other));
        std::swap(m_entries, taken.m_entries);
        std::swap(m_slots, taken.m_slots);
        std::swap(m_size, taken.m_size);
        std::swap(m_isNumbered, taken.m_isNumbered);
    }
    return *this;
}

RubyMap::~RubyMap() { releaseKeys(); }

RubyMap::operator std::unordered_map<std::string, RubyValue>() const {
    std::unordered_map<std::string, RubyValue> copy;
    for (const auto& [key, value] : *this) {
        copy.emplace(key, value);
    }
    return copy;
}

void RubyMap::clear() noexcept {
    // The map is empty before the first value goes, in case its destructor looks at the map.
    const RubyMap dying(std::move(*this));
}

template <typename Matches>
std::size_t RubyMap::findIndexed(std::uint64_t hash, Matches matches) const noexcept {
    const std::size_t mask = m_slots.size() - 1;
    const auto tag = tagOf(hash, mask);
    for (std::size_t position = groupStart(hash, mask);; position = groupStart(position + kGroupSlots, mask)) {
        const SlotGroup group(m_slots.data() + position);
        for (unsigned bits = group.matching(tag, mask); bits != 0; bits &= bits - 1) {
            const std::uint32_t slot = m_slots[position + static_cast<std::size_t>(std::countr_zero(bits))];
            const std::size_t place = slot & mask;
            // A free slot may have the tag too.
            if (place != 0 && matches(m_entries[place - 1].key)) {
                return place - 1;
            }
        }
        if (!group.isFull()) {
            return m_entries.size();
        }
    }
}

RubyMap::iterator RubyMap::find(std::string_view key) {
    const std::size_t index = findIndex(Probe(key));
    return {this, index};
}

RubyMap::const_iterator RubyMap::find(std::string_view key) const {
    const std::size_t index = findIndex(Probe(key));
    return {this, index};
}

bool RubyMap::contains(std::string_view key) const { return findIndex(Probe(key)) != m_entries.size(); }

RubyValue& RubyMap::at(std::string_view key) {
    const std::size_t index = findIndex(Probe(key));
    if (index == m_entries.size()) {
        throw std::out_of_range("RubyMap::at");
    }
    return m_entries[index].value;
}

const RubyValue& RubyMap::at(std::string_view key) const { return const_cast<RubyMap*>(this)->at(key); }

RubyValue& RubyMap::operator[](std::string_view key) { return findOrAppend(Probe(key)); }

bool RubyMap::insert_or_assign(std::string_view key, RubyValue value) {
    const std::size_t before = m_size;
    findOrAppend(Probe(key)) = std::move(value);
    return m_size != before;
}

std::size_t RubyMap::erase(std::string_view key) { return eraseProbe(Probe(key)); }

RubyValue* RubyMap::findValue(const RubyValue& key) {
    if (key.isString()) {
        return findText(static_cast<StringBox*>(key.data.box));
    }
    return findInteger(key.data.integer);
}

RubyValue& RubyMap::findOrInsert(const RubyValue& key) { return findOrAppend(Probe(key)); }

RubyValue* RubyMap::findEqualText(StringBox* box) noexcept {
    if (m_slots.empty() || m_isNumbered || canonicalInteger(box->text)) {
        return findProbe(Probe(box));
    }
    // All texts that the index knows have their hash with them.
    const std::uint64_t hash = hashOfBox(*box);
    const std::size_t index = findIndexed(hash, [box, hash](Key stored) {
        if (stored == keyOf(box)) {
            return true;
        }
        return stored != kErased && !isIntegerKey(stored) && boxOf(stored)->hash == hash &&
               boxOf(stored)->text == box->text;
    });
    return index == m_entries.size() ? nullptr : &m_entries[index].value;
}

RubyValue* RubyMap::findProbe(const Probe& probe) noexcept {
    const std::size_t index = findIndex(probe);
    return index == m_entries.size() ? nullptr : &m_entries[index].value;
}

// Apart, so that the common case needs no memory on the stack.
[[gnu::noinline]] RubyValue* RubyMap::findLargeInteger(std::int64_t number) noexcept {
    return findProbe(Probe(RubyValue(number)));
}

RubyValue* RubyMap::findInteger(std::int64_t number) noexcept {
    if (m_isNumbered) {
        const std::size_t index = fitsKey(number) ? findNumbered(integerKey(number)) : m_entries.size();
        return index == m_entries.size() ? nullptr : &m_entries[index].value;
    }
    if (!fitsKey(number)) [[unlikely]] {
        return findLargeInteger(number);
    }
    const Key wanted = integerKey(number);
    if (!m_slots.empty()) {
        const std::size_t index =
            findIndexed(internal::hashInteger(number), [wanted](Key stored) { return stored == wanted; });
        return index == m_entries.size() ? nullptr : &m_entries[index].value;
    }
    const auto found =
        std::find_if(m_entries.begin(), m_entries.end(), [wanted](const Entry& entry) { return entry.key == wanted; });
    return found == m_entries.end() ? nullptr : &found->value;
}

bool RubyMap::numbersSlot(Key key) const noexcept {
    return isIntegerKey(key) && static_cast<std::uint64_t>(integerOf(key)) < m_slots.size();
}

std::size_t RubyMap::findNumbered(Key key) const noexcept {
    if (numbersSlot(key)) {
        const std::uint32_t place = m_slots[static_cast<std::size_t>(integerOf(key))];
        // An erased entry leaves its slot as it was.
        if (place != 0 && m_entries[place - 1].key == key) {
            return place - 1;
        }
    }
    return m_entries.size();
}

void RubyMap::enterSlot(Key key, std::size_t index) noexcept {
    const auto place = static_cast<std::uint32_t>(index + 1);
    if (m_isNumbered) {
        m_slots[static_cast<std::size_t>(integerOf(key))] = place;
        return;
    }
    const std::uint64_t hash = hashOf(key);
    const std::size_t mask = m_slots.size() - 1;
    std::size_t position = groupStart(hash, mask);
    while (m_slots[position] != 0) {
        position = (position + 1) & mask;
    }
    m_slots[position] = tagOf(hash, mask) | place;
}

void RubyMap::enterSlots() noexcept {
    for (std::size_t index = 0; index < m_entries.size(); ++index) {
        if (m_entries[index].key != kErased) {
            enterSlot(m_entries[index].key, index);
        }
    }
}

RubyArray RubyMap::keyValues() const {
    RubyArray keys;
    keys.reserve(m_size);
    for (const Entry& entry : m_entries) {
        if (entry.key == kErased) {
            continue;
        }
        if (isIntegerKey(entry.key)) {
            keys.emplace_back(keyText(entry.key));
            continue;
        }
        RubyValue& key = keys.emplace_back();
        key.type = RubyValue::Type::String;
        key.data.box = boxOf(entry.key);
        ++key.data.box->references;
    }
    return keys;
}

RubyArray RubyMap::entryValues() const {
    RubyArray values;
    values.reserve(m_size);
    for (const Entry& entry : m_entries) {
        if (entry.key != kErased) {
            values.push_back(entry.value);
        }
    }
    return values;
}

std::string RubyMap::keyText(Key key) {
    if (!isIntegerKey(key)) {
        return boxOf(key)->text;
    }
    std::string text;
    internal::appendInteger(text, integerOf(key));
    return text;
}

void RubyMap::releaseKey(Key key) noexcept {
    if (key != kErased && !isIntegerKey(key) && --boxOf(key)->references == 0) {
        delete boxOf(key);
    }
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

std::uint64_t RubyMap::hashOf(Key key) noexcept {
    return isIntegerKey(key) ? internal::hashInteger(integerOf(key)) : hashOfBox(*boxOf(key));
}

std::size_t RubyMap::findIndex(const Probe& probe) const noexcept {
    if (m_slots.empty()) {
        std::size_t index = 0;
        while (index < m_entries.size() && !matches(m_entries[index].key, probe)) {
            ++index;
        }
        return index;
    }
    if (m_isNumbered) {
        return findNumbered(probe.integer);
    }
    return findIndexed(probe.hash(), [&probe](Key stored) { return matches(stored, probe); });
}

RubyValue& RubyMap::findOrAppend(const Probe& probe) {
    const std::size_t index = findIndex(probe);
    return index == m_entries.size() ? append(probe) : m_entries[index].value;
}

RubyValue& RubyMap::append(const Probe& probe) {
    prepareAppend(probe);
    const Key key = probe.makeKey();
    // From here on nothing can fail: room for the entry and its slot is there.
    m_entries.push_back({key, RubyValue()});
    ++m_size;
    if (!m_slots.empty()) {
        enterSlot(key, m_entries.size() - 1);
    }
    return m_entries.back().value;
}

std::size_t RubyMap::eraseProbe(const Probe& probe) noexcept {
    const std::size_t index = findIndex(probe);
    if (index == m_entries.size()) {
        return 0;
    }
    // The slot keeps pointing at the erased entry, which matches nothing, so that probing goes on past it.
    Entry& entry = m_entries[index];
    const RubyValue dying(std::move(entry.value));
    releaseKey(entry.key);
    entry.key = kErased;
    --m_size;
    return 1;
}

void RubyMap::prepareAppend(const Probe& probe) {
    // Not already when the last entry is erased: iterators stay valid until a key is stored.
    if (m_size == 0 && !m_entries.empty()) {
        m_entries.clear();
        m_slots.clear();
        m_isNumbered = false;
    }
    const bool hasRoom =
        m_entries.size() < m_entries.capacity() &&
        (m_slots.empty() ? m_entries.size() < kScannedEntries : (m_entries.size() + 1) * 4 <= m_slots.size() * 3);
    if (!hasRoom) {
        makeRoom();
    }
    if (m_isNumbered && !numbersSlot(probe.integer)) {
        m_isNumbered = false;
        std::fill(m_slots.begin(), m_slots.end(), 0);
        enterSlots();
    }
}

void RubyMap::makeRoom() {
    if (m_entries.size() >= kMostEntries) {
        throw std::bad_alloc();
    }
    if (m_size < m_entries.size() / 2) {
        compact();
    }
    if (m_entries.size() == m_entries.capacity()) {
        std::vector<Entry> larger;
        larger.reserve(std::max<std::size_t>(4, m_entries.size() * 2));
        internal::preferLargePages(larger.data(), larger.capacity() * sizeof(Entry));
        larger.insert(larger.end(), std::make_move_iterator(m_entries.begin()),
                      std::make_move_iterator(m_entries.end()));
        m_entries = std::move(larger);
    }
    const std::size_t wanted = m_entries.size() + 1;
    if (wanted > kScannedEntries && wanted * 4 > m_slots.size() * 3) {
        rebuildIndex(std::bit_ceil(wanted * 2));
    }
}

void RubyMap::rebuildIndex(std::size_t slots) {
    std::vector<std::uint32_t> fresh;
    fresh.reserve(slots);
    internal::preferLargePages(fresh.data(), slots * sizeof(std::uint32_t));
    fresh.resize(slots);
    m_slots.swap(fresh);
    m_isNumbered = std::all_of(m_entries.begin(), m_entries.end(),
                               [this](const Entry& entry) { return entry.key == kErased || numbersSlot(entry.key); });
    enterSlots();
}

void RubyMap::compact() noexcept {
    const auto erased = [](const Entry& entry) { return entry.key == kErased; };
    m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(), erased), m_entries.end());
    std::fill(m_slots.begin(), m_slots.end(), 0);
    if (!m_slots.empty()) {
        enterSlots();
    }
}

void RubyMap::releaseKeys() noexcept {
    for (const Entry& entry : m_entries) {
        releaseKey(entry.key);
    }
}

}  // namespace morvel::ruby
