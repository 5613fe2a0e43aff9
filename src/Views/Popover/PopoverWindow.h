#pragma once

#include "Views/Popover/PopoverPlacement.h"

#include <QQuickWindow>
#include <QTimer>

namespace kestrova {

/// The window of the popover. Beside the tray item it has no frame, and is as high as its content
/// would like as far as there is room; on a desktop without a tray it is an ordinary window. Main
/// thread.
class PopoverWindow : public QQuickWindow
{
    Q_OBJECT
    QML_ELEMENT
    /// The height at which all of the content can be seen.
    Q_PROPERTY(qreal fullHeight MEMBER m_fullHeight NOTIFY layoutChanged)
    /// Around the popover, within the window: room for a shadow.
    Q_PROPERTY(int margin MEMBER m_margin NOTIFY marginChanged)
    /// From the popover's place to where it comes from when it opens: a little towards the panel.
    Q_PROPERTY(QPoint entryOffset READ entryOffset NOTIFY opening)
    Q_PROPERTY(bool isOrdinary READ isOrdinary NOTIFY isOrdinaryChanged)

public:
    static constexpr int popoverWidth = 360;
    /// How long it has to be without the keyboard to have lost it: when it is opened again soon,
    /// the news of its last closing is still on the way.
    static constexpr std::chrono::milliseconds focusGrace{200};

    explicit PopoverWindow(QWindow *parent = nullptr);

    bool isOrdinary() const { return !m_placement.has_value(); }
    int margin() const { return m_margin; }
    QPoint entryOffset() const;

    /// Shows it with the keyboard, and keeps it in its place while its content changes.
    void openAt(const PopoverPlacement &placement);
    /// Shows it as an ordinary window. As such it grows and shrinks with its content until somebody
    /// else, the user or a window manager that tiles, has given it a size.
    void openOrdinary();
    /// The same, but whoever has the keyboard keeps it. Nothing happens to one that is shown.
    void showQuietly();
    /// Hides it, which gives the keyboard back; an ordinary one is to be minimised.
    void dismiss();
    /// After minimising(): the desktop does not minimise windows. One that was closed is hidden,
    /// and any other stays as it is.
    void stayOpen();

Q_SIGNALS:
    void layoutChanged();
    void marginChanged();
    void isOrdinaryChanged();
    /// It is about to be shown beside the tray item.
    void opening();
    /// The user has turned to another window. An ordinary one does not tell.
    void focusLost();
    /// The desktop has been asked to minimise it.
    void minimising();

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void setPlacement(const std::optional<PopoverPlacement> &placement);
    void becomeOrdinary();
    void minimise();
    void place();
    void present();
    void watchFocus();

    std::optional<PopoverPlacement> m_placement;
    qreal m_fullHeight = 0;
    int m_margin = 0;
    QSize m_askedSize;
    bool m_isSizedByOthers = false;
    bool m_isMinimising = false; ///< Qt's own state follows whatever the window manager tells
    bool m_isClosing = false;
    QTimer m_withoutFocus;
};

} // namespace kestrova
