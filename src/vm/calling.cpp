#include "vm/calling.h"

#include <utility>

#include "morvel/ruby/error.h"
#include "value/box_pools.h"
#include "value/operators.h"
#include "vm/errors.h"
#include "vm/indexing.h"

namespace morvel::ruby::internal {

Fault callFault(const RubyValue& callee) noexcept {
    return callee.isFunction() ? callFault(handleOf(callee)) : Fault{"attempted to call a non-function value"};
}

Fault callFault(const RubyFunctionHandle& handle) noexcept {
    switch (handle.kind) {
        case RubyFunctionHandle::Kind::Empty:
            return {"function handle is empty"};
        case RubyFunctionHandle::Kind::Script:
            return callFault(handle.program.get(), handle.functionIndex);
        case RubyFunctionHandle::Kind::Host:
            break;
    }
    return kNoFault;
}

Fault callFault(const Program* program, std::int32_t functionIndex) noexcept {
    if (program == nullptr) {
        return {"script function program is missing"};
    }
    if (functionIndex < 0 || static_cast<std::size_t>(functionIndex) >= program->functions.size()) {
        return {"function index is out of range"};
    }
    return kNoFault;
}

std::string arityMessage(const CompiledFunction& function, std::size_t argumentCount) {
    return "function '" + function.name + "' expected " + std::to_string(function.params.size()) +
           " arguments but received " + std::to_string(argumentCount);
}

void requireArity(const Program& program, const CompiledFunction& function, std::size_t argumentCount) {
    if (argumentCount != function.params.size()) {
        runtimeError(program, 0, arityMessage(function, argumentCount));
    }
}

RubyValue pcallSuccess(RubyValue value) {
    RubyValue outcome = makeArrayFor(2);
    RubyArray& elements = outcome.asArray();
    elements.emplace_back(true);
    elements.push_back(std::move(value));
    return outcome;
}

RubyValue pcallError(std::string message) {
    RubyValue outcome = makeArrayFor(3);
    RubyArray& elements = outcome.asArray();
    elements.emplace_back(true);
    elements.emplace_back(false);
    elements.emplace_back(std::move(message));
    return outcome;
}

RubyValue pcallRefusal(const std::string& message) {
    RubyValue outcome = makeArrayFor(2);
    RubyArray& elements = outcome.asArray();
    elements.emplace_back(false);
    elements.emplace_back(message);
    return outcome;
}

std::string errorCallMessage(const RubyValue* arguments, std::size_t argumentCount) {
    requireArgumentCount("error", argumentCount, 0, 1);
    return argumentCount == 0 ? "error" : arguments[0].toString();
}

RubyValue tableSet(const RubyValue* arguments, std::size_t argumentCount) {
    requireArgumentCount("table_set", argumentCount, 3, 3);
    // Copies are cheap handles and keep the container alive whatever the store replaces.
    RubyValue table = arguments[0];
    const RubyValue& key = arguments[1];
    const RubyValue& value = arguments[2];
    if (table.isMap()) {
        setMapValue(table.asMap(), key) = value;
        return value;
    }
    if (!table.isArray()) {
        throw RubyError("table_set expects an array or map");
    }
    if (!key.isNumeric()) {
        throw RubyError("table_set array index must be numeric");
    }
    const std::int64_t index = key.asInteger();
    if (index < 0) {
        throw RubyError("table_set array index must be non-negative");
    }
    storeElement(table.asArray(), static_cast<std::size_t>(index), value);
    return value;
}

}  // namespace morvel::ruby::internal
