#include "Platform/Linux/X11/Keys/X11KeyEventMonitoring.h"

#include "Models/Settings/HotkeyShortcut.h"
#include "Platform/Linux/X11/Keys/X11KeyEventPosting.h"
#include "support/ApplicationObject.h"
#include "support/KeyLogProgram.h"
#include "support/KeyPresses.h"
#include "support/PrivateXServer.h"
#include "support/RunOrThrow.h"
#include "support/WaitUntil.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QShortcut>
#include <QWindow>

#include <gmock/gmock.h>

#include <algorithm>

namespace kestrova {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr quint32 shift = HotkeyShortcut::shift;
constexpr quint32 command = HotkeyShortcut::command;

constexpr KeyEvent aKey{0};
constexpr KeyEvent qKey{12};
constexpr KeyEvent altF4{118, HotkeyShortcut::option};
constexpr KeyEvent flags{.type = KeyEvent::flagsChanged};

/// A window of our own, which remembers what Qt gave it.
class OwnWindow final : public QWindow
{
public:
    explicit OwnWindow(Qt::WindowFlags flags = {})
    {
        setFlags(flags);
        resize(100, 100);
    }

    QList<int> keys; ///< Qt::Key of each press
    int closeRequests = 0;

protected:
    void closeEvent(QCloseEvent *event) override
    {
        ++closeRequests;
        event->ignore();
    }
    void keyPressEvent(QKeyEvent *event) override { keys.append(event->key()); }
};

class X11LocalKeysTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_window.show();
        takeFocus(m_window);
    }

    void takeFocus(QWindow &window)
    {
        window.requestActivate();
        if (!waitUntil([&] { return window.isExposed() && focus() == window.winId(); }))
            throw std::runtime_error("the window did not get the keyboard");
    }

    /// Qt learns only some time later what has the keyboard.
    WId focus()
    {
        const XcbPointer<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(
            m_connection.xcb(), xcb_get_input_focus(m_connection.xcb()), nullptr));
        return reply->focus;
    }

    /// As soon as a key has come either way, all before it have.
    void waitForF12()
    {
        constexpr quint32 f12 = 111;
        const auto isF12 = [](const KeyEvent &event) { return event.keyCode == f12; };
        tap(m_keyboard, key::f12);
        EXPECT_TRUE(waitUntil([&] {
            return std::any_of(m_local.begin(), m_local.end(), isF12) ||
                   std::any_of(m_global.begin(), m_global.end(), isF12);
        }));
        std::erase_if(m_local, isF12);
        std::erase_if(m_global, isF12);
    }

    void observeFlags()
    {
        m_flagMonitors.push_back(
            m_monitoring.addLocalMonitor(KeyEvent::flagsChanged, [this](const KeyEvent &event) {
                m_local.push_back(event);
                return false;
            }));
        m_flagMonitors.push_back(m_monitoring.addGlobalMonitor(
            KeyEvent::flagsChanged, [this](const KeyEvent &event) { m_global.push_back(event); }));
    }

    /// Alt+F4 is the window manager's: it asks the window to close. When the keyboard that is used
    /// is another one than before, it takes a while until that works.
    void waitForWindowManager()
    {
        std::size_t taps = 0;
        EXPECT_TRUE(waitUntil([&] {
            tapChord(m_keyboard, {key::leftAlt, key::f4});
            ++taps;
            return m_window.closeRequests > 0;
        }));
        // For each that the window manager takes, it asks the window to close.
        EXPECT_TRUE(waitUntil([&] {
            return m_global.size() + m_local.size() == taps &&
                   std::size_t(m_window.closeRequests) == m_global.size();
        }));
        m_global.clear();
        m_local.clear();
        m_window.keys.clear();
    }

    ApplicationObject<QGuiApplication> m_application{"xcb"};
    X11Connection m_connection;
    VirtualKeyboard m_keyboard{m_connection.xcb()};
    PostedKeys m_postedKeys;
    X11KeyEventMonitoring m_monitoring{m_postedKeys};
    OwnWindow m_window;

    std::vector<KeyEvent> m_local;
    std::vector<KeyEvent> m_global;
    quint32 m_consumed = 9999; ///< the key code that the local monitor keeps from the window
    std::unique_ptr<KeyEventMonitoring::Monitor> m_localMonitor =
        m_monitoring.addLocalMonitor(KeyEvent::keyDown, [this](const KeyEvent &event) {
            m_local.push_back(event);
            return event.keyCode == m_consumed;
        });
    std::unique_ptr<KeyEventMonitoring::Monitor> m_globalMonitor = m_monitoring.addGlobalMonitor(
        KeyEvent::keyDown, [this](const KeyEvent &event) { m_global.push_back(event); });
    std::vector<std::unique_ptr<KeyEventMonitoring::Monitor>> m_flagMonitors;
};

