// The short forms of built-ins on numbers.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>

#include "stdlib/math.h"
#include "support/describe.h"
#include "value/function_internals.h"

namespace morvel::ruby::tests {
namespace {

namespace builtins = internal::builtins;

constexpr std::array kOfOne{builtins::floorOfNumber, builtins::ceilOfNumber, builtins::absOfNumber,
                            builtins::sinOfNumber,   builtins::cosOfNumber,  builtins::sqrtOfNumber};
constexpr std::array kOfTwo{builtins::minOfNumbers, builtins::maxOfNumbers, builtins::powOfNumbers};

const RubyArray kNumbers{0, -3, 2.5, -0.5, std::int64_t{1} << 53, std::numeric_limits<std::int64_t>::min()};
const RubyArray kOthers{nullptr, true, "5", RubyArray{1}};

bool appliesTo(internal::NumberFunction function, const RubyArray& arguments) {
    RubyValue result("none");
    const bool applies = function(arguments.data(), arguments.size(), &result);
    EXPECT_EQ(applies, result.isNumeric());
    return applies;
}

// A form that declines leaves the call to the built-in itself, which gives the same result more slowly.
TEST(NumberFunctions, ApplyToEveryNumber) {
    for (const RubyValue& number : kNumbers) {
        for (const internal::NumberFunction function : kOfOne) {
            EXPECT_TRUE(appliesTo(function, {number})) << describe(number);
        }
        for (const internal::NumberFunction function : kOfTwo) {
            for (const RubyValue& second : kNumbers) {
                EXPECT_TRUE(appliesTo(function, {number, second})) << describe(number) << ", " << describe(second);
            }
        }
    }
}

TEST(NumberFunctions, DeclineEverythingElse) {
    for (const internal::NumberFunction function : kOfOne) {
        EXPECT_FALSE(appliesTo(function, {}));
        EXPECT_FALSE(appliesTo(function, {1, 2}));
        for (const RubyValue& other : kOthers) {
            EXPECT_FALSE(appliesTo(function, {other})) << describe(other);
        }
    }
    for (const internal::NumberFunction function : kOfTwo) {
        EXPECT_FALSE(appliesTo(function, {}));
        EXPECT_FALSE(appliesTo(function, {1}));
        EXPECT_FALSE(appliesTo(function, {1, 2, 3}));
        for (const RubyValue& other : kOthers) {
            EXPECT_FALSE(appliesTo(function, {other, 1})) << describe(other);
            EXPECT_FALSE(appliesTo(function, {1, other})) << describe(other);
        }
    }
}

}  // namespace
}  // namespace morvel::ruby::tests
