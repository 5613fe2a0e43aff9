#pragma once

#include "Platform/Fake/FakeDesktop.h"
#include "Platform/Windowing.h"

namespace kestrova {

/// On the screens that Qt has, whose desktop is a fake one: what it was told is among the desktop's
/// actions, a window by its winId(). Main thread.
class FakeWindowing final : public Windowing
{
public:
    explicit FakeWindowing(std::shared_ptr<FakeDesktop> desktop) : m_desktop(std::move(desktop)) {}

    bool canPlaceWindows() const override { return m_canPlaceWindows; }
    QList<ScreenArea> screenAreas() override;
    void keepOffTaskBars(QWindow &window) override;
    void declareShadow(QWindow &window, int margin) override;
    /// Every window, unless the desktop refuses.
    bool isMinimised(QWindow &window) override;
    /// Notes "keyboard for 12", and "keyboard free" when it ends.
    std::unique_ptr<KeyboardHold> holdKeyboard(QWindow &window) override;
    std::optional<quint32> colorBehind(const QRect &icon) override;

    void setCanPlaceWindows(bool can) { m_canPlaceWindows = can; }
    /// Whatever is looked at on the screen; none at first.
    void setColor(const std::optional<quint32> &color) { m_color = color; }

private:
    const std::shared_ptr<FakeDesktop> m_desktop;
    bool m_canPlaceWindows = true;
    std::optional<quint32> m_color;
};

} // namespace kestrova
