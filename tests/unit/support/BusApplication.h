#pragma once

#include "support/BusService.h"

#include <atomic>

namespace kestrova {

/// Owns a name on the session bus and answers org.freedesktop.Application there, as long as this
/// object lasts.
class BusApplication
{
public:
    enum class Answer { yes, refusal, none };

    /// Returns when the name is owned; throws std::runtime_error when that fails.
    BusApplication(const char *name, const char *objectPath, Answer answer);

    int activationCount() const { return m_activationCount; }

private:
    void takeCall(const BusService::Call &call);

    const Answer m_answer;
    std::atomic<int> m_activationCount = 0;
    BusService m_service;
};

} // namespace kestrova
