#include "Platform/FileSystem.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace kestrova {

using namespace Qt::StringLiterals;

PlatformError fileError(const QString &path, int errorNumber)
{
    return PlatformError(path + u": "_s + qt_error_string(errorNumber));
}

void replaceFile(const QString &from, const QString &to)
{
    // QFile::rename refuses to replace.
    if (rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
        throw fileError(to, errno);
}

void syncDirectory(const QString &directory)
{
    const int descriptor =
        open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        throw fileError(directory, errno);
    const int error = fsync(descriptor) == 0 ? 0 : errno;
    close(descriptor);
    if (error != 0)
        throw fileError(directory, error);
}

} // namespace kestrova
