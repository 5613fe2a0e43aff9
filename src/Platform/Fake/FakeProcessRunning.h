#pragma once

#include "Platform/ProcessRunning.h"

#include <QList>

#include <functional>
#include <mutex>

namespace kestrova {

struct FakeProcessCall
{
    QString executable;
    QStringList arguments;
};

class FakeProcessRunning final : public ProcessRunning
{
public:
    using Behaviour = std::function<ProcessOutcome(const FakeProcessCall &)>;

    ProcessOutcome run(const QString &executable, const QStringList &arguments,
                       const std::stop_token &stop) override;

    /// Plays the child from now on; without one each child succeeds and prints nothing. A
    /// behaviour may throw PlatformError for a failed start.
    void setBehaviour(Behaviour behaviour);
    /// Every call so far, oldest first.
    QList<FakeProcessCall> calls() const;

private:
    mutable std::mutex m_mutex;
    Behaviour m_behaviour;
    QList<FakeProcessCall> m_calls;
};

} // namespace kestrova
