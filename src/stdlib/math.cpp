#include "stdlib/math.h"

#include <cmath>
#include <random>

#include "vm/impl.h"

namespace morvel::ruby::internal::builtins {

namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr double kDegreesPerRadian = 57.29577951308232;

/// The argument that `isBetter` than all before it, the first one to start with.
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
    // Converting the draw may round it up to 2 to the power 64, whose product would be 1.
    return std::fmin(static_cast<double>(random()) * kTwoToMinus64, kLargestBelowOne);
}

}  // namespace

RubyValue mathFloor(const BuiltinCall& call) { return numericResult(std::floor(requireNumericArgument(call, 0))); }

RubyValue mathCeil(const BuiltinCall& call) { return numericResult(std::ceil(requireNumericArgument(call, 0))); }

RubyValue mathAbs(const BuiltinCall& call) { return numericResult(std::fabs(requireNumericArgument(call, 0))); }

RubyValue mathMin(const BuiltinCall& call) {
    return bestArgument(call, [](double candidate, double best) { return candidate < best; });
}

RubyValue mathMax(const BuiltinCall& call) {
    return bestArgument(call, [](double candidate, double best) { return candidate > best; });
}

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

}  // namespace morvel::ruby::internal::builtins