TEST_F(X11LocalKeysTest, AKeyOfOurWindowIsReportedThereOnlyAndTheWindowGetsIt)
{
    tap(m_keyboard, key::a);
    tapChord(m_keyboard, {key::leftSuper, key::leftShift, key::space});
    waitForF12();
    EXPECT_THAT(m_local, ElementsAre(aKey, KeyEvent{49, command | shift}));
    EXPECT_THAT(m_global, IsEmpty());
    EXPECT_THAT(m_window.keys, Contains(Qt::Key_A));
    EXPECT_THAT(m_window.keys, Contains(Qt::Key_Space));
}

TEST_F(X11LocalKeysTest, AConsumedKeyDoesNotReachTheWindow)
{
    m_consumed = aKey.keyCode;
    tap(m_keyboard, key::a);
    tap(m_keyboard, key::q);
    waitForF12();
    EXPECT_THAT(m_local, ElementsAre(aKey, qKey));
    EXPECT_THAT(m_window.keys, ElementsAre(Qt::Key_Q, Qt::Key_F12));
}

TEST_F(X11LocalKeysTest, AConsumedKeyIsNoShortcutOfTheWindowAndAnyOtherIs)
{
    int found = 0;
    QShortcut shortcut(QKeySequence(Qt::CTRL | Qt::Key_A), &m_window);
    QObject::connect(&shortcut, &QShortcut::activated, &m_window, [&] { ++found; });
    tapChord(m_keyboard, {key::leftControl, key::a});
    waitForF12();
    EXPECT_EQ(found, 1);
    m_consumed = aKey.keyCode;
    tapChord(m_keyboard, {key::leftControl, key::a});
    waitForF12();
    EXPECT_EQ(found, 1);
    const KeyEvent controlA{0, HotkeyShortcut::control};
    EXPECT_THAT(m_local, ElementsAre(controlA, controlA));
    EXPECT_THAT(m_window.keys, Not(Contains(Qt::Key_A)));
}

TEST_F(X11LocalKeysTest, AGrabbedShortcutIsReportedOnceAndTheWindowDoesNotGetIt)
{
    const auto grabbed = m_monitoring.grab({HotkeyShortcut::defaultMain()});
    tapChord(m_keyboard, {key::leftSuper, key::leftShift, key::space});
    EXPECT_TRUE(waitUntil([this] { return !m_global.empty(); }));
    waitForF12();
    EXPECT_THAT(m_global, ElementsAre(KeyEvent{49, command | shift}));
    EXPECT_THAT(m_local, IsEmpty());
    EXPECT_THAT(m_window.keys, Not(Contains(Qt::Key_Space)));
}

TEST_F(X11LocalKeysTest, EachProgramsKeysAreReportedTheirWay)
{
    {
        KeyLogProgram other;
        tap(m_keyboard, key::a);
        waitForF12();
        EXPECT_THAT(other.keys(), Contains(QStringLiteral("press 38 0")));
    }
    takeFocus(m_window);
    tap(m_keyboard, key::q);
    waitForF12();
    EXPECT_THAT(m_global, ElementsAre(aKey));
    EXPECT_THAT(m_local, ElementsAre(qKey));
}

TEST_F(X11LocalKeysTest, UnderAnotherProgramsGrabOurWindowsKeysAreTheirs)
{
    KeyLogProgram menu;
    takeFocus(m_window);
    menu.grabKeyboard();
    tap(m_keyboard, key::a);
    waitForF12();
    EXPECT_THAT(m_global, ElementsAre(aKey));
    EXPECT_THAT(m_local, IsEmpty());
    menu.ungrabKeyboard();
    tap(m_keyboard, key::q);
    waitForF12();
    EXPECT_THAT(m_global, ElementsAre(aKey));
    EXPECT_THAT(m_local, ElementsAre(qKey));
}

TEST_F(X11LocalKeysTest, AMenuOfOursThatGrabsTheKeyboardGetsItsKeys)
{
    KeyLogProgram other;
    OwnWindow menu(Qt::Popup | Qt::BypassWindowManagerHint);
    menu.show();
    ASSERT_TRUE(waitUntil([&] { return menu.isExposed(); }));
    ASSERT_TRUE(waitUntil([&] { return menu.setKeyboardGrabEnabled(true); }));
    tap(m_keyboard, key::a);
    waitForF12();
    EXPECT_THAT(m_local, ElementsAre(aKey));
    EXPECT_THAT(m_global, IsEmpty());
    EXPECT_THAT(other.keys(), IsEmpty());
}

