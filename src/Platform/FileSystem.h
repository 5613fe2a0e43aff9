#pragma once

#include "Models/ReadableError.h"

#include <memory>

class QFile;

/// What several file readers and writers need and QtCore does not offer. Usable from any thread.
namespace kestrova {

/// "PATH: reason", in the system's own words for a value of errno.
PlatformError fileError(const QString &path, int errorNumber);

/// "PATH: It is not a regular file."
PlatformError notARegularFile(const QString &path);

/// What stands for a link in the place of a file.
enum class Links {
    follow,
    refuse,
};

/// Opens a file for reading; null when nothing has that name. Throws PlatformError for a file that
/// cannot be opened and for all that is no regular file: a named pipe would be waited for until
/// somebody writes into it.
std::unique_ptr<QFile> openRegularFile(const QString &path, Links links = Links::follow);

/// All that a file has from where it stands. Throws PlatformError naming the path.
QByteArray readToEnd(QFile &file, const QString &path);

/// Makes those folders of the path that are missing, each the user's alone (0700) whatever the
/// process's umask is. Throws PlatformError.
void makePrivateDirectories(const QString &path);

/// Renames a file, replacing a file that has the new name: whatever interrupts it, the new name
/// stands for the whole old or the whole new file. Both on one file system. Throws PlatformError,
/// nothing changed.
void replaceFile(const QString &from, const QString &to);

/// The same, and makes the new name durable, as syncDirectory() does. The file's contents must be
/// on disk already, or a power failure could leave the new name without them. Throws PlatformError:
/// when it names the folder, the file is replaced and only not known to be on disk.
void replaceFileDurably(const QString &from, const QString &to);

/// Makes the names in a directory durable: a rename survives a power failure only once the folder
/// that holds the name is on disk too. Throws PlatformError.
void syncDirectory(const QString &directory);

} // namespace kestrova
