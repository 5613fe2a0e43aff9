#pragma once

#include <QList>
#include <QRect>

#include <memory>
#include <optional>

class QWindow;

namespace kestrova {

/// One screen, in logical pixels: its origin among the screens, its size divided by its scale
/// factor.
struct ScreenArea
{
    QRect geometry;
    QRect available; ///< without the panels, as far as they are known

    bool operator==(const ScreenArea &) const = default;
};

/// What the program's own windows need of the window system beyond what Qt has for all of them.
/// Main thread. Nothing fails: what a window system does not have is not done.
class Windowing
{
public:
    /// Gives a window the whole keyboard while it has the focus. Ends with this object.
    class KeyboardHold
    {
    public:
        virtual ~KeyboardHold() = default;
        /// A key has come. The hold ends when none comes for long, because nothing else could have
        /// the keyboard meanwhile, not even a screen locker; a key begins it anew.
        virtual void renew() = 0;
    };

    virtual ~Windowing() = default;

    /// Whether a program decides where its windows are.
    virtual bool canPlaceWindows() const = 0;
    /// At least one while there are windows.
    virtual QList<ScreenArea> screenAreas() = 0;

    /// Leaves a window, which is about to be shown, out of task bars and window switchers.
    virtual void keepOffTaskBars(QWindow &window) = 0;
    /// Tells the window manager that a window, which is about to be shown or is shown, has a shadow
    /// of this many logical pixels on every side: what it keeps on the screen is the rest.
    virtual void declareShadow(QWindow &window, int margin) = 0;
    /// Not every desktop minimises a window when it is asked.
    virtual bool isMinimised(QWindow &window) = 0;

    /// Asks for every key, also those that the desktop or another program has taken for its
    /// shortcuts. It may be refused or take a while; the window gets its other keys meanwhile. The
    /// window may go first. Null where there is no way to ask.
    [[nodiscard]] virtual std::unique_ptr<KeyboardHold> holdKeyboard(QWindow &window) = 0;

    /// The colour on the screen in the corner of an icon's place, as 0xRRGGBB; none when it cannot
    /// be seen or the place is empty.
    virtual std::optional<quint32> colorBehind(const QRect &icon) = 0;
};

} // namespace kestrova
