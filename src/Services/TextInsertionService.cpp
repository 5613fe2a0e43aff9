#include "Services/TextInsertionService.h"

#include "Models/KestrovaError.h"

#include <algorithm>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

bool isPresent(const std::optional<QString> &text)
{
    return text && !text->isEmpty();
}

QString displayName(const TargetApplication &target)
{
    if (target.localizedName)
        return *target.localizedName;
    return target.bundleIdentifier.value_or(u"target application"_s);
}

QString comparable(const std::optional<QString> &name)
{
    return name.value_or(QString()).trimmed().toLower();
}

} // namespace

bool isSameApplication(const TargetApplication &target, const RunningApplication &front)
{
    if (target.processIdentifier >= 1 && target.processIdentifier == front.processIdentifier)
        return true;
    if (isPresent(target.bundleIdentifier) && target.bundleIdentifier == front.bundleIdentifier)
        return true;
    const QString targetName = comparable(target.localizedName);
    const QString frontName = comparable(front.localizedName);
    return !targetName.isEmpty() && !frontName.isEmpty() &&
           (targetName.contains(frontName) || frontName.contains(targetName));
}

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
        return {};

    if (target && !bringToFront(*target)) {
        throw KestrovaError::processFailed(u"Could not focus "_s + displayName(*target) +
                                           u" before insertion."_s);
    }
    m_pasteboard.setString(trimmed);
    if (target && !bringToFront(*target)) {
        throw KestrovaError::processFailed(u"Lost focus on "_s + displayName(*target) +
                                           u" before paste."_s);
    }
    if (!m_clock.sleep(m_timings.pauseBeforePaste, stop))
        throw Cancelled();
    if (!m_keyEvents.postCommandV())
        pasteByScript(target);
    return {};
}

bool TextInsertionService::bringToFront(const TargetApplication &target)
{
    for (int attempt = 0; attempt < activationAttempts; ++attempt) {
        if (isTargetFrontmost(target))
            return true;
        m_main.call([&] { activate(target); });
        if (waitForTargetFrontmost(target, m_timings.focusWait))
            return true;
        if (activateTargetByScript(target) &&
            waitForTargetFrontmost(target, m_timings.scriptFocusWait))
            return true;
    }
    return false;
}

bool TextInsertionService::isTargetFrontmost(const TargetApplication &target)
{
    const auto front = m_main.call([&] { return m_workspace.frontmostApplication(); });
    return front && isSameApplication(target, *front);
}

void TextInsertionService::activate(const TargetApplication &target)
{
    if (const auto application = runningTargetApplication(target))
        m_workspace.activate(*application);
    else if (isPresent(target.bundleIdentifier) &&
             m_workspace.isInstalled(*target.bundleIdentifier))
        m_workspace.openApplication(*target.bundleIdentifier);
}

std::optional<RunningApplication>
TextInsertionService::runningTargetApplication(const TargetApplication &target)
{
    if (target.processIdentifier >= 1) {
        const auto application = m_workspace.runningApplication(target.processIdentifier);
        if (application && !application->isTerminated)
            return application;
    }
    if (!isPresent(target.bundleIdentifier))
        return std::nullopt;

    auto candidates = m_workspace.runningApplications(*target.bundleIdentifier);
    candidates.removeIf([](const RunningApplication &candidate) { return candidate.isTerminated; });
    if (candidates.isEmpty())
        return std::nullopt;
    auto chosen = std::ranges::find_if(candidates, &RunningApplication::isActive);
    if (chosen == candidates.end())
        chosen = std::ranges::find_if(candidates, &RunningApplication::isRegular);
    return chosen == candidates.end() ? candidates.first() : *chosen;
}

bool TextInsertionService::waitForTargetFrontmost(const TargetApplication &target,
                                                  std::chrono::nanoseconds limit)
{
    const Clock::TimePoint deadline = m_clock.now() + limit;
    while (m_clock.now() < deadline) {
        if (isTargetFrontmost(target))
            return true;
        // A cancelled dictation still settles the focus; the pause before the paste ends it.
        m_clock.sleep(m_timings.focusPollInterval, {});
    }
    return isTargetFrontmost(target);
}

bool TextInsertionService::activateTargetByScript(const TargetApplication &target)
{
    if (isPresent(target.bundleIdentifier) &&
        m_scripts.activateApplication(*target.bundleIdentifier))
        return true;
    const QString name = target.localizedName.value_or(QString()).trimmed();
    return !name.isEmpty() && m_scripts.activateApplicationNamed(name);
}

void TextInsertionService::pasteByScript(const std::optional<TargetApplication> &target)
{
    std::optional<QString> identifier;
    if (target && isPresent(target->bundleIdentifier))
        identifier = target->bundleIdentifier;
    if (!m_scripts.paste(identifier)) {
        throw KestrovaError::processFailed(u"Paste fallback failed via "_s +
                                           m_scripts.runnerName() + u"."_s);
    }
}

} // namespace kestrova
