// Runs the lines of an interactive session, each as a separate chunk, on one VM.
#include <string>
#include <string_view>

#include "bounded_vm.h"
#include "fuzz_target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace morvel::ruby::fuzz;
    constexpr std::size_t kMostLines = 40;
    std::string_view session(reinterpret_cast<const char*>(data), size);
    BoundedVm bounded;
    for (std::size_t lines = 0; !session.empty() && lines < kMostLines; ++lines) {
        const std::size_t end = session.find('\n');
        const std::string line(session.substr(0, end));
        session.remove_prefix(end == std::string_view::npos ? session.size() : end + 1);
        if (line == "exit" || line == "quit") {
            break;
        }
        if (line.empty()) {
            continue;
        }
        const morvel::ruby::RubyResult result = bounded.runSource(line, "<repl>");
        if (!result.ok && result.error.find("too many steps") != std::string::npos) {
            break;
        }
        (void)textOf(result.value);
        breakRings(result.value);
    }
    breakRings(bounded.vm());
    return 0;
}
