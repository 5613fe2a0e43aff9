#pragma once

#include <QString>

#include <optional>

namespace kestrova {

/// What the installed program says about itself.
struct BundleInfo
{
    std::optional<QString>
        identifier;         ///< as applications are named, for example com.example.editor
    QString executablePath; ///< absolute; empty when unknown
    std::optional<QString> version;
    std::optional<QString> buildVersion;

    bool operator==(const BundleInfo &) const = default;
};

} // namespace kestrova
