#include "Views/Scenes/Scenes.h"

/// The one entry of this library; see Views/Tray/Windows.h.
extern "C" Q_DECL_EXPORT kestrova::Windows *kestrovaMakeWindows(kestrova::AppController &controller,
                                                                kestrova::Platform &platform,
                                                                kestrova::TrayItem &trayItem)
{
    return new kestrova::Scenes(controller, platform, trayItem);
}
