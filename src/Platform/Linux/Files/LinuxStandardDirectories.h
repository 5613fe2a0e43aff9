#pragma once

#include "Platform/StandardDirectories.h"

namespace kestrova {

/// Temporary files in ${TMPDIR:-/tmp}/kestrova-UID, which only the user may enter; the lock in
/// $XDG_RUNTIME_DIR/kestrova, or in /tmp/kestrova-UID when that variable does not name a folder of
/// the user's (XDG Base Directory Specification); application data in $XDG_DATA_HOME, else
/// ~/.local/share.
class LinuxStandardDirectories final : public StandardDirectories
{
public:
    QString temporaryDirectory() override;
    QString runtimeDirectory() override;
    QString applicationSupportDirectory() override;
};

} // namespace kestrova
