#include "Concurrency/CoalescingTask.h"

#include <mutex>
#include <utility>

namespace kestrova {

struct CoalescingTask::Shared
{
    explicit Shared(std::function<void()> requestedWork) : work(std::move(requestedWork)) {}

    void run()
    {
        std::unique_lock lock(mutex);
        while (isRequested) {
            isRequested = false;
            lock.unlock();
            work();
            lock.lock();
        }
        isPosted = false;
    }

    const std::function<void()> work;
    std::mutex mutex;
    bool isRequested = false;
    bool isPosted = false; // until it has found nothing more to do
};

CoalescingTask::CoalescingTask(Executor &executor, std::function<void()> work)
    : m_executor(executor), m_shared(std::make_shared<Shared>(std::move(work)))
{
}

void CoalescingTask::request()
{
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->isRequested = true;
        if (std::exchange(m_shared->isPosted, true))
            return;
    }
    m_executor.post([shared = m_shared] { shared->run(); });
}

} // namespace kestrova
