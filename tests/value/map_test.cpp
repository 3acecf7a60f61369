#include "morvel/ruby/map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>
#include <optional>
#include <random>
#include <stdexcept>

#include "morvel/ruby/vm.h"
#include "support/allocation_meter.h"
#include "support/describe.h"
#include "value/hash.h"

namespace morvel::ruby::tests {
namespace {

std::string describe(const RubyMap& map) { return tests::describe(RubyValue(map)); }

RubyMap makeMap(const std::vector<std::string>& keys) {
    RubyMap map;
    int number = 0;
    for (const std::string& key : keys) {
        map[key] = ++number;
    }
    return map;
}

TEST(Map, StartsEmpty) {
    const RubyMap map;
    EXPECT_EQ(0u, map.size());
    EXPECT_TRUE(map.empty());
    EXPECT_TRUE(map.begin() == map.end());
    EXPECT_TRUE(map.find("a") == map.end());
    EXPECT_FALSE(map.contains(""));
}

TEST(Map, BracketsStoreNilFirst) {
    RubyMap map;
    EXPECT_TRUE(map["a"].isNil());
    EXPECT_EQ(1u, map.size());
    map["a"] = 5;
    EXPECT_EQ("5", tests::describe(map["a"]));
    EXPECT_EQ(1u, map.size());
}

TEST(Map, FindGivesTheEntry) {
    RubyMap map = makeMap({"a", "b"});
    const auto found = map.find("b");
    ASSERT_TRUE(found != map.end());
    EXPECT_EQ("b", found->first);
    EXPECT_EQ("2", tests::describe(found->second));
    found->second = "changed";
    EXPECT_EQ("{\"a\": 1, \"b\": \"changed\"}", describe(map));
    EXPECT_TRUE(map.find("c") == map.end());
    EXPECT_TRUE(map.contains("a"));
    EXPECT_FALSE(map.contains("c"));
}

TEST(Map, AtThrowsForAMissingKey) {
    RubyMap map = makeMap({"a"});
    map.at("a") = 7;
    const RubyMap& readOnly = map;
    EXPECT_EQ("7", tests::describe(readOnly.at("a")));
    EXPECT_THROW((void)map.at("b"), std::out_of_range);
    EXPECT_THROW((void)readOnly.at("b"), std::out_of_range);
}

TEST(Map, InsertOrAssignTellsWhetherTheKeyIsNew) {
    RubyMap map;
    EXPECT_TRUE(map.insert_or_assign("a", 1));
    EXPECT_FALSE(map.insert_or_assign("a", 2));
    EXPECT_EQ("{\"a\": 2}", describe(map));
}

TEST(Map, KeepsInsertionOrder) {
    RubyMap map = makeMap({"z", "a", "m"});
    map["a"] = "again";
    EXPECT_EQ("{\"z\": 1, \"a\": \"again\", \"m\": 3}", describe(map));
}

TEST(Map, ErasingAndStoringAgainMovesToTheEnd) {
    RubyMap map = makeMap({"z", "a", "m"});
    EXPECT_EQ(1u, map.erase("z"));
    EXPECT_EQ(0u, map.erase("z"));
    EXPECT_EQ("{\"a\": 2, \"m\": 3}", describe(map));
    map["z"] = 4;
    EXPECT_EQ("{\"a\": 2, \"m\": 3, \"z\": 4}", describe(map));
}

TEST(Map, EraseTheOnlyEntry) {
    RubyMap map = makeMap({"a"});
    EXPECT_EQ(1u, map.erase("a"));
    EXPECT_TRUE(map.empty());
    EXPECT_TRUE(map.begin() == map.end());
    map["b"] = 1;
    EXPECT_EQ("{\"b\": 1}", describe(map));
}

// Only storing a new key invalidates iterators.
TEST(Map, ErasingBehindAnIteratorKeepsItValid) {
    for (const std::size_t size : {1u, 2u, 8u, 9u, 100u}) {
        RubyMap map;
        for (std::size_t i = 0; i < size; ++i) {
            map["key" + std::to_string(i)] = i;
        }
        std::size_t visited = 0;
        for (auto it = map.begin(); it != map.end();) {
            const std::string key = it->first;
            EXPECT_EQ("key" + std::to_string(visited), key);
            ++it;
            map.erase(key);
            ++visited;
            ASSERT_LE(visited, size);
        }
        EXPECT_EQ(size, visited);
        EXPECT_TRUE(map.empty());
    }
}

TEST(Map, ClearEmpties) {
    RubyMap map = makeMap({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"});
    map.clear();
    EXPECT_EQ(0u, map.size());
    EXPECT_FALSE(map.contains("a"));
    map["j"] = 1;
    EXPECT_EQ("{\"j\": 1}", describe(map));
}

TEST(Map, CopiesAreIndependentButShareContainers) {
    RubyMap map;
    map["list"] = RubyValue::makeArray();
    RubyMap copy = map;
    copy["other"] = 1;
    copy["list"].asArray().push_back(2);
    EXPECT_EQ("{\"list\": [2]}", describe(map));
    map.erase("list");
    EXPECT_EQ("{\"list\": [2], \"other\": 1}", describe(copy));
    copy = map;
    EXPECT_EQ("{}", describe(copy));
    copy["x"] = 1;
    const RubyMap& alias = copy;
    copy = alias;
    EXPECT_EQ("{\"x\": 1}", describe(copy));
}

TEST(Map, MovingTakesTheEntries) {
    RubyMap map = makeMap({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"});
    RubyMap moved = std::move(map);
    EXPECT_EQ(10u, moved.size());
    EXPECT_TRUE(map.empty());  // NOLINT(bugprone-use-after-move): a moved-from map is empty
    map["k"] = 1;
    EXPECT_EQ("{\"k\": 1}", describe(map));
    map = std::move(moved);
    EXPECT_EQ(10u, map.size());
    EXPECT_EQ("10", tests::describe(map.at("j")));
    RubyMap& alias = map;
    map = std::move(alias);
    EXPECT_EQ(10u, map.size());
}

TEST(Map, ConvertsToAndFromStandardMaps) {
    const std::unordered_map<std::string, RubyValue> entries{{"a", 1}, {"5", "five"}, {"05", nullptr}};
    const RubyMap map(entries);
    EXPECT_EQ(3u, map.size());
    EXPECT_EQ("\"five\"", tests::describe(map.at("5")));
    std::vector<std::string> order;
    for (const auto& [key, value] : entries) {
        order.push_back(key);
    }
    std::vector<std::string> keys;
    for (const auto& [key, value] : map) {
        keys.push_back(key);
    }
    EXPECT_EQ(order, keys);

    const auto back = static_cast<std::unordered_map<std::string, RubyValue>>(map);
    EXPECT_EQ(3u, back.size());
    EXPECT_EQ("1", tests::describe(back.at("a")));
    EXPECT_EQ("\"five\"", tests::describe(back.at("5")));
    EXPECT_EQ("nil", tests::describe(back.at("05")));
}

TEST(Map, KeyAndEntryValues) {
    RubyMap map = makeMap({"b", "7", "-3", "a"});
    map.erase("b");
    EXPECT_EQ("[\"7\", \"-3\", \"a\"]", tests::describe(RubyValue(map.keyValues())));
    EXPECT_EQ("[2, 3, 4]", tests::describe(RubyValue(map.entryValues())));
}

// String keys that look like integers are strings like any other.
TEST(Map, IntegerLikeKeysStayDistinctTexts) {
    const std::vector<std::string> keys{"1",
                                        "01",
                                        "+1",
                                        "1 ",
                                        " 1",
                                        "-1",
                                        "-01",
                                        "0",
                                        "00",
                                        "-0",
                                        "-",
                                        "",
                                        "1.0",
                                        "1e3",
                                        "4611686018427387903",
                                        "4611686018427387904",
                                        "-4611686018427387903",
                                        "-4611686018427387904",
                                        "9223372036854775807",
                                        "-9223372036854775808",
                                        "9223372036854775808",
                                        "-9223372036854775809",
                                        "18446744073709551616",
                                        "99999999999999999999",
                                        "123456789012345678901234567890",
                                        "12a",
                                        std::string("1\0", 2)};
    RubyMap map = makeMap(keys);
    ASSERT_EQ(keys.size(), map.size());
    std::size_t position = 0;
    for (const auto& [key, value] : map) {
        EXPECT_EQ(keys[position], key);
        EXPECT_EQ(static_cast<std::int64_t>(position) + 1, value.asInteger());
        ++position;
    }
    for (const std::string& key : keys) {
        EXPECT_NE(nullptr, map.findValue(RubyValue(key))) << key;
        EXPECT_EQ(1u, map.erase(key)) << key;
        EXPECT_FALSE(map.contains(key)) << key;
    }
    EXPECT_TRUE(map.empty());
}

TEST(Map, IntegerKeysAreTheirDecimalText) {
    for (const std::int64_t number :
         {std::int64_t{0}, std::int64_t{1}, std::int64_t{-1}, std::int64_t{4611686018427387903},
          std::int64_t{4611686018427387904}, std::int64_t{-4611686018427387904}, std::int64_t{-4611686018427387905},
          std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()}) {
        const std::string text = std::to_string(number);
        RubyMap map;
        map.findOrInsert(RubyValue(number)) = 1;
        ASSERT_TRUE(map.contains(text)) << text;
        EXPECT_EQ(text, map.begin()->first);
        map[text] = 2;
        EXPECT_EQ(1u, map.size()) << text;
        ASSERT_NE(nullptr, map.findValue(RubyValue(number))) << text;
        EXPECT_EQ(2, map.findValue(RubyValue(number))->asInteger());
        EXPECT_EQ(2, map.findValue(RubyValue(text))->asInteger());
    }
}

TEST(Map, FindValueAndFindOrInsert) {
    RubyMap map;
    EXPECT_EQ(nullptr, map.findValue(RubyValue("a")));
    EXPECT_TRUE(map.findOrInsert(RubyValue("a")).isNil());
    map.findOrInsert(RubyValue("a")) = 3;
    ASSERT_NE(nullptr, map.findValue(RubyValue("a")));
    EXPECT_EQ("{\"a\": 3}", describe(map));
}

TEST(Map, AKeyOutlivesTheValueItCameFrom) {
    RubyMap map;
    {
        const RubyValue key(std::string(100, 'k'));
        map.findOrInsert(key) = 1;
    }
    EXPECT_TRUE(map.contains(std::string(100, 'k')));
}

TEST(Map, LookingUpAllocatesNothing) {
    RubyMap map;
    for (int i = 0; i < 100; ++i) {
        map["a key with more than fifteen bytes " + std::to_string(i)] = i;
    }
    const std::string there = "a key with more than fifteen bytes 42";
    const std::string missing = "a key with more than fifteen bytes 200";
    const RubyValue key(there);
    const AllocationMeter meter;
    const bool found = map.contains(there) && !map.contains(missing) && map.findValue(key) != nullptr &&
                       map.findValue(RubyValue(77)) == nullptr;
    EXPECT_EQ(0u, AllocationMeter::count());
    EXPECT_TRUE(found);
}

TEST(Map, ManyErasedEntriesDoNotPileUp) {
    RubyMap map;
    map["stays"] = 1;
    for (int i = 0; i < 200000; ++i) {
        const std::string key = "k" + std::to_string(i);
        map[key] = i;
        map.erase(key);
    }
    EXPECT_EQ("{\"stays\": 1}", describe(map));
    const AllocationMeter meter;
    const RubyMap copy = map;
    EXPECT_LT(AllocationMeter::largest(), 4096u);
    EXPECT_EQ(1u, copy.size());
}

RubyMap makeIntegerMap(int count) {
    RubyMap map;
    for (int i = 0; i < count; ++i) {
        map.findOrInsert(RubyValue(i)) = i;
    }
    return map;
}

/// The largest block requested while filling the map with many integers: small if the map still has its memory.
std::size_t largestBlockForFilling(RubyMap& map, int count) {
    const AllocationMeter meter;
    for (int i = 0; i < count; ++i) {
        map.findOrInsert(RubyValue(i)) = i;
    }
    return AllocationMeter::largest();
}

constexpr int kMany = 20000;
constexpr std::size_t kLargeBlock = kMany * sizeof(RubyValue) / 4;

TEST(Map, ReusesTheMemoryOfErasedEntries) {
    RubyMap map = makeIntegerMap(kMany);
    for (int i = 0; i < kMany / 2; ++i) {
        map.erase(std::to_string(i));
    }
    EXPECT_EQ(0u, largestBlockForFilling(map, kMany));
    EXPECT_EQ(static_cast<std::size_t>(kMany), map.size());
}

TEST(Map, GivesMemoryBackWhenItIsEmptied) {
    RubyMap map = makeIntegerMap(kMany);
    for (int i = 0; i < kMany; ++i) {
        map.take(RubyValue(i));
    }
    EXPECT_GT(largestBlockForFilling(map, kMany), kLargeBlock);
}

TEST(Map, GivesMemoryBackWhenAScriptStoresInANearlyEmptyMap) {
    RubyMap map = makeIntegerMap(kMany);
    for (int i = 3; i < kMany; ++i) {
        map.take(RubyValue(i));
    }
    {
        const AllocationMeter meter;
        map.findOrInsert(RubyValue("new")) = "value";
        EXPECT_LT(AllocationMeter::largest(), 1000u);
    }
    EXPECT_EQ("{\"0\": 0, \"1\": 1, \"2\": 2, \"new\": \"value\"}", describe(map));
    EXPECT_GT(largestBlockForFilling(map, kMany), kLargeBlock);
}

TEST(Map, ACopyHoldsOnlyWhatLives) {
    RubyMap map = makeIntegerMap(kMany);
    for (int i = 20; i < kMany; ++i) {
        map.take(RubyValue(i));
    }
    const AllocationMeter meter;
    const RubyMap copy = map;
    EXPECT_LT(AllocationMeter::largest(), 4096u);
    EXPECT_EQ(20u, copy.size());
    EXPECT_EQ(describe(map), describe(copy));
}

// Erasing and storing the last key again and again allocates nothing.
TEST(Map, ASmallMapKeepsItsMemory) {
    RubyMap map;
    map["a"] = 1;
    const AllocationMeter meter;
    for (int i = 0; i < 100; ++i) {
        map.take(RubyValue(5));
        map.findOrInsert(RubyValue(5)) = 1;
    }
    EXPECT_EQ(0u, AllocationMeter::count());
}

/// Integers far apart, some of which share their low bits.
TEST(Map, FindsIntegersOfAnyDistance) {
    constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t step : {std::int64_t{1}, std::int64_t{-1}, std::int64_t{3}, std::int64_t{1000},
                                    std::int64_t{-4096}, std::int64_t{7919}, kLargest / 1024}) {
        RubyMap map;
        map.reserve(40);
        for (std::int64_t i = 0; i < 1000; ++i) {
            map.findOrInsert(RubyValue(5 + i * step)) = i;
        }
        // Absent keys that map to the same slots.
        for (std::int64_t i = 0; i < 1000; ++i) {
            ASSERT_NE(nullptr, map.findInteger(5 + i * step)) << step;
            EXPECT_EQ(i, map.findInteger(5 + i * step)->asInteger());
            EXPECT_EQ(nullptr, map.findInteger(static_cast<std::int64_t>(static_cast<std::uint64_t>(5 + i * step) ^
                                                                         (std::uint64_t{1} << 63))));
            EXPECT_EQ(nullptr, map.findInteger((5 + i * step) ^ (std::int64_t{1} << 62)));
            EXPECT_EQ(nullptr, map.findInteger((5 + i * step) ^ (std::int64_t{1} << 40)));
        }
        EXPECT_EQ(nullptr, map.findValue(RubyValue("text")));
        for (std::int64_t i = 0; i < 1000; i += 2) {
            EXPECT_TRUE(map.take(RubyValue(5 + i * step)));
            map.findOrInsert(RubyValue(5 + (i + 1000) * (step / 2))) = -i;
        }
        for (std::int64_t i = 1; i < 1000; i += 2) {
            ASSERT_NE(nullptr, map.findInteger(5 + i * step)) << step;
        }
        map["text"] = "text";
        for (std::int64_t i = 1; i < 1000; i += 2) {
            EXPECT_NE(nullptr, map.findInteger(5 + i * step));
        }
        EXPECT_EQ("text", map.at("text").asString());
    }
}

TEST(Map, AStringKnowsWhetherItIsAnInteger) {
    RubyMap map = makeIntegerMap(100);
    map["w12"] = "text";
    const RubyValue twelve("12");
    const RubyValue text("w12");
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(12, map.findValue(twelve)->asInteger());
        EXPECT_EQ("text", map.findValue(text)->asString());
    }
    // A string that changes in place must drop its cached hash.
    RubyVM vm;
    const RubyResult result = vm.runScriptString(R"(
def f()
  m = map_new()
  m["1x"] = 1
  m[12] = 2
  s = "1"
  s = s + ""
  x = m[s]
  s = s + "2"
  return m[s]
end
f()
)",
                                                 "t");
    EXPECT_EQ("2", tests::describe(result.value)) << result.error;
}

/// Performs the same operations on a map and on a model made of standard containers.
class ModelledMap {
public:
    void assign(const std::string& key, int number) {
        const bool isNew = m_map.insert_or_assign(key, number);
        EXPECT_EQ(m_model.find(key) == m_model.end(), isNew);
        if (isNew) {
            m_order.push_back(key);
        }
        m_model[key] = number;
    }

    void erase(const std::string& key) {
        EXPECT_EQ(m_model.erase(key), m_map.erase(key));
        m_order.erase(std::remove(m_order.begin(), m_order.end(), key), m_order.end());
    }

    void lookUp(const std::string& key) {
        const auto expected = m_model.find(key);
        const auto found = m_map.find(key);
        ASSERT_EQ(expected == m_model.end(), found == m_map.end()) << key;
        if (expected != m_model.end()) {
            EXPECT_EQ(key, found->first);
            EXPECT_EQ(expected->second, found->second.asInteger());
            EXPECT_EQ(expected->second, m_map.at(key).asInteger());
        }
    }

    void copy() {
        RubyMap copied = m_map;
        m_map = std::move(copied);
    }

    void shrink() { m_map.shrink_to_fit(); }

    /// Removes the oldest key and stores it again, which makes it the last.
    void moveOldest() {
        if (m_order.empty()) {
            return;
        }
        const std::string key = m_map.begin()->first;
        ASSERT_EQ(m_order.front(), key);
        const std::optional<RubyValue> value = m_map.take(RubyValue(key));
        ASSERT_TRUE(value);
        m_map.findOrInsert(RubyValue(key)) = *value;
        std::rotate(m_order.begin(), m_order.begin() + 1, m_order.end());
    }

    /// Erases entries during iteration, by key or by iterator.
    template <typename IsWanted>
    void eraseDuring(IsWanted isWanted) {
        std::vector<std::string> visited;
        for (auto it = m_map.begin(); it != m_map.end();) {
            const std::string key = it->first;
            visited.push_back(key);
            const int choice = isWanted();
            if (choice == 0) {
                it = m_map.erase(it);
            } else {
                if (choice == 1) {
                    m_map.erase(key);
                }
                ++it;
            }
            if (choice < 2) {
                m_model.erase(key);
            }
        }
        ASSERT_EQ(m_order, visited);
        std::erase_if(m_order, [this](const std::string& key) { return m_model.find(key) == m_model.end(); });
    }

    void compare() const {
        ASSERT_EQ(m_model.size(), m_map.size());
        std::vector<std::string> keys;
        for (const auto& [key, value] : m_map) {
            keys.push_back(key);
            ASSERT_EQ(m_model.at(key), value.asInteger());
        }
        ASSERT_EQ(m_order, keys);
    }

    void clear() {
        m_map.clear();
        m_model.clear();
        m_order.clear();
    }

private:
    RubyMap m_map;
    std::unordered_map<std::string, int> m_model;
    std::vector<std::string> m_order;
};

std::string randomKey(std::mt19937& random, unsigned variety) {
    const auto number = static_cast<int>(random() % variety);
    switch (number % 5) {
        case 0:
            return std::to_string(number);
        case 1:
            return std::to_string(-number);
        case 2:
            return "0" + std::to_string(number);
        case 3:
            return "key " + std::string(static_cast<std::size_t>(number % 40), 'x') + std::to_string(number);
        default:
            return std::to_string((std::int64_t{1} << 62) - 10 + number);
    }
}

/// Small integers with an occasional other key.
std::string denseKey(std::mt19937& random, unsigned variety) {
    constexpr unsigned kOneOf = 3000;
    return random() % kOneOf == 0 ? randomKey(random, variety) : std::to_string(random() % variety);
}

using MakeKey = std::string(std::mt19937&, unsigned);

void runRandomOperations(MakeKey& makeKey, unsigned variety) {
    std::mt19937 random(variety);
    ModelledMap map;
    for (int step = 0; step < 20000; ++step) {
        const std::string key = makeKey(random, variety);
        // Phases of growth and shrinkage reach every size many times.
        const unsigned storing = (step / 1000) % 2 == 0 ? 60 : 25;
        const auto choice = random() % 100;
        if (choice < storing) {
            map.assign(key, step);
        } else if (choice < 85) {
            map.erase(key);
        } else {
            map.lookUp(key);
        }
        if (step % 3 == 0) {
            map.moveOldest();
        }
        if (step % 500 == 0) {
            map.copy();
        }
        if (step % 641 == 0) {
            map.eraseDuring([&random] { return static_cast<int>(random() % 8); });
        }
        if (step % 1999 == 0) {
            map.shrink();
        }
        if (step % 97 == 0) {
            map.compare();
        }
        if (step % 7919 == 7918) {
            map.clear();
        }
        if (testing::Test::HasFailure()) {
            FAIL() << "variety " << variety << ", step " << step;
        }
    }
    map.compare();
}

TEST(Map, AgreesWithAModelUnderRandomOperations) {
    for (const unsigned variety : {3u, 8u, 12u, 60u, 500u}) {
        runRandomOperations(randomKey, variety);
    }
}

TEST(Map, AgreesWithAModelOfSmallIntegerKeys) {
    for (const unsigned variety : {9u, 12u, 16u, 40u, 60u, 500u}) {
        runRandomOperations(denseKey, variety);
    }
}

TEST(Map, TakesAnyKeyAfterSmallIntegers) {
    for (const std::string other :
         {"-1", "32", "4611686018427387904", "9223372036854775807", "-9223372036854775808", "text", "", "07", "1.5"}) {
        RubyMap map;
        std::string expected = "{";
        for (int number = 0; number < 12; ++number) {
            map[std::to_string(number)] = number;
            expected += "\"" + std::to_string(number) + "\": " + std::to_string(number) + ", ";
        }
        EXPECT_TRUE(map.find(other) == map.end()) << other;
        EXPECT_EQ(0u, map.erase(other)) << other;
        map[other] = "another";
        EXPECT_EQ(expected + "\"" + other + "\": \"another\"}", describe(map));
        EXPECT_EQ("\"another\"", tests::describe(map.at(other)));
        for (int number = 0; number < 12; ++number) {
            EXPECT_EQ(std::to_string(number), tests::describe(map.at(std::to_string(number)))) << other;
        }
        EXPECT_EQ(nullptr, map.findValue(RubyValue(12)));
        EXPECT_EQ(nullptr, map.findValue(RubyValue(-2)));
    }
}

TEST(Hash, IsNeverZeroAndDependsOnEveryByte) {
    std::map<std::uint64_t, std::string> seen;
    std::string text;
    for (int length = 0; length < 300; ++length) {
        const std::uint64_t hash = internal::hashText(text);
        EXPECT_NE(0u, hash);
        EXPECT_EQ(hash, internal::hashText(std::string(text)));
        EXPECT_TRUE(seen.emplace(hash, text).second) << "length " << length;
        text += 'x';
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::string changed = text;
        changed[i] = 'y';
        EXPECT_NE(internal::hashText(text), internal::hashText(changed)) << "byte " << i;
    }
}

TEST(Hash, SpreadsConsecutiveIntegersOverLowBits) {
    std::vector<int> buckets(256, 0);
    for (int i = 0; i < 256 * 16; ++i) {
        ++buckets[internal::hashInteger(i) % buckets.size()];
    }
    EXPECT_LT(*std::max_element(buckets.begin(), buckets.end()), 16 * 8);
}

}  // namespace
}  // namespace morvel::ruby::tests
