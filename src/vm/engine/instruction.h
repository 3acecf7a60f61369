// The engine's register instructions, listed once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace morvel::ruby::internal {

// Operand letters: R a register (local or temporary), K a constant of the function, G a global slot. A binary
// instruction exists for every pair of letters but KK.
#define MORVEL_ENGINE_PAIRS(ROW, name) \
    ROW(name##RR, R, R)                \
    ROW(name##RK, R, K)                \
    ROW(name##RG, R, G)                \
    ROW(name##KR, K, R)                \
    ROW(name##KG, K, G)                \
    ROW(name##GR, G, R)                \
    ROW(name##GK, G, K)                \
    ROW(name##GG, G, G)

// Arithmetic into a register, and into a global (the names ending in ToG...).
#define MORVEL_ENGINE_ARITHMETIC(ROW, name) MORVEL_ENGINE_PAIRS(ROW, name) MORVEL_ENGINE_PAIRS(ROW, name##ToG)

// container[index], read or tested: container letter, index letter.
#define MORVEL_ENGINE_INDEX(ROW, name) \
    ROW(name##RR, R, R)                \
    ROW(name##RK, R, K)                \
    ROW(name##RG, R, G)                \
    ROW(name##GR, G, R)                \
    ROW(name##GK, G, K)                \
    ROW(name##GG, G, G)

// container[index] = value: container, index and value letters.
#define MORVEL_ENGINE_SET_INDEX(ROW) \
    ROW(SetIndexRRR, R, R, R)        \
    ROW(SetIndexRRK, R, R, K)        \
    ROW(SetIndexRRG, R, R, G)        \
    ROW(SetIndexRKR, R, K, R)        \
    ROW(SetIndexRKK, R, K, K)        \
    ROW(SetIndexRKG, R, K, G)        \
    ROW(SetIndexRGR, R, G, R)        \
    ROW(SetIndexRGK, R, G, K)        \
    ROW(SetIndexRGG, R, G, G)        \
    ROW(SetIndexGRR, G, R, R)        \
    ROW(SetIndexGRK, G, R, K)        \
    ROW(SetIndexGRG, G, R, G)        \
    ROW(SetIndexGKR, G, K, R)        \
    ROW(SetIndexGKK, G, K, K)        \
    ROW(SetIndexGKG, G, K, G)        \
    ROW(SetIndexGGR, G, G, R)        \
    ROW(SetIndexGGK, G, G, K)        \
    ROW(SetIndexGGG, G, G, G)

// Everything else. `wide` is the 32-bit operand in place of b and c.
#define MORVEL_ENGINE_OTHERS(ROW)                                                                    \
    ROW(IncreaseR)         /* R[a] = R[a] + R[b] */                                                  \
    ROW(IncreaseK)         /* R[a] = R[a] + K[b] */                                                  \
    ROW(CopyLocal)         /* R[a] = R[b], which stays */                                            \
    ROW(MoveTemporary)     /* R[a] = R[b], which dies */                                             \
    ROW(LoadConstant)      /* R[a] = K[wide] */                                                      \
    ROW(LoadGlobal)        /* R[a] = G[wide], known to be defined */                                 \
    ROW(PassLocal)         /* R[a], a dead temporary, = R[b], which stays */                         \
    ROW(PassConstant)      /* R[a], a dead temporary, = K[wide] */                                   \
    ROW(PassGlobal)        /* R[a], a dead temporary, = G[wide], known to be defined */              \
    ROW(CheckGlobal)       /* fails unless G[wide] is defined */                                     \
    ROW(LoadLocalOrGlobal) /* R[a] = R[n-th of the fallbacks at wide], or the global of that name */ \
    ROW(StoreGlobalMove)   /* G[wide] = R[a], which dies */                                          \
    ROW(StoreGlobalCopy)   /* G[wide] = R[a], which stays */                                         \
    ROW(Drop)              /* R[a] dies */                                                           \
    ROW(Negate)            /* R[a] = -R[b] */                                                        \
    ROW(Not)               /* R[a] = not R[b] */                                                     \
    ROW(And)               /* R[a] = R[b] and R[c] */                                                \
    ROW(Or)                /* R[a] = R[b] or R[c] */                                                 \
    ROW(MakeArray)         /* R[a] = [R[b], ...], c elements */                                      \
    ROW(ExtendArray)       /* the array R[a], `wide` long in the end, takes n more: R[a + 1], ... */ \
    ROW(Jump)              /* by wide */                                                             \
    ROW(JumpIfFalse)       /* by wide when R[a] is untruthy */                                       \
    ROW(JumpIfTrue)        /* by wide when R[a] is truthy */                                         \
    ROW(JumpUnlessBoth)    /* by c unless R[a] and R[b] are truthy */                                \
    ROW(JumpUnlessEither)  /* by c when neither R[a] nor R[b] is truthy */                           \
    ROW(JumpIfBoth)        /* by c when R[a] and R[b] are truthy */                                  \
    ROW(JumpIfEither)      /* by c when R[a] or R[b] is truthy */                                    \
    ROW(CallGlobal)        /* R[b] = G[c](R[a + 1], ...), n arguments */                             \
    ROW(CallRegister)      /* R[b] = R[a](R[a + 1], ...), n arguments */                             \
    ROW(CallWithArray)     /* R[b] = R[a](...), the arguments are the elements of R[a + 1] */        \
    ROW(Len)               /* R[a] = G[c](R[b]), mostly len; the call's window is temporary n */     \
    ROW(ArrayPush)         /* G[c](R[b], R[a]), mostly array_push; the window is temporary n */      \
    ROW(DefineFunction)    /* the definition at wide */                                              \
    ROW(ReturnLocal)       /* R[a] */                                                                \
    ROW(ReturnConstant)    /* K[wide] */                                                             \
    ROW(ReturnGlobal)      /* G[wide] */                                                             \
    ROW(ReturnNil)

#define MORVEL_ENGINE_OPERATIONS(ROW2, ROW3, ROW)  \
    MORVEL_ENGINE_ARITHMETIC(ROW2, Add)            \
    MORVEL_ENGINE_ARITHMETIC(ROW2, Subtract)       \
    MORVEL_ENGINE_ARITHMETIC(ROW2, Multiply)       \
    MORVEL_ENGINE_ARITHMETIC(ROW2, Divide)         \
    MORVEL_ENGINE_ARITHMETIC(ROW2, Modulo)         \
    MORVEL_ENGINE_PAIRS(ROW2, Equal)               \
    MORVEL_ENGINE_PAIRS(ROW2, NotEqual)            \
    MORVEL_ENGINE_PAIRS(ROW2, Less)                \
    MORVEL_ENGINE_PAIRS(ROW2, LessEqual)           \
    MORVEL_ENGINE_PAIRS(ROW2, JumpUnlessEqual)     \
    MORVEL_ENGINE_PAIRS(ROW2, JumpUnlessNotEqual)  \
    MORVEL_ENGINE_PAIRS(ROW2, JumpUnlessLess)      \
    MORVEL_ENGINE_PAIRS(ROW2, JumpUnlessLessEqual) \
    MORVEL_ENGINE_PAIRS(ROW2, JumpIfEqual)         \
    MORVEL_ENGINE_PAIRS(ROW2, JumpIfNotEqual)      \
    MORVEL_ENGINE_PAIRS(ROW2, JumpIfLess)          \
    MORVEL_ENGINE_PAIRS(ROW2, JumpIfLessEqual)     \
    MORVEL_ENGINE_INDEX(ROW2, GetIndex)            \
    MORVEL_ENGINE_INDEX(ROW2, JumpUnlessIndex)     \
    MORVEL_ENGINE_INDEX(ROW2, JumpIfIndex)         \
    MORVEL_ENGINE_SET_INDEX(ROW3)                  \
    MORVEL_ENGINE_OTHERS(ROW)

enum class EngineOp : std::uint8_t {
#define MORVEL_NAME(name, ...) name,
    MORVEL_ENGINE_OPERATIONS(MORVEL_NAME, MORVEL_NAME, MORVEL_NAME)
#undef MORVEL_NAME
};

inline constexpr unsigned kEngineOpCount = static_cast<unsigned>(EngineOp::ReturnNil) + 1;

/// One register instruction. Operands that name registers, constants or globals are stored doubled: a value is two
/// machine words, so that the processor's addressing can scale the operand by itself.
struct EngineInstruction {
    EngineOp op;
    /// Argument count of a call, element count of an ExtendArray; elsewhere the marks below.
    std::uint8_t n;
    std::uint16_t a;
    std::uint16_t b;
    std::uint16_t c;

    /// The 32-bit operand that takes the place of b and c.
    [[nodiscard]] std::int32_t wide() const noexcept {
        std::int32_t value = 0;
        std::memcpy(&value, &b, sizeof value);
        return value;
    }
    void setWide(std::int32_t value) noexcept { std::memcpy(&b, &value, sizeof value); }
};

static_assert(kEngineOpCount <= 256, "an operation is one byte");
static_assert(sizeof(EngineInstruction) == 8 && offsetof(EngineInstruction, c) == 6, "b and c lie side by side");

// Marks in `n`: the operand is a temporary, which dies when the instruction has used it. In IncreaseR and IncreaseK
// they are those of the addition, of operands a and b.
inline constexpr std::uint8_t kTemporaryA = 1;
inline constexpr std::uint8_t kTemporaryB = 2;
inline constexpr std::uint8_t kTemporaryC = 4;

// Marks in `n` of additions, the first also of indexed stores.

/// The value of the last expression statement cannot be returned any more: where it is the text to be changed, it is
/// no holder of it.
inline constexpr std::uint8_t kLastValueDies = 8;
/// The first addition of an append chain. The register before its target is dead: there the text may wait, while the
/// target collects the parts.
inline constexpr std::uint8_t kBeginsAppend = 16;
/// The last addition of an append chain, whose text waits in the register before operand b, if it does.
inline constexpr std::uint8_t kEndsAppend = 32;

/// Operands above this do not fit their field; such functions load them with instructions of their own.
inline constexpr std::size_t kLargestOperand = 0x7fff;

}  // namespace morvel::ruby::internal
