#include "sameness/both_executors.h"

#include <functional>
#include <iostream>
#include <sstream>

namespace morvel::ruby::sameness {

namespace {

using internal::ExecutorChoice;

/// Takes what is written to standard output while it lives.
class OutputCapture {
public:
    OutputCapture() : m_previous(std::cout.rdbuf(m_text.rdbuf())) {}
    ~OutputCapture() { std::cout.rdbuf(m_previous); }
    OutputCapture(const OutputCapture&) = delete;
    OutputCapture& operator=(const OutputCapture&) = delete;

    [[nodiscard]] std::string text() const { return m_text.str(); }

private:
    std::ostringstream m_text;
    std::streambuf* m_previous;
};

std::string renderingOf(const RubyValue& value) {
    try {
        return value.toString();
    } catch (const RubyError& error) {
        return "no rendering: " + error.message();
    }
}

Observation observe(ExecutorChoice executor, const std::function<RubyResult(RubyVM&)>& run) {
    RubyVM vm;
    RubyVM::Impl::of(vm).executor = executor;
    const OutputCapture capture;
    const RubyResult result = run(vm);
    return {result.ok, renderingOf(result.value), result.error, capture.text()};
}

std::string compare(const Observation& automatic, const Observation& plain) {
    if (automatic == plain || automatic.reachedTheStackLimit() || plain.reachedTheStackLimit()) {
        return {};
    }
    return "engine:\n" + automatic.describe() + "plain executor:\n" + plain.describe();
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
    return observe(executor, [&](RubyVM& vm) { return vm.runScriptString(source, chunkName); });
}

Observation observeImage(const RubyBytecode& image, ExecutorChoice executor) {
    return observe(executor, [&](RubyVM& vm) { return vm.runBytecode(image); });
}

std::string compareSource(const std::string& source, const std::string& chunkName) {
    return compare(observeSource(source, chunkName, ExecutorChoice::Automatic),
                   observeSource(source, chunkName, ExecutorChoice::PlainOnly));
}

std::string compareImage(const RubyBytecode& image) {
    return compare(observeImage(image, ExecutorChoice::Automatic), observeImage(image, ExecutorChoice::PlainOnly));
}

}  // namespace morvel::ruby::sameness
