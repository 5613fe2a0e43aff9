#pragma once

#include "Platform/Platform.h"
#include "ViewModels/AppController.h"
#include "Views/Scenes/PopoverScene.h"
#include "Views/Scenes/SceneEngine.h"
#include "Views/Scenes/WindowScene.h"
#include "Views/Scenes/WindowSizes.h"
#include "Views/Tray/TrayItem.h"
#include "Views/Tray/Windows.h"

#include <QTimer>

#include <chrono>
#include <memory>
#include <vector>

namespace kestrova {

/// The popover and the windows themselves. Needs a QApplication.
class Scenes final : public Windows
{
public:
    /// How long after a window has been asked for from the popover it is brought to the front
    /// again, over what got the keyboard when the popover went.
    static constexpr std::chrono::milliseconds frontDelay{100};
    /// How long after the last window has gone the memory that none needs is given back.
    static constexpr std::chrono::milliseconds restDelay{5000};

    /// All of them outlive this.
    Scenes(AppController &controller, Platform &platform, TrayItem &trayItem,
           std::chrono::milliseconds rest = restDelay);

    bool open(const QString &identifier) override;
    bool close(const QString &identifier) override;
    void togglePopover() override;
    void showPopoverQuietly() override;

private:
    /// Tells when that fails; always true.
    bool show(const std::function<void()> &showing);
    void add(WindowScene::Description description);
    void openFromPopover(const QString &identifier);
    void rest();
    WindowScene *find(const QString &identifier);

    static inline const QString popover = QStringLiteral("popover");

    SceneEngine m_engine;
    WindowSizes m_sizes;
    std::vector<std::unique_ptr<WindowScene>> m_windows;
    PopoverScene m_popover;
    QTimer m_untilRest;
};

} // namespace kestrova
