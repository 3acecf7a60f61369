// Memory kept for reuse, and freed when the general allocator runs out.
//
// Linking the library installs a new-handler: before operator new fails, the handler frees the thread's spare memory,
// and the allocation is tried again. Only when there is no spare memory does the previous handler get its turn or the
// allocation fail. A host that later sets a handler of its own replaces this one; then, and where operator new calls no
// handler, the spare memory is freed once a script's allocation has failed.
#pragma once

namespace morvel::ruby::internal {

/// Base of objects that keep spare memory for this thread; each is registered during its lifetime.
class SpareMemory {
public:
    SpareMemory(const SpareMemory&) = delete;
    SpareMemory& operator=(const SpareMemory&) = delete;

    /// Frees the spare memory of all registered objects of this thread and of the thread itself; true when there was
    /// any.
    static bool giveBackAll() noexcept;

protected:
    SpareMemory() noexcept;
    virtual ~SpareMemory();

    /// Frees the memory that is spare now; true when there was any. Called in the middle of any allocation, so it must
    /// neither allocate nor move memory that is in use.
    virtual bool giveBack() noexcept = 0;

private:
    SpareMemory* m_outer;
};

/// Frees most of the thread's spare memory. For use after much work, when little more is to come.
void trimSpareMemory() noexcept;

}  // namespace morvel::ruby::internal
