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
    /// Every command that a terminal was asked to run, also in vain, oldest first.
    virtual QStringList commands() const = 0;
};

/// Not for several threads.
class FakeTerminalLauncher final : public TerminalLauncher, public FakeTerminalLauncherControl
{
public:
    void openTerminalAndRun(const QString &command) override;

    void failToOpen(const QString &problem) override { m_problem = problem; }
    QStringList commands() const override { return m_commands; }

private:
    QString m_problem;
    QStringList m_commands;
};

} // namespace kestrova
