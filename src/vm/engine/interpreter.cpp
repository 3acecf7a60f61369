// The instruction loop.
//
// Rules that hold in it:
//  1. The frame's `next` is saved before anything that may fail or leave the frame, and the state is loaded again after
//     anything that may enter, leave or run other frames (load).
//  2. A dead register never holds a boxed value. Instructions that use up a temporary release it, unless it held a
//     scalar, which may be left behind.
//  3. Registers never move while a frame is active, and globals never do; frames may.
//  4. No object with a destructor lives in the loop, so exceptions may pass through it anywhere.
#include <cmath>
#include <cstddef>
#include <cstring>

#include "vm/engine/engine.h"
#include "vm/engine/registers.h"

#include "morvel/ruby/error.h"
#include "value/deferred_release.h"
#include "value/operators.h"
#include "vm/impl.h"

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

/// Releases the boxed value of a register. Kept out of the loop, because the test for one is all that is hot.
[[gnu::noinline, gnu::cold]] void releaseBoxed(RubyValue* target) { releaseRegister(target); }

[[gnu::always_inline]] inline void setInteger(RubyValue* target, std::uint64_t bits) {
    if (target->isBoxed()) [[unlikely]] {
        releaseBoxed(target);
    }
    target->type = Type::Integer;
    target->data.integer = static_cast<std::int64_t>(bits);
}

[[gnu::always_inline]] inline void setFloat(RubyValue* target, double number) {
    if (target->isBoxed()) [[unlikely]] {
        releaseBoxed(target);
    }
    target->type = Type::Float;
    target->data.floating = number;
}

