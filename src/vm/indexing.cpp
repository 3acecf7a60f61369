#include "vm/indexing.h"

#include <string>
#include <utility>

#include "morvel/ruby/map.h"
#include "value/memory_limit.h"
#include "value/operators.h"
#include "value/room.h"

namespace morvel::ruby::internal {

namespace {

RubyValue elementOrNil(const RubyArray& elements, std::int64_t index) {
    const auto position = static_cast<std::size_t>(index);
    return position < elements.size() ? elements[position] : RubyValue();
}

RubyValue byteOrNil(const std::string& text, std::int64_t index) {
    const auto position = static_cast<std::size_t>(index);
    return position < text.size() ? byteString(text[position]) : RubyValue();
}

RubyValue entryOrNil(const RubyMap& entries, const RubyValue& key) {
    const RubyValue* found = findMapValue(entries, key);
    return found == nullptr ? RubyValue() : *found;
}

Fault setByte(RubyValue& container, std::int64_t index, const RubyValue& value) {
    const auto position = static_cast<std::size_t>(index);
    if (position >= container.asString().size()) {
        return {"string index is out of range"};
    }
    std::string replacement;
    if (const Fault fault = appendOperand(replacement, value)) {
        return fault;
    }
    if (replacement.empty()) {
        return {"string assignment requires a non-empty replacement"};
    }
    std::string changed = container.asString();
    changed[position] = replacement.front();
    container = RubyValue(std::move(changed));
    return kNoFault;
}

}  // namespace

Fault getElement(const RubyValue& container, const RubyValue& index, RubyValue& result) {
    if (container.isMap()) {
        if (!isMapKey(index)) {
            return kNoMapKey;
        }
        result = entryOrNil(container.asMap(), index);
        return kNoFault;
    }
    if (!index.isNumeric()) {
        return {"array index must be numeric"};
    }
    const std::int64_t position = index.asInteger();
    if (position < 0) {
        return {"array index must be non-negative"};
    }
    if (container.isArray()) {
        result = elementOrNil(container.asArray(), position);
        return kNoFault;
    }
    if (!container.isString()) {
        return {"indexing expects an array, map, or string"};
    }
    result = byteOrNil(container.asString(), position);
    return kNoFault;
}

Fault setElement(RubyValue& container, const RubyValue& index, const RubyValue& value) {
    if (container.isMap()) {
        if (!isMapKey(index)) {
            return kNoMapKey;
        }
        setMapValue(container.asMap(), index) = value;
        return kNoFault;
    }
    if (!index.isNumeric()) {
        return {"index must be numeric"};
    }
    const std::int64_t position = index.asInteger();
    if (position < 0) {
        return {"index must be non-negative"};
    }
    if (container.isString()) {
        return setByte(container, position, value);
    }
    if (!container.isArray()) {
        return {"indexed assignment expects an array, map, or string"};
    }
    storeElement(container.asArray(), static_cast<std::size_t>(position), value);
    return kNoFault;
}

void storeElement(RubyArray& elements, std::size_t index, const RubyValue& value) {
    if (index >= elements.size()) {
        if (index >= elements.capacity()) {
            requireMemory(index, sizeof(RubyValue));
        }
        // The value may live in the array itself and move when the array grows.
        // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
        const RubyValue kept = value;
        if (index >= elements.capacity()) {
            growArray(elements, index + 1);
        }
        elements.resize(index + 1);
        elements[index] = kept;
        return;
    }
    elements[index] = value;
}

RubyValue byteString(char byte) { return std::string(1, byte); }

}  // namespace morvel::ruby::internal
