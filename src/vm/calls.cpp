// Calls: which executor runs what, and the three host functions that the interpreter carries out itself.
#include <array>
#include <new>

#include "morvel/ruby/error.h"
#include "value/native_stack.h"
#include "vm/calling.h"
#include "vm/engine/engine.h"
#include "vm/errors.h"
#include "vm/impl.h"

namespace morvel::ruby {

using internal::CompiledFunction;
using internal::FastKind;
using internal::pcallSuccess;
using Kind = RubyFunctionHandle::Kind;
using Intrinsic = RubyFunctionHandle::Intrinsic;

namespace {

// For forms that are not run as calls, the presence of a message decides the outcome.
RubyValue pcallOutcome(const std::string& message, RubyValue value) {
    return message.empty() ? pcallSuccess(std::move(value)) : internal::pcallRefusal(message);
}

// Forms that are not run as calls let script errors pass. Running out of stack or memory is caught here, as in other
// calls.
template <typename Form>
RubyValue withExhaustionCaught(const Form& form) {
    try {
        return form();
    } catch (const internal::StackOverflow& overflow) {
        return internal::pcallRefusal(overflow.message());
    } catch (const std::bad_alloc& exhaustion) {
        return internal::pcallRefusal(internal::errorText(exhaustion));
    }
}

RubyValue protectedGuardedCall(const RubyVM::Impl& vm, const RubyFunctionHandle& handle, const RubyValue* arguments,
                               std::size_t argumentCount) {
    const internal::Program& program = *handle.program;
    const CompiledFunction& function = internal::functionOf(handle);
    if (argumentCount != function.params.size()) {
        return internal::pcallRefusal(internal::arityMessage(function, argumentCount));
    }
    if (vm.evaluateFastNode(program, function, function.fastGuardRoot, arguments, argumentCount).isTruthy()) {
        return pcallOutcome(function.fastErrorMessage.asString(), RubyValue());
    }
    return pcallSuccess(vm.evaluateFastNode(program, function, function.fastRoot, arguments, argumentCount));
}

bool isGuardedFunction(const RubyFunctionHandle& handle) {
    return internal::isCallableScript(handle) && internal::functionOf(handle).fastKind == FastKind::Guarded;
}

}  // namespace

namespace internal {

RubyValue makeScriptFunction(const std::string& name, std::int32_t functionIndex,
                             const std::shared_ptr<Program>& program) {
    auto handle = std::make_unique<RubyFunctionHandle>();
    handle->kind = Kind::Script;
    handle->functionIndex = functionIndex;
    handle->program = program;
    handle->name = name;
    return RubyValue(std::move(handle));
}

}  // namespace internal

RubyValue RubyVM::Impl::runFunction(const std::shared_ptr<Program>& program, std::int32_t functionIndex,
                                    const RubyValue* arguments, std::size_t argumentCount) {
    const internal::RunScope run(runs, m_engine->depth());
    if (executor == internal::ExecutorChoice::Automatic) {
        if (const internal::Code* code = m_engine->codeFor(*program, functionIndex)) {
            return m_engine->run(*code, arguments, argumentCount);
        }
    }
    const CompiledFunction& function = program->functions[static_cast<std::size_t>(functionIndex)];
    if (function.fastKind != FastKind::None) {
        return executeFastFunction(program, function, arguments, argumentCount);
    }
    return executeFunction(program, functionIndex, arguments, argumentCount);
}

RubyValue RubyVM::Impl::callHost(const RubyFunctionHandle& handle, const RubyValue* arguments,
                                 std::size_t argumentCount) const {
    const internal::Runs::Id run = runs.innermost();
    const RubyArguments view(arguments, argumentCount);
    try {
        RubyValue result =
            handle.nativeFunction != nullptr ? handle.nativeFunction(*owner, view) : handle.hostFunction(*owner, view);
        runs.requireInnermost(run);
        return result;
    } catch (const std::exception&) {
        runs.requireInnermost(run);
        throw;
    }
}

RubyValue RubyVM::Impl::callValue(const Program& program, const RubyValue& callee, const RubyValue* arguments,
                                  std::size_t argumentCount, unsigned line) {
    if (internal::nativeStackLow()) {
        internal::raise(internal::kStackOverflow, program, line);
    }
    if (const internal::Fault fault = internal::callFault(callee)) {
        internal::raise(fault, program, line);
    }
    const RubyFunctionHandle& handle = internal::handleOf(callee);
    if (handle.kind == Kind::Script) {
        return runFunction(handle.program, handle.functionIndex, arguments, argumentCount);
    }
    switch (handle.intrinsic) {
        case Intrinsic::Error:
            throw RubyError(internal::errorCallMessage(arguments, argumentCount));
        case Intrinsic::Pcall:
            return protectedCall(program, arguments, argumentCount, line);
        case Intrinsic::TableSet:
            return internal::tableSet(arguments, argumentCount);
        case Intrinsic::None:
            break;
    }
    return callHost(handle, arguments, argumentCount);
}

void RubyVM::Impl::makeSpareOutcome() noexcept {
    try {
        m_spareOutcome = internal::pcallError("out of memory");
    } catch (const std::bad_alloc&) {
        // The next pcall tries again.
        return;
    }
}

RubyValue RubyVM::Impl::protectedCall(const Program& program, const RubyValue* arguments, std::size_t argumentCount,
                                      unsigned line) {
    internal::requireArgumentCount("pcall", argumentCount, 1, internal::kNoMaximum);
    prepareSpareOutcome();
    const internal::Runs::Id run = runs.innermost();
    try {
        return protectedOutcome(program, arguments, argumentCount, line);
    } catch (const std::bad_alloc&) {
        runs.requireInnermost(run);
        if (m_spareOutcome.isNil()) {
            throw;
        }
        return takeSpareOutcome();
    }
}

RubyValue RubyVM::Impl::protectedOutcome(const Program& program, const RubyValue* arguments, std::size_t argumentCount,
                                         unsigned line) {
    const RubyValue& protectedFunction = arguments[0];
    const RubyValue* rest = arguments + 1;
    const std::size_t restCount = argumentCount - 1;
    if (!protectedFunction.isFunction()) {
        return internal::pcallRefusal("pcall expects a function");
    }
    const RubyFunctionHandle& handle = internal::handleOf(protectedFunction);
    if (handle.kind == Kind::Empty) {
        return internal::pcallRefusal("pcall function handle is empty");
    }
    if (handle.kind == Kind::Host && handle.intrinsic == Intrinsic::Error) {
        return withExhaustionCaught(
            [&] { return pcallOutcome(internal::errorCallMessage(rest, restCount), RubyValue()); });
    }
    if (isGuardedFunction(handle)) {
        return withExhaustionCaught([&] { return protectedGuardedCall(*this, handle, rest, restCount); });
    }
    const internal::Runs::Id run = runs.innermost();
    try {
        return pcallSuccess(callValue(program, protectedFunction, rest, restCount, line));
    } catch (const std::exception& exception) {
        runs.requireInnermost(run);
        if (internal::isMemoryShort(exception)) {
            m_engine->giveBackMemory();
        }
        return internal::pcallError(internal::errorText(exception));
    }
}

}  // namespace morvel::ruby
