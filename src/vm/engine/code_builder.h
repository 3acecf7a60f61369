// Register code under construction.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

#include "morvel/ruby/value.h"
#include "vm/engine/code.h"
#include "vm/engine/instruction.h"

namespace morvel::ruby::internal {

/// Identity of a constant: its kind and its payload. The payload of a string is its box, which equal strings of an
/// image share, so a long string costs no more than others.
struct ConstantKey {
    RubyValue::Type type;
    std::uint64_t payload;

    bool operator==(const ConstantKey&) const = default;
};

struct ConstantKeyHash {
    [[nodiscard]] std::size_t operator()(const ConstantKey& key) const;
};

/// An index as instructions hold it: in machine words, two per value.
[[nodiscard]] inline std::size_t wideOperand(std::size_t index) { return index * 2; }
[[nodiscard]] inline std::uint16_t operand(std::size_t index) { return static_cast<std::uint16_t>(wideOperand(index)); }
[[nodiscard]] inline std::uint16_t reg(std::uint32_t index) { return operand(index); }

/// Appends instructions to the code of a function. Jumps name the stack instruction that they go to, and get their
/// distances at the end.
class CodeBuilder {
public:
    /// Fills `code`, whose frame is laid out, with the translation of `stackLength` stack instructions.
    CodeBuilder(std::unique_ptr<Code> code, std::size_t stackLength)
        : m_code(std::move(code)), m_starts(stackLength + 1, 0) {}

    [[nodiscard]] Code& code() { return *m_code; }
    [[nodiscard]] const Code& code() const { return *m_code; }
    [[nodiscard]] const RubyValue& constant(std::size_t index) const { return m_code->constants[index]; }
    /// The register of the temporary at stack depth `depth`.
    [[nodiscard]] std::uint32_t temporary(std::size_t depth) const {
        return m_code->firstTemporary + static_cast<std::uint32_t>(depth);
    }
    /// The register of the last expression statement's value.
    [[nodiscard]] std::uint32_t lastValue() const { return m_code->localCount; }

    /// The source line of the instructions emitted from here on.
    [[nodiscard]] std::uint32_t line() const { return m_line; }
    void setLine(std::uint32_t line) { m_line = line; }

    /// The code of stack instruction `index` starts here.
    void markStart(std::size_t index) {
        m_current = index;
        m_starts[index] = m_code->instructions.size();
    }
    /// The block of stack instruction `index` starts here; a jump to it from just before is not needed.
    void beginBlock(std::size_t index);

    void emit(EngineOp op, std::uint8_t n, std::uint16_t a, std::uint16_t b, std::uint16_t c) {
        append({op, n, a, b, c});
    }
    void emitWide(EngineOp op, std::uint8_t n, std::uint16_t a, std::size_t wide) {
        EngineInstruction instruction{op, n, a, 0, 0};
        instruction.setWide(static_cast<std::int32_t>(wide));
        append(instruction);
    }
    void emitJump(EngineOp op, std::uint8_t n, std::uint16_t a, std::size_t target);
    /// The same for a jump that includes a test, whose distance has only 16 bits.
    void emitShortJump(EngineOp op, std::uint8_t n, std::uint16_t a, std::uint16_t b, std::size_t target);
    /// True when a jump from the current stack instruction to `target` is certain to be short.
    [[nodiscard]] bool isNear(std::size_t target) const {
        // A stack instruction becomes at most three, or twice as many where a loop's condition is repeated.
        constexpr std::size_t kNear = std::numeric_limits<std::int16_t>::max() / 8;
        return target < m_current ? m_current - target <= kNear : target - m_current <= kNear;
    }

    /// Puts an instruction before all others. No jump goes to it.
    void emitAtStart(const EngineInstruction& instruction) { m_start.push_back(instruction); }
    /// Fills a dead register before anything else happens.
    void emitConstantAtStart(std::uint16_t target, const RubyValue& constant);

    /// The instruction just emitted, when it belongs to the current block and therefore ran last.
    [[nodiscard]] EngineInstruction* lastInBlock() {
        return m_code->instructions.size() > m_blockStart ? &m_code->instructions.back() : nullptr;
    }
    /// The instructions of the current block so far.
    [[nodiscard]] std::span<const EngineInstruction> block() const {
        return std::span(m_code->instructions).subspan(m_blockStart);
    }
    /// Removes the last instruction; its replacement gets its line.
    void dropLast();

    /// The index of a constant; equal ones share it.
    [[nodiscard]] std::uint32_t addConstant(const RubyValue& constant);

    /// Reports that the function has something that register code cannot express.
    void fail() { m_failed = true; }
    [[nodiscard]] bool hasFailed() const { return m_failed; }

    /// The finished code; null when a jump does not fit its form.
    [[nodiscard]] std::unique_ptr<Code> finish();

private:
    struct Patch {
        std::size_t instruction;
        std::size_t target;
        bool isShort;
    };

    void append(const EngineInstruction& instruction) {
        m_code->instructions.push_back(instruction);
        m_code->lines.push_back(m_line);
    }
    /// False when a jump does not fit its short form.
    [[nodiscard]] bool patchJumps();
    /// The register instruction at which execution goes on after a jump to stack instruction `target`: further jumps on
    /// the way are skipped.
    [[nodiscard]] std::size_t destinationOf(std::size_t target) const;
    void insertStart();

    std::unique_ptr<Code> m_code;
    /// The instructions to go before all others.
    std::vector<EngineInstruction> m_start;
    std::unordered_map<ConstantKey, std::uint32_t, ConstantKeyHash> m_constants;
    std::vector<Patch> m_patches;
    /// Register instruction at which each stack instruction starts.
    std::vector<std::size_t> m_starts;
    /// The stack instruction that was marked last.
    std::size_t m_current = 0;
    std::size_t m_blockStart = 0;
    std::uint32_t m_line = 0;
    bool m_failed = false;
};

}  // namespace morvel::ruby::internal
