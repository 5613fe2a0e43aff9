#pragma once

#include <QByteArray>
#include <QString>

namespace kestrova {

/// A shell script for a terminal: removes its own file, shows the command line and runs it in the
/// user's shell, to which it then leaves the terminal. Where Homebrew is wanted and missing, it
/// says what to do.
QByteArray terminalScript(const QString &command);

} // namespace kestrova
