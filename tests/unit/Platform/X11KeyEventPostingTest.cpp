#include "Platform/Linux/X11/Keys/X11KeyEventPosting.h"

#include "Platform/Linux/Keys/PostedKeys.h"
#include "Platform/Linux/X11/Connection/X11ServerTime.h"
#include "support/KeyLogWindow.h"
#include "support/KeyPresses.h"
#include "support/PrivateXServer.h"
#include "support/RunOrThrow.h"

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Key = KeyLogWindow::Key;
using Outcome = KeyEventPosting::Outcome;

using namespace key;
constexpr xcb_keycode_t keyS = 39;
constexpr xcb_keycode_t keyV = 55;

// Num Lock is bound to this modifier in the common keymaps.
constexpr uint16_t numLockMask = XCB_MOD_MASK_2;

auto isChord(xcb_keycode_t modifier, uint16_t mask, xcb_keycode_t key, uint16_t locks = 0)
{
    const auto both = uint16_t(mask | locks);
    return ElementsAre(Key{true, modifier, locks}, Key{true, key, both}, Key{false, key, both},
                       Key{false, modifier, both});
}

auto isShiftInsert(uint16_t locks = 0)
{
    return isChord(leftShift, XCB_MOD_MASK_SHIFT, insert, locks);
}

std::vector<Key> lastFour(const std::vector<Key> &keys)
{
    return keys.size() < 4 ? keys : std::vector<Key>(keys.end() - 4, keys.end());
}

class X11KeyEventPostingTest : public testing::Test
{
protected:
    X11Connection m_connection;
    KeyLogWindow m_window{"Mousepad"};
    VirtualKeyboard m_keyboard{m_window.xcb()};
    PostedKeys m_postedKeys;
    X11KeyEventPosting m_posting{m_postedKeys};
};

TEST_F(X11KeyEventPostingTest, TheChordIsInTheServerWhenItReturns)
{
    ASSERT_EQ(m_posting.postCommandV({}), Outcome::sent);
    EXPECT_THAT(m_window.keys(), isShiftInsert());
}

TEST_F(X11KeyEventPostingTest, ItsPressesAreAnnounced)
{
    const xcb_timestamp_t now = serverTime(m_connection);
    ASSERT_EQ(m_posting.postCommandV({}), Outcome::sent);
    EXPECT_TRUE(m_postedKeys.take(PostedKeys::ofAllWindows, {true, leftShift}, now));
    EXPECT_TRUE(m_postedKeys.take(PostedKeys::ofAllWindows, {true, insert}, now));
}

TEST_F(X11KeyEventPostingTest, ThePressesThatFollowAreNotItsOwn)
{
    ASSERT_EQ(m_posting.postCommandV({}), Outcome::sent);
    const xcb_timestamp_t now = serverTime(m_connection);
    EXPECT_FALSE(m_postedKeys.take(PostedKeys::ofOwnWindows, {true, leftShift}, now + 1));
}

TEST_F(X11KeyEventPostingTest, CapsLockAndNumLockStayOnAndDoNotDisturb)
{
    for (const xcb_keycode_t lock : {capsLock, numLock}) {
        m_keyboard.press(lock);
        m_keyboard.release(lock);
    }
    constexpr uint16_t locks = XCB_MOD_MASK_LOCK | numLockMask;
    ASSERT_EQ(m_window.modifiers(), locks);
    m_window.keys();
    ASSERT_EQ(m_posting.postCommandV({}), Outcome::sent);
    EXPECT_THAT(m_window.keys(), isShiftInsert(locks));
    EXPECT_EQ(m_window.modifiers(), locks);
}

