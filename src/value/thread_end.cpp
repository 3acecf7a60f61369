#include "value/thread_end.h"

namespace morvel::ruby::internal {

void ThreadEnd::open(void (*function)(void*)) noexcept { m_isOpen = pthread_key_create(&m_key, function) == 0; }

void ThreadEnd::close() noexcept {
    if (m_isOpen.exchange(false)) {
        pthread_key_delete(m_key);
    }
}

// The value only has to differ from null, or nothing would be called.
bool ThreadEnd::ask() noexcept { return m_isOpen && pthread_setspecific(m_key, this) == 0; }

}  // namespace morvel::ruby::internal
