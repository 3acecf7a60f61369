#include "equivalence/both_executors.h"

#include "support/output.h"

namespace morvel::ruby::equivalence {

namespace {

using internal::ExecutorChoice;

std::string renderingOf(const RubyValue& value) {
    try {
        return value.toString();
    } catch (const RubyError& error) {
        return "no rendering: " + error.message();
    }
}

}  // namespace

bool Observation::reachedTheStackLimit() const {
    constexpr const char* kMessage = "stack overflow";
    return error.find(kMessage) != std::string::npos || output.find(kMessage) != std::string::npos ||
           value.find(kMessage) != std::string::npos;
}

std::string Observation::describe() const {
    return std::string("  ok: ") + (ok ? "yes" : "no") + "\n  value: " + value + "\n  error: " + error +
           "\n  output: " + output + "\n";
}

Observation observeSource(const std::string& source, const std::string& chunkName, ExecutorChoice executor) {
    RubyVM vm;
    RubyVM::Impl::of(vm).executor = executor;
    const tests::CapturedOutput capture;
    const RubyResult result = vm.runScriptString(source, chunkName);
    return {result.ok, renderingOf(result.value), result.error, capture.text()};
}

}  // namespace morvel::ruby::equivalence
