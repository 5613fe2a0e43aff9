#include "Views/Popover/PopoverWindow.h"

#include <QScreen>
#include <QtMath>

namespace kestrova {

namespace {

constexpr Qt::WindowFlags popoverFlags =
    Qt::Tool | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint;
constexpr Qt::WindowFlags ordinaryFlags = Qt::Window | Qt::MSWindowsFixedSizeDialogHint;
constexpr int entryDistance = 4;

} // namespace

PopoverWindow::PopoverWindow(QWindow *parent) : QQuickWindow(parent)
{
    setFlags(popoverFlags);
    // A compositing manager may come while it exists.
    QSurfaceFormat format = requestedFormat();
    format.setAlphaBufferSize(8);
    setFormat(format);
    connect(this, &PopoverWindow::layoutChanged, this, &PopoverWindow::place);
    connect(this, &PopoverWindow::marginChanged, this, &PopoverWindow::place);
    m_withoutFocus.setSingleShot(true);
    m_withoutFocus.setInterval(focusGrace);
    connect(this, &QWindow::activeChanged, this, &PopoverWindow::watchFocus);
    connect(&m_withoutFocus, &QTimer::timeout, this, [this] {
        if (!isOrdinary() && isVisible())
            Q_EMIT focusLost();
    });
}

void PopoverWindow::watchFocus()
{
    if (isActive())
        m_withoutFocus.stop();
    else
        m_withoutFocus.start();
}

QPoint PopoverWindow::entryOffset() const
{
    if (isOrdinary())
        return {};
    switch (m_placement->edge()) {
    case ScreenEdge::top:
        return {0, -entryDistance};
    case ScreenEdge::bottom:
        return {0, entryDistance};
    case ScreenEdge::left:
        return {-entryDistance, 0};
    case ScreenEdge::right:
        return {entryDistance, 0};
    }
    Q_UNREACHABLE();
}

void PopoverWindow::openAt(const PopoverPlacement &placement)
{
    setPlacement(placement);
    setFlags(popoverFlags);
    m_withoutFocus.stop();
    if (!isVisible())
        Q_EMIT opening();
    present();
}

void PopoverWindow::becomeOrdinary()
{
    setPlacement(std::nullopt);
    setFlags(ordinaryFlags);
    if (!isVisible()) {
        m_isSizedByOthers = false;
        m_askedSize = {};
    }
}

void PopoverWindow::openOrdinary()
{
    becomeOrdinary();
    present();
}

void PopoverWindow::showQuietly()
{
    if (isVisible())
        return;
    becomeOrdinary();
    place();
    // Tells the window manager that it is not the user who shows it; Qt has no other name for this.
    constexpr auto withoutActivating = "_q_showWithoutActivating";
    setProperty(withoutActivating, true);
    show();
    setProperty(withoutActivating, false);
}

void PopoverWindow::dismiss()
{
    if (isOrdinary())
        minimise();
    else
        hide();
}

void PopoverWindow::minimise()
{
    m_isMinimising = true;
    showMinimized();
    Q_EMIT minimising();
}

void PopoverWindow::stayOpen()
{
    if (!m_isMinimising)
        return; // it has been opened again
    m_isMinimising = false;
    setWindowStates(Qt::WindowNoState); // which maps it
    if (m_isClosing)
        hide();
}

bool PopoverWindow::event(QEvent *event)
{
    if (event->type() == QEvent::Close && isOrdinary()) {
        // There is no tray item that could open it again.
        event->ignore();
        m_isClosing = true;
        minimise();
        return true;
    }
    return QQuickWindow::event(event);
}

void PopoverWindow::resizeEvent(QResizeEvent *event)
{
    QQuickWindow::resizeEvent(event);
    m_isSizedByOthers = isOrdinary() && event->size() != m_askedSize;
    // What was asked for first may come when the content has changed again.
    if (isOrdinary() && !m_isSizedByOthers)
        place();
}

void PopoverWindow::setPlacement(const std::optional<PopoverPlacement> &placement)
{
    const bool wasOrdinary = isOrdinary();
    m_placement = placement;
    if (isOrdinary() != wasOrdinary)
        Q_EMIT isOrdinaryChanged();
}

void PopoverWindow::place()
{
    const int tallest =
        m_placement ? m_placement->maximumHeight()
                    : int(screen()->availableSize().height() * PopoverPlacement::largestShare);
    const QSize popover(popoverWidth, qMin(qCeil(m_fullHeight), tallest));
    const QSize all = popover.grownBy({m_margin, m_margin, m_margin, m_margin});
    if (m_placement) {
        setGeometry(QRect(m_placement->position(popover) - QPoint(m_margin, m_margin), all));
    } else if (!m_isSizedByOthers && all != m_askedSize) {
        m_askedSize = all;
        resize(all);
    }
}

void PopoverWindow::present()
{
    m_isMinimising = false;
    m_isClosing = false;
    place();
    if (windowStates() & Qt::WindowMinimized)
        showNormal();
    else
        show();
    raise();
    requestActivate();
}

} // namespace kestrova
