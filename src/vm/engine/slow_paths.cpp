// The parts of instructions that are rare or may fail, kept out of the loop.
#include <array>
#include <charconv>
#include <cstring>
#include <iterator>
#include <string_view>

#include "value/box_pools.h"
#include "value/operators.h"
#include "value/room.h"
#include "vm/engine/engine.h"
#include "vm/engine/registers.h"
#include "vm/engine/text_changes.h"
#include "vm/impl.h"
#include "vm/indexing.h"
#include "vm/operators.h"

namespace morvel::ruby::internal {

namespace {

bool isIntegerOrFloat(const RubyValue& value) { return value.isInteger() || value.isFloat(); }

double numberOf(const RubyValue& value) {
    return value.isInteger() ? static_cast<double>(value.data.integer) : value.data.floating;
}

/// True for an integer and a float: the one common pair of numbers that the loop does not handle.
bool areMixedNumbers(const RubyValue& left, const RubyValue& right) {
    return left.type != right.type && isIntegerOrFloat(left) && isIntegerOrFloat(right);
}

/// The operation on an integer and a float; false for operations with more to check.
template <OpCode Operation>
bool calculateMixed(RubyValue* target, const RubyValue& left, const RubyValue& right) {
    if (!areMixedNumbers(left, right)) {
        return false;
    }
    if constexpr (Operation == OpCode::Add) {
        assignRegister(target, RubyValue(numberOf(left) + numberOf(right)));
    } else if constexpr (Operation == OpCode::Subtract) {
        assignRegister(target, RubyValue(numberOf(left) - numberOf(right)));
    } else if constexpr (Operation == OpCode::Multiply) {
        assignRegister(target, RubyValue(numberOf(left) * numberOf(right)));
    } else {
        return false;
    }
    return true;
}

Answer answerOf(bool yes) { return yes ? Answer::Yes : Answer::No; }

/// A short string under construction.
class ShortText {
public:
    /// Adds the text of a string or an integer; false when it does not fit or the value is of another kind.
    bool append(const RubyValue& value) {
        char* const end = m_bytes.data() + m_size;
        if (value.isString()) {
            const std::string& text = value.asString();
            if (text.size() > kLongestShortString - m_size) {
                return false;
            }
            std::memcpy(end, text.data(), text.size());
            m_size += text.size();
            return true;
        }
        if (!value.isInteger()) {
            return false;
        }
        const auto written = std::to_chars(end, m_bytes.data() + kLongestShortString, value.data.integer);
        if (written.ec != std::errc()) {
            return false;
        }
        m_size = static_cast<std::size_t>(written.ptr - m_bytes.data());
        return true;
    }

