#pragma once

#include "Platform/StandardDirectories.h"

namespace kestrova {

/// Temporary files in ${TMPDIR:-/tmp}/kestrova-UID, which only the user may enter; application
/// data in $XDG_DATA_HOME, else ~/.local/share.
class LinuxStandardDirectories final : public StandardDirectories
{
public:
    QString temporaryDirectory() override;
    QString applicationSupportDirectory() override;
};

} // namespace kestrova
