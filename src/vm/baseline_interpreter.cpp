// The baseline interpreter: executes stack instructions one by one and makes every check as it goes.
#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "morvel/ruby/error.h"
#include "value/operators.h"
#include "vm/calling.h"
#include "vm/errors.h"
#include "vm/impl.h"
#include "vm/indexing.h"
#include "vm/operators.h"

namespace morvel::ruby {

namespace internal {

namespace {

/// The values of one call's locals. If there are few, they live in the activation itself.
class Locals {
public:
    explicit Locals(std::size_t count) : m_count(count) {
        if (count > kInlineLocals) {
            m_many.resize(count);
        }
        for (std::size_t i = 0; i < count; ++i) {
            at(i) = makeUndefined();
        }
    }

    [[nodiscard]] std::size_t size() const { return m_count; }
    // cppcheck-suppress returnTempReference; both are elements of members
    RubyValue& at(std::size_t slot) { return m_count > kInlineLocals ? m_many[slot] : m_few[slot]; }
    [[nodiscard]] bool isAssigned(std::size_t slot) { return at(slot).type != kUndefinedType; }

private:
    static constexpr std::size_t kInlineLocals = 16;

    std::size_t m_count;
    std::array<RubyValue, kInlineLocals> m_few;
    std::vector<RubyValue> m_many;
};

/// One call of one function.
class Activation {
public:
    Activation(RubyVM::Impl& vm, std::shared_ptr<Program> program, std::int32_t functionIndex)
        : m_vm(vm),
          m_program(std::move(program)),
          m_functionIndex(functionIndex),
          m_function(m_program->functions[static_cast<std::size_t>(functionIndex)]),
          m_locals(m_function.localNames.size()) {}

    RubyValue run(const RubyValue* arguments, std::size_t argumentCount) {
        // Duplicate parameter names leave fewer locals than arguments; the surplus is counted but not stored.
        const std::size_t stored = std::min(argumentCount, m_locals.size());
        for (std::size_t i = 0; i < stored; ++i) {
            m_locals.at(i) = arguments[i];
        }
        while (m_next < m_function.code.size()) {
            const std::size_t index = m_next++;
            execute(m_function.code[index], index);
        }
        return std::move(m_lastValue);
    }

private:
    void execute(const Instruction& instruction, std::size_t index);
    void pushConstant(const Instruction& instruction);
    void loadName(const Instruction& instruction, std::size_t index);
    void storeName(const Instruction& instruction, std::size_t index);
    void storeGlobal(const Instruction& instruction, const RubyValue& value);
    void binary(const Instruction& instruction);
    void jump(const Instruction& instruction, const char* message);
    void call(const Instruction& instruction);
    void defineFunction(const Instruction& instruction);
    void makeArray(const Instruction& instruction);
    void getIndex(const Instruction& instruction);
    void setIndex(const Instruction& instruction);

    void push(RubyValue value) { m_stack.push_back(std::move(value)); }

    RubyValue pop(unsigned line) {
        if (m_stack.empty()) {
            failAt(line, "stack underflow");
        }
        RubyValue top = std::move(m_stack.back());
        m_stack.pop_back();
        return top;
    }

    [[noreturn]] void failAt(unsigned line, const char* message) const { runtimeError(*m_program, line, message); }
    void require(const Fault& fault, unsigned line) const {
        if (fault) {
            raise(fault, *m_program, line);
        }
    }

