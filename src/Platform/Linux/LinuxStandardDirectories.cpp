#include "Platform/Linux/LinuxStandardDirectories.h"

#include "Models/ReadableError.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t privateDirectory = S_IRWXU;

[[noreturn]] void fail(const QString &path, const QString &reason)
{
    throw PlatformError(
        u"The folder for temporary files, %1, cannot be used: %2"_s.arg(path, reason));
}

// Not QDir::tempPath(), which answers with the working directory when TMPDIR does not exist.
QString parentDirectory()
{
    const QString configured = qEnvironmentVariable("TMPDIR");
    return QDir::isAbsolutePath(configured) ? QDir::cleanPath(configured) : u"/tmp"_s;
}

// Works on the open folder, so that nothing can be put in its place between check and use.
QString problemWith(int directory)
{
    struct stat status = {};
    if (fstat(directory, &status) != 0)
        return qt_error_string(errno);
    if (status.st_uid != geteuid())
        return u"it belongs to another user."_s;
    if ((status.st_mode & ALLPERMS) != privateDirectory && fchmod(directory, privateDirectory) != 0)
        return qt_error_string(errno);
    return {};
}

} // namespace

QString LinuxStandardDirectories::temporaryDirectory()
{
    const QString path = parentDirectory() + u"/kestrova-%1"_s.arg(geteuid());
    const QByteArray name = QFile::encodeName(path);
    if (mkdir(name.constData(), privateDirectory) != 0 && errno != EEXIST)
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

QString LinuxStandardDirectories::applicationSupportDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

} // namespace kestrova
