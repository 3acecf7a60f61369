// The array boxes and large buffers that a thread keeps for reuse.
#include "value/box_pools.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "morvel/ruby/value.h"

namespace morvel::ruby::internal {
namespace {

/// A dead array with capacity for `room` elements.
ArrayBox* deadArray(std::size_t room) {
    auto* const array = new ArrayBox;
    array->elements.reserve(room);
    return array;
}

/// False if the array was freed instead of kept.
bool keeps(SpareArrays& spares, std::size_t room) {
    ArrayBox* const array = deadArray(room);
    if (!spares.keep(array)) {
        delete array;
        return false;
    }
    return true;
}

TEST(SpareArrays, KeepsAsManyOfASizeAsWereMissed) {
    SpareArrays spares;
    if (MORVEL_RECYCLES_BOXES == 0) {
        // AddressSanitizer must see the end of every box.
        EXPECT_EQ(spares.take(2), nullptr);
        EXPECT_FALSE(keeps(spares, 2));
        return;
    }
    for (const std::size_t room : {std::size_t{1}, std::size_t{2}, std::size_t{3}, std::size_t{4}}) {
        EXPECT_FALSE(keeps(spares, room));
        EXPECT_EQ(spares.take(room), nullptr);
        EXPECT_EQ(spares.take(room), nullptr);
        EXPECT_TRUE(keeps(spares, room));
        EXPECT_TRUE(keeps(spares, room));
        EXPECT_FALSE(keeps(spares, room));
        ArrayBox* const array = spares.take(room);
        ASSERT_NE(array, nullptr);
        EXPECT_EQ(array->references, 1U);
        EXPECT_EQ(array->elements.capacity(), room);
        EXPECT_TRUE(spares.keep(array));
    }
    EXPECT_TRUE(spares.shrink(1));
    EXPECT_FALSE(spares.shrink(1));
    EXPECT_TRUE(spares.shrink(0));
    EXPECT_EQ(spares.take(2), nullptr);
}

TEST(SpareArrays, KeepsNeitherEmptyNorLongOnes) {
    SpareArrays spares;
    for (const std::size_t room : {std::size_t{0}, std::size_t{5}, std::size_t{1000}}) {
        EXPECT_EQ(spares.take(room), nullptr);
        EXPECT_FALSE(keeps(spares, room));
    }
}

TEST(SpareArrays, AreNoMoreThanSixteenThousandOfASize) {
    constexpr std::size_t kMost = MORVEL_RECYCLES_BOXES != 0 ? 1 << 14 : 0;
    SpareArrays spares;
    for (std::size_t i = 0; i <= kMost; ++i) {
        EXPECT_EQ(spares.take(1), nullptr);
    }
    for (std::size_t i = 0; i < kMost; ++i) {
        EXPECT_TRUE(keeps(spares, 1));
    }
    EXPECT_FALSE(keeps(spares, 1));
    spares.shrink(0);
}

TEST(FreeList, KeepsNoMoreThanSixtyFiveThousandBlocks) {
    constexpr std::size_t kMost = MORVEL_RECYCLES_BOXES != 0 ? 1 << 16 : 0;
    constexpr std::size_t kSize = 64;
    FreeList list;
    std::vector<void*> blocks;
    for (std::size_t i = 0; i <= kMost; ++i) {
        blocks.push_back(list.take(kSize));
    }
    for (void* const block : blocks) {
        list.give(block);
    }
    EXPECT_FALSE(list.shrink(kMost));
    if (kMost != 0) {
        EXPECT_TRUE(list.shrink(kMost - 1));
        // The last kept is the first to be reused.
        void* const block = list.take(kSize);
        list.give(block);
        EXPECT_EQ(block, list.take(kSize));
        list.give(block);
        EXPECT_FALSE(list.shrink(kMost - 1));
        EXPECT_TRUE(list.shrink(0));
    }
}

/// Keeps an empty array with room for `room` elements.
void keepLarge(SpareBuffers<ArrayBox>& spares, std::size_t room) {
    EXPECT_TRUE(spares.keepAny(deadArray(room))) << room;
}

/// The room of the array that serves a request for `count` elements; 0 if none does.
std::size_t roomServed(SpareBuffers<ArrayBox>& spares, std::size_t count) {
    ArrayBox* const array = spares.take(count);
    const std::size_t room = array == nullptr ? 0 : array->elements.capacity();
    delete array;
    return room;
}

constexpr std::size_t kLarge = kLargeBuffer / sizeof(RubyValue);

TEST(SpareBuffers, ServeRequestsOfAtLeastHalfTheirSize) {
    SpareBuffers<ArrayBox> spares;
    keepLarge(spares, 4 * kLarge);
    EXPECT_EQ(0U, roomServed(spares, 4 * kLarge + 1));
    EXPECT_EQ(0U, roomServed(spares, 2 * kLarge - 1));
    EXPECT_EQ(4 * kLarge, roomServed(spares, 2 * kLarge));
    EXPECT_EQ(0U, roomServed(spares, 2 * kLarge));
    keepLarge(spares, 4 * kLarge);
    EXPECT_EQ(4 * kLarge, roomServed(spares, 4 * kLarge));
    EXPECT_FALSE(spares.clear());
}

TEST(SpareBuffers, ServeTheSmallestThatFits) {
    SpareBuffers<ArrayBox> spares;
    for (const std::size_t room : {5 * kLarge, 3 * kLarge, 4 * kLarge, 2 * kLarge}) {
        keepLarge(spares, room);
    }
    EXPECT_EQ(3 * kLarge, roomServed(spares, 3 * kLarge - 1));
    EXPECT_EQ(4 * kLarge, roomServed(spares, 3 * kLarge - 1));
    EXPECT_EQ(5 * kLarge, roomServed(spares, 3 * kLarge - 1));
    EXPECT_EQ(0U, roomServed(spares, 3 * kLarge - 1));
    EXPECT_TRUE(spares.clear());
    EXPECT_FALSE(spares.clear());
}

TEST(SpareBuffers, AreLargeAndFew) {
    constexpr std::size_t kMostBoxes = 32;
    constexpr std::size_t kMostElements = (std::size_t{4} << 20) / sizeof(RubyValue);
    SpareBuffers<ArrayBox> spares;
    ArrayBox* const small = deadArray(kLarge - 1);
    EXPECT_FALSE(spares.keepAny(small));
    delete small;
    // The oldest make room for the newest: the first array is the only one of its size.
    keepLarge(spares, 2 * kLarge);
    for (std::size_t i = 1; i < kMostBoxes; ++i) {
        keepLarge(spares, kLarge);
    }
    EXPECT_EQ(2 * kLarge, roomServed(spares, 2 * kLarge));
    keepLarge(spares, 2 * kLarge);
    keepLarge(spares, kLarge);
    keepLarge(spares, 3 * kLarge);
    EXPECT_EQ(2 * kLarge, roomServed(spares, 2 * kLarge));
    EXPECT_TRUE(spares.clear());
    // By size, too.
    keepLarge(spares, kMostElements / 2);
    keepLarge(spares, kMostElements / 2 - kLarge);
    keepLarge(spares, kLarge);
    EXPECT_EQ(kMostElements / 2, roomServed(spares, kMostElements / 2));
    keepLarge(spares, kMostElements / 2);
    keepLarge(spares, kLarge);
    EXPECT_EQ(kMostElements / 2, roomServed(spares, kMostElements / 2));
    EXPECT_EQ(0U, roomServed(spares, kMostElements / 2 - kLarge));
    EXPECT_TRUE(spares.clear());
}

TEST(SpareBuffers, KeepOneHugeUntilRequestsThatItDidNotFitAddUp) {
    constexpr std::size_t kHuge = (std::size_t{4} << 20) / sizeof(RubyValue) + 1;
    SpareBuffers<ArrayBox> spares;
    keepLarge(spares, 2 * kHuge);
    EXPECT_EQ(2 * kHuge, roomServed(spares, kHuge));
    keepLarge(spares, 2 * kHuge);
    // The next takes its place.
    keepLarge(spares, 4 * kHuge);
    EXPECT_EQ(0U, roomServed(spares, kHuge));
    EXPECT_EQ(0U, roomServed(spares, kHuge));
    EXPECT_EQ(0U, roomServed(spares, kHuge));
    EXPECT_EQ(4 * kHuge, roomServed(spares, 3 * kHuge));
    keepLarge(spares, 4 * kHuge);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(0U, roomServed(spares, kHuge));
    }
    EXPECT_FALSE(spares.clear());
}

TEST(SpareBuffers, KeepNoneOfMoreThanSixtyFourMebibytes) {
    constexpr std::size_t kMost = (std::size_t{64} << 20) / sizeof(RubyValue);
    SpareBuffers<ArrayBox> spares;
    ArrayBox* const array = deadArray(kMost + 1);
    EXPECT_FALSE(spares.keepAny(array));
    delete array;
    keepLarge(spares, kMost);
    EXPECT_EQ(kMost, roomServed(spares, kMost));
}

TEST(MakeArrayFor, GivesAnEmptyArrayWithRoom) {
    for (std::size_t room = 0; room < 10; ++room) {
        RubyValue array = makeArrayFor(room);
        EXPECT_EQ(array.asArray().size(), 0U);
        EXPECT_GE(array.asArray().capacity(), room);
        RubyValue copy = array;
        copy.asArray().emplace_back(1);
        EXPECT_EQ(array.asArray().size(), 1U);
    }
}

}  // namespace
}  // namespace morvel::ruby::internal
