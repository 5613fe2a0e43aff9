#include "Services/Model/PartialFile.h"

#include "Platform/FileSystem.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1String nameSuffix(".part");
constexpr QFile::Permissions privateFile = QFile::ReadOwner | QFile::WriteOwner;
/// No download has stood still for so long.
constexpr qint64 oldestUnlockedSeconds = 24 * 60 * 60;

// Whoever downloads into it holds the lock; the system lets go of a dead process's locks. Some file
// systems, of other machines mostly, have none.
bool isAbandoned(const QFile &file)
{
    if (flock(file.handle(), LOCK_EX | LOCK_NB) == 0)
        return true;
    return errno != EWOULDBLOCK && QFileInfo(file).lastModified().secsTo(
                                       QDateTime::currentDateTime()) > oldestUnlockedSeconds;
}

} // namespace

PartialFile::PartialFile(const QString &destination) : m_destination(destination)
{
    removeAbandoned();
    while (!createAndLock()) {
    }
}

PartialFile::~PartialFile()
{
    if (!m_moved)
        m_file.remove();
}

QString PartialFile::namePrefix() const
{
    return u'.' + QFileInfo(m_destination).fileName() + u'-';
}

void PartialFile::removeAbandoned() const
{
    const QDir folder = QFileInfo(m_destination).dir();
    const QStringList names = folder.entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QString &name : names) {
        if (!name.startsWith(namePrefix()) || !name.endsWith(nameSuffix))
            continue;
        QFile file(folder.filePath(name));
        // Our lock is held until the name is gone, so that its creator can see what happened.
        if (file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly) && isAbandoned(file))
            QFile::remove(file.fileName());
    }
}

// False when the name was taken, or when another program took the file for an abandoned one
// between its creation and its locking.
bool PartialFile::createAndLock()
{
    const QString name =
        namePrefix() +
        u"%1"_s.arg(QRandomGenerator::system()->generate(), 8, 16, QLatin1Char('0')) + nameSuffix;
    m_file.setFileName(QFileInfo(m_destination).dir().filePath(name));
    if (!m_file.open(QIODevice::ReadWrite | QIODevice::NewOnly | QIODevice::Unbuffered,
                     privateFile)) {
        if (QFileInfo::exists(m_file.fileName()))
            return false;
        fail();
    }
    m_file.setPermissions(privateFile); // The umask has no say.
    flock(m_file.handle(), LOCK_EX);
    if (isOnDisk())
        return true;
    m_file.close();
    return false;
}

bool PartialFile::isOnDisk() const
{
    struct stat status = {};
    return fstat(m_file.handle(), &status) == 0 && status.st_nlink > 0;
}

void PartialFile::append(const char *bytes, qint64 count)
{
    // A disk that fills up takes a part first, and tells why only when it is given the rest.
    for (qint64 done = 0; done < count;) {
        const qint64 written = m_file.write(bytes + done, count - done);
        if (written <= 0) {
            const QString reason = m_file.errorString();
            restart();
            throw PlatformError(m_destination + u": "_s + reason);
        }
        done += written;
    }
    m_size += count;
}

void PartialFile::restart()
{
    if (!m_file.resize(0) || !m_file.seek(0))
        fail();
    m_size = 0;
}

void PartialFile::moveTo(const QString &path)
{
    if (fsync(m_file.handle()) != 0)
        throw fileError(m_destination, errno);
    replaceFile(m_file.fileName(), path);
    m_moved = true;
}

void PartialFile::fail() const
{
    throw PlatformError(m_destination + u": "_s + m_file.errorString());
}

} // namespace kestrova
