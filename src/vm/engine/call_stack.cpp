#include "vm/engine/call_stack.h"

#include <algorithm>
#include <new>
#include <utility>

namespace morvel::ruby::internal {

namespace {

constexpr std::size_t kFirstFrames = 64;
// Once needed, room for this many is kept.
constexpr std::size_t kKeptFrames = std::size_t{1} << 14;
// Calls may nest this deep. Small functions reach it before the value stack is full.
constexpr std::size_t kMostFrames = std::size_t{1} << 21;
// Loaded programs may nest this deep: each takes far more memory than a frame.
constexpr std::size_t kMostProgramFrames = 100'000;

}  // namespace

void releaseAndDeliver(RubyValue* next, RubyValue* end, RubyValue* result, RubyValue::Type type,
                       RubyValue::Data data) noexcept {
    for (; next != end; ++next) {
        releaseRegister(next);
    }
    releaseRegister(result);
    result->type = type;
    result->data = data;
}

void leaveRecordedFrame(Context& context, RubyValue::Type type, RubyValue::Data data) noexcept {
    Frame& frame = *context.frame;
    deliverResult(frame, frame.result, type, data);
    frame.flags = kPlainFrame;
    --context.frame;
    if (frame.handle != nullptr && --frame.handle->references == 0) {
        destroyBox(static_cast<std::uint8_t>(RubyValue::Type::Function), frame.handle);
    }
}

CallStack::CallStack(Context& context) : m_context(context), m_frames(makeZeroedArray<Frame>(kFirstFrames)) {
    m_context.frame = m_frames.get();
    m_context.lastFrame = m_context.frame + kFirstFrames - 1;
    m_context.frame->code = &m_noCode;
    m_context.frame->base = m_values.begin();
    m_context.registersEnd = m_values.end();
}

bool CallStack::push(const Code& code, RubyValue* base, RubyValue* result, std::uint32_t flags) {
    if ((flags & kProgramFrame) != 0 && m_programFrames == kMostProgramFrames) {
        return false;
    }
    if (m_context.frame == m_context.lastFrame && !growFrames()) {
        return false;
    }
    const auto previousChunk = static_cast<std::uint32_t>(m_values.chunk());
    if (code.registerCount > static_cast<std::size_t>(m_context.registersEnd - base)) {
        base = m_values.enterNextChunk(code.registerCount);
        if (base == nullptr) {
            return false;
        }
        m_context.registersEnd = m_values.end();
        flags |= kChunkFrame;
    }
    m_programFrames += (flags & kProgramFrame) != 0 ? 1 : 0;
    ++m_context.frame;
    *m_context.frame = {&code, base, code.instructions.data(), flags, previousChunk, result, nullptr};
    return true;
}

bool CallStack::growFrames() {
    const std::size_t used = depth() + 1;
    if (used >= kMostFrames) {
        return false;
    }
    moveFrames(std::min(used * 2, kMostFrames));
    return true;
}

void CallStack::moveFrames(std::size_t count) {
    const std::size_t top = depth();
    ZeroedArray<Frame> moved = makeZeroedArray<Frame>(count);
    std::copy(m_frames.get(), m_context.frame + 1, moved.get());
    m_frames = std::move(moved);
    m_context.frame = m_frames.get() + top;
    m_context.lastFrame = m_frames.get() + count - 1;
}

void CallStack::pop(std::uint32_t registerCount) noexcept {
    const Frame frame = *m_context.frame;
    for (std::uint32_t i = 0; i < registerCount; ++i) {
        releaseRegister(frame.base + i);
    }
    if ((frame.flags & kChunkFrame) != 0) {
        m_values.returnToChunk(frame.previousChunk);
        m_context.registersEnd = m_values.end();
    }
    if ((frame.flags & kProgramFrame) != 0) {
        --m_programFrames;
    }
    m_context.frame->flags = kPlainFrame;
    --m_context.frame;
    if (frame.flags != kPlainFrame && frame.handle != nullptr && --frame.handle->references == 0) {
        destroyBox(static_cast<std::uint8_t>(RubyValue::Type::Function), frame.handle);
    }
}

void CallStack::unwindTo(std::size_t depth) noexcept {
    while (this->depth() > depth) {
        pop(m_context.frame->code->registerCount);
    }
    while ((m_context.frame->flags & kAbandonedFrame) != 0) {
        pop(0);
    }
}

void CallStack::abandon(std::size_t from, std::size_t to) noexcept {
    for (std::size_t index = to; index > from; --index) {
        // Values released here may run code that grows the array of frames.
        for (std::uint32_t i = 0; i < m_frames[index].code->registerCount; ++i) {
            releaseRegister(m_frames[index].base + i);
        }
        Frame& frame = m_frames[index];
        if (frame.flags == kPlainFrame) {
            frame.handle = nullptr;
        }
        frame.code = &m_noCode;
        frame.flags |= kAbandonedFrame;
    }
}

std::size_t CallStack::protectedDepth(std::size_t entry) const noexcept {
    std::size_t index = depth();
    while (index > entry && (m_frames[index].flags & kProtectedFrame) == 0) {
        --index;
    }
    return index;
}

void CallStack::giveBack() noexcept {
    m_values.giveBack();
    const auto capacity = static_cast<std::size_t>(m_context.lastFrame - m_frames.get()) + 1;
    const std::size_t wanted = std::max(kKeptFrames, (depth() + 1) * 2);
    if (capacity / 2 < wanted) {
        return;
    }
    try {
        moveFrames(wanted);
    } catch (const std::bad_alloc&) {
        // The frames stay where they are.
        return;
    }
}

}  // namespace morvel::ruby::internal
