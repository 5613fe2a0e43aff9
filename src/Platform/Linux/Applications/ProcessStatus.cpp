#include "Platform/Linux/Applications/ProcessStatus.h"

#include <QFile>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

// Places among the fields that follow the command name; proc(5) counts them from 3.
constexpr qsizetype stateField = 0;
constexpr qsizetype parentField = 1;
constexpr qsizetype startTimeField = 19;

QString procPath(qint32 processIdentifier, QLatin1StringView file)
{
    return u"/proc/%1/%2"_s.arg(processIdentifier).arg(file);
}

} // namespace

std::optional<ProcessStatus> processStatus(qint32 processIdentifier)
{
    if (processIdentifier < 1)
        return std::nullopt;
    QFile file(procPath(processIdentifier, "stat"_L1));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray line = file.readAll();

    // The name stands in parentheses and may contain anything, parentheses too.
    const qsizetype nameStart = line.indexOf('(') + 1;
    const qsizetype nameEnd = line.lastIndexOf(')');
    if (nameStart == 0 || nameEnd < nameStart)
        return std::nullopt;
    const QList<QByteArray> fields = line.mid(nameEnd + 2).split(' ');
    const QByteArray state = fields.value(stateField);
    if (state == "Z" || state == "X")
        return std::nullopt;
    return ProcessStatus{QString::fromUtf8(line.sliced(nameStart, nameEnd - nameStart)),
                         fields.value(parentField).toInt(),
                         fields.value(startTimeField).toULongLong()};
}

QString executablePath(qint32 processIdentifier)
{
    // The kernel marks a program whose file was removed or replaced, as by an update.
    QString path = QFile::symLinkTarget(procPath(processIdentifier, "exe"_L1));
    constexpr QLatin1StringView removedMark(" (deleted)");
    if (path.endsWith(removedMark))
        path.chop(removedMark.size());
    return path;
}

} // namespace kestrova
