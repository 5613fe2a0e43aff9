#pragma once

#include <QString>

namespace kestrova {

/// Shows a command at work to the user, in a terminal window.
class TerminalLauncher
{
public:
    virtual ~TerminalLauncher() = default;

    /// Opens the user's terminal in front and runs the command line in its shell, which stays open
    /// afterwards. Main thread; returns once the terminal has taken the command, and does not wait
    /// for the command. Throws PlatformError when no terminal can be opened, KestrovaError when
    /// one refuses.
    virtual void openTerminalAndRun(const QString &command) = 0;
};

} // namespace kestrova
