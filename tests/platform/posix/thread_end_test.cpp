#include "platform/thread_end.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <thread>
#include <vector>

namespace morvel::ruby::tests {

namespace {

using platform::ThreadEnd;

int calls = 0;

void count(void* /*unused*/) { ++calls; }

TEST(ThreadEnd, CallsOnceForEachThreadThatAsked) {
    ThreadEnd end;
    EXPECT_FALSE(end.ask());
    end.open(count);
    calls = 0;
    std::thread([] {}).join();
    EXPECT_EQ(calls, 0);
    std::thread([&end] { EXPECT_TRUE(end.ask() && end.ask()); }).join();
    EXPECT_EQ(calls, 1);
    std::thread([&end] {
        EXPECT_TRUE(end.ask());
        end.close();
        EXPECT_FALSE(end.ask());
    }).join();
    EXPECT_EQ(calls, 1);
}

TEST(ThreadEnd, RefusesWhenTheProcessHasNoKeyLeft) {
    std::vector<pthread_key_t> keys;
    pthread_key_t key{};
    while (pthread_key_create(&key, nullptr) == 0) {
        keys.push_back(key);
    }
    ThreadEnd end;
    end.open(count);
    EXPECT_FALSE(end.ask());
    end.close();
    for (const pthread_key_t taken : keys) {
        pthread_key_delete(taken);
    }
}

}  // namespace

}  // namespace morvel::ruby::tests
