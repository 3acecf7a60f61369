#include "platform/thread_end.h"

#include <pthread.h>

#include <type_traits>

namespace morvel::ruby::platform {

static_assert(std::is_integral_v<pthread_key_t> && sizeof(pthread_key_t) <= sizeof(std::uintptr_t));

void ThreadEnd::open(void (*function)(void*)) noexcept {
    pthread_key_t key{};
    m_isOpen = pthread_key_create(&key, function) == 0;
    m_key = key;
}

void ThreadEnd::close() noexcept {
    if (m_isOpen.exchange(false)) {
        pthread_key_delete(static_cast<pthread_key_t>(m_key));
    }
}

// Any value but null will do: for null, the system does not call the function.
bool ThreadEnd::ask() noexcept { return m_isOpen && pthread_setspecific(static_cast<pthread_key_t>(m_key), this) == 0; }

}  // namespace morvel::ruby::platform
