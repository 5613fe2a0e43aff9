#include "Platform/Linux/X11/Windows/X11Workspace.h"

#include "Platform/Linux/Applications/ApplicationAddress.h"
#include "Platform/Linux/Applications/ApplicationLauncher.h"
#include "Platform/Linux/Applications/ProcessFamily.h"
#include "Platform/Linux/Applications/ProcessStatus.h"
#include "Platform/Linux/X11/Connection/X11ServerTime.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

RunningApplication applicationOf(const X11Window &window)
{
    RunningApplication application;
    application.processIdentifier = window.processIdentifier;
    application.bundleIdentifier = window.bundleIdentifier;
    application.localizedName = window.localizedName;
    application.isInTaskBar = window.isInTaskBar;
    return application;
}

void makeActive(RunningApplication &application, const X11Window &active)
{
    application.isActive = true;
    application.keyboardWindow = active.window;
}

bool isSameApplication(const RunningApplication &a, const RunningApplication &b)
{
    // Without a process, the name is what is left to tell applications apart.
    return a.processIdentifier == b.processIdentifier && a.bundleIdentifier == b.bundleIdentifier &&
           (a.processIdentifier > 0 || a.localizedName == b.localizedName);
}

// Orders processes by age. Two may begin within one clock tick; the numbers then count up.
std::pair<quint64, qint32> ageKey(const RunningApplication &application)
{
    const auto status = processStatus(application.processIdentifier);
    return {status ? status->startTime : 0, application.processIdentifier};
}

} // namespace

X11Workspace::X11Workspace(X11Connection &connection, X11Windows &windows, DesktopEntries &entries,
                           const QByteArray &displayName)
    : m_connection(connection), m_windows(windows), m_entries(entries), m_displayName(displayName)
{
}

// The topmost application last.
QList<RunningApplication> X11Workspace::applications()
{
    const auto active = m_windows.active();
    QList<RunningApplication> applications;
    for (const X11Window &window : m_windows.all()) {
        m_processApplications.note(window.processIdentifier, window.bundleIdentifier);
        RunningApplication application = applicationOf(window);
        if (active && isSameApplication(application, applicationOf(*active)))
            makeActive(application, *active);
        const auto known = std::ranges::find_if(
            applications, [&](const auto &other) { return isSameApplication(application, other); });
        if (known != applications.end()) {
            application.isInTaskBar = application.isInTaskBar || known->isInTaskBar;
            applications.erase(known);
        }
        applications.append(application);
    }
    for (RunningApplication &application : applications)
        application.sharesProcess = m_processApplications.areSeveral(application.processIdentifier);
    return applications;
}

std::optional<RunningApplication> X11Workspace::frontmostApplication()
{
    const auto window = m_windows.active();
    if (!window)
        return std::nullopt;
    RunningApplication application = applicationOf(*window);
    makeActive(application, *window);
    for (const X11Window &other : m_windows.ofProcess(window->processIdentifier)) {
        m_processApplications.note(other.processIdentifier, other.bundleIdentifier);
        if (other.isInTaskBar && isSameApplication(application, applicationOf(other)))
            application.isInTaskBar = true;
    }
    application.sharesProcess = m_processApplications.areSeveral(application.processIdentifier);
    return application;
}

std::optional<RunningApplication> X11Workspace::runningApplication(qint32 processIdentifier)
{
    if (processIdentifier < 1)
        return std::nullopt;
    const QList<RunningApplication> all = applications();
    const auto found = std::find_if(all.rbegin(), all.rend(), [&](const auto &application) {
        return application.processIdentifier == processIdentifier && !application.sharesProcess;
    });
    return found == all.rend() ? std::nullopt : std::optional(*found);
}

QList<RunningApplication> X11Workspace::runningApplications(const QString &bundleIdentifier)
{
    std::multimap<std::pair<quint64, qint32>, RunningApplication> byAge;
    for (const RunningApplication &application : applications()) {
        if (application.bundleIdentifier == bundleIdentifier)
            byAge.emplace(ageKey(application), application);
    }
    QList<RunningApplication> oldestFirst;
    for (const auto &[age, application] : byAge)
        oldestFirst.append(application);
    return oldestFirst;
}

bool X11Workspace::isOfApplication(qint32 processIdentifier, const RunningApplication &application)
{
    return kestrova::isOfApplication(processIdentifier, application.processIdentifier);
}

void X11Workspace::activate(const RunningApplication &application)
{
    QList<X11Window> windows = m_windows.all();
    windows.removeIf([&](const X11Window &window) {
        return !isSameApplication(application, applicationOf(window));
    });
    // Of equals, the last, which is the topmost.
    const auto isWorseOrBelow = [](const X11Window &a, const X11Window &b) {
        return std::tuple(a.isInTaskBar, !a.isMinimised) <=
               std::tuple(b.isInTaskBar, !b.isMinimised);
    };
    const auto best = std::ranges::max_element(windows, isWorseOrBelow);
    if (best != windows.end())
        m_windows.activate(best->window);
}

bool X11Workspace::isInstalled(const QString &bundleIdentifier)
{
    return m_entries.application(bundleIdentifier).has_value();
}

qint32 X11Workspace::openApplication(const QString &bundleIdentifier)
{
    return launchInstalled(bundleIdentifier).value_or(0);
}

bool X11Workspace::isStarting(qint32 processIdentifier)
{
    return processStatus(processIdentifier) && m_windows.ofProcess(processIdentifier).isEmpty();
}

std::optional<qint32> X11Workspace::launchInstalled(const QString &bundleIdentifier)
{
    const auto entry = m_entries.application(bundleIdentifier);
    return entry ? launchApplication(entry->path, newStartupId()) : std::nullopt;
}

bool X11Workspace::openAddress(const QUrl &address)
{
    if (const auto identifier = applicationAt(address))
        return launchInstalled(*identifier).has_value();
    return launchHandler(address, newStartupId());
}

QByteArray X11Workspace::newStartupId()
{
    return startupId(serverTime(m_connection));
}

std::unique_ptr<Observation> X11Workspace::observeActivations(Handler handler)
{
    if (!m_watcher) {
        // A window manager may list a window later than it makes it the active one.
        m_watcher = std::make_unique<X11RootWatcher>(
            m_displayName, QByteArrayList{"_NET_ACTIVE_WINDOW", "_NET_CLIENT_LIST"},
            [this] { reportActivation(); });
        m_lastActivated = frontmostApplication();
    }
    return m_activationObservers.add(std::move(handler));
}

void X11Workspace::reportActivation()
{
    const auto application = frontmostApplication();
    if (!application || (m_lastActivated && isSameApplication(*application, *m_lastActivated)))
        return;
    m_lastActivated = application;
    m_activationObservers.forEach([&](const Handler &handler) { handler(*application); });
}

} // namespace kestrova
