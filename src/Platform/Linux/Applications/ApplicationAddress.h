#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace kestrova {

/// What Workspace::openAddress() takes to open an installed application: "application:" followed by
/// its identifier.
QUrl applicationAddress(const QString &identifier);

/// The identifier in such an address; none in any other address.
std::optional<QString> applicationAt(const QUrl &address);

} // namespace kestrova
