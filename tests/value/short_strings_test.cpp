#include "value/short_strings.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace morvel::ruby::tests {
namespace {

std::string word(int number) { return "w" + std::to_string(number); }

/// How many of `count` words a second round makes anew while those of the first are in use.
template <typename Strings>
int countMadeAnew(Strings& strings, int count) {
    std::vector<RubyValue> first;
    for (int i = 0; i < count; ++i) {
        first.push_back(strings.valueOf(word(i)));
    }
    int madeAnew = 0;
    for (int i = 0; i < count; ++i) {
        const RubyValue again = strings.valueOf(word(i));
        EXPECT_EQ(word(i), again.asString());
        madeAnew += again.data.box == first[static_cast<std::size_t>(i)].data.box ? 0 : 1;
    }
    return madeAnew;
}

TEST(ShortStrings, AreSharedByEqualTexts) {
    internal::ShortStrings<64> strings;
    for (const std::string text : {"", "a", "ab", "abc", "abcd", "abcdefg", "abcdefgh", "abcdefghijklmno"}) {
        const RubyValue string = strings.valueOf(text);
        EXPECT_EQ(text, string.asString());
        EXPECT_EQ(string.data.box, strings.valueOf(text).data.box) << text;
    }
    const std::string longer(internal::kLongestShortString + 1, 'x');
    const RubyValue longString = strings.valueOf(longer);
    EXPECT_NE(longString.data.box, strings.valueOf(longer).data.box);
}

TEST(ShortStrings, GrowWithTheStringsInUse) {
    internal::ShortStrings<16, 4096> growing;
    internal::ShortStrings<16> fixed;
    constexpr int kWords = 1000;
    // It grows step by step, the last step only when many sets hold more words than they have places for.
    for (int round = 0; round < 8; ++round) {
        countMadeAnew(growing, kWords);
    }
    EXPECT_LT(countMadeAnew(growing, kWords), kWords / 4);
    EXPECT_GT(countMadeAnew(fixed, kWords), kWords / 2);
}

TEST(ShortStrings, DoNotGrowForStringsThatNobodyHolds) {
    internal::ShortStrings<16, 4096> strings;
    for (int i = 0; i < 10000; ++i) {
        EXPECT_EQ(word(i), strings.valueOf(word(i)).asString());
    }
    std::vector<RubyValue> recent;
    for (int i = 0; i < 100; ++i) {
        recent.push_back(strings.valueOf(word(i)));
    }
    int kept = 0;
    for (int i = 0; i < 100; ++i) {
        kept += strings.valueOf(word(i)).data.box == recent[static_cast<std::size_t>(i)].data.box ? 1 : 0;
    }
    // Two for each of 16 sets.
    EXPECT_LE(kept, 32);
}

TEST(ShortStrings, ForgetAllWhenCleared) {
    internal::ShortStrings<16, 64> strings;
    EXPECT_FALSE(strings.clear());
    countMadeAnew(strings, 500);
    EXPECT_TRUE(strings.clear());
    EXPECT_FALSE(strings.clear());
    EXPECT_EQ("again", strings.valueOf("again").asString());
    EXPECT_TRUE(strings.clear());
}

}  // namespace
}  // namespace morvel::ruby::tests
