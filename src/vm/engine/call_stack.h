// The active calls of the engine: frames, and the registers that belong to them.
//
//      frames                        registers (a chunk of the value stack)
//   +-----------+  base   +-----------+-------------+------------+-----------------+
//   |  callee   |-------->| parameters| more locals | last value | temporaries     |
//   +-----------+         +-----------+-------------+------------+-----------------+
//   |  caller   |--+                  ^ localCount               ^ firstTemporary  ^ registerCount
//   +-----------+  |
//   |    ...    |  |   +--------+------------+--------+-----------+-----------+
//   +-----------+  +-->| locals | last value |  ...   |  window   | arguments |  the callee's registers begin
//                      +--------+------------+--------+-----------+-----------+  at the arguments in the window
//
// The rule of dead registers: a register that nothing can read any more is dead, and a dead register never holds a
// boxed value. So a dead register can be written without checking what it held, and a frame ends by releasing the
// registers before its temporaries. All registers above the top frame are dead.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

#include "morvel/ruby/function.h"
#include "value/zeroed_array.h"
#include "vm/engine/code.h"
#include "vm/engine/registers.h"
#include "vm/engine/value_stack.h"

namespace morvel::ruby::internal {

/// What is special about a frame; 0 for a call of one script function by another of its program.
enum FrameFlags : std::uint32_t {
    kPlainFrame = 0,
    /// Returning from the frame leaves the run.
    kEntryFrame = 1,
    /// The frame is the protected function of a pcall.
    kProtectedFrame = 2,
    /// The frame's registers begin a chunk of the value stack.
    kChunkFrame = 4,
    /// The frame runs a program's top-level code, and may be all that keeps the program alive.
    kProgramFrame = 8,
    /// The frame's run has failed below other runs. Its registers are dead, and it is removed once it is the top frame.
    kAbandonedFrame = 16,
    /// The frame is like a plain one, but its `result` and `handle` count.
    kRecordedFrame = 32,
};

/// An active call.
struct Frame {
    const Code* code;
    RubyValue* base;
    /// Where execution continues; kept up to date only around operations that may fail or leave the frame.
    const EngineInstruction* next;
    /// kPlainFrame in all unused frames, too, so that entering a plain call need not write it.
    std::uint32_t flags;
    /// The chunk to go back to, for a kChunkFrame.
    std::uint32_t previousChunk;
    // A plain frame has no use for the others: its caller's instruction says where the result goes, and its caller
    // keeps its program alive.
    /// Where the call's result goes.
    RubyValue* result;
    /// The function being called, kept alive by one reference, or null.
    RubyFunctionHandle* handle;
};

/// An error on its way to a pcall, or out of the run.
struct PendingError {
    /// The prefix of the message that locates the error; empty for errors without a location.
    std::string location;
    std::string text;
    /// Raised as StackOverflow when it leaves the run.
    bool isOverflow = false;
};

/// The state that the instruction loop shares with the functions it calls.
struct Context {
    /// The top frame. Below the first real one lies an empty frame.
    Frame* frame = nullptr;
    // The limits within which a call can be entered at once: the last frame that there is room for, and the end of the
    // registers in this chunk.
    Frame* lastFrame = nullptr;
    RubyValue* registersEnd = nullptr;
    /// The globals that operands can name, by slot. They stay there.
    RubyValue* globals = nullptr;
    /// Valid once a function has reported a failure.
    PendingError error;
};

static_assert(std::is_standard_layout_v<Context>);

/// True when a plain call of `code` with its window at `window` can be entered from the top frame, `caller`.
[[nodiscard, gnu::always_inline]] inline bool hasRoomFor(const Context& context, const Frame* caller, const Code& code,
                                                         const RubyValue* window) noexcept {
    return caller != context.lastFrame && reinterpret_cast<std::uintptr_t>(window) + code.registerBytes <
                                              reinterpret_cast<std::uintptr_t>(context.registersEnd);
}

/// The types of the first registers of a frame that returns, and of the result's register, as bits: it is common that
/// none is boxed, and a look at a few dead registers costs less than a loop.
[[nodiscard, gnu::always_inline]] inline std::uint8_t typeBits(const RubyValue* base,
                                                               const RubyValue* result) noexcept {
    static_assert(kRegistersAtOnce == 4);
    const auto bits = [](const RubyValue& value) { return static_cast<std::uint8_t>(value.type); };
    return static_cast<std::uint8_t>(bits(base[0]) | bits(base[1]) | bits(base[2]) | bits(base[3]) | bits(*result));
}

/// Releases the registers from `next` to `end` and what `result` holds, then gives the value to `result`.
void releaseAndDeliver(RubyValue* next, RubyValue* end, RubyValue* result, RubyValue::Type type,
                       RubyValue::Data data) noexcept;

/// Gives the value that a frame returns to `result`, after releasing what the frame still holds and what `result` held.
/// Most boxes have other holders, and then nothing is called that would use up machine registers.
[[gnu::always_inline]] inline void deliverResult(const Frame& frame, RubyValue* result, RubyValue::Type type,
                                                 RubyValue::Data data) noexcept {
    RubyValue* const end = frame.base + frame.code->firstTemporary;
    for (RubyValue* local = frame.base; local != end; ++local) {
        if (local->isBoxed()) {
            if (local->data.box->references == 1) {
                return releaseAndDeliver(local, end, result, type, data);
            }
            --local->data.box->references;
            local->type = RubyValue::Type::Nil;
        }
    }
    if (result->isBoxed()) {
        return releaseAndDeliver(end, end, result, type, data);
    }
    result->type = type;
    result->data = data;
}

/// Leaves a frame that is only a kRecordedFrame, returning a value.
void leaveRecordedFrame(Context& context, RubyValue::Type type, RubyValue::Data data) noexcept;

/// The frames of a VM and their registers.
class CallStack {
public:
    /// Keeps the frames and limits of `context` up to date. Throws std::bad_alloc.
    explicit CallStack(Context& context);
    CallStack(const CallStack&) = delete;
    CallStack& operator=(const CallStack&) = delete;

