#include "value/map_places.h"

namespace morvel::ruby::internal {

RubyValue* MapPlace::findAnew(RubyMap& map, StringBox* key) noexcept {
    RubyMap::Entry* const entry = map.findTextEntry(key);
    if (entry == nullptr) {
        return nullptr;
    }
    m_position = map.positionOf(*entry);
    return &entry->value;
}

}  // namespace morvel::ruby::internal
