#include "Views/Scenes/Scenes.h"

#include "ViewModels/ControllerTest.h"
#include "Views/AccessibleItems.h"
#include "Views/Panel.h"
#include "support/ApplicationObject.h"
#include "support/DescriptorLimit.h"
#include "support/WaitUntil.h"
#include "support/Warnings.h"

#include <QFile>
#include <QQuickWindow>
#include <QTimer>

#include <gmock/gmock.h>

#include <fcntl.h>
#include <unistd.h>

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// The windows over a controller with fakes, on a real desktop. No test may leave a warning.
class ScenesTest : public ControllerTest
{
protected:
    ScenesTest()
    {
        QObject::connect(&*scenes, &Windows::shown,
                         [this](const QString &identifier) { shown.append(identifier); });
        QObject::connect(&*scenes, &Windows::failed,
                         [this](const QString &reason) { failures.append(reason); });
    }
    ~ScenesTest() override
    {
        scenes.reset();
        EXPECT_THAT(failures, IsEmpty());
        EXPECT_EQ(warnings.all(), QString());
    }

    static QList<QQuickWindow *> windows(const QString &title)
    {
        QList<QQuickWindow *> found;
        for (QWindow *window : QGuiApplication::topLevelWindows()) {
            if (window->title() == title && window->isVisible())
                found.append(qobject_cast<QQuickWindow *>(window));
        }
        return found;
    }
    static QQuickWindow *window(const QString &title) { return windows(title).value(0); }
    static bool isInFront(const QString &title)
    {
        return window(title) && window(title)->isActive();
    }
    void open(const QString &identifier, const QString &title)
    {
        ASSERT_TRUE(scenes->open(identifier));
        ASSERT_TRUE(waitUntil([&] { return isInFront(title); })) << title.toStdString();
    }
    static constexpr qint64 muchMemory = 10'000'000;
    /// In bytes.
    static qint64 residentMemory()
    {
        QFile file(u"/proc/self/statm"_s);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
    }
    static void pass(std::chrono::milliseconds time)
    {
        QEventLoop loop;
        QTimer::singleShot(time, &loop, &QEventLoop::quit);
        loop.exec();
    }
    /// As a screen reader does it.
    static void press(const QString &title, const QString &button)
    {
        QQuickItem *const item =
            findShown(button, window(title)->contentItem(), QAccessible::Button);
        ASSERT_NE(item, nullptr) << button.toStdString();
        QAccessible::queryAccessibleInterface(item)->actionInterface()->doAction(
            QAccessibleActionInterface::pressAction());
    }

    ApplicationObject<QApplication> application;
    const Warnings warnings;
    Panel panel;
    TrayItem trayItem{*fake.platform.appearance, *fake.platform.windowing};
    std::optional<Scenes> scenes{std::in_place, *controller, fake.platform, trayItem};
    QStringList shown;
    QStringList failures;
};

TEST_F(ScenesTest, EachIdentifierOpensItsWindow)
{
    open(u"dashboard"_s, u"Dashboard"_s);
    open(u"settings"_s, u"Settings"_s);
    open(u"popover"_s, u"Kestrova"_s);
    EXPECT_TRUE(waitUntil([this] { return shown.size() == 3; }));
    EXPECT_THAT(shown, ElementsAre(u"dashboard"_s, u"settings"_s, u"popover"_s));
}

TEST_F(ScenesTest, OtherIdentifiersAreRefused)
{
    EXPECT_FALSE(scenes->open(u"Dashboard"_s));
    EXPECT_FALSE(scenes->open(QString()));
    EXPECT_FALSE(scenes->close(u"nothing"_s));
    EXPECT_THAT(QGuiApplication::topLevelWindows(), IsEmpty());
}

TEST_F(ScenesTest, AClosedWindowIsGone)
{
    open(u"settings"_s, u"Settings"_s);
    EXPECT_TRUE(scenes->close(u"settings"_s));
    EXPECT_TRUE(waitUntil([] { return !window(u"Settings"_s); }));
    EXPECT_TRUE(scenes->close(u"settings"_s)) << "nor is it an error when there is none";
}

