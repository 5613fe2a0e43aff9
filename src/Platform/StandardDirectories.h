#pragma once

#include <QString>

namespace kestrova {

/// Where the program keeps its files. Usable from any thread. Paths have no trailing separator.
class StandardDirectories
{
public:
    virtual ~StandardDirectories() = default;

    /// The user's private folder for temporary files. It exists when this returns, made anew if
    /// something removed it. Throws PlatformError when it belongs to somebody else or cannot be
    /// made private.
    virtual QString temporaryDirectory() = 0;
    /// The user's private folder for what tells the running copy of the program from others. It
    /// exists when this returns, and is the same however the program was started in the session.
    /// Throws PlatformError as temporaryDirectory() does.
    virtual QString runtimeDirectory() = 0;
    /// The user's folder for application data; not necessarily existing.
    virtual QString applicationSupportDirectory() = 0;
};

} // namespace kestrova
