#pragma once

#include "Concurrency/Cancelled.h"
#include "Concurrency/Executor.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <type_traits>

namespace kestrova {

/// The main thread as an executor: work runs there in the order in which it was posted.
class MainExecutor : public Executor
{
public:
    MainExecutor();

    /// Runs fn on the main thread and returns its result or rethrows its exception. Only for
    /// workers: the main thread would wait for itself. Throws Cancelled once shutDown() was
    /// called, unless fn is already running, which is then waited for.
    template <typename F>
    std::invoke_result_t<F> call(F fn)
    {
        using Result = std::invoke_result_t<F>;
        if constexpr (std::is_void_v<Result>) {
            runAndWait([&fn] { fn(); });
        } else {
            std::optional<Result> result;
            runAndWait([&fn, &result] { result.emplace(fn()); });
            return std::move(*result);
        }
    }

    /// Makes every present and future call() that has not begun to run throw Cancelled.
    /// Called on the main thread when the program ends.
    void shutDown();

private:
    struct Shared
    {
        std::mutex mutex;
        std::condition_variable changed;
        bool shutDown = false;
    };

    void runAndWait(const std::function<void()> &work);

    // Posted work may outlive this object in the event queue, so it shares the state.
    std::shared_ptr<Shared> m_shared;
};

} // namespace kestrova
