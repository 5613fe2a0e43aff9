#include "Platform/Linux/X11/Keys/X11KeyObserver.h"

#include "Platform/Linux/X11/Keys/X11KeyEventPosting.h"
#include "Platform/Linux/X11/Keys/X11KeyGrabs.h"
#include "support/KeyPresses.h"
#include "support/PrivateXServer.h"
#include "support/Threads.h"
#include "support/WaitUntil.h"

#include <gmock/gmock.h>
#include <xcb/xtest.h>

#include <atomic>
#include <future>

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// No event loop runs here, so that the thread of the recording is the only other one.
class X11KeyObserverTest : public testing::Test
{
protected:
    X11KeyObserverTest()
    {
        std::thread([] {}).join(); // with the first one, ThreadSanitizer starts one of its own
        const QSet<QString> before = threads();
        m_recording.emplace(m_postedKeys, report(), name());
        m_thread = *(threads() - before).begin();
    }

    X11KeyObserver::Report report()
    {
        return [this](const KeyEvent &event) {
            if (event.type == KeyEvent::keyDown)
                ++m_reports;
        };
    }
    QByteArray name() const { return m_server.displayName(); }

    /// Watches the thread for as long, and says whether it slept all the time.
    bool sleepsFor(std::chrono::milliseconds time)
    {
        const qint64 before = sleeps(m_thread);
        const auto end = Clock::now() + time;
        while (Clock::now() < end && sleeps(m_thread) == before)
            std::this_thread::sleep_for(10ms);
        return before > 0 && sleeps(m_thread) == before;
    }
    bool comesToSleep()
    {
        return waitUntil([this] { return sleepsFor(100ms); });
    }

    bool areReported(int presses)
    {
        return waitUntil([&] { return m_reports >= presses; });
    }
    /// One key after the other: of thousands that are pressed within a second while other clients
    /// are busy too, X servers now and then record one not at all.
    bool isTapReported(xcb_keycode_t key, int presses)
    {
        tap(m_keyboard, key);
        return areReported(presses);
    }

    PrivateXServer m_server;
    PostedKeys m_postedKeys;
    std::atomic<int> m_reports = 0;
    std::optional<X11KeyObserver> m_recording;
    QString m_thread; // of the recording
    X11Connection m_connection{name()};
    VirtualKeyboard m_keyboard{m_connection.xcb()};
};

TEST_F(X11KeyObserverTest, TheThreadSleepsWhileNoKeyIsDown)
{
    ASSERT_TRUE(m_recording->isOpen());
    ASSERT_TRUE(comesToSleep());
    EXPECT_TRUE(sleepsFor(1s));
    tap(m_keyboard, key::a);
    EXPECT_TRUE(waitUntil([&] { return m_reports == 1; }));
    ASSERT_TRUE(comesToSleep());
    EXPECT_TRUE(sleepsFor(1s));
}

TEST_F(X11KeyObserverTest, TheThreadSleepsWhileOnlyModifiersAreDown)
{
    m_keyboard.press(key::leftSuper);
    m_keyboard.press(key::leftShift);
    ASSERT_TRUE(comesToSleep());
    EXPECT_TRUE(sleepsFor(500ms));
    EXPECT_EQ(m_reports, 0);
}

TEST_F(X11KeyObserverTest, APressThatNobodyGetsIsReportedAlthoughTheServerHasNothingElseToWrite)
{
    ASSERT_TRUE(comesToSleep());
    // Unlike VirtualKeyboard this asks for no answer.
    for (const uint8_t type : {uint8_t(XCB_KEY_PRESS), uint8_t(XCB_KEY_RELEASE)})
        xcb_test_fake_input(m_connection.xcb(), type, key::a, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0,
                            0, 0);
    xcb_flush(m_connection.xcb());
    EXPECT_TRUE(waitUntil([&] { return m_reports > 0; }));
}

TEST_F(X11KeyObserverTest, RepeatsOfAKeyThatNobodyGetsComeWhenTheyHappen)
{
    constexpr int repeats = 5;
    m_keyboard.press(key::a);
    ASSERT_TRUE(waitUntil([&] { return m_reports > 1; }));
    const auto first = Clock::now();
    ASSERT_TRUE(waitUntil([&] { return m_reports > repeats; }));
    // 40 ms apart; half of that on a busy machine. Held back, they come all at once.
    EXPECT_GT(Clock::now() - first, (repeats - 1) * 20ms);
}

