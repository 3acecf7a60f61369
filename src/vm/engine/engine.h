// The engine: runs functions in register form. Script calls do not recurse natively.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "morvel/ruby/vm.h"
#include "value/native_stack.h"
#include "value/zeroed_array.h"
#include "vm/engine/code.h"
#include "vm/engine/value_stack.h"
#include "vm/globals.h"
#include "vm/runs.h"

namespace morvel::ruby::internal {

/// What is special about a frame; 0 for a plain call of one script function by another.
enum FrameMarks : std::uint32_t {
    kPlainFrame = 0,
    /// Returning from the frame leaves the run.
    kEntryFrame = 1,
    /// The frame is the protected function of a pcall.
    kProtectedFrame = 2,
    /// The frame's registers begin a chunk of the value stack.
    kChunkFrame = 4,
    /// The frame runs a program's top-level code, and may be all that keeps the program.
    kProgramFrame = 8,
    /// The frame's run has failed below others. Its registers are dead, and it goes when it is the top frame.
    kAbandonedFrame = 16,
};

/// An active call.
struct Frame {
    const Code* code;
    RubyValue* base;
    /// Where execution goes on; kept up to date only around what may fail or leave the frame.
    const EngineInstruction* next;
    /// Where the call's result goes.
    RubyValue* result;
    /// The function being called, kept alive by one reference; null when the caller keeps its program alive.
    RubyFunctionHandle* handle;
    std::uint32_t flags;
    /// The chunk to go back to, for a kChunkFrame.
    std::uint32_t previousChunk;
};

class Engine {
public:
    explicit Engine(RubyVM::Impl& vm);
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    /// The translation of a function; null when it is left to the baseline interpreter.
    [[nodiscard]] const Code* codeFor(const Program& program, std::int32_t functionIndex);

    /// How many frames there are.
    [[nodiscard]] std::size_t depth() const noexcept { return static_cast<std::size_t>(m_current - m_frames.get()); }

    /// Runs a translated function, whose program the caller keeps alive. Fails as its script does, with located errors
    /// for a wrong argument count and for "stack overflow".
    RubyValue run(const Code& code, const RubyValue* arguments, std::size_t argumentCount);

    /// Gives back the part of the value stack that no frame uses; true when there was any.
    bool giveBackSpareStack() noexcept { return m_stack.giveBackSpare(); }
    /// Gives back what the thread and the VM keep for reuse, once an allocation has failed and its work is undone: the
    /// next failure should not be any nearer.
    void giveBackMemory() noexcept;

private:
    enum class CallOutcome : std::uint8_t { Done, Raised };

    struct Loop;

    /// The instruction loop of `run`; returns when the frame above `entry` has returned.
    void interpret(std::size_t entry, Runs::Id run);

    // Frames.
    void growFrames();
    void moveFrames(std::size_t count);
    /// Gives back what a deep recursion that is over has left of stack and frames.
    void giveBackStack() noexcept;
    [[noreturn]] void failOverflow() const;
    /// Does what the current instruction has to do; a "stack overflow" gets its location, looked up only then.
    template <typename Work>
    // NOLINTNEXTLINE(modernize-use-nodiscard): the work may give nothing
    auto withOverflowLocated(const Work& work) const {
        try {
            return work();
        } catch (const StackOverflow&) {
            failOverflow();
        }
    }
    /// Puts a frame for `code` on top, with its registers at `base` or, when they do not fit there, in another chunk.
    /// The registers are not prepared. On failure nothing has changed.
    void pushFrame(const Code& code, RubyValue* base, RubyValue* result, std::uint32_t flags);
    /// Registers in another chunk of the value stack; fails with "stack overflow" when there is none left.
    [[nodiscard]] RubyValue* enterNextChunk(std::size_t registerCount);
    /// Brings the registers of a new frame, which hold just the arguments, into the state that its code expects.
    static void prepareRegisters(const Code& code, RubyValue* base) noexcept;
    /// Releases the first registers of the top frame, which must be all that are not dead, and takes it off.
    void popFrame(std::uint32_t registerCount) noexcept;
    void unwindTo(std::size_t frame) noexcept;
    /// Ends `run`, whose frames are those above `entry`, while runs that began after it go on.
    void abandonFrames(Runs::Id run, std::size_t entry) noexcept;
    /// Ends the top frame, which is not a plain one, with the value at `value`; true when the run is over.
    [[nodiscard]] bool leaveFrame(RubyValue* value);
    /// The frame of the innermost pcall above `entry`, or `entry`.
    [[nodiscard]] std::size_t protectedFrame(std::size_t entry) const noexcept;
    /// Delivers a failure to the innermost pcall above `entry`; false when there is none. Throws std::bad_alloc when
    /// there is one, but neither it nor those around it find the memory for their outcome. The message is used up when
    /// it is delivered.
    [[nodiscard]] bool recover(std::size_t entry, std::string& message, bool isMemoryShort = false);
    /// Throws the failure that no pcall of this run was there for.
    [[noreturn]] void throwMessage();

