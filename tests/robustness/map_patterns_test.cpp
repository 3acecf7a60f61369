// Storing and deleting in any pattern takes constant time per operation, and look-ups stay as fast.
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <functional>
#include <ostream>
#include <string>

#include "morvel/ruby/map.h"
#include "support.h"

namespace morvel::ruby::tests {

namespace {

constexpr int kOperations = kAddressSanitizer || kThreadSanitizer ? 2'000 : 8'000;
// Eight times the operations on eight times the entries: at constant cost per operation this takes about eight times as
// long, and somewhat more as less of the map fits the caches. At a cost that grows with the map, it takes 64 times as
// long.
constexpr int kFactor = 8;
constexpr double kMostRatio = 32.0;

using Work = std::function<void(int)>;

double secondsFor(const Work& work, int count) {
    double best = 1e9;
    for (int i = 0; i < 3; ++i) {
        // CPU time, so that other programs on the machine do not count.
        const std::clock_t start = std::clock();
        work(count);
        best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return best;
}

void expectConstantCost(const Work& work) {
    // The clock may be coarse.
    constexpr double kTick = 1e-4;
    const double few = std::max(secondsFor(work, kOperations), kTick);
    EXPECT_LT(secondsFor(work, kFactor * kOperations), kMostRatio * few);
}

RubyValue textKey(std::int64_t number) { return "key " + std::to_string(number); }
RubyValue integerKey(std::int64_t number) { return number; }
RubyValue scatteredKey(std::int64_t number) { return number * 1'000'003; }

struct Keys {
    const char* name;
    RubyValue (*make)(std::int64_t);
};

// NOLINTNEXTLINE(readability-identifier-naming): the name that the test library looks for
void PrintTo(const Keys& keys, std::ostream* out) { *out << keys.name; }

class MapPatterns : public testing::TestWithParam<Keys> {
protected:
    static RubyValue key(std::int64_t number) { return GetParam().make(number); }
    static RubyMap filled(int count) {
        RubyMap map;
        for (int i = 0; i < count; ++i) {
            map.findOrInsert(key(i)) = i;
        }
        return map;
    }
};

TEST_P(MapPatterns, OneKeyComesAndGoes) {
    expectConstantCost([](int count) {
        RubyMap map = filled(count);
        const RubyValue mark = key(count);
        for (int i = 0; i < count; ++i) {
            map.findOrInsert(mark) = i;
            EXPECT_TRUE(map.take(mark));
        }
    });
}

TEST_P(MapPatterns, TheOldestGoesAndANewOneComes) {
    expectConstantCost([](int count) {
        RubyMap map = filled(count);
        for (int i = 0; i < count * 2; ++i) {
            EXPECT_EQ(i, map.begin()->second.asInteger());
            map.erase(map.begin());
            map.findOrInsert(key(count + i)) = count + i;
        }
    });
}

TEST_P(MapPatterns, TheOldestMovesToTheEnd) {
    expectConstantCost([](int count) {
        RubyMap map = filled(count);
        for (int i = 0; i < count * 2; ++i) {
            EXPECT_TRUE(map.take(key(i % count)));
            map.findOrInsert(key(i % count)) = i;
        }
    });
}

TEST_P(MapPatterns, TheLastComesAndGoes) {
    expectConstantCost([](int count) {
        RubyMap map = filled(count);
        for (int i = 0; i < count; ++i) {
            EXPECT_TRUE(map.take(key(count - 1)));
            map.findOrInsert(key(count - 1)) = i;
        }
    });
}

TEST_P(MapPatterns, MissingKeysAreLookedUpAfterManyDeletions) {
    expectConstantCost([](int count) {
        RubyMap map = filled(count);
        for (int i = 0; i < count; ++i) {
            EXPECT_TRUE(map.take(key(i)));
            map.findOrInsert(key(count + i)) = i;
            EXPECT_EQ(nullptr, map.findValue(key(i)));
        }
    });
}

TEST_P(MapPatterns, CopiesOfANearlyEmptyMap) {
    expectConstantCost([](int count) {
        RubyMap map = filled(count);
        for (int i = 1; i < count; ++i) {
            EXPECT_TRUE(map.take(key(i)));
        }
        for (int i = 0; i < count; ++i) {
            const RubyMap copy = map;
            EXPECT_EQ(1u, copy.entryValues().size());
        }
    });
}

TEST_P(MapPatterns, ShrinkingToOneAndGrowing) {
    expectConstantCost([](int count) {
        RubyMap map = filled(1);
        for (int round = 0; round < 3; ++round) {
            for (int i = 1; i < count; ++i) {
                map.findOrInsert(key(i)) = i;
            }
            for (int i = count; --i > 0;) {
                EXPECT_TRUE(map.take(key(i)));
                EXPECT_EQ(0, map.begin()->second.asInteger());
            }
        }
    });
}

// Integers that are all multiples of eight, except one that comes and goes, and a large one that comes and goes.
TEST(MapPatternsOfIntegers, TheStepBetweenThemChanges) {
    expectConstantCost([](int count) {
        RubyMap map;
        for (int i = 0; i < count; ++i) {
            map.findOrInsert(RubyValue(i * 8)) = i;
        }
        // Afterwards there is room for far more keys.
        for (int i = count / 7; i < count; ++i) {
            map.take(RubyValue(i * 8));
        }
        for (int i = 0; i < count; ++i) {
            const RubyValue large(std::int64_t{1} << (10 + i % 16));
            map.findOrInsert(large) = i;
            map.take(large);
            map.findOrInsert(RubyValue(1)) = i;
            map.take(RubyValue(1));
        }
    });
}

double secondsToFill(const std::function<std::int64_t(std::int64_t)>& keyOf) {
    const Work work = [&keyOf](int count) {
        for (int round = 0; round < 10; ++round) {
            RubyMap map;
            for (int i = 0; i < count; ++i) {
                map.findOrInsert(RubyValue(keyOf(i))) = i;
            }
            for (int i = 0; i < 4 * count; ++i) {
                EXPECT_EQ(i % count, map.findInteger(keyOf(i % count))->data.integer);
            }
        }
    };
    return secondsFor(work, kFactor * kOperations);
}

// As fast as keys that count up from 0: no look-up needs a hash.
TEST(MapPatternsOfIntegers, CostTheSameInSeries) {
    constexpr std::int64_t kStart = 7'000'000'000;
    constexpr double kMostSeriesRatio = 1.6;
    const double upwards = secondsToFill([](std::int64_t i) { return i; });
    EXPECT_LT(secondsToFill([](std::int64_t i) { return -i; }), kMostSeriesRatio * upwards);
    EXPECT_LT(secondsToFill([](std::int64_t i) { return kStart - i; }), kMostSeriesRatio * upwards);
    EXPECT_LT(secondsToFill([](std::int64_t i) { return kStart + i * 1024; }), kMostSeriesRatio * upwards);
}

INSTANTIATE_TEST_SUITE_P(All, MapPatterns,
                         testing::Values(Keys{"Texts", textKey}, Keys{"Integers", integerKey},
                                         Keys{"ScatteredIntegers", scatteredKey}),
                         [](const auto& keys) { return keys.param.name; });

}  // namespace

}  // namespace morvel::ruby::tests
