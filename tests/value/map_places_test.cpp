#include "value/map_places.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace morvel::ruby::tests {
namespace {

using internal::MapPlace;
using internal::StringBox;

StringBox* boxOf(const RubyValue& text) { return static_cast<StringBox*>(text.data.box); }

/// A map from these keys to 0, 1, 2 and so on.
RubyMap makeMap(const std::vector<RubyValue>& keys) {
    RubyMap map;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        map.findOrInsert(keys[i]) = i;
    }
    return map;
}

std::vector<RubyValue> makeKeys(std::size_t count) {
    std::vector<RubyValue> keys;
    for (std::size_t i = 0; i < count; ++i) {
        keys.emplace_back("key" + std::to_string(i));
    }
    return keys;
}

TEST(MapPlace, FindsWhatIsThereInMapsOfEverySize) {
    for (const std::size_t count : {1U, 4U, 5U, 8U, 9U, 12U, 13U, 500U}) {
        const std::vector<RubyValue> keys = makeKeys(count);
        RubyMap map = makeMap(keys);
        for (std::size_t i = 0; i < count; ++i) {
            MapPlace place;
            for (int round = 0; round < 3; ++round) {
                const RubyValue* const found = place.find(map, boxOf(keys[i]));
                ASSERT_NE(nullptr, found) << count;
                EXPECT_EQ(static_cast<std::int64_t>(i), found->asInteger());
            }
        }
        const RubyValue missing("missing");
        MapPlace place;
        EXPECT_EQ(nullptr, place.find(map, boxOf(missing)));
    }
}

TEST(MapPlace, ServesMapsThatHoldTheKeyElsewhereOrNotAtAll) {
    const std::vector<RubyValue> keys = makeKeys(20);
    RubyMap large = makeMap(keys);
    RubyMap small = makeMap({keys[7], keys[3]});
    RubyMap empty;
    MapPlace place;
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(3, place.find(large, boxOf(keys[3]))->asInteger());
        EXPECT_EQ(1, place.find(small, boxOf(keys[3]))->asInteger());
        EXPECT_EQ(nullptr, place.find(empty, boxOf(keys[3])));
    }
}

TEST(MapPlace, TellsEqualTextsFromOthers) {
    const std::vector<RubyValue> keys = makeKeys(10);
    const std::vector<RubyValue> others = makeKeys(10);
    RubyMap map = makeMap(keys);
    MapPlace place;
    for (int round = 0; round < 2; ++round) {
        for (std::int64_t i = 0; i < 10; ++i) {
            // The place still remembers the previous key.
            EXPECT_EQ(i, place.find(map, boxOf(others[static_cast<std::size_t>(i)]))->asInteger());
        }
    }
}

TEST(MapPlace, ForgetsErasedEntries) {
    for (const std::size_t count : {6U, 20U}) {
        const std::vector<RubyValue> keys = makeKeys(count);
        RubyMap map = makeMap(keys);
        MapPlace place;
        ASSERT_NE(nullptr, place.find(map, boxOf(keys[4])));
        map.take(keys[4]);
        EXPECT_EQ(nullptr, place.find(map, boxOf(keys[4])));
        // Another key reuses the entry's memory.
        map.findOrInsert(RubyValue("new")) = "new";
        EXPECT_EQ(nullptr, place.find(map, boxOf(keys[4])));
        map.findOrInsert(keys[4]) = "again";
        EXPECT_EQ("again", place.find(map, boxOf(keys[4]))->asString());
        map.clear();
        EXPECT_EQ(nullptr, place.find(map, boxOf(keys[4])));
    }
}

TEST(MapPlace, FindsIntegersByTheirText) {
    RubyMap map;
    map.findOrInsert(RubyValue("x")) = 1;
    map.findOrInsert(RubyValue(12)) = 2;
    map.findOrInsert(RubyValue("9223372036854775807")) = 3;
    const RubyValue twelve("12");
    const RubyValue thirteen("13");
    const RubyValue largest("9223372036854775807");
    MapPlace place;
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(2, place.find(map, boxOf(twelve))->asInteger());
        EXPECT_EQ(nullptr, place.find(map, boxOf(thirteen)));
        EXPECT_EQ(3, place.find(map, boxOf(largest))->asInteger());
    }
}

}  // namespace
}  // namespace morvel::ruby::tests
