// Runs of the engine, and failures on their way to a pcall.
#include "vm/engine/engine.h"

#include <algorithm>
#include <new>
#include <utility>

#include "morvel/ruby/error.h"
#include "platform/free_memory.h"
#include "value/deferred_release.h"
#include "value/native_stack.h"
#include "value/spare_memory.h"
#include "vm/calling.h"
#include "vm/engine/registers.h"
#include "vm/engine/translator.h"
#include "vm/errors.h"
#include "vm/impl.h"

namespace morvel::ruby::internal {

static_assert(GlobalTable::kBlockSlots == kLargestOperand + 1, "operands name the globals of the first block");

namespace {

constexpr const char* kOutOfMemory = "out of memory";
std::string textOf(const std::exception& exception) noexcept {
    try {
        return errorText(exception);
    } catch (const std::bad_alloc&) {
        return kOutOfMemory;
    }
}

void setKeys(Code& code, const ProgramCode& program) {
    code.engine = program.engine.get();
    code.programKey = reinterpret_cast<CallKey>(&program);
    if (code.parameterCount < alignof(ProgramCode)) {
        code.callKey = code.programKey + code.parameterCount;
    }
}

/// Takes the whole message out of the pending error; it may be long, so nothing of it stays behind.
std::string takeMessage(PendingError& pending) {
    PendingError error = std::exchange(pending, {});
    return error.location.empty() ? std::move(error.text) : error.location + error.text;
}

}  // namespace

Engine::Engine(RubyVM::Impl& vm)
    : m_vm(vm), m_globals(vm.globals), m_runs(vm.runs), m_identity(std::make_shared<EngineIdentity>()) {
    m_context.globals = m_globals.firstBlock();
}

const Code* Engine::codeFor(const Program& program, std::int32_t functionIndex) {
    if (program.executionState == nullptr) {
        // Programs come and go: slots that only ended programs mentioned become free for the names of this one.
        m_identity->endedMentions.take([this](const Mentions& ended) {
            for (const std::uint32_t slot : ended.slots) {
                if (slot != kNotGlobal) {
                    m_globals.endMention(slot);
                }
            }
        });
        program.executionState = std::make_shared<ProgramCode>(program, m_globals, m_identity);
    }
    auto& translations = *static_cast<ProgramCode*>(program.executionState.get());
    if (translations.engine != m_identity) {
        // The translation belongs to another VM, whose global slots differ.
        return nullptr;
    }
    ProgramCode::Entry& entry = translations.functions[static_cast<std::size_t>(functionIndex)];
    if (entry.state == ProgramCode::State::Untried) {
        entry.code = translateFunction(program, functionIndex, translations.names);
        entry.state = entry.code != nullptr ? ProgramCode::State::Translated : ProgramCode::State::Unsuitable;
        if (entry.code != nullptr) {
            setKeys(*entry.code, translations);
        }
    }
    return entry.code.get();
}

RubyValue Engine::run(const Code& code, const RubyValue* arguments, std::size_t argumentCount) {
    requireArity(*code.program, *code.function, argumentCount);
    RubyValue result;
    const std::size_t entry = m_calls.depth();
    // Destroyed last: by then the frames of this run are gone.
    const DeferReleaseScope deferral;
    const Runs::Id self = m_runs.innermost();
    struct Unwinder {
        Engine& engine;
        Runs::Id run;
        std::size_t entry;
        ~Unwinder() {
            CallStack& calls = engine.m_calls;
            if (engine.m_runs.innermost() != run) {
                calls.abandon(entry, engine.m_runs.depthInside(run));
                return;
            }
            calls.unwindTo(entry);
            if (calls.depth() == 0) {
                calls.giveBack();
            }
        }
    } const unwinder{*this, self, entry};
    const Frame& caller = *m_context.frame;
    if (!m_calls.push(code, caller.base + caller.code->registerCount, &result, kEntryFrame)) {
        static_cast<void>(fail(kStackOverflow));
        throwPendingError();
    }
    RubyValue* const base = m_context.frame->base;
    for (std::size_t i = 0; i < argumentCount; ++i) {
        copyToDead(base + i, arguments + i);
    }
    while (true) {
        std::string message;
        bool isMemoryShort = false;
        try {
            interpret(entry, self);
            return result;
        } catch (const std::exception& exception) {
            m_runs.requireInnermost(self);
            if (m_calls.protectedDepth(entry) == entry) {
                throw;
            }
            message = textOf(exception);
            isMemoryShort = internal::isMemoryShort(exception);
        }
        // The exception, gone by now, may have lain above much of the memory that can be freed.
        static_cast<void>(recover(entry, message, isMemoryShort));
    }
}

void Engine::giveBackMemory() noexcept {
    SpareMemory::giveBackAll();
    m_calls.giveBack();
    platform::returnFreeMemory();
}

Status Engine::fail(const Fault& fault) {
    PendingError& error = m_context.error;
    const bool hasPlace = fault.kind != Fault::Kind::Placeless && m_context.frame->code->program != nullptr;
    error.location = hasPlace ? locationOf(program(), line()) : std::string();
    error.text = fault.message;
    error.isOverflow = fault.kind == Fault::Kind::StackOverflow;
    return Status::Failed;
}

Status Engine::fail(std::string location, std::string text) {
    m_context.error = {std::move(location), std::move(text), false};
    return Status::Failed;
}

Status Engine::failUndefined(std::size_t globalSlot) {
    return fail(locationOf(program(), line()), undefinedMessage(m_globals.nameOf(globalSlot)));
}

void Engine::deliverPendingError(std::size_t entry) {
    if (m_calls.protectedDepth(entry) == entry) {
        throwPendingError();
    }
    std::string message = takeMessage(m_context.error);
    static_cast<void>(recover(entry, message));
}

void Engine::throwPendingError() {
    if (m_context.error.isOverflow) {
        throw StackOverflow(std::exchange(m_context.error, {}).location);
    }
    throw RubyError(takeMessage(m_context.error));
}

bool Engine::leaveFrame(RubyValue* value) {
    RubyValue outcome;
    moveRegister(&outcome, value);
    const std::uint32_t flags = m_context.frame->flags;
    RubyValue* const result = m_context.frame->result;
    if ((flags & kProtectedFrame) != 0) {
        outcome = pcallSuccess(std::move(outcome));
    }
    // The returned value was the only live temporary.
    m_calls.pop(m_context.frame->code->firstTemporary);
    assignRegister(result, std::move(outcome));
    return (flags & kEntryFrame) != 0;
}

bool Engine::recover(std::size_t entry, std::string& message, bool isMemoryShort) {
    bool isMessageLost = false;
    while (true) {
        const std::size_t index = m_calls.protectedDepth(entry);
        if (index == entry && isMessageLost) {
            throw std::bad_alloc();
        }
        if (index == entry) {
            return false;
        }
        RubyValue* result = m_calls.at(index).result;
        m_calls.unwindTo(index - 1);
        if (isMemoryShort) {
            // Before the outcome is made: it would keep the memory below it from being returned to the system.
            giveBackMemory();
        } else {
            m_calls.giveBack();
        }
        try {
            assignRegister(result, pcallError(isMessageLost ? kOutOfMemory : std::move(message)));
            return true;
        } catch (const std::bad_alloc&) {
            RubyValue outcome = m_vm.takeSpareOutcome();
            if (!outcome.isNil()) {
                assignRegister(result, std::move(outcome));
                return true;
            }
            // This pcall fails as well, and the next one further out handles that.
            isMessageLost = true;
        }
    }
}

}  // namespace morvel::ruby::internal
