// Runs programs on both executors and checks that the outcomes agree.
#pragma once

#include <functional>
#include <string>

#include "morvel/ruby/vm.h"

namespace morvel::ruby::tests {

/// Prepares the VM for a run: binds functions, sets globals.
using Preparation = std::function<void(RubyVM&)>;

/// Makes the VM run all script code on the baseline interpreter, without translating it.
void useBaselineInterpreter(RubyVM& vm);

/// Checks that running the image yields a value with this description, in a new VM and in one limited to the baseline
/// interpreter.
void expectValue(const std::string& description, const RubyBytecode& image, const Preparation& prepare = {});
/// Checks that it fails with this message.
void expectError(const std::string& message, const RubyBytecode& image, const Preparation& prepare = {});

/// The same for source code, compiled under the chunk name "t".
void expectScriptValue(const std::string& description, const std::string& source, const Preparation& prepare = {});
void expectScriptError(const std::string& message, const std::string& source, const Preparation& prepare = {});

/// The message of the RubyError that `action` throws, or "no error".
[[nodiscard]] std::string errorOf(const std::function<void()>& action);

}  // namespace morvel::ruby::tests
