#include "compiler/metadata.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_map>

#include "value/hash.h"

namespace morvel::ruby::internal {

namespace {

/// A run of the stack machine over node indices instead of values.
class FastExpressionBuilder {
public:
    FastExpressionBuilder(const CompiledFunction& function, std::vector<FastNode>& nodes)
        : m_function(function), m_nodes(nodes) {}

    bool add(std::size_t index) {
        const Instruction& instruction = m_function.code[index];
        switch (classOf(instruction.op)) {
            case OpcodeClass::Constant:
                return addLeaf(instruction, FastLeafSource::Constant, instruction.a);
            case OpcodeClass::Load:
                return addName(index);
            case OpcodeClass::Unary:
                return addUnary(instruction);
            case OpcodeClass::Arithmetic:
            case OpcodeClass::Comparison:
                return addBinary(instruction);
            case OpcodeClass::Array:
                return addArray(instruction);
            case OpcodeClass::Store:
            case OpcodeClass::Pop:
            case OpcodeClass::Logic:
            case OpcodeClass::Jump:
            case OpcodeClass::ConditionalJump:
            case OpcodeClass::Call:
            case OpcodeClass::Definition:
            case OpcodeClass::Return:
            case OpcodeClass::GetElement:
            case OpcodeClass::SetElement:
            case OpcodeClass::Unknown:
                break;
        }
        return false;
    }

    [[nodiscard]] bool isComplete() const { return m_stack.size() == 1; }
    [[nodiscard]] std::int32_t root() const { return m_stack.front(); }

private:
    FastNode& push(const Instruction& instruction) {
        m_stack.push_back(static_cast<std::int32_t>(m_nodes.size()));
        FastNode& node = m_nodes.emplace_back();
        node.op = instruction.op;
        node.line = instruction.line;
        return node;
    }

    std::int32_t pop() {
        const std::int32_t top = m_stack.back();
        m_stack.pop_back();
        return top;
    }

    bool addLeaf(const Instruction& instruction, FastLeafSource source, std::int32_t value) {
        FastNode& leaf = push(instruction);
        leaf.source = source;
        leaf.value = value;
        return true;
    }

    bool addName(std::size_t index) {
        const Instruction& instruction = m_function.code[index];
        const std::int32_t slot = localSlotAt(m_function, index);
        if (slot == kNoLocalSlot) {
            return addLeaf(instruction, FastLeafSource::Global, instruction.a);
        }
        return static_cast<std::size_t>(slot) < m_function.params.size() &&
               addLeaf(instruction, FastLeafSource::Parameter, slot);
    }

    bool addUnary(const Instruction& instruction) {
        if (m_stack.empty()) {
            return false;
        }
        const std::int32_t operand = pop();
        push(instruction).left = operand;
        return true;
    }

    bool addBinary(const Instruction& instruction) {
        if (m_stack.size() < 2) {
            return false;
        }
        const std::int32_t right = pop();
        const std::int32_t left = pop();
        FastNode& node = push(instruction);
        node.left = left;
        node.right = right;
        return true;
    }

    bool addArray(const Instruction& instruction) {
        if (instruction.a < 0 || static_cast<std::size_t>(instruction.a) > m_stack.size()) {
            return false;
        }
        const auto first = m_stack.end() - instruction.a;
        std::vector<std::int32_t> children(first, m_stack.end());
        m_stack.erase(first, m_stack.end());
        push(instruction).children = std::move(children);
        return true;
    }

    const CompiledFunction& m_function;
    std::vector<FastNode>& m_nodes;
    std::vector<std::int32_t> m_stack;
};

void clearFastForm(CompiledFunction& function) {
    function.fastKind = FastKind::None;
    function.fastNodes.clear();
    function.fastRoot = -1;
    function.fastGuardRoot = -1;
    function.fastErrorMessage = RubyValue();
}

/// Assigns the slots of local variables, function by function. Names are compared by number, so that each constant's
/// string is looked up once, however many instructions and functions use it.
class LocalSlots {
public:
    explicit LocalSlots(const Program& program)
        : m_program(program), m_numbersOfConstants(program.constants.size(), kNoName) {}

    void assign(CompiledFunction& function) {
        for (const std::string& param : function.params) {
            ensureLocalSlot(function, numberOf(param), param);
        }
        for (const Instruction& instruction : function.code) {
            const std::uint32_t name = nameOf(instruction);
            if (instruction.op == OpCode::StoreName && name != kNoName) {
                ensureLocalSlot(function, name, *getStringConstantPtr(m_program, instruction.a));
            }
        }
        if (function.localNames.empty()) {
            return;
        }
        function.instructionSlots.assign(function.code.size(), kNoLocalSlot);
        for (std::size_t i = 0; i < function.code.size(); ++i) {
            const std::uint32_t name = nameOf(function.code[i]);
            if (name != kNoName && m_owners[name].function == &function) {
                function.instructionSlots[i] = m_owners[name].slot;
            }
        }
    }

private:
    static constexpr std::uint32_t kNoName = ~std::uint32_t{0};

    /// The latest slot of a name, and the function in which it has that slot.
    struct Owner {
        const CompiledFunction* function = nullptr;
        std::int32_t slot = kNoLocalSlot;
    };

    std::uint32_t numberOf(std::string_view name) {
        const auto [entry, isNew] = m_numbers.try_emplace(name, static_cast<std::uint32_t>(m_owners.size()));
        if (isNew) {
            m_owners.emplace_back();
        }
        return entry->second;
    }

