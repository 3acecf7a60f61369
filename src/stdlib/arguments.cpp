#include "stdlib/arguments.h"

#include <cmath>

#include "value/numbers.h"
#include "value/operators.h"

namespace morvel::ruby::internal {

const RubyValue& requireArgument(const BuiltinCall& call, std::size_t index) {
    if (index >= call.count()) {
        throw RubyError(std::string(call.name) + " is missing argument " + std::to_string(index + 1));
    }
    return call[index];
}

const RubyValue& requireNumber(const BuiltinCall& call, std::size_t index) {
    const RubyValue& argument = requireArgument(call, index);
    if (!argument.isNumeric()) {
        failCall(call, "expects a numeric argument");
    }
    return argument;
}

const RubyValue& requireString(const BuiltinCall& call, std::size_t index) {
    const RubyValue& argument = requireArgument(call, index);
    if (!argument.isString()) {
        failCall(call, "expects a string argument");
    }
    return argument;
}

RubyArray& requireArrayArgument(const BuiltinCall& call) {
    const RubyValue& argument = requireArgument(call, 0);
    if (!argument.isArray()) {
        failCall(call, "expects an array");
    }
    return sharedArray(argument);
}

RubyArray& sharedArray(const RubyValue& value) { return const_cast<RubyValue&>(value).asArray(); }

RubyMap& sharedMap(const RubyValue& value) { return const_cast<RubyValue&>(value).asMap(); }

RubyValue numericResult(double number) {
    // A shortcut for small results, which most are.
    constexpr double kSmall = 0x1p52;
    if (number > -kSmall && number < kSmall) {
        const auto truncated = static_cast<std::int64_t>(number);
        if (static_cast<double>(truncated) == number) {
            return truncated;
        }
    }
    constexpr double kTwoTo63 = 9223372036854775808.0;
    const double whole = std::round(number);
    const bool inRange = number >= -kTwoTo63 && number <= kTwoTo63;
    if (inRange && std::fabs(number - whole) <= kZeroTolerance) {
        return truncateToInteger(whole);
    }
    return number;
}

void failCall(const BuiltinCall& call, const char* message) { throw RubyError(std::string(call.name) + " " + message); }

}  // namespace morvel::ruby::internal
