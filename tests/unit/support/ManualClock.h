#pragma once

#include "Concurrency/Clock.h"

#include <functional>
#include <vector>

namespace kestrova {

/// Time that passes only by sleeping, and takes no time to do so.
class ManualClock final : public Clock
{
public:
    TimePoint now() const override { return m_now; }

    bool sleep(std::chrono::nanoseconds duration, const std::stop_token &stop) override
    {
        sleeps.push_back(duration);
        m_now += duration;
        if (whenSlept)
            whenSlept();
        return !stop.stop_requested();
    }

    std::vector<std::chrono::nanoseconds> sleeps;
    std::function<void()> whenSlept;

private:
    TimePoint m_now{};
};

} // namespace kestrova