TEST_F(X11LocalKeysTest, APopoverBesideTheWindowManagerGetsItsKeys)
{
    OwnWindow popover(Qt::ToolTip | Qt::BypassWindowManagerHint);
    popover.show();
    ASSERT_TRUE(waitUntil([&] { return popover.isExposed(); }));
    xcb_set_input_focus(m_connection.xcb(), XCB_INPUT_FOCUS_PARENT, xcb_window_t(popover.winId()),
                        XCB_CURRENT_TIME);
    tap(m_keyboard, key::a);
    waitForF12();
    EXPECT_THAT(m_local, ElementsAre(aKey));
    EXPECT_THAT(m_global, IsEmpty());
}

TEST_F(X11LocalKeysTest, ModifiersThatGoDownAndUpAreReportedInOrderToThoseWhoAsk)
{
    observeFlags();
    tapChord(m_keyboard, {key::leftSuper, key::leftShift, key::space});
    tap(m_keyboard, key::capsLock);
    waitForF12();
    EXPECT_THAT(m_local, ElementsAre(flags, flags, KeyEvent{49, command | shift}, flags, flags,
                                     flags, flags));
    EXPECT_THAT(m_global, IsEmpty());
    EXPECT_THAT(m_window.keys, Contains(Qt::Key_Shift));
}

TEST_F(X11LocalKeysTest, ModifiersOfOtherProgramsAreReportedTheirWay)
{
    observeFlags();
    {
        const KeyLogProgram other;
        tapChord(m_keyboard, {key::leftShift, key::a});
        waitForF12();
    }
    EXPECT_THAT(m_global, ElementsAre(flags, KeyEvent{0, shift}, flags));
    EXPECT_THAT(m_local, IsEmpty());
}

TEST_F(X11LocalKeysTest, AConsumedModifierDoesNotReachTheWindow)
{
    const auto consuming =
        m_monitoring.addLocalMonitor(KeyEvent::flagsChanged, [](const KeyEvent &) { return true; });
    tapChord(m_keyboard, {key::leftShift, key::a});
    waitForF12();
    EXPECT_THAT(m_window.keys, ElementsAre(Qt::Key_A, Qt::Key_F12));
}

TEST_F(X11LocalKeysTest, TheModifiersOfOurOwnChordAreNotReported)
{
    observeFlags();
    X11KeyEventPosting posting(m_postedKeys);
    ASSERT_EQ(posting.postCommandV({}), KeyEventPosting::Outcome::sent);
    waitForF12();
    EXPECT_THAT(m_window.keys, Contains(Qt::Key_Shift));
    EXPECT_THAT(m_local, IsEmpty());
    EXPECT_THAT(m_global, IsEmpty());
}

TEST_F(X11LocalKeysTest, AShortcutOfTheWindowManagerIsSeenAlthoughOurWindowHasTheFocus)
{
    waitForWindowManager();
    tapChord(m_keyboard, {key::leftAlt, key::f4});
    EXPECT_TRUE(waitUntil([&] { return !m_global.empty(); }));
    waitForF12();
    KeyEvent taken = altF4;
    taken.isReserved = true;
    EXPECT_THAT(m_global, ElementsAre(taken));
    EXPECT_THAT(m_local, IsEmpty());
    EXPECT_THAT(m_window.keys, Not(Contains(Qt::Key_F4)));
}

TEST_F(X11LocalKeysTest, AGrabOfOurWindowKeepsShortcutsFromTheWindowManager)
{
    waitForWindowManager();
    ASSERT_TRUE(waitUntil([&] { return m_window.setKeyboardGrabEnabled(true); }));
    m_window.closeRequests = 0;
    tapChord(m_keyboard, {key::leftAlt, key::f4});
    EXPECT_TRUE(waitUntil([&] { return !m_local.empty(); }));
    m_window.setKeyboardGrabEnabled(false);
    const KeyLogProgram other;
    EXPECT_TRUE(waitUntil([&] {
        tap(m_keyboard, key::a);
        return !m_global.empty();
    }));
    EXPECT_EQ(m_local.front(), altF4);
    EXPECT_THAT(m_global, Each(aKey));
    EXPECT_EQ(m_window.closeRequests, 0);
}

TEST_F(X11LocalKeysTest, CapsLockAndNumLockMakeNoDifference)
{
    tap(m_keyboard, key::capsLock);
    tap(m_keyboard, key::numLock);
    tapChord(m_keyboard, {key::leftSuper, key::leftShift, key::space});
    waitForF12();
    EXPECT_THAT(m_local, ElementsAre(KeyEvent{49, command | shift}));
}

