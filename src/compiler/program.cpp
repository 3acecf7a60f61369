#include "compiler/program.h"

namespace morvel::ruby::internal {

std::int32_t ensureLocalSlot(CompiledFunction& function, const std::string& name) {
    const auto next = static_cast<std::int32_t>(function.localNames.size());
    const auto [entry, isNew] = function.localSlots.try_emplace(name, next);
    if (isNew) {
        function.localNames.push_back(name);
    }
    return entry->second;
}

const std::string* getStringConstantPtr(const Program& program, std::int32_t index) noexcept {
    if (index < 0 || static_cast<std::size_t>(index) >= program.constants.size()) {
        return nullptr;
    }
    const RubyValue& constant = program.constants[static_cast<std::size_t>(index)];
    return constant.isString() ? &constant.asString() : nullptr;
}

}  // namespace morvel::ruby::internal
