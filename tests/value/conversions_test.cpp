// Which C++ types convert to values, and to which kinds.
#include "morvel/ruby/conversions.h"

#include <gtest/gtest.h>

#include <atomic>
#include <bitset>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <vector>

#include "morvel/ruby/vm.h"
#include "support/describe.h"

namespace morvel::ruby::tests {
namespace {

using Type = RubyValue::Type;

/// A class that converts to each of these types, and to nothing else.
template <typename... T>
struct To;
template <typename T>
struct To<T> {
    T held{};
    operator T() const { return held; }
};
template <typename First, typename... More>
requires(sizeof...(More) > 0) struct To<First, More...> : To<First>, To<More...> {
};

template <typename T>
struct ExplicitlyTo {
    explicit operator T() const { return T(); }
};

enum Plain { kPlainZero, kPlainSeven = 7, kPlainNegative = -2 };
enum Large : std::uint64_t { kLargest = std::numeric_limits<std::uint64_t>::max() };
enum Letter : char { kLetterA = 'a' };
enum Switch : bool { kOff = false, kOn = true };
enum class Scoped { Seven = 7 };
enum class ScopedFlag : bool { On = true };

struct Base {
    int member = 0;
    int function();
};
struct NamedText : std::string {
    using std::string::string;
};
struct Rows : RubyArray {
    using RubyArray::RubyArray;
};
struct CountedRows : Rows, To<int> {};
struct ChangingNumber {
    int held = 0;
    operator int() { return ++held; }
};
struct OnlyOnce {
    operator std::string() && { return "taken"; }
};
/// Converts to every type, as the value classes of other languages and formats do.
struct Anything {
    template <typename T>
    operator T() const {
        return T(7);
    }
};
struct OfItself {
    operator RubyValue() const { return "itself"; }
    operator int() const { return 1; }
    operator bool() const { return true; }
};
union NumberUnion {
    int held = 5;
    operator int() const { return held; }
};

template <typename T>
constexpr bool kConverts = std::is_convertible_v<T, RubyValue>&& std::is_constructible_v<RubyValue, T>;
template <typename T>
constexpr bool kIsNoValue = !std::is_convertible_v<T, RubyValue> && !std::is_constructible_v<RubyValue, T>;

// Numbers and strings, whatever their constness and value category.
static_assert(kConverts<bool> && kConverts<bool&> && kConverts<const bool&>);
static_assert(kConverts<char> && kConverts<signed char> && kConverts<unsigned char> && kConverts<wchar_t>);
static_assert(kConverts<char8_t> && kConverts<char16_t> && kConverts<char32_t>);
static_assert(kConverts<short> && kConverts<int> && kConverts<long> && kConverts<long long>);
static_assert(kConverts<unsigned short> && kConverts<unsigned> && kConverts<std::size_t> && kConverts<std::ptrdiff_t>);
static_assert(kConverts<float> && kConverts<double> && kConverts<long double> && kConverts<const float&>);
static_assert(kConverts<std::nullptr_t> && kConverts<char*> && kConverts<const char*> && kConverts<char[3]>);
static_assert(kConverts<std::string> && kConverts<std::string&> && kConverts<const std::string&>);
static_assert(kConverts<std::string_view> && kConverts<NamedText> && kConverts<NamedText&>);
static_assert(kConverts<RubyValue> && kConverts<RubyValue&> && kConverts<const RubyValue&>);
static_assert(kConverts<RubyArray> && kConverts<RubyArray&> && kConverts<const RubyArray&> && kConverts<Rows&>);
static_assert(kConverts<RubyMap> && kConverts<RubyMap&> && kConverts<const RubyMap&>);
static_assert(kConverts<std::unordered_map<std::string, RubyValue>&>);
static_assert(kConverts<To<RubyArray>> && kConverts<To<RubyMap>&> && kConverts<std::reference_wrapper<RubyMap>>);
#ifdef __SIZEOF_INT128__
__extension__ using Wide = __int128;
static_assert(kConverts<Wide>);
#endif

// Enumerations: those that convert to a number implicitly convert here too.
static_assert(kConverts<Plain> && kConverts<Large> && kConverts<Letter> && kConverts<Switch> && kConverts<Plain&>);
static_assert(kIsNoValue<Scoped> && kIsNoValue<ScopedFlag> && kIsNoValue<std::byte>);

// Pointers, member pointers and functions never become numbers or booleans, nor do objects that convert to them.
static_assert(kIsNoValue<int*> && kIsNoValue<void*> && kIsNoValue<const bool*> && kIsNoValue<RubyValue*>);
static_assert(kIsNoValue<unsigned char*> && kIsNoValue<char8_t*> && kIsNoValue<wchar_t*> && kIsNoValue<int[3]>);
static_assert(kIsNoValue<int Base::*> && kIsNoValue<int (Base::*)()> && kIsNoValue<int()> && kIsNoValue<int (*)()>);
static_assert(kIsNoValue<To<void*>> && kIsNoValue<To<int*>> && kIsNoValue<To<int Base::*>> &&
              kIsNoValue<To<int (*)()>>);
static_assert(kIsNoValue<std::atomic<int*>&> && kIsNoValue<std::shared_ptr<int>> && kIsNoValue<std::unique_ptr<int>>);
static_assert(kIsNoValue<decltype([] {})> && kIsNoValue<decltype([](int number) { return number; })>);
static_assert(kIsNoValue<std::function<int()>> && kIsNoValue<RubyHostFunction> && kIsNoValue<RubyVM&>);

// Classes with no conversions, or only explicit ones.
static_assert(kIsNoValue<Base> && kIsNoValue<std::optional<int>> && kIsNoValue<std::chrono::seconds>);
static_assert(kIsNoValue<ExplicitlyTo<bool>> && kIsNoValue<ExplicitlyTo<int>> && kIsNoValue<ExplicitlyTo<std::string>>);
static_assert(kIsNoValue<const ChangingNumber&> && kIsNoValue<OnlyOnce&> && kIsNoValue<std::vector<int>>);

// Function handles may be passed explicitly.
static_assert(std::is_constructible_v<RubyValue, std::unique_ptr<RubyFunctionHandle>>);
static_assert(!std::is_convertible_v<std::unique_ptr<RubyFunctionHandle>, RubyValue>);

// Conversions to several kinds are ambiguous: the host must choose.
static_assert(kIsNoValue<To<int, double>> && kIsNoValue<To<bool, int>> && kIsNoValue<To<bool, double>>);
static_assert(kIsNoValue<To<int, std::string>> && kIsNoValue<To<bool, const char*>>);
static_assert(kIsNoValue<To<RubyArray, RubyMap>> && kIsNoValue<To<std::string, RubyArray>>);
static_assert(kIsNoValue<To<std::string, RubyMap>> && kIsNoValue<To<const char*, RubyMap>>);
static_assert(kIsNoValue<To<double, RubyArray>> && kIsNoValue<To<std::string, std::string_view>>);

// Host functions may return anything that converts.
template <typename T>
constexpr bool kMayBeReturned = std::is_constructible_v<RubyHostFunction, T (*)(RubyVM&, RubyArguments)>;
static_assert(kMayBeReturned<int> && kMayBeReturned<std::size_t> && kMayBeReturned<float> && kMayBeReturned<bool>);
static_assert(kMayBeReturned<const char*> && kMayBeReturned<std::string> && kMayBeReturned<std::string_view>);
static_assert(kMayBeReturned<RubyArray> && kMayBeReturned<RubyMap> && kMayBeReturned<const RubyValue&>);
static_assert(kMayBeReturned<std::nullptr_t> && kMayBeReturned<Plain> && kMayBeReturned<std::filesystem::path>);
static_assert(kMayBeReturned<std::vector<bool>::reference> && kMayBeReturned<std::atomic<int>&>);
static_assert(!kMayBeReturned<void> && !kMayBeReturned<Scoped> && !kMayBeReturned<int*>);

/// The kind and text of a value copy-initialized from an object, the form that hosts use most.
template <typename T>
std::string copied(T&& object) {
    const RubyValue value = std::forward<T>(object);  // NOLINT(misc-const-correctness)
    return describe(value);
}

TEST(Conversions, ElementsOfFlagVectorsAreBooleans) {
    std::vector<bool> flags{false, true};
    const RubyValue clear = flags[0];
    EXPECT_EQ(Type::Boolean, clear.type);
    EXPECT_FALSE(clear.isTruthy());
    EXPECT_EQ("true", describe(RubyValue(flags[1])));
    const std::vector<bool>& constant = flags;
    EXPECT_EQ("false", copied(constant[0]));
    EXPECT_EQ("true", copied(flags.back()));
    auto element = flags[1];
    EXPECT_EQ("true", copied(element));
    RubyArray values;
    for (auto&& flag : flags) {
        values.push_back(flag);
    }
    EXPECT_EQ("[false, true]", describe(values));
}

TEST(Conversions, FlagsOfOtherKindsAreBooleans) {
    std::bitset<3> bits("010");
    EXPECT_EQ("true", copied(bits[1]));
    EXPECT_EQ("false", copied(bits[2]));
    std::atomic<bool> flag{true};
    EXPECT_EQ("true", copied(flag));
    EXPECT_EQ("true", copied(std::as_const(flag)));
    EXPECT_EQ("true", copied(std::true_type()));
    EXPECT_EQ("false", copied(std::false_type()));
    EXPECT_EQ("true", copied(std::is_class<Base>()));
    bool held = true;
    EXPECT_EQ("true", copied(std::ref(held)));
    EXPECT_EQ("true", copied(std::cref(held)));
    EXPECT_EQ("true", copied(To<bool>{true}));
    EXPECT_EQ("true", copied(kOn));
    EXPECT_EQ("false", copied(kOff));
    struct {
        unsigned number : 3;
        bool flag : 1;
    } const fields{5, true};
    EXPECT_EQ("true", describe(RubyValue(fields.flag)));
    EXPECT_EQ("5", describe(RubyValue(fields.number)));
}

TEST(Conversions, WhatHoldsAnIntegerIsOne) {
    std::atomic<int> count{-3};
    EXPECT_EQ("-3", copied(count));
    EXPECT_EQ("9", copied(std::atomic<std::uint64_t>(9)));
    EXPECT_EQ("3", copied(std::integral_constant<int, 3>()));
    int held = 4;
    EXPECT_EQ("4", copied(std::ref(held)));
    EXPECT_EQ("4", copied(std::cref(held)));
    EXPECT_EQ("60", copied(std::chrono::seconds(std::chrono::minutes(1)).count()));
    EXPECT_EQ("5", copied(To<int>{5}));
    EXPECT_EQ("9223372036854775807", copied(To<std::int64_t>{std::numeric_limits<std::int64_t>::max()}));
    EXPECT_EQ("-1", copied(To<std::uint64_t>{std::numeric_limits<std::uint64_t>::max()}));
    EXPECT_EQ("97", copied(To<char>{'a'}));
    EXPECT_EQ("7", copied(To<short>{7}));
    EXPECT_EQ("7", copied(To<Plain>{kPlainSeven}));
    EXPECT_EQ("6", copied(ChangingNumber{5}));
    ChangingNumber changing;
    EXPECT_EQ("1", copied(changing));
    EXPECT_EQ("5", copied(NumberUnion{}));
}

TEST(Conversions, EnumeratorsAreIntegers) {
    EXPECT_EQ("0", copied(kPlainZero));
    EXPECT_EQ("7", copied(kPlainSeven));
    EXPECT_EQ("-2", copied(kPlainNegative));
    EXPECT_EQ("-1", copied(kLargest));
    EXPECT_EQ("97", copied(kLetterA));
    EXPECT_EQ(Type::Integer, RubyValue(kPlainZero).type);
}

TEST(Conversions, CharactersAreIntegers) {
    EXPECT_EQ("97", copied('a'));
    EXPECT_EQ("97", copied(L'a'));
    EXPECT_EQ("97", copied(u8'a'));
    EXPECT_EQ("97", copied(u'a'));
    EXPECT_EQ("97", copied(U'a'));
}

TEST(Conversions, FloatsOfEverySizeAreFloats) {
    for (const RubyValue& value : {RubyValue(2.0f), RubyValue(2.0), RubyValue(2.0L), RubyValue(To<float>{2.0f}),
                                   RubyValue(To<double>{2.0}), RubyValue(To<long double>{2.0L})}) {
        EXPECT_EQ(Type::Float, value.type);
        EXPECT_EQ(2.0, value.asFloat());
    }
    std::atomic<double> level{0.5};
    EXPECT_EQ("0.5", copied(level));
    double held = 1.5;
    EXPECT_EQ("1.5", copied(std::ref(held)));
}

TEST(Conversions, WhatConvertsToATextIsAString) {
    EXPECT_EQ("\"dir/file\"", copied(std::filesystem::path("dir/file")));
    EXPECT_EQ("\"text\"", copied(To<std::string>{"text"}));
    EXPECT_EQ("\"text\"", copied(To<std::string_view>{"text"}));
    EXPECT_EQ("\"text\"", copied(To<const char*>{"text"}));
    EXPECT_EQ("\"\"", copied(To<const char*>{}));
    EXPECT_EQ("\"\"", copied(To<char*>{}));
    EXPECT_EQ("\"text\"", copied(NamedText("text")));
    EXPECT_EQ("\"taken\"", copied(OnlyOnce()));
    std::string held = "held";
    EXPECT_EQ("\"held\"", copied(std::ref(held)));
    EXPECT_EQ("\"held\"", copied(std::cref(held)));
    char text[] = "array";
    EXPECT_EQ("\"array\"", copied(text));
}

TEST(Conversions, ContainersStayContainers) {
    EXPECT_EQ("[1, 2]", describe(RubyValue(Rows{1, 2})));
    EXPECT_EQ("[1, 2]", describe(RubyValue(To<RubyArray>{{1, 2}})));
    EXPECT_EQ("[1, 2]", copied(To<RubyArray>{{1, 2}}));
    EXPECT_EQ("{\"a\": 1}", copied(To<RubyMap>{{{"a", 1}}}));
    EXPECT_EQ("{\"a\": 1}", describe(RubyValue(To<RubyMap>{{{"a", 1}}})));
    EXPECT_EQ("{\"a\": 1}", copied(To<std::unordered_map<std::string, RubyValue>>{{{"a", 1}}}));
    CountedRows counted;
    counted.push_back(3);
    EXPECT_EQ("[3]", describe(RubyValue(counted)));
    RubyMap held{{"b", 2}};
    RubyValue made = std::ref(held);
    made.asMap()["c"] = 3;
    EXPECT_EQ("{\"b\": 2}", copied(std::cref(held)));
    EXPECT_EQ("[1, \"x\"]", copied(RubyArguments(RubyArray{1, "x"})));
    EXPECT_EQ("[[1], 2.5, true, nil]", describe(RubyValue({RubyArray{1}, 2.5, true, nullptr})));
}

TEST(Conversions, AClassMaySayItself) {
    const RubyValue value = OfItself();
    EXPECT_EQ("\"itself\"", describe(value));
    const RubyValue any = Anything();
    EXPECT_EQ("7", describe(any));
    RubyValue held = 3;
    const RubyValue referred = std::ref(held);
    EXPECT_EQ("3", describe(referred));
}

#ifdef __SIZEOF_INT128__
TEST(Conversions, WideIntegersAreNumbers) {
    const RubyValue value = static_cast<Wide>(5);
    EXPECT_EQ(std::is_integral_v<Wide> ? Type::Integer : Type::Float, value.type);
    EXPECT_EQ(5, value.asInteger());
}
#endif

TEST(Conversions, ResultsOfHostFunctionsConvert) {
    RubyVM vm;
    std::vector<bool> flags{false};
    std::atomic<int> count{2};
    vm.bindFunction("flag", [&](RubyVM&, RubyArguments) { return flags[0]; });
    vm.bindFunction("count", [&](RubyVM&, RubyArguments) -> std::atomic<int>& { return count; });
    vm.bindFunction("state", [](RubyVM&, RubyArguments) { return kPlainSeven; });
    vm.bindFunction("place", [](RubyVM&, RubyArguments) { return std::filesystem::path("a/b"); });
    vm.setGlobal("clear", flags[0]);
    const RubyResult result = vm.runScriptString("[flag(), count(), state(), place(), clear]", "results");
    EXPECT_EQ("[false, 2, 7, \"a/b\", false]", describe(result.value)) << result.error;
}

}  // namespace
}  // namespace morvel::ruby::tests
