#include "Platform/Linux/FileUserDefaults.h"

#include "Platform/FileSystem.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <unistd.h>

#include <cerrno>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

constexpr QFile::Permissions privateFile = QFile::ReadOwner | QFile::WriteOwner;

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

    // QSaveFile writes beside the file, syncs, and renames. The explicit flush is what notices a
    // full disk: commit() does not look at how much of its buffer was written.
    QSaveFile file(path(key));
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(privateFile) ||
        file.write(bytes) != bytes.size() || !file.flush() || !file.commit())
        fail(file.fileName(), file.errorString());
    syncDirectory(m_directory);
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
