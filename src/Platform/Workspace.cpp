#include "Platform/Workspace.h"

namespace kestrova {

std::optional<TargetApplication> RunningApplication::asTarget() const
{
    if (processIdentifier < 1)
        return std::nullopt;
    return TargetApplication{processIdentifier, bundleIdentifier, localizedName};
}

} // namespace kestrova
