#include "vm/engine/conditional_jumps.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "vm/engine/instruction_table.h"

namespace morvel::ruby::internal {

namespace {

using Link = ConditionalJumps::Link;

// Longer chains are not worth searching.
constexpr std::size_t kMostLinks = 64;

bool isOrdering(EngineOp op) {
    const EngineOp test = combinedTest(op).value_or(op);
    return infoOf(test).operation == Operation::Less || infoOf(test).operation == Operation::LessEqual;
}

/// Ordering comparisons fail unless both sides are numbers or both are strings.
bool areAlike(const RubyValue& left, const RubyValue& right) {
    return (left.isNumeric() && right.isNumeric()) || (left.isString() && right.isString());
}

/// The operands of a comparison of a register with a constant.
struct ComparedWithConstant {
    std::uint16_t local;
    std::size_t constant;
};

std::optional<ComparedWithConstant> findConstant(const EngineInstruction& comparison) {
    const EngineOperands& operands = infoOf(comparison.op).operands;
    if (operands[1] == EngineOperand::Register && operands[2] == EngineOperand::Constant) {
        return ComparedWithConstant{comparison.b, comparison.c / std::size_t{2}};
    }
    if (operands[1] == EngineOperand::Constant && operands[2] == EngineOperand::Register) {
        return ComparedWithConstant{comparison.c, comparison.b / std::size_t{2}};
    }
    return std::nullopt;
}

/// True when the last instruction of a block produces `result`, afresh or by combination.
bool gives(const EngineInstruction* last, std::uint16_t result) {
    return last != nullptr && last->a == result && (infoOf(last->op).writesRegister() || combinedTest(last->op));
}

/// How many links from `first` on cannot change the outcome when it is `outcome` so far.
std::size_t countDecided(const std::vector<Link>& links, std::size_t first, bool outcome) {
    std::size_t next = first;
    while (next < links.size() && links[next].isOr() == outcome) {
        ++next;
    }
    return next - first;
}

}  // namespace

void ConditionalJumps::conditionalJump(std::size_t target, bool whenTrue) {
    const Entry condition = m_stack.pop();
    if (condition.place == Place::Constant) {
        const bool jumps = m_code.constant(condition.index).isTruthy() == whenTrue;
        m_stack.materializeAll();
        if (jumps) {
            m_code.emitJump(EngineOp::Jump, 0, 0, target);
        }
        return;
    }
    if (m_stack.empty() && fuseJump(condition, target, whenTrue)) {
        return;
    }
    m_stack.push(condition);
    m_stack.makeRegister(m_stack.size() - 1);
    const Entry inRegister = m_stack.pop();
    m_stack.materializeAll();
    m_code.emitJump(whenTrue ? EngineOp::JumpIfTrue : EngineOp::JumpIfFalse, flagFor(inRegister, kFirstDies),
                    reg(inRegister.index), target);
}

bool ConditionalJumps::fuseJump(const Entry& condition, std::size_t target, bool whenTrue) {
    if (condition.place != Place::Temporary || !gives(m_code.lastInBlock(), reg(condition.index)) ||
        !m_code.isNear(target)) {
        return false;
    }
    jumpOnTests(reg(condition.index), target, whenTrue, 0);
    return true;
}

void ConditionalJumps::jumpOnTests(std::uint16_t result, std::size_t target, bool whenTrue, std::size_t nesting) {
    for (std::optional<std::uint16_t> last = result; last; last = jumpOnLeft(result, target, whenTrue, nesting)) {
        result = *last;
        while (takeNegation(result)) {
            whenTrue = !whenTrue;
        }
    }
    fuseChain(result, target, whenTrue);
}

std::optional<std::uint16_t> ConditionalJumps::jumpOnLeft(std::uint16_t result, std::size_t target, bool whenTrue,
                                                          std::size_t nesting) {
    constexpr std::size_t kLongestRight = 16;
    constexpr std::size_t kDeepest = 32;
    const auto block = m_code.block();
    const EngineInstruction logic = block.back();
    if (nesting == kDeepest || logic.op != (whenTrue ? EngineOp::Or : EngineOp::And) || logic.a != result ||
        logic.n != (kFirstDies | kSecondDies)) {
        return std::nullopt;
    }
    // The code of the right operand changes only registers above the left one.
    std::size_t begin = block.size() - 1;
    while (begin > 0 && block[begin - 1].a > logic.b && block.size() - begin <= kLongestRight && isPure(begin - 1)) {
        --begin;
    }
    if (begin == 0 || !gives(&block[begin - 1], logic.b)) {
        return std::nullopt;
    }
    m_code.dropLast();
    std::vector<std::pair<EngineInstruction, std::uint32_t>> right;
    for (std::size_t left = m_code.block().size(); left > begin; --left) {
        const EngineInstruction instruction = m_code.block().back();
        m_code.dropLast();
        right.emplace_back(instruction, m_code.line());
    }
    jumpOnTests(logic.b, target, whenTrue, nesting + 1);
    std::reverse(right.begin(), right.end());
    for (const auto& [instruction, line] : right) {
        m_code.setLine(line);
        m_code.emit(instruction.op, instruction.n, instruction.a, instruction.b, instruction.c);
    }
    return logic.c;
}

bool ConditionalJumps::isPure(std::size_t position) const {
    constexpr std::size_t kMostLooks = 16;
    const auto block = m_code.block();
    const EngineInstruction& instruction = block[position];
    if (const auto compared = findConstant(instruction)) {
        const Operation test = infoOf(combinedTest(instruction.op).value_or(instruction.op)).operation;
        if (test == Operation::Equal || test == Operation::NotEqual) {
            return true;
        }
    }
    if (instruction.op != EngineOp::ModuloRK) {
        return false;
    }
    // A local that had a remainder before has one again.
    const auto divisorOf = [&](const EngineInstruction& modulo) -> const RubyValue& {
        return m_code.constant(modulo.c / std::size_t{2});
    };
    const RubyValue& divisor = divisorOf(instruction);
    if (instruction.b >= reg(m_code.temporary(0)) || !divisor.isInteger() || divisor.data.integer == 0) {
        return false;
    }
    for (std::size_t i = position; i > 0 && position - i < kMostLooks; --i) {
        const EngineInstruction& before = block[i - 1];
        if (!gives(&before, before.a) || before.a == instruction.b) {
            return false;
        }
        if (before.op == EngineOp::ModuloRK && before.b == instruction.b && divisorOf(before).isInteger()) {
            return true;
        }
    }
    return false;
}

bool ConditionalJumps::takeNegation(std::uint16_t result) {
    const auto block = m_code.block();
    if (block.back().op != EngineOp::Not || block.back().b != result || block.size() == 1 ||
        !gives(&block.back() - 1, result)) {
        return false;
    }
    m_code.dropLast();
    return true;
}

void ConditionalJumps::fuseChain(std::uint16_t result, std::size_t target, bool whenTrue) {
    const std::vector<Link> links = takeLinks(result);
    for (std::size_t next = 0; next <= links.size(); ++next) {
        // The outcome with which the chain skips the next link.
        const bool outcome = next < links.size() ? links[next].isOr() : whenTrue;
        const std::size_t decided = countDecided(links, next, outcome);
        Destination destination{target, std::nullopt};
        if (next + decided < links.size() || outcome != whenTrue) {
            destination.skipped = decided;
        }
        if (next == 0) {
            jumpOnLast(result, destination, outcome);
        } else {
            const Link& link = links[next - 1];
            m_code.setLine(link.line);
            emitShort(*testingJump(*combinedTest(link.comparison.op), outcome), 0, link.comparison.b, link.comparison.c,
                      destination);
        }
    }
}

std::vector<Link> ConditionalJumps::takeLinks(std::uint16_t result) {
    std::vector<Link> links;
    while (links.size() < kMostLinks && m_code.block().size() > 1 && combinedTest(m_code.block().back().op) &&
           gives(&m_code.block().back() - 1, result) && lastCannotFail()) {
        const EngineInstruction last = m_code.block().back();
        m_code.dropLast();
        links.push_back({last, m_code.line()});
    }
    std::reverse(links.begin(), links.end());
    return links;
}

void ConditionalJumps::jumpOnLast(std::uint16_t result, const Destination& destination, bool whenTrue) {
    while (takeNegation(result)) {
        whenTrue = !whenTrue;
    }
    EngineInstruction& last = *m_code.lastInBlock();
    const EngineInstruction test = last;
    const EngineOp onTruth = whenTrue ? EngineOp::JumpIfTrue : EngineOp::JumpIfFalse;
    if (combinedTest(test.op)) {
        last.n |= whenTrue ? kJumpsIfTrue : kJumpsIfFalse;
        emitWide(onTruth, kFirstDies, result, destination);
    } else if (test.op == EngineOp::Not) {
        m_code.dropLast();
        emitWide(whenTrue ? EngineOp::JumpIfFalse : EngineOp::JumpIfTrue, test.n, test.b, destination);
    } else if (const std::optional<EngineOp> jump = testingJump(test.op, whenTrue)) {
        m_code.dropLast();
        emitShort(*jump, test.n, test.b, test.c, destination);
    } else {
        emitWide(onTruth, kFirstDies, result, destination);
    }
}

void ConditionalJumps::emitShort(EngineOp op, std::uint8_t n, std::uint16_t a, std::uint16_t b,
                                 const Destination& destination) {
    if (destination.skipped) {
        m_code.emit(op, n, a, b, static_cast<std::uint16_t>(*destination.skipped));
    } else {
        m_code.emitShortJump(op, n, a, b, destination.target);
    }
}

void ConditionalJumps::emitWide(EngineOp op, std::uint8_t n, std::uint16_t a, const Destination& destination) {
    if (destination.skipped) {
        m_code.emitWide(op, n, a, *destination.skipped);
    } else {
        m_code.emitJump(op, n, a, destination.target);
    }
}

bool ConditionalJumps::lastCannotFail() const {
    const EngineInstruction& comparison = m_code.block().back();
    const auto compared = findConstant(comparison);
    if (!compared || compared->local >= reg(m_code.temporary(0))) {
        return false;
    }
    return !isOrdering(comparison.op) || isKnown(compared->local, m_code.constant(compared->constant));
}

bool ConditionalJumps::isKnown(std::uint16_t local, const RubyValue& kind) const {
    constexpr std::size_t kMostLooks = 16;
    const auto block = m_code.block();
    const std::size_t end = block.size() - 1;
    for (std::size_t i = end; i > 0 && end - i < kMostLooks; --i) {
        const EngineInstruction& before = block[i - 1];
        if (!gives(&before, before.a) || before.a == local) {
            return false;
        }
        const auto compared = isOrdering(before.op) ? findConstant(before) : std::nullopt;
        if (compared && compared->local == local && areAlike(m_code.constant(compared->constant), kind)) {
            return true;
        }
    }
    return false;
}

}  // namespace morvel::ruby::internal
