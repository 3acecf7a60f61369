// The runtime's own data behind a function value.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "morvel/ruby/function.h"

namespace morvel::ruby::internal {

/// Built-ins that the runtime executes inline when their arguments are of the usual kinds.
enum class Shortcut : std::uint8_t { None, Len, ArrayPush };

/// The short form of a built-in on numbers: stores the result and returns true, or does nothing and returns false when
/// the arguments are not the numbers it expects. It neither fails nor touches the VM.
using NumberFunction = bool (*)(const RubyValue* arguments, std::size_t count, RubyValue* result);

/// Says all that a call has to know of a translated function: the engine that translated it, its program and its number
/// of parameters.
using CallKey = std::uintptr_t;
/// The key of a function that no call instruction enters by itself.
inline constexpr CallKey kNoCallKey = 0;

/// The part of a function handle that only the runtime knows, shared among handles: the translation of a script
/// function, the row of a built-in, or the Binder of a host function with state.
struct FunctionInternals {
    enum class Kind : std::uint8_t { Permanent, Translation, Binder };

    /// The engine whose translation of a script function this is; null for everything else.
    const void* engine = nullptr;
    NumberFunction numberFunction = nullptr;
    Shortcut shortcut = Shortcut::None;
    Kind kind = Kind::Permanent;
    CallKey callKey = kNoCallKey;

    [[nodiscard]] static const FunctionInternals& of(const RubyFunctionHandle& handle) noexcept {
        return *handle.m_internals;
    }
    /// Makes the handle refer to `internals`, which must live as long as the handle or, for a translation, its program.
    static void set(const RubyFunctionHandle& handle, const FunctionInternals& internals) noexcept;
};

/// Shared by a VM and the host functions with state that it bound. Each of them holds a reference; a function may be
/// destroyed on a different thread than its VM.
struct Binder : FunctionInternals {
    Binder() noexcept { kind = Kind::Binder; }

    void release() const noexcept {
        if (references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            delete this;
        }
    }

    mutable std::atomic<std::size_t> references = 1;
    /// How many of the functions are unreferenced and wait to be destroyed.
    mutable std::atomic<std::size_t> waiting = 0;
};

/// The binder of a host function with state; null for other functions.
[[nodiscard]] inline const Binder* binderOf(const RubyFunctionHandle& handle) noexcept {
    const FunctionInternals& internals = FunctionInternals::of(handle);
    return internals.kind == FunctionInternals::Kind::Binder ? static_cast<const Binder*>(&internals) : nullptr;
}

}  // namespace morvel::ruby::internal
