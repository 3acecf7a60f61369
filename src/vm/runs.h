// The active runs of a VM.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace morvel::ruby::internal {

/// The runs of a VM that have begun and not ended, in the order in which they began.
///
/// Runs nest: a host function may run scripts, and only the innermost run proceeds. A host with several native stacks
/// (fibers) can break that rule by switching away from a host function in the middle of its run. The state of a run
/// lies above that of the runs around it, so a run that continues while it is not the innermost must fail before it
/// touches anything.
class Runs {
public:
    using Id = std::uint64_t;

    /// The run that may proceed; 0 when there is none.
    [[nodiscard]] Id innermost() const noexcept { return m_innermost; }
    /// Throws RubyError "VM is running on another stack" unless `run` is the innermost.
    void requireInnermost(Id run) const {
        if (run != m_innermost) [[unlikely]] {
            failElsewhere();
        }
    }
    [[noreturn]] static void failElsewhere();

    /// The engine's depth when the next run after `run` began.
    [[nodiscard]] std::size_t depthInside(Id run) const noexcept;

private:
    friend class RunScope;

    struct Run {
        Id id;
        std::size_t depth;
    };

    std::vector<Run> m_runs;
    Id m_innermost = 0;
    Id m_last = 0;
};

/// A run, from beginning to end. Scopes normally end in the reverse order of their beginning.
class RunScope {
public:
    /// `depth` is the engine's current depth. Throws std::bad_alloc.
    RunScope(Runs& runs, std::size_t depth);
    ~RunScope();
    RunScope(const RunScope&) = delete;
    RunScope& operator=(const RunScope&) = delete;

private:
    Runs& m_runs;
    Runs::Id m_id;
};

}  // namespace morvel::ruby::internal
