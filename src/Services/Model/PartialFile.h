#pragma once

#include <QFile>

namespace kestrova {

/// A temporary file in the folder of the file that it is to become, so that moving it there is a
/// rename, and the user's alone (mode 0600). It is named ".NAME-XXXXXXXX.part" and locked (flock)
/// for as long as this object lives, which tells it from the file of a program that was killed;
/// where the file system has no locks, that file's age does. Deleted unless moved. One thread at a
/// time.
class PartialFile
{
public:
    /// Creates it, and deletes abandoned ones of the same destination. Throws PlatformError.
    explicit PartialFile(const QString &destination);
    ~PartialFile();

    const QString &destination() const { return m_destination; }
    /// Where it is until it is moved.
    QString path() const { return m_file.fileName(); }
    qint64 size() const { return m_size; }
    /// False once something else has removed it; its contents are then of no use.
    bool isOnDisk() const;

    /// Throws PlatformError naming the destination, the file emptied to give its space back.
    void append(const char *bytes, qint64 count);
    /// Empties it. Throws PlatformError.
    void restart();
    /// Makes the contents durable, then renames the file, replacing one of that name. At most
    /// once. Throws PlatformError.
    void moveTo(const QString &path);

private:
    void removeAbandoned() const;
    QString namePrefix() const;
    bool createAndLock();
    [[noreturn]] void fail() const;

    const QString m_destination;
    QFile m_file;
    qint64 m_size = 0;
    bool m_moved = false;
};

} // namespace kestrova
