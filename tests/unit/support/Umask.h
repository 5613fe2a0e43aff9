#pragma once

#include <QFile>

#include <sys/stat.h>

namespace kestrova {

/// The process's umask while it lives.
class Umask
{
public:
    explicit Umask(mode_t mask) : m_before(umask(mask)) {}
    ~Umask() { umask(m_before); }
    Umask(const Umask &) = delete;
    Umask &operator=(const Umask &) = delete;

private:
    const mode_t m_before;
};

/// The permissions of a file or folder; none when it is not there.
inline mode_t modeOf(const QString &path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & ALLPERMS : 0;
}

} // namespace kestrova
