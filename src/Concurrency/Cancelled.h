#pragma once

#include <exception>
#include <stop_token>

namespace kestrova {

/// Thrown when work was asked to stop. Distinct from every failure: it is never shown to the user.
class Cancelled final : public std::exception
{
public:
    const char *what() const noexcept override { return "cancelled"; }
};

inline void throwIfStopRequested(const std::stop_token &stop)
{
    if (stop.stop_requested())
        throw Cancelled();
}

} // namespace kestrova
