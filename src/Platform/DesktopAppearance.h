#pragma once

#include <QObject>

#include <optional>

namespace kestrova {

/// How the desktop wants windows to look and to move. Main thread; reading costs nothing. The size
/// of text is not among it: Qt enlarges whole windows by what the desktop sets.
class DesktopAppearance : public QObject
{
    Q_OBJECT

public:
    /// Whether windows may be see-through, as those with a shadow of their own or round corners
    /// are.
    virtual bool isCompositing() const = 0;
    /// Whether the user wants no animations.
    virtual bool reducesMotion() const = 0;
    /// Whether the user has chosen a theme of high contrast.
    virtual bool isHighContrast() const = 0;
    /// The colour of text on the panel that has the tray, as 0xRRGGBB; none where it does not tell.
    virtual std::optional<quint32> trayTextColor() const = 0;

Q_SIGNALS:
    /// One of the answers has become another, or another panel has the tray.
    void changed();
};

} // namespace kestrova
