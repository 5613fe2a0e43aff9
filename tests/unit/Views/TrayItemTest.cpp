#include "Views/Tray/TrayItem.h"

#include "Platform/Fake/FakeDesktopAppearance.h"
#include "Platform/Linux/X11/Windows/X11Windowing.h"
#include "Views/Panel.h"
#include "support/ApplicationObject.h"

#include <QApplication>
#include <QPixmap>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

class TrayItemTest : public testing::Test
{
protected:
    /// In the middle of the icon's second line, the tallest.
    QColor lineColor()
    {
        const QRectF icon = trayItem.geometry();
        const int x = int(icon.left() + icon.width() * (2 + 6.5) / 22);
        return QGuiApplication::primaryScreen()
            ->grabWindow(0, x, int(icon.center().y()), 1, 1)
            .toImage()
            .pixelColor(0, 0);
    }

    ApplicationObject<QApplication> application;
    Panel panel;
    FakeDesktopAppearance desktop;
    X11Connection connection;
    DesktopEntries entries;
    X11Windows windows{connection, entries};
    X11Windowing windowing{windows};
    TrayItem trayItem{desktop, windowing};
};

TEST_F(TrayItemTest, OnADarkPanelItIsLight)
{
    ASSERT_TRUE(panel.start(trayItem, "#202428"));
    EXPECT_TRUE(waitUntil([this] { return lineColor().lightnessF() > 0.8F; }));
}

TEST_F(TrayItemTest, OnALightPanelItIsDark)
{
    ASSERT_TRUE(panel.start(trayItem, "#f0f0f0"));
    EXPECT_TRUE(waitUntil([this] { return lineColor().lightnessF() < 0.2F; }));
}

TEST_F(TrayItemTest, ItTakesTheColourOfThePanelsText)
{
    ASSERT_TRUE(panel.start(trayItem));
    desktop.setTrayTextColor(0x00ff00);
    EXPECT_TRUE(waitUntil([this] {
        const QColor line = lineColor();
        return line.green() > 200 && line.red() < 60 && line.blue() < 60;
    }));
}

TEST_F(TrayItemTest, WithoutAPanelItIsNowhere)
{
    EXPECT_FALSE(TrayItem::isShown());
    EXPECT_TRUE(trayItem.geometry().isEmpty());
}

} // namespace
} // namespace kestrova