    /// The number of the variable that the instruction addresses, or kNoName.
    std::uint32_t nameOf(const Instruction& instruction) {
        if (instruction.op != OpCode::LoadName && instruction.op != OpCode::StoreName) {
            return kNoName;
        }
        const std::string* text = getStringConstantPtr(m_program, instruction.a);
        if (text == nullptr) {
            return kNoName;
        }
        std::uint32_t& number = m_numbersOfConstants[static_cast<std::size_t>(instruction.a)];
        if (number == kNoName) {
            number = numberOf(*text);
        }
        return number;
    }

    void ensureLocalSlot(CompiledFunction& function, std::uint32_t number, std::string_view name) {
        Owner& owner = m_owners[number];
        if (owner.function != &function) {
            owner = {&function, static_cast<std::int32_t>(function.localNames.size())};
            function.localNames.push_back(name);
        }
    }

    const Program& m_program;
    std::unordered_map<std::string_view, std::uint32_t, TextHash> m_numbers;
    /// By constant; kNoName until it is used.
    std::vector<std::uint32_t> m_numbersOfConstants;
    std::vector<Owner> m_owners;
};

/// Positions of the guard's conditional jump and of the jump that ends its branch.
struct GuardShape {
    std::size_t jumpIfFalse = 0;
    std::size_t jump = 0;
    std::size_t body = 0;
};

// Recognises `if <condition> <branch> end` without else before the final Return: condition, JumpIfFalse to just after
// the Jump, branch, Jump to the same place.
bool findGuard(const CompiledFunction& function, std::size_t last, GuardShape& shape) {
    std::size_t jumps = 0;
    std::size_t conditionalJumps = 0;
    for (std::size_t i = 0; i < last; ++i) {
        if (function.code[i].op == OpCode::Jump) {
            shape.jump = i;
            ++jumps;
        } else if (function.code[i].op == OpCode::JumpIfFalse) {
            shape.jumpIfFalse = i;
            ++conditionalJumps;
        }
    }
    if (jumps != 1 || conditionalJumps != 1 || shape.jump <= shape.jumpIfFalse) {
        return false;
    }
    const std::int32_t target = function.code[shape.jumpIfFalse].a;
    if (target < 0 || target != function.code[shape.jump].a) {
        return false;
    }
    shape.body = static_cast<std::size_t>(target);
    return shape.body == shape.jump + 1 && shape.body < last;
}

void findGuardedForm(CompiledFunction& function, const Program& program, std::size_t last) {
    GuardShape shape;
    clearFastForm(function);
    if (findGuard(function, last, shape) &&
        buildFastExpressionRange(function, 0, shape.jumpIfFalse, function.fastNodes, function.fastGuardRoot) &&
        extractFastErrorCall(function, program, shape.jumpIfFalse + 1, shape.jump, function.fastErrorMessage) &&
        buildFastExpressionRange(function, shape.body, last, function.fastNodes, function.fastRoot)) {
        function.fastKind = FastKind::Guarded;
        return;
    }
    clearFastForm(function);
}

void findFastForm(CompiledFunction& function, const Program& program) {
    if (function.code.empty() || function.code.back().op != OpCode::Return) {
        return;
    }
    const std::size_t last = function.code.size() - 1;
    if (buildFastExpressionRange(function, 0, last, function.fastNodes, function.fastRoot)) {
        function.fastKind = FastKind::Expression;
        return;
    }
    findGuardedForm(function, program, last);
}

}  // namespace

void finalizeProgramMetadata(Program& program) {
    LocalSlots slots(program);
    for (std::size_t i = 0; i < program.functions.size(); ++i) {
        CompiledFunction& function = program.functions[i];
        function.localNames.clear();
        function.instructionSlots.clear();
        clearFastForm(function);
        if (i == 0) {
            continue;
        }
        slots.assign(function);
        findFastForm(function, program);
    }
}

bool buildFastExpressionRange(const CompiledFunction& function, std::size_t begin, std::size_t end,
                              std::vector<FastNode>& nodes, std::int32_t& root) {
    FastExpressionBuilder builder(function, nodes);
    for (std::size_t i = begin; i < end; ++i) {
        if (!builder.add(i)) {
            return false;
        }
    }
    if (!builder.isComplete()) {
        return false;
    }
    root = builder.root();
    return true;
}

bool extractFastErrorCall(const CompiledFunction& function, const Program& program, std::size_t begin, std::size_t end,
                          RubyValue& message) {
    constexpr std::array kShape{OpCode::LoadName, OpCode::PushConst, OpCode::Call, OpCode::Pop};
    if (end < begin || end - begin != kShape.size()) {
        return false;
    }
    const Instruction* call = function.code.data() + begin;
    const auto sameOp = [](const Instruction& instruction, OpCode op) { return instruction.op == op; };
    if (!std::equal(call, call + kShape.size(), kShape.begin(), sameOp) || call[2].a != 1) {
        return false;
    }
    const std::string* callee = getStringConstantPtr(program, call[0].a);
    if (callee == nullptr || *callee != "error" || getStringConstantPtr(program, call[1].a) == nullptr) {
        return false;
    }
    message = program.constants[static_cast<std::size_t>(call[1].a)];
    return true;
}

}  // namespace morvel::ruby::internal
