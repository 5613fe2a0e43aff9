#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace kestrova {

/// An installed application, from its desktop entry file (freedesktop.org Desktop Entry
/// Specification).
struct DesktopEntry
{
    QString identifier;     ///< the desktop-file id without ".desktop"
    QString path;           ///< of the desktop entry file
    QString name;           ///< in the user's language
    QString startupWMClass; ///< empty when the entry gives none
    QString executable;     ///< the program of Exec as an absolute path without symbolic links;
                            ///< empty when it cannot be found
    QStringList arguments;  ///< of Exec, without its field codes
    bool isShown = true;    ///< false for NoDisplay
    bool runsInTerminal = false;
};

/// What a window tells about the application that it belongs to. Empty: not told.
struct WindowClues
{
    QString gtkApplicationId; ///< _GTK_APPLICATION_ID
    QString instanceName;     ///< first part of WM_CLASS
    QString className;        ///< second part of WM_CLASS
    QString executable;       ///< the program that the window's process runs
};

/// The entry of the application that a window belongs to; null when none matches. Tried in this
/// order: the id that GTK announces, StartupWMClass, an id equal to WM_CLASS, an id whose last
/// reverse-DNS part equals WM_CLASS, the program that Exec names. Names compare without regard to
/// case, and WM_CLASS by its instance before its class, because the instance is the one that web
/// applications set apart. Of several entries that match alike, one that menus show wins over a
/// hidden one, one named like the window's class over others, and then the earlier one.
const DesktopEntry *identifyApplication(const WindowClues &clues,
                                        const QList<DesktopEntry> &entries);

} // namespace kestrova
