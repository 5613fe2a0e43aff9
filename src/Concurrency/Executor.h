#pragma once

#include <functional>

namespace kestrova {

/// Somewhere work can be started. post() may be called from any thread and returns at once.
class Executor
{
public:
    virtual ~Executor() = default;

    /// Work must not let an exception escape.
    virtual void post(std::function<void()> work) = 0;
};

} // namespace kestrova
