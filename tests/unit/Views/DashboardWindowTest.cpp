#include "Views/Dashboard/DashboardModel.h"

#include "Services/Usage/UsageLog.h"
#include "ViewModels/ControllerTest.h"
#include "support/ApplicationObject.h"
#include "support/UsageEvents.h"
#include "support/Warnings.h"

#include <QAccessible>
#include <QApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtTest>

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using testing::SizeIs;

/// The real window over a controller with fakes, driven by keyboard and pointer and looked at as
/// assistive technology does. No test may leave a warning.
class DashboardWindowTest : public ControllerTest
{
protected:
    DashboardWindowTest()
    {
        engine.addImportPath(u"qrc:/"_s);
        QList<UsageEvent> events;
        for (int day = 1; day <= 15; ++day)
            events.append(
                eventAt(Date{now.secondsSinceReferenceDate - (15 - day) * 86400 - 60}, day));
        fake.userDefaults.put(UsageAnalyticsService::standardKey(), UsageLog(events).json());
        launch();
        controller->updateSettings([](AppSettings &settings) {
            settings.setHotbarAssignment(1, u"org.example.Editor"_s, u"Editor"_s);
        });
        model = std::make_unique<DashboardModel>(
            *controller, RecorderKeyboard{*fake.platform.keyMonitoring, *fake.platform.windowing});
        build();
    }
    ~DashboardWindowTest() override
    {
        window.reset();
        EXPECT_EQ(warnings.all(), QString());
    }

