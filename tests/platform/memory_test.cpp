// Memory obtained from the system, and how much of it there is.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

#include "platform/free_memory.h"
#include "platform/large_pages.h"
#include "platform/mapped_memory.h"
#include "platform/memory_limits.h"

namespace morvel::ruby::tests {

namespace {

constexpr std::size_t kMegabyte = 1 << 20;

TEST(MappedMemory, IsZeroedAndWritable) {
    constexpr std::size_t kBytes = 3 * kMegabyte + 1;
    auto* const block = static_cast<std::uint8_t*>(platform::mapZeroed(kBytes));
    ASSERT_NE(block, nullptr);
    EXPECT_TRUE(std::all_of(block, block + kBytes, [](std::uint8_t byte) { return byte == 0; }));
    std::fill(block, block + kBytes, std::uint8_t{7});
    EXPECT_EQ(block[kBytes - 1], 7);
    platform::unmap(block, kBytes);
}

TEST(MappedMemory, IsNullWhereTheSystemHasNone) {
    EXPECT_EQ(platform::mapZeroed(std::numeric_limits<std::size_t>::max() / 2), nullptr);
}

TEST(MemoryLimits, AreWhatAProcessCanLiveWith) {
    EXPECT_GT(platform::machineMemory(), 64 * kMegabyte);
    EXPECT_LT(platform::machineMemory(), platform::kNoMemoryLimit);
    for (const std::size_t limit : {platform::processMemoryLimit(), platform::groupMemoryLimit()}) {
        EXPECT_GT(limit, kMegabyte);
        EXPECT_LE(limit, platform::kNoMemoryLimit);
    }
}

TEST(AdviceToTheSystem, ChangesNoContent) {
    std::vector<std::uint8_t> bytes(9 * kMegabyte, 1);
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, bytes.size() - 1}) {
        platform::preferLargePages(bytes.data() + 1, size);
    }
    platform::preferLargePages(nullptr, 0);
    platform::returnFreeMemory();
    EXPECT_TRUE(std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return byte == 1; }));
}

}  // namespace

}  // namespace morvel::ruby::tests
