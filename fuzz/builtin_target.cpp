// Calls single built-ins with generated arguments, several times on the same values.
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "bounded_vm.h"
#include "byte_source.h"
#include "fuzz_target.h"
#include "support/builtins.h"

namespace {

using namespace morvel::ruby;
using fuzz::ByteSource;

constexpr std::array<std::int64_t, 14> kIntegers{0,
                                                 1,
                                                 -1,
                                                 2,
                                                 3,
                                                 10,
                                                 36,
                                                 37,
                                                 255,
                                                 256,
                                                 1'000'000'000'000,
                                                 std::numeric_limits<std::int64_t>::max(),
                                                 std::numeric_limits<std::int64_t>::min(),
                                                 1LL << 53};
const std::array<double, 12> kFloats{0.0,
                                     -0.0,
                                     0.5,
                                     -2.5,
                                     1e300,
                                     -1e300,
                                     0x1p63,
                                     -0x1p63,
                                     std::numeric_limits<double>::infinity(),
                                     -std::numeric_limits<double>::infinity(),
                                     std::nan(""),
                                     5e-324};
constexpr std::array<const char*, 12> kTexts{"",     "%d+",   "%d",   "(%a+)%-(%d+)", "a-1 b-22", "  12 ",
                                             "0x1f", "1e400", "-inf", "%s %f %%",     ",",        "return 1"};

class ArgumentGenerator {
public:
    ArgumentGenerator(ByteSource& bytes, RubyVM& vm) : m_bytes(bytes), m_vm(vm) {}

    RubyValue value(std::size_t depth) {
        // Reusing values lets containers meet themselves.
        if (!m_made.empty() && m_bytes.chance(70)) {
            return m_made[m_bytes.byte() % m_made.size()];
        }
        RubyValue made = fresh(depth);
        m_made.push_back(made);
        return made;
    }

private:
    RubyValue fresh(std::size_t depth) {
        switch (m_bytes.below(depth > 3 ? 8 : 12)) {
            case 0:
                return nullptr;
            case 1:
                return m_bytes.pick(kIntegers);
            case 2:
                return static_cast<std::int64_t>(m_bytes.below(12)) - 4;
            case 3:
                return m_bytes.pick(kFloats);
            case 4:
                return m_bytes.chance(128);
            case 5:
                return m_bytes.pick(kTexts);
            case 6:
                return m_bytes.text(40);
            case 7: {
                RubyValue function;
                (void)m_vm.getGlobal(m_bytes.pick(std::array{"len", "error", "pcall", "twice", "fails"}), function);
                return function;
            }
            case 8:
                return array(depth, m_bytes.below(5));
            case 9:
                // Long enough for sorting to take its usual path.
                return array(3, 20 + m_bytes.below(40));
            case 10:
                return map(depth, m_bytes.below(5));
            default:
                return map(3, 10 + m_bytes.below(20));
        }
    }

    RubyValue array(std::size_t depth, std::size_t count) {
        RubyValue made = RubyValue::makeArray();
        for (; count > 0; --count) {
            made.asArray().push_back(value(depth + 1));
        }
        return made;
    }

    RubyValue map(std::size_t depth, std::size_t count) {
        RubyValue made = RubyValue::makeMap();
        for (; count > 0; --count) {
            const std::string key = m_bytes.chance(128) ? std::to_string(m_bytes.below(30)) : m_bytes.text(8);
            made.asMap()[key] = value(depth + 1);
        }
        return made;
    }

    ByteSource& m_bytes;
    RubyVM& m_vm;
    std::vector<RubyValue> m_made;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::vector<std::string> kNames = tests::builtinNames();
    fuzz::BoundedVm bounded;
    if (!bounded.runSource("def twice(x) y = x return [y, y] end def fails(x) return x - nil end", "setup").ok) {
        fuzz::reportFinding("the set-up failed", "");
    }
    ByteSource bytes({data, size});
    ArgumentGenerator arguments(bytes, bounded.vm());
    constexpr std::size_t kMostCalls = 8;
    std::vector<RubyValue> roots;
    for (std::size_t calls = 0; calls < kMostCalls && !bytes.isEmpty(); ++calls) {
        std::string call = "r = " + kNames[bytes.byte() % kNames.size()] + "(";
        const std::size_t count = bytes.below(5);
        for (std::size_t i = 0; i < count; ++i) {
            const std::string name = "a" + std::to_string(i);
            roots.push_back(arguments.value(0));
            bounded.vm().setGlobal(name, roots.back());
            call += (i == 0 ? "" : ", ") + name;
        }
        call += ")";
        const RubyResult result = bounded.runSource(call, "call");
        if (!result.ok && result.error.starts_with("call:1:") && result.error.find("expected") != std::string::npos) {
            fuzz::reportFinding("a call does not compile", call.c_str());
        }
        (void)fuzz::textOf(result.value);
        roots.push_back(result.value);
    }
    if (bounded.runSource("1 + 1", "after").value.toString() != "2") {
        fuzz::reportFinding("the VM is not usable afterwards", "");
    }
    for (const RubyValue& root : roots) {
        fuzz::breakRings(root);
    }
    fuzz::breakRings(bounded.vm());
    return 0;
}
