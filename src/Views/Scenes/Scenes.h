#pragma once

#include "Platform/Platform.h"
#include "ViewModels/AppController.h"
#include "Views/Scenes/SceneEngine.h"
#include "Views/Scenes/TrayItem.h"
#include "Views/Scenes/WindowScene.h"
#include "Views/Scenes/WindowSizes.h"

#include <memory>
#include <vector>

namespace kestrova {

/// Everything that the user sees: the icon in the panel with its popover, and the windows by their
/// identifiers "dashboard" and "settings". Needs a QApplication. Main thread.
class Scenes : public QObject
{
    Q_OBJECT

public:
    /// Both outlive this.
    Scenes(AppController &controller, Platform &platform);

    /// Shows the window and brings it to the front; false when there is none of that name.
    bool open(const QString &identifier);
    /// Closes the window if it is open; false when there is none of that name.
    bool close(const QString &identifier);

Q_SIGNALS:
    /// An opened window has been drawn.
    void shown(const QString &identifier);

private:
    void add(WindowScene::Description description);
    WindowScene *find(const QString &identifier);

    SceneEngine m_engine;
    WindowSizes m_sizes;
    std::vector<std::unique_ptr<WindowScene>> m_windows;
    TrayItem m_trayItem;
};

} // namespace kestrova