    RubyVM::Impl& m_vm;
    const std::shared_ptr<Program> m_program;
    const std::int32_t m_functionIndex;
    const CompiledFunction& m_function;
    Locals m_locals;
    std::vector<RubyValue> m_stack;
    RubyValue m_lastValue;
    std::size_t m_next = 0;
};

void Activation::execute(const Instruction& instruction, std::size_t index) {
    const unsigned line = instruction.line;
    switch (classOf(instruction.op)) {
        case OpcodeClass::Constant:
            return pushConstant(instruction);
        case OpcodeClass::Load:
            return loadName(instruction, index);
        case OpcodeClass::Store:
            return storeName(instruction, index);
        case OpcodeClass::Pop:
            m_lastValue = pop(line);
            return;
        case OpcodeClass::Arithmetic:
        case OpcodeClass::Comparison:
        case OpcodeClass::Logic:
            return binary(instruction);
        case OpcodeClass::Unary:
            return push(applyUnary(instruction.op, pop(line), *m_program, line));
        case OpcodeClass::Jump:
            return jump(instruction, "jump target is out of range");
        case OpcodeClass::ConditionalJump:
            if (!pop(line).isTruthy()) {
                jump(instruction, "conditional jump target is out of range");
            }
            return;
        case OpcodeClass::Call:
            return call(instruction);
        case OpcodeClass::Definition:
            return defineFunction(instruction);
        case OpcodeClass::Return:
            // The function returns the value on top, if there is one.
            m_lastValue = m_stack.empty() ? RubyValue() : pop(line);
            m_next = m_function.code.size();
            return;
        case OpcodeClass::Array:
            return makeArray(instruction);
        case OpcodeClass::GetElement:
            return getIndex(instruction);
        case OpcodeClass::SetElement:
            return setIndex(instruction);
        case OpcodeClass::Unknown:
            failAt(line, "unknown opcode");
    }
}

void Activation::pushConstant(const Instruction& instruction) {
    if (instruction.a < 0 || static_cast<std::size_t>(instruction.a) >= m_program->constants.size()) {
        failAt(instruction.line, "constant index is out of range");
    }
    push(m_program->constants[static_cast<std::size_t>(instruction.a)]);
}

void Activation::loadName(const Instruction& instruction, std::size_t index) {
    const std::int32_t local = localSlotAt(m_function, index);
    if (local != kNoLocalSlot && m_locals.isAssigned(static_cast<std::size_t>(local))) {
        return push(m_locals.at(static_cast<std::size_t>(local)));
    }
    const std::string& name = requireStringConstant(*m_program, instruction.a, instruction.line);
    const std::size_t slot = m_vm.globals.findSlot(name);
    if (!m_vm.globals.isDefined(slot)) {
        undefinedName(*m_program, instruction.line, name);
    }
    push(m_vm.globals.value(slot));
}

void Activation::storeName(const Instruction& instruction, std::size_t index) {
    if (m_stack.empty()) {
        failAt(instruction.line, "assignment requires a value");
    }
    const std::int32_t local = localSlotAt(m_function, index);
    if (local == kNoLocalSlot || m_functionIndex == 0) {
        return storeGlobal(instruction, m_stack.back());
    }
    m_locals.at(static_cast<std::size_t>(local)) = m_stack.back();
}

void Activation::storeGlobal(const Instruction& instruction, const RubyValue& value) {
    const std::string& name = requireStringConstant(*m_program, instruction.a, instruction.line);
    m_vm.setGlobalSlotValue(m_vm.ensureGlobalSlot(name), value);
}

void Activation::binary(const Instruction& instruction) {
    const RubyValue right = pop(instruction.line);
    const RubyValue left = pop(instruction.line);
    push(applyBinary(instruction.op, left, right, *m_program, instruction.line));
}

void Activation::jump(const Instruction& instruction, const char* message) {
    if (instruction.a < 0 || static_cast<std::size_t>(instruction.a) > m_function.code.size()) {
        failAt(instruction.line, message);
    }
    m_next = static_cast<std::size_t>(instruction.a);
}

void Activation::call(const Instruction& instruction) {
    if (instruction.a < 0) {
        failAt(instruction.line, "argument count is invalid");
    }
    const auto count = static_cast<std::size_t>(instruction.a);
    if (m_stack.size() <= count) {
        failAt(instruction.line, "call stack is incomplete");
    }
    const std::size_t callee = m_stack.size() - 1 - count;
    const RubyValue* arguments = count == 0 ? nullptr : &m_stack[callee + 1];
    RubyValue result = m_vm.callValue(*m_program, m_stack[callee], arguments, count, instruction.line);
    m_stack.resize(callee);
    push(std::move(result));
}

void Activation::defineFunction(const Instruction& instruction) {
    const std::string& name = requireStringConstant(*m_program, instruction.a, instruction.line);
    storeGlobal(instruction, makeScriptFunction(name, instruction.b, m_program));
}

void Activation::makeArray(const Instruction& instruction) {
    if (instruction.a < 0) {
        failAt(instruction.line, "array element count is invalid");
    }
    const auto count = static_cast<std::size_t>(instruction.a);
    if (m_stack.size() < count) {
        failAt(instruction.line, "array literal is missing values");
    }
    const auto first = m_stack.end() - instruction.a;
    RubyArray elements(std::make_move_iterator(first), std::make_move_iterator(m_stack.end()));
    m_stack.erase(first, m_stack.end());
    push(std::move(elements));
}

void Activation::getIndex(const Instruction& instruction) {
    const RubyValue index = pop(instruction.line);
    const RubyValue container = pop(instruction.line);
    RubyValue element;
    require(getElement(container, index, element), instruction.line);
    push(std::move(element));
}

void Activation::setIndex(const Instruction& instruction) {
    const RubyValue value = pop(instruction.line);
    const RubyValue index = pop(instruction.line);
    RubyValue container = pop(instruction.line);
    require(setElement(container, index, value), instruction.line);
    push(std::move(container));
}

}  // namespace

}  // namespace internal

RubyValue RubyVM::Impl::executeFunction(const std::shared_ptr<Program>& program, std::int32_t functionIndex,
                                        const RubyValue* arguments, std::size_t argumentCount) {
    if (const internal::Fault fault = internal::callFault(program.get(), functionIndex)) {
        if (program == nullptr) {
            throw RubyError(fault.message);
        }
        internal::raise(fault, *program, 0);
    }
    internal::requireArity(*program, program->functions[static_cast<std::size_t>(functionIndex)], argumentCount);
    return internal::Activation(*this, program, functionIndex).run(arguments, argumentCount);
}

}  // namespace morvel::ruby
