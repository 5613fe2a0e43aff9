#include "Concurrency/MainExecutor.h"

namespace kestrova {

MainExecutor::MainExecutor() : m_shared(std::make_shared<Shared>()) {}

void MainExecutor::shutDown()
{
    const std::lock_guard lock(m_shared->mutex);
    m_shared->shutDown = true;
    m_shared->changed.notify_all();
}

void MainExecutor::runAndWait(const std::function<void()> &work)
{
    struct Call
    {
        bool running = false;
        bool done = false;
        bool abandoned = false;
        std::exception_ptr error;
    };
    const auto call = std::make_shared<Call>();
    {
        const std::lock_guard lock(m_shared->mutex);
        if (m_shared->shutDown)
            throw Cancelled();
    }

    // work lives on the caller's stack: it is touched only while the caller is sure to wait.
    post([call, shared = m_shared, &work] {
        {
            const std::lock_guard lock(shared->mutex);
            if (call->abandoned)
                return;
            call->running = true;
        }
        try {
            work();
        } catch (...) {
            call->error = std::current_exception();
        }
        const std::lock_guard lock(shared->mutex);
        call->done = true;
        shared->changed.notify_all();
    });

    std::unique_lock lock(m_shared->mutex);
    m_shared->changed.wait(lock,
                           [&] { return call->done || (m_shared->shutDown && !call->running); });
    if (!call->done) {
        call->abandoned = true;
        throw Cancelled();
    }
    if (call->error)
        std::rethrow_exception(call->error);
}

} // namespace kestrova
