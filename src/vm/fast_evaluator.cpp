// Runs the functions that have a fast form: a walk over the expression tree, without stack and instructions.
#include "morvel/ruby/error.h"
#include "value/native_stack.h"
#include "vm/errors.h"
#include "vm/impl.h"

namespace morvel::ruby {

using internal::FastKind;
using internal::FastLeafSource;
using internal::FastNode;
using internal::FastNodeKind;
using internal::Ordering;

namespace {

RubyValue binaryResult(const FastNode& node, const RubyValue& left, const RubyValue& right,
                       const internal::Program& program) {
    switch (node.kind) {
        case FastNodeKind::Add:
            return internal::addValues(left, right, program, node.line);
        case FastNodeKind::Subtract:
            return internal::subtractValues(left, right, program, node.line);
        case FastNodeKind::Multiply:
            return internal::multiplyValues(left, right, program, node.line);
        case FastNodeKind::Divide:
            return internal::divideValues(left, right, program, node.line);
        case FastNodeKind::Modulo:
            return internal::moduloValues(left, right, program, node.line);
        case FastNodeKind::Equal:
            return internal::valuesEqual(left, right);
        case FastNodeKind::NotEqual:
            return !internal::valuesEqual(left, right);
        case FastNodeKind::Less:
            return internal::compareOrdered(left, right, Ordering::Less, program, node.line);
        case FastNodeKind::LessEqual:
            return internal::compareOrdered(left, right, Ordering::LessEqual, program, node.line);
        case FastNodeKind::Greater:
            return internal::compareOrdered(left, right, Ordering::Greater, program, node.line);
        default:
            return internal::compareOrdered(left, right, Ordering::GreaterEqual, program, node.line);
    }
}

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

}  // namespace

RubyValue RubyVM::Impl::executeFastFunction(const std::shared_ptr<Program>& program, const CompiledFunction& function,
                                            const RubyValue* arguments, std::size_t argumentCount) {
    if (argumentCount != function.params.size()) {
        internal::runtimeError(*program, 0, internal::arityMessage(function, argumentCount));
    }
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
                                         std::size_t argumentCount) {
    if (nodeIndex < 0 || static_cast<std::size_t>(nodeIndex) >= function.fastNodes.size()) {
        internal::runtimeError(program, 0, "fast callable node is out of range");
    }
    const FastNode& node = function.fastNodes[static_cast<std::size_t>(nodeIndex)];
    if (internal::nativeStackLow()) {
        internal::runtimeError(program, node.line, "stack overflow");
    }
    const auto evaluate = [&](std::int32_t child) {
        return evaluateFastNode(program, function, child, arguments, argumentCount);
    };
    switch (node.kind) {
        case FastNodeKind::Leaf:
            return leafValue(globals, node, program, arguments, argumentCount);
        case FastNodeKind::Negate:
            return internal::negateValue(evaluate(node.left), program, node.line);
        case FastNodeKind::Not:
            return !evaluate(node.left).isTruthy();
        case FastNodeKind::MakeArray: {
            RubyArray elements;
            elements.reserve(node.children.size());
            for (const std::int32_t child : node.children) {
                elements.push_back(evaluate(child));
            }
            return elements;
        }
        default: {
            const RubyValue left = evaluate(node.left);
            return binaryResult(node, left, evaluate(node.right), program);
        }
    }
}

}  // namespace morvel::ruby
