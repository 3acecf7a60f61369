// Rendering of values.
#include "value/render.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <sstream>

#include "morvel/ruby/function.h"
#include "morvel/ruby/map.h"
#include "support/runs.h"
#include "value/numbers.h"

namespace morvel::ruby::tests {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(Render, Scalars) {
    EXPECT_EQ("nil", RubyValue().toString());
    EXPECT_EQ("true", RubyValue(true).toString());
    EXPECT_EQ("false", RubyValue(false).toString());
    EXPECT_EQ("0", RubyValue(0).toString());
    EXPECT_EQ("-42", RubyValue(-42).toString());
    EXPECT_EQ("1000000", RubyValue(1000000).toString());
    EXPECT_EQ("-9223372036854775808", RubyValue(std::numeric_limits<std::int64_t>::min()).toString());
    EXPECT_EQ("9223372036854775807", RubyValue(std::numeric_limits<std::int64_t>::max()).toString());
}

TEST(Render, FloatsHaveSixSignificantDigits) {
    const std::vector<std::pair<double, std::string>> cases{
        {1.0, "1"},
        {0.1, "0.1"},
        {2.5, "2.5"},
        {3.14159265, "3.14159"},
        {100000.0, "100000"},
        {999999.0, "999999"},
        {999999.5, "1e+06"},
        {1000000.0, "1e+06"},
        {0.0001, "0.0001"},
        {0.00001, "1e-05"},
        {0.30000000000000004, "0.3"},
        {123456789.0, "1.23457e+08"},
        {-0.0, "-0"},
        {0.0, "0"},
        {-2.5, "-2.5"},
        {1e100, "1e+100"},
        {1e-100, "1e-100"},
        {5e-324, "4.94066e-324"},
        {1.7976931348623157e308, "1.79769e+308"},
        {kInfinity, "inf"},
        {-kInfinity, "-inf"},
        {kNan, "nan"},
        {-kNan, "nan"},
    };
    for (const auto& [number, text] : cases) {
        EXPECT_EQ(text, RubyValue(number).toString());
    }
}

/// The number as a standard output stream prints it.
std::string streamed(double number) {
    std::ostringstream stream;
    stream << number;
    return stream.str();
}

TEST(Render, FloatsOfFewDigitsAgreeWithTheStandardStreams) {
    constexpr std::int64_t kLast = 1'100'000;
    for (std::int64_t thousandths = -kLast; thousandths <= kLast; thousandths += 131) {
        const double number = static_cast<double>(thousandths) / 1000.0;
        for (const double near : {number, std::nextafter(number, kInfinity), std::nextafter(number, -kInfinity),
                                  number + 1e-9, number + 2e-8, number + 4e-7, number - 6e-7, number * 1000.0}) {
            ASSERT_EQ(streamed(near), RubyValue(near).toString());
        }
    }
    for (const double number : {0.001, 0.00099999, 0.0010000049, 0.001000005, 999.999, 999.9995, 1000.0, 1000.5,
                                999999.0, 999999.4, 999999.5, 1e6, -0.0, -0.001, -999.999}) {
        EXPECT_EQ(streamed(number), RubyValue(number).toString());
    }
}

// Floats render as a standard output stream prints them by default.
TEST(Render, FloatsAgreeWithTheStandardStreams) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 20000; ++i) {
        const auto number = std::bit_cast<double>(random());
        if (std::isnan(number)) {
            continue;
        }
        ASSERT_EQ(streamed(number), RubyValue(number).toString());
    }
    std::uniform_real_distribution<double> near(-2000000.0, 2000000.0);
    for (int i = 0; i < 20000; ++i) {
        const double number = near(random) / (1 << (i % 40 < 31 ? i % 40 : 0));
        ASSERT_EQ(streamed(number), RubyValue(number).toString());
    }
}

TEST(Render, StringsAreTheirBytes) {
    EXPECT_EQ("", RubyValue("").toString());
    EXPECT_EQ("a\"b\\n\n", RubyValue("a\"b\\n\n").toString());
    const std::string bytes("\xff\0\x80", 3);
    EXPECT_EQ(bytes, RubyValue(bytes).toString());
}

TEST(Render, Arrays) {
    EXPECT_EQ("[]", RubyValue::makeArray().toString());
    EXPECT_EQ("[1, a, 2.5]", RubyValue(RubyArray{1, "a", 2.5}).toString());
    EXPECT_EQ("[nil, [true, []], ]", RubyValue(RubyArray{nullptr, RubyArray{true, RubyArray{}}, ""}).toString());
}

TEST(Render, MapsInInsertionOrderWithRawKeys) {
    EXPECT_EQ("{}", RubyValue::makeMap().toString());
    RubyMap entries;
    entries["z"] = 1;
    entries["a key"] = "text";
    entries["7"] = RubyArray{2};
    entries[""] = nullptr;
    EXPECT_EQ("{z: 1, a key: text, 7: [2], : nil}", RubyValue(entries).toString());
}

TEST(Render, FunctionsShowTheirName) {
    auto handle = std::make_unique<RubyFunctionHandle>();
    handle->name = "f";
    RubyMap entries;
    entries["k"] = 1;
    const RubyValue nested(RubyArray{entries, RubyValue(std::move(handle))});
    EXPECT_EQ("[{k: 1}, [function f]]", nested.toString());
}

TEST(Render, AppendsToWhatIsThere) {
    std::string text = "<";
    internal::appendText(text, RubyArray{1});
    internal::appendText(text, nullptr);
    EXPECT_EQ("<[1]nil", text);
}

TEST(Render, ACycleIsAnErrorNotACrash) {
    RubyValue array = RubyValue::makeArray();
    array.asArray().push_back(array);
    EXPECT_EQ("stack overflow", errorOf([&] { (void)array.toString(); }));
    array.asArray().clear();

    RubyValue map = RubyValue::makeMap();
    map.asMap()["self"] = map;
    EXPECT_EQ("stack overflow", errorOf([&] { (void)map.toString(); }));
    map.asMap().clear();
}

TEST(Render, ANestOfThousandsIsFine) {
    RubyValue nest(1);
    std::string expected = "1";
    for (int i = 0; i < 5000; ++i) {
        nest = RubyArray{nest};
        expected = "[" + expected + "]";
    }
    EXPECT_EQ(expected, nest.toString());
}

TEST(Numbers, TruncateSaturates) {
    EXPECT_EQ(0, internal::truncateToInteger(0.99));
    EXPECT_EQ(0, internal::truncateToInteger(-0.99));
    EXPECT_EQ(std::numeric_limits<std::int64_t>::max(), internal::truncateToInteger(9223372036854775808.0));
    EXPECT_EQ(std::numeric_limits<std::int64_t>::min(), internal::truncateToInteger(-9223372036854775808.0));
    EXPECT_EQ(std::numeric_limits<std::int64_t>::min(), internal::truncateToInteger(-9223372036854777856.0));
    EXPECT_EQ(0, internal::truncateToInteger(kNan));
}

TEST(Numbers, AppendToWhatIsThere) {
    std::string text = "n=";
    internal::appendInteger(text, -5);
    text += ' ';
    internal::appendFloat(text, 0.5);
    EXPECT_EQ("n=-5 0.5", text);
}

}  // namespace
}  // namespace morvel::ruby::tests
