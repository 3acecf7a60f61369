// How the instruction list is laid out: families of instructions that differ only in where their operands are.
#pragma once

#include <cstdint>
#include <optional>

#include "vm/engine/instruction.h"

namespace morvel::ruby::internal {

/// Operand letters of a pair, in the order of the instruction list.
enum class Letter : std::uint8_t { R, K, G };

/// Instructions in a family of pairs: one for every pair of letters but KK.
inline constexpr unsigned kPairs = 8;

inline EngineOp plus(EngineOp base, unsigned offset) {
    return static_cast<EngineOp>(static_cast<unsigned>(base) + offset);
}

inline unsigned offsetFrom(EngineOp base, EngineOp op) {
    return static_cast<unsigned>(op) - static_cast<unsigned>(base);
}

inline bool isBetween(EngineOp op, EngineOp first, EngineOp last) { return op >= first && op <= last; }

/// Offset of a pair of letters within its family: RR, RK, RG, KR, KG, GR, GK, GG.
inline unsigned pairOffset(Letter left, Letter right) {
    constexpr unsigned kNone = 0;
    constexpr unsigned kOffsets[3][3] = {{0, 1, 2}, {3, kNone, 4}, {5, 6, 7}};
    return kOffsets[static_cast<unsigned>(left)][static_cast<unsigned>(right)];
}

/// Offset within the families of container[index]; the container is no constant.
inline unsigned indexOffset(Letter container, Letter index) {
    const unsigned row = container == Letter::R ? 0 : 3;
    return row + static_cast<unsigned>(index);
}

/// Offset within the family of container[index] = value; the container is no constant.
inline unsigned setIndexOffset(Letter container, Letter index, Letter value) {
    const unsigned row = container == Letter::R ? 0 : 9;
    return row + 3 * static_cast<unsigned>(index) + static_cast<unsigned>(value);
}

inline bool isComparison(EngineOp op) { return isBetween(op, EngineOp::EqualRR, EngineOp::LessEqualGG); }

inline bool isGetIndex(EngineOp op) { return isBetween(op, EngineOp::GetIndexRR, EngineOp::GetIndexGG); }

inline bool isSetIndex(EngineOp op) { return isBetween(op, EngineOp::SetIndexRRR, EngineOp::SetIndexGGG); }

/// The letters of an instruction in the family of container[index] = value.
inline Letter containerLetter(EngineOp setIndex) {
    return offsetFrom(EngineOp::SetIndexRRR, setIndex) < 9 ? Letter::R : Letter::G;
}
inline Letter indexLetter(EngineOp setIndex) {
    return static_cast<Letter>(offsetFrom(EngineOp::SetIndexRRR, setIndex) / 3 % 3);
}

inline bool isArithmetic(EngineOp op) { return isBetween(op, EngineOp::AddRR, EngineOp::ModuloToGGG); }

inline bool writesGlobal(EngineOp op) {
    return isArithmetic(op) && offsetFrom(EngineOp::AddRR, op) % (2 * kPairs) >= kPairs;
}

/// True for the instructions whose result register is operand a and that may write any register.
inline bool writesA(EngineOp op) {
    return (isArithmetic(op) && !writesGlobal(op)) || isComparison(op) || isGetIndex(op) ||
           isBetween(op, EngineOp::CopyLocal, EngineOp::LoadGlobal) || op == EngineOp::LoadLocalOrGlobal ||
           isBetween(op, EngineOp::Negate, EngineOp::MakeArray) || op == EngineOp::Len;
}

inline bool isCall(EngineOp op) { return isBetween(op, EngineOp::CallGlobal, EngineOp::CallWithArray); }

/// The jump that makes the test `op` by itself, if there is one. It has the operands b and c of the test as a and b.
inline std::optional<EngineOp> testingJump(EngineOp op, bool whenTrue) {
    if (isComparison(op)) {
        return plus(whenTrue ? EngineOp::JumpIfEqualRR : EngineOp::JumpUnlessEqualRR,
                    offsetFrom(EngineOp::EqualRR, op));
    }
    if (isGetIndex(op)) {
        return plus(whenTrue ? EngineOp::JumpIfIndexRR : EngineOp::JumpUnlessIndexRR,
                    offsetFrom(EngineOp::GetIndexRR, op));
    }
    if (op == EngineOp::And) {
        return whenTrue ? EngineOp::JumpIfBoth : EngineOp::JumpUnlessBoth;
    }
    if (op == EngineOp::Or) {
        return whenTrue ? EngineOp::JumpIfEither : EngineOp::JumpUnlessEither;
    }
    return std::nullopt;
}

}  // namespace morvel::ruby::internal
