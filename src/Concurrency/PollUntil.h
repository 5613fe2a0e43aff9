#pragma once

#include "Concurrency/Cancelled.h"
#include "Concurrency/Clock.h"

namespace kestrova {

/// Asks every interval whether the condition holds, once more when the limit is reached, and
/// returns the last answer. Throws Cancelled when stop is requested meanwhile.
template <typename Condition>
bool pollUntil(Clock &clock, std::chrono::nanoseconds limit, std::chrono::nanoseconds interval,
               const std::stop_token &stop, const Condition &holds)
{
    const Clock::TimePoint deadline = clock.now() + limit;
    while (clock.now() < deadline) {
        if (holds())
            return true;
        if (!clock.sleep(interval, stop))
            throw Cancelled();
    }
    return holds();
}

} // namespace kestrova
