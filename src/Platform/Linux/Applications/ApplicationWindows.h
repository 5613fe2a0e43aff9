#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace kestrova {

/// A window that the user can switch to, as seen at one moment.
struct ApplicationWindow
{
    quint64 window = 0;                      ///< the number that the window system gave it
    std::optional<QString> bundleIdentifier; ///< none when no installed application matches
    QStringList names;                       ///< of its application
    QString title;
};

/// The windows of the desktop. Usable from any thread.
class ApplicationWindows
{
public:
    virtual ~ApplicationWindows() = default;

    /// The topmost last.
    virtual QList<ApplicationWindow> all() = 0;
    /// The window that has the keyboard.
    virtual std::optional<ApplicationWindow> active() = 0;
    /// Asks for the window to come to the front with the keyboard; it may take a while or not
    /// happen at all.
    virtual void activate(quint64 window) = 0;
};

} // namespace kestrova
