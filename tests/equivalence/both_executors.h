// Runs a program on either executor and returns its observable outcome.
#pragma once

#include <string>

#include "morvel/ruby/vm.h"
#include "vm/impl.h"

namespace morvel::ruby::equivalence {

/// Everything about a run that a script, a host or a terminal can observe.
struct Observation {
    bool ok = false;
    std::string value;
    std::string error;
    std::string output;

    bool operator==(const Observation&) const = default;

    /// Where the native stack ends depends on the executor, and so does everything the run has done by then.
    [[nodiscard]] bool reachedTheStackLimit() const;
    [[nodiscard]] std::string describe() const;
};

[[nodiscard]] Observation observeSource(const std::string& source, const std::string& chunkName,
                                        internal::ExecutorChoice executor);

}  // namespace morvel::ruby::equivalence
