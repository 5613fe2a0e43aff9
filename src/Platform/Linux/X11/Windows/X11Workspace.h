#pragma once

#include "Platform/Linux/Applications/ProcessApplications.h"
#include "Platform/Linux/X11/Windows/X11RootWatcher.h"
#include "Platform/Linux/X11/Windows/X11Windows.h"
#include "Platform/Observation/Observers.h"
#include "Platform/Workspace.h"

namespace kestrova {

/// The applications of an X11 desktop, as its managed windows tell. An application is a process
/// together with an identifier: a process whose windows belong to several installed applications,
/// as an office suite's do, is several applications, also when it shows only one of them at the
/// moment. One that shows no window is not running in
/// this sense, so that opening it again brings a window; so none is ever given as terminated. Once
/// the X server has gone, nothing is running and nothing happens.
class X11Workspace final : public Workspace
{
public:
    /// All outlive this. The display is the connection's, by its name; empty means $DISPLAY.
    X11Workspace(X11Connection &connection, X11Windows &windows, DesktopEntries &entries,
                 const QByteArray &displayName = {});

    WorkspaceCapabilities capabilities() const override { return WorkspaceCapabilities::all(); }
    std::optional<RunningApplication> frontmostApplication() override;
    /// Of an application and windows of the process that belong to no installed one, the topmost.
    std::optional<RunningApplication> runningApplication(qint32 processIdentifier) override;
    QList<RunningApplication> runningApplications(const QString &bundleIdentifier) override;
    bool isOfApplication(qint32 processIdentifier, const RunningApplication &application) override;

    /// The application's topmost window that is not minimised comes to the front, else its topmost
    /// minimised one; ordinary windows go before palettes and the like.
    void activate(const RunningApplication &application) override;
    bool isInstalled(const QString &bundleIdentifier) override;
    qint32 openApplication(const QString &bundleIdentifier) override;
    bool isStarting(qint32 processIdentifier) override;
    /// An application's address opens that application, also one that no menu shows.
    bool openAddress(const QUrl &address) override;

    std::unique_ptr<Observation>
    observeActivations(std::function<void(const RunningApplication &)> handler) override;

private:
    using Handler = std::function<void(const RunningApplication &)>;

    QList<RunningApplication> applications();
    void reportActivation();
    std::optional<qint32> launchInstalled(const QString &bundleIdentifier);
    QByteArray newStartupId();

    X11Connection &m_connection;
    X11Windows &m_windows;
    DesktopEntries &m_entries;
    ProcessApplications m_processApplications;
    const QByteArray m_displayName;
    std::unique_ptr<X11RootWatcher> m_watcher; // since the first observation
    std::optional<RunningApplication> m_lastActivated;
    Observers<Handler> m_activationObservers;
};

} // namespace kestrova
