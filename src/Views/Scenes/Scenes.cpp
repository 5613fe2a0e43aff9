#include "Views/Scenes/Scenes.h"

#include "Models/ReadableError.h"
#include "Platform/ProcessMemory.h"
#include "Views/Dashboard/DashboardModel.h"
#include "Views/Settings/SettingsModel.h"
#include "Views/Tray/FreeDescriptors.h"

#include <algorithm>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

/// How many files the first window opens, and about as many again to spare.
constexpr int neededDescriptors = 16;

} // namespace

Scenes::Scenes(AppController &controller, Platform &platform, TrayItem &trayItem,
               std::chrono::milliseconds rest)
    : m_engine(controller.appState(), *platform.appearance), m_sizes(*platform.userDefaults),
      m_popover(m_engine, controller, *platform.windowing, trayItem)
{
    const RecorderKeyboard keyboard{*platform.keyMonitoring, *platform.windowing};
    add({u"dashboard"_s, u"qrc:/Kestrova/Dashboard/DashboardWindow.qml"_s, [&controller, keyboard] {
             return std::make_unique<DashboardModel>(controller, keyboard);
         }});
    add({u"settings"_s, u"qrc:/Kestrova/Settings/SettingsView.qml"_s,
         [&controller, keyboard, this] {
             auto model = std::make_unique<SettingsModel>(controller, keyboard);
             connect(model.get(), &SettingsModel::openWindowRequested, this, &Scenes::open);
             return model;
         }});
    connect(&m_popover, &PopoverScene::shown, this, [this] { Q_EMIT shown(popover); });
    connect(&m_popover, &PopoverScene::closed, &m_untilRest, qOverload<>(&QTimer::start));
    m_untilRest.setSingleShot(true);
    m_untilRest.setInterval(rest);
    connect(&m_untilRest, &QTimer::timeout, this, &Scenes::rest);
    connect(&m_popover, &PopoverScene::openWindowRequested, this, &Scenes::openFromPopover);
}

bool Scenes::open(const QString &identifier)
{
    if (identifier == popover)
        return show([this] { m_popover.open(); });
    WindowScene *const scene = find(identifier);
    return scene && show([scene] { scene->open(); });
}

void Scenes::togglePopover()
{
    show([this] { m_popover.toggle(); });
}

void Scenes::showPopoverQuietly()
{
    show([this] { m_popover.showQuietly(); });
}

bool Scenes::show(const std::function<void()> &showing)
{
    try {
        if (!areDescriptorsFree(neededDescriptors)) {
            throw PlatformError(
                u"Kestrova may not open more files. Its limit (ulimit -n) is too low."_s);
        }
        showing();
    } catch (const ReadableError &error) {
        Q_EMIT failed(error.errorDescription());
    }
    return true;
}

bool Scenes::close(const QString &identifier)
{
    if (identifier == popover) {
        m_popover.dismiss();
        return true;
    }
    WindowScene *scene = find(identifier);
    if (scene)
        scene->close();
    return scene;
}

void Scenes::add(WindowScene::Description description)
{
    const QString identifier = description.identifier;
    auto &scene = m_windows.emplace_back(
        std::make_unique<WindowScene>(m_engine, m_sizes, std::move(description)));
    connect(scene.get(), &WindowScene::shown, this,
            [this, identifier] { Q_EMIT shown(identifier); });
    connect(scene.get(), &WindowScene::closed, &m_untilRest, qOverload<>(&QTimer::start));
}

void Scenes::openFromPopover(const QString &identifier)
{
    open(identifier);
    QTimer::singleShot(frontDelay, this, [this, identifier] {
        WindowScene *scene = find(identifier);
        if (scene && scene->isOpen())
            scene->open();
    });
}

void Scenes::rest()
{
    const bool isWindowOpen = std::any_of(m_windows.begin(), m_windows.end(),
                                          [](const auto &scene) { return scene->isOpen(); });
    if (isWindowOpen || m_popover.isOpen())
        return; // whichever is closed last begins the time anew
    // Popover and QML engine stay: they are 5 MB, and the next click would wait for new ones.
    giveUnusedMemoryBack();
}

WindowScene *Scenes::find(const QString &identifier)
{
    const auto found = std::find_if(m_windows.begin(), m_windows.end(), [&](const auto &scene) {
        return scene->identifier() == identifier;
    });
    return found == m_windows.end() ? nullptr : found->get();
}

} // namespace kestrova
