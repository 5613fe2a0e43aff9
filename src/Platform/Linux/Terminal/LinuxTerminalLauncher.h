#pragma once

#include "Platform/StandardDirectories.h"
#include "Platform/TerminalLauncher.h"

#include <QList>
#include <QObject>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>

namespace kestrova {

class UserProcess;

/// Opens the first terminal that is installed and works: one that ends without having taken the
/// command, however late, is replaced by the next. The terminal is the user's: it goes on when the
/// program ends.
class LinuxTerminalLauncher final : public TerminalLauncher
{
public:
    /// How long a terminal is waited for. One that needs longer is watched while the program goes
    /// on.
    static constexpr std::chrono::milliseconds failureLimit{300};
    static constexpr std::chrono::milliseconds pollInterval{5};

    /// The ways to the user's own choice first, then the common terminals. Each is a program and
    /// its arguments, which a command of several words may follow.
    static QList<QStringList> knownTerminals();

    /// The directories outlive this. newStartupId gives each terminal what lets its window come to
    /// the front.
    LinuxTerminalLauncher(StandardDirectories &directories,
                          std::function<QByteArray()> newStartupId,
                          const QList<QStringList> &terminals = knownTerminals());

    void openTerminalAndRun(const QString &command, std::function<void()> failed) override;

private:
    /// What terminals are left to try for a command.
    struct Attempt
    {
        QString scriptPath;
        QList<QStringList> terminals;
        std::function<void()> failed;
    };

    enum class Opening {
        taken,   ///< or a terminal is taking its time
        refused, ///< a terminal was there and ended without having taken the command
        none,    ///< there is no terminal
    };

    Opening openNext(Attempt attempt);
    /// None when it cannot be started.
    std::shared_ptr<UserProcess> start(const QStringList &terminal, const QString &scriptPath);
    void watch(const std::shared_ptr<UserProcess> &process, const Attempt &rest);
    void goOn(const Attempt &attempt);

    StandardDirectories &m_directories;
    const std::function<QByteArray()> m_newStartupId;
    const QList<QStringList> m_terminals;
    QObject m_running; // the owner of what watches the terminals
};

} // namespace kestrova
