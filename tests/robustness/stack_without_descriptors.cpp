// Has no file descriptor left when its first script runs: the guard of the native stack must not need one. A separate
// program, because stack limits are measured only once. Exits with 0 on success.
#include <sys/resource.h>

#include <iostream>

#include "morvel/ruby/vm.h"

int main() {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_NOFILE, &none);
    morvel::ruby::RubyVM vm;
    const auto runaway = vm.runScriptString("def f(n) return [f(n + 1)] end f(0)", "t");
    const auto cycle = vm.runScriptString("a = [] array_push(a, a) r = pcall(to_s, a) table_clear(a) return r", "t");
    const std::string rendered = cycle.value.toString();
    std::cerr << runaway.error << '\n' << rendered << '\n';
    return runaway.error == "t:1: stack overflow" && rendered == "[true, false, stack overflow]" ? 0 : 1;
}
