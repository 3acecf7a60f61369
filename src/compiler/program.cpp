#include "compiler/program.h"

namespace morvel::ruby::internal {

const std::string* getStringConstantPtr(const Program& program, std::int32_t index) noexcept {
    if (index < 0 || static_cast<std::size_t>(index) >= program.constants.size()) {
        return nullptr;
    }
    const RubyValue& constant = program.constants[static_cast<std::size_t>(index)];
    return constant.isString() ? &constant.asString() : nullptr;
}

}  // namespace morvel::ruby::internal
