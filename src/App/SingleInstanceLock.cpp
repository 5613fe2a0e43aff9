#include "App/SingleInstanceLock.h"

#include "Models/ReadableError.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t lockFileMode = S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH;

// The umask may take from the mode what the user's next start needs.
void keepForTheUser(int lockFile)
{
    struct stat status = {};
    if (fstat(lockFile, &status) == 0)
        fchmod(lockFile, (status.st_mode & ALLPERMS) | S_IRUSR | S_IWUSR);
}

} // namespace

SingleInstanceLock::~SingleInstanceLock()
{
    if (m_fileDescriptor < 0)
        return;
    flock(m_fileDescriptor, LOCK_UN);
    close(m_fileDescriptor);
}

int SingleInstanceLock::openLockFile()
{
    m_problem.clear();
    try {
        const QString path = m_directories.runtimeDirectory() + u"/kestrova-menubar.lock"_s;
        return open(QFile::encodeName(path).constData(),
                    O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, lockFileMode);
    } catch (const PlatformError &error) {
        m_problem = error.errorDescription();
        return -1;
    }
}

bool SingleInstanceLock::acquire()
{
    if (m_fileDescriptor >= 0)
        return true;
    m_fileDescriptor = openLockFile();
    if (m_fileDescriptor < 0)
        return false;
    if (flock(m_fileDescriptor, LOCK_EX | LOCK_NB) == 0) {
        keepForTheUser(m_fileDescriptor);
        return true;
    }
    close(m_fileDescriptor);
    m_fileDescriptor = -1;
    return false;
}

} // namespace kestrova
