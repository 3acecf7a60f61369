// Short strings that sums give are shared with equal ones, so that building a key again costs no memory.
#include <gtest/gtest.h>

#include <string>

#include "morvel/ruby/vm.h"
#include "support/describe.h"

namespace morvel::ruby::tests {
namespace {

RubyValue run(const std::string& source) {
    RubyVM vm;
    RubyResult result = vm.runScriptString(source, "t");
    EXPECT_TRUE(result.ok) << result.error;
    return result.value;
}

TEST(ShortTexts, OfEqualSumsAreTheSameString) {
    for (const std::string sum : {"text + number", "number + text", "text + text", "text + 7", "7 + text",
                                  "text + 'ab'", "'ab' + text", "'key' + number", "(text + number) + text"}) {
        RubyValue pair = run("def make(text, number) return [" + sum + ", " + sum + "] end return make('key', 12)");
        const RubyArray& sums = pair.asArray();
        ASSERT_EQ(2U, sums.size());
        EXPECT_EQ(describe(sums[0]), describe(sums[1])) << sum;
        EXPECT_EQ(sums[0].data.box, sums[1].data.box) << sum;
    }
}

TEST(ShortTexts, AreNoLongerThanFifteenBytes) {
    for (const std::string sum : {"text + 'abcdefgh'", "text + 12345678", "'abcdefgh' + text"}) {
        RubyValue pair = run("def make(text) return [" + sum + ", " + sum + "] end return make('1234567')");
        EXPECT_EQ(pair.asArray()[0].data.box, pair.asArray()[1].data.box) << sum;
        pair = run("def make(text) return [" + sum + ", " + sum + "] end return make('12345678')");
        EXPECT_EQ(describe(pair.asArray()[0]), describe(pair.asArray()[1])) << sum;
        EXPECT_NE(pair.asArray()[0].data.box, pair.asArray()[1].data.box) << sum;
    }
}

}  // namespace
}  // namespace morvel::ruby::tests
