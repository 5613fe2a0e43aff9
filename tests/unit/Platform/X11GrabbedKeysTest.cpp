#include "Models/Settings/HotkeyShortcut.h"
#include "Platform/Linux/X11/Keys/X11KeyEventMonitoring.h"
#include "Platform/Linux/X11/Keys/X11KeyEventPosting.h"
#include "support/KeyMonitoringTest.h"
#include "support/QtPrinting.h"
#include "support/RunOrThrow.h"

#include <QProcess>

#include <gmock/gmock.h>

#include <csignal>

#include <sys/wait.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr KeyEvent mainPress{49, HotkeyShortcut::command | HotkeyShortcut::shift};
constexpr KeyEvent slotPress{18, HotkeyShortcut::command | HotkeyShortcut::option};
constexpr KeyEvent aPress{0};
const HotkeyShortcut mainShortcut = HotkeyShortcut::defaultMain();
const HotkeyShortcut slotShortcut = *HotkeyShortcut::defaultHotbarNumber(1);

class X11GrabbedKeysTest : public KeyMonitoringTest
{
protected:
    void pressMain() { tapChord(m_keyboard, {key::leftSuper, key::leftShift, key::space}); }
    void pressSlot() { tapChord(m_keyboard, {key::leftSuper, key::leftAlt, key::digit1}); }
    /// The presses of ordinary keys that the program in front got since the last call. Keys arrive
    /// in order, so a last one tells that there is no more.
    QStringList typed()
    {
        tap(m_keyboard, key::q);
        QStringList typed;
        EXPECT_TRUE(waitUntil([&] {
            for (const QString &event : m_program.keys()) {
                const int code = event.section(u' ', 1, 1).toInt();
                if (event.startsWith(u"press"_s) && !m_otherKeys.contains(xcb_keycode_t(code)))
                    typed.append(event);
            }
            return !typed.isEmpty() && typed.last().startsWith(u"press 24"_s);
        }));
        typed.removeLast();
        return typed;
    }
    /// The presses that were reported since the last call, other than those of typed().
    std::vector<KeyEvent> reported()
    {
        std::vector<KeyEvent> events = seen();
        std::erase_if(events, [](const KeyEvent &event) { return event.keyCode == 12; });
        return events;
    }

    /// Runs the command, which makes another keyboard of the present one, and waits until the
    /// monitoring has followed.
    void changeKeyboard(const std::string &command)
    {
        EXPECT_TRUE(waitUntil([&] { return !m_changes.empty(); })); // the first one is no change
        m_changes.clear();
        runOrThrow(command);
        EXPECT_TRUE(waitUntil([&] { return !m_changes.empty(); }));
    }

    std::vector<KeyEvent> m_changes;
    std::unique_ptr<KeyEventMonitoring::Monitor> m_changeMonitor =
        monitor(m_changes, KeyEvent::keyboardChanged);
    std::unique_ptr<KeyEventMonitoring::Monitor> m_grabbed =
        m_monitoring.grab({mainShortcut, slotShortcut});
    // And the key that seen() presses.
    const QList<xcb_keycode_t> m_otherKeys{key::leftSuper, key::leftShift, key::leftAlt, key::f12};
};

TEST_F(X11GrabbedKeysTest, TheProgramInFrontDoesNotGetAShortcutAndMonitorsSeeItOnce)
{
    pressMain();
    EXPECT_THAT(typed(), IsEmpty());
    pressSlot();
    tap(m_keyboard, key::a);
    EXPECT_THAT(typed(), ElementsAre(u"press 38 0"_s));
    EXPECT_THAT(reported(), ElementsAre(mainPress, slotPress, aPress));
}

TEST_F(X11GrabbedKeysTest, TheSameKeyWithOtherModifiersIsNobodysShortcut)
{
    tap(m_keyboard, key::space);
    tapChord(m_keyboard, {key::leftSuper, key::space});
    tapChord(m_keyboard, {key::leftSuper, key::leftShift, key::leftAlt, key::space});
    EXPECT_EQ(typed().size(), 3);
    EXPECT_EQ(reported().size(), 3U);
}

TEST_F(X11GrabbedKeysTest, LocksMakeNoDifference)
{
    for (const xcb_keycode_t lock : {key::capsLock, key::numLock, key::capsLock}) {
        tap(m_keyboard, lock);
        pressMain();
        EXPECT_THAT(typed().filter(u"press 65"_s), IsEmpty());
    }
    EXPECT_THAT(reported(), ElementsAre(mainPress, mainPress, mainPress));
}

