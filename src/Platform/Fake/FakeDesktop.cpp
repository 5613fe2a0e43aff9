#include "Platform/Fake/FakeDesktop.h"

#include "Models/ReadableError.h"

#include <algorithm>

namespace kestrova {

using namespace Qt::StringLiterals;

void FakeDesktop::setRunning(const QList<RunningApplication> &applications)
{
    const std::lock_guard lock(m_mutex);
    m_running = applications;
}

void FakeDesktop::setInstalled(const QStringList &bundleIdentifiers)
{
    const std::lock_guard lock(m_mutex);
    m_installed = bundleIdentifiers;
}

void FakeDesktop::addHelper(qint32 processIdentifier, qint32 application)
{
    const std::lock_guard lock(m_mutex);
    m_helpers.insert(processIdentifier, application);
}

void FakeDesktop::bringToFront(qint32 processIdentifier)
{
    std::optional<RunningApplication> front;
    Observers<ActivationHandler> observers;
    {
        const std::lock_guard lock(m_mutex);
        for (RunningApplication &application : m_running) {
            application.isActive = application.processIdentifier == processIdentifier;
            application.keyboardWindow = application.isActive ? quint64(processIdentifier) : 0;
            if (application.isActive)
                front = application;
        }
        if (m_tells)
            observers = m_observers;
    }
    if (!front)
        return;
    observers.forEach([&front](const ActivationHandler &handler) { handler(*front); });
}

void FakeDesktop::tellNothing()
{
    const std::lock_guard lock(m_mutex);
    m_tells = false;
}

void FakeDesktop::setHook(Hook hook)
{
    const std::lock_guard lock(m_mutex);
    m_hook = std::move(hook);
}

void FakeDesktop::setScriptsSucceed(bool succeed)
{
    const std::lock_guard lock(m_mutex);
    m_scriptsSucceed = succeed;
}

void FakeDesktop::setScriptStartFailure(const QString &problem)
{
    const std::lock_guard lock(m_mutex);
    m_scriptStartFailure = problem;
}

void FakeDesktop::refuseToMinimise()
{
    const std::lock_guard lock(m_mutex);
    m_minimises = false;
}

void FakeDesktop::setKeyEventsAvailable(bool available)
{
    const std::lock_guard lock(m_mutex);
    m_keyEventsAvailable = available;
}

void FakeDesktop::setModifiersHeld(bool held)
{
    const std::lock_guard lock(m_mutex);
    m_areModifiersHeld = held;
}

void FakeDesktop::setKeyboardTaken(bool taken)
{
    const std::lock_guard lock(m_mutex);
    m_isKeyboardTaken = taken;
}

void FakeDesktop::setLaunchedProcess(qint32 processIdentifier)
{
    const std::lock_guard lock(m_mutex);
    m_launchedProcess = processIdentifier;
}

void FakeDesktop::setRefusedAddresses(const QStringList &addresses)
{
    const std::lock_guard lock(m_mutex);
    m_refusedAddresses = addresses;
}

QStringList FakeDesktop::actions() const
{
    const std::lock_guard lock(m_mutex);
    return m_actions;
}

void FakeDesktop::note(const QString &action)
{
    Hook hook;
    {
        const std::lock_guard lock(m_mutex);
        m_actions.append(action);
        hook = m_hook;
    }
    if (hook)
        hook(action);
}

QList<RunningApplication> FakeDesktop::running() const
{
    const std::lock_guard lock(m_mutex);
    return m_tells ? m_running : QList<RunningApplication>();
}

bool FakeDesktop::tells() const
{
    const std::lock_guard lock(m_mutex);
    return m_tells;
}

WorkspaceCapabilities FakeWorkspace::capabilities() const
{
    return m_desktop->tells() ? WorkspaceCapabilities::all() : WorkspaceCapabilities();
}

std::optional<RunningApplication> FakeWorkspace::frontmostApplication()
{
    for (const RunningApplication &application : m_desktop->running()) {
        if (application.isActive)
            return application;
    }
    return std::nullopt;
}

std::optional<RunningApplication> FakeWorkspace::runningApplication(qint32 processIdentifier)
{
    for (const RunningApplication &application : m_desktop->running()) {
        if (application.processIdentifier == processIdentifier && !application.sharesProcess)
            return application;
    }
    return std::nullopt;
}

QList<RunningApplication> FakeWorkspace::runningApplications(const QString &bundleIdentifier)
{
    QList<RunningApplication> matching;
    for (const RunningApplication &application : m_desktop->running()) {
        if (application.bundleIdentifier == bundleIdentifier)
            matching.append(application);
    }
    return matching;
}

bool FakeWorkspace::isOfApplication(qint32 processIdentifier, const RunningApplication &application)
{
    const std::lock_guard lock(m_desktop->m_mutex);
    return m_desktop->m_tells && processIdentifier >= 1 &&
           m_desktop->m_helpers.value(processIdentifier, processIdentifier) ==
               application.processIdentifier;
}

void FakeWorkspace::activate(const RunningApplication &application)
{
    if (m_desktop->tells())
        m_desktop->note(u"activate %1"_s.arg(application.processIdentifier));
}

bool FakeWorkspace::isInstalled(const QString &bundleIdentifier)
{
    const std::lock_guard lock(m_desktop->m_mutex);
    return m_desktop->m_installed.contains(bundleIdentifier);
}

qint32 FakeWorkspace::openApplication(const QString &bundleIdentifier)
{
    m_desktop->note(u"open "_s + bundleIdentifier);
    const std::lock_guard lock(m_desktop->m_mutex);
    return m_desktop->m_launchedProcess;
}

bool FakeWorkspace::isStarting(qint32 processIdentifier)
{
    const bool isRunning = runningApplication(processIdentifier).has_value();
    const std::lock_guard lock(m_desktop->m_mutex);
    return m_desktop->m_tells && !isRunning && processIdentifier > 0 &&
           processIdentifier == m_desktop->m_launchedProcess;
}

bool FakeWorkspace::openAddress(const QUrl &address)
{
    m_desktop->note(u"address "_s + address.toString());
    const std::lock_guard lock(m_desktop->m_mutex);
    return !m_desktop->m_refusedAddresses.contains(address.toString());
}

std::unique_ptr<Observation>
FakeWorkspace::observeActivations(std::function<void(const RunningApplication &)> handler)
{
    const std::lock_guard lock(m_desktop->m_mutex);
    return m_desktop->m_observers.add(std::move(handler));
}

bool FakeKeyEventPosting::areModifiersHeld()
{
    const std::lock_guard lock(m_desktop->m_mutex);
    return m_desktop->m_areModifiersHeld;
}

bool FakeKeyEventPosting::isKeyboardTaken()
{
    const std::lock_guard lock(m_desktop->m_mutex);
    return m_desktop->m_isKeyboardTaken;
}

KeyEventPosting::Outcome FakeKeyEventPosting::postCommandV(const Conditions &conditions)
{
    {
        const std::lock_guard lock(m_desktop->m_mutex);
        if (!m_desktop->m_keyEventsAvailable)
            return Outcome::unavailable;
        const bool isInFront =
            conditions.window == 0 ||
            std::ranges::any_of(m_desktop->m_running, [&](const RunningApplication &application) {
                return application.keyboardWindow == conditions.window;
            });
        const bool arePreventing = m_desktop->m_areModifiersHeld && !conditions.releasesModifiers;
        if (!isInFront || arePreventing || m_desktop->m_isKeyboardTaken)
            return Outcome::notSent;
    }
    m_desktop->note(u"paste"_s);
    return Outcome::sent;
}

QString FakeScriptRunning::runnerName() const
{
    return u"fakescript"_s;
}

bool FakeScriptRunning::activateApplication(const QString &bundleIdentifier)
{
    m_desktop->note(u"script activate "_s + bundleIdentifier);
    return succeeds();
}

bool FakeScriptRunning::activateApplicationNamed(const QString &name)
{
    m_desktop->note(u"script activate name "_s + name);
    return succeeds();
}

bool FakeScriptRunning::paste(const std::optional<QString> &bundleIdentifier)
{
    m_desktop->note(bundleIdentifier ? u"script paste "_s + *bundleIdentifier : u"script paste"_s);
    const std::lock_guard lock(m_desktop->m_mutex);
    if (!m_desktop->m_scriptStartFailure.isEmpty())
        throw PlatformError(m_desktop->m_scriptStartFailure);
    return m_desktop->m_scriptsSucceed;
}

bool FakeScriptRunning::succeeds() const
{
    const std::lock_guard lock(m_desktop->m_mutex);
    return m_desktop->m_scriptsSucceed;
}

} // namespace kestrova
