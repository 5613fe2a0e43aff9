#pragma once

#include "Platform/Linux/X11/Connection/X11Connection.h"
#include "ViewModels/ControllerTest.h"
#include "Views/AccessibleItems.h"
#include "Views/Panel.h"
#include "Views/Scenes/PopoverScene.h"
#include "support/ApplicationObject.h"
#include "support/KeyPresses.h"
#include "support/WaitUntil.h"

#include <QScreen>

namespace kestrova {

/// The popover over a controller with fakes, on a desktop whose panel the test may start.
class PopoverSceneTest : public ControllerTest
{
protected:
    ~PopoverSceneTest() override { scene.reset(); }

    void startPanel() { ASSERT_TRUE(panel.start(trayItem)); }

    PopoverWindow *popover()
    {
        for (QWindow *window : QGuiApplication::allWindows()) {
            if (auto *popover = qobject_cast<PopoverWindow *>(window))
                return popover;
        }
        return nullptr;
    }
    bool isOpen() { return popover() && popover()->isVisible() && popover()->isActive(); }
    int gapToPanel()
    {
        return popover()->screen()->availableGeometry().bottom() - popover()->geometry().bottom();
    }
    bool isAtPanel() { return gapToPanel() == PopoverPlacement::distance; }
    bool isHidden() { return !popover() || !popover()->isVisible(); }
    QQuickItem *findButton(const QString &name)
    {
        return findShown(name, popover()->contentItem(), QAccessible::Button);
    }
    /// What the desktop was asked to do that begins so.
    QStringList actionsOn(const QString &beginning)
    {
        QStringList actions = fake.desktop->actions();
        actions.removeIf([&](const QString &action) { return !action.startsWith(beginning); });
        return actions;
    }
    void open()
    {
        scene->toggle();
        ASSERT_TRUE(waitUntil([this] { return isOpen(); }));
    }

    ApplicationObject<QApplication> application;
    Panel panel;
    TrayItem trayItem{*fake.platform.appearance, *fake.platform.windowing};
    SceneEngine engine{controller->appState(), *fake.platform.appearance};
    std::optional<PopoverScene> scene{std::in_place, engine, *controller, *fake.platform.windowing,
                                      trayItem};
    X11Connection connection;
    VirtualKeyboard keyboard{connection.xcb()};
};

} // namespace kestrova
