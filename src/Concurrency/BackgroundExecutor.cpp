#include "Concurrency/BackgroundExecutor.h"

#include <system_error>

namespace kestrova {

BackgroundExecutor::BackgroundExecutor(std::size_t maximumThreadCount)
    : m_maximumThreadCount(maximumThreadCount)
{
    m_threads.emplace_back([this] { runWorker(); });
    m_idleThreadCount = 1;
}

BackgroundExecutor::~BackgroundExecutor()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_workAvailable.notify_all();
    for (std::thread &thread : m_threads)
        thread.join();
}

void BackgroundExecutor::post(std::function<void()> work)
{
    const std::lock_guard lock(m_mutex);
    m_queue.push_back(std::move(work));
    while (m_queue.size() > m_idleThreadCount && m_threads.size() < m_maximumThreadCount) {
        if (!addThread())
            break;
    }
    m_workAvailable.notify_one();
}

bool BackgroundExecutor::addThread()
{
    try {
        m_threads.emplace_back([this] { runWorker(); });
    } catch (const std::system_error &) {
        return false;
    }
    // Counted as idle from the start, so that two posts in a row get two threads.
    ++m_idleThreadCount;
    return true;
}

bool BackgroundExecutor::waitUntilIdle(std::chrono::nanoseconds limit)
{
    std::unique_lock lock(m_mutex);
    return m_becameIdle.wait_for(
        lock, limit, [this] { return m_queue.empty() && m_idleThreadCount == m_threads.size(); });
}

void BackgroundExecutor::runWorker()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_workAvailable.wait(lock, [this] { return m_stopping || !m_queue.empty(); });
        if (m_queue.empty())
            return;
        std::function<void()> work = std::move(m_queue.front());
        m_queue.pop_front();
        --m_idleThreadCount;
        lock.unlock();
        work();
        work = nullptr; // What it captured is released before this thread counts as idle.
        lock.lock();
        ++m_idleThreadCount;
        m_becameIdle.notify_all();
    }
}

} // namespace kestrova
