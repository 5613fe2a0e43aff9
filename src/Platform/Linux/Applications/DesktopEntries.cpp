#include "Platform/Linux/Applications/DesktopEntries.h"

#include "Platform/Linux/Applications/GioPointer.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QSet>
#include <QStandardPaths>

#include <gio/gdesktopappinfo.h>

#include <algorithm>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

// The desktop-file id: the path below the applications folder with "-" for "/".
QString identifierOf(const QString &path, const QString &directory)
{
    QString identifier = QDir(directory).relativeFilePath(path);
    identifier.chop(QLatin1StringView(".desktop").size());
    return identifier.replace(u'/', u'-');
}

// Exec as a list of arguments. Field codes such as %U stand for what is opened.
QStringList commandOf(GAppInfo *application)
{
    const char *commandLine = g_app_info_get_commandline(application);
    char **words = nullptr;
    if (!commandLine || !g_shell_parse_argv(commandLine, nullptr, &words, nullptr))
        return {};
    QStringList command;
    for (char **word = words; *word; ++word) {
        if (**word != '%')
            command.append(QString::fromUtf8(*word));
    }
    g_strfreev(words);
    return command;
}

QString resolvedProgram(const QString &program)
{
    const QString path =
        QDir::isAbsolutePath(program) ? program : QStandardPaths::findExecutable(program);
    return path.isEmpty() ? QString() : QFileInfo(path).canonicalFilePath();
}

// None for an entry that is not an application, is marked as removed, or lacks its program.
std::optional<DesktopEntry> readEntry(const QString &path, const QString &identifier)
{
    const GioPointer<GDesktopAppInfo> file(
        g_desktop_app_info_new_from_filename(QFile::encodeName(path).constData()));
    if (!file || g_desktop_app_info_get_is_hidden(file.get()))
        return std::nullopt;

    GAppInfo *const application = G_APP_INFO(file.get());
    const QStringList command = commandOf(application);
    DesktopEntry entry;
    entry.identifier = identifier;
    entry.path = path;
    entry.name = QString::fromUtf8(g_app_info_get_name(application));
    entry.startupWMClass = QString::fromUtf8(g_desktop_app_info_get_startup_wm_class(file.get()));
    entry.executable = command.isEmpty() ? QString() : resolvedProgram(command.first());
    entry.arguments = command.mid(1);
    entry.isShown = !g_desktop_app_info_get_nodisplay(file.get());
    entry.runsInTerminal =
        g_desktop_app_info_get_boolean(file.get(), G_KEY_FILE_DESKTOP_KEY_TERMINAL);
    return entry;
}

} // namespace

QStringList DesktopEntries::standardDirectories()
{
    return QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
}

DesktopEntries::DesktopEntries(const QStringList &directories) : m_directories(directories) {}

std::optional<DesktopEntry> DesktopEntries::application(const QString &identifier)
{
    const std::lock_guard lock(m_mutex);
    const QList<DesktopEntry> &entries = current();
    const auto found = std::ranges::find(entries, identifier, &DesktopEntry::identifier);
    return found == entries.end() ? std::nullopt : std::optional(*found);
}

std::optional<DesktopEntry> DesktopEntries::application(const WindowClues &clues)
{
    const std::lock_guard lock(m_mutex);
    const DesktopEntry *const entry = identifyApplication(clues, current());
    return entry ? std::optional(*entry) : std::nullopt;
}

const QList<DesktopEntry> &DesktopEntries::current()
{
    const QList<FolderTime> times = folderTimes();
    if (m_hasSettled && times == m_folderTimes)
        return m_entries;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    m_hasSettled = std::ranges::none_of(times, [now](const FolderTime &folder) {
        const qint64 age = now - folder.changed;
        return age >= 0 && age < settlingTime.count();
    });
    m_folderTimes = times;
    m_entries = read();
    return m_entries;
}

QList<DesktopEntries::FolderTime> DesktopEntries::folderTimes() const
{
    QList<FolderTime> times;
    const auto add = [&times](const QString &path) {
        times.append({path, QFileInfo(path).lastModified().toMSecsSinceEpoch()});
    };
    for (const QString &directory : m_directories) {
        if (!QFileInfo::exists(directory))
            continue;
        add(directory);
        QDirIterator folders(directory, QDir::Dirs | QDir::NoDotAndDotDot,
                             QDirIterator::Subdirectories);
        while (folders.hasNext())
            add(folders.next());
    }
    return times;
}

QList<DesktopEntry> DesktopEntries::read() const
{
    QList<DesktopEntry> entries;
    QSet<QString> seen;
    for (const QString &directory : m_directories) {
        QDirIterator files(directory, {u"*.desktop"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            const QString identifier = identifierOf(path, directory);
            if (seen.contains(identifier))
                continue;
            seen.insert(identifier);
            if (const auto entry = readEntry(path, identifier))
                entries.append(*entry);
        }
    }
    // A folder has no order of its own; identification must not depend on chance.
    std::ranges::sort(entries, {}, &DesktopEntry::identifier);
    return entries;
}

} // namespace kestrova
