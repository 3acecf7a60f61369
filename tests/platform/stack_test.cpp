#include "platform/stack.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <thread>
#include <vector>

namespace morvel::ruby::tests {

namespace {

using platform::StackGrowth;

std::uintptr_t here() { return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)); }

/// True if the system reports a stack that contains this frame.
bool isOnStackOfThread() {
    const std::uintptr_t frame = here();
    const auto stack = platform::threadStack(frame);
    return stack && frame - stack->lowest < stack->size && stack->mapped - stack->lowest <= stack->size;
}

TEST(ThreadStack, HoldsTheFramesOfItsThread) {
    EXPECT_TRUE(isOnStackOfThread());
    bool isFound = false;
    std::thread([&isFound] { isFound = isOnStackOfThread(); }).join();
    EXPECT_TRUE(isFound);
}

TEST(ThreadStack, OfAThreadIsNotThatOfAnother) {
    const auto mine = platform::threadStack(here());
    ASSERT_TRUE(mine);
    std::optional<platform::ThreadStack> other;
    std::thread([&other] { other = platform::threadStack(here()); }).join();
    ASSERT_TRUE(other);
    EXPECT_NE(mine->lowest, other->lowest);
}

// As in a host that switches stacks itself, the address is on none of the system's stacks.
TEST(ThreadStack, IsTheOneOfTheSystemWhateverTheAddress) {
    std::thread([] {
        const auto stack = platform::threadStack(here());
        std::vector<char> stackOfHost(1 << 16);
        const auto elsewhere = platform::threadStack(reinterpret_cast<std::uintptr_t>(stackOfHost.data()));
        ASSERT_TRUE(stack && elsewhere);
        EXPECT_EQ(elsewhere->lowest, stack->lowest);
        EXPECT_EQ(elsewhere->size, stack->size);
    }).join();
}

TEST(StackGrowth, IsRefusedWhereThereIsNoMemory) {
    EXPECT_EQ(platform::growStack(here()), StackGrowth::Mapped);
    EXPECT_EQ(platform::growStack(platform::pageOf(here())), StackGrowth::Mapped);
    EXPECT_EQ(platform::growStack(platform::kSmallestPage), StackGrowth::Refused);
}

TEST(Pages, StartAtTheirFirstAddress) {
    static_assert(platform::pageOf(0) == 0);
    EXPECT_EQ(platform::pageOf(4095), 0U);
    EXPECT_EQ(platform::pageOf(4096), 4096U);
    EXPECT_EQ(platform::pageOf(9000), 8192U);
}

}  // namespace

}  // namespace morvel::ruby::tests
