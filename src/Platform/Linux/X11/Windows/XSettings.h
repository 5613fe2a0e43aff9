#pragma once

#include <QByteArray>
#include <QHash>
#include <QVariant>

namespace kestrova {

/// The settings of a desktop, by name, as its settings manager publishes them in the property
/// _XSETTINGS_SETTINGS: each a qint32 or a QByteArray of UTF-8; colours are left out. Empty when
/// the property is damaged. The format is that of the XSETTINGS protocol 0.5.
QHash<QByteArray, QVariant> xSettings(const QByteArray &property);

} // namespace kestrova
