// RubyVM: one interpreter instance, and the free functions that forward to it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "morvel/ruby/error.h"
#include "morvel/ruby/function.h"
#include "morvel/ruby/map.h"
#include "morvel/ruby/value.h"

namespace morvel::ruby {

/// The outcome of a run. The compiler warns when it is discarded.
struct [[nodiscard]] RubyResult {
    /// True when the run completed.
    bool ok = false;
    /// The value of the program's top-level code when ok, nil otherwise.
    RubyValue value;
    /// The error message when not ok, empty otherwise.
    std::string error;
};

/// A compiled script as a self-contained byte image.
struct RubyBytecode {
    std::vector<std::uint8_t> bytes;
};

/// One interpreter: its global variables, bound functions and random-number state.
///
/// A VM and every value reachable from it belong to one thread at a time; distinct VMs share nothing and may run on
/// different threads. Globals persist across runs. The run operations never throw a standard exception; they report
/// failures in the RubyResult. A moved-from VM may only be destroyed or assigned to.
///
/// Runs on one VM may nest: a host function may run scripts. A host with several native stacks (fibers) may switch
/// between runs of one VM, but only the run that began last may continue; any other fails with "VM is running on
/// another stack", which pcall does not catch. Every run must end before its native stack or the VM does.
///
/// Example:
///
///     RubyVM vm;
///     vm.bindFunction("twice", [](RubyVM&, RubyArguments arguments) { return arguments.at(0).asFloat() * 2; });
///     RubyResult result = vm.runScriptString("twice(21)", "example");  // result.value is the float 42.0
class RubyVM {
public:
    /// Makes an interpreter with the standard library bound. Throws std::bad_alloc when memory runs out.
    RubyVM();
    ~RubyVM();
    RubyVM(RubyVM&& other) noexcept;
    RubyVM& operator=(RubyVM&& other) noexcept;
    RubyVM(const RubyVM&) = delete;
    RubyVM& operator=(const RubyVM&) = delete;

    /// Defines or replaces the global `name` as a host function. A function bound as "error", "pcall" or "table_set"
    /// takes over that name's special treatment: the interpreter executes the call itself.
    ///
    /// The captures of `callback` are destroyed once nothing refers to the function any more. While a script runs on
    /// this thread, on any VM, that waits for the script's next instruction: when a host function called by one VM
    /// replaces a function of another, the replaced one keeps its captures until the host function has returned.
    void bindFunction(const std::string& name, RubyHostFunction callback);
    /// Defines or replaces a global.
    void setGlobal(const std::string& name, const RubyValue& value);
    /// Copies the global `name` into `value` and returns true, or returns false, with `value` untouched, when it is not
    /// defined.
    [[nodiscard]] bool getGlobal(const std::string& name, RubyValue& value) const;

    /// Compiles source text; `chunkName` stands in front of error positions. Throws RubyError with the text
    /// "chunk:line:column: message" for the first error in the source.
    [[nodiscard]] RubyBytecode compileScript(const std::string& source, const std::string& chunkName) const;
    /// Compiles source text and writes the image to a file. Returns false on any failure and stores its message in
    /// `error` when that is not null: the compile error, "unable to open bytecode output file: PATH" or
    /// "failed to write file: PATH". The file is opened only after the source has compiled.
    [[nodiscard]] bool writeBytecodeFile(const std::string& source, const std::string& outputPath,
                                         const std::string& chunkName, std::string* error = nullptr) const;

    /// Compiles and runs source text.
    RubyResult runScriptString(const std::string& source, const std::string& chunkName);
    /// Reads and runs a script file, with its path as the chunk name. Fails with "unable to open script file: PATH".
    RubyResult runScriptFile(const std::string& path);
    /// Loads and runs an image. Any bytes are safe: a damaged image gives an error.
    RubyResult runBytecode(const RubyBytecode& bytecode);
    /// The same as runBytecodeFile.
    RubyResult runScriptFromBytecodeFile(const std::string& path);
    /// Reads and runs an image file. Fails with "unable to open bytecode file: PATH".
    RubyResult runBytecodeFile(const std::string& path);

    /// The value's text, as RubyValue::toString gives it.
    [[nodiscard]] static std::string valueToString(const RubyValue& value);

    class Impl;

private:
    friend class Impl;
    std::unique_ptr<Impl> m_impl;
};

/// The same as vm.bindFunction(name, callback).
void bindCppFunctionToRubyVM(RubyVM& vm, const std::string& name, RubyHostFunction callback);
/// The same as vm.runScriptString(source, chunkName).
RubyResult runRubyScriptString(RubyVM& vm, const std::string& source, const std::string& chunkName);
/// The same as vm.runScriptFile(path).
RubyResult runRubyScriptFile(RubyVM& vm, const std::string& path);
/// The same as vm.runBytecode(bytecode).
RubyResult runRubyBytecode(RubyVM& vm, const RubyBytecode& bytecode);
/// The same as vm.runScriptFromBytecodeFile(path).
RubyResult runRubyScriptFromBytecodeFile(RubyVM& vm, const std::string& path);
/// The same as vm.runBytecodeFile(path).
RubyResult runRubyBytecodeFile(RubyVM& vm, const std::string& path);

}  // namespace morvel::ruby
