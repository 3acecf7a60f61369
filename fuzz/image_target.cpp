// Takes arbitrary bytes as an image: loads it, writes it again, lists it and runs it with bounds.
#include <algorithm>
#include <vector>

#include "bounded_vm.h"
#include "bytecode/image.h"
#include "engine_listing.h"
#include "fuzz_target.h"
#include "listing.h"

namespace {

using namespace morvel::ruby;

/// An image that loads must be written back unchanged, apart from its version, the bytes of booleans, and trailing
/// bytes.
void checkRoundTrip(const RubyBytecode& image) {
    internal::Program program;
    try {
        program = internal::deserializeProgram(image);
    } catch (const RubyError&) {
        return;
    }
    (void)tools::listProgram(program);
    (void)tools::listEngineCode(program);
    const RubyBytecode once = internal::serializeProgram(program);
    const RubyBytecode twice = internal::serializeProgram(internal::deserializeProgram(once));
    if (once.bytes != twice.bytes) {
        fuzz::reportFinding("an image changes when it is loaded and written", "");
    }
    if (once.bytes.size() > image.bytes.size()) {
        fuzz::reportFinding("an image grows when it is loaded and written", "");
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    RubyBytecode image;
    image.bytes.assign(data, data + size);
    checkRoundTrip(image);
    fuzz::BoundedVm bounded;
    const RubyResult result = bounded.runImage(image);
    (void)fuzz::textOf(result.value);
    if (bounded.runSource("1 + 1", "after").value.toString() != "2") {
        fuzz::reportFinding("the VM is not usable afterwards", result.error.c_str());
    }
    fuzz::breakRings(result.value);
    fuzz::breakRings(bounded.vm());
    return 0;
}
