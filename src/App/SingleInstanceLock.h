#pragma once

#include "Platform/StandardDirectories.h"

namespace kestrova {

/// Keeps a second copy of the program of the same user from running beside the first. The lock is
/// the process's and ends with it, however it ends; children do not inherit it. The lock file stays
/// in the runtime directory and means nothing by itself. One thread.
class SingleInstanceLock
{
public:
    /// The directories outlive this.
    explicit SingleInstanceLock(StandardDirectories &directories) : m_directories(directories) {}
    ~SingleInstanceLock();
    SingleInstanceLock(const SingleInstanceLock &) = delete;
    SingleInstanceLock &operator=(const SingleInstanceLock &) = delete;

    /// Whether this process holds the lock now. False also when the lock file cannot be opened.
    bool acquire();
    /// Why the last acquire() found no folder for the lock file; empty when it did.
    const QString &problem() const { return m_problem; }

private:
    int openLockFile();

    StandardDirectories &m_directories;
    QString m_problem;
    int m_fileDescriptor = -1; // -1 while no lock is held
};

} // namespace kestrova
