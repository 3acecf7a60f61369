// Globals, and the operations that compile, load and run.
#include "vm/impl.h"

#include <chrono>
#include <new>

#include "bytecode/image.h"
#include "compiler/compiler.h"
#include "value/deferred_release.h"
#include "value/files.h"
#include "value/native_stack.h"
#include "value/spare_memory.h"
#include "vm/engine/engine.h"
#include "vm/errors.h"

namespace morvel::ruby {

namespace {

RubyResult failure(std::string message) {
    RubyResult result;
    result.error = std::move(message);
    return result;
}

// Must not throw: when there is no memory for the message, it becomes one that needs none.
RubyResult failure(const std::exception& exception) noexcept {
    try {
        return failure(internal::errorText(exception));
    } catch (const std::bad_alloc&) {
        return failure("out of memory");
    }
}

/// Lets memory that a VM keeps for reuse be freed while the VM runs.
class SpareMemoryOfVm final : public internal::SpareMemory {
public:
    explicit SpareMemoryOfVm(RubyVM::Impl& vm) noexcept : m_vm(vm) {}

private:
    bool giveBack() noexcept override { return m_vm.giveBackSpareMemory(); }

    RubyVM::Impl& m_vm;
};

RubyFunctionHandle::Intrinsic intrinsicFor(const std::string& name) {
    using Intrinsic = RubyFunctionHandle::Intrinsic;
    return name == "error"       ? Intrinsic::Error
           : name == "pcall"     ? Intrinsic::Pcall
           : name == "table_set" ? Intrinsic::TableSet
                                 : Intrinsic::None;
}

}  // namespace

RubyVM::Impl::Impl(RubyVM* vm)
    : random(static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count())),
      owner(vm),
      m_engine(std::make_unique<internal::Engine>(*this)) {
    bindDefaults();
}

RubyVM::Impl::~Impl() = default;

void RubyVM::Impl::close() noexcept {
    const internal::ImmediateReleaseScope now(*binder);
    globals.release();
}

bool RubyVM::Impl::giveBackSpareMemory() noexcept {
    const bool hadStrings = shortStrings.clear();
    const bool hadStack = m_engine->giveBackSpareStack();
    return hadStrings || hadStack;
}

RubyFunctionHandle& RubyVM::Impl::bindFunction(const std::string& name, RubyHostFunction callback) {
    auto handle = std::make_unique<RubyFunctionHandle>();
    RubyFunctionHandle& bound = *handle;
    handle->intrinsic = intrinsicFor(name);
    if (const auto* plain = callback.target<RubyNativeFunction>()) {
        handle->nativeFunction = *plain;
    } else {
        internal::FunctionInternals::set(bound, *binder);
    }
    handle->hostFunction = std::move(callback);
    handle->name = name;
    setGlobal(name, RubyValue(std::move(handle)));
    return bound;
}

void RubyVM::Impl::setGlobal(const std::string& name, const RubyValue& value) {
    setGlobalSlotValue(ensureGlobalSlot(name), value);
}

bool RubyVM::Impl::getGlobal(const std::string& name, RubyValue& value) const {
    const std::size_t slot = globals.findSlot(name);
    if (!globals.isDefined(slot)) {
        return false;
    }
    value = globals.value(slot);
    return true;
}

RubyBytecode RubyVM::Impl::compileScript(const std::string& source, const std::string& chunkName) {
    return internal::serializeProgram(internal::compileSource(source, chunkName));
}

bool RubyVM::Impl::writeBytecodeFile(const std::string& source, const std::string& outputPath,
                                     const std::string& chunkName, std::string* error) {
    RubyResult result;
    try {
        const RubyBytecode bytecode = compileScript(source, chunkName);
        const std::string_view bytes(reinterpret_cast<const char*>(bytecode.bytes.data()), bytecode.bytes.size());
        switch (internal::writeWholeFile(outputPath, bytes, internal::WriteMode::Truncate)) {
            case internal::WriteOutcome::Written:
                return true;
            case internal::WriteOutcome::CannotOpen:
                result = failure("unable to open bytecode output file: " + outputPath);
                break;
            case internal::WriteOutcome::CannotWrite:
                result = failure("failed to write file: " + outputPath);
                break;
        }
    } catch (const std::exception& exception) {
        result = failure(exception);
    }
    if (error != nullptr) {
        *error = std::move(result.error);
    }
    return false;
}

RubyResult RubyVM::Impl::runScriptString(const std::string& source, const std::string& chunkName) {
    RubyBytecode bytecode;
    try {
        bytecode = compileScript(source, chunkName);
    } catch (const std::exception& exception) {
        return failure(exception);
    }
    return runBytecode(bytecode);
}

RubyResult RubyVM::Impl::runScriptFile(const std::string& path) {
    std::string source;
    try {
        if (!internal::readWholeFile(path, source)) {
            return failure("unable to open script file: " + path);
        }
    } catch (const std::exception& exception) {
        return failure(exception);
    }
    return runScriptString(source, path);
}

RubyResult RubyVM::Impl::runBytecode(const RubyBytecode& bytecode) {
    const SpareMemoryOfVm spareMemory(*this);
    try {
        const auto program = std::make_shared<Program>(internal::deserializeProgram(bytecode));
        RubyResult result;
        internal::checkNativeStack();
        result.value = runFunction(program, 0, nullptr, 0);
        result.ok = true;
        return result;
    } catch (const std::exception& exception) {
        if (internal::isMemoryShort(exception)) {
            m_engine->giveBackMemory();
        }
        return failure(exception);
    }
}

RubyResult RubyVM::Impl::runBytecodeFile(const std::string& path) {
    RubyBytecode bytecode;
    try {
        std::string bytes;
        if (!internal::readWholeFile(path, bytes)) {
            return failure("unable to open bytecode file: " + path);
        }
        bytecode.bytes.assign(bytes.begin(), bytes.end());
    } catch (const std::exception& exception) {
        return failure(exception);
    }
    return runBytecode(bytecode);
}

RubyValue RubyVM::Impl::loadScript(const std::string& source, const std::string& chunkName) {
    const auto program = std::make_shared<Program>(internal::deserializeProgram(compileScript(source, chunkName)));
    return internal::makeScriptFunction("<load>", 0, program);
}

}  // namespace morvel::ruby
