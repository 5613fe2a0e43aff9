#pragma once

#include "Platform/DesktopAppearance.h"

#include <utility>

namespace kestrova {

class FakeDesktopAppearance final : public DesktopAppearance
{
public:
    bool isCompositing() const override { return m_isCompositing; }
    bool reducesMotion() const override { return m_reducesMotion; }
    bool isHighContrast() const override { return m_isHighContrast; }
    std::optional<quint32> trayTextColor() const override { return m_trayTextColor; }

    /// At first none of them is so. Each announces the change.
    void setCompositing(bool isCompositing) { set(m_isCompositing, isCompositing); }
    void setReducesMotion(bool reducesMotion) { set(m_reducesMotion, reducesMotion); }
    void setHighContrast(bool isHighContrast) { set(m_isHighContrast, isHighContrast); }
    /// At first there is none.
    void setTrayTextColor(std::optional<quint32> color) { set(m_trayTextColor, color); }

private:
    template <typename T>
    void set(T &answer, T value)
    {
        if (std::exchange(answer, value) != value)
            Q_EMIT changed();
    }

    bool m_isCompositing = false;
    bool m_reducesMotion = false;
    bool m_isHighContrast = false;
    std::optional<quint32> m_trayTextColor;
};

} // namespace kestrova