TEST_F(X11GrabbedKeysTest, AHeldShortcutRepeatsAndTheKeysAfterItArrive)
{
    for (const xcb_keycode_t held : {key::leftSuper, key::leftShift, key::space})
        m_keyboard.press(held);
    EXPECT_TRUE(waitUntil([&] { return m_seen.size() >= 4; }));
    EXPECT_TRUE(m_seen.back().isRepeat);
    EXPECT_THAT(m_program.keys().filter(u"press 65"_s), IsEmpty());
    for (const xcb_keycode_t held : {key::space, key::leftShift, key::leftSuper})
        m_keyboard.release(held);
    tap(m_keyboard, key::a);
    EXPECT_THAT(typed(), ElementsAre(u"press 38 0"_s));
}

TEST_F(X11GrabbedKeysTest, WhatIsTypedAtOnceAfterAShortcutArrives)
{
    for (int i = 0; i < 50; ++i) {
        pressMain();
        tap(m_keyboard, key::a);
    }
    EXPECT_EQ(typed(), QStringList(50, u"press 38 0"_s));
    EXPECT_EQ(reported().size(), 100U);
}

TEST_F(X11GrabbedKeysTest, OurChordArrivesWhileAShortcutIsHeld)
{
    X11KeyEventPosting posting(m_postedKeys);
    for (int round = 0; round < 3; ++round) {
        for (const xcb_keycode_t held : {key::leftSuper, key::leftShift, key::space})
            m_keyboard.press(held);
        ASSERT_TRUE(waitUntil([&] { return !posting.isKeyboardTaken(); }));
        ASSERT_EQ(posting.postCommandV({.releasesModifiers = true}),
                  KeyEventPosting::Outcome::sent);
        EXPECT_THAT(m_program.keys(), Contains(u"press 118 1"_s));
        for (const xcb_keycode_t held : {key::space, key::leftShift, key::leftSuper})
            m_keyboard.release(held);
    }
}

TEST_F(X11GrabbedKeysTest, EndingItGivesTheShortcutsBack)
{
    m_grabbed.reset();
    pressMain();
    EXPECT_THAT(typed(), ElementsAre(u"press 65 65"_s));
    EXPECT_THAT(reported(), ElementsAre(mainPress));
}

TEST_F(X11GrabbedKeysTest, LayoutsMayChangeWhileItRuns)
{
    for (const char *layout : {"de", "fr", "ru", "us -variant dvorak", "us,ru", "us"}) {
        SCOPED_TRACE(layout);
        runOrThrow(std::string("setxkbmap ") + layout);
        // The first key of another layout tells of it.
        EXPECT_THAT(typed(), IsEmpty());
        pressMain();
        EXPECT_THAT(typed(), IsEmpty());
        pressSlot();
        EXPECT_THAT(typed(), IsEmpty());
        EXPECT_THAT(reported(), ElementsAre(mainPress, slotPress));
    }
}

TEST_F(X11GrabbedKeysTest, ASecondLayoutThatIsOnMakesNoDifference)
{
    runOrThrow("setxkbmap us,ru -option grp:menu_toggle");
    constexpr xcb_keycode_t menu = 135;
    tap(m_keyboard, menu);
    EXPECT_EQ(typed().size(), 1);
    pressMain();
    EXPECT_THAT(typed(), IsEmpty());
    EXPECT_THAT(reported(), ElementsAre(mainPress));
}

TEST_F(X11GrabbedKeysTest, WithoutAKeyForAModifierNothingIsGrabbedAndNothingReportedAsAShortcut)
{
    for (const char *option : {"altwin:alt_win", "altwin:ctrl_win", "altwin:hyper_win"}) {
        SCOPED_TRACE(option);
        changeKeyboard(std::string("setxkbmap us -option ") + option);
        EXPECT_FALSE(m_monitoring.canType(mainShortcut));
        EXPECT_FALSE(m_monitoring.canType(slotShortcut));
        EXPECT_TRUE(m_monitoring.canType({49, HotkeyShortcut::option | HotkeyShortcut::shift}));
        tapChord(m_keyboard, {key::leftShift, key::space});
        tapChord(m_keyboard, {key::leftAlt, key::digit1});
        pressMain(); // whatever the Super keys are now
        pressSlot();
        EXPECT_EQ(typed().size(), 4);
        EXPECT_THAT(reported(), Not(AnyOf(Contains(mainPress), Contains(slotPress))));

        changeKeyboard("setxkbmap us -option");
        EXPECT_TRUE(m_monitoring.canType(mainShortcut));
        pressMain();
        EXPECT_THAT(typed(), IsEmpty());
        EXPECT_THAT(reported(), ElementsAre(mainPress));
    }
}

