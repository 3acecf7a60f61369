#include "morvel/ruby/value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "morvel/ruby/error.h"
#include "morvel/ruby/function.h"
#include "morvel/ruby/map.h"
#include "support/allocation_meter.h"
#include "support/describe.h"
#include "support/runs.h"

namespace morvel::ruby::tests {
namespace {

using Type = RubyValue::Type;
constexpr std::int64_t kSmallest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

RubyValue makeFunctionValue(const std::string& name) {
    auto handle = std::make_unique<RubyFunctionHandle>();
    handle->name = name;
    return RubyValue(std::move(handle));
}

/// One value of every kind.
std::vector<RubyValue> oneOfEachKind() {
    return {nullptr, 5, 2.5, true, "5", RubyArray{1}, RubyMap(), makeFunctionValue("f")};
}

TEST(Value, IsATagFollowedByAnEightBytePayload) {
    EXPECT_EQ(16u, sizeof(RubyValue));
    EXPECT_EQ(1u, sizeof(RubyValue::type));
    EXPECT_EQ(0u, offsetof(RubyValue, type));
    EXPECT_EQ(8u, sizeof(RubyValue::Data));
    EXPECT_EQ(8u, offsetof(RubyValue, data));
}

TEST(Value, KindsHaveTheirTagNumbers) {
    const std::vector<RubyValue> values = oneOfEachKind();
    ASSERT_EQ(8u, values.size());
    for (std::size_t tag = 0; tag < values.size(); ++tag) {
        EXPECT_EQ(tag, static_cast<std::size_t>(values[tag].type));
    }
}

TEST(Value, DefaultAndNullPointerAreNil) {
    EXPECT_EQ(Type::Nil, RubyValue().type);
    EXPECT_EQ(Type::Nil, RubyValue(nullptr).type);
    EXPECT_EQ("nil", RubyValue().toString());
    EXPECT_EQ("nil", RubyValue(nullptr).toString());
}

TEST(Value, IntegersOfAnyWidthBecomeSigned64Bits) {
    EXPECT_EQ("-7", describe(RubyValue(-7)));
    EXPECT_EQ("-2147483648", describe(RubyValue(std::numeric_limits<std::int32_t>::min())));
    EXPECT_EQ("-9223372036854775808", describe(RubyValue(kSmallest)));
    EXPECT_EQ("9223372036854775807", describe(RubyValue(kLargest)));
    EXPECT_EQ("4294967295", describe(RubyValue(std::uint32_t{4294967295})));
    EXPECT_EQ("300", describe(RubyValue(std::size_t{300})));
    EXPECT_EQ("-1", describe(RubyValue(std::int8_t{-1})));
}

TEST(Value, DoublesAreFloatsEvenWhenWhole) {
    EXPECT_EQ(Type::Float, RubyValue(3.0).type);
    EXPECT_EQ(3.0, RubyValue(3.0).asFloat());
    EXPECT_TRUE(std::signbit(RubyValue(-0.0).asFloat()));
}

TEST(Value, BoolsAreBooleansAndPointersAreNot) {
    EXPECT_EQ(Type::Boolean, RubyValue(true).type);
    EXPECT_TRUE(RubyValue(true).asBoolean());
    EXPECT_FALSE(RubyValue(false).asBoolean());
    static_assert(!std::is_constructible_v<RubyValue, void*>);
    static_assert(!std::is_constructible_v<RubyValue, const int*>);
}

TEST(Value, TextsBecomeStrings) {
    EXPECT_EQ("\"abc\"", describe(RubyValue("abc")));
    const char* none = nullptr;
    EXPECT_EQ("\"\"", describe(RubyValue(none)));
    const std::string text("a\0b", 3);
    EXPECT_EQ(text, RubyValue(text).asString());
    EXPECT_EQ(text, RubyValue(std::string(text)).asString());
    EXPECT_EQ(text, RubyValue(std::string_view(text)).asString());
    EXPECT_EQ("abc", RubyValue(std::string("abc")).asString());
    EXPECT_EQ("\xff\x80", RubyValue("\xff\x80").asString());
}

TEST(Value, StringCopiesDoNotFollowTheSource) {
    std::string text = "abc";
    const RubyValue value(text);
    text[0] = 'x';
    EXPECT_EQ("abc", value.asString());
}

TEST(Value, VectorsBecomeNewArrays) {
    RubyArray elements{1, "two", 3.0};
    const RubyValue copy(elements);
    elements.push_back(4);
    elements[0] = 9;
    EXPECT_EQ("[1, \"two\", 3.0]", describe(copy));
    const RubyValue moved(std::move(elements));
    EXPECT_EQ("[9, \"two\", 3.0, 4]", describe(moved));
}

TEST(Value, CopiedVectorElementsStayShared) {
    RubyArray elements{RubyValue::makeArray()};
    const RubyValue copy(elements);
    elements[0].asArray().push_back(1);
    EXPECT_EQ("[[1]]", describe(copy));
}

TEST(Value, StandardMapsBecomeNewMaps) {
    std::unordered_map<std::string, RubyValue> entries{{"a", 1}};
    const RubyValue copy(entries);
    entries["b"] = 2;
    EXPECT_EQ("{\"a\": 1}", describe(copy));
    const RubyValue moved(std::move(entries));
    EXPECT_EQ(Type::Map, moved.type);
    EXPECT_EQ(2u, moved.asMap().size());
    EXPECT_EQ("1", describe(moved.asMap().at("a")));
    EXPECT_EQ("2", describe(moved.asMap().at("b")));
}

TEST(Value, OrderedMapsBecomeNewMaps) {
    RubyMap entries;
    entries["z"] = 1;
    entries["a"] = 2;
    const RubyValue copy(entries);
    entries["b"] = 3;
    EXPECT_EQ("{\"z\": 1, \"a\": 2}", describe(copy));
    EXPECT_EQ("{\"z\": 1, \"a\": 2, \"b\": 3}", describe(RubyValue(std::move(entries))));
}

TEST(Value, MakeArrayAndMakeMapAreEmptyAndNew) {
    RubyValue array = RubyValue::makeArray();
    EXPECT_EQ("[]", describe(array));
    array.asArray().push_back(1);
    EXPECT_EQ("[]", describe(RubyValue::makeArray()));
    RubyValue map = RubyValue::makeMap();
    EXPECT_EQ("{}", describe(map));
    map.asMap()["k"] = 1;
    EXPECT_EQ("{}", describe(RubyValue::makeMap()));
}

TEST(Value, AsIntegerAcceptsNumbersAndBooleans) {
    EXPECT_EQ(kSmallest, RubyValue(kSmallest).asInteger());
    EXPECT_EQ(2, RubyValue(2.9).asInteger());
    EXPECT_EQ(-2, RubyValue(-2.9).asInteger());
    EXPECT_EQ(0, RubyValue(-0.5).asInteger());
    EXPECT_EQ(1, RubyValue(true).asInteger());
    EXPECT_EQ(0, RubyValue(false).asInteger());
}

TEST(Value, AsIntegerSaturates) {
    EXPECT_EQ(0, RubyValue(kNan).asInteger());
    EXPECT_EQ(0, RubyValue(-kNan).asInteger());
    EXPECT_EQ(kLargest, RubyValue(kInfinity).asInteger());
    EXPECT_EQ(kSmallest, RubyValue(-kInfinity).asInteger());
    EXPECT_EQ(kLargest, RubyValue(1e300).asInteger());
    EXPECT_EQ(kSmallest, RubyValue(-1e300).asInteger());
    EXPECT_EQ(kLargest, RubyValue(9223372036854775808.0).asInteger());
    EXPECT_EQ(9223372036854774784, RubyValue(9223372036854774784.0).asInteger());
    EXPECT_EQ(kSmallest, RubyValue(-9223372036854775808.0).asInteger());
}

TEST(Value, AsFloatAcceptsNumbersAndBooleans) {
    EXPECT_EQ(2.5, RubyValue(2.5).asFloat());
    EXPECT_EQ(5.0, RubyValue(5).asFloat());
    EXPECT_EQ(9007199254740992.0, RubyValue(9007199254740993).asFloat());
    EXPECT_EQ(9223372036854775808.0, RubyValue(kLargest).asFloat());
    EXPECT_EQ(1.0, RubyValue(true).asFloat());
    EXPECT_EQ(0.0, RubyValue(false).asFloat());
}

/// Checks an accessor's messages for the kinds that it refuses, in tag order.
void expectRefusals(const std::vector<Type>& accepted, const std::string& message,
                    const std::function<void(RubyValue&)>& access) {
    for (RubyValue& value : oneOfEachKind()) {
        const bool accepts = std::find(accepted.begin(), accepted.end(), value.type) != accepted.end();
        EXPECT_EQ(accepts ? "no error" : message, errorOf([&] { access(value); })) << describe(value);
    }
}

TEST(Value, AccessorsRefuseOtherKinds) {
    const std::vector<Type> numeric{Type::Integer, Type::Float, Type::Boolean};
    expectRefusals(numeric, "value is not numeric", [](RubyValue& value) { (void)value.asInteger(); });
    expectRefusals(numeric, "value is not numeric", [](RubyValue& value) { (void)value.asFloat(); });
    expectRefusals({Type::Boolean}, "value is not boolean", [](RubyValue& value) { (void)value.asBoolean(); });
    expectRefusals({Type::String}, "value is not a string", [](RubyValue& value) { (void)value.asString(); });
    expectRefusals({Type::Array}, "value is not an array", [](RubyValue& value) { (void)value.asArray(); });
    expectRefusals({Type::Map}, "value is not a map", [](RubyValue& value) { (void)value.asMap(); });
    expectRefusals({Type::Array}, "value is not an array", [](const RubyValue& value) { (void)value.asArray(); });
    expectRefusals({Type::Map}, "value is not a map", [](const RubyValue& value) { (void)value.asMap(); });
}

TEST(Value, AccessErrorsAreStandardRuntimeErrors) { EXPECT_THROW((void)RubyValue().asInteger(), std::runtime_error); }

TEST(Value, OnlyNilAndFalseAreFalsy) {
    EXPECT_FALSE(RubyValue().isTruthy());
    EXPECT_FALSE(RubyValue(false).isTruthy());
    for (const RubyValue& value : {RubyValue(true), RubyValue(0), RubyValue(0.0), RubyValue(kNan), RubyValue(""),
                                   RubyValue::makeArray(), RubyValue::makeMap(), makeFunctionValue("f")}) {
        EXPECT_TRUE(value.isTruthy()) << describe(value);
    }
}

TEST(Value, NumericKinds) {
    for (const RubyValue& value : oneOfEachKind()) {
        const bool numeric = value.isInteger() || value.isFloat() || value.isBoolean();
        EXPECT_EQ(numeric, value.isNumeric()) << describe(value);
    }
}

TEST(Value, CopiesOfContainersShareThem) {
    RubyValue array = RubyValue::makeArray();
    RubyValue arrayCopy = array;
    arrayCopy.asArray().push_back(1);
    array.asArray().push_back(2);
    EXPECT_EQ("[1, 2]", describe(array));
    EXPECT_EQ("[1, 2]", describe(arrayCopy));

    RubyValue map = RubyValue::makeMap();
    RubyValue mapCopy;
    mapCopy = map;
    mapCopy.asMap()["k"] = 1;
    EXPECT_EQ("{\"k\": 1}", describe(map));
}

TEST(Value, MovingLeavesNil) {
    RubyValue source("text");
    const RubyValue target(std::move(source));
    EXPECT_EQ("\"text\"", describe(target));
    EXPECT_TRUE(source.isNil());  // NOLINT(bugprone-use-after-move): a moved-from value is nil

    RubyValue other(RubyArray{1});
    RubyValue assigned(7);
    assigned = std::move(other);
    EXPECT_EQ("[1]", describe(assigned));
    EXPECT_TRUE(other.isNil());  // NOLINT(bugprone-use-after-move)
}

TEST(Value, AssigningFromItsOwnContentsIsSafe) {
    RubyValue value(RubyArray{RubyValue(RubyArray{"inner"})});
    value = value.asArray()[0];
    EXPECT_EQ("[\"inner\"]", describe(value));
    value = std::move(value.asArray()[0]);
    EXPECT_EQ("\"inner\"", describe(value));
    const RubyValue& alias = value;
    value = alias;
    EXPECT_EQ("\"inner\"", describe(value));
}

TEST(Value, SwapExchanges) {
    RubyValue left(1);
    RubyValue right("two");
    left.swap(right);
    EXPECT_EQ("\"two\"", describe(left));
    EXPECT_EQ("1", describe(right));
}

TEST(Value, CopyingAllocatesNothing) {
    const std::vector<RubyValue> values = oneOfEachKind();
    const AllocationMeter meter;
    for (const RubyValue& value : values) {
        const RubyValue copy(value);
        RubyValue assigned;
        assigned = copy;
    }
    EXPECT_EQ(0u, AllocationMeter::count());
}

TEST(Value, StringContentsSurviveTheirFirstHolder) {
    RubyValue copy;
    {
        const RubyValue text(std::string(1000, 'x'));
        copy = text;
    }
    EXPECT_EQ(std::string(1000, 'x'), copy.asString());
}

TEST(Value, ADeepNestIsFreedWithoutRecursion) {
    constexpr int kDepth = 1000000;
    RubyValue arrays;
    RubyValue maps;
    for (int i = 0; i < kDepth; ++i) {
        arrays = RubyArray{arrays};
        RubyMap entries;
        entries["next"] = maps;
        maps = std::move(entries);
    }
    arrays = nullptr;
    maps = nullptr;
    SUCCEED() << "the native stack held";
}

/// Counts how many of its copies are alive.
struct Alive {
    explicit Alive(int& count) : m_count(&count) { ++*m_count; }
    Alive(const Alive& other) : m_count(other.m_count) { ++*m_count; }
    Alive& operator=(const Alive&) = delete;
    ~Alive() { --*m_count; }

