#pragma once

namespace kestrova {

/// Standard input, output and error are open afterwards: what the program was started without is
/// /dev/null. Otherwise a file that is opened later becomes one of them, and gets what is printed.
/// Before anything is opened.
void openMissingStandardStreams();

/// A descriptor of our own for what a standard stream leads to: it waits for nobody where that can
/// be had without changing what other processes share with us, and children do not inherit it. The
/// stream itself leads to the other one from now on, or to /dev/null for -1. The caller closes the
/// descriptor. The stream itself where no file can be opened any more.
int takeStandardStream(int stream, int replacement);

} // namespace kestrova
