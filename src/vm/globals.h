// The global variables of a VM: a slot each.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "morvel/ruby/value.h"
#include "value/hash.h"
#include "value/zeroed_array.h"

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

/// A global that is defined has its slot for life and is never undefined again. A name that code only mentions has one
/// too, whose value is the undefined mark; when the last mention ends before the name was defined, the slot is free for
/// another name.
class GlobalTable {
public:
    static constexpr std::size_t kNoSlot = static_cast<std::size_t>(-1);
    /// As many slots as the operands of instructions can name. A block takes memory only for those that are in use.
    static constexpr std::size_t kBlockSlots = std::size_t{1} << 15;

    GlobalTable();
    ~GlobalTable();
    GlobalTable(const GlobalTable&) = delete;
    GlobalTable& operator=(const GlobalTable&) = delete;

    /// The slot of `name`, created when needed: to be defined at once, or while the name is mentioned.
    std::size_t ensureSlot(const std::string& name);
    /// The slot of `name`, created when needed; counts a mention of it.
    std::size_t mention(const std::string& name);
    /// Ends a mention of the slot's name.
    void endMention(std::size_t slot) noexcept;
    /// The slot of `name`, or kNoSlot.
    [[nodiscard]] std::size_t findSlot(const std::string& name) const;
    [[nodiscard]] const std::string& nameOf(std::size_t slot) const { return *m_names[slot]; }
    [[nodiscard]] bool isDefined(std::size_t slot) const {
        return slot < m_names.size() && value(slot).type != kUndefinedType;
    }
    [[nodiscard]] const RubyValue& value(std::size_t slot) const {
        return m_blocks[slot / kBlockSlots][slot % kBlockSlots];
    }
    [[nodiscard]] RubyValue& valueAt(std::size_t slot) { return m_blocks[slot / kBlockSlots][slot % kBlockSlots]; }
    void setValue(std::size_t slot, const RubyValue& value) { valueAt(slot) = value; }
    /// The values of the first kBlockSlots slots. Each value stays at its address for the life of the table.
    [[nodiscard]] RubyValue* firstBlock() noexcept { return m_blocks.front().get(); }
    [[nodiscard]] std::size_t size() const noexcept { return m_names.size(); }

    /// Sets every global that is defined to nil, those of the host before the built-ins; again until nothing that ends
    /// thereby has defined another.
    void release() noexcept;

private:
    void addSlot();

    std::unordered_map<std::string, std::size_t, TextHash> m_slots;
    std::vector<ZeroedArray<RubyValue>> m_blocks;
    // By slot.
    std::vector<const std::string*> m_names;
    std::vector<std::size_t> m_mentions;
    /// The slots without a name; has room for all slots.
    std::vector<std::size_t> m_free;
};

}  // namespace morvel::ruby::internal
