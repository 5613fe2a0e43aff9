#pragma once

#include <QString>

#include <optional>

namespace kestrova {

/// What the kernel says about a process, as read at one moment from /proc/PID/stat (proc(5)).
struct ProcessStatus
{
    QString name;          ///< the command name, which the kernel cuts off after 15 bytes
    qint32 parent = 0;     ///< 0: none that can be seen
    quint64 startTime = 0; ///< clock ticks after the boot of the machine
};

/// None when there is no such process, or when it has ended and only waits to be reaped. Any
/// thread.
std::optional<ProcessStatus> processStatus(qint32 processIdentifier);

/// Absolute path of the program that the process runs, even when a newer one has replaced the file
/// since; empty when it cannot be read. Any thread.
QString executablePath(qint32 processIdentifier);

} // namespace kestrova
