#include "Platform/Linux/X11/Keys/X11KeyEventMonitoring.h"

#include "Models/Settings/HotkeyShortcut.h"
#include "Platform/Linux/X11/Keys/X11KeyEventPosting.h"
#include "support/KeyMonitoringTest.h"
#include "support/RunOrThrow.h"

#include <gmock/gmock.h>
#include <xcb/xtest.h>

#include <chrono>
#include <future>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr quint32 command = HotkeyShortcut::command;
constexpr quint32 shift = HotkeyShortcut::shift;
constexpr quint32 option = HotkeyShortcut::option;
constexpr quint32 control = HotkeyShortcut::control;

constexpr KeyEvent aKey{0};
constexpr KeyEvent spaceKey{49};
constexpr KeyEvent flags{.type = KeyEvent::flagsChanged};

using X11GlobalKeysTest = KeyMonitoringTest;

TEST_F(X11GlobalKeysTest, AKeyOfAnotherProgramIsReportedOnceAndThatProgramGetsIt)
{
    tap(m_keyboard, key::a);
    EXPECT_THAT(seen(), ElementsAre(aKey));
    EXPECT_THAT(m_program.keys().mid(0, 2), ElementsAre(u"press 38 0"_s, u"release 38 0"_s));
}

TEST_F(X11GlobalKeysTest, AKeyIsReportedAlthoughNobodyAsksTheServerForAnything)
{
    EXPECT_THAT(seen(), IsEmpty()); // and the keymap has been read
    for (const uint8_t type : {uint8_t(XCB_KEY_PRESS), uint8_t(XCB_KEY_RELEASE)})
        xcb_test_fake_input(m_connection.xcb(), type, key::a, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0,
                            0, 0);
    xcb_flush(m_connection.xcb());
    EXPECT_TRUE(waitUntil([&] { return m_seen == std::vector{aKey}; }));
}

TEST_F(X11GlobalKeysTest, HeldModifiersAreReportedWithTheKeyAndNeverByThemselves)
{
    tapChord(m_keyboard, {key::leftSuper, key::leftShift, key::space});
    tapChord(m_keyboard, {key::rightSuper, key::leftAlt, key::digit1});
    tapChord(m_keyboard, {key::rightAlt, key::a});
    tapChord(m_keyboard, {key::leftControl, key::a});
    tapChord(m_keyboard, {key::leftShift, key::leftControl, key::leftAlt, key::leftSuper});
    EXPECT_THAT(seen(), ElementsAre(KeyEvent{49, command | shift}, KeyEvent{18, command | option},
                                    KeyEvent{0, option}, KeyEvent{0, control}));
}

TEST_F(X11GlobalKeysTest, ModifiersThatGoDownAndUpAreReportedInOrderToThoseWhoAsk)
{
    m_monitor = monitor(m_seen, KeyEvent::keyDown | KeyEvent::flagsChanged);
    tapChord(m_keyboard, {key::rightControl, key::leftShift});
    tap(m_keyboard, key::capsLock);
    tapChord(m_keyboard, {key::leftShift, key::a});
    EXPECT_THAT(seen(), ElementsAre(flags, flags, flags, flags, flags, flags, flags,
                                    KeyEvent{0, shift}, flags));
}

TEST_F(X11GlobalKeysTest, ModifiersAreSeenWhenNobodyGetsThem)
{
    m_monitor = monitor(m_seen, KeyEvent::flagsChanged | KeyEvent::keyDown);
    m_program.leaveKeyboard();
    tap(m_keyboard, key::leftShift);
    EXPECT_THAT(seen(), ElementsAre(flags, flags));
}

TEST_F(X11GlobalKeysTest, CapsLockAndNumLockMakeNoDifference)
{
    tap(m_keyboard, key::capsLock);
    tap(m_keyboard, key::numLock);
    tap(m_keyboard, key::a);
    tapChord(m_keyboard, {key::leftSuper, key::leftShift, key::space});
    EXPECT_THAT(seen(), ElementsAre(aKey, KeyEvent{49, command | shift}));
    EXPECT_THAT(m_program.keys(), testing::Contains(u"press 38 18"_s)); // both locks were on
}