TEST_F(X11KeyObserverTest, ItEndsWithTheServer)
{
    m_server.kill();
    EXPECT_TRUE(waitUntil([&] { return sleeps(m_thread) == -1; }));
    EXPECT_FALSE(m_recording->isOpen());
}

TEST_F(X11KeyObserverTest, ItEndsWithTheServerWhileAKeyIsDown)
{
    m_keyboard.press(key::a);
    ASSERT_TRUE(waitUntil([&] { return m_reports >= 3; }));
    m_server.kill();
    EXPECT_TRUE(waitUntil([&] { return sleeps(m_thread) == -1; }));
}

TEST_F(X11KeyObserverTest, AServerThatDoesNotAnswerDoesNotDelayItsEnd)
{
    m_keyboard.press(key::a);
    ASSERT_TRUE(waitUntil([&] { return m_reports >= 3; }));
    m_server.freeze();
    ASSERT_TRUE(comesToSleep()); // until the server answers
    const auto start = Clock::now();
    m_recording.reset();
    EXPECT_LT(Clock::now() - start, 10s);
}

TEST_F(X11KeyObserverTest, ItMayEndWhileKeysCome)
{
    for (int round = 0; round < 20; ++round) {
        tap(m_keyboard, key::a);
        m_recording.reset();
        const int reports = m_reports;
        tap(m_keyboard, key::a);
        EXPECT_EQ(m_reports, reports);
        m_recording.emplace(m_postedKeys, report(), name());
    }
    EXPECT_TRUE(m_recording->isOpen());
}

TEST_F(X11KeyObserverTest, ChordsOfAnotherThreadAreNotReported)
{
    X11KeyEventPosting posting(m_postedKeys, name());
    auto posted = std::async(std::launch::async, [&] { return posting.postCommandV({}); });
    int taps = 0;
    do {
        EXPECT_TRUE(isTapReported(key::a, ++taps));
    } while (posted.wait_for(0s) != std::future_status::ready);
    ASSERT_EQ(posted.get(), KeyEventPosting::Outcome::sent);
    EXPECT_TRUE(isTapReported(key::f12, ++taps));
    ASSERT_TRUE(comesToSleep());
    EXPECT_EQ(m_reports, taps);
}

TEST(X11KeyObserver, WithoutTheRecordExtensionItIsClosed)
{
    const PrivateXServer server({"-extension", "RECORD"});
    PostedKeys postedKeys;
    EXPECT_FALSE(X11KeyObserver(
                     postedKeys, [](const auto &) {}, server.displayName())
                     .isOpen());
}

TEST(X11KeyObserver, WithoutAServerItIsClosed)
{
    PostedKeys postedKeys;
    EXPECT_FALSE(X11KeyObserver(
                     postedKeys, [](const auto &) {}, ":4096")
                     .isOpen());
}

TEST_F(X11KeyObserverTest, ShortcutsMayBeGrabbedAndGivenBackWhileTheyArePressed)
{
    const auto combinations =
        X11KeyTranslation(m_connection).combinations(HotkeyShortcut::defaultMain());
    X11KeyGrabs grabs(m_postedKeys, name());
    auto pressed = std::async(std::launch::async, [this] {
        for (int chords = 1; chords <= 200; ++chords) {
            tapChord(m_keyboard, {key::leftSuper, key::leftShift, key::space});
            if (!areReported(chords))
                return false;
        }
        return true;
    });
    do {
        grabs.set(combinations);
        grabs.set({});
    } while (pressed.wait_for(0s) != std::future_status::ready);
    EXPECT_TRUE(pressed.get());
}

TEST_F(X11KeyObserverTest, GrabsMayComeAndEndWhileShortcutsArePressed)
{
    const auto combinations =
        X11KeyTranslation(m_connection).combinations(HotkeyShortcut::defaultMain());
    std::atomic<bool> isOver = false;
    auto pressed = std::async(std::launch::async, [&] {
        while (!isOver)
            tapChord(m_keyboard, {key::leftSuper, key::leftShift, key::space});
    });
    for (int round = 0; round < 50; ++round)
        X11KeyGrabs(m_postedKeys, name()).set(combinations);
    isOver = true;
    pressed.get();
    ASSERT_TRUE(comesToSleep());
    EXPECT_FALSE(X11KeyEventPosting(m_postedKeys, name()).isKeyboardTaken());
    EXPECT_TRUE(isTapReported(key::a, m_reports + 1));
}

} // namespace
} // namespace kestrova
