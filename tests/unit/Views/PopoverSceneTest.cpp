#include "Views/PopoverSceneTest.h"

#include "support/KeyLogProgram.h"
#include "support/WindowProgram.h"

#include <array>

namespace kestrova {
namespace {

TEST_F(PopoverSceneTest, AClickOpensItBesideTheItemAndTheNextOneClosesIt)
{
    startPanel();
    open();
    EXPECT_TRUE(waitUntil([this] { return isAtPanel(); }));
    const QRect place = popover()->geometry();
    const QRect item = trayItem.geometry();
    EXPECT_LT(place.left(), item.left());
    EXPECT_FALSE(place.intersects(item));
    scene->toggle();
    EXPECT_TRUE(isHidden());
    open();
}

TEST_F(PopoverSceneTest, WhereNoProgramPlacesItsWindowsItIsAnOrdinaryOne)
{
    fake.windowing.setCanPlaceWindows(false);
    startPanel();
    open();
    EXPECT_TRUE(popover()->isOrdinary());
    EXPECT_EQ(actionsOn(u"task bars"_s), QStringList());
}

TEST_F(PopoverSceneTest, TaskBarsDoNotShowIt)
{
    startPanel();
    open();
    EXPECT_TRUE(
        fake.desktop->actions().contains(u"task bars without %1"_s.arg(popover()->winId())));
}

TEST_F(PopoverSceneTest, WithACompositingManagerItsWindowHasRoomForAShadow)
{
    fake.appearance.setCompositing(true);
    startPanel();
    open();
    EXPECT_GT(popover()->width(), PopoverWindow::popoverWidth);
    const int margin = (popover()->width() - PopoverWindow::popoverWidth) / 2;
    EXPECT_TRUE(waitUntil([&] { return gapToPanel() == PopoverPlacement::distance - margin; }));

    fake.appearance.setCompositing(false);
    EXPECT_EQ(popover()->width(), PopoverWindow::popoverWidth);
    EXPECT_TRUE(waitUntil([this] { return isAtPanel(); }));
}

TEST_F(PopoverSceneTest, TheWindowManagerIsToldOfTheShadow)
{
    fake.appearance.setCompositing(true);
    startPanel();
    open();
    const int margin = (popover()->width() - PopoverWindow::popoverWidth) / 2;
    const QString window = u"shadow of %1: "_s.arg(popover()->winId());
    EXPECT_GT(margin, 0);
    EXPECT_EQ(actionsOn(window), QStringList{window + QString::number(margin)});
    fake.appearance.setCompositing(false);
    EXPECT_EQ(actionsOn(window).last(), window + u"0"_s);
}

TEST_F(PopoverSceneTest, EscapeClosesIt)
{
    startPanel();
    open();
    constexpr xcb_keycode_t escape = 9;
    tap(keyboard, escape);
    EXPECT_TRUE(waitUntil([this] { return isHidden(); }));
}

TEST_F(PopoverSceneTest, TurningToAnotherWindowClosesItAndTheSameClickDoesNotOpenItAgain)
{
    startPanel();
    open();
    const KeyLogProgram other;
    ASSERT_TRUE(waitUntil([this] { return isHidden(); }));
    scene->toggle();
    EXPECT_TRUE(isHidden());
    ASSERT_TRUE(waitUntil([this] {
        scene->toggle();
        return isOpen();
    }));
}

TEST_F(PopoverSceneTest, OpenedAgainAtOnceItStaysOpen)
{
    startPanel();
    const WindowProgram other(connection, u"other"_s, u"Other"_s);
    open();
    for (int round = 0; round < 5; ++round) {
        scene->dismiss();
        scene->toggle();
        ASSERT_FALSE(isHidden());
        QElapsedTimer sinceOpening;
        sinceOpening.start();
        ASSERT_TRUE(waitUntil([&] {
            return isHidden() || sinceOpening.hasExpired(2 * PopoverWindow::focusGrace.count());
        }));
        EXPECT_FALSE(isHidden()) << round;
    }
}

TEST_F(PopoverSceneTest, ItGivesTheKeyboardBack)
{
    startPanel();
    const WindowProgram other(connection, u"other"_s, u"Other"_s);
    open();
    scene->dismiss();
    EXPECT_TRUE(waitUntil([&] {
        return connection.value(connection.root(), "_NET_ACTIVE_WINDOW") == other.windows().last();
    }));
}

TEST_F(PopoverSceneTest, ItGrowsWithItsContentAwayFromThePanel)
{
    startPanel();
    open();
    ASSERT_TRUE(waitUntil([this] { return isAtPanel(); }));
    const int heightBefore = popover()->height();
    state().lastTranscript.set(u"Hello world"_s);
    EXPECT_TRUE(waitUntil([&] { return popover()->height() > heightBefore && isAtPanel(); }))
        << popover()->y() << '+' << popover()->height();
}

TEST_F(PopoverSceneTest, ItsFaceChangesWhileItIsOpen)
{
    startPanel();
    state().isModelReady.set(false);
    open();
    const int setupHeight = popover()->height();
    state().isModelReady.set(true);
    EXPECT_TRUE(waitUntil([&] { return popover()->height() != setupHeight; }));
    EXPECT_TRUE(isOpen());
}

TEST_F(PopoverSceneTest, WithoutATrayItIsAWindowThatIsNeverClosed)
{
    open();
    EXPECT_TRUE(popover()->isOrdinary());
    EXPECT_EQ(popover()->title(), u"Kestrova"_s);
    const KeyLogProgram other;
    ASSERT_TRUE(waitUntil([this] { return !popover()->isActive(); }));
    EXPECT_TRUE(popover()->isVisible());
    popover()->close();
    EXPECT_TRUE(
        waitUntil([this] { return popover()->windowStates().testFlag(Qt::WindowMinimized); }));
    EXPECT_TRUE(popover()->isVisible());
}

TEST_F(PopoverSceneTest, WithoutATrayItGrowsWithItsContent)
{
    open();
    const int heightBefore = popover()->height();
    state().lastTranscript.set(u"Hello world"_s);
    EXPECT_TRUE(waitUntil([&] { return popover()->height() > heightBefore; }));
}

TEST_F(PopoverSceneTest, WithoutATrayItKeepsTheSizeThatOthersGaveIt)
{
    open();
    const QSize given(500, 620);
    const std::array<quint32, 2> values{quint32(given.width()), quint32(given.height())};
    xcb_configure_window(connection.xcb(), xcb_window_t(popover()->winId()),
                         XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values.data());
    xcb_flush(connection.xcb());
    ASSERT_TRUE(waitUntil([&] { return popover()->size() == given; }));
    const QVariant heightBefore = popover()->property("fullHeight");
    state().lastTranscript.set(u"Hello world"_s);
    ASSERT_TRUE(waitUntil([&] { return popover()->property("fullHeight") != heightBefore; }));
    // The window manager does in order what it is asked.
    const QPoint elsewhere = popover()->position() + QPoint(10, 10);
    popover()->setPosition(elsewhere);
    ASSERT_TRUE(waitUntil([&] { return popover()->position() == elsewhere; }));
    EXPECT_EQ(popover()->size(), given);
}

TEST_F(PopoverSceneTest, WithoutATrayItCanBeShownAndLeaveTheKeyboardWhereItIs)
{
    const WindowProgram other(connection, u"other"_s, u"Other"_s);
    scene->showQuietly();
    ASSERT_TRUE(waitUntil([this] { return popover()->isExposed(); }));
    EXPECT_TRUE(popover()->isOrdinary());
    EXPECT_EQ(connection.value(connection.root(), "_NET_ACTIVE_WINDOW"), other.windows().last());
    scene->open();
    EXPECT_TRUE(waitUntil([this] { return isOpen(); }));
}

TEST_F(PopoverSceneTest, WhereNothingIsMinimisedAClosedWindowIsHidden)
{
    fake.desktop->refuseToMinimise();
    open();
    popover()->close();
    EXPECT_TRUE(waitUntil([this] { return isHidden(); }));
    open();
}

TEST_F(PopoverSceneTest, WhereNothingIsMinimisedADismissedWindowStays)
{
    fake.desktop->refuseToMinimise();
    open();
    scene->dismiss();
    EXPECT_TRUE(waitUntil([this] { return popover()->windowStates() == Qt::WindowNoState; }));
    EXPECT_TRUE(popover()->isVisible());
}

TEST_F(PopoverSceneTest, OnceATrayComesUpTheMinimisedWindowIsAPopoverAgain)
{
    open();
    popover()->close();
    ASSERT_TRUE(waitUntil([this] { return !popover()->isActive(); }));
    startPanel();
    open();
    EXPECT_FALSE(popover()->isOrdinary());
    EXPECT_TRUE(waitUntil([this] { return isAtPanel(); }));
    EXPECT_FALSE(popover()->windowStates().testFlag(Qt::WindowMinimized));
}

TEST_F(PopoverSceneTest, WhatHadTheFocusInItBeforeHasItNoMore)
{
    startPanel();
    open();
    QQuickItem *first = popover()->activeFocusItem();
    constexpr xcb_keycode_t tab = 23;
    tap(keyboard, tab);
    ASSERT_TRUE(waitUntil([&] { return popover()->activeFocusItem() != first; }));
    scene->dismiss();
    open();
    EXPECT_EQ(popover()->activeFocusItem(), first);
}

} // namespace
} // namespace kestrova
