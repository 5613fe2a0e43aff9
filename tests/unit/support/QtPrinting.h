#pragma once

#include <QByteArray>
#include <QDebug>
#include <QString>

#include <ostream>

// GoogleTest finds these by argument-dependent look-up: failures then show text, not bytes.
inline void PrintTo(const QString &text, std::ostream *stream)
{
    *stream << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray &bytes, std::ostream *stream)
{
    *stream << '"' << bytes.toStdString() << '"';
}

inline void PrintTo(const QStringList &list, std::ostream *stream)
{
    *stream << QDebug::toString(list).toStdString();
}
