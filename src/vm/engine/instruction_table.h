// The engine's register instructions: one row for each operation and one for each of its instructions. Everything that
// the translator, the loop, the listing and the tests know about an instruction is derived from these rows.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace morvel::ruby::internal {

/// What an operation may do besides producing its result.
enum EngineEffects : std::uint8_t {
    kNoEffects = 0,
    /// It may raise an error of the script.
    kMayFail = 1,
    /// It may run other code, which may store into any global, before the next instruction.
    kMayCall = 2,
    /// It may continue somewhere other than the next instruction.
    kMayJump = 4,
    /// It never falls through to the next instruction.
    kNeverFallsThrough = 8,
};

// One row for each operation: name, how it uses its operands a, b and c, effects. The uses are one letter for each
// operand:
//   w  is written, whatever it held             n  is written and was dead
//   r  is read                                  d  is read, and dies when the flag for it is set
//   m  is read and dies                         c  is read, and its contents are changed
//   u  is read and written; its old value dies when the flag for it is set
//   b  is a boolean, read and written
//   p  comes before the arguments of a call or the elements of a list, which are read and die
//   s  is the first of several that are read and die
//   -  holds no value
#define MORVEL_ENGINE_OPERATIONS(ROW)                                                                            \
    ROW(Add, "wdd", kMayFail)                    /* a = b + c */                                                 \
    ROW(Subtract, "wdd", kMayFail)               /* a = b - c */                                                 \
    ROW(Multiply, "wdd", kMayFail)               /* a = b * c */                                                 \
    ROW(Divide, "wdd", kMayFail)                 /* a = b / c */                                                 \
    ROW(Modulo, "wdd", kMayFail)                 /* a = b % c */                                                 \
    ROW(Equal, "wdd", kMayFail)                  /* a = b == c */                                                \
    ROW(NotEqual, "wdd", kMayFail)               /* a = b != c */                                                \
    ROW(Less, "wdd", kMayFail)                   /* a = b < c */                                                 \
    ROW(LessEqual, "wdd", kMayFail)              /* a = b <= c */                                                \
    ROW(JumpIfEqual, "dd-", kMayFail | kMayJump) /* by c when a == b */                                          \
    ROW(JumpIfLess, "dd-", kMayFail | kMayJump)                                                                  \
    ROW(JumpIfLessEqual, "dd-", kMayFail | kMayJump)                                                             \
    ROW(JumpUnlessEqual, "dd-", kMayFail | kMayJump) /* by c unless a == b */                                    \
    ROW(JumpUnlessLess, "dd-", kMayFail | kMayJump)                                                              \
    ROW(JumpUnlessLessEqual, "dd-", kMayFail | kMayJump)                                                         \
    ROW(CombineLess, "bdd", kMayFail | kMayJump) /* a = a and b < c, or a or b < c; then maybe the next jump */  \
    ROW(CombineLessEqual, "bdd", kMayFail | kMayJump)                                                            \
    ROW(CombineEqual, "bdd", kMayFail | kMayJump)                                                                \
    ROW(CombineNotEqual, "bdd", kMayFail | kMayJump)                                                             \
    ROW(GetIndex, "wdd", kMayFail)                   /* a = b[c] */                                              \
    ROW(JumpIfIndex, "dd-", kMayFail | kMayJump)     /* by c when a[b] is truthy */                              \
    ROW(JumpUnlessIndex, "dd-", kMayFail | kMayJump) /* by c when a[b] is falsy */                               \
    ROW(SetIndex, "cdd", kMayFail)                   /* a[b] = c */                                              \
    ROW(Increase, "ud-", kMayFail)                   /* a = a + b */                                             \
    ROW(CopyLocal, "wr-", kNoEffects)                /* a = b */                                                 \
    ROW(MoveTemporary, "wm-", kNoEffects)            /* a = b */                                                 \
    ROW(LoadConstant, "wr-", kNoEffects)             /* a = b */                                                 \
    ROW(LoadGlobal, "wr-", kNoEffects)               /* a = b, known to be defined */                            \
    ROW(PassLocal, "nr-", kNoEffects)                /* a = b */                                                 \
    ROW(PassConstant, "nr-", kNoEffects)             /* a = b */                                                 \
    ROW(PassGlobal, "nr-", kNoEffects)               /* a = b, known to be defined */                            \
    ROW(CheckGlobal, "-r-", kMayFail)                /* fails unless b is defined */                             \
    ROW(LoadLocalOrGlobal, "w--", kMayFail)          /* a = the local of the b-th fallback, or its global */     \
    ROW(StoreGlobalMove, "mw-", kNoEffects)          /* b = a */                                                 \
    ROW(LoadFarGlobal, "w--", kMayFail)              /* a = the global of slot b, if it is defined */            \
    ROW(StoreFarGlobal, "r--", kNoEffects)           /* the global of slot b = a */                              \
    ROW(Drop, "m--", kNoEffects)                     /* a dies */                                                \
    ROW(Negate, "wd-", kMayFail)                     /* a = -b */                                                \
    ROW(Not, "wd-", kNoEffects)                      /* a = not b */                                             \
    ROW(And, "wdd", kNoEffects)                      /* a = b and c */                                           \
    ROW(Or, "wdd", kNoEffects)                       /* a = b or c */                                            \
    ROW(MakeArray, "ws-", kMayFail)                  /* a = [b, ...], c elements */                              \
    ROW(ExtendArray, "p--", kMayFail)                /* appends the next n to array a, of final length b */      \
    ROW(Jump, "---", kMayJump | kNeverFallsThrough)  /* by b */                                                  \
    ROW(JumpIfFalse, "d--", kMayJump)                /* by b when a is falsy */                                  \
    ROW(JumpIfTrue, "d--", kMayJump)                 /* by b when a is truthy */                                 \
    ROW(JumpUnlessBoth, "dd-", kMayJump)             /* by c unless a and b are truthy */                        \
    ROW(JumpUnlessEither, "dd-", kMayJump)           /* by c when neither a nor b is truthy */                   \
    ROW(JumpIfBoth, "dd-", kMayJump)                 /* by c when a and b are truthy */                          \
    ROW(JumpIfEither, "dd-", kMayJump)               /* by c when a or b is truthy */                            \
    ROW(CallGlobal, "pwr", kMayFail | kMayCall)      /* b = c(...), with n arguments after a */                  \
    ROW(CallRegister, "pw-", kMayFail | kMayCall)    /* b = a(...), with n arguments after a, which dies */      \
    ROW(CallWithArray, "pw-", kMayFail | kMayCall)   /* b = a(...) with the elements of the array after a */     \
    ROW(Len, "wrr", kMayFail | kMayCall)             /* a = c(b), likely len; the window is temporary n */       \
    ROW(ArrayPush, "rrr", kMayFail | kMayCall)       /* c(b, a), likely array_push; the window is temporary n */ \
    ROW(DefineFunction, "---", kMayFail)             /* the b-th definition */                                   \
    ROW(ReturnLocal, "m--", kNeverFallsThrough)      /* a */                                                     \
    ROW(ReturnConstant, "-r-", kNeverFallsThrough)   /* b */                                                     \
    ROW(ReturnGlobal, "-r-", kNeverFallsThrough)     /* b */                                                     \
    ROW(ReturnNil, "---", kNeverFallsThrough)                                                                    \
    /* These do what their first half says and, in the common case, the next instruction as well. */             \
    ROW(IncreaseThenJump, "ud-", kMayFail | kMayJump)                                                            \
    ROW(AddThenGetIndex, "wdd", kMayFail | kMayJump)                                                             \
    ROW(SubtractThenGetIndex, "wdd", kMayFail | kMayJump)                                                        \
    ROW(GetIndexThenGetIndex, "wdd", kMayFail | kMayJump)                                                        \
    ROW(GetIndexThenSetIndex, "wdd", kMayFail | kMayJump)                                                        \
    ROW(GetIndexThenAdd, "wdd", kMayFail | kMayJump)                                                             \
    ROW(MultiplyThenAdd, "wdd", kMayFail | kMayJump)                                                             \
    ROW(MultiplyThenIncrease, "wdd", kMayFail | kMayJump)                                                        \
    ROW(ModuloThenJump, "wdd", kMayFail | kMayJump)

