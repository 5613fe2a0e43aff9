#include "Concurrency/BackgroundExecutor.h"
#include "Concurrency/Clock.h"
#include "Concurrency/MainExecutor.h"
#include "Concurrency/QtMainExecutor.h"
#include "support/ApplicationObject.h"
#include "support/ThreadShortage.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <latch>
#include <stdexcept>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr auto generous = 20s;

TEST(BackgroundExecutor, BlockingWorkDoesNotHoldUpLaterWork)
{
    BackgroundExecutor executor;
    std::latch all(4);
    for (int i = 0; i < 4; ++i)
        executor.post([&] { all.arrive_and_wait(); });
    // Each of the four waits for the other three: they must run at the same time.
    EXPECT_TRUE(executor.waitUntilIdle(generous));
    EXPECT_TRUE(all.try_wait());
}

TEST(BackgroundExecutor, WorkBeyondTheMaximumWaitsForAThread)
{
    BackgroundExecutor executor(1);
    std::vector<int> order;
    for (int i = 0; i < 100; ++i)
        executor.post([&order, i] { order.push_back(i); });
    ASSERT_TRUE(executor.waitUntilIdle(generous));
    ASSERT_EQ(order.size(), 100U);
    EXPECT_TRUE(std::ranges::is_sorted(order));
}

TEST(BackgroundExecutor, DestructionRunsWhatWasPosted)
{
    std::atomic<int> done = 0;
    {
        BackgroundExecutor executor(2);
        for (int i = 0; i < 50; ++i)
            executor.post([&] { ++done; });
    }
    EXPECT_EQ(done, 50);
}

TEST(BackgroundExecutor, WorkThatGetsNoThreadOfItsOwnWaitsForOneOfOurs)
{
    BackgroundExecutor executor;
    std::promise<void> release;
    std::vector<int> order;
    executor.post([&] { release.get_future().wait(); });
    {
        const ThreadShortage shortage;
        executor.post([&] { order.push_back(1); });
        executor.post([&] { order.push_back(2); });
    }
    EXPECT_FALSE(executor.waitUntilIdle(1ms));
    release.set_value();
    ASSERT_TRUE(executor.waitUntilIdle(generous));
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

TEST(BackgroundExecutor, AfterAShortageOfThreadsBlockingWorkAgainDoesNotHoldUpLaterWork)
{
    BackgroundExecutor executor;
    std::latch all(4);
    const auto meet = [&] { all.arrive_and_wait(); };
    executor.post(meet);
    {
        const ThreadShortage shortage;
        executor.post(meet);
        executor.post(meet);
    }
    // Gets a thread, and so do those that had to wait.
    executor.post(meet);
    EXPECT_TRUE(executor.waitUntilIdle(generous));
    EXPECT_TRUE(all.try_wait());
}

TEST(BackgroundExecutor, WaitingForIdlenessIsBounded)
{
    BackgroundExecutor executor;
    std::promise<void> release;
    executor.post([&] { release.get_future().wait(); });
    EXPECT_FALSE(executor.waitUntilIdle(1ms));
    release.set_value();
    EXPECT_TRUE(executor.waitUntilIdle(generous));
}

class QtMainExecutorTest : public testing::Test
{
protected:
    void processUntil(const std::atomic<bool> &done)
    {
        const auto limit = std::chrono::steady_clock::now() + generous;
        while (!done && std::chrono::steady_clock::now() < limit)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        ASSERT_TRUE(done);
    }

    ApplicationObject<QCoreApplication> application;
    QtMainExecutor main;
};

TEST_F(QtMainExecutorTest, PostedWorkRunsOnTheMainThreadInOrder)
{
    const auto mainThread = std::this_thread::get_id();
    std::vector<int> order;
    std::atomic<bool> done = false;
    std::thread worker([&] {
        for (int i = 0; i < 100; ++i) {
            main.post([&, i] {
                EXPECT_EQ(std::this_thread::get_id(), mainThread);
                order.push_back(i);
            });
        }
        main.post([&] { done = true; });
    });
    processUntil(done);
    worker.join();
    EXPECT_EQ(order.size(), 100U);
    EXPECT_TRUE(std::ranges::is_sorted(order));
}

TEST_F(QtMainExecutorTest, CallReturnsTheResultOrRethrows)
{
    std::atomic<bool> done = false;
    std::thread worker([&] {
        EXPECT_EQ(main.call([] { return 42; }), 42);
        EXPECT_THROW(main.call([]() -> int { throw std::runtime_error("no"); }),
                     std::runtime_error);
        int touched = 0;
        main.call([&] { touched = 1; });
        EXPECT_EQ(touched, 1);
        done = true;
    });
    processUntil(done);
    worker.join();
}

TEST_F(QtMainExecutorTest, ShutDownCancelsCallsThatWaitAndCallsToCome)
{
    std::promise<void> calling;
    bool ran = false;
    std::thread worker([&] {
        calling.set_value();
        EXPECT_THROW(main.call([&] { ran = true; }), Cancelled);
        EXPECT_THROW(main.call([&] { ran = true; }), Cancelled);
    });
    calling.get_future().wait();
    main.shutDown();
    worker.join();
    // What was queued for the abandoned call must not touch the worker's dead stack frame.
    QCoreApplication::processEvents();
    EXPECT_FALSE(ran);
}

TEST_F(QtMainExecutorTest, ShutDownWaitsForACallThatIsRunning)
{
    std::atomic<bool> done = false;
    std::thread worker([&] {
        EXPECT_EQ(main.call([&] {
            main.shutDown();
            return 7;
        }),
                  7);
        done = true;
    });
    processUntil(done);
    worker.join();
}

TEST(SystemClock, AStopRequestEndsTheSleepEarly)
{
    SystemClock clock;
    std::stop_source stop;
    const auto start = clock.now();
    std::thread other([&] { stop.request_stop(); });
    EXPECT_FALSE(clock.sleep(1h, stop.get_token()));
    other.join();
    EXPECT_LT(clock.now() - start, 1min);
    EXPECT_FALSE(clock.sleep(1h, stop.get_token()));
}

TEST(SystemClock, AnUndisturbedSleepLastsAsLongAsAsked)
{
    SystemClock clock;
    const auto start = clock.now();
    EXPECT_TRUE(clock.sleep(5ms, {}));
    EXPECT_GE(clock.now() - start, 5ms);
}

} // namespace
} // namespace kestrova