TEST_F(X11GlobalKeysTest, AHeldKeyRepeatsUntilItIsReleased)
{
    m_keyboard.press(key::a);
    EXPECT_TRUE(waitUntil([&] { return m_seen.size() >= 4; }));
    m_keyboard.release(key::a);
    const std::vector<KeyEvent> events = seen();
    EXPECT_EQ(events.front(), aKey);
    EXPECT_THAT(std::vector(events.begin() + 1, events.end()), testing::Each(KeyEvent{0, 0, true}));
    tap(m_keyboard, key::a);
    EXPECT_THAT(seen(), ElementsAre(aKey));
}

TEST_F(X11GlobalKeysTest, AHeldKeyThatNobodyGetsRepeatsToo)
{
    m_program.leaveKeyboard();
    m_keyboard.press(key::a);
    EXPECT_TRUE(waitUntil([&] { return m_seen.size() >= 10; }));
    m_keyboard.release(key::a);
    EXPECT_THAT(m_program.keys(), IsEmpty());
}

TEST_F(X11GlobalKeysTest, KeysAreSeenUnderAnotherProgramsGrab)
{
    KeyLogProgram menu;
    menu.grabKeyboard();
    tapChord(m_keyboard, {key::leftSuper, key::leftShift, key::space});
    EXPECT_THAT(seen(), ElementsAre(KeyEvent{49, command | shift}));
    EXPECT_THAT(menu.keys(), testing::Contains(u"press 65 65"_s));
    EXPECT_THAT(m_program.keys(), IsEmpty());
}

TEST_F(X11GlobalKeysTest, KeysThatOtherProgramsSynthesiseAreTheUsers)
{
    runOrThrow("xdotool key super+shift+space");
    EXPECT_THAT(seen(), ElementsAre(KeyEvent{49, command | shift}));
}

TEST_F(X11GlobalKeysTest, OurOwnChordIsNotReportedAndTheSameChordOfTheUserIs)
{
    X11KeyEventPosting posting(m_postedKeys);
    ASSERT_EQ(posting.postCommandV({}), KeyEventPosting::Outcome::sent);
    EXPECT_THAT(seen(), IsEmpty());
    EXPECT_THAT(m_program.keys(), testing::Contains(u"press 118 1"_s));
    tapChord(m_keyboard, {key::leftShift, key::insert});
    EXPECT_THAT(seen(), ElementsAre(KeyEvent{114, shift}));
}

TEST_F(X11GlobalKeysTest, AShortcutThatIsHeldDuringOurChordKeepsRepeatingAndTheChordIsNotReported)
{
    for (const xcb_keycode_t held : {key::leftSuper, key::leftShift, key::space})
        m_keyboard.press(held);
    X11KeyEventPosting posting(m_postedKeys);
    ASSERT_TRUE(waitUntil([&] { return m_seen.size() > 2; }));
    ASSERT_EQ(posting.postCommandV({.releasesModifiers = true}), KeyEventPosting::Outcome::sent);
    for (const xcb_keycode_t held : {key::space, key::leftShift, key::leftSuper})
        m_keyboard.release(held);
    const std::vector<KeyEvent> events = seen();
    EXPECT_EQ(events.front(), (KeyEvent{49, command | shift}));
    EXPECT_THAT(events, testing::Contains(KeyEvent{49, command | shift, true}));
    EXPECT_THAT(events, testing::Each(testing::Field(&KeyEvent::keyCode, 49)));

    tapChord(m_keyboard, {key::leftSuper, key::leftShift, key::space});
    tapChord(m_keyboard, {key::leftShift, key::insert});
    EXPECT_THAT(seen(), ElementsAre(KeyEvent{49, command | shift}, KeyEvent{114, shift}));
}

TEST_F(X11GlobalKeysTest, TheUserMayTypeDuringOurChord)
{
    X11KeyEventPosting posting(m_postedKeys);
    for (int round = 0; round < 10; ++round) {
        auto posted = std::async(std::launch::async, [&] { return posting.postCommandV({}); });
        std::size_t taps = 0;
        do {
            tap(m_keyboard, key::a);
            ++taps;
            // Of thousands that are pressed within a second X servers now and then record one not
            // at all.
            EXPECT_TRUE(waitUntil([&] { return m_seen.size() >= taps; }));
        } while (posted.wait_for(std::chrono::seconds(0)) != std::future_status::ready);
        ASSERT_EQ(posted.get(), KeyEventPosting::Outcome::sent);
        const std::vector<KeyEvent> events = seen();
        EXPECT_EQ(events.size(), taps);
        // Not always without modifiers: the chord's may be down.
        EXPECT_THAT(events, testing::Each(testing::Field(&KeyEvent::keyCode, aKey.keyCode)));
    }
}