TEST_F(X11GrabbedKeysTest, MetaInThePlaceOfSuperIsTheSameModifier)
{
    for (const char *option : {"altwin:meta_win", "altwin:left_meta_win"}) {
        SCOPED_TRACE(option);
        runOrThrow(std::string("setxkbmap us -option -option ") + option);
        EXPECT_THAT(typed(), IsEmpty());
        pressMain();
        pressSlot();
        EXPECT_THAT(typed(), IsEmpty());
        EXPECT_THAT(reported(), ElementsAre(mainPress, slotPress));
        tapChord(m_keyboard, {key::leftShift, key::space});
        EXPECT_EQ(typed().size(), 1);
        reported();
    }
}

TEST_F(X11GrabbedKeysTest, ModifiersThatShareAMaskAreNoShortcutsByThemselves)
{
    changeKeyboard("xmodmap -e 'clear mod4' -e 'add mod1 = Super_L Super_R'");
    EXPECT_FALSE(m_monitoring.canType(mainShortcut));
    pressMain(); // Alt+Super+Shift+Space as far as the keymap can tell
    EXPECT_EQ(typed().size(), 1);
    pressSlot();
    EXPECT_THAT(typed(), IsEmpty());
}

TEST_F(X11GrabbedKeysTest, TwoShortcutsInARowAreBothReportedWithTheirModifiers)
{
    for (int i = 0; i < 50; ++i) {
        pressMain();
        pressSlot();
    }
    EXPECT_THAT(typed(), IsEmpty());
    std::vector<KeyEvent> expected;
    for (int i = 0; i < 50; ++i)
        expected.insert(expected.end(), {mainPress, slotPress});
    EXPECT_EQ(reported(), expected);
}

TEST_F(X11GrabbedKeysTest, AShortcutThatAnotherProgramHasReservedStaysThatPrograms)
{
    m_grabbed.reset();
    m_program.reserve(key::space);
    m_grabbed = m_monitoring.grab({mainShortcut, slotShortcut});
    pressMain();
    EXPECT_EQ(typed().size(), 1);
    pressSlot();
    EXPECT_THAT(typed(), IsEmpty());
    KeyEvent reserved = mainPress;
    reserved.isReserved = true;
    EXPECT_THAT(reported(), ElementsAre(reserved, slotPress));
}

TEST_F(X11GrabbedKeysTest, AStoppedProgramLeavesTheKeyboardFree)
{
    m_grabbed.reset();
    QProcess grabbing;
    grabbing.start(QStringLiteral(KESTROVA_GRABBING_APPLICATION), {});
    ASSERT_TRUE(waitUntil([&] { return grabbing.canReadLine(); }));
    pressMain();
    EXPECT_THAT(typed(), IsEmpty());

    const auto process = pid_t(grabbing.processId());
    ASSERT_EQ(kill(process, SIGSTOP), 0);
    siginfo_t stop;
    ASSERT_EQ(waitid(P_PID, id_t(process), &stop, WSTOPPED | WNOWAIT), 0);
    for (int i = 0; i < 10; ++i) {
        pressMain();
        tap(m_keyboard, key::a);
    }
    EXPECT_EQ(typed(), QStringList(10, u"press 38 0"_s));

    ASSERT_EQ(kill(process, SIGCONT), 0);
    pressMain();
    tap(m_keyboard, key::a);
    EXPECT_THAT(typed(), ElementsAre(u"press 38 0"_s));
    grabbing.kill();
    EXPECT_TRUE(grabbing.waitForFinished());
}

TEST_F(X11GrabbedKeysTest, ItMayBeReplacedAtAnyTime)
{
    for (int i = 0; i < 100; ++i) {
        m_grabbed.reset();
        m_grabbed = m_monitoring.grab({mainShortcut});
    }
    pressMain();
    EXPECT_THAT(typed(), IsEmpty());
    EXPECT_THAT(reported(), ElementsAre(mainPress));
}

} // namespace
} // namespace kestrova
