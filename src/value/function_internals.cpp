#include "value/function_internals.h"

namespace morvel::ruby::internal {

constinit const FunctionInternals kNoInternals;

void FunctionInternals::set(const RubyFunctionHandle& handle, const FunctionInternals& internals) noexcept {
    const Binder* const before = binderOf(handle);
    handle.m_internals = &internals;
    if (const Binder* const binder = binderOf(handle)) {
        binder->references.fetch_add(1, std::memory_order_relaxed);
    }
    if (before != nullptr) {
        before->release();
    }
}

}  // namespace morvel::ruby::internal
