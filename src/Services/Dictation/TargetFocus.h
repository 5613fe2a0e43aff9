#pragma once

#include "Concurrency/Clock.h"
#include "Concurrency/MainExecutor.h"
#include "Concurrency/Timings.h"
#include "Platform/ScriptRunning.h"
#include "Platform/Workspace.h"

namespace kestrova {

/// Brings the destination of one insertion to the front, as often as that is needed, and starts it
/// once at the most. Used on one worker; it looks at the workspace on the main thread.
///
/// A desktop may not tell which application is in front. What cannot be known is not waited for
/// and is no failure: the target is asked to come to the front once, and that is all.
class TargetFocus
{
public:
    enum class Answer { no, yes, unknown };

    static constexpr int activationAttempts = 3; ///< of each bringToFront()

    /// Everything referred to outlives this.
    TargetFocus(const TargetApplication &target, Workspace &workspace, ScriptRunning &scripts,
                MainExecutor &main, Clock &clock, const Timings &timings);

    /// Returns whether the target is in front now. What it started may take all of its waits to
    /// show a window.
    Answer bringToFront();
    /// The target's window that had the keyboard when it was last seen in front, as
    /// RunningApplication::keyboardWindow; 0 when it was never seen there.
    quint64 keyboardWindow() const { return m_keyboardWindow; }

private:
    Answer isTargetFrontmost();
    Answer waitForTargetFrontmost(std::chrono::nanoseconds limit);
    Answer look();
    void activate();
    std::optional<RunningApplication> runningTargetApplication();
    bool isStarting();
    bool activateTargetByScript();

    const TargetApplication &m_target;
    Workspace &m_workspace;
    ScriptRunning &m_scripts;
    MainExecutor &m_main;
    Clock &m_clock;
    const Timings &m_timings;
    std::optional<qint32> m_launched; // the process; none: nothing was launched
    bool m_isActivationDue = false;   // when what was launched shows a window
    bool m_wasAsked = false;          // to come to the front
    quint64 m_keyboardWindow = 0;
};

/// Whether the front application is the target: the same process, unless several
/// applications share it, or the same identifier, or one
/// name (trimmed, lower case) contained in the other. The loose name rule is intended: programs
/// decorate their names.
bool isSameApplication(const TargetApplication &target, const RunningApplication &front);

} // namespace kestrova
