#include "support/runs.h"

#include <gtest/gtest.h>

#include "morvel/ruby/error.h"
#include "support/describe.h"
#include "vm/impl.h"

namespace morvel::ruby::tests {

namespace {

std::string ending(const RubyResult& result) {
    return result.ok ? "value " + describe(result.value) : "error " + result.error;
}

void expectEnding(const std::string& expected, const RubyBytecode& image, const Preparation& prepare) {
    for (const bool plain : {false, true}) {
        RubyVM vm;
        if (plain) {
            useBaselineInterpreter(vm);
        }
        if (prepare) {
            prepare(vm);
        }
        const RubyResult result = vm.runBytecode(image);
        EXPECT_EQ(expected, ending(result)) << (plain ? "with the baseline interpreter" : "as usual");
        EXPECT_TRUE(result.ok ? result.error.empty() : result.value.isNil());
    }
}

}  // namespace

void useBaselineInterpreter(RubyVM& vm) { RubyVM::Impl::of(vm).executor = internal::ExecutorChoice::BaselineOnly; }

void expectValue(const std::string& description, const RubyBytecode& image, const Preparation& prepare) {
    expectEnding("value " + description, image, prepare);
}

void expectError(const std::string& message, const RubyBytecode& image, const Preparation& prepare) {
    expectEnding("error " + message, image, prepare);
}

void expectScriptValue(const std::string& description, const std::string& source, const Preparation& prepare) {
    SCOPED_TRACE(source);
    expectValue(description, RubyVM().compileScript(source, "t"), prepare);
}

void expectScriptError(const std::string& message, const std::string& source, const Preparation& prepare) {
    SCOPED_TRACE(source);
    expectError(message, RubyVM().compileScript(source, "t"), prepare);
}

std::string errorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const RubyError& error) {
        return error.message();
    }
    return "no error";
}

}  // namespace morvel::ruby::tests
