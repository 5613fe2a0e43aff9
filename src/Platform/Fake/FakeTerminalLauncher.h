#pragma once

#include "Platform/TerminalLauncher.h"

#include <QStringList>

namespace kestrova {

class FakeTerminalLauncherControl
{
public:
    virtual ~FakeTerminalLauncherControl() = default;

    /// From now on no terminal opens, for this reason; empty: works again.
    virtual void failToOpen(const QString &problem) = 0;
    /// The terminal that was opened last turns out not to work.
    virtual void failLater() = 0;
    /// Every command that a terminal was asked to run, also in vain, oldest first.
    virtual QStringList commands() const = 0;
};

/// Not for several threads.
class FakeTerminalLauncher final : public TerminalLauncher, public FakeTerminalLauncherControl
{
public:
    void openTerminalAndRun(const QString &command, std::function<void()> failed) override;

    void failToOpen(const QString &problem) override { m_problem = problem; }
    void failLater() override { m_failed(); }
    QStringList commands() const override { return m_commands; }

private:
    QString m_problem;
    QStringList m_commands;
    std::function<void()> m_failed;
};

} // namespace kestrova