    void build()
    {
        QQmlComponent component(&engine, QUrl(u"qrc:/Kestrova/Dashboard/DashboardWindow.qml"_s));
        window.reset(qobject_cast<QQuickWindow *>(component.createWithInitialProperties(
            {{u"model"_s, QVariant::fromValue(model.get())}})));
        window->show();
        window->requestActivate();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    QObject &appearance()
    {
        return *engine.singletonInstance<QObject *>(
            qmlTypeId("Kestrova.Primitives", 1, 0, "Appearance"));
    }
    void selectTab(const QString &title)
    {
        const QPointF centre = item(title)->mapRectToScene(item(title)->boundingRect()).center();
        QTest::mouseClick(window.get(), Qt::LeftButton, {}, centre.toPoint());
    }

    /// Every visible item by what a screen reader calls it.
    QList<QQuickItem *> items(const QString &name) const
    {
        QList<QQuickItem *> found;
        collect(QAccessible::queryAccessibleInterface(window.get()), name, found);
        return found;
    }
    QQuickItem *item(const QString &name) const { return items(name).value(0); }
    bool isShown(const QString &name) const { return item(name) != nullptr; }
    /// Of the item with the keyboard.
    QString focusedName() const
    {
        auto *const focused = QAccessible::queryAccessibleInterface(window->activeFocusItem());
        return focused ? focused->text(QAccessible::Name) : QString();
    }
    QRectF place(const QString &name) const
    {
        return item(name)->mapRectToScene(item(name)->boundingRect());
    }
    /// Without the list of the tabs, where colours fade also with reduced motion.
    QImage pageOf(const QString &tab)
    {
        const int left = qCeil(place(tab).right());
        return window->grabWindow().copy(left, 0, window->width() - left, window->height());
    }
    void press(Qt::Key key) { QTest::keyClick(window.get(), key); }
    /// Presses Tab until the keyboard is at the item that begins so.
    bool tabTo(const QString &beginning)
    {
        for (int presses = 0; presses < 60; ++presses) {
            if (focusedName().startsWith(beginning))
                return true;
            press(Qt::Key_Tab);
        }
        return false;
    }

private:
    static void collect(QAccessibleInterface *node, const QString &name, QList<QQuickItem *> &found)
    {
        auto *const here = qobject_cast<QQuickItem *>(node->object());
        if (here && here->isVisible() && node->text(QAccessible::Name) == name)
            found.append(here);
        for (int i = 0; i < node->childCount(); ++i)
            collect(node->child(i), name, found);
    }

    struct Offscreen
    {
        Offscreen()
        {
            qputenv("QT_QPA_PLATFORM", "offscreen");
            qputenv("QT_QUICK_BACKEND", "software");
        }
    };
    Offscreen offscreen;
    ApplicationObject<QApplication> application; // which QTest takes it for
    const Warnings warnings; // but not those of the surroundings that a test is run in

protected:
    QQmlEngine engine;
    std::unique_ptr<DashboardModel> model;
    std::unique_ptr<QQuickWindow> window;
};

TEST_F(DashboardWindowTest, ItOpensWithTheOverview)
{
    EXPECT_TRUE(isShown(u"Usage Overview"_s));
    EXPECT_TRUE(isShown(u"Ready"_s));
    EXPECT_TRUE(isShown(u"This Month"_s));
    EXPECT_TRUE(isShown(u"15 recordings"_s));
    EXPECT_TRUE(isShown(u"Average words per recording: 8.0"_s));
    EXPECT_TRUE(isShown(u"Unknown, 15 rec"_s));
    EXPECT_TRUE(isShown(u"Editor, 0"_s));
    toggle();
    EXPECT_TRUE(isShown(u"Recording..."_s));
}

TEST_F(DashboardWindowTest, EmptyListsHaveTheirSentence)
{
    EXPECT_FALSE(isShown(u"No assigned hotbar apps yet."_s));
    model->clear(1);
    EXPECT_TRUE(isShown(u"No assigned hotbar apps yet."_s));
}

TEST_F(DashboardWindowTest, ArrowKeysChooseTheTab)
{
    press(Qt::Key_Tab);
    press(Qt::Key_Down);
    EXPECT_TRUE(isShown(u"Hotbar App Assignment"_s));
    press(Qt::Key_Down);
    EXPECT_TRUE(isShown(u"Recordings: 15"_s));
    EXPECT_FALSE(isShown(u"Hotbar App Assignment"_s));
}

TEST_F(DashboardWindowTest, EveryPeriodAndStyleIsDrawn)
{
    selectTab(u"Usage Stats"_s);
    for (const auto style : {DashboardModel::Heatmap, DashboardModel::Line, DashboardModel::Bar}) {
        for (int period = 0; period < 4; ++period) {
            model->setChartStyle(style);
            model->setPeriod(period);
            EXPECT_FALSE(window->grabWindow().isNull());
        }
    }
}

TEST_F(DashboardWindowTest, ArrowKeysReadTheChartMarkByMark)
{
    selectTab(u"Usage Stats"_s);
    ASSERT_TRUE(tabTo(u"Words per day, the last 30."_s));
    press(Qt::Key_Left);
    EXPECT_EQ(focusedName(), u"15 Mar 2024: 15 words"_s);
    press(Qt::Key_Left);
    EXPECT_EQ(focusedName(), u"14 Mar 2024: 14 words"_s);
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    EXPECT_EQ(focusedName(), u"15 Mar 2024: 15 words"_s) << "it ends there";
    press(Qt::Key_Home);
    EXPECT_EQ(focusedName(), u"15 Feb 2024: 0 words"_s);
    press(Qt::Key_Tab);
    EXPECT_TRUE(isShown(u"Words per day, the last 30. Most: 15 Mar 2024: 15 words."_s));
}

TEST_F(DashboardWindowTest, ArrowKeysReadTheHeatmapDayByDay)
{
    selectTab(u"Usage Stats"_s);
    model->setChartStyle(DashboardModel::Heatmap);
    ASSERT_TRUE(tabTo(u"Words per day, 17 Mar 2023 to 15 Mar 2024."_s));
    press(Qt::Key_Left);
    EXPECT_EQ(focusedName(), u"15 Mar 2024: 15 words"_s);
    press(Qt::Key_Up);
    EXPECT_EQ(focusedName(), u"14 Mar 2024: 14 words"_s);
    press(Qt::Key_Left);
    EXPECT_EQ(focusedName(), u"7 Mar 2024: 7 words"_s);
    press(Qt::Key_Down);
    EXPECT_EQ(focusedName(), u"8 Mar 2024: 8 words"_s);
}

TEST_F(DashboardWindowTest, ThePointerReadsOutTheBarThatItIsAt)
{
    selectTab(u"Usage Stats"_s);
    const QString whole = u"Words per day, the last 30. Most: 15 Mar 2024: 15 words."_s;
    const QRectF chart = place(whole);
    QTest::mouseMove(window.get(), QPointF(chart.right() - 20, chart.center().y()).toPoint());
    EXPECT_TRUE(isShown(u"15 Mar 2024: 15 words"_s));
    QTest::mouseMove(window.get(), QPointF(chart.right() - 20, chart.top() - 40).toPoint());
    EXPECT_TRUE(isShown(whole));
}

TEST_F(DashboardWindowTest, AHeatmapWithoutRoomScrollsAndOpensAtToday)
{
    window->setMinimumWidth(0);
    window->resize(600, 640);
    selectTab(u"Usage Stats"_s);
    model->setChartStyle(DashboardModel::Heatmap);
    QCoreApplication::processEvents();
    const QRectF heatmap = place(model->heatmapChart().textAlternative);
    QTest::mouseMove(window.get(), QPointF(heatmap.right() - 6, heatmap.top() + 22).toPoint());
    EXPECT_TRUE(isShown(u"11 Mar 2024: 11 words"_s)) << "the last column's Monday";
}

TEST_F(DashboardWindowTest, AfterClearTheKeyboardStaysInTheRow)
{
    selectTab(u"Hotbar Apps"_s);
    ASSERT_TRUE(tabTo(u"Clear"_s));
    press(Qt::Key_Space);
    EXPECT_FALSE(isShown(u"Clear"_s));
    EXPECT_EQ(focusedName(), u"Assign Frontmost"_s);
    EXPECT_EQ(window->activeFocusItem(), items(u"Assign Frontmost"_s).first());
}

TEST_F(DashboardWindowTest, ButtonsOfASlotDoWhatTheySay)
{
    selectTab(u"Hotbar Apps"_s);
    EXPECT_THAT(items(u"Assign Frontmost"_s), SizeIs(9));
    EXPECT_THAT(items(u"Clear"_s), SizeIs(1)) << "of the one slot with an application";
    ASSERT_TRUE(tabTo(u"Assign Frontmost"_s));
    for (int i = 0; i < 4; ++i)
        press(Qt::Key_Tab); // Record, Reset, Clear, the next slot
    press(Qt::Key_Space);
    EXPECT_THAT(items(u"Clear"_s), SizeIs(2));
    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    EXPECT_TRUE(model->recorder()->isOpen());
    EXPECT_TRUE(isShown(u"Waiting for input..."_s));
}

TEST_F(DashboardWindowTest, WhyASlotCouldNotBeAssignedIsShown)
{
    selectTab(u"Hotbar Apps"_s);
    const QString reason = u"Could not resolve a bundle identifier for the selected application."_s;
    EXPECT_FALSE(isShown(reason));
    fake.desktop->setRunning(
        {{.processIdentifier = 300, .bundleIdentifier = {}, .localizedName = u"Nameless"_s}});
    fake.desktop->bringToFront(300);
    model->assignFrontmost(2);
    EXPECT_TRUE(isShown(reason));
    model->copyError();
    EXPECT_EQ(fake.pasteboard.string(), reason);
}

TEST_F(DashboardWindowTest, DigitsLineUp)
{
    const auto widthOf = [this](const char *text) {
        QQmlComponent component(&engine, QUrl(u"qrc:/Kestrova/Dashboard/FixedDigits.qml"_s));
        const std::unique_ptr<QObject> digits(
            component.createWithInitialProperties({{u"text"_s, QString::fromLatin1(text)}}));
        return digits->property("width").toDouble();
    };
    EXPECT_EQ(widthOf("1111"), widthOf("8888"));
    EXPECT_LT(widthOf("1.11"), widthOf("1111"));
}

TEST_F(DashboardWindowTest, ButtonsStandBesideTheSlotOrBelowItWhereTheyDoNotFit)
{
    selectTab(u"Hotbar Apps"_s);
    window->resize(window->minimumSize());
    QCoreApplication::processEvents();
    EXPECT_LT(place(u"Clear"_s).right(), window->width());
    EXPECT_LT(place(u"Clear"_s).top(), place(u"Slot 1"_s).bottom());

    window->setMinimumWidth(0);
    window->resize(760, 640);
    QCoreApplication::processEvents();
    EXPECT_LT(place(u"Clear"_s).right(), window->width());
    EXPECT_GT(place(u"Clear"_s).top(), place(u"Slot 1"_s).bottom());
    EXPECT_GT(place(u"Slot 2"_s).top(), place(u"Clear"_s).bottom()) << "the card has grown";
}

TEST_F(DashboardWindowTest, WithReducedMotionAnotherPeriodIsThereAtOnce)
{
    appearance().setProperty("reducedMotion", true);
    selectTab(u"Usage Stats"_s);
    model->setPeriod(3);
    const QImage changed = pageOf(u"Usage Stats"_s);
    build();
    selectTab(u"Usage Stats"_s);
    EXPECT_EQ(pageOf(u"Usage Stats"_s), changed);
}

TEST_F(DashboardWindowTest, BothThemesAreDrawn)
{
    const QImage light = window->grabWindow();
    appearance().setProperty("dark", true);
    EXPECT_LT(qGray(window->grabWindow().pixel(600, 660)), 60);
    EXPECT_GT(qGray(light.pixel(600, 660)), 200);
}

} // namespace
} // namespace kestrova
