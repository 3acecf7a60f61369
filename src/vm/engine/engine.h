// The engine: runs functions in register form. Script calls do not recurse on the native stack.
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

/// The outcome of an operation that may fail. On failure the pending error says why, and nothing else has changed
/// except what the failing code did before.
enum class [[nodiscard]] Status : std::uint8_t{Done, Failed};

/// The same for an operation that answers a question.
enum class [[nodiscard]] Answer : std::uint8_t{No, Yes, Failed};

/// The same for an operation that may decline its work; it has then changed nothing.
enum class [[nodiscard]] Attempt : std::uint8_t{Declined, Done, Failed};

class Engine {
public:
    explicit Engine(RubyVM::Impl& vm);
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    /// The translation of a function; null when it is left to the baseline interpreter.
    [[nodiscard]] const Code* codeFor(const Program& program, std::int32_t functionIndex);

    /// The number of frames.
    [[nodiscard]] std::size_t depth() const noexcept { return m_calls.depth(); }

    /// Runs a translated function; the caller keeps its program alive. Fails as its script does, with located errors
    /// for a wrong argument count and for "stack overflow".
    RubyValue run(const Code& code, const RubyValue* arguments, std::size_t argumentCount);

    /// Frees the part of the value stack that no frame uses; true when there was any.
    bool giveBackSpareStack() noexcept { return m_calls.giveBackSpare(); }
    /// Frees what the thread and the VM keep for reuse. Called once an allocation has failed and its work is undone, so
    /// that the next failure is no closer.
    void giveBackMemory() noexcept;

private:
    struct Loop;

    /// The instruction loop of `run`; returns when the frame above `entry` has returned.
    void interpret(std::size_t entry, Runs::Id run);

    // Failures. Functions that return a Status, an Answer or an Attempt leave the pending error in the context.
    /// Makes the fault the pending error, with the current location unless faults of its kind carry none.
    Status fail(const Fault& fault);
    Status fail(std::string location, std::string text);
    /// "undefined variable or function 'NAME'".
    Status failUndefined(std::size_t globalSlot);
    /// Fails with the fault if there is one.
    Status checked(const Fault& fault) {
        if (fault) [[unlikely]] {
            return fail(fault);
        }
        return Status::Done;
    }
    /// Delivers the pending error to the innermost pcall above `entry`; throws it when there is none.
    void deliverPendingError(std::size_t entry);
    [[noreturn]] void throwPendingError();

    // Frames.
    /// Leaves the top frame, which is not a plain one, returning the value at `value`; true when the run is over.
    [[nodiscard]] bool leaveFrame(RubyValue* value);
    /// Delivers a failure to the innermost pcall above `entry`; false when there is none. Throws std::bad_alloc when
    /// there is one, but neither it nor any pcall around it has memory for its outcome. Delivery consumes the message.
    [[nodiscard]] bool recover(std::size_t entry, std::string& message, bool isMemoryShort = false);

    // Calls. The arguments start at window + 1. After the call the window is dead, unless a script function was
    // entered.
    Status callFunction(const RubyValue& callee, RubyValue* window, std::size_t argumentCount, RubyValue* result);
    /// Calls a host function that has no state, so nothing has to keep it alive.
    void callNative(const RubyFunctionHandle& handle, RubyValue* window, std::size_t argumentCount, RubyValue* result);
    /// Carries out a built-in in place; false, with nothing done, when the arguments are not of the usual kinds.
    [[nodiscard]] static bool takeShortcut(const RubyFunctionHandle& handle, RubyValue* window,
                                           std::size_t argumentCount, RubyValue* result);
    Status callScript(RubyFunctionHandle& handle, RubyValue* window, std::size_t argumentCount, RubyValue* result);
    Status callHost(const RubyFunctionHandle& handle, RubyValue* window, std::size_t argumentCount, RubyValue* result);
    /// Enters a function and moves the arguments to its frame, whose registers are at `base` if they fit there.
    Status enterFunction(RubyFunctionHandle& handle, const Code& code, RubyValue* base, RubyValue* arguments,
                         std::size_t argumentCount, RubyValue* result, std::uint32_t flags);
    Status callProtected(RubyValue* window, std::size_t argumentCount, RubyValue* result);
    /// Calls the function at `window` with the elements of the array at window + 1 as arguments.
    Status callWithArray(RubyValue* window, RubyValue* result);
    /// Enters `callee` if it is a script function with a translation.
    Attempt enterWithArray(const RubyValue& callee, RubyValue* window, RubyValue* arguments, std::size_t argumentCount,
                           RubyValue* result, std::uint32_t flags);
    [[nodiscard]] const Code* codeOf(const RubyFunctionHandle& handle);
    /// The translation that a script function's handle already points at; null when it has none from this engine.
    [[nodiscard]] const Code* knownCode(const RubyFunctionHandle& handle) const noexcept {
        const FunctionInternals& internals = FunctionInternals::of(handle);
        return internals.engine == m_identity.get() ? static_cast<const Code*>(&internals) : nullptr;
    }

