// The public VM class and the free functions: they only forward.
#include "morvel/ruby/vm.h"

#include "vm/impl.h"

namespace morvel::ruby {

RubyVM::RubyVM() : m_impl(std::make_unique<Impl>(this)) {}

RubyVM::~RubyVM() {
    if (m_impl != nullptr) {
        m_impl->close();
    }
}

RubyVM::RubyVM(RubyVM&& other) noexcept : m_impl(std::move(other.m_impl)) {
    if (m_impl != nullptr) {
        m_impl->owner = this;
    }
}

RubyVM& RubyVM::operator=(RubyVM&& other) noexcept {
    if (this != &other) {
        if (m_impl != nullptr) {
            m_impl->close();
        }
        m_impl = std::move(other.m_impl);
        if (m_impl != nullptr) {
            m_impl->owner = this;
        }
    }
    return *this;
}

void RubyVM::bindFunction(const std::string& name, RubyHostFunction callback) {
    m_impl->bindFunction(name, std::move(callback));
}

void RubyVM::setGlobal(const std::string& name, const RubyValue& value) { m_impl->setGlobal(name, value); }

bool RubyVM::getGlobal(const std::string& name, RubyValue& value) const { return m_impl->getGlobal(name, value); }

// Compiling needs nothing of the VM, but is part of its public interface.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
RubyBytecode RubyVM::compileScript(const std::string& source, const std::string& chunkName) const {
    return Impl::compileScript(source, chunkName);
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): as above.
bool RubyVM::writeBytecodeFile(const std::string& source, const std::string& outputPath, const std::string& chunkName,
                               std::string* error) const {
    return Impl::writeBytecodeFile(source, outputPath, chunkName, error);
}

RubyResult RubyVM::runScriptString(const std::string& source, const std::string& chunkName) {
    return m_impl->runScriptString(source, chunkName);
}

RubyResult RubyVM::runScriptFile(const std::string& path) { return m_impl->runScriptFile(path); }

RubyResult RubyVM::runBytecode(const RubyBytecode& bytecode) { return m_impl->runBytecode(bytecode); }

RubyResult RubyVM::runScriptFromBytecodeFile(const std::string& path) { return m_impl->runBytecodeFile(path); }

RubyResult RubyVM::runBytecodeFile(const std::string& path) { return m_impl->runBytecodeFile(path); }

std::string RubyVM::valueToString(const RubyValue& value) { return value.toString(); }

void bindCppFunctionToRubyVM(RubyVM& vm, const std::string& name, RubyHostFunction callback) {
    vm.bindFunction(name, std::move(callback));
}

RubyResult runRubyScriptString(RubyVM& vm, const std::string& source, const std::string& chunkName) {
    return vm.runScriptString(source, chunkName);
}

RubyResult runRubyScriptFile(RubyVM& vm, const std::string& path) { return vm.runScriptFile(path); }

RubyResult runRubyBytecode(RubyVM& vm, const RubyBytecode& bytecode) { return vm.runBytecode(bytecode); }

RubyResult runRubyScriptFromBytecodeFile(RubyVM& vm, const std::string& path) {
    return vm.runScriptFromBytecodeFile(path);
}

RubyResult runRubyBytecodeFile(RubyVM& vm, const std::string& path) { return vm.runBytecodeFile(path); }

}  // namespace morvel::ruby
