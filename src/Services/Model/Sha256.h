#pragma once

#include <QString>

#include <stop_token>

namespace kestrova {

/// The SHA-256 digest (FIPS 180-4) of a whole file: 64 lower-case hexadecimal digits. Reads it
/// piece by piece, so memory does not grow with the file. Called on a worker. Throws PlatformError
/// when the file cannot be read, and Cancelled soon after a stop request.
QString sha256OfFile(const QString &path, const std::stop_token &stop);

} // namespace kestrova
