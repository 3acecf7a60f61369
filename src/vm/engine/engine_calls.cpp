// Calls made by the engine: which become frames, and which leave it.
#include "value/native_stack.h"
#include "vm/calling.h"
#include "vm/engine/engine.h"
#include "vm/engine/registers.h"
#include "vm/errors.h"
#include "vm/impl.h"

namespace morvel::ruby::internal {

namespace {

using Kind = RubyFunctionHandle::Kind;
using Intrinsic = RubyFunctionHandle::Intrinsic;

/// True when pcall can simply enter the function: a wrong argument count has to fail inside the protected call.
bool canProtect(const Code& code, std::size_t argumentCount) {
    return code.isProtectable && argumentCount == code.parameterCount;
}

/// Releases callee and arguments, then delivers the result.
void finishCall(RubyValue* window, std::size_t argumentCount, RubyValue* result, RubyValue&& value) noexcept {
    for (std::size_t i = 0; i <= argumentCount; ++i) {
        releaseRegister(window + i);
    }
    assignRegister(result, std::move(value));
}

}  // namespace

Status Engine::callFunction(const RubyValue& callee, RubyValue* window, std::size_t argumentCount, RubyValue* result) {
    if (const Fault fault = callFault(callee)) {
        return fail(fault);
    }
    // The variable that holds the function may be rebound during the call.
    const RubyValue kept = callee;
    auto& handle = *static_cast<RubyFunctionHandle*>(kept.data.box);
    return handle.kind == Kind::Script ? callScript(handle, window, argumentCount, result)
                                       : callHost(handle, window, argumentCount, result);
}

bool Engine::takeShortcut(const RubyFunctionHandle& handle, RubyValue* window, std::size_t argumentCount,
                          RubyValue* result) {
    RubyValue* argument = window + 1;
    RubyValue value;
    switch (FunctionInternals::of(handle).shortcut) {
        case Shortcut::None:
            return false;
        case Shortcut::Len:
            if (argumentCount != 1 || !(argument->isArray() || argument->isString())) {
                return false;
            }
            value =
                argument->isArray() ? RubyValue(argument->asArray().size()) : RubyValue(argument->asString().size());
            break;
        case Shortcut::ArrayPush:
            if (argumentCount != 2 || !argument->isArray()) {
                return false;
            }
            argument->asArray().push_back(std::move(argument[1]));
            moveRegister(&value, argument);
            break;
    }
    finishCall(window, argumentCount, result, std::move(value));
    return true;
}

void Engine::callNative(const RubyFunctionHandle& handle, RubyValue* window, std::size_t argumentCount,
                        RubyValue* result) {
    if (FunctionInternals::of(handle).shortcut != Shortcut::None &&
        takeShortcut(handle, window, argumentCount, result)) {
        return;
    }
    finishCall(window, argumentCount, result,
               handle.nativeFunction(*m_vm.owner, RubyArguments(window + 1, argumentCount)));
}

Status Engine::callScript(RubyFunctionHandle& handle, RubyValue* window, std::size_t argumentCount, RubyValue* result) {
    if (const Code* code = codeOf(handle)) {
        releaseRegister(window);
        return enterFunction(handle, *code, window + 1, window + 1, argumentCount, result, kRecordedFrame);
    }
    if (nativeStackLow()) {
        return fail(kStackOverflow);
    }
    RubyValue value = m_vm.runFunction(handle.program, handle.functionIndex, window + 1, argumentCount);
    finishCall(window, argumentCount, result, std::move(value));
    return Status::Done;
}

Status Engine::callHost(const RubyFunctionHandle& handle, RubyValue* window, std::size_t argumentCount,
                        RubyValue* result) {
    const RubyValue* arguments = window + 1;
    switch (handle.intrinsic) {
        case Intrinsic::Error:
            return fail({}, errorCallMessage(arguments, argumentCount));
        case Intrinsic::Pcall:
            return callProtected(window, argumentCount, result);
        case Intrinsic::TableSet:
            finishCall(window, argumentCount, result, tableSet(arguments, argumentCount));
            return Status::Done;
        case Intrinsic::None:
            break;
    }
    const RubyArguments view(arguments, argumentCount);
    RubyVM& vm = *m_vm.owner;
    finishCall(window, argumentCount, result,
               handle.nativeFunction != nullptr ? handle.nativeFunction(vm, view) : handle.hostFunction(vm, view));
    return Status::Done;
}

Status Engine::enterFunction(RubyFunctionHandle& handle, const Code& code, RubyValue* base, RubyValue* arguments,
                             std::size_t argumentCount, RubyValue* result, std::uint32_t flags) {
    if (argumentCount != code.parameterCount) {
        return fail(locationOf(*code.program, 0), arityMessage(*code.function, argumentCount));
    }
    if (!m_calls.push(code, base, result, flags | (code.isTopLevel ? kProgramFrame : 0U))) {
        return fail(kStackOverflow);
    }
    m_context.frame->handle = &handle;
    ++handle.references;
    if (m_context.frame->base != arguments) {
        for (std::size_t i = 0; i < argumentCount; ++i) {
            moveRegister(m_context.frame->base + i, arguments + i);
        }
    }
    return Status::Done;
}

Status Engine::callProtected(RubyValue* window, std::size_t argumentCount, RubyValue* result) {
    if (argumentCount == 0) {
        requireArgumentCount("pcall", argumentCount, 1, kNoMaximum);
    }
    m_vm.prepareSpareOutcome();
    RubyValue* callee = window + 1;
    if (callee->isFunction()) {
        auto& handle = *static_cast<RubyFunctionHandle*>(callee->data.box);
        const Code* code = knownCode(handle);
        if (code == nullptr) {
            code = isCallableScript(handle) ? codeOf(handle) : nullptr;
        }
        if (code != nullptr && canProtect(*code, argumentCount - 1)) {
            if (enterFunction(handle, *code, callee + 1, callee + 1, argumentCount - 1, result,
                              kProtectedFrame | kRecordedFrame) == Status::Failed) {
                return Status::Failed;
            }
            releaseRegister(window);
            releaseRegister(callee);
            return Status::Done;
        }
    }
    RubyValue outcome = m_vm.protectedCall(program(), window + 1, argumentCount, line());
    finishCall(window, argumentCount, result, std::move(outcome));
    return Status::Done;
}

Status Engine::callWithArray(RubyValue* window, RubyValue* result) {
    RubyArray& arguments = window[1].asArray();
    const bool isPcall =
        window->isFunction() && static_cast<RubyFunctionHandle*>(window->data.box)->intrinsic == Intrinsic::Pcall;
    const Attempt entered =
        isPcall ? enterWithArray(arguments[0], window, arguments.data() + 1, arguments.size() - 1, result,
                                 kProtectedFrame | kRecordedFrame)
                : enterWithArray(*window, window, arguments.data(), arguments.size(), result, kRecordedFrame);
    if (entered == Attempt::Declined) {
        RubyValue value = m_vm.callValue(program(), *window, arguments.data(), arguments.size(), line());
        finishCall(window, 1, result, std::move(value));
    }
    return entered == Attempt::Failed ? Status::Failed : Status::Done;
}

Attempt Engine::enterWithArray(const RubyValue& callee, RubyValue* window, RubyValue* arguments,
                               std::size_t argumentCount, RubyValue* result, std::uint32_t flags) {
    if (!callee.isFunction()) {
        return Attempt::Declined;
    }
    auto& handle = *static_cast<RubyFunctionHandle*>(callee.data.box);
    const Code* code = isCallableScript(handle) ? codeOf(handle) : nullptr;
    if (code == nullptr || ((flags & kProtectedFrame) != 0 && !canProtect(*code, argumentCount))) {
        return Attempt::Declined;
    }
    if (enterFunction(handle, *code, window + 2, arguments, argumentCount, result, flags) == Status::Failed) {
        return Attempt::Failed;
    }
    releaseRegister(window);
    releaseRegister(window + 1);
    return Attempt::Done;
}

const Code* Engine::codeOf(const RubyFunctionHandle& handle) {
    if (const Code* code = knownCode(handle)) {
        return code;
    }
    const Code* code = codeFor(*handle.program, handle.functionIndex);
    if (code != nullptr) {
        FunctionInternals::set(handle, *code);
    }
    return code;
}

}  // namespace morvel::ruby::internal
