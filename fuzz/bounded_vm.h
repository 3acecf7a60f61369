// A VM for fuzzers' scripts and images: bounded in steps and memory, without files, and deterministic.
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

/// Changes a program so that it counts its steps: every backward jump, and every function that calls others, asks the
/// bounded VM first. Apart from the bound, its observable behaviour stays the same.
void countSteps(internal::Program& program);

/// Counting bounds a program but changes its code. Programs known to end can run uncounted and unchanged.
enum class Steps : std::uint8_t { Counted, Uncounted };

class BoundedVm {
public:
    explicit BoundedVm(internal::ExecutorChoice executor = internal::ExecutorChoice::Automatic,
                       Steps steps = Steps::Counted);
    BoundedVm(const BoundedVm&) = delete;
    BoundedVm& operator=(const BoundedVm&) = delete;

    /// Compiles, bounds and runs source text.
    RubyResult runSource(const std::string& source, const std::string& chunkName);
    /// Loads, bounds and runs an image.
    RubyResult runImage(const RubyBytecode& image);
    /// Bounds and runs a program.
    RubyResult run(internal::Program program);

    [[nodiscard]] RubyVM& vm() noexcept { return m_vm; }
    /// The output so far, up to a limit.
    [[nodiscard]] const std::string& output() const noexcept { return m_output; }
    /// True if a program exceeded the step limit.
    [[nodiscard]] bool ranOutOfSteps() const noexcept { return m_taken > kMostSteps; }

private:
    void bindSubstitutes();
    RubyValue load(RubyArguments arguments);
    void print(std::string_view text);

    static constexpr std::size_t kMostSteps = 600;

    RubyVM m_vm;
    Steps m_steps;
    std::string m_output;
    std::size_t m_taken = 0;
};

/// A value's text, or the reason why it cannot be rendered.
[[nodiscard]] std::string textOf(const RubyValue& value);

/// Describes a value and the kinds of everything in it; large and deep values are cut short. Fast even for values whose
/// text would be endless.
[[nodiscard]] std::string describe(const RubyValue& value);

/// Empties every container reachable from a VM's globals, so that cycles among them do not count as leaks.
void breakRings(RubyVM& vm);

/// The same for every container reachable from a value.
void breakRings(const RubyValue& value);

}  // namespace morvel::ruby::fuzz