[[gnu::always_inline]] inline void setBoolean(RubyValue* target, bool flag) {
    if (target->isBoxed()) [[unlikely]] {
        releaseBoxed(target);
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
    // Even an empty string has a first byte to read. One-byte strings are frequent: scanning a string gives them.
    if (leftText[0] != rightText[0] || leftText.size() != rightText.size()) {
        return false;
    }
    return leftText.size() <= 1 || std::memcmp(leftText.data(), rightText.data(), leftText.size()) == 0;
}

/// True when the order of two texts follows from their first bytes. An empty text has a zero there.
[[gnu::always_inline]] inline bool differAtFirst(const RubyValue* left, const RubyValue* right, int& difference) {
    const std::string& leftText = static_cast<const StringBox*>(left->data.box)->text;
    const std::string& rightText = static_cast<const StringBox*>(right->data.box)->text;
    difference = static_cast<unsigned char>(leftText[0]) - static_cast<unsigned char>(rightText[0]);
    return difference != 0 || (leftText.size() == 1 && rightText.size() == 1);
}

[[gnu::always_inline]] inline bool areUnboxed(const RubyValue* left, const RubyValue* right) {
    return !left->isBoxed() && !right->isBoxed();
}

/// True for an array of two elements that nothing else refers to, the first of which needs no release.
[[gnu::always_inline]] inline bool isReusablePair(const RubyValue* value) {
    if (value->type != Type::Array || value->data.box->references != 1) {
        return false;
    }
    const RubyArray& elements = static_cast<const ArrayBox*>(value->data.box)->elements;
    return elements.size() == 2 && !elements[0].isBoxed();
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

/// Stores `value` in an element or entry when there is nothing to release and no reference to count; false otherwise.
[[gnu::always_inline]] inline bool storePlain(RubyValue* element, const RubyValue* value) {
    if (areUnboxed(element, value)) [[likely]] {
        element->type = value->type;
        element->data = value->data;
        return true;
    }
    return false;
}

constinit const RubyValue kNil;

/// Copies a value out of a dying container to a register. The container goes first: it may be in the very register that
/// the value is for. Kept out of the loop, which then needs fewer machine registers itself.
[[gnu::noinline]] void copyOutOfDying(RubyValue* to, const RubyValue* from, RubyValue* container) {
    const Type type = from->type;
    const RubyValue::Data data = from->data;
    if (from->isBoxed()) {
        ++data.box->references;
    }
    releaseRegister(container);
    releaseRegister(to);
    to->type = type;
    to->data = data;
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
            static_assert(Operation == OpCode::Modulo);
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

/// The state of the loop. Each operation has one body, instantiated for each of its instructions; all are inlined into
/// the loop, so that the members live in the processor's registers.
struct Engine::Loop {
    /// What follows a body: the next instruction, the end of the run, or the delivery of the pending error.
    enum class [[nodiscard]] Step : std::uint8_t{Next, Leave, Fail};

    [[gnu::always_inline]] static Step stepOf(Status status) {
        return status == Status::Done ? Step::Next : Step::Fail;
    }

    Engine& engine;
    const Runs::Id run;
    /// The next instruction.
    const EngineInstruction* pc = nullptr;
    RubyValue* base = nullptr;
    const RubyValue* constants = nullptr;
    /// The top frame, as in the context.
    Frame* frame = nullptr;

    /// The instruction being carried out; `pc` is already past it.
    [[nodiscard, gnu::always_inline]] const EngineInstruction& instruction() const { return pc[-1]; }

    [[gnu::always_inline]] void save() const { frame->next = pc; }

    [[gnu::always_inline]] void loadFrame(Frame* top) {
        frame = top;
        base = top->base;
        constants = top->code->constants.data();
        pc = top->next;
    }

    [[gnu::always_inline]] void load() {
        if (deferredHosts != nullptr) [[unlikely]] {
            releaseDeferredHosts();
        }
        engine.m_runs.requireInnermost(run);
        loadFrame(engine.m_context.frame);
    }

    /// Operands are stored doubled and scaled by a machine word, half a value.
    [[gnu::always_inline]] static RubyValue* at(const RubyValue* area, std::size_t number) {
        return reinterpret_cast<RubyValue*>(reinterpret_cast<std::uint64_t*>(const_cast<RubyValue*>(area)) + number);
    }

    /// The location of operand `kIndex` of an instruction whose opcode is `kOp`.
    template <EngineOp kOp, std::size_t kIndex>
    [[nodiscard, gnu::always_inline]] RubyValue* operandOf(const EngineInstruction& now) const {
        constexpr EngineOperand kKind = infoOf(kOp).operands[kIndex];
        if constexpr (kKind == EngineOperand::WideConstant) {
            return at(constants, static_cast<std::size_t>(now.wide()));
        } else if constexpr (kKind == EngineOperand::WideGlobal) {
            return at(engine.m_context.globals, static_cast<std::size_t>(now.wide()));
        } else {
            const std::uint16_t number = kIndex == 0 ? now.a : kIndex == 1 ? now.b : now.c;
            return at(kKind == EngineOperand::Register   ? base
                      : kKind == EngineOperand::Constant ? constants
                                                         : engine.m_context.globals,
                      number);
        }
    }
    /// The same for the current instruction.
    template <EngineOp kOp, std::size_t kIndex>
    [[nodiscard, gnu::always_inline]] RubyValue* operand() const {
        return operandOf<kOp, kIndex>(instruction());
    }
    /// The same for the second instruction of the fused pair `kOp`, which is the next instruction.
    template <EngineOp kOp, std::size_t kIndex>
    [[nodiscard, gnu::always_inline]] RubyValue* nextOperand() const {
        return operandOf<pairOf(kOp)->second, kIndex>(*pc);
    }

    /// True when operand `kIndex` is a temporary that dies with this instruction, as its `kFlag` tells.
    template <EngineOp kOp, std::size_t kIndex, std::uint8_t kFlag>
    [[nodiscard, gnu::always_inline]] bool dies() const {
        return infoOf(kOp).operands[kIndex] == EngineOperand::Register && (instruction().n & kFlag) != 0;
    }

    [[gnu::always_inline]] void jumpShort() { pc += static_cast<std::int16_t>(instruction().c); }
    [[gnu::always_inline]] void jump() { pc += instruction().wide(); }

    /// Releases operands that are dying temporaries. Most are booleans, which need no release.
    [[gnu::always_inline]] static void releaseBoth(RubyValue* left, RubyValue* right, std::uint8_t flags) {
        if (left->isBoxed() || right->isBoxed()) [[unlikely]] {
            releaseIf((flags & kFirstDies) != 0, left);
            releaseIf((flags & kSecondDies) != 0, right);
        }
    }

    template <EngineOp kOp, OpCode kOperation>
    [[gnu::always_inline]] Step arithmetic() {
        RubyValue* const to = operand<kOp, 0>();
        RubyValue* const left = operand<kOp, 1>();
        RubyValue* const right = operand<kOp, 2>();
        if (!calculateNumbers<kOperation>(to, left, right)) [[unlikely]] {
            save();
            return stepOf(engine.arithmeticSlow<kOperation>(to, left, right, instruction().n));
        }
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doAdd() {
        return arithmetic<kOp, OpCode::Add>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doSubtract() {
        return arithmetic<kOp, OpCode::Subtract>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doMultiply() {
        return arithmetic<kOp, OpCode::Multiply>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doDivide() {
        return arithmetic<kOp, OpCode::Divide>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doModulo() {
        return arithmetic<kOp, OpCode::Modulo>();
    }

    /// The language orders integers by their values as doubles. Their own order is the same unless both are so large
    /// that different ones may have the same double.
    template <OpCode kTest>
    [[gnu::always_inline]] static bool compareIntegers(const RubyValue* left, const RubyValue* right) {
        const std::int64_t leftNumber = left->data.integer;
        const std::int64_t rightNumber = right->data.integer;
        if constexpr (kTest == OpCode::Equal) {
            return leftNumber == rightNumber;
        } else if constexpr (kTest == OpCode::NotEqual) {
            return leftNumber != rightNumber;
        } else {
            static_assert(kTest == OpCode::Less || kTest == OpCode::LessEqual);
            if (static_cast<std::int32_t>(leftNumber) == leftNumber) [[likely]] {
                return kTest == OpCode::Less ? leftNumber < rightNumber : leftNumber <= rightNumber;
            }
            const auto leftDouble = static_cast<double>(leftNumber);
            const auto rightDouble = static_cast<double>(rightNumber);
            return kTest == OpCode::Less ? leftDouble < rightDouble : leftDouble <= rightDouble;
        }
    }
    /// Compares operands that are not both integers.
    template <OpCode kTest>
    [[gnu::always_inline]] Answer compareOthers(RubyValue* left, RubyValue* right, std::uint8_t flags) {
        if constexpr (kTest == OpCode::Equal || kTest == OpCode::NotEqual) {
            constexpr bool kNegated = kTest == OpCode::NotEqual;
            if (left->type == Type::String && right->type == Type::String && flags == 0) {
                return areSameTexts(left, right) != kNegated ? Answer::Yes : Answer::No;
            }
            if ((left->type == Type::Nil || right->type == Type::Nil) && flags == 0) {
                return (left->type == right->type) != kNegated ? Answer::Yes : Answer::No;
            }
            save();
            const Answer answer = engine.equalSlow(left, right, flags);
            return !kNegated || answer == Answer::Failed ? answer : answer == Answer::Yes ? Answer::No : Answer::Yes;
        } else {
            constexpr bool kOrEqual = kTest == OpCode::LessEqual;
            if (areFloats(left, right)) {
                const bool isLess =
                    kOrEqual ? left->data.floating <= right->data.floating : left->data.floating < right->data.floating;
                return isLess ? Answer::Yes : Answer::No;
            }
            int difference = 0;
            if (left->type == Type::String && right->type == Type::String && flags == 0 &&
                differAtFirst(left, right, difference)) {
                return (kOrEqual ? difference <= 0 : difference < 0) ? Answer::Yes : Answer::No;
            }
            save();
            return engine.lessSlow<kOrEqual>(left, right, flags);
        }
    }
    template <EngineOp kOp, OpCode kTest>
    [[gnu::always_inline]] Step comparison() {
        RubyValue* const left = operand<kOp, 1>();
        RubyValue* const right = operand<kOp, 2>();
        bool isTrue;
        if (areIntegers(left, right)) [[likely]] {
            isTrue = compareIntegers<kTest>(left, right);
        } else {
            const Answer answer = compareOthers<kTest>(left, right, instruction().n);
            if (answer == Answer::Failed) [[unlikely]] {
                return Step::Fail;
            }
            isTrue = answer == Answer::Yes;
        }
        setBoolean(operand<kOp, 0>(), isTrue);
        return Step::Next;
    }
    template <EngineOp kOp, OpCode kTest, bool kWhen>
    [[gnu::always_inline]] Step comparingJump() {
        RubyValue* const left = operand<kOp, 0>();
        RubyValue* const right = operand<kOp, 1>();
        if (areIntegers(left, right)) {
            if (compareIntegers<kTest>(left, right) == kWhen) {
                jumpShort();
            }
            return Step::Next;
        }
        const Answer answer = compareOthers<kTest>(left, right, instruction().n);
        if (answer == Answer::Failed) [[unlikely]] {
            return Step::Fail;
        }
        if ((answer == Answer::Yes) == kWhen) {
            jumpShort();
        }
        return Step::Next;
    }
    template <EngineOp kOp, OpCode kTest>
    [[gnu::always_inline]] Step combination() {
        RubyValue* const left = operand<kOp, 1>();
        RubyValue* const right = operand<kOp, 2>();
        const std::uint8_t flags = instruction().n;
        bool isTrue;
        if (areIntegers(left, right)) {
            isTrue = compareIntegers<kTest>(left, right);
        } else {
            const Answer answer = compareOthers<kTest>(left, right, flags & (kFirstDies | kSecondDies));
            if (answer == Answer::Failed) [[unlikely]] {
                return Step::Fail;
            }
            isTrue = answer == Answer::Yes;
        }
        RubyValue* const result = operand<kOp, 0>();
        // Two of the three booleans have to be true.
        const bool combined = result->data.boolean + isTrue + ((flags & kCombinesByOr) != 0) > 1;
        if ((flags & (kJumpsIfFalse | kJumpsIfTrue)) != 0) {
            ++pc;
            if (combined == ((flags & kJumpsIfTrue) != 0)) {
                jump();
            }
        } else {
            result->data.boolean = combined;
        }
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doCombineEqual() {
        return combination<kOp, OpCode::Equal>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doCombineNotEqual() {
        return combination<kOp, OpCode::NotEqual>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doCombineLess() {
        return combination<kOp, OpCode::Less>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doCombineLessEqual() {
        return combination<kOp, OpCode::LessEqual>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doEqual() {
        return comparison<kOp, OpCode::Equal>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doJumpIfEqual() {
        return comparingJump<kOp, OpCode::Equal, true>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doJumpUnlessEqual() {
        return comparingJump<kOp, OpCode::Equal, false>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doNotEqual() {
        return comparison<kOp, OpCode::NotEqual>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doLess() {
        return comparison<kOp, OpCode::Less>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doJumpIfLess() {
        return comparingJump<kOp, OpCode::Less, true>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doJumpUnlessLess() {
        return comparingJump<kOp, OpCode::Less, false>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doLessEqual() {
        return comparison<kOp, OpCode::LessEqual>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doJumpIfLessEqual() {
        return comparingJump<kOp, OpCode::LessEqual, true>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doJumpUnlessLessEqual() {
        return comparingJump<kOp, OpCode::LessEqual, false>();
    }

    /// Copies a value that lives in a container, which may be a dying temporary, to a register.
    [[gnu::always_inline]] void copyElement(RubyValue* to, const RubyValue* from, RubyValue* container) {
        if ((instruction().n & kFirstDies) == 0) [[likely]] {
            copyOver(to, from);
        } else {
            copyOutOfDying(to, from, container);
        }
    }

    /// Finds the entry of a key that leaves nothing to release; false for other keys. The entry is null when there is
    /// none.
    [[nodiscard, gnu::always_inline]] static bool findEntry(RubyValue*& entry, const RubyValue* map,
                                                            const RubyValue* key, bool keyDies) {
        RubyMap& entries = static_cast<MapBox*>(map->data.box)->entries;
        if (key->type == Type::String && !keyDies) [[likely]] {
            entry = entries.findText(static_cast<StringBox*>(key->data.box));
            return true;
        }
        if (key->type == Type::Integer) [[likely]] {
            entry = entries.findInteger(key->data.integer);
            return true;
        }
        return false;
    }

    template <EngineOp kOp>
    [[gnu::always_inline]] Step doGetIndex() {
        RubyValue* const container = operand<kOp, 1>();
        RubyValue* const index = operand<kOp, 2>();
        RubyValue* const to = operand<kOp, 0>();
        if (container->type == Type::Array && index->type == Type::Integer) [[likely]] {
            const RubyArray& elements = static_cast<ArrayBox*>(container->data.box)->elements;
            const auto position = static_cast<std::size_t>(index->data.integer);
            if (position < elements.size()) [[likely]] {
                copyElement(to, elements.data() + position, container);
                return Step::Next;
            }
        } else if (RubyValue* found = nullptr;
                   container->type == Type::Map && findEntry(found, container, index, dies<kOp, 2, kSecondDies>())) {
            copyElement(to, found == nullptr ? &kNil : found, container);
            return Step::Next;
        } else if (container->type == Type::String && index->type == Type::Integer) {
            const std::string& text = static_cast<StringBox*>(container->data.box)->text;
            const auto position = static_cast<std::size_t>(index->data.integer);
            if (position < text.size()) {
                const RubyValue* const byte = &engine.m_byteStrings[static_cast<unsigned char>(text[position])];
                if (byte->isBoxed()) [[likely]] {
                    copyElement(to, byte, container);
                    return Step::Next;
                }
            }
        }
        save();
        return stepOf(engine.getIndexSlow(to, container, index, instruction().n));
    }

    template <EngineOp kOp, bool kWhen>
    [[gnu::always_inline]] Step testingIndex() {
        RubyValue* const container = operand<kOp, 0>();
        RubyValue* const index = operand<kOp, 1>();
        bool answer;
        if (container->type == Type::Array && index->type == Type::Integer &&
            static_cast<std::size_t>(index->data.integer) <
                static_cast<ArrayBox*>(container->data.box)->elements.size()) [[likely]] {
            answer = static_cast<ArrayBox*>(container->data.box)
                         ->elements[static_cast<std::size_t>(index->data.integer)]
                         .isTruthy();
            releaseIf((instruction().n & kFirstDies) != 0, container);
        } else {
            save();
            const Answer slow = engine.testIndexSlow(container, index, instruction().n);
            if (slow == Answer::Failed) [[unlikely]] {
                return Step::Fail;
            }
            answer = slow == Answer::Yes;
        }
        if (answer == kWhen) {
            jumpShort();
        }
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doJumpIfIndex() {
        return testingIndex<kOp, true>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doJumpUnlessIndex() {
        return testingIndex<kOp, false>();
    }

    template <EngineOp kOp>
    [[gnu::always_inline]] Step doSetIndex() {
        RubyValue* const container = operand<kOp, 0>();
        RubyValue* const index = operand<kOp, 1>();
        RubyValue* const value = operand<kOp, 2>();
        if (container->type == Type::Array && index->type == Type::Integer) [[likely]] {
            RubyArray& elements = static_cast<ArrayBox*>(container->data.box)->elements;
            const auto position = static_cast<std::size_t>(index->data.integer);
            if (position < elements.size()) [[likely]] {
                if (storePlain(elements.data() + position, value)) [[likely]] {
                    return Step::Next;
                }
            }
        } else if (RubyValue* found = nullptr;
                   container->type == Type::Map && findEntry(found, container, index, dies<kOp, 1, kFirstDies>())) {
            if (found != nullptr && storePlain(found, value)) [[likely]] {
                return Step::Next;
            }
        }
        save();
        return stepOf(engine.setIndexSlow(container, index, value, instruction().n));
    }

    /// The left operand is also the target: a number stays a number of its kind, so only its payload changes.
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doIncrease() {
        RubyValue* const sum = operand<kOp, 0>();
        RubyValue* const amount = operand<kOp, 1>();
        if (areIntegers(sum, amount)) {
            sum->data.integer = static_cast<std::int64_t>(static_cast<std::uint64_t>(sum->data.integer) +
                                                          static_cast<std::uint64_t>(amount->data.integer));
            return Step::Next;
        }
        if (areFloats(sum, amount)) {
            sum->data.floating += amount->data.floating;
            return Step::Next;
        }
        save();
        return stepOf(engine.arithmeticSlow<OpCode::Add>(sum, sum, amount, instruction().n));
    }
    // Fused pairs. What they do not handle is left to the bodies of the two instructions.

    template <EngineOp kOp>
    [[gnu::always_inline]] Step doIncreaseThenJump() {
        constexpr bool kOrEqual = infoOf(pairOf(kOp)->second).operation == Operation::JumpIfLessEqual;
        RubyValue* const sum = operand<kOp, 0>();
        const RubyValue* const amount = operand<kOp, 1>();
        const RubyValue* const limit = nextOperand<kOp, 1>();
        if (areIntegers(sum, amount) && limit->type == Type::Integer) [[likely]] {
            sum->data.integer = static_cast<std::int64_t>(static_cast<std::uint64_t>(sum->data.integer) +
                                                          static_cast<std::uint64_t>(amount->data.integer));
            ++pc;
            if (compareIntegers < kOrEqual ? OpCode::LessEqual : OpCode::Less > (sum, limit)) {
                jumpShort();
            }
            return Step::Next;
        }
        return doIncrease<kOp>();
    }

    /// The element of a possible array at a possible index; null when there is none.
    [[gnu::always_inline]] static RubyValue* findElement(const RubyValue* container, const RubyValue* index) {
        return container->type == Type::Array && index->type == Type::Integer
                   ? findElement(container, static_cast<std::uint64_t>(index->data.integer))
                   : nullptr;
    }
    /// The same for an array.
    [[gnu::always_inline]] static RubyValue* findElement(const RubyValue* array, std::uint64_t position) {
        RubyArray& elements = static_cast<ArrayBox*>(array->data.box)->elements;
        return position < elements.size() ? elements.data() + position : nullptr;
    }

    /// The index of the next instruction is the sum or difference.
    template <EngineOp kOp, OpCode kOperation>
    [[gnu::always_inline]] Step arithmeticThenGetIndex() {
        const RubyValue* const left = operand<kOp, 1>();
        const RubyValue* const right = operand<kOp, 2>();
        RubyValue* const container = nextOperand<kOp, 1>();
        if (container->type == Type::Array && areIntegers(left, right)) [[likely]] {
            const auto leftBits = static_cast<std::uint64_t>(left->data.integer);
            const auto rightBits = static_cast<std::uint64_t>(right->data.integer);
            const RubyValue* const element =
                findElement(container, kOperation == OpCode::Add ? leftBits + rightBits : leftBits - rightBits);
            if (element != nullptr) [[likely]] {
                RubyValue* const to = nextOperand<kOp, 0>();
                ++pc;
                copyElement(to, element, container);
                return Step::Next;
            }
        }
        return arithmetic<kOp, kOperation>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doAddThenGetIndex() {
        return arithmeticThenGetIndex<kOp, OpCode::Add>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doSubtractThenGetIndex() {
        return arithmeticThenGetIndex<kOp, OpCode::Subtract>();
    }
    /// The element is the container of the next instruction. Nothing can release it in between, so it is not counted.
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doGetIndexThenGetIndex() {
        const RubyValue* const row = findElement(operand<kOp, 1>(), operand<kOp, 2>());
        if (row != nullptr) [[likely]] {
            const RubyValue* const element = findElement(row, nextOperand<kOp, 2>());
            if (element != nullptr) [[likely]] {
                copyOver(nextOperand<kOp, 0>(), element);
                ++pc;
                return Step::Next;
            }
        }
        return doGetIndex<kOp>();
    }
    /// The next instruction stores the element.
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doGetIndexThenSetIndex() {
        const RubyValue* const from = findElement(operand<kOp, 1>(), operand<kOp, 2>());
        if (from != nullptr) [[likely]] {
            RubyValue* const to = findElement(nextOperand<kOp, 0>(), nextOperand<kOp, 1>());
            if (to != nullptr && storePlain(to, from)) [[likely]] {
                ++pc;
                return Step::Next;
            }
        }
        return doGetIndex<kOp>();
    }
    /// The element is the right operand of the next instruction.
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doGetIndexThenAdd() {
        const RubyValue* const right = findElement(operand<kOp, 1>(), operand<kOp, 2>());
        if (right != nullptr) [[likely]] {
            const RubyValue* const left = nextOperand<kOp, 1>();
            if (calculateNumbers<OpCode::Add>(nextOperand<kOp, 0>(), left, right)) [[likely]] {
                ++pc;
                return Step::Next;
            }
        }
        return doGetIndex<kOp>();
    }
    /// The product is an operand of the next instruction. The sum of two numbers does not depend on their order.
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doMultiplyThenAdd() {
        RubyValue* const other = at(base, pc->b == instruction().a ? pc->c : pc->b);
        return multiplyThenAdd<kOp>(nextOperand<kOp, 0>(), other);
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doMultiplyThenIncrease() {
        RubyValue* const sum = nextOperand<kOp, 0>();
        return multiplyThenAdd<kOp>(sum, sum);
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step multiplyThenAdd(RubyValue* to, const RubyValue* other) {
        const RubyValue* const left = operand<kOp, 1>();
        const RubyValue* const right = operand<kOp, 2>();
        if (areFloats(left, right) && other->type == Type::Float) {
            setFloat(to, left->data.floating * right->data.floating + other->data.floating);
        } else if (areIntegers(left, right) && other->type == Type::Integer) {
            setInteger(
                to, static_cast<std::uint64_t>(left->data.integer) * static_cast<std::uint64_t>(right->data.integer) +
                        static_cast<std::uint64_t>(other->data.integer));
        } else {
            return arithmetic<kOp, OpCode::Multiply>();
        }
        ++pc;
        return Step::Next;
    }
    /// The next instruction compares the remainder.
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doModuloThenJump() {
        const RubyValue* const left = operand<kOp, 1>();
        const RubyValue* const right = operand<kOp, 2>();
        const RubyValue* const expected = nextOperand<kOp, 1>();
        if (areIntegers(left, right) && right->data.integer != 0 && expected->type == Type::Integer) [[likely]] {
            ++pc;
            if (remainderOf(left->data.integer, right->data.integer) != expected->data.integer) {
                jumpShort();
            }
            return Step::Next;
        }
        return arithmetic<kOp, OpCode::Modulo>();
    }

    template <EngineOp kOp>
    [[gnu::always_inline]] Step doCopyLocal() {
        copyOver(operand<kOp, 0>(), operand<kOp, 1>());
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doLoadConstant() {
        copyOver(operand<kOp, 0>(), operand<kOp, 1>());
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doLoadGlobal() {
        copyOver(operand<kOp, 0>(), operand<kOp, 1>());
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doMoveTemporary() {
        moveOver(operand<kOp, 0>(), operand<kOp, 1>());
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doPassLocal() {
        copyToDead(operand<kOp, 0>(), operand<kOp, 1>());
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doPassConstant() {
        copyToDead(operand<kOp, 0>(), operand<kOp, 1>());
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doPassGlobal() {
        copyToDead(operand<kOp, 0>(), operand<kOp, 1>());
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doCheckGlobal() {
        if (operand<kOp, 1>()->type == kUndefinedType) [[unlikely]] {
            save();
            return stepOf(engine.failUndefined(static_cast<std::size_t>(instruction().wide()) / 2));
        }
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doLoadLocalOrGlobal() {
        const auto number = static_cast<std::size_t>(instruction().wide());
        const LocalFallback& fallback = frame->code->fallbacks[number];
        const RubyValue* const local = at(base, fallback.local);
        save();
        if (local->type == kUndefinedType) {
            return stepOf(engine.loadGlobal(operand<kOp, 0>(), fallback.globalSlot));
        }
        assignRegister(operand<kOp, 0>(), RubyValue(*local));
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doStoreGlobalMove() {
        moveOver(operand<kOp, 1>(), operand<kOp, 0>());
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doLoadFarGlobal() {
        save();
        return stepOf(engine.loadGlobal(operand<kOp, 0>(), static_cast<std::size_t>(instruction().wide())));
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doStoreFarGlobal() {
        engine.m_globals.setValue(static_cast<std::size_t>(instruction().wide()), *operand<kOp, 0>());
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doDrop() {
        releaseRegister(operand<kOp, 0>());
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doNegate() {
        RubyValue* const to = operand<kOp, 0>();
        RubyValue* const value = operand<kOp, 1>();
        if (value->type == Type::Integer) [[likely]] {
            setInteger(to, 0 - static_cast<std::uint64_t>(value->data.integer));
        } else if (value->type == Type::Float) {
            setFloat(to, -value->data.floating);
        } else {
            save();
            return stepOf(engine.negateSlow(to, value, instruction().n));
        }
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doNot() {
        RubyValue* const value = operand<kOp, 1>();
        const bool answer = !value->isTruthy();
        releaseIf((instruction().n & kFirstDies) != 0, value);
        setBoolean(operand<kOp, 0>(), answer);
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doAnd() {
        RubyValue* const left = operand<kOp, 1>();
        RubyValue* const right = operand<kOp, 2>();
        const bool answer = left->isTruthy() && right->isTruthy();
        releaseBoth(left, right, instruction().n);
        setBoolean(operand<kOp, 0>(), answer);
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doOr() {
        RubyValue* const left = operand<kOp, 1>();
        RubyValue* const right = operand<kOp, 2>();
        const bool answer = left->isTruthy() || right->isTruthy();
        releaseBoth(left, right, instruction().n);
        setBoolean(operand<kOp, 0>(), answer);
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doMakeArray() {
        save();
        engine.makeArray(operand<kOp, 0>(), operand<kOp, 1>(), instruction().c);
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doExtendArray() {
        save();
        Engine::extendArray(operand<kOp, 0>(), instruction().n, static_cast<std::size_t>(instruction().wide()));
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doJump() {
        jump();
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doJumpIfFalse() {
        RubyValue* const condition = operand<kOp, 0>();
        if (!condition->isTruthy()) {
            jump();
        } else if ((instruction().n & kFirstDies) != 0) {
            releaseRegister(condition);
        }
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doJumpIfTrue() {
        RubyValue* const condition = operand<kOp, 0>();
        if (condition->isTruthy()) {
            releaseIf((instruction().n & kFirstDies) != 0, condition);
            jump();
        }
        return Step::Next;
    }
    template <EngineOp kOp, bool kBoth, bool kWhen>
    [[gnu::always_inline]] Step logicalJump() {
        RubyValue* const left = operand<kOp, 0>();
        RubyValue* const right = operand<kOp, 1>();
        const std::ptrdiff_t distance = static_cast<std::int16_t>(instruction().c);
        const bool answer = kBoth ? left->isTruthy() && right->isTruthy() : left->isTruthy() || right->isTruthy();
        releaseBoth(left, right, instruction().n);
        if (answer == kWhen) {
            pc += distance;
        }
        return Step::Next;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doJumpUnlessBoth() {
        return logicalJump<kOp, true, false>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doJumpUnlessEither() {
        return logicalJump<kOp, false, false>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doJumpIfBoth() {
        return logicalJump<kOp, true, true>();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doJumpIfEither() {
        return logicalJump<kOp, false, true>();
    }

    /// Calls through the general path.
    [[gnu::always_inline]] Step callGeneral(const RubyValue& callee, RubyValue* window, std::size_t argumentCount,
                                            RubyValue* result) {
        return afterCall(engine.callFunction(callee, window, argumentCount, result));
    }
    [[gnu::always_inline]] Step afterCall(Status status) {
        if (status == Status::Failed) [[unlikely]] {
            return Step::Fail;
        }
        load();
        return Step::Next;
    }

    /// The translation of a script function when a call with this many arguments can enter it at once: it belongs to
    /// the caller's program, takes that many arguments and has room. Null otherwise.
    [[gnu::always_inline]] const Code* enterable(const RubyValue* function, const RubyValue* window,
                                                 std::size_t argumentCount) const {
        if (function->type != Type::Function) [[unlikely]] {
            return nullptr;
        }
        const auto& known = FunctionInternals::of(*static_cast<const RubyFunctionHandle*>(function->data.box));
        if (known.callKey != frame->code->programKey + argumentCount) [[unlikely]] {
            return nullptr;
        }
        const Code* const code = static_cast<const Code*>(&known);
        return hasRoomFor(engine.m_context, frame, *code, window) ? code : nullptr;
    }
    template <EngineOp kOp, bool kInWindow>
    [[gnu::always_inline]] Step call(const RubyValue* function) {
        RubyValue* const window = operand<kOp, 0>();
        save();
        const Code* const code = enterable(function, window, instruction().n);
        if (code == nullptr) [[unlikely]] {
            return callOther<kOp, kInWindow>(function, window);
        }
        if constexpr (kInWindow) {
            // The caller keeps the program alive.
            releaseRegister(window);
        }
        enter(*code, window + 1);
        return Step::Next;
    }
    template <EngineOp kOp, bool kInWindow>
    [[gnu::always_inline]] Step callOther(const RubyValue* function, RubyValue* window) {
        const std::uint8_t argumentCount = instruction().n;
        if (function->type == Type::Function) [[likely]] {
            const auto& handle = *static_cast<const RubyFunctionHandle*>(function->data.box);
            const FunctionInternals& known = FunctionInternals::of(handle);
            if (known.numberFunction != nullptr) {
                if (known.numberFunction(window + 1, argumentCount, operand<kOp, 1>())) [[likely]] {
                    releaseRegister(window);
                    return Step::Next;
                }
                return callGeneral(*function, window, argumentCount, operand<kOp, 1>());
            }
            if (handle.nativeFunction != nullptr && handle.intrinsic == RubyFunctionHandle::Intrinsic::None) {
                engine.callNative(handle, window, argumentCount, operand<kOp, 1>());
                load();
                return Step::Next;
            }
            if (handle.intrinsic == RubyFunctionHandle::Intrinsic::Pcall) {
                const Code* const code =
                    argumentCount == 0 ? nullptr : enterable(window + 1, window + 1, argumentCount - 1);
                if (code != nullptr && code->isProtectable) {
                    engine.m_vm.prepareSpareOutcome();
                    releaseRegister(window);
                    releaseRegister(window + 1);
                    frame[1].flags = kProtectedFrame;
                    frame[1].result = operand<kOp, 1>();
                    frame[1].handle = nullptr;
                    enter(*code, window + 2);
                    return Step::Next;
                }
                return afterCall(engine.callProtected(window, argumentCount, operand<kOp, 1>()));
            }
            if (known.engine == engine.m_identity.get()) {
                const Code& code = static_cast<const Code&>(known);
                if (code.parameterCount == argumentCount && hasRoomFor(engine.m_context, frame, code, window)) {
                    enterOtherProgram<kInWindow>(code, function, window, operand<kOp, 1>());
                    return Step::Next;
                }
            }
        }
        return callGeneral(*function, window, argumentCount, operand<kOp, 1>());
    }
    /// The frame keeps the program alive by a reference to the callee, which may be in a variable that is rebound.
    template <bool kInWindow>
    [[gnu::always_inline]] void enterOtherProgram(const Code& code, const RubyValue* function, RubyValue* window,
                                                  RubyValue* result) {
        frame[1].flags = kRecordedFrame;
        frame[1].result = result;
        frame[1].handle = static_cast<RubyFunctionHandle*>(function->data.box);
        if constexpr (kInWindow) {
            window->type = Type::Nil;
        } else {
            ++frame[1].handle->references;
        }
        enter(code, window + 1);
    }
    [[gnu::always_inline]] void enter(const Code& code, RubyValue* registers) {
        ++frame;
        frame->code = &code;
        frame->base = registers;
        engine.m_context.frame = frame;
        base = registers;
        constants = code.constants.data();
        pc = code.instructions.data();
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doCallGlobal() {
        return call<kOp, false>(operand<kOp, 2>());
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doCallRegister() {
        return call<kOp, true>(operand<kOp, 0>());
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doCallWithArray() {
        save();
        return afterCall(engine.callWithArray(operand<kOp, 0>(), operand<kOp, 1>()));
    }

    /// True when the callee still is the built-in that the translation found under its name.
    [[gnu::always_inline]] static bool isShortcut(const RubyValue* callee, Shortcut shortcut) {
        return callee->type == Type::Function &&
               FunctionInternals::of(*static_cast<const RubyFunctionHandle*>(callee->data.box)).shortcut == shortcut;
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doLen() {
        const RubyValue* const callee = operand<kOp, 2>();
        RubyValue* const argument = operand<kOp, 1>();
        RubyValue* const window = base + frame->code->firstTemporary + instruction().n;
        if (isShortcut(callee, Shortcut::Len)) [[likely]] {
            if (argument->type == Type::Array && argument != window + 1) {
                setInteger(operand<kOp, 0>(), static_cast<ArrayBox*>(argument->data.box)->elements.size());
                return Step::Next;
            }
            if (argument->type == Type::String && argument != window + 1) {
                setInteger(operand<kOp, 0>(), static_cast<StringBox*>(argument->data.box)->text.size());
                return Step::Next;
            }
        }
        save();
        if (argument != window + 1) {
            copyToDead(window + 1, argument);
        }
        return callGeneral(*callee, window, 1, operand<kOp, 0>());
    }
    /// Skips the Drop that follows when there is no result to drop.
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doArrayPush() {
        const RubyValue* const callee = operand<kOp, 2>();
        RubyValue* const array = operand<kOp, 1>();
        RubyValue* const value = operand<kOp, 0>();
        RubyValue* const window = base + frame->code->firstTemporary + instruction().n;
        save();
        if (isShortcut(callee, Shortcut::ArrayPush) && array->type == Type::Array) [[likely]] {
            pushElement(array, value, value == window + 2);
            if (array == window + 1) {
                releaseRegister(array);
            }
            ++pc;
            return Step::Next;
        }
        if (array != window + 1) {
            copyToDead(window + 1, array);
        }
        if (value != window + 2) {
            copyToDead(window + 2, value);
        }
        return callGeneral(*callee, window, 2, window);
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doDefineFunction() {
        save();
        engine.defineFunction(frame->code->definitions[static_cast<std::size_t>(instruction().wide())]);
        return Step::Next;
    }

    template <EngineOp kOp>
    [[gnu::always_inline]] Step doReturnLocal() {
        RubyValue* const value = operand<kOp, 0>();
        const Type type = value->type;
        value->type = Type::Nil;
        return returnValue(type, value->data);
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doReturnConstant() {
        return returnCopy(operand<kOp, 1>());
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doReturnGlobal() {
        return returnCopy(operand<kOp, 1>());
    }
    template <EngineOp kOp>
    [[gnu::always_inline]] Step doReturnNil() {
        return returnValue(Type::Nil, {});
    }
    [[gnu::always_inline]] Step returnCopy(const RubyValue* source) {
        if (source->isBoxed()) {
            ++source->data.box->references;
        }
        return returnValue(source->type, source->data);
    }
    [[gnu::always_inline]] Step returnValue(Type type, RubyValue::Data data) {
        Frame* const caller = frame - 1;
        const EngineInstruction* const next = caller->next;
        RubyValue* const callerBase = caller->base;
        RubyValue* result = nullptr;
        if (frame->flags == kPlainFrame) [[likely]] {
            result = at(callerBase, next[-1].b);
        } else {
            if (frame->flags == kRecordedFrame) {
                leaveRecordedFrame(engine.m_context, type, data);
                loadFrame(caller);
                return Step::Next;
            }
            if (frame->flags != kProtectedFrame || !isReusablePair(frame->result)) {
                return leaveSpecial(type, data);
            }
            // Reuses the pair that would end here, usually the previous outcome of pcall.
            RubyValue* const pair = static_cast<ArrayBox*>(frame->result->data.box)->elements.data();
            pair->type = Type::Boolean;
            pair->data.boolean = true;
            result = pair + 1;
            frame->flags = kPlainFrame;
        }
        if (((typeBits(base, result) | instruction().n) & kReleasesMany) != 0) [[unlikely]] {
            deliverResult(*frame, result, type, data);
        } else {
            result->type = type;
            result->data = data;
        }
        frame = caller;
        engine.m_context.frame = caller;
        base = callerBase;
        constants = caller->code->constants.data();
        pc = next;
        return Step::Next;
    }
    [[gnu::always_inline]] Step leaveSpecial(Type type, RubyValue::Data data) {
        save();
        // The first temporary is dead by now.
        RubyValue* const value = base + frame->code->firstTemporary;
        value->type = type;
        value->data = data;
        if (engine.leaveFrame(value)) {
            return Step::Leave;
        }
        loadFrame(engine.m_context.frame);
        return Step::Next;
    }
};

void Engine::interpret(std::size_t entry, Runs::Id run) {
    using Step = Loop::Step;
    Loop loop{*this, run};
    loop.load();
#if MORVEL_THREADED
    static const void* const kLabels[] = {
#define MORVEL_LABEL(name, ...) &&label##name,
        MORVEL_ENGINE_INSTRUCTIONS(MORVEL_LABEL)
#undef MORVEL_LABEL
    };
#define NEXT() goto* kLabels[static_cast<std::size_t>((loop.pc++)->op)]
    NEXT();
failed:
    deliverPendingError(entry);
    loop.load();
    NEXT();
    // clang-format off
#define MORVEL_BODY(name, operation, ...)                    \
    label##name:                                             \
    switch (loop.do##operation<EngineOp::name>()) {          \
        case Step::Leave: return;                            \
        case Step::Fail: goto failed;                        \
        case Step::Next: break;                              \
    }                                                        \
    NEXT();
    // clang-format on
    MORVEL_ENGINE_INSTRUCTIONS(MORVEL_BODY)
#undef MORVEL_BODY
#undef NEXT
#else
    while (true) {
        Step step = Step::Next;
        switch ((loop.pc++)->op) {
#define MORVEL_BODY(name, operation, ...)            \
    case EngineOp::name:                             \
        step = loop.do##operation<EngineOp::name>(); \
        break;
            MORVEL_ENGINE_INSTRUCTIONS(MORVEL_BODY)
#undef MORVEL_BODY
        }
        if (step == Step::Leave) {
            return;
        }
        if (step == Step::Fail) {
            deliverPendingError(entry);
            loop.load();
        }
    }
#endif
}

}  // namespace morvel::ruby::internal