TEST_F(X11LocalKeysTest, AHeldKeyRepeatsUntilItIsReleased)
{
    m_keyboard.press(key::a);
    EXPECT_TRUE(waitUntil([&] { return m_local.size() >= 4; }));
    m_keyboard.release(key::a);
    waitForF12();
    EXPECT_EQ(m_local.front(), aKey);
    EXPECT_THAT(std::vector(m_local.begin() + 1, m_local.end()), Each(KeyEvent{0, 0, true}));
    m_local.clear();
    tap(m_keyboard, key::a);
    waitForF12();
    EXPECT_THAT(m_local, ElementsAre(aKey));
    EXPECT_THAT(m_global, IsEmpty());
}

TEST_F(X11LocalKeysTest, OurOwnChordIsNotReportedAndTheSameChordOfTheUserIs)
{
    X11KeyEventPosting posting(m_postedKeys);
    ASSERT_EQ(posting.postCommandV({}), KeyEventPosting::Outcome::sent);
    waitForF12();
    EXPECT_THAT(m_local, IsEmpty());
    EXPECT_THAT(m_global, IsEmpty());
    EXPECT_THAT(m_window.keys, Contains(Qt::Key_Insert));
    tapChord(m_keyboard, {key::leftShift, key::insert});
    waitForF12();
    EXPECT_THAT(m_local, ElementsAre(KeyEvent{114, shift}));
}

TEST_F(X11LocalKeysTest, AChordThatAnotherProgramGotDoesNotHideTheUsersOne)
{
    {
        const KeyLogProgram other;
        X11KeyEventPosting posting(m_postedKeys);
        ASSERT_EQ(posting.postCommandV({}), KeyEventPosting::Outcome::sent);
        waitForF12();
    }
    takeFocus(m_window);
    tapChord(m_keyboard, {key::leftShift, key::insert});
    waitForF12();
    EXPECT_THAT(m_local, ElementsAre(KeyEvent{114, shift}));
    EXPECT_THAT(m_global, IsEmpty());
}

TEST_F(X11LocalKeysTest, LayoutsMayChangeWhileItRuns)
{
    for (const char *layout : {"us", "de", "fr", "ru", "us -variant dvorak"}) {
        SCOPED_TRACE(layout);
        m_local.clear();
        runOrThrow(std::string("setxkbmap ") + layout);
        for (const xcb_keycode_t letter : {key::a, key::q, key::period})
            tap(m_keyboard, letter);
        waitForF12();
        EXPECT_THAT(m_local, ElementsAre(aKey, qKey, KeyEvent{47}));
    }
}

TEST_F(X11LocalKeysTest, KeysMayGetOtherKeyCodesWhileItRuns)
{
    constexpr xcb_keycode_t xfree86Up = 98;
    waitForF12(); // the keymap of before has been read
    runOrThrow("setxkbmap -keycodes xfree86");
    tap(m_keyboard, xfree86Up);
    waitForF12();
    EXPECT_THAT(m_local, ElementsAre(KeyEvent{126}));
}

TEST_F(X11LocalKeysTest, AMonitorThatHasEndedSeesNothing)
{
    m_localMonitor.reset();
    tap(m_keyboard, key::a);
    EXPECT_TRUE(waitUntil([&] { return m_window.keys.contains(Qt::Key_A); }));
    EXPECT_THAT(m_local, IsEmpty());
}

struct DisplayWithoutRecord
{
    DisplayWithoutRecord() { qputenv("DISPLAY", server.displayName()); }

    const PrivateXServer server{"-extension", "RECORD"};
};

class X11LocalKeysWithoutRecordTest : DisplayWithoutRecord, public X11LocalKeysTest
{
};

// Such a server has no synthetic keys either, so this one comes from another client.
TEST_F(X11LocalKeysWithoutRecordTest, OurOwnWindowsKeysAreSeen)
{
    EXPECT_EQ(m_globalMonitor, nullptr);
    xcb_key_press_event_t press = {};
    press.response_type = XCB_KEY_PRESS;
    press.detail = key::a;
    press.root = m_connection.root();
    press.event = xcb_window_t(m_window.winId());
    press.same_screen = 1;
    xcb_send_event(m_connection.xcb(), /*propagate=*/0, press.event, XCB_EVENT_MASK_KEY_PRESS,
                   reinterpret_cast<const char *>(&press));
    xcb_flush(m_connection.xcb());
    EXPECT_TRUE(waitUntil([&] { return m_window.keys == QList<int>{Qt::Key_A}; }));
    EXPECT_THAT(m_local, ElementsAre(aKey));
}

} // namespace
} // namespace kestrova
