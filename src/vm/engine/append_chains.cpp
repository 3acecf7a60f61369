#include "vm/engine/append_chains.h"

#include <algorithm>
#include <utility>

#include "vm/engine/global_names.h"

namespace morvel::ruby::internal {

namespace {

constexpr auto kNone = static_cast<std::size_t>(-1);

/// An entry of the stack, as a sum that begins with the value of a variable or with one of its elements.
struct Sum {
    /// The LoadName of the variable; kNone when the entry is something else.
    std::size_t load = kNone;
    bool beginsWithElement = false;
    std::size_t firstAdd = kNone;
    std::size_t lastAdd = kNone;

    [[nodiscard]] bool isVariable() const { return load != kNone && !beginsWithElement && firstAdd == kNone; }
    [[nodiscard]] bool isChain() const { return firstAdd != lastAdd; }
};

/// Runs the stack code of each block over sums instead of values.
class TextUseFinder {
public:
    TextUseFinder(const CompiledFunction& function, const std::vector<std::uint32_t>& globals)
        : m_function(function), m_globals(globals) {
        m_found.takenOver.resize(function.code.size(), false);
    }

    void visit(const Block& block) {
        m_stack.clear();
        for (std::size_t i = block.begin; i < block.end; ++i) {
            step(i);
        }
    }

    [[nodiscard]] TextUses take() { return std::move(m_found); }

private:
    void step(std::size_t index) {
        const Instruction& instruction = m_function.code[index];
        switch (instruction.op) {
            case OpCode::LoadName:
                m_stack.emplace_back().load = index;
                return;
            case OpCode::Add:
                return add(index);
            case OpCode::Call:
                for (std::int32_t i = 0; i < instruction.a; ++i) {
                    takeOver(pop());
                }
                pop();
                m_stack.emplace_back();
                return;
            case OpCode::GetIndex:
                return getIndex();
            case OpCode::SetIndex:
                return setIndex();
            case OpCode::StoreName: {
                const Sum value = pop();
                if (value.isChain() && !value.beginsWithElement && isSameVariable(value.load, index)) {
                    note(value);
                }
                m_stack.emplace_back();
                return;
            }
            default:
                return other(instruction);
        }
    }

    void add(std::size_t index) {
        pop();
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
        pop();
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
        pop();
        const Sum container = pop();
        if (value.isChain() && value.beginsWithElement && container.isVariable() &&
            isSameVariable(value.load, container.load)) {
            note(value);
        }
        m_stack.emplace_back();
    }

    void other(const Instruction& instruction) {
        const OpcodeInfo& info = *opcodeInfo(instruction.op);
        const std::int32_t pops = info.pops == kCounted ? instruction.a : info.pops;
        m_stack.resize(m_stack.size() - std::min(m_stack.size(), static_cast<std::size_t>(pops)));
        m_stack.resize(m_stack.size() + static_cast<std::size_t>(info.pushes));
    }

    /// Entries from before the block are not known.
    Sum pop() {
        if (m_stack.empty()) {
            return {};
        }
        const Sum top = m_stack.back();
        m_stack.pop_back();
        return top;
    }

    void note(const Sum& sum) {
        // Hand-made code may have chains inside the parts of others: the outer one counts.
        while (!m_found.chains.empty() && m_found.chains.back().firstAdd > sum.firstAdd) {
            m_found.chains.pop_back();
        }
        m_found.chains.push_back({sum.firstAdd, sum.lastAdd});
    }

    [[nodiscard]] bool isSameVariable(std::size_t one, std::size_t other) const {
        if (m_globals[one] != kNotGlobal || m_globals[other] != kNotGlobal) {
            return m_globals[one] == m_globals[other];
        }
        return localSlotAt(m_function, one) == localSlotAt(m_function, other);
    }

    const CompiledFunction& m_function;
    const std::vector<std::uint32_t>& m_globals;
    std::vector<Sum> m_stack;
    TextUses m_found;
};

}  // namespace

TextUses findTextUses(const CompiledFunction& function, const Flow& flow, const std::vector<std::uint32_t>& globals) {
    TextUseFinder finder(function, globals);
    for (const Block& block : flow.blocks) {
        finder.visit(block);
    }
    return finder.take();
}

}  // namespace morvel::ruby::internal
