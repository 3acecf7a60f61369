// Generated programs on both executors: results, messages, output and globals must be the same.
#include <pthread.h>

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

namespace {

using namespace morvel::ruby;
using internal::ExecutorChoice;

/// Everything that can be observed about a run.
struct Observed {
    std::string text;
    /// Blocks of memory that were not given back.
    std::size_t leftBehind = 0;
};

void* runBody(void* body) {
    (*static_cast<const std::function<void()>*>(body))();
    return nullptr;
}

/// Runs `body` on a thread of its own: the plain executor needs a large stack to get as far as the other one, and what
/// the runtime keeps for reuse goes when the thread ends.
void runOnLargeStack(const std::function<void()>& body) {
    constexpr std::size_t kStack = std::size_t{48} * 1024 * 1024;
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, kStack);
    pthread_t thread{};
    if (pthread_create(&thread, &attributes, runBody, const_cast<std::function<void()>*>(&body)) != 0) {
        fuzz::reportFinding("no thread", "");
    }
    pthread_attr_destroy(&attributes);
    pthread_join(thread, nullptr);
}

std::string globalTexts(const RubyVM& vm) {
    std::string texts;
    for (const char* name :
         {"a", "b", "c", "d", "x", "y", "s", "t", "m", "r", "f", "g", "h", "k", "error", "p", "q", "i2"}) {
        RubyValue value;
        if (vm.getGlobal(name, value)) {
            texts += std::string(name) + ": " + fuzz::textOf(value) + "\n";
        }
    }
    return texts;
}

Observed observe(const internal::Program& program, ExecutorChoice executor) {
    Observed observed;
    const std::size_t before = tests::allocationCounts().liveBlocks;
    runOnLargeStack([&] {
        fuzz::BoundedVm bounded(executor);
        const RubyResult result = bounded.run(program);
        std::string text = result.ok ? "value: " + fuzz::textOf(result.value) : "error: " + result.error;
        text += "\noutput: " + bounded.output() + "\n" + globalTexts(bounded.vm());
        // The VM goes on as before, whatever happened.
        const RubyResult after = bounded.runSource("z = [a, 1] len(z)", "after");
        text += after.ok ? "after: " + fuzz::textOf(after.value) : "after: " + after.error;
        // A copy whose memory does not count as the thread's.
        observed.text = text;
    });
    observed.leftBehind = tests::allocationCounts().liveBlocks - before - (observed.text.size() > 15 ? 1 : 0);
    return observed;
}

/// A bound of memory is met earlier by one executor than by the other.
bool meetsBound(const std::string& text) {
    return text.find("out of memory") != std::string::npos || text.find("stack overflow") != std::string::npos;
}

/// The program that the bytes stand for; its source text, if it has any, goes to `description`.
internal::Program makeProgram(std::span<const std::uint8_t> data, std::string& description) {
    // The last bytes tell what to change in the program, the others what it is.
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
    const Observed fast = observe(program, ExecutorChoice::Automatic);
    const Observed plain = observe(program, ExecutorChoice::PlainOnly);
    if (meetsBound(fast.text) || meetsBound(plain.text)) {
        return 0;
    }
    if (fast.text != plain.text) {
        fuzz::reportFinding("the executors disagree",
                            (description + "\n--- engine\n" + fast.text + "\n--- plain\n" + plain.text).c_str());
    }
    // Rings are never freed, and what hangs on them may be shared in different ways; without them all is given back.
    if ((fast.leftBehind == 0) != (plain.leftBehind == 0)) {
        fuzz::reportFinding("only one executor leaves memory behind",
                            (description + "\n--- engine " + std::to_string(fast.leftBehind) + ", plain " +
                             std::to_string(plain.leftBehind))
                                .c_str());
    }
    return 0;
}
