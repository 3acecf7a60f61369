// Keys chosen to collide under well-known hashes cost no more than other keys: hashing is seeded at random.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

#include "bytecode/image.h"
#include "compiler/program.h"
#include "morvel/ruby/vm.h"
#include "support.h"

namespace morvel::ruby::tests {

namespace {

constexpr std::size_t kKeys = kAddressSanitizer || kThreadSanitizer ? 100'000 : 1'000'000;
// Chains of colliding keys would cost thousands of times as much; caches and noise account for small differences.
constexpr double kMostRatio = 5.0;

/// Multiply-and-add hashes (with 31 and the like): blocks of equal hash are interchangeable anywhere.
std::vector<std::string> collidingForMultiplyByThirtyOne() {
    std::vector<std::string> keys{""};
    while (keys.size() < kKeys) {
        std::vector<std::string> longer;
        for (const std::string& key : keys) {
            longer.push_back(key + "Aa");
            longer.push_back(key + "BB");
        }
        keys = std::move(longer);
    }
    keys.resize(kKeys);
    return keys;
}

/// The 64-bit FNV-1a hash: keys whose hashes agree in their low 16 bits, which choose the slot in small tables.
std::vector<std::string> collidingForFnv() {
    std::vector<std::string> keys;
    // The low bits of a product depend only on the low bits of its factors, so the last byte can always be chosen to
    // make the low byte of the hash 0.
    for (std::size_t i = 0; keys.size() < kKeys; ++i) {
        const std::string prefix = "key" + std::to_string(i);
        std::uint64_t hash = 0xCBF29CE484222325U;
        for (const char c : prefix) {
            hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
        }
        keys.push_back(prefix + static_cast<char>(hash & 0xFF));
    }
    return keys;
}

constexpr std::uint64_t kMurmurFactor = 0xC6A4A7935BD1E995U;

std::uint64_t inverse(std::uint64_t odd) {
    std::uint64_t result = 1;
    for (int i = 0; i < 6; ++i) {
        result *= 2 - odd * result;
    }
    return result;
}

std::uint64_t mixed(std::uint64_t word) { return word ^ (word >> 47); }

/// GNU's library hashes std::string with MurmurHash64A under a fixed seed. Each block step is invertible: for any first
/// block there is a second one that leads to a chosen state. All these keys have the same hash.
std::vector<std::string> collidingForTheStandardLibrary(std::size_t count) {
    constexpr std::uint64_t kSeed = 0xC70F6907U;
    constexpr std::uint64_t kLength = 16;
    constexpr std::uint64_t kState = 0x0123456789ABCDEFU;
    const std::uint64_t inverseFactor = inverse(kMurmurFactor);
    std::vector<std::string> keys;
    for (std::uint64_t first = 0; keys.size() < count; ++first) {
        const std::uint64_t start = kSeed ^ (kLength * kMurmurFactor);
        const std::uint64_t after = (start ^ (mixed(first * kMurmurFactor) * kMurmurFactor)) * kMurmurFactor;
        // Undoes what the hash does to a block; x ^ (x >> 47) is its own inverse.
        const std::uint64_t second = mixed((after ^ kState) * inverseFactor) * inverseFactor;
        std::string key(kLength, '\0');
        std::memcpy(key.data(), &first, 8);
        std::memcpy(key.data() + 8, &second, 8);
        keys.push_back(std::move(key));
    }
    return keys;
}

TEST(CollidingKeys, DoCollideUnderTheHashTheyAreMadeFor) {
    const std::vector<std::string> keys = collidingForTheStandardLibrary(100);
    for (const std::string& key : keys) {
        EXPECT_EQ(std::hash<std::string>()(key), std::hash<std::string>()(keys[0]));
    }
    EXPECT_NE(keys[0], keys[1]);
}

std::vector<std::string> ordinaryKeys(std::size_t length) {
    std::vector<std::string> keys;
    std::uint64_t state = 1;
    for (std::size_t i = 0; i < kKeys; ++i) {
        std::string key;
        while (key.size() < length) {
            state = state * 6364136223846793005U + 1442695040888963407U;
            key += static_cast<char>('a' + (state >> 40) % 26);
        }
        keys.push_back(key + std::to_string(i));
    }
    return keys;
}

double secondsFor(const std::function<void()>& work) {
    double best = 1e9;
    for (int i = 0; i < 3; ++i) {
        // CPU time, so that other programs on the machine do not count.
        const std::clock_t start = std::clock();
        work();
        best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return best;
}

double secondsToInsert(const std::vector<RubyValue>& keys) {
    return secondsFor([&keys] {
        RubyMap map;
        for (const RubyValue& key : keys) {
            map.findOrInsert(key) = 1;
        }
        EXPECT_EQ(map.size(), keys.size());
        for (const RubyValue& key : keys) {
            EXPECT_NE(map.findValue(key), nullptr);
        }
    });
}

std::vector<RubyValue> asValues(const std::vector<std::string>& keys) { return {keys.begin(), keys.end()}; }

TEST(HashFlooding, StringKeys) {
    const double ordinary = secondsToInsert(asValues(ordinaryKeys(30)));
    EXPECT_LT(secondsToInsert(asValues(collidingForMultiplyByThirtyOne())), kMostRatio * ordinary);
    EXPECT_LT(secondsToInsert(asValues(collidingForFnv())), kMostRatio * ordinary);
    EXPECT_LT(secondsToInsert(asValues(collidingForTheStandardLibrary(kKeys))), kMostRatio * ordinary);
}

TEST(HashFlooding, IntegerKeys) {
    const auto keys = [](const std::function<std::uint64_t(std::uint64_t)>& make) {
        std::vector<RubyValue> all;
        for (std::uint64_t i = 0; i < kKeys; ++i) {
            all.emplace_back(static_cast<std::int64_t>(make(i)));
        }
        return all;
    };
    std::uint64_t state = 1;
    const double ordinary = secondsToInsert(keys([&state](std::uint64_t) {
        state = state * 6364136223846793005U + 1442695040888963407U;
        return state >> 3;
    }));
    for (const int shift : {1, 8, 16, 20, 32, 40}) {
        EXPECT_LT(secondsToInsert(keys([shift](std::uint64_t i) { return i << shift; })), kMostRatio * ordinary)
            << shift;
    }
    EXPECT_LT(secondsToInsert(keys([](std::uint64_t i) { return 0 - i; })), kMostRatio * ordinary);
    EXPECT_LT(secondsToInsert(keys([](std::uint64_t i) { return i * inverse(0x9E3779B97F4A7C15U); })),
              kMostRatio * ordinary);
}

/// Source code in which every key is a literal, escaped where needed.
std::string sourceWith(const std::vector<std::string>& texts) {
    std::string source;
    for (const std::string& text : texts) {
        source += '\'';
        for (const char c : text) {
            if (c == '\n') {
                source += "\\n";
            } else if (c == '\r') {
                source += "\\r";
            } else {
                if (c == '\'' || c == '\\') {
                    source += '\\';
                }
                source += c;
            }
        }
        source += "'\n";
    }
    return source;
}

TEST(HashFlooding, TextsOfASource) {
    constexpr std::size_t kTexts = 50'000;
    // At least as long as the flooding keys, which the compiler treats as long strings.
    std::vector<std::string> ordinary = ordinaryKeys(16);
    ordinary.resize(std::min(kTexts, kKeys));
    const std::string ordinarySource = sourceWith(ordinary);
    const std::string floodingSource = sourceWith(collidingForTheStandardLibrary(ordinary.size()));
    const RubyVM vm;
    const double ordinarySeconds = secondsFor([&] { (void)vm.compileScript(ordinarySource, "t"); });
    EXPECT_LT(secondsFor([&] { (void)vm.compileScript(floodingSource, "t"); }), kMostRatio * ordinarySeconds);

    RubyVM loader;
    const RubyBytecode ordinaryImage = vm.compileScript(ordinarySource, "t");
    const RubyBytecode floodingImage = vm.compileScript(floodingSource, "t");
    const double ordinaryLoad = secondsFor([&] { EXPECT_TRUE(loader.runBytecode(ordinaryImage).ok); });
    EXPECT_LT(secondsFor([&] { EXPECT_TRUE(loader.runBytecode(floodingImage).ok); }), kMostRatio * ordinaryLoad);
}

/// An image whose only function besides the top-level code uses the given names as locals or globals.
RubyBytecode imageWithNames(const std::vector<std::string>& names, bool asLocals) {
    internal::Program program;
    program.name = "names";
    program.functions.resize(2);
    program.functions[0].name = "<main>";
    program.functions[1].name = "f";
    auto& code = program.functions[asLocals ? 1 : 0].code;
    program.constants.emplace_back(1);
    for (const std::string& name : names) {
        program.constants.emplace_back(name);
        const auto index = static_cast<std::int32_t>(program.constants.size() - 1);
        code.push_back({internal::OpCode::PushConst, 0, 0, 1});
        code.push_back({internal::OpCode::StoreName, index, 0, 1});
        code.push_back({internal::OpCode::Pop, 0, 0, 1});
    }
    return internal::serializeProgram(program);
}

TEST(HashFlooding, NamesOfAnImage) {
    constexpr std::size_t kNames = 20'000;
    std::vector<std::string> ordinary = ordinaryKeys(10);
    ordinary.resize(kNames);
    const std::vector<std::string> flooding = collidingForTheStandardLibrary(kNames);
    for (const bool asLocals : {true, false}) {
        const RubyBytecode ordinaryImage = imageWithNames(ordinary, asLocals);
        const RubyBytecode floodingImage = imageWithNames(flooding, asLocals);
        const auto run = [](const RubyBytecode& image) {
            RubyVM vm;
            EXPECT_TRUE(vm.runBytecode(image).ok);
        };
        const double ordinarySeconds = secondsFor([&] { run(ordinaryImage); });
        EXPECT_LT(secondsFor([&] { run(floodingImage); }), kMostRatio * ordinarySeconds) << asLocals;
    }
}

}  // namespace

}  // namespace morvel::ruby::tests