TEST_F(X11GlobalKeysTest, LayoutsMayChangeWhileItRuns)
{
    for (const char *layout : {"us", "de", "fr", "ru", "us -variant dvorak", "us,ru"}) {
        SCOPED_TRACE(layout);
        runOrThrow(std::string("setxkbmap ") + layout);
        tapChord(m_keyboard, {key::leftSuper, key::leftShift, key::space});
        tapChord(m_keyboard, {key::leftSuper, key::leftAlt, key::digit1});
        for (const xcb_keycode_t letter : {key::a, key::q, key::period})
            tap(m_keyboard, letter);
        EXPECT_THAT(seen(),
                    ElementsAre(KeyEvent{49, command | shift}, KeyEvent{18, command | option}, aKey,
                                KeyEvent{12}, KeyEvent{47}));
    }
}

TEST_F(X11GlobalKeysTest, KeysMayGetOtherKeyCodesWhileItRuns)
{
    constexpr xcb_keycode_t evdevUp = 111;
    constexpr xcb_keycode_t xfree86Up = 98;
    constexpr KeyEvent up{126};
    tap(m_keyboard, evdevUp);
    EXPECT_THAT(seen(), ElementsAre(up));
    runOrThrow("setxkbmap -keycodes xfree86");
    tap(m_keyboard, xfree86Up);
    EXPECT_THAT(seen(), ElementsAre(up));
    runOrThrow("setxkbmap -keycodes evdev");
    tap(m_keyboard, evdevUp);
    EXPECT_THAT(seen(), ElementsAre(up));
}

TEST_F(X11GlobalKeysTest, ModifiersAreWhatTheKeymapSaysTheyAre)
{
    runOrThrow("setxkbmap -option altwin:swap_alt_win");
    tapChord(m_keyboard, {key::leftAlt, key::a});
    tapChord(m_keyboard, {key::leftSuper, key::a});
    EXPECT_THAT(seen(), ElementsAre(KeyEvent{0, command}, KeyEvent{0, option}));

    runOrThrow("setxkbmap -option && setxkbmap -option caps:ctrl_modifier");
    tapChord(m_keyboard, {key::capsLock, key::a});
    EXPECT_THAT(seen(), ElementsAre(KeyEvent{0, control}));

    runOrThrow("setxkbmap -option && xmodmap -e 'clear mod4' -e 'add mod3 = Super_L Super_R'");
    tapChord(m_keyboard, {key::leftSuper, key::a});
    EXPECT_THAT(seen(), ElementsAre(KeyEvent{0, command}));
}

TEST_F(X11GlobalKeysTest, AltGrIsNoModifierOfShortcuts)
{
    runOrThrow("setxkbmap de");
    tapChord(m_keyboard, {key::rightAlt, key::q});
    EXPECT_THAT(seen(), ElementsAre(KeyEvent{12}));
}

TEST_F(X11GlobalKeysTest, HandlersMayEndAndAddMonitors)
{
    int calls = 0;
    std::unique_ptr<KeyEventMonitoring::Monitor> replaced;
    std::function<void()> replace = [&] {
        replaced = m_monitoring.addGlobalMonitor(KeyEvent::keyDown, [&](const KeyEvent &) {
            ++calls;
            replace();
        });
    };
    replace();
    for (int i = 0; i < 50; ++i)
        tap(m_keyboard, key::a);
    EXPECT_EQ(seen().size(), 50u);
    EXPECT_TRUE(waitUntil([&] { return calls == 51; })); // the last one of seen() too
}

TEST_F(X11GlobalKeysTest, AMonitorThatHasEndedSeesNothing)
{
    std::vector<KeyEvent> others;
    auto other = monitor(others);
    tap(m_keyboard, key::a);
    EXPECT_THAT(seen(), ElementsAre(aKey));
    EXPECT_TRUE(waitUntil([&] { return others.size() == 2; }));
    other.reset();
    tap(m_keyboard, key::a);
    EXPECT_THAT(seen(), ElementsAre(aKey));
    EXPECT_EQ(others.size(), 2u);
}

} // namespace
} // namespace kestrova
