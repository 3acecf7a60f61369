// The engine: runs functions in register form. Script calls do not recurse natively.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "morvel/ruby/vm.h"
#include "value/fault.h"
#include "vm/engine/call_stack.h"
#include "vm/engine/code.h"
#include "vm/globals.h"
#include "vm/runs.h"

namespace morvel::ruby::internal {

/// What became of something that may fail. When it has failed, the pending error says why, and nothing else has changed
/// but what the failing code may have done before.
enum class [[nodiscard]] Status : std::uint8_t{Done, Failed};

/// The same for what answers a question.
enum class [[nodiscard]] Answer : std::uint8_t{No, Yes, Failed};

/// The same for what may leave its work to others, and then has changed nothing.
enum class [[nodiscard]] Attempt : std::uint8_t{Declined, Done, Failed};

class Engine {
public:
    explicit Engine(RubyVM::Impl& vm);
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    /// The translation of a function; null when it is left to the baseline interpreter.
    [[nodiscard]] const Code* codeFor(const Program& program, std::int32_t functionIndex);

    /// How many frames there are.
    [[nodiscard]] std::size_t depth() const noexcept { return m_calls.depth(); }

    /// Runs a translated function, whose program the caller keeps alive. Fails as its script does, with located errors
    /// for a wrong argument count and for "stack overflow".
    RubyValue run(const Code& code, const RubyValue* arguments, std::size_t argumentCount);

    /// Gives back the part of the value stack that no frame uses; true when there was any.
    bool giveBackSpareStack() noexcept { return m_calls.giveBackSpare(); }
    /// Gives back what the thread and the VM keep for reuse, once an allocation has failed and its work is undone: the
    /// next failure should not be any nearer.
    void giveBackMemory() noexcept;

private:
    struct Loop;

    /// The instruction loop of `run`; returns when the frame above `entry` has returned.
    void interpret(std::size_t entry, Runs::Id run);

    // Failures. Everything that gives a Status, an Answer or an Attempt leaves the pending error in the context.
    /// Makes the fault the pending error, with the place of the current instruction where that belongs.
    Status fail(const Fault& fault);
    Status fail(std::string location, std::string text);
    /// "undefined variable or function 'NAME'".
    Status failUndefined(std::size_t globalSlot);
    /// Fails with the fault if it is one.
    Status checked(const Fault& fault) {
        if (fault) [[unlikely]] {
            return fail(fault);
        }
        return Status::Done;
    }
    /// Takes the pending error to the innermost pcall above `entry`; throws it when there is none.
    void deliverPendingError(std::size_t entry);
    [[noreturn]] void throwPendingError();

    // Frames.
    /// Ends the top frame, which is not a plain one, with the value at `value`; true when the run is over.
    [[nodiscard]] bool leaveFrame(RubyValue* value);
    /// Delivers a failure to the innermost pcall above `entry`; false when there is none. Throws std::bad_alloc when
    /// there is one, but neither it nor those around it find the memory for their outcome. The message is used up when
    /// it is delivered.
    [[nodiscard]] bool recover(std::size_t entry, std::string& message, bool isMemoryShort = false);

    // Calls. The arguments are at window + 1; afterwards, unless a script function was entered, the window is dead.
    Status callFunction(const RubyValue& callee, RubyValue* window, std::size_t argumentCount, RubyValue* result);
    /// Calls a host function without state: nothing has to keep it alive.
    void callNative(const RubyFunctionHandle& handle, RubyValue* window, std::size_t argumentCount, RubyValue* result);
    /// Carries out a built-in in place; false when the arguments are not of the usual kinds, and then nothing is done.
    [[nodiscard]] static bool takeShortcut(const RubyFunctionHandle& handle, RubyValue* window,
                                           std::size_t argumentCount, RubyValue* result);
    Status callScript(RubyFunctionHandle& handle, RubyValue* window, std::size_t argumentCount, RubyValue* result);
    Status callHost(const RubyFunctionHandle& handle, RubyValue* window, std::size_t argumentCount, RubyValue* result);
    /// Moves the arguments to the new frame, whose registers are at `base` if they fit there.
    Status enterFunction(RubyFunctionHandle& handle, const Code& code, RubyValue* base, RubyValue* arguments,
                         std::size_t argumentCount, RubyValue* result, std::uint32_t flags);
    Status callProtected(RubyValue* window, std::size_t argumentCount, RubyValue* result);
    /// The same with the elements of the array at window + 1 for arguments.
    Status callWithArray(RubyValue* window, RubyValue* result);
    /// Enters `callee` if it is a script function that has been translated.
    Attempt enterWithArray(const RubyValue& callee, RubyValue* window, RubyValue* arguments, std::size_t argumentCount,
                           RubyValue* result, std::uint32_t flags);
    [[nodiscard]] const Code* codeOf(const RubyFunctionHandle& handle);
    /// The translation that the handle of a script function already points at; null when there is none for this engine.
    [[nodiscard]] const Code* knownCode(const RubyFunctionHandle& handle) const noexcept {
        const FunctionInternals& internals = FunctionInternals::of(handle);
        return internals.engine == m_identity.get() ? static_cast<const Code*>(&internals) : nullptr;
    }