    int* m_count;
};

TEST(Value, ContainersAreFreedWithTheirLastHolder) {
    int alive = 0;
    auto handle = std::make_unique<RubyFunctionHandle>();
    handle->hostFunction = [witness = Alive(alive)](RubyVM&, RubyArguments) { return RubyValue(*witness.m_count); };
    RubyValue array(RubyArray{RubyValue(std::move(handle))});
    RubyValue copy = array;
    array = nullptr;
    EXPECT_EQ(1, alive);
    copy.asArray().clear();
    EXPECT_EQ(0, alive);
}

TEST(FunctionHandle, StartsAsAnUnnamedHostFunction) {
    const RubyFunctionHandle handle;
    EXPECT_EQ(RubyFunctionHandle::Kind::Host, handle.kind);
    EXPECT_EQ(RubyFunctionHandle::Intrinsic::None, handle.intrinsic);
    EXPECT_EQ(-1, handle.functionIndex);
    EXPECT_EQ(nullptr, handle.program);
    EXPECT_FALSE(static_cast<bool>(handle.hostFunction));
    EXPECT_EQ("", handle.name);
}

TEST(FunctionHandle, NumbersOfItsKinds) {
    EXPECT_EQ(0, static_cast<int>(RubyFunctionHandle::Kind::Script));
    EXPECT_EQ(1, static_cast<int>(RubyFunctionHandle::Kind::Host));
    EXPECT_EQ(0, static_cast<int>(RubyFunctionHandle::Intrinsic::None));
    EXPECT_EQ(1, static_cast<int>(RubyFunctionHandle::Intrinsic::Error));
    EXPECT_EQ(2, static_cast<int>(RubyFunctionHandle::Intrinsic::Pcall));
    EXPECT_EQ(3, static_cast<int>(RubyFunctionHandle::Intrinsic::TableSet));
}

TEST(Arguments, ViewIterateAndConvert) {
    const RubyArray values{1, "two", nullptr};
    const RubyArguments arguments(values);
    EXPECT_EQ(3u, arguments.size());
    EXPECT_FALSE(arguments.empty());
    EXPECT_EQ("\"two\"", describe(arguments[1]));
    EXPECT_EQ(values.data(), arguments.begin());
    std::string joined;
    for (const RubyValue& argument : arguments) {
        joined += describe(argument) + ";";
    }
    EXPECT_EQ("1;\"two\";nil;", joined);
    const std::vector<RubyValue> copies = arguments;
    EXPECT_EQ("[1, \"two\", nil]", describe(RubyValue(copies)));
    EXPECT_TRUE(RubyArguments().empty());
    EXPECT_TRUE(RubyArguments(nullptr, 0).empty());
}

TEST(Error, KeepsNulBytes) {
    const std::string message("a\0b", 3);
    const RubyError error(message);
    EXPECT_EQ(message, error.message());
    EXPECT_STREQ("a", error.what());
}

}  // namespace
}  // namespace morvel::ruby::tests
