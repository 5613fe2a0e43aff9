#include "Platform/Posix/FileUserDefaults.h"

#include "Platform/FileSystem.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

/// Follows the document's name until the file takes it.
constexpr QLatin1String unfinishedSuffix(".unfinished-");
/// No write takes this long: an older unfinished file is left from a process that was killed.
constexpr qint64 longestWriteSeconds = 60;
/// As many as the kernel follows.
constexpr int mostLinks = 40;

bool haveSameBytes(const QString &first, const QString &second)
{
    try {
        const auto a = openRegularFile(first);
        const auto b = openRegularFile(second);
        return a && b && readToEnd(*a, first) == readToEnd(*b, second);
    } catch (const PlatformError &) {
        return false;
    }
}

/// The file itself and its last change. Not the time of the last change of its attributes: a backup
/// changes that.
DocumentVersion versionOf(const struct stat &status)
{
    return {QByteArray::number(quint64(status.st_dev)) + ':' +
            QByteArray::number(quint64(status.st_ino)) + ':' +
            QByteArray::number(qint64(status.st_size)) + ':' +
            QByteArray::number(qint64(status.st_mtim.tv_sec)) + '.' +
            QByteArray::number(qint64(status.st_mtim.tv_nsec))};
}

DocumentVersion versionOf(const QFile &file, const QString &path)
{
    struct stat status = {};
    if (fstat(file.handle(), &status) != 0)
        throw fileError(path, errno);
    return versionOf(status);
}

/// Where a linked document really is, or will be.
QString linkTarget(const QString &path)
{
    QFileInfo file(path);
    for (int links = 0; file.isSymLink() && links < mostLinks; ++links)
        file.setFile(file.symLinkTarget());
    return file.filePath();
}

/// None when nothing is there, or at the end of a link.
std::optional<struct stat> statusOf(const QString &path)
{
    struct stat status = {};
    if (stat(QFile::encodeName(path).constData(), &status) == 0)
        return status;
    if (errno == ENOENT || errno == ENOTDIR)
        return std::nullopt;
    throw fileError(path, errno);
}

void refuseIrregular(const QString &path)
{
    const auto status = statusOf(path);
    if (status && !S_ISREG(status->st_mode))
        throw notARegularFile(path);
}

void refuseWriteProtected(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    if (access(name.constData(), F_OK) == 0 && access(name.constData(), W_OK) != 0)
        throw fileError(path, errno);
}

void removeAbandoned(const QFileInfo &target)
{
    const auto oldest = QDateTime::currentDateTimeUtc().addSecs(-longestWriteSeconds);
    const auto unfinished =
        target.dir().entryInfoList({target.fileName() + unfinishedSuffix + u'*'}, QDir::Files);
    for (const QFileInfo &file : unfinished) {
        if (file.lastModified() < oldest)
            QFile::remove(file.filePath());
    }
}

} // namespace

QString FileUserDefaults::path(const QString &key) const
{
    return m_directory + u'/' + key + u".json"_s;
}

std::optional<VersionedData> FileUserDefaults::versionedData(const QString &key) const
{
    const auto file = openRegularFile(path(key));
    if (!file)
        return std::nullopt;
    // The version before the bytes: whoever writes while they are read makes another version.
    const DocumentVersion version = versionOf(*file, path(key));
    return VersionedData{readToEnd(*file, path(key)), version};
}

std::optional<DocumentVersion> FileUserDefaults::version(const QString &key) const
{
    const auto status = statusOf(path(key));
    return status ? std::optional(versionOf(*status)) : std::nullopt;
}

DocumentVersion FileUserDefaults::setData(const QString &key, const QByteArray &bytes)
{
    makePrivateDirectories(m_directory);

    const QString target = linkTarget(path(key));
    refuseIrregular(target);
    refuseWriteProtected(target);
    removeAbandoned(QFileInfo(target));

    // The explicit flush is what notices a full disk.
    QTemporaryFile file(target + unfinishedSuffix + u"XXXXXX"_s);
    errno = 0; // Qt knows of no reason for a write that fell short.
    if (!file.open() || !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) ||
        file.write(bytes) != bytes.size() || !file.flush())
        throw fileError(target, errno != 0 ? errno : EIO);
    if (fdatasync(file.handle()) != 0)
        throw fileError(target, errno);
    const DocumentVersion version = versionOf(file, target);
    replaceFileDurably(file.fileName(), target);
    file.setAutoRemove(false);
    return version;
}

void FileUserDefaults::setAside(const QString &key)
{
    const QString original = linkTarget(path(key));
    if (!statusOf(original))
        return;
    refuseIrregular(original);
    // A second name for the same bytes needs no space and cannot be interrupted half-way.
    const QByteArray source = QFile::encodeName(original);
    for (int number = 1;; ++number) {
        const QString aside = m_directory + u"/%1.kept-%2.json"_s.arg(key).arg(number);
        if (link(source.constData(), QFile::encodeName(aside).constData()) == 0)
            break;
        const int error = errno;
        if (error == EEXIST) {
            if (haveSameBytes(original, aside))
                return;
            continue;
        }
        // Some file systems know no second names.
        if (QFile::copy(original, aside))
            break;
        throw fileError(aside, error);
    }
    syncDirectory(m_directory);
}

} // namespace kestrova
