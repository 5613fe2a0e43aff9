#include "Platform/Linux/FileUserDefaults.h"

#include "Platform/FileSystem.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryFile>

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

[[noreturn]] void fail(const QString &path, const QString &reason)
{
    throw PlatformError(path + u": "_s + reason);
}

bool haveSameBytes(const QString &first, const QString &second)
{
    QFile a(first);
    QFile b(second);
    return a.open(QIODevice::ReadOnly) && b.open(QIODevice::ReadOnly) && a.readAll() == b.readAll();
}

/// Where a linked document really is, or will be.
QString linkTarget(const QString &path)
{
    QFileInfo file(path);
    for (int links = 0; file.isSymLink() && links < mostLinks; ++links)
        file.setFile(file.symLinkTarget());
    return file.filePath();
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

QString FileUserDefaults::standardDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/kestrova"_s;
}

QString FileUserDefaults::path(const QString &key) const
{
    return m_directory + u'/' + key + u".json"_s;
}

std::optional<QByteArray> FileUserDefaults::data(const QString &key) const
{
    QFile file(path(key));
    if (!file.exists())
        return std::nullopt;
    if (!file.open(QIODevice::ReadOnly))
        fail(file.fileName(), file.errorString());
    const QByteArray bytes = file.readAll();
    if (file.error() != QFile::NoError)
        fail(file.fileName(), file.errorString());
    return bytes;
}

void FileUserDefaults::setData(const QString &key, const QByteArray &bytes)
{
    if (!QDir().mkpath(m_directory))
        fail(m_directory, u"The folder cannot be created."_s);

    const QString target = linkTarget(path(key));
    refuseWriteProtected(target);
    removeAbandoned(QFileInfo(target));

    // Only the user may read it. The explicit flush is what notices a full disk.
    QTemporaryFile file(target + unfinishedSuffix + u"XXXXXX"_s);
    if (!file.open() || file.write(bytes) != bytes.size() || !file.flush())
        fail(target, file.errorString());
    if (fdatasync(file.handle()) != 0)
        throw fileError(target, errno);
    replaceFile(file.fileName(), target);
    file.setAutoRemove(false);
    syncDirectory(QFileInfo(target).path());
}

void FileUserDefaults::setAside(const QString &key)
{
    const QString original = path(key);
    if (!QFileInfo::exists(original))
        return;
    // A second name for the same bytes needs no space and cannot be interrupted half-way.
    const QByteArray source = QFile::encodeName(QFileInfo(original).canonicalFilePath());
    for (int number = 1;; ++number) {
        const QString aside = m_directory + u"/%1.damaged-%2.json"_s.arg(key).arg(number);
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