    // Slow paths of the loop: rare cases, and everything that may fail.
    template <OpCode Operation>
    Status arithmeticSlow(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags);
    /// Additions with a string operand; declined when no case here covers them.
    Attempt addTexts(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags);
    Answer equalSlow(RubyValue* left, RubyValue* right, std::uint8_t flags);
    template <bool OrEqual>
    Answer lessSlow(RubyValue* left, RubyValue* right, std::uint8_t flags);
    /// Concatenates two strings, or a string and an integer, when the result is short; otherwise false, with nothing
    /// done.
    [[nodiscard]] bool joinShort(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags);
    void loadByte(RubyValue* target, const std::string& text, std::size_t position);
    Status getIndexSlow(RubyValue* target, RubyValue* container, RubyValue* index, std::uint8_t flags);
    Answer testIndexSlow(RubyValue* container, RubyValue* index, std::uint8_t flags);
    Status setIndexSlow(RubyValue* container, RubyValue* index, RubyValue* value, std::uint8_t flags);
    Status negateSlow(RubyValue* target, RubyValue* value, std::uint8_t flags);
    static void pushElement(RubyValue* array, RubyValue* value, bool valueDies);
    void makeArray(RubyValue* target, RubyValue* first, std::size_t count);
    /// Moves the `count` registers after `array` to the end of that array, which will have `length` elements in all.
    static void extendArray(RubyValue* array, std::size_t count, std::size_t length);
    void defineFunction(const Definition& definition);
    Status loadGlobal(RubyValue* target, std::size_t slot);

    // Strings changed in place.
    /// Gives the text of a value as an operand.
    Status operandText(const RubyValue& value, RubyValue& text);
    /// Appends the text of `part` to a string. On failure the string is unchanged.
    Status append(StringBox& box, const RubyValue& part);
    /// The existing global, element or entry that the next instruction overwrites with the contents of register
    /// `value`; null when there is none.
    [[nodiscard]] RubyValue* replacedNext(const RubyValue* value) const;
    /// True when the string in register `text` has exactly one other holder, and the next instruction overwrites that
    /// holder with this register.
    [[nodiscard]] bool isReplacedNext(const RubyValue* text) const;
    /// Drops the last expression statement's value when it is this string and the flags allow it.
    void releaseLastValue(const RubyValue& text, std::uint8_t flags) const;
    /// An addition to a string, in place or as the first of an append chain; declined when it is neither.
    Attempt addToText(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags);
    /// The first addition of an append chain: sets the string aside in the register before `target`. `target` gets the
    /// text of the first part, and the next additions append to it as if it were the whole string.
    Status beginAppend(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags);
    /// The last addition: appends `right` to the parts and the parts to the string; declined when no string was set
    /// aside.
    Attempt endAppend(RubyValue* target, RubyValue* parts, RubyValue* right, std::uint8_t flags);
    /// Replaces a byte of a string in place; declined when that is not possible.
    Attempt replaceByte(RubyValue* container, const RubyValue& index, RubyValue* value, std::uint8_t flags);

    [[nodiscard]] const Program& program() const noexcept { return *m_context.frame->code->program; }
    [[nodiscard]] unsigned line() const { return m_context.frame->code->lineAt(m_context.frame->next); }

    RubyVM::Impl& m_vm;
    GlobalTable& m_globals;
    const Runs& m_runs;
    const std::shared_ptr<EngineIdentity> m_identity;
    Context m_context;
    CallStack m_calls{m_context};
    /// The one-byte strings that indexing a string gives, each made when first needed.
    std::array<RubyValue, 256> m_byteStrings;
};

}  // namespace morvel::ruby::internal
