// The chunks of the value stack: how large they are, and when they are freed.
#include "vm/engine/value_stack.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace morvel::ruby::tests {
namespace {

constexpr std::size_t kFirst = 1 << 10;
constexpr std::size_t kMost = 1 << 25;
constexpr std::size_t kLargestStep = 1 << 20;

/// Enters the next chunk and returns its size.
std::size_t enterNext(internal::ValueStack& stack, std::size_t count = 1) {
    const RubyValue* const begin = stack.enterNextChunk(count);
    return begin == nullptr ? 0 : static_cast<std::size_t>(stack.end() - begin);
}

TEST(ValueStack, DoublesItsChunksUpToALargestStep) {
    internal::ValueStack stack;
    EXPECT_EQ(kFirst, static_cast<std::size_t>(stack.end() - stack.begin()));
    for (std::size_t size = kFirst * 2; size <= kLargestStep; size *= 2) {
        EXPECT_EQ(size, enterNext(stack));
    }
    EXPECT_EQ(kLargestStep, enterNext(stack));
    EXPECT_EQ(kLargestStep + 1, enterNext(stack, kLargestStep + 1));
}

TEST(ValueStack, HasALimit) {
    internal::ValueStack stack;
    EXPECT_EQ(0U, enterNext(stack, kMost - kFirst + 1));
    EXPECT_EQ(0U, stack.chunk());
    EXPECT_EQ(kMost - kFirst, enterNext(stack, kMost - kFirst));
    EXPECT_EQ(0U, enterNext(stack));
}

TEST(ValueStack, KeepsLaterChunksForTheNextTime) {
    internal::ValueStack stack;
    const RubyValue* const end = stack.end();
    const RubyValue* const second = stack.enterNextChunk(1);
    stack.returnToChunk(0);
    EXPECT_EQ(end, stack.end());
    EXPECT_EQ(second, stack.enterNextChunk(kFirst * 2));
    EXPECT_EQ(1U, stack.chunk());
    stack.returnToChunk(0);
    // The second chunk is too small now.
    EXPECT_EQ(kFirst * 4, enterNext(stack, kFirst * 4));
    EXPECT_EQ(1U, stack.chunk());
}

TEST(ValueStack, GivesBackWhatIsNotWorthKeeping) {
    constexpr std::size_t kKept = 1 << 16;
    internal::ValueStack stack;
    EXPECT_EQ(kKept - kFirst, enterNext(stack, kKept - kFirst));
    stack.returnToChunk(0);
    stack.giveBack();
    EXPECT_TRUE(stack.giveBackSpare());
    EXPECT_FALSE(stack.giveBackSpare());
    EXPECT_EQ(kKept - kFirst + 1, enterNext(stack, kKept - kFirst + 1));
    stack.giveBack();
    stack.returnToChunk(0);
    stack.giveBack();
    EXPECT_FALSE(stack.giveBackSpare());
}

TEST(ValueStack, KeepsTheChunksInUse) {
    internal::ValueStack stack;
    EXPECT_EQ(kLargestStep, enterNext(stack, kLargestStep));
    EXPECT_FALSE(stack.giveBackSpare());
    stack.giveBack();
    stack.end()[-1] = RubyValue(7);
    EXPECT_EQ(1U, stack.chunk());
    EXPECT_EQ(7, stack.end()[-1].asInteger());
}

}  // namespace
}  // namespace morvel::ruby::tests