TEST_F(ScenesTest, AWindowThatIsOpenComesToTheFront)
{
    open(u"settings"_s, u"Settings"_s);
    open(u"dashboard"_s, u"Dashboard"_s);
    open(u"settings"_s, u"Settings"_s);
    EXPECT_EQ(windows(u"Settings"_s).size(), 1);
    EXPECT_THAT(shown, ElementsAre(u"settings"_s, u"dashboard"_s)) << "drawn once each";
}

TEST_F(ScenesTest, AMinimisedWindowIsShownAgain)
{
    open(u"settings"_s, u"Settings"_s);
    QQuickWindow *const settings = window(u"Settings"_s);
    settings->showMinimized();
    ASSERT_TRUE(waitUntil([&] { return !settings->isActive() && !settings->isExposed(); }));
    open(u"settings"_s, u"Settings"_s);
    EXPECT_EQ(window(u"Settings"_s), settings);
    EXPECT_FALSE(settings->windowStates().testFlag(Qt::WindowMinimized));
}

TEST_F(ScenesTest, TheSettingsLeadToTheDashboard)
{
    open(u"settings"_s, u"Settings"_s);
    press(u"Settings"_s, u"Open Dashboard"_s);
    EXPECT_TRUE(waitUntil([] { return isInFront(u"Dashboard"_s); }));
}

TEST_F(ScenesTest, AWindowAskedForInThePopoverTakesItsPlace)
{
    ASSERT_TRUE(panel.start(trayItem));
    open(u"popover"_s, u"Kestrova"_s);
    press(u"Kestrova"_s, u"Dashboard"_s);
    EXPECT_TRUE(waitUntil([] { return isInFront(u"Dashboard"_s) && !window(u"Kestrova"_s); }));
}

TEST_F(ScenesTest, ATrayClickOpensAndClosesThePopover)
{
    ASSERT_TRUE(panel.start(trayItem));
    scenes->togglePopover();
    ASSERT_TRUE(waitUntil([] { return isInFront(u"Kestrova"_s); }));
    scenes->togglePopover();
    EXPECT_TRUE(waitUntil([] { return !window(u"Kestrova"_s); }));
    open(u"popover"_s, u"Kestrova"_s);
    EXPECT_TRUE(scenes->close(u"popover"_s));
    EXPECT_TRUE(waitUntil([] { return !window(u"Kestrova"_s); }));
}

TEST_F(ScenesTest, MemoryIsGivenBackSomeTimeAfterTheLastWindowHasGone)
{
    scenes.emplace(*controller, fake.platform, trayItem, 200ms);
    ASSERT_TRUE(panel.start(trayItem));
    for (int round = 0; round < 2; ++round) {
        open(u"popover"_s, u"Kestrova"_s);
        open(u"settings"_s, u"Settings"_s);
        ASSERT_TRUE(waitUntil([] { return !window(u"Kestrova"_s); }));
        pass(400ms);
        const qint64 opened = residentMemory();
        pass(400ms);
        EXPECT_GT(residentMemory(), opened - muchMemory) << "the settings are open";
        EXPECT_TRUE(scenes->close(u"settings"_s));
        EXPECT_TRUE(waitUntil([&] { return residentMemory() < opened - muchMemory; }));
    }
    scenes->togglePopover();
    EXPECT_TRUE(waitUntil([] { return isInFront(u"Kestrova"_s); }));
}

TEST_F(ScenesTest, AWindowThatCannotBeShownIsTold)
{
    const int next = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
    close(next);
    {
        const DescriptorLimit limit(rlim_t(next) + 8); // a window needs twice as many
        EXPECT_TRUE(scenes->open(u"settings"_s)) << "there is such a window";
    }
    EXPECT_THAT(failures, ElementsAre(u"Kestrova may not open more files. Its limit "
                                      "(ulimit -n) is too low."_s));
    failures.clear();
    EXPECT_EQ(window(u"Settings"_s), nullptr);
    open(u"settings"_s, u"Settings"_s);
}

} // namespace
} // namespace kestrova
