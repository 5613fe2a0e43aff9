#include "Platform/Linux/Applications/LinuxScriptRunner.h"

#include "Models/ReadableError.h"
#include "Platform/Linux/Applications/SessionBus.h"

#include <algorithm>
#include <thread>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

// How well a name fits a window; 0: not at all.
int fit(const QString &name, const ApplicationWindow &window)
{
    if (window.names.contains(name, Qt::CaseInsensitive))
        return 3;
    if (window.title.compare(name, Qt::CaseInsensitive) == 0)
        return 2;
    return window.title.contains(name, Qt::CaseInsensitive) ? 1 : 0;
}

} // namespace

QString LinuxScriptRunner::runnerName() const
{
    return u"xdotool"_s;
}

bool LinuxScriptRunner::activateApplication(const QString &bundleIdentifier)
{
    return SessionBus::activateApplication(bundleIdentifier, activationLimit);
}

bool LinuxScriptRunner::activateApplicationNamed(const QString &name)
{
    const QString wanted = name.trimmed();
    if (wanted.isEmpty())
        return false;
    int bestFit = 1;
    std::optional<quint64> best;
    for (const ApplicationWindow &window : m_windows.all()) {
        const int windowFit = fit(wanted, window);
        if (windowFit < bestFit)
            continue;
        bestFit = windowFit;
        best = window.window; // of equals, the last, which is the topmost
    }
    if (best)
        m_windows.activate(*best);
    return best.has_value();
}

bool LinuxScriptRunner::paste(const std::optional<QString> &bundleIdentifier)
{
    if (bundleIdentifier && !bundleIdentifier->isEmpty() && !isInFront(*bundleIdentifier)) {
        // Whatever else is in front must not get the text.
        if (!activateWindowOf(*bundleIdentifier) && !activateApplication(*bundleIdentifier))
            return false;
        std::this_thread::sleep_for(pauseBeforePaste);
    }
    const QStringList arguments{u"key"_s, u"--clearmodifiers"_s, u"shift+Insert"_s};
    try {
        return m_processes.run(runnerName(), arguments, {}).terminationStatus == 0;
    } catch (const PlatformError &error) {
        throw PlatformError(u"xdotool could not be started: "_s + error.errorDescription());
    }
}

bool LinuxScriptRunner::activateWindowOf(const QString &bundleIdentifier)
{
    const QList<ApplicationWindow> windows = m_windows.all();
    const auto topmost = std::find_if(windows.rbegin(), windows.rend(), [&](const auto &window) {
        return window.bundleIdentifier == bundleIdentifier;
    });
    if (topmost == windows.rend())
        return false;
    m_windows.activate(topmost->window);
    return true;
}

bool LinuxScriptRunner::isInFront(const QString &bundleIdentifier)
{
    const std::optional<ApplicationWindow> active = m_windows.active();
    return active && active->bundleIdentifier == bundleIdentifier;
}

} // namespace kestrova
