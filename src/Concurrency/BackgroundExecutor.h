#pragma once

#include "Concurrency/Executor.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace kestrova {

/// A shared pool for work that may block. Posts start at once: a thread is added when none is
/// idle, up to the maximum; threads stay until the executor is destroyed. Where the system has no
/// thread left, work waits for one of ours.
class BackgroundExecutor final : public Executor
{
public:
    /// Throws std::system_error when not even the first thread can be had.
    explicit BackgroundExecutor(std::size_t maximumThreadCount = 16);
    /// Runs what was posted to its end, then joins the threads.
    ~BackgroundExecutor() override;

    void post(std::function<void()> work) override;

    /// Waits until nothing is queued or running; false when that takes longer than the limit.
    bool waitUntilIdle(std::chrono::nanoseconds limit);

private:
    bool addThread();
    void runWorker();

    const std::size_t m_maximumThreadCount;
    std::mutex m_mutex;
    std::condition_variable m_workAvailable;
    std::condition_variable m_becameIdle;
    std::deque<std::function<void()>> m_queue;
    std::size_t m_idleThreadCount = 0;
    bool m_stopping = false;
    std::vector<std::thread> m_threads;
};

} // namespace kestrova
