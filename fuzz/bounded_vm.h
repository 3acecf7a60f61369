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

/// Counting bounds what a program does, and changes its code. What is known to end can run without, as it is.
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
    /// What has been printed, up to a limit.
    [[nodiscard]] const std::string& output() const noexcept { return m_output; }
    /// True when a program wanted more steps than there are.
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

/// A value's text, or the reason why it has none.
[[nodiscard]] std::string textOf(const RubyValue& value);

/// What a value is, with the kind of everything in it; of large and deep values the beginning. Quick also for values
/// whose text would be endless.
[[nodiscard]] std::string describe(const RubyValue& value);

/// Empties every container reachable from a VM's globals, so that rings in them do not count as leaks.
void breakRings(RubyVM& vm);

/// Takes a value apart in the same way.
void breakRings(const RubyValue& value);

}  // namespace morvel::ruby::fuzz
