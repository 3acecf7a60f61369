#include "value/short_strings.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace morvel::ruby::tests {
namespace {

std::string word(int number) { return "w" + std::to_string(number); }

/// How many strings are made for `draws` draws from `count` words while all the strings stay in use.
template <typename Strings>
std::size_t countStrings(Strings& strings, int count, int draws) {
    std::vector<RubyValue> inUse;
    std::set<const void*> boxes;
    std::uint64_t state = 1;
    for (int i = 0; i < draws; ++i) {
        state = state * 6364136223846793005U + 1442695040888963407U;
        const std::string text = word(static_cast<int>((state >> 40) % static_cast<unsigned>(count)));
        inUse.push_back(strings.valueOf(text));
        EXPECT_EQ(text, inUse.back().asString());
        boxes.insert(inUse.back().data.box);
    }
    return boxes.size();
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
    constexpr int kWords = 48;
    constexpr int kDraws = 5000;
    EXPECT_LT(countStrings(growing, kWords, kDraws), 500U);
    EXPECT_GT(countStrings(fixed, kWords, kDraws), 1000U);
}

TEST(ShortStrings, DoNotGrowForMoreTextsThanTheyCouldShare) {
    internal::ShortStrings<16, 4096> strings;
    constexpr int kWords = 3000;
    constexpr int kDraws = 30000;
    EXPECT_GT(countStrings(strings, kWords, kDraws), kDraws * 9U / 10);
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
    // Two for each of the 16 sets.
    EXPECT_LE(kept, 32);
}

TEST(ShortStrings, ForgetAllWhenCleared) {
    internal::ShortStrings<16, 64> strings;
    EXPECT_FALSE(strings.clear());
    countStrings(strings, 48, 500);
    EXPECT_TRUE(strings.clear());
    EXPECT_FALSE(strings.clear());
    EXPECT_EQ("again", strings.valueOf("again").asString());
    EXPECT_TRUE(strings.clear());
}

}  // namespace
}  // namespace morvel::ruby::tests