/// What an instruction does, wherever its operands are.
enum class Operation : std::uint8_t {
#define MORVEL_NAME(name, ...) name,
    MORVEL_ENGINE_OPERATIONS(MORVEL_NAME)
#undef MORVEL_NAME
};

/// A test and the jumps that include it, whose a and b are the test's b and c.
struct TestingJumps {
    Operation test;
    Operation ifTrue;
    Operation ifFalse;
};

inline constexpr std::array kTestingJumps{
    TestingJumps{Operation::Equal, Operation::JumpIfEqual, Operation::JumpUnlessEqual},
    TestingJumps{Operation::NotEqual, Operation::JumpUnlessEqual, Operation::JumpIfEqual},
    TestingJumps{Operation::Less, Operation::JumpIfLess, Operation::JumpUnlessLess},
    TestingJumps{Operation::LessEqual, Operation::JumpIfLessEqual, Operation::JumpUnlessLessEqual},
    TestingJumps{Operation::GetIndex, Operation::JumpIfIndex, Operation::JumpUnlessIndex},
    TestingJumps{Operation::And, Operation::JumpIfBoth, Operation::JumpUnlessBoth},
    TestingJumps{Operation::Or, Operation::JumpIfEither, Operation::JumpUnlessEither},
};

/// A comparison and the operation that combines its outcome with a boolean.
struct Combination {
    Operation test;
    Operation combined;
};

