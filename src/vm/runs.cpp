#include "vm/runs.h"

#include <algorithm>

#include "morvel/ruby/error.h"
#include "value/box_pools.h"

namespace morvel::ruby::internal {

void Runs::failElsewhere() { throw RubyError("VM is running on another stack"); }

std::size_t Runs::depthInside(Id run) const noexcept {
    const auto next = std::find_if(m_runs.begin(), m_runs.end(), [run](const Run& other) { return other.id > run; });
    return next->depth;
}

RunScope::RunScope(Runs& runs, std::size_t depth) : m_runs(runs), m_id(runs.m_last + 1) {
    runs.m_runs.push_back({m_id, depth});
    runs.m_last = m_id;
    runs.m_innermost = m_id;
    boxPool.beginRun();
}

RunScope::~RunScope() {
    std::vector<Runs::Run>& runs = m_runs.m_runs;
    runs.erase(std::find_if(runs.begin(), runs.end(), [this](const Runs::Run& run) { return run.id == m_id; }));
    m_runs.m_innermost = runs.empty() ? 0 : runs.back().id;
    boxPool.endRun();
}

}  // namespace morvel::ruby::internal
