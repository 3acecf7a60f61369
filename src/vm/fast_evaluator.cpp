// Runs functions that have a fast form by walking the nodes of the expression tree, without frames or instructions.
#include <array>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

#include "value/operators.h"
#include "vm/calling.h"
#include "vm/errors.h"
#include "vm/impl.h"
#include "vm/operators.h"

namespace morvel::ruby {

using internal::FastKind;
using internal::FastLeafSource;
using internal::FastNode;
using internal::OpcodeClass;

namespace {

RubyValue leafValue(const internal::GlobalTable& globals, const FastNode& leaf, const internal::Program& program,
                    const RubyValue* arguments, std::size_t argumentCount) {
    const auto index = static_cast<std::size_t>(leaf.value);
    switch (leaf.source) {
        case FastLeafSource::Parameter:
            return leaf.value >= 0 && index < argumentCount ? arguments[index] : RubyValue();
        case FastLeafSource::Constant:
            if (leaf.value < 0 || index >= program.constants.size()) {
                internal::runtimeError(program, leaf.line, "constant index is out of range");
            }
            return program.constants[index];
        case FastLeafSource::Global:
            break;
    }
    const std::string* name = internal::getStringConstantPtr(program, leaf.value);
    if (name == nullptr) {
        internal::runtimeError(program, leaf.line, "global name constant is invalid");
    }
    const std::size_t slot = globals.findSlot(*name);
    if (!globals.isDefined(slot)) {
        internal::undefinedName(program, leaf.line, *name);
    }
    return globals.value(slot);
}

/// The values that wait for their operators. A few, as many as most expressions have, need no allocation.
class Operands {
public:
    explicit Operands(std::size_t most) : m_many(most > kFew ? most : 0) {}
    Operands(const Operands&) = delete;
    Operands& operator=(const Operands&) = delete;

    void push(RubyValue value) noexcept { *m_end++ = std::move(value); }
    /// The value pushed last.
    [[nodiscard]] RubyValue& last() noexcept { return m_end[-1]; }
    [[nodiscard]] RubyValue takeLast() noexcept { return std::move(*--m_end); }
    [[nodiscard]] RubyArray takeLast(std::size_t count) {
        RubyArray values(std::make_move_iterator(m_end - count), std::make_move_iterator(m_end));
        m_end -= count;
        return values;
    }

private:
    static constexpr std::size_t kFew = 8;

    std::array<RubyValue, kFew> m_few;
    std::vector<RubyValue> m_many;
    RubyValue* m_end = m_many.empty() ? m_few.data() : m_many.data();
};

// The leftmost leaf, which is evaluated first. The nodes of an expression lie in the order of evaluation, so a long
// chain of operators needs no recursion.
std::size_t firstNode(const std::vector<FastNode>& nodes, std::size_t root) {
    while (true) {
        const FastNode& node = nodes[root];
        const bool isArray = classOf(node.op) == OpcodeClass::Array;
        if (node.isLeaf() || (isArray && node.children.empty())) {
            return root;
        }
        root = static_cast<std::size_t>(isArray ? node.children.front() : node.left);
    }
}

/// Replaces the operands of the node with its value.
void applyNode(const FastNode& node, Operands& operands, const internal::Program& program) {
    if (classOf(node.op) == OpcodeClass::Array) {
        operands.push(operands.takeLast(node.children.size()));
    } else if (classOf(node.op) == OpcodeClass::Unary) {
        operands.last() = internal::applyUnary(node.op, operands.last(), program, node.line);
    } else {
        const RubyValue right = operands.takeLast();
        operands.last() = internal::applyBinary(node.op, operands.last(), right, program, node.line);
    }
}

}  // namespace

RubyValue RubyVM::Impl::executeFastFunction(const std::shared_ptr<Program>& program, const CompiledFunction& function,
                                            const RubyValue* arguments, std::size_t argumentCount) {
    internal::requireArity(*program, function, argumentCount);
    if (function.fastKind == FastKind::Guarded &&
        evaluateFastNode(*program, function, function.fastGuardRoot, arguments, argumentCount).isTruthy()) {
        RubyValue raise;
        if (!getGlobal("error", raise)) {
            internal::undefinedName(*program, 0, "error");
        }
        // The built-in raises here. A function that the host put in its place may return; then the body follows.
        callValue(*program, raise, &function.fastErrorMessage, 1, 0);
    }
    return evaluateFastNode(*program, function, function.fastRoot, arguments, argumentCount);
}

RubyValue RubyVM::Impl::evaluateFastNode(const Program& program, const CompiledFunction& function,
                                         std::int32_t nodeIndex, const RubyValue* arguments,
                                         std::size_t argumentCount) const {
    if (nodeIndex < 0 || static_cast<std::size_t>(nodeIndex) >= function.fastNodes.size()) {
        internal::runtimeError(program, 0, "fast callable node is out of range");
    }
    const auto root = static_cast<std::size_t>(nodeIndex);
    const std::size_t first = firstNode(function.fastNodes, root);
    Operands operands(root - first + 1);
    for (std::size_t i = first; i <= root; ++i) {
        const FastNode& node = function.fastNodes[i];
        if (node.isLeaf()) {
            operands.push(leafValue(globals, node, program, arguments, argumentCount));
        } else {
            applyNode(node, operands, program);
        }
    }
    return operands.takeLast();
}

}  // namespace morvel::ruby
