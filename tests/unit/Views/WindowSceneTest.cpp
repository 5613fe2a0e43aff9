#include "Views/Scenes/WindowScene.h"

#include "ViewModels/ControllerTest.h"
#include "Views/Panel.h"
#include "Views/Settings/SettingsModel.h"
#include "support/ApplicationObject.h"
#include "support/WaitUntil.h"

namespace kestrova {
namespace {

class WindowSceneTest : public ControllerTest
{
protected:
    ~WindowSceneTest() override { scene.reset(); }

    static QWindow *window()
    {
        for (QWindow *window : QGuiApplication::topLevelWindows()) {
            if (window->title() == u"Settings"_s && window->isVisible())
                return window;
        }
        return nullptr;
    }
    void open()
    {
        scene->open();
        ASSERT_TRUE(waitUntil([] { return window() && window()->isActive(); }));
    }
    std::optional<QSize> keptSize()
    {
        return WindowSizes(*fake.platform.userDefaults).size(u"settings"_s);
    }

    ApplicationObject<QApplication> application;
    SceneEngine engine{controller->appState(), *fake.platform.appearance};
    WindowSizes sizes{*fake.platform.userDefaults};
    std::optional<WindowScene> scene{
        std::in_place, engine, sizes,
        WindowScene::Description{
            u"settings"_s, QUrl(u"qrc:/Kestrova/Settings/SettingsView.qml"_s), [this] {
                return std::make_unique<SettingsModel>(
                    *controller,
                    RecorderKeyboard{*fake.platform.keyMonitoring, *fake.platform.windowing});
            }}};
};

TEST_F(WindowSceneTest, AClosedWindowOpensWithTheSizeThatItWasLeftWith)
{
    open();
    window()->resize(820, 640);
    scene->close();
    ASSERT_TRUE(waitUntil([] { return !window(); }));
    EXPECT_EQ(keptSize(), QSize(820, 640));
    open();
    EXPECT_EQ(window()->size(), QSize(820, 640));
}

TEST_F(WindowSceneTest, TheSizeOfAWindowThatIsOpenAtTheEndIsKept)
{
    open();
    window()->resize(820, 640);
    scene.reset();
    EXPECT_EQ(keptSize(), QSize(820, 640));
}

/// At 200 % a screen of 1280 x 800 has room for less than the least size of a window.
struct DoubleScale
{
    DoubleScale() { qputenv("QT_SCALE_FACTOR", "2"); }
    ~DoubleScale() { qunsetenv("QT_SCALE_FACTOR"); }
};

class SmallScreenTest : public DoubleScale, public WindowSceneTest
{
protected:
    static bool isWithinTheScreen()
    {
        return window()->screen()->availableGeometry().contains(window()->frameGeometry());
    }
};

TEST_F(SmallScreenTest, AWindowIsNoLargerThanTheScreen)
{
    open();
    EXPECT_TRUE(waitUntil([] { return isWithinTheScreen(); }));
    EXPECT_GT(window()->width(), 500);
    EXPECT_GT(window()->height(), 300);
}

TEST_F(SmallScreenTest, NorIsOneThatWasLeftOnALargerScreen)
{
    sizes.setSize(u"settings"_s, {1500, 900});
    open();
    EXPECT_TRUE(waitUntil([] { return isWithinTheScreen(); }));
}

} // namespace
} // namespace kestrova
