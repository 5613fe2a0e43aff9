#include "Services/Dictation/TextInsertionService.h"

#include "Concurrency/PollUntil.h"
#include "Models/KestrovaError.h"

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

QString displayName(const std::optional<TargetApplication> &target)
{
    if (target && target->localizedName)
        return *target->localizedName;
    if (target && target->bundleIdentifier)
        return *target->bundleIdentifier;
    return u"target application"_s;
}

} // namespace

TextInsertionService::TextInsertionService(Workspace &workspace, Pasteboard &pasteboard,
                                           KeyEventPosting &keyEvents, ScriptRunning &scripts,
                                           MainExecutor &main, Clock &clock, const Timings &timings)
    : m_workspace(workspace), m_pasteboard(pasteboard), m_keyEvents(keyEvents), m_scripts(scripts),
      m_main(main), m_clock(clock), m_timings(timings)
{
}

Delivery TextInsertionService::insert(const QString &text,
                                      const std::optional<TargetApplication> &target,
                                      const std::stop_token &stop)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return {.outcome = DeliveryOutcome::requested};

    std::optional<TargetFocus> focus;
    if (target)
        focus.emplace(*target, m_workspace, m_scripts, m_main, m_clock, m_timings);
    const bool isElsewhere = focus && focus->bringToFront() == TargetFocus::Answer::no;
    // In any case: the user can still paste it.
    const auto watch =
        std::make_shared<DeliveryWatch>(m_workspace, m_main, m_pasteboard.setString(trimmed));
    if (isElsewhere) {
        throw KestrovaError::processFailed(u"Could not focus "_s + displayName(target) +
                                           u" before insertion."_s);
    }
    if (!paste(target, focus, *watch, stop)) {
        throw KestrovaError::processFailed(u"Lost focus on "_s + displayName(target) +
                                           u" before paste."_s);
    }
    return finish(watch, stop);
}

void TextInsertionService::observeLateRequests(std::function<void(quint64 number)> handler)
{
    m_lateRequestHandler = std::move(handler);
}

Delivery TextInsertionService::finish(const std::shared_ptr<DeliveryWatch> &watch,
                                      const std::stop_token &stop)
{
    const DeliveryOutcome outcome = watch->wait(m_clock, m_timings, stop);
    const std::lock_guard lock(m_mutex);
    const quint64 number = ++m_deliveries;
    if (outcome != DeliveryOutcome::requested) {
        watch->follow([handler = m_lateRequestHandler, number] { handler(number); });
        m_followed.push_back(watch);
        if (m_followed.size() > mostFollowed)
            m_followed.pop_front();
    }
    return {outcome, number};
}

bool TextInsertionService::paste(const std::optional<TargetApplication> &target,
                                 std::optional<TargetFocus> &focus, DeliveryWatch &watch,
                                 const std::stop_token &stop)
{
    for (int attempt = 1; attempt <= pasteAttempts; ++attempt) {
        const bool areModifiersUp = waitForKeyboard(stop);
        if (focus && focus->bringToFront() == TargetFocus::Answer::no)
            return false;
        if (!m_clock.sleep(m_timings.pauseBeforePaste, stop))
            throw Cancelled();
        watch.begin();
        const auto outcome = m_keyEvents.postCommandV(
            {.window = focus ? focus->keyboardWindow() : 0,
             .releasesModifiers = !areModifiersUp || attempt == pasteAttempts});
        if (outcome == KeyEventPosting::Outcome::unavailable)
            pasteByScript(target);
        if (outcome != KeyEventPosting::Outcome::notSent)
            return true;
    }
    return false;
}

bool TextInsertionService::waitForKeyboard(const std::stop_token &stop)
{
    const auto wait = [&](std::chrono::nanoseconds limit, const auto &holds) {
        return pollUntil(m_clock, limit, m_timings.focusPollInterval, stop, holds);
    };
    const bool areModifiersUp =
        wait(m_timings.modifierWait, [this] { return !m_keyEvents.areModifiersHeld(); });
    // Also while they are down: they may belong to a window switcher.
    wait(m_timings.takenKeyboardWait, [this] { return !m_keyEvents.isKeyboardTaken(); });
    return areModifiersUp;
}

void TextInsertionService::pasteByScript(const std::optional<TargetApplication> &target)
{
    std::optional<QString> identifier;
    if (target && target->bundleIdentifier && !target->bundleIdentifier->isEmpty())
        identifier = target->bundleIdentifier;
    if (!m_scripts.paste(identifier)) {
        throw KestrovaError::processFailed(u"Paste fallback failed via "_s +
                                           m_scripts.runnerName() + u"."_s);
    }
}

} // namespace kestrova
