// Look-ups that remember where a key was: maps filled in the same order hold it at the same position.
#pragma once

#include "morvel/ruby/map.h"
#include "value/map_probe.h"

namespace morvel::ruby::internal {

/// Remembers where one place of a program last found its constant key. Entries are numbered as they are stored, so maps
/// filled in the same order, as records are, all hold the key at the same position.
class MapPlace {
public:
    /// The value stored under `key`, or null. Usually one comparison of addresses finds it; otherwise `key` is looked
    /// up and its position remembered.
    [[nodiscard]] RubyValue* find(RubyMap& map, StringBox* key) noexcept {
        if (m_position >= RubyMap::kFirst && m_position <= map.m_last) [[likely]] {
            RubyMap::Entry& entry = map.entryAt(m_position);
            if (isKey(entry.key, *key)) [[likely]] {
                return &entry.value;
            }
        }
        return findAnew(map, key);
    }

private:
    static bool isKey(RubyMap::Key stored, const StringBox& key) noexcept {
        if (stored == keyOf(const_cast<StringBox*>(&key))) [[likely]] {
            return true;
        }
        return stored != RubyMap::kErased && !isIntegerKey(stored) && keyHashOf(*boxOf(stored)) == keyHashOf(key) &&
               boxOf(stored)->text == key.text;
    }

    RubyValue* findAnew(RubyMap& map, StringBox* key) noexcept;

    RubyMap::Position m_position = RubyMap::kNone;
};

}  // namespace morvel::ruby::internal
