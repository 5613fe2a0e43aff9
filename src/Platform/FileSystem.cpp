#include "Platform/FileSystem.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace kestrova {

using namespace Qt::StringLiterals;

PlatformError fileError(const QString &path, int errorNumber)
{
    return PlatformError(path + u": "_s + qt_error_string(errorNumber));
}

PlatformError notARegularFile(const QString &path)
{
    return PlatformError(path + u": It is not a regular file."_s);
}

std::unique_ptr<QFile> openRegularFile(const QString &path, Links links)
{
    const int noLink = links == Links::refuse ? O_NOFOLLOW : 0;
    const int descriptor = open(QFile::encodeName(path).constData(),
                                O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | noLink);
    if (descriptor < 0) {
        if (errno == ENOENT || errno == ENOTDIR)
            return nullptr;
        throw errno == ELOOP ? notARegularFile(path) : fileError(path, errno);
    }
    auto file = std::make_unique<QFile>();
    struct stat status = {};
    const bool isRegular = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    if (!isRegular || !file->open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered,
                                  QFileDevice::AutoCloseHandle)) {
        close(descriptor);
        throw notARegularFile(path);
    }
    return file;
}

QByteArray readToEnd(QFile &file, const QString &path)
{
    QByteArray bytes = file.readAll();
    if (file.error() != QFile::NoError)
        throw PlatformError(path + u": "_s + file.errorString());
    return bytes;
}

void makePrivateDirectories(const QString &path)
{
    if (QFileInfo(path).isDir())
        return;
    makePrivateDirectories(QFileInfo(path).path());
    const QByteArray name = QFile::encodeName(path);
    if (mkdir(name.constData(), S_IRWXU) == 0) {
        if (chmod(name.constData(), S_IRWXU) != 0)
            throw fileError(path, errno);
    } else if (errno != EEXIST || !QFileInfo(path).isDir()) {
        throw fileError(path, errno == EEXIST ? ENOTDIR : errno);
    }
}

void replaceFile(const QString &from, const QString &to)
{
    // QFile::rename refuses to replace.
    if (rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
        throw fileError(to, errno);
}

void replaceFileDurably(const QString &from, const QString &to)
{
    replaceFile(from, to);
    syncDirectory(QFileInfo(to).path());
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
