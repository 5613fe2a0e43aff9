#include "Views/Dashboard/DashboardModel.h"

#include "Services/Usage/UsageLog.h"
#include "Views/AccessibleItems.h"
#include "Views/WindowOutlineTest.h"
#include "support/UsageEvents.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

class DashboardOutlineTest : public WindowOutlineTest
{
protected:
    void open(const QString &title)
    {
        model = std::make_unique<DashboardModel>(
            *controller, RecorderKeyboard{*fake.platform.keyMonitoring, *fake.platform.windowing});
        show(u"Dashboard/DashboardWindow.qml"_s, *model);
        if (title != u"Overview"_s)
            press(u"tab "_s + title);
    }
    static QStringList tabs(const QString &title)
    {
        QStringList lines;
        for (const QString &tab : {u"Overview"_s, u"Hotbar Apps"_s, u"Usage Stats"_s})
            lines.append(u"tab "_s + tab + (tab == title ? u" (selected)"_s : u""_s));
        return lines;
    }
    static QStringList emptyCard(const QString &title)
    {
        return {u"heading "_s + title, u"text 0 recordings"_s, u"text 0 words"_s,
                u"text 0.0 mins"_s};
    }
    static QStringList slot(int slotIndex, const QString &application, const QString &shortcut)
    {
        QStringList lines = {u"heading Slot %1"_s.arg(slotIndex),
                             u"text "_s + application,
                             u"text "_s + shortcut,
                             u"button Assign Frontmost"_s,
                             u"button Record Shortcut"_s,
                             u"button Reset Shortcut"_s};
        if (application != u"Unassigned"_s)
            lines.append(u"button Clear"_s);
        return lines;
    }

    ~DashboardOutlineTest() override { window.reset(); }

    std::unique_ptr<DashboardModel> model;
};

const QStringList tabSymbols = {u"square.grid.2x2"_s, u"dock.rectangle"_s, u"chart.bar.xaxis"_s};

TEST_F(DashboardOutlineTest, WhatADesktopDoesNotOfferIsExplainedAndNotOffered)
{
    FakeGlobalShortcuts &shortcuts = useNamedShortcuts();
    fake.desktop->tellNothing();
    launch();
    shortcuts.accept();
    shortcuts.change(u"hotbar-1"_s, {});
    open(u"Hotbar Apps"_s);
    const QString explanation =
        u"Each slot has a shortcut that dictates into its application. On this desktop, the keys "
        u"of "
        "all shortcuts are chosen in its settings.\n"
        "This desktop does not tell programs which application is in front, so that none can be "
        "assigned from there. This desktop lets no program bring another one to the front: an "
        "application that is running has to be there when its slot is used."_s;
    EXPECT_EQ(
        outline().mid(0, 12),
        tabs(u"Hotbar Apps"_s) +
            QStringList({u"heading Hotbar App Assignment"_s, u"text "_s + explanation,
                         u"button Configure Shortcuts"_s, u"heading Slot 1"_s, u"text Unassigned"_s,
                         u"alert The desktop has not granted this shortcut. Choose its keys with "
                         "Configure Shortcuts."_s,
                         u"text None"_s, u"button Assign Frontmost (disabled)"_s,
                         u"heading Slot 2"_s}));
    press(u"button Configure Shortcuts"_s);
    EXPECT_EQ(shortcuts.configurations(), 1);

    const auto place = [this](const QString &name) {
        QQuickItem *const item = findShown(name, window->contentItem());
        return item ? item->mapRectToScene(item->boundingRect()) : QRectF();
    };
    // Texts have their heights once the window has been laid out.
    EXPECT_TRUE(waitUntil(
        [&] { return place(explanation).bottom() < place(u"Configure Shortcuts"_s).top(); }));
    EXPECT_LT(place(u"Hotbar App Assignment"_s).bottom(), place(explanation).top());
    EXPECT_GT(place(explanation).height(), 40) << "several lines";
}

