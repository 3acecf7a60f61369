#include "vm/engine/last_reads.h"

#include <cstddef>
#include <utility>

#include "vm/engine/global_names.h"

namespace morvel::ruby::internal {

namespace {

bool endsStatement(OpCode op) { return op == OpCode::StoreName || op == OpCode::Pop || endsBlock(op); }

}  // namespace

std::vector<bool> findLastReads(const CompiledFunction& function, const Flow& flow,
                                const std::vector<std::uint32_t>& globals, std::vector<bool> takenOver) {
    std::vector<bool> lastReads = std::move(takenOver);
    // The next read of each local. A read left by an earlier block has a lower index and does not count.
    std::vector<std::size_t> nextReads(function.localNames.size(), 0);
    for (const Block& block : flow.blocks) {
        const bool returns = function.code[block.end - 1].op == OpCode::Return;
        std::size_t statementEnd = block.end;
        for (std::size_t i = block.end; i-- > block.begin;) {
            const OpCode op = function.code[i].op;
            if (endsStatement(op)) {
                statementEnd = i;
            }
            if (op != OpCode::LoadName || globals[i] != kNotGlobal) {
                continue;
            }
            const std::int32_t local = localSlotAt(function, i);
            std::size_t& nextRead = nextReads[static_cast<std::size_t>(local)];
            const bool isTakenOver = lastReads[i];
            const bool isReadAgain = nextRead > i;
            const bool isOverwritten =
                statementEnd < block.end && function.code[statementEnd].op == OpCode::StoreName &&
                globals[statementEnd] == kNotGlobal && localSlotAt(function, statementEnd) == local &&
                (flow.depths[statementEnd] == flow.depths[i] + 1 || isTakenOver) &&
                !(isReadAgain && nextRead < statementEnd);
            lastReads[i] = isOverwritten || (returns && isTakenOver && !isReadAgain);
            nextRead = i;
        }
    }
    return lastReads;
}

}  // namespace morvel::ruby::internal
