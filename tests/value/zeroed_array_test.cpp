// Arrays that start as zeros.
#include "value/zeroed_array.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace morvel::ruby::internal {
namespace {

using Number = std::uint64_t;

TEST(ZeroedArray, HoldsZerosWhateverItsSize) {
    for (const std::size_t count : {std::size_t{1}, std::size_t{1'000}, std::size_t{100'000}}) {
        // The second array of a size may reuse the memory of the first.
        for (int round = 0; round < 2; ++round) {
            const ZeroedArray<Number> array = makeZeroedArray<Number>(count);
            EXPECT_TRUE(std::all_of(array.get(), array.get() + count, [](Number number) { return number == 0; }));
            std::fill_n(array.get(), count, std::numeric_limits<Number>::max());
        }
    }
}

TEST(ZeroedArray, OnlyALargeOneComesFromTheSystem) {
    constexpr std::size_t kLarge = std::size_t{256} * 1024;
    EXPECT_EQ(kLarge, makeZeroedArray<char>(kLarge).get_deleter().mappedBytes);
    EXPECT_EQ(0U, makeZeroedArray<char>(kLarge - 1).get_deleter().mappedBytes);
}

TEST(ZeroedArray, CannotBeLargerThanTheAddressSpace) {
    constexpr std::size_t kMost = std::numeric_limits<std::size_t>::max() / sizeof(Number);
    // Their sizes in bytes, as far as these fit a number, would be 0 and 8.
    EXPECT_THROW(static_cast<void>(makeZeroedArray<Number>(kMost + 1)), std::bad_alloc);
    EXPECT_THROW(static_cast<void>(makeZeroedArray<Number>(kMost + 2)), std::bad_alloc);
}

}  // namespace
}  // namespace morvel::ruby::internal
