// Takes arbitrary bytes as source code: compiles it and runs it with bounds.
#include <string>

#include "bounded_vm.h"
#include "fuzz_target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace morvel::ruby::fuzz;
    const std::string source(reinterpret_cast<const char*>(data), size);
    BoundedVm bounded;
    const morvel::ruby::RubyResult result = bounded.runSource(source, "fuzz");
    if (!result.ok && !result.value.isNil()) {
        reportFinding("a failed run has a value", source.c_str());
    }
    if (result.ok && !result.error.empty()) {
        reportFinding("a run that completed has an error", source.c_str());
    }
    (void)textOf(result.value);
    // Whatever happened, the VM must remain usable.
    bounded.vm().setGlobal("usable", 1);
    if (bounded.runSource("usable + 1", "after").value.toString() != "2") {
        reportFinding("the VM is not usable afterwards", source.c_str());
    }
    breakRings(result.value);
    breakRings(bounded.vm());
    return 0;
}
