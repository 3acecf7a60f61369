// The cost of a failure inside pcall: the language's own errors need no C++ exception.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <limits>
#include <string>

#include "morvel/ruby/vm.h"

namespace morvel::ruby::tests {
namespace {

/// The smallest CPU time of several runs that protect `body` again and again.
double costOf(const std::string& body) {
    const std::string source = "m = map_new() def two(a, b) c = a return c end\n def f(x) y = x " + body +
                               " return y end\n i = 0 while i < 2000 do r = pcall(f, 1) i = i + 1 end return r[1]";
    double smallest = std::numeric_limits<double>::max();
    for (int round = 0; round < 7; ++round) {
        RubyVM vm;
        const std::clock_t begin = std::clock();
        const RubyResult result = vm.runScriptString(source, "t");
        smallest = std::min(smallest, static_cast<double>(std::clock() - begin));
        EXPECT_TRUE(result.ok) << result.error;
        EXPECT_EQ(RubyValue(false).toString(), result.value.toString()) << body;
    }
    return smallest;
}

TEST(FailureCost, OfOperatorsIsThatOfError) {
    const std::array failing{
        "nil + x",
        "nil - x",
        "x * nil",
        "x / 0",
        "x % 0",
        "-m",
        "m < x",
        "if m <= 'a' then y = 2 end",
        "x[0]",
        "[x][nil]",
        "if m[[1]] then y = 2 end",
        "m[[1]] = 2",
        "s = 'a' s['b'] = 2",
        "undefined",
        "x()",
        "two(x)",
    };
    const double ofError = costOf("error('message')");
    for (const char* body : failing) {
        // An exception costs about thirty times as much.
        EXPECT_LT(costOf(body), ofError * 4) << body;
    }
}

}  // namespace
}  // namespace morvel::ruby::tests
