// Memory that is kept for reuse, and given back when the general allocator has none left.
//
// Linking the library installs a new-handler: before an allocation with operator new fails, the thread's spare memory
// goes back and the allocation is tried again. Only when there was none does the handler that was there before get its
// turn, or the allocation fail as it would have. A host that sets a handler of its own later replaces this one; then,
// and where operator new asks no handler, the memory goes back once a script's allocation has failed.
#pragma once

namespace morvel::ruby::internal {

/// Says that something which keeps memory for later is in use by this thread, for as long as it lives.
class SpareMemory {
public:
    SpareMemory(const SpareMemory&) = delete;
    SpareMemory& operator=(const SpareMemory&) = delete;

    /// Gives back the spare memory of everything in use by this thread and that of its own; true when there was any.
    static bool giveBackAll() noexcept;

protected:
    SpareMemory() noexcept;
    virtual ~SpareMemory();

    /// Gives back what is spare now; true when that is anything. Called in the middle of whatever asks for memory: may
    /// not ask for any itself, nor move what is in use.
    virtual bool giveBack() noexcept = 0;

private:
    SpareMemory* m_outer;
};

/// Gives back most of what the thread keeps: after much work, with little to come.
void trimSpareMemory() noexcept;

}  // namespace morvel::ruby::internal
