#pragma once

#include "Platform/TerminalLauncher.h"

#include <QStringList>

namespace kestrova {

/// Not for several threads.
class FakeTerminalLauncher final : public TerminalLauncher
{
public:
    void openTerminalAndRun(const QString &command, std::function<void()> failed) override;

    /// From now on no terminal opens, for this reason; empty: works again.
    void failToOpen(const QString &problem) { m_problem = problem; }
    /// The terminal that was opened last turns out not to work.
    void failLater() { m_failed(); }
    /// Every command that a terminal was asked to run, also in vain, oldest first.
    QStringList commands() const { return m_commands; }

private:
    QString m_problem;
    QStringList m_commands;
    std::function<void()> m_failed;
};

} // namespace kestrova
