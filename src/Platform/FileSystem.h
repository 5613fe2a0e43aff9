#pragma once

#include "Models/ReadableError.h"

/// What several file writers need and QtCore does not offer. Usable from any thread.
namespace kestrova {

/// "PATH: reason", in the system's own words for a value of errno.
PlatformError fileError(const QString &path, int errorNumber);

/// Renames a file, replacing a file that has the new name: whatever interrupts it, the new name
/// stands for the whole old or the whole new file. Both on one file system. Throws PlatformError,
/// nothing changed.
void replaceFile(const QString &from, const QString &to);

/// Makes the names in a directory durable: a rename survives a power failure only once the folder
/// that holds the name is on disk too. Throws PlatformError.
void syncDirectory(const QString &directory);

} // namespace kestrova
