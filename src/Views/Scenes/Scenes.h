#pragma once

#include "Platform/Platform.h"
#include "ViewModels/AppController.h"
#include "Views/Scenes/PopoverScene.h"
#include "Views/Scenes/SceneEngine.h"
#include "Views/Scenes/TrayItem.h"
#include "Views/Scenes/WindowScene.h"
#include "Views/Scenes/WindowSizes.h"

#include <memory>
#include <vector>

namespace kestrova {

/// Everything that the user sees: the icon in the panel, and by their identifiers its "popover" and
/// the windows "dashboard" and "settings". Needs a QApplication. Main thread.
class Scenes : public QObject
{
    Q_OBJECT

public:
    /// How long after a window has been asked for from the popover it is brought to the front
    /// again, over what got the keyboard when the popover went.
    static constexpr std::chrono::milliseconds frontDelay{100};

    /// Both outlive this.
    Scenes(AppController &controller, Platform &platform);

    /// Shows the window and brings it to the front; false when there is none of that name.
    bool open(const QString &identifier);
    /// After the start of the program: shows the popover by itself to a user who has something to
    /// set up, and where no panel comes up in time, without which the program could not be reached.
    void greet() { m_popover.greet(); }
    /// Closes the window if it is open; false when there is none of that name.
    bool close(const QString &identifier);

Q_SIGNALS:
    /// An opened window has been drawn.
    void shown(const QString &identifier);

private:
    void add(WindowScene::Description description);
    void openFromPopover(const QString &identifier);
    WindowScene *find(const QString &identifier);

    static inline const QString popover = QStringLiteral("popover");

    SceneEngine m_engine;
    WindowSizes m_sizes;
    std::vector<std::unique_ptr<WindowScene>> m_windows;
    TrayItem m_trayItem;
    PopoverScene m_popover;
};

} // namespace kestrova
