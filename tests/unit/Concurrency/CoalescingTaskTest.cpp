#include "Concurrency/CoalescingTask.h"
#include "Concurrency/BackgroundExecutor.h"
#include "support/ManualExecutors.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

TEST(CoalescingTask, RequestsBeforeItRunsAreOneRun)
{
    ManualExecutor executor;
    int runs = 0;
    CoalescingTask task(executor, [&] { ++runs; });
    executor.runAll();
    EXPECT_EQ(runs, 0);
    for (int i = 0; i < 3; ++i)
        task.request();
    EXPECT_EQ(runs, 0) << "the executor says when";
    executor.runAll();
    EXPECT_EQ(runs, 1);
    task.request();
    executor.runAll();
    EXPECT_EQ(runs, 2);
}

TEST(CoalescingTask, RequestsWhileItRunsAreOneMoreRun)
{
    ManualExecutor executor;
    int runs = 0;
    std::unique_ptr<CoalescingTask> task;
    task = std::make_unique<CoalescingTask>(executor, [&] {
        if (++runs == 1) {
            task->request();
            task->request();
            EXPECT_TRUE(executor.isIdle()) << "no second thread is taken";
        }
    });
    task->request();
    executor.runAll();
    EXPECT_EQ(runs, 2);
}

TEST(CoalescingTask, WhatWasRequestedRunsAfterItsDestruction)
{
    ManualExecutor executor;
    int runs = 0;
    CoalescingTask(executor, [&] { ++runs; }).request();
    executor.runAll();
    EXPECT_EQ(runs, 1);
}

TEST(CoalescingTask, ManyThreadsNeverRunItTwiceAtOnceAndTheLastRequestIsSeen)
{
    BackgroundExecutor executor;
    std::atomic<int> produced = 0;
    std::atomic<int> running = 0;
    std::atomic<bool> hasOverlapped = false;
    int seen = 0; // by one thread at a time, as is to be shown
    CoalescingTask task(executor, [&] {
        if (++running > 1)
            hasOverlapped = true;
        seen = produced;
        --running;
    });
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&] {
                for (int i = 0; i < 2000; ++i) {
                    ++produced;
                    task.request();
                }
            });
        }
    }
    ASSERT_TRUE(executor.waitUntilIdle(20s));
    EXPECT_EQ(seen, 8000);
    EXPECT_FALSE(hasOverlapped);
}

} // namespace
} // namespace kestrova
