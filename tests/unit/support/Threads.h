#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QSet>

namespace kestrova {

/// The numbers of this process's threads.
inline QSet<QString> threads()
{
    const QStringList names =
        QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return {names.begin(), names.end()};
}

/// How often the thread has gone to sleep so far; -1 when it has ended.
inline qint64 sleeps(const QString &thread)
{
    QFile status(QStringLiteral("/proc/self/task/%1/status").arg(thread));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray text = status.readAll();
    const qsizetype begin = text.indexOf("\nvoluntary_ctxt_switches:");
    return begin < 0 ? -1
                     : text.mid(begin).split('\n').at(1).split(':').at(1).trimmed().toLongLong();
}

} // namespace kestrova
