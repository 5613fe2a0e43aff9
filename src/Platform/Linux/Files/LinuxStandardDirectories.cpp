#include "Platform/Linux/Files/LinuxStandardDirectories.h"

#include "Models/ReadableError.h"
#include "Platform/Linux/Files/XdgDirectories.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t privateMode = S_IRWXU;
constexpr QLatin1String commonParent("/tmp");

[[noreturn]] void fail(const QString &path, const QString &reason)
{
    throw PlatformError(
        u"The folder for temporary files, %1, cannot be used: %2"_s.arg(path, reason));
}

// Not QDir::tempPath(), which answers with the working directory when TMPDIR does not exist.
QString temporaryParent()
{
    const QString configured = qEnvironmentVariable("TMPDIR");
    return QDir::isAbsolutePath(configured) ? QDir::cleanPath(configured) : QString(commonParent);
}

// Works on the open folder, so that nothing can be put in its place between check and use.
QString problemWith(int directory)
{
    struct stat status = {};
    if (fstat(directory, &status) != 0)
        return qt_error_string(errno);
    if (status.st_uid != geteuid())
        return u"it belongs to another user."_s;
    if ((status.st_mode & ALLPERMS) != privateMode && fchmod(directory, privateMode) != 0)
        return qt_error_string(errno);
    return {};
}

// Makes it, or makes sure that it is a folder of the user's which nobody else may enter.
QString privateDirectory(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    // The umask may take from the mode even what the user needs.
    const bool isMade =
        mkdir(name.constData(), privateMode) == 0 && chmod(name.constData(), privateMode) == 0;
    if (!isMade && errno != EEXIST)
        fail(path, qt_error_string(errno));

    const int directory = open(name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (directory < 0) {
        const bool isSomethingElse = errno == ELOOP || errno == ENOTDIR;
        fail(path, isSomethingElse ? u"it is not a folder."_s : qt_error_string(errno));
    }
    const QString problem = problemWith(directory);
    close(directory);
    if (!problem.isEmpty())
        fail(path, problem);
    return path;
}

QString directoryOfThisUserIn(const QString &parent)
{
    return privateDirectory(parent + u"/kestrova-%1"_s.arg(geteuid()));
}

// Another user's is what "sudo -E" leaves in the variable.
bool isOwnDirectory(const QString &path)
{
    struct stat status = {};
    return QDir::isAbsolutePath(path) && stat(QFile::encodeName(path).constData(), &status) == 0 &&
           S_ISDIR(status.st_mode) && status.st_uid == geteuid();
}

} // namespace

QString LinuxStandardDirectories::temporaryDirectory()
{
    return directoryOfThisUserIn(temporaryParent());
}

QString LinuxStandardDirectories::runtimeDirectory()
{
    const QString configured = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (isOwnDirectory(configured))
        return privateDirectory(QDir::cleanPath(configured) + u"/kestrova"_s);
    return directoryOfThisUserIn(commonParent);
}

QString LinuxStandardDirectories::applicationSupportDirectory()
{
    return xdgDirectory("XDG_DATA_HOME", u".local/share"_s);
}

} // namespace kestrova
