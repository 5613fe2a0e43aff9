#include "Views/Scenes/Scenes.h"

#include "Views/Dashboard/DashboardModel.h"

#include <algorithm>

namespace kestrova {

using namespace Qt::StringLiterals;

Scenes::Scenes(AppController &controller, Platform &platform)
    : m_engine(controller.appState(), *platform.appearance), m_sizes(*platform.userDefaults)
{
    add({u"dashboard"_s, u"qrc:/Kestrova/Dashboard/DashboardWindow.qml"_s,
         [&controller] { return std::make_unique<DashboardModel>(controller); }});
}

bool Scenes::open(const QString &identifier)
{
    WindowScene *scene = find(identifier);
    if (scene)
        scene->open();
    return scene;
}

bool Scenes::close(const QString &identifier)
{
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
}

WindowScene *Scenes::find(const QString &identifier)
{
    const auto found = std::find_if(m_windows.begin(), m_windows.end(), [&](const auto &scene) {
        return scene->identifier() == identifier;
    });
    return found == m_windows.end() ? nullptr : found->get();
}

} // namespace kestrova
