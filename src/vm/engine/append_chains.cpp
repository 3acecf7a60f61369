#include "vm/engine/append_chains.h"

#include <algorithm>
#include <optional>

namespace morvel::ruby::internal {

namespace {

class ChainFinder {
public:
    ChainFinder(const Program& program, const CompiledFunction& function, const Flow& flow)
        : m_program(program), m_code(function.code), m_flow(flow) {}

    /// The chain that begins with the load at `load` and ends before `end`.
    [[nodiscard]] std::optional<AppendChain> find(std::size_t load, std::size_t end,
                                                  const std::vector<std::uint32_t>& globals) const {
        constexpr std::size_t kLongestStatement = 64;
        const std::int32_t depth = m_flow.depths[load] + 1;
        AppendChain chain{load, 0, 0};
        std::size_t additions = 0;
        bool hasText = false;
        bool hasNumber = false;
        end = std::min(end, load + kLongestStatement);
        for (std::size_t i = load + 1; i + 1 < end; ++i) {
            if (m_code[i].op == OpCode::StoreName && m_flow.depths[i] == depth) {
                chain.store = i;
                const bool mayBuildText = hasText || !hasNumber;
                return additions > 1 && mayBuildText && globals[i] == globals[load] ? std::optional(chain)
                                                                                    : std::nullopt;
            }
            // What leaves just the sum on the stack has to be an addition to it.
            if (m_flow.depths[i + 1] > depth) {
                continue;
            }
            if (m_code[i].op != OpCode::Add || m_flow.depths[i] != depth + 1) {
                return std::nullopt;
            }
            chain.firstAdd = additions == 0 ? i : chain.firstAdd;
            ++additions;
            hasText = hasText || isText(m_code[i - 1]);
            hasNumber = hasNumber || isNumber(m_code[i - 1]);
        }
        return std::nullopt;
    }

private:
    /// True when the part that ends with this instruction is a literal text.
    [[nodiscard]] bool isText(const Instruction& part) const {
        return part.op == OpCode::PushConst && m_program.constants[static_cast<std::size_t>(part.a)].isString();
    }

    /// True when it surely is no text.
    [[nodiscard]] bool isNumber(const Instruction& part) const {
        switch (part.op) {
            case OpCode::PushConst:
                return !isText(part);
            case OpCode::Subtract:
            case OpCode::Multiply:
            case OpCode::Divide:
            case OpCode::Modulo:
            case OpCode::Negate:
                return true;
            default:
                return false;
        }
    }

    const Program& m_program;
    const std::vector<Instruction>& m_code;
    const Flow& m_flow;
};

}  // namespace

std::vector<AppendChain> findAppendChains(const Program& program, const CompiledFunction& function, const Flow& flow,
                                          const std::vector<std::uint32_t>& globals, std::uint32_t notGlobal) {
    const ChainFinder finder(program, function, flow);
    std::vector<AppendChain> chains;
    for (const Block& block : flow.blocks) {
        for (std::size_t i = block.begin; i < block.end; ++i) {
            if (function.code[i].op != OpCode::LoadName || globals[i] == notGlobal) {
                continue;
            }
            if (const auto chain = finder.find(i, block.end, globals)) {
                chains.push_back(*chain);
                i = chain->store;
            }
        }
    }
    return chains;
}

}  // namespace morvel::ruby::internal
