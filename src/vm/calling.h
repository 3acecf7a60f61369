// The rules of calls, shared by all executors: what can be called, with how many arguments, what `pcall` returns, and
// the built-ins that executors carry out themselves.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "compiler/program.h"
#include "morvel/ruby/function.h"
#include "morvel/ruby/value.h"
#include "value/fault.h"

namespace morvel::ruby::internal {

/// The handle that a function value points at.
[[nodiscard]] inline const RubyFunctionHandle& handleOf(const RubyValue& function) noexcept {
    return *static_cast<const RubyFunctionHandle*>(function.data.box);
}

/// Why a value cannot be called: "attempted to call a non-function value", "function handle is empty",
/// "script function program is missing", "function index is out of range". No fault when it can be called.
[[nodiscard]] Fault callFault(const RubyValue& callee) noexcept;
/// The same for the handle of a function value, and for a script function given by program and index.
[[nodiscard]] Fault callFault(const RubyFunctionHandle& handle) noexcept;
[[nodiscard]] Fault callFault(const Program* program, std::int32_t functionIndex) noexcept;

/// True for a script function that can be called.
[[nodiscard]] inline bool isCallableScript(const RubyFunctionHandle& handle) noexcept {
    return handle.kind == RubyFunctionHandle::Kind::Script && !callFault(handle);
}

/// The script function of a callable handle.
[[nodiscard]] inline const CompiledFunction& functionOf(const RubyFunctionHandle& handle) noexcept {
    return handle.program->functions[static_cast<std::size_t>(handle.functionIndex)];
}

/// "function 'NAME' expected N arguments but received M".
[[nodiscard]] std::string arityMessage(const CompiledFunction& function, std::size_t argumentCount);
/// Raises it, with line 0, unless the function takes that many arguments.
void requireArity(const Program& program, const CompiledFunction& function, std::size_t argumentCount);

// The outcomes of `pcall`.

/// The protected call returned `value`: the pair of true and the value.
[[nodiscard]] RubyValue pcallSuccess(RubyValue value);
/// The protected call raised an error: the success marker, which comes first, then false and the message.
[[nodiscard]] RubyValue pcallError(std::string message);
/// There was no call: the pair of false and the message.
[[nodiscard]] RubyValue pcallRefusal(const std::string& message);

// Built-ins that executors carry out themselves.

/// The message that `error(...)` raises. Throws RubyError for a wrong argument count.
[[nodiscard]] std::string errorCallMessage(const RubyValue* arguments, std::size_t argumentCount);

/// Carries out `table_set(...)`; returns the stored value.
RubyValue tableSet(const RubyValue* arguments, std::size_t argumentCount);

}  // namespace morvel::ruby::internal
