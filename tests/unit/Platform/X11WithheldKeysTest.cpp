#include "Models/HotkeyShortcut.h"
#include "Platform/Linux/X11/X11KeyEventMonitoring.h"
#include "Platform/Linux/X11/X11KeyEventPosting.h"
#include "support/KeyPresses.h"
#include "support/OtherProgram.h"
#include "support/QtPrinting.h"
#include "support/WaitUntil.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

#include <cstdlib>
#include <string>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr quint32 f12 = 111;
const HotkeyShortcut mainShortcut = HotkeyShortcut::defaultMain();
const HotkeyShortcut slotShortcut = *HotkeyShortcut::defaultHotbarNumber(1);

void runOrThrow(const std::string &commandLine)
{
    if (std::system(commandLine.c_str()) != 0)
        throw std::runtime_error(commandLine + " failed");
}

class X11WithheldKeysTest : public testing::Test
{
protected:
    void pressMain() { tapChord(m_keyboard, {key::leftSuper, key::leftShift, key::space}); }
    void pressSlot() { tapChord(m_keyboard, {key::leftSuper, key::leftAlt, key::digit1}); }
    bool seesPresses(std::size_t count)
    {
        return waitUntil([&] { return m_seen.size() == count; });
    }
    /// The presses of ordinary keys that the program in front got since the last call. Keys arrive
    /// in order, so a last one tells that there is no more.
    QStringList typed()
    {
        tap(m_keyboard, key::f12);
        QStringList typed;
        EXPECT_TRUE(waitUntil([&] {
            for (const QString &event : m_program.keys()) {
                const int code = event.section(u' ', 1, 1).toInt();
                if (event.startsWith(u"press"_s) && !m_modifierKeys.contains(xcb_keycode_t(code)))
                    typed.append(event);
            }
            return !typed.isEmpty() && typed.last().startsWith(u"press 96"_s);
        }));
        typed.removeLast();
        return typed;
    }

    int m_argc = 1;
    char m_name[5] = "test";
    char *m_argv[2] = {m_name, nullptr};
    QCoreApplication m_application{m_argc, m_argv};
    OtherProgram m_program;
    X11Connection m_connection;
    VirtualKeyboard m_keyboard{m_connection.xcb()};
    PostedKeys m_postedKeys;
    X11KeyEventMonitoring m_monitoring{m_connection, m_postedKeys};
    std::vector<KeyDownEvent> m_seen;
    std::unique_ptr<KeyEventMonitoring::Monitor> m_monitor =
        m_monitoring.addGlobalMonitor([this](const KeyDownEvent &event) {
            if (event.keyCode != f12)
                m_seen.push_back(event);
        });
    std::unique_ptr<KeyEventMonitoring::Monitor> m_withheld =
        m_monitoring.withhold({mainShortcut, slotShortcut});
    const QList<xcb_keycode_t> m_modifierKeys{key::leftSuper, key::leftShift, key::leftAlt};
};

TEST_F(X11WithheldKeysTest, TheProgramInFrontDoesNotGetAShortcutAndMonitorsSeeItOnce)
{
    pressMain();
    EXPECT_THAT(typed(), IsEmpty());
    pressSlot();
    tap(m_keyboard, key::a);
    EXPECT_THAT(typed(), ElementsAre(u"press 38 0"_s));
    EXPECT_TRUE(seesPresses(3));
    EXPECT_EQ(m_seen[0], (KeyDownEvent{49, mainShortcut.modifiers}));
    EXPECT_EQ(m_seen[1], (KeyDownEvent{18, slotShortcut.modifiers}));
}

TEST_F(X11WithheldKeysTest, TheSameKeyWithOtherModifiersIsNobodysShortcut)
{
    tap(m_keyboard, key::space);
    tapChord(m_keyboard, {key::leftSuper, key::space});
    tapChord(m_keyboard, {key::leftSuper, key::leftShift, key::leftAlt, key::space});
    EXPECT_TRUE(seesPresses(3));
    EXPECT_EQ(typed().size(), 3);
}

TEST_F(X11WithheldKeysTest, LocksMakeNoDifference)
{
    tap(m_keyboard, key::capsLock);
    pressMain();
    tap(m_keyboard, key::numLock);
    pressMain();
    tap(m_keyboard, key::capsLock);
    pressMain();
    EXPECT_TRUE(seesPresses(3));
    EXPECT_THAT(typed().filter(u"press 65"_s), IsEmpty());
}

