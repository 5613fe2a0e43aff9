#include "Concurrency/BackgroundExecutor.h"
#include "Concurrency/InlineExecutor.h"
#include "Concurrency/QtMainExecutor.h"
#include "Platform/Fake/FakeUserDefaults.h"
#include "Platform/Platform.h"
#include "Services/CoordinatorServices.h"
#include "Services/Usage/UsageLog.h"
#include "ViewModels/AppController.h"
#include "Views/Dashboard/DashboardModel.h"
#include "Views/Scenes/Scenes.h"
#include "support/UsageEvents.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QQuickItem>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

/// The dashboard over a year of 100,000 dictations: from opening it, and from choosing something in
/// it, to the first frame that shows it. Needs a display.
namespace {

using namespace Qt::StringLiterals;
using namespace kestrova;

constexpr int rounds = 15;
constexpr qsizetype eventCount = 100'000;
constexpr int periodsButDaily[] = {0, 2, 3};
constexpr double secondsPerYear = 365 * 86400.0;

QByteArray yearOfEvents()
{
    const double now = UsageAnalyticsService::wallClockNow().secondsSinceReferenceDate;
    QList<UsageEvent> events;
    for (qsizetype i = 0; i < eventCount; ++i) {
        const double age = secondsPerYear * double(eventCount - i) / double(eventCount + 1);
        UsageEvent event = eventAt(Date{now - age}, i % 120);
        event.targetAppName = u"Application %1"_s.arg(i % 20);
        event.slotIndex = int(i % 9) + 1;
        events.append(event);
    }
    return UsageLog(events).json();
}

/// Milliseconds until the signal has come, from just before the action.
template <typename Sender, typename Signal>
double untilSignal(Sender *sender, Signal signal, const std::function<void()> &action)
{
    QEventLoop loop;
    QObject::connect(sender, signal, &loop, &QEventLoop::quit);
    QElapsedTimer timer;
    timer.start();
    action();
    loop.exec();
    return double(timer.nsecsElapsed()) / 1e6;
}

void print(const char *name, std::vector<double> milliseconds)
{
    std::sort(milliseconds.begin(), milliseconds.end());
    std::printf("%-28s %7.1f ms (%.1f to %.1f)\n", name, milliseconds[milliseconds.size() / 2],
                milliseconds.front(), milliseconds.back());
}

class Dashboard
{
public:
    explicit Dashboard(Scenes &scenes) : m_scenes(scenes) {}

    double open()
    {
        return untilSignal(&m_scenes, &Scenes::shown, [this] { m_scenes.open(u"dashboard"_s); });
    }
    void close()
    {
        m_scenes.close(u"dashboard"_s);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void selectTab(int tab)
    {
        untilFrame([&] { view()->setProperty("selectedTab", tab); });
    }
    double untilFrame(const std::function<void()> &action)
    {
        settle();
        return untilSignal(window(), &QQuickWindow::frameSwapped, action);
    }
    DashboardModel &model() { return *window()->property("model").value<DashboardModel *>(); }

private:
    QQuickWindow *window()
    {
        for (QWindow *window : QGuiApplication::topLevelWindows()) {
            if (window->title() == u"Dashboard"_s)
                return qobject_cast<QQuickWindow *>(window);
        }
        qFatal("The dashboard is not open.");
    }
    QQuickItem *view() { return window()->contentItem()->childItems().first(); }
    /// Lets animations come to their end.
    static void settle()
    {
        QEventLoop loop;
        QTimer::singleShot(400, &loop, &QEventLoop::quit);
        loop.exec();
    }

    Scenes &m_scenes;
};

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    Platform platform = makePlatform(findDesktopSession());
    platform.userDefaults = std::make_unique<FakeUserDefaults>();
    platform.userDefaults->setData(UsageAnalyticsService::standardKey(), yearOfEvents());
    QtMainExecutor main;
    BackgroundExecutor background;
    InlineExecutor storage;
    AppController controller({.platform = platform,
                              .main = main,
                              .background = background,
                              .tools = background,
                              .storage = storage},
                             std::make_shared<SettingsStore>(*platform.userDefaults, storage),
                             std::make_shared<SubstituteCapture>(),
                             std::make_shared<SubstituteInserter>());
    TrayItem trayItem(*platform.appearance, *platform.windowing);
    Scenes scenes(controller, platform, trayItem);
    Dashboard dashboard(scenes);

    std::printf("%-28s %7.1f ms\n", "first opening", dashboard.open());
    std::vector<double> openings;
    for (int round = 0; round < rounds; ++round) {
        dashboard.close();
        openings.push_back(dashboard.open());
    }
    print("opening", openings);

    dashboard.selectTab(2);
    std::vector<double> periods;
    std::vector<double> heatmaps;
    std::vector<double> lines;
    for (int round = 0; round < rounds; ++round) {
        DashboardModel &model = dashboard.model();
        periods.push_back(
            dashboard.untilFrame([&] { model.setPeriod(periodsButDaily[round % 3]); }));
        heatmaps.push_back(
            dashboard.untilFrame([&] { model.setChartStyle(DashboardModel::Heatmap); }));
        lines.push_back(dashboard.untilFrame([&] { model.setChartStyle(DashboardModel::Line); }));
    }
    print("another period", periods);
    print("to the heatmap", heatmaps);
    print("from the heatmap to the line", lines);
}
