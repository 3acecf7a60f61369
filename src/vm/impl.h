// The state and the operations behind RubyVM.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <string>

#include "compiler/program.h"
#include "morvel/ruby/vm.h"
#include "value/function_internals.h"
#include "value/short_strings.h"
#include "value/spare_memory.h"
#include "vm/globals.h"
#include "vm/runs.h"

namespace morvel::ruby {

namespace internal {

class Engine;

/// Sized to share the words of a text.
using RecentStrings = ShortStrings<2048, 16384>;

/// Which executor runs functions. Only tests, which compare the two, change the choice.
enum class ExecutorChoice : std::uint8_t { Automatic, BaselineOnly };

}  // namespace internal

class RubyVM::Impl {
public:
    using Program = internal::Program;
    using CompiledFunction = internal::CompiledFunction;

    /// Binds the standard library.
    explicit Impl(RubyVM* vm);
    ~Impl();
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    /// The implementation behind a VM, for host functions that belong to the runtime.
    [[nodiscard]] static Impl& of(RubyVM& vm) noexcept { return *vm.m_impl; }

    /// Releases all globals while the VM still works, because objects they captured may use it when destroyed. The VM
    /// is unusable afterwards.
    void close() noexcept;

    /// Frees memory that is kept for reuse; true when there was any.
    bool giveBackSpareMemory() noexcept;

    /// Sets the version globals and binds every built-in.
    void bindDefaults();

    /// Binds a host function; returns the handle that the new global points at.
    RubyFunctionHandle& bindFunction(const std::string& name, RubyHostFunction callback);
    void setGlobal(const std::string& name, const RubyValue& value);
    [[nodiscard]] bool getGlobal(const std::string& name, RubyValue& value) const;

    [[nodiscard]] static RubyBytecode compileScript(const std::string& source, const std::string& chunkName);
    [[nodiscard]] static bool writeBytecodeFile(const std::string& source, const std::string& outputPath,
                                                const std::string& chunkName, std::string* error);
    RubyResult runScriptString(const std::string& source, const std::string& chunkName);
    RubyResult runScriptFile(const std::string& path);
    RubyResult runBytecode(const RubyBytecode& bytecode);
    RubyResult runBytecodeFile(const std::string& path);

    /// Compiles source text into a function value for its top-level code, without running it.
    [[nodiscard]] static RubyValue loadScript(const std::string& source, const std::string& chunkName);

    std::size_t ensureGlobalSlot(const std::string& name) { return globals.ensureSlot(name); }
    void setGlobalSlotValue(std::size_t slot, const RubyValue& value) { globals.setValue(slot, value); }

    /// Runs one function of a loaded program. This is the one place that chooses the executor. The caller has checked
    /// that there is native stack left, because it knows the location for the error.
    RubyValue runFunction(const std::shared_ptr<Program>& program, std::int32_t functionIndex,
                          const RubyValue* arguments, std::size_t argumentCount);

    /// Calls a host function for the innermost run, which fails if it is no longer the innermost afterwards.
    RubyValue callHost(const RubyFunctionHandle& handle, const RubyValue* arguments, std::size_t argumentCount) const;

    /// Calls any value. `program` and `line` are the caller's: they locate errors raised before the callee starts.
    /// Fails with "attempted to call a non-function value", "function handle is empty",
    /// "script function program is missing" or "function index is out of range", or as the callee does.
    RubyValue callValue(const Program& program, const RubyValue& callee, const RubyValue* arguments,
                        std::size_t argumentCount, unsigned line);

    /// The baseline interpreter: runs stack instructions one by one and checks everything as it goes.
    RubyValue executeFunction(const std::shared_ptr<Program>& program, std::int32_t functionIndex,
                              const RubyValue* arguments, std::size_t argumentCount);

    /// Runs a function with a fast form by walking its expression tree.
    RubyValue executeFastFunction(const std::shared_ptr<Program>& program, const CompiledFunction& function,
                                  const RubyValue* arguments, std::size_t argumentCount);
    RubyValue evaluateFastNode(const Program& program, const CompiledFunction& function, std::int32_t nodeIndex,
                               const RubyValue* arguments, std::size_t argumentCount) const;

    /// Makes the spare outcome, for a pcall without memory for its own, unless there is one. Called before the
    /// protected call. When making it fails, there is none.
    void prepareSpareOutcome() noexcept {
        if (m_spareOutcome.isNil()) [[unlikely]] {
            makeSpareOutcome();
        }
    }
    /// The spare outcome; nil when there is none.
    [[nodiscard]] RubyValue takeSpareOutcome() noexcept { return std::move(m_spareOutcome); }

    /// Calls arguments[0] with the other arguments in protected mode; the result array of `pcall`.
    RubyValue protectedCall(const Program& program, const RubyValue* arguments, std::size_t argumentCount,
                            unsigned line);

    /// Declared first to be destroyed last, once everything else is spare.
    struct TrimAtEnd {
        TrimAtEnd() = default;
        TrimAtEnd(const TrimAtEnd&) = delete;
        TrimAtEnd& operator=(const TrimAtEnd&) = delete;
        ~TrimAtEnd() { internal::trimSpareMemory(); }
    } const trimAtEnd;
    struct ReleaseBinder {
        void operator()(const internal::Binder* released) const noexcept { released->release(); }
    };
    const std::unique_ptr<const internal::Binder, ReleaseBinder> binder{new internal::Binder};
    internal::GlobalTable globals;
    internal::Runs runs;
    internal::ExecutorChoice executor = internal::ExecutorChoice::Automatic;
    std::mt19937_64 random;
    /// Short strings that operators and built-ins made recently.
    internal::RecentStrings shortStrings;
    /// The VM that owns this implementation; host functions receive it.
    RubyVM* owner;

private:
    void makeSpareOutcome() noexcept;
    /// Like protectedCall, but throws std::bad_alloc when there is no memory for the outcome.
    RubyValue protectedOutcome(const Program& program, const RubyValue* arguments, std::size_t argumentCount,
                               unsigned line);

    RubyValue m_spareOutcome;
    std::unique_ptr<internal::Engine> m_engine;
};

namespace internal {

/// A function value for function `functionIndex` of `program`, which the value keeps alive.
[[nodiscard]] RubyValue makeScriptFunction(const std::string& name, std::int32_t functionIndex,
                                           const std::shared_ptr<Program>& program);

}  // namespace internal

}  // namespace morvel::ruby
