#include "stdlib/core.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <optional>
#include <string>

#include "stdlib/numbers_from_text.h"
#include "value/memory_limit.h"
#include "value/render.h"
#include "value/room.h"
#include "vm/calling.h"
#include "vm/errors.h"
#include "vm/impl.h"

namespace morvel::ruby::internal::builtins {

namespace {

// Takes a complete rendering, so that a value that fails to render prints nothing.
void writeOutput(const std::string& text) {
    std::cout.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (!std::cout) {
        std::cout.clear();
        throw RubyError("failed to write to standard output");
    }
}

std::optional<int> requireBase(const BuiltinCall& call) {
    if (call.count() < 2) {
        return std::nullopt;
    }
    const std::int64_t base = requireIntegerArgument(call, 1);
    if (base < 2 || base > 36) {
        failCall(call, "base must be between 2 and 36");
    }
    return static_cast<int>(base);
}

RubyValue integerOrNil(const std::string& text, int base) {
    const std::optional<std::int64_t> number = parseInteger(text, base);
    return number ? RubyValue(*number) : RubyValue();
}

/// The number of elements from `start` to `stop` inclusive, for a range that is not empty.
std::uint64_t rangeLength(std::int64_t start, std::int64_t stop, std::int64_t step) {
    const auto low = static_cast<std::uint64_t>(step > 0 ? start : stop);
    const auto high = static_cast<std::uint64_t>(step > 0 ? stop : start);
    const auto stride = step > 0 ? static_cast<std::uint64_t>(step) : 0 - static_cast<std::uint64_t>(step);
    // cppcheck-suppress zerodivcond; a step of 0 is refused before
    const std::uint64_t steps = (high - low) / stride;
    return steps == std::numeric_limits<std::uint64_t>::max() ? steps : steps + 1;
}

RubyValue makeRange(std::int64_t start, std::int64_t stop, std::int64_t step) {
    if (step > 0 ? start > stop : start < stop) {
        return RubyValue::makeArray();
    }
    const std::uint64_t length = rangeLength(start, stop, step);
    requireMemory(length, sizeof(RubyValue));
    RubyArray numbers = arrayWithRoom(length);
    // No element passes the stop, so all are in range; unsigned arithmetic keeps the last addition, past it, defined.
    auto number = static_cast<std::uint64_t>(start);
    for (std::uint64_t i = 0; i < length; ++i) {
        numbers.emplace_back(static_cast<std::int64_t>(number));
        number += static_cast<std::uint64_t>(step);
    }
    return numbers;
}

}  // namespace

RubyValue puts(const BuiltinCall& call) {
    std::string line;
    const char* separator = "";
    for (const RubyValue& argument : call.arguments) {
        line += separator;
        appendText(line, argument);
        separator = " ";
    }
    line += '\n';
    writeOutput(line);
    return {};
}

RubyValue print(const BuiltinCall& call) {
    std::string text;
    for (const RubyValue& argument : call.arguments) {
        appendText(text, argument);
    }
    writeOutput(text);
    return {};
}

RubyValue len(const BuiltinCall& call) {
    const RubyValue& value = call[0];
    if (value.isString()) {
        return value.asString().size();
    }
    if (value.isArray()) {
        return value.asArray().size();
    }
    if (value.isMap()) {
        return value.asMap().size();
    }
    failCall(call, "expects a string, array, or map");
}

RubyValue timeMs(const BuiltinCall&) {
    using std::chrono::duration_cast;
    const auto sinceEpoch = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::int64_t>(duration_cast<std::chrono::milliseconds>(sinceEpoch).count());
}

RubyValue toS(const BuiltinCall& call) { return call[0].isString() ? call[0] : RubyValue(call[0].toString()); }

RubyValue typeOf(const BuiltinCall& call) {
    static constexpr std::array kNames{"nil", "integer", "float", "boolean", "string", "array", "map", "function"};
    return kNames[static_cast<std::size_t>(call[0].type)];
}

RubyValue toI(const BuiltinCall& call) {
    const RubyValue& value = call[0];
    if (value.isNumeric()) {
        return value.asInteger();
    }
    if (!value.isString()) {
        return {};
    }
    return integerOrNil(value.asString(), requireBase(call).value_or(10));
}

RubyValue toF(const BuiltinCall& call) {
    const RubyValue& value = call[0];
    if (value.isNumeric()) {
        return value.asFloat();
    }
    if (!value.isString()) {
        return {};
    }
    const std::optional<double> number = parseFloat(value.asString());
    return number ? RubyValue(*number) : RubyValue();
}

RubyValue toNumber(const BuiltinCall& call) {
    const RubyValue& value = call[0];
    if (value.isNumeric()) {
        return numericResult(value.asFloat());
    }
    if (!value.isString()) {
        return {};
    }
    const std::optional<int> base = requireBase(call);
    const std::string& text = value.asString();
    if (base || text.find_first_of(".eE") == std::string::npos) {
        return integerOrNil(text, base.value_or(10));
    }
    const std::optional<double> number = parseFloat(text);
    return number ? numericResult(*number) : RubyValue();
}

RubyValue collectGarbage(const BuiltinCall&) { return {}; }

RubyValue error(const BuiltinCall& call) { throw RubyError(errorCallMessage(call.arguments.begin(), call.count())); }

RubyValue pcall(const BuiltinCall& call) {
    // Reached only when a host calls the handle itself: the interpreter executes pcall without it.
    const Program noCaller;
    return RubyVM::Impl::of(call.vm).protectedCall(noCaller, call.arguments.begin(), call.count(), 0);
}

RubyValue load(const BuiltinCall& call) {
    const std::string& source = requireStringArgument(call, 0);
    return RubyVM::Impl::loadScript(source, call.count() > 1 ? requireStringArgument(call, 1) : "<load>");
}

RubyValue range(const BuiltinCall& call) {
    const std::int64_t first = requireIntegerArgument(call, 0);
    if (call.count() == 1) {
        // The early result avoids first - 1 for the smallest integer, which would overflow.
        return first <= 0 ? RubyValue::makeArray() : makeRange(0, first - 1, 1);
    }
    const std::int64_t stop = requireIntegerArgument(call, 1);
    const std::int64_t step = call.count() > 2 ? requireIntegerArgument(call, 2) : 1;
    if (step == 0) {
        failCall(call, "step cannot be zero");
    }
    return makeRange(first, stop, step);
}

}  // namespace morvel::ruby::internal::builtins
