#pragma once

#include <QProcessEnvironment>
#include <QString>

#include <optional>

namespace kestrova {

/// The package that confines the program.
struct Sandbox
{
    enum class Kind { flatpak, snap };

    Kind kind = Kind::flatpak;
    QString name;             ///< the Flatpak's application id or the snap's instance name
    bool reachesSound = true; ///< false when the Flatpak was started without the sound server

    bool operator==(const Sandbox &) const = default;
};

/// What tells that a process is confined.
struct SandboxSigns
{
    QString flatpakInfoPath; ///< of the file that Flatpak puts into its sandboxes
    QProcessEnvironment environment;
    QString executablePath; ///< absolute

    /// Those of this process. Needs a QCoreApplication.
    static SandboxSigns ofThisProcess();
};

/// None outside a sandbox. A program that was merely started by a snap is outside.
std::optional<Sandbox> sandboxOf(const SandboxSigns &signs);

} // namespace kestrova
