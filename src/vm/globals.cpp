#include "vm/globals.h"

#include <algorithm>

namespace morvel::ruby::internal {

namespace {

template <typename Element>
void makeRoom(std::vector<Element>& elements) {
    if (elements.size() == elements.capacity()) {
        elements.reserve(std::max<std::size_t>(16, elements.size() * 2));
    }
}

}  // namespace

GlobalTable::GlobalTable() { m_blocks.push_back(makeZeroedArray<RubyValue>(kBlockSlots)); }

GlobalTable::~GlobalTable() {
    for (std::size_t slot = size(); slot-- > 0;) {
        valueAt(slot) = RubyValue();
    }
}

std::size_t GlobalTable::ensureSlot(const std::string& name) {
    const auto found = m_slots.find(name);
    if (found != m_slots.end()) {
        return found->second;
    }
    if (m_free.empty()) {
        addSlot();
    }
    const std::size_t slot = m_free.back();
    m_names[slot] = &m_slots.emplace(name, slot).first->first;
    m_free.pop_back();
    return slot;
}

void GlobalTable::addSlot() {
    // Room comes first, so that a failed allocation leaves the tables in step.
    makeRoom(m_names);
    makeRoom(m_mentions);
    m_free.reserve(m_names.capacity());
    const std::size_t slot = size();
    if (slot == m_blocks.size() * kBlockSlots) {
        m_blocks.push_back(makeZeroedArray<RubyValue>(kBlockSlots));
    }
    m_free.push_back(slot);
    m_names.push_back(nullptr);
    m_mentions.push_back(0);
    setValue(slot, makeUndefined());
}

std::size_t GlobalTable::mention(const std::string& name) {
    const std::size_t slot = ensureSlot(name);
    ++m_mentions[slot];
    return slot;
}

void GlobalTable::endMention(std::size_t slot) noexcept {
    --m_mentions[slot];
    if (m_mentions[slot] == 0 && !isDefined(slot)) {
        m_slots.erase(m_slots.find(*m_names[slot]));
        m_names[slot] = nullptr;
        m_free.push_back(slot);
    }
}

std::size_t GlobalTable::findSlot(const std::string& name) const {
    const auto found = m_slots.find(name);
    return found == m_slots.end() ? kNoSlot : found->second;
}

void GlobalTable::release() noexcept {
    bool found = true;
    while (found) {
        found = false;
        for (std::size_t slot = size(); slot-- > 0;) {
            RubyValue& value = valueAt(slot);
            if (value.type != kUndefinedType && !value.isNil()) {
                found = true;
                value = RubyValue();
            }
        }
    }
}

}  // namespace morvel::ruby::internal
