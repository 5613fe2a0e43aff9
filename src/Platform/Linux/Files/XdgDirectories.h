#pragma once

#include <QString>

namespace kestrova {

/// A base folder of the XDG Base Directory Specification: what the variable says, if it is an
/// absolute path, else the folder in the user's home.
QString xdgDirectory(const char *variable, const QString &inHome);

/// Where the program's documents are: $XDG_CONFIG_HOME/kestrova, else ~/.config/kestrova.
QString documentDirectory();

} // namespace kestrova
