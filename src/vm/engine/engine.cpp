// Frames of the engine: entering, leaving, unwinding, and failures on their way to a pcall.
#include "vm/engine/engine.h"

#include <algorithm>
#include <new>
#include <utility>

#include "morvel/ruby/error.h"
#include "value/deferred_release.h"
#include "value/free_memory.h"
#include "value/spare_memory.h"
#include "vm/engine/registers.h"
#include "vm/engine/translator.h"
#include "vm/errors.h"
#include "vm/impl.h"

namespace morvel::ruby::internal {

namespace {

constexpr const char* kOutOfMemory = "out of memory";
constexpr std::size_t kFirstFrames = 64;
// Room for so many is kept once it was needed.
constexpr std::size_t kKeptFrames = std::size_t{1} << 14;
// Calls may nest this deep. Small functions reach it before the value stack is full.
constexpr std::size_t kMostFrames = std::size_t{1} << 21;

std::string textOf(const std::exception& exception) noexcept {
    try {
        return errorText(exception);
    } catch (const std::bad_alloc&) {
        return kOutOfMemory;
    }
}

}  // namespace

Engine::Engine(RubyVM::Impl& vm)
    : m_vm(vm),
      m_globals(vm.globals),
      m_runs(vm.runs),
      m_identity(std::make_shared<EngineIdentity>()),
      m_frames(makeZeroedArray<Frame>(kFirstFrames)) {
    m_current = m_frames.get();
    m_lastFrame = m_current + kFirstFrames - 1;
    m_current->code = &m_noCode;
    m_current->base = m_stack.begin();
}

const Code* Engine::codeFor(const Program& program, std::int32_t functionIndex) {
    if (program.executionState == nullptr) {
        // Programs come and go: what those that went have mentioned makes room for the names of this one.
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
        // The translation belongs to another VM, whose global slots are not these.
        return nullptr;
    }
    ProgramCode::Entry& entry = translations.functions[static_cast<std::size_t>(functionIndex)];
    if (entry.state == ProgramCode::State::Untried) {
        entry.code = translateFunction(program, functionIndex, translations.names);
        entry.state = entry.code != nullptr ? ProgramCode::State::Translated : ProgramCode::State::Unsuitable;
        if (entry.code != nullptr) {
            entry.code->engine = m_identity.get();
        }
    }
    return entry.code.get();
}

RubyValue Engine::run(const Code& code, const RubyValue* arguments, std::size_t argumentCount) {
    if (argumentCount != code.parameterCount) {
        runtimeError(*code.program, 0, arityMessage(*code.function, argumentCount));
    }
    RubyValue result;
    const std::size_t entry = depth();
    // Destroyed last: by then the frames of this run are gone.
    const DeferReleaseScope deferral;
    const Runs::Id self = m_runs.innermost();
    struct Unwinder {
        Engine& engine;
        Runs::Id run;
        std::size_t entry;
        ~Unwinder() {
            if (engine.m_runs.innermost() != run) {
                engine.abandonFrames(run, entry);
                return;
            }
            engine.unwindTo(entry);
            if (engine.depth() == 0) {
                engine.giveBackStack();
            }
        }
    } const unwinder{*this, self, entry};
    pushFrame(code, m_current->base + m_current->code->registerCount, &result, kEntryFrame);
    for (std::size_t i = 0; i < argumentCount; ++i) {
        copyToDead(m_current->base + i, arguments + i);
    }
    prepareRegisters(code, m_current->base);
    while (true) {
        std::string message;
        bool isMemoryShort = false;
        try {
            interpret(entry, self);
            return result;
        } catch (const std::exception& exception) {
            m_runs.requireInnermost(self);
            if (protectedFrame(entry) == entry) {
                throw;
            }
            message = textOf(exception);
            isMemoryShort = internal::isMemoryShort(exception);
        }
        // By now the exception is gone, which may lie above much of what can be given back.
        static_cast<void>(recover(entry, message, isMemoryShort));
    }
}

void Engine::growFrames() {
    const std::size_t used = depth() + 1;
    if (used >= kMostFrames) {
        failOverflow();
    }
    moveFrames(std::min(used * 2, kMostFrames));
}

void Engine::moveFrames(std::size_t count) {
    const std::size_t top = depth();
    ZeroedArray<Frame> moved = makeZeroedArray<Frame>(count);
    std::copy(m_frames.get(), m_current + 1, moved.get());
    m_frames = std::move(moved);
    m_current = m_frames.get() + top;
    m_lastFrame = m_frames.get() + count - 1;
}

void Engine::giveBackStack() noexcept {
    m_stack.giveBack();
    const auto capacity = static_cast<std::size_t>(m_lastFrame - m_frames.get()) + 1;
    const std::size_t wanted = std::max(kKeptFrames, (depth() + 1) * 2);
    if (capacity / 2 < wanted) {
        return;
    }
    try {
        moveFrames(wanted);
    } catch (const std::bad_alloc&) {
        // Then they stay where they are.
        return;
    }
}

void Engine::giveBackMemory() noexcept {
    SpareMemory::giveBackAll();
    giveBackStack();
    returnFreeMemory();
}

void Engine::failOverflow() const {
    if (m_current->code->program == nullptr) {
        throw StackOverflow();
    }
    internal::failOverflow(program(), line());
}

RubyValue* Engine::enterNextChunk(std::size_t registerCount) {
    RubyValue* const fresh = m_stack.enterNextChunk(registerCount);
    if (fresh == nullptr) {
        failOverflow();
    }
    return fresh;
}

void Engine::prepareRegisters(const Code& code, RubyValue* base) noexcept {
    for (std::uint32_t i = code.localCount; i < code.parameterCount; ++i) {
        releaseRegister(base + i);
    }
    for (std::uint32_t i = code.parameterCount; i < code.localCount; ++i) {
        base[i].type = kUndefinedType;
    }
    if (code.keepsLastValue) {
        base[code.localCount].type = RubyValue::Type::Nil;
    }
}

void Engine::popFrame(std::uint32_t registerCount) noexcept {
    const Frame frame = *m_current;
    for (std::uint32_t i = 0; i < registerCount; ++i) {
        releaseRegister(frame.base + i);
    }
    if ((frame.flags & kChunkFrame) != 0) {
        m_stack.returnToChunk(frame.previousChunk);
    }
    if ((frame.flags & kProgramFrame) != 0) {
        --m_programFrames;
    }
    --m_current;
    if (frame.handle != nullptr && --frame.handle->references == 0) {
        destroyBox(static_cast<std::uint8_t>(RubyValue::Type::Function), frame.handle);
    }
}

void Engine::unwindTo(std::size_t frame) noexcept {
    while (depth() > frame) {
        popFrame(m_current->code->registerCount);
    }
    while ((m_current->flags & kAbandonedFrame) != 0) {
        popFrame(0);
    }
}

void Engine::abandonFrames(Runs::Id run, std::size_t entry) noexcept {
    for (std::size_t index = m_runs.depthInside(run); index > entry; --index) {
        // What ends here may grow the array of frames.
        for (std::uint32_t i = 0; i < m_frames[index].code->registerCount; ++i) {
            releaseRegister(m_frames[index].base + i);
        }
        Frame& frame = m_frames[index];
        frame.code = &m_noCode;
        frame.flags |= kAbandonedFrame;
    }
}

bool Engine::leaveFrame(RubyValue* value) {
    RubyValue outcome;
    moveRegister(&outcome, value);
    const std::uint32_t flags = m_current->flags;
    RubyValue* const result = m_current->result;
    if ((flags & kProtectedFrame) != 0) {
        outcome = pcallSuccess(std::move(outcome));
    }
    // The value returned was the last temporary alive.
    popFrame(m_current->code->firstTemporary);
    assignRegister(result, std::move(outcome));
    return (flags & kEntryFrame) != 0;
}

void Engine::throwMessage() { throw RubyError(std::exchange(m_message, {})); }

std::size_t Engine::protectedFrame(std::size_t entry) const noexcept {
    std::size_t index = depth();
    while (index > entry && (m_frames[index].flags & kProtectedFrame) == 0) {
        --index;
    }
    return index;
}

bool Engine::recover(std::size_t entry, std::string& message, bool isMemoryShort) {
    bool isMessageLost = false;
    while (true) {
        const std::size_t index = protectedFrame(entry);
        if (index == entry && isMessageLost) {
            throw std::bad_alloc();
        }
        if (index == entry) {
            return false;
        }
        RubyValue* result = m_frames[index].result;
        unwindTo(index - 1);
        if (isMemoryShort) {
            // Before the outcome is made, which would keep what lies below it from the system.
            giveBackMemory();
        } else {
            giveBackStack();
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
            // The call of pcall fails in its turn, and the next one further out sees that.
            isMessageLost = true;
        }
    }
}

}  // namespace morvel::ruby::internal
