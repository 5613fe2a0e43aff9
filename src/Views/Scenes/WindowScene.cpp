#include "Views/Scenes/WindowScene.h"

namespace kestrova {

WindowScene::WindowScene(SceneEngine &engine, WindowSizes &sizes, Description description)
    : m_engine(engine), m_sizes(sizes), m_description(std::move(description))
{
}

WindowScene::~WindowScene()
{
    if (m_window)
        m_window->disconnect(this);
}

void WindowScene::open()
{
    if (!m_window)
        build();
    if (m_window->windowStates() & Qt::WindowMinimized)
        m_window->showNormal();
    else
        m_window->show();
    m_window->raise();
    m_window->requestActivate();
}

void WindowScene::close()
{
    if (m_window)
        m_window->close();
}

void WindowScene::build()
{
    m_model = m_description.makeModel();
    m_window = m_engine.buildWindow(m_description.document, *m_model);
    if (const auto size = m_sizes.size(m_description.identifier))
        m_window->resize(size->expandedTo(m_window->minimumSize()));
    connect(m_window.get(), &QQuickWindow::frameSwapped, this, &WindowScene::shown,
            Qt::SingleShotConnection);
    connect(m_window.get(), &QWindow::visibleChanged, this, [this](bool isVisible) {
        if (!isVisible)
            dismantle();
    });
}

void WindowScene::dismantle()
{
    m_window->disconnect(this);
    if (m_window->windowStates() == Qt::WindowNoState)
        m_sizes.setSize(m_description.identifier, m_window->size());
    // Closing goes on within the window.
    auto *window = m_window.release();
    connect(window, &QObject::destroyed, m_model.release(), &QObject::deleteLater);
    window->deleteLater();
}

} // namespace kestrova