    [[nodiscard]] std::string_view view() const { return {m_bytes.data(), m_size}; }

private:
    std::array<char, kLongestShortString> m_bytes;
    std::size_t m_size = 0;
};

}  // namespace

bool Engine::joinShort(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags) {
    if (!left->isString() && !right->isString()) {
        return false;
    }
    ShortText text;
    if (!text.append(*left) || !text.append(*right)) {
        return false;
    }
    RubyValue value = m_vm.shortStrings.valueOf(text.view());
    releaseIf((flags & kFirstDies) != 0, left);
    releaseIf((flags & kSecondDies) != 0, right);
    assignRegister(target, std::move(value));
    return true;
}

template <OpCode Operation>
Status Engine::arithmeticSlow(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags) {
    if (calculateMixed<Operation>(target, *left, *right)) {
        return Status::Done;
    }
    if constexpr (Operation == OpCode::Add) {
        const Attempt attempt = addTexts(target, left, right, flags);
        if (attempt != Attempt::Declined) {
            return attempt == Attempt::Failed ? Status::Failed : Status::Done;
        }
    }
    RubyValue value;
    if (checked(kBinaryFunctions[static_cast<std::size_t>(Operation)](*left, *right, value)) == Status::Failed) {
        return Status::Failed;
    }
    releaseIf((flags & kFirstDies) != 0, left);
    releaseIf((flags & kSecondDies) != 0, right);
    assignRegister(target, std::move(value));
    return Status::Done;
}

template Status Engine::arithmeticSlow<OpCode::Add>(RubyValue*, RubyValue*, RubyValue*, std::uint8_t);
template Status Engine::arithmeticSlow<OpCode::Subtract>(RubyValue*, RubyValue*, RubyValue*, std::uint8_t);
template Status Engine::arithmeticSlow<OpCode::Multiply>(RubyValue*, RubyValue*, RubyValue*, std::uint8_t);
template Status Engine::arithmeticSlow<OpCode::Divide>(RubyValue*, RubyValue*, RubyValue*, std::uint8_t);
template Status Engine::arithmeticSlow<OpCode::Modulo>(RubyValue*, RubyValue*, RubyValue*, std::uint8_t);

Attempt Engine::addTexts(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags) {
    if ((flags & kEndsAppend) != 0) {
        const Attempt attempt = endAppend(target, left, right, flags);
        if (attempt != Attempt::Declined) {
            return attempt;
        }
    }
    if (joinShort(target, left, right, flags)) {
        return Attempt::Done;
    }
    if (target == left && left->isString() && isLone(*left)) {
        if (append(boxOf(*left), *right) == Status::Failed) {
            return Attempt::Failed;
        }
        releaseIf((flags & kSecondDies) != 0 && right != left, right);
        return Attempt::Done;
    }
    return left->isString() ? addToText(target, left, right, flags) : Attempt::Declined;
}

Answer Engine::equalSlow(RubyValue* left, RubyValue* right, std::uint8_t flags) {
    if (!left->isBoxed() && left->type == right->type) {
        return answerOf(valuesEqual(*left, *right));
    }
    bool areEqual = false;
    if (checked(equal(*left, *right, areEqual)) == Status::Failed) {
        return Answer::Failed;
    }
    releaseIf((flags & kFirstDies) != 0, left);
    releaseIf((flags & kSecondDies) != 0, right);
    return answerOf(areEqual);
}

template <bool OrEqual>
Answer Engine::lessSlow(RubyValue* left, RubyValue* right, std::uint8_t flags) {
    if (areMixedNumbers(*left, *right)) {
        return answerOf(OrEqual ? numberOf(*left) <= numberOf(*right) : numberOf(*left) < numberOf(*right));
    }
    constexpr Ordering kOrdering = OrEqual ? Ordering::LessEqual : Ordering::Less;
    bool isLess = false;
    if (checked(compare(*left, *right, kOrdering, isLess)) == Status::Failed) {
        return Answer::Failed;
    }
    releaseIf((flags & kFirstDies) != 0, left);
    releaseIf((flags & kSecondDies) != 0, right);
    return answerOf(isLess);
}

template Answer Engine::lessSlow<false>(RubyValue*, RubyValue*, std::uint8_t);
template Answer Engine::lessSlow<true>(RubyValue*, RubyValue*, std::uint8_t);

void Engine::loadByte(RubyValue* target, const std::string& text, std::size_t position) {
    RubyValue& cached = m_byteStrings[static_cast<unsigned char>(text[position])];
    if (cached.isNil()) {
        cached = byteString(text[position]);
    }
    assignRegister(target, RubyValue(cached));
}

Status Engine::getIndexSlow(RubyValue* target, RubyValue* container, RubyValue* index, std::uint8_t flags) {
    // Integer keys take the fast path of the instruction.
    if (container->isMap() && index->isString()) {
        const RubyValue* found = container->asMap().findText(static_cast<StringBox*>(index->data.box));
        RubyValue value = found == nullptr ? RubyValue() : *found;
        releaseIf((flags & kFirstDies) != 0, container);
        releaseIf((flags & kSecondDies) != 0, index);
        assignRegister(target, std::move(value));
        return Status::Done;
    }
    if (container->isString() && index->isInteger() && (flags & kFirstDies) == 0) {
        const std::string& text = container->asString();
        const auto position = static_cast<std::size_t>(index->data.integer);
        if (position < text.size()) {
            loadByte(target, text, position);
            return Status::Done;
        }
    }
    RubyValue value;
    if (checked(getElement(*container, *index, value)) == Status::Failed) {
        return Status::Failed;
    }
    releaseIf((flags & kFirstDies) != 0, container);
    releaseIf((flags & kSecondDies) != 0, index);
    assignRegister(target, std::move(value));
    return Status::Done;
}

Answer Engine::testIndexSlow(RubyValue* container, RubyValue* index, std::uint8_t flags) {
    bool answer = false;
    if (container->isMap() && (index->isString() || index->isInteger())) {
        const RubyValue* found = container->asMap().findValue(*index);
        answer = found != nullptr && found->isTruthy();
    } else {
        RubyValue value;
        if (checked(getElement(*container, *index, value)) == Status::Failed) {
            return Answer::Failed;
        }
        answer = value.isTruthy();
    }
    releaseIf((flags & kFirstDies) != 0, container);
    releaseIf((flags & kSecondDies) != 0, index);
    return answerOf(answer);
}

Status Engine::setIndexSlow(RubyValue* container, RubyValue* index, RubyValue* value, std::uint8_t flags) {
    if (container->isArray() && index->isInteger()) {
        RubyArray& elements = container->asArray();
        const auto position = static_cast<std::size_t>(index->data.integer);
        if (position < elements.size()) {
            RubyValue old = std::move(elements[position]);
            if ((flags & kSecondDies) != 0) {
                moveRegister(&elements[position], value);
            } else {
                copyToDead(&elements[position], value);
            }
            return Status::Done;
        }
        if (position == elements.size()) {
            pushElement(container, value, (flags & kSecondDies) != 0);
            return Status::Done;
        }
    }
    if (container->isMap() && (index->isString() || index->isInteger())) {
        RubyValue& entry = container->asMap().findOrInsert(*index);
        releaseIf((flags & kFirstDies) != 0, index);
        const RubyValue old = std::move(entry);
        if ((flags & kSecondDies) != 0) {
            moveRegister(&entry, value);
        } else {
            copyToDead(&entry, value);
        }
        return Status::Done;
    }
    if (container->isString()) {
        const Attempt attempt = replaceByte(container, *index, value, flags);
        if (attempt != Attempt::Declined) {
            return attempt == Attempt::Failed ? Status::Failed : Status::Done;
        }
    }
    if (checked(setElement(*container, *index, *value)) == Status::Failed) {
        return Status::Failed;
    }
    releaseIf((flags & kFirstDies) != 0, index);
    releaseIf((flags & kSecondDies) != 0, value);
    return Status::Done;
}

Status Engine::negateSlow(RubyValue* target, RubyValue* value, std::uint8_t flags) {
    RubyValue negated;
    if (checked(negate(*value, negated)) == Status::Failed) {
        return Status::Failed;
    }
    releaseIf((flags & kFirstDies) != 0, value);
    assignRegister(target, std::move(negated));
    return Status::Done;
}

void Engine::pushElement(RubyValue* array, RubyValue* value, bool valueDies) {
    RubyArray& elements = array->asArray();
    if (valueDies) {
        appendElement(elements, std::move(*value));
    } else {
        appendElement(elements, *value);
    }
}

void Engine::makeArray(RubyValue* target, RubyValue* first, std::size_t count) {
    RubyValue array = makeArrayFor(count);
    array.asArray().assign(std::make_move_iterator(first), std::make_move_iterator(first + count));
    assignRegister(target, std::move(array));
}

void Engine::extendArray(RubyValue* array, std::size_t count, std::size_t length) {
    RubyArray& elements = array->asArray();
    elements.reserve(length);
    for (std::size_t i = 1; i <= count; ++i) {
        elements.push_back(std::move(array[i]));
    }
}

void Engine::defineFunction(const Definition& definition) {
    m_globals.setValue(definition.globalSlot, makeScriptFunction(*definition.name, definition.functionIndex,
                                                                 const_cast<Program&>(program()).shared_from_this()));
}

Status Engine::loadGlobal(RubyValue* target, std::size_t slot) {
    if (!m_globals.isDefined(slot)) {
        return failUndefined(slot);
    }
    assignRegister(target, RubyValue(m_globals.value(slot)));
    return Status::Done;
}

}  // namespace morvel::ruby::internal
