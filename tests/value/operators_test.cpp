#include "value/operators.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "compiler/program.h"
#include "morvel/ruby/function.h"
#include "support/allocation_meter.h"
#include "support/describe.h"
#include "support/runs.h"
#include "vm/operators.h"

namespace morvel::ruby::tests {
namespace {

using internal::OpCode;
using internal::Ordering;

constexpr std::int64_t kSmallest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kEpsilon = 2.220446049250313e-16;

RubyValue makeFunctionValue(const std::string& name) {
    auto handle = std::make_unique<RubyFunctionHandle>();
    handle->name = name;
    return RubyValue(std::move(handle));
}

std::vector<RubyValue> oneOfEachKind() {
    return {nullptr, 5, 2.5, true, "5", RubyArray{1}, RubyMap(), makeFunctionValue("f")};
}

/// The description of the result, or the error message. Errors are at line 12 of the program "t".
std::string apply(OpCode op, const RubyValue& left, const RubyValue& right) {
    internal::Program program;
    program.name = "t";
    std::string outcome;
    const std::string error = errorOf([&] { outcome = describe(internal::applyBinary(op, left, right, program, 12)); });
    return outcome.empty() ? error : outcome;
}

std::string add(const RubyValue& left, const RubyValue& right) { return apply(OpCode::Add, left, right); }
std::string subtract(const RubyValue& left, const RubyValue& right) { return apply(OpCode::Subtract, left, right); }
std::string multiply(const RubyValue& left, const RubyValue& right) { return apply(OpCode::Multiply, left, right); }
std::string divide(const RubyValue& left, const RubyValue& right) { return apply(OpCode::Divide, left, right); }
std::string modulo(const RubyValue& left, const RubyValue& right) { return apply(OpCode::Modulo, left, right); }
std::string less(const RubyValue& left, const RubyValue& right) { return apply(OpCode::Less, left, right); }

std::string negate(const RubyValue& value) {
    internal::Program program;
    program.name = "t";
    std::string outcome;
    const std::string error =
        errorOf([&] { outcome = describe(internal::applyUnary(OpCode::Negate, value, program, 12)); });
    return outcome.empty() ? error : outcome;
}

/// The results of <, <=, > and >= in this order, as four letters.
std::string compareAll(const RubyValue& left, const RubyValue& right) {
    std::string letters;
    for (const Ordering ordering : {Ordering::Less, Ordering::LessEqual, Ordering::Greater, Ordering::GreaterEqual}) {
        bool isOrdered = false;
        EXPECT_FALSE(internal::compare(left, right, ordering, isOrdered));
        letters += isOrdered ? 't' : 'f';
    }
    return letters;
}

bool equal(const RubyValue& left, const RubyValue& right) {
    const bool result = internal::valuesEqual(left, right);
    EXPECT_EQ(result, internal::valuesEqual(right, left)) << describe(left) << " == " << describe(right);
    return result;
}

TEST(Add, Integers) {
    EXPECT_EQ("5", add(2, 3));
    EXPECT_EQ("-1", add(2, -3));
    EXPECT_EQ("-9223372036854775808", add(kLargest, 1));
    EXPECT_EQ("9223372036854775807", add(kSmallest, -1));
    EXPECT_EQ("0", add(kSmallest, kSmallest));
}

TEST(Add, AnyFloatOrBooleanMakesAFloat) {
    EXPECT_EQ("5.5", add(2, 3.5));
    EXPECT_EQ("5.0", add(2.5, 2.5));
    EXPECT_EQ("2.0", add(true, true));
    EXPECT_EQ("2.0", add(1, true));
    EXPECT_EQ("0.0", add(false, 0));
    EXPECT_EQ("9223372036854775808.0", add(kLargest, 1.0));
}

TEST(Add, StringsTakeTheTextOfTheOtherOperand) {
    EXPECT_EQ("\"ab\"", add("a", "b"));
    EXPECT_EQ("\"n=5\"", add("n=", 5));
    EXPECT_EQ("\"1.5x\"", add(1.5, "x"));
    EXPECT_EQ("\"a[1, 2]\"", add("a", RubyArray{1, 2}));
    EXPECT_EQ("\"[]a\"", add(RubyArray{}, "a"));
    EXPECT_EQ("\"nilx\"", add(nullptr, "x"));
    EXPECT_EQ("\"anil\"", add("a", nullptr));
    EXPECT_EQ("\"truex\"", add(true, "x"));
    EXPECT_EQ("\"x{}\"", add("x", RubyValue::makeMap()));
    EXPECT_EQ("\"x[function f]\"", add("x", makeFunctionValue("f")));
    EXPECT_EQ("\"x2\"", add("x", 2.0));
    EXPECT_EQ("\"\"", add("", ""));
}

TEST(Add, ArraysJoinIntoANewOne) {
    RubyValue left(RubyArray{1});
    RubyValue right(RubyArray{2, RubyArray{3}});
    RubyValue joined;
    ASSERT_FALSE(internal::add(left, right, joined));
    EXPECT_EQ("[1, 2, [3]]", describe(joined));
    joined.asArray().push_back(4);
    joined.asArray()[2].asArray().push_back("shared");
    EXPECT_EQ("[1]", describe(left));
    EXPECT_EQ("[2, [3, \"shared\"]]", describe(right));
    EXPECT_EQ("[1, 1]", add(left, left));
}

TEST(Add, RefusesEverythingElse) {
    const std::string message = "t:12: operator '+' expects numbers, strings, or arrays";
    const std::vector<RubyValue> values = oneOfEachKind();
    for (const RubyValue& left : values) {
        for (const RubyValue& right : values) {
            const bool fits = left.isString() || right.isString() || (left.isArray() && right.isArray()) ||
                              (left.isNumeric() && right.isNumeric());
            if (!fits) {
                EXPECT_EQ(message, add(left, right)) << describe(left) << " + " << describe(right);
            }
        }
    }
}

TEST(Arithmetic, RefusesNonNumbers) {
    const std::vector<RubyValue> values = oneOfEachKind();
    for (const RubyValue& left : values) {
        for (const RubyValue& right : values) {
            if (left.isNumeric() && right.isNumeric()) {
                continue;
            }
            EXPECT_EQ("t:12: operator '-' expects numeric values", subtract(left, right));
            EXPECT_EQ("t:12: operator '*' expects numeric values", multiply(left, right));
            EXPECT_EQ("t:12: operator '/' expects numeric values", divide(left, right));
            EXPECT_EQ("t:12: operator '%' expects numeric values", modulo(left, right));
        }
    }
}

TEST(Subtract, WrapsAndMixes) {
    EXPECT_EQ("-1", subtract(2, 3));
    EXPECT_EQ("9223372036854775807", subtract(kSmallest, 1));
    EXPECT_EQ("-9223372036854775808", subtract(0, kSmallest));
    EXPECT_EQ("0.5", subtract(3, 2.5));
    EXPECT_EQ("0.0", subtract(true, 1));
    EXPECT_EQ("-1.0", subtract(false, true));
}

TEST(Multiply, WrapsAndMixes) {
    EXPECT_EQ("-6", multiply(2, -3));
    EXPECT_EQ("-2", multiply(kLargest, 2));
    EXPECT_EQ("-9223372036854775808", multiply(kSmallest, -1));
    EXPECT_EQ("7.5", multiply(3, 2.5));
    EXPECT_EQ("3.0", multiply(3, true));
    EXPECT_EQ("-0.0", multiply(-3, false));
}

TEST(Divide, AlwaysGivesAFloat) {
    EXPECT_EQ("3.5", divide(7, 2));
    EXPECT_EQ("2.0", divide(6, 3));
    EXPECT_EQ("-2.5", divide(5, -2));
    EXPECT_EQ("4.0", divide(4, true));
    EXPECT_EQ("9223372036854775808.0", divide(kLargest, 1));
    EXPECT_EQ("0.0", divide(1, kInfinity));
    EXPECT_EQ("nan", divide(1, kNan));
}

TEST(Divide, DivisorsWithinTheToleranceAreZero) {
    const std::string message = "t:12: division by zero";
    EXPECT_EQ(message, divide(1, 0));
    EXPECT_EQ(message, divide(1, 0.0));
    EXPECT_EQ(message, divide(1, -0.0));
    EXPECT_EQ(message, divide(1, false));
    EXPECT_EQ(message, divide(1, 1e-17));
    EXPECT_EQ(message, divide(1, -1e-20));
    EXPECT_EQ(message, divide(1, kEpsilon));
    EXPECT_EQ("4503599627370495.0", divide(1, std::nextafter(kEpsilon, 1.0)));
    EXPECT_EQ(describe(1.0 / 1e-15), divide(1, 1e-15));
}

TEST(Modulo, HasTheSignOfTheLeftOperand) {
    EXPECT_EQ("1", modulo(7, 3));
    EXPECT_EQ("-1", modulo(-7, 3));
    EXPECT_EQ("1", modulo(7, -3));
    EXPECT_EQ("-1", modulo(-7, -3));
    EXPECT_EQ("0", modulo(6, 3));
    EXPECT_EQ("0", modulo(kSmallest, -1));
    EXPECT_EQ("-8", modulo(kSmallest, 10));
    EXPECT_EQ("9223372036854775807", modulo(kLargest, kSmallest));
    EXPECT_EQ("1.5", modulo(7.5, 2));
    EXPECT_EQ("-1.5", modulo(-7.5, 2));
    EXPECT_EQ("0.0", modulo(5, 0.5));
    EXPECT_EQ("1.0", modulo(5, 2.0));
    EXPECT_EQ("0.0", modulo(true, true));
    EXPECT_EQ("5.0", modulo(5, kInfinity));
}

TEST(Modulo, DivisorsWithinTheToleranceAreZero) {
    for (const RubyValue& divisor :
         {RubyValue(0), RubyValue(0.0), RubyValue(false), RubyValue(1e-20), RubyValue(-kEpsilon)}) {
        EXPECT_EQ("t:12: modulo by zero", modulo(1, divisor));
        EXPECT_EQ("t:12: modulo by zero", modulo(1.5, divisor));
    }
}

TEST(ZeroTest, ComesAfterTheTypeTest) {
    EXPECT_EQ("t:12: operator '/' expects numeric values", divide("a", 0));
    EXPECT_EQ("t:12: operator '%' expects numeric values", modulo("a", 0));
}

TEST(Negate, WrapsAndConverts) {
    EXPECT_EQ("-5", negate(5));
    EXPECT_EQ("0", negate(0));
    EXPECT_EQ("-9223372036854775808", negate(kSmallest));
    EXPECT_EQ("-2.5", negate(2.5));
    EXPECT_EQ("-0.0", negate(0.0));
    EXPECT_EQ("-1.0", negate(true));
    EXPECT_EQ("-0.0", negate(false));
    for (const RubyValue& value : oneOfEachKind()) {
        if (!value.isNumeric()) {
            EXPECT_EQ("t:12: unary '-' expects a numeric value", negate(value));
        }
    }
}

TEST(Equal, DifferentKindsAreEqualOnlyAsCloseNumbers) {
    EXPECT_TRUE(equal(1, 1.0));
    EXPECT_TRUE(equal(true, 1));
    EXPECT_TRUE(equal(false, 0));
    EXPECT_TRUE(equal(true, 1.0));
    EXPECT_TRUE(equal(1, 1.0000000000000002));
    EXPECT_FALSE(equal(1, 1.0000000000000004));
    EXPECT_TRUE(equal(0, kEpsilon));
    EXPECT_FALSE(equal(0, std::nextafter(kEpsilon, 1.0)));
    EXPECT_FALSE(equal(true, 2));
    EXPECT_FALSE(equal(0, kNan));
    EXPECT_TRUE(equal(kLargest, 9223372036854775808.0));
    EXPECT_FALSE(equal(0, nullptr));
    EXPECT_FALSE(equal("1", 1));
    EXPECT_FALSE(equal(false, nullptr));
    EXPECT_FALSE(equal("", nullptr));
    EXPECT_FALSE(equal(RubyValue::makeArray(), RubyValue::makeMap()));
}

TEST(Equal, AllPairsOfDifferentKindsAreUnequalOtherwise) {
    const std::vector<RubyValue> values = oneOfEachKind();
    for (std::size_t i = 0; i < values.size(); ++i) {
        for (std::size_t j = 0; j < values.size(); ++j) {
            EXPECT_EQ(i == j, equal(values[i], values[j])) << describe(values[i]) << " == " << describe(values[j]);
        }
    }
}

TEST(Equal, SameKindIsExact) {
    EXPECT_TRUE(equal(nullptr, nullptr));
    EXPECT_TRUE(equal(kLargest, kLargest));
    EXPECT_FALSE(equal(kLargest, kLargest - 1));
    EXPECT_FALSE(equal(0.1 + 0.2, 0.3));
    EXPECT_FALSE(equal(1.0, 1.0000000000000002));
    EXPECT_TRUE(equal(0.0, -0.0));
    EXPECT_FALSE(equal(kNan, kNan));
    EXPECT_TRUE(equal(kInfinity, kInfinity));
    EXPECT_TRUE(equal(false, false));
    EXPECT_FALSE(equal(false, true));
}

TEST(Equal, StringsByBytes) {
    EXPECT_TRUE(equal("abc", std::string("abc")));
    EXPECT_FALSE(equal("abc", "abd"));
    EXPECT_FALSE(equal("ab", "abc"));
    EXPECT_FALSE(equal(std::string("a\0b", 3), std::string("a\0c", 3)));
    EXPECT_FALSE(equal(std::string("a\0", 2), "a"));
    EXPECT_TRUE(equal("", ""));
}

TEST(Equal, ArraysElementByElement) {
    EXPECT_TRUE(equal(RubyArray{1, RubyArray{2}}, RubyArray{1, RubyArray{2}}));
    EXPECT_TRUE(equal(RubyArray{}, RubyArray{}));
    EXPECT_TRUE(equal(RubyArray{1}, RubyArray{1.0}));
    EXPECT_FALSE(equal(RubyArray{1, 2}, RubyArray{1}));
    EXPECT_FALSE(equal(RubyArray{1, 2}, RubyArray{2, 1}));
    // This also holds for an array and itself, since NaN is not equal to itself.
    const RubyValue array(RubyArray{kNan});
    EXPECT_FALSE(equal(array, array));
}

TEST(Equal, MapsByEntriesWhateverTheirOrder) {
    RubyMap left;
    left["a"] = 1;
    left["b"] = RubyArray{2};
    RubyMap right;
    right["b"] = RubyArray{2.0};
    right["a"] = true;
    EXPECT_TRUE(equal(left, right));
    right["c"] = nullptr;
    EXPECT_FALSE(equal(left, right));
    left["d"] = nullptr;
    EXPECT_FALSE(equal(left, right));
    EXPECT_TRUE(equal(RubyValue::makeMap(), RubyValue::makeMap()));
}

TEST(Equal, FunctionsByIdentity) {
    const RubyValue function = makeFunctionValue("f");
    const RubyValue copy = function;
    EXPECT_TRUE(equal(function, copy));
    EXPECT_FALSE(equal(function, makeFunctionValue("f")));
}

TEST(Equal, ANestTooDeepIsAnErrorNotACrash) {
    RubyValue left = RubyValue::makeArray();
    left.asArray().push_back(left);
    RubyValue right = RubyValue::makeArray();
    right.asArray().push_back(right);
    EXPECT_EQ("stack overflow", errorOf([&] { (void)internal::valuesEqual(left, right); }));
    left.asArray().clear();
    right.asArray().clear();
}

TEST(Compare, Numbers) {
    EXPECT_EQ("ttff", compareAll(1, 2));
    EXPECT_EQ("ftft", compareAll(2, 2));
    EXPECT_EQ("fftt", compareAll(3, 2));
    EXPECT_EQ("ttff", compareAll(1.5, 2));
    EXPECT_EQ("ttff", compareAll(false, true));
    EXPECT_EQ("ftft", compareAll(true, 1));
    EXPECT_EQ("ttff", compareAll(-kInfinity, kSmallest));
    EXPECT_EQ("ffff", compareAll(kNan, 1));
    EXPECT_EQ("ffff", compareAll(1, kNan));
    EXPECT_EQ("ffff", compareAll(kNan, kNan));
}

// Ordering ignores the tolerance of equality: doubles are compared exactly.
TEST(Compare, CloseFloatsAreOrdered) { EXPECT_EQ("ttff", compareAll(1.0, 1.0000000000000002)); }

TEST(Compare, IntegersGoThroughDoubles) {
    EXPECT_EQ("ftft", compareAll(9007199254740992, 9007199254740993));
    EXPECT_EQ("ftft", compareAll(kLargest, kLargest - 1));
    EXPECT_EQ("ttff", compareAll(9007199254740991, 9007199254740992));
}

TEST(Compare, StringsByUnsignedBytes) {
    EXPECT_EQ("ttff", compareAll("abc", "abd"));
    EXPECT_EQ("ttff", compareAll("ab", "abc"));
    EXPECT_EQ("ttff", compareAll("B", "a"));
    EXPECT_EQ("ttff", compareAll("10", "9"));
    EXPECT_EQ("ttff", compareAll("z", "\x80"));
    EXPECT_EQ("ftft", compareAll("same", "same"));
    EXPECT_EQ("ttff", compareAll("", std::string(1, '\0')));
    EXPECT_EQ("ttff", compareAll(std::string("a\0b", 3), std::string("a\0c", 3)));
    EXPECT_EQ("ftft", compareAll("", ""));
    EXPECT_EQ("fftt", compareAll("b", "abc"));
}

TEST(Compare, RefusesEverythingElse) {
    const std::vector<RubyValue> values = oneOfEachKind();
    for (const RubyValue& left : values) {
        for (const RubyValue& right : values) {
            const bool fits = (left.isNumeric() && right.isNumeric()) || (left.isString() && right.isString());
            if (!fits) {
                EXPECT_EQ("t:12: ordered comparisons require matching numeric or string values", less(left, right));
            }
        }
    }
}

TEST(KeyText, OfEveryKind) {
    EXPECT_EQ("nil", internal::valueKeyString(nullptr));
    EXPECT_EQ("-42", internal::valueKeyString(-42));
    EXPECT_EQ("-9223372036854775808", internal::valueKeyString(kSmallest));
    EXPECT_EQ("2", internal::valueKeyString(2.0));
    EXPECT_EQ("0.5", internal::valueKeyString(0.5));
    EXPECT_EQ("1.23457e+06", internal::valueKeyString(1234567.0));
    EXPECT_EQ("1", internal::valueKeyString(1.0000001));
    EXPECT_EQ("nan", internal::valueKeyString(-kNan));
    EXPECT_EQ("true", internal::valueKeyString(true));
    EXPECT_EQ("false", internal::valueKeyString(false));
    EXPECT_EQ("a key", internal::valueKeyString("a key"));
    EXPECT_EQ("", internal::valueKeyString(""));
}

TEST(KeyText, RefusesContainersAndFunctions) {
    RubyMap map;
    for (const RubyValue& key : {RubyValue::makeArray(), RubyValue::makeMap(), makeFunctionValue("f")}) {
        EXPECT_EQ("unsupported map key type", errorOf([&] { (void)internal::valueKeyString(key); }));
        EXPECT_EQ("unsupported map key type", errorOf([&] { (void)internal::findMapValue(map, key); }));
        EXPECT_EQ("unsupported map key type", errorOf([&] { (void)internal::setMapValue(map, key); }));
    }
    EXPECT_TRUE(map.empty());
}

TEST(MapAccess, DifferentKindsWithOneTextAreOneKey) {
    const std::vector<std::vector<RubyValue>> groups{{2, 2.0, "2"},  {true, "true"},      {nullptr, "nil"},
                                                     {1.5, "1.5"},   {1.0000001, 1, "1"}, {-7, "-7", -7.0},
                                                     {1e6, "1e+06"}, {-0.0, "-0"}};
    for (const std::vector<RubyValue>& group : groups) {
        for (const RubyValue& stored : group) {
            RubyMap map;
            EXPECT_EQ(nullptr, internal::findMapValue(map, stored));
            EXPECT_TRUE(internal::setMapValue(map, stored).isNil());
            internal::setMapValue(map, stored) = "found";
            for (const RubyValue& key : group) {
                const RubyValue* found = internal::findMapValue(map, key);
                ASSERT_NE(nullptr, found) << describe(stored) << " then " << describe(key);
                EXPECT_EQ("\"found\"", describe(*found));
                internal::setMapValue(map, key) = "found";
            }
            EXPECT_EQ(1u, map.size());
        }
    }
}

TEST(MapAccess, DifferentTextsAreDifferentKeys) {
    RubyMap map;
    for (const RubyValue& key : {RubyValue(1000000), RubyValue(1000000.0), RubyValue("01"), RubyValue(1), RubyValue(0),
                                 RubyValue(-0.0), RubyValue(false), RubyValue("")}) {
        EXPECT_EQ(nullptr, internal::findMapValue(map, key)) << describe(key);
        internal::setMapValue(map, key) = true;
    }
    EXPECT_EQ(8u, map.size());
}

TEST(MapAccess, ReadingFindsInConstantMaps) {
    RubyMap map;
    map["k"] = 1;
    const RubyMap& readOnly = map;
    ASSERT_NE(nullptr, internal::findMapValue(readOnly, "k"));
    EXPECT_EQ(nullptr, internal::findMapValue(readOnly, "j"));
}

TEST(MapAccess, ReadingWithStringsAndIntegersAllocatesNothing) {
    RubyMap map;
    map["a key of more than fifteen bytes"] = 1;
    map["7"] = 2;
    const RubyValue text("a key of more than fifteen bytes");
    const RubyValue number(7);
    const AllocationMeter meter;
    const bool found = internal::findMapValue(map, text) != nullptr && internal::findMapValue(map, number) != nullptr;
    EXPECT_EQ(0u, AllocationMeter::count());
    EXPECT_TRUE(found);
}

}  // namespace
}  // namespace morvel::ruby::tests
