// The view of the arguments that host functions receive.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "morvel/ruby/vm.h"
#include "support/describe.h"

namespace morvel::ruby::tests {
namespace {

TEST(Arguments, GiveNilBeyondTheEnd) {
    const std::vector<RubyValue> values{1, "two"};
    const RubyArguments arguments(values);
    EXPECT_EQ("1", describe(arguments[0]));
    EXPECT_EQ("\"two\"", describe(arguments[1]));
    EXPECT_EQ("nil", describe(arguments[2]));
    EXPECT_EQ("nil", describe(arguments[static_cast<std::size_t>(-1)]));
    EXPECT_EQ("nil", describe(RubyArguments()[0]));
}

TEST(Arguments, AtFailsBeyondTheEnd) {
    const std::vector<RubyValue> values{1};
    const RubyArguments arguments(values);
    EXPECT_EQ("1", describe(arguments.at(0)));
    const auto messageAt = [](const RubyArguments& view, std::size_t index) {
        try {
            return describe(view.at(index));
        } catch (const RubyError& error) {
            return error.message();
        }
    };
    EXPECT_EQ("missing argument 2", messageAt(arguments, 1));
    EXPECT_EQ("missing argument 1", messageAt(RubyArguments(), 0));
    EXPECT_EQ("missing argument 101", messageAt(arguments, 100));
}

// Values that earlier calls left beyond the arguments are out of reach.
TEST(Arguments, OfACallDoNotReachIntoEarlierOnes) {
    RubyVM vm;
    vm.bindFunction("first", [](RubyVM&, RubyArguments arguments) { return arguments[0]; });
    vm.bindFunction("second", [](RubyVM&, RubyArguments arguments) { return arguments.at(1); });
    const RubyResult result = vm.runScriptString(
        "def f() return [first(50), first(), pcall(second, 5, 6), pcall(second, 5), pcall(second)] end f()", "calls");
    EXPECT_EQ("[50, nil, [true, 6], [true, false, \"missing argument 2\"], [true, false, \"missing argument 2\"]]",
              describe(result.value))
        << result.error;
}

}  // namespace
}  // namespace morvel::ruby::tests
