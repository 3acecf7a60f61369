#include "stdlib/math.h"

#include <cmath>
#include <random>

#include "value/numbers.h"
#include "vm/impl.h"

namespace morvel::ruby::internal::builtins {

namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr double kDegreesPerRadian = 57.29577951308232;

/// The best argument by `isBetter`; of equally good ones, the first.
template <typename IsBetter>
RubyValue bestArgument(const BuiltinCall& call, IsBetter isBetter) {
    double best = requireNumericArgument(call, 0);
    for (std::size_t i = 1; i < call.count(); ++i) {
        const double candidate = requireNumericArgument(call, i);
        best = isBetter(candidate, best) ? candidate : best;
    }
    return numericResult(best);
}

RubyValue randomFraction(std::mt19937_64& random) {
    constexpr double kTwoToMinus64 = 5.421010862427522e-20;
    constexpr double kLargestBelowOne = 0x1.fffffffffffffp-1;
    // The conversion may round up to 2 to the power 64, which would make the product 1.
    return std::fmin(static_cast<double>(random()) * kTwoToMinus64, kLargestBelowOne);
}

/// Reads a number from an argument; false for other kinds of value.
bool readNumber(const RubyValue& argument, double& number) {
    if (argument.isFloat()) {
        number = argument.data.floating;
        return true;
    }
    number = static_cast<double>(argument.data.integer);
    return argument.isInteger();
}

/// Applies `function` to the only argument and stores the result.
template <typename Function>
bool applyToNumber(const RubyValue* arguments, std::size_t count, RubyValue* result, Function function) {
    double number = 0;
    if (count != 1 || !readNumber(arguments[0], number)) {
        return false;
    }
    *result = function(number);
    return true;
}

/// The same for a function that leaves whole numbers unchanged.
template <typename Function>
bool roundNumber(const RubyValue* arguments, std::size_t count, RubyValue* result, Function function) {
    if (count == 1 && isExactInteger(arguments[0])) {
        *result = arguments[0];
        return true;
    }
    return applyToNumber(arguments, count, result, [&](double number) { return numericResult(function(number)); });
}

template <typename IsBetter>
bool betterOfNumbers(const RubyValue* arguments, std::size_t count, RubyValue* result, IsBetter isBetter) {
    if (count != 2) {
        return false;
    }
    if (isExactInteger(arguments[0]) && isExactInteger(arguments[1])) {
        *result = arguments[isBetter(arguments[1].data.integer, arguments[0].data.integer) ? 1 : 0];
        return true;
    }
    double first = 0;
    double second = 0;
    if (!readNumber(arguments[0], first) || !readNumber(arguments[1], second)) {
        return false;
    }
    *result = numericResult(isBetter(second, first) ? second : first);
    return true;
}

constexpr auto kIsLess = [](auto candidate, auto best) { return candidate < best; };
constexpr auto kIsGreater = [](auto candidate, auto best) { return candidate > best; };

}  // namespace

RubyValue mathFloor(const BuiltinCall& call) { return numericResult(std::floor(requireNumericArgument(call, 0))); }

RubyValue mathCeil(const BuiltinCall& call) { return numericResult(std::ceil(requireNumericArgument(call, 0))); }

RubyValue mathAbs(const BuiltinCall& call) { return numericResult(std::fabs(requireNumericArgument(call, 0))); }

RubyValue mathMin(const BuiltinCall& call) { return bestArgument(call, kIsLess); }

RubyValue mathMax(const BuiltinCall& call) { return bestArgument(call, kIsGreater); }

RubyValue mathSin(const BuiltinCall& call) { return std::sin(requireNumericArgument(call, 0)); }

RubyValue mathCos(const BuiltinCall& call) { return std::cos(requireNumericArgument(call, 0)); }

RubyValue mathRad(const BuiltinCall& call) { return requireNumericArgument(call, 0) * kRadiansPerDegree; }

RubyValue mathLog(const BuiltinCall& call) { return std::log(requireNumericArgument(call, 0)); }

RubyValue mathSqrt(const BuiltinCall& call) { return std::sqrt(requireNumericArgument(call, 0)); }

RubyValue mathPow(const BuiltinCall& call) {
    const double base = requireNumericArgument(call, 0);
    return numericResult(std::pow(base, requireNumericArgument(call, 1)));
}

RubyValue mathDeg(const BuiltinCall& call) {
    return numericResult(requireNumericArgument(call, 0) * kDegreesPerRadian);
}

RubyValue mathExp(const BuiltinCall& call) { return numericResult(std::exp(requireNumericArgument(call, 0))); }

RubyValue mathClamp(const BuiltinCall& call) {
    const double number = requireNumericArgument(call, 0);
    const double lower = requireNumericArgument(call, 1);
    const double upper = requireNumericArgument(call, 2);
    if (lower > upper) {
        failCall(call, "lower bound is greater than upper bound");
    }
    return numericResult(number < lower ? lower : number > upper ? upper : number);
}

RubyValue mathRandomSeed(const BuiltinCall& call) {
    RubyVM::Impl::of(call.vm).random.seed(static_cast<std::uint64_t>(requireIntegerArgument(call, 0)));
    return {};
}

RubyValue mathRandom(const BuiltinCall& call) {
    std::mt19937_64& random = RubyVM::Impl::of(call.vm).random;
    if (call.count() == 0) {
        return randomFraction(random);
    }
    const std::int64_t first = requireIntegerArgument(call, 0);
    const std::int64_t lower = call.count() > 1 ? first : 1;
    const std::int64_t upper = call.count() > 1 ? requireIntegerArgument(call, 1) : first;
    if (lower > upper) {
        failCall(call, "interval is empty");
    }
    return std::uniform_int_distribution<std::int64_t>(lower, upper)(random);
}

bool floorOfNumber(const RubyValue* arguments, std::size_t count, RubyValue* result) {
    return roundNumber(arguments, count, result, [](double number) { return std::floor(number); });
}

bool ceilOfNumber(const RubyValue* arguments, std::size_t count, RubyValue* result) {
    return roundNumber(arguments, count, result, [](double number) { return std::ceil(number); });
}

bool absOfNumber(const RubyValue* arguments, std::size_t count, RubyValue* result) {
    return applyToNumber(arguments, count, result, [](double number) { return numericResult(std::fabs(number)); });
}

bool minOfNumbers(const RubyValue* arguments, std::size_t count, RubyValue* result) {
    return betterOfNumbers(arguments, count, result, kIsLess);
}

bool maxOfNumbers(const RubyValue* arguments, std::size_t count, RubyValue* result) {
    return betterOfNumbers(arguments, count, result, kIsGreater);
}

bool sinOfNumber(const RubyValue* arguments, std::size_t count, RubyValue* result) {
    return applyToNumber(arguments, count, result, [](double number) { return std::sin(number); });
}

bool cosOfNumber(const RubyValue* arguments, std::size_t count, RubyValue* result) {
    return applyToNumber(arguments, count, result, [](double number) { return std::cos(number); });
}

bool sqrtOfNumber(const RubyValue* arguments, std::size_t count, RubyValue* result) {
    return applyToNumber(arguments, count, result, [](double number) { return std::sqrt(number); });
}

bool powOfNumbers(const RubyValue* arguments, std::size_t count, RubyValue* result) {
    double base = 0;
    double exponent = 0;
    if (count != 2 || !readNumber(arguments[0], base) || !readNumber(arguments[1], exponent)) {
        return false;
    }
    *result = numericResult(std::pow(base, exponent));
    return true;
}

}  // namespace morvel::ruby::internal::builtins
