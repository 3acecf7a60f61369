// RubyMap used as one would use a std::unordered_map.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "morvel/ruby/map.h"
#include "morvel/ruby/vm.h"
#include "support/describe.h"

namespace morvel::ruby::tests {
namespace {

std::string describe(const RubyMap& map) { return tests::describe(RubyValue(map)); }

TEST(MapInterface, BracesGiveTheEntries) {
    EXPECT_EQ("{}", describe(RubyMap{}));
    EXPECT_EQ("{\"a\": 1}", describe(RubyMap{{"a", 1}}));
    EXPECT_EQ("{\"a\": \"b\"}", describe(RubyMap{{"a", "b"}}));
    const RubyMap map{{"x", 1}, {"list", RubyArray{1, 2}}, {"map", RubyMap{{"y", nullptr}}}, {"x", 3}};
    EXPECT_EQ("{\"x\": 1, \"list\": [1, 2], \"map\": {\"y\": nil}}", describe(map));
    RubyMap assigned;
    assigned = {{"z", 2.5}};
    EXPECT_EQ("{\"z\": 2.5}", describe(assigned));
    assigned = {};
    EXPECT_TRUE(assigned.empty());
}

TEST(MapInterface, ValuesAreMadeFromMaps) {
    EXPECT_EQ("{\"a\": 1}", tests::describe(RubyValue(RubyMap{{"a", 1}})));
    EXPECT_EQ("{\"a\": 1}", tests::describe(RubyValue{RubyMap{{"a", 1}}}));
    const RubyMap map{{"a", 1}};
    const RubyValue copied = map;
    EXPECT_EQ("{\"a\": 1}", tests::describe(copied));
    // When standard maps were the only choice, these braces meant one.
    EXPECT_EQ(2u, RubyValue({{"a", 1}, {"b", 2}}).asMap().size());
    RubyVM vm;
    vm.setGlobal("m", RubyMap{{"x", 1}, {"y", 2}});
    EXPECT_EQ("2", tests::describe(vm.runScriptString("m[\"y\"]", "t").value));
}

TEST(MapInterface, RangesGiveTheEntries) {
    const std::vector<std::pair<std::string, int>> pairs{{"b", 1}, {"a", 2}};
    const RubyMap map(pairs.begin(), pairs.end());
    EXPECT_EQ("{\"b\": 1, \"a\": 2}", describe(map));
    const std::map<std::string, RubyValue> sorted(map.begin(), map.end());
    EXPECT_EQ(2, sorted.at("a").asInteger());
    const std::vector<std::pair<std::string, RubyValue>> back(map.begin(), map.end());
    EXPECT_EQ("b", back[0].first);
    const RubyMap again(map.begin(), map.end());
    EXPECT_EQ(map, again);
}

TEST(MapInterface, EveryKindOfLoopWorks) {
    RubyMap map{{"a", 1}, {"2", 2}, {"a key of more than fifteen bytes", 3}};
    const RubyMap& readOnly = map;
    std::string seen;
    for (auto& [key, value] : map) {
        static_assert(std::is_same_v<decltype(value), RubyValue&>);
        value = value.asInteger() * 10;
    }
    for (auto& [key, value] : readOnly) {
        static_assert(std::is_same_v<decltype(value), const RubyValue&>);
        seen += key + "=" + value.toString() + ";";
    }
    for (const auto& [key, value] : map) {
        seen += key + "=" + value.toString() + ";";
    }
    for (auto&& [key, value] : map) {
        value = 0;
    }
    for (auto [key, value] : map) {
        value = key;
    }
    for (auto entry : readOnly) {
        seen += entry.first + "=" + entry.second.toString() + ";";
    }
    EXPECT_EQ(
        "a=10;2=20;a key of more than fifteen bytes=30;a=10;2=20;a key of more than fifteen bytes=30;"
        "a=a;2=2;a key of more than fifteen bytes=a key of more than fifteen bytes;",
        seen);
    for (auto it = map.begin(); it != map.end(); it++) {
        it->second = 5;
        EXPECT_EQ(&it->second, &(*it).second);
    }
    EXPECT_TRUE(std::all_of(map.cbegin(), map.cend(), [](const auto& entry) { return entry.second.asInteger() == 5; }));
}

TEST(MapInterface, CopiesOfPairsKeepTheirText) {
    RubyMap map{{"a", 1}, {"7", 2}};
    auto it = map.begin();
    auto first = *it;
    ++it;
    const auto second = *it;
    ++it;
    EXPECT_EQ("a", first.first);
    EXPECT_EQ("7", second.first);
    first.second = 3;
    EXPECT_EQ("{\"a\": 3, \"7\": 2}", describe(map));
}

TEST(MapInterface, IteratorsConvertAndCompare) {
    RubyMap map{{"a", 1}, {"b", 2}};
    RubyMap::const_iterator it = map.begin();
    EXPECT_TRUE(it == map.begin());
    EXPECT_TRUE(map.cbegin() == it);
    EXPECT_TRUE(it != map.end());
    EXPECT_EQ("a", it->first);
    it = map.find("b");
    EXPECT_EQ("b", it->first);
    EXPECT_TRUE(++it == map.cend());
    EXPECT_EQ(2, std::distance(map.begin(), map.end()));
    static_assert(!std::is_convertible_v<RubyMap::const_iterator, RubyMap::iterator>);
    static_assert(std::input_iterator<RubyMap::iterator> && std::input_iterator<RubyMap::const_iterator>);
}

// As with std::unordered_map, whose iterators yield references to its entries.
TEST(MapInterface, PairsOutliveTemporaryIterators) {
    static_assert(std::is_same_v<decltype(*std::declval<RubyMap::iterator&>()), RubyMap::reference>);
    static_assert(std::is_same_v<decltype(*std::declval<const RubyMap::iterator&>()), RubyMap::reference>);
    static_assert(!std::is_reference_v<decltype(*std::declval<RubyMap&>().begin())>);
    static_assert(!std::is_reference_v<decltype(*std::declval<const RubyMap&>().begin())>);
    static_assert(!std::is_reference_v<decltype(*std::declval<RubyMap::iterator&>()++)>);
    RubyMap map{{"a key of more than fifteen bytes", 1}, {"b", 2}};
    const auto& [key, value] = *map.find("a key of more than fifteen bytes");
    const auto& first = *std::as_const(map).begin();
    auto position = map.begin();
    const auto& passed = *position++;
    const auto&& behind = *std::next(map.begin());
    EXPECT_EQ("a key of more than fifteen bytes", key);
    value = 3;
    EXPECT_EQ(3, first.second.asInteger());
    EXPECT_EQ(key, first.first);
    EXPECT_EQ(key, passed.first);
    EXPECT_EQ("b", behind.first);
    // Dereferencing the iterator again yields the same pair.
    EXPECT_EQ("b", (*std::move(position)).first);
    EXPECT_EQ("b", position->first);  // NOLINT(bugprone-use-after-move)
}

TEST(MapInterface, HintsAreTakenAndNotNeeded) {
    RubyMap map{{"a", 1}};
    EXPECT_EQ("b", map.insert(map.end(), {"b", 2})->first);
    EXPECT_EQ(1, map.insert(map.cbegin(), {"a", 5})->second.asInteger());
    EXPECT_EQ(3, map.try_emplace(map.begin(), "c", 3)->second.asInteger());
    EXPECT_EQ(3, map.try_emplace(map.begin(), "c", "other")->second.asInteger());
    EXPECT_EQ(6, map.insert_or_assign(map.begin(), "a", 6)->second.asInteger());
    EXPECT_EQ("d", map.emplace_hint(map.begin(), "d", "text")->first);
    EXPECT_EQ("{\"a\": 6, \"b\": 2, \"c\": 3, \"d\": \"text\"}", describe(map));
}

TEST(MapInterface, StoringReportsWhatItDid) {
    RubyMap map;
    const auto [first, isNew] = map.insert({"a", 1});
    EXPECT_TRUE(isNew);
    EXPECT_EQ("a", first->first);
    EXPECT_FALSE(map.insert(std::make_pair("a", 2)).second);
    EXPECT_TRUE(map.insert(std::pair<const std::string, RubyValue>("b", 2)).second);
    const RubyMap::value_type kept("c", 3);
    EXPECT_TRUE(map.insert(kept).second);
    EXPECT_TRUE(map.emplace("d", 4).second);
    EXPECT_FALSE(map.emplace(std::string("d"), 5).second);
    EXPECT_TRUE(map.try_emplace("e").second);
    EXPECT_FALSE(map.try_emplace("e", "text").second);
    EXPECT_EQ("f", map.emplace_hint(map.end(), "f", 6)->first);
    EXPECT_EQ("{\"a\": 1, \"b\": 2, \"c\": 3, \"d\": 4, \"e\": nil, \"f\": 6}", describe(map));
    map.insert({{"g", 7}, {"a", 8}});
    const RubyMap others{{"h", 8}, {"b", 9}};
    map.insert(others.begin(), others.end());
    std::copy(others.begin(), others.end(), std::inserter(map, map.end()));
    EXPECT_EQ("{\"a\": 1, \"b\": 2, \"c\": 3, \"d\": 4, \"e\": nil, \"f\": 6, \"g\": 7, \"h\": 8}", describe(map));
}

TEST(MapInterface, TryEmplaceLeavesItsArgumentsAlone) {
    RubyMap map{{"a", 1}};
    RubyValue text("text");
    EXPECT_FALSE(map.try_emplace("a", std::move(text)).second);
    EXPECT_EQ("text", text.asString());  // NOLINT(bugprone-use-after-move): it was not moved from
    EXPECT_TRUE(map.try_emplace("b", std::move(text)).second);
    EXPECT_EQ("{\"a\": 1, \"b\": \"text\"}", describe(map));
}

TEST(MapInterface, InsertOrAssignGivesAFlagOrAPair) {
    RubyMap map;
    const bool isNew = map.insert_or_assign("a", 1);
    EXPECT_TRUE(isNew);
    const auto [it, isNewAgain] = map.insert_or_assign("a", 2);
    EXPECT_FALSE(isNewAgain);
    EXPECT_EQ(2, it->second.asInteger());
    if (map.insert_or_assign("a", 3)) {
        FAIL();
    }
    RubyMap::iterator where;
    bool stored = false;
    std::tie(where, stored) = map.insert_or_assign("b", 4);
    EXPECT_TRUE(stored);
    EXPECT_EQ("b", where->first);
}

TEST(MapInterface, Erasing) {
    RubyMap map{{"a", 1}, {"b", 2}, {"c", 3}, {"d", 4}, {"e", 5}};
    EXPECT_EQ("c", map.erase(map.find("b"))->first);
    EXPECT_TRUE(map.erase(map.find("e")) == map.end());
    EXPECT_EQ("d", map.erase(map.cbegin(), std::as_const(map).find("d"))->first);
    EXPECT_EQ("{\"d\": 4}", describe(map));
    EXPECT_TRUE(map.erase(map.begin(), map.end()) == map.end());
    EXPECT_TRUE(map.empty());
    map = {{"a", 1}, {"b", 2}, {"c", 3}};
    EXPECT_EQ(2u, erase_if(map, [](const auto& entry) { return entry.second.asInteger() != 2; }));
    EXPECT_EQ("{\"b\": 2}", describe(map));
    EXPECT_EQ(1u, map.count("b"));
    EXPECT_EQ(0u, map.count("a"));
}

TEST(MapInterface, Equality) {
    const RubyMap map{{"a", 1}, {"b", RubyArray{1, 2}}};
    EXPECT_TRUE((map == RubyMap{{"b", RubyArray{1, 2}}, {"a", 1.0}}));
    EXPECT_TRUE((map != RubyMap{{"b", RubyArray{1, 2}}, {"a", 2}}));
    EXPECT_TRUE((map != RubyMap{{"b", RubyArray{1, 2}}, {"c", 1}}));
    EXPECT_TRUE((map != RubyMap{{"a", 1}}));
}

TEST(MapInterface, Swapping) {
    RubyMap left{{"a", 1}};
    RubyMap right;
    for (int i = 0; i < 20; ++i) {
        right[std::to_string(i)] = i;
    }
    const RubyValue& one = left["a"];
    left.swap(right);
    EXPECT_EQ(20u, left.size());
    swap(left, right);
    std::swap(left, right);
    EXPECT_EQ("{\"a\": 1}", describe(right));
    EXPECT_EQ(&one, &right.at("a"));
}

// Uses a reference into the map after another key was stored, at every size, so that every part of the map has grown at
// some point.
TEST(MapInterface, ReferencesOutliveStoring) {
    RubyMap map;
    map["first"] = "a text of more than fifteen bytes";
    const RubyValue& first = map["first"];
    for (int i = 0; i < 2000; ++i) {
        map["copy " + std::to_string(i)] = map["first"];
        map["at " + std::to_string(i)] = map.at("first");
        map.insert_or_assign("assigned " + std::to_string(i), map.at("first"));
        map.try_emplace("emplaced " + std::to_string(i), map["first"]);
        map.emplace(std::to_string(i), map["first"]);
        const auto both = [](RubyValue& left, RubyValue& right) { std::swap(left, right); };
        map["left " + std::to_string(i)] = 1;
        both(map["left " + std::to_string(i)], map["right " + std::to_string(i)]);
        ASSERT_EQ(1, map.at("right " + std::to_string(i)).asInteger());
        ASSERT_TRUE(map.at("left " + std::to_string(i)).isNil());
    }
    EXPECT_EQ(&first, &map.at("first"));
    EXPECT_EQ(first.asString(), map.at("emplaced 1999").asString());
    EXPECT_EQ(first.asString(), map.at("1999").asString());
}

TEST(MapInterface, ReferencesOutliveErasingOthers) {
    RubyMap map;
    for (int i = 0; i < 1000; ++i) {
        map["key " + std::to_string(i)] = i;
    }
    const RubyValue& kept = map.at("key 500");
    for (int i = 0; i < 1000; ++i) {
        if (i != 500) {
            map.erase("key " + std::to_string(i));
        }
    }
    map["new"] = map["key 500"];
    EXPECT_EQ(&kept, &map.at("key 500"));
    EXPECT_EQ("{\"key 500\": 500, \"new\": 500}", describe(map));
}

// Iteration continues after its entry is erased, and reaches entries stored meanwhile.
TEST(MapInterface, ChangesDuringIteration) {
    RubyMap map;
    for (int i = 0; i < 100; ++i) {
        map[std::to_string(i)] = i;
    }
    for (auto& [key, value] : map) {
        if (value.asInteger() % 2 == 0) {
            map.erase(key);
        } else if (value.asInteger() < 100) {
            map.insert_or_assign("after " + key, value.asInteger() + 100);
        }
    }
    EXPECT_EQ(100u, map.size());
    EXPECT_EQ("99", map.find("99")->first);
    EXPECT_EQ("after 1", (++map.find("99"))->first);
}

TEST(MapInterface, ReserveMakesRoom) {
    for (const std::size_t count : {0u, 1u, 4u, 5u, 8u, 9u, 12u, 13u, 24u, 25u, 1000u}) {
        RubyMap map;
        map.reserve(count);
        EXPECT_TRUE(map.empty());
        for (std::size_t i = 0; i < count + 30; ++i) {
            map["key " + std::to_string(i)] = i;
        }
        map.reserve(2 * count);
        ASSERT_EQ(count + 30, map.size());
        EXPECT_EQ("key 0", map.begin()->first);
        EXPECT_EQ(3, map.at("key 3").asInteger());
    }
    RubyMap map;
    EXPECT_THROW(map.reserve(RubyMap::max_size() + 1), std::bad_alloc);
}

TEST(MapInterface, ShrinkToFitKeepsTheOrder) {
    RubyMap map;
    for (int i = 0; i < 1000; ++i) {
        map[std::to_string(i * i)] = i;
    }
    erase_if(map, [](const auto& entry) { return entry.second.asInteger() % 200 != 7; });
    map["last"] = 0;
    map.shrink_to_fit();
    EXPECT_EQ("{\"49\": 7, \"42849\": 207, \"165649\": 407, \"368449\": 607, \"651249\": 807, \"last\": 0}",
              describe(map));
}

}  // namespace
}  // namespace morvel::ruby::tests
