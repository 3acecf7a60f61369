#include "support/threads.h"

#include <pthread.h>

#include <stdexcept>

namespace morvel::ruby::tests {

namespace {

void* runBody(void* body) {
    (*static_cast<const std::function<void()>*>(body))();
    return nullptr;
}

}  // namespace

void runOnStack(std::size_t bytes, const std::function<void()>& body) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    if (pthread_attr_setstacksize(&attributes, bytes) != 0) {
        throw std::runtime_error("stack size is not possible");
    }
    pthread_t thread{};
    const int error = pthread_create(&thread, &attributes, runBody, const_cast<std::function<void()>*>(&body));
    pthread_attr_destroy(&attributes);
    if (error != 0) {
        throw std::runtime_error("thread cannot be created");
    }
    pthread_join(thread, nullptr);
}

}  // namespace morvel::ruby::tests
