#include "Views/Scenes/WindowScene.h"

#include <QScreen>

namespace kestrova {

namespace {

/// At its size, or as large as the screen lets it be; so is its least size, because magnified
/// screens may be smaller than that.
void fitToScreen(QWindow &window, QSize size)
{
    const QSize room = window.screen()->availableSize().shrunkBy(WindowScene::frameRoom);
    window.setMinimumSize(window.minimumSize().boundedTo(room));
    window.resize(size.boundedTo(room).expandedTo(window.minimumSize()));
}

} // namespace

WindowScene::WindowScene(SceneEngine &engine, WindowSizes &sizes, Description description)
    : m_engine(engine), m_sizes(sizes), m_description(std::move(description))
{
}

WindowScene::~WindowScene()
{
    if (!m_window)
        return;
    m_window->disconnect(this);
    keepSize();
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
    fitToScreen(*m_window, m_sizes.size(m_description.identifier).value_or(m_window->size()));
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
    keepSize();
    // Closing goes on within the window; but no window outlives the scenes and their engine.
    QObject *const window = m_window.release();
    m_model.release()->setParent(window);
    window->setParent(this);
    window->deleteLater();
    Q_EMIT closed();
}

void WindowScene::keepSize()
{
    if (m_window->windowStates() == Qt::WindowNoState)
        m_sizes.setSize(m_description.identifier, m_window->size());
}

} // namespace kestrova
