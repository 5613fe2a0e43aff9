#include "Views/Tray/PopoverAtStart.h"

#include "Views/Tray/TrayItem.h"

#include <QTimer>

namespace kestrova {

using namespace Qt::StringLiterals;

void openPopoverAtStart(const AppState &state, Windows &windows)
{
    QTimer::singleShot(trayDelay, &windows, [&state, &windows] {
        if (TrayItem::isShown() && !state.isSetUp())
            windows.open(u"popover"_s);
    });
    QTimer::singleShot(trayLimit, &windows, [&windows] {
        if (!TrayItem::isShown())
            windows.showPopoverQuietly();
    });
}

} // namespace kestrova
