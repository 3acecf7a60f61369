// A call of a built-in, and the checks of its arguments.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "morvel/ruby/vm.h"

namespace morvel::ruby::internal {

/// A call as a built-in receives it. The argument count has been checked against the registration table.
struct BuiltinCall {
    /// The registered name, which begins every message.
    const char* name;
    RubyVM& vm;
    RubyArguments arguments;

    [[nodiscard]] std::size_t count() const noexcept { return arguments.size(); }
    /// The argument at 0-based `index`, which must be below count().
    [[nodiscard]] const RubyValue& operator[](std::size_t index) const noexcept { return arguments.begin()[index]; }
};

// Checks of single arguments, by 0-based index. When there is no such argument, each fails with "NAME is missing
// argument N", counted from 1.

const RubyValue& requireArgument(const BuiltinCall& call, std::size_t index);
/// The argument, an integer, a float or a boolean; fails with "NAME expects a numeric argument".
[[nodiscard]] const RubyValue& requireNumber(const BuiltinCall& call, std::size_t index);

/// The argument as an integer; fails with "NAME expects a numeric argument".
[[nodiscard]] inline std::int64_t requireIntegerArgument(const BuiltinCall& call, std::size_t index) {
    if (index < call.count() && call[index].isInteger()) {
        return call[index].data.integer;
    }
    return requireNumber(call, index).asInteger();
}

/// The argument as a double; fails with "NAME expects a numeric argument".
[[nodiscard]] inline double requireNumericArgument(const BuiltinCall& call, std::size_t index) {
    if (index < call.count() && call[index].isFloat()) {
        return call[index].data.floating;
    }
    if (index < call.count() && call[index].isInteger()) {
        return static_cast<double>(call[index].data.integer);
    }
    return requireNumber(call, index).asFloat();
}

/// The argument, a string; fails with "NAME expects a string argument".
[[nodiscard]] const RubyValue& requireString(const BuiltinCall& call, std::size_t index);

/// The bytes of a string argument; fails with "NAME expects a string argument".
[[nodiscard]] inline const std::string& requireStringArgument(const BuiltinCall& call, std::size_t index) {
    if (index < call.count() && call[index].isString()) {
        return static_cast<const StringBox*>(call[index].data.box)->text;
    }
    return requireString(call, index).asString();
}

/// Argument 0 as an array; fails with "NAME expects an array".
[[nodiscard]] RubyArray& requireArrayArgument(const BuiltinCall& call);

/// The container behind an array or map value, which any holder of a copy may change. Fails like asArray and asMap.
[[nodiscard]] RubyArray& sharedArray(const RubyValue& value);
[[nodiscard]] RubyMap& sharedMap(const RubyValue& value);

/// To be called after removing elements: frees most of the memory of a large array that has become mostly empty. Takes
/// amortised constant time over removals and additions.
inline void giveBackRoom(RubyArray& array) noexcept {
    constexpr std::size_t kLarge = std::size_t{1} << 16;
    if (array.capacity() > kLarge && array.size() < array.capacity() / 4) [[unlikely]] {
        array.shrink_to_fit();
    }
}

/// An integer when `number` is whole (within the double epsilon) and in the 64-bit range, else the float.
[[nodiscard]] RubyValue numericResult(double number);

/// Throws RubyError "NAME MESSAGE", with the name of the call.
[[noreturn]] void failCall(const BuiltinCall& call, const char* message);

}  // namespace morvel::ruby::internal
