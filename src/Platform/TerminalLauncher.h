#pragma once

#include <QString>

#include <functional>

namespace kestrova {

/// Shows a command at work to the user, in a terminal window.
class TerminalLauncher
{
public:
    virtual ~TerminalLauncher() = default;

    /// Opens the user's terminal in front and runs the command line in its shell, which stays open
    /// afterwards. Main thread; returns once the terminal has taken the command or is taking its
    /// time, and does not wait for the command. Throws PlatformError when no terminal can be
    /// opened, KestrovaError when one refuses. When that shows only later, the event loop calls
    /// "failed".
    virtual void openTerminalAndRun(const QString &command, std::function<void()> failed) = 0;
};

} // namespace kestrova
