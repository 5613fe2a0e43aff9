#pragma once

#include <QString>

#include <optional>

namespace kestrova {

/// The application that a transcript is to be typed into.
struct TargetApplication
{
    qint32 processIdentifier = 0; ///< below 1: the process is not known
    std::optional<QString> bundleIdentifier;
    std::optional<QString> localizedName; ///< the name shown to the user

    bool operator==(const TargetApplication &) const = default;
};

} // namespace kestrova