    /// The number of frames.
    [[nodiscard]] std::size_t depth() const noexcept {
        return static_cast<std::size_t>(m_context.frame - m_frames.get());
    }
    /// The frame at that depth.
    [[nodiscard]] const Frame& at(std::size_t depth) const noexcept { return m_frames[depth]; }

    /// Puts a frame for `code` on top, with its registers at `base` or, when they do not fit there, in another chunk.
    /// The registers are not prepared. False, with nothing changed, when calls nest too deep: "stack overflow". Throws
    /// std::bad_alloc.
    [[nodiscard]] bool push(const Code& code, RubyValue* base, RubyValue* result, std::uint32_t flags);
    /// Releases the first registers of the top frame, which must include all live ones, and pops the frame.
    void pop(std::uint32_t registerCount) noexcept;
    /// Pops all frames above that depth, then the abandoned ones right below.
    void unwindTo(std::size_t depth) noexcept;
    /// Abandons the frames above `from` up to `to` while others above them keep running.
    void abandon(std::size_t from, std::size_t to) noexcept;
    /// The depth of the innermost frame of a pcall above `entry`, or `entry`.
    [[nodiscard]] std::size_t protectedDepth(std::size_t entry) const noexcept;

    /// Frees memory left over from a finished deep recursion.
    void giveBack() noexcept;
    /// Frees the registers that no frame uses; true when there were any.
    bool giveBackSpare() noexcept { return m_values.giveBackSpare(); }

private:
    [[nodiscard]] bool growFrames();
    void moveFrames(std::size_t count);

    Context& m_context;
    ValueStack m_values;
    /// The frame below all others has no code of its own.
    const Code m_noCode{};
    ZeroedArray<Frame> m_frames;
    /// How many kProgramFrames there are.
    std::size_t m_programFrames = 0;
};

}  // namespace morvel::ruby::internal
