#include "Views/Scenes/Scenes.h"

#include <InterfaceStamp.h>

/// By which the program knows, before it loads this library, that the two belong together.
extern "C" Q_DECL_EXPORT const char kestrovaInterfaceStamp[];
const char kestrovaInterfaceStamp[] = KESTROVA_INTERFACE_STAMP;

/// The one entry of this library; see Views/Tray/Windows.h.
extern "C" Q_DECL_EXPORT kestrova::Windows *kestrovaMakeWindows(kestrova::AppController &controller,
                                                                kestrova::Platform &platform,
                                                                kestrova::TrayItem &trayItem)
{
    return new kestrova::Scenes(controller, platform, trayItem);
}