TEST_F(X11WithheldKeysTest, AHeldShortcutRepeatsAndTheKeysAfterItArrive)
{
    for (const xcb_keycode_t held : {key::leftSuper, key::leftShift, key::space})
        m_keyboard.press(held);
    EXPECT_TRUE(waitUntil([&] { return m_seen.size() >= 4; }));
    EXPECT_TRUE(m_seen.back().isRepeat);
    for (const xcb_keycode_t held : {key::leftShift, key::leftSuper, key::space})
        m_keyboard.release(held);
    tap(m_keyboard, key::a);
    tap(m_keyboard, key::q);
    EXPECT_TRUE(waitUntil([&] { return m_seen.back().keyCode == 12; }));
    const QStringList keys = typed();
    EXPECT_EQ(keys.mid(keys.size() - 2), (QStringList{u"press 38 0"_s, u"press 24 0"_s}));
}

TEST_F(X11WithheldKeysTest, WhatIsTypedAtOnceAfterAShortcutArrives)
{
    for (int i = 0; i < 50; ++i) {
        pressMain();
        tap(m_keyboard, key::a);
    }
    EXPECT_TRUE(seesPresses(100));
    EXPECT_EQ(typed(), QStringList(50, u"press 38 0"_s));
}

TEST_F(X11WithheldKeysTest, OurChordArrivesWhileAShortcutIsHeld)
{
    X11KeyEventPosting posting(m_postedKeys);
    for (int round = 0; round < 3; ++round) {
        for (const xcb_keycode_t held : {key::leftSuper, key::leftShift, key::space})
            m_keyboard.press(held);
        ASSERT_TRUE(posting.postCommandV()); // after its wait for the modifiers
        EXPECT_THAT(m_program.keys(), Contains(u"press 118 1"_s));
        for (const xcb_keycode_t held : {key::space, key::leftShift, key::leftSuper})
            m_keyboard.release(held);
    }
}

TEST_F(X11WithheldKeysTest, EndingItGivesTheShortcutsBack)
{
    m_withheld.reset();
    pressMain();
    EXPECT_TRUE(seesPresses(1));
    EXPECT_THAT(typed(), ElementsAre(u"press 65 65"_s));
}

TEST_F(X11WithheldKeysTest, LayoutsMayChangeWhileItRuns)
{
    std::size_t presses = 0;
    for (const char *layout : {"de", "fr", "ru", "us -variant dvorak", "us,ru", "us"}) {
        SCOPED_TRACE(layout);
        runOrThrow(std::string("setxkbmap ") + layout);
        pressMain();
        pressSlot();
        EXPECT_TRUE(seesPresses(presses += 2));
        EXPECT_THAT(typed(), IsEmpty());
    }
}

TEST_F(X11WithheldKeysTest, ASecondLayoutThatIsOnMakesNoDifference)
{
    runOrThrow("setxkbmap us,ru -option grp:menu_toggle");
    constexpr xcb_keycode_t menu = 135;
    tap(m_keyboard, menu);
    pressMain();
    EXPECT_TRUE(seesPresses(1));
    EXPECT_THAT(typed().filter(u"press 65"_s), IsEmpty());
}

TEST_F(X11WithheldKeysTest, AShortcutThatAnotherProgramHasReservedStaysThatPrograms)
{
    m_withheld.reset();
    X11Connection other;
    xcb_grab_key(other.xcb(), 0, other.root(), XCB_MOD_MASK_ANY, key::space, XCB_GRAB_MODE_ASYNC,
                 XCB_GRAB_MODE_ASYNC);
    free(xcb_get_input_focus_reply(other.xcb(), xcb_get_input_focus(other.xcb()), nullptr));
    m_withheld = m_monitoring.withhold({mainShortcut, slotShortcut});
    pressMain();
    EXPECT_THAT(typed(), IsEmpty());
    pressSlot();
    EXPECT_THAT(typed(), IsEmpty());
    EXPECT_TRUE(seesPresses(2));
}

TEST_F(X11WithheldKeysTest, ItMayBeReplacedAtAnyTime)
{
    for (int i = 0; i < 100; ++i) {
        m_withheld.reset();
        m_withheld = m_monitoring.withhold({mainShortcut});
    }
    pressMain();
    EXPECT_TRUE(seesPresses(1));
    EXPECT_THAT(typed(), IsEmpty());
}

} // namespace
} // namespace kestrova
