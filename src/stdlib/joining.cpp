#include "stdlib/joining.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "value/memory_limit.h"
#include "value/render.h"
#include "value/room.h"

namespace morvel::ruby::internal {

RubyValue joinElements(const BuiltinCall& call, const RubyArray& elements) {
    const std::string_view separator = call.count() > 1 ? std::string_view(requireStringArgument(call, 1)) : "";
    // Reserve the known part of the size at once: growing step by step would need up to three times the memory.
    const std::size_t separators = elements.empty() ? 0 : elements.size() - 1;
    requireMemory(separators, separator.size());
    std::size_t size = separators * separator.size();
    for (const RubyValue& element : elements) {
        // Many elements may share one long string: the sum saturates instead of wrapping around.
        size += std::min(element.isString() ? element.asString().size() : 0, SIZE_MAX - size);
    }
    requireMemory(size, 1);
    std::string text = textWithRoom(size);
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (i > 0) {
            text += separator;
        }
        appendText(text, elements[i]);
    }
    return text;
}

}  // namespace morvel::ruby::internal
