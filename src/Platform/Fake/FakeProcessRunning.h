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

class FakeProcessRunningControl
{
public:
    using Behaviour = std::function<ProcessOutcome(const FakeProcessCall &)>;

    virtual ~FakeProcessRunningControl() = default;

    /// Plays the child from now on; without one each child succeeds and prints nothing. A
    /// behaviour may throw PlatformError for a failed start.
    virtual void setBehaviour(Behaviour behaviour) = 0;
    /// Every call so far, oldest first.
    virtual QList<FakeProcessCall> calls() const = 0;
};

class FakeProcessRunning final : public ProcessRunning, public FakeProcessRunningControl
{
public:
    ProcessOutcome run(const QString &executable, const QStringList &arguments,
                       const std::stop_token &stop) override;

    void setBehaviour(Behaviour behaviour) override;
    QList<FakeProcessCall> calls() const override;

private:
    mutable std::mutex m_mutex;
    Behaviour m_behaviour;
    QList<FakeProcessCall> m_calls;
};

} // namespace kestrova