    // What the loop leaves to functions: rare cases, and all that may fail.
    template <OpCode Operation>
    Status arithmeticSlow(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags);
    /// Additions that have a text; declined when they are not of the known kinds.
    Attempt addTexts(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags);
    Answer equalSlow(RubyValue* left, RubyValue* right, std::uint8_t flags);
    template <bool OrEqual>
    Answer lessSlow(RubyValue* left, RubyValue* right, std::uint8_t flags);
    /// Joins two texts whose result is short; false when they are not of that kind, and then nothing is done.
    [[nodiscard]] bool joinShort(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags);
    void loadByte(RubyValue* target, const std::string& text, std::size_t position);
    Status getIndexSlow(RubyValue* target, RubyValue* container, RubyValue* index, std::uint8_t flags);
    Answer testIndexSlow(RubyValue* container, RubyValue* index, std::uint8_t flags);
    Status setIndexSlow(RubyValue* container, RubyValue* index, RubyValue* value, std::uint8_t flags);
    Status negateSlow(RubyValue* target, RubyValue* value, std::uint8_t flags);
    static void pushElement(RubyValue* array, RubyValue* value, bool valueDies);
    void makeArray(RubyValue* target, RubyValue* first, std::size_t count);
    /// Moves the `count` registers after `array` to the end of that array, which is to have `length` elements.
    static void extendArray(RubyValue* array, std::size_t count, std::size_t length);
    void defineFunction(const Definition& definition);
    Status loadGlobal(RubyValue* target, std::size_t slot);

    // Texts that are changed where they are.
    /// Gives the text of a value under an operator.
    Status operandText(const RubyValue& value, RubyValue& text);
    /// Appends the text of `part` to a string, which is as it was when that fails.
    Status append(StringBox& box, const RubyValue& part);
    /// The global, element or entry that the next instruction overwrites with what the register `value` holds then, and
    /// that is there already; null when there is none.
    [[nodiscard]] RubyValue* replacedNext(const RubyValue* value) const;
    /// True when just one other holds the string in the register `text`, and the next instruction overwrites that with
    /// this register.
    [[nodiscard]] bool isReplacedNext(const RubyValue* text) const;
    /// Ends the hold of the last expression statement's value on a string, if the flags allow it.
    void releaseLastValue(const RubyValue& text, std::uint8_t flags) const;
    /// An addition to a string, in place or as the first of an append chain; declined when it is neither.
    Attempt addToText(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags);
    /// The first addition of an append chain: the text waits in the register before `target`, which gets the text of
    /// the first part, and is then added to as if that were all.
    Status beginAppend(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags);
    /// The last one: adds `right` to the parts, and them to the text; declined when none is waiting.
    Attempt endAppend(RubyValue* target, RubyValue* parts, RubyValue* right, std::uint8_t flags);
    /// Replaces a byte of a string in place; declined when that cannot be.
    Attempt replaceByte(RubyValue* container, const RubyValue& index, RubyValue* value, std::uint8_t flags);

    [[nodiscard]] const Program& program() const noexcept { return *m_context.frame->code->program; }
    [[nodiscard]] unsigned line() const { return m_context.frame->code->lineAt(m_context.frame->next); }

    RubyVM::Impl& m_vm;
    GlobalTable& m_globals;
    const Runs& m_runs;
    const std::shared_ptr<EngineIdentity> m_identity;
    Context m_context;
    CallStack m_calls{m_context};
    /// The one-byte strings, made when first needed: indexing a string gives one of them.
    std::array<RubyValue, 256> m_byteStrings;
};

}  // namespace morvel::ruby::internal
