// Texts that are changed where they are, so that building one piece by piece takes time in proportion to its length.
// A string is changed in place when what the script can still read of it is the very variable or element that the
// result is for.
#include "vm/engine/text_changes.h"

#include <string>
#include <utility>

#include "value/operators.h"
#include "value/render.h"
#include "vm/engine/engine.h"
#include "vm/engine/registers.h"

namespace morvel::ruby::internal {

namespace {

/// True when the two hold the same string, and nothing else does.
bool shareString(const RubyValue& left, const RubyValue& right) {
    return left.isString() && right.isString() && left.data.box == right.data.box && left.data.box->references == 2;
}

/// The element or entry that is there already; null when there is none, and for uncommon kinds of keys.
RubyValue* findElement(RubyValue& container, const RubyValue& index) {
    if (container.isArray() && index.isInteger()) {
        const auto position = static_cast<std::size_t>(index.data.integer);
        return position < container.asArray().size() ? &container.asArray()[position] : nullptr;
    }
    if (container.isMap() && (index.isString() || index.isInteger())) {
        return container.asMap().findValue(index);
    }
    return nullptr;
}

}  // namespace

void append(StringBox& box, const RubyValue& part) {
    if (part.isString()) {
        box.text += part.asString();
    } else {
        // A rendering may fail half-way.
        std::string text;
        appendText(text, part);
        box.text += text;
    }
    box.hash = 0;
}

RubyValue Engine::operandText(const RubyValue& value) const {
    return value.isString() ? value : withOverflowLocated([&] { return RubyValue(value.toString()); });
}

RubyValue* Engine::replacedNext(const RubyValue* value) const {
    const EngineInstruction& next = *m_current->next;
    const auto isRegister = [&](std::uint16_t number) { return m_current->base + number / 2 == value; };
    if (next.op == EngineOp::StoreGlobalMove) {
        return isRegister(next.a) ? m_globals.values() + next.wide() / 2 : nullptr;
    }
    const EngineOpInfo& info = infoOf(next.op);
    if (info.operation != Operation::SetIndex || (next.n & kSecondDies) == 0 || !isRegister(next.c)) {
        return nullptr;
    }
    RubyValue* const containers = info.operands[0] == EngineOperand::Register ? m_current->base : m_globals.values();
    const RubyValue* const indices = info.operands[1] == EngineOperand::Register   ? m_current->base
                                     : info.operands[1] == EngineOperand::Constant ? m_current->code->constants.data()
                                                                                   : m_globals.values();
    return findElement(containers[next.a / 2], indices[next.b / 2]);
}

bool Engine::isReplacedNext(const RubyValue* text) const {
    if (text->data.box->references != 2) {
        return false;
    }
    const RubyValue* const place = replacedNext(text);
    return place != nullptr && shareString(*place, *text);
}

void Engine::releaseLastValue(const RubyValue& text, std::uint8_t flags) const {
    if ((flags & kLastValueDies) != 0) {
        RubyValue* const lastValue = m_current->base + m_current->code->localCount;
        if (lastValue->isString() && lastValue->data.box == text.data.box) {
            releaseRegister(lastValue);
        }
    }
}

bool Engine::addToText(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags) {
    releaseLastValue(*left, flags);
    const bool leftDies = (flags & kFirstDies) != 0;
    if (target != left && leftDies && shareString(*target, *left)) {
        // What the result replaces is the left operand itself.
        releaseRegister(left);
        left = target;
    }
    const bool leftEnds = leftDies || target == left;
    if (leftEnds && (isLone(*left) || (target == left && isReplacedNext(left)))) {
        withOverflowLocated([&] { append(boxOf(*left), *right); });
        releaseIf((flags & kSecondDies) != 0 && right != left, right);
        if (target != left) {
            releaseRegister(target);
            moveRegister(target, left);
        }
        return true;
    }
    if ((flags & kBeginsAppend) != 0) {
        beginAppend(target, left, right, flags);
        return true;
    }
    return false;
}

void Engine::beginAppend(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags) {
    RubyValue parts = operandText(*right);
    RubyValue* const waiting = target - 1;
    if (left != waiting && (flags & kFirstDies) != 0) {
        moveRegister(waiting, left);
    } else if (left != waiting) {
        copyToDead(waiting, left);
    }
    releaseIf((flags & kSecondDies) != 0, right);
    assignRegister(target, std::move(parts));
}

bool Engine::endAppend(RubyValue* target, RubyValue* parts, RubyValue* right, std::uint8_t flags) {
    RubyValue* const waiting = parts - 1;
    if (!waiting->isString()) {
        return false;
    }
    if (isLone(*parts)) {
        withOverflowLocated([&] { append(boxOf(*parts), *right); });
    } else {
        assignRegister(parts, addValues(*parts, *right, program(), line()));
    }
    releaseIf((flags & kSecondDies) != 0, right);
    releaseLastValue(*waiting, flags);
    const bool isInTarget = target != waiting && shareString(*target, *waiting);
    if (isLone(*waiting) || isInTarget || (target == waiting && isReplacedNext(waiting))) {
        append(boxOf(*waiting), *parts);
        if (target != waiting) {
            releaseRegister(target);
            moveRegister(target, waiting);
        }
    } else {
        RubyValue joined = addValues(*waiting, *parts, program(), line());
        releaseRegister(waiting);
        assignRegister(target, std::move(joined));
    }
    releaseRegister(parts);
    return true;
}

bool Engine::replaceByte(RubyValue* container, const RubyValue& index, RubyValue* value, std::uint8_t flags) {
    releaseLastValue(*container, flags);
    if (!index.isInteger()) {
        return false;
    }
    const auto position = static_cast<std::size_t>(index.data.integer);
    if (position >= container->asString().size() || !(isLone(*container) || isReplacedNext(container))) {
        return false;
    }
    const RubyValue replacement = operandText(*value);
    if (replacement.asString().empty()) {
        return false;
    }
    boxOf(*container).text[position] = replacement.asString().front();
    boxOf(*container).hash = 0;
    releaseIf((flags & kSecondDies) != 0, value);
    return true;
}

}  // namespace morvel::ruby::internal
