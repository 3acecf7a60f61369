// A VM for the scripts and images of fuzzers: bounded in steps and memory, without files, and the same every time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "compiler/program.h"
#include "morvel/ruby/vm.h"
#include "vm/impl.h"

namespace morvel::ruby::fuzz {

/// Changes a program so that it counts its steps: whatever jumps backwards, and every function that calls others, asks
/// the bounded VM first. Apart from the bound nothing that can be observed changes.
void countSteps(internal::Program& program);

class BoundedVm {
public:
    explicit BoundedVm(internal::ExecutorChoice executor = internal::ExecutorChoice::Automatic);
    BoundedVm(const BoundedVm&) = delete;
    BoundedVm& operator=(const BoundedVm&) = delete;

    /// Compiles, bounds and runs source text.
    RubyResult runSource(const std::string& source, const std::string& chunkName);
    /// Loads, bounds and runs an image.
    RubyResult runImage(const RubyBytecode& image);
    /// Bounds and runs a program.
    RubyResult run(internal::Program program);

    [[nodiscard]] RubyVM& vm() noexcept { return m_vm; }
    /// What has been printed, up to a limit.
    [[nodiscard]] const std::string& output() const noexcept { return m_output; }

private:
    void bindSubstitutes();
    RubyValue load(RubyArguments arguments);
    void print(std::string_view text);

    RubyVM m_vm;
    std::string m_output;
    std::size_t m_steps = 0;
};

/// A value's text, or the reason why it has none.
[[nodiscard]] std::string textOf(const RubyValue& value);

/// Empties every container reachable from a VM's globals, so that rings in them do not count as leaks.
void breakRings(RubyVM& vm);

/// Takes a value apart in the same way.
void breakRings(const RubyValue& value);

}  // namespace morvel::ruby::fuzz
