#pragma once

#include "Platform/Linux/Applications/DesktopEntries.h"
#include "Platform/Linux/Keys/PostedKeys.h"
#include "Platform/Linux/Session/DesktopSession.h"
#include "Platform/Linux/X11/Connection/X11Connection.h"
#include "Platform/Linux/X11/Windows/X11ApplicationWindows.h"
#include "Platform/Linux/X11/Windows/X11Windows.h"

namespace kestrova {

/// A session on an X server.
class X11Session final : public DesktopSession
{
public:
    /// The one at the display of this name, or at $DISPLAY when it is empty; null when nobody
    /// answers there.
    static std::shared_ptr<X11Session> open(const QByteArray &displayName = {});

    /// Has Qt speak X11 also where it could speak something else: keys are observed through X11.
    /// Applications that we start are free to choose again.
    std::shared_ptr<void> prepareApplication() override;

    std::unique_ptr<Workspace> makeWorkspace() override;
    std::unique_ptr<DesktopAppearance> makeAppearance() override;
    std::unique_ptr<Windowing> makeWindowing() override;
    std::unique_ptr<Pasteboard> makePasteboard() override;
    std::unique_ptr<KeyEventPosting> makeKeyEventPosting() override;
    std::unique_ptr<KeyEventMonitoring> makeKeyEventMonitoring() override;

    ApplicationWindows &applicationWindows() override { return m_applicationWindows; }
    /// Whether the server has the extensions XTEST and RECORD.
    Access keyboardAccess() override;
    QByteArray newStartupId() override;

private:
    explicit X11Session(const QByteArray &displayName)
        : m_displayName(displayName), m_connection(displayName)
    {
    }

    const QByteArray m_displayName;
    X11Connection m_connection;
    DesktopEntries m_entries;
    X11Windows m_windows{m_connection, m_entries};
    X11ApplicationWindows m_applicationWindows{m_windows};
    PostedKeys m_postedKeys;
};

} // namespace kestrova
