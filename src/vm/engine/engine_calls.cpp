// Calls made by the engine: which become frames, and which leave it.
#include "value/native_stack.h"
#include "vm/engine/engine.h"
#include "vm/engine/registers.h"
#include "vm/errors.h"
#include "vm/impl.h"

namespace morvel::ruby::internal {

namespace {

using Kind = RubyFunctionHandle::Kind;
using Intrinsic = RubyFunctionHandle::Intrinsic;

// Loaded programs may nest this deep: each takes far more memory than a frame.
constexpr std::size_t kMostProgramFrames = 100'000;

bool hasFunction(const RubyFunctionHandle& handle) {
    return handle.functionIndex >= 0 &&
           static_cast<std::size_t>(handle.functionIndex) < handle.program->functions.size();
}

/// True when pcall may just enter the function: a wrong argument count fails inside the protection, and a guarded
/// function has an outcome of its own.
bool canProtect(const Code& code, std::size_t argumentCount) {
    return code.function->fastKind != FastKind::Guarded && argumentCount == code.parameterCount;
}

/// Releases callee and arguments, then delivers the result.
void finishCall(RubyValue* window, std::size_t argumentCount, RubyValue* result, RubyValue&& value) noexcept {
    for (std::size_t i = 0; i <= argumentCount; ++i) {
        releaseRegister(window + i);
    }
    assignRegister(result, std::move(value));
}

}  // namespace

Engine::CallOutcome Engine::callFunction(const RubyValue& callee, RubyValue* window, std::size_t argumentCount,
                                         RubyValue* result) {
    if (!callee.isFunction()) {
        runtimeError(program(), line(), "attempted to call a non-function value");
    }
    // The variable that holds the function may be rebound during the call.
    const RubyValue kept = callee;
    auto& handle = *static_cast<RubyFunctionHandle*>(kept.data.box);
    switch (handle.kind) {
        case Kind::Empty:
            runtimeError(program(), line(), "function handle is empty");
        case Kind::Script:
            callScript(handle, window, argumentCount, result);
            return CallOutcome::Done;
        case Kind::Host:
            break;
    }
    return callHost(handle, window, argumentCount, result);
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

void Engine::callScript(RubyFunctionHandle& handle, RubyValue* window, std::size_t argumentCount, RubyValue* result) {
    if (handle.program == nullptr) {
        runtimeError(program(), line(), "script function program is missing");
    }
    if (!hasFunction(handle)) {
        runtimeError(program(), line(), "function index is out of range");
    }
    if (const Code* code = codeOf(handle)) {
        releaseRegister(window);
        return enterFunction(handle, *code, window + 1, window + 1, argumentCount, result, kPlainFrame);
    }
    if (nativeStackLow()) {
        failOverflow();
    }
    RubyValue value = m_vm.runFunction(handle.program, handle.functionIndex, window + 1, argumentCount);
    finishCall(window, argumentCount, result, std::move(value));
}

Engine::CallOutcome Engine::callHost(const RubyFunctionHandle& handle, RubyValue* window, std::size_t argumentCount,
                                     RubyValue* result) {
    const RubyValue* arguments = window + 1;
    switch (handle.intrinsic) {
        case Intrinsic::Error:
            m_message = errorCallMessage(arguments, argumentCount);
            return CallOutcome::Raised;
        case Intrinsic::Pcall:
            callProtected(window, argumentCount, result);
            return CallOutcome::Done;
        case Intrinsic::TableSet:
            finishCall(window, argumentCount, result, tableSet(arguments, argumentCount));
            return CallOutcome::Done;
        case Intrinsic::None:
            break;
    }
    const RubyArguments view(arguments, argumentCount);
    RubyVM& vm = *m_vm.owner;
    finishCall(window, argumentCount, result,
               handle.nativeFunction != nullptr ? handle.nativeFunction(vm, view) : handle.hostFunction(vm, view));
    return CallOutcome::Done;
}

void Engine::enterFunction(RubyFunctionHandle& handle, const Code& code, RubyValue* base, RubyValue* arguments,
                           std::size_t argumentCount, RubyValue* result, std::uint32_t flags) {
    if (argumentCount != code.parameterCount) {
        runtimeError(*code.program, 0, arityMessage(*code.function, argumentCount));
    }
    if (code.isTopLevel) {
        if (m_programFrames == kMostProgramFrames) {
            failOverflow();
        }
        flags |= kProgramFrame;
    }
    pushFrame(code, base, result, flags);
    m_programFrames += code.isTopLevel ? 1 : 0;
    m_current->handle = &handle;
    ++handle.references;
    if (m_current->base != arguments) {
        for (std::size_t i = 0; i < argumentCount; ++i) {
            moveRegister(m_current->base + i, arguments + i);
        }
    }
    if (code.prologue != Prologue::None) {
        prepareRegisters(code, m_current->base);
    }
}

void Engine::callProtected(RubyValue* window, std::size_t argumentCount, RubyValue* result) {
    if (argumentCount == 0) {
        requireArgumentCount("pcall", argumentCount, 1, kNoMaximum);
    }
    m_vm.prepareSpareOutcome();
    RubyValue* callee = window + 1;
    if (callee->isFunction()) {
        auto& handle = *static_cast<RubyFunctionHandle*>(callee->data.box);
        const Code* code = knownCode(handle);
        if (code == nullptr) {
            const bool isScript = handle.kind == Kind::Script && handle.program != nullptr && hasFunction(handle);
            code = isScript ? codeOf(handle) : nullptr;
        }
        if (code != nullptr && canProtect(*code, argumentCount - 1)) {
            enterFunction(handle, *code, callee + 1, callee + 1, argumentCount - 1, result, kProtectedFrame);
            releaseRegister(window);
            releaseRegister(callee);
            return;
        }
    }
    RubyValue outcome = m_vm.protectedCall(program(), window + 1, argumentCount, line());
    finishCall(window, argumentCount, result, std::move(outcome));
}

void Engine::callWithArray(RubyValue* window, RubyValue* result) {
    RubyArray& arguments = window[1].asArray();
    const bool isPcall =
        window->isFunction() && static_cast<RubyFunctionHandle*>(window->data.box)->intrinsic == Intrinsic::Pcall;
    const bool hasEntered =
        isPcall
            ? enterWithArray(arguments[0], window, arguments.data() + 1, arguments.size() - 1, result, kProtectedFrame)
            : enterWithArray(*window, window, arguments.data(), arguments.size(), result, kPlainFrame);
    if (!hasEntered) {
        RubyValue value = m_vm.callValue(program(), *window, arguments.data(), arguments.size(), line());
        finishCall(window, 1, result, std::move(value));
    }
}

bool Engine::enterWithArray(const RubyValue& callee, RubyValue* window, RubyValue* arguments, std::size_t argumentCount,
                            RubyValue* result, std::uint32_t flags) {
    if (!callee.isFunction()) {
        return false;
    }
    auto& handle = *static_cast<RubyFunctionHandle*>(callee.data.box);
    const bool isScript = handle.kind == Kind::Script && handle.program != nullptr && hasFunction(handle);
    const Code* code = isScript ? codeOf(handle) : nullptr;
    if (code == nullptr) {
        return false;
    }
    if (flags == kProtectedFrame && !canProtect(*code, argumentCount)) {
        return false;
    }
    enterFunction(handle, *code, window + 2, arguments, argumentCount, result, flags);
    releaseRegister(window);
    releaseRegister(window + 1);
    return true;
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
