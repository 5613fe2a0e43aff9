#include "Platform/Linux/X11/Windows/X11DesktopAppearance.h"

#include "support/ApplicationObject.h"
#include "support/PrivateXServer.h"
#include "support/SelectionManager.h"
#include "support/WaitUntil.h"
#include "support/XSettingsProperty.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <optional>

namespace kestrova {
namespace {

constexpr auto compositor = "_NET_WM_CM_S0";
constexpr auto settingsManager = "_XSETTINGS_S0";
constexpr auto settings = "_XSETTINGS_SETTINGS";
constexpr auto tray = "_NET_SYSTEM_TRAY_S0";
constexpr auto trayColors = "_NET_SYSTEM_TRAY_COLORS";

class X11DesktopAppearanceTest : public testing::Test
{
protected:
    void observe(X11DesktopAppearance &appearance)
    {
        QObject::connect(&appearance, &DesktopAppearance::changed, qApp, [this] { ++changes; });
    }

    ApplicationObject<QCoreApplication> application;
    int changes = 0;
};

QByteArray withAnimations(int value)
{
    return XSettingsProperty().integer("Gtk/EnableAnimations", value).bytes();
}

QByteArray withTheme(const QByteArray &name)
{
    return XSettingsProperty().text("Net/ThemeName", name).bytes();
}

TEST_F(X11DesktopAppearanceTest, ADesktopWithoutManagersWantsNothing)
{
    const X11DesktopAppearance appearance;
    EXPECT_FALSE(appearance.isCompositing());
    EXPECT_FALSE(appearance.reducesMotion());
    EXPECT_FALSE(appearance.isHighContrast());
    EXPECT_FALSE(appearance.trayTextColor());
}

TEST_F(X11DesktopAppearanceTest, ManagersThatRunAlreadyAreSeenAtOnce)
{
    const SelectionManager running(compositor);
    SelectionManager manager(settingsManager);
    manager.publish(settings, XSettingsProperty()
                                  .integer("Gtk/EnableAnimations", 0)
                                  .text("Net/ThemeName", "HighContrastInverse")
                                  .bytes());
    const X11DesktopAppearance appearance;
    EXPECT_TRUE(appearance.isCompositing());
    EXPECT_TRUE(appearance.reducesMotion());
    EXPECT_TRUE(appearance.isHighContrast());
}

TEST_F(X11DesktopAppearanceTest, ACompositingManagerMayComeAndGo)
{
    X11DesktopAppearance appearance;
    observe(appearance);
    std::optional<SelectionManager> running(std::in_place, compositor);
    EXPECT_TRUE(waitUntil([&] { return appearance.isCompositing(); }));
    running.reset();
    EXPECT_TRUE(waitUntil([&] { return !appearance.isCompositing(); }));
    EXPECT_EQ(changes, 2);
}

TEST_F(X11DesktopAppearanceTest, SettingsAreFollowed)
{
    SelectionManager manager(settingsManager);
    manager.publish(settings, withAnimations(1));
    X11DesktopAppearance appearance;
    observe(appearance);
    EXPECT_FALSE(appearance.reducesMotion());
    manager.publish(settings, withAnimations(0));
    EXPECT_TRUE(waitUntil([&] { return appearance.reducesMotion(); }));
    manager.publish(settings, withTheme("ContrastHigh"));
    EXPECT_TRUE(waitUntil([&] { return appearance.isHighContrast(); }));
    EXPECT_FALSE(appearance.reducesMotion());
    EXPECT_EQ(changes, 2);
}

TEST_F(X11DesktopAppearanceTest, AnotherSettingsManagerTakesOver)
{
    X11DesktopAppearance appearance;
    std::optional<SelectionManager> first(std::in_place, settingsManager);
    first->publish(settings, withTheme("HighContrast"));
    EXPECT_TRUE(waitUntil([&] { return appearance.isHighContrast(); }));
    first.reset();
    EXPECT_TRUE(waitUntil([&] { return !appearance.isHighContrast(); }));
    SelectionManager second(settingsManager);
    second.publish(settings, withTheme("HighContrast"));
    EXPECT_TRUE(waitUntil([&] { return appearance.isHighContrast(); }));
}

TEST_F(X11DesktopAppearanceTest, ATraysTextColourIsFollowed)
{
    X11DesktopAppearance appearance;
    observe(appearance);
    SelectionManager manager(tray);
    EXPECT_TRUE(waitUntil([&] { return changes == 1; })) << "another panel has the tray";
    EXPECT_FALSE(appearance.trayTextColor());
    QList<quint32> colors(12);
    colors[0] = 0x1234;
    colors[1] = 0xffff;
    colors[2] = 0x8000;
    manager.publishNumbers(trayColors, colors);
    EXPECT_TRUE(waitUntil([&] { return appearance.trayTextColor() == 0x12ff80; }));
    manager.publishNumbers(trayColors, {0x1234});
    EXPECT_TRUE(waitUntil([&] { return !appearance.trayTextColor(); })) << "not a colour";
}

TEST_F(X11DesktopAppearanceTest, WhatMeansTheSameIsNoChange)
{
    SelectionManager manager(settingsManager);
    manager.publish(settings, withTheme("Adwaita"));
    X11DesktopAppearance appearance;
    observe(appearance);
    manager.publish(settings, withTheme("Greybird"));
    manager.publish(settings, "damaged");
    manager.publish(settings, withTheme("HighContrast"));
    EXPECT_TRUE(waitUntil([&] { return appearance.isHighContrast(); }));
    EXPECT_EQ(changes, 1);
}

TEST_F(X11DesktopAppearanceTest, TheLossOfTheServerChangesNothingAndCostsNothing)
{
    PrivateXServer server;
    const SelectionManager running(compositor, server.displayName());
    X11DesktopAppearance appearance(server.displayName());
    observe(appearance);
    server.kill();
    auto *const notifier = appearance.findChild<QSocketNotifier *>();
    ASSERT_NE(notifier, nullptr);
    EXPECT_TRUE(waitUntil([&] { return !notifier->isEnabled(); }));
    EXPECT_TRUE(appearance.isCompositing());
    EXPECT_EQ(changes, 0);
}

} // namespace
} // namespace kestrova
