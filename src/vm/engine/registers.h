// Raw access to registers. The loop handles values as tag and payload, so that an exception passing through it leaves
// nothing to clean up.
#pragma once

#include <cstdint>
#include <utility>

#include "morvel/ruby/value.h"

namespace morvel::ruby::internal {

/// Releases the value of a register if it is boxed; the register is dead afterwards.
inline void releaseRegister(RubyValue* reg) noexcept {
    if (reg->isBoxed()) {
        Box* box = reg->data.box;
        const auto type = static_cast<std::uint8_t>(reg->type);
        reg->type = RubyValue::Type::Nil;
        if (--box->references == 0) {
            destroyBox(type, box);
        }
    }
}

/// Releases a register when `dies` is set.
inline void releaseIf(bool dies, RubyValue* reg) noexcept {
    if (dies) {
        releaseRegister(reg);
    }
}

/// Moves the bits of `from` to the dead register `to`.
inline void moveRegister(RubyValue* to, RubyValue* from) noexcept {
    to->type = from->type;
    to->data = from->data;
    from->type = RubyValue::Type::Nil;
}

/// Copies `from` to the dead register `to`.
inline void copyToDead(RubyValue* to, const RubyValue* from) noexcept {
    if (from->isBoxed()) {
        ++from->data.box->references;
    }
    to->type = from->type;
    to->data = from->data;
}

/// Puts a finished value into a register, whatever it held.
inline void assignRegister(RubyValue* to, RubyValue&& value) noexcept {
    if (to->isBoxed()) {
        RubyValue old;
        moveRegister(&old, to);
        moveRegister(to, &value);
        return;
    }
    moveRegister(to, &value);
}

}  // namespace morvel::ruby::internal
