#include "Platform/Linux/X11/X11KeyEventPosting.h"

#include "Platform/Linux/X11/PostedKeys.h"
#include "Platform/Linux/X11/X11ServerTime.h"
#include "support/KeyLogWindow.h"
#include "support/KeyPresses.h"
#include "support/PrivateXServer.h"
#include "support/RunOrThrow.h"

#include <gmock/gmock.h>

#include <chrono>
#include <future>

namespace kestrova {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Key = KeyLogWindow::Key;
using Clock = std::chrono::steady_clock;

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
    ASSERT_TRUE(m_posting.postCommandV());
    EXPECT_THAT(m_window.keys(), isShiftInsert());
}

TEST_F(X11KeyEventPostingTest, ItsPressesAreAnnounced)
{
    const xcb_timestamp_t now = serverTime(m_connection);
    ASSERT_TRUE(m_posting.postCommandV());
    EXPECT_TRUE(m_postedKeys.take(PostedKeys::ofAllWindows, {true, leftShift}, now));
    EXPECT_TRUE(m_postedKeys.take(PostedKeys::ofAllWindows, {true, insert}, now));
}

TEST_F(X11KeyEventPostingTest, ThePressesThatFollowAreNotItsOwn)
{
    ASSERT_TRUE(m_posting.postCommandV());
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
    ASSERT_TRUE(m_posting.postCommandV());
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
    ASSERT_TRUE(m_posting.postCommandV());
    EXPECT_EQ(modifiers, 0);
    EXPECT_THAT(lastFour(m_window.keys()), isShiftInsert());
    m_postedKeys.setPreparation(nullptr);
    for (const xcb_keycode_t key : held)
        m_keyboard.release(key);
}

TEST_F(X11KeyEventPostingTest, ItWaitsUntilTheUserLetsGoOfTheModifiers)
{
    m_keyboard.press(leftControl);
    m_keyboard.press(leftAlt);
    m_window.keys();
    auto posting = std::async(std::launch::async, [&] { return m_posting.postCommandV(); });
    m_keyboard.release(leftAlt);
    EXPECT_EQ(posting.wait_for(X11KeyEventPosting::modifierLimit / 4), std::future_status::timeout);
    m_keyboard.release(leftControl);
    ASSERT_TRUE(posting.get());
    const std::vector<Key> keys = m_window.keys();
    EXPECT_EQ(keys.size(), 6u); // the user's two releases, and nothing of ours but the chord
    EXPECT_THAT(lastFour(keys), isShiftInsert());
}

TEST_F(X11KeyEventPostingTest, ModifiersHeldForTooLongAreReleasedAndNeverPressedAgain)
{
    const auto modifiers = {leftControl, leftAlt, leftSuper, leftShift};
    for (const xcb_keycode_t key : modifiers)
        m_keyboard.press(key);
    m_window.keys();
    const auto start = Clock::now();
    ASSERT_TRUE(m_posting.postCommandV());
    EXPECT_GE(Clock::now() - start, X11KeyEventPosting::modifierLimit);
    EXPECT_THAT(lastFour(m_window.keys()), isShiftInsert());

    for (const xcb_keycode_t key : modifiers)
        m_keyboard.release(key);
    EXPECT_EQ(m_window.modifiers(), 0);
    m_window.keys();
    m_keyboard.press(keyS);
    m_keyboard.release(keyS);
    EXPECT_THAT(m_window.keys(), ElementsAre(Key{true, keyS, 0}, Key{false, keyS, 0}));
    ASSERT_TRUE(m_posting.postCommandV());
    EXPECT_THAT(m_window.keys(), isShiftInsert());
}

TEST_F(X11KeyEventPostingTest, TheChordsOwnKeyMayBeDown)
{
    m_keyboard.press(insert);
    m_window.keys();
    ASSERT_TRUE(m_posting.postCommandV());
    EXPECT_THAT(lastFour(m_window.keys()), isShiftInsert());
}

TEST_F(X11KeyEventPostingTest, WithoutAnInsertKeyItTakesControlV)
{
    runOrThrow("xmodmap -e 'keycode 118 = '");
    ASSERT_TRUE(m_posting.postCommandV());
    EXPECT_THAT(m_window.keys(), isChord(leftControl, XCB_MOD_MASK_CONTROL, keyV));
}

TEST_F(X11KeyEventPostingTest, ALetterIsTakenFromThePresentLayout)
{
    runOrThrow("setxkbmap us -variant dvorak && xmodmap -e 'keycode 118 = '");
    constexpr xcb_keycode_t dvorakV = 60;
    ASSERT_TRUE(m_posting.postCommandV());
    EXPECT_THAT(m_window.keys(), isChord(leftControl, XCB_MOD_MASK_CONTROL, dvorakV));
}

TEST_F(X11KeyEventPostingTest, WhenNoKeyCanFormAChordItSaysSoAndSendsNothing)
{
    runOrThrow("setxkbmap ru && xmodmap -e 'keycode 118 = '");
    EXPECT_FALSE(m_posting.postCommandV());
    EXPECT_THAT(m_window.keys(), IsEmpty());
}

class X11KeyEventPostingLayoutTest : public X11KeyEventPostingTest,
                                     public testing::WithParamInterface<const char *>
{
};

TEST_P(X11KeyEventPostingLayoutTest, TheChordIsTheSame)
{
    runOrThrow(std::string("setxkbmap ") + GetParam());
    ASSERT_TRUE(m_posting.postCommandV());
    EXPECT_THAT(m_window.keys(), isShiftInsert());
}

INSTANTIATE_TEST_SUITE_P(Layouts, X11KeyEventPostingLayoutTest,
                         testing::Values("us", "de", "fr", "ru", "us,ru", "us -variant dvorak"));

TEST(X11KeyEventPosting, WithoutXtestItIsFalse)
{
    const PrivateXServer server({"-extension", "XTEST"});
    KeyLogWindow window("Mousepad", server.displayName());
    PostedKeys postedKeys;
    EXPECT_FALSE(X11KeyEventPosting(postedKeys, server.displayName()).postCommandV());
    EXPECT_THAT(window.keys(), IsEmpty());
}

TEST(X11KeyEventPosting, WithoutAServerItIsFalse)
{
    PostedKeys postedKeys;
    EXPECT_FALSE(X11KeyEventPosting(postedKeys, ":4096").postCommandV());
}

TEST(X11KeyEventPosting, AfterTheServersDeathItIsFalse)
{
    PrivateXServer server;
    PostedKeys postedKeys;
    X11KeyEventPosting posting(postedKeys, server.displayName());
    ASSERT_TRUE(posting.postCommandV());
    server.kill();
    EXPECT_FALSE(posting.postCommandV());
}

} // namespace
} // namespace kestrova
