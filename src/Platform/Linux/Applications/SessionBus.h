#pragma once

#include <QString>

#include <chrono>

namespace kestrova::SessionBus {

/// Calls org.freedesktop.Application.Activate of the application with this desktop-file id. True
/// when it answered within the limit that it did. Any thread; needs a QCoreApplication, and no
/// event loop.
bool activateApplication(const QString &identifier, std::chrono::milliseconds limit);

} // namespace kestrova::SessionBus
