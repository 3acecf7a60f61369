#include "bounded_vm.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "bytecode/image.h"
#include "compiler/compiler.h"
#include "compiler/metadata.h"
#include "counting_allocator.h"
#include "vm/errors.h"

namespace morvel::ruby::fuzz {

namespace {

using internal::CompiledFunction;
using internal::Instruction;
using internal::OpCode;
using internal::Program;

constexpr std::size_t kMostOutput = 100'000;
constexpr std::size_t kMostMemory = std::size_t{24} * 1024 * 1024;
// No script can use this as a name.
constexpr const char* kTick = "count a step";

bool jumpsBack(const Instruction& instruction, std::size_t index) {
    return isJump(instruction.op) && instruction.a >= 0 && static_cast<std::size_t>(instruction.a) <= index;
}

bool namesConstant(OpCode op) {
    const internal::OpcodeInfo* info = internal::opcodeInfo(op);
    return info != nullptr &&
           (info->operand == internal::OperandKind::Constant || info->operand == internal::OperandKind::NameConstant);
}

/// Rewrites one function so that it counts its steps.
class StepCounter {
public:
    StepCounter(CompiledFunction& function, std::int32_t tickName) : m_function(function), m_tickName(tickName) {}

    void rewrite(bool countsEntry) {
        const std::vector<Instruction> old = std::move(m_function.code);
        m_function.code.clear();
        if (countsEntry) {
            emitTick(static_cast<std::int32_t>(kTickSize));
        }
        m_shift = static_cast<std::int32_t>(m_function.code.size());
        m_oldSize = old.size();
        std::vector<std::size_t> backward;
        for (std::size_t i = 0; i < old.size(); ++i) {
            Instruction instruction = old[i];
            if (jumpsBack(instruction, i)) {
                backward.push_back(m_function.code.size());
            }
            if (isJump(instruction.op)) {
                instruction.a = movedTarget(instruction.a);
            }
            m_function.code.push_back(instruction);
        }
        // Running off the old end must not run into the appended code.
        const std::size_t end = m_function.code.size();
        m_function.code.push_back({OpCode::Jump, 0, 0, 0});
        for (const std::size_t jump : backward) {
            const std::int32_t target = m_function.code[jump].a;
            m_function.code[jump].a = static_cast<std::int32_t>(m_function.code.size());
            emitTick(target);
        }
        m_function.code[end].a = static_cast<std::int32_t>(m_function.code.size());
    }

private:
    static constexpr std::size_t kTickSize = 3;

    /// Counts a step, then continues at `target`. The conditional jump pops the result without making it the function's
    /// last value.
    void emitTick(std::int32_t target) {
        m_function.code.push_back({OpCode::LoadName, m_tickName, 0, 0});
        m_function.code.push_back({OpCode::Call, 0, 0, 0});
        m_function.code.push_back({OpCode::JumpIfFalse, target, 0, 0});
    }

    [[nodiscard]] std::int32_t movedTarget(std::int32_t target) const {
        if (target < 0) {
            return target;
        }
        return static_cast<std::size_t>(target) <= m_oldSize ? target + m_shift
                                                             : std::numeric_limits<std::int32_t>::max();
    }

