#pragma once

#include "Concurrency/Clock.h"
#include "Concurrency/MainExecutor.h"
#include "Concurrency/Timings.h"
#include "Platform/KeyEventPosting.h"
#include "Platform/Pasteboard.h"
#include "Platform/ScriptRunning.h"
#include "Platform/Workspace.h"
#include "Services/Protocols.h"

namespace kestrova {

/// Puts a transcript into another application as if the user had pasted it: brings the application
/// to the front, writes the pasteboard, sends the paste keystroke. Keeps nothing between calls.
class TextInsertionService final : public TextInserting
{
public:
    static constexpr int activationAttempts = 3; ///< per focus phase

    /// Everything referred to outlives the service.
    TextInsertionService(Workspace &workspace, Pasteboard &pasteboard, KeyEventPosting &keyEvents,
                         ScriptRunning &scripts, MainExecutor &main, Clock &clock,
                         const Timings &timings = {});

    /// Blank text does nothing. Otherwise the trimmed text is on the pasteboard afterwards, where
    /// it stays, also when the paste failed. Throws KestrovaError when the target cannot be brought
    /// or kept in front or the fallback paste fails, PlatformError, and Cancelled when stop is
    /// requested before the keystroke.
    Delivery insert(const QString &text, const std::optional<TargetApplication> &target,
                    const std::stop_token &stop) override;

private:
    bool bringToFront(const TargetApplication &target);
    bool isTargetFrontmost(const TargetApplication &target);
    void activate(const TargetApplication &target);
    std::optional<RunningApplication> runningTargetApplication(const TargetApplication &target);
    bool waitForTargetFrontmost(const TargetApplication &target, std::chrono::nanoseconds limit);
    bool activateTargetByScript(const TargetApplication &target);
    void pasteByScript(const std::optional<TargetApplication> &target);

    Workspace &m_workspace;
    Pasteboard &m_pasteboard;
    KeyEventPosting &m_keyEvents;
    ScriptRunning &m_scripts;
    MainExecutor &m_main;
    Clock &m_clock;
    const Timings m_timings;
};

/// Whether the front application is the target: the same process, or the same identifier, or one
/// name (trimmed, lower case) contained in the other. The loose name rule is intended: programs
/// decorate their names.
bool isSameApplication(const TargetApplication &target, const RunningApplication &front);

} // namespace kestrova
