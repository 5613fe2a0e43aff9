#pragma once

#include "Platform/StandardDirectories.h"
#include "Platform/TerminalLauncher.h"

#include <QList>
#include <QObject>
#include <QStringList>

#include <chrono>
#include <memory>

namespace kestrova {

class UserProcess;
class X11Connection;

/// Opens the first terminal that is installed and works. The terminal is the user's: it goes on
/// when the program ends.
class LinuxTerminalLauncher final : public TerminalLauncher
{
public:
    /// How long a terminal is watched for failing at once. One that shows a window has taken the
    /// command long before.
    static constexpr std::chrono::milliseconds failureLimit{300};
    static constexpr std::chrono::milliseconds pollInterval{5};

    /// The ways to the user's own choice first, then the common terminals. Each is a program and
    /// its arguments, which a command of several words may follow.
    static QList<QStringList> knownTerminals();

    /// Both outlive this.
    LinuxTerminalLauncher(StandardDirectories &directories, X11Connection &display,
                          const QList<QStringList> &terminals = knownTerminals());

    void openTerminalAndRun(const QString &command) override;

private:
    bool open(const QStringList &terminal, const QString &scriptPath);
    void reapInTime(const std::shared_ptr<UserProcess> &process);

    StandardDirectories &m_directories;
    X11Connection &m_display;
    const QList<QStringList> m_terminals;
    QObject m_running; // the owner of what watches the terminals
};

} // namespace kestrova
