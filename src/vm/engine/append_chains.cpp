#include "vm/engine/append_chains.h"

#include <algorithm>
#include <utility>

#include "vm/engine/global_names.h"

namespace morvel::ruby::internal {

namespace {

constexpr auto kNone = static_cast<std::uint32_t>(-1);

/// A stack entry, seen as a sum that begins with the value of a variable or with one of its elements.
struct Sum {
    /// The LoadName of the variable; kNone when the entry is something else.
    std::uint32_t load = kNone;
    std::uint32_t firstAdd = kNone;
    std::uint32_t lastAdd = kNone;
    bool beginsWithElement = false;

    [[nodiscard]] bool isVariable() const { return load != kNone && !beginsWithElement && firstAdd == kNone; }
    [[nodiscard]] bool isChain() const { return firstAdd != lastAdd; }
};

/// Runs the stack code of each block over sums instead of values.
class TextUseFinder {
public:
    TextUseFinder(const CompiledFunction& function, const Flow& flow, const std::vector<std::uint32_t>& globals)
        : m_function(function), m_globals(globals) {
        m_stack.reserve(static_cast<std::size_t>(flow.deepest));
        m_found.takenOver.resize(function.code.size(), false);
    }

    void visit(const Block& block) {
        m_stack.clear();
        for (std::size_t i = block.begin; i < block.end; ++i) {
            step(static_cast<std::uint32_t>(i));
        }
    }

    [[nodiscard]] TextUses take() { return std::move(m_found); }

private:
    void step(std::uint32_t index) {
        const Instruction& instruction = m_function.code[index];
        switch (classOf(instruction.op)) {
            case OpcodeClass::Load:
                m_stack.emplace_back().load = index;
                return;
            case OpcodeClass::Arithmetic:
                return instruction.op == OpCode::Add ? add(index) : other(instruction);
            case OpcodeClass::Call:
                return call(instruction);
            case OpcodeClass::GetElement:
                return getIndex();
            case OpcodeClass::SetElement:
                return setIndex();
            case OpcodeClass::Store:
                return store(index);
            case OpcodeClass::Constant:
            case OpcodeClass::Pop:
            case OpcodeClass::Comparison:
            case OpcodeClass::Logic:
            case OpcodeClass::Unary:
            case OpcodeClass::Jump:
            case OpcodeClass::ConditionalJump:
            case OpcodeClass::Definition:
            case OpcodeClass::Return:
            case OpcodeClass::Array:
            case OpcodeClass::Unknown:
                return other(instruction);
        }
    }

    void call(const Instruction& instruction) {
        for (std::int32_t i = 0; i < instruction.a && !m_stack.empty(); ++i) {
            takeOver(pop());
        }
        drop();
        m_stack.emplace_back();
    }

    void store(std::uint32_t index) {
        const Sum value = pop();
        if (value.isChain() && !value.beginsWithElement && isSameVariable(value.load, index)) {
            note(value);
        }
        m_stack.emplace_back();
    }

    void add(std::uint32_t index) {
        drop();
        Sum sum = pop();
        takeOver(sum);
        if (sum.load != kNone) {
            sum.firstAdd = std::min(sum.firstAdd, index);
            sum.lastAdd = index;
        }
        m_stack.push_back(sum);
    }

    void takeOver(const Sum& value) {
        if (value.isVariable()) {
            m_found.takenOver[value.load] = true;
        }
    }

    void getIndex() {
        drop();
        Sum container = pop();
        if (container.isVariable()) {
            container.beginsWithElement = true;
            m_stack.push_back(container);
        } else {
            m_stack.emplace_back();
        }
    }

    void setIndex() {
        const Sum value = pop();
        drop();
        const Sum container = pop();
        if (value.isChain() && value.beginsWithElement && container.isVariable() &&
            isSameVariable(value.load, container.load)) {
            note(value);
        }
        m_stack.emplace_back();
    }

    void other(const Instruction& instruction) {
        const OpcodeInfo& info = *opcodeInfo(instruction.op);
        // Entries from before the block, of which hand-made code may have many, are not on this stack.
        for (std::int32_t pops = info.pops == kCounted ? instruction.a : info.pops; pops > 0 && !m_stack.empty();
             --pops) {
            drop();
        }
        for (std::int32_t pushes = info.pushes; pushes > 0; --pushes) {
            m_stack.emplace_back();
        }
    }

    /// Entries from before the block are unknown.
    Sum pop() {
        const Sum top = m_stack.empty() ? Sum() : m_stack.back();
        drop();
        return top;
    }
    void drop() {
        if (!m_stack.empty()) {
            m_stack.pop_back();
        }
    }

    void note(const Sum& sum) {
        // Hand-made code may have chains inside the parts of others; the outer one counts.
        while (!m_found.chains.empty() && m_found.chains.back().firstAdd > sum.firstAdd) {
            m_found.chains.pop_back();
        }
        m_found.chains.push_back({sum.firstAdd, sum.lastAdd});
    }

    [[nodiscard]] bool isSameVariable(std::size_t one, std::size_t other) const {
        return m_globals[one] == m_globals[other] && localSlotAt(m_function, one) == localSlotAt(m_function, other);
    }

    const CompiledFunction& m_function;
    const std::vector<std::uint32_t>& m_globals;
    std::vector<Sum> m_stack;
    TextUses m_found;
};

}  // namespace

TextUses findTextUses(const CompiledFunction& function, const Flow& flow, const std::vector<std::uint32_t>& globals) {
    TextUseFinder finder(function, flow, globals);
    for (const Block& block : flow.blocks) {
        finder.visit(block);
    }
    return finder.take();
}

}  // namespace morvel::ruby::internal
