#pragma once

#include "Platform/Linux/Applications/ApplicationWindows.h"
#include "Platform/ProcessRunning.h"
#include "Platform/ScriptRunning.h"

#include <chrono>

namespace kestrova {

/// The second choice on Linux: applications are asked over the session bus to come forward, and
/// xdotool sends the paste chord.
class LinuxScriptRunner final : public ScriptRunning
{
public:
    /// How long an application may take to answer that it will come forward.
    static constexpr std::chrono::milliseconds activationLimit{1000};
    /// What an application that was just activated gets before the chord is sent.
    static constexpr std::chrono::milliseconds pauseBeforePaste{80};

    /// Both outlive this.
    LinuxScriptRunner(ApplicationWindows &windows, ProcessRunning &processes)
        : m_windows(windows), m_processes(processes)
    {
    }

    QString runnerName() const override;

    /// Calls Activate of the interface org.freedesktop.Application (freedesktop.org Desktop Entry
    /// Specification, "D-Bus Activation"), which starts an application that is not running. False
    /// for one that does not have it. Some applications answer with a new window.
    bool activateApplication(const QString &bundleIdentifier) override;
    /// Activates a window whose application or title has this name; failing that, one whose title
    /// contains it. Letter case does not matter. False when there is none.
    bool activateApplicationNamed(const QString &name) override;

    /// Sends Shift+Insert, which pastes in terminals too. An application that is already in front
    /// is not activated again; when one that is not in front cannot be, nothing is sent.
    bool paste(const std::optional<QString> &bundleIdentifier) override;

private:
    bool activateWindowOf(const QString &bundleIdentifier);
    bool isInFront(const QString &bundleIdentifier);

    ApplicationWindows &m_windows;
    ProcessRunning &m_processes;
};

} // namespace kestrova
