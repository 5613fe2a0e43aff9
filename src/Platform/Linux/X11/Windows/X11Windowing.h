#pragma once

#include "Platform/Linux/X11/Windows/X11Windows.h"
#include "Platform/Windowing.h"

namespace kestrova {

/// The program's own windows on an X11 desktop, which Qt shows there.
class X11Windowing final : public Windowing
{
public:
    /// The windows outlive this.
    explicit X11Windowing(X11Windows &windows) : m_windows(windows) {}

    bool canPlaceWindows() const override { return true; }
    QList<ScreenArea> screenAreas() override;
    void keepOffTaskBars(QWindow &window) override;
    void declareShadow(QWindow &window, int margin) override;
    bool isMinimised(QWindow &window) override;
    /// The X server ends it with the process at the latest.
    std::unique_ptr<KeyboardHold> holdKeyboard(QWindow &window) override;
    std::optional<quint32> colorBehind(const QRect &icon) override;

private:
    X11Windows &m_windows;
};

/// What is left of a screen beside a panel, if it is one of this screen.
ScreenArea withoutPanel(const ScreenArea &screen, const QRect &panel);

} // namespace kestrova
