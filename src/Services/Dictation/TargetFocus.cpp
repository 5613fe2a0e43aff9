#include "Services/Dictation/TargetFocus.h"

#include "Concurrency/PollUntil.h"

#include <algorithm>

namespace kestrova {

namespace {

bool isPresent(const std::optional<QString> &text)
{
    return text && !text->isEmpty();
}

QString comparable(const std::optional<QString> &name)
{
    return name.value_or(QString()).trimmed().toLower();
}

} // namespace

bool isSameApplication(const TargetApplication &target, const RunningApplication &front)
{
    if (target.processIdentifier >= 1 && target.processIdentifier == front.processIdentifier &&
        !front.sharesProcess)
        return true;
    if (isPresent(target.bundleIdentifier) && target.bundleIdentifier == front.bundleIdentifier)
        return true;
    const QString targetName = comparable(target.localizedName);
    const QString frontName = comparable(front.localizedName);
    return !targetName.isEmpty() && !frontName.isEmpty() &&
           (targetName.contains(frontName) || frontName.contains(targetName));
}

TargetFocus::TargetFocus(const TargetApplication &target, Workspace &workspace,
                         ScriptRunning &scripts, MainExecutor &main, Clock &clock,
                         const Timings &timings)
    : m_target(target), m_workspace(workspace), m_scripts(scripts), m_main(main), m_clock(clock),
      m_timings(timings)
{
}

TargetFocus::Answer TargetFocus::bringToFront()
{
    for (int attempt = 0; attempt < activationAttempts; ++attempt) {
        Answer answer = m_main.call([this] { return isTargetFrontmost(); });
        if (answer == Answer::yes || (answer == Answer::unknown && m_wasAsked))
            return answer;
        m_main.call([this] { activate(); });
        // A script would have nothing to activate, and might start the application once more.
        const bool isComing = m_main.call([this] { return isStarting(); });
        answer = waitForTargetFrontmost(m_timings.focusWait);
        if (answer == Answer::no && (isComing || activateTargetByScript()))
            answer = waitForTargetFrontmost(m_timings.scriptFocusWait);
        if (answer != Answer::no)
            return answer;
    }
    return Answer::no;
}

TargetFocus::Answer TargetFocus::isTargetFrontmost()
{
    const auto front = m_workspace.frontmostApplication();
    if (!front)
        return m_workspace.capabilities().knowsFront ? Answer::no : Answer::unknown;
    if (!isSameApplication(m_target, *front))
        return Answer::no;
    m_keyboardWindow = front->keyboardWindow;
    return Answer::yes;
}

TargetFocus::Answer TargetFocus::waitForTargetFrontmost(std::chrono::nanoseconds limit)
{
    Answer answer = Answer::no;
    // A cancelled dictation still settles the focus; the pause before the paste ends it.
    pollUntil(m_clock, limit, m_timings.focusPollInterval, {}, [&] {
        answer = m_main.call([this] { return look(); });
        return answer != Answer::no;
    });
    return answer;
}

// What was launched may open its window behind others, the longer it takes the more likely.
TargetFocus::Answer TargetFocus::look()
{
    const Answer answer = isTargetFrontmost();
    if (answer == Answer::no && m_isActivationDue)
        activate();
    return answer;
}

void TargetFocus::activate()
{
    m_wasAsked = true;
    const auto application = runningTargetApplication();
    if (application)
        m_workspace.activate(*application);
    else if (!m_launched && isPresent(m_target.bundleIdentifier) &&
             m_workspace.isInstalled(*m_target.bundleIdentifier))
        m_launched = m_workspace.openApplication(*m_target.bundleIdentifier);
    m_isActivationDue = m_launched && !application;
}

std::optional<RunningApplication> TargetFocus::runningTargetApplication()
{
    if (m_target.processIdentifier >= 1) {
        const auto application = m_workspace.runningApplication(m_target.processIdentifier);
        if (application && !application->isTerminated)
            return application;
    }
    if (!isPresent(m_target.bundleIdentifier))
        return std::nullopt;

    auto candidates = m_workspace.runningApplications(*m_target.bundleIdentifier);
    candidates.removeIf([](const RunningApplication &candidate) { return candidate.isTerminated; });
    if (candidates.isEmpty())
        return std::nullopt;
    auto chosen = std::ranges::find_if(candidates, &RunningApplication::isActive);
    if (chosen == candidates.end())
        chosen = std::ranges::find_if(candidates, &RunningApplication::isInTaskBar);
    return chosen == candidates.end() ? candidates.first() : *chosen;
}

bool TargetFocus::isStarting()
{
    return m_launched && m_workspace.isStarting(*m_launched) && !runningTargetApplication();
}

bool TargetFocus::activateTargetByScript()
{
    if (isPresent(m_target.bundleIdentifier) &&
        m_scripts.activateApplication(*m_target.bundleIdentifier))
        return true;
    const QString name = m_target.localizedName.value_or(QString()).trimmed();
    return !name.isEmpty() && m_scripts.activateApplicationNamed(name);
}

} // namespace kestrova
