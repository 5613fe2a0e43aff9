#include "support/Samples.h"

#include <QFile>

#include <stdexcept>

namespace kestrova {

QByteArray sample(const char *name)
{
    QFile file(QStringLiteral(KESTROVA_SAMPLES "/") + QLatin1String(name));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(file.errorString().toStdString());
    return file.readAll();
}

} // namespace kestrova