    CompiledFunction& m_function;
    std::int32_t m_tickName;
    std::int32_t m_shift = 0;
    std::size_t m_oldSize = 0;
};

void breakRingsIn(std::vector<RubyValue> pending) {
    while (!pending.empty()) {
        RubyValue value = std::move(pending.back());
        pending.pop_back();
        if (value.isArray()) {
            RubyArray elements = std::move(value.asArray());
            value.asArray().clear();
            std::move(elements.begin(), elements.end(), std::back_inserter(pending));
        } else if (value.isMap()) {
            RubyArray elements = value.asMap().entryValues();
            value.asMap().clear();
            std::move(elements.begin(), elements.end(), std::back_inserter(pending));
        }
    }
}

constexpr std::size_t kMostDescription = 2000;
constexpr std::size_t kDeepestDescription = 8;

void appendDescription(std::string& text, const RubyValue& value, std::size_t depth) {
    if (text.size() > kMostDescription || depth > kDeepestDescription) {
        text += "...";
    } else if (value.isString()) {
        const std::string& content = value.asString();
        text += '"' + content.substr(0, kMostDescription) + "\" of " + std::to_string(content.size());
    } else if (value.isFloat()) {
        text += "float " + value.toString();
    } else if (value.isArray()) {
        text += '[';
        for (const RubyValue& element : value.asArray()) {
            appendDescription(text, element, depth + 1);
            text += ", ";
            if (text.size() > kMostDescription) {
                break;
            }
        }
        text += "] of " + std::to_string(value.asArray().size());
    } else if (value.isMap()) {
        text += '{';
        for (const auto& [key, element] : value.asMap()) {
            text += key.substr(0, kMostDescription);
            text += ": ";
            appendDescription(text, element, depth + 1);
            text += ", ";
            if (text.size() > kMostDescription) {
                break;
            }
        }
        text += "} of " + std::to_string(value.asMap().size());
    } else {
        text += value.toString();
    }
}

RubyValue noFiles(RubyVM&, RubyArguments) { throw RubyError("no files here"); }

/// During its lifetime, limits memory beyond what is already in use.
class MemoryBound {
public:
    MemoryBound() { tests::limitLiveBytes(tests::allocationCounts().liveBytes + kMostMemory); }
    ~MemoryBound() { tests::limitLiveBytes(std::numeric_limits<std::size_t>::max()); }
    MemoryBound(const MemoryBound&) = delete;
    MemoryBound& operator=(const MemoryBound&) = delete;
};

}  // namespace

void countSteps(Program& program) {
    // The fast forms show which functions run without executing instructions.
    internal::finalizeProgramMetadata(program);
    const auto tickName = static_cast<std::int32_t>(program.constants.size());
    program.constants.emplace_back(kTick);
    for (CompiledFunction& function : program.functions) {
        for (Instruction& instruction : function.code) {
            // Constants that were out of range must stay so.
            if (instruction.a == tickName && namesConstant(instruction.op)) {
                instruction.a = std::numeric_limits<std::int32_t>::max();
            }
        }
    }
    for (std::size_t i = 0; i < program.functions.size(); ++i) {
        CompiledFunction& function = program.functions[i];
        if (function.fastKind != internal::FastKind::None) {
            continue;
        }
        bool calls = false;
        bool loops = false;
        for (std::size_t index = 0; index < function.code.size(); ++index) {
            calls = calls || function.code[index].op == OpCode::Call;
            loops = loops || jumpsBack(function.code[index], index);
        }
        if (calls || loops) {
            StepCounter(function, tickName).rewrite(calls);
        }
    }
}

BoundedVm::BoundedVm(internal::ExecutorChoice executor, Steps steps) : m_steps(steps) {
    RubyVM::Impl::of(m_vm).executor = executor;
    RubyVM::Impl::of(m_vm).random.seed(1);
    bindSubstitutes();
}

void BoundedVm::bindSubstitutes() {
    m_vm.bindFunction(kTick, [this](RubyVM&, RubyArguments) {
        ++m_taken;
        if (ranOutOfSteps()) {
            throw RubyError("too many steps");
        }
        return RubyValue(false);
    });
    for (const char* name : {"file_exists?", "read_file", "write_file", "append_file"}) {
        m_vm.bindFunction(name, noFiles);
    }
    m_vm.bindFunction("time_ms", [](RubyVM&, RubyArguments) { return RubyValue(12345); });
    if (m_steps == Steps::Counted) {
        m_vm.bindFunction("load", [this](RubyVM&, RubyArguments arguments) { return load(arguments); });
    }
    for (const char* name : {"puts", "print"}) {
        m_vm.bindFunction(name, [this](RubyVM&, RubyArguments arguments) {
            for (const RubyValue& argument : arguments) {
                print(describe(argument));
            }
            return RubyValue();
        });
    }
}

// Like the built-in, but counts the steps of the loaded code too.
RubyValue BoundedVm::load(RubyArguments arguments) {
    internal::requireArgumentCount("load", arguments.size(), 1, 2);
    for (const RubyValue& argument : arguments) {
        if (!argument.isString()) {
            throw RubyError("load expects a string argument");
        }
    }
    Program program =
        internal::compileSource(arguments[0].asString(), arguments.size() > 1 ? arguments[1].asString() : "<load>");
    countSteps(program);
    const auto loaded = std::make_shared<Program>(internal::deserializeProgram(internal::serializeProgram(program)));
    return internal::makeScriptFunction("<load>", 0, loaded);
}

void BoundedVm::print(std::string_view text) {
    m_output += text.substr(0, kMostOutput - std::min(kMostOutput, m_output.size()));
    m_output += '\n';
}

RubyResult BoundedVm::runSource(const std::string& source, const std::string& chunkName) {
    Program program;
    try {
        const MemoryBound bound;
        program = internal::compileSource(source, chunkName);
    } catch (const std::exception& exception) {
        RubyResult failed;
        failed.error = internal::errorText(exception);
        return failed;
    }
    return run(std::move(program));
}

RubyResult BoundedVm::runImage(const RubyBytecode& image) {
    Program program;
    try {
        const MemoryBound bound;
        program = internal::deserializeProgram(image);
    } catch (const std::exception& exception) {
        RubyResult failed;
        failed.error = internal::errorText(exception);
        return failed;
    }
    return run(std::move(program));
}

RubyResult BoundedVm::run(Program program) {
    if (m_steps == Steps::Counted) {
        countSteps(program);
    }
    const RubyBytecode image = internal::serializeProgram(program);
    const MemoryBound bound;
    return m_vm.runBytecode(image);
}

std::string textOf(const RubyValue& value) {
    try {
        const MemoryBound bound;
        return value.toString();
    } catch (const std::exception& exception) {
        return internal::errorText(exception);
    }
}

std::string describe(const RubyValue& value) {
    std::string text;
    appendDescription(text, value, 0);
    return text;
}

void breakRings(RubyVM& vm) {
    std::vector<RubyValue> roots;
    const auto& globals = RubyVM::Impl::of(vm).globals;
    for (std::size_t slot = 0; slot < globals.size(); ++slot) {
        if (globals.isDefined(slot)) {
            roots.push_back(globals.value(slot));
        }
    }
    breakRingsIn(std::move(roots));
}

void breakRings(const RubyValue& value) { breakRingsIn({value}); }

}  // namespace morvel::ruby::fuzz
