#pragma once

#include "Models/Dictation/TargetApplication.h"
#include "Platform/Observation/Observers.h"

#include <QList>
#include <QUrl>

#include <functional>
#include <memory>

namespace kestrova {

/// One running application, as seen at one moment.
struct RunningApplication
{
    qint32 processIdentifier = 0;
    std::optional<QString> bundleIdentifier; ///< none when no installed application matches
    std::optional<QString> localizedName;
    bool isTerminated = false;
    bool isActive = false;    ///< it is the frontmost application
    bool isInTaskBar = false; ///< it shows windows that task bars list
    /// Its process shows windows of other applications too, as an office suite's does, so that the
    /// process identifier does not tell which of them is meant.
    bool sharesProcess = false;
    /// That one of its windows which has the keyboard, as a number of the window system's; 0: none.
    quint64 keyboardWindow = 0;

    /// None when the process identifier is below 1; with the process identifier 0 when the process
    /// is shared.
    std::optional<TargetApplication> asTarget() const;

    bool operator==(const RunningApplication &) const = default;
};

/// What a desktop lets a program know of the applications of others, and do with them.
struct WorkspaceCapabilities
{
    /// Without an application in front there is none. Otherwise there may be one that is not known.
    bool knowsFront = false;
    bool canActivate = false; ///< activate() is heard
    bool canList = false;     ///< what is not listed does not run

    static constexpr WorkspaceCapabilities all() { return {true, true, true}; }
    bool operator==(const WorkspaceCapabilities &) const = default;
};

/// The applications of the desktop. Used on the main thread only; every call returns promptly.
class Workspace
{
public:
    virtual ~Workspace() = default;

    /// The same each time.
    virtual WorkspaceCapabilities capabilities() const = 0;

    /// The application whose window has the keyboard; none on an empty desktop, and where it is
    /// not known.
    virtual std::optional<RunningApplication> frontmostApplication() = 0;
    /// None also for a process that several applications share.
    virtual std::optional<RunningApplication> runningApplication(qint32 processIdentifier) = 0;
    /// Every running instance with exactly this identifier, oldest first.
    virtual QList<RunningApplication> runningApplications(const QString &bundleIdentifier) = 0;
    /// Whether the process is one of the application's, which may have several, or of a program
    /// that it started. False when it is not known whose it is.
    virtual bool isOfApplication(qint32 processIdentifier,
                                 const RunningApplication &application) = 0;

    /// Asks for the application to come to the front; it may take a while or not happen at all.
    virtual void activate(const RunningApplication &application) = 0;
    /// Whether an application with this identifier is installed.
    virtual bool isInstalled(const QString &bundleIdentifier) = 0;
    /// Starts the application and asks for it to come to the front. The process that was started;
    /// 0 when that is not known, or failed.
    virtual qint32 openApplication(const QString &bundleIdentifier) = 0;
    /// Whether the process lives and shows no window.
    virtual bool isStarting(qint32 processIdentifier) = 0;
    /// Opens an address with the application that handles it; false when none took it.
    virtual bool openAddress(const QUrl &address) = 0;

    /// Calls the handler on the main thread with each application that comes to the front.
    [[nodiscard]] virtual std::unique_ptr<Observation>
    observeActivations(std::function<void(const RunningApplication &)> handler) = 0;
};

} // namespace kestrova
