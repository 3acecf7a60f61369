// The global variables of a VM: a slot each, for life.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "morvel/ruby/value.h"
#include "value/hash.h"

namespace morvel::ruby::internal {

/// Kind of a value that is not there: an undefined global, an unassigned local. Never seen by scripts or hosts; not
/// boxed, so that it is copied and dropped like a scalar.
inline constexpr RubyValue::Type kUndefinedType{8};

/// Makes the mark of an undefined variable.
[[nodiscard]] inline RubyValue makeUndefined() noexcept {
    RubyValue value;
    value.type = kUndefinedType;
    return value;
}

/// Every global name that is ever mentioned gets a slot when it is first seen; the slot never changes. A slot whose
/// value is the undefined mark was only mentioned; once defined, a slot is never undefined again.
class GlobalTable {
public:
    static constexpr std::size_t kNoSlot = static_cast<std::size_t>(-1);

    /// The slot of `name`, created when needed.
    std::size_t ensureSlot(const std::string& name);
    /// The slot of `name`, or kNoSlot.
    [[nodiscard]] std::size_t findSlot(const std::string& name) const;
    [[nodiscard]] const std::string& nameOf(std::size_t slot) const { return *m_names[slot]; }
    [[nodiscard]] bool isDefined(std::size_t slot) const {
        return slot < m_values.size() && m_values[slot].type != kUndefinedType;
    }
    [[nodiscard]] const RubyValue& value(std::size_t slot) const { return m_values[slot]; }
    void setValue(std::size_t slot, const RubyValue& value) { m_values[slot] = value; }
    /// The values by slot; moves when a slot is created.
    [[nodiscard]] RubyValue* values() noexcept { return m_values.data(); }
    [[nodiscard]] std::size_t size() const noexcept { return m_values.size(); }

    /// Sets every global that is defined to nil, those of the host before the built-ins; again until nothing that ends
    /// thereby has defined another.
    void release() noexcept;

private:
    std::unordered_map<std::string, std::size_t, TextHash> m_slots;
    std::vector<const std::string*> m_names;
    std::vector<RubyValue> m_values;
};

}  // namespace morvel::ruby::internal
