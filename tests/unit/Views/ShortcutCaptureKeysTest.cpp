#include "Views/Recorder/ShortcutCapture.h"

#include "Platform/Linux/X11/Keys/X11KeyEventMonitoring.h"
#include "Platform/Linux/X11/Windows/X11KeyboardHold.h"
#include "Platform/Linux/X11/Windows/X11Windowing.h"
#include "support/ApplicationObject.h"
#include "support/KeyLogProgram.h"
#include "support/KeyPresses.h"
#include "support/WaitUntil.h"
#include "support/WindowProgram.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QWindow>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

/// A window with a recorder, which remembers what reached it all the same.
class RecorderWindow final : public QWindow
{
public:
    int keyPresses = 0;
    int closeRequests = 0;

protected:
    void keyPressEvent(QKeyEvent *) override { ++keyPresses; }
    void closeEvent(QCloseEvent *event) override
    {
        ++closeRequests;
        event->ignore();
    }
};

// Alt+F4 is the window manager's: it asks the window in front to close.
class ShortcutCaptureKeysTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_window.resize(200, 100);
        m_window.show();
        EXPECT_TRUE(waitUntil([this] { return QGuiApplication::focusWindow() == &m_window; }));
        waitForWindowManager();
        m_window.closeRequests = 0;
        m_window.keyPresses = 0;
    }

    /// When the keyboard that is used is another one than before, it takes a while until its
    /// shortcuts work.
    void waitForWindowManager()
    {
        int taps = 0;
        int taken = 0;
        const auto monitor = m_monitoring.addGlobalMonitor(KeyEvent::keyDown,
                                                           [&taken](const KeyEvent &) { ++taken; });
        EXPECT_TRUE(waitUntil([&] {
            tapAltF4();
            ++taps;
            return m_window.closeRequests > 0;
        }));
        EXPECT_TRUE(waitUntil(
            [&] { return taken + m_ownPresses == taps && m_window.closeRequests == taken; }));
    }

    void tapAltF4() { tapChord(m_keyboard, {key::leftAlt, key::f4}); }
    /// Whether the program cannot have the whole keyboard, because another one has it.
    static bool isRefused(KeyLogProgram &program)
    {
        try {
            program.grabKeyboard();
        } catch (const std::runtime_error &) {
            return true;
        }
        program.ungrabKeyboard();
        return false;
    }
    /// Without a grab the window never would.
    bool comesToGetAltF4()
    {
        m_ownPresses = 0;
        return waitUntil([this] {
            tapAltF4();
            return m_ownPresses > 0;
        });
    }
    bool captures(const QString &shortcut)
    {
        return waitUntil([&] { return m_capture.displayText() == shortcut; });
    }

    ApplicationObject<QGuiApplication> m_application{"xcb"};
    X11Connection m_connection;
    VirtualKeyboard m_keyboard{m_connection.xcb()};
    PostedKeys m_postedKeys;
    X11KeyEventMonitoring m_monitoring{m_postedKeys};
    RecorderWindow m_window;
    int m_ownPresses = 0; ///< that the window got
    std::unique_ptr<KeyEventMonitoring::Monitor> m_ownMonitor =
        m_monitoring.addLocalMonitor(KeyEvent::keyDown, [this](const KeyEvent &) {
            ++m_ownPresses;
            return false;
        });
    DesktopEntries m_entries;
    X11Windows m_windows{m_connection, m_entries};
    X11Windowing m_windowing{m_windows};
    ShortcutCapture m_capture{{m_monitoring, m_windowing}};
};

TEST_F(ShortcutCaptureKeysTest, AShortcutOfTheWindowManagerIsCapturedAndHasNoEffect)
{
    m_capture.start(&m_window);
    tapAltF4();
    EXPECT_TRUE(captures(u"⌥Key 118"_s));
    tap(m_keyboard, key::a);
    EXPECT_TRUE(captures(u"Waiting for input..."_s));
    EXPECT_EQ(m_window.closeRequests, 0);
    EXPECT_EQ(m_window.keyPresses, 0);
}

TEST_F(ShortcutCaptureKeysTest, OnceItIsStoppedTheWindowManagerHasItsShortcutsBack)
{
    m_capture.start(&m_window);
    tapAltF4();
    EXPECT_TRUE(captures(u"⌥Key 118"_s));
    m_capture.stop();
    QCoreApplication::processEvents();
    tapAltF4();
    EXPECT_TRUE(waitUntil([&] { return m_window.closeRequests == 1; }));
}

TEST_F(ShortcutCaptureKeysTest, WithoutTheFocusItTakesNoKeyFromOthers)
{
    KeyLogProgram locker;
    m_window.requestActivate();
    EXPECT_TRUE(waitUntil([&] { return QGuiApplication::focusWindow() == &m_window; }));
    m_capture.start(&m_window);
    EXPECT_TRUE(isRefused(locker));
    const WindowProgram other(m_connection, u"other"_s, u"Other"_s);
    EXPECT_TRUE(waitUntil([&] { return !isRefused(locker); }));
    tapChord(m_keyboard, {key::leftControl, key::a});
    EXPECT_TRUE(captures(u"⌃A"_s));
}

TEST_F(ShortcutCaptureKeysTest, WhenTheFocusComesBackTheKeysDoToo)
{
    m_capture.start(&m_window);
    {
        const WindowProgram other(m_connection, u"other"_s, u"Other"_s);
        EXPECT_TRUE(waitUntil([&] { return QGuiApplication::focusWindow() == nullptr; }));
    }
    EXPECT_TRUE(comesToGetAltF4());
}

TEST_F(ShortcutCaptureKeysTest, ItWaitsForTheKeyboardWhileAnotherProgramHasGrabbedIt)
{
    KeyLogProgram menu;
    m_window.requestActivate();
    EXPECT_TRUE(waitUntil([&] { return QGuiApplication::focusWindow() == &m_window; }));
    menu.grabKeyboard();
    m_capture.start(&m_window);
    tapChord(m_keyboard, {key::leftControl, key::a});
    EXPECT_TRUE(captures(u"⌃A"_s)); // which the menu got
    menu.ungrabKeyboard();
    EXPECT_TRUE(comesToGetAltF4());
}

TEST_F(ShortcutCaptureKeysTest, WhileNoKeyComesTheKeyboardIsLeftToAScreenLocker)
{
    KeyLogProgram locker;
    m_window.requestActivate();
    EXPECT_TRUE(waitUntil([&] { return QGuiApplication::focusWindow() == &m_window; }));
    X11KeyboardHold hold(m_window, std::chrono::milliseconds(50));
    EXPECT_TRUE(isRefused(locker));
    EXPECT_TRUE(waitUntil([&] { return !isRefused(locker); }));
    hold.renew();
    EXPECT_TRUE(isRefused(locker));
}

TEST_F(ShortcutCaptureKeysTest, TheHidingOfTheWindowCancels)
{
    bool isCancelled = false;
    QObject::connect(&m_capture, &ShortcutCapture::cancelled, &m_capture,
                     [&] { isCancelled = true; });
    m_capture.start(&m_window);
    m_window.hide();
    EXPECT_TRUE(isCancelled);
}

} // namespace
} // namespace kestrova
