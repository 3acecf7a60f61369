// The array boxes that a thread keeps for reuse.
#include "value/box_pools.h"

#include <gtest/gtest.h>

#include <cstddef>

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
