#include "compiler/program.h"

#include <limits>

#include "morvel/ruby/error.h"

namespace morvel::ruby::internal {

std::int32_t toOperand(std::size_t number) {
    if (number > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
        throw RubyError("bytecode image is too large");
    }
    return static_cast<std::int32_t>(number);
}

const std::string* getStringConstantPtr(const Program& program, std::int32_t index) noexcept {
    if (index < 0 || static_cast<std::size_t>(index) >= program.constants.size()) {
        return nullptr;
    }
    const RubyValue& constant = program.constants[static_cast<std::size_t>(index)];
    return constant.isString() ? &constant.asString() : nullptr;
}

}  // namespace morvel::ruby::internal
