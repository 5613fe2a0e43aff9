#pragma once

#include "Concurrency/Executor.h"

namespace kestrova {

/// Runs work at once, on the posting thread, before post() returns.
class InlineExecutor final : public Executor
{
public:
    void post(std::function<void()> work) override { work(); }
};

} // namespace kestrova
