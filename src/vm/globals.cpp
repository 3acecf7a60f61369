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

std::size_t GlobalTable::ensureSlot(const std::string& name) {
    const auto found = m_slots.find(name);
    if (found != m_slots.end()) {
        return found->second;
    }
    // Room comes first, so that a failed allocation leaves the three tables in step.
    makeRoom(m_values);
    makeRoom(m_names);
    const std::size_t slot = m_values.size();
    const auto entry = m_slots.emplace(name, slot).first;
    m_names.push_back(&entry->first);
    m_values.push_back(makeUndefined());
    return slot;
}

std::size_t GlobalTable::findSlot(const std::string& name) const {
    const auto found = m_slots.find(name);
    return found == m_slots.end() ? kNoSlot : found->second;
}

void GlobalTable::release() noexcept {
    bool found = true;
    while (found) {
        found = false;
        for (std::size_t slot = m_values.size(); slot-- > 0;) {
            RubyValue& value = m_values[slot];
            if (value.type != kUndefinedType && !value.isNil()) {
                found = true;
                value = RubyValue();
            }
        }
    }
}

}  // namespace morvel::ruby::internal
