#include "Platform/Fake/FakeProcessRunning.h"

namespace kestrova {

ProcessOutcome FakeProcessRunning::run(const QString &executable, const QStringList &arguments,
                                       const std::stop_token &)
{
    const FakeProcessCall call{executable, arguments};
    Behaviour behaviour;
    {
        const std::lock_guard lock(m_mutex);
        m_calls.append(call);
        behaviour = m_behaviour;
    }
    return behaviour ? behaviour(call) : ProcessOutcome{};
}

void FakeProcessRunning::setBehaviour(Behaviour behaviour)
{
    const std::lock_guard lock(m_mutex);
    m_behaviour = std::move(behaviour);
}

QList<FakeProcessCall> FakeProcessRunning::calls() const
{
    const std::lock_guard lock(m_mutex);
    return m_calls;
}

} // namespace kestrova
