#pragma once

#include <QString>

#include <optional>

namespace kestrova {

/// The second choice for activating and pasting, by the desktop's scripting means. Called on a
/// worker; blocks until the script has ended.
class ScriptRunning
{
public:
    virtual ~ScriptRunning() = default;

    /// The runner's name as the user knows it, for messages.
    virtual QString runnerName() const = 0;

    /// Both return whether the script ran and succeeded; a failure to start it counts as false.
    virtual bool activateApplication(const QString &bundleIdentifier) = 0;
    virtual bool activateApplicationNamed(const QString &name) = 0;

    /// Activates the application, if one is given, and sends the paste keystroke. False when the
    /// script failed; throws PlatformError when it could not be started.
    virtual bool paste(const std::optional<QString> &bundleIdentifier) = 0;
};

} // namespace kestrova
