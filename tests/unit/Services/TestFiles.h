#pragma once

#include <QDateTime>
#include <QDir>
#include <QFile>

namespace kestrova {

/// The bytes of a file; empty when it cannot be read.
inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

/// Dates the file's last change back.
inline bool makeOld(const QString &path, int days = 1)
{
    QFile file(path);
    return file.open(QIODevice::ReadWrite) &&
           file.setFileTime(QDateTime::currentDateTime().addDays(-days),
                            QFile::FileModificationTime);
}

/// Everything in a folder, hidden files too, sorted.
inline QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                  QDir::NoDotAndDotDot);
}

/// Bytes without a pattern that a shift by a block would hide.
inline QByteArray patternedBytes(qsizetype size, quint32 seed = 1)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (char &byte : bytes) {
        seed = seed * 1664525 + 1013904223;
        byte = static_cast<char>(seed >> 24);
    }
    return bytes;
}

} // namespace kestrova
