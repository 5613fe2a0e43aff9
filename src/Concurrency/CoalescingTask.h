#pragma once

#include "Concurrency/Executor.h"

#include <memory>

namespace kestrova {

/// Work that deals each time with all there is to do by then, such as storing what is newest. It is
/// never run twice at once, and requests that come while it runs are one more run together.
class CoalescingTask
{
public:
    /// The work must not let an exception escape. It is run to its end even if this is destroyed
    /// meanwhile, so what it needs has to live as long as the executor has work. The executor
    /// outlives this.
    CoalescingTask(Executor &executor, std::function<void()> work);

    /// The work begins after this call: at once if the executor has a thread to spare and the work
    /// does not run already. Any thread; waits for nothing.
    void request();

private:
    struct Shared;

    Executor &m_executor;
    std::shared_ptr<Shared> m_shared;
};

} // namespace kestrova
