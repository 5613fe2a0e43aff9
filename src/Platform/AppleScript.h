#pragma once

#include <QString>

#include <optional>

/// The script texts of a back end that has /usr/bin/osascript.
namespace kestrova::AppleScript {

/// Text as it stands inside a double-quoted literal: backslashes and double quotes escaped.
QString escaped(const QString &text);

/// Brings the application with this identifier to the front.
QString activation(const QString &bundleIdentifier);
/// Brings the application of this name to the front; the name is trimmed.
QString activationByName(const QString &name);

/// Command+V, after activating the application when a non-empty identifier is given. The
/// identifier is inserted as it is, unescaped.
QString paste(const std::optional<QString> &bundleIdentifier);

} // namespace kestrova::AppleScript
