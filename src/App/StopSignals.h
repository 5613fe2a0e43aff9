#pragma once

namespace kestrova {

/// Keeps the terminal's job control (Ctrl+Z, reading in the background) from stopping the program:
/// it may hold the keyboard for a moment at each shortcut, and a stopped program would not let go
/// of it. Children that are started can be stopped as ever.
void refuseToBeStopped();

} // namespace kestrova
