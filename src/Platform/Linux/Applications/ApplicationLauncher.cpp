#include "Platform/Linux/Applications/ApplicationLauncher.h"

#include "Platform/Linux/Applications/GioPointer.h"

#include <QByteArrayList>
#include <QFile>
#include <QSysInfo>

#include <gio/gdesktopappinfo.h>

#include <unistd.h>

namespace kestrova {

namespace {

// Without G_SPAWN_DO_NOT_REAP_CHILD, GLib starts a grandchild of which init takes care; open files
// are closed without G_SPAWN_LEAVE_DESCRIPTORS_OPEN.
constexpr auto spawnFlags =
    GSpawnFlags(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL);

constexpr auto startupIdVariable = "DESKTOP_STARTUP_ID";

QByteArrayList &privateVariables()
{
    static QByteArrayList names;
    return names;
}

// Runs between fork and exec: async-signal-safe calls only. Our terminal's Ctrl-C is not for them.
void enterOwnSession(gpointer)
{
    setsid();
}

void noteProcess(GDesktopAppInfo *, GPid process, gpointer noted)
{
    *static_cast<pid_t *>(noted) = process;
}

// The process, 0 when the session bus starts it; none when that failed.
std::optional<pid_t> launch(GDesktopAppInfo *application, GList *uris, const QByteArray &startupId)
{
    pid_t process = 0;
    const GioPointer<GAppLaunchContext> context(g_app_launch_context_new());
    g_app_launch_context_setenv(context.get(), startupIdVariable, startupId.constData());
    for (const QByteArray &name : privateVariables())
        g_app_launch_context_unsetenv(context.get(), name.constData());
    // The variant "as manager" is the one that takes spawn flags.
    const bool isLaunched = g_desktop_app_info_launch_uris_as_manager(
        application, uris, context.get(), spawnFlags, enterOwnSession, nullptr, noteProcess,
        &process, nullptr);
    return isLaunched ? std::optional(process) : std::nullopt;
}

GAppInfo *handlerOf(const QUrl &address, const QByteArray &uri)
{
    // Only a file has a type of its own; elsewhere the scheme decides.
    if (!address.isLocalFile())
        return g_app_info_get_default_for_uri_scheme(address.scheme().toUtf8().constData());
    const GioPointer<GFile> file(g_file_new_for_uri(uri.constData()));
    return g_file_query_default_handler(file.get(), nullptr, nullptr);
}

} // namespace

void setPrivateVariable(const QByteArray &name, const QByteArray &value)
{
    qputenv(name.constData(), value);
    privateVariables().append(name);
}

QByteArray startupId(quint32 serverTime)
{
    static int launchNumber = 0;
    return "kestrova-" + QByteArray::number(getpid()) + '-' + QSysInfo::machineHostName().toUtf8() +
           '-' + QByteArray::number(++launchNumber) + "_TIME" + QByteArray::number(serverTime);
}

std::optional<pid_t> launchApplication(const QString &desktopEntryPath, const QByteArray &startupId)
{
    const GioPointer<GDesktopAppInfo> application(
        g_desktop_app_info_new_from_filename(QFile::encodeName(desktopEntryPath).constData()));
    return application ? launch(application.get(), nullptr, startupId) : std::nullopt;
}

bool launchHandler(const QUrl &address, const QByteArray &startupId)
{
    QByteArray uri = address.toEncoded();
    if (!address.isValid() || address.scheme().isEmpty())
        return false;
    const GioPointer<GAppInfo> handler(handlerOf(address, uri));
    if (!handler || !G_IS_DESKTOP_APP_INFO(handler.get()))
        return false;
    GList uris{uri.data(), nullptr, nullptr};
    return launch(G_DESKTOP_APP_INFO(handler.get()), &uris, startupId).has_value();
}

std::optional<pid_t> launchProgram(const QStringList &command, const QByteArray &startupId)
{
    QByteArrayList words;
    QList<char *> arguments;
    for (const QString &word : command)
        words.append(QFile::encodeName(word));
    for (QByteArray &word : words)
        arguments.append(word.data());
    arguments.append(nullptr);

    char **environment = g_environ_setenv(g_get_environ(), startupIdVariable, startupId.constData(),
                                          /*overwrite=*/TRUE);
    for (const QByteArray &name : privateVariables())
        environment = g_environ_unsetenv(environment, name.constData());
    GPid process = 0;
    const bool isStarted = g_spawn_async(
        /*working_directory=*/nullptr, arguments.data(), environment,
        GSpawnFlags(spawnFlags | G_SPAWN_DO_NOT_REAP_CHILD), enterOwnSession, nullptr, &process,
        nullptr);
    g_strfreev(environment);
    return isStarted ? std::optional(process) : std::nullopt;
}

} // namespace kestrova
