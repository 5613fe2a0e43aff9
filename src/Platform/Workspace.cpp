#include "Platform/Workspace.h"

namespace kestrova {

std::optional<TargetApplication> RunningApplication::asTarget() const
{
    if (processIdentifier < 1)
        return std::nullopt;
    return TargetApplication{sharesProcess ? 0 : processIdentifier, bundleIdentifier,
                             localizedName};
}

} // namespace kestrova
