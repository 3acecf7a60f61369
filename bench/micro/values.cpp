// Copying values, map look-ups and growing arrays, through the public interface.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "morvel/ruby/map.h"
#include "morvel/ruby/value.h"

namespace {

using namespace morvel::ruby;

constexpr std::int64_t kKeys = 1000;

std::string keyText(std::int64_t number) { return "key number " + std::to_string(number); }

RubyMap makeTextMap() {
    RubyMap map;
    for (std::int64_t i = 0; i < kKeys; ++i) {
        map[keyText(i)] = i;
    }
    return map;
}

void copyValue(benchmark::State& state, const RubyValue& value) {
    for (auto _ : state) {
        RubyValue copy(value);
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK_CAPTURE(copyValue, integer, RubyValue(42));
BENCHMARK_CAPTURE(copyValue, string, RubyValue("a string of more than fifteen bytes"));
BENCHMARK_CAPTURE(copyValue, array, RubyValue(RubyArray{1, 2, 3}));

void makeString(benchmark::State& state) {
    const std::string text(static_cast<std::size_t>(state.range(0)), 'x');
    for (auto _ : state) {
        RubyValue value(text);
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(makeString)->Arg(8)->Arg(100);

// The keys are long-lived values, like the constants of a script: their hash is cached after the first look-up.
void findStringConstant(benchmark::State& state) {
    RubyMap map = makeTextMap();
    std::vector<RubyValue> keys;
    for (std::int64_t i = 0; i < kKeys; ++i) {
        keys.emplace_back(keyText(i));
    }
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.findValue(keys[next]));
        next = next + 1 == keys.size() ? 0 : next + 1;
    }
}
BENCHMARK(findStringConstant);

// The keys are plain strings, not values with a cached hash: every look-up hashes.
void findFreshString(benchmark::State& state) {
    const RubyMap map = makeTextMap();
    std::vector<std::string> keys;
    for (std::int64_t i = 0; i < kKeys; ++i) {
        keys.push_back(keyText(i));
    }
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.contains(keys[next]));
        next = next + 1 == keys.size() ? 0 : next + 1;
    }
}
BENCHMARK(findFreshString);

void findInteger(benchmark::State& state) {
    RubyMap map;
    for (std::int64_t i = 0; i < kKeys; ++i) {
        map.findOrInsert(RubyValue(i)) = i;
    }
    std::int64_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.findValue(RubyValue(next)));
        next = next + 1 == kKeys ? 0 : next + 1;
    }
}
BENCHMARK(findInteger);

void findInSmallMap(benchmark::State& state) {
    RubyMap map;
    std::vector<RubyValue> keys;
    for (const char* name : {"name", "kind", "line", "column", "text"}) {
        keys.emplace_back(name);
        map.findOrInsert(keys.back()) = 1;
    }
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.findValue(keys[next]));
        next = next + 1 == keys.size() ? 0 : next + 1;
    }
}
BENCHMARK(findInSmallMap);

void fillMap(benchmark::State& state) {
    for (auto _ : state) {
        RubyMap map = makeTextMap();
        benchmark::DoNotOptimize(map);
    }
    state.SetItemsProcessed(state.iterations() * kKeys);
}
BENCHMARK(fillMap);

void pushElements(benchmark::State& state) {
    constexpr std::int64_t kElements = 1000;
    for (auto _ : state) {
        RubyValue array = RubyValue::makeArray();
        for (std::int64_t i = 0; i < kElements; ++i) {
            array.asArray().emplace_back(i);
        }
        benchmark::DoNotOptimize(array);
    }
    state.SetItemsProcessed(state.iterations() * kElements);
}
BENCHMARK(pushElements);

}  // namespace
