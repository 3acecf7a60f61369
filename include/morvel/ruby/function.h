// Host functions, their argument lists, and the handles behind function values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "morvel/ruby/value.h"

namespace morvel::ruby {

class RubyVM;

namespace internal {
struct FunctionInternals;
struct Program;

/// The internals of a function that the runtime knows nothing about.
extern const FunctionInternals kNoInternals;

/// Nil, in place of an argument that a call does not have.
extern const RubyValue kMissingArgument;

/// Throws RubyError "missing argument N", where N is the 0-based index plus one.
[[noreturn]] void failMissingArgument(std::size_t index);
}  // namespace internal

/// Read-only, non-owning view of a call's arguments, valid during the call. A host that calls a function itself must
/// not pass a view of an array whose elements the function changes.
///
/// It converts to a vector of copies, so a host function may also take `const std::vector<RubyValue>&`.
class RubyArguments {
public:
    RubyArguments() = default;
    /// Views `count` consecutive values; `first` may be null when `count` is 0.
    RubyArguments(const RubyValue* first, std::size_t count) noexcept : m_first(first), m_count(count) {}
    RubyArguments(const std::vector<RubyValue>& values) noexcept : m_first(values.data()), m_count(values.size()) {}

    [[nodiscard]] std::size_t size() const noexcept { return m_count; }
    [[nodiscard]] bool empty() const noexcept { return m_count == 0; }
    /// The argument at 0-based `index`; nil when the call has no such argument.
    [[nodiscard]] const RubyValue& operator[](std::size_t index) const noexcept {
        return index < m_count ? m_first[index] : internal::kMissingArgument;
    }
    /// The argument at 0-based `index`. Throws RubyError "missing argument N", counted from 1, when the call has no
    /// such argument.
    [[nodiscard]] const RubyValue& at(std::size_t index) const {
        if (index >= m_count) [[unlikely]] {
            internal::failMissingArgument(index);
        }
        return m_first[index];
    }
    [[nodiscard]] const RubyValue* begin() const noexcept { return m_first; }
    [[nodiscard]] const RubyValue* end() const noexcept { return m_first + m_count; }
    [[nodiscard]] operator std::vector<RubyValue>() const { return {begin(), end()}; }

private:
    const RubyValue* m_first = nullptr;
    std::size_t m_count = 0;
};

/// A host function: receives the VM that runs the script and the arguments, and returns the call's result. It may throw
/// any standard exception to raise a script error with that exception's text, and may run scripts on the same VM.
using RubyHostFunction = std::function<RubyValue(RubyVM&, RubyArguments)>;

/// A host function without state, called without a std::function in between.
using RubyNativeFunction = RubyValue (*)(RubyVM&, RubyArguments);

/// The object behind a function value. Two function values are equal when they share a handle. Once a value holds a
/// handle, the handle no longer changes.
struct RubyFunctionHandle : internal::Box {
    enum class Kind : std::uint8_t { Script = 0, Host = 1, Empty = 2 };
    /// Host functions that the interpreter executes itself, recognised by the name that they were bound under.
    enum class Intrinsic : std::uint8_t { None = 0, Error = 1, Pcall = 2, TableSet = 3 };

    RubyFunctionHandle() = default;
    RubyFunctionHandle(const RubyFunctionHandle&) = delete;
    RubyFunctionHandle& operator=(const RubyFunctionHandle&) = delete;
    ~RubyFunctionHandle();

    Kind kind = Kind::Host;
    Intrinsic intrinsic = Intrinsic::None;
    /// Index into the program's functions; -1 for host functions.
    std::int32_t functionIndex = -1;
    /// The program that holds the script function, kept alive by this handle; empty for host functions.
    std::shared_ptr<internal::Program> program;
    /// The callback; empty for script functions.
    RubyHostFunction hostFunction;
    /// The callback as a plain function pointer, when it is one; calls then skip the std::function.
    RubyNativeFunction nativeFunction = nullptr;
    /// The name under which the function was defined or bound.
    std::string name;

private:
    friend struct internal::FunctionInternals;

    mutable const internal::FunctionInternals* m_internals = &internal::kNoInternals;
};

}  // namespace morvel::ruby
