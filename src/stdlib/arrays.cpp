#include "stdlib/arrays.h"

#include <algorithm>
#include <iterator>

#include "platform/large_pages.h"
#include "stdlib/joining.h"
#include "value/memory_limit.h"
#include "value/room.h"

namespace morvel::ruby::internal::builtins {

RubyValue arrayNew(const BuiltinCall& call) {
    if (call.count() == 0) {
        return RubyValue::makeArray();
    }
    const std::int64_t size = requireIntegerArgument(call, 0);
    if (size < 0) {
        failCall(call, "size must be non-negative");
    }
    const auto count = static_cast<std::size_t>(size);
    requireMemory(count, sizeof(RubyValue));
    RubyArray array = arrayWithRoom(count);
    platform::preferLargePages(array.data(), count * sizeof(RubyValue));
    array.resize(count, call.count() > 1 ? call[1] : RubyValue());
    return array;
}

RubyValue arrayPush(const BuiltinCall& call) {
    RubyArray& array = requireArrayArgument(call);
    if (call.count() == 2) {
        appendElement(array, call[1]);
    } else {
        array.insert(array.end(), call.arguments.begin() + 1, call.arguments.end());
    }
    return call[0];
}

RubyValue arrayPop(const BuiltinCall& call) {
    RubyArray& array = requireArrayArgument(call);
    if (call.count() == 1) {
        if (array.empty()) {
            return {};
        }
        RubyValue last = std::move(array.back());
        array.pop_back();
        giveBackRoom(array);
        return last;
    }
    const std::int64_t count = requireIntegerArgument(call, 1);
    if (count < 0) {
        failCall(call, "count must be non-negative");
    }
    const std::size_t removed = std::min<std::size_t>(static_cast<std::size_t>(count), array.size());
    RubyArray tail = arrayWithRoom(removed);
    const auto first = array.end() - static_cast<std::ptrdiff_t>(removed);
    tail.assign(std::make_move_iterator(first), std::make_move_iterator(array.end()));
    array.erase(first, array.end());
    giveBackRoom(array);
    return tail;
}

RubyValue arrayShift(const BuiltinCall& call) {
    RubyArray& array = requireArrayArgument(call);
    if (array.empty()) {
        return {};
    }
    RubyValue first = std::move(array.front());
    array.erase(array.begin());
    giveBackRoom(array);
    return first;
}

RubyValue arrayUnshift(const BuiltinCall& call) {
    RubyArray& array = requireArrayArgument(call);
    array.insert(array.begin(), call.arguments.begin() + 1, call.arguments.end());
    return call[0];
}

RubyValue arraySlice(const BuiltinCall& call) {
    const RubyArray& array = call[0].asArray();
    std::int64_t start = requireIntegerArgument(call, 1);
    const auto size = static_cast<std::int64_t>(array.size());
    std::int64_t count = call.count() > 2 ? requireIntegerArgument(call, 2) : size;
    if (start < 0) {
        start += size;
    }
    if (start < 0 || start >= size || count < 0) {
        return RubyValue::makeArray();
    }
    count = std::min(count, size - start);
    return copyElements(array.begin() + start, array.begin() + start + count);
}

RubyValue arrayReverse(const BuiltinCall& call) {
    const RubyArray& array = call[0].asArray();
    return copyElements(array.rbegin(), array.rend());
}

RubyValue arrayJoin(const BuiltinCall& call) {
    const RubyArray& array = call[0].asArray();
    return joinElements(call, array);
}

}  // namespace morvel::ruby::internal::builtins
