// Changes strings in place, so that building one piece by piece takes time proportional to its length. A string is
// changed in place when the script can read it only through the variable or element that the result goes to.
#include "vm/engine/text_changes.h"

#include <string>
#include <utility>

#include "value/operators.h"
#include "value/room.h"
#include "vm/engine/engine.h"
#include "vm/engine/registers.h"

namespace morvel::ruby::internal {

namespace {

/// True when the two hold the same string, and nothing else does.
bool shareString(const RubyValue& left, const RubyValue& right) {
    return left.isString() && right.isString() && left.data.box == right.data.box && left.data.box->references == 2;
}

/// The existing element or entry; null when there is none, and for uncommon kinds of keys.
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

Status Engine::append(StringBox& box, const RubyValue& part) {
    if (box.text.size() >= kLargeBuffer / 2 && part.isString()) [[unlikely]] {
        makeTextRoom(box.text, part.asString().size());
    }
    const Fault fault = appendOperand(box.text, part);
    box.keyHash = 0;
    return checked(fault);
}

Status Engine::operandText(const RubyValue& value, RubyValue& text) {
    if (value.isString()) {
        text = value;
        return Status::Done;
    }
    std::string rendered;
    const Fault fault = appendOperand(rendered, value);
    text = RubyValue(std::move(rendered));
    return checked(fault);
}

RubyValue* Engine::replacedNext(const RubyValue* value) const {
    const EngineInstruction& next = *m_context.frame->next;
    const auto isRegister = [&](std::uint16_t number) { return m_context.frame->base + number / 2 == value; };
    if (next.op == EngineOp::StoreGlobalMove) {
        return isRegister(next.a) ? m_context.globals + next.wide() / 2 : nullptr;
    }
    if (next.op == EngineOp::StoreFarGlobal) {
        return isRegister(next.a) ? &m_globals.valueAt(static_cast<std::size_t>(next.wide())) : nullptr;
    }
    const EngineOpInfo& info = infoOf(next.op);
    if (info.operation != Operation::SetIndex || (next.n & kSecondDies) == 0 || !isRegister(next.c)) {
        return nullptr;
    }
    RubyValue* const containers =
        info.operands[0] == EngineOperand::Register ? m_context.frame->base : m_context.globals;
    const RubyValue* const indices = info.operands[1] == EngineOperand::Register ? m_context.frame->base
                                     : info.operands[1] == EngineOperand::Constant
                                         ? m_context.frame->code->constants.data()
                                         : m_context.globals;
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
        RubyValue* const lastValue = m_context.frame->base + m_context.frame->code->localCount;
        if (lastValue->isString() && lastValue->data.box == text.data.box) {
            releaseRegister(lastValue);
        }
    }
}

Attempt Engine::addToText(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags) {
    releaseLastValue(*left, flags);
    const bool leftDies = (flags & kFirstDies) != 0;
    if (target != left && leftDies && shareString(*target, *left)) {
        // The result replaces the left operand itself.
        releaseRegister(left);
        left = target;
    }
    const bool leftEnds = leftDies || target == left;
    if (leftEnds && (isLone(*left) || (target == left && isReplacedNext(left)))) {
        if (append(boxOf(*left), *right) == Status::Failed) {
            return Attempt::Failed;
        }
        releaseIf((flags & kSecondDies) != 0 && right != left, right);
        if (target != left) {
            releaseRegister(target);
            moveRegister(target, left);
        }
        return Attempt::Done;
    }
    if ((flags & kBeginsAppend) != 0) {
        return beginAppend(target, left, right, flags) == Status::Failed ? Attempt::Failed : Attempt::Done;
    }
    return Attempt::Declined;
}

Status Engine::beginAppend(RubyValue* target, RubyValue* left, RubyValue* right, std::uint8_t flags) {
    RubyValue parts;
    if (operandText(*right, parts) == Status::Failed) {
        return Status::Failed;
    }
    RubyValue* const waiting = target - 1;
    if (left != waiting && (flags & kFirstDies) != 0) {
        moveRegister(waiting, left);
    } else if (left != waiting) {
        copyToDead(waiting, left);
    }
    releaseIf((flags & kSecondDies) != 0, right);
    assignRegister(target, std::move(parts));
    return Status::Done;
}

Attempt Engine::endAppend(RubyValue* target, RubyValue* parts, RubyValue* right, std::uint8_t flags) {
    RubyValue* const waiting = parts - 1;
    if (!waiting->isString()) {
        return Attempt::Declined;
    }
    if (isLone(*parts)) {
        if (append(boxOf(*parts), *right) == Status::Failed) {
            return Attempt::Failed;
        }
    } else {
        RubyValue joined;
        if (checked(add(*parts, *right, joined)) == Status::Failed) {
            return Attempt::Failed;
        }
        assignRegister(parts, std::move(joined));
    }
    releaseIf((flags & kSecondDies) != 0, right);
    releaseLastValue(*waiting, flags);
    const bool isInTarget = target != waiting && shareString(*target, *waiting);
    if (isLone(*waiting) || isInTarget || (target == waiting && isReplacedNext(waiting))) {
        if (append(boxOf(*waiting), *parts) == Status::Failed) {
            return Attempt::Failed;
        }
        if (target != waiting) {
            releaseRegister(target);
            moveRegister(target, waiting);
        }
    } else {
        RubyValue joined;
        if (checked(add(*waiting, *parts, joined)) == Status::Failed) {
            return Attempt::Failed;
        }
        releaseRegister(waiting);
        assignRegister(target, std::move(joined));
    }
    releaseRegister(parts);
    return Attempt::Done;
}

Attempt Engine::replaceByte(RubyValue* container, const RubyValue& index, RubyValue* value, std::uint8_t flags) {
    releaseLastValue(*container, flags);
    if (!index.isInteger()) {
        return Attempt::Declined;
    }
    const auto position = static_cast<std::size_t>(index.data.integer);
    if (position >= container->asString().size() || !(isLone(*container) || isReplacedNext(container))) {
        return Attempt::Declined;
    }
    RubyValue replacement;
    if (operandText(*value, replacement) == Status::Failed) {
        return Attempt::Failed;
    }
    if (replacement.asString().empty()) {
        return Attempt::Declined;
    }
    boxOf(*container).text[position] = replacement.asString().front();
    boxOf(*container).keyHash = 0;
    releaseIf((flags & kSecondDies) != 0, value);
    return Attempt::Done;
}

}  // namespace morvel::ruby::internal
