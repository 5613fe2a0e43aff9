#pragma once

#include "ViewModels/ControllerTest.h"
#include "Views/Scenes/SceneEngine.h"
#include "support/ApplicationObject.h"
#include "support/Outline.h"

#include <QApplication>

namespace kestrova {

/// A real window, without a screen, over a controller with fakes.
class WindowOutlineTest : public ControllerTest
{
protected:
    void show(const QString &document, QObject &model)
    {
        if (!engine)
            engine.emplace(state(), *fake.platform.appearance);
        window = engine->buildWindow(QUrl(u"qrc:/Kestrova/"_s + document), model);
        window->show();
    }
    QStringList outline() { return kestrova::outline(*window); }
    QStringList symbols() { return kestrova::symbols(*window); }
    bool shows(const QString &line) { return outline().contains(line); }
    /// Does what follows from the press, too.
    void press(const QString &line)
    {
        EXPECT_TRUE(pressItem(*window, line)) << line.toStdString();
        settle();
    }

private:
    struct Offscreen
    {
        Offscreen() { qputenv("QT_QPA_PLATFORM", "offscreen"); }
    };
    Offscreen offscreen;
    ApplicationObject<QApplication> application;
    std::optional<SceneEngine> engine; // of the controller that there is by then

protected:
    std::unique_ptr<QQuickWindow> window;
};

} // namespace kestrova
