#include "Platform/Fake/FakeWindowing.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace kestrova {

using namespace Qt::StringLiterals;

QList<ScreenArea> FakeWindowing::screenAreas()
{
    QList<ScreenArea> areas;
    for (const QScreen *screen : QGuiApplication::screens())
        areas.append({screen->geometry(), screen->availableGeometry()});
    return areas;
}

void FakeWindowing::keepOffTaskBars(QWindow &window)
{
    m_desktop->note(u"task bars without %1"_s.arg(window.winId()));
}

void FakeWindowing::declareShadow(QWindow &window, int margin)
{
    m_desktop->note(u"shadow of %1: %2"_s.arg(window.winId()).arg(margin));
}

bool FakeWindowing::isMinimised(QWindow &)
{
    const std::lock_guard lock(m_desktop->m_mutex);
    return m_desktop->m_minimises;
}

std::unique_ptr<Windowing::KeyboardHold> FakeWindowing::holdKeyboard(QWindow &window)
{
    struct Hold final : KeyboardHold
    {
        explicit Hold(std::shared_ptr<FakeDesktop> held) : desktop(std::move(held)) {}
        ~Hold() override { desktop->note(u"keyboard free"_s); }
        Q_DISABLE_COPY_MOVE(Hold)
        void renew() override {}

        const std::shared_ptr<FakeDesktop> desktop;
    };
    m_desktop->note(u"keyboard for %1"_s.arg(window.winId()));
    return std::make_unique<Hold>(m_desktop);
}

std::optional<quint32> FakeWindowing::colorBehind(const QRect &)
{
    return m_color;
}

} // namespace kestrova
