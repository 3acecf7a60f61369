// Runs generated programs on both executors: results, messages, output and globals must be the same.
#include <algorithm>
#include <functional>
#include <span>
#include <string>

#include "bounded_vm.h"
#include "byte_source.h"
#include "bytecode/image.h"
#include "compiler/compiler.h"
#include "counting_allocator.h"
#include "fuzz_target.h"
#include "program_generator.h"
#include "source_generator.h"
#include "support.h"

namespace {

using namespace morvel::ruby;
using internal::ExecutorChoice;

/// Everything that can be observed about a run.
struct Observed {
    std::string text;
    bool ranOutOfSteps = false;
    /// One executor may reach the memory limit earlier than the other.
    bool ranOutOfMemory = false;
    /// Memory blocks that were not freed.
    std::size_t leftBehind = 0;
};

/// Runs `body` on its own thread, because memory kept for reuse is freed when the thread ends. The stack is large
/// enough for either executor to spend all steps on nested calls, but no larger, because rendering a value that
/// contains itself uses all of it.
void runOnThread(const std::function<void()>& body) {
#ifdef NDEBUG
    constexpr bool kSmallFrames = !tests::kAddressSanitizer;
#else
    constexpr bool kSmallFrames = false;
#endif
    constexpr std::size_t kStack = std::size_t{kSmallFrames ? 4 : 64} * 1024 * 1024;
    tests::runOnStack(kStack, body);
}

std::string globalTexts(const RubyVM& vm) {
    std::string texts;
    for (const char* name :
         {"a", "b", "c", "d", "x", "y", "s", "t", "m", "r", "f", "g", "h", "k", "error", "p", "q", "i2"}) {
        RubyValue value;
        if (vm.getGlobal(name, value)) {
            texts += std::string(name) + ": " + fuzz::describe(value) + "\n";
        }
    }
    return texts;
}

Observed observe(const internal::Program& program, ExecutorChoice executor, fuzz::Steps steps) {
    Observed observed;
    const tests::AllocationCounts before = tests::allocationCounts();
    runOnThread([&] {
        fuzz::BoundedVm bounded(executor, steps);
        const RubyResult result = bounded.run(program);
        std::string text = result.ok ? "value: " + fuzz::describe(result.value) : "error: " + result.error;
        text += "\noutput: " + bounded.output() + "\n" + globalTexts(bounded.vm());
        // Whatever happened, the VM must remain usable.
        const RubyResult after = bounded.runSource("z = [a, 1] len(z)", "after");
        text += after.ok ? "after: " + fuzz::describe(after.value) : "after: " + after.error;
        observed.ranOutOfSteps = bounded.ranOutOfSteps();
        // A copy whose memory is not attributed to the thread.
        observed.text = text;
    });
    const tests::AllocationCounts after = tests::allocationCounts();
    observed.leftBehind = after.liveBlocks - before.liveBlocks - (observed.text.size() > 15 ? 1 : 0);
    observed.ranOutOfMemory = after.refused != before.refused;
    return observed;
}

void compare(const Observed& fast, const Observed& plain, const std::string& description) {
    if (fast.ranOutOfMemory || plain.ranOutOfMemory) {
        return;
    }
    if (fast.text != plain.text) {
        fuzz::reportFinding("the executors disagree",
                            (description + "\n--- engine\n" + fast.text + "\n--- plain\n" + plain.text).c_str());
    }
    // Reference cycles are never freed, and the executors may share values reachable from them differently; without
    // cycles, everything is freed.
    if ((fast.leftBehind == 0) != (plain.leftBehind == 0)) {
        fuzz::reportFinding("only one executor leaves memory behind",
                            (description + "\n--- engine " + std::to_string(fast.leftBehind) + ", plain " +
                             std::to_string(plain.leftBehind))
                                .c_str());
    }
}

/// The program encoded by the bytes; stores its source code, if any, in `description`.
internal::Program makeProgram(std::span<const std::uint8_t> data, std::string& description) {
    // The last bytes choose the changes to the program, the others the program itself.
    constexpr std::size_t kChangeBytes = 60;
    const std::size_t changing = std::min(kChangeBytes, data.size() / 4);
    fuzz::ByteSource bytes(data.first(data.size() - changing));
    fuzz::ByteSource changes(data.last(changing));
    const std::uint8_t kind = bytes.byte();
    if (kind < 64) {
        description = "a list of instructions";
        return fuzz::generateProgram(bytes);
    }
    description = fuzz::generateSource(bytes);
    internal::Program program = internal::compileSource(description, "t");
    if (kind < 128) {
        fuzz::mutateProgram(program, changes);
        description += "\n(mutated)";
    }
    return program;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kMostBytes = 4096;
    std::string description;
    const internal::Program program = makeProgram({data, std::min(size, kMostBytes)}, description);
    const Observed counted = observe(program, ExecutorChoice::Automatic, fuzz::Steps::Counted);
    if (counted.ranOutOfMemory) {
        return 0;
    }
    if (counted.ranOutOfSteps) {
        compare(counted, observe(program, ExecutorChoice::BaselineOnly, fuzz::Steps::Counted), description);
        return 0;
    }
    // It ended without reaching the limit, so it can run as generated.
    const Observed plain = observe(program, ExecutorChoice::BaselineOnly, fuzz::Steps::Uncounted);
    compare(counted, plain, description + "\n(engine with counted steps)");
    compare(observe(program, ExecutorChoice::Automatic, fuzz::Steps::Uncounted), plain, description);
    return 0;
}
