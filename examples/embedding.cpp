// Shows how a host program embeds the runtime: it gives scripts functions and globals, reads results back, runs
// compiled images, and handles failures.

#include <cstdint>
#include <iostream>
#include <stdexcept>
#include <string>

#include "morvel/ruby/vm.h"

using namespace morvel::ruby;

namespace {

// A host function receives the VM and a view of the call's arguments, and returns the call's result. Any standard
// exception becomes a script error with that exception's text.
RubyValue distance(RubyVM&, RubyArguments arguments) {
    if (arguments.size() != 2) {
        throw std::runtime_error("distance expects exactly 2 arguments");
    }
    const double difference = arguments[0].asFloat() - arguments[1].asFloat();  // throws if either is not a number
    return difference < 0 ? -difference : difference;
}

void bindAndRun(RubyVM& vm) {
    vm.bindFunction("distance", distance);
    // A callable may have state; the counter lives as long as the binding.
    vm.bindFunction("next_id", [id = std::int64_t{0}](RubyVM&, RubyArguments) mutable { return RubyValue(++id); });

    // Plain C++ values become script values. From here on, arrays and maps are shared, not copied.
    vm.setGlobal("player", "Ada");
    vm.setGlobal("scores", RubyArray{3, 5, 8});

    const RubyResult result = vm.runScriptString(R"(
        total = 0
        i = 0
        while i < len(scores) do
            total = total + scores[i]
            i = i + 1
        end
        array_push(scores, total)
        player + " #" + next_id() + ": " + distance(total, 20)
    )",
                                                 "totals");
    // The result is the value of the last expression statement. A script can give it and its globals values of any
    // kind: the accessors throw for the wrong kind, and toString throws for an array that contains itself.
    std::cout << "result: " << (result.ok ? result.value.asString() : result.error) << '\n';

    RubyValue total;
    if (vm.getGlobal("total", total)) {
        std::cout << "total: " << total.asInteger() << '\n';
    }
    RubyValue scores;
    if (vm.getGlobal("scores", scores)) {
        std::cout << "scores: " << scores.toString() << '\n';
    }
}

// A script can be compiled once and run many times, also by another VM or in another process: an image is only bytes.
void runImage(RubyVM& vm) {
    const RubyBytecode image = vm.compileScript("next_id() * 10", "image");
    for (const char* run : {"first", "second"}) {
        const RubyResult result = vm.runBytecode(image);
        std::cout << "image, " << run << " run: " << (result.ok ? result.value.toString() : result.error) << '\n';
    }
}

// No script error escapes from the run operations as an exception.
void handleFailures(RubyVM& vm) {
    for (const char* source : {"1 +", "missing(1)", "distance(1)", "error(\"enough\")"}) {
        const RubyResult result = vm.runScriptString(source, "failing");
        std::cout << (result.ok ? "unexpected success" : "failure: " + result.error) << '\n';
    }
    // Only compileScript throws, since it has no result in which to report an error.
    try {
        const RubyBytecode image = vm.compileScript("while true", "failing");
        std::cout << "unexpected image of " << image.bytes.size() << " bytes\n";
    } catch (const RubyError& error) {
        std::cout << "compile error: " << error.message() << '\n';
    }
}

}  // namespace

int main() {
    try {
        RubyVM vm;
        bindAndRun(vm);
        runImage(vm);
        handleFailures(vm);
    } catch (const std::exception& error) {
        std::cerr << "unexpected: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
