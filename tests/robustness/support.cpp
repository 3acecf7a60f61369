#include "support.h"

namespace morvel::ruby::tests {

std::string repeated(const std::string& text, std::size_t times) {
    std::string all;
    all.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

std::string outcome(RubyVM& vm, const std::string& source) {
    const RubyResult result = vm.runScriptString(source, "t");
    return result.ok ? result.value.toString() : "error: " + result.error;
}

std::string outcome(const std::string& source) {
    RubyVM vm;
    return outcome(vm, source);
}

bool isUsable(RubyVM& vm) {
    return outcome(vm,
                   "def check(n) if n == 0 then return 0 end return n + check(n - 1) end\n"
                   "m = map_new() m[\"k\"] = [1, 2.5, \"s\"]\n"
                   "[check(10), m, pcall(error, \"caught\")]") == "[55, {k: [1, 2.5, s]}, [false, caught]]";
}

}  // namespace morvel::ruby::tests
