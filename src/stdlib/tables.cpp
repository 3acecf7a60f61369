#include "stdlib/tables.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "stdlib/joining.h"
#include "stdlib/sorting.h"
#include "value/operators.h"
#include "value/room.h"
#include "vm/calling.h"
#include "vm/impl.h"

namespace morvel::ruby::internal::builtins {

namespace {

/// The element or entry of argument 0 with the index or key in argument 1, or null.
const RubyValue* findInTable(const BuiltinCall& call) {
    const RubyValue& table = call[0];
    if (table.isMap()) {
        return findMapValue(table.asMap(), call[1]);
    }
    if (!table.isArray()) {
        failCall(call, "expects an array or map");
    }
    const RubyArray& array = table.asArray();
    const std::int64_t index = requireIntegerArgument(call, 1);
    const bool isThere = index >= 0 && static_cast<std::size_t>(index) < array.size();
    return isThere ? &array[static_cast<std::size_t>(index)] : nullptr;
}

RubyValue defaultArgument(const BuiltinCall& call) { return call.count() > 2 ? call[2] : RubyValue(); }

}  // namespace

RubyValue mapNew(const BuiltinCall&) { return RubyValue::makeMap(); }

RubyValue mapDelete(const BuiltinCall& call) {
    if (!call[0].isMap()) {
        failCall(call, "expects a map");
    }
    RubyMap& map = sharedMap(call[0]);
    std::optional<RubyValue> removed = takeMapValue(map, call[1]);
    return removed ? *std::move(removed) : defaultArgument(call);
}

RubyValue mapMerge(const BuiltinCall& call) {
    const RubyMap& first = call[0].asMap();
    const RubyMap& second = call[1].asMap();
    RubyMap merged(first);
    for (const auto& [key, value] : second) {
        merged.insert_or_assign(key, value);
    }
    return merged;
}

RubyValue mapClone(const BuiltinCall& call) { return call[0].asMap(); }

RubyValue tableClone(const BuiltinCall& call) {
    if (call[0].isArray()) {
        return copyElements(call[0].asArray().begin(), call[0].asArray().end());
    }
    if (!call[0].isMap()) {
        failCall(call, "expects an array or map");
    }
    return call[0].asMap();
}

RubyValue tableClear(const BuiltinCall& call) {
    if (call[0].isArray()) {
        // Empty the array before releasing its elements, in case that runs code that looks at it.
        const RubyArray dying(std::move(sharedArray(call[0])));
        sharedArray(call[0]).clear();
        return call[0];
    }
    if (!call[0].isMap()) {
        failCall(call, "expects an array or map");
    }
    sharedMap(call[0]).clear();
    return call[0];
}

RubyValue keys(const BuiltinCall& call) {
    if (call[0].isArray()) {
        RubyArray indices = arrayWithRoom(call[0].asArray().size());
        for (std::size_t i = 0; i < call[0].asArray().size(); ++i) {
            indices.emplace_back(i);
        }
        return indices;
    }
    if (!call[0].isMap()) {
        failCall(call, "expects an array or map");
    }
    RubyArray texts = call[0].asMap().keyValues();
    sortElements(texts);
    return texts;
}

RubyValue values(const BuiltinCall& call) {
    if (call[0].isArray()) {
        return copyElements(call[0].asArray().begin(), call[0].asArray().end());
    }
    if (!call[0].isMap()) {
        failCall(call, "expects an array or map");
    }
    return call[0].asMap().entryValues();
}

RubyValue tableGet(const BuiltinCall& call) {
    const RubyValue* found = findInTable(call);
    return found == nullptr ? defaultArgument(call) : *found;
}

RubyValue tableHasKey(const BuiltinCall& call) { return findInTable(call) != nullptr; }

RubyValue tableSetBuiltin(const BuiltinCall& call) { return tableSet(call.arguments.begin(), call.count()); }

RubyValue tableInsert(const BuiltinCall& call) {
    RubyArray& array = requireArrayArgument(call);
    if (call.count() == 2) {
        appendElement(array, call[1]);
        return {};
    }
    const std::int64_t index = requireIntegerArgument(call, 1);
    if (index < 0 || static_cast<std::size_t>(index) > array.size()) {
        failCall(call, "index is out of range");
    }
    array.insert(array.begin() + index, call[2]);
    return {};
}

RubyValue tableRemove(const BuiltinCall& call) {
    RubyArray& array = requireArrayArgument(call);
    if (array.empty()) {
        return {};
    }
    const std::int64_t last = static_cast<std::int64_t>(array.size()) - 1;
    const std::int64_t index = call.count() > 1 ? requireIntegerArgument(call, 1) : last;
    if (index < 0 || index > last) {
        failCall(call, "index is out of range");
    }
    RubyValue removed = std::move(array[static_cast<std::size_t>(index)]);
    array.erase(array.begin() + index);
    giveBackRoom(array);
    return removed;
}

RubyValue tableSort(const BuiltinCall& call) {
    sortElements(requireArrayArgument(call));
    return {};
}

RubyValue tableConcat(const BuiltinCall& call) { return joinElements(call, requireArrayArgument(call)); }

}  // namespace morvel::ruby::internal::builtins
