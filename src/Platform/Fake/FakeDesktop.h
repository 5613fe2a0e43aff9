#pragma once

#include "Platform/Keys/KeyEventPosting.h"
#include "Platform/ScriptRunning.h"
#include "Platform/Workspace.h"

#include <QHash>
#include <QStringList>

#include <mutex>
#include <vector>

namespace kestrova {

/// The desktop that the fake workspace, key events and scripts share, as tests set it and read
/// what was done to it. Usable from any thread.
class FakeDesktop
{
public:
    /// Plays the desktop's answer to an action; called without the lock, on the acting thread.
    using Hook = std::function<void(const QString &action)>;

    void setRunning(const QList<RunningApplication> &applications);
    void setInstalled(const QStringList &bundleIdentifiers);
    /// A process of a running application's beside the one that it is known by.
    void addHelper(qint32 processIdentifier, qint32 application);
    /// 0: no application is in front. Observers are told. The application's window with the
    /// keyboard has the number of its process.
    void bringToFront(qint32 processIdentifier);
    /// From now on it tells a program nothing about other applications, and brings none to the
    /// front for it. What is installed can be started.
    void tellNothing();
    /// Called after each action has been noted.
    void setHook(Hook hook);
    /// Whether the script runner's activations and paste succeed.
    void setScriptsSucceed(bool succeed);
    /// Not empty: the paste script cannot be started, with this text.
    void setScriptStartFailure(const QString &problem);
    void setKeyEventsAvailable(bool available);
    void setModifiersHeld(bool held);
    /// Whether a program takes all keys for itself.
    void setKeyboardTaken(bool taken);
    /// The process that openApplication() starts, 0 at first. It is starting until it runs or this
    /// is called again.
    void setLaunchedProcess(qint32 processIdentifier);
    /// As some tiling window managers do.
    void refuseToMinimise();
    /// Addresses that no application opens; every other one opens.
    void setRefusedAddresses(const QStringList &addresses);

    /// What was done, oldest first: "activate 12", "open ID", "address URL", "paste",
    /// "task bars without 12", "shadow of 12: 72", "script activate ID", "script activate name
    /// NAME", "script paste ID", "script paste" (without an identifier).
    QStringList actions() const;

private:
    friend class FakeWorkspace;
    friend class FakeKeyEventPosting;
    friend class FakeScriptRunning;
    friend class FakeWindowing;

    using ActivationHandler = std::function<void(const RunningApplication &)>;

    void note(const QString &action);
    /// As far as programs are told.
    QList<RunningApplication> running() const;
    bool tells() const;

    mutable std::mutex m_mutex;
    QList<RunningApplication> m_running;
    bool m_tells = true;
    QStringList m_installed;
    QHash<qint32, qint32> m_helpers; // and the processes of their applications
    QStringList m_actions;
    Hook m_hook;
    bool m_scriptsSucceed = false;
    QString m_scriptStartFailure;
    bool m_keyEventsAvailable = true;
    bool m_areModifiersHeld = false;
    bool m_isKeyboardTaken = false;
    qint32 m_launchedProcess = 0;
    bool m_minimises = true;
    QStringList m_refusedAddresses;
    Observers<ActivationHandler> m_observers;
};

class FakeWorkspace final : public Workspace
{
public:
    explicit FakeWorkspace(std::shared_ptr<FakeDesktop> desktop) : m_desktop(std::move(desktop)) {}

    WorkspaceCapabilities capabilities() const override;
    std::optional<RunningApplication> frontmostApplication() override;
    std::optional<RunningApplication> runningApplication(qint32 processIdentifier) override;
    QList<RunningApplication> runningApplications(const QString &bundleIdentifier) override;
    bool isOfApplication(qint32 processIdentifier, const RunningApplication &application) override;
    void activate(const RunningApplication &application) override;
    bool isInstalled(const QString &bundleIdentifier) override;
    qint32 openApplication(const QString &bundleIdentifier) override;
    bool isStarting(qint32 processIdentifier) override;
    bool openAddress(const QUrl &address) override;
    std::unique_ptr<Observation>
    observeActivations(std::function<void(const RunningApplication &)> handler) override;

private:
    std::shared_ptr<FakeDesktop> m_desktop;
};

class FakeKeyEventPosting final : public KeyEventPosting
{
public:
    explicit FakeKeyEventPosting(std::shared_ptr<FakeDesktop> desktop)
        : m_desktop(std::move(desktop))
    {
    }

    bool areModifiersHeld() override;
    bool isKeyboardTaken() override;
    Outcome postCommandV(const Conditions &conditions) override;

private:
    std::shared_ptr<FakeDesktop> m_desktop;
};

class FakeScriptRunning final : public ScriptRunning
{
public:
    explicit FakeScriptRunning(std::shared_ptr<FakeDesktop> desktop) : m_desktop(std::move(desktop))
    {
    }

    QString runnerName() const override;
    bool activateApplication(const QString &bundleIdentifier) override;
    bool activateApplicationNamed(const QString &name) override;
    bool paste(const std::optional<QString> &bundleIdentifier) override;

private:
    bool succeeds() const;

    std::shared_ptr<FakeDesktop> m_desktop;
};

} // namespace kestrova