    // Calls. The arguments are at window + 1; afterwards, unless a script function was entered, the window is dead.
    [[nodiscard]] CallOutcome callFunction(const RubyValue& callee, RubyValue* window, std::size_t argumentCount,
                                           RubyValue* result);
    /// Calls a host function without state: nothing has to keep it alive.
    void callNative(const RubyFunctionHandle& handle, RubyValue* window, std::size_t argumentCount, RubyValue* result);
    /// Carries out a built-in in place; false when the arguments are not of the usual kinds, and then nothing is done.
    [[nodiscard]] static bool takeShortcut(const RubyFunctionHandle& handle, RubyValue* window,
                                           std::size_t argumentCount, RubyValue* result);
    void callScript(RubyFunctionHandle& handle, RubyValue* window, std::size_t argumentCount, RubyValue* result);
    [[nodiscard]] CallOutcome callHost(const RubyFunctionHandle& handle, RubyValue* window, std::size_t argumentCount,
                                       RubyValue* result);
    /// Moves the arguments to the new frame, whose registers are at `base` if they fit there.
    void enterFunction(RubyFunctionHandle& handle, const Code& code, RubyValue* base, RubyValue* arguments,
                       std::size_t argumentCount, RubyValue* result, std::uint32_t flags);
    void callProtected(RubyValue* window, std::size_t argumentCount, RubyValue* result);
    /// The same with the elements of the array at window + 1 for arguments.
    void callWithArray(RubyValue* window, RubyValue* result);
    /// Enters `callee` if it is a script function that has been translated.
    [[nodiscard]] bool enterWithArray(const RubyValue& callee, RubyValue* window, RubyValue* arguments,
                                      std::size_t argumentCount, RubyValue* result, std::uint32_t flags);
    [[nodiscard]] const Code* codeOf(const RubyFunctionHandle& handle);
    /// The translation that the handle of a script function already points at; null when there is none for this engine.
    [[nodiscard]] const Code* knownCode(const RubyFunctionHandle& handle) const noexcept {
        const FunctionInternals& internals = FunctionInternals::of(handle);
        return internals.engine == m_identity.get() ? static_cast<const Code*>(&internals) : nullptr;
    }

