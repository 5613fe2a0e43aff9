#pragma once

#include <QObject>

namespace kestrova {

class AppController;
class TrayItem;
struct Platform;

/// The popover and the windows, by their identifiers "popover", "dashboard" and "settings", as the
/// part of the program knows them that is there without any. Main thread.
class Windows : public QObject
{
    Q_OBJECT

public:
    /// Shows the window and brings it to the front, or tells why it cannot; false when there is
    /// none of that name.
    virtual bool open(const QString &identifier) = 0;
    /// Closes the window if it is open; false when there is none of that name.
    virtual bool close(const QString &identifier) = 0;
    /// As for a click on the tray item: opens the popover, or closes it when it is open.
    virtual void togglePopover() = 0;
    /// Where there is no tray: shows the popover as an ordinary window and leaves the keyboard
    /// where it is.
    virtual void showPopoverQuietly() = 0;

Q_SIGNALS:
    /// An opened window has been drawn.
    void shown(const QString &identifier);
    /// A window that was wanted cannot be shown, for this reason.
    void failed(const QString &reason);
};

/// What the library of the windows has under makeWindowsSymbol. The caller owns the result; all
/// arguments outlive it.
using MakeWindows = Windows *(AppController &controller, Platform &platform, TrayItem &trayItem);
constexpr auto makeWindowsSymbol = "kestrovaMakeWindows";

} // namespace kestrova