inline constexpr std::array kCombinations{
    Combination{Operation::Equal, Operation::CombineEqual},
    Combination{Operation::NotEqual, Operation::CombineNotEqual},
    Combination{Operation::Less, Operation::CombineLess},
    Combination{Operation::LessEqual, Operation::CombineLessEqual},
};

/// The kind of an instruction's operand. Kinds from WideConstant on take up b and c together.
enum class EngineOperand : std::uint8_t {
    None,
    /// A local or temporary of the frame.
    Register,
    /// A constant of the function.
    Constant,
    /// A global slot.
    Global,
    /// A number of registers.
    Count,
    /// The distance of a jump, from the next instruction.
    Distance,
    WideConstant,
    WideGlobal,
    WideDistance,
    /// An index into a side table of the code, or a length.
    WideNumber,
};

// One row for each instruction: name, operation, kinds of a, b and c. An operation with two operands has an instruction
// for every pair of kinds except two constants.
#define MORVEL_ENGINE_PAIRS(ROW, operation)                     \
    ROW(operation##RR, operation, Register, Register, Register) \
    ROW(operation##RK, operation, Register, Register, Constant) \
    ROW(operation##RG, operation, Register, Register, Global)   \
    ROW(operation##KR, operation, Register, Constant, Register) \
    ROW(operation##KG, operation, Register, Constant, Global)   \
    ROW(operation##GR, operation, Register, Global, Register)   \
    ROW(operation##GK, operation, Register, Global, Constant)   \
    ROW(operation##GG, operation, Register, Global, Global)

#define MORVEL_ENGINE_PAIRS_TO_GLOBAL(ROW, operation)            \
    ROW(operation##ToGRR, operation, Global, Register, Register) \
    ROW(operation##ToGRK, operation, Global, Register, Constant) \
    ROW(operation##ToGRG, operation, Global, Register, Global)   \
    ROW(operation##ToGKR, operation, Global, Constant, Register) \
    ROW(operation##ToGKG, operation, Global, Constant, Global)   \
    ROW(operation##ToGGR, operation, Global, Global, Register)   \
    ROW(operation##ToGGK, operation, Global, Global, Constant)   \
    ROW(operation##ToGGG, operation, Global, Global, Global)

#define MORVEL_ENGINE_PAIR_JUMPS(ROW, operation)                \
    ROW(operation##RR, operation, Register, Register, Distance) \
    ROW(operation##RK, operation, Register, Constant, Distance) \
    ROW(operation##RG, operation, Register, Global, Distance)   \
    ROW(operation##KR, operation, Constant, Register, Distance) \
    ROW(operation##KG, operation, Constant, Global, Distance)   \
    ROW(operation##GR, operation, Global, Register, Distance)   \
    ROW(operation##GK, operation, Global, Constant, Distance)   \
    ROW(operation##GG, operation, Global, Global, Distance)

// For other operands, a separate instruction combines the outcome.
#define MORVEL_ENGINE_COMBINATIONS(ROW, operation)              \
    ROW(operation##RR, operation, Register, Register, Register) \
    ROW(operation##RK, operation, Register, Register, Constant) \
    ROW(operation##KR, operation, Register, Constant, Register)

// Containers are never constants.
#define MORVEL_ENGINE_LOOK_UPS(ROW, operation)                  \
    ROW(operation##RR, operation, Register, Register, Register) \
    ROW(operation##RK, operation, Register, Register, Constant) \
    ROW(operation##RG, operation, Register, Register, Global)   \
    ROW(operation##GR, operation, Register, Global, Register)   \
    ROW(operation##GK, operation, Register, Global, Constant)   \
    ROW(operation##GG, operation, Register, Global, Global)

#define MORVEL_ENGINE_LOOK_UP_JUMPS(ROW, operation)             \
    ROW(operation##RR, operation, Register, Register, Distance) \
    ROW(operation##RK, operation, Register, Constant, Distance) \
    ROW(operation##GG, operation, Global, Global, Distance)

#define MORVEL_ENGINE_STORES(ROW, operation)                     \
    ROW(operation##RRR, operation, Register, Register, Register) \
    ROW(operation##RRK, operation, Register, Register, Constant) \
    ROW(operation##RRG, operation, Register, Register, Global)   \
    ROW(operation##RKR, operation, Register, Constant, Register) \
    ROW(operation##RKK, operation, Register, Constant, Constant) \
    ROW(operation##RKG, operation, Register, Constant, Global)   \
    ROW(operation##RGR, operation, Register, Global, Register)   \
    ROW(operation##RGK, operation, Register, Global, Constant)   \
    ROW(operation##RGG, operation, Register, Global, Global)     \
    ROW(operation##GRR, operation, Global, Register, Register)   \
    ROW(operation##GRK, operation, Global, Register, Constant)   \
    ROW(operation##GRG, operation, Global, Register, Global)     \
    ROW(operation##GKR, operation, Global, Constant, Register)   \
    ROW(operation##GKK, operation, Global, Constant, Constant)   \
    ROW(operation##GKG, operation, Global, Constant, Global)     \
    ROW(operation##GGR, operation, Global, Global, Register)     \
    ROW(operation##GGK, operation, Global, Global, Constant)     \
    ROW(operation##GGG, operation, Global, Global, Global)

// A fused instruction: its operation, the two instructions that it is made of, and the kinds of the first one's
// operands, which are its own.
#define MORVEL_ENGINE_FUSED_PAIRS(ROW)                                                 \
    ROW(IncreaseKThenJumpIfLessRR, IncreaseThenJump, Register, Constant, None)         \
    ROW(IncreaseKThenJumpIfLessRK, IncreaseThenJump, Register, Constant, None)         \
    ROW(IncreaseKThenJumpIfLessEqualRR, IncreaseThenJump, Register, Constant, None)    \
    ROW(IncreaseKThenJumpIfLessEqualRK, IncreaseThenJump, Register, Constant, None)    \
    ROW(IncreaseRThenJumpIfLessRR, IncreaseThenJump, Register, Register, None)         \
    ROW(IncreaseRThenJumpIfLessEqualRR, IncreaseThenJump, Register, Register, None)    \
    ROW(AddRRThenGetIndexRR, AddThenGetIndex, Register, Register, Register)            \
    ROW(AddRKThenGetIndexRR, AddThenGetIndex, Register, Register, Constant)            \
    ROW(SubtractRKThenGetIndexRR, SubtractThenGetIndex, Register, Register, Constant)  \
    ROW(GetIndexRRThenGetIndexRR, GetIndexThenGetIndex, Register, Register, Register)  \
    ROW(GetIndexRRThenGetIndexRK, GetIndexThenGetIndex, Register, Register, Register)  \
    ROW(GetIndexRRThenSetIndexRRR, GetIndexThenSetIndex, Register, Register, Register) \
    ROW(GetIndexRRThenAddRR, GetIndexThenAdd, Register, Register, Register)            \
    ROW(MultiplyRRThenAddRR, MultiplyThenAdd, Register, Register, Register)            \
    ROW(MultiplyRRThenIncreaseR, MultiplyThenIncrease, Register, Register, Register)   \
    ROW(ModuloRKThenJumpUnlessEqualRK, ModuloThenJump, Register, Register, Constant)

#define MORVEL_ENGINE_INSTRUCTIONS(ROW)                                   \
    MORVEL_ENGINE_PAIRS(ROW, Add)                                         \
    MORVEL_ENGINE_PAIRS_TO_GLOBAL(ROW, Add)                               \
    MORVEL_ENGINE_PAIRS(ROW, Subtract)                                    \
    MORVEL_ENGINE_PAIRS_TO_GLOBAL(ROW, Subtract)                          \
    MORVEL_ENGINE_PAIRS(ROW, Multiply)                                    \
    MORVEL_ENGINE_PAIRS_TO_GLOBAL(ROW, Multiply)                          \
    MORVEL_ENGINE_PAIRS(ROW, Divide)                                      \
    MORVEL_ENGINE_PAIRS_TO_GLOBAL(ROW, Divide)                            \
    MORVEL_ENGINE_PAIRS(ROW, Modulo)                                      \
    MORVEL_ENGINE_PAIRS_TO_GLOBAL(ROW, Modulo)                            \
    MORVEL_ENGINE_PAIRS(ROW, Equal)                                       \
    MORVEL_ENGINE_PAIRS(ROW, NotEqual)                                    \
    MORVEL_ENGINE_PAIRS(ROW, Less)                                        \
    MORVEL_ENGINE_PAIRS(ROW, LessEqual)                                   \
    MORVEL_ENGINE_PAIR_JUMPS(ROW, JumpUnlessEqual)                        \
    MORVEL_ENGINE_PAIR_JUMPS(ROW, JumpUnlessLess)                         \
    MORVEL_ENGINE_PAIR_JUMPS(ROW, JumpUnlessLessEqual)                    \
    MORVEL_ENGINE_PAIR_JUMPS(ROW, JumpIfEqual)                            \
    MORVEL_ENGINE_PAIR_JUMPS(ROW, JumpIfLess)                             \
    MORVEL_ENGINE_PAIR_JUMPS(ROW, JumpIfLessEqual)                        \
    MORVEL_ENGINE_COMBINATIONS(ROW, CombineEqual)                         \
    MORVEL_ENGINE_COMBINATIONS(ROW, CombineNotEqual)                      \
    MORVEL_ENGINE_COMBINATIONS(ROW, CombineLess)                          \
    MORVEL_ENGINE_COMBINATIONS(ROW, CombineLessEqual)                     \
    MORVEL_ENGINE_LOOK_UPS(ROW, GetIndex)                                 \
    MORVEL_ENGINE_LOOK_UP_JUMPS(ROW, JumpUnlessIndex)                     \
    MORVEL_ENGINE_LOOK_UP_JUMPS(ROW, JumpIfIndex)                         \
    MORVEL_ENGINE_STORES(ROW, SetIndex)                                   \
    ROW(IncreaseR, Increase, Register, Register, None)                    \
    ROW(IncreaseK, Increase, Register, Constant, None)                    \
    ROW(CopyLocal, CopyLocal, Register, Register, None)                   \
    ROW(MoveTemporary, MoveTemporary, Register, Register, None)           \
    ROW(LoadConstant, LoadConstant, Register, WideConstant, None)         \
    ROW(LoadGlobal, LoadGlobal, Register, WideGlobal, None)               \
    ROW(PassLocal, PassLocal, Register, Register, None)                   \
    ROW(PassConstant, PassConstant, Register, WideConstant, None)         \
    ROW(PassGlobal, PassGlobal, Register, WideGlobal, None)               \
    ROW(CheckGlobal, CheckGlobal, None, WideGlobal, None)                 \
    ROW(LoadLocalOrGlobal, LoadLocalOrGlobal, Register, WideNumber, None) \
    ROW(StoreGlobalMove, StoreGlobalMove, Register, WideGlobal, None)     \
    ROW(LoadFarGlobal, LoadFarGlobal, Register, WideNumber, None)         \
    ROW(StoreFarGlobal, StoreFarGlobal, Register, WideNumber, None)       \
    ROW(Drop, Drop, Register, None, None)                                 \
    ROW(Negate, Negate, Register, Register, None)                         \
    ROW(Not, Not, Register, Register, None)                               \
    ROW(And, And, Register, Register, Register)                           \
    ROW(Or, Or, Register, Register, Register)                             \
    ROW(MakeArray, MakeArray, Register, Register, Count)                  \
    ROW(ExtendArray, ExtendArray, Register, WideNumber, None)             \
    ROW(Jump, Jump, None, WideDistance, None)                             \
    ROW(JumpIfFalse, JumpIfFalse, Register, WideDistance, None)           \
    ROW(JumpIfTrue, JumpIfTrue, Register, WideDistance, None)             \
    ROW(JumpUnlessBoth, JumpUnlessBoth, Register, Register, Distance)     \
    ROW(JumpUnlessEither, JumpUnlessEither, Register, Register, Distance) \
    ROW(JumpIfBoth, JumpIfBoth, Register, Register, Distance)             \
    ROW(JumpIfEither, JumpIfEither, Register, Register, Distance)         \
    ROW(CallGlobal, CallGlobal, Register, Register, Global)               \
    ROW(CallRegister, CallRegister, Register, Register, None)             \
    ROW(CallWithArray, CallWithArray, Register, Register, None)           \
    ROW(Len, Len, Register, Register, Global)                             \
    ROW(ArrayPush, ArrayPush, Register, Register, Global)                 \
    ROW(DefineFunction, DefineFunction, None, WideNumber, None)           \
    ROW(ReturnLocal, ReturnLocal, Register, None, None)                   \
    ROW(ReturnConstant, ReturnConstant, None, WideConstant, None)         \
    ROW(ReturnGlobal, ReturnGlobal, None, WideGlobal, None)               \
    ROW(ReturnNil, ReturnNil, None, None, None)                           \
    MORVEL_ENGINE_FUSED_PAIRS(ROW)

enum class EngineOp : std::uint8_t {
#define MORVEL_NAME(name, ...) name,
    MORVEL_ENGINE_INSTRUCTIONS(MORVEL_NAME)
#undef MORVEL_NAME
};

using EngineOperands = std::array<EngineOperand, 3>;

/// A letter for each operand.
using OperandUses = std::array<char, EngineOperands{}.size()>;

[[nodiscard]] constexpr OperandUses usesOf(std::string_view letters) { return {letters[0], letters[1], letters[2]}; }

/// The table entry of an operation.
struct OperationInfo {
    OperandUses uses;
    std::uint8_t effects;
};

inline constexpr std::array kOperations{
#define MORVEL_INFO(name, uses, effects) OperationInfo{usesOf(uses), effects},
    MORVEL_ENGINE_OPERATIONS(MORVEL_INFO)
#undef MORVEL_INFO
};

/// The operation of that name; nothing when there is none.
[[nodiscard]] constexpr std::optional<Operation> operationNamed(std::string_view name) {
    constexpr std::array<std::string_view, kOperations.size()> kNames{
#define MORVEL_NAME(name, ...) #name,
        MORVEL_ENGINE_OPERATIONS(MORVEL_NAME)
#undef MORVEL_NAME
    };
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        if (kNames[i] == name) {
            return static_cast<Operation>(i);
        }
    }
    return std::nullopt;
}

/// The table entry of an instruction.
struct EngineOpInfo {
    Operation operation;
    EngineOperands operands;

    [[nodiscard]] constexpr const OperationInfo& does() const {
        return kOperations[static_cast<std::size_t>(operation)];
    }
    [[nodiscard]] constexpr bool has(EngineEffects effect) const { return (does().effects & effect) != 0; }
    /// True when operand b receives the result of a call.
    [[nodiscard]] constexpr bool givesCallResult() const { return does().uses[0] == 'p' && does().uses[1] == 'w'; }
    /// True when operand a is a register that is written, whatever it held.
    [[nodiscard]] constexpr bool writesRegister() const {
        return does().uses[0] == 'w' && operands[0] == EngineOperand::Register;
    }
};

inline constexpr std::array kEngineOps{
#define MORVEL_INFO(name, operation, a, b, c) \
    EngineOpInfo{Operation::operation, {EngineOperand::a, EngineOperand::b, EngineOperand::c}},
    MORVEL_ENGINE_INSTRUCTIONS(MORVEL_INFO)
#undef MORVEL_INFO
};

/// The names of the instructions, kept apart because only listings use them.
inline constexpr std::array<std::string_view, kEngineOps.size()> kEngineOpNames{
#define MORVEL_NAME(name, ...) #name,
    MORVEL_ENGINE_INSTRUCTIONS(MORVEL_NAME)
#undef MORVEL_NAME
};

static_assert(kEngineOps.size() <= 256, "an instruction's number is one byte");

[[nodiscard]] constexpr const EngineOpInfo& infoOf(EngineOp op) { return kEngineOps[static_cast<std::size_t>(op)]; }

/// A pair of instructions that is also one. The fused instruction takes the place of the first and has its operands;
/// the second stays behind it, for jumps to it and for the cases that the fused one leaves to the two.
struct FusedPair {
    EngineOp fused;
    EngineOp first;
    EngineOp second;
    /// The operand of the second that is the first one's result.
    std::size_t taking;
};

inline constexpr std::array kFusedPairs{
    FusedPair{EngineOp::IncreaseKThenJumpIfLessRR, EngineOp::IncreaseK, EngineOp::JumpIfLessRR, 0},
    FusedPair{EngineOp::IncreaseKThenJumpIfLessRK, EngineOp::IncreaseK, EngineOp::JumpIfLessRK, 0},
    FusedPair{EngineOp::IncreaseKThenJumpIfLessEqualRR, EngineOp::IncreaseK, EngineOp::JumpIfLessEqualRR, 0},
    FusedPair{EngineOp::IncreaseKThenJumpIfLessEqualRK, EngineOp::IncreaseK, EngineOp::JumpIfLessEqualRK, 0},
    FusedPair{EngineOp::IncreaseRThenJumpIfLessRR, EngineOp::IncreaseR, EngineOp::JumpIfLessRR, 0},
    FusedPair{EngineOp::IncreaseRThenJumpIfLessEqualRR, EngineOp::IncreaseR, EngineOp::JumpIfLessEqualRR, 0},
    FusedPair{EngineOp::AddRRThenGetIndexRR, EngineOp::AddRR, EngineOp::GetIndexRR, 2},
    FusedPair{EngineOp::AddRKThenGetIndexRR, EngineOp::AddRK, EngineOp::GetIndexRR, 2},
    FusedPair{EngineOp::SubtractRKThenGetIndexRR, EngineOp::SubtractRK, EngineOp::GetIndexRR, 2},
    FusedPair{EngineOp::GetIndexRRThenGetIndexRR, EngineOp::GetIndexRR, EngineOp::GetIndexRR, 1},
    FusedPair{EngineOp::GetIndexRRThenGetIndexRK, EngineOp::GetIndexRR, EngineOp::GetIndexRK, 1},
    FusedPair{EngineOp::GetIndexRRThenSetIndexRRR, EngineOp::GetIndexRR, EngineOp::SetIndexRRR, 2},
    FusedPair{EngineOp::GetIndexRRThenAddRR, EngineOp::GetIndexRR, EngineOp::AddRR, 2},
    FusedPair{EngineOp::MultiplyRRThenAddRR, EngineOp::MultiplyRR, EngineOp::AddRR, 1},
    FusedPair{EngineOp::MultiplyRRThenAddRR, EngineOp::MultiplyRR, EngineOp::AddRR, 2},
    FusedPair{EngineOp::MultiplyRRThenIncreaseR, EngineOp::MultiplyRR, EngineOp::IncreaseR, 1},
    FusedPair{EngineOp::ModuloRKThenJumpUnlessEqualRK, EngineOp::ModuloRK, EngineOp::JumpUnlessEqualRK, 0},
};

/// The pair that a fused instruction stands for; nothing for other instructions.
[[nodiscard]] constexpr std::optional<FusedPair> pairOf(EngineOp fused) {
    for (const FusedPair& pair : kFusedPairs) {
        if (pair.fused == fused) {
            return pair;
        }
    }
    return std::nullopt;
}

/// The first instruction of each operation; the others follow it.
inline constexpr auto kFirstInstructions = [] {
    std::array<std::size_t, kOperations.size()> firsts{};
    for (std::size_t i = kEngineOps.size(); i-- > 0;) {
        firsts[static_cast<std::size_t>(kEngineOps[i].operation)] = i;
    }
    return firsts;
}();

/// The instruction that does `operation` on operands of these kinds; nothing when there is none.
[[nodiscard]] constexpr std::optional<EngineOp> findInstruction(Operation operation, const EngineOperands& operands) {
    for (std::size_t i = kFirstInstructions[static_cast<std::size_t>(operation)];
         i < kEngineOps.size() && kEngineOps[i].operation == operation; ++i) {
        if (kEngineOps[i].operands == operands) {
            return static_cast<EngineOp>(i);
        }
    }
    return std::nullopt;
}

/// The form of an instruction that stores its result in a global instead of a register; nothing when there is none.
[[nodiscard]] constexpr std::optional<EngineOp> storingForm(EngineOp op) {
    const EngineOpInfo& info = infoOf(op);
    if (!info.writesRegister()) {
        return std::nullopt;
    }
    return findInstruction(info.operation, {EngineOperand::Global, info.operands[1], info.operands[2]});
}

/// The jump that includes the test made by an instruction; nothing when there is none.
[[nodiscard]] constexpr std::optional<EngineOp> testingJump(EngineOp op, bool whenTrue) {
    const EngineOpInfo& info = infoOf(op);
    for (const TestingJumps& jumps : kTestingJumps) {
        if (jumps.test == info.operation) {
            return findInstruction(whenTrue ? jumps.ifTrue : jumps.ifFalse,
                                   {info.operands[1], info.operands[2], EngineOperand::Distance});
        }
    }
    return std::nullopt;
}

/// The form of a comparison that combines its outcome with a boolean; nothing when there is none.
[[nodiscard]] constexpr std::optional<EngineOp> combiningForm(EngineOp op) {
    const EngineOpInfo& info = infoOf(op);
    for (const Combination& combination : kCombinations) {
        if (combination.test == info.operation) {
            return findInstruction(combination.combined, info.operands);
        }
    }
    return std::nullopt;
}

/// The plain form of a combining comparison; nothing for other instructions.
[[nodiscard]] constexpr std::optional<EngineOp> combinedTest(EngineOp op) {
    const EngineOpInfo& info = infoOf(op);
    for (const Combination& combination : kCombinations) {
        if (combination.combined == info.operation) {
            return findInstruction(combination.test, info.operands);
        }
    }
    return std::nullopt;
}

}  // namespace morvel::ruby::internal
