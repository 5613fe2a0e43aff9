#pragma once

#include "Concurrency/MainExecutor.h"

#include <deque>

namespace kestrova {

/// Runs posted work when the test says so, on the test's own thread. Not for several threads.
class ManualExecutor final : public Executor
{
public:
    void post(std::function<void()> work) override { m_queue.push_back(std::move(work)); }

    bool isIdle() const { return m_queue.empty(); }

    /// Runs the oldest work; false when there is none.
    bool runOne()
    {
        if (m_queue.empty())
            return false;
        const auto work = std::move(m_queue.front());
        m_queue.pop_front();
        work();
        return true;
    }

    void runAll()
    {
        while (runOne()) {
        }
    }

private:
    std::deque<std::function<void()>> m_queue;
};

/// A main thread that is always free: work runs at once, on the posting thread.
class ImmediateMainExecutor final : public MainExecutor
{
public:
    void post(std::function<void()> work) override { work(); }
};

} // namespace kestrova
