#pragma once

#include "Platform/DesktopAppearance.h"

#include <utility>

namespace kestrova {

class FakeDesktopAppearanceControl
{
public:
    virtual ~FakeDesktopAppearanceControl() = default;

    /// At first none of them is so. Each announces the change.
    virtual void setCompositing(bool isCompositing) = 0;
    virtual void setReducesMotion(bool reducesMotion) = 0;
    virtual void setHighContrast(bool isHighContrast) = 0;
    /// At first there is none.
    virtual void setTrayTextColor(std::optional<quint32> color) = 0;
};

class FakeDesktopAppearance final : public DesktopAppearance, public FakeDesktopAppearanceControl
{
public:
    bool isCompositing() const override { return m_isCompositing; }
    bool reducesMotion() const override { return m_reducesMotion; }
    bool isHighContrast() const override { return m_isHighContrast; }
    std::optional<quint32> trayTextColor() const override { return m_trayTextColor; }

    void setCompositing(bool isCompositing) override { set(m_isCompositing, isCompositing); }
    void setReducesMotion(bool reducesMotion) override { set(m_reducesMotion, reducesMotion); }
    void setHighContrast(bool isHighContrast) override { set(m_isHighContrast, isHighContrast); }
    void setTrayTextColor(std::optional<quint32> color) override { set(m_trayTextColor, color); }

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
