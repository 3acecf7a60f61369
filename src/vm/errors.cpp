#include "vm/errors.h"

#include <cstring>
#include <new>

#include "morvel/ruby/error.h"
#include "value/memory_limit.h"
#include "value/native_stack.h"

namespace morvel::ruby::internal {

namespace {

bool isFailedAllocation(const std::exception& exception) noexcept {
    return dynamic_cast<const std::bad_alloc*>(&exception) != nullptr;
}

/// True when a failed allocation's text says more than those of the standard library, which name only the exception
/// class.
bool hasTextOfItsOwn(const std::exception& failedAllocation) noexcept {
    const char* const text = failedAllocation.what();
    return text != nullptr && *text != '\0' && std::strcmp(text, std::bad_alloc().what()) != 0 &&
           std::strcmp(text, std::bad_array_new_length().what()) != 0;
}

}  // namespace

std::string locationOf(const Program& program, unsigned line) {
    return program.name + ":" + std::to_string(line) + ": ";
}

void runtimeError(const Program& program, unsigned line, const std::string& message) {
    throw RubyError(locationOf(program, line) + message);
}

void raise(const Fault& fault, const Program& program, unsigned line) {
    switch (fault.kind) {
        case Fault::Kind::Located:
            runtimeError(program, line, fault.message);
        case Fault::Kind::StackOverflow:
            throw StackOverflow(locationOf(program, line));
        case Fault::Kind::Placeless:
            break;
    }
    throw RubyError(fault.message);
}

const std::string& requireStringConstant(const Program& program, std::int32_t index, unsigned line) {
    if (const std::string* text = getStringConstantPtr(program, index)) {
        return *text;
    }
    const bool exists = index >= 0 && static_cast<std::size_t>(index) < program.constants.size();
    runtimeError(program, line, exists ? "constant is not a string" : "constant index is out of range");
}

bool isMemoryShort(const std::exception& exception) noexcept {
    return isFailedAllocation(exception) && dynamic_cast<const SizeRefused*>(&exception) == nullptr;
}

std::string errorText(const std::exception& exception) {
    if (const auto* error = dynamic_cast<const RubyError*>(&exception)) {
        return error->message();
    }
    if (isFailedAllocation(exception) && !hasTextOfItsOwn(exception)) {
        return "out of memory";
    }
    // A host's exception may have no text.
    const char* const text = exception.what();
    return text != nullptr ? text : "";
}

std::string undefinedMessage(const std::string& name) { return "undefined variable or function '" + name + "'"; }

void undefinedName(const Program& program, unsigned line, const std::string& name) {
    runtimeError(program, line, undefinedMessage(name));
}

std::string describeArgumentExpectation(std::size_t minimum, std::size_t maximum) {
    if (minimum == maximum) {
        return minimum == 1 ? "exactly 1 argument" : "exactly " + std::to_string(minimum) + " arguments";
    }
    if (maximum == kNoMaximum) {
        return "at least " + std::to_string(minimum) + " arguments";
    }
    return "between " + std::to_string(minimum) + " and " + std::to_string(maximum) + " arguments";
}

void failArgumentCount(const char* name, std::size_t minimum, std::size_t maximum) {
    throw RubyError(std::string(name) + " expects " + describeArgumentExpectation(minimum, maximum));
}

}  // namespace morvel::ruby::internal
