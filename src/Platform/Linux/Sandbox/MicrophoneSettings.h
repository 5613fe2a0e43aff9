#pragma once

#include <QList>
#include <QUrl>

namespace kestrova {

/// Where the common desktops show their settings of microphones, as addresses of applications: the
/// pages of the running desktop first, a mixer that suits any desktop last. Most of them are not
/// installed. currentDesktop is the value of $XDG_CURRENT_DESKTOP, names separated by colons
/// (freedesktop.org Desktop Entry Specification).
QList<QUrl> microphoneSettingsPages(const QString &currentDesktop);

} // namespace kestrova
