#include "Views/Scenes/PopoverScene.h"

#include <QGuiApplication>
#include <QTimer>

namespace kestrova {

using namespace Qt::StringLiterals;

PopoverScene::PopoverScene(SceneEngine &engine, AppController &controller, Windowing &windowing,
                           TrayItem &trayItem)
    : m_engine(engine), m_windowing(windowing), m_trayItem(trayItem), m_model(controller)
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
    if (!TrayItem::isShown() || !m_windowing.canPlaceWindows()) {
        m_popover->openOrdinary();
        return;
    }
    if (m_popover->isOrdinary())
        m_popover->hide(); // the tray has come up since
    if (!m_popover->isVisible())
        m_windowing.keepOffTaskBars(*m_popover);
    m_popover->openAt(PopoverPlacement(m_trayItem.geometry(), clicked, m_windowing.screenAreas()));
}

void PopoverScene::build()
{
    m_window = m_engine.buildWindow(QUrl(u"qrc:/Kestrova/Popover/MenuBarPopover.qml"_s), m_model);
    m_popover = qobject_cast<PopoverWindow *>(m_window.get());
    connect(m_popover, &PopoverWindow::focusLost, this, &PopoverScene::loseFocus);
    connect(m_popover, &QWindow::visibleChanged, this, [this](bool isVisible) {
        if (!isVisible)
            Q_EMIT closed();
    });
    connect(m_popover, &PopoverWindow::marginChanged, this, &PopoverScene::declareShadow);
    connect(m_popover, &PopoverWindow::minimising, this, &PopoverScene::awaitMinimising);
}

void PopoverScene::declareShadow()
{
    m_windowing.declareShadow(*m_popover, m_popover->margin());
}

void PopoverScene::loseFocus()
{
    m_sinceFocusLoss.start();
    dismiss();
}

void PopoverScene::awaitMinimising()
{
    QTimer::singleShot(minimisingLimit, m_popover, [this] {
        if (!m_windowing.isMinimised(*m_popover))
            m_popover->stayOpen();
        else
            Q_EMIT closed();
    });
}

} // namespace kestrova
