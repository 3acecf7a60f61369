// Calls and operations in scripts. Each iteration runs a script's loop; the reported rate counts its rounds.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

#include "morvel/ruby/vm.h"

namespace {

using namespace morvel::ruby;

constexpr std::int64_t kRounds = 10000;

/// Runs `setup`, then measures a loop that runs `body` kRounds times inside a function. `n` counts the rounds.
void runLoop(benchmark::State& state, const char* setup, const char* body) {
    RubyVM vm;
    vm.bindFunction("host", [](RubyVM&, RubyArguments arguments) { return arguments[0]; });
    const std::string source = std::string(setup) + "\ndef measured()\n  n = 0\n  while n < " +
                               std::to_string(kRounds) + " do\n    " + body + "\n    n = n + 1\n  end\nend";
    RubyResult result = vm.runScriptString(source, "setup");
    const RubyBytecode image = vm.compileScript("measured()", "run");
    for (auto _ : state) {
        if (result.ok) {
            result = vm.runBytecode(image);
        }
        if (!result.ok) {
            state.SkipWithError(result.error.c_str());
            break;
        }
    }
    state.SetItemsProcessed(state.iterations() * kRounds);
}

BENCHMARK_CAPTURE(runLoop, emptyLoop, "", "");
BENCHMARK_CAPTURE(runLoop, hostCall, "", "host(n)");
BENCHMARK_CAPTURE(runLoop, builtInCall, "text = 'abc'", "len(text)");
BENCHMARK_CAPTURE(runLoop, scriptCall, "def f(x)\n  y = x\n  return y\nend", "f(n)");
BENCHMARK_CAPTURE(runLoop, expressionCall, "def f(x) return x + 1 end", "f(n)");
BENCHMARK_CAPTURE(runLoop, guardedCall, "def f(x) if x < 0 then error('negative') end return x end", "f(n)");
BENCHMARK_CAPTURE(runLoop, protectedCall, "def f(x)\n  y = x\n  return y\nend", "pcall(f, n)");
BENCHMARK_CAPTURE(runLoop, failedProtectedCall, "def f(x)\n  y = x / 0\nend", "pcall(f, n)");
BENCHMARK_CAPTURE(runLoop, arrayPush, "list = []",
                  "array_push(list, n)\n    if len(list) > 1000 then table_clear(list) end");
BENCHMARK_CAPTURE(runLoop, arrayElement, "list = [1, 2, 3, 4]", "list[n % 4]");
BENCHMARK_CAPTURE(runLoop, mapConstantKey, "m = map_new() m['key'] = 1", "m['key']");
BENCHMARK_CAPTURE(runLoop, mapFreshKey, "m = map_new() m['key 5'] = 1", "m['key ' + n % 10]");
BENCHMARK_CAPTURE(runLoop, mapIntegerKey, "m = map_new() m[5] = 1", "m[n % 10]");
BENCHMARK_CAPTURE(runLoop, textAppend, "", "if n % 1000 == 0 then text = '' end\n    text = text + 'x'");
BENCHMARK_CAPTURE(runLoop, floatArithmetic, "x = 0.5", "x * 1.5 - 0.25 + n");

void compileScript(benchmark::State& state) {
    std::string source;
    for (int i = 0; i < 100; ++i) {
        source += "def f" + std::to_string(i) + "(a, b)\n  if a < b then return [a, 'text'] end\n  x = a * b + 1\n" +
                  "  return x\nend\n";
    }
    const RubyVM vm;
    for (auto _ : state) {
        benchmark::DoNotOptimize(vm.compileScript(source, "bench"));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(source.size()));
}
BENCHMARK(compileScript);

void startVm(benchmark::State& state) {
    for (auto _ : state) {
        RubyVM vm;
        benchmark::DoNotOptimize(vm);
    }
}
BENCHMARK(startVm);

}  // namespace
