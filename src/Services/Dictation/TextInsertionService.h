#pragma once

#include "Concurrency/Clock.h"
#include "Concurrency/MainExecutor.h"
#include "Concurrency/Timings.h"
#include "Platform/Keys/KeyEventPosting.h"
#include "Platform/Pasteboard.h"
#include "Platform/ScriptRunning.h"
#include "Platform/Workspace.h"
#include "Services/Dictation/DeliveryWatch.h"
#include "Services/Dictation/TargetFocus.h"
#include "Services/Protocols.h"

#include <deque>
#include <mutex>

namespace kestrova {

/// Puts a transcript into another application as if the user had pasted it: brings the application
/// to the front, writes the pasteboard, sends the paste keystroke. Each call stands alone; what is
/// kept is whose request for a text would still be news.
class TextInsertionService final : public TextInserting
{
public:
    /// How often the keystroke is tried, each time after all that has to come before it. It is not
    /// sent while another window has the keyboard, or a program takes it for itself.
    static constexpr int pasteAttempts = 3;

    /// How many unconfirmed deliveries are followed.
    static constexpr size_t mostFollowed = 8;

    /// Everything referred to outlives the service.
    TextInsertionService(Workspace &workspace, Pasteboard &pasteboard, KeyEventPosting &keyEvents,
                         ScriptRunning &scripts, MainExecutor &main, Clock &clock,
                         const Timings &timings = {});

    /// Blank text does nothing. Otherwise the trimmed text is on the pasteboard afterwards, where
    /// it stays, also when the insertion failed. Throws KestrovaError when the target cannot be
    /// brought or kept in front or the fallback paste fails, PlatformError, and Cancelled when stop
    /// is requested before the keystroke.
    Delivery insert(const QString &text, const std::optional<TargetApplication> &target,
                    const std::stop_token &stop) override;
    void observeLateRequests(std::function<void(quint64 number)> handler) override;

private:
    bool paste(const std::optional<TargetApplication> &target, std::optional<TargetFocus> &focus,
               DeliveryWatch &watch, const std::stop_token &stop);
    bool waitForKeyboard(const std::stop_token &stop);
    Delivery finish(const std::shared_ptr<DeliveryWatch> &watch, const std::stop_token &stop);
    void pasteByScript(const std::optional<TargetApplication> &target);

    Workspace &m_workspace;
    Pasteboard &m_pasteboard;
    KeyEventPosting &m_keyEvents;
    ScriptRunning &m_scripts;
    MainExecutor &m_main;
    Clock &m_clock;
    const Timings m_timings;
    std::function<void(quint64)> m_lateRequestHandler = [](quint64) {};

    std::mutex m_mutex; // guards the next two
    quint64 m_deliveries = 0;
    std::deque<std::shared_ptr<DeliveryWatch>> m_followed;
};

} // namespace kestrova
