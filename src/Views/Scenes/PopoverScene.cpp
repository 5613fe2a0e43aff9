#include "Views/Scenes/PopoverScene.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTimer>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

/// From the pixels of all screens together to the logical ones of this screen.
QRect logical(const QRect &place, const QScreen &screen)
{
    const QPoint origin = screen.geometry().topLeft();
    const qreal scale = screen.devicePixelRatio();
    return {origin + (place.topLeft() - origin) / scale, place.size() / scale};
}

QList<ScreenArea> screenAreas(Workspace &workspace)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    // The work area is that of all screens together, so that it tells something of a single one.
    const QList<QRect> panels = screens.size() > 1 ? workspace.panels() : QList<QRect>();
    QList<ScreenArea> areas;
    for (const QScreen *screen : screens) {
        ScreenArea area{screen->geometry(), screen->availableGeometry()};
        for (const QRect &panel : panels)
            area = area.without(logical(panel, *screen));
        areas.append(area);
    }
    return areas;
}

} // namespace

PopoverScene::PopoverScene(SceneEngine &engine, AppController &controller, Workspace &workspace,
                           TrayItem &trayItem)
    : m_engine(engine), m_workspace(workspace), m_trayItem(trayItem), m_model(controller)
{
    connect(&m_model, &PopoverModel::dismissRequested, this, &PopoverScene::dismiss);
    connect(&m_model, &PopoverModel::openWindowRequested, this, &PopoverScene::openWindowRequested);
    connect(&m_model, &PopoverModel::quitRequested, qApp, &QCoreApplication::quit,
            Qt::QueuedConnection);
}

bool PopoverScene::isOpen() const
{
    return m_popover && m_popover->isVisible() &&
           !m_popover->windowStates().testFlag(Qt::WindowMinimized);
}

void PopoverScene::toggle()
{
    if (isOpen())
        dismiss();
    else if (!m_sinceFocusLoss.isValid() || m_sinceFocusLoss.hasExpired(clickLimit.count()))
        openAt(QCursor::pos());
}

void PopoverScene::dismiss()
{
    if (m_popover)
        m_popover->dismiss();
}

void PopoverScene::showQuietly()
{
    prepare();
    m_popover->showQuietly();
}

void PopoverScene::prepare()
{
    if (!m_popover)
        build();
    connect(m_popover, &QQuickWindow::frameSwapped, this, &PopoverScene::shown,
            Qt::SingleShotConnection);
}

void PopoverScene::openAt(const std::optional<QPoint> &clicked)
{
    prepare();
    if (!TrayItem::isShown()) {
        m_popover->openOrdinary();
        return;
    }
    if (m_popover->isOrdinary())
        m_popover->hide(); // the tray has come up since
    if (!m_popover->isVisible())
        m_workspace.keepOffTaskBars(m_popover->winId());
    m_popover->openAt(PopoverPlacement(m_trayItem.geometry(), clicked, screenAreas(m_workspace)));
}

void PopoverScene::build()
{
    m_window = m_engine.buildWindow(QUrl(u"qrc:/Kestrova/Popover/MenuBarPopover.qml"_s), m_model);
    m_popover = qobject_cast<PopoverWindow *>(m_window.get());
    connect(m_popover, &PopoverWindow::focusLost, this, &PopoverScene::loseFocus);
    connect(m_popover, &PopoverWindow::marginChanged, this, &PopoverScene::declareShadow);
    connect(m_popover, &PopoverWindow::minimising, this, &PopoverScene::awaitMinimising);
}

void PopoverScene::declareShadow()
{
    m_workspace.declareShadow(m_popover->winId(),
                              qRound(m_popover->margin() * m_popover->devicePixelRatio()));
}

void PopoverScene::loseFocus()
{
    m_sinceFocusLoss.start();
    dismiss();
}

void PopoverScene::awaitMinimising()
{
    QTimer::singleShot(minimisingLimit, m_popover, [this] {
        if (!m_workspace.isMinimised(m_popover->winId()))
            m_popover->stayOpen();
    });
}

} // namespace kestrova
