#pragma once

#include "Views/Popover/PopoverModel.h"
#include "Views/Popover/PopoverWindow.h"
#include "Views/Scenes/SceneEngine.h"
#include "Views/Tray/TrayItem.h"

#include <QElapsedTimer>

#include <memory>

namespace kestrova {

/// The popover beside the tray item: built when it is first opened, hidden when it is dismissed. On
/// a desktop without a tray it is an ordinary window, so that the program can be reached. Main
/// thread.
class PopoverScene : public QObject
{
    Q_OBJECT

public:
    /// How soon after it has lost the keyboard a click on the tray item is the one that took it.
    static constexpr std::chrono::milliseconds clickLimit{300};
    /// How long a window manager may take to minimise a window.
    static constexpr std::chrono::milliseconds minimisingLimit{500};

    /// All of them outlive this.
    PopoverScene(SceneEngine &engine, AppController &controller, Windowing &windowing,
                 TrayItem &trayItem);

    /// As for a click on the tray item: opens it, or closes it when it is open.
    void toggle();
    void open() { openAt({}); }
    /// Where there is no tray: shows the ordinary window and leaves the keyboard where it is.
    void showQuietly();
    /// Gives the keyboard back to the application behind it.
    void dismiss();
    bool isOpen() const;

Q_SIGNALS:
    /// The opened popover has been drawn.
    void shown();
    /// It is hidden or minimised.
    void closed();
    /// The user wants to see the window of this identifier.
    void openWindowRequested(const QString &identifier);

private:
    void openAt(const std::optional<QPoint> &clicked);
    void prepare();
    void build();
    void declareShadow();
    void loseFocus();
    void awaitMinimising();

    SceneEngine &m_engine;
    Windowing &m_windowing;
    TrayItem &m_trayItem;
    PopoverModel m_model;
    std::unique_ptr<QQuickWindow> m_window;
    PopoverWindow *m_popover = nullptr; ///< the same
    QElapsedTimer m_sinceFocusLoss;
};

} // namespace kestrova
