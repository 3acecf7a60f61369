#include "vm/indexing.h"

#include "morvel/ruby/map.h"
#include "value/memory_limit.h"
#include "value/operators.h"

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

void storeByte(RubyValue& container, std::int64_t index, const RubyValue& value, const Program& program,
               unsigned line) {
    const auto position = static_cast<std::size_t>(index);
    if (position >= container.asString().size()) {
        runtimeError(program, line, "string index is out of range");
    }
    const std::string replacement = withOverflowLocated(program, line, [&] { return value.toString(); });
    if (replacement.empty()) {
        runtimeError(program, line, "string assignment requires a non-empty replacement");
    }
    std::string changed = container.asString();
    changed[position] = replacement.front();
    container = RubyValue(std::move(changed));
}

}  // namespace

RubyValue loadIndex(const RubyValue& container, const RubyValue& index, const Program& program, unsigned line) {
    if (container.isMap()) {
        return entryOrNil(container.asMap(), index);
    }
    if (!index.isNumeric()) {
        runtimeError(program, line, "array index must be numeric");
    }
    const std::int64_t position = index.asInteger();
    if (position < 0) {
        runtimeError(program, line, "array index must be non-negative");
    }
    if (container.isArray()) {
        return elementOrNil(container.asArray(), position);
    }
    if (!container.isString()) {
        runtimeError(program, line, "indexing expects an array, map, or string");
    }
    return byteOrNil(container.asString(), position);
}

void storeIndex(RubyValue& container, const RubyValue& index, const RubyValue& value, const Program& program,
                unsigned line) {
    if (container.isMap()) {
        setMapValue(container.asMap(), index) = value;
        return;
    }
    if (!index.isNumeric()) {
        runtimeError(program, line, "index must be numeric");
    }
    const std::int64_t position = index.asInteger();
    if (position < 0) {
        runtimeError(program, line, "index must be non-negative");
    }
    if (container.isString()) {
        storeByte(container, position, value, program, line);
    } else if (container.isArray()) {
        storeElement(container.asArray(), static_cast<std::size_t>(position), value);
    } else {
        runtimeError(program, line, "indexed assignment expects an array, map, or string");
    }
}

void storeElement(RubyArray& elements, std::size_t index, const RubyValue& value) {
    if (index >= elements.size()) {
        requireMemory(index, sizeof(RubyValue));
        // The value may live in the array itself and move when the array grows.
        // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
        const RubyValue kept = value;
        elements.resize(index + 1);
        elements[index] = kept;
        return;
    }
    elements[index] = value;
}

RubyValue byteString(char byte) { return std::string(1, byte); }

}  // namespace morvel::ruby::internal
