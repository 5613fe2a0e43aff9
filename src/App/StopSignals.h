#pragma once

namespace kestrova {

/// Keeps the terminal's job control (Ctrl+Z, reading in the background) from stopping the program:
/// stopped, it would swallow its shortcuts and let those wait who paste what it has copied.
/// Children that are started can be stopped as ever.
void ignoreTerminalStops();

} // namespace kestrova