    // What the loop leaves to functions: rare cases, and all that may fail.
    template <OpCode Operation>
    void arithmeticSlow(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags);
    [[nodiscard]] bool equalSlow(RubyValue* left, RubyValue* right, std::uint8_t flags);
    template <bool OrEqual>
    [[nodiscard]] bool lessSlow(RubyValue* left, RubyValue* right, std::uint8_t flags);
    /// Joins two texts whose result is short; false when they are not of that kind, and then nothing is done.
    [[nodiscard]] bool joinShort(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags);
    void loadByte(RubyValue* target, const std::string& text, std::size_t position);
    void getIndexSlow(RubyValue* target, RubyValue* container, RubyValue* index, std::uint8_t flags);
    [[nodiscard]] bool testIndexSlow(RubyValue* container, RubyValue* index, std::uint8_t flags);
    void setIndexSlow(RubyValue* container, RubyValue* index, RubyValue* value, std::uint8_t flags);
    void negateSlow(RubyValue* target, RubyValue* value, std::uint8_t flags);
    static void pushElement(RubyValue* array, RubyValue* value, bool valueDies);
    void makeArray(RubyValue* target, RubyValue* first, std::size_t count);
    /// Moves the `count` registers after `array` to the end of that array, which is to have `length` elements.
    static void extendArray(RubyValue* array, std::size_t count, std::size_t length);
    void defineFunction(const Definition& definition);
    void loadFallback(RubyValue* target, const LocalFallback& fallback);
    [[noreturn]] void failUndefined(std::size_t globalSlot);

    // Texts that are changed where they are.
    /// The text of a value under an operator.
    [[nodiscard]] RubyValue operandText(const RubyValue& value) const;
    /// The global, element or entry that the next instruction overwrites with what the register `value` holds then, and
    /// that is there already; null when there is none.
    [[nodiscard]] RubyValue* replacedNext(const RubyValue* value) const;
    /// True when just one other holds the string in the register `text`, and the next instruction overwrites that with
    /// this register.
    [[nodiscard]] bool isReplacedNext(const RubyValue* text) const;
    /// Ends the hold of the last expression statement's value on a string, if the flags allow it.
    void releaseLastValue(const RubyValue& text, std::uint8_t flags) const;
    /// An addition to a string, in place or as the first of an append chain; false when it is neither, and then nothing
    /// has changed.
    [[nodiscard]] bool addToText(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags);
    /// The first addition of an append chain: the text waits in the register before `target`, which gets the text of
    /// the first part, and is then added to as if that were all.
    void beginAppend(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags);
    /// The last one: adds `right` to the parts, and them to the text; false when none is waiting, and then nothing has
    /// changed.
    [[nodiscard]] bool endAppend(RubyValue* target, RubyValue* parts, RubyValue* right, std::uint8_t flags);
    /// Replaces a byte of a string in place; false when that cannot be, and then nothing has changed.
    [[nodiscard]] bool replaceByte(RubyValue* container, const RubyValue& index, RubyValue* value, std::uint8_t flags);

    [[nodiscard]] const Program& program() const noexcept { return *m_current->code->program; }
    [[nodiscard]] unsigned line() const { return m_current->code->lineAt(m_current->next); }

    RubyVM::Impl& m_vm;
    GlobalTable& m_globals;
    const Runs& m_runs;
    const std::shared_ptr<EngineIdentity> m_identity;
    ValueStack m_stack;
    /// The frame below all others has no code of its own.
    const Code m_noCode{};
    ZeroedArray<Frame> m_frames;
    /// The top frame; below the first real one lies an empty frame.
    Frame* m_current = nullptr;
    Frame* m_lastFrame = nullptr;
    /// How many kProgramFrames there are.
    std::size_t m_programFrames = 0;
    /// The one-byte strings, made when first needed: indexing a string gives one of them.
    std::array<RubyValue, 256> m_byteStrings;
    /// Message of an error that is on its way without a C++ exception.
    std::string m_message;
};

inline void Engine::pushFrame(const Code& code, RubyValue* base, RubyValue* result, std::uint32_t flags) {
    if (m_current == m_lastFrame) {
        growFrames();
    }
    const auto previousChunk = static_cast<std::uint32_t>(m_stack.chunk());
    if (code.registerCount > static_cast<std::size_t>(m_stack.end() - base)) {
        base = enterNextChunk(code.registerCount);
        flags |= kChunkFrame;
    }
    ++m_current;
    *m_current = {&code, base, code.instructions.data(), result, nullptr, flags, previousChunk};
}

}  // namespace morvel::ruby::internal
