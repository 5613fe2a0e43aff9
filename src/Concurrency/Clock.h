#pragma once

#include <chrono>
#include <stop_token>

namespace kestrova {

/// Monotonic time and waiting, so that tests can do both in no time. Usable from any thread.
class Clock
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    virtual ~Clock() = default;

    virtual TimePoint now() const = 0;
    /// Returns false, early, as soon as stop is requested.
    virtual bool sleep(std::chrono::nanoseconds duration, const std::stop_token &stop) = 0;
};

class SystemClock final : public Clock
{
public:
    TimePoint now() const override { return std::chrono::steady_clock::now(); }
    bool sleep(std::chrono::nanoseconds duration, const std::stop_token &stop) override;
};

} // namespace kestrova
