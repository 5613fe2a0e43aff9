#pragma once

#include <QFile>

#include <stdexcept>

namespace kestrova {

/// The recorded document of this name.
inline QByteArray sample(const char *name)
{
    QFile file(QStringLiteral(KESTROVA_SAMPLES "/") + QLatin1String(name));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(file.errorString().toStdString());
    return file.readAll();
}

} // namespace kestrova
