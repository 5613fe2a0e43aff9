#pragma once

#include "Platform/DesktopAppearance.h"
#include "Platform/Keys/KeyEventMonitoring.h"
#include "Platform/Keys/KeyEventPosting.h"
#include "Platform/Linux/Applications/ApplicationWindows.h"
#include "Platform/Pasteboard.h"
#include "Platform/SystemAccess.h"
#include "Platform/Windowing.h"
#include "Platform/Workspace.h"

#include <QByteArray>

#include <memory>

namespace kestrova {

/// The desktop session that the program runs in: what differs between window systems. Made and
/// destroyed on the main thread; outlives all that it makes. Each service is made once.
class DesktopSession
{
public:
    DesktopSession() = default;
    virtual ~DesktopSession() = default;
    Q_DISABLE_COPY_MOVE(DesktopSession)

    /// Gets the process ready for a desktop application object: called before that is made, the
    /// result destroyed afterwards, before anything is launched. Throws PlatformError when windows
    /// cannot be shown.
    [[nodiscard]] virtual std::shared_ptr<void> prepareApplication() = 0;

    virtual std::unique_ptr<Workspace> makeWorkspace() = 0;
    virtual std::unique_ptr<DesktopAppearance> makeAppearance() = 0;
    virtual std::unique_ptr<Windowing> makeWindowing() = 0;
    virtual std::unique_ptr<Pasteboard> makePasteboard() = 0;
    virtual std::unique_ptr<KeyEventPosting> makeKeyEventPosting() = 0;
    virtual std::unique_ptr<KeyEventMonitoring> makeKeyEventMonitoring() = 0;

    /// The same object each time, owned by the session.
    virtual ApplicationWindows &applicationWindows() = 0;
    /// Whether keys may be observed and sent here.
    virtual Access keyboardAccess() = 0;
    /// What a program that is started gets in its environment, so that its window may come to the
    /// front (startupId()). Another one each time.
    virtual QByteArray newStartupId() = 0;
};

} // namespace kestrova
