#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <sys/types.h>

#include <optional>

namespace kestrova {

/// Starting other programs for the user. They get a session of their own, no output and no open
/// files of ours, so that they outlive us and leave nothing behind that we would have to wait for.
/// Needs neither an event loop nor a session bus. Main thread.

/// Sets an environment variable of this program that those which it starts do not get.
void setPrivateVariable(const QByteArray &name, const QByteArray &value);

/// The id that ties a window to the request that it should appear (freedesktop.org Startup
/// Notification Protocol): by the time in it, the window manager sees that the window is wanted
/// now and lets it come to the front. Each call gives another id.
QByteArray startupId(quint32 serverTime);

/// Starts the application of this desktop entry file. Its process, 0 when somebody else starts it
/// for us; none when that failed. It is no child of ours.
std::optional<pid_t> launchApplication(const QString &desktopEntryPath,
                                       const QByteArray &startupId);

/// Opens an address with the application that handles it; false when none does or it did not
/// start.
bool launchHandler(const QUrl &address, const QByteArray &startupId);

/// Starts a program, which is looked up in PATH, with arguments. None when that failed. Unlike the
/// applications above it is a child of ours, for which somebody has to wait.
std::optional<pid_t> launchProgram(const QStringList &command, const QByteArray &startupId);

} // namespace kestrova
