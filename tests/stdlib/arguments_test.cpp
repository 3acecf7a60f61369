#include "stdlib/arguments.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "support/describe.h"
#include "support/runs.h"
#include "vm/errors.h"

namespace morvel::ruby::tests {
namespace {

using internal::BuiltinCall;
using internal::kNoMaximum;

constexpr double kTwoTo63 = 9223372036854775808.0;

/// A call of a built-in named "name".
class ArgumentChecks : public testing::Test {
protected:
    BuiltinCall call(const RubyArray& arguments) {
        m_arguments = arguments;
        return {"name", m_vm, RubyArguments(m_arguments)};
    }

private:
    RubyVM m_vm;
    RubyArray m_arguments;
};

TEST_F(ArgumentChecks, RequireArgument) {
    EXPECT_EQ("\"b\"", describe(internal::requireArgument(call({"a", "b"}), 1)));
    EXPECT_EQ("name is missing argument 3", errorOf([&] { (void)internal::requireArgument(call({"a", "b"}), 2); }));
    EXPECT_EQ("name is missing argument 1", errorOf([&] { (void)internal::requireArgument(call({}), 0); }));
    EXPECT_EQ("name is missing argument 11", errorOf([&] { (void)internal::requireArgument(call({}), 10); }));
}

TEST_F(ArgumentChecks, RequireIntegerArgument) {
    EXPECT_EQ(-7, internal::requireIntegerArgument(call({-7}), 0));
    EXPECT_EQ(2, internal::requireIntegerArgument(call({nullptr, 2.9}), 1));
    EXPECT_EQ(1, internal::requireIntegerArgument(call({true}), 0));
    EXPECT_EQ(std::numeric_limits<std::int64_t>::max(), internal::requireIntegerArgument(call({1e300}), 0));
    for (const RubyValue& value : {RubyValue(), RubyValue("5"), RubyValue::makeArray(), RubyValue::makeMap()}) {
        EXPECT_EQ("name expects a numeric argument",
                  errorOf([&] { (void)internal::requireIntegerArgument(call({value}), 0); }));
    }
    EXPECT_EQ("name is missing argument 2",
              errorOf([&] { (void)internal::requireIntegerArgument(call({"text"}), 1); }));
}

TEST_F(ArgumentChecks, RequireNumericArgument) {
    EXPECT_EQ(-7.0, internal::requireNumericArgument(call({-7}), 0));
    EXPECT_EQ(2.9, internal::requireNumericArgument(call({2.9}), 0));
    EXPECT_EQ(0.0, internal::requireNumericArgument(call({false}), 0));
    for (const RubyValue& value : {RubyValue(), RubyValue("5"), RubyValue::makeArray(), RubyValue::makeMap()}) {
        EXPECT_EQ("name expects a numeric argument",
                  errorOf([&] { (void)internal::requireNumericArgument(call({value}), 0); }));
    }
    EXPECT_EQ("name is missing argument 1", errorOf([&] { (void)internal::requireNumericArgument(call({}), 0); }));
}

TEST_F(ArgumentChecks, RequireStringArgument) {
    EXPECT_EQ("text", internal::requireStringArgument(call({"text"}), 0));
    EXPECT_EQ("", internal::requireStringArgument(call({1, ""}), 1));
    for (const RubyValue& value : {RubyValue(), RubyValue(5), RubyValue(true), RubyValue::makeArray()}) {
        EXPECT_EQ("name expects a string argument",
                  errorOf([&] { (void)internal::requireStringArgument(call({value}), 0); }));
    }
    EXPECT_EQ("name is missing argument 1", errorOf([&] { (void)internal::requireStringArgument(call({}), 0); }));
}

TEST_F(ArgumentChecks, RequireArrayArgument) {
    const RubyValue array(RubyArray{1});
    internal::requireArrayArgument(call({array, 5})).push_back(2);
    EXPECT_EQ("[1, 2]", describe(array));
    for (const RubyValue& value : {RubyValue(), RubyValue(5), RubyValue("text"), RubyValue::makeMap()}) {
        EXPECT_EQ("name expects an array", errorOf([&] {
                      (void)internal::requireArrayArgument(call({value, array}));
                  }));
    }
    EXPECT_EQ("name is missing argument 1", errorOf([&] { (void)internal::requireArrayArgument(call({})); }));
}

TEST_F(ArgumentChecks, FailCall) {
    EXPECT_EQ("name went wrong", errorOf([&] { internal::failCall(call({}), "went wrong"); }));
}

TEST(ArgumentCounts, Phrases) {
    EXPECT_EQ("exactly 0 arguments", internal::describeArgumentExpectation(0, 0));
    EXPECT_EQ("exactly 1 argument", internal::describeArgumentExpectation(1, 1));
    EXPECT_EQ("exactly 2 arguments", internal::describeArgumentExpectation(2, 2));
    EXPECT_EQ("at least 0 arguments", internal::describeArgumentExpectation(0, kNoMaximum));
    EXPECT_EQ("at least 1 arguments", internal::describeArgumentExpectation(1, kNoMaximum));
    EXPECT_EQ("at least 2 arguments", internal::describeArgumentExpectation(2, kNoMaximum));
    EXPECT_EQ("between 0 and 1 arguments", internal::describeArgumentExpectation(0, 1));
    EXPECT_EQ("between 1 and 3 arguments", internal::describeArgumentExpectation(1, 3));
}

TEST(ArgumentCounts, Require) {
    const auto check = [](std::size_t count, std::size_t minimum, std::size_t maximum) {
        return errorOf([&] { internal::requireArgumentCount("name", count, minimum, maximum); });
    };
    EXPECT_EQ("no error", check(1, 1, 1));
    EXPECT_EQ("name expects exactly 1 argument", check(0, 1, 1));
    EXPECT_EQ("name expects exactly 1 argument", check(2, 1, 1));
    EXPECT_EQ("no error", check(1, 1, 3));
    EXPECT_EQ("no error", check(3, 1, 3));
    EXPECT_EQ("name expects between 1 and 3 arguments", check(0, 1, 3));
    EXPECT_EQ("name expects between 1 and 3 arguments", check(4, 1, 3));
    EXPECT_EQ("no error", check(1000000, 2, kNoMaximum));
    EXPECT_EQ("name expects at least 2 arguments", check(1, 2, kNoMaximum));
}

TEST(NumericResult, WholeNumbersBecomeIntegers) {
    EXPECT_EQ("3", describe(internal::numericResult(3.0)));
    EXPECT_EQ("-3", describe(internal::numericResult(-3.0)));
    EXPECT_EQ("0", describe(internal::numericResult(0.0)));
    EXPECT_EQ("0", describe(internal::numericResult(-0.0)));
    EXPECT_EQ("9007199254740992", describe(internal::numericResult(9007199254740992.0)));
    EXPECT_EQ("-9223372036854775808", describe(internal::numericResult(-kTwoTo63)));
    EXPECT_EQ("9223372036854774784", describe(internal::numericResult(9223372036854774784.0)));
    // The upper end of the range is included; the conversion saturates.
    EXPECT_EQ("9223372036854775807", describe(internal::numericResult(kTwoTo63)));
}

TEST(NumericResult, AlmostWholeNumbersToo) {
    EXPECT_EQ("1", describe(internal::numericResult(1.0000000000000002)));
    EXPECT_EQ("1", describe(internal::numericResult(std::nextafter(1.0, 0.0))));
    EXPECT_EQ("0", describe(internal::numericResult(1e-17)));
    EXPECT_EQ("0", describe(internal::numericResult(-2.220446049250313e-16)));
}

TEST(NumericResult, EverythingElseStaysAFloat) {
    EXPECT_EQ("2.5", describe(internal::numericResult(2.5)));
    EXPECT_EQ("-0.5", describe(internal::numericResult(-0.5)));
    EXPECT_EQ("1.0000000000000004", describe(internal::numericResult(1.0000000000000004)));
    EXPECT_EQ("1e+300", describe(internal::numericResult(1e300)));
    EXPECT_EQ("-9223372036854777856.0", describe(internal::numericResult(-9223372036854777856.0)));
    EXPECT_EQ("9223372036854777856.0", describe(internal::numericResult(9223372036854777856.0)));
    EXPECT_EQ("inf", describe(internal::numericResult(std::numeric_limits<double>::infinity())));
    EXPECT_EQ("nan", describe(internal::numericResult(std::numeric_limits<double>::quiet_NaN())));
}

}  // namespace
}  // namespace morvel::ruby::tests