TEST_F(X11KeyEventPostingTest, AGrabOfAHeldKeyIsEndedOnceNothingCanSetItOffAgain)
{
    const std::vector<xcb_keycode_t> held{leftSuper, leftShift, space};
    X11Connection grabs;
    xcb_grab_key(grabs.xcb(), 0, grabs.root(), XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT, space,
                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    serverTime(grabs);
    uint16_t modifiers = 0;
    m_postedKeys.setPreparation([&] {
        modifiers = m_window.modifiers();
        xcb_ungrab_keyboard(grabs.xcb(), XCB_CURRENT_TIME);
        serverTime(grabs);
    });
    for (const xcb_keycode_t key : held)
        m_keyboard.press(key);
    m_window.keys();
    ASSERT_EQ(m_posting.postCommandV({.releasesModifiers = true}), Outcome::sent);
    EXPECT_EQ(modifiers, 0);
    EXPECT_THAT(lastFour(m_window.keys()), isShiftInsert());
    m_postedKeys.setPreparation(nullptr);
    for (const xcb_keycode_t key : held)
        m_keyboard.release(key);
}

TEST_F(X11KeyEventPostingTest, HeldModifiersAreToldUntilTheUserLetsGo)
{
    EXPECT_FALSE(m_posting.areModifiersHeld());
    m_keyboard.press(leftControl);
    m_keyboard.press(leftAlt);
    EXPECT_TRUE(m_posting.areModifiersHeld());
    m_keyboard.release(leftAlt);
    EXPECT_TRUE(m_posting.areModifiersHeld());
    m_keyboard.release(leftControl);
    EXPECT_FALSE(m_posting.areModifiersHeld());
    m_keyboard.press(keyS);
    EXPECT_FALSE(m_posting.areModifiersHeld());
}

TEST_F(X11KeyEventPostingTest, HeldModifiersPreventTheChord)
{
    m_keyboard.press(leftAlt);
    m_window.keys();
    EXPECT_EQ(m_posting.postCommandV({}), Outcome::notSent);
    EXPECT_THAT(m_window.keys(), IsEmpty());
    EXPECT_EQ(m_window.modifiers(), XCB_MOD_MASK_1) << "nor are they released";
}

TEST_F(X11KeyEventPostingTest, HeldModifiersAreReleasedWhenAskedForAndNeverPressedAgain)
{
    const auto modifiers = {leftControl, leftAlt, leftSuper, leftShift};
    for (const xcb_keycode_t key : modifiers)
        m_keyboard.press(key);
    m_window.keys();
    ASSERT_EQ(m_posting.postCommandV({.releasesModifiers = true}), Outcome::sent);
    EXPECT_THAT(lastFour(m_window.keys()), isShiftInsert());

    for (const xcb_keycode_t key : modifiers)
        m_keyboard.release(key);
    EXPECT_EQ(m_window.modifiers(), 0);
    m_window.keys();
    m_keyboard.press(keyS);
    m_keyboard.release(keyS);
    EXPECT_THAT(m_window.keys(), ElementsAre(Key{true, keyS, 0}, Key{false, keyS, 0}));
    ASSERT_EQ(m_posting.postCommandV({}), Outcome::sent);
    EXPECT_THAT(m_window.keys(), isShiftInsert());
}

TEST_F(X11KeyEventPostingTest, TheWantedWindowGetsTheChord)
{
    ASSERT_EQ(m_posting.postCommandV({.window = m_window.id()}), Outcome::sent);
    EXPECT_THAT(m_window.keys(), isShiftInsert());
}

TEST_F(X11KeyEventPostingTest, AWindowInsideOfTheWantedOneMayHaveTheKeyboard)
{
    const xcb_window_t inner = m_window.focusWindowInside();
    ASSERT_NE(inner, m_window.id());
    ASSERT_EQ(m_posting.postCommandV({.window = m_window.id()}), Outcome::sent);
    EXPECT_THAT(m_window.keys(), isShiftInsert());
}

TEST_F(X11KeyEventPostingTest, NoOtherWindowGetsTheChordWhateverIsHeld)
{
    KeyLogWindow other("Other");
    for (const bool isAltHeld : {false, true}) {
        if (isAltHeld)
            m_keyboard.press(leftAlt);
        other.keys();
        EXPECT_EQ(m_posting.postCommandV({m_window.id(), isAltHeld}), Outcome::notSent);
        EXPECT_THAT(other.keys(), IsEmpty());
        EXPECT_THAT(m_window.keys(), IsEmpty());
    }
}

TEST_F(X11KeyEventPostingTest, TheWindowManagersWordAndTheKeyboardMustAgree)
{
    KeyLogWindow other("Other");
    m_window.becomeActive();
    EXPECT_EQ(m_posting.postCommandV({.window = m_window.id()}), Outcome::notSent);
    EXPECT_EQ(m_posting.postCommandV({.window = other.id()}), Outcome::notSent);
    EXPECT_THAT(other.keys(), IsEmpty());
}

TEST_F(X11KeyEventPostingTest, AProgramThatTakesTheKeyboardGetsNoChord)
{
    EXPECT_FALSE(m_posting.isKeyboardTaken());
    KeyLogWindow menu("Menu");
    m_window.takeKeyboard();
    m_window.becomeActive();
    ASSERT_TRUE(menu.grabKeyboard());
    m_keyboard.press(leftAlt);
    menu.keys();
    EXPECT_TRUE(m_posting.isKeyboardTaken());
    EXPECT_EQ(m_posting.postCommandV({m_window.id(), true}), Outcome::notSent);
    EXPECT_EQ(m_posting.postCommandV({.releasesModifiers = true}), Outcome::notSent);
    EXPECT_THAT(menu.keys(), IsEmpty());
    EXPECT_EQ(m_window.modifiers(), XCB_MOD_MASK_1) << "a window switcher would end";

    m_keyboard.release(leftAlt);
    menu.ungrabKeyboard();
    m_window.keys();
    EXPECT_FALSE(m_posting.isKeyboardTaken());
    EXPECT_EQ(m_posting.postCommandV({.window = m_window.id()}), Outcome::sent);
    EXPECT_THAT(m_window.keys(), isShiftInsert());
}

TEST_F(X11KeyEventPostingTest, TheChordsOwnKeyMayBeDown)
{
    m_keyboard.press(insert);
    m_window.keys();
    ASSERT_EQ(m_posting.postCommandV({}), Outcome::sent);
    EXPECT_THAT(lastFour(m_window.keys()), isShiftInsert());
}

TEST_F(X11KeyEventPostingTest, WithoutAnInsertKeyItTakesControlV)
{
    runOrThrow("xmodmap -e 'keycode 118 = '");
    ASSERT_EQ(m_posting.postCommandV({}), Outcome::sent);
    EXPECT_THAT(m_window.keys(), isChord(leftControl, XCB_MOD_MASK_CONTROL, keyV));
}

TEST_F(X11KeyEventPostingTest, ALetterIsTakenFromThePresentLayout)
{
    runOrThrow("setxkbmap us -variant dvorak && xmodmap -e 'keycode 118 = '");
    constexpr xcb_keycode_t dvorakV = 60;
    ASSERT_EQ(m_posting.postCommandV({}), Outcome::sent);
    EXPECT_THAT(m_window.keys(), isChord(leftControl, XCB_MOD_MASK_CONTROL, dvorakV));
}

TEST_F(X11KeyEventPostingTest, WhenNoKeyCanFormAChordItSaysSoAndSendsNothing)
{
    runOrThrow("setxkbmap ru && xmodmap -e 'keycode 118 = '");
    EXPECT_EQ(m_posting.postCommandV({}), Outcome::unavailable);
    EXPECT_THAT(m_window.keys(), IsEmpty());
}

class X11KeyEventPostingLayoutTest : public X11KeyEventPostingTest,
                                     public testing::WithParamInterface<const char *>
{
};

TEST_P(X11KeyEventPostingLayoutTest, TheChordIsTheSame)
{
    runOrThrow(std::string("setxkbmap ") + GetParam());
    ASSERT_EQ(m_posting.postCommandV({}), Outcome::sent);
    EXPECT_THAT(m_window.keys(), isShiftInsert());
}

INSTANTIATE_TEST_SUITE_P(Layouts, X11KeyEventPostingLayoutTest,
                         testing::Values("us", "de", "fr", "ru", "us,ru", "us -variant dvorak"));

TEST(X11KeyEventPosting, WithoutXtestItIsFalse)
{
    const PrivateXServer server({"-extension", "XTEST"});
    KeyLogWindow window("Mousepad", server.displayName());
    PostedKeys postedKeys;
    EXPECT_EQ(X11KeyEventPosting(postedKeys, server.displayName()).postCommandV({}),
              Outcome::unavailable);
    EXPECT_THAT(window.keys(), IsEmpty());
}

TEST(X11KeyEventPosting, WithoutAServerItIsFalse)
{
    PostedKeys postedKeys;
    EXPECT_EQ(X11KeyEventPosting(postedKeys, ":4096").postCommandV({}), Outcome::unavailable);
}

TEST(X11KeyEventPosting, AfterTheServersDeathItIsFalse)
{
    PrivateXServer server;
    PostedKeys postedKeys;
    X11KeyEventPosting posting(postedKeys, server.displayName());
    ASSERT_EQ(posting.postCommandV({}), Outcome::sent);
    server.kill();
    EXPECT_EQ(posting.postCommandV({}), Outcome::unavailable);
}

} // namespace
} // namespace kestrova
