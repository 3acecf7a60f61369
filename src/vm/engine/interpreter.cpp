// The instruction loop.
//
// Rules that hold in it:
//  1. The frame's `next` is saved before anything that may fail or leave the frame, and the state is loaded again after
//     anything that may enter, leave or run other frames (LOAD_FRAME) or create globals.
//  2. A dead register never holds a boxed value. Instructions that use up a temporary release it, unless it held a
//     scalar, which may be left behind.
//  3. Registers never move while a frame is active; frames and globals may.
//  4. No object with a destructor lives in the loop, so exceptions may pass through it anywhere.
#include <cmath>
#include <cstddef>
#include <cstring>

#include "vm/engine/engine.h"
#include "vm/engine/registers.h"

#include "morvel/ruby/error.h"
#include "value/deferred_release.h"
#include "value/operators.h"

#if defined(__GNUC__) && !defined(MORVEL_SWITCH_DISPATCH)
#define MORVEL_THREADED 1
// Taking the address of a label is an extension, used on purpose.
#pragma GCC diagnostic ignored "-Wpedantic"
#else
#define MORVEL_THREADED 0
#endif

namespace morvel::ruby::internal {

namespace {

using Type = RubyValue::Type;

[[gnu::always_inline]] inline void setInteger(RubyValue* target, std::uint64_t bits) {
    if (target->isBoxed()) [[unlikely]] {
        releaseRegister(target);
    }
    target->type = Type::Integer;
    target->data.integer = static_cast<std::int64_t>(bits);
}

[[gnu::always_inline]] inline void setFloat(RubyValue* target, double number) {
    if (target->isBoxed()) [[unlikely]] {
        releaseRegister(target);
    }
    target->type = Type::Float;
    target->data.floating = number;
}

[[gnu::always_inline]] inline void setBoolean(RubyValue* target, bool flag) {
    if (target->isBoxed()) [[unlikely]] {
        releaseRegister(target);
    }
    target->type = Type::Boolean;
    target->data.boolean = flag;
}

// Both kinds of number are hot: neither path may be laid out as the exception.
[[gnu::always_inline]] inline bool areIntegers(const RubyValue* left, const RubyValue* right) {
    return __builtin_expect_with_probability(left->type == Type::Integer, 1, 0.6) != 0 &&
           __builtin_expect(right->type == Type::Integer, 1) != 0;
}

[[gnu::always_inline]] inline bool areFloats(const RubyValue* left, const RubyValue* right) {
    return __builtin_expect_with_probability(left->type == Type::Float, 1, 0.8) != 0 &&
           __builtin_expect_with_probability(right->type == Type::Float, 1, 0.8) != 0;
}

[[gnu::always_inline]] inline bool areSameTexts(const RubyValue* left, const RubyValue* right) {
    if (left->data.box == right->data.box) {
        return true;
    }
    const std::string& leftText = static_cast<const StringBox*>(left->data.box)->text;
    const std::string& rightText = static_cast<const StringBox*>(right->data.box)->text;
    return leftText.size() == rightText.size() && (leftText.empty() || leftText[0] == rightText[0]) &&
           std::memcmp(leftText.data(), rightText.data(), leftText.size()) == 0;
}

[[gnu::always_inline]] inline bool areUnboxed(const RubyValue* left, const RubyValue* right) {
    return !left->isBoxed() && !right->isBoxed();
}

/// True for an array of two elements that nothing else refers to.
[[gnu::always_inline]] inline bool isLonePair(const RubyValue* value) {
    return value->type == Type::Array && value->data.box->references == 1 &&
           static_cast<const ArrayBox*>(value->data.box)->elements.size() == 2;
}

/// Copies `from` to a register or global, whatever that held.
[[gnu::always_inline]] inline void copyOver(RubyValue* to, const RubyValue* from) {
    if (from->isBoxed()) {
        ++from->data.box->references;
    }
    const Type type = from->type;
    const RubyValue::Data data = from->data;
    if (to->isBoxed()) [[unlikely]] {
        releaseRegister(to);
    }
    to->type = type;
    to->data = data;
}

/// Moves the dying `from` to a register or global, whatever that held.
[[gnu::always_inline]] inline void moveOver(RubyValue* to, RubyValue* from) {
    if (to->isBoxed()) [[unlikely]] {
        releaseRegister(to);
    }
    moveRegister(to, from);
}

constinit const RubyValue kNil;

/// Copies a value that lives in a container to a register. The container goes first when it is a dying temporary, which
/// may be the very register that the value is for. Apart from the loop, which then needs fewer registers for itself.
[[gnu::noinline]] void copyOut(RubyValue* to, const RubyValue* from, RubyValue* container, bool containerDies) {
    const Type type = from->type;
    const RubyValue::Data data = from->data;
    if (from->isBoxed()) {
        ++data.box->references;
    }
    releaseIf(containerDies, container);
    releaseRegister(to);
    to->type = type;
    to->data = data;
}

/// A reference for the frame of a callee that lives in a variable, which may be rebound during the call. What has to
/// stay is its program, and a caller of the same program sees to that: then none is needed, and null is given.
[[gnu::always_inline]] inline RubyFunctionHandle* keepCallee(RubyFunctionHandle* callee, const Code* code,
                                                             const Code* caller) {
    if (code->program == caller->program) [[likely]] {
        return nullptr;
    }
    ++callee->references;
    return callee;
}

/// True for keys that a map can be asked for without anything to release afterwards.
[[gnu::always_inline]] inline bool isPlainKey(const RubyValue* key, int isTemporary) {
    return key->type == Type::Integer || (key->type == Type::String && isTemporary == 0);
}

/// The entry of a plain key, or null.
[[gnu::always_inline]] inline RubyValue* findEntry(const RubyValue* map, const RubyValue* key) {
    RubyMap& entries = static_cast<MapBox*>(map->data.box)->entries;
    return key->type == Type::Integer ? entries.findInteger(key->data.integer)
                                      : entries.findText(static_cast<StringBox*>(key->data.box));
}

[[gnu::always_inline]] inline std::int64_t remainderOf(std::int64_t left, std::int64_t right) {
    // A 32-bit division is much faster, and most operands fit.
    if (((static_cast<std::uint64_t>(left) | static_cast<std::uint64_t>(right)) >> 32) == 0) {
        return static_cast<std::uint32_t>(left) % static_cast<std::uint32_t>(right);
    }
    return right == -1 ? 0 : left % right;
}

/// The operation on integers and floats; false when the operands are of other kinds or would fail.
template <OpCode Operation>
[[gnu::always_inline]] inline bool calculateNumbers(RubyValue* target, const RubyValue* left, const RubyValue* right) {
    if (areIntegers(left, right)) {
        const auto leftBits = static_cast<std::uint64_t>(left->data.integer);
        const auto rightBits = static_cast<std::uint64_t>(right->data.integer);
        if constexpr (Operation == OpCode::Add) {
            setInteger(target, leftBits + rightBits);
        } else if constexpr (Operation == OpCode::Subtract) {
            setInteger(target, leftBits - rightBits);
        } else if constexpr (Operation == OpCode::Multiply) {
            setInteger(target, leftBits * rightBits);
        } else if constexpr (Operation == OpCode::Divide) {
            if (rightBits == 0) {
                return false;
            }
            setFloat(target, static_cast<double>(left->data.integer) / static_cast<double>(right->data.integer));
        } else {
            if (rightBits == 0) {
                return false;
            }
            setInteger(target, static_cast<std::uint64_t>(remainderOf(left->data.integer, right->data.integer)));
        }
        return true;
    }
    if (Operation == OpCode::Modulo || !areFloats(left, right)) {
        return false;
    }
    const double leftNumber = left->data.floating;
    const double rightNumber = right->data.floating;
    if constexpr (Operation == OpCode::Add) {
        setFloat(target, leftNumber + rightNumber);
    } else if constexpr (Operation == OpCode::Subtract) {
        setFloat(target, leftNumber - rightNumber);
    } else if constexpr (Operation == OpCode::Multiply) {
        setFloat(target, leftNumber * rightNumber);
    } else {
        if (std::fabs(rightNumber) <= kZeroTolerance) {
            return false;
        }
        setFloat(target, leftNumber / rightNumber);
    }
    return true;
}

}  // namespace

void Engine::interpret(std::size_t entry, Runs::Id run) {
    const EngineInstruction* pc;
    RubyValue* base;
    const RubyValue* constants;
    RubyValue* globals;
    RubyValue* returned;

// Operands are stored doubled and scaled by a machine word, half a value.
#define OPERAND(area, number) \
    (reinterpret_cast<RubyValue*>(reinterpret_cast<std::uint64_t*>(const_cast<RubyValue*>(area)) + (number)))
#define OPERAND_R(number) OPERAND(base, number)
#define OPERAND_K(number) OPERAND(constants, number)
#define OPERAND_G(number) OPERAND(globals, number)

// The instruction being carried out; `pc` is already past it.
#define INSTRUCTION (pc[-1])
#define SAVE() (m_current->next = pc)
// Frames share the loop's variables, so the globals have to be looked up again only after other code has run.
#define LOAD_FRAME(top)                            \
    do {                                           \
        base = (top)->base;                        \
        constants = (top)->code->constants.data(); \
        pc = (top)->next;                          \
    } while (false)
#define LOAD_STATE()                                 \
    do {                                             \
        if (deferredHosts != nullptr) [[unlikely]] { \
            releaseDeferredHosts();                  \
        }                                            \
        m_runs.requireInnermost(run);                \
        LOAD_FRAME(m_current);                       \
        globals = m_globals.values();                \
    } while (false)

#if MORVEL_THREADED
    static const void* const kLabels[] = {
#define MORVEL_LABEL(name, ...) &&label##name,
        MORVEL_ENGINE_OPERATIONS(MORVEL_LABEL, MORVEL_LABEL, MORVEL_LABEL)
#undef MORVEL_LABEL
    };
#define OP(name) label##name:
#define NEXT()                                                   \
    do {                                                         \
        ++pc;                                                    \
        goto* kLabels[static_cast<std::size_t>(INSTRUCTION.op)]; \
    } while (false)
    LOAD_STATE();
    NEXT();
#else
#define OP(name) case EngineOp::name:
#define NEXT() continue
    LOAD_STATE();
    while (true) {
        ++pc;
        switch (INSTRUCTION.op) {
#endif

// Releases the operands l and r that are dying temporaries. They are booleans mostly, which need nothing.
#define RELEASE_BOTH(leftMark, rightMark)                 \
    if (l->isBoxed() || r->isBoxed()) [[unlikely]] {      \
        releaseIf((INSTRUCTION.n & (leftMark)) != 0, l);  \
        releaseIf((INSTRUCTION.n & (rightMark)) != 0, r); \
    }

#define ARITHMETIC(operation, target, left, right)                         \
    {                                                                      \
        RubyValue* const to = target;                                      \
        RubyValue* const l = left;                                         \
        RubyValue* const r = right;                                        \
        if (!calculateNumbers<OpCode::operation>(to, l, r)) [[unlikely]] { \
            SAVE();                                                        \
            arithmeticSlow<OpCode::operation>(to, l, r, INSTRUCTION.n);    \
        }                                                                  \
        NEXT();                                                            \
    }

#define ADD_ROW(name, L, R_) \
    OP(name) ARITHMETIC(Add, OPERAND_R(INSTRUCTION.a), OPERAND_##L(INSTRUCTION.b), OPERAND_##R_(INSTRUCTION.c))
#define SUBTRACT_ROW(name, L, R_) \
    OP(name) ARITHMETIC(Subtract, OPERAND_R(INSTRUCTION.a), OPERAND_##L(INSTRUCTION.b), OPERAND_##R_(INSTRUCTION.c))
#define MULTIPLY_ROW(name, L, R_) \
    OP(name) ARITHMETIC(Multiply, OPERAND_R(INSTRUCTION.a), OPERAND_##L(INSTRUCTION.b), OPERAND_##R_(INSTRUCTION.c))
#define DIVIDE_ROW(name, L, R_) \
    OP(name) ARITHMETIC(Divide, OPERAND_R(INSTRUCTION.a), OPERAND_##L(INSTRUCTION.b), OPERAND_##R_(INSTRUCTION.c))
#define MODULO_ROW(name, L, R_) \
    OP(name) ARITHMETIC(Modulo, OPERAND_R(INSTRUCTION.a), OPERAND_##L(INSTRUCTION.b), OPERAND_##R_(INSTRUCTION.c))
    MORVEL_ENGINE_PAIRS(ADD_ROW, Add)
    MORVEL_ENGINE_PAIRS(SUBTRACT_ROW, Subtract)
    MORVEL_ENGINE_PAIRS(MULTIPLY_ROW, Multiply)
    MORVEL_ENGINE_PAIRS(DIVIDE_ROW, Divide)
    MORVEL_ENGINE_PAIRS(MODULO_ROW, Modulo)

#define ADD_G_ROW(name, L, R_) \
    OP(name) ARITHMETIC(Add, OPERAND_G(INSTRUCTION.a), OPERAND_##L(INSTRUCTION.b), OPERAND_##R_(INSTRUCTION.c))
#define SUBTRACT_G_ROW(name, L, R_) \
    OP(name) ARITHMETIC(Subtract, OPERAND_G(INSTRUCTION.a), OPERAND_##L(INSTRUCTION.b), OPERAND_##R_(INSTRUCTION.c))
#define MULTIPLY_G_ROW(name, L, R_) \
    OP(name) ARITHMETIC(Multiply, OPERAND_G(INSTRUCTION.a), OPERAND_##L(INSTRUCTION.b), OPERAND_##R_(INSTRUCTION.c))
#define DIVIDE_G_ROW(name, L, R_) \
    OP(name) ARITHMETIC(Divide, OPERAND_G(INSTRUCTION.a), OPERAND_##L(INSTRUCTION.b), OPERAND_##R_(INSTRUCTION.c))
#define MODULO_G_ROW(name, L, R_) \
    OP(name) ARITHMETIC(Modulo, OPERAND_G(INSTRUCTION.a), OPERAND_##L(INSTRUCTION.b), OPERAND_##R_(INSTRUCTION.c))
    MORVEL_ENGINE_PAIRS(ADD_G_ROW, AddToG)
    MORVEL_ENGINE_PAIRS(SUBTRACT_G_ROW, SubtractToG)
    MORVEL_ENGINE_PAIRS(MULTIPLY_G_ROW, MultiplyToG)
    MORVEL_ENGINE_PAIRS(DIVIDE_G_ROW, DivideToG)
    MORVEL_ENGINE_PAIRS(MODULO_G_ROW, ModuloToG)

// The comparisons of l and r, whose marks are `marks`: of integers, which compare through their doubles, as the
// language has it, and of everything else into `answer`.
#define LESS_INTEGERS(op, ...) (static_cast<double>(l->data.integer) op static_cast<double>(r->data.integer))
#define LESS_OTHERS(op, slow, marks)                   \
    if (areFloats(l, r)) {                             \
        answer = l->data.floating op r->data.floating; \
    } else {                                           \
        SAVE();                                        \
        answer = slow(l, r, marks);                    \
    }
#define EQUAL_INTEGERS(op, ...) (l->data.integer op r->data.integer)
#define EQUAL_OTHERS(op, negated, marks)                                         \
    if (l->type == Type::String && r->type == Type::String && (marks) == 0) {    \
        answer = areSameTexts(l, r) != (negated);                                \
    } else if ((l->type == Type::Nil || r->type == Type::Nil) && (marks) == 0) { \
        answer = (l->type == r->type) != (negated);                              \
    } else {                                                                     \
        SAVE();                                                                  \
        answer = equalSlow(l, r, marks) != (negated);                            \
    }

#define VALUE_ROW(name, left, right, kind, ...)       \
    OP(name) {                                        \
        RubyValue* const l = left;                    \
        RubyValue* const r = right;                   \
        bool answer;                                  \
        if (areIntegers(l, r)) [[likely]] {           \
            answer = kind##_INTEGERS(__VA_ARGS__);    \
        } else {                                      \
            kind##_OTHERS(__VA_ARGS__, INSTRUCTION.n) \
        }                                             \
        setBoolean(OPERAND_R(INSTRUCTION.a), answer); \
        NEXT();                                       \
    }
#define JUMP_WHEN(condition)                                \
    {                                                       \
        if (condition) {                                    \
            pc += static_cast<std::int16_t>(INSTRUCTION.c); \
        }                                                   \
        NEXT();                                             \
    }
// In the fused jumps the operands, and with them the marks, stand one place further to the front.
#define JUMP_ROW(...) JUMP_ROW_EXPANDED(__VA_ARGS__)
#define JUMP_ROW_EXPANDED(name, left, right, jumps, kind, ...)                                                  \
    OP(name) {                                                                                                  \
        RubyValue* const l = left;                                                                              \
        RubyValue* const r = right;                                                                             \
        if (areIntegers(l, r)) {                                                                                \
            JUMP_WHEN(kind##_INTEGERS(__VA_ARGS__) == (jumps));                                                 \
        }                                                                                                       \
        bool answer;                                                                                            \
        kind##_OTHERS(__VA_ARGS__, static_cast<std::uint8_t>(INSTRUCTION.n << 1)) JUMP_WHEN(answer == (jumps)); \
    }
#define EQUAL_ROW(name, L, R_) \
    VALUE_ROW(name, OPERAND_##L(INSTRUCTION.b), OPERAND_##R_(INSTRUCTION.c), EQUAL, ==, false)
#define NOT_EQUAL_ROW(name, L, R_) \
    VALUE_ROW(name, OPERAND_##L(INSTRUCTION.b), OPERAND_##R_(INSTRUCTION.c), EQUAL, !=, true)
#define LESS_ROW(name, L, R_) \
    VALUE_ROW(name, OPERAND_##L(INSTRUCTION.b), OPERAND_##R_(INSTRUCTION.c), LESS, <, lessSlow<false>)
#define LESS_EQUAL_ROW(name, L, R_) \
    VALUE_ROW(name, OPERAND_##L(INSTRUCTION.b), OPERAND_##R_(INSTRUCTION.c), LESS, <=, lessSlow<true>)
    MORVEL_ENGINE_PAIRS(EQUAL_ROW, Equal)
    MORVEL_ENGINE_PAIRS(NOT_EQUAL_ROW, NotEqual)
    MORVEL_ENGINE_PAIRS(LESS_ROW, Less)
    MORVEL_ENGINE_PAIRS(LESS_EQUAL_ROW, LessEqual)

#define OPERANDS_AB(L, R_) OPERAND_##L(INSTRUCTION.a), OPERAND_##R_(INSTRUCTION.b)
#define UNLESS_EQUAL_ROW(name, L, R_) JUMP_ROW(name, OPERANDS_AB(L, R_), false, EQUAL, ==, false)
#define UNLESS_NOT_EQUAL_ROW(name, L, R_) JUMP_ROW(name, OPERANDS_AB(L, R_), false, EQUAL, !=, true)
#define UNLESS_LESS_ROW(name, L, R_) JUMP_ROW(name, OPERANDS_AB(L, R_), false, LESS, <, lessSlow<false>)
#define UNLESS_LESS_EQUAL_ROW(name, L, R_) JUMP_ROW(name, OPERANDS_AB(L, R_), false, LESS, <=, lessSlow<true>)
    MORVEL_ENGINE_PAIRS(UNLESS_EQUAL_ROW, JumpUnlessEqual)
    MORVEL_ENGINE_PAIRS(UNLESS_NOT_EQUAL_ROW, JumpUnlessNotEqual)
    MORVEL_ENGINE_PAIRS(UNLESS_LESS_ROW, JumpUnlessLess)
    MORVEL_ENGINE_PAIRS(UNLESS_LESS_EQUAL_ROW, JumpUnlessLessEqual)

#define IF_EQUAL_ROW(name, L, R_) JUMP_ROW(name, OPERANDS_AB(L, R_), true, EQUAL, ==, false)
#define IF_NOT_EQUAL_ROW(name, L, R_) JUMP_ROW(name, OPERANDS_AB(L, R_), true, EQUAL, !=, true)
#define IF_LESS_ROW(name, L, R_) JUMP_ROW(name, OPERANDS_AB(L, R_), true, LESS, <, lessSlow<false>)
#define IF_LESS_EQUAL_ROW(name, L, R_) JUMP_ROW(name, OPERANDS_AB(L, R_), true, LESS, <=, lessSlow<true>)
    MORVEL_ENGINE_PAIRS(IF_EQUAL_ROW, JumpIfEqual)
    MORVEL_ENGINE_PAIRS(IF_NOT_EQUAL_ROW, JumpIfNotEqual)
    MORVEL_ENGINE_PAIRS(IF_LESS_ROW, JumpIfLess)
    MORVEL_ENGINE_PAIRS(IF_LESS_EQUAL_ROW, JumpIfLessEqual)

// Copies a value that lives in a container to a register.
#define COPY_OUT(to, from, container)                                        \
    if ((INSTRUCTION.n & kTemporaryB) == 0 && !(to)->isBoxed()) [[likely]] { \
        copyToDead(to, from);                                                \
    } else {                                                                 \
        copyOut(to, from, container, (INSTRUCTION.n & kTemporaryB) != 0);    \
    }

#define GET_INDEX_ROW(name, C, I)                                                                         \
    OP(name) {                                                                                            \
        RubyValue* const container = OPERAND_##C(INSTRUCTION.b);                                          \
        RubyValue* const index = OPERAND_##I(INSTRUCTION.c);                                              \
        RubyValue* const to = OPERAND_R(INSTRUCTION.a);                                                   \
        if (container->type == Type::Array && index->type == Type::Integer) [[likely]] {                  \
            const RubyArray& elements = static_cast<ArrayBox*>(container->data.box)->elements;            \
            const auto position = static_cast<std::size_t>(index->data.integer);                          \
            if (position < elements.size()) [[likely]] {                                                  \
                const RubyValue* const element = elements.data() + position;                              \
                COPY_OUT(to, element, container);                                                         \
                NEXT();                                                                                   \
            }                                                                                             \
        } else if (container->type == Type::Map && isPlainKey(index, INSTRUCTION.n & kTemporaryC)) {      \
            const RubyValue* found = findEntry(container, index);                                         \
            if (found == nullptr) {                                                                       \
                found = &kNil;                                                                            \
            }                                                                                             \
            COPY_OUT(to, found, container);                                                               \
            NEXT();                                                                                       \
        } else if (container->type == Type::String && index->type == Type::Integer) {                     \
            const std::string& text = static_cast<StringBox*>(container->data.box)->text;                 \
            const auto position = static_cast<std::size_t>(index->data.integer);                          \
            if (position < text.size()) {                                                                 \
                const RubyValue* const byte = &m_byteStrings[static_cast<unsigned char>(text[position])]; \
                if (byte->isBoxed()) [[likely]] {                                                         \
                    COPY_OUT(to, byte, container);                                                        \
                    NEXT();                                                                               \
                }                                                                                         \
            }                                                                                             \
        }                                                                                                 \
        SAVE();                                                                                           \
        getIndexSlow(to, container, index, INSTRUCTION.n);                                                \
        NEXT();                                                                                           \
    }
    MORVEL_ENGINE_INDEX(GET_INDEX_ROW, GetIndex)

#define TEST_INDEX_ROW(name, C, I, jumps)                                                                          \
    OP(name) {                                                                                                     \
        RubyValue* const container = OPERAND_##C(INSTRUCTION.a);                                                   \
        RubyValue* const index = OPERAND_##I(INSTRUCTION.b);                                                       \
        bool answer;                                                                                               \
        if (container->type == Type::Array && index->type == Type::Integer &&                                      \
            static_cast<std::size_t>(index->data.integer) <                                                        \
                static_cast<ArrayBox*>(container->data.box)->elements.size()) [[likely]] {                         \
            answer = static_cast<ArrayBox*>(container->data.box)->elements.data()[index->data.integer].isTruthy(); \
            releaseIf((INSTRUCTION.n & kTemporaryA) != 0, container);                                              \
        } else {                                                                                                   \
            SAVE();                                                                                                \
            answer = testIndexSlow(container, index, static_cast<std::uint8_t>(INSTRUCTION.n << 1));               \
        }                                                                                                          \
        if (answer == (jumps)) {                                                                                   \
            pc += static_cast<std::int16_t>(INSTRUCTION.c);                                                        \
        }                                                                                                          \
        NEXT();                                                                                                    \
    }
#define UNLESS_INDEX_ROW(name, C, I) TEST_INDEX_ROW(name, C, I, false)
#define IF_INDEX_ROW(name, C, I) TEST_INDEX_ROW(name, C, I, true)
    MORVEL_ENGINE_INDEX(UNLESS_INDEX_ROW, JumpUnlessIndex)
    MORVEL_ENGINE_INDEX(IF_INDEX_ROW, JumpIfIndex)

// Stores `value` in an element or entry when there is nothing to release and no reference to count.
#define STORE_PLAIN(element)                     \
    if (areUnboxed(element, value)) [[likely]] { \
        (element)->type = value->type;           \
        (element)->data = value->data;           \
        NEXT();                                  \
    }
#define SET_INDEX_ROW(name, C, I, V)                                                                 \
    OP(name) {                                                                                       \
        RubyValue* const container = OPERAND_##C(INSTRUCTION.a);                                     \
        RubyValue* const index = OPERAND_##I(INSTRUCTION.b);                                         \
        RubyValue* const value = OPERAND_##V(INSTRUCTION.c);                                         \
        if (container->type == Type::Array && index->type == Type::Integer) [[likely]] {             \
            RubyArray& elements = static_cast<ArrayBox*>(container->data.box)->elements;             \
            const auto position = static_cast<std::size_t>(index->data.integer);                     \
            if (position < elements.size()) [[likely]] {                                             \
                RubyValue* const element = elements.data() + position;                               \
                STORE_PLAIN(element)                                                                 \
            }                                                                                        \
        } else if (container->type == Type::Map && isPlainKey(index, INSTRUCTION.n & kTemporaryB)) { \
            RubyValue* const found = findEntry(container, index);                                    \
            if (found != nullptr) {                                                                  \
                STORE_PLAIN(found)                                                                   \
            }                                                                                        \
        }                                                                                            \
        SAVE();                                                                                      \
        setIndexSlow(container, index, value, INSTRUCTION.n);                                        \
        NEXT();                                                                                      \
    }
    MORVEL_ENGINE_SET_INDEX(SET_INDEX_ROW)

// What is added to is its own target: a number there stays one, so that only its payload changes.
#define INCREASE(amount)                                                                                  \
    {                                                                                                     \
        RubyValue* const sum = OPERAND_R(INSTRUCTION.a);                                                  \
        RubyValue* const r = amount;                                                                      \
        if (areIntegers(sum, r)) {                                                                        \
            sum->data.integer = static_cast<std::int64_t>(static_cast<std::uint64_t>(sum->data.integer) + \
                                                          static_cast<std::uint64_t>(r->data.integer));   \
            NEXT();                                                                                       \
        }                                                                                                 \
        if (areFloats(sum, r)) {                                                                          \
            sum->data.floating += r->data.floating;                                                       \
            NEXT();                                                                                       \
        }                                                                                                 \
        SAVE();                                                                                           \
        arithmeticSlow<OpCode::Add>(sum, sum, r, INSTRUCTION.n);                                          \
        NEXT();                                                                                           \
    }
    OP(IncreaseR)
    INCREASE(OPERAND_R(INSTRUCTION.b))
    OP(IncreaseK)
    INCREASE(OPERAND_K(INSTRUCTION.b))

    OP(CopyLocal) {
        copyOver(OPERAND_R(INSTRUCTION.a), OPERAND_R(INSTRUCTION.b));
        NEXT();
    }
    OP(MoveTemporary) {
        moveOver(OPERAND_R(INSTRUCTION.a), OPERAND_R(INSTRUCTION.b));
        NEXT();
    }
    OP(LoadConstant) {
        copyOver(OPERAND_R(INSTRUCTION.a), OPERAND_K(INSTRUCTION.wide()));
        NEXT();
    }
    OP(LoadGlobal) {
        copyOver(OPERAND_R(INSTRUCTION.a), OPERAND_G(INSTRUCTION.wide()));
        NEXT();
    }
    OP(PassLocal) {
        copyToDead(OPERAND_R(INSTRUCTION.a), OPERAND_R(INSTRUCTION.b));
        NEXT();
    }
    OP(PassConstant) {
        copyToDead(OPERAND_R(INSTRUCTION.a), OPERAND_K(INSTRUCTION.wide()));
        NEXT();
    }
    OP(PassGlobal) {
        copyToDead(OPERAND_R(INSTRUCTION.a), OPERAND_G(INSTRUCTION.wide()));
        NEXT();
    }
    OP(CheckGlobal) {
        if (OPERAND_G(INSTRUCTION.wide())->type == kUndefinedType) [[unlikely]] {
            SAVE();
            failUndefined(static_cast<std::size_t>(INSTRUCTION.wide()) / 2);
        }
        NEXT();
    }
    OP(LoadLocalOrGlobal) {
        const LocalFallback& fallback = m_current->code->fallbacks[static_cast<std::size_t>(INSTRUCTION.wide())];
        const RubyValue* const local = OPERAND_R(fallback.local);
        SAVE();
        if (local->type == kUndefinedType) {
            loadFallback(OPERAND_R(INSTRUCTION.a), fallback);
        } else {
            assignRegister(OPERAND_R(INSTRUCTION.a), RubyValue(*local));
        }
        NEXT();
    }
    OP(StoreGlobalMove) {
        moveOver(OPERAND_G(INSTRUCTION.wide()), OPERAND_R(INSTRUCTION.a));
        NEXT();
    }
    OP(StoreGlobalCopy) {
        copyOver(OPERAND_G(INSTRUCTION.wide()), OPERAND_R(INSTRUCTION.a));
        NEXT();
    }
    OP(Drop) {
        releaseRegister(OPERAND_R(INSTRUCTION.a));
        NEXT();
    }
    OP(Negate) {
        RubyValue* const to = OPERAND_R(INSTRUCTION.a);
        RubyValue* const value = OPERAND_R(INSTRUCTION.b);
        if (value->type == Type::Integer) [[likely]] {
            setInteger(to, 0 - static_cast<std::uint64_t>(value->data.integer));
        } else if (value->type == Type::Float) {
            setFloat(to, -value->data.floating);
        } else {
            SAVE();
            negateSlow(to, value, INSTRUCTION.n);
        }
        NEXT();
    }
    OP(Not) {
        RubyValue* const value = OPERAND_R(INSTRUCTION.b);
        const bool answer = !value->isTruthy();
        releaseIf((INSTRUCTION.n & kTemporaryB) != 0, value);
        setBoolean(OPERAND_R(INSTRUCTION.a), answer);
        NEXT();
    }
    OP(And) {
        RubyValue* const l = OPERAND_R(INSTRUCTION.b);
        RubyValue* const r = OPERAND_R(INSTRUCTION.c);
        const bool answer = l->isTruthy() && r->isTruthy();
        RELEASE_BOTH(kTemporaryB, kTemporaryC);
        setBoolean(OPERAND_R(INSTRUCTION.a), answer);
        NEXT();
    }
    OP(Or) {
        RubyValue* const l = OPERAND_R(INSTRUCTION.b);
        RubyValue* const r = OPERAND_R(INSTRUCTION.c);
        const bool answer = l->isTruthy() || r->isTruthy();
        RELEASE_BOTH(kTemporaryB, kTemporaryC);
        setBoolean(OPERAND_R(INSTRUCTION.a), answer);
        NEXT();
    }
    OP(MakeArray) {
        SAVE();
        makeArray(OPERAND_R(INSTRUCTION.a), OPERAND_R(INSTRUCTION.b), INSTRUCTION.c);
        NEXT();
    }
    OP(ExtendArray) {
        SAVE();
        extendArray(OPERAND_R(INSTRUCTION.a), INSTRUCTION.n, static_cast<std::size_t>(INSTRUCTION.wide()));
        NEXT();
    }
    OP(Jump) {
        pc += INSTRUCTION.wide();
        NEXT();
    }
    OP(JumpIfFalse) {
        RubyValue* const condition = OPERAND_R(INSTRUCTION.a);
        if (!condition->isTruthy()) {
            pc += INSTRUCTION.wide();
        } else if ((INSTRUCTION.n & kTemporaryA) != 0) {
            releaseRegister(condition);
        }
        NEXT();
    }
    OP(JumpIfTrue) {
        RubyValue* const condition = OPERAND_R(INSTRUCTION.a);
        if (condition->isTruthy()) {
            releaseIf((INSTRUCTION.n & kTemporaryA) != 0, condition);
            pc += INSTRUCTION.wide();
        }
        NEXT();
    }
#define LOGICAL_JUMP(name, condition)                                             \
    OP(name) {                                                                    \
        RubyValue* const l = OPERAND_R(INSTRUCTION.a);                            \
        RubyValue* const r = OPERAND_R(INSTRUCTION.b);                            \
        const std::ptrdiff_t distance = static_cast<std::int16_t>(INSTRUCTION.c); \
        const bool jumps = condition;                                             \
        RELEASE_BOTH(kTemporaryA, kTemporaryB);                                   \
        if (jumps) {                                                              \
            pc += distance;                                                       \
        }                                                                         \
        NEXT();                                                                   \
    }
    LOGICAL_JUMP(JumpUnlessBoth, !(l->isTruthy() && r->isTruthy()))
    LOGICAL_JUMP(JumpUnlessEither, !(l->isTruthy() || r->isTruthy()))
    LOGICAL_JUMP(JumpIfBoth, l->isTruthy() && r->isTruthy())
    LOGICAL_JUMP(JumpIfEither, l->isTruthy() || r->isTruthy())

// Calls through the general path; a raised error goes to the innermost pcall of this run, or out of the run.
#define FINISH_CALL(callee, window, argumentCount, result)                            \
    if (callFunction(callee, window, argumentCount, result) == CallOutcome::Raised) { \
        if (!recover(entry, m_message)) {                                             \
            throwMessage();                                                           \
        }                                                                             \
    }

// Enters a script function whose translation is known and whose frame needs no preparation; everything else goes
// through callFunction.
#define CALL(callee, keep_callee)                                                                                   \
    {                                                                                                               \
        RubyValue* const window = OPERAND_R(INSTRUCTION.a);                                                         \
        const RubyValue* const function = callee;                                                                   \
        SAVE();                                                                                                     \
        if (function->type == Type::Function) [[likely]] {                                                          \
            auto* const handle = static_cast<RubyFunctionHandle*>(function->data.box);                              \
            const FunctionInternals& known = FunctionInternals::of(*handle);                                        \
            const Code* const code = static_cast<const Code*>(&known);                                              \
            if (known.engine == m_identity.get() && code->parameterCount == INSTRUCTION.n &&                        \
                m_current != m_lastFrame && code->registerCount < static_cast<std::size_t>(m_stack.end() - window)) \
                [[likely]] {                                                                                        \
                RubyFunctionHandle* const kept = keep_callee;                                                       \
                Frame* const frame = ++m_current;                                                                   \
                frame->code = code;                                                                                 \
                frame->base = window + 1;                                                                           \
                frame->result = OPERAND_R(INSTRUCTION.b);                                                           \
                frame->handle = kept;                                                                               \
                frame->marks = kPlainFrame;                                                                         \
                base = window + 1;                                                                                  \
                constants = code->constants.data();                                                                 \
                pc = code->instructions.data();                                                                     \
                if (code->prologue == Prologue::ClearLastValue) {                                                   \
                    base[code->localCount].type = Type::Nil;                                                        \
                } else if (code->prologue != Prologue::None) {                                                      \
                    prepareRegisters(*code, base);                                                                  \
                }                                                                                                   \
                NEXT();                                                                                             \
            }                                                                                                       \
            if (known.numberFunction != nullptr &&                                                                  \
                known.numberFunction(window + 1, INSTRUCTION.n, OPERAND_R(INSTRUCTION.b))) {                        \
                releaseRegister(window);                                                                            \
                NEXT();                                                                                             \
            }                                                                                                       \
            if (handle->nativeFunction != nullptr && handle->intrinsic == RubyFunctionHandle::Intrinsic::None) {    \
                callNative(*handle, window, INSTRUCTION.n, OPERAND_R(INSTRUCTION.b));                               \
                LOAD_STATE();                                                                                       \
                NEXT();                                                                                             \
            }                                                                                                       \
            if (handle->intrinsic == RubyFunctionHandle::Intrinsic::Pcall) {                                        \
                callProtected(window, INSTRUCTION.n, OPERAND_R(INSTRUCTION.b));                                     \
                LOAD_STATE();                                                                                       \
                NEXT();                                                                                             \
            }                                                                                                       \
        }                                                                                                           \
        FINISH_CALL(*function, window, INSTRUCTION.n, OPERAND_R(INSTRUCTION.b));                                    \
        LOAD_STATE();                                                                                               \
        NEXT();                                                                                                     \
    }
    OP(CallGlobal)
    CALL(OPERAND_G(INSTRUCTION.c), keepCallee(handle, code, m_current->code))
    // The reference of the callee's register passes to the frame.
    OP(CallRegister)
    CALL(OPERAND_R(INSTRUCTION.a), (window->type = Type::Nil, handle))

    OP(CallWithArray) {
        SAVE();
        callWithArray(OPERAND_R(INSTRUCTION.a), OPERAND_R(INSTRUCTION.b));
        LOAD_STATE();
        NEXT();
    }

// True when the callee still is the built-in that the translation found under its name.
#define IS_SHORTCUT(callee, kind)        \
    ((callee)->type == Type::Function && \
     FunctionInternals::of(*static_cast<const RubyFunctionHandle*>((callee)->data.box)).shortcut == Shortcut::kind)

    OP(Len) {
        const RubyValue* const callee = OPERAND_G(INSTRUCTION.c);
        RubyValue* const argument = OPERAND_R(INSTRUCTION.b);
        RubyValue* const window = base + m_current->code->firstTemporary + INSTRUCTION.n;
        if (IS_SHORTCUT(callee, Len)) [[likely]] {
            if (argument->type == Type::Array && argument != window + 1) {
                setInteger(OPERAND_R(INSTRUCTION.a), static_cast<ArrayBox*>(argument->data.box)->elements.size());
                NEXT();
            }
            if (argument->type == Type::String && argument != window + 1) {
                setInteger(OPERAND_R(INSTRUCTION.a), static_cast<StringBox*>(argument->data.box)->text.size());
                NEXT();
            }
        }
        SAVE();
        if (argument != window + 1) {
            copyToDead(window + 1, argument);
        }
        FINISH_CALL(*callee, window, 1, OPERAND_R(INSTRUCTION.a));
        LOAD_STATE();
        NEXT();
    }
    // The Drop of the call's result, which follows, is stepped over when there is none.
    OP(ArrayPush) {
        const RubyValue* const callee = OPERAND_G(INSTRUCTION.c);
        RubyValue* const array = OPERAND_R(INSTRUCTION.b);
        RubyValue* const value = OPERAND_R(INSTRUCTION.a);
        RubyValue* const window = base + m_current->code->firstTemporary + INSTRUCTION.n;
        SAVE();
        if (IS_SHORTCUT(callee, ArrayPush) && array->type == Type::Array) [[likely]] {
            pushElement(array, value, value == window + 2);
            if (array == window + 1) {
                releaseRegister(array);
            }
            ++pc;
            NEXT();
        }
        if (array != window + 1) {
            copyToDead(window + 1, array);
        }
        if (value != window + 2) {
            copyToDead(window + 2, value);
        }
        FINISH_CALL(*callee, window, 2, window);
        LOAD_STATE();
        NEXT();
    }

    OP(DefineFunction) {
        SAVE();
        defineFunction(m_current->code->definitions[static_cast<std::size_t>(INSTRUCTION.wide())]);
        NEXT();
    }

    OP(ReturnLocal) { returned = OPERAND_R(INSTRUCTION.a); }
returnValue : {
    RubyValue* const value = returned;
    Frame* const frame = m_current;
    RubyValue* result = frame->result;
    if (frame->marks != kPlainFrame) [[unlikely]] {
        if (frame->marks != kProtectedFrame || !isLonePair(result)) {
            SAVE();
            if (leaveFrame(value)) {
                return;
            }
            LOAD_FRAME(m_current);
            NEXT();
        }
        // The pair that ends here, mostly the last outcome of pcall, becomes the new one.
        RubyValue* const pair = static_cast<ArrayBox*>(result->data.box)->elements.data();
        setBoolean(pair, true);
        result = pair + 1;
    }
    const Type type = value->type;
    const RubyValue::Data data = value->data;
    value->type = Type::Nil;
    RubyValue* const lastLocal = base + frame->code->firstTemporary;
    for (RubyValue* local = base; local != lastLocal; ++local) {
        if (local->isBoxed()) {
            releaseRegister(local);
        }
    }
    if (result->isBoxed()) [[unlikely]] {
        releaseRegister(result);
    }
    result->type = type;
    result->data = data;
    const Frame* const caller = --m_current;
    if (frame->handle != nullptr && --frame->handle->references == 0) [[unlikely]] {
        destroyBox(static_cast<std::uint8_t>(Type::Function), frame->handle);
    }
    LOAD_FRAME(caller);
    NEXT();
}
// The first temporary, dead by now, takes the value to the common return.
#define RETURN_COPY(source)                                \
    {                                                      \
        returned = base + m_current->code->firstTemporary; \
        copyToDead(returned, source);                      \
        goto returnValue;                                  \
    }
    OP(ReturnConstant)
    RETURN_COPY(OPERAND_K(INSTRUCTION.wide()))
    OP(ReturnGlobal) RETURN_COPY(OPERAND_G(INSTRUCTION.wide())) OP(ReturnNil) { RETURN_COPY(&kNil) }
#if !MORVEL_THREADED
}
}
#endif
}

}  // namespace morvel::ruby::internal