TEST_F(DashboardOutlineTest, OverviewWithoutUsage)
{
    open(u"Overview"_s);
    EXPECT_EQ(
        outline(),
        tabs(u"Overview"_s) +
            QStringList({u"heading Usage Overview"_s,
                         u"text Live insight into recordings, words, and routing"_s,
                         u"text Ready"_s}) +
            emptyCard(u"This Hour"_s) + emptyCard(u"Today"_s) + emptyCard(u"This Week"_s) +
            emptyCard(u"This Month"_s) +
            QStringList({u"heading Efficiency"_s, u"text Average words per recording: 0.0"_s,
                         u"heading Top Destination Apps"_s,
                         u"text No destination app activity yet."_s, u"heading Hotbar Slot Usage"_s,
                         u"text No assigned hotbar apps yet."_s}));
    EXPECT_EQ(symbols(), tabSymbols + QStringList{u"checkmark"_s});
}

TEST_F(DashboardOutlineTest, HotbarApps)
{
    controller->updateSettings([](AppSettings &settings) {
        settings.setHotbarAssignment(2, u"org.example.Editor"_s, u"Editor"_s);
        settings.setHotbarShortcut(2, HotkeyShortcut{3, HotkeyShortcut::command});
        settings.shortcut = {24, HotkeyShortcut::control};
    });
    open(u"Hotbar Apps"_s);
    QStringList expected =
        tabs(u"Hotbar Apps"_s) +
        QStringList({u"heading Hotbar App Assignment"_s,
                     u"text Use ⌘⇧Space for default routing. Hotbar defaults are ⌘⌥1 through ⌘⌥9, "
                     "and custom slot shortcuts override them."_s});
    for (int slotIndex = 1; slotIndex <= 9; ++slotIndex) {
        expected += slotIndex == 2 ? slot(2, u"Editor"_s, u"⌘F"_s)
                                   : slot(slotIndex, u"Unassigned"_s, u"⌘⌥%1"_s.arg(slotIndex));
    }
    EXPECT_EQ(outline(), expected);
}

TEST_F(DashboardOutlineTest, HotbarButtonsDoWhatTheySay)
{
    open(u"Hotbar Apps"_s);
    press(u"button Assign Frontmost"_s);
    EXPECT_EQ(state().settings.get().assignment(1).appName, u"Editor"_s);
    controller->setHotbarShortcut(1, {3, HotkeyShortcut::command});
    press(u"button Reset Shortcut"_s);
    EXPECT_EQ(controller->hotbarShortcutDisplay(1), u"⌘⌥1"_s);
    press(u"button Clear"_s);
    EXPECT_EQ(state().settings.get().assignment(1).bundleIdentifier, std::nullopt);
    EXPECT_FALSE(shows(u"button Clear"_s));
}

TEST_F(DashboardOutlineTest, UsageStats)
{
    open(u"Usage Stats"_s);
    EXPECT_EQ(outline(),
              tabs(u"Usage Stats"_s) +
                  QStringList({u"heading Usage Stats"_s, u"group Period"_s, u"choice Hourly"_s,
                               u"choice Daily (checked)"_s, u"choice Weekly"_s, u"choice Monthly"_s,
                               u"group Chart Type"_s, u"choice Heatmap"_s,
                               u"choice Bar (checked)"_s, u"choice Line"_s, u"text Recordings: 0"_s,
                               u"text Words: 0"_s, u"text Minutes: 0.0"_s,
                               u"chart Words per day, the last 30. No words."_s}));
    press(u"choice Weekly"_s);
    EXPECT_EQ(state().usageTrendPeriod.get(), UsageTrendPeriod::weekly);
    press(u"choice Heatmap"_s);
    EXPECT_EQ(state().usageTrendPeriod.get(), UsageTrendPeriod::daily);
    EXPECT_TRUE(shows(u"choice Heatmap (checked)"_s));
    press(u"choice Monthly"_s);
    EXPECT_TRUE(shows(u"choice Bar (checked)"_s));
}

TEST_F(DashboardOutlineTest, TheHeatmapsLegend)
{
    fake.userDefaults.put(UsageAnalyticsService::standardKey(),
                          UsageLog({eventAt(now, 12)}).json());
    launch();
    open(u"Usage Stats"_s);
    press(u"choice Heatmap"_s);
    EXPECT_EQ(outline().last(2), QStringList({u"text Less"_s, u"text More"_s}));
}

} // namespace
} // namespace kestrova
