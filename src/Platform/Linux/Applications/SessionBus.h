#pragma once

#include <QString>

#include <chrono>

namespace kestrova::SessionBus {

/// Calls org.freedesktop.Application.Activate of the application with this desktop-file id. True
/// when it answered within the limit that it did. Each call has a connection of its own: GIO's
/// shared one ends the program together with the bus. Any thread, no main loop needed.
bool activateApplication(const QString &identifier, std::chrono::milliseconds limit);

} // namespace kestrova::SessionBus
